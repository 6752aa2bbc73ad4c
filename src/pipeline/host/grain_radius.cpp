// The stepped floor of the grain radius, as data, and the radius laws.
#include "pipeline/host/grain_radius.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace morvellan
{
namespace
{

// A step holds for pictures whose longer side is at most `side`.
struct RadiusStep
{
  int side;
  double floor;
};

struct RadiusBand
{
  int longestSide;
  std::span<const RadiusStep> steps;
  double lastFloor;
};

constexpr RadiusStep stepsTo900[] = {{50, 0.003125}, {100, 0.003625}, {150, 0.005},   {200, 0.0125},
                                     {250, 0.015},   {300, 0.02},     {350, 0.023},   {400, 0.0235},
                                     {450, 0.0245},  {500, 0.025},    {550, 0.02875}, {600, 0.04625},
                                     {650, 0.0465},  {700, 0.0475},   {750, 0.048},   {800, 0.04875}};
constexpr RadiusStep stepsTo2000[] = {{1000, 0.05},   {1100, 0.0525}, {1200, 0.065},  {1300, 0.08125}, {1400, 0.0815},
                                      {1500, 0.0925}, {1600, 0.0925}, {1700, 0.0925}, {1800, 0.0925},  {1900, 0.095}};
constexpr RadiusStep stepsTo3000[] = {{2100, 0.1},    {2200, 0.1225}, {2300, 0.1525}, {2400, 0.155}, {2500, 0.165},
                                      {2600, 0.1775}, {2700, 0.1825}, {2800, 0.185},  {2900, 0.1875}};
constexpr RadiusStep stepsTo4200[] = {{3100, 0.1975}, {3200, 0.20625}, {3300, 0.21},  {3400, 0.2125},
                                      {3500, 0.215},  {3600, 0.2175},  {3700, 0.22},  {3800, 0.225},
                                      {3900, 0.2275}, {4000, 0.23},    {4100, 0.2325}};
constexpr RadiusBand bands[] = {
    {900, stepsTo900, 0.0495}, {2000, stepsTo2000, 0.095}, {3000, stepsTo3000, 0.1925}, {4200, stepsTo4200, 0.235}};

double steppedFloor(double value, int longerSide)
{
  const auto* const band =
      std::find_if(std::begin(bands), std::end(bands),
                   [&](const RadiusBand& candidate) { return longerSide <= candidate.longestSide; });
  if (band == std::end(bands))
    return std::max((longerSide * 0.000249311 + 0.0617914) * 0.25, value);
  for (const RadiusStep& step : band->steps)
    if (step.side >= longerSide && step.floor > value)
      return step.floor;
  return std::max(band->lastFloor, value);
}

}  // namespace

double grainRadiusOf(double size, int longerSide)
{
  return steppedFloor(size * 0.25, longerSide) * 0.02;
}

double grainCellOf(double radius)
{
  return 1.0 / std::ceil(1.0 / radius);
}

RadiusLaw radiusLawOf(double radius, double sigma)
{
  const double ratio = sigma / radius;
  const double logSigma = std::sqrt(std::log(ratio * ratio + 1.0));
  const double logMu = std::log(radius) - logSigma * logSigma / 2.0;
  return {.logSigma = logSigma, .logMu = logMu, .radiusMax = std::exp(logMu + logSigma * 3.0902)};
}

}  // namespace morvellan
