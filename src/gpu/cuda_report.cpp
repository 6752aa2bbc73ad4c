// `CudaInfo`: what NVML, CUDA and NVAPI say of the machine, line by line.
#include <string_view>
#include <vector>

#include <fmt/format.h>

#include "gpu/driver_version.h"
#include "gpu/reports.h"

namespace morvellan::gpu
{
namespace
{

// The report's own marks: one ends a section, the other a line within it.
constexpr std::string_view sectionEnd = "\n\n.-";
constexpr std::string_view lineEnd = "\n.-";

constexpr int capabilityLeast = 61;

std::string_view computeModeWord(int mode)
{
  switch (mode)
  {
  case 0:
    return "Default.-";
  case 1:
    return "Exclusive.-";
  case 2:
    return "Prohibited.-";
  case 3:
    return "Exclusive Process.-";
  default:
    return "Unknown.-";
  }
}

// FP32 cores of one multiprocessor, from the vendor's "CUDA C++ Programming Guide", table of arithmetic throughput.
int coresPerMultiprocessor(int major, int minor)
{
  switch (major)
  {
  case 3:
    return 192;
  case 6:
    return minor == 0 ? 64 : 128;
  case 7:
    return 64;
  case 8:
    return minor == 0 ? 64 : 128;
  default:
    return 128;
  }
}

// Collects the report; a CUDA call that fails leaves its expression and the reason.
class Report
{
public:
  explicit Report(GpuPlatform& from) : platform_(from) {}

  std::string compose()
  {
    const bool nvmlHasDevices = countByNvml();
    const bool cudaHasDevices = countByCuda();
    const bool nvapi = startNvapi();
    if (nvmlHasDevices && cudaHasDevices)
    {
      describeDevices(nvapi);
      describePeers();
    }
    if (nvapi)
      platform_.nvapiUnload();
    if (const int status = platform_.nvmlShutdown(); status != 0)
      text_ += fmt::format("\nMorvellan : Failed to shutdown the NVML library. Error : {}", status);
    return std::move(text_);
  }

private:
  bool countByNvml()
  {
    if (platform_.nvmlInit() != 0)
      text_ += "\n    Morvellan : Failed to initialise nVidia's NVML library";
    unsigned count = 0;
    if (platform_.nvmlDeviceCount(count) != 0)
      text_ += "\n    Morvellan : Failed to retrieve CUDA devices through nVidia's NVML library";
    else if (count == 0)
      text_ += "\n    Morvellan : Failed to find any CUDA devices through nVidia's NVML library";
    return count > 0;
  }

  bool countByCuda()
  {
    if (const int status = platform_.cudaDeviceCount(count_); status != 0)
    {
      count_ = 0;
      text_ += fmt::format("\n    Morvellan : Failed to get the CUDA device count through nVidia's CUDA API. "
                           "cudaGetDeviceCount() returned : {}, {}",
                           status, platform_.cudaErrorText(status));
    }
    else if (count_ <= 0)
    {
      text_ += "\n    Morvellan : Found no available GPU device(s) that support CUDA";
    }
    return count_ > 0;
  }

  // Whether NVAPI is up.
  bool startNvapi()
  {
    const DriverAnswer answer = askDriverVersion(platform_);
    if (answer.version)
      text_ += fmt::format("\n    Morvellan : nVidia Graphics Driver ver : {}.{}{}", answer.version->major,
                           answer.version->minor, sectionEnd);
    else
      text_ += nvapiFailure(answer);
    return answer.nvapiIsUp();
  }

  std::string nvapiFailure(const DriverAnswer& answer)
  {
    switch (answer.failed)
    {
    case NvapiStep::find:
      return "\n    Morvellan : Failed to find nVidia's NVAPI Library";
    case NvapiStep::load:
      return fmt::format("\n    Morvellan : Failed to load nVidia's NVAPI Library. Error : {}",
                         platform_.nvapiErrorText(answer.status));
    case NvapiStep::version:
      return fmt::format("\n    Morvellan : Failed to retrieve the nVidia Graphics Driver version. Error : {}",
                         platform_.nvapiErrorText(answer.status));
    case NvapiStep::done:
      break;
    }
    return {};
  }

  void describeDevices(bool nvapi)
  {
    text_ += fmt::format("\n    Number of available CUDA GPUs : {}{}", count_, sectionEnd);
    int driver = 0;
    int runtime = 0;
    if (succeeded(platform_.cudaDriverVersion(driver), "cudaDriverGetVersion(&driverVersion)") &&
        succeeded(platform_.cudaRuntimeVersion(runtime), "cudaRuntimeGetVersion(&runtimeVersion)"))
      text_ += fmt::format("\n    CUDA - Driver ver : {}.{}, Runtime ver : {}.{}{}", driver / 1000, driver % 1000 / 10,
                           runtime / 1000, runtime % 1000 / 10, sectionEnd);
    names_.assign(static_cast<std::size_t>(count_), unnamed);
    for (int i = 0; i < count_; ++i)
      describeDevice(i, nvapi);
  }

