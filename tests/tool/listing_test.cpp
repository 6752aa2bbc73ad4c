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
  EXPECT_THAT(names, ElementsAre("Controls", "Group", "Gain", "Mode", "Bypass", "Count", "Tint", "Note", "About",
                                 "LoadLooks", "SaveLooks"));
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

class LooksTest : public ToolTest
{
protected:
  LooksTest()
  {
    writeFile("half.prm", "0.5\n");
    writeFile("double.prm", "2\n");
    writeFile("bad.prm", "much\n");
  }
};

TEST_F(LooksTest, AreShownByParameter)
{
  const ToolRun run = runTool({"looks", "show", path("half.prm")});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_THAT(run.out, testing::MatchesRegex("Gain +0\\.5\n"));
}

TEST_F(LooksTest, AreChecked)
{
  EXPECT_EQ(runTool({"looks", "check", path("half.prm"), path("double.prm")}).exitCode, 0);
  const ToolRun run = runTool({"looks", "check", path("half.prm"), path("bad.prm")});
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_EQ(run.out, path("bad.prm") + ": Gain : the Look has no number\n");
  EXPECT_EQ(run.err, "morvellan-render: 1 of 2 Looks are faulty; save them anew or correct the lines named\n");
}

TEST_F(LooksTest, AreCompared)
{
  const ToolRun run = runTool({"looks", "diff", path("half.prm"), path("double.prm")});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_THAT(run.out, testing::MatchesRegex("Gain +0\\.5 +2\n"));
  EXPECT_EQ(runTool({"looks", "diff", path("half.prm"), path("half.prm")}).out, "");
}

TEST_F(LooksTest, AreLoadedAndSavedAmongTheEdits)
{
  const ToolRun run = runTool({"--device", "cpu", "--look", path("half.prm"), "--save-look", path("new/a.prm"), "--set",
                               "Gain=3", "--save-look", path("b.prm")});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_EQ(readFile("new/a.prm"), "0.5\n");
  EXPECT_EQ(readFile("b.prm"), "3\n");
}

TEST_F(LooksTest, ThatAreMissingAreNamed)
{
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"looks", "show", path("none.prm")}, {"--look", path("none.prm"), "--device", "cpu"}})
  {
    const ToolRun run = runTool(arguments);
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.err, HasSubstr("none.prm does not exist; check the name"));
  }
  EXPECT_EQ(runTool({"looks", "diff", path("half.prm")}).exitCode, 2);
  EXPECT_EQ(runTool({"looks", "paint", path("half.prm")}).exitCode, 2);
  EXPECT_EQ(runTool({"looks"}).exitCode, 2);
}

}  // namespace
}  // namespace morvellan::test
