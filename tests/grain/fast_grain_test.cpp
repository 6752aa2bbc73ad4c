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

// The same for planes that are rendered together, each with a strength of its own.
int differencesTogether(const std::vector<Image>& images, const GrainSettings& settings)
{
  std::vector<GrainSettings> all(images.size(), settings);
  std::vector<grainplane::Bench> planes;
  planes.reserve(images.size());
  std::vector<GrainLaunch> launches;
  for (size_t c = 0; c < images.size(); ++c)
  {
    all[c].strengthPerCount *= 1.0f - 0.3f * static_cast<float>(c);
    launches.push_back(planes.emplace_back(images[c], all[c], tablesOf(settings)).launch());
    EXPECT_TRUE(sharesGrain(launches.front(), launches.back()));
  }
  renderGrain({}, launches);
  int wrong = 0;
  for (size_t c = 0; c < images.size(); ++c)
  {
    const std::vector<float> expected = renderedLiterally(images[c], all[c]);
    const std::vector<float> actual = planes[c].result();
    for (size_t i = 0; i < expected.size(); ++i)
      wrong += std::bit_cast<uint32_t>(expected[i]) != std::bit_cast<uint32_t>(actual[i]) ? 1 : 0;
  }
  return wrong;
}

// A picture's channels: neighbours of each other here, far apart or no numbers there.
std::vector<Image> channelsOf(int width, int height, size_t count)
{
  std::vector<Image> images(count, mixed(width, height));
  for (size_t c = 0; c < count; ++c)
    for (size_t i = 0; i < images[c].values.size(); ++i)
    {
      float& value = images[c].values[i];
      value = i / 200 % 2 == 0 ? value * (1.0f - 0.2f * static_cast<float>(c))
                               : static_cast<float>((i * 2654435761u + c * 40503u) >> 9 & 0xfff) / 4095.0f;
      if (i % 97 == c)
        value = std::numeric_limits<float>::quiet_NaN();
    }
  return images;
}

ENGINE_TEST(FastGrain, channelsTogether)
{
  for (const auto& [width, height] : {std::pair{3, 2}, {70, 18}, {961, 9}, {1100, 3}})
    for (const size_t channels : {2u, 3u})
      for (const double variance : {0.0, 1.0})
        EXPECT_EQ(
            differencesTogether(channelsOf(width, height, channels), settingsOf({.variance = variance}, width, height)),
            0)
            << width << "x" << height << ", " << channels << " channels, variance " << variance;
}

ENGINE_TEST(FastGrain, channelsTogetherWithGrainsOfEverySize)
{
  for (const double size : {5.0, 20.0, 50.0})
    for (const double variance : {0.0, 2.0})
      EXPECT_EQ(differencesTogether(channelsOf(70, 12, 3), settingsOf({.size = size, .variance = variance}, 70, 12)), 0)
          << size << " " << variance;
  for (const int picture : {50, 700, 8192})
    EXPECT_EQ(differencesTogether(channelsOf(50, 11, 3), settingsOf({.soft = 4.0, .picture = picture}, 50, 11)), 0)
        << picture;
  EXPECT_EQ(differencesTogether(channelsOf(9000, 1, 3), settingsOf({.granularity = 1.0}, 9000, 1)), 0);
  EXPECT_EQ(differencesTogether(channelsOf(90, 20, 3), settingsOf({.seed = 0u}, 90, 20)), 0);
}

ENGINE_TEST(FastGrain, onlyEqualGrainIsShared)
{
  const Image image = flat(8, 8, 0.5f);
  const auto launchOf = [&](const Controls& controls)
  { return grainplane::Bench(image, settingsOf(controls, 8, 8), {}).launch(); };
  EXPECT_TRUE(sharesGrain(launchOf({}), launchOf({.strength = 3.0})));
  for (const Controls& other : {Controls{.size = 20.0},
                                {.variance = 1.0},
                                {.soft = 1.0},
                                {.granularity = 4.0},
                                {.picture = 4096},
                                {.seed = 7u},
                                {.levels = 2047}})
    EXPECT_FALSE(sharesGrain(launchOf({}), launchOf(other)));
  // A law that is not in use keeps the values of an earlier frame.
  GrainLaunch stale = launchOf({});
  stale.settings.logMu = stale.settings.radiusMax = 5.0f;
  EXPECT_TRUE(sharesGrain(launchOf({}), stale));
  GrainLaunch half = launchOf({});
  half.rows = 4;
  EXPECT_FALSE(sharesGrain(launchOf({}), half));
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

// The kernel of GPUs, on one lane.
ENGINE_TEST(FastGrain, occupiedCellsFirstIsTheSameGrain)
{
  for (const double size : {0.01, 20.0, 50.0})
    for (const double variance : {0.0, 1.0, 10.0})
      for (const uint32_t seed : {0u, 61u, 12345u})
      {
        const Image image = mixed(40, 12);
        const GrainSettings settings =
            settingsOf({.size = size, .variance = variance, .granularity = 2.0, .seed = seed}, 40, 12);
        const grainplane::Bench bench(image, settings, tablesOf(settings));
        renderGrainByKernel({}, bench.launch(), GrainSearch::OccupiedFirst);
        EXPECT_EQ(bench.result(), renderedLiterally(image, settings)) << size << " " << variance << " " << seed;
      }
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
