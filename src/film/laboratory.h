// The film laboratory: thirteen cycles of development over a whole frame, in which pixels share one tank of developer.
// It is the common head of all stages that hold the film; they go on from its exposure and density.
#pragma once

#include "device/queue.h"
#include "film/laboratory_process.h"

namespace morvellan::MORVELLAN_TARGET
{

// Memory of a run. Frames are width * height pixels of `channels` floats; planes have the padding of a Buffer.
struct LabFrame
{
  float* source;    // code values; a diffusion overwrites it
  float* second;    // another frame, which only a diffusion writes
  float* exposure;  // out: 3 floats a pixel, in [0, 469.799988 * 880.037292]
  float* density;   // out: 3 floats a pixel
  float* alpha;     // out: 1 float a pixel; not used with 3 channels
  int width, height, channels;
};

// What the stages after the laboratory multiply (density^2 * exposure) with.
inline constexpr float labOutputGain = 2058.0f;

// Develops a frame. Without diffusion the pixels' cycles run in registers with the tank's course solved for; a
// diffusion needs the cycles one by one. Launches are named after what they fuse: the first way shows as
// laboratory_sweep.
void laboratory(const Queue& queue, const LabFrame& frame, const LabSettings& settings);

// The same with one launch for each step of a cycle, which the other two are held against.
void laboratoryByKernels(const Queue& queue, const LabFrame& frame, const LabSettings& settings);

}  // namespace morvellan::MORVELLAN_TARGET
