// A pixel that is taken through the cycles of a run in registers, in two forms: with the bounds of the kernels, and in
// units that leave the fewest products for settings in which a bound cannot be reached.
#pragma once

#include <algorithm>

#include "film/laboratory_kernels.h"

namespace morvellan::MORVELLAN_TARGET
{

inline constexpr int labExchanges = labCycles - 1;  // the last cycle's is not seen by any pixel

// Silver and density counted in developer, which both cost: the whole store of silver is worth what developing it uses
// up. Consumption is then one number for silver and developer alike, developer * silver * density^2 * exposure.
struct DeveloperUnits
{
  float silver[3];  // at the start
  float density;    // labFirstDensity
  float exposure;   // of 1
  float back;       // density of 1 of these units
  // All pixels' silver and density are the same before the first cycle, and their density after it.
  float firstTaken[3];      // silver that the first cycle takes, of exposure 1
  float secondDensity[3];   // density after the first cycle
  float secondExposure[3];  // its square, times `exposure`
};

// What all pixels of a run share. The exchanges as each pixel meets them: developer * retain + add after each cycle but
// the last. After an agitation retain is 0 and add the tank's new concentration.
struct LabSchedule
{
  float retain[labExchanges], add[labExchanges];
  float concentration, rate;
  float silver[3];
  DeveloperUnits units;
};

inline DeveloperUnits developerUnits(float concentration, float rate, const float* silver)
{
  const double store = static_cast<double>(labDeveloperUse) / static_cast<double>(labSilverUse);
  const double perDensity = store / static_cast<double>(rate);
  const double exposure = static_cast<double>(labSilverUse) * static_cast<double>(rate) / (perDensity * perDensity);
  const double density = static_cast<double>(labFirstDensity) * perDensity;
  DeveloperUnits units{};
  for (size_t k = 0; k < 3; ++k)
  {
    const double whole = static_cast<double>(silver[k]) * store;
    const double grown = static_cast<double>(concentration) * whole;
    units.silver[k] = static_cast<float>(whole);
    units.firstTaken[k] = static_cast<float>(grown * density * density * exposure);
    units.secondDensity[k] = static_cast<float>(density + grown);
    units.secondExposure[k] = static_cast<float>((density + grown) * (density + grown) * exposure);
  }
  units.density = static_cast<float>(density);
  units.exposure = static_cast<float>(exposure);
  units.back = static_cast<float>(1.0 / perDensity);
  return units;
}

// Both forms: begin with an exposure; firstCycle, secondCycle, then cycle for each other, return the developer before
// the exchange, and `developer` is to be set to what it is after; developed gives the density after the last cycle.
// Between cycles density and silver may be stored, and a pixel resumed with them and its exposure.

// With the bounds of the kernels: for exchanges in which pixels may gain. Silver is kept times the rate.
struct BoundedPixel
{
  Rgb exposure, density, silver;
  Real developer;

  MORVELLAN_INLINE void begin(const LabSchedule& s, Rgb e)
  {
    const Real first = Real(labFirstDensity);
    exposure = e;
    density = {first, first, first};
    silver = {Real(s.silver[0] * s.rate), Real(s.silver[1] * s.rate), Real(s.silver[2] * s.rate)};
    developer = Real(s.concentration);
  }
  MORVELLAN_INLINE void resume(const LabSchedule&, Rgb e, Rgb storedDensity, Rgb storedSilver)
  {
    exposure = e;
    density = storedDensity;
    silver = storedSilver;
  }
  MORVELLAN_INLINE Real firstCycle(const LabSchedule& s) { return cycle(s); }
  MORVELLAN_INLINE Real secondCycle(const LabSchedule& s) { return cycle(s); }
  MORVELLAN_INLINE Real cycle(const LabSchedule& s)
  {
    const float silverUse = labSilverUse * s.rate;
    const Real r = developChannel(exposure.r, density.r, silver.r, developer, 1.0f, silverUse);
    const Real g = developChannel(exposure.g, density.g, silver.g, developer, 1.0f, silverUse);
    const Real b = developChannel(exposure.b, density.b, silver.b, developer, 1.0f, silverUse);
    return max(fma((r + g) + b, Real(-labDeveloperUse), developer), Real(0.0f));
  }
  MORVELLAN_INLINE Rgb developed(const LabSchedule&) const
  {
    return {fma(developer, silver.r, density.r), fma(developer, silver.g, density.g),
            fma(developer, silver.b, density.b)};
  }
};

// In DeveloperUnits, for runs of which isLean holds. Sums and products take turns: a core has as many units for the
// one as for the other.
struct LeanPixel
{
  Rgb exposure, density, silver;
  Real developer;

