// Frames for the tests of the plan, built by the fields that it reads.
#pragma once

#include <string>
#include <vector>

#include "pipeline/host/plan.h"

namespace morvellan::test
{

// A frame with everything off.
inline FrameParams neutral(int inputGamut = 47, int channels = 4)
{
  FrameParams p{};
  p.inputGamut = inputGamut;
  p.channelCount = channels;
  p.frameWidth = p.sourceWidth = p.targetWidth = 64;
  p.frameHeight = p.sourceHeight = p.targetHeight = 32;
  p.pitchBypassed = p.soupBypassed = p.printBypassed = p.halationBypassed = p.grainBypassed = true;
  p.ensemblePitchGain = 1.0f;
  p.exposureKind = 2;
  return p;
}

inline void withPitch(FrameParams& p)
{
  p.pitchBypassed = false;
  p.ensemblePitchGain = 1.2f;
}

inline void withGrain(FrameParams& p)
{
  p.grainBypassed = false;
  p.grainChannelCount = 3;
  for (int& on : p.grainChannelOn)
    on = 1;
}

inline FrameRoute routeOf(const FrameParams& p)
{
  return dispatch(p);
}

inline std::vector<std::string> kernels(const FrameParams& p)
{
  std::vector<std::string> names;
  for (const Step& step : planFrame(routeOf(p), p))
    if (!step.kernel.empty())
      names.push_back(step.kernel);
  return names;
}

using Names = std::vector<std::string>;

}  // namespace morvellan::test
