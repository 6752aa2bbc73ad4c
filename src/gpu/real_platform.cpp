// NVML and NVAPI by the functions that their vendor publishes, declared here as far as they are used.
// Sources: "NVML API Reference Guide" and "NVAPI Reference Documentation" (interface ids of the published open
// headers).
#include "gpu/real_platform.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <span>

namespace morvellan::gpu
{
namespace
{

constexpr int cudaErrorNoDevice = 100;
constexpr int cudaErrorInvalidDevice = 101;
constexpr int nvmlUninitialized = 1;
constexpr int nvmlLibraryNotFound = 12;
constexpr int nvmlFunctionNotFound = 13;
constexpr int nvapiError = -1;
constexpr int nvapiLibraryNotFound = -2;

// nvmlPciInfo_t of the _v3 queries.
struct NvmlPciRecord
{
  std::array<char, 16> busIdLegacy;
  std::uint32_t domain;
  std::uint32_t bus;
  std::uint32_t device;
  std::uint32_t pciDeviceId;
  std::uint32_t pciSubSystemId;
  std::array<char, 32> busId;
};
static_assert(sizeof(NvmlPciRecord) == 68);

// NV_GPU_DYNAMIC_PSTATES_INFO_EX, version 1; the first entry is the graphics engine.
struct NvapiUtilisations
{
  struct Entry
  {
    std::uint32_t present;  // bit 0
    std::uint32_t percentage;
  };
  std::uint32_t version = sizeof(NvapiUtilisations) | (1U << 16);
  std::uint32_t flags = 0;
  std::array<Entry, 8> entries = {};
};
static_assert(sizeof(NvapiUtilisations) == 72);

constexpr std::size_t nvapiMostGpus = 64;
constexpr std::size_t nvapiShortString = 64;

std::string textOf(std::span<const char> field)
{
  return {field.data(), strnlen(field.data(), field.size())};
}

}  // namespace

struct RealPlatform::Nvml
{
  explicit Nvml(DynamicLibrary from)
      : library(std::move(from)), init(library.function<int()>("nvmlInit_v2")),
        shutdown(library.function<int()>("nvmlShutdown")),
        deviceCount(library.function<int(unsigned*)>("nvmlDeviceGetCount_v2")),
        handleByIndex(library.function<int(unsigned, void**)>("nvmlDeviceGetHandleByIndex_v2")),
        pciInfo(library.function<int(void*, NvmlPciRecord*)>("nvmlDeviceGetPciInfo_v3")),
        displayMode(library.function<int(void*, int*)>("nvmlDeviceGetDisplayMode")),
        driverVersion(library.function<int(char*, unsigned)>("nvmlSystemGetDriverVersion"))
  {
  }

  DynamicLibrary library;
  int (*init)();
  int (*shutdown)();
  int (*deviceCount)(unsigned*);
  int (*handleByIndex)(unsigned, void**);
  int (*pciInfo)(void*, NvmlPciRecord*);
  int (*displayMode)(void*, int*);
  int (*driverVersion)(char*, unsigned);
};

struct RealPlatform::Nvapi
{
  explicit Nvapi(DynamicLibrary from)
      : library(std::move(from)), queryInterface(library.function<void*(std::uint32_t)>("nvapi_QueryInterface")),
        initialise(byId<int()>(0x0150E828)), unload(byId<int()>(0xD22BDD7E)),
        errorMessage(byId<int(int, char*)>(0x6C2D048C)), driverAndBranch(byId<int(std::uint32_t*, char*)>(0x2926AAAD)),
        enumeratePhysicalGpus(byId<int(void**, std::uint32_t*)>(0xE5AC921F)),
        busId(byId<int(void*, std::uint32_t*)>(0x1BE0B8E5)),
        utilisations(byId<int(void*, NvapiUtilisations*)>(0x60DED2ED))
  {
  }

  template <typename Function>
  Function* byId(std::uint32_t id) const
  {
    return queryInterface != nullptr ? reinterpret_cast<Function*>(queryInterface(id)) : nullptr;
  }

