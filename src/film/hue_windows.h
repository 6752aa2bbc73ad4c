// Hue of a pixel, in units of 60 degrees from red, and the weights that windows over hue give it.
#pragma once

#include "film/attributes.h"
#include "film/colour_math.h"

namespace morvellan::MORVELLAN_TARGET
{

// The highest and the lowest channel; a number wins over a NaN. `peak` is the highest, held to a number.
struct Extent
{
  Real highest, lowest, peak;
};

MORVELLAN_INLINE Extent extentOf(Rgb c)
{
  const Real highest = largest(c);
  return {highest, smallest(c), min(highest, Real(1e36f))};
}

// The colour that windows and the chroma attribute refer to: the pixel as it enters the engine.
struct Reference
{
  Real hue;     // [0, 6)
  Real lowest;  // the lowest channel over the highest, none below 0; any number where nothing is above 0
};

MORVELLAN_INLINE Reference referenceOf(Rgb c)
{
  const Real zero(0.0f);
  const Extent e = extentOf(c);
  const Real span = e.peak - e.lowest;
  const Mask red = (c.r >= c.g) & (c.r >= c.b);
  const Mask green = c.g >= c.b;
  const Real difference = select(red, c.g - c.b, select(green, c.b - c.r, c.r - c.g));
  const Real origin = select(red, Real(6.0f), select(green, Real(2.0f), Real(4.0f)));
  const Real hue = difference / span + origin;
  const Real wrapped = select(hue >= Real(6.0f), hue - Real(6.0f), hue);
  // What is not a number counts as a hue beside red.
  const Real known = select(isNan(wrapped), Real(9.99999975e-06f), wrapped);
  return {select((e.peak > zero) & (span != zero), known, zero), max(e.lowest, zero) / e.peak};
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
  HueSectors s;
  s.green = (hue >= Real(1.0f)) & (hue < Real(3.0f));
  s.blue = (hue >= Real(3.0f)) & (hue < Real(5.0f));
  s.yellow = hue < Real(2.0f);
  s.cyan = (hue >= Real(2.0f)) & (hue < Real(4.0f));
  // Between the two vectors the weight goes over from the one to the other.
  const Real red = select(hue < Real(3.0f), Real(0.0f), Real(6.0f));
  s.subtractive = abs(hue - select(s.green, Real(2.0f), select(s.blue, Real(4.0f), red)));
  s.additive = Real(1.0f) - s.subtractive;
  return s;
}

// The weight of a custom band.
MORVELLAN_INLINE Real weightOf(const HueWindow& w, Real hue)
{
  const Real x = hue + Real(w.fromMiddle);
  const Real past = select(x >= Real(4.0f), x - Real(6.0f), x);
  if (w.perWidth == 0.0f)
    return select(past > Real(0.0f), Real(1.0f), Real(0.0f));
  return max(Real(1.0f) - abs(past) * Real(w.perWidth), Real(0.0f));
}

MORVELLAN_INLINE Real smooth(Real t)
{
  return t * t * (Real(3.0f) - (t + t));
}

}  // namespace morvellan::MORVELLAN_TARGET
