// Placing a packed image inside a larger one.
#pragma once

#include "device/pixels.h"

namespace morvellan::MORVELLAN_TARGET
{

namespace place
{

// Row at.y of the source in the frame `wide` pixels wide.
MORVELLAN_INLINE Pixels inFrame(Pixels at, int wide, int xOffset, int yOffset)
{
  at.index = static_cast<ptrdiff_t>(at.y + yOffset) * wide + at.x + xOffset;
  return at;
}

}  // namespace place

// destination(x + xOffset, y + yOffset) = source(x, y), over a grid of the source's size.
struct Pad2DArrayRGBA
{
  const float* source;
  float* destination;
  int sourceHeight, sourceWidth, destinationWidth, channels, xOffset, yOffset;

  MORVELLAN_KERNEL void operator()(Pixels at) const
  {
    storeRgba(destination, place::inFrame(at, destinationWidth, xOffset, yOffset), loadRgba(source, at));
  }
};

struct Pad2DArrayRGB
{
  const float* source;
  float* destination;
  int sourceHeight, sourceWidth, destinationWidth, channels, xOffset, yOffset;

  MORVELLAN_KERNEL void operator()(Pixels at) const
  {
    storeRgb(destination, place::inFrame(at, destinationWidth, xOffset, yOffset), loadRgb(source, at));
  }
};

}  // namespace morvellan::MORVELLAN_TARGET
