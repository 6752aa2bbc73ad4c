// From attribute settings to the numbers of a launch: windows, exponents and gains that are the same for every pixel.
#include "film/attributes.h"

#include <algorithm>
#include <cmath>

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

HueWindow makeWindow(const BandSettings& band)
{
  return {.fromMiddle = std::fmod(band.hue, 6.0f) - 2.0f, .perWidth = band.width > 0.0f ? 1.0f / band.width : 0.0f};
}

SaturationBand makeSaturation(const BandSettings& band)
{
  return {.on = band.live, .window = makeWindow(band), .strength = band.strength};
}

// A hat of height k over a hue axis, 1 wide on each side of `axis`.
float hat(float hue, float axis, float k)
{
  return k - std::min(1.0f, std::fabs(hue - axis)) * k;
}

HueBand makeHue(const BandSettings& band, float strength)
{
  const float c = band.hue;
  const float k = strength;
  const float red = c < 3.0f ? hat(c, 2.0f, k) : -hat(c, 5.0f, k);
  const float green = c < 1.0f ? hat(c, 0.0f, k) : c < 5.0f ? -hat(c, 3.0f, k) : hat(c, 6.0f, k);
  const float blue = c < 2.0f ? -hat(c, 1.0f, k) : hat(c, 4.0f, k);
  return {.on = band.live, .window = makeWindow(band), .move = {blue - green, red - blue, green - red}};
}

ChromaBand makeChroma(const BandSettings& band)
{
  return {.on = band.live,
          .window = makeWindow(band),
          .excess = band.strength - 1.0f,
          .flank = std::min(1.0f, 2.0f / band.strength)};
}

VibranceBand makeVibrance(const BandSettings& band)
{
  return {.on = band.live, .window = makeWindow(band), .exponent = std::exp2(3.0f * band.strength)};
}

ZoneWeights makeZone(const ZoneSettings& zone)
{
  return {.lowOn = zone.mode == 1 || (zone.mode != 0 && zone.both),
          .highOn = zone.mode == 2 || (zone.mode != 0 && zone.both),
          .low = zone.low,
          .lowRange = zone.lowRange,
          .high = zone.high,
          .highRange = zone.highRange};
}

ChromaVectors makeChromaVectors(const AttributeSettings& chroma)
{
  ChromaVectors v{.on = chroma.vectorLive, .shape = 1.0f - chroma.vectorStrength};
  for (int i = 0; i < 6; ++i)
  {
    const float gain = std::exp2(chroma.axis[i] * 4.0f);
    v.excess[i] = gain - 1.0f;
    v.flank[i] = std::min(1.0f, 2.0f / gain);
    v.flanked = v.flanked || v.flank[i] != 1.0f;
  }
  return v;
}

VibranceVectors makeVibranceVectors(const AttributeSettings& vibrance)
{
  VibranceVectors v{.on = vibrance.vectorLive};
  constexpr double log2Of3 = 1.5849625007211562;
  for (int i = 0; i < 6; ++i)
  {
    // Yellow's overall strength has the base 2, the five others' 3.
    const double base = i == 5 ? 1.0 : log2Of3;
    const double exponent =
        log2Of3 * static_cast<double>(vibrance.axis[i]) + base * static_cast<double>(vibrance.vectorStrength);
    v.exponent[i] = static_cast<float>(std::exp2(exponent));
  }
  return v;
}

SaturationVectors makeSaturationVectors(const AttributeSettings& saturation)
{
  SaturationVectors v{.on = saturation.vectorLive, .strength = saturation.vectorStrength};
  std::copy_n(saturation.axis, 6, v.axis);
  return v;
}

HueVectors makeHueVectors(const AttributeSettings& hue)
{
  HueVectors v{.on = hue.vectorLive, .strength = hue.vectorStrength};
  std::copy_n(hue.axis, 6, v.axis);
  return v;
}

bool live(const AttributeSettings& attribute)
{
  return attribute.vectorLive || attribute.custom.live;
}

}  // namespace

bool anyVector(const AttributeBlock& block)
{
  return block.saturation.vectorLive || block.hue.vectorLive || block.chroma.vectorLive || block.vibrance.vectorLive;
}

AttributeEngine makeAttributeEngine(const AttributeBlock& block, bool refine,
                                    std::span<const RefinementSettings> refinements)
{
  AttributeEngine e;
  e.saturationVectors = makeSaturationVectors(block.saturation);
  e.hueVectors = makeHueVectors(block.hue);
  e.chromaVectors = makeChromaVectors(block.chroma);
  e.vibranceVectors = makeVibranceVectors(block.vibrance);
  e.custom.saturation = makeSaturation(block.saturation.custom);
  e.custom.hue = makeHue(block.hue.custom, block.hue.custom.strength);
  e.custom.chroma = makeChroma(block.chroma.custom);
  e.custom.vibrance = makeVibrance(block.vibrance.custom);
  e.saturationZone = makeZone(block.saturation.zone);
  e.hueZone = makeZone(block.hue.zone);
  e.chromaZone = makeZone(block.chroma.zone);
  e.vibranceZone = makeZone(block.vibrance.zone);

  for (const RefinementSettings& r : refinements)
  {
    if (!refine || !r.live || e.refinementCount == soupRefinements)
      continue;
    e.refinements[e.refinementCount++] = {.saturation = makeSaturation(r.saturation),
                                          .hue = makeHue(r.hue, r.hue.width * r.hue.strength),
                                          .chroma = makeChroma(r.chroma),
                                          .vibrance = makeVibrance(r.vibrance),
                                          .zone = makeZone(r.zone)};
  }
  e.on =
      live(block.saturation) || live(block.hue) || live(block.chroma) || live(block.vibrance) || e.refinementCount > 0;
  return e;
}

}  // namespace morvellan::MORVELLAN_TARGET