  // Silver and density begin with the first cycle.
  MORVELLAN_INLINE void begin(const LabSchedule& s, Rgb e)
  {
    exposure = e;
    developer = Real(s.concentration);
  }

  MORVELLAN_INLINE void resume(const LabSchedule& s, Rgb e, Rgb storedDensity, Rgb storedSilver)
  {
    expose(s, e);
    density = storedDensity;
    silver = storedSilver;
  }

  MORVELLAN_INLINE Real firstCycle(const LabSchedule& s)
  {
    const DeveloperUnits& u = s.units;
    const Rgb taken = {Real(-u.firstTaken[0]), Real(-u.firstTaken[1]), Real(-u.firstTaken[2])};
    silver = {fma(exposure.r, taken.r, Real(u.silver[0])), fma(exposure.g, taken.g, Real(u.silver[1])),
              fma(exposure.b, taken.b, Real(u.silver[2]))};
    density = {Real(u.secondDensity[0]), Real(u.secondDensity[1]), Real(u.secondDensity[2])};
    const Real left = fma(exposure.r, taken.r, fma(exposure.g, taken.g, fma(exposure.b, taken.b, developer)));
    return max(left, Real(0.0f));
  }

  MORVELLAN_INLINE Real secondCycle(const LabSchedule& s)
  {
    const DeveloperUnits& u = s.units;
    const Rgb light = {exposure.r * Real(u.secondExposure[0]), exposure.g * Real(u.secondExposure[1]),
                       exposure.b * Real(u.secondExposure[2])};
    expose(s, exposure);
    return left({taken(light.r, density.r, silver.r), taken(light.g, density.g, silver.g),
                 taken(light.b, density.b, silver.b)});
  }

  MORVELLAN_INLINE Real cycle(const LabSchedule&)
  {
    const auto channel = [&](Real e, Real& d, Real& store) { return taken((e * d) * d, d, store); };
    return left({channel(exposure.r, density.r, silver.r), channel(exposure.g, density.g, silver.g),
                 channel(exposure.b, density.b, silver.b)});
  }

  MORVELLAN_INLINE Rgb developed(const LabSchedule& s) const
  {
    const Real back = Real(s.units.back);
    return {fma(developer, silver.r, density.r) * back, fma(developer, silver.g, density.g) * back,
            fma(developer, silver.b, density.b) * back};
  }

private:
  MORVELLAN_INLINE void expose(const LabSchedule& s, Rgb e)
  {
    const Real unit = Real(s.units.exposure);
    exposure = {e.r * unit, e.g * unit, e.b * unit};
  }

  // Grows the density and takes silver, none of it where a cycle before took more than there was.
  MORVELLAN_INLINE Real taken(Real light, Real& d, Real& store) const
  {
    const Real grown = developer * store;
    const Real used = max(grown * light, Real(0.0f));
    d = d + grown;
    store = store - used;
    return used;
  }

  MORVELLAN_INLINE Real left(Rgb used) const { return max((developer - used.r) - (used.g + used.b), Real(0.0f)); }
};

// Whether LeanPixel holds the bounds: no pixel gains by an exchange, so that consumption stays far below its upper one,
// and not even the brightest light takes all silver in the first cycle, so that the lower one is not met before the
// second is over.
inline bool isLean(const LabProcess& process, float concentration)
{
  const float firstShare =
      concentration * process.rate * labSilverUse * labFirstDensity * labFirstDensity * logC4Largest * labFullScale;
  return process.retained <= 1.0f && process.rate > 0.0f && firstShare < 0.99f;
}

}  // namespace morvellan::MORVELLAN_TARGET
