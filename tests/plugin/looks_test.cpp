// The Look buttons as a person presses them, on the strict host: files by content, parameters and panels by value.
#include <cstdlib>

#include <dlfcn.h>
#include <gmock/gmock.h>

#include "tests/plugin/plugin_host.h"

namespace morvellan::test
{
namespace
{

using host::EffectInstance;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
namespace fs = std::filesystem;

class Looks : public testing::Test
{
protected:
  Looks() : data_(folder_.path() / "data"), host_(MORVELLAN_BUNDLE, options()) {}
  ~Looks() override { unsetenv("MORVELLAN_FILE_DIALOG"); }

  StrictOptions options() const
  {
    StrictOptions options = pluginOptions(folder_, "cpu");
    options.environment["XDG_DATA_HOME"] = data_.string();
    options.environment["DBUS_SESSION_BUS_ADDRESS"] = "unix:path=" + (folder_.path() / "no-bus").string();
    return options;
  }

  EffectInstance& made(const std::map<std::string, host::ParamValue>& stored = {})
  {
    host::InstanceSettings settings;
    settings.project = stored;
    EffectInstance& effect = host_.create(settings);
    host_.clearLog();
    return effect;
  }
  // The messages of a button, answered so.
  std::vector<std::string> press(EffectInstance& effect, const char* button, const std::string& answer)
  {
    host_.clearLog();
    setenv("MORVELLAN_FILE_DIALOG", answer.c_str(), 1);
    EXPECT_EQ(effect.press(button), kOfxStatOK);
    unsetenv("MORVELLAN_FILE_DIALOG");
    for (const host::Message& message : host_.messages())
      EXPECT_EQ(message.type, kOfxMessageError) << message.text;
    EXPECT_THAT(host_.persistentMessages(), IsEmpty());
    return textsOf(host_.messages());
  }
  std::string file(const char* name) const { return (folder_.path() / name).string(); }
  static std::vector<std::string> lines(const std::string& path)
  {
    std::vector<std::string> all;
    std::ifstream stream(path);
    for (std::string line; std::getline(stream, line);)
      all.push_back(line);
    return all;
  }
  static bool shown(const EffectInstance& effect, const char* name)
  {
    return !effect.params().at(name).isSecret() && effect.params().at(name).isEnabled();
  }

