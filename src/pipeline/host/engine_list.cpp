// The engines that this binary was built with. Only what links the engines' objects may use this list.
#include <optional>

#include <tbb/global_control.h>

#include "device/host/cpu_level.h"
#include "device/host/device_choice.h"
#include "pipeline/host/engine.h"

namespace morvellan
{

#include "built_engines.inc"

std::span<const Engine* const> engines()
{
  return builtEngines;
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
  if (const std::optional<int> threads = device::threadLimit().most)
    limit.emplace(tbb::global_control::max_allowed_parallelism, static_cast<size_t>(*threads));
}

// The engine of the level, or of the next lower one that the build holds.
const Engine* bestEngine(device::CpuLevel level)
{
  for (int at = static_cast<int>(level); at > static_cast<int>(device::CpuLevel::none); --at)
    if (const Engine* engine = findEngine(device::engineName(static_cast<device::CpuLevel>(at))))
      return engine;
  return nullptr;
}

const Engine* chooseEngine()
{
  limitThreads();
  const device::DeviceChoice choice = device::deviceChoice();
  if (choice.kind != device::DeviceKind::software)
    return findEngine("cuda");
  const Engine* engine = bestEngine(device::chosenCpuLevel().level);
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
