// The fast form of grain against the literal kernels, bit for bit, over sizes, radii, seeds and awkward planes.
#include "grain/fast_grain.h"

#ifndef MORVELLAN_TARGET_IS_CUDA

#include <bit>
#include <limits>

#include "grain/cell.h"
#include "grain/grain_records.h"
#include "tests/grain/grain_plane.h"
#include "tests/support/engine_test.h"

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

using grainplane::Controls;
using grainplane::flat;
using grainplane::Image;
using grainplane::mixed;
using grainplane::settingsOf;
using grainplane::tablesOf;

// Pixels whose bits differ between the two forms; the fast one must have run.
int differences(const Image& image, const GrainSettings& settings)
{
  const grainplane::Bench fast(image, settings, tablesOf(settings));
  EXPECT_TRUE(fastGrainFits(fast.launch(), static_cast<float>(settings.levels + 0.1)));
  renderGrain({}, fast.launch());
  const std::vector<float> expected = renderedLiterally(image, settings);
  const std::vector<float> actual = fast.result();
  int wrong = 0;
  for (size_t i = 0; i < expected.size(); ++i)
    if (std::bit_cast<uint32_t>(expected[i]) != std::bit_cast<uint32_t>(actual[i]))
      ++wrong;
  return wrong;
}

int differences(int width, int height, const Controls& controls)
{
  return differences(mixed(width, height), settingsOf(controls, width, height));
}

ENGINE_TEST(FastGrain, sizesOfThePicture)
{
  for (const auto& [width, height] : {std::pair{2, 2}, {3, 70}, {17, 9}, {960, 2}, {961, 3}, {1100, 8}, {70, 17}})
    EXPECT_EQ(differences(width, height, {}), 0) << width << "x" << height;
}

ENGINE_TEST(FastGrain, grainsOfEverySize)
{
  for (const double size : {0.01, 0.5, 2.0, 5.0, 13.0, 20.0, 33.0, 50.0})
    for (const double variance : {0.0, 1.0})
      EXPECT_EQ(differences(70, 18, {.size = size, .variance = variance}), 0) << size << " " << variance;
}

ENGINE_TEST(FastGrain, picturesWithOtherRadii)
{
  for (const int picture : {50, 200, 700, 1000, 3000, 4096, 8192})
    EXPECT_EQ(differences(50, 11, {.picture = picture}), 0) << picture;
}

ENGINE_TEST(FastGrain, softnessStrengthAndGranularity)
{
  for (const double soft : {0.0, 1.0, 4.0, 10.0})
    EXPECT_EQ(differences(60, 20, {.size = 8.0, .strength = 3.3, .soft = soft}), 0) << soft;
  for (const double granularity : {0.0, 3.3, 7.0})
    EXPECT_EQ(differences(60, 10, {.granularity = granularity}), 0) << granularity;
}

ENGINE_TEST(FastGrain, widelyVaryingRadii)
{
  for (const double variance : {0.1, 2.5, 5.0, 10.0})
    EXPECT_EQ(differences(34, 9, {.size = 10.0, .variance = variance, .granularity = 1.0}), 0) << variance;
}

// 61 has a state of 0, and with 0 the cell at the origin has a state of its own; the last meets such cells elsewhere.
ENGINE_TEST(FastGrain, seeds)
{
  for (const uint32_t seed : {0u, 1u, 60u, 61u, 62u, 0x7fffffffu, 0x80000000u, 0xffffffffu, 0u - (3u << 16) - 4u})
    EXPECT_EQ(differences(100, 12, {.size = 50.0, .seed = seed}), 0) << seed;
}

ENGINE_TEST(FastGrain, depthsOfTables)
{
  for (const int levels : {2047, 8191, 524287, 2097151})
    EXPECT_EQ(differences(40, 9, {.levels = levels}), 0) << levels;
}

ENGINE_TEST(FastGrain, awkwardPlanes)
{
  constexpr float infinity = std::numeric_limits<float>::infinity();
  Image image = mixed(90, 20);
  const float values[] = {std::numeric_limits<float>::quiet_NaN(),
                          infinity,
                          -infinity,
                          3.0e38f,
                          -3.0e38f,
                          1e-42f,
                          -0.0f,
                          1.0f,
                          0.9999999f,
                          1e9f};
  for (size_t i = 0; i < image.values.size(); i += 3)
    image.values[i] = values[i / 3 % std::size(values)];
  for (const double strength : {2.0, 10.0})
    EXPECT_EQ(differences(image, settingsOf({.size = 20.0, .strength = strength}, 90, 20)), 0) << strength;
}

// Far from the origin floats are coarse, and neighbouring pixels see different numbers of columns.
ENGINE_TEST(FastGrain, widePictures)
{
  EXPECT_EQ(differences(9000, 1, {.granularity = 1.0}), 0);
  EXPECT_EQ(differences(flat(8200, 2, 0.6f), settingsOf({.size = 0.01, .granularity = 2.0, .picture = 900}, 8200, 2)),
            0);
}

ENGINE_TEST(FastGrain, thresholdsAreTheLargestDraws)
{
  std::vector<float> chances = {0.0f, 1.0f, 0.5f, 0.25f, 1.0e-10f, 0.99999994f, 0.00390625f, 0.0039062498f};
  for (uint32_t bits = 0x2f000000u; bits < 0x3f800000u; bits += 9973u)
    chances.push_back(std::bit_cast<float>(bits));
  for (size_t first = 0; first + lanes <= chances.size(); first += lanes)
  {
    int turned[lanes];
    store(turned, grain::largestDrawAtMost(load(chances.data() + first)));
    for (size_t lane = 0; lane < static_cast<size_t>(lanes); ++lane)
    {
      const float chance = chances[first + lane];
      const uint32_t draw = static_cast<uint32_t>(turned[lane]) ^ grain::signBit;
      EXPECT_FALSE(static_cast<float>(draw) * grain::unit > chance) << chance;
      EXPECT_TRUE(draw == 0xffffffffu || static_cast<float>(draw + 1) * grain::unit > chance) << chance;
    }
  }
}

}  // namespace

}  // namespace morvellan::MORVELLAN_TARGET

#endif
