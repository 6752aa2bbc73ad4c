// The reports of the real plug-in, and what the tool says of the device, on machines with and without a GPU.
#include <gmock/gmock.h>

#include "tests/tool/tool_run.h"

namespace morvellan::test
{
namespace
{

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class InfoTest : public ToolTest
{
protected:
  // The configuration file starts out missing, as on a new machine.
  [[nodiscard]] ToolRun run(const std::vector<std::string>& arguments,
                            std::map<std::string, std::string> environment = {}) const
  {
    environment["MORVELLAN_CONFIG_DIR"] = path("config");
    return runTool(arguments, {.bundle = MORVELLAN_BUNDLE, .environment = std::move(environment)});
  }
};

const std::string picture = MORVELLAN_SOURCE_DIR "/samples/interior.exr";

TEST_F(InfoTest, About)
{
  const ToolRun report = run({"--info", "about", "--device", "cpu"});
  EXPECT_EQ(report.exitCode, 0) << report.err;
  EXPECT_THAT(report.out, StartsWith("\nMorvellan for Natron, ver 3.7."));
}

TEST_F(InfoTest, ClipOfTheInput)
{
  const ToolRun report = run({"--info", "clip", picture, "--device", "cpu"});
  EXPECT_EQ(report.exitCode, 0) << report.err;
  EXPECT_THAT(report.out, AllOf(StartsWith("Morvellan Clip Info :\n\nInput : \n    RGB - 32f BitDepthFloat\n"),
                                HasSubstr("\n    Resolution : 0, 0, 1024, 512\n"), HasSubstr("\nOutput : \n")));
}

TEST_F(InfoTest, Cuda)
{
  const ToolRun report = run({"--info", "cuda", "--device", "host"});
  EXPECT_EQ(report.exitCode, 0) << report.err;
  if (report.out.find("Number of available CUDA GPUs") != std::string::npos)
    GTEST_SKIP() << "this machine has an NVIDIA GPU";
  EXPECT_THAT(report.out, StartsWith("\n    Morvellan : Failed to initialise nVidia's NVML library\n"));
}

TEST_F(InfoTest, TheReasonForTheCpuIsAboutTheGpu)
{
  const ToolRun report = run({"--info", "about"});
  EXPECT_EQ(report.exitCode, 0) << report.err;
  if (report.err.find("device: GPU") != std::string::npos)
    GTEST_SKIP() << "this machine has an NVIDIA GPU";
  EXPECT_THAT(report.err, AllOf(HasSubstr("device: CPU, since no GPU is usable (Morvellan : Morvellan is unable to "),
                                Not(HasSubstr("no GPU is usable (Morvellan : For very first-time"))));
}

TEST_F(InfoTest, AnUnknownDeviceOfTheEnvironmentIsTold)
{
  const ToolRun report = run({"--info", "about", "--device", "host"}, {{"MORVELLAN_DEVICE", "quantum"}});
  EXPECT_EQ(report.exitCode, 0);
  EXPECT_THAT(report.err, HasSubstr("MORVELLAN_DEVICE is 'quantum'. Set it to auto, cuda, cpu, or cpu:N"));
}

}  // namespace
}  // namespace morvellan::test
