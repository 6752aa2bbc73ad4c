// The space in which saturation and the print's tone scale work: three cone-like channels that are equal for neutrals
// (to about 1e-5, as far as the rows' digits go), with its ways in and out of linear ARRI Wide Gamut 4.
#pragma once

#include "colour/matrix.h"

namespace morvellan::MORVELLAN_TARGET
{

// The channels' weights on the way out.
inline constexpr float neutralWeight0 = 1.07045996f;
inline constexpr float neutralWeight1 = 0.916817009f;
inline constexpr float neutralWeight2 = 0.594250977f;

// A colour of the space stands in an Rgb's fields. Each row is scaled so that white comes to 1.
MORVELLAN_INLINE Rgb toNeutral(Rgb c)
{
  constexpr float s0 = 0.934177816f, s1 = 1.09073019f, s2 = 1.68279064f;
  constexpr Matrix3 rows{{0.400084794f * s0, 0.705385745f * s0, -0.0350067765f * s0, 0.0212543737f * s1,
                          0.86768055f * s1, 0.0278803855f * s1, 0.0263068229f * s2, -0.0511719435f * s2,
                          0.619114161f * s2}};
  return multiply(rows, c);
}

// Back, of channels that carry their weights already.
MORVELLAN_INLINE Rgb fromWeightedNeutral(Rgb x)
{
  constexpr Matrix3 rows{{2.59493279f, -2.09534693f, 0.241085291f, -0.0598625727f, 1.19778275f, -0.0573242269f,
                          -0.115209319f, 0.18803446f, 1.60022902f}};
  return multiply(rows, x);
}

MORVELLAN_INLINE Rgb fromNeutral(Rgb x)
{
  constexpr float w0 = neutralWeight0, w1 = neutralWeight1, w2 = neutralWeight2;
  constexpr Matrix3 rows{{2.59493279f * w0, -2.09534693f * w1, 0.241085291f * w2, -0.0598625727f * w0, 1.19778275f * w1,
                          -0.0573242269f * w2, -0.115209319f * w0, 0.18803446f * w1, 1.60022902f * w2}};
  return multiply(rows, x);
}

}  // namespace morvellan::MORVELLAN_TARGET
