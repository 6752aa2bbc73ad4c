// Powers and logarithms of the transfer curves, on the base-2 pair. Colour is worked out in plain products and sums
// everywhere: behind a curve stand matrices whose small differences of large numbers would show the last bit of a fused
// product, so every target has the same bits instead.
#pragma once

#include "device/math.h"
#include "device/pixels.h"

namespace morvellan::MORVELLAN_TARGET::curves
{

// One code value step of 10 bits.
inline constexpr float per1023 = 0.000977517106f;

MORVELLAN_INLINE Real exp10(Real x)
{
  return plain_exp2(x * Real(3.32192802f));
}

MORVELLAN_INLINE Real expE(Real x)
{
  return plain_exp2(x * Real(1.44269502f));
}

MORVELLAN_INLINE Real log10(Real x)
{
  return plain_log2(x) * Real(0.30103001f);
}

MORVELLAN_INLINE Real ln(Real x)
{
  return plain_log2(x) * Real(0.693147182f);
}

MORVELLAN_INLINE Real power(Real x, float exponent)
{
  return plain_exp2(plain_log2(x) * Real(exponent));
}

// log2 of a positive normal number.
MORVELLAN_INLINE Real log2Above0(Real x)
{
  return detail::log2Regular<Plain>(x);
}

// log2(1 + f) for f in [-0.29, 0.41], at f's own precision.
MORVELLAN_INLINE Real log2NearOne(Real f)
{
  return detail::log2OnePlus<Plain>(f);
}

// 2^x - 1 for x in [-0.5, 0.5], at x's own precision.
MORVELLAN_INLINE Real exp2MinusOne(Real x)
{
  return detail::exp2Quotient<Plain>(x) * x;
}

// 2^x for x at or below 0, and as well for any x up to 127; 0 below -126.5 and for NaN.
MORVELLAN_INLINE Real exp2UpTo0(Real x)
{
  return detail::exp2NotPositiveOf<Plain>(x);
}

}  // namespace morvellan::MORVELLAN_TARGET::curves
