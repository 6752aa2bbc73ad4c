// Crop, resample and place, pixel by pixel through the plug-in: which rectangle is taken, where it lands, and what
// stands around it.
#include <cmath>

#include "tests/plugin/plugin_host.h"

namespace morvellan::test
{
namespace
{

using host::Components;
using host::Frame;

using Project = ProjectRenderer::Project;

constexpr int frameWidth = 40, frameHeight = 30;

class Framing : public PluginTest
{
protected:
  Frame rendered(const Project& project, const Frame& source) { return renderer_.render(project, source); }

  // The resolution choices are read when an instance is made.
  ProjectRenderer renderer_{host_, {{"InResolution", 1}, {"OutResolution", 1}}};
};

size_t channelsOf(const Frame& frame)
{
  return frame.layout().components == Components::Rgb ? 3 : 4;
}

// Sizes set by hand.
Project framed(int sourceWidth, int sourceHeight, int targetWidth, int targetHeight)
{
  return {{"InResolution", 1},          {"OutResolution", 1},
          {"SourceWidth", sourceWidth}, {"SourceHeight", sourceHeight},
          {"TargetWidth", targetWidth}, {"TargetHeight", targetHeight}};
}

// A frame whose rows are all alike: resampling its height changes nothing, so that columns stay whole.
Frame columns(Components components = Components::Rgba)
{
  const Frame frame = frameOf(frameWidth, frameHeight, components);
  const size_t channels = channelsOf(frame);
  for (int y = 0; y < frameHeight; ++y)
    for (size_t i = 0; i < frameWidth * channels; ++i)
      frame.row(y)[i] = 0.25F + 0.5F * static_cast<float>(i) / static_cast<float>(frameWidth * channels);
  return frame;
}

// The same with columns alike.
Frame rows()
{
  const Frame frame = frameOf(frameWidth, frameHeight);
  for (int y = 0; y < frameHeight; ++y)
    for (size_t i = 0; i < frameWidth * 4; ++i)
      frame.row(y)[i] = 0.25F + 0.01F * static_cast<float>(y) + 0.05F * static_cast<float>(i % 4);
  return frame;
}

// The picture at (tx, ty), of `width` by `height`, is the source from column x0 on; zero stands around it.
void expectColumnsAt(const Frame& output, const Frame& source, int x0, int tx, int ty, int width, int height)
{
  const size_t channels = channelsOf(source);
  for (int y = 0; y < frameHeight; ++y)
    for (int x = 0; x < frameWidth; ++x)
      for (size_t c = 0; c < channels; ++c)
      {
        const float actual = output.row(y)[static_cast<size_t>(x) * channels + c];
        if (x < tx || x >= tx + width || y < ty || y >= ty + height)
          ASSERT_EQ(actual, 0.0F) << x << ", " << y << ", " << c;
        else
          ASSERT_NEAR(actual, source.row(0)[static_cast<size_t>(x - tx + x0) * channels + c], 3e-7)
              << x << ", " << y << ", " << c;
      }
}

TEST_F(Framing, ATargetSmallerThanTheFrameStandsInTransparentBlack)
{
  for (const Components components : {Components::Rgb, Components::Rgba})
  {
    const Frame source = columns(components);
    // Enlarged in height, then reduced in height; the width stays, so the columns are those of the source.
    expectColumnsAt(rendered(framed(20, 10, 20, 15), source), source, 10, 10, 7, 20, 15);
    expectColumnsAt(rendered(framed(20, 30, 20, 15), source), source, 10, 10, 7, 20, 15);
    // Unit rows all the way: nothing is cut or padded at the sides.
    expectColumnsAt(rendered(framed(40, 10, 40, 15), source), source, 0, 0, 7, 40, 15);
    expectColumnsAt(rendered(framed(40, 10, 40, 30), source), source, 0, 0, 0, 40, 30);
  }
}

TEST_F(Framing, OffsetsPlaceTheCropAndTheTarget)
{
  const Frame source = columns();
  for (const auto& [offset, x0] : {std::pair{0.0, 0}, {0.3, 6}, {0.5, 10}, {1.0, 20}})
    for (const auto& [placing, tx] : {std::pair{0.0, 20}, {0.25, 15}, {0.5, 10}, {1.0, 0}})
    {
      SCOPED_TRACE(std::to_string(offset) + " " + std::to_string(placing));
      Project project = framed(20, 10, 20, 15);
      project["SourceWidthOffset"] = offset;
      project["TargetWidthOffset"] = placing;  // larger moves the picture to the left
      project["TargetHeightOffset"] = 1.0;
      expectColumnsAt(rendered(project, source), source, x0, tx, 0, 20, 15);
    }
}

TEST_F(Framing, PresetsAreCentredWhateverTheOffsetsSay)
{
  const Frame source = columns();
  Project project = framed(20, 10, 20, 15);
  project["InResolution"] = 18;
  project["OutResolution"] = 18;
  for (const char* offset : {"SourceWidthOffset", "SourceHeightOffset", "TargetWidthOffset", "TargetHeightOffset"})
    project[offset] = 0.0;
  ProjectRenderer presets(host_, project);
  expectColumnsAt(presets.render(project, source), source, 10, 10, 7, 20, 15);
}

TEST_F(Framing, RowsAreCroppedFromTheOffsetToo)
{
  const Frame source = rows();
  for (const auto& [offset, y0] : {std::pair{0.0, 0}, {0.5, 10}, {0.75, 15}, {1.0, 20}})
  {
    Project project = framed(20, 10, 30, 10);  // the height stays
    project["SourceHeightOffset"] = offset;
    project["TargetHeightOffset"] = 0.0;
    const Frame output = rendered(project, source);
    for (int y = 0; y < frameHeight; ++y)
      for (int x = 0; x < frameWidth; ++x)
        for (size_t c = 0; c < 4; ++c)
        {
          const bool inside = x >= 5 && x < 35 && y >= 20;
          ASSERT_NEAR(output.row(y)[static_cast<size_t>(x) * 4 + c],
                      inside ? source.row(y - 20 + y0)[static_cast<size_t>(x) * 4 + c] : 0.0F, inside ? 3e-7 : 0.0)
              << offset << ": " << x << ", " << y << ", " << c;
        }
  }
}

TEST_F(Framing, ACropAsLargeAsTheFrameStartsAtItsCorner)
{
  const Frame source = columns();
  Project project = framed(40, 30, 40, 15);
  project["SourceWidthOffset"] = project["SourceHeightOffset"] = 1.0;
  expectColumnsAt(rendered(project, source), source, 0, 0, 7, 40, 15);
}

// One pass resamples both axes where one shrinks and the other grows.
TEST_F(Framing, WiderButShorterIsOneReduction)
{
  const Frame source = frameOf(frameWidth, frameHeight);
  for (int y = 0; y < frameHeight; ++y)
    for (size_t x = 0; x < frameWidth; ++x)
      for (size_t c = 0; c < 4; ++c)
        source.row(y)[4 * x + c] = 0.02F * static_cast<float>(x) + 0.005F * static_cast<float>(y);
  const Frame output = rendered(framed(40, 10, 20, 30), source);
  // Sample centres are (x + 0.5) * source / target - 0.5. Away from the edges a slope stays one but for the ripple of
  // the window: 0.5 % of a step between two source pixels.
  for (int y = 9; y < 21; ++y)
    for (int x = 2; x < 18; ++x)
    {
      const float fromX = (static_cast<float>(x) + 0.5F) * 2.0F - 0.5F;
      const float fromY = (static_cast<float>(y) + 0.5F) / 3.0F - 0.5F + 10.0F;
      ASSERT_NEAR(output.row(y)[static_cast<size_t>(x + 10) * 4], 0.02F * fromX + 0.005F * fromY, 3e-4)
          << x << " " << y;
    }
  EXPECT_EQ(output.row(15)[9 * 4 + 3], 0.0F);
  EXPECT_EQ(output.row(15)[30 * 4 + 3], 0.0F);
}

// Crop and target of one size inside a larger frame are no resize: the whole frame passes.
TEST_F(Framing, EqualCropAndTargetAreTheWholeFrame)
{
  const Frame source = rampOf(frameWidth, frameHeight);
  Project project = framed(20, 10, 20, 10);
  project["SourceWidthOffset"] = 0.0;
  project["HalationBypass"] = false;
  project["HalationBlendR"] = project["HalationBlendG"] = project["HalationBlendB"] = 1.0;
  EXPECT_LE(greatestDifference(rendered(project, source), source), 1e-5F);
}

}  // namespace
}  // namespace morvellan::test
