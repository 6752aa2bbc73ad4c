// Frames from one pixel to twelve thousand across: every pipeline runs, no pixel is lost, and memory stays what the
// buffers of a frame are.
#include <cstdio>
#include <cstdlib>

#include "tests/plugin/plan_and_trace.h"

namespace morvellan::test
{
namespace
{

using host::Frame;
using Project = ProjectRenderer::Project;

void sized(Project& project, int sourceWidth, int sourceHeight, int targetWidth, int targetHeight)
{
  project["SourceWidth"] = sourceWidth;
  project["SourceHeight"] = sourceHeight;
  project["TargetWidth"] = targetWidth;
  project["TargetHeight"] = targetHeight;
}

// Everything that runs on a frame, in the geometry of a pipeline.
Project everything(FrameRoute route, int width, int height)
{
  const int halfWidth = std::max(width / 2, 1), halfHeight = std::max(height / 2, 1);
  Project project{
      {"InputGamut", 47},      {"Exposure", 0.02},     {"SoupBypass", false},         {"HalationBypass", false},
      {"PitchBypass", false},  {"EnsemblePitch", 4.0}, {"PrintDisplayBypass", false}, {"PrintProfile", 2},
      {"LabDiffuseLoMid", 0.5}};
  sized(project, width, height, width, height);
  switch (route)
  {
  case FrameRoute::EnlargeDetailsPipeline:
    project["SpatialEnhancement"] = 2;
    sized(project, halfWidth, halfHeight, width, height);
    break;
  case FrameRoute::EnlargeEnhancedPipeline:
    project["SpatialEnhancement"] = 1;
    sized(project, halfWidth, halfHeight, width, height);
    break;
  case FrameRoute::ReducePipeline:
    sized(project, width, height, halfWidth, halfHeight);
    break;
  case FrameRoute::SameSizeTexturesPipeline:
    project["SpatialEnhancement"] = 1;
    break;
  case FrameRoute::SameSizeDetailsPipeline:
    project["SpatialEnhancer"] = 2;
    break;
  case FrameRoute::SameSizeGrainPipeline:
    project["GrainBypass"] = false;
    break;
  default:
    break;
  }
  return project;
}

// The sanitizers shadow memory, and that of addresses keeps what is freed, so that no bound holds for the process.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool memoryIsMeasured = false;
#else
constexpr bool memoryIsMeasured = true;
#endif

// The most memory that this process has held since reset(), in bytes.
class PeakMemory
{
public:
  static void reset()
  {
    if (std::FILE* file = std::fopen("/proc/self/clear_refs", "w"))
    {
      std::fputs("5", file);
      std::fclose(file);
    }
  }
  static double bytes()
  {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
      if (line.starts_with("VmHWM:"))
        return 1024.0 * std::stod(line.substr(6));
    return 0.0;
  }
};

}  // namespace

TEST(Sizes, SmallFramesRunInEveryPipeline)
{
  const ConfigFolder folder;
  StrictHost strict(MORVELLAN_BUNDLE, pluginOptions(folder, "cpu"));
  ProjectRenderer renderer(strict, {{"InResolution", 1}, {"OutResolution", 1}});
  for (const auto& [width, height] :
       {std::pair{1, 1}, {2, 1}, {1, 2}, {2, 2}, {7, 3}, {3, 7}, {1, 50}, {50, 1}, {33, 17}})
    for (const FrameRoute route :
         {FrameRoute::EnlargeEnhancedPipeline, FrameRoute::EnlargeDetailsPipeline, FrameRoute::ReducePipeline,
          FrameRoute::SameSizeTexturesPipeline, FrameRoute::SameSizeDetailsPipeline, FrameRoute::SameSizeGrainPipeline,
          FrameRoute::SameSizeLookPipeline})
      for (const host::Components components : {host::Components::Rgb, host::Components::Rgba})
      {
        const Project project = everything(route, width, height);
        // Half of one pixel is one pixel, which is no resize.
        const bool onePixel = width == 1 && height == 1;
        if (!onePixel)
        {
          ASSERT_EQ(Planned(project, width, height, 4).route, route) << width << "x" << height;
        }
        const Frame output = renderer.render(project, rampOf(width, height, components));
        // Grain on a single column or row divides by the pixels between its ends, of which there are none.
        const bool grainless = route != FrameRoute::SameSizeGrainPipeline || (width > 1 && height > 1);
        EXPECT_TRUE(allFinite(output) || !grainless) << width << "x" << height << " " << static_cast<int>(route);
      }
}

TEST(Sizes, AFrameOfFourKRuns)
{
  const ConfigFolder folder;
  StrictHost strict(MORVELLAN_BUNDLE, pluginOptions(folder, "cpu"));
  ProjectRenderer renderer(strict, {{"InResolution", 1}, {"OutResolution", 1}});
  constexpr int width = 4096, height = 2160;
  const Frame source = frameOf(width, height);
  source.fill(0.25f);
  Project project{{"Exposure", 0.1}};
  sized(project, width, height, width, height);
  PeakMemory::reset();
  const Frame exposed = renderer.render(project, source);
  // The host's two images and the frame's two, of 16 bytes a pixel, and what a process is besides.
  const double frames = (PeakMemory::bytes() - 300e6) / (16.0 * width * height);
  EXPECT_TRUE(frames <= 4.0 || !memoryIsMeasured) << frames;
  for (const int y : {0, 1, 1079, height - 1})
    for (const int x : {0, 1, 2047, width - 1})
      EXPECT_NEAR(exposed.row(y)[static_cast<size_t>(x) * 4], 0.5f, 1e-6);
  sized(project, width, height, 2048, 1080);
  const Frame reduced = renderer.render(project, source);
  EXPECT_EQ(reduced.row(539)[static_cast<size_t>(1024) * 4], 0.0f);
  EXPECT_NEAR(reduced.row(540)[static_cast<size_t>(1024) * 4], 0.5f, 1e-6);
  EXPECT_NEAR(reduced.row(1619)[static_cast<size_t>(3071) * 4 + 3], 0.25f, 1e-6);
  EXPECT_EQ(reduced.row(1620)[static_cast<size_t>(3071) * 4 + 3], 0.0f);
}

// The largest frame of the size controls. It takes 8 GB and minutes, so it runs where it is asked for.
TEST(Sizes, TheLargestFrameRuns)
{
  if (std::getenv("MORVELLAN_LARGE_FRAMES") == nullptr)
    GTEST_SKIP() << "needs 8 GB of memory: MORVELLAN_LARGE_FRAMES=1 runs it";
  const ConfigFolder folder;
  StrictHost strict(MORVELLAN_BUNDLE, pluginOptions(folder, "cpu"));
  ProjectRenderer renderer(strict, {{"InResolution", 1}, {"OutResolution", 1}});
  constexpr int width = 12288, height = 6480;
  constexpr double bytesOfFrame = 16.0 * width * height;
  const Frame source = frameOf(width, height);
  source.fill(0.3f);
  Project light{{"InputGamut", 47}, {"Exposure", 0.1}};
  Project look{{"InputGamut", 47}, {"SoupBypass", false}, {"PrintDisplayBypass", false}, {"PrintProfile", 2}};
  // Frames of memory that each may hold: the host's two and the frame's two; the laboratory's seven planes besides.
  for (const auto& [name, project, most] : {std::tuple{"exposure", light, 4.0}, {"look", look, 4.0 + 7.0 / 4.0}})
  {
    Project whole = project;
    sized(whole, width, height, width, height);
    PeakMemory::reset();
    const Frame output = renderer.render(whole, source);
    const double peak = PeakMemory::bytes();
    std::printf("%s: %.2f GB, %.3f frames\n", name, peak / 1e9, peak / bytesOfFrame);
    EXPECT_LE((peak - 300e6) / bytesOfFrame, most) << name;
    // A flat frame stays one, from the first pixel to the last.
    for (const int y : {0, height / 2, height - 1})
      for (const int x : {0, width / 2, width - 1})
        EXPECT_NEAR(output.row(y)[static_cast<size_t>(x) * 4], output.row(0)[0], 1e-6) << name << " " << x << " " << y;
    EXPECT_NE(output.row(0)[0], source.row(0)[0]) << name;
  }
}

}  // namespace morvellan::test
