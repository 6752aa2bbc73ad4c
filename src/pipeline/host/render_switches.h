// The switches that decide whether a frame needs any work: the early return of a render and the answer to the identity
// question. The two tests differ on purpose: identity looks at the combined enhancer amounts and compares the size
// parameters directly.
#pragma once

#include "pipeline/host/frame_params.h"
#include "pipeline/host/parameter_values.h"

namespace morvellan
{

struct RenderSwitches
{
  bool soupBypass;
  bool printDisplayBypass;
  bool halationBypass;
  bool grainBypassed;  // by its switch, or with a master Size or Strength of 0
  bool pitchIdle;      // bypassed, or EnsemblePitch exactly at its neutral 3.0
  bool softClips;
  bool exposed;
};

RenderSwitches readSwitches(const ParameterValues& values);

// Nothing is switched on, no enhancer and no resize: the render returns with the output untouched.
// Reads enhancerMode and resizeMode, which must be captured by then.
bool leavesOutputUntouched(const RenderSwitches& switches, const FrameParams& params);

// The identity question, over the values at the time of the question: true when the source stands for the output.
bool isIdentity(const ParameterValues& values, bool gpuReady);

}  // namespace morvellan
