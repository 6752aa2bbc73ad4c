// Looks and the tool: files of every kind of badness, each refused in one sentence and in little memory, or taken as
// the format has it; and saves that leave the old file whole.
#include <random>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <sys/stat.h>

#include "tests/tool/tool_run.h"

namespace morvellan::test
{
namespace
{

using testing::HasSubstr;
namespace fs = std::filesystem;

// The Look of an untouched page, by line.
const std::vector<std::string>& plainLook()
{
  static const std::vector<std::string> lines = []
  {
    const fs::path file = fs::temp_directory_path() / ("morvellan-plain-" + std::to_string(getpid()) + ".prm");
    const ToolRun run = runTool({"--quiet", "--device", "cpu", "--save-look", file.string()},
                                {.bundle = MORVELLAN_BUNDLE, .environment = {{"XDG_DATA_HOME", "/tmp"}}});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    std::vector<std::string> made;
    std::ifstream stream(file);
    for (std::string line; std::getline(stream, line);)
      made.push_back(line + "\n");
    fs::remove(file);
    return made;
  }();
  return lines;
}

std::string textOf(std::vector<std::string> lines, const std::map<std::size_t, std::string>& values = {})
{
  std::string text;
  for (std::size_t i = 0; i < lines.size(); ++i)
  {
    if (const auto value = values.find(i + 1); value != values.end())
      lines[i] = lines[i].substr(0, 36) + value->second + "\n";
    text += lines[i];
  }
  return text;
}

class LookFileTest : public ToolTest
{
protected:
  LookFileTest()
  {
    setting_.environment["MORVELLAN_CONFIG_DIR"] = path("config");
    setting_.environment["XDG_DATA_HOME"] = path("data");
    fs::create_directory(path("config"));
    writeFile("config/morvellan_natron_gpu_config.txt", "Natron GPU selection(0,1,2,3)----------|0\n"
                                                        "Film Grain Depth(0,1,2,3,4,5,6,7)------|0\n");
  }

  ToolRun with(std::vector<std::string> arguments) const
  {
    arguments.insert(arguments.begin(), {"--quiet", "--device", "cpu"});
    return runTool(arguments, setting_);
  }
  ToolRun loading(const std::string& look) const { return with({"--look", look, "--save-project", path("p.json")}); }
  double loaded(const char* parameter) const
  {
    return nlohmann::json::parse(readFile("p.json"))["params"][parameter].get<double>();
  }
  void expectRefused(const std::string& look, const std::string& says) const
  {
    const ToolRun run = loading(look);
    EXPECT_EQ(run.exitCode, 1) << look;
    EXPECT_THAT(run.err,
                testing::StartsWith("morvellan-render: the Look " + look + " is not fit for use: Morvellan : "));
    EXPECT_THAT(run.err, HasSubstr(says));
    EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << run.err;
    EXPECT_FALSE(fs::exists(path("p.json"))) << look << ": all is not well";
    EXPECT_LT(run.mostMemory, plainMemory() + 32 * 1024) << look;
  }
  void expectTaken(const std::string& look) const
  {
    const ToolRun run = loading(look);
    EXPECT_EQ(run.exitCode, 0) << look << ": " << run.err;
    EXPECT_EQ(run.err, "");
    EXPECT_LT(run.mostMemory, plainMemory() + 32 * 1024) << look;
  }
  long plainMemory() const
  {
    static const long memory = with({"--save-project", path("q.json")}).mostMemory;
    return memory;
  }

