// The tool with the real effect: what a user sees of it from a shell.
#include <cmath>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "tests/tool/tool_run.h"

namespace morvellan::test
{
namespace
{

using testing::HasSubstr;
using testing::Not;

constexpr float greatestValue = 469.799988F;  // where the exposure of a linear input ends

const ToolSetting withEffect{.bundle = MORVELLAN_BUNDLE};

std::string sample(const std::string& name)
{
  return std::string(MORVELLAN_SOURCE_DIR) + "/samples/" + name;
}

class EffectTest : public ToolTest
{
protected:
  EffectTest() { setting_.environment["MORVELLAN_CONFIG_DIR"] = path("config"); }

  TestPicture render(std::vector<std::string> more)
  {
    std::vector<std::string> arguments{sample("interior.exr"), "-o", path("out.exr"), "--depth", "float"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    run_ = runTool(arguments, setting_);
    EXPECT_EQ(run_.exitCode, 0) << run_.err;
    return load(path("out.exr"));
  }

  ToolSetting setting_ = withEffect;
  ToolRun run_;
};

TEST_F(EffectTest, ExposureDoublesAtEveryLevel)
{
  const TestPicture source = load(sample("interior.exr"));
  for (const char* const level : {"v2", "v3", "v4"})
  {
    setting_.environment["MORVELLAN_CPU_LEVEL"] = level;
    const TestPicture result = render({"--set", "Exposure=0.1", "--device", "cpu"});
    ASSERT_EQ(result.values.size(), source.values.size());
    float greatest = 0.0F;
    for (std::size_t i = 0; i < source.values.size(); ++i)
    {
      const float expected = std::clamp(source.values[i] * 2.0F, 0.0F, greatestValue);
      greatest = std::max(greatest, std::abs(result.values[i] - expected) / std::max(expected, 1.0F));
    }
    EXPECT_LE(greatest, 1e-6F) << level;
  }
}

// Values on both sides of the limits, and what is no number; on linear input of kind 1 they are doubled and held.
TEST_F(EffectTest, ExposureHoldsItsResultAtEveryLevel)
{
  const std::vector<float> levels{-INFINITY, -1e30F,   -1.0F,   -0.0F,  0.0F,    1e-38F,  1e-6F, 0.18F,
                                  1.0F,      100.3F,   234.89F, 234.9F, 235.0F,  470.0F,  1e6F,  1e38F,
                                  3e38F,     INFINITY, NAN,     0.5F,   234.91F, 65504.0F};
  TestPicture picture{OIIO::ImageSpec(static_cast<int>(levels.size()), 2, 3, OIIO::TypeDesc::FLOAT), {}};
  for (int i = 0; i < 2; ++i)
    for (const float level : levels)
      picture.values.insert(picture.values.end(), {level, level, level});
  save(path("levels.exr"), picture);
  for (const char* const level : {"v2", "v3", "v4"})
  {
    setting_.environment["MORVELLAN_CPU_LEVEL"] = level;
    const ToolRun run = runTool(
        {path("levels.exr"), "-o", path("out.exr"), "--set", "Exposure=0.1", "--depth", "float", "--device", "cpu"},
        setting_);
    ASSERT_EQ(run.exitCode, 0) << run.err;
    const TestPicture result = load(path("out.exr"));
    ASSERT_EQ(result.values.size(), picture.values.size());
    for (std::size_t i = 0; i < result.values.size(); ++i)
    {
      const float value = picture.values[i];
      const float expected = std::isnan(value) ? 0.0F : std::clamp(value * 2.0F, 0.0F, greatestValue);
      EXPECT_LE(std::abs(result.values[i] - expected), 1e-6F * std::max(expected, 1.0F)) << level << ": " << value;
    }
  }
}

TEST_F(EffectTest, AHostWithoutAGpuGetsItsSourceAndTheReason)
{
  const TestPicture result = render({"--set", "Exposure=0.1", "--device", "host"});
  if (run_.err.find("CUDA") == std::string::npos)
  {
    GTEST_SKIP() << "this machine has a GPU";
  }
  EXPECT_THAT(run_.err, HasSubstr("error: Morvellan : "));
  EXPECT_EQ(result.values, load(sample("interior.exr")).values);
}

TEST_F(EffectTest, AutoSaysWhichDeviceItTakes)
{
  const TestPicture result = render({"--set", "Exposure=0.1"});
  EXPECT_THAT(run_.err, testing::AnyOf(HasSubstr("device: GPU\n"), HasSubstr("device: CPU, since no GPU is usable (")));
  EXPECT_NE(result.values, load(sample("interior.exr")).values);
}

TEST_F(EffectTest, TraceNamesStagesKernelsSizesAndTimes)
{
  render({"--set", "Exposure=0.1", "--device", "cpu", "--trace"});
  EXPECT_THAT(run_.err, testing::ContainsRegex("exposure[a-z_]+ +1024x512 +[0-9.]+ ms"));
  render({"--set", "Exposure=0.1", "--device", "cpu"});
  EXPECT_THAT(run_.err, Not(HasSubstr("1024x512")));
}

TEST_F(EffectTest, ThreadsDoNotChangeThePicture)
{
  const std::vector<std::string> settings{
      "--set", "Exposure=0.05", "--set", "SoftClips=1", "--set", "CameraHighlightsCeiling=0.5", "--device", "cpu"};
  const auto with = [&](const char* threads)
  {
    std::vector<std::string> more = settings;
    more.insert(more.end(), {"--threads", threads});
    return render(more).values;
  };
  EXPECT_EQ(with("1"), with("4"));
}

TEST_F(EffectTest, ASavedProjectRendersTheSamePicture)
{
  const TestPicture first =
      render({"--set", "Exposure=0.07", "--set", "SoftClips=1", "--set", "CameraHighlightsCeiling=0.4", "--device",
              "cpu", "--save-project", path("project.json")});
  const TestPicture second = render({"--project", path("project.json"), "--device", "cpu"});
  EXPECT_EQ(first.values, second.values);
  const auto params = nlohmann::json::parse(readFile("project.json"))["params"];
  EXPECT_EQ(params["Exposure"], 0.07);
  EXPECT_EQ(params["SoftClips"], 1);
  EXPECT_FALSE(params.contains("About"));
  EXPECT_FALSE(params.contains("Controls"));
}

TEST_F(EffectTest, AnRgbaClipKeepsItsAlpha)
{
  const TestPicture result = render({"--set", "Exposure=0.1", "--components", "rgba", "--device", "cpu"});
  ASSERT_EQ(result.spec.nchannels, 4);
  for (std::size_t i = 3; i < result.values.size(); i += 4)
  {
    ASSERT_EQ(result.values[i], 1.0F);
  }
}

TEST_F(EffectTest, ListsEveryParameterInPageOrder)
{
  const ToolRun run = runTool({"--list-params", "--json"}, setting_);
  ASSERT_EQ(run.exitCode, 0) << run.err;
  const auto list = nlohmann::json::parse(run.out);
  ASSERT_GT(list.size(), 600U);
  EXPECT_EQ(list[0]["name"], "Controls");
  EXPECT_EQ(list[1]["name"], "Input");
  EXPECT_EQ(list[2]["name"], "InputGamut");
  EXPECT_EQ(list.back()["name"], "SrcClipChanged");
  const auto exposure =
      std::find_if(list.begin(), list.end(), [](const auto& each) { return each["name"] == "Exposure"; });
  ASSERT_NE(exposure, list.end());
  EXPECT_EQ((*exposure)["properties"]["OfxParamPropDigits"], 5);
  EXPECT_EQ((*exposure)["properties"]["OfxParamPropMin"], -1.0);
  EXPECT_EQ((*exposure)["properties"]["OfxParamPropParent"], "Input");
}

TEST_F(EffectTest, ListsChoices)
{
  const ToolRun run = runTool({"--list-choices", "InputGamut"}, setting_);
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_THAT(run.out, testing::StartsWith("  0  Linear Rec.709|sRGB\n"));
  EXPECT_THAT(run.out, HasSubstr("\n 27  sRGB Display\n"));
}

TEST_F(EffectTest, ListsTheDevicesThatWereAskedFor)
{
  const ToolRun run = runTool({"--list-choices", "NatronGPU", "--device", "cpu:2"}, setting_);
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_THAT(run.out, testing::MatchesRegex("  0  CPU, .*\n  1  CPU, .*\n  2  3rd GPU unavailable\n"
                                             "  3  4th GPU unavailable\n"));
}

TEST_F(EffectTest, PrintsItsReports)
{
  for (const char* const report : {"cuda", "clip", "about"})
  {
    const ToolRun run = runTool({"--info", report, sample("interior.exr"), "--device", "cpu"}, setting_);
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_THAT(run.out, HasSubstr("Morvellan")) << report;
  }
}

}  // namespace
}  // namespace morvellan::test
