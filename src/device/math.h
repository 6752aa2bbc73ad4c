// Logarithm, exponential, power, cosine and cube root in lanes, with the error bounds stated at each
// (tests/device/math_test.cpp sweeps every exponent). The `fast` ones are polynomials on the CPU, by fused products
// where it has them, and the hardware's on CUDA. The `plain` ones give the same bits on every target.
#pragma once

#include "device/lanes.h"

namespace morvellan::MORVELLAN_TARGET
{

// How a polynomial forms a b + c: rounded once where the machine can, or the product and the sum each by itself, which
// is one and the same number on every machine.
struct Fused
{
  static MORVELLAN_INLINE Real sum(Real a, Real b, Real c) { return fma(a, b, c); }
};

struct Plain
{
  static MORVELLAN_INLINE Real sum(Real a, Real b, Real c) { return a * b + c; }
};

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

// Polynomials are evaluated in pairs of terms: half the chain of dependent operations, which is what limits a wide
// core.

// log2(1 + f) / f for f in [sqrt(1/2) - 1, sqrt(2) - 1]; minimax of degree 8 in f, relative error 2.7e-8 before
// rounding.
template <typename By>
MORVELLAN_INLINE Real log2Quotient(Real f)
{
  const Real f2 = f * f;
  const Real terms12 = By::sum(Real(0.4809102798001612f), f, Real(-0.7213471993133572f));
  const Real terms34 = By::sum(Real(0.287939094644256f), f, Real(-0.3607162639519904f));
  const Real terms56 = By::sum(Real(0.21521224901073488f), f, Real(-0.23867567791808225f));
  const Real terms78 = By::sum(Real(0.12926432508970712f), f, Real(-0.20893383179150776f));
  const Real low = By::sum(terms34, f2, terms12);
  const Real high = By::sum(terms78, f2, terms56);
  // The leading term last: the rounding of all others shrinks by f.
  return By::sum(By::sum(high, f2 * f2, low), f, Real(1.4426950048874618f));
}

template <typename By>
MORVELLAN_INLINE Real log2OnePlus(Real f)
{
  return log2Quotient<By>(f) * f;
}

// log2 of a positive normal number; of anything else, some number.
template <typename By>
MORVELLAN_INLINE Real log2Regular(Real x)
{
  const SplitReal s = splitExponent(x);
  return By::sum(log2Quotient<By>(s.fraction), s.fraction, s.exponent);
}

// The answer for what is not a positive normal number: zero and subnormals -inf, negatives NaN, inf and NaN themselves.
// Hardly any pixel is such a number, so the core looks before it selects.
MORVELLAN_INLINE Real log2Special(Real x, Real regular)
{
  const Mask isRegular = (x >= Real(1.17549435e-38f)) & (x <= Real(3.40282347e38f));
  if (all(isRegular)) [[likely]]
    return regular;
  const Real minusInfinity = realOfBits(Int(static_cast<int>(0xff800000u)));
  const Real notANumber = realOfBits(Int(0x7fc00000));
  const Real low = select(x < Real(0.0f), notANumber, minusInfinity);
  const Real special = select(x < Real(1.17549435e-38f), low, x);
  return select(isRegular, regular, special);
}

// (2^f - 1) / f for f in [-1/2, 1/2]; 2^f by it is a minimax of degree 6, relative error 2e-9 before rounding.
template <typename By>
MORVELLAN_INLINE Real exp2Quotient(Real f)
{
  const Real f2 = f * f;
  const Real terms01 = By::sum(Real(0.2402264791362873f), f, Real(0.693147202855065f));
  const Real terms23 = By::sum(Real(0.009618437357700738f), f, Real(0.05550332471126446f));
  const Real terms45 = By::sum(Real(0.00015353361899039797f), f, Real(0.0013398874413801387f));
  return By::sum(By::sum(terms45, f2, terms23), f2, terms01);
}

// Added to a number of less than 2^22 and taken off again, this leaves the nearest integer; the sum has it in its low
// bits.
inline constexpr float roundingShift = 12582912.0f;

// 2^f for f in [-1/2, 1/2].
template <typename By>
MORVELLAN_INLINE Real exp2Polynomial(Real f)
{
  return By::sum(exp2Quotient<By>(f), f, Real(1.0f));
}

// 2^(n + f) for an integer n in [-126, 128], given as n + roundingShift, and f in [-1/2, 1/2].
template <typename By>
MORVELLAN_INLINE Real exp2Pieces(Real shifted, Real f)
{
  return realOfBits(bitsOf(exp2Polynomial<By>(f)) + shiftLeft<23>(bitsOf(shifted)));
}

// 0 for exponents below -125, NaN for NaN.
MORVELLAN_INLINE Real exp2Ends(Real exponent, Real power)
{
  return select(exponent >= Real(-125.0f), power, max(Real(0.0f), exponent));
}

template <typename By>
MORVELLAN_INLINE Real log2Of(Real x)
{
  return log2Special(x, log2Regular<By>(x));
}

// 2^n for an integer n in [-127, 128], given as n + roundingShift: 0 at one end, inf at the other.
MORVELLAN_INLINE Real exp2Integer(Real shifted)
{
  return realOfBits(shiftLeft<23>(bitsOf(shifted) + Int(127)));
}

template <typename By>
MORVELLAN_INLINE Real exp2Of(Real x)
{
  // In this order of arguments a NaN stays one.
  const Real held = min(Real(128.0f), max(Real(-127.0f), x));
  const Real shifted = held + Real(roundingShift);
  const Real f = held - (shifted - Real(roundingShift));
  return exp2Polynomial<By>(f) * exp2Integer(shifted);
}

template <typename By>
MORVELLAN_INLINE Real exp2NotPositiveOf(Real x)
{
  const Real bounded = max(x, Real(-127.0f));
  const Real shifted = bounded + Real(roundingShift);
  const Real f = bounded - (shifted - Real(roundingShift));
  return exp2Polynomial<By>(f) * exp2Integer(shifted);
}

template <typename By>
MORVELLAN_INLINE Real log2PositiveOf(Real x)
{
  return select(x > Real(0.0f), log2Regular<By>(x), realOfBits(Int(static_cast<int>(0xff800000u))));
}

template <typename By>
MORVELLAN_INLINE Real cosOf(Real x)
{
  // x = pi (n + 1/2) + r with n such that |r| <= pi/2; cos x = (-1)^(n+1) sin r.
  const Real n = floor(x * Real(0.318309886183790672f));
  const Real k = n + Real(0.5f);
  Real r = By::sum(k, Real(-3.140625f), x);
  r = By::sum(k, Real(-9.67025756835937500e-4f), r);
  r = By::sum(k, Real(-6.27832832833496e-7f), r);
  const Real s = r * r;
  Real p = Real(-2.3889859e-8f);
  p = By::sum(p, s, Real(2.7525562e-6f));
  p = By::sum(p, s, Real(-1.98408738e-4f));
  p = By::sum(p, s, Real(8.3333310e-3f));
  p = By::sum(p, s, Real(-1.66666666e-1f));
  const Real sine = By::sum(p * s, r, r);
  const Mask even = (toInt(n) & Int(1)) == Int(0);
  return select(even, -sine, sine);
}

}  // namespace detail

