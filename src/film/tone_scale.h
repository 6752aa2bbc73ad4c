// The print's tone scale for a display's peak brightness: a filmic compression of a colour's norm, which draws colours
// towards neutral as they grow. It works in the neutral space, in plain products and sums: a display's matrix may
// cancel its channels to almost nothing, and what is left is the foot of a steep curve.
#pragma once

#include "film/colour_math.h"
#include "film/neutral_space.h"

namespace morvellan::MORVELLAN_TARGET
{

struct ToneScale
{
  float ceiling = 1.0f;   // what an infinite norm comes to
  float half = 1.0f;      // the norm at which the quotient is one half
  float contrast = 1.0f;  // exponent of the quotient
  float purity = 1.0f;    // of small colours
};

// `peak` in cd/m2; 100 for standard displays.
ToneScale makeToneScale(float peak);

// A linear colour to weighted channels of the neutral space.
MORVELLAN_INLINE Rgb scaleTone(const ToneScale& scale, Rgb c)
{
  const Rgb t = toNeutral(c);
  // A floor far below black keeps the norm above 0.
  const Real floor(9.99999996e-13f);
  const Rgb x{max(t.r, floor), max(t.g, floor), max(t.b, floor)};
  const Real a = x.r * Real(0.24f);
  const Real b = x.g * Real(0.1f);
  const Real d = x.b * Real(0.1f);
  const Real norm = sqrt(d * d + a * a + b * b) * Real(3.58979082f);
  const Real sum = norm + Real(scale.half);
  const Real one(1.0f);
  const Real power = plain_exp2(curves::log2Above0(norm / sum) * Real(scale.contrast));
  const Real scaledNorm = Real(scale.ceiling) * power;
  const Real pure = sqrt(Real(scale.half) / sum) * Real(scale.purity);
  const Real ofNorm = pure / norm;
  const auto channel = [&](Real v, float weight) { return scaledNorm * Real(weight) * (v * ofNorm + (one - pure)); };
  return {channel(x.r, neutralWeight0), channel(x.g, neutralWeight1), channel(x.b, neutralWeight2)};
}

}  // namespace morvellan::MORVELLAN_TARGET
