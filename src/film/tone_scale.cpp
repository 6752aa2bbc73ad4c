// The tone scale's numbers for a peak.
#include "film/tone_scale.h"

#include <algorithm>
#include <cmath>

namespace morvellan::MORVELLAN_TARGET
{

ToneScale makeToneScale(float peak)
{
  const double p = static_cast<double>(peak);
  const double ceiling = p * 0.01 * (std::pow(p * 4.4e-05, 0.8534) + 1.033);
  return {.ceiling = static_cast<float>(ceiling),
          .half = static_cast<float>(ceiling / (std::pow(p, 0.5224) * 0.0153 + 1.1656)),
          .contrast = static_cast<float>(std::pow(p, -1.1) * 26.5 + 1.18),
          .purity = static_cast<float>(std::max(1.0, p * -0.00025 + 1.125))};
}

}  // namespace morvellan::MORVELLAN_TARGET
