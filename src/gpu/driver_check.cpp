// The driver must be 527.41 or later. Its version comes from NVAPI, or where the system's driver ships without it,
// from NVML.
#include <fmt/format.h>

#include "gpu/discovery.h"
#include "gpu/driver_version.h"

namespace morvellan::gpu
{
namespace
{

constexpr DriverVersion leastVersion{527, 41};

struct NvapiAnswer
{
  std::optional<DriverVersion> version = {};
  std::string_view failure = {};
};

NvapiAnswer versionFromNvapi(GpuPlatform& platform)
{
  if (!platform.nvapiLoad())
    return {.failure = "Morvellan : Failed to find nVidia's NVAPI Library. Unable to process Clips"};
  if (platform.nvapiInitialise() != 0)
    return {.failure = "Morvellan : Failed to load nVidia's NVAPI Library. Unable to process Clips"};
  unsigned number = 0;
  const int status = platform.nvapiDriverVersion(number);
  platform.nvapiUnload();
  if (status != 0)
    return {.failure = "Morvellan : Failed to retrieve the nVidia Graphics Driver version. Unable to process Clips"};
  return {.version = DriverVersion{number / 100, number % 100}};
}

std::string tooOld(DriverVersion version)
{
  // The two texts differ in the order of the numbers and in a comma, and are kept so.
  if (version.major < leastVersion.major)
    return fmt::format("Morvellan : Requires nVidia Studio - or Game Ready - Driver ver. 527.41 ({}, {}) or higher. "
                       "Unable to process Clips",
                       version.major, version.minor);
  if (version.major == leastVersion.major && version.minor < leastVersion.minor)
    return fmt::format("Morvellan : Requires nVidia Studio - or Game Ready - Driver ver. 527.41 ({}, {}), or higher. "
                       "Unable to process Clips",
                       version.minor, version.major);
  return {};
}

}  // namespace

DriverCheck checkDriver(GpuPlatform& platform, const Discovery& discovery)
{
  if (discovery.software)
    return {.ready = true, .message = {}};
  NvapiAnswer answer = versionFromNvapi(platform);
  if (!answer.version)
    answer.version = driverVersionFromNvml(platform);
  if (!answer.version)
    return {.ready = false, .message = std::string{answer.failure}};
  std::string message = tooOld(*answer.version);
  const bool ready = message.empty();
  return {.ready = ready, .message = std::move(message)};
}

}  // namespace morvellan::gpu
