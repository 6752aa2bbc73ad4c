// The version of the graphics driver as NVML tells it, for systems whose driver ships without NVAPI.
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

// Nothing where NVML does not stand in for NVAPI, or does not answer. Initialises and shuts down NVML by itself.
[[nodiscard]] std::optional<DriverVersion> driverVersionFromNvml(GpuPlatform& platform);

}  // namespace morvellan::gpu
