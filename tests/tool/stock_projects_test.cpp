// The sample projects of camera stocks, typed from the stocks' tables: reopened, where no rule runs, each gives the
// values and the picture that choosing its stock gives.
#include <nlohmann/json.hpp>

#include "tests/tool/tool_run.h"

namespace morvellan::test
{
namespace
{

using Arguments = std::vector<std::string>;

class StockProjects : public ToolTest
{
protected:
  StockProjects() { save(path("in.exr"), ramp(48, 27, 3, OIIO::TypeDesc::FLOAT)); }

  static std::vector<std::filesystem::path> projects()
  {
    std::vector<std::filesystem::path> found;
    for (const auto& entry : std::filesystem::directory_iterator(MORVELLAN_SOURCE_DIR "/samples"))
    {
      if (entry.path().extension() == ".json")
      {
        found.push_back(entry.path());
      }
    }
    return found;
  }

  struct Result
  {
    nlohmann::json params;  // all values at the end
    std::vector<float> picture;
  };

  // in.exr by these settings, as sRGB code values.
  Result render(const Arguments& settings) const
  {
    Arguments arguments{path("in.exr"), "-o", path("out.exr"), "--device", "cpu", "--save-project", path("all.json")};
    arguments.insert(arguments.end(), settings.begin(), settings.end());
    arguments.insert(arguments.end(), {"--set", "InputGamut=27"});
    const ToolRun run =
        runTool(arguments, {.bundle = MORVELLAN_BUNDLE, .environment = {{"MORVELLAN_CONFIG_DIR", folder_}}});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    return {nlohmann::json::parse(readFile("all.json"))["params"], load(path("out.exr")).values};
  }
};

TEST_F(StockProjects, AreWhatChoosingTheStockGives)
{
  const auto files = projects();
  ASSERT_GE(files.size(), 3U);
  for (const auto& file : files)
  {
    SCOPED_TRACE(file);
    const Result opened = render({"--project", file});
    const int stock = opened.params["CameraStock"];
    const Result chosen = render({"--set", "SoupBypass=0", "--set", "CameraStock=" + std::to_string(stock)});
    EXPECT_GE(stock, 2);
    EXPECT_EQ(opened.params, chosen.params) << nlohmann::json::diff(chosen.params, opened.params);
    EXPECT_EQ(opened.picture, chosen.picture);
    EXPECT_NE(opened.picture, render({"--set", "SoupBypass=0"}).picture) << "a stock changes the picture";
  }
}

TEST_F(StockProjects, DifferFromEachOther)
{
  std::vector<std::vector<float>> pictures;
  for (const auto& file : projects())
  {
    pictures.push_back(render({"--project", file}).picture);
    for (std::size_t i = 0; i + 1 < pictures.size(); ++i)
    {
      EXPECT_NE(pictures[i], pictures.back()) << file;
    }
  }
}

}  // namespace
}  // namespace morvellan::test