  void describeDevice(int i, bool nvapi)
  {
    CudaDeviceProperties properties;
    if (!succeeded(platform_.cudaProperties(i, properties), "cudaGetDeviceProperties(&prop[i], i)"))
      return;
    names_[static_cast<std::size_t>(i)] = properties.name;
    int mode = -1;
    succeeded(platform_.cudaAttribute(device::cudaComputeModeAttribute, i, mode),
              "cudaDeviceGetAttribute(&computeMode, cudaDevAttrComputeMode, i)");
    const int major = properties.capabilityMajor;
    const int minor = properties.capabilityMinor;
    text_ += fmt::format("\n    GPU {}, {}, {}", i, properties.name, computeModeWord(mode));
    text_ += fmt::format("\n    CC Major.Minor : {}.{}", major, minor);
    if (10 * major + minor < capabilityLeast)
      text_ += fmt::format("\n    Morvellan requires CC 6.1 (Pascal), or higher. Found : {}.{}", major, minor);
    text_ += lineEnd;
    describeUtilisation(nvapi, properties.pci);
    const int cores = coresPerMultiprocessor(major, minor);
    text_ += fmt::format("\n    {} Multiprocessors (MP), {} Cores / MP, {} Total Cores{}", properties.multiprocessors,
                         cores, properties.multiprocessors * cores, lineEnd);
    text_ += fmt::format("\n    1D Textures : {}    , 2D Textures : {} x {}{}", properties.maxTexture1D,
                         properties.maxTexture2D[0], properties.maxTexture2D[1], lineEnd);
    text_ += fmt::format("\n    CUDA (deviceQuery) Device {}, PCIe: Domain {}:Bus {}:ID {} (Dec.)", i,
                         properties.pci.domain, properties.pci.bus, properties.pci.device);
    describeByNvml(i);
    text_ += fmt::format("\n    Compute Mode : {}", computeModeWord(mode));
    text_ += fmt::format("\n    Device Driver Mode : {}{}", properties.tccDriver ? "TCC" : "WDDM. - ", sectionEnd);
  }

  void describeUtilisation(bool nvapi, const PciAddress& pci)
  {
    unsigned percent = 0;
    const int status = nvapi ? platform_.nvapiUtilisation(pci, percent) : nvapiNotSupported;
    if (status == 0)
      text_ += fmt::format("\n    GPU Utilization : {} Percent{}", percent, lineEnd);
    else if (status == nvapiNoImplementation || status == nvapiNotSupported)
      text_ += "\n    GPU Utilization query unsupported";
    else
      text_ += "\n    Failed to get GPU Utilization info";
  }

  // NVML's own device of this number, which need not be CUDA's: the two lines side by side let the user match them.
  void describeByNvml(int i)
  {
    NvmlPciInfo info;
    if (platform_.nvmlPciInfo(static_cast<unsigned>(i), info) != 0)
      text_ += fmt::format("\n    Failed to get the PCI information of NVML (nVidia-smi) Device {}", i);
    else
      text_ += fmt::format("\n    NVML (nVidia-smi) Device {}, PCIe: Domain 0x{:04x}:Bus 0x{:02x}:ID 0x{:02x} (Hex.)",
                           i, info.address.domain, info.address.bus, info.address.device);
    text_ += lineEnd;
  }

  void describePeers()
  {
    for (int i = 0; i < count_; ++i)
      for (int j = 0; j < count_; ++j)
      {
        bool can = false;
        if (i == j || !succeeded(platform_.cudaCanAccessPeer(i, j, can),
                                 "cudaDeviceCanAccessPeer(&can_access_peer, gpuid[i], gpuid[j])"))
          continue;
        text_ += fmt::format("\n    Peer-to-Peer GPU access from : {} (Dev {}) to : {} (Dev {}) - {}{}",
                             names_[static_cast<std::size_t>(i)], i, names_[static_cast<std::size_t>(j)], j,
                             can ? "Yes" : "No", lineEnd);
      }
  }

  bool succeeded(int status, std::string_view expression)
  {
    if (status != 0)
      text_ += fmt::format("\n    {}, cuda_report.cpp : {}", expression, platform_.cudaErrorText(status));
    return status == 0;
  }

  static constexpr const char* unnamed = "GPU Device name N/A";

  GpuPlatform& platform_;
  int count_ = 0;
  std::vector<std::string> names_;
  std::string text_;
};

}  // namespace

std::string cudaInfoText(GpuPlatform& platform)
{
  return Report(platform).compose();
}

}  // namespace morvellan::gpu
