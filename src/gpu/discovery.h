// Finds the usable devices, judges the driver, and turns the stored choice into the device numbers of a frame.
// Discovery runs once per process; the driver check and the selection run for each instance.
#pragma once

#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "device/host/device_choice.h"
#include "gpu/gpu_platform.h"

namespace morvellan::gpu
{

enum class DiscoveryCode
{
  found = 1,
  none = 0,
  countFailed = -1,
  nvmlInitFailed = -2,
  allDeficient = -3,
  nvmlShutdownFailed = -5
};

struct GpuDevice
{
  int index = 0;  // CUDA's number of the device, or the software device's
  PciAddress pci;
  std::string name = "GPU Device name N/A";
  std::string displayState = "Display connection status N/A";
  std::string busUuid = "GPU PCI Bus UUID N/A";
};

struct Discovery
{
  DiscoveryCode code = DiscoveryCode::none;
  bool software = false;              // the devices are this machine's processors
  int deviceCount = 0;                // as CUDA counts them
  std::vector<GpuDevice> devices;     // the usable ones, in CUDA's order
  std::vector<std::string> warnings;  // about MORVELLAN_DEVICE and MORVELLAN_CPU_LEVEL; usually none

  [[nodiscard]] int usableCount() const { return static_cast<int>(devices.size()); }
};

[[nodiscard]] Discovery discoverGpus(GpuPlatform& platform);
[[nodiscard]] Discovery discoverSoftware(int devices, int threads, const device::CpuLevelChoice& level);

// What `choice` asks for: GPUs, or software devices at the process's CPU level.
[[nodiscard]] Discovery discover(GpuPlatform& platform, const device::DeviceChoice& choice);

// The process's discovery on the real machine, made at the first call; not to be called from a static initialiser.
[[nodiscard]] const Discovery& processDiscovery();

// The error that an instance shows at construction; empty for `found`.
[[nodiscard]] std::string_view discoveryMessage(DiscoveryCode code);

struct DriverCheck
{
  bool ready = false;   // `gpuReady`
  std::string message;  // empty when ready
};

// To be asked on `found` only. Software devices have no driver and are ready.
[[nodiscard]] DriverCheck checkDriver(GpuPlatform& platform, const Discovery& discovery);

// The device fields of a frame. A device number that the row leaves open repeats `gpuRed`.
struct Selection
{
  int gpuRed = 0;  // does everything but grain
  int gpuBlue = 0;
  int gpuGreen = 0;
  int gpuCount = 0;  // 0 to 3 devices that serve a frame
  int gpuSelection = 0;
  // Set when the stored choice pointed past the devices that exist: the file is to be rewritten with selection 0, and
  // this message to be shown.
  std::optional<std::string> revertMessage = {};
};

// `asked` is 0..3. Without devices the stored choice stays as it is.
[[nodiscard]] Selection selectDevices(std::span<const GpuDevice> devices, int asked);

// The four entries of the GPU list on the panel.
struct DeviceOption
{
  std::string label;
  std::string hint;
};
[[nodiscard]] std::array<DeviceOption, 4> deviceOptions(std::span<const GpuDevice> devices);

// What the user is told on choosing a slot, 0..3, that has no device.
[[nodiscard]] std::string unavailableSlotMessage(int slot);

}  // namespace morvellan::gpu
