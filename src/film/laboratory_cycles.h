// One development cycle of a pixel in registers: with the bounds of the kernels, and factored for settings in which the
// upper one cannot be reached.
#pragma once

#include "film/laboratory_kernels.h"

namespace morvellan::MORVELLAN_TARGET
{

// develop(rate, exposure, density, silver, developer) takes a pixel through a cycle and returns its developer before
// the exchange. Silver is kept times the rate.

// A cycle with the bounds of the kernels: for exchanges in which pixels may gain.
struct BoundedCycle
{
  static MORVELLAN_INLINE Real develop(float rate, Rgb e, Rgb& density, Rgb& silver, Real c)
  {
    const float silverUse = labSilverUse * rate;  // silver is kept times the rate
    const Real r = developChannel(e.r, density.r, silver.r, c, 1.0f, silverUse);
    const Real g = developChannel(e.g, density.g, silver.g, c, 1.0f, silverUse);
    const Real b = developChannel(e.b, density.b, silver.b, c, 1.0f, silverUse);
    return max(fma((r + g) + b, Real(-labDeveloperUse), c), Real(0.0f));
  }
};

// The same where no pixel gains by an exchange: consumption stays far below its upper bound, so that it can be factored
// into developer and the rest.
struct FactoredCycle
{
  static MORVELLAN_INLINE Real develop(float rate, Rgb e, Rgb& density, Rgb& silver, Real c)
  {
    const Real silverUse = c * Real(-labSilverUse * rate);
    const Real developerUse = c * Real(-labDeveloperUse);
    const auto channel = [&](Real exposure, Real& d, Real& store)
    {
      const Real used = max((exposure * d) * (store * d), Real(0.0f));
      d = fma(c, store, d);
      store = fma(used, silverUse, store);
      return used;
    };
    const Real r = channel(e.r, density.r, silver.r);
    const Real g = channel(e.g, density.g, silver.g);
    const Real b = channel(e.b, density.b, silver.b);
    return max(fma((r + g) + b, developerUse, c), Real(0.0f));
  }
};

}  // namespace morvellan::MORVELLAN_TARGET
