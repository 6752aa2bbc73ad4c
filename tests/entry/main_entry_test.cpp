#include "entry/main_entry.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "entry/exceptions.h"
#include "entry/local_multi_thread.h"
#include "entry/plugin_factory.h"
#include "entry/plugin_list.h"
#include "ofx/ofxNatron.h"
#include "tests/entry/fake_host.h"
#include "tests/entry/log_file.h"

namespace
{

// An effect that notes what reaches it.
struct Notes
{
  std::vector<std::string> calls;
  bool identity = false;
};

Notes notes;

class ProbeEffect : public OFX::ImageEffect
{
public:
  using ImageEffect::ImageEffect;
  ~ProbeEffect() override { notes.calls.push_back("destroy"); }
  void render(const OFX::RenderArguments& arguments) override
  {
    notes.calls.push_back(fmt::format("render {} {}", arguments.time, arguments.renderWindow.x2));
    if (arguments.time < 0.0)
      throw OFX::Exception::Suite(kOfxStatErrFormat);
  }
  bool isIdentity(const OFX::IdentityArguments& arguments, OFX::IdentityAnswer& answer) override
  {
    answer = {.clip = "Source", .time = arguments.time};
    return notes.identity;
  }
  void changedParam(const OFX::ChangeArguments& arguments, const std::string& name) override
  {
    notes.calls.push_back(fmt::format("param {} {}", name, static_cast<int>(arguments.reason)));
  }
  void changedClip(const OFX::ChangeArguments& arguments, const std::string& name) override
  {
    notes.calls.push_back(fmt::format("clip {} {}", name, static_cast<int>(arguments.reason)));
  }
};

class ProbeFactory : public OFX::PluginFactoryHelper<ProbeFactory>
{
public:
  ProbeFactory() : PluginFactoryHelper("test.probe", 2, 5) {}
  void load() override { notes.calls.push_back("load"); }
  void unload() override { notes.calls.push_back("unload"); }
  void describe(OFX::ImageEffectDescriptor&) override { notes.calls.push_back("describe"); }
  void describeInContext(OFX::ImageEffectDescriptor&, const std::string& context) override
  {
    notes.calls.push_back("describe in " + context);
  }
  std::unique_ptr<OFX::ImageEffect> createInstance(OfxImageEffectHandle handle, const std::string&) override
  {
    return std::make_unique<ProbeEffect>(handle);
  }
};

ProbeFactory factory;

class MainEntryTest : public testing::Test
{
protected:
  MainEntryTest()
  {
    notes = {};
    factory.mainEntry()(kOfxActionLoad, nullptr, nullptr, nullptr);
    notes = {};
    in_.values[kOfxPropTime] = {4.0};
    in_.values[kOfxImageEffectPropRenderWindow] = {0, 0, 16, 9};
    in_.values[kOfxImageEffectPropRenderScale] = {1.0, 1.0};
    in_.values[kOfxPropChangeReason] = {std::string(kOfxChangePluginEdited)};
    in_.values[kOfxPropName] = {std::string("Exposure")};
    in_.values[kOfxPropType] = {std::string(kOfxTypeParameter)};
  }

  OfxStatus send(const char* action, const void* handle, OfxPropertySetHandle in = nullptr,
                 OfxPropertySetHandle out = nullptr)
  {
    return factory.mainEntry()(action, handle, in, out);
  }

  OfxStatus create() { return send(kOfxActionCreateInstance, effect_.handle()); }

