// Whatever is wrong, the tool says so in one sentence, gives the right exit code and leaves nothing half-written.
#include <gmock/gmock.h>

#include "tests/tool/tool_run.h"

namespace morvellan::test
{
namespace
{

using OIIO::TypeDesc;
using testing::ElementsAre;
using testing::HasSubstr;

struct ErrorCase
{
  const char* name;
  std::vector<std::string> arguments;  // @ stands for the test's folder
  int exitCode;
  const char* says;

  friend void PrintTo(const ErrorCase& self, std::ostream* out) { *out << self.says; }
};

class ErrorTest : public ToolTest, public testing::WithParamInterface<ErrorCase>
{
protected:
  ErrorTest()
  {
    save(path("in.exr"), ramp(4, 4, 3, TypeDesc::FLOAT));
    save(path("in.1.exr"), ramp(4, 4, 3, TypeDesc::FLOAT));
    save(path("in.3.exr"), ramp(4, 4, 3, TypeDesc::FLOAT));
    writeFile("empty.exr", "");
    writeFile("text.exr", "no picture at all");
    writeFile("broken.json", R"({"params": {"Gain": )");
    writeFile("list.json", "[1, 2]");
    writeFile("unknown.json", R"({"params": {"Gian": 1.0}})");
    writeFile("range.json", R"({"params": {"Gain": 40}})");
    writeFile("type.json", R"({"params": {"Bypass": "on"}})");
    writeFile("choice.json", R"({"params": {"Mode": 1.5}})");
    writeFile("colour.json", R"({"params": {"Tint": [1, 2]}})");
    std::filesystem::create_directory(path("folder.exr"));
    std::filesystem::create_directory(path("folder.json"));
  }
};

TEST_P(ErrorTest, IsOneSentence)
{
  const std::vector<std::string> before = files();
  std::vector<std::string> arguments{"--quiet"};
  for (std::string argument : GetParam().arguments)
  {
    const auto place = argument.find('@');
    arguments.push_back(place == std::string::npos ? argument : argument.replace(place, 1, folder_.string()));
  }
  const ToolRun run = runTool(arguments);
  EXPECT_EQ(run.exitCode, GetParam().exitCode) << run.err;
  EXPECT_THAT(run.err, HasSubstr(GetParam().says));
  EXPECT_THAT(run.err, testing::StartsWith("morvellan-render: "));
  EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << run.err;
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(files(), before);
}

std::vector<std::string> rendering(std::vector<std::string> more)
{
  std::vector<std::string> arguments{"@/in.exr", "-o", "@/out.exr", "--device", "cpu"};
  arguments.insert(arguments.end(), more.begin(), more.end());
  return arguments;
}

INSTANTIATE_TEST_SUITE_P(
    Usage, ErrorTest,
    testing::Values(
        ErrorCase{"Nothing", {}, 2, "nothing to do"}, ErrorCase{"UnknownOption", {"--nope"}, 2, "--nope; see --help"},
        ErrorCase{"NoOutput", {"@/in.exr"}, 2, "there is no output; give one with -o"},
        ErrorCase{"NoInput", {"-o", "@/out.exr"}, 2, "there is no input"},
        ErrorCase{"UnknownFormat", {"@/in.exr", "-o", "@/out.xyz"}, 2, "end the name in .exr"},
        ErrorCase{
            "DepthOfFormat", {"@/in.exr", "-o", "@/out.png", "--depth", "half"}, 2, "use --depth uint8 or uint16"},
        ErrorCase{
            "AlphaOfFormat", {"@/in.exr", "-o", "@/out.jpg", "--components", "rgba"}, 2, "does not hold an alpha"},
        ErrorCase{"UnknownDepth", rendering({"--depth", "double"}), 2, "--depth"},
        ErrorCase{"UnknownComponents", rendering({"--components", "cmyk"}), 2, "--components"},
        ErrorCase{"UnknownDevice", rendering({"--device", "gpu"}), 2,
                  "use auto, cuda, cpu, cpu:N with N from 1 to 16, or host"},
        ErrorCase{"NoDevices", rendering({"--device", "cpu:0"}), 2, "there is no device cpu:0"},
        ErrorCase{"ManyDevices", rendering({"--device", "cpu:17"}), 2, "there is no device cpu:17"},
        ErrorCase{"NoThreads", rendering({"--threads", "0"}), 2, "--threads"},
        ErrorCase{"ThreadsWord", rendering({"--threads", "many"}), 2, "--threads"},
        ErrorCase{"FramesForm", rendering({"--frames", "1..5"}), 2, "not of the form A-B"},
        ErrorCase{"FramesBackwards", rendering({"--frames", "5-1"}), 2, "holds no frame"},
        ErrorCase{"FramesStep", rendering({"--frames", "1-5x0"}), 2, "holds no frame"},
        ErrorCase{"FramesHuge", rendering({"--frames", "0-99999999999"}), 2, "too large"},
        ErrorCase{"FramesMany", rendering({"--frames", "0-2000000000"}), 2, "more than"},
        ErrorCase{"FramesIntoOneFile", rendering({"--frames", "1-5"}), 2, "do not go into the one file"},
        ErrorCase{
            "FramesOfFiles", {"@/in.1.exr", "@/in.3.exr", "-o", "@/out.#.exr", "--frames", "1-3"}, 2, "give as many"},
        ErrorCase{
            "SequenceAmongFiles", {"@/in.#.exr", "@/in.exr", "-o", "@/out.#.exr"}, 2, "a sequence among other inputs"},
        ErrorCase{"EmptyInput", {"", "-o", "@/out.exr"}, 2, "INPUT has an empty value"},
        ErrorCase{"EmptyOutput", {"@/in.exr", "-o", ""}, 2, "--output has an empty value"},
        ErrorCase{"EmptyProject", rendering({"--project", ""}), 2, "--project has an empty value; give one or leave"},
        ErrorCase{"ProjectOverInput", rendering({"--save-project", "@/./in.exr"}), 2, "save it elsewhere"},
        ErrorCase{"ProjectOverOutput", rendering({"--save-project", "@/out.exr"}), 2, "save it elsewhere"},
        ErrorCase{"OverItself", {"@/in.exr", "-o", "@/in.exr"}, 2, "written over itself"},
        ErrorCase{"QuietAndVerbose", rendering({"--verbose"}), 2, "contradict"},
        ErrorCase{"JsonAlone", {"--json"}, 2, "--json goes with --list-params"},
        ErrorCase{"SetForm", rendering({"--set", "Gain"}), 2, "not of the form NAME=VALUE"},
        ErrorCase{"SetUnknown", rendering({"--set", "Gian=1"}), 2, "there is no parameter Gian; did you mean Gain?"},
        ErrorCase{"SetUnlikeAny", rendering({"--set", "Wavelength=1"}), 2, "see --list-params"},
        ErrorCase{"SetRange", rendering({"--set", "Gain=4.5"}), 2, "Gain must be at most 4, not 4.5"},
        ErrorCase{"SetWord", rendering({"--set", "Gain=much"}), 2, "Gain takes a number, not \"much\""},
        ErrorCase{"SetRest", rendering({"--set", "Gain=1.5x"}), 2, "Gain takes a number"},
        ErrorCase{"SetEmpty", rendering({"--set", "Gain="}), 2, "Gain"},
        ErrorCase{"SetNan", rendering({"--set", "Gain=nan"}), 2, "finite"},
        ErrorCase{"SetOverflow", rendering({"--set", "Gain=1e999"}), 2, "Gain takes a number"},
        ErrorCase{"SetFraction", rendering({"--set", "Count=1.5"}), 2, "Count must be a whole number"},
        ErrorCase{"SetHuge", rendering({"--set", "Count=3000000000"}), 2, "Count must be at most"},
        ErrorCase{"SetChoiceIndex", rendering({"--set", "Mode=3"}), 2, "Mode has the options 0 to 2"},
        ErrorCase{"SetChoiceLabel", rendering({"--set", "Mode=Divide"}), 2, "see --list-choices Mode"},
        ErrorCase{"SetSwitch", rendering({"--set", "Bypass=2"}), 2, "Bypass takes on or off"},
        ErrorCase{"SetColour", rendering({"--set", "Tint=1,2"}), 2, "3 numbers"},
        ErrorCase{"SetColourLong", rendering({"--set", "Tint=1,2,3,4"}), 2, "3 numbers"},
        ErrorCase{"SetButton", rendering({"--set", "About=1"}), 2, "use --press About"},
        ErrorCase{"SetGroup", rendering({"--set", "Group=1"}), 2, "no value"},
        ErrorCase{"PressUnknown", rendering({"--press", "Nothing"}), 2, "there is no parameter Nothing"},
        ErrorCase{"PressMisspelt", rendering({"--press", "Abuot"}), 2, "did you mean About?"},
        ErrorCase{"PressUnlikeAnyButton", rendering({"--press", "Mod"}), 2, "no parameter Mod; see --list-params"},
        ErrorCase{"PressGroup", rendering({"--press", "Group"}), 2, "is not a button; see --list-params"},
        ErrorCase{"PressValue", rendering({"--press", "Gain"}), 2, "not a button; use --set Gain=VALUE"},
        ErrorCase{"ChoicesUnknown", {"--list-choices", "Mood"}, 2, "did you mean Mode?"},
        ErrorCase{"ChoicesOfNumber", {"--list-choices", "Gain"}, 2, "not a Choice"},
        ErrorCase{"ProjectUnknown", rendering({"--project", "@/unknown.json"}), 2, "did you mean Gain?"},
        ErrorCase{"ProjectRange", rendering({"--project", "@/range.json"}), 2,
                  "range.json: Gain must be at most 4, not 40"},
        ErrorCase{"ProjectType", rendering({"--project", "@/type.json"}), 2,
                  "type.json: Bypass (Boolean) cannot be \"on\""},
        ErrorCase{"ProjectChoice", rendering({"--project", "@/choice.json"}), 2, "whole number"},
        ErrorCase{"ProjectColour", rendering({"--project", "@/colour.json"}), 2,
                  "colour.json: Tint (RGB) takes 3 numbers"}),
    [](const auto& info) { return info.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Render, ErrorTest,
    testing::Values(
        ErrorCase{"InputMissing", {"@/none.exr", "-o", "@/out.exr"}, 1, "none.exr does not exist"},
        ErrorCase{"InputEmpty", {"@/empty.exr", "-o", "@/out.exr"}, 1, "; check its format and its permissions"},
        ErrorCase{"InputText", {"@/text.exr", "-o", "@/out.exr"}, 1, "cannot be read as a picture"},
        ErrorCase{"InputFolder", {"@/folder.exr", "-o", "@/out.exr"}, 1, "is a folder; give a picture's name"},
        ErrorCase{"NoFrames", {"@/other.####.exr", "-o", "@/out.####.exr"}, 1, "there is no frame of"},
        ErrorCase{"FrameMissing",
                  {"@/in.#.exr", "-o", "@/out.#.exr", "--frames", "1-3"},
                  1,
                  "1 of 3 frames are missing, the first is"},
        ErrorCase{"OutputIntoFile", {"@/in.exr", "-o", "@/in.exr/out.exr"}, 1, "cannot be written, since it is a file"},
        ErrorCase{"OutputNowhere",
                  {"@/in.exr", "-o", "/proc/morvellan/out.exr"},
                  1,
                  "the output folder /proc/morvellan cannot be written"},
        ErrorCase{"OutputFolder", {"@/in.exr", "-o", "@/folder.exr"}, 1, "is a folder; give a file's name"},
        ErrorCase{"NoBundle", rendering({"--bundle", "/nowhere/X.ofx.bundle"}), 1, "there is no bundle"},
        ErrorCase{"NoGpu", rendering({"--device", "cuda"}), 1, "use --device cpu"},
        ErrorCase{"ProjectMissing", rendering({"--project", "@/none.json"}), 1, "cannot be read"},
        ErrorCase{"ProjectFolder", rendering({"--project", "@/folder.json"}), 1, "is a folder"},
        ErrorCase{"ProjectBroken", rendering({"--project", "@/broken.json"}), 1, "damaged or no JSON"},
        ErrorCase{"ProjectList", rendering({"--project", "@/list.json"}), 1,
                  "lacks its object \"params\"; write {\"params\": {NAME: VALUE}}"},
        ErrorCase{"SaveProjectNowhere", rendering({"--save-project", "/proc/morvellan/p.json"}), 1,
                  "cannot be written"}),
    [](const auto& info) { return info.param.name; });

struct Damaged
{
  const char* extension;
  const char* depth;

  friend void PrintTo(const Damaged& self, std::ostream* out) { *out << self.extension << ' ' << self.depth; }
};

class DamageTest : public ToolTest, public testing::WithParamInterface<Damaged>
{
};

// A picture cut off anywhere is refused, with nothing written.
TEST_P(DamageTest, TruncatedPicturesAreRefused)
{
  const auto [extension, depth] = GetParam();
  const std::string whole = std::string("whole.") + extension;
  save(path("in.exr"), ramp(64, 64, 3, TypeDesc::FLOAT));
  ASSERT_EQ(runTool({path("in.exr"), "-o", path(whole), "--depth", depth, "--device", "cpu"}).exitCode, 0);
  ASSERT_EQ(runTool({path(whole), "-o", path("out.exr"), "--device", "cpu"}).exitCode, 0);
  std::filesystem::remove(path("out.exr"));
  const std::string content = readFile(whole);
  for (const double share : {0.01, 0.3, 0.6, 0.9, 0.999})
  {
    const std::string cut = std::string("cut.") + extension;
    writeFile(cut, content.substr(0, static_cast<std::size_t>(share * static_cast<double>(content.size()))));
    const ToolRun run = runTool({"--quiet", path(cut), "-o", path("out.exr"), "--device", "cpu"});
    EXPECT_EQ(run.exitCode, 1) << "cut to " << share;
    EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << "cut to " << share << ": " << run.err;
    EXPECT_THAT(run.err, HasSubstr(cut)) << "cut to " << share;
    EXPECT_THAT(files(), ElementsAre(cut, "in.exr", whole)) << "cut to " << share;
  }
}

INSTANTIATE_TEST_SUITE_P(Formats, DamageTest,
                         testing::Values(Damaged{"exr", "half"}, Damaged{"exr", "float"}, Damaged{"dpx", "uint8"},
                                         Damaged{"dpx", "uint10"}, Damaged{"dpx", "uint16"}, Damaged{"tif", "uint8"},
                                         Damaged{"tif", "uint10"}, Damaged{"tif", "float"}, Damaged{"png", "uint8"},
                                         Damaged{"png", "uint16"}, Damaged{"jpg", "uint8"}),
                         [](const auto& info) { return std::string(info.param.extension) + "_" + info.param.depth; });

class FailureTest : public ToolTest
{
protected:
  FailureTest() { save(path("in.exr"), ramp(64, 64, 4, TypeDesc::FLOAT)); }
};

TEST_F(FailureTest, AFailedRenderLeavesTheOldOutput)
{
  writeFile("out.exr", "the old picture");
  const ToolRun run = runTool(
      {path("in.exr"), "-o", path("out.exr"), "--device", "cpu", "--quiet", "--set", "Gain=2", "--set", "Mode=Fail"});
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_THAT(run.err, HasSubstr("error: Gain : told to fail\n"));
  EXPECT_THAT(run.err, HasSubstr("morvellan-render: frame 0 failed (kOfxStatFailed): Gain : told to fail\n"));
  EXPECT_EQ(readFile("out.exr"), "the old picture");
  EXPECT_THAT(files(), ElementsAre("in.exr", "out.exr"));
}

TEST_F(FailureTest, AMissingFrameInTheMiddleIsFoundBeforeAnyWork)
{
  save(path("a.1.exr"), ramp(4, 4, 3, TypeDesc::FLOAT));
  save(path("a.3.exr"), ramp(4, 4, 3, TypeDesc::FLOAT));
  EXPECT_EQ(runTool({path("a.#.exr"), "-o", path("b.#.exr"), "--frames", "1-3"}).exitCode, 1);
  EXPECT_THAT(files(), ElementsAre("a.1.exr", "a.3.exr", "in.exr"));
}

TEST_F(FailureTest, ADamagedFrameEndsTheSequenceAfterTheGoodOnes)
{
  save(path("a.1.exr"), ramp(4, 4, 3, TypeDesc::FLOAT));
  writeFile("a.2.exr", "no picture");
  const ToolRun run = runTool({"--quiet", path("a.#.exr"), "-o", path("b.#.exr"), "--device", "cpu"});
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_THAT(run.err, HasSubstr("a.2.exr cannot be read as a picture"));
  EXPECT_THAT(files(), ElementsAre("a.1.exr", "a.2.exr", "b.1.exr", "in.exr"));
}

TEST_F(FailureTest, AnInterruptLeavesWholeFramesOnly)
{
  const ToolRun run = runTool({"--quiet", path("in.exr"), "-o", path("out.%06d.exr"), "--frames", "0-200000",
                               "--device", "cpu", "--set", "Gain=2"},
                              {.interruptOnceThereIs = path("out.000003.exr")});
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_THAT(run.err, HasSubstr("interrupted"));
  const std::vector<std::string> left = files();
  ASSERT_GT(left.size(), 1U);
  EXPECT_LT(left.size(), 200000U);
  for (const std::string& name : left)
  {
    EXPECT_FALSE(name.starts_with(".")) << name;
  }
  EXPECT_EQ(load(path(left.back())).values.size(), 64U * 64U * 4U);
}

TEST_F(FailureTest, AFullDiskLeavesTheOldOutput)
{
  // Noise, so that no compression makes a picture small.
  TestPicture noise = ramp(200, 100, 3, TypeDesc::FLOAT);
  for (std::size_t i = 0; i < noise.values.size(); ++i)
  {
    noise.values[i] = static_cast<float>((i * 2654435761U) >> 8 & 0xffff) / 65535.0F;
  }
  save(path("noise.exr"), noise);
  for (const std::string format : {"exr", "dpx", "tif", "png", "jpg"})
  {
    const std::string out = "out." + format;
    writeFile(out, "the old picture");
    const std::vector<std::string> before = files();
    const ToolRun run = runTool({path("noise.exr"), "-o", path(out), "--device", "cpu", "--quiet", "--set", "Gain=2"},
                                {.largestFile = 5000});
    EXPECT_EQ(run.exitCode, 1) << out;
    EXPECT_THAT(run.err, HasSubstr(out + " cannot be written")) << out;
    EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << run.err;
    EXPECT_TRUE(readFile(out) == "the old picture") << out;
    EXPECT_EQ(files(), before) << out;
  }
}

TEST_F(FailureTest, AFullDiskLeavesNoHalfProject)
{
  writeFile("project.json", "the old project");
  const ToolRun run =
      runTool({"--device", "cpu", "--quiet", "--save-project", path("project.json")}, {.largestFile = 10});
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_THAT(run.err, HasSubstr("project.json cannot be written"));
  EXPECT_EQ(readFile("project.json"), "the old project");
  EXPECT_THAT(files(), ElementsAre("in.exr", "project.json"));
}

TEST_F(FailureTest, WhatAUserMayNotReadOrWriteIsNamed)
{
  const ToolSetting held{.heldToPermissions = true};
  std::filesystem::permissions(folder_, std::filesystem::perms{0555});
  const auto says = [&](const std::string& input, const std::string& output)
  {
    const ToolRun run = runTool({"--quiet", path(input), "-o", path(output), "--device", "cpu"}, held);
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << run.err;
    return run.err;
  };
  EXPECT_THAT(says("in.exr", "out.exr"), HasSubstr("the output folder " + folder_.string() + " cannot be written"));
  EXPECT_THAT(says("in.exr", "new/out.exr"), HasSubstr("the output folder " + path("new") + " cannot be written"));
  std::filesystem::permissions(folder_, std::filesystem::perms{0777});
  std::filesystem::permissions(path("in.exr"), std::filesystem::perms::none);
  EXPECT_THAT(says("in.exr", "out.exr"), HasSubstr("in.exr cannot be read as a picture"));
  EXPECT_THAT(files(), ElementsAre("in.exr"));
}

TEST_F(FailureTest, AFileThatIsNoPluginIsNamed)
{
  const ToolRun run = runTool({"--list-params"}, {.bundle = std::string(MORVELLAN_SOURCE_DIR) + "/CMakeLists.txt"});
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_THAT(run.err, HasSubstr("CMakeLists.txt cannot be loaded"));
}

}  // namespace
}  // namespace morvellan::test
