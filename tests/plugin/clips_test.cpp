// What the effect does when its clips change: the fit of the resolution parameters, in two passes.
#include <gmock/gmock.h>

#include "tests/plugin/plugin_host.h"

namespace morvellan::test
{
namespace
{

using host::EffectInstance;
using testing::ElementsAre;

constexpr std::array sizes{"SourceWidth", "SourceHeight", "SourceWidthOffset", "SourceHeightOffset",
                           "TargetWidth", "TargetHeight", "TargetWidthOffset", "TargetHeightOffset"};

class Clips : public PluginTest
{
protected:
  EffectInstance& made(OfxPointD project, const std::map<std::string, host::ParamValue>& stored = {})
  {
    host::InstanceSettings settings;
    settings.projectSize = project;
    settings.project = stored;
    EffectInstance& effect = host_.create(settings);
    host_.clearLog();
    return effect;
  }

  static void setClip(EffectInstance& effect, double width, double height, double aspect = 1.0)
  {
    effect.clip("Source").regionOfDefinition = OfxRectD{0.0, 0.0, width, height};
    effect.clip("Source").setPixelAspect(aspect);
  }

  static std::vector<int> fitted(const EffectInstance& effect)
  {
    std::vector<int> values;
    for (const char* name :
         {"InResolution", "OutResolution", "SourceWidth", "SourceHeight", "TargetWidth", "TargetHeight"})
      values.push_back(effect.value(name).asInt());
    return values;
  }

  static bool sizesShown(const EffectInstance& effect)
  {
    for (const char* name : sizes)
    {
      EXPECT_NE(effect.params().at(name).isSecret(), effect.params().at(name).isEnabled()) << name;
      EXPECT_EQ(effect.params().at(name).isSecret(), effect.params().at(sizes[0]).isSecret()) << name;
    }
    return !effect.params().at(sizes[0]).isSecret();
  }

