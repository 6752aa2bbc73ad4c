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

MORVELLAN_INLINE Rgba loadRgbaInside(const float* frame, Pixels at)
{
  if (at.count == lanes)
    return loadRgba(frame, at);
  float whole[lanes * 4] = {};
  for (int i = 0; i < at.count * 4; ++i)
    whole[i] = frame[at.index * 4 + i];
  return loadRgba(whole, {});
}

MORVELLAN_INLINE Rgb loadRgbInside(const float* frame, Pixels at)
{
  if (at.count == lanes)
    return loadRgb(frame, at);
  float whole[lanes * 3] = {};
  for (int i = 0; i < at.count * 3; ++i)
    whole[i] = frame[at.index * 3 + i];
  return loadRgb(whole, {});
}

MORVELLAN_INLINE Real loadPlaneInside(const float* plane, Pixels at)
{
  return loadFirst(plane + at.index, at.count);
}

}  // namespace morvellan::MORVELLAN_TARGET
