// The driver must be 527.41 or later.
#include <fmt/format.h>

#include "gpu/discovery.h"
#include "gpu/driver_version.h"

namespace morvellan::gpu
{
namespace
{

constexpr DriverVersion leastVersion{527, 41};

std::string_view failureMessage(NvapiStep failed)
{
  switch (failed)
  {
  case NvapiStep::find:
    return "Morvellan : Failed to find nVidia's NVAPI Library. Unable to process Clips";
  case NvapiStep::load:
    return "Morvellan : Failed to load nVidia's NVAPI Library. Unable to process Clips";
  case NvapiStep::version:
    return "Morvellan : Failed to retrieve the nVidia Graphics Driver version. Unable to process Clips";
  case NvapiStep::done:
    break;
  }
  return {};
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
  const DriverAnswer answer = askDriverVersion(platform);
  if (answer.nvapiIsUp())
    platform.nvapiUnload();
  if (!answer.version)
    return {.ready = false, .message = std::string{failureMessage(answer.failed)}};
  std::string message = tooOld(*answer.version);
  const bool ready = message.empty();
  return {.ready = ready, .message = std::move(message)};
}

}  // namespace morvellan::gpu
