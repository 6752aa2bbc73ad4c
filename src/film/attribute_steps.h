// The steps of the attribute engine on one group of pixels: zones, and saturation, hue, chroma and vibrance by vectors
// and by bands. Colours are linear ARRI Wide Gamut 4; what a launch does not use is skipped for the whole launch.
//
// Up to fifty steps follow one another, and channels that cancel keep the last digits of all of them: so products and
// sums are rounded apart (`plain` functions, and no fma), and every target gives the same bits.
#pragma once

#include "film/attributes.h"
#include "film/colour_math.h"
#include "film/hue_windows.h"
#include "film/neutral_space.h"

namespace morvellan::MORVELLAN_TARGET
{

// x pulled towards an average: x * strength + (1 - strength) * average. Two pulls towards the same average are one
// pull with the product of their strengths, and a pull mixed in with weight w is one of strength 1 - w + w * strength.
MORVELLAN_INLINE Real pull(Real x, Real strength, Real average)
{
  return x * strength + (Real(1.0f) - strength) * average;
}

MORVELLAN_INLINE Rgb pull(Rgb c, Real strength, Real average)
{
  return {pull(c.r, strength, average), pull(c.g, strength, average), pull(c.b, strength, average)};
}

MORVELLAN_INLINE Real mixedPull(Real weight, Real strength)
{
  return weight * strength + (Real(1.0f) - weight);
}

// How much a zone acts on a pixel, and whether it acts at all, which decides about clamps and, in a low zone, about the
// vectors: down to a float's least number above 0, 2^-149, to which all from 2^-150 on is rounded. The weight itself is
// 0 already below 2^-126.
struct ZoneShare
{
  Real weight;
  Mask some;
};

MORVELLAN_INLINE ZoneShare zoneShare(Real log2Share, float range)
{
  const Real exponent = log2Share * Real(range);
  return {exp2NotPositive(exponent), exponent > Real(-150.0f)};
}

// How much of an intensity is high and how much is low, from 1 / (1 + intensity).
MORVELLAN_INLINE ZoneShare highShare(const ZoneWeights& zone, Real average, Real share)
{
  return zoneShare(plain_log2Positive(average * share), zone.highRange);
}

MORVELLAN_INLINE ZoneShare lowShare(const ZoneWeights& zone, Real share)
{
  return zoneShare(plain_log2Positive(share), zone.lowRange);
}

// The zone step that ends an attribute or a refinement.
MORVELLAN_INLINE Rgb trailingZone(const ZoneWeights& zone, Rgb c)
{
  if (!zone.highOn && !zone.lowOn)
    return c;
  const Real average = averageOf(c);
  const Real share = Real(1.0f) / (average + Real(1.0f));
  const auto mix = [&](const ZoneShare& of, float strength)
  {
    const Rgb mixed = clampFilm(pull(c, mixedPull(of.weight, Real(strength)), average));
    c = select(of.some, mixed, c);
  };
  if (zone.highOn)
    mix(highShare(zone, average, share), zone.high);
  if (zone.lowOn)
    mix(lowShare(zone, share), zone.low);
  return c;
}

// Saturation. All its steps are pulls towards the average of the neutral space, so they act as one. `vectors` is the
// pull of both vectors in play; zones mix it, and the custom band, as each mode has it.
struct SaturationPull
{
  Real strength;
  Mask bounded;  // where the result is clamped in the neutral space
};

template <bool Vectors>
MORVELLAN_INLINE SaturationPull saturationPull(const AttributeEngine& e, const HueSectors& sectors, Real hue,
                                               Real average)
{
  const Real one(1.0f);
  const ZoneWeights& zone = e.saturationZone;
  const bool customOn = e.custom.saturation.on;
  const bool vectorsOn = Vectors && e.saturationVectors.on;
  Real additive = one, subtractive = one, band = one;
  if (vectorsOn)
  {
    const float(&axis)[6] = e.saturationVectors.axis;
    additive = mixedPull(smooth(sectors.additive), sectors.pickAdditive(axis));
    subtractive = mixedPull(smooth(sectors.subtractive), sectors.pickSubtractive(axis));
  }
  if (customOn)
    band = mixedPull(smooth(weightOf(e.custom.saturation.window, hue)), Real(e.custom.saturation.strength));

  Real strength = additive * subtractive * band;
  Mask bounded = customOn ? average == average : average != average;
  if (zone.highOn || zone.lowOn)
  {
    const Real share = one / (average + one);
    const Real vectors = customOn ? additive * subtractive : one;
    strength = vectors;
    if (zone.highOn)
    {
      const auto [weight, some] = highShare(zone, average, share);
      strength = strength * mixedPull(weight, Real(zone.high));
      if (!zone.lowOn)
      {
        // The high zone alone gates what follows it.
        strength = customOn ? strength * mixedPull(weight, band)
                            : strength * mixedPull(weight, additive) * mixedPull(weight, subtractive);
        bounded = bounded & some;
      }
    }
    if (zone.lowOn)
    {
      const auto [weight, some] = lowShare(zone, share);
      const Real mixed = mixedPull(weight, Real(zone.low));
      const Real rest = customOn ? mixedPull(weight, band) : additive * subtractive;
      strength = select(some, strength * mixed * rest, strength);
      bounded = bounded & some;
    }
  }
  return {strength, bounded};
}

template <bool Vectors>
MORVELLAN_INLINE Rgb applySaturation(const AttributeEngine& e, const HueSectors& sectors, Real hue, Rgb c)
{
  Rgb x = toNeutral(c);
  const Real average = averageOf(x);
  if (Vectors && e.saturationVectors.on)
    x = clampFilm(pull(x, Real(e.saturationVectors.strength), average));
  const SaturationPull p = saturationPull<Vectors>(e, sectors, hue, average);
  x = pull(x, p.strength, average);
  x = select(p.bounded, clampFilm(x), x);
  return select(average > Real(0.0f), clampFilm(fromNeutral(x)), c);
}

MORVELLAN_INLINE Rgb applySaturationBand(const SaturationBand& band, Real hue, Rgb c)
{
  const Rgb x = toNeutral(c);
  const Real average = averageOf(x);
  const Real strength = mixedPull(smooth(weightOf(band.window, hue)), Real(band.strength));
  const Rgb pulled = clampFilm(pull(x, strength, average));
  return select(average > Real(0.0f), clampFilm(fromNeutral(pulled)), c);
}

// The overall strength of hue bands without vectors.
inline constexpr float bandHueStrength = 0.33f;

// How strongly hue moves act on a colour: 0 for neutrals, the highest channel for the purest.
MORVELLAN_INLINE Real hueReach(const Extent& e, float strength)
{
  const Real lowest = max(e.lowest, Real(0.0f));
  // 1 - min(n) / u with u = (1 - strength) min(n) + strength, n being the channels over the highest.
  const Real u = Real(1.0f - strength) * lowest + Real(strength) * e.peak;
  const Real s = min(Real(strength) * (e.peak - lowest) / u, Real(1.0f));
  return e.peak * (s * (Real(1.0f) - s * Real(0.66f)));
}

// The moves are at most as large as the highest channel, so that only the lower bound of the clamps can be met.
MORVELLAN_INLINE Rgb moveByVectors(const HueVectors& v, const HueSectors& s, Real reach, Rgb c)
{
  const Real zero(0.0f);
  const Real additive = reach * s.additive * s.pickAdditive(v.axis);
  const Real green = select(s.green, additive, zero);
  const Real blue = select(s.blue, additive, zero);
  const Real red = additive - green - blue;
  const Rgb first = positive(Rgb{c.r + blue - green, c.g + red - blue, c.b + green - red});
  const Real subtractive = reach * s.subtractive * s.pickSubtractive(v.axis);
  const Real yellow = select(s.yellow, subtractive, zero);
  const Real cyan = select(s.cyan, subtractive, zero);
  const Real magenta = subtractive - yellow - cyan;
  return positive(Rgb{first.r + yellow - magenta, first.g + cyan - yellow, first.b + magenta - cyan});
}

MORVELLAN_INLINE Rgb moveByBand(const HueBand& band, Real hue, Real reach, Rgb c)
{
  const Real w = reach * weightOf(band.window, hue);
  return clampFilm(Rgb{w * Real(band.move[0]) + c.r, w * Real(band.move[1]) + c.g, w * Real(band.move[2]) + c.b});
}

template <bool Vectors>
MORVELLAN_INLINE Rgb applyHue(const AttributeEngine& e, const HueSectors& sectors, Real hue, Rgb c)
{
  const Extent extent = extentOf(c);
  const Real reach = hueReach(extent, Vectors && e.hueVectors.on ? e.hueVectors.strength : bandHueStrength);
  Rgb moved = c;
  if (Vectors && e.hueVectors.on)
    moved = moveByVectors(e.hueVectors, sectors, reach, moved);
  if (e.custom.hue.on)
    moved = moveByBand(e.custom.hue, hue, reach, moved);
  return select(extent.peak <= Real(0.0f), c, trailingZone(e.hueZone, moved));
}

MORVELLAN_INLINE Rgb applyHueBand(const HueBand& band, Real hue, Rgb c)
{
  const Extent extent = extentOf(c);
  const Rgb moved = moveByBand(band, hue, hueReach(extent, bandHueStrength), c);
  return select(extent.peak <= Real(0.0f), c, moved);
}

// Chroma. What a band of weight t adds to the gain 1: nothing outside, `excess` in the middle. Its flank is a power of
// 1 - smooth(t), which keeps its precision near the middle as (1 - t)^2 (1 + 2 t).
MORVELLAN_INLINE Real flankedExcess(Real t, Real excess, Real flank)
{
  const Real one(1.0f);
  const Real outside = (one - t) * (one - t) * (one + (t + t));
  return excess * (one - exp2NotPositive(plain_log2Positive(outside) * flank));
}

MORVELLAN_INLINE Real bandExcess(const ChromaBand& band, Real hue)
{
  const Real t = weightOf(band.window, hue);
  if (band.flank != 1.0f)
    return flankedExcess(t, Real(band.excess), Real(band.flank));
  return Real(band.excess) * smooth(t);
}

MORVELLAN_INLINE Real vectorExcess(bool flanked, Real t, Real excess, Real flank)
{
  return flanked ? flankedExcess(t, excess, flank) : excess * smooth(t);
}

// 1 - the overall strength of chroma, where no vectors are on; a fifth.
inline constexpr float bandChromaShape = 0.199999988f;

// The factor of a pixel for a gain of 1 + excess: the gain itself for colours whose chroma it suits, 1 for neutrals.
MORVELLAN_INLINE Real chromaFactor(Real excess, Real lowest, float shape)
{
  const Real one(1.0f);
  const Real zero(0.0f);
  // 1 - min(n) / y with y = (1 - p) min(n) + p and p = min(1, 1 / gain).
  const Real f = (one - lowest) / (lowest * max(excess, zero) + one);
  // q = f^(2 + shape) / (shape + f^(1 + shape)).
  if (shape == bandChromaShape)
  {
    const Real perRoot = inverseFifthRoot(f);
    const Real halfPower = f * perRoot * perRoot;
    const Real power = halfPower * halfPower;
    return excess * (f * power / (power + Real(bandChromaShape))) + one;
  }
  const Real power = exp2NotPositive(plain_log2Positive(f) * Real(shape + 1.0f));
  const Real q = min(f * power / (Real(shape) + power), Real(2.0f));
  return select(f == zero, one, excess * q + one);
}

template <bool Vectors>
MORVELLAN_INLINE Rgb applyChroma(const AttributeEngine& e, const HueSectors& s, const Reference& reference, Rgb c)
{
  const float shape = Vectors && e.chromaVectors.on ? e.chromaVectors.shape : bandChromaShape;
  Real factor(1.0f);
  if (Vectors && e.chromaVectors.on)
  {
    const ChromaVectors& v = e.chromaVectors;
    const Real additive = vectorExcess(v.flanked, s.additive, s.pickAdditive(v.excess), s.pickAdditive(v.flank));
    const Real subtractive =
        vectorExcess(v.flanked, s.subtractive, s.pickSubtractive(v.excess), s.pickSubtractive(v.flank));
    factor = chromaFactor(additive, reference.lowest, shape) * chromaFactor(subtractive, reference.lowest, shape);
  }
  if (e.custom.chroma.on)
    factor = factor * chromaFactor(bandExcess(e.custom.chroma, reference.hue), reference.lowest, shape);
  return select(largest(c) <= Real(0.0f), c, trailingZone(e.chromaZone, scaled(c, factor)));
}

MORVELLAN_INLINE Rgb applyChromaBand(const ChromaBand& band, const Reference& reference, Rgb c)
{
  const Real factor = chromaFactor(bandExcess(band, reference.hue), reference.lowest, bandChromaShape);
  return scaled(c, select(largest(c) <= Real(0.0f), Real(1.0f), factor));
}

// Vibrance. The channels of a colour in their order, the lower two over the highest too, none of those below 0. Below
// the normal numbers there is no colour.
struct Ranked
{
  Real highest, middle, lowest;  // as they are
  Real peak;                     // the highest, held to a number
  Mask dark;
  Real middleShare, lowestShare;
  Real distance;  // of the lowest from the highest, over it; beyond 1 where the lowest is negative
};

MORVELLAN_INLINE Ranked ranked(Rgb c)
{
  const Real one(1.0f);
  const Real zero(0.0f);
  const Extent e = extentOf(c);
  const Real middle = max(min(c.r, c.g), min(max(c.r, c.g), c.b));
  const Mask dark = e.peak < Real(1.2e-38f);
  const Real perPeak = one / select(dark, one, e.peak);
  const Real lowest = e.lowest * perPeak;
  return {e.highest, middle, e.lowest, e.peak, dark, max(middle * perPeak, zero), max(lowest, zero), one - lowest};
}

// y^exponent for y in [0, 1]; 0 stays 0.
MORVELLAN_INLINE Real unitPower(Real y, Real exponent)
{
  return exp2NotPositive(plain_log2Positive(y) * exponent);
}

// A pixel by its channels' ranks.
MORVELLAN_INLINE Real byRank(const Ranked& r, Real channel, Real lowest, Real middle, Real highest)
{
  return select(channel == r.lowest, lowest, select(channel == r.highest, highest, middle));
}

// The curved form of a band mixes powers of the channels over the highest into them, by weight; the linear one draws
// all channels to the highest by the same share of the way that the lowest goes. The two are averaged.
MORVELLAN_INLINE Rgb applyVibranceBand(const VibranceBand& band, Real hue, Rgb c)
{
  const Real zero(0.0f);
  const Real half(0.5f);
  const Ranked r = ranked(c);
  const Real t = weightOf(band.window, hue);
  const Real exponent(band.exponent);
  const Real lowestRise = unitPower(r.lowestShare, exponent) - r.lowestShare;
  const Real middleRise = unitPower(r.middleShare, exponent) - r.middleShare;
  const Real halfPeak = half * r.peak;
  const Real weight = halfPeak * (r.distance * t);
  const Real halfRest = half * (t * lowestRise);
  const Real toPeak = halfRest * r.peak;
  const Real lowest = max(r.lowest, zero) * half + weight * lowestRise;
  const Real middle = max(r.middle, zero) * half + weight * middleRise;
  const Real middleBound = clamp(middle, zero, halfPeak * Real(logC4Largest));
  const Real own = half - halfRest;
  const auto mix = [&](Real x)
  { return clampFilm(x * own + byRank(r, x, lowest + toPeak, middleBound + toPeak, halfPeak + toPeak)); };
  return select(r.dark, c, Rgb{mix(c.r), mix(c.g), mix(c.b)});
}

// The same by vectors, over the highest channel; the linear form meets a clamp of its own before a band acts on it.
MORVELLAN_INLINE Rgb bendByVectors(const AttributeEngine& e, const HueSectors& sectors, Real hue, const Ranked& r,
                                   Rgb c)
{
  const Real one(1.0f);
  const Real half(0.5f);
  const VibranceVectors& v = e.vibranceVectors;
  const Real additive = r.distance * sectors.additive;
  const Real subtractive = r.distance * sectors.subtractive;
  const Real exponentA = sectors.pickAdditive(v.exponent);
  const Real exponentS = sectors.pickSubtractive(v.exponent);
  const auto bent = [](Real y, Real power, Real weight) { return clampFilm(weight * (power - y) + y); };
  const Real lowestLog = plain_log2Positive(r.lowestShare);
  const auto powerOfLowest = [&](Real exponent) { return exp2NotPositive(lowestLog * exponent); };

  const Real lowestA = powerOfLowest(exponentA);
  Real lowest = bent(r.lowestShare, lowestA, additive);
  lowest = bent(lowest, unitPower(lowest, exponentS), subtractive);
  Real middle = bent(r.middleShare, unitPower(r.middleShare, exponentA), additive);
  middle = bent(middle, unitPower(middle, exponentS), subtractive);
  // The shares of the way to the highest channel, and one more that both forms of the linear part add.
  const Real restA = sectors.additive * (lowestA - r.lowestShare);
  const Real restS = sectors.subtractive * (powerOfLowest(exponentS) - r.lowestShare);
  const Real gain = (one - restA) * (one - restS);
  const Real offset = restA * Real(1.10000002f) * (Real(2.0f) - restS);

  Real rest(0.0f);
  if (e.custom.vibrance.on)
  {
    const VibranceBand& band = e.custom.vibrance;
    const Real t = weightOf(band.window, hue);
    const Real weight = r.distance * t;
    const Real exponent(band.exponent);
    lowest = clampFilm(weight * (unitPower(lowest, exponent) - lowest) + lowest);
    middle = clampFilm(weight * (unitPower(middle, exponent) - middle) + middle);
    rest = t * (powerOfLowest(exponent) - r.lowestShare);
  }
  const Real perPeak = gain / r.peak;
  const auto mix = [&](Real x)
  {
    const Real line = clampFilm(x * perPeak + offset);
    const Real linear = line + rest * (one - line);
    return clampFilm(r.peak * (half * (byRank(r, x, lowest, middle, one) + linear)));
  };
  return {mix(c.r), mix(c.g), mix(c.b)};
}

template <bool Vectors>
MORVELLAN_INLINE Rgb applyVibrance(const AttributeEngine& e, const HueSectors& sectors, Real hue, Rgb c)
{
  if (Vectors && e.vibranceVectors.on)
  {
    const Ranked r = ranked(c);
    return select(r.dark, c, trailingZone(e.vibranceZone, bendByVectors(e, sectors, hue, r, c)));
  }
  return select(largest(c) <= Real(0.0f), c,
                trailingZone(e.vibranceZone, applyVibranceBand(e.custom.vibrance, hue, c)));
}

}  // namespace morvellan::MORVELLAN_TARGET
