// Silver retention: a bleach bypass as a contrasty near-grey layer, blended over the desaturated picture in log.
#pragma once

#include "colour/film_space.h"
#include "colour/primaries.h"
#include "film/tone.h"

namespace morvellan::MORVELLAN_TARGET
{

struct Silver
{
  float power[3] = {1.0f, 1.0f, 1.0f};
  float gain[3] = {1.0f, 1.0f, 1.0f};
  Row3 luminance = awg4Luminance;
};

// Code values of the blend for a linear colour. Mid-grey's code decides between multiply and screen, for all channels
// at once.
MORVELLAN_INLINE Rgb retainSilver(const Silver& silver, Rgb c)
{
  const Real one(1.0f);
  const Real two(2.0f);
  const Real floor(0.0379999988f);
  const Real ceiling(logC4Largest);
  const Real luminance = dot(silver.luminance, c);
  // The layer's source is the luminance with a trillionth of the channel, which is the luminance from the floor on.
  const Real log = plain_log2(maxNumber(luminance, floor) * Real(2.5f));
  const auto layer = [&](int i)
  {
    const Real p = plain_exp2(log * Real(silver.power[i])) * Real(silver.gain[i]);
    return logC4EncodeCurve(clamp(p, floor, ceiling));
  };
  const auto base = [&](Real channel)
  {
    const Real d = channel * Real(0.899999976f) + luminance * Real(1.0f - 0.899999976f);
    return logC4EncodeCurve(minNumber(maxNumber(d, floor) * Real(5.0f), ceiling));
  };
  constexpr Row3 row = awg4Luminance;
  const Rgb a{base(c.r), base(c.g), base(c.b)};
  const Mask multiplies = dot(row, a) < Real(0.278400004f);
  const auto blend = [&](Real under, Real over)
  { return select(multiplies, two * under * over, one - two * (one - under) * (one - over)); };
  return {blend(a.r, layer(0)), blend(a.g, layer(1)), blend(a.b, layer(2))};
}

}  // namespace morvellan::MORVELLAN_TARGET
