// The attribute engine: saturation, hue, chroma and vibrance, and up to eleven refinements of all four, on linear
// pixels. The groups of a call go through it side by side.
#pragma once

#include "film/attribute_steps.h"

namespace morvellan::MORVELLAN_TARGET
{

// Groups of lanes side by side: each step runs on all of them before the next, so that one fills the other's waits.
template <int Groups>
struct EngineGroups
{
  Rgb (&c)[Groups];
  Reference reference[Groups];
  HueSectors sectors[Groups];

  template <typename Step>
  MORVELLAN_INLINE void each(const Step& step)
  {
    for (int k = 0; k < Groups; ++k)
      c[k] = step(reference[k], sectors[k], c[k]);
  }
};

template <bool Vectors, int Groups>
MORVELLAN_INLINE void applyFour(const AttributeEngine& e, EngineGroups<Groups>& g)
{
  if ((Vectors && e.saturationVectors.on) || e.custom.saturation.on)
    g.each([&](const Reference& r, const HueSectors& s, Rgb p) { return applySaturation<Vectors>(e, s, r.hue, p); });
  if ((Vectors && e.hueVectors.on) || e.custom.hue.on)
    g.each([&](const Reference& r, const HueSectors& s, Rgb p) { return applyHue<Vectors>(e, s, r.hue, p); });
  if ((Vectors && e.chromaVectors.on) || e.custom.chroma.on)
    g.each([&](const Reference& r, const HueSectors& s, Rgb p) { return applyChroma<Vectors>(e, s, r, p); });
  if ((Vectors && e.vibranceVectors.on) || e.custom.vibrance.on)
    g.each([&](const Reference& r, const HueSectors& s, Rgb p) { return applyVibrance<Vectors>(e, s, r.hue, p); });
}

template <int Groups>
MORVELLAN_INLINE void applyRefinement(const RefinementBands& b, EngineGroups<Groups>& g)
{
  if (b.saturation.on)
    g.each([&](const Reference& r, const HueSectors&, Rgb p) { return applySaturationBand(b.saturation, r.hue, p); });
  if (b.hue.on)
    g.each([&](const Reference& r, const HueSectors&, Rgb p) { return applyHueBand(b.hue, r.hue, p); });
  if (b.chroma.on)
    g.each([&](const Reference& r, const HueSectors&, Rgb p) { return applyChromaBand(b.chroma, r, p); });
  if (b.vibrance.on)
    g.each([&](const Reference& r, const HueSectors&, Rgb p) { return applyVibranceBand(b.vibrance, r.hue, p); });
  if (b.zone.lowOn || b.zone.highOn)
    g.each([&](const Reference&, const HueSectors&, Rgb p) { return trailingZone(b.zone, p); });
}

// The whole engine on linear pixels. Without `Vectors` the vectors' code is left out and their switches are not read.
template <bool Vectors, int Groups>
MORVELLAN_KERNEL void applyAttributes(const AttributeEngine& e, Rgb (&c)[Groups])
{
  if (!e.on)
    return;
  EngineGroups<Groups> g{c, {}, {}};
  for (int k = 0; k < Groups; ++k)
  {
    g.reference[k] = referenceOf(c[k]);
    g.sectors[k] = sectorsOf(g.reference[k].hue);
  }
  applyFour<Vectors>(e, g);
  for (int i = 0; i < e.refinementCount; ++i)
    applyRefinement(e.refinements[i], g);
}

}  // namespace morvellan::MORVELLAN_TARGET
