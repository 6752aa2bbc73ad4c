// The small rules of the page, the dispatch, and what holds for every rule: only a user's edit does anything, nothing
// is written without need, and single writes stand in edit blocks of their own name.
#include "params/rules.h"

#include "params/choices.h"
#include "params/index_classes.h"
#include "tests/params/memory_params.h"

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
    MemoryParams params;
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
  MemoryParams params;
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
    MemoryParams params;
    params.edit("ProcessLinear", value);
    EXPECT_TRUE(params.shown("HDRcomp"));
    EXPECT_FALSE(params.shown("ProcessLinear"));
    EXPECT_FALSE(params.shown("GrainLinear"));  // left as it was described
    params.put("InputGamut", 47);
    params.edit("ProcessLinear", value);
    EXPECT_FALSE(params.shown("HDRcomp"));
    EXPECT_TRUE(params.shown("ProcessLinear"));
    EXPECT_TRUE(params.writes.empty());
  }
}

TEST(Rules, HdrCompensation)
{
  MemoryParams params;
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
    MemoryParams params;
    params.put(names.stem + "WidthOffset", 0.25);
    params.edit(names.choice, 0);
    EXPECT_EQ(params[names.stem + "Width"], 1920.0);
    EXPECT_THAT(params.written(), ElementsAre(names.stem + "WidthOffset"));
    EXPECT_EQ(params.resolutions.at(names.side).size, (Size{1920, 1080}));

    (names.side == Side::Source ? params.sourceImage : params.targetImage) = Size{2000, 900};
    params.edit(names.choice, 0);
    EXPECT_EQ(params[names.stem + "Width"], 2000.0);
    EXPECT_EQ(params[names.stem + "Height"], 900.0);
    EXPECT_THAT(params.written(), ElementsAre(names.stem + "Width", names.stem + "Height"));
    EXPECT_TRUE(params.allBracketed());
    EXPECT_EQ(params.resolutions.size(), 1u);
    EXPECT_EQ(params.resolutions.at(names.side).choice, 0);
    EXPECT_EQ(params.resolutions.at(names.side).size, (Size{2000, 900}));
    EXPECT_FALSE(params.shown("SpatialEnhancement"));
  }
}

TEST(Rules, CustomResolutionKeepsTheSizesAndShowsThem)
{
  for (const SideNames& names : sides)
  {
    MemoryParams params;
    params.put(names.stem + "Width", 640);
    params.put(names.stem + "HeightOffset", 0.75);
    params.edit(names.choice, 1);
    EXPECT_TRUE(params.writes.empty());
    EXPECT_EQ(params.resolutions.at(names.side).choice, 1);
    EXPECT_EQ(params.resolutions.at(names.side).size, (Size{640, 1080}));
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
    MemoryParams params;
    for (std::size_t i = 0; i < resolutionPresets().size(); ++i)
    {
      const int choice = firstPreset + static_cast<int>(i);
      params.put(names.stem + "WidthOffset", 0.1);
      params.edit(names.choice, choice);
      const Size size = resolutionPresets()[i].size;
      EXPECT_EQ(params[names.stem + "Width"], size.width);
      EXPECT_EQ(params[names.stem + "Height"], size.height);
      EXPECT_EQ(params[names.stem + "WidthOffset"], 0.5);
      EXPECT_EQ(params.resolutions.at(names.side).choice, choice);
      EXPECT_EQ(params.resolutions.at(names.side).size, size);
      EXPECT_FALSE(params.shown(names.stem + "Width"));
      EXPECT_TRUE(params.shown("SpatialEnhancement"));
      EXPECT_TRUE(params.allBracketed());
    }
  }
}

TEST(Rules, ButtonsAndDeviceChoicesPerformTheirAction)
{
  const std::vector<std::pair<std::string, Action>> actions{
      {"SaveLooks", Action::SaveLook},  {"LoadLooks", Action::LoadLook}, {"CudaInfo", Action::CudaReport},
      {"ClipInfo", Action::ClipReport}, {"About", Action::AboutReport},  {"GrainDepth", Action::GrainDepthChosen},
      {"NatronGPU", Action::GpuChosen}};
  for (const auto& [name, action] : actions)
  {
    MemoryParams params;
    params.press(name);
    EXPECT_THAT(params.actions, ElementsAre(action)) << name;
    EXPECT_TRUE(params.writes.empty()) << name;
  }
}

TEST(Rules, OnlyAUsersEditDoesAnything)
{
  for (const Reason reason : {Reason::PluginEdited, Reason::TimeChanged})
  {
    MemoryParams params;
    params.put("CameraStock", 7);
    params.put("SoupBypass", 0);
    params.put("PrintProfile", 3);
    params.put("SaturationRed", 0.9);
    params.put("InputGamut", 27);
    params.put("PrintDisplayBypass", 0);
    const auto before = params.layout();
    for (const Param& param : catalogue())
      changedParam(params, param.name, reason);
    EXPECT_TRUE(params.writes.empty());
    EXPECT_TRUE(params.actions.empty());
    EXPECT_EQ(params.layout(), before);
  }
}

TEST(Rules, NamesWithoutARuleAreLeftAlone)
{
  for (const std::string_view name : {"Exposure", "PitchBypass", "CameraCast", "SatZoneLow", "PrintGammaRed", "Input",
                                      "SrcClipChanged", "NoSuchName", ""})
  {
    MemoryParams params;
    const auto before = params.layout();
    params.press(name);
    EXPECT_TRUE(params.writes.empty()) << name;
    EXPECT_EQ(params.layout(), before) << name;
  }
}

// MemoryParams throws for a write without need, out of range, or in another's edit block; so this walks every rule.
TEST(Rules, NoRuleWritesWithoutNeed)
{
  const auto isBulk = [](const Param& param)
  {
    return param.kind == Kind::PushButton || param.name == "CameraStock" || param.name == "PrintProfile" ||
           param.name == "LableachBypass" || param.name == "Bleach";
  };
  for (const Param& param : catalogue())
  {
    MemoryParams params;
    showForValues(params);
    params.put("SoupBypass", 0);
    params.put("PrintDisplayBypass", 0);
    if (param.kind == Kind::Rgb)
      params.putRgb(param.name, {0.4, 0.3, 0.2});
    else if (param.kind == Kind::Choice && param.name != gpuChoice)
      params.put(param.name, static_cast<double>(param.options.size() - 1));
    else if (param.range)
      params.put(param.name, param.range->max);
    params.press(param.name);
    if (!isBulk(param))
    {
      EXPECT_TRUE(params.allBracketed()) << param.name;
    }
    params.press(param.name);
  }
}

TEST(Rules, DisplayChoiceSetsTheBrightness)
{
  for (int display = 0; display <= 14; ++display)
  {
    MemoryParams params;
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
  MemoryParams params;
  params.put("LableachBypass", 1);
  params.put("PrintProfile", 2);
  params.edit("SoupBypass", 1);
  EXPECT_EQ(params["LableachBypass"], 0.0);
  EXPECT_TRUE(params.shown("Bleach"));
  EXPECT_THAT(params.written(), ElementsAre("LableachBypass"));
  EXPECT_TRUE(params.allBracketed());

  MemoryParams withoutPrint;
  withoutPrint.put("LableachBypass", 1);
  withoutPrint.edit("SoupBypass", 0);
  EXPECT_EQ(withoutPrint["LableachBypass"], 1.0);
  withoutPrint.edit("SoupBypass", 1);
  EXPECT_FALSE(withoutPrint.shown("Bleach"));
}
}  // namespace
}  // namespace morvellan::params
