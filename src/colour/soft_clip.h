// The soft clip: a one-sided rational shoulder and toe that leave the values between their thresholds untouched.
// The camera's and the Soup's settings run the same routine.
#pragma once

#include "device/pixels.h"

namespace morvellan::MORVELLAN_TARGET
{

// The four settings in the order of every kernel of the family; these are the neutral ones.
struct SoftClip
{
  float ceiling = 1.0f;  // where the first shoulder starts
  float comp = 1.0f;     // where the second starts, and the end of the first; at least 1
  float floor = 0.0f;    // where the first toe starts, in tenths below 0 to 1
  float expand = 0.0f;   // the second toe; 0 or below
};

namespace detail
{

// Slope 1 at k, tending to k + s.
MORVELLAN_INLINE Real knee(Real v, float k, float s)
{
  return Real(s) * (Real(1.0f) - Real(1.0f) / ((v - Real(k)) / Real(s) + Real(1.0f))) + Real(k);
}

MORVELLAN_INLINE Real kneeAbove(Real v, float k, float s)
{
  return select(v > Real(k), knee(v, k, s), v);
}

}  // namespace detail

// A NaN passes every test and goes through.
MORVELLAN_INLINE Real softClip(const SoftClip& c, Real x)
{
  // Split at 1 and put together again: nothing in value, and kept for its rounding.
  const Real one = Real(1.0f);
  x = select(isNan(x), x, min(x, one) + max(x - one, Real(0.0f)));
  const float second = c.comp * -0.0199999996f + 1.0f;
  if (c.ceiling != 1.0f)
    x = detail::kneeAbove(x, c.ceiling, c.comp - c.ceiling);
  if (c.comp != 1.0f)
    x = detail::kneeAbove(x, second, 1.0f - second);
  Real y = one - x;
  const float u0 = 1.0f - c.floor * 0.100000001f;
  const float u1 = 1.0f - c.expand;
  const float u2 = c.expand * 0.0199999996f + 1.0f;
  if (u0 != 1.0f)
    y = detail::kneeAbove(y, u0, u1 - u0);
  if (u1 != 1.0f)
    y = detail::kneeAbove(y, u2, 1.0f - u2);
  return -(y - one);
}

MORVELLAN_INLINE Rgb softClip(const SoftClip& c, Rgb p)
{
  return {softClip(c, p.r), softClip(c, p.g), softClip(c, p.b)};
}

}  // namespace morvellan::MORVELLAN_TARGET
