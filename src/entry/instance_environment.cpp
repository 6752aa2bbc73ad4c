// The environment of ordinary instances.
#include "entry/instance_environment.h"

#include "files/config_folder.h"
#include "pipeline/host/engine.h"

namespace morvellan
{

namespace
{

// The engine's, so that a device copies the tables quickly.
TableMemory pinnedMemory()
{
  const Engine* engine = renderingEngine();
  return engine != nullptr ? TableMemory{.allocate = engine->allocatePinned, .release = engine->releasePinned}
                           : heapMemory();
}

}  // namespace

InstanceEnvironment processEnvironment()
{
  return {.discovery = gpu::processDiscovery(),
          .platform = gpu::machinePlatform(),
          .configFolder = files::configFolder(),
          .grainTableMemory = pinnedMemory()};
}

}  // namespace morvellan
