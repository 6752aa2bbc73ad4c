// Stages that are on with settings that change nothing give the source back, within what their round trip keeps: every
// input encoding in every geometry, with each pair of the other switches.
#include <algorithm>
#include <cmath>

#include "tests/plugin/plan_and_trace.h"
#include "tests/plugin/switches.h"

namespace morvellan::test
{
namespace
{

using host::Components;
using host::Frame;
using switches::Factor;
using switches::Project;
using switches::Settings;

constexpr int frameWidth = 24, frameHeight = 14;

// Heights alone: a picture whose rows are alike comes through a resample and the enhancer as it was.
Factor geometries()
{
  return {{},
          {{"SourceHeight", 6}},
          {{"SourceHeight", 6}, {"TargetHeight", 10}},
          {{"TargetHeight", 9}},
          {{"SpatialEnhancement", 1}, {"HorizontalEnhancer", 0.0}, {"VerticalEnhancer", 3.0}},
          {{"SpatialEnhancer", 2}, {"HorizontalDetails", 0.0}, {"VerticalDetails", 3.0}},
          {{"SpatialEnhancement", 1}, {"HorizontalEnhancer", 0.0}, {"VerticalEnhancer", 0.0}},
          {{"SourceHeight", 6}, {"SpatialEnhancement", 1}, {"HorizontalEnhancer", 0.0}, {"VerticalEnhancer", 3.0}},
          {{"SourceHeight", 6}, {"SpatialEnhancement", 2}, {"HorizontalEnhancer", 0.0}, {"VerticalEnhancer", 3.0}}};
}

std::vector<Factor> factors()
{
  std::vector<Factor> all(1);
  for (int gamut = 0; gamut < 49; ++gamut)
    all[0].push_back({{"InputGamut", gamut}});
  all.push_back({{{"PitchBypass", true}}, {{"PitchBypass", false}, {"EnsemblePitch", 4.0}}});
  all.push_back(
      {{{"HalationBypass", true}},
       {{"HalationBypass", false}, {"HalationBlendR", 1.0}, {"HalationBlendG", 1.0}, {"HalationBlendB", 1.0}}});
  all.push_back({{{"SoftClips", 0}}, {{"SoftClips", 1}}});
  // Grain of no strength worth the name.
  all.push_back({{{"GrainBypass", true}},
                 {{"GrainBypass", false}, {"DispersionPattern", 0}},
                 {{"GrainBypass", false}, {"DispersionPattern", 2}},
                 {{"GrainBypass", false}, {"DispersionPattern", 3}, {"SizeRed", 0.0}}});
  all.push_back({{{"GrainLinear", false}}, {{"GrainLinear", true}}});
  all.push_back({{{"HDRcomp", false}}, {{"HDRcomp", true}}});
  all.push_back({{{"ProcessLinear", false}}, {{"ProcessLinear", true}}});
  return all;
}

// Greys and mild colours well inside every encoding, as code values and as light. All rows are alike.
Frame mildColours(Components components)
{
  const Frame frame = frameOf(frameWidth, frameHeight, components);
  const size_t channels = components == Components::Rgb ? 3 : 4;
  for (int y = 0; y < frameHeight; ++y)
    for (size_t x = 0; x < frameWidth; ++x)
    {
      float* pixel = &frame.row(y)[channels * x];
      const float grey = 0.25f + 0.25f * static_cast<float>(x) / (frameWidth - 1);
      pixel[0] = grey + 0.01f * static_cast<float>(x % 3);
      pixel[1] = grey;
      pixel[2] = grey - 0.01f * static_cast<float>(x % 2);
      if (channels == 4)
        pixel[3] = 0.04f * static_cast<float>(x);
    }
  return frame;
}

struct Differences
{
  float colour = 0.0f, alpha = 0.0f;
};

// Inside the target, which is centred in the frame.
Differences differences(const Frame& a, const Frame& b, int targetHeight)
{
  Differences greatest;
  const size_t channels = a.layout().components == Components::Rgb ? 3 : 4;
  const int first = (frameHeight - targetHeight) / 2;
  for (int y = first; y < first + targetHeight; ++y)
    for (size_t i = 0; i < frameWidth * channels; ++i)
    {
      const float difference = std::abs(a.row(y)[i] - b.row(y)[i]);
      float& so = i % channels == 3 ? greatest.alpha : greatest.colour;
      so = std::isnan(difference) ? INFINITY : std::max(so, difference);
    }
  return greatest;
}

// How far the source may be from what comes back. The tables of 1 to 45 are printed to six or seven digits and meet
// LAB, whose two whites differ in the last ones: 2.2e-4 of code at the most (25), 4e-7 where a curve alone is passed.
float toleranceOf(const Planned& planned)
{
  const int gamut = planned.params.inputGamut;
  const bool film = planned.runs("halation");
  const bool compressed = planned.runs("XYZ_compress");
  // ACESproxy is quantised to 12 bits, once on each way out.
  if (gamut == 8)
    return 4e-4f;
  // HLG enters the film's space by the rows of another gamut than it leaves by.
  if (gamut == 44 && film)
    return 5e-3f;
  // The printed encoding of DCDM divides by the headroom after the power, so that 0.948 of the code comes back each
  // time; from the film's space 0.93, by the printed matrices.
  if (gamut == 46)
    return (film ? 0.038f : 0.0f) + (compressed ? 0.028f : 0.0f) + 3e-4f;
  return 3e-4f;
}

// Y_RGB_expand_RGB has the short table's curves and rows, its split the full table's: they meet where the tables do.
bool splitIsInverted(const Planned& planned)
{
  const int gamut = planned.params.inputGamut;
  const bool tablesDiffer = (gamut >= 13 && gamut <= 16) || gamut == 34 || gamut >= 46;
  return !(tablesDiffer && planned.runs("Y_RGB_expand_RGB") && !planned.runs("LAB_XYZ_compress_RGB"));
}

}  // namespace

TEST(Neutral, StagesThatChangeNothingGiveTheSourceBack)
{
  const ConfigFolder folder;
  StrictHost strict(MORVELLAN_BUNDLE, pluginOptions(folder, "cpu"));
  ProjectRenderer renderer(strict, {{"InResolution", 1}, {"OutResolution", 1}});
  const Project always{{"SourceWidth", frameWidth},   {"SourceHeight", frameHeight}, {"TargetWidth", frameWidth},
                       {"TargetHeight", frameHeight}, {"StrengthRGB", 1.0},          {"StrengthRed", 1e-6},
                       {"StrengthGreen", 1e-6},       {"StrengthBlue", 1e-6}};
  int rendered = 0;
  int notInverted = 0;
  for (const Settings& settings : switches::everySettings(geometries(), factors(), always))
    for (const Components components : {Components::Rgb, Components::Rgba})
    {
      const Planned planned(settings.project, frameWidth, frameHeight, components == Components::Rgb ? 3 : 4);
      if (planned.route == FrameRoute::untouched)
        continue;
      SCOPED_TRACE(switches::described(settings.project));
      const Frame source = mildColours(components);
      const Differences d = differences(renderer.render(settings.project, source), source, planned.params.targetHeight);
      EXPECT_LE(d.alpha, 1e-7f);
      ++rendered;
      if (splitIsInverted(planned))
        EXPECT_LE(d.colour, toleranceOf(planned));
      else
        ++notInverted;
    }
  EXPECT_GT(rendered, 3000);
  EXPECT_LT(notInverted, rendered / 50);
}

// The same on a flat picture, which comes through both axes as it was: but for the last bit of a weighted sum, times
// the enhancer's gain on curvature of up to 9.
TEST(Neutral, AFlatPictureComesThroughEveryGeometry)
{
  const ConfigFolder folder;
  StrictHost strict(MORVELLAN_BUNDLE, pluginOptions(folder, "cpu"));
  ProjectRenderer renderer(strict, {{"InResolution", 1}, {"OutResolution", 1}});
  const Frame source = frameOf(frameWidth, frameHeight);
  source.fill(0.4f);
  const Project sizes[] = {{{"SourceWidth", frameWidth}, {"SourceHeight", frameHeight}},
                           {{"SourceWidth", 11}, {"SourceHeight", 6}}};
  for (const Project& size : sizes)
    for (const char* choice : {"SpatialEnhancement", "SpatialEnhancer"})
      for (const int mode : {1, 2})
        for (const double horizontal : {0.0, 5.0, 10.0})
          for (const double vertical : {0.0, 5.0, 10.0})
          {
            Project project = size;
            project["TargetWidth"] = frameWidth;
            project["TargetHeight"] = frameHeight;
            project[choice] = mode;
            project["HorizontalEnhancer"] = project["HorizontalDetails"] = horizontal;
            project["VerticalEnhancer"] = project["VerticalDetails"] = vertical;
            const Planned planned(project, frameWidth, frameHeight, 4);
            if (planned.route == FrameRoute::untouched)
              continue;
            EXPECT_LE(greatestDifference(renderer.render(project, source), source), 1e-6f)
                << switches::described(project);
          }
}

}  // namespace morvellan::test
