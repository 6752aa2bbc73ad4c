// The small rules of the page, and what holds for every rule: only a user's edit does anything, nothing is written
// without need, and single writes stand in edit blocks of their own name.
#include "params/rules.h"

#include "params/choices.h"
#include "params/index_classes.h"
#include "tests/params/random_page.h"
#include "tests/params/test_page.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace morvellan::params
{
namespace
{
using testing::ElementsAre;

TEST(Rules, GammaInputBarsPrint)
{
  for (int gamut = 0; gamut < 49; ++gamut)
  {
    TestPage params;
    params.edit("PrintDisplayBypass", 0);
    params.edit("InputGamut", gamut);
    EXPECT_EQ(params["PrintDisplayBypass"], isGammaInput(gamut) ? 1.0 : 0.0) << gamut;
    EXPECT_EQ(params.shown("PrintProfile"), !isGammaInput(gamut)) << gamut;
    EXPECT_TRUE(params.allBracketed());
    if (isGammaInput(gamut))
    {
      EXPECT_THAT(params.written(), ElementsAre("PrintDisplayBypass"));
    }
    else
    {
      EXPECT_THAT(params.written(), ElementsAre());
    }
  }
}

TEST(Rules, GammaInputWithBypassOnWritesNothing)
{
  TestPage params;
  params.put("HDRcomp", 1);
  params.put("ProcessLinear", 1);
  params.edit("InputGamut", 27);
  EXPECT_TRUE(params.writes.empty());
  EXPECT_EQ(params["HDRcomp"], 1.0);
  EXPECT_EQ(params["ProcessLinear"], 1.0);
}

TEST(Rules, ProcessLinearRepeatsTheClassRule)
{
  for (const double value : {0.0, 1.0})
  {
    TestPage params;
    params.edit("ProcessLinear", value);
    EXPECT_TRUE(params.shown("HDRcomp"));
    EXPECT_FALSE(params.shown("ProcessLinear"));
    EXPECT_TRUE(params.shown("GrainLinear"));  // left as it was
    params.put("InputGamut", 47);
    params.edit("ProcessLinear", value);
    EXPECT_FALSE(params.shown("HDRcomp"));
    EXPECT_TRUE(params.shown("ProcessLinear"));
    EXPECT_TRUE(params.writes.empty());
  }
}

TEST(Rules, HdrCompensation)
{
  TestPage params;
  params.edit("HDRcomp", 1);
  EXPECT_TRUE(params.shown("HDRcomp"));
  EXPECT_FALSE(params.shown("ProcessLinear"));
  EXPECT_FALSE(params.shown("GrainLinear"));
  EXPECT_EQ(params["HDRcomp"], 1.0);
  params.edit("HDRcomp", 0);
  EXPECT_TRUE(params.shown("GrainLinear"));
  EXPECT_TRUE(params.writes.empty());

  params.put("InputGamut", 11);
  params.edit("HDRcomp", 1);
  EXPECT_EQ(params["HDRcomp"], 0.0);
  EXPECT_FALSE(params.shown("HDRcomp"));
  EXPECT_TRUE(params.shown("ProcessLinear"));
  EXPECT_TRUE(params.shown("GrainLinear"));
  EXPECT_THAT(params.written(), ElementsAre("HDRcomp"));
  EXPECT_TRUE(params.allBracketed());
}

struct SideNames
{
  Side side;
  std::string choice, stem;
};

const std::array sides{SideNames{Side::Source, "InResolution", "Source"},
                       SideNames{Side::Target, "OutResolution", "Target"}};

TEST(Rules, TimelineResolutionTakesTheClipsImage)
{
  for (const SideNames& names : sides)
  {
    TestPage params;
    params.put(names.stem + "WidthOffset", 0.25);
    params.edit(names.choice, 0);
    EXPECT_EQ(params[names.stem + "Width"], 1920.0);
    EXPECT_THAT(params.written(), ElementsAre(names.stem + "WidthOffset"));

    params.setImage(names.side, {2000, 900});
    params.edit(names.choice, 0);
    EXPECT_EQ(params[names.stem + "Width"], 2000.0);
    EXPECT_EQ(params[names.stem + "Height"], 900.0);
    EXPECT_THAT(params.written(), ElementsAre(names.stem + "Width", names.stem + "Height"));
    EXPECT_TRUE(params.allBracketed());
    EXPECT_FALSE(params.shown("SpatialEnhancement"));
  }
}

TEST(Rules, CustomResolutionKeepsTheSizesAndShowsThem)
{
  for (const SideNames& names : sides)
  {
    TestPage params;
    params.put(names.stem + "Width", 640);
    params.put(names.stem + "HeightOffset", 0.75);
    params.edit(names.choice, 1);
    EXPECT_TRUE(params.writes.empty());
    EXPECT_EQ(params[names.stem + "Width"], 640.0);
    for (const std::string suffix : {"Width", "Height", "WidthOffset", "HeightOffset"})
      EXPECT_TRUE(params.shown(names.stem + suffix)) << suffix;
    EXPECT_TRUE(params.shown("SpatialEnhancement"));

    params.edit(names.choice, 0);
    for (const std::string suffix : {"Width", "Height", "WidthOffset", "HeightOffset"})
      EXPECT_FALSE(params.shown(names.stem + suffix)) << suffix;
    EXPECT_EQ(params[names.stem + "HeightOffset"], 0.5);
    EXPECT_TRUE(params.shown("SpatialEnhancement"));  // the timeline's choice leaves it
  }
}

TEST(Rules, EveryPresetSetsItsSize)
{
  for (const SideNames& names : sides)
  {
    TestPage params;
    for (std::size_t i = 0; i < resolutionPresets().size(); ++i)
    {
      const int choice = firstPreset + static_cast<int>(i);
      params.put(names.stem + "WidthOffset", 0.1);
      params.edit(names.choice, choice);
      const Size size = resolutionPresets()[i].size;
      EXPECT_EQ(params[names.stem + "Width"], size.width);
      EXPECT_EQ(params[names.stem + "Height"], size.height);
      EXPECT_EQ(params[names.stem + "WidthOffset"], 0.5);
      EXPECT_FALSE(params.shown(names.stem + "Width"));
      EXPECT_TRUE(params.shown("SpatialEnhancement"));
      EXPECT_TRUE(params.allBracketed());
    }
  }
}

TEST(Rules, OnlyAUsersEditDoesAnything)
{
  for (const Reason reason : {Reason::PluginEdited, Reason::TimeChanged})
  {
    TestPage params;
    params.put("CameraStock", 7);
    params.put("SoupBypass", 0);
    params.put("PrintProfile", 3);
    params.put("SaturationRed", 0.9);
    params.put("InputGamut", 27);
    params.put("PrintDisplayBypass", 0);
    const auto before = params.layout();
    for (const Param& param : catalogue())
    {
      params.change(param.name, reason);
      EXPECT_TRUE(params.writes.empty()) << param.name;
    }
    EXPECT_EQ(params.layout(), before);
  }
}

// Each edit of a page is held to be orderly; so this walks every rule.
TEST(Rules, NoRuleWritesWithoutNeed)
{
  for (const Param& param : catalogue())
  {
    if (!isOfThePage(param))
      continue;
    TestPage params;
    params.put("SoupBypass", 0);
    params.put("PrintDisplayBypass", 0);
    if (param.kind == Kind::Rgb)
      params.putRgb(param.name, {0.4, 0.3, 0.2});
    else if (param.kind == Kind::Choice)
      params.put(param.name, static_cast<double>(param.options.size() - 1));
    else if (param.range)
      params.put(param.name, param.range->max);
    params.press(param.name);
    params.press(param.name);
  }
}

TEST(Rules, DisplayChoiceSetsTheBrightness)
{
  for (int display = 0; display <= 14; ++display)
  {
    TestPage params;
    params.put("PrintPeakBrightness", 0.7);
    params.edit("OutputDisplayGamut", display);
    EXPECT_EQ(params["PrintPeakBrightness"], isHdrDisplay(display) ? 0.203 : 0.1) << display;
    EXPECT_EQ(params.shown("PrintPeakBrightness"), isHdrDisplay(display)) << display;
    EXPECT_THAT(params.written(), ElementsAre("PrintPeakBrightness"));
    EXPECT_TRUE(params.allBracketed());
  }
}

TEST(Rules, SoupBypassEndsBleachBypass)
{
  TestPage params;
  params.put("LableachBypass", 1);
  params.put("PrintProfile", 2);
  params.edit("SoupBypass", 1);
  EXPECT_EQ(params["LableachBypass"], 0.0);
  EXPECT_TRUE(params.shown("Bleach"));
  EXPECT_THAT(params.written(), ElementsAre("LableachBypass"));
  EXPECT_TRUE(params.allBracketed());

  TestPage withoutPrint;
  withoutPrint.put("LableachBypass", 1);
  withoutPrint.edit("SoupBypass", 0);
  EXPECT_EQ(withoutPrint["LableachBypass"], 1.0);
  withoutPrint.edit("SoupBypass", 1);
  EXPECT_FALSE(withoutPrint.shown("Bleach"));
}
}  // namespace
}  // namespace morvellan::params
