// Where a kernel stands in a launch, and how it reaches pixels from there.
#pragma once

#include <cstddef>
#include <cstdint>

#include "device/lanes.h"

namespace morvellan::MORVELLAN_TARGET
{

// `lanes` neighbouring pixels of a launch, the first at (x, y), `index` pixels after the first of the frame. A launch
// over a grid has whole rows, and the last lanes of a row may lie beyond it: `count` are inside. A flat launch has y =
// 0 and all lanes inside or in the padding that every buffer carries.
struct Pixels
{
  int x = 0, y = 0;
  ptrdiff_t index = 0;
  int count = lanes;
};

struct Rgb
{
  Real r, g, b;
};

struct Rgba
{
  Real r, g, b, a;
};

// Interleaved pixels at `at`; a row's tail is read past its end, which the padding allows.
MORVELLAN_INLINE Rgba loadRgba(const float* frame, Pixels at)
{
  Rgba p;
  loadInterleaved(frame + at.index * 4, p.r, p.g, p.b, p.a);
  return p;
}

MORVELLAN_INLINE Rgb loadRgb(const float* frame, Pixels at)
{
  Rgb p;
  loadInterleaved(frame + at.index * 3, p.r, p.g, p.b);
  return p;
}

MORVELLAN_INLINE Real loadPlane(const float* plane, Pixels at)
{
  return load(plane + at.index);
}

// Stores write the pixels that are inside and no others.
MORVELLAN_INLINE void storeRgba(float* frame, Pixels at, Rgba p)
{
  float* to = frame + at.index * 4;
  if (at.count == lanes)
  {
    storeInterleaved(to, p.r, p.g, p.b, p.a);
    return;
  }
  float whole[lanes * 4];
  storeInterleaved(whole, p.r, p.g, p.b, p.a);
  for (int i = 0; i < at.count * 4; ++i)
    to[i] = whole[i];
}

MORVELLAN_INLINE void storeRgb(float* frame, Pixels at, Rgb p)
{
  float* to = frame + at.index * 3;
  if (at.count == lanes)
  {
    storeInterleaved(to, p.r, p.g, p.b);
    return;
  }
  float whole[lanes * 3];
  storeInterleaved(whole, p.r, p.g, p.b);
  for (int i = 0; i < at.count * 3; ++i)
    to[i] = whole[i];
}

MORVELLAN_INLINE void storePlane(float* plane, Pixels at, Real x)
{
  float* to = plane + at.index;
  if (at.count == lanes)
  {
    store(to, x);
    return;
  }
  float whole[lanes];
  store(whole, x);
  for (int i = 0; i < at.count; ++i)
    to[i] = whole[i];
}

// Whether a frame of `count` floats at `frame` is better written past the caches, where nobody would find it again, and
// can be: in whole vectors, for rows of `row` floats. Whoever streams ends with finishStreaming before other threads
// read.
inline bool streams(const float* frame, ptrdiff_t row, ptrdiff_t count)
{
  constexpr ptrdiff_t large = 1 << 20;
  return lanes > 1 && count >= large && row % lanes == 0 &&
         reinterpret_cast<uintptr_t>(frame) % (lanes * sizeof(float)) == 0;
}

// The rows of a plane for a kernel that only writes them.
class PlaneRows
{
public:
  PlaneRows(float* plane, int width, int height)
      : plane(plane), width(width), streamed(streams(plane, width, static_cast<ptrdiff_t>(width) * height))
  {
  }

  MORVELLAN_INLINE Pixels at(int x, int y) const
  {
    const int left = width - x;
    return {x, y, static_cast<ptrdiff_t>(y) * width + x, left < 0 ? 0 : left < lanes ? left : lanes};
  }

  MORVELLAN_INLINE void write(const Pixels& at, Real value) const
  {
    if (streamed)
      stream(plane + at.index, value);
    else
      storePlane(plane, at, value);
  }

#ifndef MORVELLAN_TARGET_IS_CUDA
  // Some time before the write.
  MORVELLAN_INLINE void expect(const Pixels& at) const
  {
    if (!streamed)
      __builtin_prefetch(plane + at.index, 1);
  }
#endif

private:
  float* plane;
  int width;
  bool streamed;
};

}  // namespace morvellan::MORVELLAN_TARGET
