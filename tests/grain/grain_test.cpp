// Grain against the figures of its model: means of flat planes, strength, seeds, ends of the tables, sizes of one.
#include "grain/grain.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

#include "grain/cell.h"
#include "grain/radius.h"
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

ENGINE_TEST(Grain, fullStrengthIsAFractionOfTheSamples)
{
  const std::vector<float> plane = flatGrain(0.4f, {.strength = 10.0});
  for (const float v : plane)
    EXPECT_NEAR(v * 39.0f, std::round(v * 39.0f), 1e-4f);
  EXPECT_NE(*std::ranges::min_element(plane), *std::ranges::max_element(plane));
}

ENGINE_TEST(Grain, strengthMixesWithThePlane)
{
  const std::vector<float> full = flatGrain(0.4f, {.strength = 10.0});
  const std::vector<float> third = flatGrain(0.4f, {.strength = 3.0});
  for (size_t i = 0; i < full.size(); ++i)
    EXPECT_NEAR(third[i], full[i] * 0.3f + 0.4f * 0.7f, 1e-6f);
}

ENGINE_TEST(Grain, blackHasNoGrain)
{
  EXPECT_EQ(flatGrain(0.0f, {}), flat(side, side, 0.0f).values);
}

// Below 0 the tables' first entry holds, from the last one's value on the last.
ENGINE_TEST(Grain, valuesBeyondTheTables)
{
  const std::vector<float> below = flatGrain(-3.0f, {.strength = 5.0});
  EXPECT_TRUE(std::ranges::all_of(below, [](float v) { return v == -1.5f; }));
  EXPECT_EQ(flatGrain(7.0f, {}), flatGrain(1.0f, {}));
  EXPECT_EQ(flatGrain(std::numeric_limits<float>::max(), {}), flatGrain(1.0f, {}));
}

// A pixel that is no number draws no grain, for itself nor for samples that fall on it; nor do others suffer.
ENGINE_TEST(Grain, notANumber)
{
  Image plane = flat(side, side, 0.5f);
  const size_t at = side * side / 2 + side / 2;
  const std::vector<float> without = rendered(plane, settingsOf({}, side, side));
  plane.values[at] = std::numeric_limits<float>::quiet_NaN();
  const std::vector<float> with = rendered(plane, settingsOf({}, side, side));
  EXPECT_TRUE(std::isnan(with[at]));
  int changed = 0;
  for (size_t i = 0; i < with.size(); ++i)
  {
    changed += with[i] != without[i] ? 1 : 0;
    EXPECT_TRUE(i == at || with[i] <= without[i]) << i;
  }
  EXPECT_LE(changed, 9);
}

// A size of 1 stretches the offsets to infinity: no sample hits.
ENGINE_TEST(Grain, sizesOfOneHaveNoGrain)
{
  for (const auto& [w, h] : {std::pair{1, 1}, {1, 20}, {20, 1}})
    EXPECT_EQ(rendered(flat(w, h, 0.5f), settingsOf({.strength = 4.0}, w, h)),
              flat(w, h, 0.5f * static_cast<float>(1.0 - 4.0 * 0.1)).values)
        << w << "x" << h;
}

// The generator stays at 0 for a seed that hashes to 0: every offset is infinite.
ENGINE_TEST(Grain, theSeedWithoutRandomNumbers)
{
  EXPECT_EQ(grain::hash(OneWord(61u)).v, 0u);
  EXPECT_TRUE(std::isinf(filterOffsets(61u, 1, 0.16f, 1.0f, 1.0f)[0].x));
  EXPECT_EQ(flatGrain(0.5f, {.seed = 61u}), flat(side, side, 0.0f).values);
}

ENGINE_TEST(Grain, seedsGiveOtherGrainAndTheSameSeedTheSame)
{
  EXPECT_EQ(flatGrain(0.5f, {.seed = 7u}), flatGrain(0.5f, {.seed = 7u}));
  const std::vector<float> a = flatGrain(0.5f, {.seed = 7u});
  const std::vector<float> b = flatGrain(0.5f, {.seed = 8u});
  const double meanA = mean(a), meanB = mean(b);
  double product = 0.0;
  for (size_t i = 0; i < a.size(); ++i)
    product += (a[i] - meanA) * (b[i] - meanB);
  EXPECT_NEAR(product / static_cast<double>(a.size()) / deviation(a) / deviation(b), 0.0, 0.05);
}

