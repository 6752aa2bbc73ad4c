// What a frame's settings call for: one of the seven pipelines, a plain copy, or nothing at all.
// The order of the tests is part of the behaviour: geometry first, then the enhancer, then grain.
#pragma once

#include "pipeline/host/frame_params.h"

namespace morvellan
{

enum class FrameRoute
{
  EnlargeEnhancedPipeline,
  EnlargeDetailsPipeline,
  ReducePipeline,
  SameSizeTexturesPipeline,
  SameSizeDetailsPipeline,
  SameSizeGrainPipeline,
  SameSizeLookPipeline,
  copy,      // source to destination on the host
  untouched  // the output stays as the host gave it
};

// The route of a captured frame.
FrameRoute dispatch(const FrameParams& params);

}  // namespace morvellan