// log2(x). Relative error at most 2.5e-7 and absolute error at most 2^-23 * max(1, |log2 x|) over all positive normal
// numbers. Zero and subnormals give -inf, negatives NaN.
MORVELLAN_INLINE Real plain_log2(Real x)
{
  return detail::log2Of<Plain>(x);
}

// 2^x. Relative error at most 2.5e-7 for x in [-126, 127.5); 0 below -126.5, inf above; NaN goes through.
MORVELLAN_INLINE Real plain_exp2(Real x)
{
  return detail::exp2Of<Plain>(x);
}

// log2(x) of x that is 0 or a positive normal number; 0 gives -inf. What is not a number gives one. Errors as
// plain_log2.
MORVELLAN_INLINE Real plain_log2Positive(Real x)
{
  return detail::log2PositiveOf<Plain>(x);
}

// 2^x of x at or below 0, and as well of any x up to 127; plain. Relative error at most 2.5e-7 down to -126; 0 below
// -126.5 and for NaN.
MORVELLAN_INLINE Real exp2NotPositive(Real x)
{
  return detail::exp2NotPositiveOf<Plain>(x);
}

// cos(x), x in radians. Absolute error at most 3e-7 for |x| <= 8192.
MORVELLAN_INLINE Real plain_cos(Real x)
{
  return detail::cosOf<Plain>(x);
}

