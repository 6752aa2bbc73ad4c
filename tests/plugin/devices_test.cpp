// The plug-in and its devices: the configuration file in every state, the selection, edits of the Manage page, and the
// three reports, through the interface of a host.
#include <gmock/gmock.h>
#include <sys/inotify.h>
#include <unistd.h>

#include "tests/plugin/plugin_host.h"

namespace morvellan::test
{
namespace
{

using host::EffectInstance;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

// An instance on `device` with that configuration file; what it said while it was made.
class Machine
{
public:
  Machine(const std::string& device, const std::optional<std::string>& content)
      : folder(content), host(MORVELLAN_BUNDLE, pluginOptions(folder, device)), effect(host.create())
  {
  }

  [[nodiscard]] std::vector<std::string> said() const { return textsOf(host.persistentMessages()); }
  [[nodiscard]] int gpu() const { return effect.value("NatronGPU").asInt(); }
  [[nodiscard]] int depth() const { return effect.value("GrainDepth").asInt(); }
  [[nodiscard]] std::string report(const char* button)
  {
    host.clearLog();
    EXPECT_EQ(effect.press(button), kOfxStatOK);
    EXPECT_EQ(host.messages().size(), 1U);
    EXPECT_THAT(host.writes(), IsEmpty()) << "a report changes nothing";
    if (host.messages().size() != 1)
      return {};
    EXPECT_EQ(host.messages()[0].type, kOfxMessageMessage);
    EXPECT_EQ(host.messages()[0].id, "");
    return host.messages()[0].text;
  }

  ConfigFolder folder;
  StrictHost host;
  EffectInstance& effect;
};

TEST(ConfigurationFile, EveryGoodPair)
{
  for (int selection = 0; selection < 4; ++selection)
    for (int depth = 0; depth < 4; ++depth)
    {
      Machine machine("cpu:4", ConfigFolder::text(selection, depth));
      EXPECT_THAT(machine.said(), IsEmpty());
      EXPECT_EQ(machine.gpu(), selection);
      EXPECT_EQ(machine.depth(), depth);
    }
}

TEST(ConfigurationFile, EveryFaultIsToldAndMended)
{
  const std::string first = ConfigFolder::firstLine;
  const std::string second = ConfigFolder::secondLine;
  struct Case
  {
    std::string content;
    const char* message;
    int selection;
  };
  for (const Case& fault : {Case{"", "Unable to read 'Natron GPU selection(0,1,2,3)----------|'", 0},
                            Case{first + "7\n" + second + "1\n", "Invalid GPU set in", 0},
                            Case{first + "-1\n" + second + "1\n", "Invalid GPU set in", 0},
                            Case{first + "99999999999\n" + second + "1\n", "Invalid GPU set in", 0},
                            Case{first + "1\n", "Unable to read 'Film Grain Depth(0,1,2,3,4,5,6,7)------|'", 1},
                            Case{first + "1\r\n" + second + "8\r\n", "Invalid Grain Depth set in", 1},
                            Case{std::string(10'000'000, '\0'), "Unable to read 'Natron GPU selection", 0}})
  {
    Machine machine("cpu:2", fault.content);
    EXPECT_THAT(machine.said(), ElementsAre(AllOf(StartsWith("Morvellan : "), HasSubstr(fault.message),
                                                  HasSubstr("'" + machine.folder.file().string() + "'"))));
    EXPECT_EQ(machine.gpu(), fault.selection);
    EXPECT_EQ(machine.depth(), 3);
    EXPECT_EQ(machine.folder.content(), ConfigFolder::text(fault.selection, 3));
  }
}

TEST(ConfigurationFile, AFolderInItsPlace)
{
  const ConfigFolder folder(std::nullopt);
  std::filesystem::create_directories(folder.file() / "inside");
  StrictHost host(MORVELLAN_BUNDLE, pluginOptions(folder, "cpu"));
  host.create();
  EXPECT_THAT(textsOf(host.persistentMessages()),
              ElementsAre(HasSubstr("For very first-time use of Morvellan"),
                          "Morvellan : Unable to create morvellan_natron_gpu_config.txt in '" + folder.path().string() +
                              "/'. Check file and folder permissions."));
}

// Counts how often a file is opened while it lives.
class OpenCount
{
public:
  explicit OpenCount(const std::filesystem::path& file) : events_(inotify_init1(IN_NONBLOCK))
  {
    EXPECT_GE(inotify_add_watch(events_, file.c_str(), IN_OPEN), 0);
  }
  ~OpenCount() { close(events_); }
  OpenCount(const OpenCount&) = delete;
  OpenCount& operator=(const OpenCount&) = delete;

