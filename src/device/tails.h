// Loads of the pixels that are inside a row and of nothing after them. The plain loads read a row's tail past its end,
// into pixels that are another thread's where a kernel writes what it reads, or where planes lie side by side.
#pragma once

#include <algorithm>

#include "device/pixels.h"

namespace morvellan::MORVELLAN_TARGET
{

// The first `count` floats at `from`, zeros after them. The tail is a call, so that the rest stays short.
#ifdef MORVELLAN_TARGET_IS_CUDA
MORVELLAN_INLINE Real loadFirst(const float* from, int count)
{
  return count == lanes ? load(from) : Real(0.0f);
}
#else
[[gnu::noinline]] inline Real loadTail(const float* from, int count)
{
  float whole[lanes] = {};
  std::copy_n(from, count, whole);
  return load(whole);
}

MORVELLAN_INLINE Real loadFirst(const float* from, int count)
{
  return count == lanes ? load(from) : loadTail(from, count);
}
#endif

// The interleaved pixels that are inside, zeros after them.
template <int Channels>
struct PixelsInside
{
  float values[lanes * Channels] = {};

  MORVELLAN_INLINE PixelsInside(const float* frame, Pixels at)
  {
    for (int i = 0; i < at.count * Channels; ++i)
      values[i] = frame[at.index * Channels + i];
  }
};

MORVELLAN_INLINE Rgba loadRgbaInside(const float* frame, Pixels at)
{
  return at.count == lanes ? loadRgba(frame, at) : loadRgba(PixelsInside<4>(frame, at).values, {});
}

MORVELLAN_INLINE Rgb loadRgbInside(const float* frame, Pixels at)
{
  return at.count == lanes ? loadRgb(frame, at) : loadRgb(PixelsInside<3>(frame, at).values, {});
}

MORVELLAN_INLINE Real loadPlaneInside(const float* plane, Pixels at)
{
  return loadFirst(plane + at.index, at.count);
}

}  // namespace morvellan::MORVELLAN_TARGET
