// The negative through the plug-in: bad pixels of a clip stay where they are, and what one instance remembers of a
// frame reaches no other instance.
#include <cmath>
#include <iterator>
#include <limits>
#include <string>

#include "tests/plugin/plugin_host.h"

namespace morvellan::test
{
namespace
{

using host::Components;
using host::Frame;
using Project = ProjectRenderer::Project;

constexpr int width = 320, height = 180;
constexpr int badX = 60, badY = 90;
constexpr float nan = std::numeric_limits<float>::quiet_NaN();
constexpr float infinity = std::numeric_limits<float>::infinity();

class Film : public PluginTest
{
};

// Smooth code values with texture.
Frame clip(Components components = Components::Rgba)
{
  Frame frame = frameOf(width, height, components);
  const int channels = components == Components::Rgba ? 4 : 3;
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x)
      for (int c = 0; c < channels; ++c)
        frame.row(y)[channels * x + c] =
            c == 3 ? 1.0f
                   : 0.35f + 0.2f * std::sin(static_cast<float>(x) * 0.07f + static_cast<float>(c)) +
                         0.05f * std::cos(static_cast<float>(y * (3 + c)) * 0.31f);
  return frame;
}

Frame clipWith(float value)
{
  Frame frame = clip();
  for (int c = 0; c < 3; ++c)
    frame.row(badY)[4 * badX + c] = value;
  return frame;
}

// Bad values all over a clip, in whole pixels and in single channels, each as it is or as the end of the range that it
// is read as; `most` is the upper end.
Frame spotted(Components components, float most, bool repaired)
{
  const int channels = components == Components::Rgba ? 4 : 3;
  const std::pair<float, float> values[] = {
      {nan, 0.0f}, {infinity, most}, {-infinity, 0.0f}, {1e5f, most}, {-1e5f, 0.0f}};
  Frame frame = clip(components);
  int x = 3, y = 0;
  for (const auto& [bad, held] : values)
    for (const int which : {0, 1, 2, 3})  // 3: all of them
    {
      for (int c = 0; c < 3; ++c)
        if (which == c || which == 3)
          frame.row(y)[channels * x + c] = repaired ? held : bad;
      x = (x + 67) % width;
      y = (y + 41) % height;
    }
  return frame;
}

Project through(const Project& more)
{
  Project project{{"InputGamut", 47},
                  {"SourceWidth", width},
                  {"SourceHeight", height},
                  {"TargetWidth", width},
                  {"TargetHeight", height}};
  project.insert(more.begin(), more.end());
  return project;
}

// The greatest difference of the pixels at least `beyond` columns or rows away from the bad one.
float differenceBeyond(const Frame& a, const Frame& b, int beyond)
{
  float greatest = 0.0f;
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x)
      if (std::abs(x - badX) >= beyond || std::abs(y - badY) >= beyond)
        for (int c = 0; c < 4; ++c)
        {
          const float difference = std::fabs(a.row(y)[4 * x + c] - b.row(y)[4 * x + c]);
          greatest = std::isnan(difference) ? std::numeric_limits<float>::infinity() : std::max(greatest, difference);
        }
  return greatest;
}

}  // namespace

// The Soup in each of its forms and ways out, with and without diffusion, and halation take a bad pixel for the end of
// the range: a clip with bad values comes out as the clip with those ends, every pixel to the last bit.
TEST_F(Film, BadPixelsAreReadAsTheEndsOfTheRange)
{
  const Project vectors{
      {"ColorCorrection", 1}, {"SaturationRed", 0.7}, {"HueGreen", 0.6}, {"ChromaBlue", 0.6}, {"VibranceCyan", 0.4}};
  const Project bleach{
      {"LableachBypass", true}, {"LabBleachRed", 0.4}, {"LabBleachGreen", 0.4}, {"LabBleachBlue", 0.4}};
  const Project halation{{"HalationBypass", false}, {"HalationBreadth", 1.0}, {"HalationSaturation", 0.5}};
  const auto with = [](Project project, const Project& more)
  {
    project.insert(more.begin(), more.end());
    return project;
  };
  const Project soup{{"SoupBypass", false}};
  const Project toneless = with(soup, {{"ToneCurves", 0}});
  const std::pair<const char*, Project> negatives[] = {
      {"soup", soup},
      {"vectors", with(soup, vectors)},
      {"bleach", with(soup, bleach)},
      {"bleach without curves", with(toneless, bleach)},
      {"without curves", toneless},
      {"low diffusion", with(soup, {{"LabDiffuseLoMid", 0.5}})},
      {"high diffusion", with(soup, {{"LabDiffuseMidHi", 0.8}})},
      {"both diffusions", with(soup, {{"LabDiffuseLoMid", 0.5}, {"LabDiffuseMidHi", 0.8}})},
      {"gaining exchange", with(soup, {{"LabReplenish", 0.0}, {"LabAgitate", 1}})},
      {"halation and soup", with(halation, soup)},
      {"halation", halation},
      {"no soup", {{"SoupBypass", true}}},
  };
  const Project grain{{"GrainBypass", false}, {"GrainLinear", true},  {"StrengthRGB", 2.0},
                      {"StrengthRed", 2.0},   {"StrengthGreen", 2.0}, {"StrengthBlue", 2.0}};
  const std::pair<const char*, Project> ends[] = {
      {"clip", {{"PrintDisplayBypass", true}}},
      {"display", {{"PrintDisplayBypass", false}, {"PrintProfile", 0}}},
      {"print", {{"PrintDisplayBypass", false}, {"PrintProfile", 2}}},
      {"linear grain", with(grain, {{"PrintDisplayBypass", true}})},
      {"linear grain and print", with(grain, {{"PrintDisplayBypass", false}, {"PrintProfile", 2}})},
  };
  ProjectRenderer renderer(host_);
  for (const auto& [negative, project] : negatives)
    for (const auto& [end, out] : ends)
      for (const int gamut : {47, 0})
        for (const Components components : {Components::Rgba, Components::Rgb})
        {
          const bool printed = out.at("PrintDisplayBypass").numbers[0] == 0.0;
          if (std::string(negative) == "no soup" && !printed)
            continue;  // no film
          if (out.count("GrainBypass") != 0 && (gamut != 47 || components != Components::Rgba))
            continue;  // the film is the same as without
          SCOPED_TRACE(testing::Message() << negative << " to " << end << ", input " << gamut << ", "
                                          << (components == Components::Rgba ? "RGBA" : "RGB"));
          Project settings = through(with(project, out));
          settings["InputGamut"] = gamut;
          const float most = gamut == 47 ? 1.0f : 469.799988f;
          const Frame result = renderer.render(settings, spotted(components, most, false));
          EXPECT_TRUE(allFinite(result));
          EXPECT_LT(greatestDifference(result, clip(components)), 1000.0f) << "was not written";
          EXPECT_EQ(greatestDifference(result, renderer.render(settings, spotted(components, most, true))), 0.0f);
        }
}

