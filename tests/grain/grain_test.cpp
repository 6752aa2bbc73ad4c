// Grain against the figures of its model: means of flat planes, strength, seeds, ends of the tables, sizes of one.
#include "grain/grain.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

#include "tests/grain/grain_plane.h"
#include "tests/support/engine_test.h"

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

using grainplane::Controls;
using grainplane::flat;
using grainplane::Image;
using grainplane::rendered;
using grainplane::settingsOf;

constexpr int side = 96;

double mean(const std::vector<float>& values)
{
  return std::accumulate(values.begin(), values.end(), 0.0) / static_cast<double>(values.size());
}

double deviation(const std::vector<float>& values)
{
  const double m = mean(values);
  double sum = 0.0;
  for (const float v : values)
    sum += (v - m) * (v - m);
  return std::sqrt(sum / static_cast<double>(values.size()));
}

// Correlation of a plane with itself `shift` pixels along the rows.
double autocorrelation(const std::vector<float>& values, int width, int shift)
{
  const double m = mean(values);
  double product = 0.0, square = 0.0;
  for (size_t i = 0; i + static_cast<size_t>(shift) < values.size(); ++i)
  {
    if (static_cast<int>(i) % width + shift >= width)
      continue;
    product += (values[i] - m) * (values[i + static_cast<size_t>(shift)] - m);
    square += (values[i] - m) * (values[i] - m);
  }
  return product / square;
}

std::vector<float> flatGrain(float value, const Controls& controls)
{
  return rendered(flat(side, side, value), settingsOf(controls, side, side));
}

// The columns of cells stop one short, so that a plane's mean lies below its value: of a disc as wide as two cells the
// part right of the last column is missing, 21 % of it on average. A sample stands at the same place within its cell
// on every pixel, so that it takes many samples to see the mean.
ENGINE_TEST(Grain, meansOfFlatPlanes)
{
  for (const auto& [value, expected] : {std::pair{0.5f, 0.42}, {0.18f, 0.145}, {0.9f, 0.83}})
  {
    const Image plane = flat(32, 32, value);
    const double m = mean(rendered(plane, settingsOf({.granularity = 10.0}, 1920, 1080)));
    EXPECT_NEAR(m, expected, 0.006) << value;
  }
}

ENGINE_TEST(Grain, deviationIsThatOfIndependentSamples)
{
  for (const float value : {0.18f, 0.5f, 0.9f})
  {
    const std::vector<float> plane = flatGrain(value, {});
    const double m = mean(plane);
    EXPECT_NEAR(deviation(plane), std::sqrt(m * (1.0 - m) / 39.0), 0.003) << value;
    EXPECT_NEAR(autocorrelation(plane, side, 1), 0.0, 0.03) << value;
  }
}

ENGINE_TEST(Grain, largeGrainsJoinNeighbours)
{
  const std::vector<float> plane = flatGrain(0.5f, {.size = 50.0, .soft = 1.5});
  const double m = mean(plane);
  EXPECT_GT(deviation(plane), 1.3 * std::sqrt(m * (1.0 - m) / 39.0));
  EXPECT_NEAR(autocorrelation(plane, side, 1), 0.22, 0.07);
  EXPECT_NEAR(autocorrelation(plane, side, 4), 0.0, 0.05);
}

// A wider reach loses less to the missing column, until the mean is the value.
ENGINE_TEST(Grain, meansComeUpWithVariance)
{
  const auto meanOf = [](double variance)
  { return mean(rendered(flat(24, 24, 0.5f), settingsOf({.variance = variance, .granularity = 8.0}, 1920, 1080))); };
  EXPECT_NEAR(meanOf(1.0), 0.49, 0.012);
  EXPECT_NEAR(meanOf(3.0), 0.5, 0.012);
}

}  // namespace

}  // namespace morvellan::MORVELLAN_TARGET
