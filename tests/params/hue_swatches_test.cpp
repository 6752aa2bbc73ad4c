// Angles of sampled colours and colours of angles, by value, and which centres and swatches an edit moves.
// The angle runs backwards from 480 degrees: red is 120, green 0, blue 240.
#include "params/hue_swatches.h"

#include "params/families.h"
#include "tests/params/test_page.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>

namespace morvellan::params
{
namespace
{
using testing::ElementsAre;

void expectColour(const Rgb& actual, const Rgb& expected)
{
  for (std::size_t i = 0; i < actual.size(); ++i)
    EXPECT_NEAR(actual[i], expected[i], 1e-12) << i;
}

TEST(HueSwatches, DegreesOfColours)
{
  EXPECT_EQ(degreesOf({0.5, 0.5, 0.5}), 120.0);
  EXPECT_EQ(degreesOf({1.0, 0.0, 0.0}), 120.0);
  EXPECT_NEAR(degreesOf({1.0, 1.0, 0.0}), 60.0, 1.0);  // 420, truncated before the modulo
  EXPECT_NEAR(degreesOf({0.0, 1.0, 0.0}), 360.0, 1e-9);
  EXPECT_NEAR(degreesOf({0.0, 1.0, 1.0}), 300.0, 1e-9);
  EXPECT_NEAR(degreesOf({0.0, 0.0, 1.0}), 240.0, 1e-9);
  EXPECT_NEAR(degreesOf({1.0, 0.0, 1.0}), 180.0, 1e-9);
  EXPECT_NEAR(degreesOf({0.25, 0.5, 0.75}), 270.0, 1e-9);
  EXPECT_NEAR(degreesOf({8.0, 2.0, 4.0}), 140.0, 1e-9);
  // 480 - 60 * 0.24 = 465.6: the whole degrees remain.
  EXPECT_EQ(degreesOf({1.0, 0.24, 0.0}), 105.0);
  EXPECT_EQ(degreesOf({1.0, 0.26, 0.0}), 104.0);
}

TEST(HueSwatches, DegreesStayInRangeForAnySample)
{
  const double inf = std::numeric_limits<double>::infinity();
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const std::array samples{0.0, 1.0, -3.0, 1e-30, 1e300, inf, -inf, nan};
  for (const double r : samples)
    for (const double g : samples)
      for (const double b : samples)
      {
        const double degrees = degreesOf({r, g, b});
        EXPECT_GE(degrees, 0.0) << r << ' ' << g << ' ' << b;
        EXPECT_LE(degrees, 360.0) << r << ' ' << g << ' ' << b;
      }
}

TEST(HueSwatches, ColoursOfDegrees)
{
  const double low = 0.1875;
  expectColour(colourOf(120.0), {0.75, low, low});
  expectColour(colourOf(60.0), {0.75, 0.75, low});
  expectColour(colourOf(0.0), {low, 0.75, low});
  expectColour(colourOf(360.0), {low, 0.75, low});
  expectColour(colourOf(300.0), {low, 0.75, 0.75});
  expectColour(colourOf(240.0), {low, low, 0.75});
  expectColour(colourOf(180.0), {0.75, low, 0.75});
  expectColour(colourOf(150.0), {0.75, low, 0.46875});
  expectColour(colourOf(210.0), {0.46875, low, 0.75});
  expectColour(colourOf(44.0), {0.75 * (1.0 - 0.75 * (4.0 / 15.0)), 0.75, low});
}

TEST(HueSwatches, ColourAndDegreesAgree)
{
  for (int degrees = 121; degrees < 360; ++degrees)
    EXPECT_NEAR(degreesOf(colourOf(degrees)), degrees, 1e-9);
  for (int degrees = 1; degrees < 120; ++degrees)
    EXPECT_NEAR(degreesOf(colourOf(degrees + 0.5)), degrees, 1e-9);
}

TEST(HueSwatches, AttributeSwatchMovesItsCentreAndBack)
{
  for (const Axis& axis : axes)
  {
    TestPage params;
    params.editRgb(joined(axis.shortWord, "Swatch"), {0.0, 0.0, 1.0});
    EXPECT_NEAR(params[joined(axis.word, "CustomHue")], 240.0, 1e-9);
    EXPECT_THAT(params.written(), ElementsAre(joined(axis.word, "CustomHue")));
    EXPECT_TRUE(params.allBracketed());

    params.edit(joined(axis.word, "CustomHue"), 120.0);
    expectColour(params.rgb(joined(axis.shortWord, "Swatch")), {0.75, 0.1875, 0.1875});
    EXPECT_THAT(params.written(), ElementsAre(joined(axis.shortWord, "Swatch")));
    EXPECT_TRUE(params.allBracketed());
  }
}

TEST(HueSwatches, VectorSwatchMovesFourCentresAndACentreMovesTheSwatchAlone)
{
  for (const std::string_view word : refineWords)
  {
    TestPage params;
    params.editRgb(joined("Refine", word, "Swatch"), {0.5, 0.5, 0.5});
    for (const Axis& axis : axes)
      EXPECT_EQ(params[joined("Refine", word, axis.shortWord, "Hue")], 120.0) << word;
    EXPECT_EQ(params.writes.size(), 4u);
    EXPECT_TRUE(params.allBracketed());

    params.edit(joined("Refine", word, "ChrHue"), 240.0);
    expectColour(params.rgb(joined("Refine", word, "Swatch")), {0.1875, 0.1875, 0.75});
    EXPECT_THAT(params.written(), ElementsAre(joined("Refine", word, "Swatch")));
    EXPECT_EQ(params[joined("Refine", word, "SatHue")], 120.0);
  }
}
}  // namespace
}  // namespace morvellan::params
