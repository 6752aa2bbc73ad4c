// What device discovery and the reports ask of the CUDA runtime, as a table that the cuda engine registers.
// A build without that engine has no table, so nothing here needs CUDA's headers or libraries.
#pragma once

#include <array>
#include <string>

namespace morvellan::device
{

// Where a device sits on the PCI bus.
struct PciAddress
{
  int domain = 0;
  int bus = 0;
  int device = 0;

  friend bool operator==(const PciAddress&, const PciAddress&) = default;
};

struct CudaDeviceProperties
{
  std::string name;
  PciAddress pci;
  int capabilityMajor = 0;
  int capabilityMinor = 0;
  int multiprocessors = 0;
  int maxTexture1D = 0;                  // texels
  std::array<int, 2> maxTexture2D = {};  // width, height in texels
  bool tccDriver = false;
};

// Numbers of the attributes, as the CUDA runtime API publishes them.
inline constexpr int cudaComputeModeAttribute = 20;
inline constexpr int cudaCapabilityMajorAttribute = 75;
inline constexpr int cudaCapabilityMinorAttribute = 76;

// Each call answers the CUDA error code, 0 for success, and writes its result only then.
struct CudaQueries
{
  int (*deviceCount)(int& count) = nullptr;
  int (*attribute)(int attribute, int device, int& value) = nullptr;
  int (*properties)(int device, CudaDeviceProperties& properties) = nullptr;
  int (*canAccessPeer)(int device, int peer, bool& can) = nullptr;
  int (*driverVersion)(int& version) = nullptr;   // 1000 * major + 10 * minor
  int (*runtimeVersion)(int& version) = nullptr;  // the same
  const char* (*errorText)(int code) = nullptr;
};

// Called by the cuda engine's static initialiser. `queries` must live as long as the process.
void registerCudaQueries(const CudaQueries& queries);

// The table, null where the build has no cuda engine. To be asked only after static initialisation.
[[nodiscard]] const CudaQueries* cudaQueries();

}  // namespace morvellan::device
