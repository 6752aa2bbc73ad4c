// The conversions, group by group; the arithmetic of a launch's scalars is the film folder's.
#include "pipeline/look_settings.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <span>

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

ZoneSettings zone(const ZoneParams& z)
{
  return {z.mode, z.both, z.low, z.lowRange, z.high, z.highRange};
}

BandSettings band(const BandParams& b)
{
  return {b.live, b.hue, b.width, b.strength};
}

AttributeSettings attribute(const AttributeParams& a)
{
  AttributeSettings s;
  s.vectorLive = a.vectorLive;
  std::copy(std::begin(a.axis), std::end(a.axis), std::begin(s.axis));
  s.vectorStrength = a.vectorStrength;
  s.custom = band(a.custom);
  s.zone = zone(a.zone);
  return s;
}

AttributeBlock attributes(const AttributesParams& a)
{
  return {attribute(a.saturation), attribute(a.hue), attribute(a.chroma), attribute(a.vibrance)};
}

template <size_t N>
std::array<RefinementSettings, N> refinements(const RefinementParams (&r)[N])
{
  std::array<RefinementSettings, N> s;
  for (size_t i = 0; i < N; ++i)
    s[i] = {r[i].live,          band(r[i].saturation), band(r[i].hue), band(r[i].chroma),
            band(r[i].vibrance), zone(r[i].zone)};
  return s;
}

template <typename To>
void triple(To& to, const float (&from)[3])
{
  std::copy(std::begin(from), std::end(from), std::begin(to));
}

}  // namespace

SoupLook soupLook(const FrameParams& p)
{
  SoupLook look;
  look.cast = makeCast({p.cameraCastActive, p.cameraCast, p.cameraTintGtoM, p.cameraTintRtoC});
  look.attributes = makeAttributeEngine(attributes(p.soupAttributes), p.refineActive, refinements(p.soupRefinements));
  ToneSettings tone;
  tone.live = p.toneCurvesOn;
  tone.toePivot = p.soupToePivot;
  triple(tone.toe, p.soupToe);
  triple(tone.knee, p.soupKnee);
  tone.shoulderPivot = p.soupShoulderPivot;
  triple(tone.shoulder, p.soupShoulder);
  tone.kneeCentre = p.labMidGrey;
  look.tone = makeToneCurve(tone);
  triple(look.silver.power, p.labBleachGamma);
  triple(look.silver.gain, p.labBleachScale);
  triple(look.density.floor, p.soupDmin);
  triple(look.density.ceiling, p.soupDmax);
  look.density.scale = p.soupFilmicScale;
  look.density.slope = p.soupFilmicSlope;
  return look;
}

}  // namespace morvellan::MORVELLAN_TARGET
