// The run-time loader against invented driver libraries, against libraries that are none, and on this machine.
#include "gpu/real_platform.h"

#include <cstdlib>

#include <gtest/gtest.h>

#include "gpu/discovery.h"
#include "gpu/reports.h"

namespace
{
using namespace morvellan;
using namespace morvellan::gpu;

const DriverLibraries invented{
    .nvml = MORVELLAN_INVENTED_NVML, .nvapi = MORVELLAN_INVENTED_NVAPI, .nvmlStandsInForNvapi = false};
const DriverLibraries missing{.nvml = "libmorvellan-no-such-library.so.1",
                              .nvapi = "libmorvellan-no-such-library.so.1",
                              .nvmlStandsInForNvapi = true};

// One CUDA device that sits where the first of NVML's does.
constexpr device::CudaQueries oneDevice{
    .deviceCount =
        [](int& count)
    {
      count = 1;
      return 0;
    },
    .attribute =
        [](int attribute, int, int& value)
    {
      value = attribute == device::cudaCapabilityMajorAttribute ? 9 : 0;
      return 0;
    },
    .properties =
        [](int, device::CudaDeviceProperties& properties)
    {
      properties = {.name = "Invented", .pci = {.domain = 0, .bus = 0x65, .device = 0}, .capabilityMajor = 9};
      return 0;
    },
    .canAccessPeer = [](int, int, bool&) { return 1; },
    .driverVersion = [](int&) { return 1; },
    .runtimeVersion = [](int&) { return 1; },
    .errorText = [](int) { return "text of an error"; }};

TEST(RealPlatform, AsksTheDriversLibraries)
{
  RealPlatform platform(&oneDevice, invented);
  const Discovery discovery = discoverGpus(platform);
  EXPECT_EQ(discovery.code, DiscoveryCode::found);
  ASSERT_EQ(discovery.usableCount(), 1);
  EXPECT_EQ(discovery.devices[0].name, "Invented");
  EXPECT_EQ(discovery.devices[0].displayState, "Display connected");
  EXPECT_EQ(discovery.devices[0].busUuid, "00000000:65:00.0");
  EXPECT_TRUE(checkDriver(platform, discovery).ready);
}

TEST(RealPlatform, ReadsNvmlsRecords)
{
  RealPlatform platform(nullptr, invented);
  ASSERT_EQ(platform.nvmlInit(), 0);
  NvmlPciInfo info;
  ASSERT_EQ(platform.nvmlPciInfo(1, info), 0);
  EXPECT_EQ(info.address, (PciAddress{1, 0x17, 2}));
  EXPECT_EQ(info.busId, "00000001:17:02.0");
  EXPECT_NE(platform.nvmlPciInfo(2, info), 0);
  bool connected = true;
  ASSERT_EQ(platform.nvmlDisplayMode(1, connected), 0);
  EXPECT_FALSE(connected);
  std::string version;
  ASSERT_EQ(platform.nvmlDriverVersion(version), 0);
  EXPECT_EQ(version, "580.65.06");
  EXPECT_EQ(platform.nvmlShutdown(), 0);
  EXPECT_EQ(platform.nvmlShutdown(), 1);
}

TEST(RealPlatform, ReadsNvapi)
{
  RealPlatform platform(nullptr, invented);
  ASSERT_TRUE(platform.nvapiLoad());
  ASSERT_EQ(platform.nvapiInitialise(), 0);
  unsigned number = 0;
  ASSERT_EQ(platform.nvapiDriverVersion(number), 0);
  EXPECT_EQ(number, 52741U);
  ASSERT_EQ(platform.nvapiUtilisation({.domain = 0, .bus = 0x65, .device = 0}, number), 0);
  EXPECT_EQ(number, 42U);
  EXPECT_NE(platform.nvapiUtilisation({.domain = 0, .bus = 1, .device = 0}, number), 0);
  EXPECT_EQ(platform.nvapiErrorText(-6), "NVAPI_NVIDIA_DEVICE_NOT_FOUND");
  platform.nvapiUnload();
}

TEST(RealPlatform, MissingLibraries)
{
  RealPlatform platform(&oneDevice, missing);
  EXPECT_EQ(discoverGpus(platform).code, DiscoveryCode::nvmlInitFailed);
  EXPECT_NE(platform.nvmlShutdown(), 0);
  EXPECT_FALSE(platform.nvapiLoad());
  unsigned number = 0;
  EXPECT_NE(platform.nvapiInitialise(), 0);
  EXPECT_NE(platform.nvapiDriverVersion(number), 0);
  EXPECT_NE(platform.nvapiUtilisation({}, number), 0);
  platform.nvapiUnload();
  EXPECT_EQ(checkDriver(platform, {}).message,
            "Morvellan : Failed to find nVidia's NVAPI Library. Unable to process Clips");
}

TEST(RealPlatform, LibrariesWithoutTheExports)
{
  // Each library in the other's place: it loads and has nothing that is asked for.
  RealPlatform platform(&oneDevice, {.nvml = invented.nvapi, .nvapi = invented.nvml, .nvmlStandsInForNvapi = false});
  EXPECT_EQ(discoverGpus(platform).code, DiscoveryCode::nvmlInitFailed);
  NvmlPciInfo info;
  bool connected = false;
  std::string version;
  unsigned count = 0;
  EXPECT_NE(platform.nvmlDeviceCount(count), 0);
  EXPECT_NE(platform.nvmlPciInfo(0, info), 0);
  EXPECT_NE(platform.nvmlDisplayMode(0, connected), 0);
  EXPECT_NE(platform.nvmlDriverVersion(version), 0);
  EXPECT_NE(platform.nvmlShutdown(), 0);
  EXPECT_FALSE(platform.nvapiLoad());
  EXPECT_EQ(checkDriver(platform, {}).message,
            "Morvellan : Failed to find nVidia's NVAPI Library. Unable to process Clips");
}

// The driver of Linux, whose NVML says 580.65, with an NVAPI of every kind.
DriverCheck checkWith(const char* amiss, const std::string& nvapi = invented.nvapi, bool linuxDriver = true)
{
  setenv("MORVELLAN_INVENTED_NVAPI", amiss, 1);
  RealPlatform platform(&oneDevice, {.nvml = invented.nvml, .nvapi = nvapi, .nvmlStandsInForNvapi = linuxDriver});
  DriverCheck check = checkDriver(platform, {});
  unsetenv("MORVELLAN_INVENTED_NVAPI");
  return check;
}

TEST(RealPlatform, NvmlStandsInForAMissingNvapi)
{
  const std::string notFound = "Morvellan : Failed to find nVidia's NVAPI Library. Unable to process Clips";
  // No library, a library without the export, a library without the version's interface.
  EXPECT_TRUE(checkWith("", missing.nvapi).ready);
  EXPECT_TRUE(checkWith("", invented.nvml).ready);
  EXPECT_TRUE(checkWith("no version").ready);
  EXPECT_EQ(checkWith("", missing.nvapi, false).message, notFound);
  EXPECT_EQ(checkWith("", invented.nvml, false).message, notFound);
  EXPECT_EQ(checkWith("no version", invented.nvapi, false).message,
            "Morvellan : Failed to retrieve the nVidia Graphics Driver version. Unable to process Clips");
}

TEST(RealPlatform, NothingStandsInForAnNvapiThatFails)
{
  for (const bool linuxDriver : {true, false})
  {
    for (const char* amiss : {"initialisation fails", "no initialisation"})
    {
      const DriverCheck check = checkWith(amiss, invented.nvapi, linuxDriver);
      EXPECT_FALSE(check.ready) << amiss;
      EXPECT_EQ(check.message, "Morvellan : Failed to load nVidia's NVAPI Library. Unable to process Clips") << amiss;
    }
    const DriverCheck check = checkWith("version fails", invented.nvapi, linuxDriver);
    EXPECT_FALSE(check.ready);
    EXPECT_EQ(check.message,
              "Morvellan : Failed to retrieve the nVidia Graphics Driver version. Unable to process Clips");
  }
  // Above the least, where NVML says 580.65 and NVAPI, which is asked, says 527.41.
  EXPECT_TRUE(checkWith("").ready);
}

TEST(RealPlatform, WithoutACudaEngineNothingIsCounted)
{
  RealPlatform platform(nullptr, invented);
  int count = -1;
  EXPECT_EQ(platform.cudaDeviceCount(count), 0);
  EXPECT_EQ(count, 0);
  EXPECT_FALSE(platform.hasCuda());
  int value = 0;
  bool can = false;
  CudaDeviceProperties properties;
  EXPECT_NE(platform.cudaAttribute(20, 0, value), 0);
  EXPECT_NE(platform.cudaProperties(0, properties), 0);
  EXPECT_NE(platform.cudaCanAccessPeer(0, 1, can), 0);
  EXPECT_EQ(discoverGpus(platform).code, DiscoveryCode::none);
}

// Whatever this machine is, the process survives the questions and the answers agree with one another.
TEST(MachinePlatform, Answers)
{
  const Discovery& discovery = processDiscovery();
  EXPECT_EQ(discovery.code == DiscoveryCode::found, discovery.usableCount() > 0);
  EXPECT_EQ(&processDiscovery(), &discovery);
  EXPECT_FALSE(cudaInfoText(machinePlatform()).empty());
}

}  // namespace
