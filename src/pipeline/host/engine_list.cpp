// The engines that this binary was built with. Only what links the engines' objects may use this list.
#include <array>
#include <optional>

#include <tbb/global_control.h>

#include "device/host/cpu_level.h"
#include "device/host/device_choice.h"
#include "pipeline/host/engine.h"

namespace morvellan
{

namespace cpu_v2
{
extern const Engine engine;
}
namespace cpu_v3
{
extern const Engine engine;
}
namespace cpu_v4
{
extern const Engine engine;
}
#ifdef MORVELLAN_HAS_CUDA
namespace cuda
{
extern const Engine engine;
}
#endif

std::span<const Engine* const> engines()
{
  static const std::array all{&cpu_v2::engine, &cpu_v3::engine, &cpu_v4::engine,
#ifdef MORVELLAN_HAS_CUDA
                              &cuda::engine
#endif
  };
  return all;
}

const Engine* findEngine(std::string_view name)
{
  for (const Engine* engine : engines())
    if (engine->name == name)
      return engine;
  return nullptr;
}

namespace
{

// For the life of the process.
void limitThreads()
{
  static std::optional<tbb::global_control> limit;
  if (const std::optional<int> threads = device::threadLimit())
    limit.emplace(tbb::global_control::max_allowed_parallelism, static_cast<size_t>(*threads));
}

const Engine* chooseEngine()
{
  limitThreads();
  const device::DeviceChoice choice = device::deviceChoice();
  if (choice.kind != device::DeviceKind::software)
    return findEngine("cuda");
  const Engine* engine = findEngine(device::engineName(device::chosenCpuLevel().level));
  if (engine)
    engine->setSoftwareDevices(choice.softwareDevices, choice.peerAccess);
  return engine;
}

}  // namespace

const Engine* renderingEngine()
{
  static const Engine* const engine = chooseEngine();
  return engine;
}

}  // namespace morvellan
