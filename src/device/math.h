// Logarithm, exponential, power, cosine and cube root in lanes. On the CPU they are polynomials with the error bounds
// stated at each (tests/device/math_test.cpp sweeps every exponent); on CUDA they are the hardware's.
#pragma once

#include "device/lanes.h"

namespace morvellan::MORVELLAN_TARGET
{

#ifndef MORVELLAN_TARGET_IS_CUDA

namespace detail
{

// A positive normal number as 2^exponent * (1 + fraction), fraction in [sqrt(1/2) - 1, sqrt(2) - 1).
struct SplitReal
{
  Real exponent, fraction;
};

MORVELLAN_INLINE SplitReal splitExponent(Real x)
{
  // Subtracting the bits of sqrt(1/2) moves the exponent's step from 1 to sqrt(1/2).
  const Int moved = bitsOf(x) - Int(0x3f3504f3);
  const Int mantissa = (moved & Int(0x007fffff)) + Int(0x3f3504f3);
  return {toReal(shiftRight<23>(moved)), realOfBits(mantissa) - Real(1.0f)};
}

// log2(1 + f) for f in [sqrt(1/2) - 1, sqrt(2) - 1]; minimax of degree 8 in f, relative error 2.7e-8 before rounding.
MORVELLAN_INLINE Real log2OnePlus(Real f)
{
  Real p = Real(0.12926432508970712f);
  p = fma(p, f, Real(-0.20893383179150776f));
  p = fma(p, f, Real(0.21521224901073488f));
  p = fma(p, f, Real(-0.23867567791808225f));
  p = fma(p, f, Real(0.287939094644256f));
  p = fma(p, f, Real(-0.3607162639519904f));
  p = fma(p, f, Real(0.4809102798001612f));
  p = fma(p, f, Real(-0.7213471993133572f));
  p = fma(p, f, Real(1.4426950048874618f));
  return p * f;
}

// The answer for what is not a positive normal number: zero and subnormals -inf, negatives NaN, inf and NaN themselves.
MORVELLAN_INLINE Real log2Special(Real x, Real regular)
{
  const Mask isRegular = (x >= Real(1.17549435e-38f)) & (x <= Real(3.40282347e38f));
  const Real minusInfinity = realOfBits(Int(static_cast<int>(0xff800000u)));
  const Real notANumber = realOfBits(Int(0x7fc00000));
  const Real low = select(x < Real(0.0f), notANumber, minusInfinity);
  const Real special = select(x < Real(1.17549435e-38f), low, x);
  return select(isRegular, regular, special);
}

// 2^f for f in [-1/2, 1/2]; minimax of degree 6, relative error 2e-9 before rounding.
MORVELLAN_INLINE Real exp2Polynomial(Real f)
{
  Real p = Real(0.00015353361899039797f);
  p = fma(p, f, Real(0.0013398874413801387f));
  p = fma(p, f, Real(0.009618437357700738f));
  p = fma(p, f, Real(0.05550332471126446f));
  p = fma(p, f, Real(0.2402264791362873f));
  p = fma(p, f, Real(0.693147202855065f));
  return fma(p, f, Real(1.0f));
}

// 2^n * 2^f for an integer n in [-126, 128] and f as above.
MORVELLAN_INLINE Real exp2Pieces(Real n, Real f)
{
  const Real p = exp2Polynomial(f);
  // Half the power, twice: 2^128 has no float, 2^127 has.
  const Real half = realOfBits(shiftLeft<23>(toInt(n) + Int(126)));
  return (p + p) * half;
}

}  // namespace detail

// log2(x). Relative error at most 2.5e-7 and absolute error at most 2^-23 * max(1, |log2 x|) over all positive normal
// numbers. Zero and subnormals give -inf, negatives NaN.
MORVELLAN_INLINE Real fast_log2(Real x)
{
  const detail::SplitReal s = detail::splitExponent(x);
  return detail::log2Special(x, s.exponent + detail::log2OnePlus(s.fraction));
}

// 2^x. Relative error at most 2.5e-7 for x in [-125, 128); 0 below, inf above; NaN goes through.
MORVELLAN_INLINE Real fast_exp2(Real x)
{
  const Real n = min(max(round(x), Real(-126.0f)), Real(128.0f));
  const Real f = x - n;
  const Real regular = detail::exp2Pieces(n, f);
  const Real low = select(x < Real(-125.0f), Real(0.0f), regular);
  return select(x >= Real(128.0f), realOfBits(Int(0x7f800000)), low);
}

// log2(x) of x that is 0 or a positive normal number; 0 gives -inf. What is not a number gives one. Errors as
// fast_log2.
MORVELLAN_INLINE Real log2Positive(Real x)
{
  const detail::SplitReal s = detail::splitExponent(x);
  const Real regular = s.exponent + detail::log2OnePlus(s.fraction);
  return select(x > Real(0.0f), regular, realOfBits(Int(static_cast<int>(0xff800000u))));
}

// 2^x of x at or below 0. Relative error at most 2.5e-7 down to -126; 0 below -126.5 and for NaN.
MORVELLAN_INLINE Real exp2NotPositive(Real x)
{
  const Real bounded = max(x, Real(-127.0f));
  const Real n = round(bounded);
  // The exponent field of -127 is that of zero.
  return detail::exp2Polynomial(bounded - n) * realOfBits(shiftLeft<23>(toInt(n) + Int(127)));
}

// x^y for x >= 0: 2^(y log2 x) with the exponent's share of the product kept exact, so that the relative error stays
// below 5e-7 * max(1, |y| / 8). 0^y is 0 for y > 0; negative x gives NaN.
MORVELLAN_INLINE Real fast_pow(Real x, Real y)
{
  const detail::SplitReal s = detail::splitExponent(x);
  const Real l = detail::log2OnePlus(s.fraction);
  const Real product = y * detail::log2Special(x, s.exponent + l);
  const Real n = min(max(round(product), Real(-126.0f)), Real(128.0f));
  // The exponent is a small integer: twelve leading bits of y times it are exact, with or without a fused product.
  const Real high = realOfBits(bitsOf(y) & Int(static_cast<int>(0xfffff000u)));
  const Real f = (high * s.exponent - n) + ((y - high) * s.exponent + y * l);
  const Real regular = detail::exp2Pieces(n, f);
  const Real low = select(product < Real(-125.0f), Real(0.0f), select(isNan(product), product, regular));
  return select(product >= Real(128.0f), realOfBits(Int(0x7f800000)), low);
}

// cos(x), x in radians. Absolute error at most 3e-7 for |x| <= 8192.
MORVELLAN_INLINE Real fast_cos(Real x)
{
  // x = pi (n + 1/2) + r with n such that |r| <= pi/2; cos x = (-1)^(n+1) sin r.
  const Real n = floor(x * Real(0.318309886183790672f));
  const Real k = n + Real(0.5f);
  Real r = fma(k, Real(-3.140625f), x);
  r = fma(k, Real(-9.67025756835937500e-4f), r);
  r = fma(k, Real(-6.27832832833496e-7f), r);
  const Real s = r * r;
  Real p = Real(-2.3889859e-8f);
  p = fma(p, s, Real(2.7525562e-6f));
  p = fma(p, s, Real(-1.98408738e-4f));
  p = fma(p, s, Real(8.3333310e-3f));
  p = fma(p, s, Real(-1.66666666e-1f));
  const Real sine = fma(p * s, r, r);
  const Mask even = (toInt(n) & Int(1)) == Int(0);
  return select(even, -sine, sine);
}

// The cube root, of negatives too. Relative error at most 3e-7 over all normal numbers; 0 gives 0.
MORVELLAN_INLINE Real fast_cbrt(Real x)
{
  const Real a = abs(x);
  // A third of the exponent as a first guess (3.4 % off at most), then two steps of Halley's method.
  const Real third = toReal(bitsOf(a)) * Real(1.0f / 3.0f);
  Real y = realOfBits(toInt(third) + Int(709958130));
  // On a quarter of both cubes, so that three of them stay in range.
  const Real quarter = a * Real(0.25f);
  for (int step = 0; step < 2; ++step)
  {
    const Real cube = y * y * (y * Real(0.25f));
    y = y * ((cube + (quarter + quarter)) / ((cube + cube) + quarter));
  }
  return copySign(select(a > Real(0.0f), select(a <= Real(3.40282347e38f), y, a), a), x);
}

#else

MORVELLAN_INLINE Real fast_log2(Real x)
{
#ifdef __CUDA_ARCH__
  return __log2f(x.v);
#else
  return ::log2f(x.v);
#endif
}

MORVELLAN_INLINE Real fast_exp2(Real x)
{
  return ::exp2f(x.v);
}

MORVELLAN_INLINE Real log2Positive(Real x)
{
  return fast_log2(x);
}

MORVELLAN_INLINE Real exp2NotPositive(Real x)
{
  return select(x > Real(-126.5f), fast_exp2(x), Real(0.0f));
}

MORVELLAN_INLINE Real fast_pow(Real x, Real y)
{
  return ::powf(x.v, y.v);
}

MORVELLAN_INLINE Real fast_cos(Real x)
{
#ifdef __CUDA_ARCH__
  return __cosf(x.v);
#else
  return ::cosf(x.v);
#endif
}

MORVELLAN_INLINE Real fast_cbrt(Real x)
{
  return ::cbrtf(x.v);
}

#endif

// x^y of every x: zero and negatives give 0.
MORVELLAN_INLINE Real powPositive(Real x, Real y)
{
  return select(x > Real(0.0f), fast_pow(x, y), Real(0.0f));
}

}  // namespace morvellan::MORVELLAN_TARGET