#ifndef MORVELLAN_TARGET_IS_CUDA

// As plain_log2 and plain_exp2, errors too.
MORVELLAN_INLINE Real fast_log2(Real x)
{
  return detail::log2Of<Fused>(x);
}

MORVELLAN_INLINE Real fast_exp2(Real x)
{
  return detail::exp2Of<Fused>(x);
}

// As plain_log2Positive.
MORVELLAN_INLINE Real log2Positive(Real x)
{
  return detail::log2PositiveOf<Fused>(x);
}

// x^y for x >= 0: 2^(y log2 x) with the exponent's share of the product kept exact, so that the relative error stays
// below 5e-7 * max(1, |y| / 8). 0^y is 0 for y > 0; negative x gives NaN.
MORVELLAN_INLINE Real fast_pow(Real x, Real y)
{
  const detail::SplitReal s = detail::splitExponent(x);
  const Real l = detail::log2OnePlus<Fused>(s.fraction);
  const Real product = y * detail::log2Special(x, s.exponent + l);
  const Real held = min(max(product, Real(-126.0f)), Real(128.0f));
  const Real shifted = held + Real(detail::roundingShift);
  const Real n = shifted - Real(detail::roundingShift);
  // The exponent is a small integer: twelve leading bits of y times it are exact, with or without a fused product.
  const Real high = realOfBits(bitsOf(y) & Int(static_cast<int>(0xfffff000u)));
  const Real f = (high * s.exponent - n) + ((y - high) * s.exponent + y * l);
  return detail::exp2Ends(product, detail::exp2Pieces<Fused>(shifted, select(held == product, f, Real(0.0f))));
}

// As plain_cos.
MORVELLAN_INLINE Real fast_cos(Real x)
{
  return detail::cosOf<Fused>(x);
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

#endif

// The cube root, of negatives too. Relative error at most 3e-7 over all normal numbers; 0 gives 0.
MORVELLAN_INLINE Real plain_cbrt(Real x)
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

// x^(-1/5) of a positive normal number. Relative error at most 2.5e-7; 0 gives a finite number.
MORVELLAN_INLINE Real inverseFifthRoot(Real x)
{
  // A fifth of the exponent as a first guess y, and (x y^5)^(-1/5) as a minimax of degree 5 in 1 - x y^5, which is at
  // most 0.155 from 0.
  const Real y = realOfBits(Int(1277903859) - toInt(toReal(bitsOf(x)) * Real(1.0f / 5.0f)));
  const Real y2 = y * y;
  const Real off = Real(1.0f) - (x * y) * (y2 * y2);
  const Real off2 = off * off;
  const Real terms12 = off * Real(0.119987018f) + Real(0.200000092f);
  const Real terms34 = off * Real(0.0721428916f) + Real(0.0879702866f);
  const Real terms345 = off2 * Real(0.0613544211f) + terms34;
  return y + y * off * (off2 * terms345 + terms12);
}

// x^y of every x: zero and negatives give 0.
MORVELLAN_INLINE Real powPositive(Real x, Real y)
{
  return select(x > Real(0.0f), fast_pow(x, y), Real(0.0f));
}

}  // namespace morvellan::MORVELLAN_TARGET
