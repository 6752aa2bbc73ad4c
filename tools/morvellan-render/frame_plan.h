// Which file becomes which, at which time.
#pragma once

#include <filesystem>
#include <vector>

#include "options.h"

namespace morvellan::tool
{

struct FrameJob
{
  int time;
  std::filesystem::path input;
  std::filesystem::path output;
};

// The frames of a command line, in order; every input exists and every output's folder can be written.
// Throws UsageError or RenderError.
std::vector<FrameJob> planFrames(const Options& options);

}  // namespace morvellan::tool
