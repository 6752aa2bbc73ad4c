// Hue of a pixel, in units of 60 degrees from red, and the weights that windows over hue give it.
#pragma once

#include "film/attributes.h"
#include "film/colour_math.h"

namespace morvellan::MORVELLAN_TARGET
{

// x modulo 6 of x in [0, 12); what is not a number becomes a small one, so that a window gives it no weight.
MORVELLAN_INLINE Real modulo6(Real x)
{
  const Real wrapped = select(x >= Real(6.0f), x - Real(6.0f), x);
  return select(isNan(wrapped), Real(9.99999975e-06f), wrapped);
}

// The colour that windows and the chroma attribute refer to: the pixel as it enters the engine.
struct Reference
{
  Real hue;              // [0, 6)
  Real lowest, highest;  // of the channels over their largest; as they are where that is not positive
};

MORVELLAN_INLINE Reference referenceOf(Rgb c)
{
  const Real peak = largest(c);
  const Mask coloured = peak > Real(0.0f);
  const Real divisor = select(coloured, peak, Real(1.0f));
  const Rgb n{c.r / divisor, c.g / divisor, c.b / divisor};
  const Real highest = largest(n);
  const Real lowest = smallest(n);
  const Real span = highest - lowest;
  const Mask red = (n.r >= n.g) & (n.r >= n.b);
  const Mask green = n.g >= n.b;
  const Real difference = select(red, n.g - n.b, select(green, n.b - n.r, n.r - n.g));
  const Real origin = select(red, Real(6.0f), select(green, Real(2.0f), Real(4.0f)));
  const Real hue = modulo6(difference / span + origin);
  return {select(coloured & (span != Real(0.0f)), hue, Real(0.0f)), lowest, highest};
}

// Of the six hue vectors at most one of red, green, blue and one of cyan, magenta, yellow has weight at a hue.
struct HueSectors
{
  Mask green, blue;            // else red
  Mask yellow, cyan;           // else magenta
  Real additive, subtractive;  // the weights of the two, 0 to 1

  // The values of the two vectors in play, from six in the order red, magenta, blue, cyan, green, yellow.
  MORVELLAN_INLINE Real pickAdditive(const float (&axis)[6]) const
  {
    return select(green, Real(axis[4]), select(blue, Real(axis[2]), Real(axis[0])));
  }
  MORVELLAN_INLINE Real pickSubtractive(const float (&axis)[6]) const
  {
    return select(yellow, Real(axis[5]), select(cyan, Real(axis[3]), Real(axis[1])));
  }
};

MORVELLAN_INLINE HueSectors sectorsOf(Real hue)
{
  const auto window = [](Real x) { return clamp01(min(x - Real(1.0f), Real(3.0f) - x)); };
  HueSectors s;
  s.green = (hue >= Real(1.0f)) & (hue < Real(3.0f));
  s.blue = (hue >= Real(3.0f)) & (hue < Real(5.0f));
  s.yellow = hue < Real(2.0f);
  s.cyan = (hue >= Real(2.0f)) & (hue < Real(4.0f));
  const Real towardsAdditive = select(s.green, Real(6.0f), select(s.blue, Real(4.0f), Real(2.0f)));
  const Real towardsSubtractive = select(s.yellow, Real(1.0f), select(s.cyan, Real(5.0f), Real(3.0f)));
  s.additive = window(modulo6(hue + towardsAdditive));
  s.subtractive = window(modulo6(hue + towardsSubtractive));
  return s;
}

// The weight of a custom band.
MORVELLAN_INLINE Real weightOf(const HueWindow& w, Real hue)
{
  const Real x = modulo6(hue + Real(w.centre));
  const Mask low = x < Real(2.0f);
  const Real from = select(low, Real(w.lowFrom), Real(w.highFrom));
  const Real scale = select(low, Real(w.lowScale), Real(w.highScale));
  return clamp01((x - from) * scale);
}

MORVELLAN_INLINE Real smooth(Real t)
{
  return t * t * (Real(3.0f) - (t + t));
}

}  // namespace morvellan::MORVELLAN_TARGET
