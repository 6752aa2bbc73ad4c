// Where a frame is cut, how large it is resampled, and where the result is placed: the geometry of one frame in whole
// pixels.
#pragma once

#include "pipeline/host/frame_params.h"
#include "pipeline/host/image_view.h"

namespace morvellan
{

struct PixelOffset
{
  int x;
  int y;

  bool operator==(const PixelOffset&) const = default;
};

// The crop's upper left corner in the frame: the integer part of a product formed in float, held inside the frame.
PixelOffset cropOffset(const FrameParams& params);

// The upper left corner of the target inside the frame, formed in the same way.
PixelOffset padOffset(const FrameParams& params);

// The target does not fill the frame: the rest is transparent black.
bool isPadded(const FrameParams& params);

// The spatial enhancer runs: an amount is not 0, and the frame is not reduced.
bool isEnhanced(const FrameParams& params);

// What the resampler makes: the target, one pixel larger on each axis that the enhancer then walks back.
ImageSize resampledSize(const FrameParams& params);

}  // namespace morvellan
