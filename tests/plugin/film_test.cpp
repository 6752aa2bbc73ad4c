// The negative through the plug-in: bad pixels of a clip stay where they are, and what one instance remembers of a
// frame reaches no other instance.
#include <cmath>
#include <limits>

#include "tests/plugin/plugin_host.h"

namespace morvellan::test
{
namespace
{

using host::Frame;
using Project = ProjectRenderer::Project;

constexpr int width = 320, height = 180;
constexpr int badX = 60, badY = 90;

class Film : public PluginTest
{
};

// Smooth code values with texture.
Frame clip()
{
  Frame frame = frameOf(width, height);
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x)
      for (int c = 0; c < 4; ++c)
        frame.row(y)[4 * x + c] = c == 3
                                      ? 1.0f
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

// Each stage alone and all together, from a clip with one bad pixel and from one whose pixel stands at the end of the
// range that it is read as. Without a blur no other pixel differs in a bit; blurs reach as far as they are wide, and in
// LAB, where 1e5 is not bounded, the widest of the pitches still has 2.7e-6 of it 170 pixels away.
TEST_F(Film, BadPixelsOfTheClipStayWhereTheyAre)
{
  struct Row
  {
    const char* what;
    Project project;
    int reach;
    float bound;
  };
  const Project soup{{"SoupBypass", false}}, halation{{"HalationBypass", false}, {"HalationBreadth", 1.0}};
  const Project pitch{{"PitchBypass", false}, {"EnsemblePitch", 4.0}, {"BassPitch", 5.0}};
  const Project diffusion{{"LabDiffuseLoMid", 0.5}, {"LabDiffuseMidHi", 0.8}};
  Project all = soup;
  for (const Project& more : {halation, pitch, diffusion})
    all.insert(more.begin(), more.end());
  Project diffused = soup;
  diffused.insert(diffusion.begin(), diffusion.end());
  const Row rows[] = {
      {"soup", soup, 1, 0.0f},           {"halation", halation, 110, 1e-6f}, {"pitch", pitch, 170, 1e-5f},
      {"diffusion", diffused, 1, 1e-6f}, {"all", all, 200, 1e-5f},
  };
  const float infinity = std::numeric_limits<float>::infinity();
  const std::pair<float, float> values[] = {{std::numeric_limits<float>::quiet_NaN(), 0.0f},
                                            {infinity, 1.0f},
                                            {-infinity, 0.0f},
                                            {1e5f, 1.0f},
                                            {-1e5f, 0.0f}};
  ProjectRenderer renderer(host_);
  for (const Row& row : rows)
    for (const auto& [bad, held] : values)
    {
      const Frame result = renderer.render(through(row.project), clipWith(bad));
      const Frame expected = renderer.render(through(row.project), clipWith(held));
      EXPECT_LE(differenceBeyond(result, expected, row.reach), row.bound) << row.what << ", pixel of " << bad;
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
