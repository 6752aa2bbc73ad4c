// The reset table, row by row: from a page where nothing is at its default, what each button writes and what it leaves.
// Values that depart from the parameters' defaults are the reset's own.
#include "params/resets.h"

#include "params/families.h"
#include "tests/params/test_page.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace morvellan::params
{
namespace
{
using testing::Each;
using testing::ElementsAre;

// Every value parameter away from its default and from every reset's value.
TestPage disturbed()
{
  TestPage params;
  for (const Param& param : catalogue())
  {
    if (param.kind == Kind::Rgb)
      params.putRgb(param.name, {0.11, 0.22, 0.33});
    else if (param.kind == Kind::Boolean)
      params.put(param.name, 1.0 - param.defaults[0]);
    else if (param.kind == Kind::Choice && param.name != gpuChoice)
      params.put(param.name, param.defaults[0] == 1.0 ? 2.0 : 1.0);
    else if (param.kind == Kind::Integer)
      params.put(param.name, param.range->max);
    else if (param.range)
      params.put(param.name, param.range->min + 0.777 * (param.range->max - param.range->min));
  }
  return params;
}

// Presses the button and checks that exactly these parameters were written, none in an edit block.
void expectWritten(TestPage& params, std::string_view button, std::vector<std::string> expected)
{
  params.press(button);
  auto written = params.written();
  std::ranges::sort(written);
  std::ranges::sort(expected);
  EXPECT_EQ(written, expected) << button;
  EXPECT_TRUE(params.noneBracketed()) << button;
}

void expectDefaults(const TestPage& params, const std::vector<std::string>& names)
{
  for (const std::string& name : names)
    EXPECT_EQ(params.rgb(name), at(name).defaults) << name;
}

std::vector<std::string> joinedLists(std::initializer_list<std::vector<std::string>> lists)
{
  std::vector<std::string> all;
  for (const auto& list : lists)
    all.insert(all.end(), list.begin(), list.end());
  return all;
}

std::vector<std::string> attributes(int choice)
{
  std::vector<std::string> names;
  for (int i = 0; i < 4; ++i)
  {
    if (choice == 0 || choice == i + 1)
      std::ranges::copy(attributeMembers(axes[static_cast<std::size_t>(i)]), std::back_inserter(names));
  }
  return names;
}

std::vector<std::string> refinements(int choice)
{
  std::vector<std::string> names;
  for (int i = 0; i < 11; ++i)
  {
    if (choice == 0 || choice == i + 1)
      std::ranges::copy(refinementMembers(refineWords[static_cast<std::size_t>(i)]), std::back_inserter(names));
  }
  return names;
}

const std::vector<std::vector<std::string>> curveMembers{
    {"LabBleachRGB", "LabBleachRed", "LabBleachGreen", "LabBleachBlue", "LabBleachPivot", "LabBleachSwatch"},
    {"SoupToeRGB", "SoupToeRed", "SoupToeGreen", "SoupToeBlue", "SoupToePivot", "SoupToeSwatch"},
    {"SoupKneeRGB", "SoupKneeRed", "SoupKneeGreen", "SoupKneeBlue", "SoupKneeSwatch"},
    {"SoupShoulderRGB", "SoupShoulderRed", "SoupShoulderGreen", "SoupShoulderBlue", "SoupShoulderPivot",
     "SoupShoulderSwatch"},
    {"SoupFilmicPivot", "SoupFilmicSlope"}};

const std::vector<std::string> lab{"LabSilverRGB",   "LabSilverRed",    "LabSilverGreen",  "LabSilverBlue",
                                   "LableachBypass", "LabPullPush",     "LabDevelop",      "LabAgitate",
                                   "LabReplenish",   "LabSpectrumBand", "LabDiffuseLoMid", "LabDiffuseMidHi"};

void expectFlat(const TestPage& params, int curve)
{
  const auto& names = curveMembers[static_cast<std::size_t>(curve - 1)];
  for (const std::string& name : names)
  {
    if (name.ends_with("Swatch"))
    {
      EXPECT_THAT(params.rgb(name), Each(0.5)) << name;
    }
    else if (name == "LabBleachPivot")
    {
      EXPECT_EQ(params[name], 0.3);
    }
    else if (name == "SoupToePivot" || name == "SoupShoulderPivot")
    {
      EXPECT_EQ(params[name], 0.5) << name;
    }
    else if (name == "SoupFilmicSlope")
    {
      EXPECT_EQ(params[name], 0.014);
    }
    else
    {
      EXPECT_EQ(params[name], 0.0) << name;
    }
  }
}

TEST(Resets, TexturePitches)
{
  TestPage params = disturbed();
  params.put("PitchBypass", 1);
  const std::vector<std::string> names{"SopranoPitch",  "MezzoSopranoPitch", "AltoPitch",     "TenorPitch",
                                       "BaritonePitch", "BassPitch",         "EnsemblePitch", "PitchBypass"};
  expectWritten(params, "ClearTexturePitches", names);
  for (const std::string& name : names)
    EXPECT_EQ(params[name], name == "PitchBypass" ? 0.0 : 3.0) << name;
}

TEST(Resets, Halation)
{
  TestPage params = disturbed();
  const std::vector<std::string> names{"HalationBreadth",      "HalationSaturation", "HalationCyanRed",
                                       "HalationMagentaGreen", "HalationYellowBlue", "HalationBlendR",
                                       "HalationBlendG",       "HalationBlendB",     "HalationBlendRGB"};
  expectWritten(params, "ClearHalation", names);
  expectDefaults(params, names);
  EXPECT_EQ(params["HalationMagentaGreen"], 0.15);
  EXPECT_EQ(params["HalationBypass"], 0.0);
}

TEST(Resets, AttributesByChoice)
{
  for (int choice = 0; choice <= 4; ++choice)
  {
    TestPage params = disturbed();
    params.put("ColorCorrection", choice);
    expectWritten(params, "ClearSoupSatHueChrVib", attributes(choice));
    expectDefaults(params, attributes(choice));
    EXPECT_EQ(params["ColorCorrection"], choice);
  }
  TestPage params = disturbed();
  params.put("ColorCorrection", 0);
  params.press("ClearSoupSatHueChrVib");
  EXPECT_THAT(params.rgb("HueSwatch"), ElementsAre(0.0, 1.0, 1.0));
  EXPECT_EQ(params["VibZone"], 0.0);
}

TEST(Resets, RefinementsByChoice)
{
  for (int choice = 0; choice <= 11; ++choice)
  {
    TestPage params = disturbed();
    params.put("ColorRefine", choice);
    expectWritten(params, "ResetSoupRefine", refinements(choice));
    expectDefaults(params, refinements(choice));
  }
}

TEST(Resets, CurvesByChoice)
{
  for (int choice = 1; choice <= 5; ++choice)
  {
    TestPage params = disturbed();
    params.put("ToneCurves", choice);
    expectWritten(params, "ResetCurves", curveMembers[static_cast<std::size_t>(choice - 1)]);
    expectFlat(params, choice);
  }
  TestPage params = disturbed();
  params.put("ToneCurves", 0);
  expectWritten(params, "ResetCurves",
                joinedLists({curveMembers[0], curveMembers[1], curveMembers[2], curveMembers[3], curveMembers[4]}));
  for (int choice = 1; choice <= 5; ++choice)
    expectFlat(params, choice);
}

TEST(Resets, Lab)
{
  TestPage params = disturbed();
  expectWritten(params, "ClearLab", lab);
  expectDefaults(params, lab);
  EXPECT_EQ(params["LabSilverRGB"], 0.5);
  EXPECT_EQ(params["LableachBypass"], 0.0);
  EXPECT_EQ(params["LabDevelop"], 0.9);
  EXPECT_EQ(params["LabAgitate"], 3.0);
  EXPECT_EQ(params["LabReplenish"], 1.0);
}

TEST(Resets, Soup)
{
  TestPage params = disturbed();
  const std::vector<std::string> own{
      "SoupHighlightCeiling", "SoupHighlightCompress", "SoupShadowFloor", "SoupShadowExpand", "CameraStock",
      "CameraCast",           "CameraTintGtoM",        "CameraTintRtoC",  "SoupDminRed",      "SoupDminGreen",
      "SoupDminBlue",         "SoupDminRGB",           "SoupDmaxRed",     "SoupDmaxGreen",    "SoupDmaxBlue",
      "SoupDmaxRGB"};
  expectWritten(params, "ResetSoup",
                joinedLists({own, attributes(0), refinements(0), curveMembers[0], curveMembers[1], curveMembers[2],
                             curveMembers[3], curveMembers[4], lab}));
  expectDefaults(params, joinedLists({own, attributes(0), refinements(0), lab}));
  for (int choice = 1; choice <= 5; ++choice)
    expectFlat(params, choice);
  EXPECT_EQ(params["SoupDmaxRed"], 0.584);
  EXPECT_EQ(params["ColorCorrection"], 1.0);
  EXPECT_EQ(params["SoupBypass"], 0.0);
}

TEST(Resets, Grains)
{
  TestPage params = disturbed();
  std::vector<std::string> names{"GrainLinear", "DispersionPattern", "UniformPattern"};
  for (const std::string_view stem : {"Granularity", "Size", "Soft", "Variance", "Strength"})
    for (const std::string_view suffix : {"Red", "Green", "Blue", "RGB"})
      names.push_back(joined(stem, suffix));
  expectWritten(params, "ResetGrains", names);
  expectDefaults(params, names);
  EXPECT_EQ(params["GrainBypass"], 0.0);
  EXPECT_EQ(params["SizeRGB"], 0.01);
  EXPECT_EQ(params["StrengthRed"], 10.0);
}

TEST(Resets, PrintDisplay)
{
  TestPage params = disturbed();
  params.put("PrintDisplayBypass", 0);
  params.put("InputGamut", 0);
  params.put("PrintProfile", 5);
  params.put("OutputDisplayGamut", 7);
  params.press("PrintDisplayBypass");
  std::vector<std::string> names{
      "PrintProfile",    "PrintCast",          "PrintTintGtoM",       "PrintTintRtoC",     "PrintSaturation",
      "Bleach",          "OutputDisplayGamut", "PrintPeakBrightness", "PrintBlackRed",     "PrintBlackGreen",
      "PrintBlackBlue",  "PrintBlackRGB",      "PrinterLightRed",     "PrinterLightGreen", "PrinterLightBlue",
      "PrinterLightsRGB"};
  std::vector<std::string> store;
  for (const Param& param : catalogue())
  {
    if (param.hidden == Hidden::SecretOnly)
      store.push_back(param.name);
  }
  EXPECT_EQ(store.size(), 190u);
  expectWritten(params, "ResetPrintDisplay", joinedLists({names, store}));
  std::erase(names, "PrintPeakBrightness");
  expectDefaults(params, joinedLists({names, store}));
  EXPECT_EQ(params["PrintPeakBrightness"], 0.1);
  EXPECT_EQ(params["PrintBlackRGB"], 0.141);
  EXPECT_EQ(params["PrinterLightRed"], 0.909);
  EXPECT_EQ(params["PrintCurveShadow"], 0.02);
  for (const std::string_view name : {"PrintCast", "PrintFilmicSlope", "Bleach", "PrintBleach", "PrintPeakBrightness"})
    EXPECT_FALSE(params.shown(name)) << name;
  for (const std::string_view name : {"PrintProfile", "OutputDisplayGamut", "PrintBlackRGB", "PrinterLightRed"})
    EXPECT_TRUE(params.shown(name)) << name;
}

TEST(Resets, ValuesAloneAndNoPanel)
{
  for (const std::string_view button : {"ClearTexturePitches", "ClearHalation", "ClearSoupSatHueChrVib",
                                        "ResetSoupRefine", "ResetCurves", "ClearLab", "ResetSoup", "ResetGrains"})
  {
    TestPage params = disturbed();
    params.reopen();
    const auto before = params.layout();
    params.press(button);
    EXPECT_EQ(params.layout(), before) << button;
    params.press(button);
    EXPECT_TRUE(params.writes.empty()) << button;
  }
}
}  // namespace
}  // namespace morvellan::params
