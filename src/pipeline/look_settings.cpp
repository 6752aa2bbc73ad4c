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
    s[i] = {r[i].live, band(r[i].saturation), band(r[i].hue), band(r[i].chroma), band(r[i].vibrance), zone(r[i].zone)};
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

PrintLook printLook(const FrameParams& p)
{
  const std::array<RefinementSettings, printRefinements> refined = refinements(p.printRefinements);
  PrintSettings s;
  s.cast = {p.printCastActive, p.printCast, p.printTintGtoM, p.printTintRtoC};
  s.attributes = attributes(p.printAttributes);
  s.refine = p.printRefineActive;
  s.refinements = refined;
  s.saturation = p.printSaturation;
  triple(s.gamma.power, p.printGamma);
  triple(s.gamma.scale, p.printGammaScale);
  std::copy(std::begin(p.printGammaLive), std::end(p.printGammaLive), std::begin(s.gamma.live));
  s.tone.live = p.printCurve.live;
  s.tone.toePivot = p.printCurve.shadowPivot;
  triple(s.tone.toe, p.printCurve.shadow);
  triple(s.tone.knee, p.printCurve.midtone);
  s.tone.shoulderPivot = p.printCurve.highlightPivot;
  triple(s.tone.shoulder, p.printCurve.highlight);
  s.tone.kneeCentre = p.printMidGrey;
  triple(s.silver.power, p.printBleachGamma);
  triple(s.silver.gain, p.printBleachScale);
  triple(s.density.floor, p.printBlack);
  triple(s.density.ceiling, p.printerLight);
  s.density.scale = p.printFilmicScale;
  s.density.slope = p.printFilmicSlope;
  s.profile = p.printProfile;
  s.display = p.outputDisplayGamut;
  s.peak = p.peakBrightness;
  return makePrintLook(s);
}

LabSettings labSettings(const FrameParams& p)
{
  LabSettings s{};
  triple(s.silver, p.labSilver);
  s.developmentTime = p.labPullPush;
  s.concentration = p.labDevelop;
  s.agitation = p.labAgitate;
  s.replenish = p.labReplenish;
  s.spectrumBand = p.labSpectrumBand;
  s.lowDiffusion = p.labDiffuseLoMidOn;
  s.highDiffusion = p.labDiffuseMidHiOn;
  s.lowWidth = p.labDiffuseLoMid;
  s.detailGain = p.labDiffuseMidHi;
  s.areaScale = p.labAreaScale;
  s.inputGamut = p.inputGamut;
  return s;
}

}  // namespace morvellan::MORVELLAN_TARGET
