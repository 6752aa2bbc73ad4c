// Discovery on machines of every kind: codes, messages, skipped devices, and the match of CUDA's devices with NVML's.
#include "gpu/discovery.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/gpu/invented_machine.h"

namespace
{
using namespace morvellan;
using namespace morvellan::gpu;
using testing::ElementsAre;
using testing::IsEmpty;

std::vector<int> indicesOf(const Discovery& discovery)
{
  std::vector<int> indices;
  for (const GpuDevice& device : discovery.devices)
    indices.push_back(device.index);
  return indices;
}

TEST(Discovery, ListsEveryDeviceInCudasOrder)
{
  InventedMachine machine = machineWith(5);
  const Discovery discovery = discoverGpus(machine);
  EXPECT_EQ(discovery.code, DiscoveryCode::found);
  EXPECT_EQ(discovery.deviceCount, 5);
  EXPECT_EQ(discovery.usableCount(), 5);
  EXPECT_FALSE(discovery.software);
  EXPECT_THAT(indicesOf(discovery), ElementsAre(0, 1, 2, 3, 4));
  EXPECT_EQ(machine.nvmlOpen, 0);
  EXPECT_EQ(machine.nvmlInits, 1);
}

TEST(Discovery, NoNvml)
{
  InventedMachine machine = machineWith(1);
  machine.nvmlInitStatus = 12;
  const Discovery discovery = discoverGpus(machine);
  EXPECT_EQ(discovery.code, DiscoveryCode::nvmlInitFailed);
  EXPECT_THAT(discovery.devices, IsEmpty());
}

TEST(Discovery, NvmlWithoutDevices)
{
  InventedMachine machine = machineWith(1);
  machine.nvmlOrder = std::vector<int>{};
  EXPECT_EQ(discoverGpus(machine).code, DiscoveryCode::none);
  EXPECT_EQ(machine.nvmlOpen, 0) << "NVML is shut down on every way out";
}

TEST(Discovery, NvmlCannotCount)
{
  InventedMachine machine = machineWith(1);
  machine.nvmlCountStatus = 999;
  EXPECT_EQ(discoverGpus(machine).code, DiscoveryCode::countFailed);
  EXPECT_EQ(machine.nvmlOpen, 0);
}

TEST(Discovery, CudaCannotCount)
{
  InventedMachine machine = machineWith(2);
  machine.cudaCountStatus = 35;
  EXPECT_EQ(discoverGpus(machine).code, DiscoveryCode::countFailed);
  EXPECT_EQ(machine.nvmlOpen, 0);
}

TEST(Discovery, CudaWithoutDevices)
{
  InventedMachine machine = machineWith(1);
  machine.nvmlOrder = std::vector<int>{0};
  machine.gpus.clear();
  EXPECT_EQ(discoverGpus(machine).code, DiscoveryCode::none);
  EXPECT_EQ(machine.nvmlOpen, 0);
}

TEST(Discovery, ABuildWithoutTheCudaEngineFindsNoneAndAsksNoDriver)
{
  InventedMachine machine = machineWith(2);
  machine.cudaInBuild = false;
  machine.nvmlInitStatus = 12;
  EXPECT_EQ(discoverGpus(machine).code, DiscoveryCode::none);
  EXPECT_EQ(machine.nvmlInits, 0);
}

TEST(Discovery, AFailingShutdownIsTold)
{
  InventedMachine machine = machineWith(2);
  machine.nvmlShutdownStatus = 999;
  EXPECT_EQ(discoverGpus(machine).code, DiscoveryCode::nvmlShutdownFailed);
}

TEST(Discovery, AnOldDeviceBesideANewOne)
{
  InventedMachine machine = machineWith(2);
  machine.gpus[0].major = 6;
  machine.gpus[0].minor = 0;
  const Discovery discovery = discoverGpus(machine);
  EXPECT_EQ(discovery.code, DiscoveryCode::found);
  EXPECT_EQ(discovery.deviceCount, 2);
  EXPECT_EQ(discovery.usableCount(), 1);
  EXPECT_THAT(indicesOf(discovery), ElementsAre(1));
}

TEST(Discovery, CapabilitySixOneIsTheLeast)
{
  for (const auto& [major, minor, usable] : {std::tuple{5, 3, false}, std::tuple{6, 0, false}, std::tuple{6, 1, true},
                                             std::tuple{6, 2, true}, std::tuple{7, 0, true}, std::tuple{12, 0, true}})
  {
    InventedMachine machine = machineWith(1);
    machine.gpus[0].major = major;
    machine.gpus[0].minor = minor;
    EXPECT_EQ(discoverGpus(machine).code, usable ? DiscoveryCode::found : DiscoveryCode::allDeficient)
        << major << '.' << minor;
  }
}

TEST(Discovery, ProhibitedComputeModeIsNotListed)
{
  InventedMachine machine = machineWith(4);
  for (int mode = 0; mode < 4; ++mode)
    machine.gpus[static_cast<std::size_t>(mode)].computeMode = mode;
  EXPECT_THAT(indicesOf(discoverGpus(machine)), ElementsAre(0, 1, 3));
}

TEST(Discovery, ADeviceThatCannotBeAskedIsSkipped)
{
  InventedMachine machine = machineWith(5);
  machine.gpus[0].unreadable = {20};
  machine.gpus[1].unreadable = {75};
  machine.gpus[2].unreadable = {76};
  machine.gpus[3].propertiesFail = true;
  EXPECT_THAT(indicesOf(discoverGpus(machine)), ElementsAre(4));
  machine.gpus[4].unreadable = {20};
  EXPECT_EQ(discoverGpus(machine).code, DiscoveryCode::allDeficient);
}

TEST(Discovery, NvmlsDeviceIsFoundByItsPlaceOnTheBus)
{
  InventedMachine machine = machineWith(3);
  machine.gpus[0].pci = {.domain = 1, .bus = 3, .device = 0};
  machine.gpus[1].pci = {.domain = 0, .bus = 3, .device = 0};
  machine.gpus[2].pci = {.domain = 0, .bus = 3, .device = 1};
  machine.gpus[2].displayConnected = true;
  machine.nvmlOrder = std::vector{2, 1, 0};
  const Discovery discovery = discoverGpus(machine);
  ASSERT_EQ(discovery.usableCount(), 3);
  EXPECT_EQ(discovery.devices[0].displayState, "No display connected");
  EXPECT_EQ(discovery.devices[1].displayState, "No display connected");
  EXPECT_EQ(discovery.devices[2].displayState, "Display connected");
  EXPECT_EQ(discovery.devices[2].name, "GPU-2");
  EXPECT_EQ(discovery.devices[2].pci, (PciAddress{0, 3, 1}));
  EXPECT_EQ(discovery.devices[2].busUuid, "bus-id-3");
}

TEST(Discovery, WhatCannotBeToldKeepsItsDefault)
{
  InventedMachine machine = machineWith(2);
  machine.gpus[0].name.clear();
  machine.gpus[1].displayModeFails = true;
  machine.nvmlOrder = std::vector{1};
  const Discovery discovery = discoverGpus(machine);
  ASSERT_EQ(discovery.usableCount(), 2);
  EXPECT_EQ(discovery.devices[0].name, "GPU Device name N/A");
  EXPECT_EQ(discovery.devices[0].displayState, "Display connection status N/A");
  EXPECT_EQ(discovery.devices[0].busUuid, "GPU PCI Bus UUID N/A");
  EXPECT_EQ(discovery.devices[1].displayState, "Display connection status N/A");
  EXPECT_EQ(discovery.devices[1].busUuid, "bus-id-11");
}

TEST(Discovery, Messages)
{
  const std::string end = ". PLACING MORVELLAN ON A NODE TREE / TIMELINE MAY CRASH NATRON";
  EXPECT_EQ(discoveryMessage(DiscoveryCode::found), "");
  EXPECT_EQ(discoveryMessage(DiscoveryCode::none),
            "Morvellan : Morvellan is unable to find a CUDA GPU capable device" + end);
  EXPECT_EQ(discoveryMessage(DiscoveryCode::countFailed),
            "Morvellan : Morvellan is unable to detect a CUDA GPU device" + end);
  EXPECT_EQ(discoveryMessage(DiscoveryCode::nvmlInitFailed),
            "Morvellan : Morvellan is unable to initialise nVidia NVML" + end);
  EXPECT_EQ(discoveryMessage(DiscoveryCode::allDeficient),
            "Morvellan : Morvellan found all GPUs to have processing deficiencies" + end);
  EXPECT_EQ(discoveryMessage(DiscoveryCode::nvmlShutdownFailed),
            "Morvellan : Morvellan is unable to shutdown nVidia NVML" + end);
}

TEST(Discovery, CodesAreTheSystemsNumbers)
{
  EXPECT_EQ(static_cast<int>(DiscoveryCode::found), 1);
  EXPECT_EQ(static_cast<int>(DiscoveryCode::none), 0);
  EXPECT_EQ(static_cast<int>(DiscoveryCode::countFailed), -1);
  EXPECT_EQ(static_cast<int>(DiscoveryCode::nvmlInitFailed), -2);
  EXPECT_EQ(static_cast<int>(DiscoveryCode::allDeficient), -3);
  EXPECT_EQ(static_cast<int>(DiscoveryCode::nvmlShutdownFailed), -5);
}

TEST(SoftwareDiscovery, MakesAsManyDevicesAsAsked)
{
  for (int count : {1, 2, 3, 4, 16})
  {
    const Discovery discovery = discoverSoftware(count, 8, {.level = device::CpuLevel::v4, .warning = {}});
    EXPECT_EQ(discovery.code, DiscoveryCode::found);
    EXPECT_TRUE(discovery.software);
    EXPECT_EQ(discovery.deviceCount, count);
    ASSERT_EQ(discovery.usableCount(), count);
    EXPECT_EQ(discovery.devices.back().name, "CPU, 8 threads, AVX-512");
    EXPECT_EQ(discovery.devices.back().index, count - 1);
  }
}

TEST(SoftwareDiscovery, AProcessorThatRunsNoEngine)
{
  const Discovery discovery = discoverSoftware(2, 8, device::chooseCpuLevel(device::CpuLevel::none, ""));
  EXPECT_EQ(discovery.code, DiscoveryCode::none);
  EXPECT_THAT(discovery.devices, IsEmpty());
  EXPECT_EQ(discovery.warnings.size(), 1U);
}

TEST(Discover, GoesByTheChoice)
{
  InventedMachine machine = machineWith(1);
  EXPECT_FALSE(discover(machine, device::parseDeviceChoice("auto")).software);
  EXPECT_FALSE(discover(machine, device::parseDeviceChoice("cuda")).software);
  if (device::chosenCpuLevel().level != device::CpuLevel::none)
  {
    const Discovery software = discover(machine, device::parseDeviceChoice("cpu:3"));
    EXPECT_TRUE(software.software);
    EXPECT_EQ(software.usableCount(), 3);
  }
}

TEST(Discover, AnUnknownChoiceIsToldAndCountsAsAuto)
{
  InventedMachine machine = machineWith(1);
  const Discovery discovery = discover(machine, device::parseDeviceChoice("gpu"));
  EXPECT_EQ(discovery.code, DiscoveryCode::found);
  EXPECT_FALSE(discovery.software);
  EXPECT_THAT(discovery.warnings,
              ElementsAre("Morvellan : MORVELLAN_DEVICE is 'gpu'. Set it to auto, cuda, cpu, or cpu:N with N from 1 to "
                          "16. Using auto"));
}

TEST(Discover, ThreadsThatAreNoNumberAreTold)
{
  InventedMachine machine = machineWith(0);
  setenv("MORVELLAN_THREADS", "all", 1);
  const Discovery discovery = discover(machine, device::parseDeviceChoice("cpu"));
  unsetenv("MORVELLAN_THREADS");
  EXPECT_THAT(discovery.warnings,
              testing::Contains("Morvellan : MORVELLAN_THREADS is 'all'. Set it to a number from 1. "
                                "Using all threads"));
  EXPECT_THAT(discover(machine, device::parseDeviceChoice("cpu")).warnings,
              testing::Not(testing::Contains(testing::HasSubstr("MORVELLAN_THREADS"))));
}

}  // namespace
