// The environment of ordinary instances.
#include "entry/instance_environment.h"

#include "files/config_folder.h"

namespace morvellan
{

InstanceEnvironment processEnvironment()
{
  return {
      .discovery = gpu::processDiscovery(), .platform = gpu::machinePlatform(), .configFolder = files::configFolder()};
}

}  // namespace morvellan
