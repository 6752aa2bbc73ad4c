// The choice of the device that renders, made before the plug-in is loaded.
#pragma once

#include <filesystem>
#include <string>

#include "progress.h"

namespace morvellan::tool
{

// Sets MORVELLAN_DEVICE for a request of auto, cuda, cpu, cpu:N or host, and says which it is for auto.
// Throws RenderError where cuda was asked for and no GPU is usable.
void chooseDevice(const std::string& request, const std::filesystem::path& bundle, Progress& progress, Talk talk);

}  // namespace morvellan::tool
