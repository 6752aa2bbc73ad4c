// The tone curve and the density curve of a film, on code values of its working log: a knee bump, a toe and a shoulder
// per channel, and the filmic density between a floor and a ceiling. Soup and print share both. A slope of up to 51
// magnifies last digits, so that products and sums are rounded apart (`plain` functions, and no fma), the same on every
// target.
#pragma once

#include "film/colour_math.h"

namespace morvellan::MORVELLAN_TARGET
{

// Amounts of 0 leave a channel as it is. Pivots and the centre are code values.
struct ToneSettings
{
  bool live = false;
  float toePivot = 0.39100686f;
  float toe[3] = {};
  float knee[3] = {};
  float shoulderPivot = 0.48875856f;
  float shoulder[3] = {};
  float kneeCentre = 0.3892f;
};

// One channel of the curve. The logarithms are those by which the toe's and the shoulder's are divided.
struct ToneChannel
{
  float bump = 0.0f;  // a fifth of the knee's amount
  float toe = 0.0f, toeStretch = 0.0f, toeScale = 0.0f;
  float shoulder = 0.0f, shoulderStretch = 0.0f, shoulderScale = 0.0f;
};

struct ToneCurve
{
  bool on = false;
  float kneeFrom = 0.0f, kneeTo = 1.0f, kneeSpan = 1.0f, perKneeSpan = 1.0f;
  float kneeCentre = 0.5f, lowerSlope = 1.0f, upperSlope = 1.0f;
  float toePivot = 1.0f, perToePivot = 1.0f;
  float shoulderPivot = 1.0f, shoulderRoom = 1.0f, perShoulderRoom = 1.0f;
  ToneChannel channel[3];
};

ToneCurve makeToneCurve(const ToneSettings& settings);

// A bump of the sine between kneeFrom and kneeTo, its top where the position within the span is kneeCentre.
MORVELLAN_INLINE Real bendKnee(const ToneCurve& t, float bump, Real x)
{
  const Real u = (x - Real(t.kneeFrom)) * Real(t.perKneeSpan);
  const Real centre(t.kneeCentre);
  const Real lower = u * Real(t.lowerSlope);
  const Real upper = (u - centre) * Real(t.upperSlope) + Real(0.5f);
  const Real phase = select(u <= centre, lower, upper);
  const Real lift = (Real(1.0f) - plain_cos(phase * Real(6.28318548f))) * Real(bump);
  const Mask inside = (x >= Real(t.kneeFrom)) & (x <= Real(t.kneeTo));
  return select(inside, lift * Real(t.kneeSpan) + x, x);
}

MORVELLAN_INLINE Real bendToe(const ToneCurve& t, const ToneChannel& c, Real x)
{
  const Real one(1.0f);
  const Real n = x * Real(t.perToePivot);
  const Real amount(c.toe);
  Real bent;
  if (c.toe > 0.0f)
  {
    const Real curve = (n + n) - plain_log2(Real(c.toeStretch) * n + one) * Real(c.toeScale);
    const Real p = select(x > Real(0.0f), curve, x);
    bent = (one - p) * amount + p;
  }
  else
  {
    const Real q = (amount + amount) * (one - n) + n;
    bent = select(q >= Real(0.0f), plain_log2(Real(c.toeStretch) * q + one) * Real(c.toeScale), q);
  }
  return select(x < Real(t.toePivot), bent * Real(t.toePivot), x);
}

MORVELLAN_INLINE Real bendShoulder(const ToneCurve& t, const ToneChannel& c, Real x)
{
  const Real one(1.0f);
  const Real pivot(t.shoulderPivot);
  const Real r = (x - pivot) * Real(t.perShoulderRoom);
  const Real w = c.shoulder > 0.0f ? r * Real(c.shoulder * 2.0f + 1.0f) : r;
  const Real log = plain_log2(Real(c.shoulderStretch) * w + one) * Real(c.shoulderScale);
  const Real bent = c.shoulder > 0.0f ? (w + w) - log : log * Real(c.shoulder + 1.0f);
  return select(x > pivot, bent * Real(t.shoulderRoom) + pivot, x);
}

MORVELLAN_INLINE Real bend(const ToneCurve& t, const ToneChannel& c, Real x)
{
  if (c.bump != 0.0f)
    x = bendKnee(t, c.bump, x);
  if (c.toe != 0.0f)
    x = bendToe(t, c, x);
  if (c.shoulder != 0.0f)
    x = bendShoulder(t, c, x);
  return x;
}

// Knee, toe and shoulder of code values.
MORVELLAN_INLINE Rgb bendTone(const ToneCurve& t, Rgb x)
{
  return {bend(t, t.channel[0], x.r), bend(t, t.channel[1], x.g), bend(t, t.channel[2], x.b)};
}

// Density. With `power` a value above 0 is raised to the slope first.
struct DensityCurve
{
  float floor[3] = {};
  float ceiling[3] = {1.0f, 1.0f, 1.0f};
  float scale = 1.0f;
  float slope = 1.0f;
};

// Between floor and ceiling of a channel, at a value that is not bounded above.
MORVELLAN_INLINE Real densityOf(const DensityCurve& d, int channel, Real y)
{
  const Real ceiling(d.ceiling[channel]);
  return Real(d.floor[channel] - d.ceiling[channel]) / (y + Real(1.0f)) + ceiling;
}

MORVELLAN_INLINE Real filmicPower(const DensityCurve& d, Real x)
{
  return plain_exp2(plain_log2(x * Real(d.scale)) * Real(d.slope));
}

// Code values of the developed film, in [filmBlackCode, 1].
MORVELLAN_INLINE Rgb filmDensity(const DensityCurve& d, bool power, Rgb x)
{
  const auto develop = [&](int channel, Real v)
  {
    const Real y = power ? select(v > Real(0.0f), filmicPower(d, v), v) : v;
    return clamp(densityOf(d, channel, y), Real(filmBlackCode), Real(1.0f));
  };
  return {develop(0, x.r), develop(1, x.g), develop(2, x.b)};
}

// The print's gamma: code values tilted about a pivot, channel by channel.
struct PrintGamma
{
  float power[3] = {1.0f, 1.0f, 1.0f};
  float scale[3] = {1.0f, 1.0f, 1.0f};
  bool live[3] = {};
};

MORVELLAN_INLINE Rgb tilt(const PrintGamma& gamma, Rgb x)
{
  const auto channel = [&](int i, Real v)
  { return gamma.live[i] ? plain_exp2(plain_log2(v) * Real(gamma.power[i])) * Real(gamma.scale[i]) : v; };
  return {channel(0, x.r), channel(1, x.g), channel(2, x.b)};
}

}  // namespace morvellan::MORVELLAN_TARGET
