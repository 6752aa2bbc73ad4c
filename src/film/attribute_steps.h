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

// How much of an intensity is high and how much is low, from 1 / (1 + intensity).
MORVELLAN_INLINE Real highWeight(const ZoneWeights& zone, Real average, Real share)
{
  return exp2NotPositive(plain_log2Positive(average * share) * Real(zone.highRange));
}

MORVELLAN_INLINE Real lowWeight(const ZoneWeights& zone, Real share)
{
  return plain_exp2(plain_log2Positive(share) * Real(zone.lowRange));
}

// The zone step that ends an attribute or a refinement.
MORVELLAN_INLINE Rgb trailingZone(const ZoneWeights& zone, Rgb c)
{
  if (!zone.highOn && !zone.lowOn)
    return c;
  const Real average = averageOf(c);
  const Real share = Real(1.0f) / (average + Real(1.0f));
  const auto mix = [&](Real weight, float strength)
  {
    const Rgb mixed = clampFilm(pull(c, mixedPull(weight, Real(strength)), average));
    c = select(weight > Real(0.0f), mixed, c);
  };
  if (zone.highOn)
    mix(highWeight(zone, average, share), zone.high);
  if (zone.lowOn)
    mix(lowWeight(zone, share), zone.low);
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
      const Real weight = highWeight(zone, average, share);
      strength = strength * mixedPull(weight, Real(zone.high));
      if (!zone.lowOn)
      {
        // The high zone alone gates what follows it.
        strength = customOn ? strength * mixedPull(weight, band)
                            : strength * mixedPull(weight, additive) * mixedPull(weight, subtractive);
        bounded = bounded & (weight > Real(0.0f));
      }
    }
    if (zone.lowOn)
    {
      const Real weight = lowWeight(zone, share);
      const Mask some = weight > Real(0.0f);
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

// A colour as its largest channel and the channels over it, the largest itself exactly 1. Below the normal numbers
// there is no colour.
struct Tint
{
  Real peak;
  Mask coloured;
  Rgb n;
};

MORVELLAN_INLINE Tint tintOf(Rgb c)
{
  const Real one(1.0f);
  const Real peak = largest(c);
  const Mask dark = peak < Real(1.2e-38f);
  const Real perPeak = one / select(dark, one, peak);
  const auto over = [&](Real x) { return select(x == peak, one, x * perPeak); };
  return {peak, !dark, {over(c.r), over(c.g), over(c.b)}};
}

// 1 - the smallest of three quotients n / u, for n between `lowest` and `highest`.
MORVELLAN_INLINE Real distanceFromNeutral(Real lowest, Real highest, Real u)
{
  return Real(1.0f) - select(u < Real(0.0f), highest, lowest) / u;
}

// The overall strength of hue bands without vectors.
inline constexpr float bandHueStrength = 0.33f;

// How strongly hue bands act on a colour: 0 for neutrals, 1 for the purest.
MORVELLAN_INLINE Real hueChroma(Rgb n, float strength)
{
  const Real lowest = smallest(n);
  const Real u = Real(1.0f - strength) * lowest + Real(strength);
  const Real s = min(distanceFromNeutral(lowest, Real(1.0f), u), Real(1.0f));
  return s * Real(0.34f) + s * (Real(1.0f) - s) * Real(0.66f);
}

MORVELLAN_INLINE Rgb moveByVectors(const HueVectors& v, const HueSectors& s, Real chroma, Rgb n)
{
  const Real zero(0.0f);
  const Real additive = chroma * s.additive * s.pickAdditive(v.axis);
  const Real green = select(s.green, additive, zero);
  const Real blue = select(s.blue, additive, zero);
  const Real red = additive - green - blue;
  const Rgb first = clampFilm(Rgb{n.r + blue - green, n.g + red - blue, n.b + green - red});
  const Real subtractive = chroma * s.subtractive * s.pickSubtractive(v.axis);
  const Real yellow = select(s.yellow, subtractive, zero);
  const Real cyan = select(s.cyan, subtractive, zero);
  const Real magenta = subtractive - yellow - cyan;
  return clampFilm(Rgb{first.r + yellow - magenta, first.g + cyan - yellow, first.b + magenta - cyan});
}

MORVELLAN_INLINE Rgb moveByBand(const HueBand& band, Real hue, Real chroma, Rgb n)
{
  const Real w = chroma * weightOf(band.window, hue);
  return {w * Real(band.move[0]) + n.r, w * Real(band.move[1]) + n.g, w * Real(band.move[2]) + n.b};
}

template <bool Vectors>
MORVELLAN_INLINE Rgb applyHue(const AttributeEngine& e, const HueSectors& sectors, Real hue, Rgb c)
{
  const Tint t = tintOf(c);
  const Real chroma = hueChroma(t.n, Vectors && e.hueVectors.on ? e.hueVectors.strength : bandHueStrength);
  Rgb n = t.n;
  if (Vectors && e.hueVectors.on)
    n = moveByVectors(e.hueVectors, sectors, chroma, n);
  Rgb result;
  if (e.custom.hue.on)
    result = clampFilm(scaled(moveByBand(e.custom.hue, hue, chroma, n), t.peak));
  else
    result = scaled(n, t.peak);
  return select(t.coloured, trailingZone(e.hueZone, result), c);
}

MORVELLAN_INLINE Rgb applyHueBand(const HueBand& band, Real hue, Rgb c)
{
  const Tint t = tintOf(c);
  const Rgb n = moveByBand(band, hue, hueChroma(t.n, bandHueStrength), t.n);
  return select(t.coloured, clampFilm(scaled(n, t.peak)), c);
}

// Chroma. The gain of a band at the weight t of its window: 1 outside, `gain` in the middle. Its flank is a power of
// 1 - smooth(t), which keeps its precision near the middle as (1 - t)^2 (1 + 2 t).
MORVELLAN_INLINE Real chromaGain(Real t, Real gain, Real flank)
{
  const Real one(1.0f);
  const Real outside = (one - t) * (one - t) * (one + (t + t));
  const Real e = one - exp2NotPositive(plain_log2Positive(outside) * flank);
  return gain * e + (one - e);
}

// 1 - the overall strength of chroma, where no vectors are on.
inline constexpr float bandChromaShape = 0.199999988f;

// The factor of a pixel for a gain: the gain itself for colours whose chroma it suits, 1 for neutrals.
MORVELLAN_INLINE Real chromaFactor(Real gain, const Reference& reference, float shape)
{
  const Real one(1.0f);
  const Real p = min(one / gain, one);
  const Real y = (one - p) * reference.lowest + p;
  const Real distance = clamp01(distanceFromNeutral(reference.lowest, reference.highest, y));
  const Real f = select(y == Real(0.0f), one, distance);
  const Real power = exp2NotPositive(plain_log2Positive(f) * Real(shape + 1.0f));
  const Real q = min(f * power / (Real(shape) + power), Real(2.0f));
  return select(f == Real(0.0f), one, gain * q + (one - q));
}

MORVELLAN_INLINE Real chromaBandFactor(const ChromaBand& band, Real hue, const Reference& reference, float shape)
{
  const Real gain = chromaGain(weightOf(band.window, hue), Real(band.gain), Real(band.flank));
  return chromaFactor(gain, reference, shape);
}

template <bool Vectors>
MORVELLAN_INLINE Rgb applyChroma(const AttributeEngine& e, const HueSectors& s, const Reference& reference, Rgb c)
{
  const float shape = Vectors && e.chromaVectors.on ? e.chromaVectors.shape : bandChromaShape;
  Real factor(1.0f);
  if (Vectors && e.chromaVectors.on)
  {
    const ChromaVectors& v = e.chromaVectors;
    const Real additive = chromaGain(s.additive, s.pickAdditive(v.gain), s.pickAdditive(v.flank));
    const Real subtractive = chromaGain(s.subtractive, s.pickSubtractive(v.gain), s.pickSubtractive(v.flank));
    factor = chromaFactor(additive, reference, shape) * chromaFactor(subtractive, reference, shape);
  }
  if (e.custom.chroma.on)
    factor = factor * chromaBandFactor(e.custom.chroma, reference.hue, reference, shape);
  return select(largest(c) <= Real(0.0f), c, trailingZone(e.chromaZone, scaled(c, factor)));
}

MORVELLAN_INLINE Rgb applyChromaBand(const ChromaBand& band, const Reference& reference, Rgb c)
{
  const Real factor = chromaBandFactor(band, reference.hue, reference, bandChromaShape);
  return select(largest(c) <= Real(0.0f), c, scaled(c, factor));
}

// Vibrance. y ^ exponent mixed into y by weight, for y in [0, 1]; what is not positive stays.
MORVELLAN_INLINE Real bent(Real y, Real log, Real weight, Real exponent)
{
  const Real curved = weight * exp2NotPositive(log * exponent) + y * (Real(1.0f) - weight);
  return select(y > Real(0.0f), curved, y);
}

// The channels of a tint in their order: the highest is 1, and any power of it stays 1.
struct Ranked
{
  Real lowest, middle;
};

MORVELLAN_INLINE Ranked ranked(Rgb n)
{
  return {smallest(n), max(min(n.r, n.g), min(max(n.r, n.g), n.b))};
}

// A tint's curved form, as what its lowest and middle channels became, and its linear form; they are averaged in the
// end. Beside them stand the lowest channel and its distance from the highest as they were.
struct VibranceForms
{
  Ranked curved;
  Rgb linear;
  Real lowest, lowestLog, distance;
};

MORVELLAN_INLINE VibranceForms vibranceForms(Rgb n)
{
  const Ranked r = ranked(n);
  return {r, n, r.lowest, plain_log2Positive(r.lowest), Real(1.0f) - r.lowest};
}

// A mix of powers of the lowest channel, as a factor of its distance from the highest.
MORVELLAN_INLINE Real distanceFactor(const VibranceForms& forms, Real weight, Real exponent)
{
  const Real one(1.0f);
  const Real s = forms.distance;
  const Real power = exp2NotPositive(forms.lowestLog * exponent);
  const Real factor = (weight * (one - power) + s * (one - weight)) / s;
  return select((s == Real(0.0f)) | (s > one), one, factor);
}

MORVELLAN_INLINE void bendByVectors(const VibranceVectors& v, const HueSectors& sectors, VibranceForms& forms)
{
  const Real additive = forms.distance * sectors.additive;
  const Real subtractive = forms.distance * sectors.subtractive;
  const Real exponentA = sectors.pickAdditive(v.exponent);
  const Real exponentS = sectors.pickSubtractive(v.exponent);
  const auto curve = [&](Real y, Real log)
  {
    const Real first = clampFilm(bent(y, log, additive, exponentA));
    return clampFilm(bent(first, plain_log2Positive(first), subtractive, exponentS));
  };
  const Real fa = distanceFactor(forms, additive, exponentA);
  const Real fb = distanceFactor(forms, subtractive, exponentS);
  const Real offset = (Real(1.0f) - fa) * Real(1.10000002f);
  const auto line = [&](Real y) { return clampFilm((y * fa + offset) * fb + offset); };
  forms.curved = {curve(forms.curved.lowest, forms.lowestLog),
                  curve(forms.curved.middle, plain_log2Positive(forms.curved.middle))};
  forms.linear = {line(forms.linear.r), line(forms.linear.g), line(forms.linear.b)};
}

MORVELLAN_INLINE void bendByBand(const VibranceBand& band, Real hue, VibranceForms& forms)
{
  const Real w = forms.distance * weightOf(band.window, hue);
  const Real exponent(band.exponent);
  const Real f = distanceFactor(forms, w, exponent);
  const Real rest = Real(1.0f) - f;
  const auto curve = [&](Real y) { return bent(y, plain_log2Positive(y), w, exponent); };
  forms.curved = {curve(forms.curved.lowest), curve(forms.curved.middle)};
  forms.linear = {forms.linear.r * f + rest, forms.linear.g * f + rest, forms.linear.b * f + rest};
}

MORVELLAN_INLINE Rgb halfCurved(const VibranceForms& forms, const Tint& t)
{
  const Real half(0.5f);
  const auto mix = [&](Real n, Real linear)
  {
    const Real below = select(n < Real(1.0f), forms.curved.middle, n);
    const Real curved = clampFilm(select(n == forms.lowest, forms.curved.lowest, below));
    return clampFilm(t.peak * (curved * half + linear * half));
  };
  return {mix(t.n.r, forms.linear.r), mix(t.n.g, forms.linear.g), mix(t.n.b, forms.linear.b)};
}

template <bool Vectors>
MORVELLAN_INLINE Rgb applyVibrance(const AttributeEngine& e, const HueSectors& sectors, Real hue, Rgb c)
{
  const Tint t = tintOf(c);
  VibranceForms forms = vibranceForms(t.n);
  if (Vectors && e.vibranceVectors.on)
    bendByVectors(e.vibranceVectors, sectors, forms);
  if (e.custom.vibrance.on)
    bendByBand(e.custom.vibrance, hue, forms);
  return select(t.coloured, trailingZone(e.vibranceZone, halfCurved(forms, t)), c);
}

MORVELLAN_INLINE Rgb applyVibranceBand(const VibranceBand& band, Real hue, Rgb c)
{
  const Tint t = tintOf(c);
  VibranceForms forms = vibranceForms(t.n);
  bendByBand(band, hue, forms);
  return select(t.coloured, halfCurved(forms, t), c);
}

}  // namespace morvellan::MORVELLAN_TARGET