  fake::Host host_;
  fake::Effect effect_;
  fake::Properties in_;
  fake::Properties out_;
};

TEST_F(MainEntryTest, FirstAndLastActAreLogLinesAroundIndentedOnes)
{
  const LogFile log;
  EXPECT_EQ(send(kOfxActionDestroyInstance, nullptr), kOfxStatErrBadHandle);
  EXPECT_EQ(log.text(), "START mainEntry (OfxActionDestroyInstance)\n"
                        "    ERROR : 'Handle passed to 'OfxActionDestroyInstance' is null.\n"
                        "    ERROR : Action ended with kOfxStatErrBadHandle : kOfxStatErrBadHandle\n"
                        "STOP mainEntry (OfxActionDestroyInstance)\n\n");
  EXPECT_EQ(OFX::Log::nesting(), 0);
}

TEST_F(MainEntryTest, AnUnknownActionIsLeftToTheHostAndTouchesNothing)
{
  EXPECT_EQ(send("OfxActionOfTomorrow", nullptr), kOfxStatReplyDefault);
  EXPECT_EQ(send("OfxActionOfTomorrow", effect_.handle(), in_.handle(), out_.handle()), kOfxStatReplyDefault);
  EXPECT_EQ(send(nullptr, nullptr), kOfxStatReplyDefault);
  EXPECT_TRUE(notes.calls.empty());
  EXPECT_TRUE(effect_.properties.values.empty());
  EXPECT_TRUE(out_.values.empty());
}

TEST_F(MainEntryTest, HandlesAreCheckedWithTheirTexts)
{
  const LogFile log;
  EXPECT_EQ(send(kOfxImageEffectActionIsIdentity, nullptr), kOfxStatErrBadHandle);
  EXPECT_EQ(send(kOfxActionUnload, effect_.handle(), in_.handle(), out_.handle()), kOfxStatOK);
  const std::string text = log.text();
  for (const char* line : {"ERROR : 'Handle passed to 'OfxImageEffectActionIsIdentity' is null.\n",
                           "ERROR : 'inArgs' handle passed to 'OfxImageEffectActionIsIdentity' is null.\n",
                           "ERROR : 'outArgs' handle passed to 'OfxImageEffectActionIsIdentity' is null.\n",
                           "WARNING : Handle passed to 'OfxActionUnload' is not null.\n",
                           "WARNING : 'inArgs' Handle passed to 'OfxActionUnload' is not null.\n",
                           "WARNING : 'outArgs' Handle passed to 'OfxActionUnload' is not null.\n"})
    EXPECT_NE(text.find(line), std::string::npos) << line;
}

// Every action with nothing at all, and with all that it does not want: the texts, and whether it ends there.
TEST_F(MainEntryTest, EveryActionChecksItsHandles)
{
  struct Wants
  {
    const char* action;
    bool handle, in, out;
  };
  for (const Wants& wants : {Wants{kOfxActionDescribe, true, false, false},
                             {kOfxImageEffectActionDescribeInContext, true, true, false},
                             {kOfxActionCreateInstance, true, false, false},
                             {kOfxActionDestroyInstance, true, false, false},
                             {kOfxImageEffectActionRender, true, true, false},
                             {kOfxImageEffectActionIsIdentity, true, true, true},
                             {kOfxActionInstanceChanged, true, true, false},
                             {kOfxActionBeginInstanceChanged, true, true, false},
                             {kOfxActionEndInstanceChanged, true, true, false},
                             {kOfxImageEffectActionBeginSequenceRender, true, true, false},
                             {kOfxImageEffectActionEndSequenceRender, true, true, false},
                             {kOfxImageEffectActionGetRegionOfDefinition, true, true, true},
                             {kOfxImageEffectActionGetRegionsOfInterest, true, true, true},
                             {kOfxImageEffectActionGetFramesNeeded, true, true, true},
                             {kOfxImageEffectActionGetClipPreferences, true, false, true},
                             {kOfxImageEffectActionGetTimeDomain, true, false, true},
                             {kOfxActionPurgeCaches, true, false, false},
                             {kOfxActionSyncPrivateData, true, false, false},
                             {kOfxActionBeginInstanceEdit, true, false, false},
                             {kOfxActionEndInstanceEdit, true, false, false},
                             {kOfxActionUnload, false, false, false},
                             {kOfxActionLoad, false, false, false}})
  {
    const auto lines = [&](const char* handle, const char* in, const char* out)
    {
      std::string text;
      for (const char* line : {handle, in, out})
        if (line != nullptr)
          text += fmt::format(fmt::runtime(line), wants.action);
      return text;
    };
    const LogFile log;
    const OfxStatus status = send(wants.action, nullptr);
    const bool complete = !wants.handle && !wants.in && !wants.out;
    EXPECT_EQ(status, complete ? kOfxStatOK : kOfxStatErrBadHandle) << wants.action;
    EXPECT_NE(log.text().find(lines(wants.handle ? "    ERROR : 'Handle passed to '{}' is null.\n" : nullptr,
                                    wants.in ? "    ERROR : 'inArgs' handle passed to '{}' is null.\n" : nullptr,
                                    wants.out ? "    ERROR : 'outArgs' handle passed to '{}' is null.\n" : nullptr)),
              std::string::npos)
        << log.text();
    send(wants.action, effect_.handle(), in_.handle(), out_.handle());
    EXPECT_NE(
        log.text().find(lines(wants.handle ? nullptr : "    WARNING : Handle passed to '{}' is not null.\n",
                              wants.in ? nullptr : "    WARNING : 'inArgs' Handle passed to '{}' is not null.\n",
                              wants.out ? nullptr : "    WARNING : 'outArgs' Handle passed to '{}' is not null.\n")),
        std::string::npos)
        << log.text();
  }
  send(kOfxActionDestroyInstance, effect_.handle());
}

TEST_F(MainEntryTest, ANullInstanceHandleDoesNotReachTheRender)
{
  ASSERT_EQ(create(), kOfxStatOK);
  EXPECT_EQ(send(kOfxImageEffectActionRender, nullptr, in_.handle()), kOfxStatErrBadHandle);
  EXPECT_EQ(send(kOfxImageEffectActionRender, effect_.handle(), nullptr), kOfxStatErrBadHandle);
  EXPECT_TRUE(notes.calls.empty());
  EXPECT_EQ(send(kOfxActionDestroyInstance, effect_.handle()), kOfxStatOK);
}

TEST_F(MainEntryTest, InstancesBelongToTheirHandles)
{
  EXPECT_EQ(send(kOfxImageEffectActionRender, effect_.handle(), in_.handle()), kOfxStatErrMissingHostFeature);
  ASSERT_EQ(create(), kOfxStatOK);
  EXPECT_NE(std::get<void*>(effect_.properties.values[kOfxPropInstanceData][0]), nullptr);
  EXPECT_EQ(send(kOfxImageEffectActionRender, effect_.handle(), in_.handle()), kOfxStatOK);
  EXPECT_EQ(send(kOfxActionDestroyInstance, effect_.handle()), kOfxStatOK);
  EXPECT_EQ(std::get<void*>(effect_.properties.values[kOfxPropInstanceData][0]), nullptr);
  EXPECT_EQ(send(kOfxActionDestroyInstance, effect_.handle()), kOfxStatErrBadHandle);
  EXPECT_EQ(notes.calls, (std::vector<std::string>{"render 4 16", "destroy"}));
}

TEST_F(MainEntryTest, WhatAnOperationRaisesBecomesTheStatus)
{
  ASSERT_EQ(create(), kOfxStatOK);
  in_.values[kOfxPropTime] = {-1.0};
  EXPECT_EQ(send(kOfxImageEffectActionRender, effect_.handle(), in_.handle()), kOfxStatErrFormat);
  in_.values.erase(kOfxPropTime);
  EXPECT_EQ(send(kOfxImageEffectActionRender, effect_.handle(), in_.handle()), kOfxStatErrMissingHostFeature);
  send(kOfxActionDestroyInstance, effect_.handle());
}

TEST_F(MainEntryTest, IdentityFillsItsAnswerOnlyWhereItHolds)
{
  ASSERT_EQ(create(), kOfxStatOK);
  EXPECT_EQ(send(kOfxImageEffectActionIsIdentity, effect_.handle(), in_.handle(), out_.handle()), kOfxStatReplyDefault);
  EXPECT_TRUE(out_.values.empty());
  notes.identity = true;
  EXPECT_EQ(send(kOfxImageEffectActionIsIdentity, effect_.handle(), in_.handle(), out_.handle()), kOfxStatOK);
  EXPECT_EQ(std::get<std::string>(out_.values[kOfxPropName][0]), "Source");
  EXPECT_EQ(std::get<double>(out_.values[kOfxPropTime][0]), 4.0);
  send(kOfxActionDestroyInstance, effect_.handle());
}

TEST_F(MainEntryTest, ChangesReachTheirHandlers)
{
  ASSERT_EQ(create(), kOfxStatOK);
  EXPECT_EQ(send(kOfxActionBeginInstanceChanged, effect_.handle(), in_.handle()), kOfxStatOK);
  EXPECT_EQ(send(kOfxActionInstanceChanged, effect_.handle(), in_.handle()), kOfxStatOK);
  in_.values[kOfxPropType] = {std::string(kOfxTypeClip)};
  in_.values[kOfxPropName] = {std::string("Source")};
  in_.values[kOfxPropChangeReason] = {std::string(kOfxChangeUserEdited)};
  EXPECT_EQ(send(kOfxActionInstanceChanged, effect_.handle(), in_.handle()), kOfxStatOK);
  EXPECT_EQ(send(kOfxActionEndInstanceChanged, effect_.handle(), in_.handle()), kOfxStatOK);
  in_.values[kOfxPropType] = {std::string("OfxTypeOther")};
  EXPECT_EQ(send(kOfxActionInstanceChanged, effect_.handle(), in_.handle()), kOfxStatReplyDefault);
  EXPECT_EQ(notes.calls, (std::vector<std::string>{"param Exposure 1", "clip Source 0"}));
  send(kOfxActionDestroyInstance, effect_.handle());
}

TEST_F(MainEntryTest, ReplyActionsLeaveTheHostsDefaults)
{
  ASSERT_EQ(create(), kOfxStatOK);
  for (const char* action : {kOfxImageEffectActionGetRegionOfDefinition, kOfxImageEffectActionGetRegionsOfInterest,
                             kOfxImageEffectActionGetFramesNeeded})
    EXPECT_EQ(send(action, effect_.handle(), in_.handle(), out_.handle()), kOfxStatReplyDefault) << action;
  for (const char* action : {kOfxImageEffectActionGetClipPreferences, kOfxImageEffectActionGetTimeDomain})
    EXPECT_EQ(send(action, effect_.handle(), nullptr, out_.handle()), kOfxStatReplyDefault) << action;
  EXPECT_TRUE(out_.values.empty());
  for (const char* action :
       {kOfxActionPurgeCaches, kOfxActionSyncPrivateData, kOfxActionBeginInstanceEdit, kOfxActionEndInstanceEdit})
    EXPECT_EQ(send(action, effect_.handle()), kOfxStatOK) << action;
  in_.values[kOfxImageEffectPropFrameRange] = {1.0, 5.0};
  for (const char* action : {kOfxImageEffectActionBeginSequenceRender, kOfxImageEffectActionEndSequenceRender})
    EXPECT_EQ(send(action, effect_.handle(), in_.handle()), kOfxStatOK) << action;
  send(kOfxActionDestroyInstance, effect_.handle());
}

TEST_F(MainEntryTest, DescribeActionsReachTheFactory)
{
  EXPECT_EQ(send(kOfxActionDescribe, effect_.handle()), kOfxStatOK);
  in_.values[kOfxImageEffectPropContext] = {std::string(kOfxImageEffectContextFilter)};
  EXPECT_EQ(send(kOfxImageEffectActionDescribeInContext, effect_.handle(), in_.handle()), kOfxStatOK);
  EXPECT_EQ(notes.calls, (std::vector<std::string>{"describe", "describe in OfxImageEffectContextFilter"}));
}

TEST_F(MainEntryTest, TheHostRecordLivesFromLoadToUnload)
{
  ASSERT_NE(OFX::hostDescription(), nullptr);
  EXPECT_EQ(OFX::hostDescription()->name, "fr.inria.Natron");
  EXPECT_EQ(send(kOfxActionUnload, nullptr), kOfxStatOK);
  EXPECT_EQ(OFX::hostDescription(), nullptr);
  host_.properties.values["NatronOfxHostIsNatron"] = {1};
  host_.properties.values["NatronOfxParamHostPropSupportsDynamicChoices"] = {1};
  host_.properties.values[kOfxPropAPIVersion] = {1, 4};
  EXPECT_EQ(send(kOfxActionLoad, nullptr), kOfxStatOK);
  EXPECT_TRUE(OFX::hostDescription()->isNatron);
  EXPECT_TRUE(OFX::hostDescription()->supportsDynamicChoices);
  EXPECT_EQ(OFX::hostDescription()->apiVersion, (std::vector<int>{1, 4}));
}

TEST_F(MainEntryTest, TheHostRecordHoldsWhatTheHostSays)
{
  // A host that says nothing more than its name lacks everything and sets no limit.
  const OFX::HostDescription bare = *OFX::hostDescription();
  EXPECT_EQ(bare.label, "fr.inria.Natron");
  EXPECT_TRUE(bare.version.empty());
  EXPECT_EQ(bare.maxParameters, -1);
  EXPECT_EQ(bare.maxPages, -1);
  const std::vector<std::pair<const char*, bool OFX::HostDescription::*>> flags{
      {kOfxImageEffectHostPropIsBackground, &OFX::HostDescription::isBackground},
      {kOfxImageEffectPropSupportsOverlays, &OFX::HostDescription::supportsOverlays},
      {kOfxImageEffectPropSupportsMultiResolution, &OFX::HostDescription::supportsMultiResolution},
      {kOfxImageEffectPropSupportsTiles, &OFX::HostDescription::supportsTiles},
      {kOfxImageEffectPropTemporalClipAccess, &OFX::HostDescription::temporalClipAccess},
      {kOfxImageEffectPropSupportsMultipleClipDepths, &OFX::HostDescription::supportsMultipleClipDepths},
      {kOfxImageEffectPropSupportsMultipleClipPARs, &OFX::HostDescription::supportsMultipleClipPARs},
      {kOfxParamHostPropSupportsStringAnimation, &OFX::HostDescription::supportsStringAnimation},
      {kOfxParamHostPropSupportsCustomInteract, &OFX::HostDescription::supportsCustomInteract},
      {kOfxParamHostPropSupportsChoiceAnimation, &OFX::HostDescription::supportsChoiceAnimation},
      {kOfxParamHostPropSupportsBooleanAnimation, &OFX::HostDescription::supportsBooleanAnimation},
      {kOfxParamHostPropSupportsCustomAnimation, &OFX::HostDescription::supportsCustomAnimation},
      {kNatronOfxHostIsNatron, &OFX::HostDescription::isNatron},
      {kNatronOfxParamHostPropSupportsDynamicChoices, &OFX::HostDescription::supportsDynamicChoices}};
  for (const auto& [property, member] : flags)
  {
    EXPECT_FALSE(bare.*member) << property;
    send(kOfxActionUnload, nullptr);
    host_.properties.values[property] = {1};
    ASSERT_EQ(send(kOfxActionLoad, nullptr), kOfxStatOK);
    EXPECT_TRUE(OFX::hostDescription()->*member) << property;
    for (const auto& [other, otherMember] : flags)
    {
      EXPECT_EQ(OFX::hostDescription()->*otherMember, host_.properties.values.contains(other)) << other;
    }
  }
  send(kOfxActionUnload, nullptr);
  host_.properties.values[kOfxPropLabel] = {std::string("Natron")};
  host_.properties.values[kOfxPropVersion] = {2, 5, 0};
  host_.properties.values[kOfxParamHostPropMaxParameters] = {700};
  host_.properties.values[kOfxParamHostPropMaxPages] = {3};
  ASSERT_EQ(send(kOfxActionLoad, nullptr), kOfxStatOK);
  EXPECT_EQ(OFX::hostDescription()->label, "Natron");
  EXPECT_EQ(OFX::hostDescription()->version, (std::vector<int>{2, 5, 0}));
  EXPECT_EQ(OFX::hostDescription()->maxParameters, 700);
  EXPECT_EQ(OFX::hostDescription()->maxPages, 3);
}

TEST_F(MainEntryTest, ASecondHostRecordIsAnError)
{
  const LogFile log;
  host_.properties.values[kOfxPropName] = {std::string("another")};
  OFX::createHostDescription(host_.record);
  EXPECT_EQ(log.text(), "ERROR : Tried to create host description when we already have one.\n");
  EXPECT_EQ(OFX::hostDescription()->name, "fr.inria.Natron");
}

TEST_F(MainEntryTest, EveryRequiredSuiteIsRequired)
{
  for (const char* suite : {kOfxImageEffectSuite, kOfxPropertySuite, kOfxParameterSuite, kOfxMemorySuite,
                            kOfxMultiThreadSuite, kOfxMessageSuite})
  {
    send(kOfxActionUnload, nullptr);
    host_.missing = {{suite, 1}};
    EXPECT_EQ(send(kOfxActionLoad, nullptr), kOfxStatErrMissingHostFeature) << suite;
  }
}

TEST_F(MainEntryTest, AMissingOptionalSuiteIsOnlyLogged)
{
  send(kOfxActionUnload, nullptr);
  host_.missing = {{kOfxProgressSuite, 1}, {kOfxTimeLineSuite, 1}, {kOfxParametricParameterSuite, 1}};
  const LogFile log;
  EXPECT_EQ(send(kOfxActionLoad, nullptr), kOfxStatOK);
  const std::string text = log.text();
  for (const char* suite : {"OfxProgressSuite", "OfxTimeLineSuite", "OfxParametricParameterSuite"})
  {
    const std::string line = fmt::format("Could not fetch the optional suite '{}' version 1.\n", suite);
    EXPECT_NE(text.find(line), std::string::npos) << line;
  }
}

TEST_F(MainEntryTest, LoadWithoutAHostFails)
{
  OFX::setHost(nullptr);
  EXPECT_EQ(send(kOfxActionLoad, nullptr), kOfxStatErrMissingHostFeature);
}

TEST(PluginList, HoldsTheFactoriesOfTheProcess)
{
  bool found = false;
  for (int i = 0; i < OFX::numberOfPlugins(); ++i)
  {
    const OfxPlugin* plugin = OFX::pluginRecord(i);
    ASSERT_NE(plugin, nullptr);
    if (std::string(plugin->pluginIdentifier) != "test.probe")
      continue;
    found = true;
    EXPECT_STREQ(plugin->pluginApi, "OfxImageEffectPluginAPI");
    EXPECT_EQ(plugin->apiVersion, 1);
    EXPECT_EQ(plugin->pluginVersionMajor, 2u);
    EXPECT_EQ(plugin->pluginVersionMinor, 5u);
    EXPECT_EQ(plugin->mainEntry, factory.mainEntry());
    EXPECT_EQ(plugin, OFX::pluginRecord(i));
  }
  EXPECT_TRUE(found);
  EXPECT_EQ(factory.uniqueId(), "test.probe.2.5");
}

TEST(PluginList, PastTheEndIsLoggedAndNull)
{
  const LogFile log;
  const int count = OFX::numberOfPlugins();
  EXPECT_EQ(OFX::pluginRecord(count), nullptr);
  EXPECT_EQ(OFX::pluginRecord(-1), nullptr);
  const std::string line = fmt::format(
      "ERROR : Host attempted to get plugin {0}, when there is only {0} plugin(s), so it should have asked for 0.\n",
      count);
  EXPECT_NE(log.text().find(line), std::string::npos);
  EXPECT_EQ(OFX::numberOfPlugins(), count);
}

TEST(HostTraits, ByName)
{
  EXPECT_TRUE(OFX::hostTraits("DaVinciResolveLite").isDaVinciResolve);
  EXPECT_FALSE(OFX::hostTraits("DaVinciResolv").isDaVinciResolve);
  EXPECT_TRUE(OFX::hostTraits("com.eyeonline.Fusion").isFusion);
  EXPECT_TRUE(OFX::hostTraits("com.blackmagicdesign.Fusion").isFusion);
  EXPECT_FALSE(OFX::hostTraits("com.blackmagicdesign.Fusion2").isFusion);
  EXPECT_TRUE(OFX::hostTraits("com.sonycreativesoftware.vegas").isVegas);
  EXPECT_FALSE(OFX::hostTraits("com.sonycreativesoftware.vegas.pro").isVegas);
}

}  // namespace
