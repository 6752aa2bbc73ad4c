// The making of an instance on machines of this kind and that, its identity and its end.
#include <array>
#include <atomic>
#include <fstream>
#include <mutex>

#include <gmock/gmock.h>

#include "ofx/ofxMemory.h"
#include "ofx/ofxMultiThread.h"
#include "ofx/ofxParametricParam.h"
#include "ofx/ofxProgress.h"
#include "ofx/ofxTimeLine.h"
#include "tests/plugin/plugin_host.h"

namespace morvellan::test
{
namespace
{

using host::EffectInstance;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* noGpu = "MORVELLAN ON A NODE TREE / TIMELINE MAY CRASH NATRON";

class Instance : public PluginTest
{
protected:
  EffectInstance& made(const std::map<std::string, host::ParamValue>& project = {})
  {
    host::InstanceSettings settings;
    settings.project = project;
    return host_.create(settings);
  }
};

TEST_F(Instance, AGoodMachineSaysNothing)
{
  made();
  EXPECT_THAT(host_.persistentMessages(), IsEmpty());
  EXPECT_THAT(host_.messages(), IsEmpty());
}

TEST_F(Instance, TheStoredSettingsAreShown)
{
  std::ofstream(folder_.file()) << ConfigFolder::text(0, 1);
  EffectInstance& effect = made();
  EXPECT_EQ(effect.value("GrainDepth").asInt(), 1);
  EXPECT_EQ(effect.value("NatronGPU").asInt(), 0);
}

TEST_F(Instance, AStoredProjectIsShownAsItWasLeft)
{
  EffectInstance& effect = made({{"SoftClips", 1}, {"InResolution", 1}, {"ToneCurves", 2}});
  EXPECT_FALSE(effect.params().at("CameraHighlightsCeiling").isSecret());
  EXPECT_TRUE(effect.params().at("CameraHighlightsCeiling").isEnabled());
  EXPECT_TRUE(effect.params().at("CameraShadowsCeiling").isSecret());
  EXPECT_FALSE(effect.params().at("SourceWidth").isSecret());
  EXPECT_TRUE(effect.params().at("TargetWidth").isSecret());
  EXPECT_FALSE(effect.params().at("SoupToePivot").isSecret());
  EXPECT_TRUE(effect.params().at("SoupShoulderPivot").isSecret());
}

TEST_F(Instance, ASelectionBeyondTheDevicesIsReverted)
{
  std::ofstream(folder_.file()) << ConfigFolder::text(2, 1);
  EffectInstance& effect = made();
  EXPECT_THAT(textsOf(host_.persistentMessages()),
              ElementsAre("Morvellan : 3rd GPU set in Morvellan's list. Only 1st GPU available. Reverted to 1st GPU."));
  EXPECT_EQ(effect.value("NatronGPU").asInt(), 0);
  EXPECT_EQ(folder_.content(), ConfigFolder::text(0, 1));
}

TEST_F(Instance, NoFileIsAFirstUse)
{
  std::filesystem::remove(folder_.file());
  EffectInstance& effect = made();
  ASSERT_EQ(host_.persistentMessages().size(), 1u);
  EXPECT_EQ(host_.persistentMessages()[0].type, kOfxMessageError);
  EXPECT_EQ(host_.persistentMessages()[0].id, "");
  EXPECT_THAT(host_.persistentMessages()[0].text,
              HasSubstr("For very first-time use of Morvellan, disregard this message"));
  EXPECT_EQ(folder_.content(), ConfigFolder::text(0, 3));
  EXPECT_EQ(effect.value("GrainDepth").asInt(), 3);
}

TEST_F(Instance, AGoodFileIsLeftAlone)
{
  const auto before = std::filesystem::last_write_time(folder_.file());
  for (int i = 0; i < 20; ++i)
    host_.destroy(made());
  EXPECT_EQ(std::filesystem::last_write_time(folder_.file()), before);
  EXPECT_EQ(folder_.content(), ConfigFolder::text(0, 0));
}

TEST_F(Instance, IdentityAtTheDefaults)
{
  EffectInstance& effect = made();
  const auto identity = effect.isIdentity(7.0);
  ASSERT_TRUE(identity);
  EXPECT_EQ(identity->clip, "Source");
  EXPECT_EQ(identity->time, 7.0);
}

TEST_F(Instance, AnySwitchEndsTheIdentity)
{
  const std::vector<std::pair<std::string, host::ParamValue>> switches{
      {"SoupBypass", false}, {"HalationBypass", false}, {"Exposure", 0.01},    {"SoftClips", 2},
      {"SourceWidth", 1000}, {"TargetHeight", 700},     {"GrainBypass", false}};
  for (const auto& [name, value] : switches)
  {
    EffectInstance& effect = made({{name, value}});
    EXPECT_FALSE(effect.isIdentity(0.0)) << name;
  }
}

TEST_F(Instance, WhatDoesNotEndTheIdentity)
{
  EXPECT_TRUE(made({{"PitchBypass", false}, {"EnsemblePitch", 3.0}}).isIdentity(0.0));
  EXPECT_FALSE(made({{"PitchBypass", false}, {"EnsemblePitch", 3.1}}).isIdentity(0.0));
  EXPECT_TRUE(made({{"GrainBypass", false}, {"StrengthRGB", 0.0}}).isIdentity(0.0));
  EXPECT_TRUE(
      made({{"SpatialEnhancement", 1}, {"CombinedEnhancer", 0.0}, {"HorizontalEnhancer", 4.0}}).isIdentity(0.0));
  EXPECT_FALSE(made({{"SpatialEnhancement", 1}, {"CombinedEnhancer", 0.5}}).isIdentity(0.0));
}

TEST_F(Instance, IdentityIsAskedAtItsTime)
{
  EffectInstance& effect = made();
  effect.params().at("Exposure").setKey(0.0, 0.0);
  effect.params().at("Exposure").setKey(10.0, 0.5);
  EXPECT_TRUE(effect.isIdentity(0.0));
  EXPECT_FALSE(effect.isIdentity(5.0));
}

TEST_F(Instance, TwoInstancesKeepTheirOwnValues)
{
  EffectInstance& bright = made({{"Exposure", 0.1}});
  EffectInstance& plain = made({{"SoftClips", 1}});
  const host::Frame source = rampOf(16, 8);
  const host::Frame alone = renderFrame(bright, source);
  std::vector<std::function<void()>> jobs;
  std::vector<float> differences(2, -1.0F);
  jobs.emplace_back(
      [&]
      {
        for (int i = 0; i < 50; ++i)
          differences[0] = std::max(differences[0], greatestDifference(renderFrame(bright, source), alone));
      });
  jobs.emplace_back(
      [&]
      {
        for (int i = 0; i < 50; ++i)
          differences[1] = std::max(differences[1], greatestDifference(renderFrame(plain, source), source));
      });
  runTogether(jobs);
  EXPECT_THAT(differences, ElementsAre(0.0F, 0.0F));
}

// A host that renders frames of two instances from eight threads, one frame of an instance at a time: how many frames
// are not those of one thread. The last source is large enough for a frame to have several threads of its own, too.
int framesThatDiffer(const std::array<EffectInstance*, 2>& effects, std::size_t framesOfAThread)
{
  std::array<host::Frame, 6> sources{rampOf(40, 30), rampOf(64, 16),
                                     rampOf(17, 33), rampOf(40, 30, host::Components::Rgb),
                                     rampOf(12, 90), rampOf(190, 130)};
  const auto frame = [&](std::size_t effect, std::size_t source)
  { return renderFrame(*effects[effect], sources[source], static_cast<double>(source)); };
  std::vector<host::Frame> expected;
  for (std::size_t effect = 0; effect < effects.size(); ++effect)
    for (std::size_t source = 0; source < sources.size(); ++source)
      expected.push_back(frame(effect, source));

  std::array<std::mutex, 2> oneFrameAtATime;
  std::atomic<int> wrong{0};
  std::vector<std::function<void()>> jobs;
  for (std::size_t thread = 0; thread < 8; ++thread)
    jobs.emplace_back(
        [&, thread]
        {
          for (std::size_t i = 0; i < framesOfAThread; ++i)
          {
            const std::size_t effect = (thread + i) % effects.size();
            const std::size_t source = (thread * 5 + i) % sources.size();
            const std::lock_guard lock(oneFrameAtATime[effect]);
            if (greatestDifference(frame(effect, source), expected[effect * sources.size() + source]) != 0.0F)
              ++wrong;
          }
        });
  runTogether(jobs);
  return wrong;
}

TEST_F(Instance, EightThreadsGiveThePixelsOfOne)
{
  EXPECT_EQ(framesThatDiffer({&made({{"Exposure", 0.1}}),
                              &made({{"Exposure", -0.05}, {"SoftClips", 1}, {"CameraHighlightsCeiling", 0.7}})},
                             24),
            0);
}

// Film and print beside grain and pitch, whose tables every size of frame makes anew.
TEST_F(Instance, EightThreadsGiveThePixelsOfOneThroughTheWholeChain)
{
  EXPECT_EQ(framesThatDiffer({&made({{"SoupBypass", false},
                                     {"HalationBypass", false},
                                     {"LabDiffuseLoMid", 0.5},
                                     {"PrintDisplayBypass", false},
                                     {"PrintProfile", 2}}),
                              &made({{"GrainBypass", false},
                                     {"SizeRed", 1.0},
                                     {"SizeGreen", 2.0},
                                     {"VarianceBlue", 1.0},
                                     {"PitchBypass", false},
                                     {"EnsemblePitch", 4.0},
                                     {"SpatialEnhancement", 1}})},
                             6),
            0);
}

// Both run the same stages: what two instances could share, both use.
TEST_F(Instance, EightThreadsGiveThePixelsOfOneThroughTheSameStages)
{
  std::map<std::string, host::ParamValue> every{
      {"SoupBypass", false},     {"HalationBypass", false}, {"LabDiffuseLoMid", 0.5}, {"PrintDisplayBypass", false},
      {"PrintProfile", 2},       {"GrainBypass", false},    {"SizeGreen", 2.0},       {"PitchBypass", false},
      {"SpatialEnhancement", 1}, {"EnsemblePitch", 4.0}};
  EffectInstance& one = made(every);
  every["Exposure"] = 0.1;
  every["PrintProfile"] = 5;
  every["SizeGreen"] = 0.5;
  EXPECT_EQ(framesThatDiffer({&one, &made(every)}, 6), 0);
}

TEST_F(Instance, PlainActionsDoNothing)
{
  EffectInstance& effect = made();
  for (const char* action :
       {kOfxActionPurgeCaches, kOfxActionSyncPrivateData, kOfxActionBeginInstanceEdit, kOfxActionEndInstanceEdit})
    EXPECT_EQ(effect.simple(action), kOfxStatOK) << action;
  EXPECT_EQ(effect.beginSequence({0.0, 3.0}, 1.0), kOfxStatOK);
  EXPECT_EQ(effect.endSequence({0.0, 3.0}, 1.0), kOfxStatOK);
  EXPECT_EQ(effect.framesNeeded(0.0), kOfxStatReplyDefault);
  EXPECT_EQ(effect.regionsOfInterest(0.0, {0, 0, 8, 8}), kOfxStatReplyDefault);
  EXPECT_EQ(effect.clipPreferences(), kOfxStatReplyDefault);
}

TEST_F(Instance, BadHandlesAreBadHandles)
{
  EXPECT_EQ(host_.plugin().callRaw(kOfxImageEffectActionRender, nullptr, nullptr, nullptr), kOfxStatErrBadHandle);
  EXPECT_EQ(host_.plugin().callRaw(kOfxActionCreateInstance, nullptr, nullptr, nullptr), kOfxStatErrBadHandle);
  EXPECT_EQ(host_.plugin().callRaw("OfxActionUnheardOf", nullptr, nullptr, nullptr), kOfxStatReplyDefault);
}

TEST(InstanceWithoutADevice, LivesAndIsIdentity)
{
  const ConfigFolder folder;
  StrictHost host(MORVELLAN_BUNDLE, pluginOptions(folder, "auto"));
  EffectInstance& effect = host.create();
  const std::vector<host::Message> messages = host.persistentMessages();
  if (messages.empty())
    GTEST_SKIP() << "this machine has a GPU that renders";
  ASSERT_EQ(messages.size(), 1u);
  EXPECT_EQ(messages[0].type, kOfxMessageError);
  EXPECT_THAT(messages[0].text, testing::StartsWith("Morvellan : "));
  EXPECT_THAT(messages[0].text, HasSubstr(noGpu));
  effect.edit("Exposure", 0.5);
  effect.edit("SoupBypass", false);
  for (const double time : {-3.0, 0.0, 12.5})
  {
    const auto identity = effect.isIdentity(time);
    ASSERT_TRUE(identity);
    EXPECT_EQ(identity->time, time);
  }
}

TEST(InstanceOnAnUnknownDevice, IsToldSo)
{
  const ConfigFolder folder;
  StrictHost host(MORVELLAN_BUNDLE, pluginOptions(folder, "quantum"));
  host.create();
  ASSERT_FALSE(host.persistentMessages().empty());
  EXPECT_THAT(host.persistentMessages()[0].text, HasSubstr("quantum"));
}

TEST(InstanceOnLackingHosts, AMissingSuiteFailsTheLoad)
{
  const ConfigFolder folder;
  for (const char* suite : {kOfxImageEffectSuite, kOfxPropertySuite, kOfxParameterSuite, kOfxMemorySuite,
                            kOfxMultiThreadSuite, kOfxMessageSuite})
  {
    StrictOptions options = pluginOptions(folder, "cpu");
    options.traits.withheldSuites = {{suite, 1}};
    EXPECT_THROW(StrictHost(MORVELLAN_BUNDLE, options), host::LoadError) << suite;
  }
}

TEST(InstanceOnLackingHosts, AMissingOptionalSuiteDoesNot)
{
  const ConfigFolder folder;
  StrictOptions options = pluginOptions(folder, "cpu");
  options.traits.withheldSuites = {
      {kOfxProgressSuite, 1}, {kOfxProgressSuite, 2}, {kOfxTimeLineSuite, 1}, {kOfxParametricParameterSuite, 1}};
  StrictHost host(MORVELLAN_BUNDLE, options);
  host.create();
}

TEST(InstanceChurn, AThousandComeAndGo)
{
  const ConfigFolder folder;
  StrictHost host(MORVELLAN_BUNDLE, pluginOptions(folder, "cpu"));
  EffectInstance& effect = host.prepare();
  for (int i = 0; i < 1000; ++i)
  {
    ASSERT_EQ(effect.create(), kOfxStatOK);
    ASSERT_EQ(effect.destroy(), kOfxStatOK);
  }
  EXPECT_THAT(host.persistentMessages(), IsEmpty());
  EXPECT_EQ(folder.content(), ConfigFolder::text(0, 0));
}

}  // namespace
}  // namespace morvellan::test
