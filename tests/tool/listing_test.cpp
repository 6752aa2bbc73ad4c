// The lists that the tool prints on standard output.
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "tests/tool/tool_run.h"

namespace morvellan::test
{
namespace
{

using testing::ElementsAre;
using testing::HasSubstr;

TEST(Listing, HelpAndVersion)
{
  const ToolRun help = runTool({"--help"});
  EXPECT_EQ(help.exitCode, 0);
  for (const char* const option : {"INPUT", "--output", "--frames", "--set", "--press", "--project", "--save-project",
                                   "--components", "--depth", "--device", "--threads", "--bundle", "--list-params",
                                   "--json", "--list-choices", "--trace", "--quiet", "--verbose"})
  {
    EXPECT_THAT(help.out, HasSubstr(option));
  }
  const ToolRun version = runTool({"--version"});
  EXPECT_EQ(version.exitCode, 0);
  EXPECT_EQ(version.out, "morvellan-render 3.7.0\n");
}

TEST(Listing, ParametersInPageOrder)
{
  const ToolRun run = runTool({"--list-params"});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_EQ(run.err, "");
  EXPECT_THAT(run.out, testing::ContainsRegex("\n  Gain +Double +1 +0 to 4 +Gain\n"));
  EXPECT_LT(run.out.find("Group"), run.out.find("Gain"));
  EXPECT_LT(run.out.find("Gain"), run.out.find("About"));
}

TEST(Listing, EveryDescribedPropertyAsJson)
{
  const ToolRun run = runTool({"--list-params", "--json"});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  const auto list = nlohmann::json::parse(run.out);
  std::vector<std::string> names;
  for (const auto& param : list)
  {
    names.push_back(param["name"]);
  }
  EXPECT_THAT(names, ElementsAre("Controls", "Group", "Gain", "Mode", "Bypass", "Count", "Tint", "Note", "About"));
  EXPECT_EQ(list[2]["kind"], "Double");
  EXPECT_EQ(list[2]["properties"], nlohmann::json({{"OfxParamPropDefault", 1.0},
                                                   {"OfxParamPropDigits", 5},
                                                   {"OfxParamPropDisplayMax", 4.0},
                                                   {"OfxParamPropDisplayMin", 0.0},
                                                   {"OfxParamPropHint", "Multiplies every value."},
                                                   {"OfxParamPropIncrement", 0.001},
                                                   {"OfxParamPropMax", 4.0},
                                                   {"OfxParamPropMin", 0.0},
                                                   {"OfxParamPropParent", "Group"}}));
  EXPECT_EQ(list[3]["properties"]["OfxParamPropChoiceOption"], nlohmann::json({"Multiply", "Fail", "Multiply Twice"}));
}

TEST(Listing, ChoicesWithTheirIndices)
{
  const ToolRun run = runTool({"--list-choices", "Mode"});
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_EQ(run.out, "  0  Multiply\n  1  Fail\n  2  Multiply Twice\n");
}

TEST(Listing, ReportsGoToStandardOutput)
{
  const ToolRun run = runTool({"--info", "about", "--device", "cpu"});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_THAT(run.out, HasSubstr("Gain : device cpu"));
}

}  // namespace
}  // namespace morvellan::test
