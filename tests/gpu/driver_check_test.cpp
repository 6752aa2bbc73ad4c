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

const std::string notFound = "Morvellan : Failed to find nVidia's NVAPI Library. Unable to process Clips";
const std::string notLoaded = "Morvellan : Failed to load nVidia's NVAPI Library. Unable to process Clips";
const std::string noVersion =
    "Morvellan : Failed to retrieve the nVidia Graphics Driver version. Unable to process Clips";

TEST(DriverCheck, EachFailureOfNvapi)
{
  InventedMachine machine = machineWith(1);
  for (const int status : {-1, nvapiNoImplementation, nvapiNotSupported})
  {
    machine.nvapiVersionStatus = status;
    EXPECT_EQ(checkOn(machine).message, noVersion) << status;
  }
  machine.nvapiInitStatus = -1;
  EXPECT_EQ(checkOn(machine).message, notLoaded);
  machine.nvapiMissing = true;
  EXPECT_EQ(checkOn(machine).message, notFound);
}

// Without NVAPI, or without its interface for the version; one that is there and fails, fails.
TEST(DriverCheck, NvmlStandsInOnlyWhereTheDriverShipsWithoutNvapi)
{
  InventedMachine machine = machineWith(1);
  machine.nvmlVersion = "580.65.06";
  machine.nvapiMissing = true;
  EXPECT_EQ(checkOn(machine).message, notFound);
  machine.linuxDriver = true;
  EXPECT_TRUE(checkOn(machine).ready);
  machine.nvapiMissing = false;
  machine.nvapiVersionStatus = nvapiNoImplementation;
  EXPECT_TRUE(checkOn(machine).ready);

  const int inits = machine.nvmlInits;
  for (const int status : {-1, nvapiNotSupported})
  {
    machine.nvapiVersionStatus = status;
    EXPECT_EQ(checkDriver(machine, {}).message, noVersion) << status;
  }
  for (const int status : {-1, nvapiNoImplementation, nvapiNotSupported})
  {
    machine.nvapiInitStatus = status;
    const DriverCheck check = checkDriver(machine, {});
    EXPECT_EQ(check.message, notLoaded) << status;
    EXPECT_FALSE(check.ready);
  }
  EXPECT_EQ(machine.nvmlInits, inits) << "NVML is not even asked";
  EXPECT_EQ(machine.nvapiOpen, 0);
}

TEST(DriverCheck, NvapisOwnVersionWins)
{
  InventedMachine machine = machineWith(1);
  machine.linuxDriver = true;
  machine.nvmlVersion = "580.65.06";
  machine.driver = 52740;
  EXPECT_FALSE(checkOn(machine).ready);
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
