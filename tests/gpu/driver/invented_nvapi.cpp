// A library with NVAPI's single export, for the test of the run-time loader: driver 527.41, one GPU on bus 0x65. The
// environment variable MORVELLAN_INVENTED_NVAPI names what is amiss with it.
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace
{

int gpu = 0;

bool isAmiss(const char* what)
{
  const char* amiss = std::getenv("MORVELLAN_INVENTED_NVAPI");
  return amiss != nullptr && std::strcmp(amiss, what) == 0;
}

int initialise()
{
  return isAmiss("initialisation fails") ? -6 : 0;
}

int unload()
{
  return 0;
}

int errorMessage(int code, char* text)
{
  std::strcpy(text, code == -6 ? "NVAPI_NVIDIA_DEVICE_NOT_FOUND" : "NVAPI_ERROR");
  return 0;
}

int driverAndBranch(std::uint32_t* version, char* branch)
{
  if (isAmiss("version fails"))
    return -1;
  *version = 52741;
  std::strcpy(branch, "r527_41");
  return 0;
}

int enumerate(void** gpus, std::uint32_t* count)
{
  gpus[0] = &gpu;
  *count = 1;
  return 0;
}

int busId(void* handle, std::uint32_t* bus)
{
  *bus = 0x65;
  return handle == &gpu ? 0 : -1;
}

int utilisations(void* handle, std::uint32_t* record)
{
  constexpr std::uint32_t versionOne = 72 | (1U << 16);
  if (handle != &gpu || record[0] != versionOne)
    return -9;
  record[2] = 1;
  record[3] = 42;
  return 0;
}

template <typename Function>
void* entry(Function* function)
{
  return reinterpret_cast<void*>(function);
}

}  // namespace

extern "C" [[gnu::visibility("default")]] void* nvapi_QueryInterface(std::uint32_t id)
{
  switch (id)
  {
  case 0x0150E828:
    return isAmiss("no initialisation") ? nullptr : entry(initialise);
  case 0xD22BDD7E:
    return entry(unload);
  case 0x6C2D048C:
    return entry(errorMessage);
  case 0x2926AAAD:
    return isAmiss("no version") ? nullptr : entry(driverAndBranch);
  case 0xE5AC921F:
    return entry(enumerate);
  case 0x1BE0B8E5:
    return entry(busId);
  case 0x60DED2ED:
    return entry(utilisations);
  default:
    return nullptr;
  }
}
