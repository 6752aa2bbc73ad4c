// The radius of a cell's grains: one for all, or drawn grain by grain from a log-normal law.
#pragma once

#include "device/math.h"
#include "grain/cell.h"

namespace morvellan::MORVELLAN_TARGET::grain
{

// The log-normal law of radii, in pixels, with its logarithms to the base 2; radii beyond `reach` are held there.
struct RadiusLaw
{
  float log2Sigma, log2Mu, reach;
};

MORVELLAN_INLINE RadiusLaw radiusLaw(float logSigma, float logMu, float reach)
{
  constexpr float log2e = 1.44269504088896341f;
  return {logSigma * log2e, logMu * log2e, reach};
}

// The cosine of a state as an angle, 2^32 to the turn. Absolute error at most 1e-6.
MORVELLAN_INLINE Real cosineOf(Word angle)
{
  // 1 - 2 sin(pi x / 2)^2 of the angle in half turns; the sine's polynomial is a minimax of degree 9.
  const Real x = toReal(toInt(angle)) * Real(4.65661287e-10f);
  const Real z = x * x;
  Real p = fma(z, Real(1.50820546e-4f), Real(-4.67222789e-3f));
  p = fma(p, z, Real(7.96884820e-2f));
  p = fma(p, z, Real(-6.45963371e-1f));
  p = fma(p, z, Real(1.57079625f));
  const Real sine = p * x;
  return fma(sine * Real(-2.0f), sine, Real(1.0f));
}

// A radius: e^(normal * logSigma + logMu), with a normal number of Box and Muller's from two states.
MORVELLAN_INLINE Real radiusOf(const RadiusLaw& law, Word size, Word angle)
{
  constexpr float ln2 = 0.693147180559945309f;
  const Real normal = sqrt(log2Positive(toReal(size) * Real(unit)) * Real(-2.0f * ln2)) * cosineOf(angle);
  return min(exp2NotPositive(fma(normal, Real(law.log2Sigma), Real(law.log2Mu))), Real(law.reach));
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
    const Real radius = radiusOf(law, size, state);
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
