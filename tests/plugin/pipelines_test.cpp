// Every switch with every other: a set of settings that covers all pairs runs through the plug-in on the strict host.
// No pixel may be lost, alpha stays, RGB and RGBA give one colour, and the trace is the plan, launch by launch.
#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <string>

#include "tests/plugin/plan_and_trace.h"
#include "tests/plugin/switches.h"

namespace morvellan::test
{
namespace
{

using host::Components;
using host::Frame;
using switches::Factor;
using switches::Pair;
using switches::Project;
using switches::Settings;

constexpr int frameWidth = 24, frameHeight = 14;

// Crop and target.
Factor framings()
{
  const auto sizes = [](int sourceWidth, int sourceHeight, int targetWidth, int targetHeight)
  {
    return Project{{"SourceWidth", sourceWidth},
                   {"SourceHeight", sourceHeight},
                   {"TargetWidth", targetWidth},
                   {"TargetHeight", targetHeight}};
  };
  return {sizes(frameWidth, frameHeight, frameWidth, frameHeight), sizes(16, 9, frameWidth, frameHeight),
          sizes(16, 9, 20, 12), sizes(frameWidth, frameHeight, 17, 10)};
}

Factor enhancers()
{
  return {{{"SpatialEnhancement", 0}, {"SpatialEnhancer", 0}},
          {{"SpatialEnhancement", 1}, {"HorizontalEnhancer", 3.0}, {"VerticalEnhancer", 3.0}},
          {{"SpatialEnhancement", 0}, {"SpatialEnhancer", 2}, {"HorizontalDetails", 2.0}, {"VerticalDetails", 0.0}}};
}

// Every framing with every enhancer: what chooses the pipeline.
Factor geometries()
{
  Factor all;
  for (const Project& framing : framings())
    for (Project geometry : enhancers())
    {
      geometry.insert(framing.begin(), framing.end());
      all.push_back(geometry);
    }
  return all;
}

// What runs within a pipeline.
std::vector<Factor> factors()
{
  std::vector<Factor> all;
  Factor inputs;
  for (int gamut : {0, 4, 5, 30, 1, 10, 11, 13, 27, 42, 46, 47})
    inputs.push_back({{"InputGamut", gamut}});
  all.push_back(inputs);
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

std::vector<Settings> everySettings()
{
  return switches::everySettings(
      geometries(), factors(),
      {{"StrengthRGB", 2.0}, {"StrengthRed", 2.0}, {"StrengthGreen", 2.0}, {"StrengthBlue", 2.0}});
}

Planned plannedOf(const Project& project, int channels)
{
  return {project, frameWidth, frameHeight, channels};
}

StrictOptions traced(const ConfigFolder& folder)
{
  StrictOptions options = pluginOptions(folder, "cpu");
  options.environment["MORVELLAN_TRACE"] = "1";
  return options;
}

Frame runTraced(ProjectRenderer& renderer, const Project& project, const Frame& source, const Planned& planned)
{
  testing::internal::CaptureStderr();
  const Frame output = renderer.render(project, source, 3.0);
  const std::string trace = testing::internal::GetCapturedStderr();
  EXPECT_EQ(TraceReader(planned, trace).fault, "") << trace;
  return output;
}

// The greatest difference in colour between an RGB and an RGBA frame.
float colourDifference(const Frame& rgb, const Frame& rgba)
{
  float greatest = 0.0f;
  for (int y = 0; y < frameHeight; ++y)
    for (size_t x = 0; x < frameWidth; ++x)
      for (size_t c = 0; c < 3; ++c)
        greatest = std::max(greatest, std::abs(rgb.row(y)[3 * x + c] - rgba.row(y)[4 * x + c]));
  return greatest;
}

// How far the colours of an RGB clip may be from those of the same clip in RGBA. They go through the same kernels but
// for the twins of LAB and of linear grain, which have another table of curves and rows.
float twinTolerance(const Planned& rgb)
{
  // Its split has the full table, and it has the short one.
  if (rgb.runs("Y_RGB_expand_RGB"))
    return INFINITY;
  // F-Log2 ends at a light of 1 in the full table; the short one has another curve.
  if (rgb.runs("LAB_XYZ_compress_RGB") && rgb.params.inputGamut == 13)
    return INFINITY;
  // Rows that differ in their last digits: some points of some grains fall to the other side of an edge.
  return rgb.runs("LAB_XYZ_compress_RGB") || rgb.runs("LAB_Colorspace_RGB") ? 0.02f : 0.0f;
}

bool keepsSize(const Planned& planned)
{
  return planned.params.resizeMode == 0 && planned.params.enhancerMode == 0;
}

}  // namespace

TEST(Pipelines, TheSettingsCoverEveryPairInEveryGeometry)
{
  std::map<size_t, std::set<Pair>> covered;
  std::set<FrameRoute> routes;
  for (const Settings& settings : everySettings())
  {
    covered[settings.geometry].merge(switches::pairsOf(settings.choice));
    routes.insert(plannedOf(settings.project, 4).route);
  }
  ASSERT_EQ(covered.size(), framings().size() * enhancers().size());
  for (const auto& [geometry, pairs] : covered)
    EXPECT_EQ(pairs, switches::everyPair(factors())) << geometry;
  for (const FrameRoute route :
       {FrameRoute::EnlargeEnhancedPipeline, FrameRoute::EnlargeDetailsPipeline, FrameRoute::ReducePipeline,
        FrameRoute::SameSizeTexturesPipeline, FrameRoute::SameSizeDetailsPipeline, FrameRoute::SameSizeGrainPipeline,
        FrameRoute::SameSizeLookPipeline})
    EXPECT_TRUE(routes.count(route)) << static_cast<int>(route);
}

TEST(Pipelines, EveryPairOfSwitchesRunsAsPlanned)
{
  const ConfigFolder folder;
  StrictHost strict(MORVELLAN_BUNDLE, traced(folder));
  ProjectRenderer renderer(strict, {{"InResolution", 1}, {"OutResolution", 1}});
  const Frame rgbSource = rampOf(frameWidth, frameHeight, Components::Rgb);
  const Frame rgbaSource = frameOf(frameWidth, frameHeight);
  for (int y = 0; y < frameHeight; ++y)
    for (size_t x = 0; x < frameWidth; ++x)
    {
      for (size_t c = 0; c < 3; ++c)
        rgbaSource.row(y)[4 * x + c] = rgbSource.row(y)[3 * x + c];
      rgbaSource.row(y)[4 * x + 3] = 0.03f * static_cast<float>(x);
    }
  for (const Settings& settings : everySettings())
  {
    const Project& project = settings.project;
    SCOPED_TRACE(switches::described(project));
    const Planned planned = plannedOf(project, 4);
    const Planned plannedRgb = plannedOf(project, 3);
    const Frame rgb = runTraced(renderer, project, rgbSource, plannedRgb);
    const Frame rgba = runTraced(renderer, project, rgbaSource, planned);
    if (planned.route == FrameRoute::untouched)
      continue;
    EXPECT_TRUE(allFinite(rgb));
    EXPECT_TRUE(allFinite(rgba));
    EXPECT_LE(colourDifference(rgb, rgba), twinTolerance(plannedRgb));
    if (!keepsSize(planned))
      continue;
    for (int y = 0; y < frameHeight; ++y)
      for (size_t x = 0; x < frameWidth; ++x)
        ASSERT_EQ(rgba.row(y)[4 * x + 3], rgbaSource.row(y)[4 * x + 3]) << x << ", " << y;
  }
}

}  // namespace morvellan::test
