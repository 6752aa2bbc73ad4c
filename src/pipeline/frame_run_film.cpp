// The film stages of a frame: halation, the pitch bands, laboratory, Soup, print, and the rest of the look after grain.
#include <utility>

#include "film/halation.h"
#include "film/pitch.h"
#include "pipeline/frame_run.h"

namespace morvellan::MORVELLAN_TARGET
{

void FrameRun::halation()
{
  MORVELLAN_TARGET::halation(
      queue, frameA.data(), frameB.data(), width, height, 4,
      {.breadth = params.halationBreadth,
       .saturation = params.halationSaturation,
       .amount = {params.halationCyanRed, params.halationMagentaGreen, params.halationYellowBlue},
       .keep = {params.halationKeepRed, params.halationKeepGreen, params.halationKeepBlue},
       .inputGamut = params.inputGamut});
}

void FrameRun::bands(const Step& step)
{
  scratchPlane = Buffer<float>(pixelCount());
  const PitchGains gains{params.sopranoPitchGain, params.mezzoSopranoPitchGain, params.altoPitchGain,
                         params.tenorPitchGain,   params.baritonePitchGain,     params.bassPitchGain};
  const float* result = pitchBands(queue, frame(step.from), frame(step.to), scratchPlane.data(), width, height, gains);
  // The plan has the result in the second frame; the cascade leaves it where it is cheapest.
  if (result == frame(step.from))
    std::swap(frameA, frameB);
  scratchPlane.reset();
}

}  // namespace morvellan::MORVELLAN_TARGET
