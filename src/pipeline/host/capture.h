// The capture of a frame: parameters in the user's units become FrameParams in the kernels' units, and the route of the
// frame is chosen. Below this nobody sees a parameter.
#pragma once

#include "pipeline/host/dispatch.h"
#include "pipeline/host/frame_params.h"
#include "pipeline/host/frame_sizes.h"
#include "pipeline/host/grain_tables.h"
#include "pipeline/host/parameter_values.h"

namespace morvellan
{

// What a render call knows of its images.
struct FrameRequest
{
  int width;  // of the output image, pixels
  int height;
  int channels;  // 3 or 4
  double time;   // in frames
};

struct CaptureOutcome
{
  FrameRoute route;
  SizeCorrections corrections;  // size parameters that the caller writes back to the host
};

// Fills params for one frame and chooses its route. Reads gpuReady, gpuCount, grainLevels and the two resolution
// choices, which others keep; with gpuReady 0 the route is a copy and nothing else is read. Blocks that the switches
// turn off keep the values of an earlier frame. The addresses of the grain tables in params are those of tables, which
// must outlive the frame's rendering.
CaptureOutcome captureFrame(const ParameterValues& values, const FrameRequest& request, FrameParams& params,
                            GrainTables& tables);

// What a new instance puts into its zeroed block from the present values: encoding and exposure, the resolution
// choices, the enhancer, the bypass flags, and neutral gains.
void seedFrameParams(const ParameterValues& values, FrameParams& params);

}  // namespace morvellan
