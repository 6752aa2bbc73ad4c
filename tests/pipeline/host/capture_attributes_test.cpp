// Values and switches of the attributes and refinements, of the negative and of the print.
#include "tests/pipeline/host/capture_fixture.h"

#include <cmath>

namespace morvellan::test
{
namespace
{

class CaptureAttributes : public CaptureTest
{
protected:
  CaptureAttributes()
  {
    wake();
    values.set("ColorCorrection", 1);
    values.set("ColorRefine", 1);
  }
};

TEST_F(CaptureAttributes, NeutralGroupsAreOffAndKeepTheirFields)
{
  params.soupAttributes.hue.vectorStrength = 3.0f;
  capture();
  for (const AttributeParams* attribute : {&params.soupAttributes.saturation, &params.soupAttributes.hue,
                                           &params.soupAttributes.chroma, &params.soupAttributes.vibrance})
  {
    EXPECT_FALSE(attribute->vectorLive);
    EXPECT_FALSE(attribute->custom.live);
    EXPECT_EQ(attribute->zone.mode, 0);
  }
  EXPECT_EQ(params.soupAttributes.hue.vectorStrength, 3.0f);
  EXPECT_FALSE(params.refineActive);
}

TEST_F(CaptureAttributes, Vectors)
{
  values.set("SaturationMagenta", 0.75);
  values.set("SaturationStrength", 0.3);
  values.set("HueCyan", 0.0);
  values.set("HueStrength", 0.0);
  values.set("ChromaYellow", 1.0);
  values.set("ChromaStrength", 0.9);
  values.set("VibranceGreen", 0.6);
  values.set("VibranceStrength", 0.25);
  capture();
  const AttributesParams& group = params.soupAttributes;
  EXPECT_TRUE(group.saturation.vectorLive);
  EXPECT_EQ(group.saturation.axis[0], 1.0f);
  EXPECT_EQ(group.saturation.axis[1], 1.5f);
  EXPECT_EQ(group.saturation.vectorStrength, 0.6f);
  EXPECT_EQ(group.hue.axis[3], -1.0f);
  EXPECT_EQ(group.hue.axis[2], 0.0f);
  EXPECT_EQ(group.hue.vectorStrength, 0.001f);
  EXPECT_EQ(group.chroma.axis[5], 1.0f);
  EXPECT_EQ(group.chroma.vectorStrength, 0.9f);
  EXPECT_EQ(group.vibrance.axis[4], static_cast<float>(0.6 * 2.0 - 1.0));
  EXPECT_EQ(group.vibrance.vectorStrength, -0.5f);
}

TEST_F(CaptureAttributes, CustomBands)
{
  for (const char* word : {"Saturation", "Hue", "Chroma", "Vibrance"})
  {
    const std::string stem = std::string(word) + "Custom";
    values.set(stem + "Hue", 90.0);
    values.set(stem + "Width", 36.0);
    values.set(stem + "Strength", 0.75);
  }
  capture();
  const AttributesParams& group = params.soupAttributes;
  for (const BandParams* band :
       {&group.saturation.custom, &group.hue.custom, &group.chroma.custom, &group.vibrance.custom})
  {
    EXPECT_TRUE(band->live);
    EXPECT_EQ(band->hue, 1.5f);
  }
  EXPECT_EQ(group.saturation.custom.width, 0.2f);
  EXPECT_EQ(group.hue.custom.width, 0.2f);
  EXPECT_EQ(group.chroma.custom.width, 0.2f);
  EXPECT_EQ(group.vibrance.custom.width, 1.0f);
  EXPECT_EQ(group.saturation.custom.strength, 1.5f);
  EXPECT_EQ(group.hue.custom.strength, 0.1f);
  EXPECT_EQ(group.chroma.custom.strength, 16.0f);
  EXPECT_EQ(group.vibrance.custom.strength, 0.5f);
}

TEST_F(CaptureAttributes, WidthFloors)
{
  for (const char* word : {"Saturation", "Hue", "Chroma", "Vibrance"})
  {
    values.set(std::string(word) + "CustomWidth", 0.0);
    values.set(std::string(word) + "CustomStrength", 1.0);
  }
  capture();
  EXPECT_EQ(params.soupAttributes.saturation.custom.width, 0.001f);
  EXPECT_EQ(params.soupAttributes.hue.custom.width, 0.0f);
  EXPECT_EQ(params.soupAttributes.hue.custom.strength, 0.0f);
  EXPECT_EQ(params.soupAttributes.chroma.custom.width, 0.001f);
  values.set("VibranceCustomWidth", 270.0);
  capture();
  EXPECT_EQ(params.soupAttributes.vibrance.custom.width, 1.5f);
}

TEST_F(CaptureAttributes, Zones)
{
  const ZoneParams& zone = params.soupAttributes.chroma.zone;
  values.set("ChrZoneLow", 0.25);
  values.set("ChrZoneLowRange", 0.75);
  values.set("ChrZone", 2);
  capture();
  EXPECT_EQ(zone.mode, 0);  // nothing of chroma is live
  values.set("ChromaRed", 0.6);
  capture();
  EXPECT_EQ(zone.mode, 1);
  EXPECT_FALSE(zone.both);
  EXPECT_EQ(zone.low, 0.5f);
  EXPECT_EQ(zone.lowRange, 0.25f);
  values.set("ChrZoneHigh", 1.0);
  values.set("ChrZoneHighRange", 0.25);
  capture();
  EXPECT_EQ(zone.mode, 1);
  EXPECT_TRUE(zone.both);
  EXPECT_EQ(zone.high, 2.0f);
  EXPECT_EQ(zone.highRange, 4.0f);
  values.set("ChrZoneLow", 0.5);
  capture();
  EXPECT_EQ(zone.mode, 2);
  EXPECT_FALSE(zone.both);
  values.set("ChrZone", 0);
  capture();
  EXPECT_EQ(zone.mode, 0);
}

TEST_F(CaptureAttributes, ColorCorrectionOffClearsTheSwitches)
{
  values.set("SaturationRed", 0.7);
  values.set("HueCustomStrength", 0.7);
  capture();
  ASSERT_TRUE(params.soupAttributes.saturation.vectorLive);
  ASSERT_TRUE(params.soupAttributes.hue.custom.live);
  values.set("ColorCorrection", 0);
  values.forgetReads();
  capture();
  EXPECT_FALSE(params.soupAttributes.saturation.vectorLive);
  EXPECT_FALSE(params.soupAttributes.hue.custom.live);
  EXPECT_FALSE(values.wasRead("SaturationRed"));
}

TEST_F(CaptureAttributes, Refinement)
{
  for (const char* axis : {"Sat", "Hue", "Chr", "Vib"})
  {
    const std::string stem = std::string("RefineFour") + axis;
    values.set(stem + "Hue", 300.0);
    values.set(stem + "Width", 0.0);
    values.set(stem + "Strength", 0.75);
  }
  values.set("RefineFourZone", 1);
  values.set("RefineFourZoneHigh", 0.75);
  capture();
  EXPECT_TRUE(params.refineActive);
  EXPECT_FALSE(params.soupRefinements[1].live);
  const RefinementParams& four = params.soupRefinements[2];
  EXPECT_TRUE(four.live);
  EXPECT_EQ(four.saturation.hue, 5.0f);
  EXPECT_EQ(four.saturation.width, 0.001f);
  EXPECT_EQ(four.saturation.strength, 1.5f);
  EXPECT_EQ(four.hue.width, 0.0f);
  EXPECT_EQ(four.hue.strength, 1.0f);
  EXPECT_EQ(four.chroma.width, 0.001f);
  EXPECT_EQ(four.chroma.strength, 16.0f);
  EXPECT_EQ(four.vibrance.width, 0.001f);
  EXPECT_EQ(four.vibrance.strength, 0.5f);
  EXPECT_EQ(four.zone.mode, 2);
  EXPECT_EQ(four.zone.high, 1.5f);
  EXPECT_EQ(four.zone.highRange, 1.0f);
}

TEST_F(CaptureAttributes, TheTwelfthRefinementHasNoSaturationFloor)
{
  for (const char* word : {"Eleven", "Twelve"})
  {
    values.set(std::string("Refine") + word + "SatWidth", 0.0);
    values.set(std::string("Refine") + word + "SatStrength", 1.0);
  }
  capture();
  EXPECT_EQ(params.soupRefinements[9].saturation.width, 0.001f);
  EXPECT_EQ(params.soupRefinements[10].saturation.width, 0.0f);
}

TEST_F(CaptureAttributes, ColorRefineGatesTheRefinements)
{
  values.set("RefineTwoVibStrength", 0.0);
  capture();
  ASSERT_TRUE(params.refineActive);
  EXPECT_FALSE(params.soupRefinements[0].saturation.live);
  values.set("ColorRefine", 0);
  capture();
  EXPECT_FALSE(params.refineActive);
  EXPECT_FALSE(params.soupRefinements[0].live);
}

TEST_F(CaptureAttributes, PrintHueAloneDoesNotOpenThePrintAttributes)
{
  values.set("PrintHue", 1);
  values.set("PrintHueRed", 0.8);
  capture();
  EXPECT_FALSE(params.printAttributes.hue.vectorLive);
  for (const char* opener : {"PrintSat", "PrintChr", "PrintVib"})
  {
    values.set(opener, 1);
    capture();
    EXPECT_TRUE(params.printAttributes.hue.vectorLive) << opener;
    values.set(opener, 0);
    capture();
    EXPECT_FALSE(params.printAttributes.hue.vectorLive) << opener;
  }
}

TEST_F(CaptureAttributes, PrintAttributesDifferInTheCustomHue)
{
  values.set("PrintSat", 1);
  values.set("PrintVib", 0);
  values.set("PrintHueCustomWidth", 90.0);
  values.set("PrintHueCustomStrength", 1.0);
  values.set("PrintVibranceRed", 1.0);
  values.set("PrintVibZone", 1);
  values.set("PrintVibZoneLow", 0.25);
  values.set("PrintVibZoneLowRange", 0.25);
  capture();
  EXPECT_EQ(params.printAttributes.hue.custom.strength, 0.75f);
  EXPECT_TRUE(params.printAttributes.vibrance.vectorLive);
  EXPECT_EQ(params.printAttributes.vibrance.zone.mode, 1);
  EXPECT_EQ(params.printAttributes.vibrance.zone.lowRange, 4.0f);
}

TEST_F(CaptureAttributes, PrintRefinementConstants)
{
  values.set("PrintRefineThreeHueStrength", 1.0);
  values.set("PrintRefineThreeChrStrength", 1.0);
  values.set("PrintRefineThreeSatStrength", 1.0);
  values.set("PrintRefineThreeVibStrength", 1.0);
  values.set("PrintRefineThreeZone", 1);
  values.set("PrintRefineThreeZoneLow", 0.0);
  values.set("PrintRefineThreeZoneLowRange", 0.5);
  capture();
  EXPECT_TRUE(params.printRefineActive);
  const RefinementParams& three = params.printRefinements[1];
  EXPECT_EQ(three.saturation.strength, 2.0f);
  EXPECT_EQ(three.hue.strength, 2.5f);
  EXPECT_FLOAT_EQ(three.chroma.strength, static_cast<float>(std::exp2((0.4 - 2.0) * 0.4)));
  EXPECT_EQ(three.vibrance.strength, 1.0f);
  EXPECT_EQ(three.zone.mode, 1);
  EXPECT_EQ(three.zone.low, 0.0f);
  EXPECT_FLOAT_EQ(three.zone.lowRange, static_cast<float>(1.0 / std::exp2(3.6)));
}

TEST_F(CaptureAttributes, AnyPrintRefineSwitchOpensTheBlock)
{
  for (const char* word : {"Two", "Three", "Four", "Five", "Six", "Seven"})
    values.set(std::string("PrintRefine") + word, 0);
  values.set("PrintRefineTwoSatStrength", 0.0);
  capture();
  EXPECT_FALSE(params.printRefineActive);
  EXPECT_FALSE(params.printRefinements[0].live);
  values.set("PrintRefineSeven", 1);
  capture();
  EXPECT_TRUE(params.printRefineActive);
  EXPECT_TRUE(params.printRefinements[0].live);
  values.set("PrintRefineSeven", 0);
  capture();
  EXPECT_FALSE(params.printRefineActive);
  EXPECT_FALSE(params.printRefinements[0].live);
}

}  // namespace
}  // namespace morvellan::test
