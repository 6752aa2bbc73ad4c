// The enhancer's amounts, tables, row taps, and its horizontal pass against the formulas in double.
#include "pipeline/host/enhancer.h"

#include "pipeline/host/m_table.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <numeric>
#include <random>

namespace morvellan::test
{
namespace
{

class Enhancer : public testing::Test
{
protected:
  Enhancer() { buildProductTable(*table); }

  EnhancerAxis axis(int samples, float amount) const { return enhancerAxis(samples, amount, table->data()); }

  std::unique_ptr<ProductTable> table = std::make_unique<ProductTable>();
};

TEST_F(Enhancer, AmountsGrowWithTheLargerRatioAndWithGrain)
{
  FrameParams params{};
  params.sourceWidth = 100;
  params.sourceHeight = 100;
  params.targetWidth = 150;
  params.targetHeight = 200;
  params.enhancerHorizontal = 3.0f;
  params.enhancerVertical = 1.0f;
  params.grainBypassed = true;
  params.grainChannelCount = 3;
  EXPECT_FLOAT_EQ(enhancerAmounts(params).horizontal, 9.6f);
  EXPECT_FLOAT_EQ(enhancerAmounts(params).vertical, 3.2f);
  params.grainBypassed = false;
  EXPECT_FLOAT_EQ(enhancerAmounts(params).horizontal, 10.8f);
  params.grainChannelCount = 0;
  EXPECT_FLOAT_EQ(enhancerAmounts(params).horizontal, 9.6f);
  params.targetWidth = params.targetHeight = 100;
  EXPECT_FLOAT_EQ(enhancerAmounts(params).vertical, 1.6f);
}

TEST_F(Enhancer, TheWalkTakesEverySampleOnceAndTheLastTwice)
{
  for (const int samples : {1, 2, 7, 1920})
  {
    const EnhancerAxis walk = axis(samples, 2.0f);
    ASSERT_EQ(walk.step.size(), static_cast<std::size_t>(samples));
    EXPECT_EQ(std::accumulate(walk.step.begin(), walk.step.end(), 0), samples + 1);
    EXPECT_TRUE(std::all_of(walk.step.begin(), walk.step.end() - 1, [](int step) { return step == 1; }));
    EXPECT_EQ(walk.step.back(), 2);
    EXPECT_EQ(walk.frac.back(), 0.0f);
    for (int i = 0; i + 1 < samples; ++i)
      ASSERT_EQ(walk.frac[static_cast<std::size_t>(i)], static_cast<float>(i + 1) / static_cast<float>(samples));
  }
}

TEST_F(Enhancer, CurvatureIsAQuantisedBump)
{
  const EnhancerAxis walk = axis(1000, 4.0f);
  for (std::size_t i = 0; i < 1000; ++i)
  {
    const int c = static_cast<int>(walk.frac[i] * 255.0f);
    const double product = std::floor(c / 255.0 * (255 - c) + 0.5);
    ASSERT_FLOAT_EQ(walk.curve[i], static_cast<float>(product * 4.0 / 255.0)) << i;
    ASSERT_NEAR(walk.curve[i], walk.frac[i] * (1.0f - walk.frac[i]) * 4.0f, 0.02) << i;
  }
}

TEST_F(Enhancer, AnAxisWithoutAmountPassesThrough)
{
  const EnhancerAxis walk = axis(100, 0.0f);
  EXPECT_TRUE(walk.passesThrough());
  EXPECT_EQ(walk.step, std::vector<int>{1});
  EXPECT_FALSE(axis(100, 0.1f).passesThrough());
}

TEST_F(Enhancer, RowTapsAreHeldAtTheEdges)
{
  const EnhancerAxis walk = axis(4, 1.0f);
  const std::vector<EnhancerRow> rows = enhancerRows(walk);
  ASSERT_EQ(rows.size(), 4u);
  const int expected[4][4] = {{0, 0, 1, 2}, {0, 1, 2, 3}, {1, 2, 3, 4}, {2, 3, 4, 4}};
  for (std::size_t y = 0; y < 4; ++y)
  {
    EXPECT_EQ(rows[y].im, expected[y][0]) << y;
    EXPECT_EQ(rows[y].i0, expected[y][1]) << y;
    EXPECT_EQ(rows[y].i1, expected[y][2]) << y;
    EXPECT_EQ(rows[y].ip, expected[y][3]) << y;
  }
  EXPECT_EQ(rows[0].frac, 0.0f);  // the first row is a copy
  EXPECT_EQ(rows[0].curve, 0.0f);
  EXPECT_EQ(rows[1].frac, 0.25f);
  EXPECT_EQ(rows[3].frac, 0.75f);
  EXPECT_EQ(rows[3].curve, walk.curve[2]);
}

TEST_F(Enhancer, ASingleRow)
{
  const std::vector<EnhancerRow> rows = enhancerRows(axis(1, 1.0f));
  ASSERT_EQ(rows.size(), 1u);
  EXPECT_EQ(rows[0].i0, 0);
  EXPECT_EQ(rows[0].ip, 1);
}

// One pixel of the walk by the formulas, in double.
void expectWalked(const std::vector<float>& row, int width, const EnhancerAxis& walk, int x, const float* actual)
{
  const auto sample = [&](int at, int c)
  { return static_cast<double>(row[static_cast<std::size_t>(std::clamp(at, 0, width) * 4 + c)]); };
  if (x == 0)
  {
    for (int c = 0; c < 4; ++c)
      ASSERT_EQ(actual[c], sample(0, c));
    return;
  }
  const double t = walk.frac[static_cast<std::size_t>(x - 1)];
  const double w = walk.curve[static_cast<std::size_t>(x - 1)];
  double linear[4];
  double e[4];
  for (int c = 0; c < 4; ++c)
  {
    linear[c] = sample(x, c) + t * (sample(x + 1, c) - sample(x, c));
    e[c] = ((sample(x, c) - sample(x - 1, c)) - (sample(x + 2, c) - sample(x + 1, c))) * 0.5;
  }
  const double y = 0.25 * linear[0] + 0.5 * linear[1] + 0.25 * linear[2];
  const double co = 0.5 * linear[0] - 0.5 * linear[2];
  const double cg = 0.5 * linear[1] - 0.25 * linear[0] - 0.25 * linear[2];
  const double sharp = y + w * (0.25 * linear[0] * e[0] + 0.5 * linear[1] * e[1] + 0.25 * linear[2] * e[2]);
  const double expected[4] = {co + sharp - cg, cg + sharp, sharp - co - cg, linear[3] + w * e[3]};
  for (int c = 0; c < 4; ++c)
    ASSERT_NEAR(actual[c], expected[c], 5e-6) << x << " " << c;
}

TEST_F(Enhancer, HorizontalPassFollowsTheFormulas)
{
  std::mt19937 generator(3);
  std::uniform_real_distribution<float> values(-0.2f, 1.5f);
  for (const int width : {1, 2, 3, 5, 16, 17, 18, 19, 33, 250})
  {
    constexpr int height = 3;
    const EnhancerAxis walk = axis(width, 5.0f);
    std::vector<float> source(static_cast<std::size_t>((width + 1) * height * 4));
    std::generate(source.begin(), source.end(), [&] { return values(generator); });
    std::vector<float> target(static_cast<std::size_t>(width * height * 4));
    enhanceHorizontally(packedImage<const float>(source.data(), {width + 1, height}), walk,
                        packedImage(target.data(), {width, height}));
    for (int y = 0; y < height; ++y)
    {
      const std::vector<float> row(source.begin() + y * (width + 1) * 4, source.begin() + (y + 1) * (width + 1) * 4);
      for (int x = 0; x < width; ++x)
        expectWalked(row, width, walk, x, &target[static_cast<std::size_t>((y * width + x) * 4)]);
    }
  }
}

TEST_F(Enhancer, AFlatPictureStaysFlat)
{
  const EnhancerAxis walk = axis(100, 18.0f);
  const std::vector<float> source(101 * 4, 0.4f);
  std::vector<float> target(100 * 4);
  enhanceHorizontally(packedImage<const float>(source.data(), {101, 1}), walk, packedImage(target.data(), {100, 1}));
  for (const float value : target)
    ASSERT_FLOAT_EQ(value, 0.4f);
}

}  // namespace
}  // namespace morvellan::test
