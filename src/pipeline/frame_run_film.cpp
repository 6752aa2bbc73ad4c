// The film stages of a frame: halation, the pitch bands, laboratory, Soup, print, and the rest of the look after grain.
#include <utility>

#include "device/launch.h"
#include "film/grain_expand.h"
#include "film/halation.h"
#include "film/laboratory.h"
#include "film/laboratory_kernels.h"
#include "film/pitch.h"
#include "pipeline/frame_run.h"
#include "pipeline/look_settings.h"

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

LookPlanes FrameRun::lookPlanes() const
{
  return {planes[0].data(), planes[1].data(), planes[2].data(), fourChannels() ? planes[3].data() : nullptr};
}

// The laboratory, or the decoding alone where the Soup is bypassed. Its planes live until the Soup has read them.
void FrameRun::lab(const Step& step)
{
  if (step.to != Slot::None)
  {
    launch(queue, pixels(width, height),
           film_lab_init_pfe{.buffer = frame(step.from),
                             .width = width,
                             .height = height,
                             .channels = 4,
                             .entry = makeFilmEntry(params.inputGamut)});
    return;
  }
  exposure = Buffer<float>(pixelCount() * 3);
  density = Buffer<float>(pixelCount() * 3);
  if (!planes[3])
    planes[3] = Buffer<float>(pixelCount());
  const bool sourceIsA = step.from == Slot::FrameA;
  laboratory(queue,
             {.source = frame(step.from),
              .second = sourceIsA ? frameB.data() : frameA.data(),
              .exposure = exposure.data(),
              .density = density.data(),
              .alpha = planes[3].data(),
              .width = width,
              .height = height,
              .channels = 4},
             labSettings(params));
}

void FrameRun::soup(const Step& step)
{
  if (step.to == Slot::Planes)
    needPlanes();
  SoupArguments arguments{.exposure = exposure.data(),
                          .image = frame(step.to),
                          .planes = lookPlanes(),
                          .density = density.data(),
                          .width = width,
                          .height = height,
                          .channels = 4,
                          .look = soupLook(params),
                          .exit = makeSoupExit(params.printBypassed, params.inputGamut)};
  arguments.planes.alpha = planes[3].data();
  launchSoup(queue, step.kernel, arguments);
  exposure.reset();
  density.reset();
}

void FrameRun::print(const Step& step)
{
  if (step.to == Slot::Planes)
    needPlanes();
  launchPrint(queue, step.kernel,
              {.image = frame(step.from),
               .planes = lookPlanes(),
               .width = width,
               .height = height,
               .channels = 4,
               .look = printLook(params)});
}

void FrameRun::expand(const Step& step)
{
  const ExpandFrames frames{
      .frame = frame(step.to), .planes = lookPlanes(), .width = width, .height = height, .channels = step.channels};
  if (params.printBypassed)
    launchSoupExpand(queue, step.kernel, frames, soupLook(params), makeSoupExit(true, params.inputGamut));
  else
    launchDisplayExpand(queue, step.kernel, frames, printLook(params), params.printBleachOn);
}

}  // namespace morvellan::MORVELLAN_TARGET
