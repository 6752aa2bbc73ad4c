// Enumeration of the usable devices, and the messages of its outcomes.
#include "gpu/discovery.h"

#include <fmt/format.h>

namespace morvellan::gpu
{
namespace
{

constexpr int computeModeProhibited = 2;
constexpr int capabilityLeast = 61;  // 10 * major + minor: 6.1

// A device that can't be asked counts as one that fails.
bool isUsable(GpuPlatform& platform, int device)
{
  int mode = 0;
  int major = 0;
  int minor = 0;
  if (platform.cudaAttribute(device::cudaComputeModeAttribute, device, mode) != 0 || mode == computeModeProhibited)
    return false;
  if (platform.cudaAttribute(device::cudaCapabilityMajorAttribute, device, major) != 0 ||
      platform.cudaAttribute(device::cudaCapabilityMinorAttribute, device, minor) != 0)
    return false;
  return 10 * major + minor >= capabilityLeast;
}

// CUDA and NVML number the devices differently; the place on the bus is what they share.
void describeByNvml(GpuPlatform& platform, unsigned nvmlCount, GpuDevice& record)
{
  for (unsigned index = 0; index < nvmlCount; ++index)
  {
    NvmlPciInfo info;
    if (platform.nvmlPciInfo(index, info) != 0 || info.address != record.pci)
      continue;
    if (!info.busId.empty())
      record.busUuid = info.busId;
    bool connected = false;
    if (platform.nvmlDisplayMode(index, connected) == 0)
      record.displayState = connected ? "Display connected" : "No display connected";
    return;
  }
}

std::optional<GpuDevice> record(GpuPlatform& platform, unsigned nvmlCount, int device)
{
  CudaDeviceProperties properties;
  if (!isUsable(platform, device) || platform.cudaProperties(device, properties) != 0)
    return std::nullopt;
  GpuDevice record{.index = device, .pci = properties.pci};
  if (!properties.name.empty())
    record.name = properties.name;
  describeByNvml(platform, nvmlCount, record);
  return record;
}

// What lies between the initialisation of NVML and its shutdown.
Discovery enumerate(GpuPlatform& platform)
{
  Discovery discovery;
  unsigned nvmlCount = 0;
  if (platform.nvmlDeviceCount(nvmlCount) != 0)
  {
    discovery.code = DiscoveryCode::countFailed;
    return discovery;
  }
  if (nvmlCount == 0)
    return discovery;
  if (platform.cudaDeviceCount(discovery.deviceCount) != 0)
  {
    discovery.code = DiscoveryCode::countFailed;
    return discovery;
  }
  if (discovery.deviceCount <= 0)
    return discovery;
  for (int device = 0; device < discovery.deviceCount; ++device)
    if (std::optional<GpuDevice> usable = record(platform, nvmlCount, device))
      discovery.devices.push_back(std::move(*usable));
  discovery.code = discovery.devices.empty() ? DiscoveryCode::allDeficient : DiscoveryCode::found;
  return discovery;
}

}  // namespace

Discovery discoverGpus(GpuPlatform& platform)
{
  Discovery discovery;
  // Without the cuda engine no driver is looked for: nothing it could say would make a device usable.
  if (!platform.hasCuda())
    return discovery;
  if (platform.nvmlInit() != 0)
  {
    discovery.code = DiscoveryCode::nvmlInitFailed;
    return discovery;
  }
  discovery = enumerate(platform);
  const bool enumerated = discovery.code == DiscoveryCode::found || discovery.code == DiscoveryCode::allDeficient;
  if (platform.nvmlShutdown() != 0 && enumerated)
    discovery.code = DiscoveryCode::nvmlShutdownFailed;
  return discovery;
}

Discovery discoverSoftware(int devices, int threads, const device::CpuLevelChoice& level)
{
  Discovery discovery;
  discovery.software = true;
  if (!level.warning.empty())
    discovery.warnings.push_back(level.warning);
  if (level.level == device::CpuLevel::none)
    return discovery;
  for (int index = 0; index < devices; ++index)
    discovery.devices.push_back({.index = index,
                                 .pci = {.device = index},
                                 .name = device::softwareDeviceName(threads, level.level),
                                 .displayState = "No display connected",
                                 .busUuid = fmt::format("CPU-{}", index)});
  discovery.deviceCount = discovery.usableCount();
  discovery.code = DiscoveryCode::found;
  return discovery;
}

Discovery discover(GpuPlatform& platform, const device::DeviceChoice& choice)
{
  if (choice.kind == device::DeviceKind::software)
  {
    Discovery discovery = discoverSoftware(choice.softwareDevices, device::processThreads(), device::chosenCpuLevel());
    if (const std::string warning = device::threadLimit().warning; !warning.empty())
      discovery.warnings.push_back(warning);
    return discovery;
  }
  Discovery discovery = discoverGpus(platform);
  if (!choice.warning.empty())
    discovery.warnings.push_back(choice.warning);
  return discovery;
}

const Discovery& processDiscovery()
{
  static const Discovery discovery = discover(machinePlatform(), device::deviceChoice());
  return discovery;
}

std::string_view discoveryMessage(DiscoveryCode code)
{
  switch (code)
  {
  case DiscoveryCode::found:
    break;
  case DiscoveryCode::none:
    return "Morvellan : Morvellan is unable to find a CUDA GPU capable device. PLACING MORVELLAN ON A NODE TREE / "
           "TIMELINE MAY CRASH NATRON";
  case DiscoveryCode::countFailed:
    return "Morvellan : Morvellan is unable to detect a CUDA GPU device. PLACING MORVELLAN ON A NODE TREE / TIMELINE "
           "MAY CRASH NATRON";
  case DiscoveryCode::nvmlInitFailed:
    return "Morvellan : Morvellan is unable to initialise nVidia NVML. PLACING MORVELLAN ON A NODE TREE / TIMELINE MAY "
           "CRASH NATRON";
  case DiscoveryCode::allDeficient:
    return "Morvellan : Morvellan found all GPUs to have processing deficiencies. PLACING MORVELLAN ON A NODE TREE / "
           "TIMELINE MAY CRASH NATRON";
  case DiscoveryCode::nvmlShutdownFailed:
    return "Morvellan : Morvellan is unable to shutdown nVidia NVML. PLACING MORVELLAN ON A NODE TREE / TIMELINE MAY "
           "CRASH NATRON";
  }
  return {};
}

}  // namespace morvellan::gpu
