// The version of the graphics driver: from NVAPI, or from NVML on systems whose driver ships without it.
#pragma once

#include <optional>

#include "gpu/gpu_platform.h"

namespace morvellan::gpu
{

struct DriverVersion
{
  unsigned major = 0;
  unsigned minor = 0;
};

// How far the questions to NVAPI came.
enum class NvapiStep
{
  find,     // its library or the library's export is missing
  load,     // it does not initialise
  version,  // it does not tell the version
  done
};

struct DriverAnswer
{
  std::optional<DriverVersion> version = {};
  NvapiStep failed = NvapiStep::done;  // where NVAPI failed, also when NVML stood in for it
  int status = 0;                      // NVAPI's code of that failure, for `load` and `version`

  // Whether NVAPI is up and to be unloaded by whoever asked.
  [[nodiscard]] bool nvapiIsUp() const { return failed > NvapiStep::load; }
};

// NVML stands in where the platform allows it and NVAPI, or its interface for the version, does not exist; never for
// one that exists and fails. NVML is initialised and shut down for the question alone.
[[nodiscard]] DriverAnswer askDriverVersion(GpuPlatform& platform);

}  // namespace morvellan::gpu
