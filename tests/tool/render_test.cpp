// The tool renders pictures and sequences through a plug-in: values, order of edits, projects, formats, metadata.
#include <cmath>
#include <set>
#include <sstream>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "tests/tool/tool_run.h"

namespace morvellan::test
{
namespace
{

using OIIO::TypeDesc;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class RenderTest : public ToolTest
{
protected:
  RenderTest() { save(path("in.exr"), ramp(7, 5, 3, TypeDesc::FLOAT)); }

  // Renders in.exr to out.exr with these further arguments, and returns the factor from one to the other.
  float factor(std::vector<std::string> more, const ToolSetting& setting = {})
  {
    std::vector<std::string> arguments{path("in.exr"), "-o", path("out.exr"), "--device", "cpu"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    const ToolRun run = runTool(arguments, setting);
    EXPECT_EQ(run.exitCode, 0) << run.err;
    const TestPicture before = load(path("in.exr"));
    const TestPicture after = load(path("out.exr"));
    if (before.values.size() != after.values.size())
    {
      ADD_FAILURE() << "the sizes differ";
      return 0.0F;
    }
    const float gain = after.values.back();
    for (std::size_t i = 0; i < before.values.size(); ++i)
    {
      EXPECT_EQ(after.values[i], before.values[i] * gain) << "value " << i;
    }
    return gain;
  }
};

TEST_F(RenderTest, MultipliesEveryValue)
{
  EXPECT_EQ(factor({"--set", "Gain=2.5"}), 2.5F);
  EXPECT_THAT(files(), ElementsAre("in.exr", "out.exr"));
}

TEST_F(RenderTest, PassesTheSourceOnWhereTheEffectIsIdentity)
{
  EXPECT_EQ(factor({}), 1.0F);
}

TEST_F(RenderTest, RunsEditsInTheOrderGiven)
{
  // Turning the bypass on sets the gain to 1.
  EXPECT_EQ(factor({"--set", "Gain=2", "--set", "Bypass=on"}), 1.0F);
  EXPECT_EQ(factor({"--set", "Bypass=on", "--set", "Gain=2"}), 2.0F);
  EXPECT_EQ(factor({"--set", "Bypass=on", "--press", "About", "--set", "Gain=3"}), 3.0F);
}

TEST_F(RenderTest, AProjectRunsNoRules)
{
  writeFile("project.json", R"({"params": {"Gain": 2.0, "Bypass": true, "Tint": [0.1, 0.2, 0.3], "Note": "hello"}})");
  EXPECT_EQ(factor({"--project", path("project.json")}), 2.0F);
  EXPECT_EQ(factor({"--project", path("project.json"), "--set", "Gain=4"}), 4.0F);
}

TEST_F(RenderTest, SavesAProjectThatGivesTheSamePicture)
{
  EXPECT_EQ(factor({"--set", "Gain=0.3", "--set", "Tint=0.25,0.5,1", "--set", "Mode=Multiply Twice", "--save-project",
                    path("saved.json")}),
            0.3F * 0.3F);
  const auto saved = nlohmann::json::parse(readFile("saved.json"));
  EXPECT_EQ(saved["params"]["Gain"], 0.3);
  EXPECT_EQ(saved["params"]["Mode"], 2);
  EXPECT_EQ(saved["params"]["Bypass"], false);
  EXPECT_EQ(saved["params"]["Tint"], nlohmann::json({0.25, 0.5, 1.0}));
  EXPECT_FALSE(saved["params"].contains("About"));
  EXPECT_EQ(factor({"--project", path("saved.json")}), 0.3F * 0.3F);
}

TEST_F(RenderTest, SavesAProjectWithoutRendering)
{
  const ToolRun run = runTool({"--device", "cpu", "--set", "Gain=2", "--save-project", path("saved.json")});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_EQ(nlohmann::json::parse(readFile("saved.json"))["params"]["Gain"], 2.0);
}

TEST_F(RenderTest, TakesAChoiceByIndexOrLabel)
{
  EXPECT_EQ(factor({"--set", "Gain=2", "--set", "Mode=2"}), 4.0F);
  EXPECT_EQ(factor({"--set", "Gain=2", "--set", "Mode=Multiply Twice"}), 4.0F);
  EXPECT_EQ(factor({"--set", "Gain=2", "--set", "Mode= multiply twice "}), 4.0F);
  EXPECT_EQ(factor({"--set", "Gain=2", "--set", "Mode=Multiply"}), 2.0F);
}

TEST_F(RenderTest, GivesTheEnvironmentToThePlugin)
{
  const auto about = [&](std::vector<std::string> more, const ToolSetting& setting = {})
  {
    more.insert(more.end(), {"--press", "About", path("in.exr"), "-o", path("out.exr")});
    const ToolRun run = runTool(more, setting);
    EXPECT_EQ(run.exitCode, 0);
    return run.err;
  };
  EXPECT_THAT(about({"--device", "cpu"}), HasSubstr("device cpu, threads unset, trace unset"));
  EXPECT_THAT(about({"--device", "cpu:3", "--threads", "2", "--trace"}), HasSubstr("device cpu:3, threads 2, trace 1"));
  EXPECT_THAT(about({"--device", "host"}), HasSubstr("device unset"));
  EXPECT_THAT(about({"--device", "host"}, {.environment = {{"MORVELLAN_DEVICE", "cpu:5"}}}), HasSubstr("device cpu:5"));
  // The small effect never has a GPU: it would pass its source on.
  EXPECT_THAT(about({}), testing::AllOf(HasSubstr("device: CPU, since no GPU is usable"), HasSubstr("device cpu")));
}

TEST_F(RenderTest, RendersSequences)
{
  for (const int frame : {8, 9, 10, 12})
  {
    std::filesystem::copy(path("in.exr"),
                          path("shot." + std::string(frame < 10 ? "000" : "00") + std::to_string(frame) + ".exr"));
  }
  ToolRun run = runTool({path("shot.%04d.exr"), "-o", path("a.##.exr"), "--device", "cpu", "--set", "Gain=2"});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_THAT(files(), testing::IsSupersetOf({"a.08.exr", "a.09.exr", "a.10.exr", "a.12.exr"}));
  EXPECT_THAT(run.err, HasSubstr("a.12.exr (4 of 4)"));
  run = runTool({path("shot.####.exr"), "-o", path("b.%d.exr"), "--frames", "8-12x2", "--device", "cpu"});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_THAT(files(), testing::IsSupersetOf({"b.8.exr", "b.10.exr", "b.12.exr"}));
  EXPECT_EQ(load(path("a.12.exr")).values.back(), 2.0F);
}

TEST_F(RenderTest, TakesAFileOfJustThatNameBeforeASequence)
{
  std::filesystem::copy(path("in.exr"), path("take #2.exr"));
  std::filesystem::copy(path("in.exr"), path("50%d.exr"));
  ToolRun run = runTool({path("take #2.exr"), "-o", path("one.exr"), "--device", "cpu", "--set", "Gain=2"});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_EQ(load(path("one.exr")).values.back(), 2.0F);
  run = runTool({path("take #2.exr"), path("50%d.exr"), "-o", path("two.%d.exr"), "--device", "cpu"});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_THAT(files(), testing::IsSupersetOf({"two.0.exr", "two.1.exr"}));
}

TEST_F(RenderTest, RendersSeveralFilesAtTheirNumbers)
{
  std::filesystem::copy(path("in.exr"), path("x7.exr"));
  std::filesystem::copy(path("in.exr"), path("x3.exr"));
  const ToolRun run = runTool({path("x7.exr"), path("x3.exr"), "-o", path("y%d.exr"), "--device", "cpu"});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_THAT(files(), testing::IsSupersetOf({"y3.exr", "y7.exr"}));
}

TEST_F(RenderTest, RendersAStillAtSeveralTimes)
{
  const ToolRun run = runTool({path("in.exr"), "-o", path("y.%03d.exr"), "--frames", "-1-1", "--device", "cpu"});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_THAT(files(), testing::IsSupersetOf({"y.-001.exr", "y.000.exr", "y.001.exr"}));
}

// The actions that a plug-in got, without the queries between them that a host may leave out.
std::vector<std::string> actionsIn(const std::string& told)
{
  const std::set<std::string> optional{"OfxImageEffectActionGetClipPreferences", "OfxImageEffectActionGetTimeDomain",
                                       "OfxImageEffectActionGetRegionOfDefinition",
                                       "OfxImageEffectActionGetRegionsOfInterest",
                                       "OfxImageEffectActionGetFramesNeeded"};
  std::vector<std::string> actions;
  std::istringstream lines(told);
  for (std::string line; std::getline(lines, line);)
  {
    if (line.starts_with("Ofx") && !optional.contains(line))
    {
      actions.push_back(line);
    }
  }
  return actions;
}

TEST_F(RenderTest, SendsItsActionsInTheOrderOfAHost)
{
  const std::vector<std::string> head{"OfxActionLoad",
                                      "OfxActionDescribe",
                                      "OfxImageEffectActionDescribeInContext",
                                      "OfxActionCreateInstance",
                                      "OfxActionBeginInstanceChanged",
                                      "OfxActionInstanceChanged",
                                      "OfxActionEndInstanceChanged"};
  const std::vector<std::string> frame{"OfxImageEffectActionIsIdentity", "OfxImageEffectActionRender"};
  const std::vector<std::string> tail{"OfxImageEffectActionEndSequenceRender", "OfxActionDestroyInstance",
                                      "OfxActionUnload"};
  const auto expected = [&](const std::vector<std::string>& edits, int frames)
  {
    std::vector<std::string> all = head;
    all.insert(all.end(), edits.begin(), edits.end());
    all.emplace_back("OfxImageEffectActionBeginSequenceRender");
    for (int i = 0; i < frames; ++i)
    {
      all.insert(all.end(), frame.begin(), frame.end());
    }
    all.insert(all.end(), tail.begin(), tail.end());
    return all;
  };
  const ToolSetting telling{.environment = {{"BAD_PLUGIN_TELLS", "1"}}};
  const std::vector<std::string> still{path("in.exr"), "-o",  path("y.#.exr"), "--frames", "1-2",
                                       "--device",     "cpu", "--quiet",       "--set",    "Gain=2"};
  const ToolRun run = runTool(still, telling);
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_EQ(actionsIn(run.err), expected({}, 2));
  // A frame that fails ends the sequence all the same.
  std::vector<std::string> failing = still;
  failing.insert(failing.end(), {"--set", "Mode=Fail"});
  const ToolRun failed = runTool(failing, telling);
  EXPECT_EQ(failed.exitCode, 1);
  EXPECT_EQ(actionsIn(failed.err), expected({head.end() - 3, head.end()}, 1));
}

TEST_F(RenderTest, MakesTheFolderOfTheOutput)
{
  EXPECT_EQ(runTool({path("in.exr"), "-o", path("new/folder/out.exr"), "--device", "cpu"}).exitCode, 0);
  EXPECT_TRUE(std::filesystem::exists(path("new/folder/out.exr")));
}

TEST_F(RenderTest, ConvertsComponents)
{
  EXPECT_EQ(runTool({path("in.exr"), "-o", path("rgba.exr"), "--components", "rgba", "--device", "cpu"}).exitCode, 0);
  const TestPicture rgba = load(path("rgba.exr"));
  ASSERT_EQ(rgba.spec.nchannels, 4);
  EXPECT_EQ(rgba.values[3], 1.0F);
  EXPECT_EQ(rgba.values[4], load(path("in.exr")).values[3]);
  EXPECT_EQ(runTool({path("rgba.exr"), "-o", path("rgb.exr"), "--components", "rgb", "--device", "cpu"}).exitCode, 0);
  EXPECT_EQ(load(path("rgb.exr")).values, load(path("in.exr")).values);
}

TEST_F(RenderTest, SpreadsOneChannelOverThree)
{
  save(path("grey.exr"), ramp(4, 4, 1, TypeDesc::FLOAT));
  EXPECT_EQ(runTool({path("grey.exr"), "-o", path("rgb.exr"), "--device", "cpu"}).exitCode, 0);
  const TestPicture rgb = load(path("rgb.exr"));
  ASSERT_EQ(rgb.spec.nchannels, 3);
  EXPECT_EQ(rgb.values[3], rgb.values[5]);
  EXPECT_EQ(rgb.values[3], load(path("grey.exr")).values[1]);
}

TEST_F(RenderTest, KeepsColoursUnderTransparentAlpha)
{
  TestPicture picture = ramp(8, 8, 4, TypeDesc::UINT8);
  picture.values[3] = 0.0F;
  picture.values[0] = 1.0F;
  save(path("in.png"), picture);
  ASSERT_EQ(runTool({path("in.png"), "-o", path("out.png"), "--device", "cpu"}).exitCode, 0);
  EXPECT_EQ(load(path("out.png")).values, load(path("in.png")).values);
  ASSERT_EQ(runTool({path("in.png"), "-o", path("out.tif"), "--device", "cpu"}).exitCode, 0);
  EXPECT_EQ(load(path("out.tif")).values, load(path("in.png")).values);
}

TEST_F(RenderTest, DropsAnAlphaThatJpegCannotHold)
{
  save(path("in.png"), ramp(8, 8, 4, TypeDesc::UINT8));
  ASSERT_EQ(runTool({path("in.png"), "-o", path("out.jpg"), "--device", "cpu"}).exitCode, 0);
  EXPECT_EQ(load(path("out.jpg")).spec.nchannels, 3);
}

struct DepthCase
{
  const char* extension;
  const char* depth;
  float greatest;  // of an integer's codes; 0 for floating point

  friend void PrintTo(const DepthCase& self, std::ostream* out) { *out << self.extension << ' ' << self.depth; }
};

class DepthTest : public ToolTest, public testing::WithParamInterface<DepthCase>
{
};

// What a file says that its samples are, by the names of --depth.
std::string storedDepth(const TestPicture& picture)
{
  const auto& [header, values] = picture;
  const int bits = header.get_int_attribute("oiio:BitsPerSample");
  return bits == 10 ? "uint10" : header.format.c_str();
}

TEST_P(DepthTest, RoundsToTheNearestCode)
{
  save(path("in.exr"), ramp(16, 9, 3, TypeDesc::FLOAT));
  const std::string out = path(std::string("out.") + GetParam().extension);
  const ToolRun run = runTool({path("in.exr"), "-o", out, "--depth", GetParam().depth, "--device", "cpu"});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  const TestPicture before = load(path("in.exr"));
  const TestPicture after = load(out);
  ASSERT_EQ(after.values.size(), before.values.size());
  EXPECT_EQ(storedDepth(after), GetParam().depth);
  const float greatest = GetParam().greatest;
  for (std::size_t i = 0; i < before.values.size(); ++i)
  {
    const float value = before.values[i];
    const float expected = greatest > 0.0F ? std::round(value * greatest) / greatest : value;
    const float tolerance = std::string(GetParam().depth) == "half" ? value * 0x1p-11F
                            : greatest == 1023.0F                   ? 0x1p-15F
                                                                    : 1e-7F;
    EXPECT_NEAR(after.values[i], expected, tolerance) << "value " << i;
  }
}

INSTANTIATE_TEST_SUITE_P(All, DepthTest,
                         testing::Values(DepthCase{"exr", "half", 0}, DepthCase{"exr", "float", 0},
                                         DepthCase{"dpx", "uint8", 255}, DepthCase{"dpx", "uint10", 1023},
                                         DepthCase{"dpx", "uint16", 65535}, DepthCase{"tif", "uint8", 255},
                                         DepthCase{"tif", "uint10", 1023}, DepthCase{"tif", "uint16", 65535},
                                         DepthCase{"tiff", "float", 0}, DepthCase{"tif", "half", 0},
                                         DepthCase{"png", "uint8", 255}, DepthCase{"png", "uint16", 65535}),
                         [](const auto& info) { return std::string(info.param.extension) + "_" + info.param.depth; });

TEST_F(RenderTest, ClampsWhatIntegersCannotHold)
{
  TestPicture picture = ramp(2, 1, 3, TypeDesc::FLOAT);
  picture.values = {-1.0F, 2.0F, std::nanf(""), INFINITY, -INFINITY, 0.5F};
  save(path("wild.exr"), picture);
  ASSERT_EQ(runTool({path("wild.exr"), "-o", path("out.png"), "--device", "cpu"}).exitCode, 0);
  const TestPicture out = load(path("out.png"));
  EXPECT_THAT(std::vector<float>(out.values.begin(), out.values.begin() + 5), ElementsAre(0, 1, 0, 1, 0));
}

TEST_F(RenderTest, TenBitsGoRoundUnchanged)
{
  save(path("in.exr"), ramp(64, 16, 3, TypeDesc::FLOAT));
  ASSERT_EQ(runTool({path("in.exr"), "-o", path("a.dpx"), "--depth", "uint10", "--device", "cpu"}).exitCode, 0);
  ASSERT_EQ(runTool({path("a.dpx"), "-o", path("b.dpx"), "--device", "cpu"}).exitCode, 0);
  EXPECT_EQ(load(path("b.dpx")).spec.get_int_attribute("oiio:BitsPerSample"), 10);
  EXPECT_EQ(load(path("a.dpx")).values, load(path("b.dpx")).values);
}

TEST_F(RenderTest, TalksAsToldTo)
{
  const std::vector<std::string> render{path("in.exr"), "-o", path("out.exr"), "--device", "cpu", "--set", "Gain=2"};
  const auto talk = [&](std::vector<std::string> more, const ToolSetting& setting = {})
  {
    more.insert(more.end(), render.begin(), render.end());
    return runTool(more, setting);
  };
  EXPECT_THAT(talk({}).err, HasSubstr("out.exr (1 of 1): "));
  EXPECT_THAT(talk({}).out, IsEmpty());
  EXPECT_THAT(talk({"--quiet", "--press", "About"}).err, IsEmpty());
  const ToolSetting misusing{.environment = {{"BAD_PLUGIN", "property of another set"}}};
  EXPECT_THAT(talk({}, misusing).err, Not(HasSubstr("misuse")));
  EXPECT_THAT(talk({"--verbose"}, misusing).err, HasSubstr("misuse of the interface: [OfxActionDescribe]"));
}

TEST_F(RenderTest, TellsWhatOfAPictureItLeavesOut)
{
  TestPicture layered = ramp(4, 4, 5, TypeDesc::FLOAT);
  layered.spec.channelnames = {"R", "G", "B", "Z", "id"};
  save(path("layered.exr"), layered);
  const std::vector<OIIO::ImageSpec> parts(2, ramp(4, 4, 3, TypeDesc::FLOAT).spec);
  const auto output = OIIO::ImageOutput::create("parts.exr");
  ASSERT_TRUE(output->open(path("parts.exr"), 2, parts.data()));
  const std::vector<float> values = ramp(4, 4, 3, TypeDesc::FLOAT).values;
  ASSERT_TRUE(output->write_image(TypeDesc::FLOAT, values.data()));
  ASSERT_TRUE(output->open(path("parts.exr"), parts[1], OIIO::ImageOutput::AppendSubimage));
  ASSERT_TRUE(output->write_image(TypeDesc::FLOAT, values.data()));
  ASSERT_TRUE(output->close());

  const auto told = [&](const char* file, const std::vector<std::string>& more = {})
  {
    std::vector<std::string> arguments{path(file), "-o", path("out.exr"), "--device", "cpu"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    const ToolRun run = runTool(arguments);
    EXPECT_EQ(run.exitCode, 0) << run.err;
    return run.err;
  };
  EXPECT_THAT(told("layered.exr"), HasSubstr("layered.exr: left out: channel Z, channel id\n"));
  EXPECT_THAT(told("layered.exr", {"--quiet"}), IsEmpty());
  EXPECT_THAT(told("parts.exr"), HasSubstr("parts.exr: left out: all parts but the first\n"));
  EXPECT_THAT(told("in.exr"), Not(HasSubstr("left out")));
}

TEST_F(RenderTest, DrawsABarOnATerminal)
{
  const std::vector<std::string> still{path("in.exr"), "-o", path("y.%03d.exr"), "--frames", "1-4", "--device", "cpu"};
  const ToolRun run = runTool(still, {.terminal = true});
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_THAT(run.err, HasSubstr("[##############################] 4/4"));
  EXPECT_THAT(run.err, HasSubstr("frames/s"));
  EXPECT_THAT(run.err, testing::ContainsRegex("2/4  [0-9.]+ frames/s  [0-9]+:[0-9][0-9] left"));
  EXPECT_THAT(run.err, HasSubstr("4 of 4 frames in "));
  EXPECT_THAT(runTool(still).err, Not(HasSubstr("[###")));
}

}  // namespace
}  // namespace morvellan::test
