// Asks NVML and takes its text apart.
#include "gpu/driver_version.h"

#include <charconv>
#include <string_view>

namespace morvellan::gpu
{
namespace
{

// "580.65.06": the first two numbers.
std::optional<DriverVersion> parseVersion(std::string_view text)
{
  DriverVersion version;
  const char* end = text.data() + text.size();
  const auto major = std::from_chars(text.data(), end, version.major);
  if (major.ec != std::errc{} || major.ptr == end || *major.ptr != '.')
    return std::nullopt;
  const auto minor = std::from_chars(major.ptr + 1, end, version.minor);
  return minor.ec == std::errc{} ? std::optional{version} : std::nullopt;
}

}  // namespace

std::optional<DriverVersion> driverVersionFromNvml(GpuPlatform& platform)
{
  if (!platform.nvmlStandsInForNvapi() || platform.nvmlInit() != 0)
    return std::nullopt;
  std::string text;
  const bool answered = platform.nvmlDriverVersion(text) == 0;
  platform.nvmlShutdown();
  return answered ? parseVersion(text) : std::nullopt;
}

}  // namespace morvellan::gpu
