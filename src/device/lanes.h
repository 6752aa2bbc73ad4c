// The types that kernel arithmetic is written in. `Real`, `Int`, `Word` and `Mask` are `lanes` neighbouring pixels on
// the CPU and one pixel on CUDA; `select` takes the place of `if` where pixels differ.
#pragma once

#include "device/target.h"

#ifdef MORVELLAN_TARGET_IS_CUDA
#include "device/lanes_cuda.h"
#else
#include "device/lanes_cpu.h"
#endif

namespace morvellan::MORVELLAN_TARGET
{

// A value clamped to [low, high]; NaN gives low.
MORVELLAN_INLINE Real clamp(Real x, Real low, Real high)
{
  return min(max(x, low), high);
}

MORVELLAN_INLINE Real clamp01(Real x)
{
  return clamp(x, Real(0.0f), Real(1.0f));
}

// Larger and smaller of two where a number wins over a NaN on either side.
MORVELLAN_INLINE Real maxNumber(Real a, Real b)
{
  return select(isNan(b), a, max(a, b));
}

MORVELLAN_INLINE Real minNumber(Real a, Real b)
{
  return select(isNan(b), a, min(a, b));
}

}  // namespace morvellan::MORVELLAN_TARGET