// Alpha goes round the film as it is, whatever it is, and no colour sees it.
TEST_F(Film, BadAlphaStaysAlpha)
{
  Frame frame = clip();
  const float values[] = {nan, infinity, -infinity, 1e5f, -1e5f};
  for (size_t i = 0; i < std::size(values); ++i)
    frame.row(badY)[4 * (badX + 17 * static_cast<int>(i)) + 3] = values[i];
  const Project film[] = {{{"SoupBypass", false}},
                          {{"SoupBypass", false}, {"LabDiffuseLoMid", 0.5}, {"LabDiffuseMidHi", 0.8}},
                          {{"HalationBypass", false}},
                          {{"PitchBypass", false}, {"EnsemblePitch", 4.0}, {"BassPitch", 5.0}},
                          {{"SoupBypass", false}, {"PrintDisplayBypass", false}, {"PrintProfile", 2}}};
  ProjectRenderer renderer(host_);
  for (const Project& project : film)
  {
    const Frame result = renderer.render(through(project), frame);
    const Frame plain = renderer.render(through(project), clip());
    for (int y = 0; y < height; ++y)
      for (int x = 0; x < 4 * width; ++x)
      {
        const float expected = x % 4 == 3 ? frame.row(y)[x] : plain.row(y)[x];
        const float actual = result.row(y)[x];
        ASSERT_TRUE(actual == expected || (std::isnan(actual) && std::isnan(expected))) << x << ", " << y;
      }
  }
}

// Pitch from a clip with one bad pixel, and from one whose pixel stands at the end of the range that it is read as. Its
// bands read what is not a number as 0. Infinity stands there for more than 1, and 1e5 is not bounded in LAB: the
// widest of the pitches still has 2.7e-6 of it 170 pixels away. Halation holds the clip to its range before.
TEST_F(Film, BadPixelsReachNoFurtherThanThePitches)
{
  const Project pitch{{"PitchBypass", false}, {"EnsemblePitch", 4.0}, {"BassPitch", 5.0}};
  Project all{{"SoupBypass", false},
              {"HalationBypass", false},
              {"HalationBreadth", 1.0},
              {"LabDiffuseLoMid", 0.5},
              {"LabDiffuseMidHi", 0.8}};
  all.insert(pitch.begin(), pitch.end());
  const std::pair<float, float> values[] = {
      {nan, 0.0f}, {-infinity, 0.0f}, {infinity, 1.0f}, {1e5f, 1.0f}, {-1e5f, 0.0f}};
  ProjectRenderer renderer(host_);
  const auto difference = [&](const Project& project, float bad, float held, int beyond)
  {
    return differenceBeyond(renderer.render(through(project), clipWith(bad)),
                            renderer.render(through(project), clipWith(held)), beyond);
  };
  for (const auto& [bad, held] : values)
  {
    SCOPED_TRACE(testing::Message() << "pixel of " << bad);
    if (held == 0.0f && !std::isfinite(bad))
      EXPECT_EQ(difference(pitch, bad, held, 1), 0.0f);
    else
      EXPECT_LE(difference(pitch, bad, held, 170), 1e-5f);
    EXPECT_EQ(difference(all, bad, held, 0), 0.0f);
  }
}

// The detail of the high diffusion stays with the instance that had it, as a gain that the low diffusion alone still
// uses.
TEST_F(Film, LeftOverDetailIsTheInstancesOwn)
{
  const Project both = through({{"SoupBypass", false}, {"LabDiffuseLoMid", 0.5}, {"LabDiffuseMidHi", 0.9}});
  const Project low = through({{"SoupBypass", false}, {"LabDiffuseLoMid", 0.5}});
  ProjectRenderer first(host_), second(host_);
  const Frame fresh = first.render(low, clip());
  first.render(both, clip());
  const Frame left = first.render(low, clip());
  EXPECT_GT(greatestDifference(left, fresh), 1e-4f);
  EXPECT_EQ(greatestDifference(second.render(low, clip()), fresh), 0.0f);
}

}  // namespace morvellan::test