  ConfigFolder folder_;
  const fs::path data_;
  StrictHost host_;
};

TEST_F(Looks, ASaveWritesTheValuesAndNoParameter)
{
  EffectInstance& effect = made({{"Exposure", 0.25}, {"SoupBypass", false}, {"InputGamut", 4}});
  EXPECT_THAT(press(effect, "SaveLooks", "accept:" + file("a.prm")), IsEmpty());
  const std::vector<std::string> saved = lines(file("a.prm"));
  ASSERT_EQ(saved.size(), 372u);
  EXPECT_EQ(saved[0], "In | Out Color Space(0 - 50)-------|4");
  EXPECT_EQ(saved[1], "Exposure(-1.0 - 1.0)---------------|0.2500");
  EXPECT_EQ(saved[39], "Soup Bypass Off/On(0, 1)-----------|0");
  EXPECT_THAT(host_.writes(), IsEmpty());
  EXPECT_TRUE(fs::is_directory(data_ / "morvellan" / "looks")) << "made on first use";
}

TEST_F(Looks, ALoadTakesAStockToAnotherInstance)
{
  EffectInstance& graded = made({{"InputGamut", 0}});
  graded.edit("SoupBypass", false);
  graded.edit("CameraStock", 20);
  graded.edit("PrintDisplayBypass", false);
  graded.edit("PrintProfile", 5);
  graded.edit("OutputDisplayGamut", 6);
  graded.edit("SoftClips", 1);
  EXPECT_THAT(press(graded, "SaveLooks", "accept:" + file("stock.prm")), IsEmpty());

  EffectInstance& other = made();
  EXPECT_THAT(press(other, "LoadLooks", "accept:" + file("stock.prm")), IsEmpty());
  EXPECT_EQ(other.value("CameraStock").asInt(), 20);
  EXPECT_EQ(other.value("PrintProfile").asInt(), 5);
  EXPECT_FALSE(other.value("PrintDisplayBypass").asBool());
  for (const char* name :
       {"SoupDminRed", "SoupToeRGB", "SaturationRed", "HueGreen", "RefineTwoChrWidth", "PrintBlackRed",
        "PrintCurveShadowRed", "PrintPeakBrightness", "PrintFilmicPivot", "LabDevelop"})
    EXPECT_NEAR(other.value(name).asDouble(), graded.value(name).asDouble(), 0.00006) << name;
  for (const char* name : {"PrintProfile", "PrintCast", "PrintPeakBrightness", "CameraHighlightsCeiling", "Bleach"})
    EXPECT_EQ(shown(other, name), shown(graded, name)) << name;
  EXPECT_FALSE(host_.writes().empty());

  // Once more there is nothing left to write.
  EXPECT_THAT(press(other, "LoadLooks", "accept:" + file("stock.prm")), IsEmpty());
  for (const host::ParameterWrite& write : host_.writes())
    ADD_FAILURE() << write.parameter << " was written without need";
}

TEST_F(Looks, ALoadIsABulkWrite)
{
  EffectInstance& effect = made();
  EXPECT_THAT(press(effect, "SaveLooks", "accept:" + file("plain.prm")), IsEmpty());
  // Masters and swatches of an untouched page are not always those of their channels; a load makes them so.
  EXPECT_THAT(press(effect, "LoadLooks", "accept:" + file("plain.prm")), IsEmpty());
  effect.edit("Exposure", 0.5);
  effect.edit("SoupToeRed", 0.25);
  EXPECT_THAT(press(effect, "LoadLooks", "accept:" + file("plain.prm")), IsEmpty());
  std::vector<std::string> written;
  for (const host::ParameterWrite& write : host_.writes())
  {
    written.push_back(write.parameter);
    EXPECT_EQ(write.editBlock, std::nullopt) << write.parameter;
  }
  EXPECT_THAT(written, ElementsAre("Exposure", "SoupToeRed", "SoupToeRGB"));
}

TEST_F(Looks, CancellingDoesNothing)
{
  EffectInstance& effect = made();
  EXPECT_THAT(press(effect, "SaveLooks", "cancel"), IsEmpty());
  EXPECT_THAT(press(effect, "LoadLooks", "cancel"), IsEmpty());
  EXPECT_THAT(host_.writes(), IsEmpty());
  EXPECT_FALSE(fs::exists(data_ / "morvellan" / "looks" / "Default.prm"));
}

// The dialog of a person, played by a program of the test's own that writes down what it was asked.
TEST_F(Looks, APersonIsAskedInTheFolderOfLooks)
{
  const fs::path programs = folder_.path() / "programs";
  fs::create_directory(programs);
  const auto answer = [&](const std::string& body)
  {
    std::ofstream(programs / "zenity") << "#!/bin/sh\nprintf '%s\\n' \"$@\" > \"" << programs.string() << "/words\"\n"
                                       << body;
    fs::permissions(programs / "zenity", fs::perms::owner_all);
  };
  const std::string before = std::getenv("PATH");
  const std::string start = "--filename=" + (data_ / "morvellan" / "looks").string() + "/";
  EffectInstance& effect = made({{"Exposure", 0.25}});
  setenv("PATH", programs.c_str(), 1);

  answer("echo '" + file("mine.prm") + "'\n");
  EXPECT_THAT(press(effect, "SaveLooks", ""), IsEmpty());
  EXPECT_THAT(lines(programs / "words"),
              ElementsAre("--file-selection", start + "Default.prm", "--file-filter=Morvellan Look file | *.prm",
                          "--save", "--confirm-overwrite"));
  ASSERT_EQ(lines(file("mine.prm")).size(), 372u);
  effect.edit("Exposure", 0.5);
  EXPECT_THAT(press(effect, "LoadLooks", ""), IsEmpty());
  EXPECT_THAT(lines(programs / "words"),
              ElementsAre("--file-selection", start, "--file-filter=Morvellan Look file | *.prm"));
  EXPECT_EQ(effect.value("Exposure").asDouble(), 0.25);

  answer("exit 1\n");
  EXPECT_THAT(press(effect, "LoadLooks", ""), IsEmpty()) << "cancelled";
  answer("exit 5\n");
  EXPECT_THAT(press(effect, "SaveLooks", ""),
              ElementsAre(HasSubstr("Morvellan : Unable to save Look files. Check folder permissions")));
  fs::remove(programs / "zenity");
  EXPECT_THAT(press(effect, "LoadLooks", ""), ElementsAre(HasSubstr("install xdg-desktop-portal")));
  EXPECT_EQ(effect.value("Exposure").asDouble(), 0.25);
  setenv("PATH", before.c_str(), 1);
}

TEST_F(Looks, EveryFailureIsAMessage)
{
  EffectInstance& effect = made();
  EXPECT_THAT(press(effect, "SaveLooks", "accept:" + file("no/folder.prm")),
              ElementsAre("Morvellan : Unable to create Look file. Check file and folder permissions"));
  EXPECT_THAT(press(effect, "LoadLooks", "accept:" + file("none.prm")),
              ElementsAre("Morvellan : Unable to open Look file. Check file and folder permissions"));
  EXPECT_THAT(press(effect, "SaveLooks", "maybe"),
              ElementsAre(HasSubstr("Morvellan : Unable to save Look files. Check folder permissions")));
  EXPECT_THAT(press(effect, "LoadLooks", "maybe"),
              ElementsAre(HasSubstr("Morvellan : Unable to load Look file. Check file and/or folder permissions")));
  EXPECT_THAT(host_.writes(), IsEmpty());
}

TEST_F(Looks, ABadLookSaysWhatIsBad)
{
  EffectInstance& effect = made({{"InputGamut", 0}, {"CameraStock", 7}, {"PrintDisplayBypass", false}});
  std::ofstream(file("bad.prm")) << "In | Out Color Space(0 - 50)-------|49\n"
                                 << "Exposure(-1.0 - 1.0)---------------|0.5000\n"
                                 << "nothing of a Look\n";
  EXPECT_THAT(press(effect, "LoadLooks", "accept:" + file("bad.prm")),
              ElementsAre("Morvellan : Set 'In | Out Color Space(0 - 50)-------|' to a range between 0 and 48",
                          "Morvellan : Unable to read 'Halation Bypass Off/On(0, 1)-------|'. Aborting reads beyond "
                          "this point in the Looks file..."));
  EXPECT_EQ(effect.value("Exposure").asDouble(), 0.5);
  EXPECT_EQ(effect.value("CameraStock").asInt(), 0);
  EXPECT_TRUE(effect.value("PrintDisplayBypass").asBool());
  EXPECT_FALSE(shown(effect, "PrintProfile"));
}

TEST_F(Looks, ABadSizeIsThatOfTheClip)
{
  EffectInstance& effect = made();
  effect.clip("Source").setSource(frameOf(640, 360));
  EXPECT_THAT(press(effect, "SaveLooks", "accept:" + file("size.prm")), IsEmpty());
  std::vector<std::string> all = lines(file("size.prm"));
  all[19].resize(36);
  all[20].resize(36);
  std::ofstream changed(file("size.prm"));
  for (const std::string& line : all)
    changed << line << "\n";
  changed.close();
  EXPECT_EQ(press(effect, "LoadLooks", "accept:" + file("size.prm")).size(), 2u);
  EXPECT_EQ(effect.value("SourceWidth").asInt(), 640);
  EXPECT_EQ(effect.value("SourceHeight").asInt(), 360);
}

// libdbus keeps locks for the life of the process: it stays when the plug-in that asked it goes.
TEST(LooksUnloaded, TheLibraryOfTheDialogStays)
{
  const auto isLoaded = [](const std::string& library)
  {
    void* const handle = dlopen(library.c_str(), RTLD_NOW | RTLD_NOLOAD);
    if (handle != nullptr)
      dlclose(handle);
    return handle != nullptr;
  };
  const std::string plugin = std::string(MORVELLAN_BUNDLE) + "/Contents/Linux-x86-64/Morvellan.ofx";
  const std::string before = std::getenv("PATH");
  for (int load = 0; load < 2; ++load)
  {
    const ConfigFolder folder;
    StrictOptions options = pluginOptions(folder, "cpu");
    options.environment["DBUS_SESSION_BUS_ADDRESS"] = "unix:path=" + (folder.path() / "no-bus").string();
    {
      StrictHost host(MORVELLAN_BUNDLE, options);
      EffectInstance& effect = host.create({});
      setenv("PATH", folder.path().c_str(), 1);
      EXPECT_EQ(effect.press("LoadLooks"), kOfxStatOK);
      setenv("PATH", before.c_str(), 1);
      EXPECT_TRUE(isLoaded(plugin));
    }
    EXPECT_FALSE(isLoaded(plugin));
    EXPECT_TRUE(isLoaded("libdbus-1.so.3"));
  }
}

}  // namespace
}  // namespace morvellan::test
