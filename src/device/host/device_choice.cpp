// Parses MORVELLAN_DEVICE and names the software device.
#include "device/host/device_choice.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <optional>

#include <fmt/format.h>
#include <tbb/global_control.h>

namespace morvellan::device
{
namespace
{

constexpr std::string_view softwarePrefix = "cpu:";

std::optional<int> softwareCount(std::string_view asked)
{
  if (asked == "cpu")
    return 1;
  if (!asked.starts_with(softwarePrefix))
    return std::nullopt;
  asked.remove_prefix(softwarePrefix.size());
  int count = 0;
  const auto [end, error] = std::from_chars(asked.data(), asked.data() + asked.size(), count);
  const bool whole = error == std::errc{} && end == asked.data() + asked.size();
  return whole && count >= 1 && count <= softwareDevicesMost ? std::optional{count} : std::nullopt;
}

std::string environment(const char* name)
{
  const char* value = std::getenv(name);
  return value != nullptr ? value : "";
}

}  // namespace

DeviceChoice parseDeviceChoice(std::string_view asked, std::string_view cpuPeer)
{
  DeviceChoice choice;
  choice.peerAccess = cpuPeer != "0";
  if (const std::optional<int> count = softwareCount(asked))
  {
    choice.kind = DeviceKind::software;
    choice.softwareDevices = *count;
  }
  else if (asked == "cuda")
  {
    choice.kind = DeviceKind::cuda;
  }
  else if (!asked.empty() && asked != "auto")
  {
    choice.warning =
        fmt::format("Morvellan : MORVELLAN_DEVICE is '{}'. Set it to auto, cuda, cpu, or cpu:N with N from "
                    "1 to {}. Using auto",
                    asked, softwareDevicesMost);
  }
  return choice;
}

DeviceChoice deviceChoice()
{
  return parseDeviceChoice(environment("MORVELLAN_DEVICE"), environment("MORVELLAN_CPU_PEER"));
}

std::string softwareDeviceName(int threads, CpuLevel level)
{
  return fmt::format("CPU, {} thread{}, {}", threads, threads == 1 ? "" : "s", instructionSetName(level));
}

std::optional<int> threadLimit()
{
  const std::string text = environment("MORVELLAN_THREADS");
  int limit = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), limit);
  const bool whole = error == std::errc{} && end == text.data() + text.size();
  return whole && limit > 0 ? std::optional{limit} : std::nullopt;
}

int processThreads()
{
  const auto allowed =
      static_cast<int>(tbb::global_control::active_value(tbb::global_control::max_allowed_parallelism));
  return std::min(allowed, threadLimit().value_or(allowed));
}

}  // namespace morvellan::device
