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

std::optional<int> wholeNumber(std::string_view text)
{
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc{} && end == text.data() + text.size() ? std::optional{number} : std::nullopt;
}

std::optional<int> softwareCount(std::string_view asked)
{
  if (asked == "cpu")
    return 1;
  if (!asked.starts_with(softwarePrefix))
    return std::nullopt;
  asked.remove_prefix(softwarePrefix.size());
  const std::optional<int> count = wholeNumber(asked);
  return count && *count >= 1 && *count <= softwareDevicesMost ? count : std::nullopt;
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

ThreadLimit parseThreadLimit(std::string_view asked)
{
  if (asked.empty())
    return {};
  const std::optional<int> limit = wholeNumber(asked);
  if (limit && *limit >= 1)
    return {limit, {}};
  return {{},
          fmt::format("Morvellan : MORVELLAN_THREADS is '{}'. Set it to a number from 1. Using all threads", asked)};
}

ThreadLimit threadLimit()
{
  return parseThreadLimit(environment("MORVELLAN_THREADS"));
}

int processThreads()
{
  const auto allowed =
      static_cast<int>(tbb::global_control::active_value(tbb::global_control::max_allowed_parallelism));
  return std::min(allowed, threadLimit().most.value_or(allowed));
}

}  // namespace morvellan::device