// Samples that fall outside the plane read its edge.
ENGINE_TEST(Grain, bordersRepeatTheEdge)
{
  const std::vector<float> plane = flatGrain(0.5f, {.soft = 10.0});
  double border = 0.0;
  for (int i = 0; i < side; ++i)
    border += plane[static_cast<size_t>(i)] + plane[static_cast<size_t>(i) * side] +
              plane[plane.size() - static_cast<size_t>(side - i)] + plane[static_cast<size_t>(i + 1) * side - 1];
  EXPECT_NEAR(border / (4.0 * side), mean(plane), 0.02);
}

// Rows of a plane keep their place: two halves are the whole.
ENGINE_TEST(Grain, halvesAreTheWhole)
{
  const Image image = grainplane::mixed(70, 31);
  for (const double variance : {0.0, 1.0})
  {
    const GrainSettings settings = settingsOf({.size = 10.0, .variance = variance}, 70, 31);
    const grainplane::Bench bench(image, settings, grainplane::tablesOf(settings));
    renderGrain({}, bench.launch(15, 16));
    renderGrain({}, bench.launch(0, 15));
    EXPECT_EQ(bench.result(), rendered(image, settings));
  }
}

// By hand: s = 0 is (0 ^ 61) * 9 = 549, (34 ^ 549) * 668265261 and so on.
ENGINE_TEST(Grain, randomNumbersByValue)
{
  EXPECT_EQ(grain::hash(OneWord(0u)).v, 3232319850u);
  EXPECT_EQ(grain::hash(OneWord(1u)).v, 663891101u);
  EXPECT_EQ(grain::hash(OneWord(0xdeadbeefu)).v, 1462664237u);
  EXPECT_EQ(grain::step(OneWord(1u)).v, 270369u);
  EXPECT_EQ(grain::step(OneWord(663891101u)).v, 573967933u);
  EXPECT_EQ(grain::step(OneWord(0u)).v, 0u);
}

ENGINE_TEST(Grain, filterOffsetsByValue)
{
  const std::vector<FilterOffset> offsets = filterOffsets(12345u, 2, 0.16f, 1.0f, 1.5f);
  EXPECT_FLOAT_EQ(offsets[0].x, 0.0597353354f);
  EXPECT_FLOAT_EQ(offsets[0].y, -0.16213493f);
  EXPECT_FLOAT_EQ(offsets[1].x, -0.199980572f);
  EXPECT_FLOAT_EQ(offsets[1].y, -0.0555470958f);
}

// The law in double, from the numbers as the model has them.
ENGINE_TEST(Grain, radiiFollowTheirLaw)
{
  const grain::RadiusLaw law = grain::radiusLaw(0.3f, -6.2f, 0.005f);
  uint32_t state = 1u;
  for (int i = 0; i < 20000; i += lanes)
  {
    uint32_t size[lanes], angle[lanes];
    for (int lane = 0; lane < lanes; ++lane)
    {
      size[lane] = state = grain::step(OneWord(state)).v;
      angle[lane] = state = grain::step(OneWord(state)).v;
    }
    float radius[lanes];
    store(radius, grain::radiusOf(law, load(size), load(angle)));
    for (int lane = 0; lane < lanes; ++lane)
    {
      const double normal = std::sqrt(-2.0 * std::log(static_cast<double>(static_cast<float>(size[lane])) * 0x1p-32)) *
                            std::cos(static_cast<double>(static_cast<float>(angle[lane])) * 1.46291812e-09);
      const double expected = std::min(std::exp(normal * 0.3f + -6.2f), 0.005);
      ASSERT_NEAR(radius[lane] / expected, 1.0, 3e-6) << size[lane] << " " << angle[lane];
    }
  }
}

std::vector<float> parityPlane(double size, double variance)
{
  return rendered(grainplane::mixed(160, 40), settingsOf({.size = size, .variance = variance}, 1920, 1080));
}

// Beyond two samples' difference no pixel may be; a thousandth may differ at all.
constexpr float twoSamples = 2.0f / 39.0f + 1e-6f;

PARITY(grainOfOneSize, .relative = 0.0f, .absolute = 1e-6f, .outliers = 0.001)
{
  return parityPlane(0.01, 0.0);
}

PARITY(grainOfVaryingSize, .relative = 0.0f, .absolute = 1e-6f, .outliers = 0.001)
{
  return parityPlane(0.01, 1.0);
}

PARITY(largeGrainOfVaryingSize, .relative = 0.0f, .absolute = twoSamples)
{
  return parityPlane(30.0, 2.0);
}

PARITY(grainOfVaryingSizeWithinTwoSamples, .relative = 0.0f, .absolute = twoSamples)
{
  return parityPlane(0.01, 1.0);
}

}  // namespace

}  // namespace morvellan::MORVELLAN_TARGET
