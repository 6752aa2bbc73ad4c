// One development cycle of a pixel in registers, in the forms that the laboratory's fast ways are built of: with the
// bounds of the kernels, and factored for settings in which a bound cannot be reached.
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
// into developer and the rest. Floored is for settings in which it may use up more silver than there is.
template <bool Floored>
struct FactoredCycle
{
  static MORVELLAN_INLINE Real develop(float rate, Rgb e, Rgb& density, Rgb& silver, Real c)
  {
    const Real silverUse = c * Real(-labSilverUse * rate);
    const Real developerUse = c * Real(-labDeveloperUse);
    const auto channel = [&](Real exposure, Real& d, Real& store)
    {
      Real used = (exposure * d) * (store * d);
      if constexpr (Floored)
        used = max(used, Real(0.0f));
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
