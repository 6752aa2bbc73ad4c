// Which drivers are accepted, and what is said of the others, with NVAPI and with NVML in its stead.
#include <gtest/gtest.h>

#include "gpu/discovery.h"
#include "tests/gpu/invented_machine.h"

namespace
{
using namespace morvellan::gpu;

DriverCheck checkOn(InventedMachine& machine)
{
  const DriverCheck check = checkDriver(machine, discoverGpus(machine));
  EXPECT_EQ(machine.nvmlOpen, 0);
  EXPECT_EQ(machine.nvapiOpen, 0) << "NVAPI is unloaded on every way out";
  EXPECT_EQ(check.ready, check.message.empty());
  return check;
}

std::string messageFor(unsigned driver)
{
  InventedMachine machine = machineWith(1);
  machine.driver = driver;
  return checkOn(machine).message;
}

TEST(DriverCheck, VersionsAroundTheLeast)
{
  EXPECT_EQ(messageFor(52698), "Morvellan : Requires nVidia Studio - or Game Ready - Driver ver. 527.41 (526, 98) or "
                               "higher. Unable to process Clips");
  EXPECT_EQ(messageFor(52740), "Morvellan : Requires nVidia Studio - or Game Ready - Driver ver. 527.41 (40, 527), or "
                               "higher. Unable to process Clips");
  EXPECT_EQ(messageFor(52741), "");
  EXPECT_EQ(messageFor(52800), "");
  EXPECT_EQ(messageFor(58000), "");
  EXPECT_EQ(messageFor(58097), "");
}

TEST(DriverCheck, EachFailureOfNvapi)
{
  InventedMachine machine = machineWith(1);
  machine.nvapiVersionStatus = -1;
  EXPECT_EQ(checkOn(machine).message,
            "Morvellan : Failed to retrieve the nVidia Graphics Driver version. Unable to process Clips");
  machine.nvapiInitStatus = -1;
  EXPECT_EQ(checkOn(machine).message, "Morvellan : Failed to load nVidia's NVAPI Library. Unable to process Clips");
  machine.nvapiMissing = true;
  EXPECT_EQ(checkOn(machine).message, "Morvellan : Failed to find nVidia's NVAPI Library. Unable to process Clips");
}

TEST(DriverCheck, NvmlStandsInOnlyWhereTheDriverShipsWithoutNvapi)
{
  InventedMachine machine = machineWith(1);
  machine.nvmlVersion = "580.65.06";
  machine.nvapiMissing = true;
  EXPECT_FALSE(checkOn(machine).ready);
  machine.linuxDriver = true;
  EXPECT_TRUE(checkOn(machine).ready);
  machine.nvapiMissing = false;
  machine.nvapiInitStatus = -1;
  EXPECT_TRUE(checkOn(machine).ready);
  machine.nvapiInitStatus = 0;
  machine.nvapiVersionStatus = nvapiNoImplementation;
  EXPECT_TRUE(checkOn(machine).ready);
}

TEST(DriverCheck, NvmlsVersionMeetsTheSameLimit)
{
  InventedMachine machine = machineWith(1);
  machine.linuxDriver = true;
  machine.nvapiMissing = true;
  machine.nvmlVersion = "525.147.05";
  EXPECT_EQ(checkOn(machine).message, "Morvellan : Requires nVidia Studio - or Game Ready - Driver ver. 527.41 (525, "
                                      "147) or higher. Unable to process Clips");
  machine.nvmlVersion = "527.40";
  EXPECT_FALSE(checkOn(machine).ready);
  machine.nvmlVersion = "527.41";
  EXPECT_TRUE(checkOn(machine).ready);
}

TEST(DriverCheck, WithoutAnyAnswerTheFirstFailureIsTold)
{
  const std::string notFound = "Morvellan : Failed to find nVidia's NVAPI Library. Unable to process Clips";
  InventedMachine machine = machineWith(1);
  machine.linuxDriver = true;
  machine.nvapiMissing = true;
  EXPECT_EQ(checkOn(machine).message, notFound);
  for (const char* nonsense : {"", "580", "580.", "N/A", ".41", "580.x"})
  {
    machine.nvmlVersion = nonsense;
    EXPECT_EQ(checkOn(machine).message, notFound) << nonsense;
  }
}

TEST(DriverCheck, SoftwareDevicesHaveNoDriver)
{
  InventedMachine machine;
  machine.nvapiMissing = true;
  const Discovery discovery = discoverSoftware(2, 4, {.level = morvellan::device::CpuLevel::v3, .warning = {}});
  EXPECT_TRUE(checkDriver(machine, discovery).ready);
}

}  // namespace
