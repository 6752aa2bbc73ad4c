// The grain tables entry by entry against the formula, and the product table.
#include "pipeline/host/grain_tables.h"

#include "pipeline/host/m_table.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <vector>

namespace morvellan::test
{
namespace
{

struct Tables
{
  explicit Tables(const GrainTableShape& shape) : lambda(static_cast<std::size_t>(shape.levels) + 1), exp(lambda.size())
  {
    buildGrainTable(shape, lambda, exp);
  }
  std::vector<float> lambda;
  std::vector<float> exp;
};

constexpr float radius = 0.0019f;
constexpr float cell = 1.0f / 527.0f;

// Every entry of the default depth equals the formula with a correctly rounded logarithm and exponential.
void expectFormula(const GrainTableShape& shape, float scale)
{
  const Tables tables(shape);
  const float step = 1.0f / (static_cast<float>(shape.levels) + 0.1f);
  for (int i = 0; i <= shape.levels; ++i)
  {
    const auto entry = static_cast<std::size_t>(i);
    const float u = 1.0f - static_cast<float>(i) * step;
    const float lambda = static_cast<float>(std::log(static_cast<long double>(u))) * -scale;
    ASSERT_EQ(tables.lambda[entry], lambda) << i;
    ASSERT_EQ(tables.exp[entry], static_cast<float>(std::exp(-static_cast<long double>(lambda)))) << i;
  }
}

TEST(GrainTables, DefaultDepthFollowsTheFormula)
{
  expectFormula({radius, cell, 0.0f, 131071}, cell * cell / (3.14159274f * (radius * radius)));
}

TEST(GrainTables, VarianceFollowsTheFormula)
{
  const float sigma = 0.0008f;
  expectFormula({radius, cell, sigma, 8191}, cell * cell / (3.14159274f * (sigma * sigma + radius * radius)));
}

TEST(GrainTables, EndsOfEveryDepth)
{
  for (int bits = 11; bits <= 23; bits += 2)
  {
    const int levels = (1 << bits) - 1;
    const Tables tables({radius, cell, 0.0f, levels});
    EXPECT_EQ(tables.lambda[0], 0.0f);
    EXPECT_FALSE(std::signbit(tables.lambda[0]));
    EXPECT_EQ(tables.exp[0], 1.0f);
    const bool infiniteEnd = bits >= 21;
    EXPECT_EQ(std::isinf(tables.lambda.back()), infiniteEnd) << bits;
    EXPECT_EQ(tables.exp.back() == 0.0f, infiniteEnd) << bits;
    EXPECT_TRUE(std::isfinite(tables.lambda[tables.lambda.size() - 2])) << bits;
  }
}

TEST(GrainTables, IntensityRisesAndTheChanceOfNoneFalls)
{
  const Tables tables({0.25f, 0.25f, 0.0f, 131071});
  for (std::size_t i = 1; i < tables.lambda.size(); ++i)
  {
    ASSERT_GE(tables.lambda[i], tables.lambda[i - 1]) << i;
    ASSERT_LE(tables.exp[i], tables.exp[i - 1]) << i;
  }
}

TEST(GrainTables, VarianceLowersIntensities)
{
  const float sigma = 0.001f;
  const Tables plain({radius, cell, 0.0f, 2047});
  const Tables varied({radius, cell, sigma, 2047});
  const float factor = radius * radius / (radius * radius + sigma * sigma);
  for (const std::size_t i : {1u, 500u, 2047u})
    EXPECT_NEAR(varied.lambda[i] / plain.lambda[i], factor, 1e-6);
}

TEST(ProductTable, RoundsEveryProduct)
{
  const auto table = std::make_unique<ProductTable>();
  buildProductTable(*table);
  EXPECT_EQ((*table)[255 * 256 + 255], 255);
  EXPECT_EQ((*table)[0], 0);
  for (int a = 0; a < 256; ++a)
    for (int b = 0; b < 256; ++b)
      ASSERT_EQ((*table)[static_cast<std::size_t>(a * 256 + b)], std::lround(a / 255.0 * b)) << a << " " << b;
}

}  // namespace
}  // namespace morvellan::test
