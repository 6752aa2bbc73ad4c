// A machine that a test makes up: its devices, its driver, and which of its calls fail.
// It also keeps account of what was opened and closed, so that a test sees a leak.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "gpu/gpu_platform.h"

namespace morvellan::gpu
{

struct InventedGpu
{
  std::string name = "Invented GPU";
  PciAddress pci;
  int major = 8;
  int minor = 6;
  int computeMode = 0;
  bool tcc = false;
  bool displayConnected = false;
  std::optional<unsigned> utilisation = 7;  // nothing: the query is not supported
  // Attributes that can't be read, by number.
  std::vector<int> unreadable = {};
  bool propertiesFail = false;
  bool displayModeFails = false;
  bool utilisationFails = false;
};

class InventedMachine : public GpuPlatform
{
public:
  bool cudaInBuild = true;
  std::vector<InventedGpu> gpus = {};
  // NVML's order of the devices as indices into `gpus`; empty: the same order, all of them.
  std::optional<std::vector<int>> nvmlOrder = {};
  int nvmlInitStatus = 0;
  int nvmlCountStatus = 0;
  int nvmlShutdownStatus = 0;
  int nvmlPciStatus = 0;
  int cudaCountStatus = 0;
  int cudaVersionStatus = 0;
  int peerStatus = 0;
  bool peers = true;
  bool nvapiMissing = false;
  int nvapiInitStatus = 0;
  int nvapiVersionStatus = 0;
  unsigned driver = 58065;
  bool linuxDriver = false;
  std::optional<std::string> nvmlVersion = {};
  std::function<void()> onDriverQuestion = {};  // called when NVAPI is looked for

  // Account.
  int nvmlOpen = 0;
  int nvmlInits = 0;
  int nvapiOpen = 0;

  [[nodiscard]] bool hasCuda() const override { return cudaInBuild; }

  int cudaDeviceCount(int& count) override
  {
    if (cudaCountStatus == 0)
      count = static_cast<int>(gpus.size());
    return cudaCountStatus;
  }

  int cudaAttribute(int attribute, int device, int& value) override
  {
    const InventedGpu& gpu = at(device);
    for (const int number : gpu.unreadable)
      if (number == attribute)
        return 1;
    value = attribute == 20 ? gpu.computeMode : attribute == 75 ? gpu.major : gpu.minor;
    return attribute == 20 || attribute == 75 || attribute == 76 ? 0 : 1;
  }

  int cudaProperties(int device, CudaDeviceProperties& properties) override
  {
    const InventedGpu& gpu = at(device);
    if (gpu.propertiesFail)
      return 46;
    properties = {.name = gpu.name,
                  .pci = gpu.pci,
                  .capabilityMajor = gpu.major,
                  .capabilityMinor = gpu.minor,
                  .multiprocessors = 10,
                  .maxTexture1D = 131072,
                  .maxTexture2D = {131072, 65536},
                  .tccDriver = gpu.tcc};
    return 0;
  }

  int cudaCanAccessPeer(int, int, bool& can) override
  {
    can = peers;
    return peerStatus;
  }

  int cudaDriverVersion(int& version) override
  {
    version = 12080;
    return cudaVersionStatus;
  }

  int cudaRuntimeVersion(int& version) override
  {
    version = 12040;
    return cudaVersionStatus;
  }

  [[nodiscard]] std::string cudaErrorText(int code) override { return "invented error " + std::to_string(code); }

  int nvmlInit() override
  {
    if (nvmlInitStatus == 0)
    {
      ++nvmlOpen;
      ++nvmlInits;
    }
    return nvmlInitStatus;
  }

  int nvmlDeviceCount(unsigned& count) override
  {
    if (nvmlOpen == 0)
      return 1;
    if (nvmlCountStatus == 0)
      count = static_cast<unsigned>(nvmlOrder ? nvmlOrder->size() : gpus.size());
    return nvmlCountStatus;
  }

  int nvmlPciInfo(unsigned index, NvmlPciInfo& info) override
  {
    const InventedGpu& gpu = byNvml(index);
    info = {.address = gpu.pci, .busId = "bus-id-" + std::to_string(gpu.pci.bus)};
    return nvmlPciStatus;
  }

  int nvmlDisplayMode(unsigned index, bool& connected) override
  {
    const InventedGpu& gpu = byNvml(index);
    connected = gpu.displayConnected;
    return gpu.displayModeFails ? 3 : 0;
  }

  int nvmlDriverVersion(std::string& version) override
  {
    if (nvmlOpen == 0 || !nvmlVersion)
      return 1;
    version = *nvmlVersion;
    return 0;
  }

  int nvmlShutdown() override
  {
    if (nvmlOpen == 0)
      return 1;
    --nvmlOpen;
    return nvmlShutdownStatus;
  }

  bool nvapiLoad() override
  {
    if (onDriverQuestion)
      onDriverQuestion();
    return !nvapiMissing;
  }

  int nvapiInitialise() override
  {
    if (nvapiInitStatus == 0)
      ++nvapiOpen;
    return nvapiInitStatus;
  }

  int nvapiDriverVersion(unsigned& version) override
  {
    if (nvapiVersionStatus == 0)
      version = driver;
    return nvapiVersionStatus;
  }

  int nvapiUtilisation(const PciAddress& device, unsigned& percent) override
  {
    for (const InventedGpu& gpu : gpus)
      if (gpu.pci == device)
      {
        percent = gpu.utilisation.value_or(0);
        return gpu.utilisationFails ? -1 : gpu.utilisation ? 0 : nvapiNotSupported;
      }
    return -1;
  }

  [[nodiscard]] std::string nvapiErrorText(int code) override { return "NVAPI_INVENTED " + std::to_string(code); }

  void nvapiUnload() override { --nvapiOpen; }

  [[nodiscard]] bool nvmlStandsInForNvapi() const override { return linuxDriver; }

private:
  [[nodiscard]] const InventedGpu& at(int device) const { return gpus.at(static_cast<std::size_t>(device)); }
  [[nodiscard]] const InventedGpu& byNvml(unsigned index) const
  {
    return nvmlOrder ? at(nvmlOrder->at(index)) : gpus.at(index);
  }
};

// `count` good devices on buses of their own.
inline InventedMachine machineWith(int count)
{
  InventedMachine machine;
  for (int i = 0; i < count; ++i)
    machine.gpus.push_back({.name = "GPU-" + std::to_string(i), .pci = {.domain = 0, .bus = 10 + i, .device = 0}});
  return machine;
}

}  // namespace morvellan::gpu
