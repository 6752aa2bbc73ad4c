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

}  // namespace morvellan::MORVELLAN_TARGET
