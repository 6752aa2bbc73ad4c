// Asks NVAPI step by step; asks NVML and takes its text apart.
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

std::optional<DriverVersion> versionFromNvml(GpuPlatform& platform)
{
  if (!platform.nvmlStandsInForNvapi() || platform.nvmlInit() != 0)
    return std::nullopt;
  std::string text;
  const bool answered = platform.nvmlDriverVersion(text) == 0;
  platform.nvmlShutdown();
  return answered ? parseVersion(text) : std::nullopt;
}

}  // namespace

DriverAnswer askDriverVersion(GpuPlatform& platform)
{
  if (!platform.nvapiLoad())
    return {.version = versionFromNvml(platform), .failed = NvapiStep::find};
  if (const int status = platform.nvapiInitialise(); status != 0)
    return {.failed = NvapiStep::load, .status = status};
  unsigned number = 0;
  const int status = platform.nvapiDriverVersion(number);
  if (status == 0)
    return {.version = DriverVersion{number / 100, number % 100}};
  return {.version = status == nvapiNoImplementation ? versionFromNvml(platform) : std::nullopt,
          .failed = NvapiStep::version,
          .status = status};
}

}  // namespace morvellan::gpu
