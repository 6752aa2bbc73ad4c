// How the kernels of the look reach their frames: interleaved pixels of 3 or 4 channels, and planes.
#pragma once

#include "device/pixels.h"

namespace morvellan::MORVELLAN_TARGET
{

// Three planes of one float a pixel, and the alpha that stands beside them; null where there is none.
struct LookPlanes
{
  float* red = nullptr;
  float* green = nullptr;
  float* blue = nullptr;
  float* alpha = nullptr;
};

// The look's chains of arithmetic are long: on the CPU its kernels take two groups of lanes at once.
inline constexpr int lookGroups = lanes > 1 ? 2 : 1;

// The k-th group of a flat launch's call.
MORVELLAN_INLINE Pixels group(Pixels at, int k)
{
  return {at.x, at.y, at.index + k * lanes, at.count};
}

MORVELLAN_INLINE Rgba loadPixel(const float* image, int channels, Pixels at)
{
  if (channels == 4)
    return loadRgba(image, at);
  const Rgb c = loadRgb(image, at);
  return {c.r, c.g, c.b, Real(1.0f)};
}

MORVELLAN_INLINE void storePixel(float* image, int channels, Pixels at, Rgb c, Real alpha)
{
  if (channels == 4)
    storeRgba(image, at, {c.r, c.g, c.b, alpha});
  else
    storeRgb(image, at, c);
}

MORVELLAN_INLINE Rgb loadPlanes(const LookPlanes& planes, Pixels at)
{
  return {loadPlane(planes.red, at), loadPlane(planes.green, at), loadPlane(planes.blue, at)};
}

MORVELLAN_INLINE void storePlanes(const LookPlanes& planes, Pixels at, Rgb c)
{
  storePlane(planes.red, at, c.r);
  storePlane(planes.green, at, c.g);
  storePlane(planes.blue, at, c.b);
}

}  // namespace morvellan::MORVELLAN_TARGET
