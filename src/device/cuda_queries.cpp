// The cuda engine's answers to discovery and reports; empty for the CPU targets.
#if defined(MORVELLAN_TARGET_IS_CUDA)
#include <cuda_runtime_api.h>

#include "device/host/cuda_queries.h"

namespace morvellan::MORVELLAN_TARGET
{
namespace
{

int deviceCount(int& count)
{
  return cudaGetDeviceCount(&count);
}

int attribute(int attribute, int device, int& value)
{
  return cudaDeviceGetAttribute(&value, static_cast<cudaDeviceAttr>(attribute), device);
}

int properties(int device, morvellan::device::CudaDeviceProperties& properties)
{
  cudaDeviceProp found{};
  const cudaError_t error = cudaGetDeviceProperties(&found, device);
  if (error == cudaSuccess)
    properties = {.name = found.name,
                  .pci = {.domain = found.pciDomainID, .bus = found.pciBusID, .device = found.pciDeviceID},
                  .capabilityMajor = found.major,
                  .capabilityMinor = found.minor,
                  .multiprocessors = found.multiProcessorCount,
                  .maxTexture1D = found.maxTexture1D,
                  .maxTexture2D = {found.maxTexture2D[0], found.maxTexture2D[1]},
                  .tccDriver = found.tccDriver != 0};
  return error;
}

int canAccessPeer(int device, int peer, bool& can)
{
  int answer = 0;
  const cudaError_t error = cudaDeviceCanAccessPeer(&answer, device, peer);
  if (error == cudaSuccess)
    can = answer != 0;
  return error;
}

int driverVersion(int& version)
{
  return cudaDriverGetVersion(&version);
}

int runtimeVersion(int& version)
{
  return cudaRuntimeGetVersion(&version);
}

const char* errorText(int code)
{
  return cudaGetErrorString(static_cast<cudaError_t>(code));
}

constexpr morvellan::device::CudaQueries queries{.deviceCount = deviceCount,
                                                 .attribute = attribute,
                                                 .properties = properties,
                                                 .canAccessPeer = canAccessPeer,
                                                 .driverVersion = driverVersion,
                                                 .runtimeVersion = runtimeVersion,
                                                 .errorText = errorText};

[[maybe_unused]] const bool registered = (morvellan::device::registerCudaQueries(queries), true);

}  // namespace
}  // namespace morvellan::MORVELLAN_TARGET
#endif
