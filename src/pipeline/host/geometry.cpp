// The geometry of one frame.
#include "pipeline/host/geometry.h"

#include <algorithm>

namespace morvellan
{
namespace
{

// No control gives an offset beyond 0 to 1, but a host may hold any value; the copy behind it must stay inside the
// frame.
int offsetWithin(int room, float offset)
{
  const float product = static_cast<float>(room) * offset;
  const auto limit = static_cast<float>(std::max(room, 0));
  return product > 0.0f ? static_cast<int>(std::min(product, limit)) : 0;
}

}  // namespace

PixelOffset cropOffset(const FrameParams& params)
{
  return {offsetWithin(params.frameWidth - params.sourceWidth, params.sourceOffsetX),
          offsetWithin(params.frameHeight - params.sourceHeight, params.sourceOffsetY)};
}

PixelOffset padOffset(const FrameParams& params)
{
  return {offsetWithin(params.frameWidth - params.targetWidth, params.targetOffsetX),
          offsetWithin(params.frameHeight - params.targetHeight, params.targetOffsetY)};
}

bool isPadded(const FrameParams& params)
{
  return params.targetWidth != params.frameWidth || params.targetHeight != params.frameHeight;
}

bool isEnhanced(const FrameParams& params)
{
  constexpr int reduce = 2;
  return params.resizeMode != reduce && (params.enhancerHorizontal != 0.0f || params.enhancerVertical != 0.0f);
}

ImageSize resampledSize(const FrameParams& params)
{
  const bool enhanced = isEnhanced(params);
  return {params.targetWidth + (enhanced && params.enhancerHorizontal != 0.0f ? 1 : 0),
          params.targetHeight + (enhanced && params.enhancerVertical != 0.0f ? 1 : 0)};
}

}  // namespace morvellan
