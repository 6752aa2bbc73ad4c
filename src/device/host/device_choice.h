// Which kind of device renders, as the environment variable MORVELLAN_DEVICE asks: auto, cuda, cpu or cpu:N.
// The choice only; finding the devices is discovery's work.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "device/host/cpu_level.h"

namespace morvellan::device
{

enum class DeviceKind
{
  automatic,  // the GPUs that discovery finds and nothing else
  cuda,       // the same, said outright
  software    // this machine's processors, as one device or several
};

inline constexpr int softwareDevicesMost = 16;

struct DeviceChoice
{
  DeviceKind kind = DeviceKind::automatic;
  int softwareDevices = 0;  // 1..softwareDevicesMost with DeviceKind::software
  bool peerAccess = true;   // whether software devices reach one another's memory; MORVELLAN_CPU_PEER=0 takes it away
  std::string warning;      // empty, or one sentence for the user
};

// `asked` is the value of MORVELLAN_DEVICE (empty counts as auto), `cpuPeer` that of MORVELLAN_CPU_PEER.
// An unknown value counts as auto, with a warning.
[[nodiscard]] DeviceChoice parseDeviceChoice(std::string_view asked, std::string_view cpuPeer = {});

// The choice of the environment as it is now.
[[nodiscard]] DeviceChoice deviceChoice();

// "CPU, 8 threads, AVX-512".
[[nodiscard]] std::string softwareDeviceName(int threads, CpuLevel level);

// The most threads that a frame may use.
struct ThreadLimit
{
  std::optional<int> most;  // 1 or more
  std::string warning;      // empty, or one sentence for the user
};

// `asked` is the value of MORVELLAN_THREADS, a positive number (empty counts as no limit). Anything else counts as no
// limit, with a warning.
[[nodiscard]] ThreadLimit parseThreadLimit(std::string_view asked);

// The limit of the environment as it is now.
[[nodiscard]] ThreadLimit threadLimit();

// Threads that a frame uses: this machine's, within the limit. At least 1.
[[nodiscard]] int processThreads();

}  // namespace morvellan::device
