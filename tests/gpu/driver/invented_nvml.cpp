// A library with NVML's exports and two invented devices, for the test of the run-time loader.
#include <cstdint>
#include <cstring>

namespace
{

struct Device
{
  std::uint32_t domain;
  std::uint32_t bus;
  std::uint32_t device;
  int display;
  const char* busId;
};
Device devices[] = {{0, 0x65, 0, 1, "00000000:65:00.0"}, {1, 0x17, 2, 0, "00000001:17:02.0"}};
int open = 0;

}  // namespace

extern "C"
{
  // nvmlPciInfo_t, as NVML documents it.
  struct PciInfo
  {
    char legacy[16];
    std::uint32_t domain, bus, device, deviceId, subSystemId;
    char busId[32];
  };

  [[gnu::visibility("default")]] int nvmlInit_v2()
  {
    ++open;
    return 0;
  }
  [[gnu::visibility("default")]] int nvmlShutdown()
  {
    return open-- > 0 ? 0 : 1;
  }
  [[gnu::visibility("default")]] int nvmlDeviceGetCount_v2(unsigned* count)
  {
    *count = 2;
    return open > 0 ? 0 : 1;
  }
  [[gnu::visibility("default")]] int nvmlDeviceGetHandleByIndex_v2(unsigned index, void** handle)
  {
    if (index >= 2)
      return 2;
    *handle = &devices[index];
    return 0;
  }
  [[gnu::visibility("default")]] int nvmlDeviceGetPciInfo_v3(void* handle, PciInfo* info)
  {
    const auto* device = static_cast<const Device*>(handle);
    std::memset(info, 0xAB, sizeof *info);
    info->domain = device->domain;
    info->bus = device->bus;
    info->device = device->device;
    std::strcpy(info->busId, device->busId);
    return 0;
  }
  [[gnu::visibility("default")]] int nvmlDeviceGetDisplayMode(void* handle, int* mode)
  {
    *mode = static_cast<const Device*>(handle)->display;
    return 0;
  }
  [[gnu::visibility("default")]] int nvmlSystemGetDriverVersion(char* text, unsigned length)
  {
    std::strncpy(text, "580.65.06", length);
    return 0;
  }
}
