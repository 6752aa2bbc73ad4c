// Derivation of a run's numbers, in float as the process is defined.
#include "film/laboratory_process.h"

#include <algorithm>
#include <cmath>

namespace morvellan::MORVELLAN_TARGET
{

LabProcess labProcess(const LabSettings& s, int width, int height)
{
  LabProcess p{};
  const float pixelCount = static_cast<float>(width) * static_cast<float>(height);
  const float side = std::sqrt(pixelCount / s.areaScale);
  p.area = side * side;
  p.tank = s.areaScale * 1000.0f / 864.0f;
  p.mixing = 1.0f / (pixelCount * 0.1f / p.area + p.tank);
  p.uptake = 0.1f / (p.area * p.tank);

  const float time = s.developmentTime / 12.0f;
  p.rate = time * 9.99999975e-06f;
  p.retained = std::pow(s.replenish, time / 20.0f);
  p.replenished = 1.0f - p.retained;

  const float period = std::floor(12.0f / static_cast<float>(std::clamp(s.agitation, 1, 5)));
  p.period = static_cast<int>(period);
  p.offset = static_cast<int>(std::floor(period * 0.5f));

  const float width1 = std::sqrt(time * p.area * 0.04f) * 0.45261669f;
  p.firstSigma = width1 * s.spectrumBand;
  p.secondSigma = width1 * s.lowWidth;
  return p;
}

double reservoirAfter(const LabProcess& p, int cycle, double reservoir, double before, double after)
{
  const double exchanged = reservoir - (after - before) * static_cast<double>(p.uptake);
  if (!p.agitates(cycle))
    return exchanged;
  return (after * 0.1 / static_cast<double>(p.area) + static_cast<double>(p.tank) * exchanged) *
         static_cast<double>(p.mixing);
}

}  // namespace morvellan::MORVELLAN_TARGET
