// An instance in the making, seen from all sides at once: what it says, asks, fetches, writes and allocates, in order.
// The instance lives in this process, on a host that has described the same effect from the real bundle.
#include <algorithm>

#include <gmock/gmock.h>

#include "entry/exceptions.h"
#include "entry/host_description.h"
#include "entry/morvellan_plugin.h"
#include "entry/suites.h"
#include "host/action_scope.h"
#include "host/suites.h"
#include "tests/gpu/invented_machine.h"
#include "tests/plugin/plugin_host.h"

namespace morvellan
{
namespace
{

using test::ConfigFolder;
using testing::ElementsAre;
using testing::IsEmpty;

// Suite functions and table memory are plain functions, so what they note is the process's.
struct Account
{
  static inline std::vector<std::string> events;
  static inline std::vector<std::string> parameters;  // as they were fetched
  static inline std::string missing;                  // a parameter that the host does not know
  static inline OfxStatus regionStatus = kOfxStatOK;

  static void add(const std::string& event)
  {
    if (events.empty() || events.back() != event)
      events.push_back(event);
  }
};

OfxStatus fetchParameter(OfxParamSetHandle set, const char* name, OfxParamHandle* param,
                         OfxPropertySetHandle* properties)
{
  if (Account::missing == name)
    return kOfxStatErrUnknown;
  Account::add("parameters");
  Account::parameters.emplace_back(name);
  return host::parameterSuite().paramGetHandle(set, name, param, properties);
}

OfxStatus fetchClip(OfxImageEffectHandle effect, const char* name, OfxImageClipHandle* clip,
                    OfxPropertySetHandle* properties)
{
  Account::add(std::string("clip ") + name);
  return host::imageEffectSuite().clipGetHandle(effect, name, clip, properties);
}

OfxStatus regionOf(OfxImageClipHandle clip, OfxTime time, OfxRectD* region)
{
  return Account::regionStatus != kOfxStatOK ? Account::regionStatus
                                             : host::imageEffectSuite().clipGetRegionOfDefinition(clip, time, region);
}

template <class Tag>
TableMemory notedMemory()
{
  return {.allocate = [](std::size_t bytes) -> void*
          {
            // Every allocation counts, also one of the same size.
            Account::events.push_back(Tag::name + (" of " + std::to_string(bytes) + " bytes"));
            return Tag::refuses ? nullptr : std::malloc(bytes);
          },
          .release = [](void* memory) { std::free(memory); }};
}

struct ProductTables
{
  static constexpr const char* name = "m_table";
  static constexpr bool refuses = false;
};

struct RealTables
{
  static constexpr const char* name = "table";
  static constexpr bool refuses = false;
};

struct NoTables
{
  static constexpr const char* name = "table";
  static constexpr bool refuses = true;
};

class Construction : public testing::Test, public host::Observer
{
protected:
  Construction()
  {
    plugin_.load();
    plugin_.describe();
    plugin_.describeIn(kOfxImageEffectContextFilter);
    params_ = host::parameterSuite();
    params_.paramGetHandle = fetchParameter;
    effects_ = host::imageEffectSuite();
    effects_.clipGetHandle = fetchClip;
    effects_.clipGetRegionOfDefinition = regionOf;
    OFX::suites() = OFX::fetchSuites(*host_.interface());
    OFX::suites().param = &params_;
    OFX::suites().effect = &effects_;
    OFX::createHostDescription(*host_.interface());
    Account::events.clear();
    Account::parameters.clear();
    Account::missing.clear();
    Account::regionStatus = kOfxStatOK;
    machine_.gpus = {{.name = "GPU", .pci = {.bus = 10}}};
    machine_.onDriverQuestion = [] { Account::add("driver"); };
    discovery_ = gpu::discoverGpus(machine_);
  }
  ~Construction() override
  {
    OFX::releaseHostDescription();
    OFX::suites() = {};
  }

  InstanceEnvironment environment()
  {
    return {.discovery = discovery_,
            .platform = machine_,
            .configFolder = folder_.path().string(),
            .productTableMemory = notedMemory<ProductTables>(),
            .grainTableMemory = notedMemory<RealTables>()};
  }

  void live(const InstanceEnvironment& around, const std::function<void(MorvellanPlugin&)>& look,
            const std::map<std::string, host::ParamValue>& project = {})
  {
    host::InstanceSettings settings;
    settings.project = project;
    const auto instance = plugin_.newInstance(settings);
    const host::ActionScope action(kOfxActionCreateInstance, instance.get(), 0.0);
    MorvellanPlugin plugin(instance->handle(), around);
    look(plugin);
  }

  void misuse(const std::string& what) override { ADD_FAILURE() << what; }
  void persistentMessage(const host::Message& message) override
  {
    Account::add("says " + message.text.substr(0, message.text.find(" in ")));
  }
  void parameterWritten(const host::ParameterWrite& write) override
  {
    Account::add("writes " + write.parameter + "=" + host::toText(write.after));
  }
  void parameterPropertyWritten(const host::ParameterPropertyWrite&) override { Account::add("shows and hides"); }

