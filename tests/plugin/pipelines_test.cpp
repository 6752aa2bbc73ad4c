// Every switch with every other: a set of settings that covers all pairs runs through the plug-in on the strict host.
// No pixel may be lost, alpha stays, and the launches are those of the plan. Neutral settings give the source back.
#include <array>
#include <cmath>
#include <cstdio>
#include <map>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "params/catalogue.h"
#include "pipeline/host/capture.h"
#include "pipeline/host/plan.h"
#include "tests/plugin/plugin_host.h"

namespace morvellan::test
{
namespace
{

using host::Components;
using host::EffectInstance;
using host::Frame;

using Project = std::map<std::string, host::ParamValue>;

// One switch: its settings, each a few stored values.
using Factor = std::vector<Project>;

constexpr int frameWidth = 24, frameHeight = 14;

std::vector<Factor> factors()
{
  std::vector<Factor> all;
  Factor inputs;
  for (int gamut : {0, 4, 5, 30, 1, 10, 11, 13, 27, 42, 46, 47})
    inputs.push_back({{"InputGamut", gamut}});
  all.push_back(inputs);
  all.push_back(
      {{{"SourceWidth", frameWidth},
        {"SourceHeight", frameHeight},
        {"TargetWidth", frameWidth},
        {"TargetHeight", frameHeight}},
       {{"SourceWidth", 16}, {"SourceHeight", 9}, {"TargetWidth", frameWidth}, {"TargetHeight", frameHeight}},
       {{"SourceWidth", 16}, {"SourceHeight", 9}, {"TargetWidth", 20}, {"TargetHeight", 12}},
       {{"SourceWidth", frameWidth}, {"SourceHeight", frameHeight}, {"TargetWidth", 17}, {"TargetHeight", 10}}});
  all.push_back(
      {{{"SpatialEnhancement", 0}, {"SpatialEnhancer", 0}},
       {{"SpatialEnhancement", 1}, {"HorizontalEnhancer", 3.0}, {"VerticalEnhancer", 3.0}},
       {{"SpatialEnhancement", 0}, {"SpatialEnhancer", 2}, {"HorizontalDetails", 2.0}, {"VerticalDetails", 0.0}}});
  all.push_back({{{"PitchBypass", true}}, {{"PitchBypass", false}, {"EnsemblePitch", 4.0}, {"AltoPitch", 4.0}}});
  all.push_back({{{"HalationBypass", true}}, {{"HalationBypass", false}}});
  all.push_back({{{"Exposure", 0.0}}, {{"Exposure", 0.02}}});
  all.push_back({{{"SoftClips", 0}}, {{"SoftClips", 1}, {"CameraHighlightsCeiling", 0.8}}});
  all.push_back({{{"SoupHighlightCeiling", 1.0}}, {{"SoupHighlightCeiling", 0.9}}});
  all.push_back({{{"SoupBypass", true}},
                 {{"SoupBypass", false}},
                 {{"SoupBypass", false}, {"LableachBypass", true}, {"ToneCurves", 1}, {"SoupToeRed", 0.05}},
                 {{"SoupBypass", false}, {"LabDiffuseLoMid", 0.5}, {"ColorCorrection", 1}, {"SaturationRed", 0.7}}});
  all.push_back({{{"PrintDisplayBypass", true}},
                 {{"PrintDisplayBypass", false}, {"PrintProfile", 0}},
                 {{"PrintDisplayBypass", false}, {"PrintProfile", 2}},
                 {{"PrintDisplayBypass", false}, {"PrintProfile", 7}, {"Bleach", true}, {"OutputDisplayGamut", 6}}});
  all.push_back({{{"GrainBypass", true}},
                 {{"GrainBypass", false}, {"DispersionPattern", 0}},
                 {{"GrainBypass", false}, {"DispersionPattern", 2}},
                 {{"GrainBypass", false}, {"DispersionPattern", 3}, {"SizeGreen", 0.0}, {"VarianceRed", 1.0}}});
  all.push_back({{{"GrainLinear", false}}, {{"GrainLinear", true}}});
  all.push_back({{{"HDRcomp", false}}, {{"HDRcomp", true}}});
  all.push_back({{{"ProcessLinear", false}}, {{"ProcessLinear", true}}});
  return all;
}

using Choice = std::vector<size_t>;  // one setting of each factor

// Settings that cover every pair of settings of two factors: each next one is the best of a few random candidates.
std::vector<Choice> pairwise(const std::vector<Factor>& all)
{
  std::set<std::array<size_t, 4>> open;
  for (size_t i = 0; i < all.size(); ++i)
    for (size_t j = i + 1; j < all.size(); ++j)
      for (size_t a = 0; a < all[i].size(); ++a)
        for (size_t b = 0; b < all[j].size(); ++b)
          open.insert({i, a, j, b});
  std::mt19937 random(20);
  std::vector<Choice> chosen;
  while (!open.empty())
  {
    Choice best;
    std::vector<std::array<size_t, 4>> bestCovers;
    for (int candidate = 0; candidate < 30; ++candidate)
    {
      Choice choice(all.size());
      for (size_t i = 0; i < all.size(); ++i)
        choice[i] = random() % all[i].size();
      // A pair that is still open is always part of the candidate.
      const std::array<size_t, 4>& wanted = *open.begin();
      choice[wanted[0]] = wanted[1];
      choice[wanted[2]] = wanted[3];
      std::vector<std::array<size_t, 4>> covers;
      for (size_t i = 0; i < all.size(); ++i)
        for (size_t j = i + 1; j < all.size(); ++j)
          if (open.count({i, choice[i], j, choice[j]}))
            covers.push_back({i, choice[i], j, choice[j]});
      if (covers.size() > bestCovers.size())
      {
        best = choice;
        bestCovers = covers;
      }
    }
    for (const auto& pair : bestCovers)
      open.erase(pair);
    chosen.push_back(best);
  }
  return chosen;
}

class ProjectValues : public ParameterValues
{
public:
  explicit ProjectValues(const Project& values) : project(values) {}
  double number(std::string_view name) const override
  {
    const auto found = project.find(std::string(name));
    return found != project.end() ? found->second.numbers[0] : params::at(name).defaults[0];
  }

private:
  const Project& project;
};

// What the frame is to run, from the same values by the plug-in's own capture and plan.
std::vector<std::string> plannedKernels(const Project& project, int channels)
{
  const ProjectValues values(project);
  FrameParams params{};
  params.gpuReady = 1;
  params.gpuCount = 1;
  params.grainLevels = 2047;
  params.inResolutionChoice = params.outResolutionChoice = 1;
  std::vector<std::vector<float>> memory(6, std::vector<float>(2048));
  GrainTables tables({{{memory[0], memory[1]}, {memory[2], memory[3]}, {memory[4], memory[5]}}});
  const CaptureOutcome outcome = captureFrame(
      values, {.width = frameWidth, .height = frameHeight, .channels = channels, .time = 3.0}, params, tables);
  std::vector<std::string> kernels;
  if (outcome.route == FrameRoute::copy || outcome.route == FrameRoute::untouched)
    return kernels;
  for (const Step& step : planFrame(outcome.route, params))
  {
    const bool oneLaunch = step.work == Work::Colour || step.work == Work::Soup || step.work == Work::Print ||
                           step.work == Work::Expand || step.work == Work::Pad || step.work == Work::Resample;
    if (oneLaunch)
      kernels.push_back(step.kernel);
  }
  return kernels;
}

// The kernels of a trace that are launches of the plan rather than parts of a larger stage.
std::vector<std::string> tracedKernels(const std::string& trace, const std::set<std::string>& known)
{
  std::vector<std::string> kernels;
  std::istringstream lines(trace);
  for (std::string line; std::getline(lines, line);)
  {
    std::istringstream words(line);
    std::string mark, stage, kernel;
    words >> mark >> stage >> kernel;
    if (mark == "trace:" && known.count(kernel))
      kernels.push_back(kernel);
  }
  return kernels;
}

bool allFinite(const Frame& frame)
{
  for (int y = 0; y < frame.height(); ++y)
    for (const float value : frame.row(y))
      if (!std::isfinite(value))
        return false;
  return true;
}

std::string described(const Project& project)
{
  std::string text;
  for (const auto& [name, value] : project)
    text += name + "=" + host::toText(value) + " ";
  return text;
}

StrictOptions traced(const ConfigFolder& folder)
{
  StrictOptions options = pluginOptions(folder, "cpu");
  options.environment["MORVELLAN_TRACE"] = "1";
  return options;
}

}  // namespace

TEST(Pipelines, EveryPairOfSwitchesRunsAsPlanned)
{
  const ConfigFolder folder;
  StrictHost strict(MORVELLAN_BUNDLE, traced(folder));
  const std::vector<Factor> all = factors();
  size_t runs = 0;
  for (const Choice& choice : pairwise(all))
  {
    Project project{{"InResolution", 1},  {"OutResolution", 1},   {"StrengthRGB", 2.0},
                    {"StrengthRed", 2.0}, {"StrengthGreen", 2.0}, {"StrengthBlue", 2.0}};
    for (size_t i = 0; i < all.size(); ++i)
      for (const auto& [name, value] : all[i][choice[i]])
        project[name] = value;
    for (const Components components : {Components::Rgb, Components::Rgba})
    {
      SCOPED_TRACE(described(project));
      host::InstanceSettings settings;
      settings.project = project;
      settings.components = components;
      EffectInstance& effect = strict.create(settings);
      const Frame source = rampOf(frameWidth, frameHeight, components);
      testing::internal::CaptureStderr();
      const Frame output = renderFrame(effect, source, 3.0);
      const std::string trace = testing::internal::GetCapturedStderr();
      const int channels = components == Components::Rgba ? 4 : 3;
      const std::vector<std::string> planned = plannedKernels(project, channels);
      ASSERT_EQ(tracedKernels(trace, {planned.begin(), planned.end()}), planned) << trace;
      ++runs;
      if (!planned.empty())
      {
        ASSERT_TRUE(allFinite(output));
      }
      const bool sameSize = project["TargetWidth"] == host::ParamValue(frameWidth) &&
                            project["SourceWidth"] == host::ParamValue(frameWidth) &&
                            project["SpatialEnhancement"] == host::ParamValue(0) &&
                            project["SpatialEnhancer"] == host::ParamValue(0);
      if (channels == 4 && sameSize && !planned.empty())
      {
        for (int y = 0; y < frameHeight; ++y)
          for (size_t x = 0; x < frameWidth; ++x)
            ASSERT_EQ(output.row(y)[4 * x + 3], source.row(y)[4 * x + 3]) << x << ", " << y;
      }
      strict.destroy(effect);
    }
  }
  EXPECT_GT(runs, 100u);
}

// Stages that are on with settings that change nothing.
TEST(Pipelines, NeutralStagesGiveTheSourceBack)
{
  const ConfigFolder folder;
  StrictHost strict(MORVELLAN_BUNDLE, pluginOptions(folder, "cpu"));
  const std::vector<Project> neutral{
      {{"PitchBypass", false}, {"EnsemblePitch", 4.0}},
      {{"HalationBypass", false}, {"HalationBlendR", 1.0}, {"HalationBlendG", 1.0}, {"HalationBlendB", 1.0}},
      {{"PitchBypass", false}, {"EnsemblePitch", 4.0}, {"HDRcomp", true}},
  };
  for (int gamut : {0, 4, 5, 30, 11, 12, 19, 45, 47})
    for (Project project : neutral)
    {
      const bool pitch = project.count("PitchBypass") != 0;
      // LAB in short rows has no case from 46 on; those codes pass through.
      project["InputGamut"] = gamut;
      SCOPED_TRACE(described(project));
      host::InstanceSettings settings;
      settings.project = project;
      EffectInstance& effect = strict.create(settings);
      // Greys and mild colours well inside every encoding: extremes lie outside what a decode keeps.
      Frame source = frameOf(32, 16);
      for (int y = 0; y < 16; ++y)
        for (size_t x = 0; x < 32; ++x)
        {
          const float grey = 0.25f + 0.4f * static_cast<float>(x) / 31.0f;
          source.row(y)[4 * x] = grey + 0.01f * static_cast<float>(y % 3);
          source.row(y)[4 * x + 1] = grey;
          source.row(y)[4 * x + 2] = grey - 0.01f * static_cast<float>(y % 2);
          source.row(y)[4 * x + 3] = 0.5f;
        }
      EXPECT_LE(greatestDifference(renderFrame(effect, source), source), pitch ? 5e-4f : 1e-4f);
      strict.destroy(effect);
    }
}

TEST(Pipelines, OddSizesRun)
{
  const ConfigFolder folder;
  StrictHost strict(MORVELLAN_BUNDLE, pluginOptions(folder, "cpu"));
  for (const auto& [width, height] : {std::pair{1, 1}, {7, 3}, {3, 7}, {1, 50}, {4096, 216}})
  {
    host::InstanceSettings settings;
    settings.project = {{"InputGamut", 47},    {"SoupBypass", false},     {"PrintDisplayBypass", false},
                        {"PrintProfile", 2},   {"HalationBypass", false}, {"PitchBypass", false},
                        {"EnsemblePitch", 4.0}};
    if (width < 100)
      settings.project["GrainBypass"] = false;
    for (const char* size : {"SourceWidth", "TargetWidth"})
      settings.project[size] = std::max(width, 2);
    for (const char* size : {"SourceHeight", "TargetHeight"})
      settings.project[size] = std::max(height, 2);
    EffectInstance& effect = strict.create(settings);
    const Frame output = renderFrame(effect, rampOf(width, height));
    if (width > 1 && height > 1)
    {
      ASSERT_TRUE(allFinite(output)) << width << "x" << height;
    }
    strict.destroy(effect);
  }
}

}  // namespace morvellan::test
