// What each panel shows and hides for every value of its choice, and that a new instance and a user's edits end at the
// same layout.
#include "params/panels.h"

#include "params/index_classes.h"
#include "tests/params/test_page.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace morvellan::params
{
namespace
{
using testing::ElementsAre;
using testing::UnorderedElementsAreArray;

// Of the names given, those that are shown.
template <class Names>
std::vector<std::string> shownOf(const TestPage& params, const Names& names)
{
  std::vector<std::string> shown;
  for (const auto& name : names)
  {
    if (params.shown(name))
      shown.emplace_back(name);
  }
  return shown;
}

std::vector<std::string> printSide()
{
  std::vector<std::string> names{"PrintProfile", "Bleach", "OutputDisplayGamut", "PrintPeakBrightness"};
  names.insert(names.end(), printStockControls.begin(), printStockControls.end());
  names.insert(names.end(), printBleachControls.begin(), printBleachControls.end());
  names.insert(names.end(), printPointControls.begin(), printPointControls.end());
  return names;
}

TEST(Panels, SoftClips)
{
  const std::vector<std::string> all{"CameraHighlightsCeiling", "CameraHighlightsRecover", "CameraShadowsCeiling",
                                     "CameraShadowsRecover"};
  TestPage params;
  params.edit("SoftClips", 1);
  EXPECT_THAT(shownOf(params, all), ElementsAre(all[0], all[1]));
  params.edit("SoftClips", 2);
  EXPECT_THAT(shownOf(params, all), ElementsAre(all[2], all[3]));
  params.edit("SoftClips", 0);
  EXPECT_THAT(shownOf(params, all), ElementsAre());
  EXPECT_TRUE(params.writes.empty());
}

TEST(Panels, InputClasses)
{
  EXPECT_THAT(linearInputs, ElementsAre(0, 4, 5, 30));
  EXPECT_THAT(gammaInputs, ElementsAre(1, 8, 27, 29, 31, 32, 33, 34, 42, 43, 44, 46));
  EXPECT_THAT(hdrDisplays, ElementsAre(6, 7, 8, 10, 12, 14));
  for (int gamut = 0; gamut < 49; ++gamut)
  {
    for (const double hdr : {0.0, 1.0})
    {
      TestPage params;
      params.put("HDRcomp", hdr);
      params.edit("InputGamut", gamut);
      EXPECT_EQ(params.shown("HDRcomp"), isLinearInput(gamut)) << gamut;
      EXPECT_EQ(params.shown("ProcessLinear"), !isLinearInput(gamut)) << gamut;
      EXPECT_EQ(params.shown("GrainLinear"), !(isLinearInput(gamut) && hdr == 1.0)) << gamut;
      EXPECT_EQ(params["HDRcomp"], hdr);
    }
  }
}

TEST(Panels, AttributesShowOneFamily)
{
  TestPage params;
  params.put("HueZone", 2);
  for (int choice = 0; choice <= 4; ++choice)
  {
    params.edit("ColorCorrection", choice);
    for (std::size_t i = 0; i < axes.size(); ++i)
    {
      auto expected = attributeMembers(axes[i]);
      if (static_cast<int>(i) + 1 != choice)
        expected.clear();
      else if (choice == 2)
        std::erase_if(expected, [](const std::string& name) { return name.starts_with("HueZoneLow"); });
      else
        expected.resize(13);
      EXPECT_EQ(shownOf(params, attributeMembers(axes[i])), expected) << choice;
    }
    EXPECT_TRUE(params.writes.empty());
  }
}

TEST(Panels, RefinementShowsOneVector)
{
  TestPage params;
  params.put("RefineFiveZone", 1);
  for (int choice = 0; choice <= 11; ++choice)
  {
    params.edit("ColorRefine", choice);
    for (std::size_t i = 0; i < refineWords.size(); ++i)
    {
      auto expected = refinementMembers(refineWords[i]);
      if (static_cast<int>(i) + 1 != choice)
        expected.clear();
      else
        expected.resize(refineWords[i] == "Five" ? 16 : 14);
      EXPECT_EQ(shownOf(params, refinementMembers(refineWords[i])), expected) << choice;
    }
  }
}

TEST(Panels, ZoneChoices)
{
  std::vector<std::string> zones;
  for (const Param& param : catalogue())
  {
    if (param.kind == Kind::Choice && param.name.ends_with("Zone"))
      zones.push_back(param.name);
  }
  EXPECT_EQ(zones.size(), 15u);
  for (const std::string& zone : zones)
  {
    TestPage params;
    const auto sliders = zoneSliders(zone);
    params.edit(zone, 1);
    EXPECT_THAT(shownOf(params, sliders), ElementsAre(zone + "LowRange", zone + "Low"));
    params.edit(zone, 2);
    EXPECT_THAT(shownOf(params, sliders), ElementsAre(zone + "HighRange", zone + "High"));
    params.edit(zone, 0);
    EXPECT_THAT(shownOf(params, sliders), ElementsAre());
    EXPECT_TRUE(params.writes.empty());
  }
}

TEST(Panels, ToneCurves)
{
  const std::vector<std::vector<std::string>> panels{
      {},
      {"LabBleachRGB", "LabBleachPivot", "LabBleachRed", "LabBleachGreen", "LabBleachBlue", "LabBleachSwatch"},
      {"SoupToeRGB", "SoupToePivot", "SoupToeRed", "SoupToeGreen", "SoupToeBlue", "SoupToeSwatch"},
      {"SoupKneeRGB", "SoupKneeRed", "SoupKneeGreen", "SoupKneeBlue", "SoupKneeSwatch"},
      {"SoupShoulderRGB", "SoupShoulderPivot", "SoupShoulderRed", "SoupShoulderGreen", "SoupShoulderBlue",
       "SoupShoulderSwatch"},
      {"SoupFilmicPivot", "SoupFilmicSlope"}};
  std::vector<std::string> all;
  for (const Param& param : catalogue())
  {
    if (param.parent == "Tone" && param.hidden == Hidden::SecretAndDisabled)
      all.push_back(param.name);
  }
  EXPECT_EQ(all.size(), 25u);
  TestPage params;
  for (const int choice : {5, 4, 3, 2, 1, 0})
  {
    params.edit("ToneCurves", choice);
    EXPECT_THAT(shownOf(params, all), UnorderedElementsAreArray(panels[static_cast<std::size_t>(choice)])) << choice;
  }
}

TEST(Panels, Dispersion)
{
  TestPage params;
  for (int choice = 0; choice <= 4; ++choice)
  {
    params.edit("DispersionPattern", choice);
    EXPECT_EQ(params.shown("UniformPattern"), choice >= 3);
  }
}

TEST(Panels, EnhancersTakeTheDetailsPlace)
{
  const std::vector<std::string> enhancers{"CombinedEnhancer", "HorizontalEnhancer", "VerticalEnhancer"};
  const std::vector<std::string> details{"CombinedDetails", "HorizontalDetails", "VerticalDetails"};
  TestPage params;
  params.put("SpatialEnhancer", 2);
  params.edit("SpatialEnhancement", 0);
  EXPECT_THAT(shownOf(params, enhancers), ElementsAre());
  EXPECT_EQ(shownOf(params, details), details);
  EXPECT_TRUE(params.shown("SpatialEnhancer"));
  params.edit("SpatialEnhancement", 1);
  EXPECT_EQ(shownOf(params, enhancers), enhancers);
  EXPECT_THAT(shownOf(params, details), ElementsAre());
  EXPECT_FALSE(params.shown("SpatialEnhancer"));
  params.put("SpatialEnhancer", 0);
  params.edit("SpatialEnhancement", 0);
  EXPECT_THAT(shownOf(params, details), ElementsAre());
  EXPECT_TRUE(params.shown("SpatialEnhancer"));
}

TEST(Panels, SpatialEnhancerSetsTheSecretPropertyAlone)
{
  TestPage params;
  params.edit("SpatialEnhancer", 1);
  for (const std::string name : {"CombinedDetails", "HorizontalDetails", "VerticalDetails"})
  {
    EXPECT_FALSE(params.isSecret(name));
    EXPECT_FALSE(params.isEnabled(name));
  }
  params.edit("SpatialEnhancer", 0);
  for (const std::string name : {"CombinedDetails", "HorizontalDetails", "VerticalDetails"})
    EXPECT_TRUE(params.isSecret(name));
}

TEST(Panels, PrintBypassHidesAllAndEndsBleach)
{
  TestPage params;
  params.edit("PrintDisplayBypass", 0);
  params.put("Bleach", 1);
  params.setVisible("LableachBypass", false);
  params.edit("PrintDisplayBypass", 1);
  EXPECT_THAT(shownOf(params, printSide()), ElementsAre());
  EXPECT_TRUE(params.shown("LableachBypass"));
  EXPECT_EQ(params["Bleach"], 0.0);
  EXPECT_THAT(params.written(), ElementsAre("Bleach"));
  EXPECT_TRUE(params.allBracketed());
  params.edit("PrintDisplayBypass", 1);
  EXPECT_TRUE(params.writes.empty());
}

TEST(Panels, PrintWithGammaInputIsHidden)
{
  for (const int gamut : gammaInputs)
  {
    TestPage params;
    params.put("InputGamut", gamut);
    params.put("Bleach", 1);
    params.edit("PrintDisplayBypass", 0);
    EXPECT_THAT(shownOf(params, printSide()), ElementsAre()) << gamut;
    EXPECT_TRUE(params.writes.empty()) << gamut;
  }
}

TEST(Panels, PrintWithoutStock)
{
  TestPage params;
  params.edit("PrintDisplayBypass", 0);
  std::vector<std::string> expected{"PrintProfile", "OutputDisplayGamut"};
  expected.insert(expected.end(), printPointControls.begin(), printPointControls.end());
  EXPECT_EQ(shownOf(params, printSide()), expected);
}

TEST(Panels, PrintWithStock)
{
  TestPage params;
  params.put("PrintProfile", 4);
  params.edit("PrintDisplayBypass", 0);
  for (const std::string_view name : printStockControls)
    EXPECT_TRUE(params.shown(name)) << name;
  EXPECT_TRUE(params.shown("Bleach"));
  EXPECT_THAT(shownOf(params, printBleachControls), ElementsAre());

  params.put("Bleach", 1);
  params.edit("PrintDisplayBypass", 0);
  EXPECT_EQ(shownOf(params, printBleachControls).size(), printBleachControls.size());

  params.put("LableachBypass", 1);
  params.edit("PrintDisplayBypass", 0);
  EXPECT_FALSE(params.shown("Bleach"));
  EXPECT_THAT(shownOf(params, printBleachControls), ElementsAre());
}

TEST(Panels, PeakBrightnessIsShownForHdrDisplaysOnly)
{
  for (int display = 0; display <= 14; ++display)
  {
    TestPage params;
    params.put("OutputDisplayGamut", display);
    params.edit("PrintDisplayBypass", 0);
    EXPECT_EQ(params.shown("PrintPeakBrightness"), isHdrDisplay(display)) << display;
  }
}

TEST(Panels, NewInstanceShowsWhatTheDefaultsCallFor)
{
  const TestPage params;
  EXPECT_TRUE(params.writes.empty());
  std::vector<std::string> changed;
  for (const Param& param : catalogue())
  {
    if (params.shown(param.name) != (param.hidden == Hidden::No))
      changed.push_back(param.name);
  }
  EXPECT_THAT(changed, ElementsAre("HDRcomp", "SoupFilmicPivot", "SoupFilmicSlope", "GrainLinear", "SpatialEnhancer"));
}

// The page as a chain of edits leaves it is the page that a new instance with the same values shows.
TEST(Panels, ReopenedProjectLooksAsItWasLeft)
{
  TestPage edited;
  const std::vector<std::pair<std::string, double>> edits{{"InputGamut", 47},        {"SoftClips", 2},
                                                          {"InResolution", 1},       {"OutResolution", 5},
                                                          {"SpatialEnhancement", 2}, {"DispersionPattern", 4},
                                                          {"ColorCorrection", 3},    {"ChrZone", 2},
                                                          {"ColorRefine", 11},       {"RefineTwelveZone", 1},
                                                          {"ToneCurves", 4},         {"PrintDisplayBypass", 0},
                                                          {"PrintProfile", 6},       {"Bleach", 1},
                                                          {"OutputDisplayGamut", 7}};
  TestPage reopened;
  for (const auto& [name, value] : edits)
  {
    edited.edit(name, value);
    reopened.put(name, value);
  }
  reopened.reopen();
  EXPECT_EQ(edited.layout(), reopened.layout());
}
}  // namespace
}  // namespace morvellan::params
