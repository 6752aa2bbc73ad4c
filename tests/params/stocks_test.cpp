// Holds the stock tables to their numbers: sums of every column and of the bleach constants, rows by value, and that
// every number fits its parameter.
#include "params/stocks.h"

#include "params/catalogue.h"

#include <algorithm>
#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>

namespace morvellan::params
{
namespace
{
using testing::ElementsAre;

const CameraRow& cameraRow(std::string_view name)
{
  return *std::ranges::find(cameraRows(), name, &CameraRow::name);
}

const PrintRow& printRow(std::string_view name)
{
  return *std::ranges::find(printRows(), name, &PrintRow::name);
}

void expectFits(std::string_view name, double value)
{
  const Param& param = at(name);
  ASSERT_TRUE(param.range) << name;
  EXPECT_GE(value, param.range->min) << name;
  EXPECT_LE(value, param.range->max) << name;
}

TEST(Stocks, EveryNumberFitsItsParameterAndEveryNameOccursOnce)
{
  std::set<std::string_view> names;
  for (const Setting& setting : cameraCommon())
  {
    expectFits(setting.name, setting.value);
    EXPECT_TRUE(names.insert(setting.name).second) << setting.name;
  }
  for (const CameraRow& row : cameraRows())
  {
    EXPECT_TRUE(names.insert(row.name).second) << row.name;
    for (const double value : row.values)
    {
      if (!std::isnan(value))
        expectFits(row.name, value);
    }
  }
  for (const Setting& setting : printCommon())
  {
    expectFits(setting.name, setting.value);
    EXPECT_TRUE(names.insert(setting.name).second) << setting.name;
  }
  for (const PrintRow& row : printRows())
  {
    EXPECT_TRUE(names.insert(row.name).second) << row.name;
    for (const double value : row.values)
      expectFits(row.name, value);
  }
  EXPECT_EQ(cameraCommon().size(), 171u);
  EXPECT_EQ(cameraRows().size(), 93u);
  EXPECT_EQ(printCommon().size(), 132u);
  EXPECT_EQ(printRows().size(), 73u);
}

// Sums taken in decimal arithmetic.
TEST(Stocks, CameraSums)
{
  double common = 0.0;
  for (const Setting& setting : cameraCommon())
    common += setting.value;
  EXPECT_NEAR(common, 14216.2, 1e-8);

  constexpr std::array<double, cameraStockCount> sums{2226.321167,   2238.8106333333333334,
                                                      2264.1750,     2211.0050,
                                                      2210.6580,     2211.7755,
                                                      2210.7336,     2211.4296,
                                                      2208.8801,     2211.1135,
                                                      2212.0950,     2347.2945,
                                                      2395.50783333, 2346.4240,
                                                      2542.2975,     2346.7625,
                                                      2486.6760,     2347.7475,
                                                      2347.6290,     2564.9385,
                                                      2395.4455,     2351.1288333,
                                                      2343.82099999};
  for (std::size_t stock = 0; stock < cameraStockCount; ++stock)
  {
    double sum = 0.0;
    for (const CameraRow& row : cameraRows())
      sum += std::isnan(row.values[stock]) ? 0.0 : row.values[stock];
    EXPECT_NEAR(sum, sums[stock], 1e-8) << "stock " << stock + firstStock;
  }
}

TEST(Stocks, CameraBleachSums)
{
  std::array<double, 9> sums{};
  int toes = 0;
  for (int stock = firstStock; stock < firstStock + static_cast<int>(cameraStockCount); ++stock)
  {
    const CameraBleach& layer = cameraBleach(stock);
    const ToeSet toe = layer.toe.value_or(ToeSet{});
    toes += layer.toe.has_value();
    const std::array<double, 9> values{layer.pivot, layer.bleach, toe.pivot, toe.red, toe.green,
                                       toe.blue,    toe.rgb,      layer.c,   layer.k};
    for (std::size_t i = 0; i < sums.size(); ++i)
      sums[i] += values[i];
  }
  constexpr std::array<double, 9> expected{13.0825,           0.343, 7.3975, 1.6807, 1.7527, 1.8692, 1.767533333, 7.772,
                                           32.040581687958674};
  for (std::size_t i = 0; i < sums.size(); ++i)
    EXPECT_NEAR(sums[i], expected[i], 1e-12) << i;
  EXPECT_EQ(toes, 12);
  EXPECT_THROW(cameraBleach(customStock), std::out_of_range);
  EXPECT_THROW(cameraBleach(25), std::out_of_range);
}

TEST(Stocks, PrintSums)
{
  double common = 0.0;
  for (const Setting& setting : printCommon())
    common += setting.value;
  EXPECT_NEAR(common, 11210.032, 1e-8);
  constexpr std::array<double, 4> sums{699.2479999999, 721.7604999993, 776.026099993, 776.31809999993};
  for (std::size_t stock = 0; stock < printStockCount; ++stock)
  {
    double sum = 0.0;
    for (const PrintRow& row : printRows())
      sum += row.values[stock];
    EXPECT_NEAR(sum, sums[stock % 4], 1e-9) << "stock " << stock + firstStock;
  }
}

TEST(Stocks, PrintSetsOfFourAreAlike)
{
  for (const PrintRow& row : printRows())
    for (std::size_t i = 0; i < 4; ++i)
      EXPECT_EQ(row.values[i], row.values[i + 4]) << row.name;
}

TEST(Stocks, PrintConstantsAgreeWithTheRows)
{
  double c = 0.0;
  double k = 0.0;
  for (int stock = firstStock; stock < firstStock + static_cast<int>(printStockCount); ++stock)
  {
    const PrintConstants& constants = printConstants(stock);
    const auto i = static_cast<std::size_t>(stock - firstStock);
    for (const std::string_view name : {"PrintBlackRed", "PrintBlackGreen", "PrintBlackBlue", "PrintBlackRGB"})
      EXPECT_EQ(printRow(name).values[i], constants.black);
    for (const std::string_view name : {"PrinterLightRed", "PrinterLightGreen", "PrinterLightBlue", "PrinterLightsRGB"})
      EXPECT_EQ(printRow(name).values[i], constants.white);
    EXPECT_EQ(printRow("PrintFilmicPivot").values[i], constants.filmicContrast);
    EXPECT_EQ(printRow("PrintBleachPivot").values[i], constants.bleachPivot);
    c += constants.c;
    k += constants.k;
  }
  EXPECT_NEAR(c, 6.962, 1e-12);
  EXPECT_NEAR(k, 10.278951382383156, 1e-12);
  EXPECT_THROW(printConstants(10), std::out_of_range);
}

TEST(Stocks, CameraRowsByValue)
{
  EXPECT_THAT(cameraRow("SaturationRed").values,
              ElementsAre(0.587, 0.367, 0.433, 0.422, 0.4405, 0.5, 0.4625, 0.633, 0.4955, 0.479, 0.5, 0.486, 0.5595,
                          0.4585, 0.431, 0.4495, 0.413, 0.431, 0.4785, 0.4035, 0.413, 0.5645, 0.538));
  EXPECT_THAT(cameraRow("HueCustomStrength").values,
              ElementsAre(0.0, 0.0, 1.0, 0.422, 0.2845, 0.6605, 0.5505, 0.633, 0.477, 0.4405, 0.789, 0.6515, 0.569,
                          0.4955, 0.5045, 0.3395, 0.4495, 0.688, 0.624, 0.367, 0.523, 0.569, 0.523));
  EXPECT_THAT(cameraRow("SoupToeRGB").values,
              ElementsAre(0.0875, 0.2131666666666667, 0.2005, -0.07, 0.031, -0.0635, -0.0795, 0.0035, 0.237, 0.163, 0.0,
                          0.0235, 0.05633333, 0.0795, 0.17, 0.254, 0.03, 0.339, 0.094, 0.041, 0.004, 0.0733333,
                          0.12716666));
  EXPECT_THAT(cameraRow("SoupDminRGB").values,
              ElementsAre(0.517, 0.517, 0.505, 0.431, 0.633, 0.722, 0.637, 0.339, -0.206, 0.429, 0.645, 0.643, 0.658,
                          0.516, 0.514, 0.504, 0.718, 0.284, 0.515, 0.39, 0.538, 0.57, 0.522));
  EXPECT_THAT(cameraRow("SoupDmaxBlue").values,
              ElementsAre(0.702, 0.781, 0.8885, 0.783, 0.742, 0.765, 0.8219, 0.4449, 0.7209, 0.814, 0.7795, 0.757,
                          0.7305, 0.6785, 0.8245, 0.768, 0.769, 0.873, 0.777, 0.893, 0.697, 0.717, 0.621));
  EXPECT_THAT(cameraRow("SoupFilmicPivot").values,
              ElementsAre(0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.23, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0,
                          0.0, 0.0, 0.0, 0.0, 0.0));
  EXPECT_EQ(cameraRow("VibranceYellow").values[16 - firstStock], 0.0);
  EXPECT_EQ(cameraRow("RefineSevenVibHue").values[18 - firstStock], 300.0);
}

TEST(Stocks, BleachRowsAreWrittenForTheFirstStockAlone)
{
  for (const std::string_view suffix : {"Pivot", "Red", "Green", "Blue", "RGB"})
  {
    const CameraRow& row = cameraRow(std::string{"LabBleach"}.append(suffix));
    EXPECT_EQ(row.values[0], suffix == "Pivot" ? 0.3 : 0.0);
    EXPECT_EQ(std::ranges::count_if(row.values, [](double value) { return std::isnan(value); }), 22);
  }
  EXPECT_EQ(std::ranges::count_if(cameraRows(), [](const CameraRow& row) { return std::isnan(row.values[1]); }), 5);
}

TEST(Stocks, PrintRowsByValue)
{
  EXPECT_THAT(printRow("PrintGammaRed").values, ElementsAre(0.3485, 0.359, 0.359, 0.363, 0.3485, 0.359, 0.359, 0.363));
  EXPECT_THAT(printRow("PrintCurveHighlight").values,
              ElementsAre(0.2973333333, 0.259666666, 0.287333333, 0.36233333333, 0.2973333333, 0.259666666, 0.287333333,
                          0.36233333333));
  EXPECT_THAT(printRow("PrintRefineFiveHueStrength").values,
              ElementsAre(0.376, 0.376, 0.4036, 0.4036, 0.376, 0.376, 0.4036, 0.4036));
  EXPECT_EQ(std::ranges::find(printCommon(), "PrintFilmicSlope", &Setting::name)->value, 0.0);
}
}  // namespace
}  // namespace morvellan::params
