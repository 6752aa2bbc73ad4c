// The machine that the process runs on, asked through the driver's libraries as far as they exist.
// Nothing links against the driver: its libraries are looked for when the first question comes.
#pragma once

#include <memory>
#include <mutex>

#include "gpu/dynamic_library.h"
#include "gpu/gpu_platform.h"

namespace morvellan::gpu
{

// File names of the driver's libraries; the tests put libraries of their own in their place.
struct DriverLibraries
{
#if defined(_WIN32)
  std::string nvml = "nvml.dll";
  std::string nvapi = "nvapi64.dll";
  bool nvmlStandsInForNvapi = false;
#else
  std::string nvml = "libnvidia-ml.so.1";
  std::string nvapi = "libnvidia-api.so.1";
  bool nvmlStandsInForNvapi = true;
#endif
};

class RealPlatform final : public GpuPlatform
{
public:
  // `cuda` may be null: a build without the cuda engine. It counts no devices.
  RealPlatform(const device::CudaQueries* cuda, DriverLibraries libraries);
  ~RealPlatform() override;

  [[nodiscard]] bool hasCuda() const override { return cuda_ != nullptr; }
  int cudaDeviceCount(int& count) override;
  int cudaAttribute(int attribute, int device, int& value) override;
  int cudaProperties(int device, CudaDeviceProperties& properties) override;
  int cudaCanAccessPeer(int device, int peer, bool& can) override;
  int cudaDriverVersion(int& version) override;
  int cudaRuntimeVersion(int& version) override;
  [[nodiscard]] std::string cudaErrorText(int code) override;

  int nvmlInit() override;
  int nvmlDeviceCount(unsigned& count) override;
  int nvmlPciInfo(unsigned index, NvmlPciInfo& info) override;
  int nvmlDisplayMode(unsigned index, bool& connected) override;
  int nvmlDriverVersion(std::string& version) override;
  int nvmlShutdown() override;

  bool nvapiLoad() override;
  int nvapiInitialise() override;
  int nvapiDriverVersion(unsigned& version) override;
  int nvapiUtilisation(const PciAddress& device, unsigned& percent) override;
  [[nodiscard]] std::string nvapiErrorText(int code) override;
  void nvapiUnload() override;

  [[nodiscard]] bool nvmlStandsInForNvapi() const override { return libraries_.nvmlStandsInForNvapi; }

private:
  struct Nvml;
  struct Nvapi;

  const device::CudaQueries* cuda_;
  DriverLibraries libraries_;
  std::mutex loading_;  // guards the two pointers below, which are set once
  std::unique_ptr<const Nvml> nvml_;
  std::unique_ptr<const Nvapi> nvapi_;
};

}  // namespace morvellan::gpu
