// The radius of a cell's grains: one for all, or drawn grain by grain from a log-normal law.
#pragma once

#include "device/math.h"
#include "grain/cell.h"

namespace morvellan::MORVELLAN_TARGET::grain
{

// The log-normal law of radii, in pixels; radii beyond `reach` are held there.
struct RadiusLaw
{
  float logSigma, logMu, reach;
};

// A radius from two uniform states.
MORVELLAN_INLINE Real radiusOf(const RadiusLaw& law, Real size, Real angle)
{
  constexpr float ln2 = 0.693147180559945309f;
  constexpr float log2e = 1.44269504088896341f;
  const Real ln = log2Positive(size * Real(unit)) * Real(ln2);
  const Real normal = sqrt(Real(-2.0f) * ln) * Real(law.logSigma) * fast_cos(angle * Real(turn));
  return min(fast_exp2((normal + Real(law.logMu)) * Real(log2e)), Real(law.reach));
}

// All grains of one size. `reach` is the radius beyond which no grain is looked for.
struct OneRadius
{
  float reach, squared;
  MORVELLAN_INLINE float nextSquared(OneWord&) const { return squared; }
  MORVELLAN_INLINE Real nextSquared(Word&) const { return Real(squared); }
  MORVELLAN_INLINE float mostSquared() const { return squared; }
};

// Grains of varying size; each takes two more random numbers.
struct VaryingRadius
{
  RadiusLaw law;
  float reach;
  MORVELLAN_INLINE Real nextSquared(Word& state) const
  {
    const Word size = step(state);
    state = step(size);
    const Real radius = radiusOf(law, toReal(size), toReal(state));
    return radius * radius;
  }
  MORVELLAN_INLINE float nextSquared(OneWord& state) const
  {
    Word next(state.v);
    const Real squared = nextSquared(next);
    state = step(step(state));
    return firstLane(squared);
  }
  MORVELLAN_INLINE float mostSquared() const { return reach * reach; }
};

}  // namespace morvellan::MORVELLAN_TARGET::grain
