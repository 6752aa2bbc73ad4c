// The reader of Looks: lines and values as a C program would take them, fallbacks and messages, and the rules of the
// page that a load repeats, field by field.
#include <clocale>

#include <fmt/format.h>
#include <gmock/gmock.h>

#include "params/hue_swatches.h"
#include "params/rules.h"
#include "tests/files/look_text.h"

namespace morvellan::test
{
namespace
{

using params::Rgb;
using params::TestPage;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::string abortedAt(int number)
{
  return "Morvellan : Unable to read '" + LookText::field(number).label +
         "'. Aborting reads beyond this point in the Looks file...";
}

std::string outOfRange(int number, const std::string& ending)
{
  return "Morvellan : Set '" + LookText::field(number).label + "' " + ending;
}

class LookReader : public testing::Test
{
protected:
  // Loads the defaults with one field's value changed.
  std::vector<std::string> loadWith(int number, const std::string& value)
  {
    return load(params_, LookText().put(number, value).text());
  }
  bool shown(const std::string& name) const { return params_.shown(name); }

  TestPage params_;
};

// Lines

TEST_F(LookReader, AShortTextLoadsWhatItHoldsInSilence)
{
  TestPage other;
  other.put("Exposure", 0.5);
  other.put("VibranceYellow", 0.75);
  other.put("VibranceStrength", 0.25);
  other.put("ColorCorrection", 4.0);
  const auto layout = params_.layout();
  EXPECT_THAT(load(params_, LookText(other).first(100)), IsEmpty());
  EXPECT_EQ(params_["Exposure"], 0.5);
  EXPECT_EQ(params_["VibranceYellow"], 0.75);
  EXPECT_NEAR(params_["VibranceCombo"], 3.25 / 6.0, 1e-12);
  EXPECT_EQ(params_["VibranceStrength"], 0.5);
  EXPECT_EQ(params_["ColorCorrection"], 4.0);
  EXPECT_EQ(params_.layout().at("VibranceRed"), layout.at("VibranceRed")) << "the panel comes with a later field";
}

TEST_F(LookReader, NoTextIsAShortOne)
{
  EXPECT_THAT(load(params_, ""), IsEmpty());
  EXPECT_THAT(params_.writes, IsEmpty());
}

TEST_F(LookReader, AnExtraFirstLineAbortsAtTheFirstField)
{
  EXPECT_THAT(load(params_, "Morvellan Look\n" + LookText().text()), ElementsAre(abortedAt(1)));
}

TEST_F(LookReader, AnAbortKeepsWhatWasReadAndSwitchesTheStocksOff)
{
  for (const char* name : {"PrintProfile", "Bleach", "PrintBlackRGB", "PrinterLightBlue", "OutputDisplayGamut",
                           "PrintCast", "PrintBleachRed", "PrintPeakBrightness"})
    params_.setVisible(name, true);
  params_.put("CameraStock", 5.0);
  params_.put("PrintDisplayBypass", 0.0);
  params_.put("PrintProfile", 3.0);
  params_.put("Bleach", 1.0);
  EXPECT_THAT(load(params_, LookText().put(2, "0.2500").putLine(3, "nonsense\n").text()), ElementsAre(abortedAt(3)));
  EXPECT_EQ(params_["Exposure"], 0.25);
  EXPECT_EQ(params_["CameraStock"], 0.0);
  EXPECT_EQ(params_["PrintDisplayBypass"], 1.0);
  EXPECT_EQ(params_["PrintProfile"], 0.0);
  EXPECT_EQ(params_["Bleach"], 1.0);
  for (const char* name :
       {"PrintProfile",     "PrintCast",         "PrintTintGtoM",    "PrintTintRtoC",   "PrintSaturation",
        "Bleach",           "PrintBleach",       "PrintBleachPivot", "PrintBleachRed",  "PrintBleachGreen",
        "PrintBleachBlue",  "PrintFilmicPivot",  "PrintFilmicSlope", "PrintBlackRGB",   "PrintBlackRed",
        "PrintBlackGreen",  "PrintBlackBlue",    "PrinterLightsRGB", "PrinterLightRed", "PrinterLightGreen",
        "PrinterLightBlue", "OutputDisplayGamut"})
    EXPECT_FALSE(shown(name)) << name;
  EXPECT_TRUE(shown("PrintPeakBrightness")) << "not among what an abort hides";
}

TEST_F(LookReader, ALabelMayStandAnywhereInItsLine)
{
  const std::string label = LookText::field(2).label;
  EXPECT_THAT(load(params_, LookText().putLine(2, "0." + label + "25\n").text()), IsEmpty());
  EXPECT_EQ(params_["Exposure"], 0.25);
}

TEST_F(LookReader, ALineOfMoreThan44CharactersSplits)
{
  EXPECT_THAT(loadWith(2, "-0.5000"), IsEmpty()) << "seven characters and the line's end just fit";
  EXPECT_EQ(params_["Exposure"], -0.5);
  EXPECT_THAT(loadWith(2, "-0.25000"), ElementsAre(abortedAt(3)));
  EXPECT_EQ(params_["Exposure"], -0.25) << "the last of the 44 is lost, and the rest is the next line";
  EXPECT_THAT(loadWith(2, std::string(10000, '1')), ElementsAre(outOfRange(2, "to a range between -1.0 and 1.0. Using "
                                                                              "Default UI value"),
                                                                abortedAt(3)));
}

TEST_F(LookReader, CarriageReturnsAreNothingSpecial)
{
  // Seven characters and a carriage return would be too long for a line.
  LookText look;
  look.put(2, "0.5000")
      .put(46, "7000")
      .put(307, "0")
      .put(308, "0")
      .put(309, "0")
      .put(349, "0")
      .put(350, "0")
      .put(351, "0");
  std::string text = look.text();
  for (std::size_t at = text.find('\n'); at != std::string::npos; at = text.find('\n', at + 2))
    text.insert(at, "\r");
  EXPECT_THAT(load(params_, text), IsEmpty());
  EXPECT_EQ(params_["Exposure"], 0.5);
  EXPECT_EQ(params_["CameraCast"], 7000.0);
}

TEST_F(LookReader, ALastLineWithoutItsEndLosesItsLastCharacter)
{
  params_.put("PrintDisplayBypass", 1.0);
  std::string text = LookText().put(372, "0.1234").text();
  text.pop_back();
  EXPECT_THAT(load(params_, text), IsEmpty());
  EXPECT_EQ(params_["PrinterLightBlue"], 0.123);
}

TEST_F(LookReader, AZeroByteEndsItsLine)
{
  const std::string label = LookText::field(2).label;
  EXPECT_THAT(load(params_, LookText().putLine(2, label + "0.55" + std::string(1, '\0') + "\n").text()), IsEmpty());
  EXPECT_EQ(params_["Exposure"], 0.5);
  EXPECT_THAT(load(params_, std::string(400, '\0')), ElementsAre(abortedAt(1)));
}

// Values

TEST_F(LookReader, TextThatIsNoNumberIsZero)
{
  params_.put("Exposure", 0.5);
  EXPECT_THAT(loadWith(2, "abc"), IsEmpty());
  EXPECT_EQ(params_["Exposure"], 0.0);
  EXPECT_THAT(loadWith(46, "abc"), ElementsAre(outOfRange(46, "to a range between 3000 - 14000")));
  EXPECT_EQ(params_["CameraCast"], 6504.0);
  EXPECT_THAT(loadWith(2, ""), IsEmpty());
  EXPECT_THAT(loadWith(2, "+-3"), IsEmpty());
  EXPECT_EQ(params_["Exposure"], 0.0);
}

TEST_F(LookReader, NumbersAreThoseOfTheCLocale)
{
  const char* const before = setlocale(LC_NUMERIC, nullptr);
  const std::string keep = before != nullptr ? before : "C";
  setlocale(LC_NUMERIC, "de_DE.UTF-8");
  EXPECT_THAT(loadWith(2, " \t0.5"), IsEmpty());
  EXPECT_EQ(params_["Exposure"], 0.5);
  EXPECT_EQ(LookText(params_).value(2), "0.5000");
  EXPECT_THAT(loadWith(2, "0,5"), IsEmpty());
  EXPECT_EQ(params_["Exposure"], 0.0);
  setlocale(LC_NUMERIC, keep.c_str());
  EXPECT_THAT(loadWith(2, "25E-2"), IsEmpty());
  EXPECT_EQ(params_["Exposure"], 0.25);
  EXPECT_THAT(loadWith(2, "+.5x"), IsEmpty());
  EXPECT_EQ(params_["Exposure"], 0.5);
  EXPECT_THAT(loadWith(337, "0X1P3"), IsEmpty());
  EXPECT_EQ(params_["SizeRed"], 8.0);
  EXPECT_THAT(loadWith(46, "0x1b58"), ElementsAre(HasSubstr("Soup Camera Cast"))) << "integers are decimal";
  EXPECT_THAT(loadWith(46, "7000.9"), IsEmpty());
  EXPECT_EQ(params_["CameraCast"], 7000.0);
}

TEST_F(LookReader, WhatIsNoFiniteNumberIsOutOfEveryRange)
{
  for (const char* value : {"nan", "NaN", "-nan", "inf", "-inf", "1e999", "-1e999"})
  {
    params_.put("Exposure", 0.5);
    EXPECT_THAT(loadWith(2, value),
                ElementsAre(outOfRange(2, "to a range between -1.0 and 1.0. Using Default UI value")))
        << value;
    EXPECT_EQ(params_["Exposure"], 0.0) << value;
  }
  EXPECT_THAT(loadWith(45, "9999999"), ElementsAre(outOfRange(45, "to a range between 0 and 24")));
  EXPECT_THAT(loadWith(45, "-1"), ElementsAre(outOfRange(45, "to a range between 0 and 24")));
}

// Every field: both ends are accepted, what lies beyond takes the fallback with the field's message.
TEST_F(LookReader, EveryFieldHoldsItsRange)
{
  constexpr int enhancersEnd = 32;  // which are set together
  const LookText defaults;
  for (int number = 1; number <= 372; ++number)
  {
    const files::LookField& field = LookText::field(number);
    const bool whole = field.format == files::LookFormat::whole;
    const auto text = [&](double value)
    { return whole ? std::to_string(static_cast<int>(value)) : fmt::format("{:.1f}", value); };
    const double step = whole ? 1.0 : 0.1;
    LookText look = defaults;
    const auto loadWithValue = [&](const std::string& value)
    { return load(params_, look.put(number, value).first(std::max(number, enhancersEnd))); };
    EXPECT_THAT(loadWithValue(text(field.least)), IsEmpty()) << field.label;
    EXPECT_THAT(loadWithValue(text(field.most)), IsEmpty()) << field.label;
    for (const double beyond : {field.least - step, field.most + step})
    {
      EXPECT_THAT(loadWithValue(text(beyond)), ElementsAre(outOfRange(number, std::string(field.range))));
      // The custom centres fall back to an angle beyond their own range.
      const double otherwise = std::min(field.otherwise, 360.0 + (field.otherwise == 480.0 ? 0.0 : 1e9));
      EXPECT_EQ(params_[field.parameter], otherwise) << field.label;
    }
  }
}

// Input

TEST_F(LookReader, AnInputsClassIsLaidOut)
{
  EXPECT_THAT(load(params_, LookText().put(1, "4").put(17, "1").put(18, "1").text()), IsEmpty());
  EXPECT_EQ(params_["HDRcomp"], 1.0);
  EXPECT_EQ(params_["ProcessLinear"], 0.0);
  EXPECT_TRUE(shown("HDRcomp"));
  EXPECT_FALSE(shown("ProcessLinear"));
  EXPECT_THAT(load(params_, LookText().put(1, "6").put(17, "1").put(18, "1").text()), IsEmpty());
  EXPECT_EQ(params_["HDRcomp"], 0.0);
  EXPECT_EQ(params_["ProcessLinear"], 1.0);
  EXPECT_FALSE(shown("HDRcomp"));
  EXPECT_TRUE(shown("ProcessLinear"));
  EXPECT_THAT(load(params_, LookText().put(1, "0").put(17, "0").put(18, "0").text()), IsEmpty());
  EXPECT_EQ(params_["ProcessLinear"], 0.0);
}

TEST_F(LookReader, SoftClipsAreLaidOutAtTheirLastField)
{
  loadWith(12, "1");
  EXPECT_TRUE(shown("CameraHighlightsCeiling"));
  EXPECT_FALSE(shown("CameraShadowsCeiling"));
  loadWith(12, "2");
  EXPECT_FALSE(shown("CameraHighlightsRecover"));
  EXPECT_TRUE(shown("CameraShadowsRecover"));
  loadWith(12, "0");
  EXPECT_FALSE(shown("CameraShadowsRecover"));
  load(params_, LookText().put(12, "1").first(15));
  EXPECT_FALSE(shown("CameraHighlightsCeiling"));
}

TEST_F(LookReader, MastersFollowTheLastOfTheirChannels)
{
  const std::vector<std::pair<int, const char*>> masters{{11, "HalationBlendRGB"}, {302, "LabBleachRGB"},
                                                         {318, "LabSilverRGB"},    {332, "SoupDmaxRGB"},
                                                         {362, "PrintBleach"},     {372, "PrinterLightsRGB"}};
  for (const auto& [last, master] : masters)
  {
    EXPECT_THAT(load(params_, LookText().put(last - 2, "0.1").put(last - 1, "0.2").put(last, "0.6").text()), IsEmpty());
    EXPECT_NEAR(params_[master], 0.3, 1e-12) << master;
  }
  const std::vector<std::pair<int, const char*>> wide{
      {306, "SoupToeRGB"},  {309, "SoupKneeRGB"},    {313, "SoupShoulderRGB"}, {329, "SoupDminRGB"},
      {339, "SizeRGB"},     {342, "GranularityRGB"}, {345, "SoftRGB"},         {348, "VarianceRGB"},
      {351, "StrengthRGB"}, {369, "PrintBlackRGB"}};
  for (const auto& [last, master] : wide)
  {
    EXPECT_THAT(load(params_, LookText().put(last - 2, "0.3").put(last - 1, "0.4").put(last, "0.5").text()), IsEmpty());
    EXPECT_NEAR(params_[master], 0.4, 1e-12) << master;
  }
  LookText pitches;
  for (int number = 34; number <= 39; ++number)
    pitches.put(number, std::to_string(number - 33));
  load(params_, pitches.text());
  EXPECT_EQ(params_["EnsemblePitch"], 3.5);
}

TEST_F(LookReader, OfTheFourCombosSaturationsAloneIsHalfTheMean)
{
  LookText look;
  for (const int first : {50, 65, 80, 95})
    for (int i = 0; i < 6; ++i)
      look.put(first + i, fmt::format("0.{}", i + 1));
  load(params_, look.text());
  EXPECT_NEAR(params_["SaturationCombo"], 0.175, 1e-12);
  for (const char* combo : {"HueCombo", "ChromaCombo", "VibranceCombo"})
    EXPECT_NEAR(params_[combo], 0.35, 1e-12) << combo;
}

TEST_F(LookReader, ACustomHueSetsItsSwatchAndAVectorsDoesNot)
{
  const std::vector<std::pair<int, const char*>> swatches{
      {57, "SatSwatch"}, {72, "HueSwatch"}, {87, "ChrSwatch"}, {102, "VibSwatch"}};
  for (const auto& [number, swatch] : swatches)
  {
    loadWith(number, "120.0");
    // 480 less 120 is a whole turn: red.
    EXPECT_EQ(params_.rgb(swatch), (Rgb{0.75, 0.1875, 0.1875})) << swatch;
  }
  const Rgb before = params_.rgb("RefineTwoSwatch");
  loadWith(111, "120.0");
  EXPECT_EQ(params_["RefineTwoSatHue"], 120.0);
  EXPECT_EQ(params_.rgb("RefineTwoSwatch"), before);
}

TEST_F(LookReader, ABadCustomHueShowsTheAngleThatItFellBackTo)
{
  loadWith(57, "361.0");
  EXPECT_EQ(params_["SaturationCustomHue"], 360.0) << "held by the parameter";
  EXPECT_EQ(params_.rgb("SatSwatch"), params::colourOf(480.0));
}

TEST_F(LookReader, ToneSwatchesStayAsTheyWere)
{
  params_.putRgb("SoupToeSwatch", {0.1, 0.2, 0.3});
  load(params_, LookText().put(304, "0.25").put(302, "0.25").text());
  EXPECT_EQ(params_.rgb("SoupToeSwatch"), (Rgb{0.1, 0.2, 0.3}));
}

// Sizes and enhancers

TEST_F(LookReader, ABadSizeIsThatOfTheClipsImage)
{
  LookText look;
  look.put(20, "9").put(21, "12289").put(25, "x").put(26, "-1");
  const std::vector<std::string> messages{
      outOfRange(20, "to a range between 10 - 12288. Using Clip Input resolution"),
      outOfRange(21, "to a range between 10 - 12288. Using Clip Input resolution"),
      outOfRange(25, "to a range between 10 - 12288. Using Clip Output resolution"),
      outOfRange(26, "to a range between 10 and 12288. Using Clip Output resolution")};
  EXPECT_EQ(load(params_, look.text()), messages);
  EXPECT_EQ(params_["SourceWidth"], 1920.0);
  EXPECT_EQ(params_["SourceHeight"], 1080.0);
  EXPECT_EQ(params_["TargetWidth"], 1920.0);
  EXPECT_EQ(params_["TargetHeight"], 1080.0);
  params_.setImage(params::Side::Source, {640, 480});
  params_.setImage(params::Side::Target, {320, 200});
  EXPECT_EQ(load(params_, look.text()), messages);
  EXPECT_EQ(params_["SourceWidth"], 640.0);
  EXPECT_EQ(params_["SourceHeight"], 480.0);
  EXPECT_EQ(params_["TargetWidth"], 320.0);
  EXPECT_EQ(params_["TargetHeight"], 200.0);
}

TEST_F(LookReader, SizesAreShownForTheCustomResolutionAlone)
{
  load(params_, LookText().put(19, "1").first(23));
  for (const char* name :
       {"SourceWidth", "SourceHeight", "SourceWidthOffset", "SourceHeightOffset", "SpatialEnhancement"})
    EXPECT_TRUE(shown(name)) << name;
  load(params_, LookText().put(19, "2").first(23));
  for (const char* name :
       {"SourceWidth", "SourceHeight", "SourceWidthOffset", "SourceHeightOffset", "SpatialEnhancement"})
    EXPECT_FALSE(shown(name)) << name;
  load(params_, LookText().put(24, "1").text());
  EXPECT_TRUE(shown("TargetHeightOffset"));
  EXPECT_FALSE(shown("SpatialEnhancement")) << "the enhancer fields have the last word";
}

class LookEnhancers : public LookReader
{
protected:
  LookText look(const char* choice) { return LookText().put(29, choice).put(30, "3.0").put(31, "4.0").put(32, "3.5"); }
  std::vector<double> values(const std::string& suffix) const
  {
    return {params_["Combined" + suffix], params_["Horizontal" + suffix], params_["Vertical" + suffix]};
  }
};

TEST_F(LookEnhancers, NoneLeavesTheAmountsInTheDetails)
{
  params_.setVisible("CombinedDetails", true);
  EXPECT_THAT(load(params_, look("0").put(19, "1").text()), IsEmpty());
  EXPECT_EQ(params_["SpatialEnhancement"], 0.0);
  EXPECT_EQ(params_["SpatialEnhancer"], 0.0);
  EXPECT_THAT(values("Enhancer"), ElementsAre(0.0, 0.0, 0.0));
  EXPECT_THAT(values("Details"), ElementsAre(3.5, 3.0, 4.0));
  EXPECT_TRUE(shown("SpatialEnhancer"));
  for (const char* name : {"SpatialEnhancement", "CombinedEnhancer", "CombinedDetails", "HorizontalDetails"})
    EXPECT_FALSE(shown(name)) << name;
}

TEST_F(LookEnhancers, WithoutAResizeItIsTheOtherEnhancer)
{
  EXPECT_THAT(load(params_, look("2").text()), IsEmpty());
  EXPECT_EQ(params_["SpatialEnhancement"], 0.0);
  EXPECT_EQ(params_["SpatialEnhancer"], 2.0);
  EXPECT_THAT(values("Enhancer"), ElementsAre(0.0, 0.0, 0.0));
  EXPECT_THAT(values("Details"), ElementsAre(3.5, 3.0, 4.0));
  EXPECT_TRUE(shown("HorizontalDetails"));
  EXPECT_FALSE(shown("SpatialEnhancement"));
}

TEST_F(LookEnhancers, WithAResizeItIsTheResizers)
{
  EXPECT_THAT(load(params_, look("1").put(24, "5").text()), IsEmpty());
  EXPECT_EQ(params_["SpatialEnhancement"], 1.0);
  EXPECT_EQ(params_["SpatialEnhancer"], 0.0);
  EXPECT_THAT(values("Enhancer"), ElementsAre(3.5, 3.0, 4.0));
  EXPECT_THAT(values("Details"), ElementsAre(0.0, 0.0, 0.0));
  for (const char* name : {"SpatialEnhancement", "CombinedEnhancer", "HorizontalEnhancer", "VerticalEnhancer"})
    EXPECT_TRUE(shown(name)) << name;
  for (const char* name : {"SpatialEnhancer", "CombinedDetails"})
    EXPECT_FALSE(shown(name)) << name;
}

TEST_F(LookEnhancers, ABadAmountIsTwoWhereThereIsAnEnhancer)
{
  EXPECT_EQ(load(params_, look("2").put(30, "11").put(31, "-1").put(32, "nan").text()).size(), 3u);
  EXPECT_THAT(values("Details"), ElementsAre(2.0, 2.0, 2.0));
  EXPECT_EQ(load(params_, look("0").put(30, "11").put(31, "-1").put(32, "nan").text()).size(), 3u);
  EXPECT_THAT(values("Details"), ElementsAre(0.0, 0.0, 0.0));
}

TEST_F(LookEnhancers, ThreeFieldsAreHeldBackUntilTheFourth)
{
  load(params_, look("2").first(31));
  EXPECT_EQ(params_["SpatialEnhancer"], 0.0);
  EXPECT_EQ(params_["HorizontalDetails"], TestPage()["HorizontalDetails"]);
}

// Soup

TEST_F(LookReader, ABypassedSoupHasNoStock)
{
  params_.put("CameraStock", 9.0);
  load(params_, LookText().put(40, "1").first(40));
  EXPECT_EQ(params_["CameraStock"], 0.0);
  EXPECT_THAT(load(params_, LookText().put(40, "1").put(45, "5").put(319, "1").text()), IsEmpty());
  EXPECT_EQ(params_["SoupBypass"], 1.0);
  EXPECT_EQ(params_["CameraStock"], 0.0);
  EXPECT_EQ(params_["LableachBypass"], 0.0);
}

TEST_F(LookReader, AStockIsItsIndexAlone)
{
  TestPage plain;
  load(plain, LookText().put(40, "0").text());
  EXPECT_THAT(load(params_, LookText().put(40, "0").put(45, "5").put(319, "1").text()), IsEmpty());
  EXPECT_EQ(params_["CameraStock"], 5.0);
  EXPECT_EQ(params_["LableachBypass"], 1.0);
  for (const char* name : {"SoupToeRed", "LabBleachRGB", "LabBleachPivot", "SoupDminRed", "PrintBlackRed"})
    EXPECT_EQ(params_[name], plain[name]) << name;
  load(params_, LookText().put(40, "0").put(45, "0").put(319, "1").text());
  EXPECT_EQ(params_["LableachBypass"], 0.0) << "without a stock";
}

TEST_F(LookReader, ABleachOfNothingGoesHomeWhereTheSoupIsBypassed)
{
  LookText look;
  look.put(299, "0.7").put(300, "0").put(301, "0").put(302, "0");
  params_.put("LableachBypass", 0.0);
  load(params_, look.put(40, "1").text());
  EXPECT_EQ(params_["LabBleachPivot"], 0.3);
  load(params_, look.put(40, "0").text());
  EXPECT_EQ(params_["LabBleachPivot"], 0.7);
  // The bypass of before the load counts, though the same load ends it.
  params_.put("LableachBypass", 1.0);
  load(params_, look.put(40, "1").text());
  EXPECT_EQ(params_["LabBleachPivot"], 0.7);
  EXPECT_EQ(params_["LableachBypass"], 0.0);
  load(params_, look.put(40, "1").put(302, "0.0003").text());
  EXPECT_EQ(params_["LabBleachPivot"], 0.7) << "not exactly nothing";
}

TEST_F(LookReader, ThePanelsOfTheSoupAreLaidOut)
{
  LookText look;
  look.put(49, "3").put(75, "2").put(90, "2").put(110, "4").put(174, "1").put(298, "2").put(335, "3");
  EXPECT_THAT(load(params_, look.text()), IsEmpty());
  EXPECT_TRUE(shown("ChromaRed"));
  EXPECT_TRUE(shown("ChrZoneHigh"));
  EXPECT_FALSE(shown("ChrZoneLow"));
  EXPECT_FALSE(shown("HueRed"));
  EXPECT_TRUE(shown("RefineFiveSatHue"));
  EXPECT_TRUE(shown("RefineFiveZoneLow"));
  EXPECT_FALSE(shown("RefineFiveZoneHigh"));
  EXPECT_FALSE(shown("RefineFourSatHue"));
  EXPECT_TRUE(shown("SoupToePivot"));
  EXPECT_FALSE(shown("SoupFilmicPivot"));
  EXPECT_TRUE(shown("UniformPattern"));
  load(params_, LookText().put(49, "0").put(110, "0").put(298, "0").put(335, "2").text());
  for (const char* name : {"ChromaRed", "RefineFiveSatHue", "RefineFiveZoneLow", "SoupToePivot", "UniformPattern"})
    EXPECT_FALSE(shown(name)) << name;
}

TEST_F(LookReader, PanelsThatComeAfterTheEndAreNotLaidOut)
{
  load(params_, LookText().put(174, "1").first(174));
  EXPECT_TRUE(shown("RefineFiveZoneLow")) << "a zone at once";
  load(params_, LookText().put(110, "4").first(296));
  EXPECT_FALSE(shown("RefineFiveSatHue")) << "the block with the last of all blocks";
}

// Print

TEST_F(LookReader, PrintIsOnWithAPrintStock)
{
  LookText look;
  look.put(1, "0").put(40, "0").put(45, "5").put(352, "0").put(353, "3").put(365, "6").put(366, "0.5");
  EXPECT_THAT(load(params_, look.put(358, "1").text()), IsEmpty());
  EXPECT_EQ(params_["PrintProfile"], 3.0);
  EXPECT_EQ(params_["Bleach"], 1.0);
  for (const char* name :
       {"PrintProfile", "PrintCast", "PrintSaturation", "PrintFilmicSlope", "Bleach", "PrintBleach", "PrintBleachBlue",
        "OutputDisplayGamut", "PrintBlackRGB", "PrinterLightBlue", "PrintPeakBrightness"})
    EXPECT_TRUE(shown(name)) << name;
  load(params_, look.put(319, "1").put(365, "0").text());
  EXPECT_EQ(params_["Bleach"], 0.0) << "the laboratory's bleach is on";
  for (const char* name : {"Bleach", "PrintBleach", "PrintPeakBrightness"})
    EXPECT_FALSE(shown(name)) << name;
  load(params_, look.put(319, "0").put(353, "0").text());
  EXPECT_EQ(params_["Bleach"], 1.0);
  EXPECT_TRUE(shown("PrintProfile"));
  EXPECT_FALSE(shown("PrintCast"));
  EXPECT_TRUE(shown("PrintBlackRGB"));
}

TEST_F(LookReader, PrintOffHidesItAndHasNoBleach)
{
  LookText look;
  look.put(1, "0").put(352, "0").put(353, "3").put(358, "1");
  load(params_, look.text());
  params_.setVisible("LableachBypass", false);
  EXPECT_THAT(load(params_, look.put(352, "1").text()), IsEmpty());
  EXPECT_EQ(params_["Bleach"], 0.0);
  EXPECT_TRUE(shown("LableachBypass"));
  for (const char* name : {"PrintProfile", "PrintCast", "Bleach", "PrintBlackRGB", "OutputDisplayGamut"})
    EXPECT_FALSE(shown(name)) << name;
  EXPECT_THAT(load(params_, look.put(352, "2").text()),
              ElementsAre(outOfRange(352, "to 0(Off) or 1(On). Using Default UI value")));
  EXPECT_EQ(params_["PrintDisplayBypass"], 1.0);
}

TEST_F(LookReader, EightInputsBarPrintAndFourDoNot)
{
  for (const int gamut : {1, 8, 27, 29, 31, 32, 33, 34})
  {
    load(params_, LookText().put(1, std::to_string(gamut)).put(352, "0").put(353, "3").put(358, "1").text());
    EXPECT_EQ(params_["PrintDisplayBypass"], 1.0) << gamut;
    EXPECT_EQ(params_["Bleach"], 0.0) << gamut;
    EXPECT_FALSE(shown("PrintProfile")) << gamut;
  }
  for (const int gamut : {42, 43, 44, 46})
  {
    load(params_, LookText().put(1, std::to_string(gamut)).put(352, "0").put(353, "3").put(358, "1").text());
    EXPECT_EQ(params_["PrintDisplayBypass"], 0.0) << gamut;
    EXPECT_EQ(params_["Bleach"], 1.0) << gamut;
    EXPECT_TRUE(shown("PrintProfile")) << gamut;
  }
}

TEST_F(LookReader, APrintStockFillsTheStoreAndNoControl)
{
  TestPage chosen;
  chosen.put("SoupBypass", 0.0);
  chosen.put("PrintDisplayBypass", 0.0);
  for (int stock = 9; stock >= 1; --stock)
  {
    chosen.edit("PrintProfile", stock);
    const double contrast = params_["PrintFilmicPivot"];
    load(params_, LookText().put(353, std::to_string(stock)).first(353));
    EXPECT_EQ(params_["PrintProfile"], stock);
    for (const params::Param& param : params::catalogue())
    {
      if (param.hidden == params::Hidden::SecretOnly && param.kind != params::Kind::Boolean)
      {
        EXPECT_EQ(params_[param.name], chosen[param.name]) << param.name << " of stock " << stock;
      }
    }
    EXPECT_EQ(params_["PrintFilmicPivot"], contrast);
  }
}

TEST_F(LookReader, NoPrintStockSwitchesItsBleachOffAndKeepsTheStore)
{
  load(params_, LookText().put(353, "4").first(353));
  const TestPage before = params_;
  params_.put("Bleach", 1.0);
  load(params_, LookText().put(353, "0").first(353));
  EXPECT_EQ(params_["PrintProfile"], 0.0);
  EXPECT_EQ(params_["Bleach"], 0.0);
  EXPECT_EQ(params_["PrintCurveShadowRed"], before["PrintCurveShadowRed"]);
}

TEST_F(LookReader, AnIndexWithoutAnEntryIsAcceptedAndNotWritten)
{
  params_.put("PrintProfile", 4.0);
  params_.put("OutputDisplayGamut", 2.0);
  params_.put("ColorRefine", 3.0);
  const TestPage before = params_;
  for (const char* index : {"10", "20"})
    EXPECT_THAT(load(params_, LookText().put(353, index).put(365, "15").put(110, "12").text()), IsEmpty());
  EXPECT_EQ(params_["PrintProfile"], 4.0);
  EXPECT_EQ(params_["OutputDisplayGamut"], 2.0);
  EXPECT_EQ(params_["ColorRefine"], 3.0);
  EXPECT_EQ(params_["PrintCurveShadowRed"], before["PrintCurveShadowRed"]);
  EXPECT_THAT(loadWith(353, "21"), ElementsAre(outOfRange(353, "to a range between 0 and 9")));
  EXPECT_EQ(params_["PrintProfile"], 0.0);
}

TEST_F(LookReader, ThePeakBrightnessFallsBackByDisplayAndHasAFloor)
{
  for (int display = 0; display <= 14; ++display)
  {
    const bool hdr = display == 6 || display == 7 || display == 8 || display == 10 || display == 12 || display == 14;
    EXPECT_THAT(load(params_, LookText().put(365, std::to_string(display)).put(366, "1.5").text()),
                ElementsAre(outOfRange(366, "to a range between 0.0 - 1.0. Using Default UI value")));
    EXPECT_EQ(params_["PrintPeakBrightness"], hdr ? 0.203 : 0.1) << display;
  }
  loadWith(366, "0.0000");
  EXPECT_EQ(params_["PrintPeakBrightness"], 0.001);
}

// What was laid out is what an instance that is made with the values shows.
TEST_F(LookReader, AReopenedProjectLooksAsTheLoadLeftIt)
{
  LookText look;
  look.put(1, "0").put(12, "2").put(24, "7").put(29, "1").put(40, "0").put(49, "1").put(60, "1").put(110, "2");
  look.put(298, "4").put(335, "4").put(352, "0").put(353, "5").put(358, "1").put(365, "7");
  EXPECT_THAT(load(params_, look.text()), IsEmpty());
  TestPage reopened;
  load(reopened, look.text());
  reopened.reopen();
  EXPECT_EQ(params_.layout(), reopened.layout());
}

}  // namespace
}  // namespace morvellan::test
