// Every row of the selection table, the reverts, and the list that the panel shows.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "gpu/discovery.h"

namespace
{
using namespace morvellan::gpu;

// The nth usable device has the number 10 * n, so that a place in the list is never taken for a number.
std::vector<GpuDevice> listOf(int usable)
{
  std::vector<GpuDevice> devices(static_cast<std::size_t>(usable));
  for (int n = 1; n <= usable; ++n)
    devices[static_cast<std::size_t>(n - 1)].index = 10 * n;
  return devices;
}

struct Row
{
  int usable;
  int asked;
  int red, blue, green;  // places in the list, 1 to 4; 0 where the table is open
  int count;
  int selection;
};

class SelectionTable : public testing::TestWithParam<Row>
{
};

TEST_P(SelectionTable, Holds)
{
  const Row& row = GetParam();
  const Selection selection = selectDevices(listOf(row.usable), row.asked);
  EXPECT_EQ(selection.gpuRed, 10 * row.red);
  EXPECT_EQ(selection.gpuBlue, 10 * (row.blue != 0 ? row.blue : row.red));
  EXPECT_EQ(selection.gpuGreen, 10 * (row.green != 0 ? row.green : row.red));
  EXPECT_EQ(selection.gpuCount, row.count);
  EXPECT_EQ(selection.gpuSelection, row.selection);
  EXPECT_EQ(selection.revertMessage.has_value(), row.selection != row.asked);
}

INSTANTIATE_TEST_SUITE_P(All, SelectionTable,
                         testing::Values(Row{5, 0, 1, 2, 3, 3, 0}, Row{5, 1, 2, 1, 3, 3, 1}, Row{5, 2, 3, 1, 2, 3, 2},
                                         Row{5, 3, 4, 1, 2, 3, 3}, Row{4, 0, 1, 2, 3, 3, 0}, Row{4, 1, 2, 1, 3, 3, 1},
                                         Row{4, 2, 3, 1, 2, 3, 2}, Row{4, 3, 4, 1, 2, 3, 3}, Row{3, 0, 1, 2, 3, 3, 0},
                                         Row{3, 1, 2, 1, 3, 3, 1}, Row{3, 2, 3, 1, 2, 3, 2}, Row{3, 3, 1, 2, 3, 3, 0},
                                         Row{2, 0, 1, 2, 0, 2, 0}, Row{2, 1, 2, 1, 0, 2, 1}, Row{2, 2, 1, 2, 0, 2, 0},
                                         Row{2, 3, 1, 2, 0, 2, 0}, Row{1, 0, 1, 0, 0, 1, 0}, Row{1, 1, 1, 0, 0, 1, 0},
                                         Row{1, 2, 1, 0, 0, 1, 0}, Row{1, 3, 1, 0, 0, 1, 0}),
                         [](const auto& info) {
                           return "usable" + std::to_string(info.param.usable) + "asked" +
                                  std::to_string(info.param.asked);
                         });

TEST(Selection, RevertMessages)
{
  const auto message = [](int usable, int asked) { return selectDevices(listOf(usable), asked).revertMessage.value(); };
  EXPECT_EQ(message(3, 3), "Morvellan : 4th GPU set in Morvellan's list. Only 1st, 2cd, and 3rd GPUs available. "
                           "Reverted to 1st GPU. Select 1st, 2cd, or 3rd.");
  EXPECT_EQ(message(2, 2), "Morvellan : 3rd GPU set in Morvellan's list. Only 1st and 2cd GPUs available. Reverted to "
                           "1st. Select 1st or 2cd.");
  EXPECT_EQ(message(2, 3), "Morvellan : 4th GPU set in Morvellan's list. Only 1st and 2cd GPUs available. Reverted to "
                           "1st. Select 1st or 2cd.");
  EXPECT_EQ(message(1, 1), "Morvellan : 2cd GPU set in Morvellan's list. Only 1st GPU available. Reverted to 1st GPU.");
  EXPECT_EQ(message(1, 2), "Morvellan : 3rd GPU set in Morvellan's list. Only 1st GPU available. Reverted to 1st GPU.");
  EXPECT_EQ(message(1, 3), "Morvellan : 4th GPU set in Morvellan's list. Only 1st GPU available. Reverted to 1st GPU.");
}

TEST(Selection, WithoutDevicesTheStoredChoiceStays)
{
  const Selection selection = selectDevices({}, 2);
  EXPECT_EQ(selection.gpuCount, 0);
  EXPECT_EQ(selection.gpuSelection, 2);
  EXPECT_FALSE(selection.revertMessage);
}

TEST(DeviceOptions, NameTheDevicesAndTheEmptySlots)
{
  std::vector<GpuDevice> devices(2);
  devices[0] = {.index = 0,
                .pci = {.domain = 0, .bus = 0x65, .device = 1},
                .name = "Fast GPU",
                .displayState = "Display connected",
                .busUuid = {}};
  const auto options = deviceOptions(devices);
  EXPECT_EQ(options[0].label, "Fast GPU");
  EXPECT_EQ(options[0].hint, "Fast GPU, Display connected, PCIe Dom:0-Bus:65-Id:1 (Hex)");
  EXPECT_EQ(options[1].label, "GPU Device name N/A");
  EXPECT_EQ(options[2].label, "3rd GPU unavailable");
  EXPECT_EQ(options[3].label, "4th GPU unavailable");
  EXPECT_EQ(deviceOptions({})[0].label, "1st GPU unavailable");
}

TEST(DeviceOptions, AFifthDeviceHasNoEntry)
{
  EXPECT_EQ(deviceOptions(listOf(5))[3].label, "GPU Device name N/A");
}

TEST(UnavailableSlot, NamesTheOthers)
{
  const std::string end = " available GPU from Morvellan's list.";
  EXPECT_EQ(unavailableSlotMessage(0), "Morvellan : 1st GPU unavailable. Select 2cd, 3rd, or 4th" + end);
  EXPECT_EQ(unavailableSlotMessage(1), "Morvellan : 2cd GPU unavailable. Select 1st, 3rd, or 4th" + end);
  EXPECT_EQ(unavailableSlotMessage(2), "Morvellan : 3rd GPU unavailable. Select 1st, 2cd, or 4th" + end);
  EXPECT_EQ(unavailableSlotMessage(3), "Morvellan : 4th GPU unavailable. Select 1st, 2cd, or 3rd" + end);
}

}  // namespace
