// The choice of a frame's pipeline.
#include "pipeline/host/dispatch.h"

namespace morvellan
{
namespace
{

// Nothing of the chain would change a pixel.
bool passesThrough(const FrameParams& params)
{
  const bool pitchIdle = params.pitchBypassed || params.ensemblePitchGain == 1.0f;
  return pitchIdle && params.soupBypassed && params.printBypassed && params.cameraSoftClipActive == 0 &&
         params.exposureValue == 0.0f && params.halationBypassed;
}

FrameRoute enhancedRoute(int enhancerMode)
{
  switch (enhancerMode)
  {
  case 1:
    return FrameRoute::SameSizeTexturesPipeline;
  case 2:
    return FrameRoute::SameSizeDetailsPipeline;
  default:
    return FrameRoute::untouched;
  }
}

}  // namespace

FrameRoute dispatch(const FrameParams& params)
{
  if (params.resizeMode == 1)
    return params.enhancerMode == 2 ? FrameRoute::EnlargeDetailsPipeline : FrameRoute::EnlargeEnhancedPipeline;
  if (params.resizeMode == 2)
    return FrameRoute::ReducePipeline;
  // A NaN amount counts as not 0.
  if (params.enhancerHorizontal != 0.0f || params.enhancerVertical != 0.0f)
    return enhancedRoute(params.enhancerMode);
  if (!params.grainBypassed && params.grainChannelCount != 0)
    return FrameRoute::SameSizeGrainPipeline;
  return passesThrough(params) ? FrameRoute::copy : FrameRoute::SameSizeLookPipeline;
}

}  // namespace morvellan