  static bool shown(const EffectInstance& effect, const char* name)
  {
    return !effect.params().at(name).isSecret() && effect.params().at(name).isEnabled();
  }
};

TEST_F(Clips, AProjectThatMatchesAPresetWins)
{
  EffectInstance& effect = made({1920.0, 1080.0});
  setClip(effect, 777.0, 333.0);
  EXPECT_EQ(effect.clipChanged("Source", kOfxChangeUserEdited), kOfxStatOK);
  const std::vector<int> result = fitted(effect);
  EXPECT_GE(result[0], 2);
  EXPECT_EQ(result[0], result[1]);
  EXPECT_THAT(std::vector<int>(result.begin() + 2, result.end()), ElementsAre(1920, 1080, 1920, 1080));
  // The first pass had shown them.
  EXPECT_FALSE(sizesShown(effect));
  EXPECT_FALSE(shown(effect, "SpatialEnhancement"));
}

TEST_F(Clips, AProjectOfNoPresetIsACustomSize)
{
  EffectInstance& effect = made({1234.0, 567.0});
  setClip(effect, 1920.0, 1080.0);
  EXPECT_EQ(effect.clipChanged("Source", kOfxChangeUserEdited), kOfxStatOK);
  EXPECT_THAT(fitted(effect), ElementsAre(1, 1, 1234, 567, 1234, 567));
  EXPECT_TRUE(sizesShown(effect));
  EXPECT_TRUE(shown(effect, "SpatialEnhancement"));
}

TEST_F(Clips, BothPassesWriteAndEachChoiceIsAnUndoStep)
{
  EffectInstance& effect = made({1920.0, 1080.0});
  setClip(effect, 777.9, 333.9);
  effect.clipChanged("Source", kOfxChangeUserEdited);
  std::vector<std::string> written;
  for (const host::ParameterWrite& write : host_.writes())
  {
    written.push_back(write.parameter + "=" + host::toText(write.after));
    if (write.parameter == "InResolution" || write.parameter == "OutResolution")
      EXPECT_EQ(write.editBlock, write.parameter);
    else
      EXPECT_EQ(write.editBlock, std::nullopt) << write.parameter;
  }
  ASSERT_EQ(written.size(), 13u);
  EXPECT_EQ(written[0], "InResolution=1");
  EXPECT_EQ(written[1], "OutResolution=1");
  EXPECT_EQ(written[2], "SourceWidth=777");
  EXPECT_EQ(written[4], "SourceHeight=333");
  EXPECT_EQ(written[8], "SourceWidth=1920");
  EXPECT_EQ(written.back(), "SrcClipChanged=0");
}

TEST_F(Clips, AnUnconnectedClipLeavesTheProjectsPass)
{
  EffectInstance& effect = made({1920.0, 1080.0});
  effect.clip("Source").setConnected(false);
  EXPECT_EQ(effect.clipChanged("Source", kOfxChangeUserEdited), kOfxStatOK);
  EXPECT_EQ(host_.writes().size(), 7u);
  EXPECT_EQ(effect.value("SourceWidth").asInt(), 1920);
}

TEST_F(Clips, OnlyTheUsersEditOfTheSourceFits)
{
  EffectInstance& effect = made({1920.0, 1080.0});
  setClip(effect, 777.0, 333.0);
  effect.clipChanged("Source", kOfxChangePluginEdited);
  effect.clipChanged("Source", kOfxChangeTime);
  effect.clipChanged("Output", kOfxChangeUserEdited);
  EXPECT_EQ(effect.value("InResolution").asInt(), 0);
  ASSERT_EQ(host_.writes().size(), 3u);
  for (const host::ParameterWrite& write : host_.writes())
    EXPECT_EQ(write.parameter, "SrcClipChanged");
}

TEST_F(Clips, AStoredMarkSkipsOneFit)
{
  EffectInstance& effect = made({1920.0, 1080.0}, {{"SrcClipChanged", true}});
  setClip(effect, 777.0, 333.0);
  effect.clipChanged("Source", kOfxChangeUserEdited);
  EXPECT_EQ(effect.value("InResolution").asInt(), 0);
  EXPECT_FALSE(effect.value("SrcClipChanged").asBool());
  effect.clipChanged("Source", kOfxChangeUserEdited);
  EXPECT_GE(effect.value("InResolution").asInt(), 2);
}

TEST_F(Clips, TheClipsPassComparesThePixelAspectAndTheProjectsDoesNot)
{
  EffectInstance& effect = made({1920.0, 1080.0});
  const auto firstChoice = [&](double aspect)
  {
    host_.clearLog();
    setClip(effect, 1920.0, 1080.0, aspect);
    effect.clipChanged("Source", kOfxChangeUserEdited);
    return host_.writes().front().after.asInt();
  };
  EXPECT_GE(firstChoice(1.0), 2);
  EXPECT_GE(firstChoice(0.0), 2);
  EXPECT_GE(firstChoice(1.005), 2);
  EXPECT_EQ(firstChoice(1.5), 1);
}

// The sizes and pixel aspects of the presets, by their index in both choices.
struct Preset
{
  int index;
  double width, height, aspect;
  int bySize;  // the first preset of that size, whatever its pixels
};

constexpr std::array<Preset, 33> presets{
    Preset{2, 2048, 1080, 1.0, 2},    {3, 1998, 1080, 1.0, 3},   {4, 2048, 858, 1.0, 4},     {5, 4096, 2160, 1.0, 5},
    Preset{6, 3996, 2160, 1.0, 6},    {7, 4096, 1716, 1.0, 7},   {8, 1828, 1332, 1.0, 8},    {9, 1828, 1556, 2.0, 9},
    Preset{10, 3656, 2664, 1.0, 10},  {11, 3656, 3112, 2.0, 11}, {12, 2048, 1556, 1.0, 12},  {13, 4096, 3112, 1.0, 13},
    Preset{14, 2048, 1152, 1.0, 14},  {15, 4096, 2304, 1.0, 15}, {16, 2048, 1024, 1.0, 16},  {17, 4096, 2048, 1.0, 17},
    Preset{18, 1920, 1080, 1.0, 18},  {19, 3840, 2160, 1.0, 19}, {20, 7680, 4320, 1.0, 20},  {21, 1440, 1080, 1.0, 21},
    Preset{22, 1280, 1080, 1.0, 22},  {23, 1280, 720, 1.0, 23},  {24, 960, 720, 1.0, 24},    {25, 720, 486, 0.9, 25},
    Preset{26, 720, 540, 1.0, 26},    {27, 720, 486, 1.2, 25},   {28, 720, 576, 1.0667, 28}, {29, 768, 576, 1.0, 29},
    Preset{30, 720, 576, 1.4223, 28}, {31, 648, 486, 1.0, 31},   {32, 640, 480, 1.0, 32},    {33, 720, 480, 1.0, 33},
    Preset{34, 352, 240, 1.0, 34}};

TEST_F(Clips, EveryPresetIsFoundByTheClipAndByTheProject)
{
  EffectInstance& effect = made({1234.0, 567.0});
  const auto firstChoice = [&]
  {
    host_.clearLog();
    EXPECT_EQ(effect.clipChanged("Source", kOfxChangeUserEdited), kOfxStatOK);
    return host_.writes().front().after.asInt();
  };
  for (const Preset& preset : presets)
  {
    // The integer part of the region counts, and a pixel aspect within a hundredth.
    for (const double off : {-0.009, 0.0, 0.009})
    {
      setClip(effect, preset.width + 0.9, preset.height + 0.9, preset.aspect + off);
      EXPECT_EQ(firstChoice(), preset.index) << preset.index << ' ' << off;
    }
    setClip(effect, preset.width, preset.height, preset.aspect + 0.02);
    EXPECT_EQ(firstChoice(), 1) << preset.index;
    EXPECT_EQ(effect.value("InResolution").asInt(), 1);

    effect.setProjectSize({preset.width, preset.height});
    firstChoice();
    EXPECT_EQ(effect.value("InResolution").asInt(), preset.bySize) << preset.index;
    EXPECT_EQ(effect.value("OutResolution").asInt(), preset.bySize) << preset.index;
    EXPECT_FALSE(sizesShown(effect));
    EXPECT_FALSE(shown(effect, "SpatialEnhancement"));
    effect.setProjectSize({1234.0, 567.0});
  }
}

TEST_F(Clips, TheLastPresetIsNotLookedAt)
{
  EffectInstance& effect = made({320.0, 240.0});
  setClip(effect, 320.0, 240.0);
  effect.clipChanged("Source", kOfxChangeUserEdited);
  EXPECT_EQ(host_.writes().front().after.asInt(), 1);
  EXPECT_THAT(fitted(effect), ElementsAre(1, 1, 320, 240, 320, 240));
  EXPECT_TRUE(sizesShown(effect));
}

TEST_F(Clips, ReconnectingOverwritesTheUsersSizes)
{
  EffectInstance& effect = made({1234.0, 567.0});
  setClip(effect, 640.0, 480.0);
  effect.clipChanged("Source", kOfxChangeUserEdited);
  effect.edit("SourceWidth", 500);
  effect.clipChanged("Source", kOfxChangeUserEdited);
  EXPECT_EQ(effect.value("SourceWidth").asInt(), 1234);
}

TEST_F(Clips, AClipWithoutARegionCountsAsEmpty)
{
  EffectInstance& effect = made({1920.0, 1080.0});
  effect.clip("Source").regionOfDefinition = std::nullopt;
  EXPECT_EQ(effect.clipChanged("Source", kOfxChangeUserEdited), kOfxStatOK);
  // The first pass: no preset, and the controls at their least.
  EXPECT_EQ(host_.writes()[0].after.asInt(), 1);
  EXPECT_EQ(host_.writes()[2].after.asInt(), 10);
  EXPECT_EQ(effect.value("SourceWidth").asInt(), 1920);
}

TEST_F(Clips, ARegionWithoutBoundsIsHeldAtTheControlsEnds)
{
  EffectInstance& effect = made({1920.0, 1080.0});
  effect.clip("Source").regionOfDefinition = OfxRectD{-1e30, -1e30, 1e30, 1e30};
  EXPECT_EQ(effect.clipChanged("Source", kOfxChangeUserEdited), kOfxStatOK);
  EXPECT_EQ(host_.writes()[2].after.asInt(), 12288);
}

}  // namespace
}  // namespace morvellan::test
