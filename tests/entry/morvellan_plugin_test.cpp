// Instances on invented machines: what construction says and decides there. The instance lives in this process, on the
// strict host, which has described the same effect from the real bundle.
#include "entry/morvellan_plugin.h"

#include <gmock/gmock.h>

#include "entry/host_description.h"
#include "entry/suites.h"
#include "host/action_scope.h"
#include "tests/entry/refusing_memory.h"
#include "tests/gpu/invented_machine.h"
#include "tests/plugin/plugin_host.h"

namespace morvellan
{
namespace
{

using test::ConfigFolder;
using test::RefusingMemory;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class InstanceOn : public testing::Test
{
protected:
  InstanceOn()
  {
    OFX::suites() = OFX::fetchSuites(*host_.host().interface());
    OFX::createHostDescription(*host_.host().interface());
    RefusingMemory::reset();
  }
  ~InstanceOn() override
  {
    OFX::releaseHostDescription();
    OFX::suites() = {};
  }

  void install(int gpus)
  {
    for (int i = 0; i < gpus; ++i)
      machine_.gpus.push_back({.name = "GPU " + std::to_string(i), .pci = {.bus = 10 + i}});
  }

  InstanceEnvironment environment()
  {
    discovery_ = gpu::discoverGpus(machine_);
    return {.discovery = discovery_, .platform = machine_, .configFolder = folder_.path().string()};
  }

  /// Constructs and destroys an instance; `look` sees it alive.
  void live(const InstanceEnvironment& around, const std::function<void(MorvellanPlugin&)>& look)
  {
    host::EffectInstance& instance = host_.prepare();
    const host::ActionScope action(kOfxActionCreateInstance, &instance, 0.0);
    MorvellanPlugin plugin(instance.handle(), around);
    instance_ = &instance;
    look(plugin);
  }

  int ready()
  {
    int value = -1;
    live(environment(), [&](MorvellanPlugin& plugin) { value = plugin.frameParams().gpuReady; });
    return value;
  }

  std::vector<std::string> messages() const { return test::textsOf(host_.persistentMessages()); }

  ConfigFolder folder_;
  test::StrictHost host_{MORVELLAN_BUNDLE, test::pluginOptions(folder_, "cpu")};
  gpu::InventedMachine machine_;
  gpu::Discovery discovery_;
  host::EffectInstance* instance_ = nullptr;
};

TEST_F(InstanceOn, AGoodMachineIsReady)
{
  install(1);
  EXPECT_EQ(ready(), 1);
  EXPECT_THAT(messages(), IsEmpty());
}

TEST_F(InstanceOn, AMachineWithoutNvml)
{
  machine_.nvmlInitStatus = 12;
  EXPECT_EQ(ready(), 0);
  EXPECT_THAT(messages(),
              ElementsAre("Morvellan : Morvellan is unable to initialise nVidia NVML. PLACING MORVELLAN ON A NODE TREE "
                          "/ TIMELINE MAY CRASH NATRON"));
  EXPECT_EQ(host_.persistentMessages()[0].type, kOfxMessageError);
}

TEST_F(InstanceOn, AMachineWithoutDevices)
{
  EXPECT_EQ(ready(), 0);
  EXPECT_THAT(messages(),
              ElementsAre("Morvellan : Morvellan is unable to find a CUDA GPU capable device. PLACING MORVELLAN ON A "
                          "NODE TREE / TIMELINE MAY CRASH NATRON"));
}

TEST_F(InstanceOn, OldDrivers)
{
  install(1);
  machine_.driver = 52740;
  EXPECT_EQ(ready(), 0);
  machine_.driver = 52698;
  EXPECT_EQ(ready(), 0);
  machine_.driver = 52741;
  EXPECT_EQ(ready(), 1);
  EXPECT_THAT(messages(), ElementsAre("Morvellan : Requires nVidia Studio - or Game Ready - Driver ver. 527.41 (40, "
                                      "527), or higher. Unable to process Clips",
                                      "Morvellan : Requires nVidia Studio - or Game Ready - Driver ver. 527.41 (526, "
                                      "98) or higher. Unable to process Clips"));
}

// Whatever is wrong with the machine: an instance that lives, one error that says so, and the identity for an answer.
TEST_F(InstanceOn, EveryMachineThatCannotRender)
{
  const std::string mayCrash = ". PLACING MORVELLAN ON A NODE TREE / TIMELINE MAY CRASH NATRON";
  const std::string noClips = ". Unable to process Clips";
  struct Fault
  {
    std::function<void(gpu::InventedMachine&)> make;
    std::string message;
  };
  const std::vector<Fault> faults{
      {[](auto& m) { m.nvmlInitStatus = 12; }, "Morvellan is unable to initialise nVidia NVML" + mayCrash},
      {[](auto& m) { m.nvmlOrder = std::vector<int>{}; },
       "Morvellan is unable to find a CUDA GPU capable device" + mayCrash},
      {[](auto& m) { m.gpus.clear(); }, "Morvellan is unable to find a CUDA GPU capable device" + mayCrash},
      {[](auto& m) { m.nvmlCountStatus = 999; }, "Morvellan is unable to detect a CUDA GPU device" + mayCrash},
      {[](auto& m) { m.cudaCountStatus = 35; }, "Morvellan is unable to detect a CUDA GPU device" + mayCrash},
      {[](auto& m) { m.gpus[0].computeMode = 2; },
       "Morvellan found all GPUs to have processing deficiencies" + mayCrash},
      {[](auto& m) { m.nvmlShutdownStatus = 999; }, "Morvellan is unable to shutdown nVidia NVML" + mayCrash},
      {[](auto& m) { m.nvapiMissing = true; }, "Failed to find nVidia's NVAPI Library" + noClips},
      {[](auto& m) { m.nvapiInitStatus = -1; }, "Failed to load nVidia's NVAPI Library" + noClips},
      {[](auto& m) { m.nvapiVersionStatus = -1; }, "Failed to retrieve the nVidia Graphics Driver version" + noClips}};
  for (const Fault& fault : faults)
  {
    machine_ = {};
    install(1);
    fault.make(machine_);
    host_.clearLog();
    live(environment(),
         [&](MorvellanPlugin& plugin)
         {
           EXPECT_EQ(plugin.frameParams().gpuReady, 0) << fault.message;
           const host::ActionScope action(kOfxImageEffectActionIsIdentity, instance_, 7.0);
           OFX::IdentityAnswer answer;
           EXPECT_TRUE(plugin.isIdentity({.time = 7.0}, answer)) << fault.message;
           EXPECT_EQ(answer.clip, "Source");
           EXPECT_EQ(answer.time, 7.0);
         });
    EXPECT_THAT(messages(), ElementsAre("Morvellan : " + fault.message));
    EXPECT_EQ(host_.persistentMessages()[0].type, kOfxMessageError);
    EXPECT_EQ(machine_.nvapiOpen, 0);
  }
}

TEST_F(InstanceOn, SelectionTakesTheFilesChoice)
{
  install(4);
  std::ofstream(folder_.file()) << ConfigFolder::text(3, 2);
  live(environment(),
       [&](MorvellanPlugin& plugin)
       {
         EXPECT_EQ(plugin.frameParams().gpuRed, 3);
         EXPECT_EQ(plugin.frameParams().gpuBlue, 0);
         EXPECT_EQ(plugin.frameParams().gpuGreen, 1);
         EXPECT_EQ(plugin.frameParams().gpuCount, 3);
         EXPECT_EQ(plugin.frameParams().gpuSelection, 3);
         EXPECT_EQ(plugin.frameParams().grainLevels, 0x8000 - 1);
         EXPECT_EQ(instance_->value("NatronGPU").asInt(), 3);
         EXPECT_EQ(instance_->value("GrainDepth").asInt(), 2);
       });
  EXPECT_THAT(messages(), IsEmpty());
}

TEST_F(InstanceOn, ARevertRewritesTheFileAndKeepsTheDepth)
{
  install(1);
  std::ofstream(folder_.file()) << ConfigFolder::text(2, 5);
  EXPECT_EQ(ready(), 1);
  EXPECT_THAT(messages(),
              ElementsAre("Morvellan : 3rd GPU set in Morvellan's list. Only 1st GPU available. Reverted to 1st GPU."));
  EXPECT_EQ(folder_.content(), ConfigFolder::text(0, 5));
}

TEST_F(InstanceOn, ARevertThatCannotBeStoredIsToldFirst)
{
  install(2);
  std::ofstream(folder_.file()) << ConfigFolder::text(3, 1);
  // A folder of its own name can't be replaced by the file. It comes in the way after the file was read.
  discovery_ = gpu::discoverGpus(machine_);
  machine_.onDriverQuestion = [&]
  {
    std::filesystem::remove(folder_.file());
    std::filesystem::create_directories(folder_.file() / "inside");
  };
  live({.discovery = discovery_, .platform = machine_, .configFolder = folder_.path().string()},
       [&](MorvellanPlugin& plugin)
       {
         EXPECT_EQ(plugin.frameParams().gpuSelection, 0);
         EXPECT_EQ(plugin.frameParams().gpuReady, 1);
         EXPECT_EQ(instance_->value("NatronGPU").asInt(), 0);
       });
  EXPECT_THAT(messages(),
              ElementsAre("Morvellan : Unable to create 'morvellan_natron_gpu_config.txt' file in '" +
                              folder_.path().string() +
                              "/'. Check file and folder permissions. Reverted to 1st GPU in Morvellan's list",
                          "Morvellan : 4th GPU set in Morvellan's list. Only 1st and 2cd GPUs available. Reverted to "
                          "1st. Select 1st or 2cd."));
}

TEST_F(InstanceOn, ABadFileIsReportedBeforeTheDevices)
{
  std::ofstream(folder_.file()) << ConfigFolder::text(7, 5);
  EXPECT_EQ(ready(), 0);
  ASSERT_EQ(messages().size(), 2u);
  EXPECT_THAT(messages()[0], HasSubstr("Invalid GPU set in '"));
  EXPECT_THAT(messages()[1], HasSubstr("unable to find a CUDA GPU capable device"));
  EXPECT_EQ(folder_.content(), ConfigFolder::text(0, 3));
}

TEST_F(InstanceOn, TheSeedOfItsBlock)
{
  install(1);
  live(environment(),
       [&](MorvellanPlugin& plugin)
       {
         const FrameParams& seed = plugin.frameParams();
         EXPECT_EQ(seed.ensemblePitchGain, 1.0f);
         EXPECT_EQ(seed.bassPitchGain, 1.0f);
         EXPECT_EQ(seed.cameraHighlightCeiling, 1.0f);
         EXPECT_TRUE(seed.soupBypassed);
         EXPECT_TRUE(seed.halationBypassed);
         EXPECT_TRUE(seed.printBypassed);
         EXPECT_TRUE(seed.grainBypassed);
         EXPECT_NE(seed.m_table, nullptr);
       });
}

TEST_F(InstanceOn, EachTableThatCannotBeHad)
{
  install(1);
  const std::vector<std::string> names{"Red-P", "Red-N", "Green-P", "Green-N", "Blue-P", "Blue-N"};
  for (int i = 0; i < 6; ++i)
  {
    host_.clearLog();
    RefusingMemory::reset(i);
    InstanceEnvironment around = environment();
    around.grainTableMemory = RefusingMemory::memory();
    live(around, [&](MorvellanPlugin& plugin) { EXPECT_EQ(plugin.frameParams().gpuReady, 0); });
    EXPECT_THAT(messages(),
                ElementsAre("Morvellan : Insufficient RAM to allocate " + names[static_cast<std::size_t>(i)] +
                            ". PLACING MORVELLAN ON A NODE TREE / TIMELINE MAY CRASH NATRON. Instead, try "
                            "reducing Film Grain Resolution through Morvellan 'Manage' tab"));
    EXPECT_EQ(RefusingMemory::made, i + 1);
    EXPECT_EQ(RefusingMemory::out, 0);
  }
}

TEST_F(InstanceOn, AProductTableThatCannotBeHad)
{
  install(1);
  RefusingMemory::reset(0);
  InstanceEnvironment around = environment();
  around.productTableMemory = RefusingMemory::memory();
  live(around, [&](MorvellanPlugin& plugin) { EXPECT_EQ(plugin.frameParams().gpuReady, 0); });
  EXPECT_THAT(messages(), ElementsAre("Morvellan : Unable to allocate m_table. PLACING MORVELLAN ON A NODE TREE / "
                                      "TIMELINE MAY CRASH NATRON"));
}

TEST_F(InstanceOn, NoGrainTablesWhereNothingRenders)
{
  InstanceEnvironment around = environment();
  around.grainTableMemory = RefusingMemory::memory();
  live(around, [&](MorvellanPlugin&) { EXPECT_EQ(RefusingMemory::made, 0); });
}

TEST_F(InstanceOn, NothingOfTheDriverStaysOpen)
{
  install(2);
  EXPECT_EQ(ready(), 1);
  EXPECT_EQ(machine_.nvmlOpen, 0);
  EXPECT_EQ(machine_.nvapiOpen, 0);
}

TEST_F(InstanceOn, AChangeThatIsNotTheUsersDoesNothing)
{
  install(2);
  live(environment(),
       [&](MorvellanPlugin& plugin)
       {
         const host::ActionScope action(kOfxActionInstanceChanged, instance_, 0.0);
         plugin.changedParam({.reason = OFX::ChangeReason::PluginEdit}, "NatronGPU");
         plugin.changedParam({.reason = OFX::ChangeReason::Time}, "About");
       });
  EXPECT_THAT(host_.messages(), IsEmpty());
}

}  // namespace
}  // namespace morvellan
