// Powers and logarithms of the transfer curves, on the base-2 pair, and two forms near 1 that keep their precision
// where PQ needs it.
#pragma once

#include "device/math.h"
#include "device/pixels.h"

namespace morvellan::MORVELLAN_TARGET::curves
{

// One code value step of 10 bits.
inline constexpr float per1023 = 0.000977517106f;

MORVELLAN_INLINE Real exp10(Real x)
{
  return fast_exp2(x * Real(3.32192802f));
}

MORVELLAN_INLINE Real expE(Real x)
{
  return fast_exp2(x * Real(1.44269502f));
}

MORVELLAN_INLINE Real log10(Real x)
{
  return fast_log2(x) * Real(0.30103001f);
}

MORVELLAN_INLINE Real ln(Real x)
{
  return fast_log2(x) * Real(0.693147182f);
}

MORVELLAN_INLINE Real power(Real x, float exponent)
{
  return fast_exp2(fast_log2(x) * Real(exponent));
}

#ifndef MORVELLAN_TARGET_IS_CUDA

// log2 of a positive normal number.
MORVELLAN_INLINE Real log2Above0(Real x)
{
  return detail::log2Regular(x);
}

// log2(1 + f) for f in [-0.29, 0.41], at f's own precision.
MORVELLAN_INLINE Real log2NearOne(Real f)
{
  return detail::log2OnePlus(f);
}

// 2^x - 1 for x in [-0.5, 0.5], at x's own precision.
MORVELLAN_INLINE Real exp2MinusOne(Real x)
{
  return detail::exp2Quotient(x) * x;
}

#else

MORVELLAN_INLINE Real log2Above0(Real x)
{
  return fast_log2(x);
}

MORVELLAN_INLINE Real log2NearOne(Real f)
{
  return ::log1pf(f.v) * 1.44269502f;
}

MORVELLAN_INLINE Real exp2MinusOne(Real x)
{
  return ::expm1f(x.v * 0.693147182f);
}

#endif

}  // namespace morvellan::MORVELLAN_TARGET::curves