  // NVAPI knows no PCI domain; the bus tells the GPUs of one machine apart as far as it can.
  int gpuOnBus(int bus, void*& gpu) const
  {
    if (enumeratePhysicalGpus == nullptr || busId == nullptr)
      return nvapiNoImplementation;
    std::array<void*, nvapiMostGpus> gpus{};
    std::uint32_t count = 0;
    if (const int status = enumeratePhysicalGpus(gpus.data(), &count); status != 0)
      return status;
    for (void* candidate : std::span<void*>(gpus).first(std::min<std::size_t>(count, gpus.size())))
    {
      std::uint32_t found = 0;
      if (busId(candidate, &found) != 0 || static_cast<int>(found) != bus)
        continue;
      gpu = candidate;
      return 0;
    }
    return nvapiError;
  }

  DynamicLibrary library;
  void* (*queryInterface)(std::uint32_t);
  int (*initialise)();
  int (*unload)();
  int (*errorMessage)(int, char*);
  int (*driverAndBranch)(std::uint32_t*, char*);
  int (*enumeratePhysicalGpus)(void**, std::uint32_t*);
  int (*busId)(void*, std::uint32_t*);
  int (*utilisations)(void*, NvapiUtilisations*);
};

RealPlatform::RealPlatform(const device::CudaQueries* cuda, DriverLibraries libraries)
    : cuda_(cuda), libraries_(std::move(libraries))
{
}

RealPlatform::~RealPlatform() = default;

int RealPlatform::cudaDeviceCount(int& count)
{
  if (cuda_ != nullptr)
    return cuda_->deviceCount(count);
  count = 0;
  return 0;
}

int RealPlatform::cudaAttribute(int attribute, int device, int& value)
{
  return cuda_ != nullptr ? cuda_->attribute(attribute, device, value) : cudaErrorInvalidDevice;
}

int RealPlatform::cudaProperties(int device, CudaDeviceProperties& properties)
{
  return cuda_ != nullptr ? cuda_->properties(device, properties) : cudaErrorInvalidDevice;
}

int RealPlatform::cudaCanAccessPeer(int device, int peer, bool& can)
{
  return cuda_ != nullptr ? cuda_->canAccessPeer(device, peer, can) : cudaErrorInvalidDevice;
}

int RealPlatform::cudaDriverVersion(int& version)
{
  return cuda_ != nullptr ? cuda_->driverVersion(version) : cudaErrorNoDevice;
}

int RealPlatform::cudaRuntimeVersion(int& version)
{
  return cuda_ != nullptr ? cuda_->runtimeVersion(version) : cudaErrorNoDevice;
}

std::string RealPlatform::cudaErrorText(int code)
{
  return cuda_ != nullptr ? cuda_->errorText(code) : "this build holds no CUDA engine";
}

int RealPlatform::nvmlInit()
{
  const std::lock_guard lock(loading_);
  if (!nvml_)
  {
    DynamicLibrary library = DynamicLibrary::open(libraries_.nvml);
    if (!library)
      return nvmlLibraryNotFound;
    nvml_ = std::make_unique<const Nvml>(std::move(library));
  }
  return nvml_->init != nullptr ? nvml_->init() : nvmlFunctionNotFound;
}

int RealPlatform::nvmlDeviceCount(unsigned& count)
{
  if (!nvml_)
    return nvmlUninitialized;
  return nvml_->deviceCount != nullptr ? nvml_->deviceCount(&count) : nvmlFunctionNotFound;
}

int RealPlatform::nvmlPciInfo(unsigned index, NvmlPciInfo& info)
{
  if (!nvml_)
    return nvmlUninitialized;
  if (nvml_->handleByIndex == nullptr || nvml_->pciInfo == nullptr)
    return nvmlFunctionNotFound;
  void* handle = nullptr;
  if (const int status = nvml_->handleByIndex(index, &handle); status != 0)
    return status;
  NvmlPciRecord record{};
  if (const int status = nvml_->pciInfo(handle, &record); status != 0)
    return status;
  info = {.address = {.domain = static_cast<int>(record.domain),
                      .bus = static_cast<int>(record.bus),
                      .device = static_cast<int>(record.device)},
          .busId = textOf(record.busId)};
  return 0;
}

int RealPlatform::nvmlDisplayMode(unsigned index, bool& connected)
{
  if (!nvml_)
    return nvmlUninitialized;
  if (nvml_->handleByIndex == nullptr || nvml_->displayMode == nullptr)
    return nvmlFunctionNotFound;
  void* handle = nullptr;
  if (const int status = nvml_->handleByIndex(index, &handle); status != 0)
    return status;
  int mode = 0;
  const int status = nvml_->displayMode(handle, &mode);
  if (status == 0)
    connected = mode != 0;
  return status;
}

int RealPlatform::nvmlDriverVersion(std::string& version)
{
  if (!nvml_)
    return nvmlUninitialized;
  if (nvml_->driverVersion == nullptr)
    return nvmlFunctionNotFound;
  std::array<char, 80> text{};  // NVML_SYSTEM_DRIVER_VERSION_BUFFER_SIZE
  const int status = nvml_->driverVersion(text.data(), static_cast<unsigned>(text.size()));
  if (status == 0)
    version = textOf(text);
  return status;
}

int RealPlatform::nvmlShutdown()
{
  if (!nvml_)
    return nvmlUninitialized;
  return nvml_->shutdown != nullptr ? nvml_->shutdown() : nvmlFunctionNotFound;
}

bool RealPlatform::nvapiLoad()
{
  const std::lock_guard lock(loading_);
  if (!nvapi_)
  {
    DynamicLibrary library = DynamicLibrary::open(libraries_.nvapi);
    if (!library)
      return false;
    nvapi_ = std::make_unique<const Nvapi>(std::move(library));
  }
  return nvapi_->queryInterface != nullptr;
}

int RealPlatform::nvapiInitialise()
{
  if (!nvapi_)
    return nvapiLibraryNotFound;
  return nvapi_->initialise != nullptr ? nvapi_->initialise() : nvapiNoImplementation;
}

int RealPlatform::nvapiDriverVersion(unsigned& version)
{
  if (!nvapi_)
    return nvapiLibraryNotFound;
  if (nvapi_->driverAndBranch == nullptr)
    return nvapiNoImplementation;
  std::uint32_t number = 0;
  std::array<char, nvapiShortString> branch{};
  const int status = nvapi_->driverAndBranch(&number, branch.data());
  if (status == 0)
    version = number;
  return status;
}

int RealPlatform::nvapiUtilisation(const PciAddress& device, unsigned& percent)
{
  if (!nvapi_)
    return nvapiLibraryNotFound;
  if (nvapi_->utilisations == nullptr)
    return nvapiNoImplementation;
  void* gpu = nullptr;
  if (const int status = nvapi_->gpuOnBus(device.bus, gpu); status != 0)
    return status;
  NvapiUtilisations utilisations;
  if (const int status = nvapi_->utilisations(gpu, &utilisations); status != 0)
    return status;
  if ((utilisations.entries[0].present & 1U) == 0)
    return nvapiNotSupported;
  percent = utilisations.entries[0].percentage;
  return 0;
}

std::string RealPlatform::nvapiErrorText(int code)
{
  std::array<char, nvapiShortString> text{};
  if (nvapi_ && nvapi_->errorMessage != nullptr && nvapi_->errorMessage(code, text.data()) == 0)
    return textOf(text);
  return std::to_string(code);
}

void RealPlatform::nvapiUnload()
{
  if (nvapi_ && nvapi_->unload != nullptr)
    nvapi_->unload();
}

GpuPlatform& machinePlatform()
{
  static RealPlatform platform(device::cudaQueries(), {});
  return platform;
}

}  // namespace morvellan::gpu
