// Every value of MORVELLAN_DEVICE, good and bad.
#include "device/host/device_choice.h"

#include <cstdlib>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{
using namespace morvellan::device;
using testing::HasSubstr;

TEST(DeviceChoice, KnownValues)
{
  EXPECT_EQ(parseDeviceChoice("").kind, DeviceKind::automatic);
  EXPECT_EQ(parseDeviceChoice("auto").kind, DeviceKind::automatic);
  EXPECT_EQ(parseDeviceChoice("cuda").kind, DeviceKind::cuda);
  EXPECT_EQ(parseDeviceChoice("cpu").kind, DeviceKind::software);
  EXPECT_EQ(parseDeviceChoice("cpu").softwareDevices, 1);
  EXPECT_EQ(parseDeviceChoice("cpu:1").softwareDevices, 1);
  EXPECT_EQ(parseDeviceChoice("cpu:4").softwareDevices, 4);
  EXPECT_EQ(parseDeviceChoice("cpu:16").softwareDevices, 16);
  for (const char* asked : {"", "auto", "cuda", "cpu", "cpu:4"})
    EXPECT_EQ(parseDeviceChoice(asked).warning, "") << asked;
}

TEST(DeviceChoice, UnknownValuesAreNamedAndCountAsAuto)
{
  for (const char* asked : {"gpu", "CPU", "cpu:", "cpu:0", "cpu:17", "cpu:-1", "cpu:2x", "cpu: 2", "cpu:99999999999",
                            "cpu2", " cpu", "auto ", "cuda:0"})
  {
    const DeviceChoice choice = parseDeviceChoice(asked);
    EXPECT_EQ(choice.kind, DeviceKind::automatic) << asked;
    EXPECT_EQ(choice.softwareDevices, 0) << asked;
    EXPECT_THAT(choice.warning, HasSubstr(std::string("MORVELLAN_DEVICE is '") + asked + "'"));
    EXPECT_THAT(choice.warning, HasSubstr("auto, cuda, cpu, or cpu:N with N from 1 to 16"));
  }
}

TEST(DeviceChoice, PeerAccessCanBeTakenAway)
{
  EXPECT_TRUE(parseDeviceChoice("cpu:2").peerAccess);
  EXPECT_TRUE(parseDeviceChoice("cpu:2", "1").peerAccess);
  EXPECT_FALSE(parseDeviceChoice("cpu:2", "0").peerAccess);
}

TEST(DeviceChoice, ReadsTheEnvironment)
{
  setenv("MORVELLAN_DEVICE", "cpu:3", 1);
  setenv("MORVELLAN_CPU_PEER", "0", 1);
  const DeviceChoice choice = deviceChoice();
  unsetenv("MORVELLAN_DEVICE");
  unsetenv("MORVELLAN_CPU_PEER");
  EXPECT_EQ(choice.softwareDevices, 3);
  EXPECT_FALSE(choice.peerAccess);
  EXPECT_EQ(deviceChoice().kind, DeviceKind::automatic);
}

TEST(SoftwareDeviceName, CountsThreads)
{
  EXPECT_EQ(softwareDeviceName(8, CpuLevel::v4), "CPU, 8 threads, AVX-512");
  EXPECT_EQ(softwareDeviceName(1, CpuLevel::v3), "CPU, 1 thread, AVX2");
  EXPECT_GE(processThreads(), 1);
}

TEST(ThreadLimit, PositiveNumbersOnly)
{
  for (const std::string none : {"0", "-2", "many", "3x", "99999999999", " "})
  {
    const ThreadLimit limit = parseThreadLimit(none);
    EXPECT_EQ(limit.most, std::nullopt) << none;
    EXPECT_EQ(limit.warning,
              "Morvellan : MORVELLAN_THREADS is '" + none + "'. Set it to a number from 1. Using all threads");
  }
  EXPECT_EQ(parseThreadLimit("").most, std::nullopt);
  EXPECT_EQ(parseThreadLimit("").warning, "");
  EXPECT_EQ(parseThreadLimit("7").most, 7);
  EXPECT_EQ(parseThreadLimit("7").warning, "");
  setenv("MORVELLAN_THREADS", "1", 1);
  EXPECT_EQ(threadLimit().most, 1);
  EXPECT_EQ(processThreads(), 1);
  setenv("MORVELLAN_THREADS", "4096", 1);
  EXPECT_LE(processThreads(), 4096);
  unsetenv("MORVELLAN_THREADS");
  EXPECT_EQ(threadLimit().most, std::nullopt);
}

}  // namespace
