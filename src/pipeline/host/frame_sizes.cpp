// Sizes and offsets of a frame, as the dispatch and the geometry stages need them.
#include "pipeline/host/frame_sizes.h"

#include "pipeline/host/capture_math.h"

#include <algorithm>

namespace morvellan
{
namespace
{

int sizeWithin(const ParameterValues& values, std::string_view name, int limit, SizeCorrections& corrections)
{
  const int size = integer(values, name);
  if (size > limit)
  {
    corrections.add({name, limit});
    return limit;
  }
  return std::max(size, 1);
}

// Widths decide first, so a crop that is wider but shorter than the target counts as a reduction.
int resizeModeOf(const FrameParams& params)
{
  if (params.sourceWidth > params.targetWidth || params.sourceHeight > params.targetHeight)
    return 2;
  if (params.sourceWidth < params.targetWidth || params.sourceHeight < params.targetHeight)
    return 1;
  return 0;
}

}  // namespace

SizeCorrections captureSizes(const ParameterValues& values, FrameParams& params)
{
  SizeCorrections corrections;
  params.sourceWidth = sizeWithin(values, "SourceWidth", params.frameWidth, corrections);
  params.sourceHeight = sizeWithin(values, "SourceHeight", params.frameHeight, corrections);
  params.targetWidth = sizeWithin(values, "TargetWidth", params.frameWidth, corrections);
  params.targetHeight = sizeWithin(values, "TargetHeight", params.frameHeight, corrections);
  params.resizeMode = resizeModeOf(params);
  if (params.resizeMode == 0)
  {
    params.sourceWidth = params.targetWidth = params.frameWidth;
    params.sourceHeight = params.targetHeight = params.frameHeight;
  }
  return corrections;
}

void captureOffsets(const ParameterValues& values, FrameParams& params)
{
  if (params.resizeMode == 0)
    return;
  constexpr int customSize = 1;
  const bool customSource = params.inResolutionChoice == customSize;
  params.sourceOffsetX = customSource ? narrow(values.number("SourceWidthOffset")) : 0.5f;
  params.sourceOffsetY = customSource ? narrow(values.number("SourceHeightOffset")) : 0.5f;
  const bool customTarget = params.outResolutionChoice == customSize;
  params.targetOffsetX = customTarget ? narrow(1.0 - values.number("TargetWidthOffset")) : 0.5f;
  params.targetOffsetY = customTarget ? narrow(1.0 - values.number("TargetHeightOffset")) : 0.5f;
}

}  // namespace morvellan