  ConfigFolder folder_;
  host::Host host_{test::strictTraits(), *this};
  host::LoadedPlugin plugin_{host_, MORVELLAN_BUNDLE};
  OfxParameterSuiteV1 params_{};
  OfxImageEffectSuiteV1 effects_{};
  gpu::InventedMachine machine_;
  gpu::Discovery discovery_;
};

TEST_F(Construction, RunsItsStepsInOrder)
{
  std::ofstream(folder_.file()) << ConfigFolder::text(2, 9);
  live(environment(), [](const MorvellanPlugin& plugin) { EXPECT_EQ(plugin.frameParams().gpuReady, 1); });
  const std::string table = "table of 524288 bytes";
  EXPECT_THAT(Account::events,
              ElementsAre("says Morvellan : Invalid Grain Depth set", "driver", "says Morvellan : 3rd GPU set",
                          "clip Output", "clip Source", "parameters", "shows and hides", "writes GrainDepth=3",
                          "writes NatronGPU=0", "m_table of 65536 bytes", table, table, table, table, table, table));
  EXPECT_EQ(folder_.content(), ConfigFolder::text(0, 3));
}

TEST_F(Construction, FetchesEveryParameterInTheCataloguesOrder)
{
  live(environment(), [](const MorvellanPlugin&) {});
  std::vector<std::string> expected;
  for (const params::Param& param : params::catalogue())
    if (param.kind != params::Kind::Group)
      expected.push_back(param.name);
  EXPECT_EQ(Account::parameters, expected);
}

TEST_F(Construction, WithoutADeviceAsksNoDriverAndTakesNoTables)
{
  discovery_ = {};
  live(environment(), [](const MorvellanPlugin& plugin) { EXPECT_EQ(plugin.frameParams().gpuReady, 0); });
  EXPECT_THAT(
      Account::events,
      ElementsAre("says Morvellan : Morvellan is unable to find a CUDA GPU capable device. PLACING MORVELLAN ON "
                  "A NODE TREE / TIMELINE MAY CRASH NATRON",
                  "clip Output", "clip Source", "parameters", "shows and hides", "writes GrainDepth=0",
                  "writes NatronGPU=0", "m_table of 65536 bytes"));
}

TEST_F(Construction, TablesAreOfTheStoredDepth)
{
  for (int depth = 0; depth < 8; ++depth)
  {
    Account::events.clear();
    std::ofstream(folder_.file()) << ConfigFolder::text(0, depth);
    InstanceEnvironment around = environment();
    around.grainTableMemory = notedMemory<NoTables>();
    const int entries = 0x800 << (2 * depth);
    live(around,
         [&](const MorvellanPlugin& plugin)
         {
           EXPECT_EQ(plugin.frameParams().grainLevels, entries - 1);
           EXPECT_EQ(plugin.frameParams().gpuReady, 0);
         });
    ASSERT_GE(Account::events.size(), 2u);
    EXPECT_EQ(Account::events[Account::events.size() - 2], "table of " + std::to_string(4 * entries) + " bytes");
    EXPECT_EQ(Account::events.back().substr(0, 58), "says Morvellan : Insufficient RAM to allocate Red-P. PLACI");
  }
}

TEST_F(Construction, SeedsItsBlockFromTheStoredValues)
{
  live(environment(),
       [](const MorvellanPlugin& plugin)
       {
         const FrameParams& seed = plugin.frameParams();
         EXPECT_EQ(seed.inputGamut, 2);
         EXPECT_EQ(seed.exposureValue, 0.02f);
         EXPECT_EQ(seed.exposureKind, 2);
         EXPECT_EQ(seed.inResolutionChoice, 18);
         EXPECT_EQ(seed.outResolutionChoice, 1);
         EXPECT_EQ(seed.enhancerMode, 2);
         EXPECT_FALSE(seed.soupBypassed);
         EXPECT_FALSE(seed.halationBypassed);
         EXPECT_FALSE(seed.grainBypassed);
         EXPECT_FALSE(seed.printBypassed);
         EXPECT_FALSE(seed.pitchBypassed);
         for (const float gain :
              {seed.sopranoPitchGain, seed.mezzoSopranoPitchGain, seed.altoPitchGain, seed.tenorPitchGain,
               seed.baritonePitchGain, seed.bassPitchGain, seed.ensemblePitchGain, seed.cameraHighlightCeiling})
           EXPECT_EQ(gain, 1.0f);
       },
       {{"InputGamut", 2},
        {"Exposure", 0.1},
        {"InResolution", 18},
        {"OutResolution", 1},
        {"SpatialEnhancement", 2},
        {"SoupBypass", false},
        {"HalationBypass", false},
        {"GrainBypass", false},
        {"PitchBypass", false},
        {"EnsemblePitch", 5.0},
        {"SopranoPitch", 9.0},
        {"PrintDisplayBypass", false}});
}

TEST_F(Construction, AMissingParameterFailsTheInstance)
{
  Account::missing = "PrintCurveMidtoneGreen";
  try
  {
    live(environment(), [](const MorvellanPlugin&) {});
    FAIL() << "nothing was raised";
  }
  catch (const OFX::Exception::Suite& e)
  {
    EXPECT_EQ(e.status(), kOfxStatErrUnknown);
  }
}

// "Failed" is a clip's way to have no region; other refusals end the action.
TEST_F(Construction, ARegionThatIsRefusedEndsTheFit)
{
  live(environment(),
       [&](MorvellanPlugin& plugin)
       {
         Account::events.clear();
         Account::regionStatus = kOfxStatErrBadHandle;
         try
         {
           plugin.changedClip({.reason = OFX::ChangeReason::UserEdit}, "Source");
           FAIL() << "nothing was raised";
         }
         catch (const OFX::Exception::Suite& e)
         {
           EXPECT_EQ(e.status(), kOfxStatErrBadHandle);
         }
         EXPECT_THAT(Account::events, IsEmpty());
         Account::regionStatus = kOfxStatFailed;
         EXPECT_NO_THROW(plugin.changedClip({.reason = OFX::ChangeReason::UserEdit}, "Source"));
       });
}

}  // namespace
}  // namespace morvellan
