// Everything that discovery, the driver check and the reports ask of a machine: CUDA, NVML and NVAPI.
// The real machine and the invented machines of the tests answer it.
#pragma once

#include <string>

#include "device/host/cuda_queries.h"

namespace morvellan::gpu
{

using device::CudaDeviceProperties;
using device::PciAddress;

struct NvmlPciInfo
{
  PciAddress address;
  std::string busId;  // "00000000:65:00.0"
};

// Functions of type int answer the interface's own code, 0 for success, and write their result only then.
class GpuPlatform
{
public:
  virtual ~GpuPlatform() = default;

  // Whether this build holds the cuda engine. Without it no GPU can be used, whatever the machine has.
  [[nodiscard]] virtual bool hasCuda() const = 0;
  virtual int cudaDeviceCount(int& count) = 0;
  virtual int cudaAttribute(int attribute, int device, int& value) = 0;
  virtual int cudaProperties(int device, CudaDeviceProperties& properties) = 0;
  virtual int cudaCanAccessPeer(int device, int peer, bool& can) = 0;
  virtual int cudaDriverVersion(int& version) = 0;
  virtual int cudaRuntimeVersion(int& version) = 0;
  [[nodiscard]] virtual std::string cudaErrorText(int code) = 0;

  // NVML. Initialisation loads its library; a missing library is an error code like any other.
  virtual int nvmlInit() = 0;
  virtual int nvmlDeviceCount(unsigned& count) = 0;
  virtual int nvmlPciInfo(unsigned index, NvmlPciInfo& info) = 0;
  virtual int nvmlDisplayMode(unsigned index, bool& connected) = 0;
  virtual int nvmlDriverVersion(std::string& version) = 0;  // "580.65.06"
  virtual int nvmlShutdown() = 0;

  // NVAPI, by its single export. `nvapiLoad` answers whether the library and that export were found. A query whose
  // interface the export does not know answers nvapiNoImplementation.
  virtual bool nvapiLoad() = 0;
  virtual int nvapiInitialise() = 0;
  virtual int nvapiDriverVersion(unsigned& version) = 0;  // 100 * major + minor
  virtual int nvapiUtilisation(const PciAddress& device, unsigned& percent) = 0;
  [[nodiscard]] virtual std::string nvapiErrorText(int code) = 0;
  virtual void nvapiUnload() = 0;

  // Whether NVML's driver version stands in where NVAPI or its version interface does not exist. The driver of Linux
  // ships without NVAPI in places, that of Windows never does.
  [[nodiscard]] virtual bool nvmlStandsInForNvapi() const = 0;
};

// Status codes of NVAPI that mean that the query as such is not there.
inline constexpr int nvapiNoImplementation = -3;
inline constexpr int nvapiNotSupported = -104;

// Loads NVML and NVAPI at run time and asks CUDA through the cuda engine. One per process, usable from any thread.
[[nodiscard]] GpuPlatform& machinePlatform();

}  // namespace morvellan::gpu
