// Camera stocks by value: every stock's layers, the custom and the empty one, bleach bypass on and off, and what the
// choice opens on the page.
#include "params/camera_stock.h"

#include "params/families.h"
#include "params/stocks.h"
#include "tests/params/stock_expectations.h"
#include "tests/params/test_page.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace morvellan::params
{
namespace
{
using testing::ElementsAre;

constexpr int lastStock = 24;

TestPage activeSoup()
{
  TestPage params;
  params.put("SoupBypass", 0);
  return params;
}

void expectTables(const TestPage& params, int stock)
{
  for (const Setting& setting : cameraCommon())
    EXPECT_EQ(params[setting.name], setting.value) << setting.name;
  for (const CameraRow& row : cameraRows())
  {
    const double value = row.values[static_cast<std::size_t>(stock - firstStock)];
    if (!std::isnan(value))
    {
      EXPECT_EQ(params[row.name], value) << row.name << " of stock " << stock;
    }
  }
}

void expectNoStockTone(const TestPage& params)
{
  EXPECT_EQ(params["SoupToePivot"], 0.5545);
  expectFamily(params, "SoupToe", "SoupToeRGB", 0.0795);
  expectFamily(params, "SoupKnee", "SoupKneeRGB", 0.024);
  EXPECT_EQ(params["SoupShoulderPivot"], 0.3805);
  expectFamily(params, "SoupShoulder", "SoupShoulderRGB", 0.412);
  EXPECT_EQ(params["SoupFilmicPivot"], 0.0);
  EXPECT_EQ(params["SoupFilmicSlope"], 0.01);
  expectFamily(params, "SoupDmin", "SoupDminRGB", 0.558);
  expectFamily(params, "SoupDmax", "SoupDmaxRGB", 0.647);
  expectPoints(params, 0.141, 0.909);
}

TEST(CameraStock, EveryStockWritesItsLayers)
{
  for (int stock = firstStock; stock <= lastStock; ++stock)
  {
    TestPage params = activeSoup();
    params.edit("CameraStock", stock);
    expectTables(params, stock);
    expectPoints(params, -0.7045, 0.75);
    EXPECT_TRUE(params.noneBracketed());
    for (const Param& param : catalogue())
      if (param.kind == Kind::Rgb)
      {
        EXPECT_EQ(params.rgb(param.name), param.defaults) << param.name << " of stock " << stock;
      }
  }
}

TEST(CameraStock, StocksFollowOneAnotherWithoutATrace)
{
  TestPage params = activeSoup();
  for (int stock = lastStock; stock >= firstStock; --stock)
  {
    params.edit("CameraStock", stock);
    expectTables(params, stock);
    TestPage fresh = activeSoup();
    fresh.edit("CameraStock", stock);
    for (const CameraRow& row : cameraRows())
      EXPECT_EQ(params[row.name], fresh[row.name]) << row.name;
  }
}

TEST(CameraStock, FirstStockResetsBleachAndTheOthersLeaveIt)
{
  for (const int stock : {firstStock, 3, lastStock})
  {
    TestPage params = activeSoup();
    params.put("LabBleachPivot", 0.9);
    params.put("LabBleachGreen", 0.8);
    params.edit("CameraStock", stock);
    EXPECT_EQ(params["LabBleachPivot"], stock == firstStock ? 0.3 : 0.9);
    EXPECT_EQ(params["LabBleachGreen"], stock == firstStock ? 0.0 : 0.8);
  }
}

TEST(CameraStock, NothingWhileTheSoupIsBypassed)
{
  for (int stock = 0; stock <= lastStock; ++stock)
  {
    TestPage params;
    const auto before = params.layout();
    params.edit("CameraStock", stock);
    EXPECT_TRUE(params.writes.empty());
    EXPECT_EQ(params.layout(), before);
  }
}

TEST(CameraStock, OpensWhatIsOff)
{
  TestPage params = activeSoup();
  params.put("ToneCurves", 0);
  params.put("SatZone", 2);
  params.edit("CameraStock", 13);
  EXPECT_EQ(params["ColorCorrection"], 1.0);
  EXPECT_EQ(params["ColorRefine"], 1.0);
  EXPECT_EQ(params["ToneCurves"], 5.0);
  for (const std::string_view name : {"SaturationRed", "SatSwatch", "SatZone", "SatZoneHigh", "RefineTwoSwatch",
                                      "SoupFilmicPivot", "SoupFilmicSlope"})
    EXPECT_TRUE(params.shown(name)) << name;
  for (const std::string_view name : {"SatZoneLow", "HueRed", "RefineThreeSatHue", "RefineTwoZoneLow", "SoupToeRGB"})
    EXPECT_FALSE(params.shown(name)) << name;

  TestPage open = activeSoup();
  open.put("ColorCorrection", 3);
  open.put("ColorRefine", 7);
  open.put("ToneCurves", 2);
  open.edit("CameraStock", 13);
  EXPECT_EQ(open["ColorCorrection"], 3.0);
  EXPECT_EQ(open["ColorRefine"], 7.0);
  EXPECT_EQ(open["ToneCurves"], 2.0);
}

TEST(CameraStock, PrintStockKeepsItsPoints)
{
  for (const int print : {0, 1, 2, 9})
  {
    TestPage params = activeSoup();
    params.put("PrintProfile", print);
    params.put("PrintBlackRed", 0.5);
    params.edit("CameraStock", 8);
    EXPECT_EQ(params["PrintBlackRed"], print < 2 ? -0.7045 : 0.5) << print;
    EXPECT_EQ(params["PrinterLightsRGB"], print < 2 ? 0.75 : 0.909) << print;
  }
}

TEST(CameraStock, CustomIsNeutral)
{
  TestPage params = activeSoup();
  params.edit("CameraStock", 14);
  params.putRgb("SatSwatch", {0.1, 0.2, 0.3});
  params.putRgb("RefineNineSwatch", {0.1, 0.2, 0.3});
  params.putRgb("SoupKneeSwatch", {0.1, 0.2, 0.3});
  params.edit("CameraStock", customStock);
  for (const Setting& setting : cameraCommon())
    EXPECT_EQ(params[setting.name], at(setting.name).defaults[0]) << setting.name;
  for (const CameraRow& row : cameraRows())
  {
    if (!row.name.starts_with("SoupDm"))
    {
      EXPECT_EQ(params[row.name], at(row.name).defaults[0]) << row.name;
    }
  }
  expectFamily(params, "SoupDmin", "SoupDminRGB", 0.584);
  expectFamily(params, "SoupDmax", "SoupDmaxRGB", 0.838);
  EXPECT_EQ(params["SoupToePivot"], 0.669);
  expectPoints(params, 0.141, 0.909);
  for (const Param& param : catalogue())
  {
    if (param.kind == Kind::Rgb)
    {
      EXPECT_EQ(params.rgb(param.name), param.defaults) << param.name;
    }
  }
  EXPECT_TRUE(params.noneBracketed());
}

TEST(CameraStock, NoneWithPrintOnWritesTheToneAlone)
{
  TestPage params = activeSoup();
  params.put("PrintDisplayBypass", 0);
  params.edit("CameraStock", 20);
  params.put("ToneCurves", 3);
  params.edit("CameraStock", noStock);
  EXPECT_EQ(params["ColorCorrection"], 0.0);
  EXPECT_EQ(params["ColorRefine"], 0.0);
  EXPECT_EQ(params["ToneCurves"], 5.0);
  EXPECT_TRUE(params.shown("SoupFilmicPivot"));
  EXPECT_TRUE(params.shown("SaturationRed"));  // nothing is hidden
  expectNoStockTone(params);
  EXPECT_EQ(params["SaturationRed"], 0.4785);  // the look of the stock before stays
}

TEST(CameraStock, NoneWithoutPrintOrWithAPrintStockIsNeutral)
{
  for (const int print : {0, 5})
  {
    TestPage params = activeSoup();
    params.put("PrintDisplayBypass", print == 0 ? 1 : 0);
    params.put("PrintProfile", print);
    params.put("PrintBlackGreen", 0.25);
    params.edit("CameraStock", 20);
    params.edit("CameraStock", noStock);
    EXPECT_EQ(params["SaturationRed"], 0.5);
    EXPECT_EQ(params["SoupToePivot"], 0.669);
    expectFamily(params, "SoupDmin", "SoupDminRGB", 0.584);
    expectFamily(params, "SoupDmax", "SoupDmaxRGB", 0.838);
    EXPECT_EQ(params["PrintBlackGreen"], print == 0 ? 0.141 : 0.25);
  }
}

struct BleachRow
{
  int stock;
  double pivot, bleach, dmin, dmax;
};

// Densities worked out by hand from the stocks' own: for a minimum above 0 it is 1 - c, and the maximum squared times
// k.
constexpr std::array bleachRows{
    BleachRow{2, 0.4785, 0.0, 0.792, 0.7387},   BleachRow{3, 0.5825, 0.083, 0.89, 0.74},
    BleachRow{4, 0.55, 0.022, 0.761, 0.874},    BleachRow{5, 0.445, 0.038, 0.798, 0.779},
    BleachRow{6, 0.652, 0.054, 0.78, 0.728},    BleachRow{7, 0.67, 0.0, 0.523, 0.825},
    BleachRow{8, 0.7155, 0.0, 0.016, 0.97},     BleachRow{9, 0.6055, 0.0, 0.369, 0.5055},
    BleachRow{10, 0.261, 0.0, 0.451, 0.7372},   BleachRow{11, 0.464, 0.056, 0.725, 0.725},
    BleachRow{12, 0.7615, 0.0, 0.523, 0.808},   BleachRow{13, 0.6915, 0.0, 0.596, 0.782},
    BleachRow{14, 0.634, 0.0, 0.706, 0.7645},   BleachRow{15, 0.5165, 0.0, 0.746, 0.7145},
    BleachRow{16, 0.488, 0.021, 0.845, 0.7605}, BleachRow{17, 0.5705, 0.0, 0.688, 0.7905},
    BleachRow{18, 0.587, 0.069, 0.89, 0.759},   BleachRow{19, 0.554, 0.0, 0.835, 0.811},
    BleachRow{20, 0.679, 0.0, 0.615, 0.802},    BleachRow{21, 0.587, 0.0, 0.56, 0.9225},
    BleachRow{22, 0.564, 0.0, 0.651, 0.7535},   BleachRow{23, 0.534, 0.0, 0.743, 0.757},
    BleachRow{24, 0.4915, 0.0, 0.725, 0.664},
};

void expectBleach(const TestPage& params, const BleachRow& row)
{
  EXPECT_EQ(params["LabBleachPivot"], row.pivot) << row.stock;
  expectFamily(params, "LabBleach", "LabBleachRGB", row.bleach);
  expectFamily(params, "SoupDmin", "SoupDminRGB", row.dmin);
  expectFamily(params, "SoupDmax", "SoupDmaxRGB", row.dmax);
  if (const auto toe = cameraBleach(row.stock).toe)
  {
    EXPECT_EQ(params["SoupToePivot"], toe->pivot);
    EXPECT_EQ(params["SoupToeRed"], toe->red);
    EXPECT_EQ(params["SoupToeGreen"], toe->green);
    EXPECT_EQ(params["SoupToeBlue"], toe->blue);
    EXPECT_EQ(params["SoupToeRGB"], toe->rgb);
  }
}

TEST(CameraStock, BleachLayerWithTheChoice)
{
  for (const BleachRow& row : bleachRows)
  {
    TestPage params = activeSoup();
    params.put("LableachBypass", 1);
    params.edit("CameraStock", row.stock);
    expectBleach(params, row);
    expectPoints(params, -0.7045, 0.75);
    params.edit("CameraStock", row.stock);
    expectBleach(params, row);

    TestPage printBleach = activeSoup();
    printBleach.put("LableachBypass", 1);
    printBleach.put("Bleach", 1);
    printBleach.edit("CameraStock", row.stock);
    expectTables(printBleach, row.stock);
  }
}

TEST(CameraStock, BleachLayerWithTheBypass)
{
  for (const BleachRow& row : bleachRows)
  {
    TestPage params = activeSoup();
    params.edit("CameraStock", row.stock);
    const double toe = params["SoupToeRed"];
    params.setVisible("Bleach", true);
    params.edit("LableachBypass", 1);
    expectBleach(params, row);
    EXPECT_FALSE(params.shown("Bleach"));
    EXPECT_TRUE(params.noneBracketed());

    params.edit("LableachBypass", 0);
    EXPECT_EQ(params["LabBleachPivot"], 0.3);
    expectFamily(params, "LabBleach", "LabBleachRGB", 0.0);
    for (const CameraRow& table : cameraRows())
    {
      if (table.name.starts_with("SoupDm"))
      {
        EXPECT_EQ(params[table.name], table.values[static_cast<std::size_t>(row.stock - firstStock)]) << table.name;
      }
    }
    const auto layer = cameraBleach(row.stock);
    EXPECT_EQ(params["SoupToeRed"], layer.toe ? layer.toe->red : toe);
    EXPECT_FALSE(params.shown("Bleach"));
  }
}

TEST(CameraStock, BleachBypassOffShowsThePrintsBleach)
{
  for (const double bypass : {0.0, 1.0})
  {
    for (const int print : {0, 3})
    {
      TestPage params = activeSoup();
      params.put("PrintDisplayBypass", bypass);
      params.put("PrintProfile", print);
      params.edit("LableachBypass", 0);
      EXPECT_EQ(params.shown("Bleach"), bypass == 0.0 && print != 0);
    }
  }
}

TEST(CameraStock, BleachBypassWithoutAStock)
{
  TestPage params = activeSoup();
  params.put("LabBleachRed", 0.5);
  params.edit("LableachBypass", 1);
  EXPECT_EQ(params["LabBleachPivot"], 0.3);
  expectFamily(params, "LabBleach", "LabBleachRGB", 0.0);
  expectFamily(params, "SoupDmin", "SoupDminRGB", 0.584);
  expectFamily(params, "SoupDmax", "SoupDmaxRGB", 0.838);
  params.put("SoupDmaxRed", 0.1);
  params.edit("LableachBypass", 0);
  expectFamily(params, "SoupDmax", "SoupDmaxRGB", 0.838);
}

TEST(CameraStock, BleachBypassWithTheCustomStock)
{
  TestPage params = activeSoup();
  params.put("CameraStock", customStock);
  params.put("LabBleachRed", 0.5);
  params.put("SoupDminRed", 0.25);
  params.edit("LableachBypass", 1);
  EXPECT_TRUE(params.writes.empty());
  EXPECT_FALSE(params.shown("Bleach"));
  params.edit("LableachBypass", 0);
  expectFamily(params, "LabBleach", "LabBleachRGB", 0.0);
  EXPECT_EQ(params["SoupDminRed"], 0.25);
}

TEST(CameraStock, BleachBypassesExcludeOneAnother)
{
  TestPage params = activeSoup();
  params.put("CameraStock", 9);
  params.put("Bleach", 1);
  params.edit("LableachBypass", 1);
  EXPECT_EQ(params["LableachBypass"], 0.0);
  EXPECT_FALSE(params.shown("LableachBypass"));
  EXPECT_THAT(params.written(), ElementsAre("LableachBypass"));
  EXPECT_TRUE(params.allBracketed());
}

TEST(CameraStock, BleachBypassWhileTheSoupIsBypassedWritesNothing)
{
  TestPage params;
  params.put("CameraStock", 9);
  params.setVisible("Bleach", true);
  params.edit("LableachBypass", 1);
  EXPECT_TRUE(params.writes.empty());
  EXPECT_TRUE(params.shown("Bleach"));
}

// The shift starts from the current values: below 0 the channels are mirrored, and unequal ones keep their distance.
TEST(CameraStock, DensityShiftOfUnequalChannels)
{
  TestPage params = activeSoup();
  params.put("CameraStock", 2);
  params.put("SoupDminRed", 0.5);
  params.put("SoupDminGreen", 0.25);
  params.put("SoupDminBlue", -0.25);
  params.put("SoupDmaxRed", 0.5);
  params.put("SoupDmaxGreen", 0.4);
  params.put("SoupDmaxBlue", 0.3);
  params.edit("LableachBypass", 1);
  EXPECT_NEAR(params["SoupDminRed"], 0.5 + 0.292, 1e-15);
  EXPECT_NEAR(params["SoupDminGreen"], 0.25 + 0.292, 1e-15);
  EXPECT_NEAR(params["SoupDminBlue"], -0.25 + 0.292, 1e-15);
  EXPECT_NEAR(params["SoupDminRGB"], 0.5 / 3.0 + 0.292, 1e-15);
  const double scale = 0.4 * 1.498973222619946;
  EXPECT_NEAR(params["SoupDmaxRed"], 0.5 * scale, 1e-15);
  EXPECT_NEAR(params["SoupDmaxBlue"], 0.3 * scale, 1e-15);
  EXPECT_NEAR(params["SoupDmaxRGB"], 0.4 * scale, 1e-15);

  TestPage negative = activeSoup();
  negative.put("CameraStock", 2);
  negative.put("SoupDminRed", -0.1);
  negative.put("SoupDminGreen", -0.2);
  negative.put("SoupDminBlue", -0.3);
  negative.edit("LableachBypass", 1);
  // m = 1 - 0.1; (m - 0.208) - channel.
  EXPECT_NEAR(negative["SoupDminRed"], 0.792, 1e-15);
  EXPECT_NEAR(negative["SoupDminGreen"], 0.892, 1e-15);
  EXPECT_NEAR(negative["SoupDminBlue"], 0.992, 1e-15);
}
}  // namespace
}  // namespace morvellan::params
