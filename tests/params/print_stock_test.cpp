// Print stocks by value: every stock with and without bleach, the custom and the empty one beside each camera side, and
// the bleach switch.
#include "params/print_stock.h"

#include "params/families.h"
#include "params/panels.h"
#include "params/stocks.h"
#include "tests/params/stock_expectations.h"
#include "tests/params/test_page.h"

#include <algorithm>
#include <array>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace morvellan::params
{
namespace
{
using testing::ElementsAre;

constexpr int lastStock = 9;

TestPage activePrint()
{
  TestPage params;
  params.edit("PrintDisplayBypass", 0);
  return params;
}

void expectTables(const TestPage& params, int stock)
{
  for (const Setting& setting : printCommon())
    EXPECT_EQ(params[setting.name], setting.value) << setting.name;
  for (const PrintRow& row : printRows())
    EXPECT_EQ(params[row.name], row.values[static_cast<std::size_t>(stock - firstStock)]) << row.name << ' ' << stock;
}

struct BleachRow
{
  int stock;
  double black, white, filmic, pivot;
  double bleachedBlack, bleachedWhite;
};

// Bleached points worked out by hand: a black below 0 goes to 1 - c, the white squared times k.
constexpr std::array bleachRows{
    BleachRow{2, -0.688, 0.75, 0.14, 0.7395, 0.009, 0.723},  BleachRow{3, -0.688, 0.75, 0.192, 0.688, 0.028, 0.693},
    BleachRow{4, -0.704, 0.747, 0.086, 0.626, 0.234, 0.732}, BleachRow{5, -0.738, 0.752, 0.207, 0.656, 0.248, 0.741},
    BleachRow{6, -0.688, 0.75, 0.14, 0.7395, 0.009, 0.723},  BleachRow{7, -0.688, 0.75, 0.192, 0.688, 0.028, 0.693},
    BleachRow{8, -0.704, 0.747, 0.086, 0.626, 0.234, 0.732}, BleachRow{9, -0.738, 0.752, 0.207, 0.656, 0.248, 0.741},
};

void expectBleached(const TestPage& params, const BleachRow& row)
{
  EXPECT_EQ(params["PrintBleachPivot"], row.pivot) << row.stock;
  expectFamily(params, "PrintBleach", "PrintBleach", 0.0);
  EXPECT_EQ(params["PrintFilmicPivot"], 0.0) << row.stock;
  EXPECT_EQ(params["PrintFilmicSlope"], 0.0) << row.stock;
  expectPoints(params, row.bleachedBlack, row.bleachedWhite);
}

TEST(PrintStock, EveryStockFillsTheStore)
{
  for (const BleachRow& row : bleachRows)
  {
    TestPage params = activePrint();
    params.edit("PrintProfile", row.stock);
    expectTables(params, row.stock);
    expectPoints(params, row.black, row.white);
    EXPECT_EQ(params["PrintFilmicPivot"], row.filmic);
    EXPECT_EQ(params["PrintFilmicSlope"], 0.0);
    EXPECT_EQ(params["PrintBleachPivot"], row.pivot);
    EXPECT_TRUE(params.noneBracketed());
    for (const std::string_view name : printStockControls)
      EXPECT_TRUE(params.shown(name)) << name;
    EXPECT_TRUE(params.shown("Bleach"));
    EXPECT_FALSE(params.shown("PrintBleach"));
  }
}

TEST(PrintStock, BleachLayerWithTheChoice)
{
  for (const BleachRow& row : bleachRows)
  {
    TestPage params = activePrint();
    params.put("Bleach", 1);
    params.edit("PrintProfile", row.stock);
    expectBleached(params, row);
    EXPECT_TRUE(params.shown("PrintBleachPivot"));
    // A second time from the values just written ends at the same numbers.
    params.edit("PrintProfile", row.stock);
    expectBleached(params, row);

    TestPage labBleach = activePrint();
    labBleach.put("Bleach", 1);
    labBleach.put("LableachBypass", 1);
    labBleach.edit("PrintProfile", row.stock);
    expectTables(labBleach, row.stock);
    EXPECT_FALSE(labBleach.shown("Bleach"));
  }
}

TEST(PrintStock, BleachSwitchWithUntouchedSliders)
{
  for (const BleachRow& row : bleachRows)
  {
    TestPage params = activePrint();
    params.edit("PrintProfile", row.stock);
    params.put("PrintBleachPivot", 0.3);
    params.edit("Bleach", 1);
    expectBleached(params, row);
    EXPECT_EQ(params.shown("PrintBleachRed"), true);

    params.setVisible("LableachBypass", false);
    params.edit("Bleach", 0);
    EXPECT_EQ(params["PrintBleachPivot"], 0.3);
    expectFamily(params, "PrintBleach", "PrintBleach", 0.0);
    expectPoints(params, row.black, row.white);
    EXPECT_EQ(params["PrintFilmicPivot"], row.filmic);
    for (const std::string_view name : printBleachControls)
      EXPECT_FALSE(params.shown(name)) << name;
    EXPECT_TRUE(params.shown("LableachBypass"));

    // Off has put the sliders back, so on finds them untouched.
    params.edit("Bleach", 1);
    expectBleached(params, row);
  }
}

TEST(PrintStock, BleachSwitchWithMovedSlidersWritesNothing)
{
  for (int stock = firstStock; stock <= lastStock; ++stock)
  {
    TestPage params = activePrint();
    params.edit("PrintProfile", stock);  // which moves the pivot
    params.edit("Bleach", 1);
    EXPECT_TRUE(params.writes.empty()) << stock;
    EXPECT_TRUE(params.shown("PrintBleachPivot"));

    TestPage moved = activePrint();
    moved.edit("PrintProfile", stock);
    moved.put("PrintBleachPivot", 0.3);
    moved.put("PrintBleach", 0.1);
    moved.edit("Bleach", 1);
    EXPECT_TRUE(moved.writes.empty()) << stock;
  }
}

TEST(PrintStock, BleachSwitchWhileTheLabBleaches)
{
  TestPage params = activePrint();
  params.edit("PrintProfile", 2);
  params.put("LableachBypass", 1);
  params.edit("Bleach", 1);
  EXPECT_EQ(params["Bleach"], 0.0);
  EXPECT_FALSE(params.shown("Bleach"));
  EXPECT_THAT(params.written(), ElementsAre("Bleach"));
  EXPECT_TRUE(params.allBracketed());
}

TEST(PrintStock, BleachSwitchWithoutATable)
{
  for (const int stock : {noStock, customStock})
  {
    TestPage params = activePrint();
    params.put("PrintProfile", stock);
    params.put("PrintBlackRed", 0.5);
    params.put("PrintFilmicPivot", 0.5);
    params.edit("Bleach", 1);
    EXPECT_TRUE(params.writes.empty());
    EXPECT_EQ(params.shown("PrintBleach"), stock == customStock);
    params.put("PrintBleachRed", 0.5);
    params.edit("Bleach", 0);
    EXPECT_THAT(params.written(), ElementsAre("PrintBleachRed"));
    EXPECT_EQ(params["PrintBlackRed"], 0.5);
    EXPECT_EQ(params["PrintFilmicPivot"], 0.5);
  }
}

TEST(PrintStock, BleachOfUnequalPoints)
{
  TestPage params = activePrint();
  params.put("PrintProfile", 2);
  params.put("PrintBlackRed", 0.2);
  params.put("PrintBlackGreen", 0.1);
  params.put("PrintBlackBlue", 0.0);
  params.put("PrinterLightRed", 0.9);
  params.put("PrinterLightGreen", 0.6);
  params.put("PrinterLightBlue", 0.3);
  params.edit("Bleach", 1);
  // The most is above 0: each channel less 1 + 0.2 + 0.991, which is below the range for all.
  for (const std::string& name : channelNames("PrintBlack"))
    EXPECT_EQ(params[name], -1.0) << name;
  EXPECT_EQ(params["PrintBlackRGB"], -1.0);
  const double scale = 0.6 * 1.2853333333;
  EXPECT_NEAR(params["PrinterLightRed"], 0.9 * scale, 1e-15);
  EXPECT_NEAR(params["PrinterLightBlue"], 0.3 * scale, 1e-15);
  EXPECT_NEAR(params["PrinterLightsRGB"], 0.6 * scale, 1e-15);

  TestPage negative = activePrint();
  negative.put("PrintProfile", 2);
  negative.put("PrintBlackRed", -0.5);
  negative.put("PrintBlackGreen", -0.6);
  negative.put("PrintBlackBlue", -0.7);
  negative.edit("Bleach", 1);
  EXPECT_NEAR(negative["PrintBlackRed"], -0.5 + 0.509, 1e-15);
  EXPECT_NEAR(negative["PrintBlackGreen"], -0.6 + 0.509, 1e-15);
  EXPECT_NEAR(negative["PrintBlackRGB"], -0.6 + 0.509, 1e-15);
}

TEST(PrintStock, NoneTakesThePointsOfTheCameraSide)
{
  struct Case
  {
    double soupBypass;
    int camera;
    double black, white;
  };
  for (const Case& row : {Case{1, 0, 0.141, 0.909}, Case{1, 7, 0.141, 0.909}, Case{0, 1, 0.141, 0.909},
                          Case{0, 2, -0.7045, 0.75}, Case{0, 24, -0.7045, 0.75}, Case{0, 0, 0.141, 0.909}})
  {
    TestPage params = activePrint();
    params.edit("PrintProfile", 5);
    params.put("SoupBypass", row.soupBypass);
    params.put("CameraStock", row.camera);
    params.put("Bleach", 1);
    params.edit("PrintProfile", noStock);
    expectPoints(params, row.black, row.white);
    EXPECT_EQ(params["Bleach"], 0.0);
    for (const std::string_view name : {"PrintCast", "PrintTintRtoC", "PrintSaturation", "Bleach", "PrintBleach",
                                        "PrintBleachPivot", "PrintFilmicPivot", "PrintFilmicSlope"})
      EXPECT_FALSE(params.shown(name)) << name;
    for (const std::string_view name : printPointControls)
      EXPECT_TRUE(params.shown(name)) << name;
    const bool tone = row.soupBypass == 0.0 && row.camera == 0;
    EXPECT_EQ(params["SoupToePivot"], tone ? 0.5545 : 0.669);
    EXPECT_EQ(params["SoupDmaxRGB"], tone ? 0.647 : 0.584);
    EXPECT_EQ(params["SoupFilmicSlope"], tone ? 0.01 : 0.014);
    EXPECT_EQ(params["PrintGammaPivot"], 0.122);  // the store stays
  }
}

TEST(PrintStock, CustomIsNeutral)
{
  for (const int camera : {0, 1, 6})
  {
    TestPage params = activePrint();
    params.edit("PrintProfile", 4);
    params.put("SoupBypass", 0);
    params.put("CameraStock", camera);
    params.put("Bleach", 1);
    params.put("PrintCast", 5000);
    params.edit("PrintProfile", customStock);
    expectPoints(params, camera == 6 ? -0.7045 : 0.141, camera == 6 ? 0.75 : 0.909);
    EXPECT_EQ(params["SoupToePivot"], 0.669);  // no tone set here
    EXPECT_EQ(params["PrintCast"], 5000.0);
    EXPECT_EQ(params["PrintGammaPivot"], 0.18);
    for (const std::string& name : channelNames("PrintGamma"))
      EXPECT_EQ(params[name], 0.4);
    EXPECT_EQ(params["Bleach"], 0.0);
    EXPECT_EQ(params["PrintBleachPivot"], 0.3);
    expectFamily(params, "PrintBleach", "PrintBleach", 0.0);
    EXPECT_EQ(params["PrintCurveShadowPivot"], 0.5);
    EXPECT_EQ(params["PrintCurveHighlightPivot"], 0.5);
    for (const std::string_view stem : {"PrintCurveShadow", "PrintCurveMidtone", "PrintCurveHighlight"})
      expectFamily(params, stem, stem, 0.0);
    EXPECT_EQ(params["PrintFilmicPivot"], 0.0);
    EXPECT_EQ(params["PrintFilmicSlope"], 0.0);
    EXPECT_EQ(params["PrintSat"], 1.0);
    EXPECT_EQ(params["PrintVib"], 0.0);
    EXPECT_EQ(params["PrintRefineSeven"], 1.0);
    EXPECT_EQ(params["PrintRefineSevenZone"], 0.0);
    for (const Axis& axis : axes)
      for (const std::string& name : attributeSliders(axis))
        EXPECT_EQ(params[joined("Print", name)], at(joined("Print", name)).defaults[0]) << name;
    for (const std::string_view word : printRefineWords)
      for (const std::string& name : refinementSliders(word))
        EXPECT_EQ(params[joined("Print", name)], at(joined("Print", name)).defaults[0]) << name;
    EXPECT_TRUE(params.noneBracketed());
    EXPECT_TRUE(params.shown("PrintCast"));
    EXPECT_TRUE(params.shown("Bleach"));
    EXPECT_FALSE(params.shown("PrintBleach"));
  }
}

TEST(PrintStock, ChosenWhilePrintIsBypassedShowsNothing)
{
  TestPage params;
  params.edit("PrintProfile", 3);
  expectTables(params, 3);
  for (const std::string_view name : printStockControls)
    EXPECT_FALSE(params.shown(name)) << name;
  EXPECT_FALSE(params.shown("PrintProfile"));
}
}  // namespace
}  // namespace morvellan::params
