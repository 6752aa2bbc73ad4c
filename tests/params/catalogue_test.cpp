// Holds the catalogue to its contract: counts, order on the page, the conventions that hold for every entry, and the
// entries and texts that depart from them.
#include "params/catalogue.h"

#include "params/families.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <set>

namespace morvellan::params
{
namespace
{
using testing::Each;
using testing::ElementsAre;

std::size_t countOf(Kind kind)
{
  return static_cast<std::size_t>(std::ranges::count(catalogue(), kind, &Param::kind));
}

std::size_t countOf(Hidden hidden)
{
  return static_cast<std::size_t>(std::ranges::count(catalogue(), hidden, &Param::hidden));
}

std::vector<std::string> membersOf(std::string_view group)
{
  std::vector<std::string> names;
  for (const Param& param : catalogue())
    if (param.parent == group)
      names.push_back(param.name);
  return names;
}

std::size_t placeOf(std::string_view name)
{
  return static_cast<std::size_t>(&at(name) - catalogue().data());
}

bool holdsDegrees(const Param& param)
{
  return param.range && param.range->max == 360.0;
}

TEST(Catalogue, Counts)
{
  EXPECT_EQ(catalogue().size(), 645u);
  EXPECT_EQ(countOf(Kind::Double), 522u);
  EXPECT_EQ(countOf(Kind::Integer), 27u);
  EXPECT_EQ(countOf(Kind::Boolean), 11u);
  EXPECT_EQ(countOf(Kind::Choice), 30u);
  EXPECT_EQ(countOf(Kind::Rgb), 19u);
  EXPECT_EQ(countOf(Kind::PushButton), 14u);
  EXPECT_EQ(countOf(Kind::Group), 22u);
  EXPECT_EQ(countOf(Hidden::SecretOnly), 190u);
  EXPECT_EQ(countOf(Hidden::SecretAndDisabled), 339u);
}

TEST(Catalogue, NamesAreUniqueAndParentsAreGroupsAbove)
{
  std::set<std::string> names;
  for (const Param& param : catalogue())
  {
    if (!param.parent.empty())
    {
      EXPECT_TRUE(names.contains(param.parent)) << param.name;
      EXPECT_EQ(at(param.parent).kind, Kind::Group) << param.name;
    }
    EXPECT_TRUE(names.insert(param.name).second) << param.name;
    EXPECT_EQ(find(param.name), &param);
  }
  EXPECT_EQ(find("PrintSatSwatch"), nullptr);
  EXPECT_EQ(find(""), nullptr);
  EXPECT_THROW(at("Contrast"), std::out_of_range);
}

TEST(Catalogue, DefaultsAreInRange)
{
  for (const Param& param : catalogue())
  {
    const bool number = param.kind == Kind::Double || param.kind == Kind::Integer;
    EXPECT_EQ(param.range.has_value(), number) << param.name;
    EXPECT_EQ(param.displayRange.has_value(), number || param.kind == Kind::Rgb) << param.name;
    if (number)
    {
      EXPECT_LT(param.range->min, param.range->max) << param.name;
      EXPECT_GE(param.defaults[0], param.range->min) << param.name;
      EXPECT_LE(param.defaults[0], param.range->max) << param.name;
      EXPECT_EQ(param.range->min, param.displayRange->min) << param.name;
      EXPECT_EQ(param.range->max, param.displayRange->max) << param.name;
    }
    if (param.kind == Kind::Choice && param.name != gpuChoice)
    {
      EXPECT_FALSE(param.options.empty()) << param.name;
      EXPECT_LT(param.defaults[0], static_cast<double>(param.options.size())) << param.name;
    }
    else
    {
      EXPECT_TRUE(param.options.empty()) << param.name;
    }
  }
}

TEST(Catalogue, TextsAreThereForAllButTheMark)
{
  for (const Param& param : catalogue())
  {
    const bool mark = param.name == "SrcClipChanged";
    EXPECT_EQ(param.label.empty(), mark) << param.name;
    EXPECT_EQ(param.hint.empty(), mark) << param.name;
  }
}

TEST(Catalogue, DigitsAndIncrements)
{
  for (const Param& param : catalogue())
  {
    const bool shown = param.kind == Kind::Double && param.hidden != Hidden::SecretOnly;
    EXPECT_EQ(param.digits, shown ? std::optional{5} : std::nullopt) << param.name;
    if (holdsDegrees(param))
    {
      EXPECT_EQ(param.increment, 0.1) << param.name;
    }
    else
    {
      EXPECT_EQ(param.increment, shown ? std::optional{0.001} : std::nullopt) << param.name;
    }
  }
  // Centre and breadth of four attributes, and of four attributes in eleven and in six vectors; the store's attributes.
  EXPECT_EQ(std::ranges::count_if(catalogue(), holdsDegrees), 8 + 11 * 8 + 8 + 6 * 8);
}

TEST(Catalogue, WhatAnimates)
{
  const std::map<std::string, Animates> exceptions{{"ColorCorrection", Animates::HostDefault},
                                                   {"GrainDepth", Animates::No},
                                                   {"NatronGPU", Animates::No},
                                                   {"SrcClipChanged", Animates::No},
                                                   {"PrintPeakBrightness", Animates::Yes}};
  for (const Param& param : catalogue())
  {
    const bool declares = param.kind == Kind::Choice || param.kind == Kind::Boolean || param.kind == Kind::Rgb;
    const auto exception = exceptions.find(param.name);
    const Animates expected = exception != exceptions.end() ? exception->second
                              : declares                    ? Animates::Yes
                                                            : Animates::HostDefault;
    EXPECT_EQ(param.animates, expected) << param.name;
    EXPECT_EQ(param.evaluateOnChange, param.name != "SrcClipChanged") << param.name;
  }
}

TEST(Catalogue, TopLevelInOrder)
{
  EXPECT_THAT(membersOf(""), ElementsAre("Input", "ResizeTextures", "Soup", "Grain", "PrintDisplay", "LoadLooks",
                                         "SaveLooks", "Manage", "SrcClipChanged"));
}

TEST(Catalogue, GroupsInOrder)
{
  struct Row
  {
    std::string name, label;
    bool open;
    std::string parent;
  };
  const std::vector<Row> rows{{"Input", "Input", true, ""},
                              {"Halation", "Halation", false, "Input"},
                              {"ResizeTextures", "Resize | Textures", false, ""},
                              {"TexturePitch", "Texture Pitch", false, "ResizeTextures"},
                              {"Soup", "Soup", true, ""},
                              {"Look", "Look", true, "Soup"},
                              {"Color", "Color", false, "Look"},
                              {"Refine", "Refine", false, "Color"},
                              {"Tone", "Tone", false, "Look"},
                              {"Lab", "Lab", false, "Soup"},
                              {"NegDmin", "Dmin", false, "Soup"},
                              {"NegDmax", "Dmax", false, "Soup"},
                              {"Grain", "Grain", false, ""},
                              {"Granularity", "Granularity", false, "Grain"},
                              {"Size", "Size", false, "Grain"},
                              {"Softness", "Softness", false, "Grain"},
                              {"Variance", "Variance", false, "Grain"},
                              {"Strength", "Strength", false, "Grain"},
                              {"PrintDisplay", "Print | Display", true, ""},
                              {"PrintBlackPoint", "Black Point", false, "PrintDisplay"},
                              {"PrintWhitePoint", "White Point", false, "PrintDisplay"},
                              {"Manage", "Manage", false, ""}};
  std::size_t next = 0;
  for (const Param& param : catalogue())
  {
    if (param.kind != Kind::Group)
      continue;
    ASSERT_LT(next, rows.size());
    EXPECT_EQ(param.name, rows[next].name);
    EXPECT_EQ(param.label, rows[next].label);
    EXPECT_EQ(param.open, rows[next].open) << param.name;
    EXPECT_EQ(param.parent, rows[next].parent) << param.name;
    ++next;
  }
  EXPECT_EQ(next, rows.size());
}

TEST(Catalogue, MembersInOrder)
{
  EXPECT_THAT(membersOf("Input"), ElementsAre("InputGamut", "ProcessLinear", "HDRcomp", "Exposure", "Halation",
                                              "SoftClips", "CameraHighlightsCeiling", "CameraHighlightsRecover",
                                              "CameraShadowsCeiling", "CameraShadowsRecover"));
  EXPECT_THAT(membersOf("Halation"),
              ElementsAre("HalationBypass", "HalationBreadth", "HalationSaturation", "HalationCyanRed",
                          "HalationMagentaGreen", "HalationYellowBlue", "HalationBlendR", "HalationBlendG",
                          "HalationBlendB", "HalationBlendRGB", "ClearHalation"));
  EXPECT_THAT(membersOf("ResizeTextures"),
              ElementsAre("InResolution", "SourceWidth", "SourceHeight", "SourceWidthOffset", "SourceHeightOffset",
                          "OutResolution", "TargetWidth", "TargetHeight", "TargetWidthOffset", "TargetHeightOffset",
                          "SpatialEnhancement", "HorizontalEnhancer", "VerticalEnhancer", "CombinedEnhancer",
                          "TexturePitch"));
  EXPECT_THAT(membersOf("TexturePitch"),
              ElementsAre("PitchBypass", "SopranoPitch", "MezzoSopranoPitch", "AltoPitch", "TenorPitch",
                          "BaritonePitch", "BassPitch", "EnsemblePitch", "ClearTexturePitches"));
  EXPECT_THAT(membersOf("Soup"), ElementsAre("SoupBypass", "SoupHighlightCeiling", "SoupHighlightCompress",
                                             "SoupShadowFloor", "SoupShadowExpand", "Look", "Lab", "NegDmin",
                                             "SoupDminRGB", "NegDmax", "SoupDmaxRGB", "ResetSoup"));
  EXPECT_THAT(membersOf("Look"),
              ElementsAre("CameraStock", "CameraCast", "CameraTintGtoM", "CameraTintRtoC", "Color", "Tone"));
  EXPECT_THAT(membersOf("Tone"),
              ElementsAre("ToneCurves", "LabBleachSwatch", "LabBleachPivot", "LabBleachRed", "LabBleachGreen",
                          "LabBleachBlue", "LabBleachRGB", "SoupToeSwatch", "SoupToePivot", "SoupToeRed",
                          "SoupToeGreen", "SoupToeBlue", "SoupToeRGB", "SoupKneeSwatch", "SoupKneeRed", "SoupKneeGreen",
                          "SoupKneeBlue", "SoupKneeRGB", "SoupShoulderSwatch", "SoupShoulderPivot", "SoupShoulderRed",
                          "SoupShoulderGreen", "SoupShoulderBlue", "SoupShoulderRGB", "SoupFilmicPivot",
                          "SoupFilmicSlope", "ResetCurves"));
  EXPECT_THAT(membersOf("Lab"), ElementsAre("LabSilverRed", "LabSilverGreen", "LabSilverBlue", "LabSilverRGB",
                                            "LableachBypass", "LabDevelop", "LabPullPush", "LabAgitate", "LabReplenish",
                                            "LabSpectrumBand", "LabDiffuseLoMid", "LabDiffuseMidHi", "ClearLab"));
  EXPECT_THAT(membersOf("Grain"),
              ElementsAre("GrainBypass", "GrainLinear", "SpatialEnhancer", "HorizontalDetails", "VerticalDetails",
                          "CombinedDetails", "DispersionPattern", "UniformPattern", "Granularity", "GranularityRGB",
                          "Size", "SizeRGB", "Softness", "SoftRGB", "Variance", "VarianceRGB", "Strength",
                          "StrengthRGB", "ResetGrains"));
  EXPECT_THAT(membersOf("Softness"), ElementsAre("SoftRed", "SoftGreen", "SoftBlue"));
  EXPECT_THAT(membersOf("PrintBlackPoint"), ElementsAre("PrintBlackRed", "PrintBlackGreen", "PrintBlackBlue"));
  EXPECT_THAT(membersOf("PrintWhitePoint"), ElementsAre("PrinterLightRed", "PrinterLightGreen", "PrinterLightBlue"));
  EXPECT_THAT(membersOf("Manage"), ElementsAre("GrainDepth", "NatronGPU", "CudaInfo", "ClipInfo", "About"));
}

TEST(Catalogue, ColourFamiliesInOrder)
{
  std::vector<std::string> color{"ColorCorrection"};
  for (const Axis& axis : axes)
    std::ranges::copy(attributeMembers(axis), std::back_inserter(color));
  color.insert(color.end(), {"ClearSoupSatHueChrVib", "Refine"});
  EXPECT_EQ(membersOf("Color"), color);
  EXPECT_THAT(attributeMembers(axes[0]),
              ElementsAre("SaturationRed", "SaturationMagenta", "SaturationBlue", "SaturationCyan", "SaturationGreen",
                          "SaturationYellow", "SaturationCombo", "SaturationStrength", "SatSwatch",
                          "SaturationCustomHue", "SaturationCustomWidth", "SaturationCustomStrength", "SatZone",
                          "SatZoneLowRange", "SatZoneLow", "SatZoneHighRange", "SatZoneHigh"));
  EXPECT_THAT(attributeMembers(axes[1]), testing::Contains("HueSwatch"));
  EXPECT_THAT(attributeMembers(axes[2]), testing::IsSupersetOf({"ChromaCombo", "ChrSwatch", "ChrZoneHigh"}));

  std::vector<std::string> refine{"ColorRefine"};
  for (const std::string_view word : refineWords)
    std::ranges::copy(refinementMembers(word), std::back_inserter(refine));
  refine.push_back("ResetSoupRefine");
  EXPECT_EQ(membersOf("Refine"), refine);
  EXPECT_THAT(refinementMembers("Eleven"),
              ElementsAre("RefineElevenSwatch", "RefineElevenSatHue", "RefineElevenSatWidth", "RefineElevenSatStrength",
                          "RefineElevenHueHue", "RefineElevenHueWidth", "RefineElevenHueStrength", "RefineElevenChrHue",
                          "RefineElevenChrWidth", "RefineElevenChrStrength", "RefineElevenVibHue",
                          "RefineElevenVibWidth", "RefineElevenVibStrength", "RefineElevenZone",
                          "RefineElevenZoneLowRange", "RefineElevenZoneLow", "RefineElevenZoneHighRange",
                          "RefineElevenZoneHigh"));
  for (const std::string& name : color)
    if (name != "ColorCorrection" && name != "ClearSoupSatHueChrVib" && name != "Refine")
    {
      EXPECT_EQ(at(name).hidden, Hidden::SecretAndDisabled) << name;
    }
}

TEST(Catalogue, PrintSideInOrder)
{
  std::vector<std::string> expected{"PrintDisplayBypass",
                                    "PrintProfile",
                                    "PrintCast",
                                    "PrintTintGtoM",
                                    "PrintTintRtoC",
                                    "PrintSaturation",
                                    "Bleach",
                                    "PrintBleachPivot",
                                    "PrintBleachRed",
                                    "PrintBleachGreen",
                                    "PrintBleachBlue",
                                    "PrintBleach",
                                    "PrintFilmicPivot",
                                    "PrintFilmicSlope",
                                    "OutputDisplayGamut",
                                    "PrintPeakBrightness",
                                    "PrintBlackPoint",
                                    "PrintBlackRGB",
                                    "PrintWhitePoint",
                                    "PrinterLightsRGB",
                                    "PrintSat",
                                    "PrintHue",
                                    "PrintChr",
                                    "PrintVib",
                                    "PrintSatZone",
                                    "PrintHueZone",
                                    "PrintChrZone",
                                    "PrintVibZone"};
  for (const std::string_view suffix : {"", "Zone"})
    for (const std::string_view word : printRefineWords)
      expected.push_back(joined("PrintRefine", word, suffix));
  for (const Axis& axis : axes)
    for (const std::string& name : attributeSliders(axis))
      expected.push_back(joined("Print", name));
  for (const std::string_view word : printRefineWords)
    for (const std::string& name : refinementSliders(word))
      expected.push_back(joined("Print", name));
  for (const std::string_view name :
       {"PrintGammaPivot", "PrintGammaRed", "PrintGammaGreen", "PrintGammaBlue", "PrintCurveShadowPivot",
        "PrintCurveShadowRed", "PrintCurveShadowGreen", "PrintCurveShadowBlue", "PrintCurveShadow",
        "PrintCurveMidtoneRed", "PrintCurveMidtoneGreen", "PrintCurveMidtoneBlue", "PrintCurveMidtone",
        "PrintCurveHighlightPivot", "PrintCurveHighlightRed", "PrintCurveHighlightGreen", "PrintCurveHighlightBlue",
        "PrintCurveHighlight", "ResetPrintDisplay"})
    expected.emplace_back(name);
  EXPECT_EQ(membersOf("PrintDisplay"), expected);
}

TEST(Catalogue, SectionsFollowOneAnother)
{
  EXPECT_EQ(placeOf("Input"), 0u);
  EXPECT_LT(placeOf("CameraShadowsRecover"), placeOf("ResizeTextures"));
  EXPECT_LT(placeOf("ClearTexturePitches"), placeOf("Soup"));
  EXPECT_LT(placeOf("ResetSoup"), placeOf("Grain"));
  EXPECT_LT(placeOf("ResetGrains"), placeOf("PrintDisplay"));
  EXPECT_EQ(placeOf("LoadLooks"), placeOf("ResetPrintDisplay") + 1);
  EXPECT_EQ(placeOf("SrcClipChanged"), catalogue().size() - 1);
}

TEST(Catalogue, StoreTwinsCarryWhatTheirTwinsHave)
{
  std::size_t twins = 0;
  for (const Param& param : catalogue())
  {
    const Param* twin = param.name.starts_with("Print") ? find(std::string_view{param.name}.substr(5)) : nullptr;
    if (!twin || param.hidden != Hidden::SecretOnly || param.kind != Kind::Double)
      continue;
    ++twins;
    EXPECT_EQ(param.label, twin->label) << param.name;
    EXPECT_EQ(param.hint, twin->hint) << param.name;
    EXPECT_EQ(param.defaults, twin->defaults) << param.name;
    EXPECT_EQ(param.range->min, twin->range->min) << param.name;
    EXPECT_EQ(param.range->max, twin->range->max) << param.name;
    EXPECT_EQ(twin->hidden, Hidden::SecretAndDisabled) << param.name;
  }
  EXPECT_EQ(twins, 4u * 14u + 6u * 16u);
}

TEST(Catalogue, StoreIndices)
{
  EXPECT_EQ(at("PrintVib").label, "PrintVib");
  EXPECT_EQ(at("PrintVib").hint, "Print Vib");
  EXPECT_EQ(at("PrintVib").range->max, 10.0);
  EXPECT_EQ(at("PrintSatZone").hint, "Print Sat Zone");
  EXPECT_EQ(at("PrintSatZone").range->max, 10.0);
  EXPECT_EQ(at("PrintRefineTwo").hint, "Print Custom-Two");
  EXPECT_EQ(at("PrintRefineTwo").defaults[0], 1.0);
  EXPECT_EQ(at("PrintRefineSevenZone").hint, "Print Custom-SevenZone");
  EXPECT_EQ(at("PrintRefineSevenZone").range->max, 2.0);
  EXPECT_EQ(at("PrintRefineSevenZone").defaults[0], 0.0);
}

TEST(Catalogue, SpotValues)
{
  const auto expectNumber = [](std::string_view name, Kind kind, double value, double min, double max)
  {
    const Param& param = at(name);
    EXPECT_EQ(param.kind, kind) << name;
    EXPECT_EQ(param.defaults[0], value) << name;
    EXPECT_EQ(param.range->min, min) << name;
    EXPECT_EQ(param.range->max, max) << name;
  };
  expectNumber("Exposure", Kind::Double, 0.0, -1.0, 1.0);
  expectNumber("HalationBreadth", Kind::Double, 0.25, 0.0, 1.0);
  expectNumber("HalationMagentaGreen", Kind::Double, 0.15, 0.0, 1.0);
  expectNumber("HalationYellowBlue", Kind::Double, 0.07, 0.0, 1.0);
  expectNumber("HalationBlendRGB", Kind::Double, 0.3, 0.0, 1.0);
  expectNumber("CameraHighlightsCeiling", Kind::Double, 1.0, -1.0, 1.0);
  expectNumber("CameraShadowsCeiling", Kind::Double, 0.0, 0.0, 1.0);
  expectNumber("SourceWidth", Kind::Integer, 1920, 10, 12288);
  expectNumber("TargetHeight", Kind::Integer, 1080, 10, 12288);
  expectNumber("TargetHeightOffset", Kind::Double, 0.5, 0.0, 1.0);
  expectNumber("CombinedEnhancer", Kind::Double, 3.0, 0.0, 10.0);
  expectNumber("BassPitch", Kind::Double, 3.0, 0.0, 10.0);
  expectNumber("CameraCast", Kind::Integer, 6504, 3000, 14000);
  expectNumber("HueCustomHue", Kind::Double, 180.0, 0.0, 360.0);
  expectNumber("RefineNineVibWidth", Kind::Double, 60.0, 0.0, 360.0);
  expectNumber("LabBleachPivot", Kind::Double, 0.3, 0.0, 1.0);
  expectNumber("SoupToePivot", Kind::Double, 0.669, 0.0, 1.0);
  expectNumber("SoupToeGreen", Kind::Double, 0.02, -0.5, 0.5);
  expectNumber("SoupKneeRGB", Kind::Double, -0.093, -0.5, 0.5);
  expectNumber("SoupShoulderPivot", Kind::Double, 0.334, 0.0, 1.0);
  expectNumber("SoupShoulderBlue", Kind::Double, 0.145, -1.0, 1.0);
  expectNumber("SoupFilmicSlope", Kind::Double, 0.014, 0.0, 1.0);
  expectNumber("LabSilverRGB", Kind::Double, 0.5, 0.0, 1.0);
  expectNumber("LabDevelop", Kind::Double, 0.9, 0.0, 1.0);
  expectNumber("LabAgitate", Kind::Integer, 3, 1, 5);
  expectNumber("SoupDminRed", Kind::Double, 0.584, -1.0, 1.0);
  expectNumber("SoupDmaxRGB", Kind::Double, 0.584, -1.0, 1.0);
  expectNumber("UniformPattern", Kind::Double, 5.0, 0.0, 10.0);
  expectNumber("GranularityRGB", Kind::Double, 5.0, 0.0, 10.0);
  expectNumber("SizeBlue", Kind::Double, 0.01, 0.0, 50.0);
  expectNumber("SoftRed", Kind::Double, 2.0, 0.0, 10.0);
  expectNumber("VarianceGreen", Kind::Double, 0.0, 0.0, 10.0);
  expectNumber("StrengthRGB", Kind::Double, 10.0, 0.0, 10.0);
  expectNumber("PrintSaturation", Kind::Double, 1.0, 0.0, 1.0);
  expectNumber("PrintPeakBrightness", Kind::Double, 0.203, 0.0, 1.0);
  expectNumber("PrintBlackRGB", Kind::Double, 0.141, -1.0, 1.0);
  expectNumber("PrinterLightsRGB", Kind::Double, 0.909, 0.0, 1.0);
  expectNumber("PrintGammaPivot", Kind::Double, 0.18, 0.0, 1.0);
  expectNumber("PrintGammaBlue", Kind::Double, 0.4, 0.0, 1.0);
  expectNumber("PrintCurveMidtone", Kind::Double, -0.093, -0.5, 0.5);
  expectNumber("PrintCurveHighlight", Kind::Double, 0.145, -1.0, 1.0);
}

TEST(Catalogue, BooleansChoicesAndSwatches)
{
  for (const std::string_view on : {"HalationBypass", "PitchBypass", "SoupBypass", "GrainBypass", "PrintDisplayBypass"})
    EXPECT_EQ(at(on).defaults[0], 1.0) << on;
  for (const std::string_view off :
       {"ProcessLinear", "HDRcomp", "LableachBypass", "GrainLinear", "Bleach", "SrcClipChanged"})
    EXPECT_EQ(at(off).defaults[0], 0.0) << off;
  for (const Param& param : catalogue())
    if (param.kind == Kind::Choice)
    {
      EXPECT_EQ(param.defaults[0], param.name == "ToneCurves"   ? 5.0
                                   : param.name == "GrainDepth" ? 3.0
                                                                : 0.0)
          << param.name;
    }
  EXPECT_THAT(at("VibSwatch").defaults, ElementsAre(0.0, 1.0, 1.0));
  EXPECT_THAT(at("RefineTwelveSwatch").defaults, ElementsAre(0.0, 1.0, 1.0));
  EXPECT_EQ(at("RefineTwelveSwatch").displayRange->min, 0.0);
  EXPECT_EQ(at("RefineTwelveSwatch").displayRange->max, 1.0);
  const std::map<std::string, Range> tone{{"LabBleachSwatch", {0.0, 1.0}},
                                          {"SoupToeSwatch", {-0.5, 0.5}},
                                          {"SoupKneeSwatch", {-0.5, 0.5}},
                                          {"SoupShoulderSwatch", {-1.0, 1.0}}};
  for (const auto& [name, range] : tone)
  {
    EXPECT_THAT(at(name).defaults, Each(0.5)) << name;
    EXPECT_EQ(at(name).displayRange->min, range.min) << name;
    EXPECT_EQ(at(name).displayRange->max, range.max) << name;
  }
}

TEST(Catalogue, WhatStartsHiddenOutsideTheFamilies)
{
  for (const std::string_view name : {"ProcessLinear",
                                      "HDRcomp",
                                      "CameraHighlightsCeiling",
                                      "CameraShadowsRecover",
                                      "SourceWidth",
                                      "TargetHeightOffset",
                                      "SpatialEnhancement",
                                      "CombinedEnhancer",
                                      "LabBleachSwatch",
                                      "SoupFilmicSlope",
                                      "GrainLinear",
                                      "SpatialEnhancer",
                                      "VerticalDetails",
                                      "UniformPattern",
                                      "PrintProfile",
                                      "Bleach",
                                      "OutputDisplayGamut",
                                      "PrintPeakBrightness",
                                      "PrintBlackRed",
                                      "PrintBlackRGB",
                                      "PrinterLightsRGB",
                                      "SrcClipChanged"})
    EXPECT_EQ(at(name).hidden, Hidden::SecretAndDisabled) << name;
  for (const std::string_view name :
       {"InputGamut",        "Exposure",       "HalationBypass",     "SoftClips",       "InResolution",
        "OutResolution",     "PitchBypass",    "BassPitch",          "CameraStock",     "ColorCorrection",
        "ColorRefine",       "ToneCurves",     "ResetCurves",        "LabSilverRGB",    "SoupDmaxRGB",
        "DispersionPattern", "GranularityRed", "PrintDisplayBypass", "PrintBlackPoint", "ResetPrintDisplay",
        "NatronGPU"})
    EXPECT_EQ(at(name).hidden, Hidden::No) << name;
}

TEST(Catalogue, LayoutHints)
{
  for (const Param& param : catalogue())
  {
    const std::optional<int> expected = param.name == "About"               ? std::optional{2}
                                        : param.name == "ResetPrintDisplay" ? std::optional{1}
                                                                            : std::nullopt;
    EXPECT_EQ(param.layoutHint, expected) << param.name;
  }
}

TEST(Catalogue, LabelsThatRecur)
{
  std::map<std::string, int> labels;
  for (const Param& param : catalogue())
    ++labels[param.label];
  EXPECT_EQ(labels["Recover Roll-off"], 4);
  EXPECT_EQ(labels["Spatial Enhancer"], 2);
  EXPECT_EQ(labels["Bypass"], 0);
  EXPECT_EQ(labels["Range"], 2 * (4 + 11 + 4 + 6));
  EXPECT_EQ(labels["Level"], 2 * (4 + 11 + 4 + 6));
  EXPECT_EQ(labels["Pivot"], 2);
}

TEST(Catalogue, FamilyTexts)
{
  EXPECT_EQ(at("SaturationRed").hint, "Red Saturation compresssion or expansion. To Bypass, set to Default : 0.5");
  EXPECT_EQ(at("ChromaCyan").hint, "Cyan Chroma compresssion or expansion. To Bypass, set to Default : 0.5");
  EXPECT_EQ(at("HueYellow").hint, "Yellow Hue angle. To Bypass, set to Default : 0.5");
  EXPECT_EQ(at("SatZone").label, "Saturation Zones");
  EXPECT_EQ(at("VibZone").hint, " Vibrance Extraction Zones, based on pixel intensities");
  EXPECT_EQ(at("ChrSwatch").label, "Custom Chroma");
  EXPECT_TRUE(at("ChrSwatch").hint.starts_with("Chroma Angle Swatch. This Swatch point-sample displays Natron's"));
  EXPECT_EQ(at("RefineTwoSatHue").hint, "Custom-Two Saturation Hue Center, in degrees");
  EXPECT_EQ(at("RefineTwoHueHue").hint, "Custom-Two Hue Center, in degrees");
  EXPECT_EQ(at("RefineTwoSatStrength").hint, "Custom-Two Saturation compression or expansion Strength. Default : 0.5");
  EXPECT_EQ(at("RefineTwoVibStrength").hint, "Custom-Two Vibrance Strength. Default : 0.5");
  EXPECT_EQ(at("RefineTenSwatch").label, "Custom-Ten");
  EXPECT_EQ(at("GranularityBlue").label, "Granularity B");
  EXPECT_EQ(at("SoupDmaxBlue").hint, "Film element's Maximum Blue Density. Default : Changes with Camera Stock");
  EXPECT_EQ(at("PrinterLightsRGB").label, "White Point RGB");
  EXPECT_EQ(at("TenorPitch").hint, " Medium-Wide Texture Band (8 Pixel radius). Accentuate Textures : 3.01 - 10. Mask "
                                   "Textures : 0 - 2.99. To Bypass, set to Default : 3.0");
  EXPECT_EQ(at("OutResolution").hint,
            "Size, Crop, Pad, or Fit Output clip to less than - or equal to - Timeline dimensions");
}

TEST(Catalogue, IrregularTextsStay)
{
  EXPECT_EQ(at("SoupToePivot").hint,
            "Point at which Toe Roll-off (compression) - or roll-up (expansion) - begins. Default : 0.5");
  EXPECT_EQ(at("HorizontalEnhancer").hint, " Horizontal Spatial Enhancement. To Bypass, set to Default : 0.0");
  EXPECT_TRUE(at("LabSilverRed").hint.starts_with("Red Silver Halide"));
  EXPECT_TRUE(at("LabSilverBlue").hint.starts_with("Blue SilveBr Halide"));
  EXPECT_TRUE(at("LabSilverRGB").hint.starts_with("RGB SilveBr Halide"));
  EXPECT_TRUE(at("LabBleachRGB").hint.ends_with("Changes with Camera Stock : 0.0"));
  EXPECT_TRUE(at("PrintBleach").hint.ends_with("Changes with Print Stock : 0.0"));
  EXPECT_EQ(at("PrintBleach").label, "Bleach RGB");
  EXPECT_TRUE(at("SizeRed").hint.ends_with("set Red Size - or Red Strength - to 0"));
  EXPECT_TRUE(at("SizeGreen").hint.ends_with("set Green Size - or Green Strength - or to 0"));
  EXPECT_TRUE(at("SizeRGB").hint.ends_with("bypass Grain on all channels, set RGB Size - or RGB Strength - or to 0"));
  EXPECT_EQ(at("SatZoneLow").hint,
            "Saturation low-Range Intensity Level. To bypass the Lower Intensities Range, set to 0.5");
  EXPECT_EQ(at("HueZoneHigh").hint,
            "Hue high Range Intensity Level. To bypass the Upper Intensities Range, set default : 0.5");
  EXPECT_TRUE(at("VibZoneLowRange").hint.starts_with("Vibrance low range."));
  EXPECT_TRUE(at("ClearSoupSatHueChrVib").hint.starts_with("If "));
  EXPECT_TRUE(at("ResetSoupRefine").hint.starts_with(" If "));
  EXPECT_TRUE(at("PrintGammaRed").hint.ends_with("set to Default 0.4"));
}

TEST(Catalogue, RefineZoneTexts)
{
  for (const std::string_view word : refineWords)
  {
    const Param& zone = at(joined("Refine", word, "Zone"));
    const bool plural = word == "Two" || word == "Three" || word == "Four";
    EXPECT_EQ(zone.label, joined("Custom-", word, plural ? " Zones" : " Zone"));
  }
  const auto hint = [](std::string_view word) { return at(joined("Refine", word, "Zone")).hint; };
  EXPECT_EQ(hint("Two"), " Custom-Two Extraction Zones based on pixel intensities");
  EXPECT_EQ(hint("Three"), "Custom-Three Extraction Zone based on pixel intensities");
  EXPECT_EQ(hint("Four"), "Custom-Four Extraction Zone based on pixel intensities");
  for (const std::string_view word : {"Five", "Seven", "Nine"})
    EXPECT_EQ(hint(word), joined("Custom-", word, " Extraction Zones based on pixel intensities"));
  for (const std::string_view word : {"Six", "Eight", "Ten", "Eleven", "Twelve"})
    EXPECT_EQ(hint(word), joined(" Custom-", word, " Extraction Zones based on pixel intensities"));
}

TEST(Catalogue, ButtonsSitInTheGroupOfTheirList)
{
  const std::map<std::string, std::string> parents{{"ClearHalation", "Halation"},
                                                   {"ClearTexturePitches", "TexturePitch"},
                                                   {"ClearSoupSatHueChrVib", "Color"},
                                                   {"ResetSoupRefine", "Refine"},
                                                   {"ResetCurves", "Tone"},
                                                   {"ClearLab", "Lab"},
                                                   {"ResetSoup", "Soup"},
                                                   {"ResetGrains", "Grain"},
                                                   {"ResetPrintDisplay", "PrintDisplay"},
                                                   {"LoadLooks", ""},
                                                   {"SaveLooks", ""},
                                                   {"CudaInfo", "Manage"},
                                                   {"ClipInfo", "Manage"},
                                                   {"About", "Manage"}};
  for (const Param& param : catalogue())
    if (param.kind == Kind::PushButton)
    {
      EXPECT_EQ(param.parent, parents.at(param.name));
    }
}
}  // namespace
}  // namespace morvellan::params
