// From tone settings to the numbers of a launch.
#include "film/tone.h"

#include <cmath>

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

constexpr double e = 2.71828175f;  // as a float

// log(stretch * v + 1) / log(stretch + 1) takes 0 to 0 and 1 to 1.
float logScale(float stretch)
{
  return static_cast<float>(1.0 / std::log2(static_cast<double>(stretch) + 1.0));
}

ToneChannel makeChannel(float knee, float toe, float shoulder, float shoulderPivot)
{
  ToneChannel c;
  c.bump = knee * 0.2f;
  c.toe = toe;
  if (toe != 0.0f)
  {
    c.toeStretch = static_cast<float>(std::fabs(static_cast<double>(toe)) * 2.0 * e);
    c.toeScale = logScale(c.toeStretch);
  }
  // A pivot of 1 leaves no room for a shoulder.
  if (shoulder != 0.0f && shoulderPivot < 1.0f)
  {
    c.shoulder = shoulder;
    c.shoulderStretch = static_cast<float>(static_cast<double>(shoulder) * (shoulder > 0.0f ? e : -2.0 * e));
    c.shoulderScale = logScale(c.shoulderStretch);
  }
  return c;
}

}  // namespace

ToneCurve makeToneCurve(const ToneSettings& s)
{
  ToneCurve t;
  t.on = s.live;
  t.shoulderPivot = s.shoulderPivot;
  t.shoulderRoom = 1.0f - s.shoulderPivot;
  t.toePivot = s.toePivot;
  t.kneeFrom = s.toePivot * 0.5f - t.shoulderRoom * 0.25f;
  t.kneeTo = (1.0f - t.shoulderRoom * 0.5f) + s.toePivot;
  t.kneeSpan = t.kneeTo - t.kneeFrom;
  t.perKneeSpan = 1.0f / t.kneeSpan;
  t.perToePivot = 1.0f / t.toePivot;
  t.perShoulderRoom = 1.0f / t.shoulderRoom;
  t.kneeCentre = s.kneeCentre;
  t.lowerSlope = 1.0f / (s.kneeCentre * 2.0f);
  t.upperSlope = 1.0f / (2.0f - s.kneeCentre * 2.0f);
  for (int i = 0; i < 3; ++i)
    t.channel[i] = makeChannel(s.knee[i], s.toe[i], s.shoulder[i], s.shoulderPivot);
  return t;
}

}  // namespace morvellan::MORVELLAN_TARGET
