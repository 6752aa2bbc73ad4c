// An engine: the kernels and pipelines of one target, behind a table of entry points. Which engines a binary holds is
// decided by the build, and which of them runs by the machine and the environment variable MORVELLAN_DEVICE.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

#include "pipeline/host/dispatch.h"
#include "pipeline/host/frame_params.h"

namespace morvellan
{

class Trace;

// One frame for a pipeline. Both images are host memory of frameWidth * frameHeight * channelCount floats, rows packed,
// bottom row first. They must not overlap.
struct RenderJob
{
  FrameRoute route;  // one of the seven pipelines
  const float* source;
  float* destination;
  FrameParams params;
  Trace* trace = nullptr;  // null: nobody listens
};

struct Engine
{
  std::string_view name;  // "cpu_v2", "cpu_v3", "cpu_v4", "cuda"

  // How many software devices the target has and whether they reach each other's memory; nothing on CUDA.
  void (*setSoftwareDevices)(int count, bool peerAccess);

  // Renders one frame and returns when the destination is filled. Throws std::bad_alloc when the frame's buffers can't
  // be had; what the destination then holds is undefined.
  void (*render)(const RenderJob& job);

  // Host memory that the target copies from quickly, page-locked on CUDA; null where it can't be had.
  void* (*allocatePinned)(std::size_t bytes);
  void (*releasePinned)(void* memory);
};

// Every engine of this binary, lowest CPU level first, cuda last.
std::span<const Engine* const> engines();

// The engine of that name, or null.
const Engine* findEngine(std::string_view name);

// The engine that renders in this process, by the environment as it was at the first call: a CPU engine of the chosen
// level where software devices are asked for, otherwise cuda; null where this binary or machine has none.
const Engine* renderingEngine();

}  // namespace morvellan
