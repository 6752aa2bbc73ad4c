// Masters against their channels: the carry by value, every row of the table, the tone swatches both ways, and what is
// written in which edit block.
#include "params/masters.h"

#include "tests/params/test_page.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace morvellan::params
{
namespace
{
using testing::DoubleNear;
using testing::ElementsAre;

const Master& master(std::string_view name)
{
  return *std::ranges::find(masters(), name, &Master::name);
}

TEST(Masters, TableRows)
{
  struct Row
  {
    std::string name;
    std::string first, last;
    std::size_t count;
    double lo, hi;
  };
  const std::vector<Row> rows{
      {"CombinedEnhancer", "HorizontalEnhancer", "VerticalEnhancer", 2, 0, 10},
      {"CombinedDetails", "HorizontalDetails", "VerticalDetails", 2, 0, 10},
      {"EnsemblePitch", "SopranoPitch", "BassPitch", 6, 0, 10},
      {"HalationBlendRGB", "HalationBlendR", "HalationBlendB", 3, -1, 1},
      {"SaturationCombo", "SaturationRed", "SaturationYellow", 6, 0, 1},
      {"HueCombo", "HueRed", "HueYellow", 6, 0, 1},
      {"ChromaCombo", "ChromaRed", "ChromaYellow", 6, 0, 1},
      {"VibranceCombo", "VibranceRed", "VibranceYellow", 6, 0, 1},
      {"SoupDminRGB", "SoupDminRed", "SoupDminBlue", 3, -1, 1},
      {"SoupDmaxRGB", "SoupDmaxRed", "SoupDmaxBlue", 3, -1, 1},
      {"LabSilverRGB", "LabSilverRed", "LabSilverBlue", 3, 0, 1},
      {"LabBleachRGB", "LabBleachRed", "LabBleachBlue", 3, 0, 1},
      {"SoupToeRGB", "SoupToeRed", "SoupToeBlue", 3, -0.5, 0.5},
      {"SoupKneeRGB", "SoupKneeRed", "SoupKneeBlue", 3, -0.5, 0.5},
      {"SoupShoulderRGB", "SoupShoulderRed", "SoupShoulderBlue", 3, -1, 1},
      {"PrintBleach", "PrintBleachRed", "PrintBleachBlue", 3, 0, 1},
      {"PrintBlackRGB", "PrintBlackRed", "PrintBlackBlue", 3, -1, 1},
      {"PrinterLightsRGB", "PrinterLightRed", "PrinterLightBlue", 3, 0, 1},
      {"SizeRGB", "SizeRed", "SizeBlue", 3, 0, 50},
      {"GranularityRGB", "GranularityRed", "GranularityBlue", 3, 0, 10},
      {"SoftRGB", "SoftRed", "SoftBlue", 3, 0, 10},
      {"VarianceRGB", "VarianceRed", "VarianceBlue", 3, 0, 10},
      {"StrengthRGB", "StrengthRed", "StrengthBlue", 3, 0, 10},
  };
  ASSERT_EQ(masters().size(), rows.size());
  for (std::size_t i = 0; i < rows.size(); ++i)
  {
    const Master& actual = masters()[i];
    EXPECT_EQ(actual.name, rows[i].name);
    EXPECT_EQ(actual.channels.size(), rows[i].count) << actual.name;
    EXPECT_EQ(actual.channels.front(), rows[i].first);
    EXPECT_EQ(actual.channels.back(), rows[i].last);
    EXPECT_EQ(actual.lo, rows[i].lo) << actual.name;
    EXPECT_EQ(actual.hi, rows[i].hi) << actual.name;
    EXPECT_EQ(actual.clamped, i >= 2) << actual.name;
    for (const std::string& channel : actual.channels)
      EXPECT_NE(find(channel), nullptr) << channel;
  }
}

TEST(Masters, CarryOfSixChannels)
{
  TestPage params;
  params.put("SaturationRed", 0.8);
  params.edit("SaturationCombo", 1.0);
  EXPECT_DOUBLE_EQ(params["SaturationRed"], 1.0);
  // 0.5 + 0.45 + 0.125 is over the limit, so the clamp ends it.
  for (const std::string_view colour : {"Magenta", "Blue", "Cyan", "Green", "Yellow"})
    EXPECT_DOUBLE_EQ(params[std::string{"Saturation"}.append(colour)], 1.0) << colour;

  const std::vector<double> channels{0.8, 0.5, 0.5, 0.5, 0.5, 0.5};
  Master unclamped = master("SaturationCombo");
  unclamped.clamped = false;
  EXPECT_THAT(carried(unclamped, channels, 1.0),
              ElementsAre(DoubleNear(1.0, 1e-15), DoubleNear(1.075, 1e-15), DoubleNear(1.075, 1e-15),
                          DoubleNear(1.075, 1e-15), DoubleNear(1.075, 1e-15), DoubleNear(1.075, 1e-15)));
  EXPECT_DOUBLE_EQ(params["SaturationCombo"], 1.0);
}

TEST(Masters, CarryOfThreeChannelsIsConserved)
{
  TestPage params;
  params.put("GranularityRed", 9.0);
  params.put("GranularityGreen", 4.0);
  params.put("GranularityBlue", 2.0);
  params.edit("GranularityRGB", 7.0);
  // The mean is 5, the move 2; red overflows by 1, of which each other takes a half.
  EXPECT_DOUBLE_EQ(params["GranularityRed"], 10.0);
  EXPECT_DOUBLE_EQ(params["GranularityGreen"], 6.5);
  EXPECT_DOUBLE_EQ(params["GranularityBlue"], 4.5);
  EXPECT_DOUBLE_EQ(params["GranularityRGB"], 7.0);
  EXPECT_THAT(params.written(), ElementsAre("GranularityRed", "GranularityGreen", "GranularityBlue"));
  EXPECT_TRUE(params.allBracketed());
}

TEST(Masters, CarryAtTheLowerLimit)
{
  TestPage params;
  params.put("SizeRed", 1.0);
  params.put("SizeGreen", 10.0);
  params.put("SizeBlue", 10.0);
  params.edit("SizeRGB", 3.0);
  // The mean is 7, the move -4; red falls short by 3.
  EXPECT_DOUBLE_EQ(params["SizeRed"], 0.0);
  EXPECT_DOUBLE_EQ(params["SizeGreen"], 4.5);
  EXPECT_DOUBLE_EQ(params["SizeBlue"], 4.5);
}

TEST(Masters, EnhancersCarryBetweenTwo)
{
  TestPage params;
  params.put("HorizontalEnhancer", 10.0);
  params.put("VerticalEnhancer", 0.0);
  params.edit("CombinedEnhancer", 8.0);
  // The mean is 5, the move 3; horizontal overflows by 3, of which vertical takes a half.
  EXPECT_DOUBLE_EQ(params["HorizontalEnhancer"], 10.0);
  EXPECT_DOUBLE_EQ(params["VerticalEnhancer"], 4.5);
  EXPECT_DOUBLE_EQ(params["CombinedEnhancer"], 8.0);
}

TEST(Masters, HalationBlendCarriesBelowZeroAndEndsAtZero)
{
  const std::vector<double> channels{0.1, 0.4, 0.7};
  // The move is -0.4: red goes to -0.3, within -1 to 1, so nothing is carried.
  EXPECT_THAT(carried(master("HalationBlendRGB"), channels, 0.0),
              ElementsAre(DoubleNear(-0.3, 1e-15), DoubleNear(0.0, 1e-15), DoubleNear(0.3, 1e-15)));
  TestPage params;
  params.put("HalationBlendR", 0.1);
  params.put("HalationBlendG", 0.4);
  params.put("HalationBlendB", 0.7);
  params.edit("HalationBlendRGB", 0.0);
  EXPECT_DOUBLE_EQ(params["HalationBlendR"], 0.0);
  EXPECT_NEAR(params["HalationBlendG"], 0.0, 1e-15);
  EXPECT_NEAR(params["HalationBlendB"], 0.3, 1e-15);
}

// For every row: a channel writes the mean into the master; a master without overflow moves every channel alike.
TEST(Masters, EveryRowFollowsItsChannelsAndMovesThem)
{
  for (const Master& row : masters())
  {
    TestPage params;
    const Range range = *at(row.channels[0]).range;
    const double low = range.min + 0.25 * (range.max - range.min);
    const double high = range.min + 0.5 * (range.max - range.min);
    for (const std::string& channel : row.channels)
      params.put(channel, low);
    params.put(row.name, range.max);
    params.edit(row.channels.back(), high);
    const double mean = low + (high - low) / static_cast<double>(row.channels.size());
    EXPECT_NEAR(params[row.name], mean, 1e-12) << row.name;
    EXPECT_EQ(params.writes.size(), row.swatch.empty() ? 1u : 2u) << row.name;
    EXPECT_EQ(params.writes.front().name, row.name);
    EXPECT_TRUE(params.allBracketed()) << row.name;

    const double move = 0.125 * (range.max - range.min);
    params.edit(row.name, mean + move);
    for (const std::string& channel : row.channels)
      EXPECT_NEAR(params[channel], (channel == row.channels.back() ? high : low) + move, 1e-12) << channel;
    EXPECT_TRUE(params.allBracketed()) << row.name;
  }
}

// For every row of the table, from its limits alone: the first channel stands a tenth of the span off a limit, the
// others in the middle, and the master moves by a fifth of the span towards the limit. What the first overshoots, a
// tenth, goes to each other by half, whether there is one, two or five of them.
TEST(Masters, EveryRowCarriesWhatAChannelOvershoots)
{
  for (const Master& row : masters())
  {
    const double span = row.hi - row.lo;
    const double others = static_cast<double>(row.channels.size() - 1);
    for (const double sign : {1.0, -1.0})
    {
      const double limit = sign > 0.0 ? row.hi : row.lo;
      const double middle = row.lo + span / 2.0;
      // These sliders stop short of the lower limit of the carry.
      if (limit - sign * span / 10.0 < at(row.channels[0]).range->min)
        continue;
      TestPage params;
      params.put(row.channels[0], limit - sign * span / 10.0);
      for (std::size_t i = 1; i < row.channels.size(); ++i)
        params.put(row.channels[i], middle);
      const double mean = (limit - sign * span / 10.0 + middle * others) / (others + 1.0);
      params.edit(row.name, mean + sign * span / 5.0);
      EXPECT_NEAR(params[row.channels[0]], limit, 1e-12) << row.name;
      for (std::size_t i = 1; i < row.channels.size(); ++i)
        EXPECT_NEAR(params[row.channels[i]], middle + sign * span * 0.25, 1e-12) << row.channels[i];
      const double carried = (limit + (middle + sign * span * 0.25) * others) / (others + 1.0);
      const double expected = row.swatch.empty() ? mean + sign * span / 5.0 : carried;
      EXPECT_NEAR(params[row.name], expected, 1e-12) << row.name;
    }
  }
}

TEST(Masters, OnlyToneMastersAreRewrittenAfterTheirOwnChange)
{
  TestPage params;
  params.put("SoupToeRed", 0.4);
  params.put("SoupToeGreen", 0.3);
  params.put("SoupToeBlue", 0.2);
  params.edit("SoupToeRGB", 0.5);
  // The move is 0.2: red overflows by 0.1, green is at the limit, blue takes a half: 0.45. All are clamped to 0.5.
  EXPECT_DOUBLE_EQ(params["SoupToeRed"], 0.5);
  EXPECT_DOUBLE_EQ(params["SoupToeGreen"], 0.5);
  EXPECT_NEAR(params["SoupToeBlue"], 0.45, 1e-15);
  EXPECT_NEAR(params["SoupToeRGB"], (0.5 + 0.5 + 0.45) / 3.0, 1e-15);
  const Rgb swatch = params.rgb("SoupToeSwatch");
  EXPECT_THAT(swatch, ElementsAre(1.0, 1.0, DoubleNear(0.95, 1e-15)));
  EXPECT_TRUE(params.allBracketed());
}

TEST(Masters, ToneSwatchOfChannels)
{
  EXPECT_THAT(toneSwatch({0.2, 0.2, 0.2}), ElementsAre(1.0, 1.0, 1.0));
  EXPECT_THAT(toneSwatch({0.4, 0.1, -0.1}), ElementsAre(1.0, DoubleNear(0.7, 1e-15), DoubleNear(0.5, 1e-15)));
  for (const std::string_view stem : {"LabBleach", "SoupToe", "SoupKnee", "SoupShoulder"})
  {
    TestPage params;
    const auto named = [&](std::string_view suffix) { return std::string{stem}.append(suffix); };
    for (const std::string_view channel : {"Red", "Green", "Blue"})
      params.put(named(channel), 0.1);
    params.edit(named("Green"), 0.4);
    EXPECT_THAT(params.rgb(named("Swatch")), ElementsAre(DoubleNear(0.7, 1e-15), 1.0, DoubleNear(0.7, 1e-15)));
    EXPECT_NEAR(params[named("RGB")], 0.2, 1e-15);
    EXPECT_THAT(params.written(), ElementsAre(named("RGB"), named("Swatch")));
  }
}

TEST(Masters, ToneChannelsOfSwatch)
{
  for (const std::string_view stem : {"LabBleach", "SoupToe", "SoupKnee", "SoupShoulder"})
  {
    TestPage params;
    const auto named = [&](std::string_view suffix) { return std::string{stem}.append(suffix); };
    params.editRgb(named("Swatch"), {0.3, 0.2, 0.1});
    // The mean is 0.2; the spread is 0.3, or 0.8 for the shoulder.
    const double spread = stem == "SoupShoulder" ? 0.8 : 0.3;
    EXPECT_NEAR(params[named("RGB")], 0.2, 1e-15) << stem;
    EXPECT_NEAR(params[named("Red")], 0.2 + (0.3 - 0.15) * spread, 1e-15) << stem;
    EXPECT_NEAR(params[named("Green")], 0.2, 1e-15) << stem;
    EXPECT_NEAR(params[named("Blue")], 0.2 + (0.1 - 0.25) * spread, 1e-15) << stem;
    EXPECT_TRUE(params.allBracketed());
    EXPECT_THAT(params.rgb(named("Swatch")), ElementsAre(0.3, 0.2, 0.1));
  }
}

TEST(Masters, ToneSwatchBeyondTheRangeIsHeld)
{
  TestPage params;
  params.editRgb("SoupToeSwatch", {1.0, 1.0, 1.0});
  for (const std::string_view name : {"SoupToeRGB", "SoupToeRed", "SoupToeGreen", "SoupToeBlue"})
    EXPECT_EQ(params[name], 0.5) << name;
}
}  // namespace
}  // namespace morvellan::params
