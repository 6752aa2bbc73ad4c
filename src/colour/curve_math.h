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

// log2(n / d) of two positive normal numbers, at the precision of the logarithm's own small value where they are near
// each other.
MORVELLAN_INLINE Real log2Ratio(Real n, Real d)
{
  // The quotient's exponent by the difference of the bits, which are a logarithm to 0.09: the rest r is in
  // [0.66, 1.51].
  const Int near = (bitsOf(n) - bitsOf(d)) + Int(0x00400000);
  const Real scaled = realOfBits(bitsOf(n) - (near & Int(static_cast<int>(0xff800000u))));
  const Real s = (scaled - d) / (scaled + d);
  const Real s2 = s * s;
  // log2((1 + s) / (1 - s)) / s, odd minimax for |s| <= 0.2, relative error 2.5e-9.
  const Real low = s2 * Real(0.961801839f) + Real(2.88539008f);
  const Real high = s2 * Real(0.438822488f) + Real(0.576413425f);
  return (high * (s2 * s2) + low) * s + toReal(shiftRight<23>(near));
}

// 2^x for x in [-127.5, 127]; 0 at its lower end, up to -126.5.
MORVELLAN_INLINE Real exp2Within(Real x)
{
  const Real shifted = x + Real(detail::roundingShift);
  const Real f = x - (shifted - Real(detail::roundingShift));
  return detail::exp2Polynomial<Plain>(f) * detail::exp2Integer(shifted);
}

// x^(-1/6) of a positive normal number, relative error 2.5e-7.
MORVELLAN_INLINE Real inverseSixthRoot(Real x)
{
  // A sixth of the exponent as a first guess y, and (x y^6)^(-1/6) as a minimax of degree 5 in 1 - x y^6, which is at
  // most 0.179 from 0.
  const Real y = realOfBits(Int(1242412323) - toInt(toReal(bitsOf(x)) * Real(1.0f / 6.0f)));
  const Real y3 = y * y * y;
  const Real off = Real(1.0f) - x * (y3 * y3);
  const Real off2 = off * off;
  const Real terms12 = off * Real(0.0972044095f) + Real(0.16666685f);
  const Real terms34 = off * Real(0.0573924631f) + Real(0.0701719671f);
  const Real terms345 = off2 * Real(0.0487278663f) + terms34;
  return y + y * off * (off2 * terms345 + terms12);
}

}  // namespace morvellan::MORVELLAN_TARGET::curves
