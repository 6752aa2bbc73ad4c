// What the effect does when its clips change: the fit of the resolution parameters, in two passes.
#include <gmock/gmock.h>

#include "tests/plugin/plugin_host.h"

namespace morvellan::test
{
namespace
{

using host::EffectInstance;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

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

  // The index of the resolution option whose label begins so.
  static int optionOf(const EffectInstance& effect, const std::string& start)
  {
    const std::vector<std::string> options = effect.params().at("InResolution").options();
    for (std::size_t i = 0; i < options.size(); ++i)
      if (options[i].starts_with(start))
        return static_cast<int>(i);
    return -1;
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
  // A preset that only an anamorphic pixel fits, if the list has one of a size of its own.
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