  // Openings since the last call. Events of a file carry no name, so all are of one size.
  int take()
  {
    int count = 0;
    std::array<inotify_event, 64> events{};
    for (ssize_t bytes = 0; (bytes = read(events_, events.data(), sizeof(events))) > 0;)
      for (std::size_t i = 0; i < static_cast<std::size_t>(bytes) / sizeof(inotify_event); ++i)
        count += (events[i].mask & IN_OPEN) != 0 ? 1 : 0;
    return count;
  }

private:
  int events_;
};

TEST(ConfigurationFile, IsOpenedOnceAConstruction)
{
  for (const std::string& content : {ConfigFolder::text(1, 2), std::string("rubbish"), std::string(10'000'000, '\0')})
  {
    const ConfigFolder folder(content);
    StrictHost host(MORVELLAN_BUNDLE, pluginOptions(folder, "cpu:2"));
    EffectInstance& effect = host.prepare();
    OpenCount opened(folder.file());
    EXPECT_EQ(effect.create(), kOfxStatOK);
    EXPECT_EQ(opened.take(), 1);
  }
}

// Root reads everything; another user's eyes see the file as it is.
class AsNobody
{
public:
  AsNobody() { EXPECT_EQ(seteuid(65534), 0); }
  ~AsNobody() { EXPECT_EQ(seteuid(0), 0); }
  AsNobody(const AsNobody&) = delete;
  AsNobody& operator=(const AsNobody&) = delete;
};

TEST(ConfigurationFile, ThatMayNotBeReadOrWritten)
{
  const ConfigFolder folder(ConfigFolder::text(1, 2));
  StrictHost host(MORVELLAN_BUNDLE, pluginOptions(folder, "cpu:2"));
  std::filesystem::permissions(folder.file(), std::filesystem::perms::none);
  std::filesystem::permissions(folder.path(), std::filesystem::perms{0555});
  {
    const std::optional<AsNobody> nobody = geteuid() == 0 ? std::optional<AsNobody>(std::in_place) : std::nullopt;
    EffectInstance& effect = host.create();
    EXPECT_EQ(effect.value("GrainDepth").asInt(), 3);
    EXPECT_EQ(effect.value("NatronGPU").asInt(), 0);
    EXPECT_THAT(textsOf(host.persistentMessages()),
                ElementsAre("Morvellan : For very first-time use of Morvellan, disregard this message : Unable to open "
                            "Morvellan's GPU config file - '" +
                                folder.file().string() + "'. Morvellan will use Natron's Primary GPU.",
                            "Morvellan : Unable to create morvellan_natron_gpu_config.txt in '" +
                                folder.path().string() + "/'. Check file and folder permissions."));
  }
  std::filesystem::permissions(folder.path(), std::filesystem::perms::owner_all);
  std::filesystem::permissions(folder.file(), std::filesystem::perms{0600});
  EXPECT_EQ(folder.content(), ConfigFolder::text(1, 2));
}

TEST(Selection, EveryRevertIsToldAndStored)
{
  for (int devices = 1; devices <= 3; ++devices)
    for (int asked = devices; asked <= 3; ++asked)
    {
      Machine machine("cpu:" + std::to_string(devices), ConfigFolder::text(asked, 2));
      EXPECT_THAT(machine.said(), ElementsAre(HasSubstr("GPU set in Morvellan's list. Only 1st")));
      EXPECT_EQ(machine.gpu(), 0);
      EXPECT_EQ(machine.depth(), 2);
      EXPECT_EQ(machine.folder.content(), ConfigFolder::text(0, 2)) << "the depth is kept";
    }
}

TEST(ManagePage, AChosenDeviceIsStoredForTheNextTime)
{
  Machine machine("cpu:3", ConfigFolder::text(0, 1));
  EXPECT_EQ(machine.effect.edit("NatronGPU", 2), kOfxStatOK);
  EXPECT_EQ(machine.folder.content(), ConfigFolder::text(2, 1));
  EXPECT_THAT(textsOf(machine.host.messages()),
              ElementsAre("Morvellan : To activate changes, reload Morvellan or restart Natron"));
  machine.host.clearLog();
  EXPECT_EQ(machine.effect.edit("GrainDepth", 0), kOfxStatOK);
  EXPECT_EQ(machine.folder.content(), ConfigFolder::text(2, 0)) << "the device chosen before is not forgotten";
  EXPECT_THAT(textsOf(machine.host.messages()),
              ElementsAre("Morvellan : To activate Grain Depth Resolution change, reload Morvellan or restart Natron"));
  EffectInstance& next = machine.host.create();
  EXPECT_EQ(next.value("NatronGPU").asInt(), 2);
  EXPECT_EQ(next.value("GrainDepth").asInt(), 0);
}

TEST(ManagePage, ASlotWithoutADeviceIsSetBack)
{
  Machine machine("cpu:2", ConfigFolder::text(1, 1));
  machine.host.clearLog();
  EXPECT_EQ(machine.effect.edit("NatronGPU", 3), kOfxStatOK);
  EXPECT_THAT(textsOf(machine.host.messages()),
              ElementsAre("Morvellan : 4th GPU unavailable. Select 1st, 2cd, or 3rd available GPU from Morvellan's "
                          "list."));
  EXPECT_EQ(machine.gpu(), 1);
  ASSERT_EQ(machine.host.writes().size(), 1u);
  EXPECT_EQ(machine.host.writes()[0].editBlock, "NatronGPU");
  EXPECT_EQ(machine.folder.content(), ConfigFolder::text(1, 1));

  machine.effect.edit("NatronGPU", 0);
  machine.effect.edit("NatronGPU", 2);
  EXPECT_EQ(machine.gpu(), 0) << "back to the choice that was stored last";
  EXPECT_EQ(machine.folder.content(), ConfigFolder::text(0, 1));
}

TEST(ManagePage, WhatAnotherInstanceStoredIsKept)
{
  Machine machine("cpu:3", ConfigFolder::text(0, 1));
  EffectInstance& other = machine.host.create();
  machine.effect.edit("NatronGPU", 2);
  other.edit("GrainDepth", 4);
  EXPECT_EQ(machine.folder.content(), ConfigFolder::text(2, 4));
  machine.effect.edit("NatronGPU", 1);
  EXPECT_EQ(machine.folder.content(), ConfigFolder::text(1, 4));
}

TEST(ManagePage, AFileThatCannotBeWrittenIsTold)
{
  Machine machine("cpu:2", ConfigFolder::text(0, 1));
  std::filesystem::remove(machine.folder.file());
  std::filesystem::create_directories(machine.folder.file() / "inside");
  const auto allTexts = [&]
  {
    std::vector<std::string> texts = textsOf(machine.host.persistentMessages());
    for (const std::string& text : textsOf(machine.host.messages()))
      texts.push_back(text);
    return texts;
  };
  machine.effect.edit("NatronGPU", 1);
  EXPECT_THAT(allTexts(), ElementsAre(AllOf(StartsWith("Morvellan : Unable to edit | create"),
                                            HasSubstr("The GPU selection change can't be saved."))));
  machine.host.clearLog();
  machine.effect.edit("GrainDepth", 3);
  EXPECT_THAT(allTexts(), ElementsAre(AllOf(StartsWith("Morvellan :  Unable to edit "),
                                            HasSubstr("Grain Depth Resolution remains unchanged"))));
}

TEST(Reports, About)
{
  Machine machine("cpu", ConfigFolder::text(0, 0));
  EXPECT_THAT(machine.report("About"), StartsWith("\nMorvellan for Natron, ver 3.7.\n\n\n"));
}

TEST(Reports, CudaInfo)
{
  Machine machine("cpu", ConfigFolder::text(0, 0));
  const std::string text = machine.report("CudaInfo");
  if (text.find("Number of available CUDA GPUs") != std::string::npos)
    GTEST_SKIP() << "this machine has an NVIDIA GPU";
  EXPECT_THAT(text, AllOf(HasSubstr("\n    Morvellan : Failed to initialise nVidia's NVML library"),
                          HasSubstr("\nMorvellan : Failed to shutdown the NVML library. Error : ")));
}

TEST(Reports, ClipInfo)
{
  Machine machine("cpu", ConfigFolder::text(0, 0));
  host::Clip& source = machine.effect.clip("Source");
  source.properties().put(kOfxImageEffectPropPreMultiplication, std::string(kOfxImageUnPreMultiplied));
  source.setPixelAspect(1.0667);
  source.setFrameRange(1.0, 48.0);
  source.setPixelFrame({0, 0, 720, 576});
  source.regionOfDefinition = OfxRectD{-1.5, 0.0, 768.0, 576.0};
  machine.effect.setRenderScale({0.5, 0.25});
  EXPECT_EQ(machine.report("ClipInfo"), "Morvellan Clip Info :\n\n"
                                        "Input : \n"
                                        "    RGBA - 32f BitDepthFloat\n"
                                        "    Premultiplication : UnPreMultiplied\n"
                                        "    Field order : None\n"
                                        "    Node input : Connected\n"
                                        "    Discontinuous samples\n"
                                        "    Resolution : 0, 0, 720, 576\n"
                                        "    Pixel aspect ratio : 1.0667\n"
                                        "    Frame rate : 24\n"
                                        "    Frame range : 1 ... 48\n"
                                        "    Region of definition : -1.5, 0, 768, 576\n\n"
                                        "Output : \n"
                                        "    RGBA - 32f BitDepthFloat\n"
                                        "    Premultiplication : PreMultiplied\n"
                                        "    Field order : None\n"
                                        "    Node output : Connected\n"
                                        "    Discontinuous samples\n"
                                        "    Resolution : 0, 0, 1920, 1080\n"
                                        "    Pixel aspect ratio : 1\n"
                                        "    Frame rate : 24\n"
                                        "    Frame range : 0 ... 0\n"
                                        "    Region of definition : 0, 0, 1920, 1080\n\n"
                                        "    Render Scale : 0.5, 0.25");
}

TEST(Reports, ClipInfoOfAnUnconnectedSource)
{
  const ConfigFolder folder;
  StrictHost host(MORVELLAN_BUNDLE, pluginOptions(folder, "cpu"));
  host::InstanceSettings settings;
  settings.sourceConnected = false;
  EffectInstance& effect = host.create(settings);
  EXPECT_EQ(effect.press("ClipInfo"), kOfxStatOK);
  ASSERT_EQ(host.messages().size(), 1U);
  EXPECT_THAT(host.messages()[0].text,
              AllOf(HasSubstr("\n    Node input : Not connected\n"), HasSubstr("\nOutput : \n    RGBA")));
}

TEST(Reports, ClipInfoOnAHostWithoutTheExtensions)
{
  const ConfigFolder folder;
  StrictOptions options = pluginOptions(folder, "cpu");
  options.traits.natronExtensions = false;
  StrictHost host(MORVELLAN_BUNDLE, options);
  EXPECT_EQ(host.create().press("ClipInfo"), kOfxStatOK);
  ASSERT_EQ(host.messages().size(), 1U);
  EXPECT_THAT(host.messages()[0].text, HasSubstr("\n    Resolution : 0, 0, 1920, 1080\n"));
}

TEST(Devices, AnUnknownChoiceIsToldBesideWhatWasFound)
{
  Machine machine("gpu:0", ConfigFolder::text(0, 0));
  EXPECT_THAT(machine.said()[0], AllOf(HasSubstr("MORVELLAN_DEVICE is 'gpu:0'"), HasSubstr("Using auto")));
}

}  // namespace
}  // namespace morvellan::test
