// The field table: its shape, and rows picked from everywhere, by value.
#include "files/look_table.h"

#include <set>

#include <gtest/gtest.h>

#include "params/catalogue.h"

namespace
{

using namespace morvellan::files;
namespace params = morvellan::params;

const LookField& field(std::size_t number)
{
  return lookFields()[number - 1];
}

TEST(LookTable, EveryFieldHasALabelOf36ColumnsAndAParameterOfItsOwn)
{
  ASSERT_EQ(lookFields().size(), lookFieldCount);
  std::set<std::string> labels;
  std::set<std::string> parameters;
  for (const LookField& each : lookFields())
  {
    EXPECT_EQ(each.label.size(), 36u) << each.label;
    EXPECT_EQ(each.label.find_last_of('|'), 35u) << each.label;
    EXPECT_TRUE(labels.insert(each.label).second) << each.label;
    EXPECT_TRUE(parameters.insert(each.parameter).second) << each.parameter;
    EXPECT_LE(each.least, each.most) << each.label;
    EXPECT_TRUE(each.range.starts_with("to ")) << each.label;
  }
}

TEST(LookTable, AFormatFitsItsParametersKind)
{
  for (const LookField& each : lookFields())
  {
    const params::Param& param = params::at(each.parameter);
    EXPECT_EQ(each.format != LookFormat::whole, param.kind == params::Kind::Double) << each.parameter;
    EXPECT_NE(param.hidden, params::Hidden::SecretOnly) << each.parameter;
    const bool degrees = each.parameter.ends_with("Hue") || each.parameter.ends_with("Width");
    EXPECT_EQ(each.format == LookFormat::oneDecimal, degrees && param.kind == params::Kind::Double) << each.parameter;
  }
}

TEST(LookTable, RowsFromEverywhere)
{
  EXPECT_EQ(field(1).label, "In | Out Color Space(0 - 50)-------|");
  EXPECT_EQ(field(1).range, "to a range between 0 and 48");
  EXPECT_EQ(field(4).parameter, "HalationBreadth");
  EXPECT_EQ(field(4).otherwise, 0.25);
  EXPECT_EQ(field(7).label, "Halation Magenta -> Green(0 - 1.0)-|");
  EXPECT_EQ(field(29).label, "Texture|Detail enhancers(0,1,2)----|");
  EXPECT_EQ(field(45).parameter, "CameraStock");
  EXPECT_EQ(field(45).most, 24.0);
  EXPECT_EQ(field(57).otherwise, 480.0);
  EXPECT_EQ(field(59).otherwise, 0.2);
  EXPECT_EQ(field(74).otherwise, 0.5);
  EXPECT_EQ(field(110).label, "Soup Refine(0 - 12)----------------|");
  EXPECT_EQ(field(110).most, 12.0);
  EXPECT_EQ(field(298).parameter, "ToneCurves");
  EXPECT_EQ(field(310).range, "to a range between 0.1 and 1.0. Using Default UI value");
  EXPECT_EQ(field(310).least, 0.0);
  EXPECT_EQ(field(337).otherwise, 2.0);
  EXPECT_EQ(field(349).otherwise, 0.0);
  EXPECT_EQ(field(352).otherwise, 1.0);
  EXPECT_EQ(field(353).most, 20.0);
  EXPECT_EQ(field(353).range, "to a range between 0 and 9");
  EXPECT_EQ(field(365).most, 15.0);
  EXPECT_EQ(field(372).label, "Print White-B(0.0 - 1.0)-----------|");
  EXPECT_EQ(field(372).parameter, "PrinterLightBlue");
}

TEST(LookTable, RangesThatTheirLabelsDoNotTell)
{
  EXPECT_EQ(field(19).most, 33.0);
  EXPECT_EQ(field(24).most, 33.0);
  EXPECT_EQ(field(330).least, 0.0);
  EXPECT_EQ(params::at("SoupDmaxRed").range->min, -1.0);
  EXPECT_EQ(field(322).least, 1.0);
  EXPECT_EQ(field(322).most, 5.0);
  EXPECT_EQ(field(354).least, 3000.0);
  EXPECT_EQ(field(354).most, 14000.0);
}

TEST(LookTable, VectorsAreSeventeenFieldsEach)
{
  EXPECT_EQ(field(111).label, "Soup Refine-2-Sat-H(0 - 360.0)-----|");
  EXPECT_EQ(field(111).parameter, "RefineTwoSatHue");
  EXPECT_EQ(field(111).otherwise, 180.0);
  EXPECT_EQ(field(113).otherwise, 0.2);
  EXPECT_EQ(field(116).otherwise, 0.5);
  EXPECT_EQ(field(127).parameter, "RefineTwoZoneHighRange");
  EXPECT_EQ(field(128).label, "Soup Refine-3-Sat-H(0 - 360.0)-----|");
  EXPECT_EQ(field(246).parameter, "RefineNineZoneHighRange");
  EXPECT_EQ(field(247).label, "Soup Refine-10-Sat-H(0 - 360.0)----|");
  EXPECT_EQ(field(276).parameter, "RefineElevenZone");
  EXPECT_EQ(field(297).label, "Soup Refine-12-Zone-HR(0 - 1.0)----|");
  EXPECT_EQ(field(297).parameter, "RefineTwelveZoneHighRange");
}

}  // namespace
