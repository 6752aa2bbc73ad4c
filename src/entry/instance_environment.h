// What an instance finds around it when it is made: the devices of the machine, the configuration file's folder, the
// memory for tables and the engine that renders. The process has one; tests make their own.
#pragma once

#include <string>

#include "entry/instance_tables.h"
#include "gpu/discovery.h"
#include "gpu/gpu_platform.h"

namespace morvellan
{

struct InstanceEnvironment
{
  const gpu::Discovery& discovery;
  gpu::GpuPlatform& platform;
  std::string configFolder;
  TableMemory productTableMemory = heapMemory();
  TableMemory grainTableMemory = heapMemory();
};

/// The process's own: the discovery made when the plug-in was loaded, the folder as the environment says now.
InstanceEnvironment processEnvironment();

}  // namespace morvellan
