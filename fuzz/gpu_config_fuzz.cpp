// Any bytes as the GPU configuration file: the values stay in range, and what is written of them reads back as them.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "files/gpu_config.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
  using namespace morvellan::files;
  const ParsedGpuConfig parsed = parseGpuConfig({reinterpret_cast<const char*>(data), size});
  const GpuConfig& values = parsed.values;
  if (values.gpuSelection < 0 || values.gpuSelection > 3 || values.grainDepth < 0 || values.grainDepth > 7)
    std::abort();
  const ParsedGpuConfig again = parseGpuConfig(formatGpuConfig(values));
  if (again.fault != GpuConfigFault::none || again.values != values)
    std::abort();
  return 0;
}