  ToolSetting setting_{.bundle = MORVELLAN_BUNDLE};
};

constexpr const char* firstLabel = "Unable to read 'In | Out Color Space(0 - 50)-------|'. Aborting reads";

TEST_F(LookFileTest, ThatIsNoLookIsRefused)
{
  std::string noise(4096, '\0');
  std::mt19937 random(1);
  std::ranges::generate(noise, [&] { return static_cast<char>(random()); });
  writeFile("binary.prm", noise);
  writeFile("zeros.prm", std::string(4096, '\0'));
  writeFile("long.prm", std::string(10000, 'x') + "\n" + textOf(plainLook()));
  writeFile("huge.prm", "");
  fs::resize_file(path("huge.prm"), 1'000'000'000);
  for (const char* look : {"binary.prm", "zeros.prm", "long.prm", "huge.prm"})
    expectRefused(path(look), firstLabel);
}

TEST_F(LookFileTest, ThatCannotBeReadIsRefused)
{
  fs::create_directory(path("folder.prm"));
  ASSERT_EQ(mkfifo(path("pipe.prm").c_str(), 0600), 0);
  fs::create_symlink(path("nowhere.prm"), path("link.prm"));
  for (const std::string& look : {path("folder.prm"), path("pipe.prm"), std::string("/dev/zero")})
    expectRefused(look, "Unable to open Look file. Check file and folder permissions");
  EXPECT_THAT(loading(path("link.prm")).err, HasSubstr("link.prm does not exist; check the name"));
}

TEST_F(LookFileTest, ThatBreaksOffIsTakenAsFarAsItGoes)
{
  const std::vector<std::string>& plain = plainLook();
  ASSERT_EQ(plain.size(), 372U);
  writeFile("empty.prm", "");
  expectTaken(path("empty.prm"));
  writeFile("short.prm", textOf({plain.begin(), plain.begin() + 100}, {{2, "0.5000"}}));
  expectTaken(path("short.prm"));
  EXPECT_EQ(loaded("Exposure"), 0.5);
  writeFile("tail.prm", textOf(plain, {{2, "0.2500"}}));
  fs::resize_file(path("tail.prm"), 1'000'000'000);
  expectTaken(path("tail.prm"));
  EXPECT_EQ(loaded("Exposure"), 0.25);

  fs::remove(path("p.json"));
  const std::string text = textOf(plain);
  writeFile("cut.prm", text.substr(0, text.find("Halation Breadth") + 8));
  expectRefused(path("cut.prm"), "Unable to read 'Halation Breadth(0 - 1.0)----------|'");
}

TEST_F(LookFileTest, OfOneBadValueIsRefusedByItsField)
{
  for (const char* value : {"1e999", "-1e999", "nan", "inf", "1.5"})
  {
    writeFile("value.prm", textOf(plainLook(), {{2, value}}));
    expectRefused(path("value.prm"), "Set 'Exposure(-1.0 - 1.0)---------------|' to a range between -1.0 and 1.0");
  }
  writeFile("value.prm", textOf(plainLook(), {{1, "99"}, {2, "5"}, {3, "7"}}));
  expectRefused(path("value.prm"), "to a range between 0 and 48 (2 more like it)");
  writeFile("line.prm", textOf(plainLook(), {{2, std::string(10000, '1')}}));
  expectRefused(path("line.prm"), "Set 'Exposure(-1.0 - 1.0)---------------|'");
}

TEST_F(LookFileTest, OfOddValuesIsTakenAsTheFormatHasIt)
{
  writeFile("odd.prm",
            textOf(plainLook(), {{2, "+-3"}, {13, "abc"}, {337, "0x1p3"}, {338, "0X1.8P1"}, {339, "+2.5e0"}}));
  expectTaken(path("odd.prm"));
  EXPECT_EQ(loaded("Exposure"), 0.0);
  EXPECT_EQ(loaded("CameraHighlightsCeiling"), 0.0);
  EXPECT_EQ(loaded("SizeRed"), 8.0);
  EXPECT_EQ(loaded("SizeGreen"), 3.0);
  EXPECT_EQ(loaded("SizeBlue"), 2.5);
}

// A carriage return counts as one of the 44 characters of a line, so that only values of six characters leave it room.
TEST_F(LookFileTest, WithCarriageReturnsIsTakenUpToSixCharactersAValue)
{
  const auto withReturns = [](std::string text)
  {
    for (std::size_t at = text.find('\n'); at != std::string::npos; at = text.find('\n', at + 2))
      text.insert(at, "\r");
    return text;
  };
  writeFile("returns.prm", withReturns(textOf(plainLook())));
  expectRefused(path("returns.prm"), "Unable to read 'Soup Knee-G");
  std::map<std::size_t, std::string> shortened;
  for (std::size_t i = 0; i < plainLook().size(); ++i)
    if (const std::string& line = plainLook()[i]; line.size() > 43)
      shortened[i + 1] = line.substr(36, 6);
  EXPECT_FALSE(shortened.empty());
  writeFile("returns.prm", withReturns(textOf(plainLook(), shortened)));
  expectTaken(path("returns.prm"));
}

TEST_F(LookFileTest, ThatIsFaultyIsShownAndComparedAsFarAsItGoesAndFails)
{
  writeFile("good.prm", textOf(plainLook()));
  writeFile("bad.prm", textOf(plainLook(), {{2, "0.5000"}, {4, "7"}}));
  const ToolRun shown = runTool({"looks", "show", path("bad.prm")}, setting_);
  EXPECT_EQ(shown.exitCode, 1);
  EXPECT_THAT(shown.out, HasSubstr("Exposure                     0.5\n"));
  EXPECT_THAT(shown.err, HasSubstr("bad.prm is faulty: Morvellan : Set 'Halation Breadth"));
  const ToolRun compared = runTool({"looks", "diff", path("good.prm"), path("bad.prm")}, setting_);
  EXPECT_EQ(compared.exitCode, 1);
  EXPECT_THAT(compared.out, HasSubstr("Exposure                     0                            0.5\n"));
  const ToolRun checked = runTool({"looks", "check", path("good.prm"), path("bad.prm")}, setting_);
  EXPECT_EQ(checked.exitCode, 1);
  EXPECT_EQ(checked.out, path("bad.prm") +
                             ": Morvellan : Set 'Halation Breadth(0 - 1.0)----------|' to a range between "
                             "0 and 1.0. Using Default UI value\n");
  EXPECT_EQ(runTool({"looks", "show", path("good.prm")}, setting_).exitCode, 0);
}

TEST_F(LookFileTest, IsShownWithWhatADefaultPageHoldsToo)
{
  const auto lineOf = [](const std::string& text, const std::string& parameter)
  {
    const std::size_t at = ("\n" + text).find("\n" + parameter + " ");
    return at == std::string::npos ? "" : text.substr(at, text.find('\n', at) - at);
  };
  writeFile("whole.prm", textOf(plainLook()));
  const ToolRun whole = runTool({"looks", "show", path("whole.prm")}, setting_);
  for (const char* const line :
       {"InputGamut                   0 (Linear Rec.709|sRGB)", "SourceWidth                  1920",
        "LableachBypass               off", "LabDevelop                   0.9", "PrinterLightBlue             0.909"})
    EXPECT_EQ(lineOf(whole.out, std::string(line).substr(0, std::string(line).find(' '))), line);

  std::vector<std::string> start = plainLook();
  start.resize(2);
  writeFile("short.prm", textOf(start));
  EXPECT_EQ(runTool({"looks", "show", path("short.prm")}, setting_).out,
            "InputGamut                   0 (Linear Rec.709|sRGB)\nExposure                     0\n");
}

TEST_F(LookFileTest, IsShownAloneAndComparedInPairs)
{
  writeFile("a.prm", textOf(plainLook()));
  const std::string a = path("a.prm");
  const auto says = [&](const std::vector<std::string>& arguments)
  {
    const ToolRun run = runTool(arguments, setting_);
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_EQ(run.out, "");
    return run.err;
  };
  EXPECT_THAT(says({"looks", "show", a, a}), HasSubstr("looks show shows one Look, not 2\n"));
  EXPECT_THAT(says({"looks", "diff", a}), HasSubstr("looks diff compares two Looks, not 1\n"));
  EXPECT_THAT(says({"looks", "diff", a, a, a}), HasSubstr("looks diff compares two Looks, not 3\n"));
}

TEST_F(LookFileTest, ThatIsMissingDoesNotEndTheCheck)
{
  writeFile("good.prm", textOf(plainLook()));
  writeFile("bad.prm", textOf(plainLook(), {{4, "7"}}));
  const ToolRun run = runTool({"looks", "check", path("none.prm"), path("good.prm"), path("bad.prm")}, setting_);
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_THAT(run.out, testing::StartsWith(path("none.prm") + ": it does not exist; check the name\n" +
                                           path("bad.prm") + ": Morvellan : Set 'Halation Breadth"));
  EXPECT_THAT(run.err, HasSubstr("2 of 3 Looks are faulty"));
}

TEST_F(LookFileTest, ThatCannotBeWrittenIsNamedAndTheOldOneIsWhole)
{
  const auto expectFailed = [&](const std::string& look)
  {
    const ToolRun run = with({"--save-look", look});
    EXPECT_EQ(run.exitCode, 1) << look;
    EXPECT_THAT(run.err, HasSubstr("the Look " + look +
                                   " was not written: Morvellan : Unable to create Look file. Check "
                                   "file and folder permissions\n"));
  };
  expectFailed("/dev/full");
  writeFile("old.prm", "old");
  setting_.largestFile = 1000;
  expectFailed(path("old.prm"));
  EXPECT_EQ(readFile("old.prm"), "old");
}

TEST_F(LookFileTest, IsWrittenOverWhereItsFolderTakesNoNewOne)
{
  setting_.heldToPermissions = true;
  writeFile("shared.prm", "old");
  fs::permissions(path("shared.prm"), fs::perms::all);
  fs::permissions(folder_, fs::perms{0555});
  const ToolRun run = with({"--set", "Exposure=0.5", "--save-look", path("shared.prm")});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_EQ(readFile("shared.prm"), textOf(plainLook(), {{2, "0.5000"}}));
  EXPECT_THAT(with({"--save-look", path("new.prm")}).err, HasSubstr("cannot be written; choose another"));
  fs::permissions(folder_, fs::perms{0755});
}

// The answer of the environment is the tool's own for --look alone; a button pressed by name asks as in any host.
TEST_F(LookFileTest, AButtonWithoutAnAnswerIsAnError)
{
  ToolSetting setting = setting_;
  setting.environment["MORVELLAN_FILE_DIALOG"] = "perhaps";
  const ToolRun run = runTool({"--quiet", "--device", "cpu", "--press", "LoadLooks"}, setting);
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_THAT(run.err,
              HasSubstr("--press LoadLooks failed: Morvellan : Unable to load Look file. Check file and/or folder "
                        "permissions. MORVELLAN_FILE_DIALOG is neither accept:PATH nor cancel"));
  setting.environment["MORVELLAN_FILE_DIALOG"] = "cancel";
  EXPECT_EQ(runTool({"--quiet", "--device", "cpu", "--press", "SaveLooks"}, setting).exitCode, 0);
}

TEST_F(LookFileTest, IsNamedAsItStands)
{
  const ToolRun saved = with({"--save-look", path("a look, with: all = sorts.prm")});
  EXPECT_EQ(saved.exitCode, 0) << saved.err;
  expectTaken(path("a look, with: all = sorts.prm"));
}

}  // namespace
}  // namespace morvellan::test
