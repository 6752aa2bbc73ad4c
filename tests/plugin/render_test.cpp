// The render action: what the effect does with the images that a host hands it.
#include <cmath>
#include <functional>

#include <gmock/gmock.h>

#include "tests/plugin/plugin_host.h"

namespace morvellan::test
{
namespace
{

using host::Components;
using host::Depth;
using host::EffectInstance;
using host::Frame;
using testing::ElementsAre;
using testing::IsEmpty;

/// Settings that reach the plain copy: the soft clip is on with neutral values, and nothing else is.
const std::map<std::string, host::ParamValue> copyingProject{{"SoftClips", 1}};

class Render : public PluginTest
{
protected:
  EffectInstance& instance(const std::map<std::string, host::ParamValue>& project = copyingProject)
  {
    host::InstanceSettings settings;
    settings.project = project;
    EffectInstance& made = host_.create(settings);
    host_.clearLog();
    return made;
  }

  std::vector<std::string> errors() const { return textsOf(host_.persistentMessages()); }
};

bool isBlack(const Frame& frame)
{
  for (int y = frame.layout().bounds.y1; y < frame.layout().bounds.y2; ++y)
    for (const float value : frame.row(y))
      if (value != 0.0F)
        return false;
  return true;
}

TEST_F(Render, NothingSwitchedOnLeavesTheOutputAlone)
{
  EffectInstance& effect = instance({});
  const Frame source = rampOf(16, 9);
  effect.clip("Source").setSource(source);
  const Frame output = outputLike(source);
  EXPECT_EQ(effect.render(0.0, output), kOfxStatOK);
  for (const float value : output.row(3))
    EXPECT_EQ(value, untouched);
}

TEST_F(Render, NeutralSoftClipsReachTheCopy)
{
  EffectInstance& effect = instance();
  for (const Components components : {Components::Rgb, Components::Rgba})
  {
    const Frame source = rampOf(16, 9, components);
    EXPECT_EQ(greatestDifference(renderFrame(effect, source), source), 0.0F);
  }
  EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(Render, NoOutputImageIsReported)
{
  EffectInstance& effect = instance();
  effect.clip("Source").setSource(rampOf(4, 4));
  EXPECT_EQ(effect.render(0.0, std::nullopt), kOfxStatFailed);
  EXPECT_THAT(errors(), ElementsAre("Morvellan : Natron gave Target clip with wrong render scale properties"));
}

TEST_F(Render, AnUnconnectedSourceGivesBlack)
{
  EffectInstance& effect = instance();
  effect.clip("Source").setConnected(false);
  for (const Components components : {Components::Rgb, Components::Rgba})
  {
    const Frame output = outputLike(frameOf(33, 17, components));
    EXPECT_EQ(effect.render(0.0, output), kOfxStatOK);
    EXPECT_TRUE(isBlack(output));
  }
  EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(Render, AConnectedSourceWithoutAnImageGivesBlackInTheWindowOnly)
{
  EffectInstance& effect = instance();
  effect.clip("Source").setSource([](double) -> std::optional<Frame> { return std::nullopt; });
  const Frame output = outputLike(frameOf(8, 8));
  EXPECT_EQ(effect.render(0.0, output, OfxRectI{2, 3, 6, 5}), kOfxStatOK);
  for (int y = 0; y < 8; ++y)
    for (int x = 0; x < 8; ++x)
      EXPECT_EQ(output.row(y)[static_cast<std::size_t>(4 * x)], x >= 2 && x < 6 && y >= 3 && y < 5 ? 0.0F : untouched);
}

TEST_F(Render, BlackOfAnotherKindOfPixelIsUnsupported)
{
  EffectInstance& effect = instance();
  effect.clip("Source").setConnected(false);
  effect.clip("Output").claims.components = Components::Alpha;
  EXPECT_EQ(effect.render(0.0, outputLike(frameOf(4, 4))), kOfxStatErrUnsupported);
}

TEST_F(Render, ImagesThatDifferAreReported)
{
  EffectInstance& effect = instance();
  effect.clip("Source").setSource(rampOf(8, 8, Components::Rgb));
  const Frame output = outputLike(frameOf(8, 8, Components::Rgba));
  EXPECT_EQ(effect.render(0.0, output), kOfxStatFailed);
  EXPECT_THAT(errors(), ElementsAre("Morvellan : Natron gave Input and Output images with different channel counts or "
                                    "pixel depths"));
  for (const float value : output.row(0))
    EXPECT_EQ(value, untouched);
}

TEST_F(Render, TheSourceIsGivenBackBeforeTheOutput)
{
  // Copied, rendered, left untouched, and ended by a message.
  for (const std::map<std::string, host::ParamValue>& project :
       {copyingProject, std::map<std::string, host::ParamValue>{{"Exposure", 0.1}}, {}})
  {
    EffectInstance& effect = instance(project);
    const Frame source = rampOf(8, 8);
    effect.clip("Source").setSource(source);
    EXPECT_EQ(effect.render(0.0, outputLike(source)), kOfxStatOK);
    EXPECT_THAT(host_.releases(), ElementsAre("Source", "Output"));
    host_.clearLog();
    effect.clip("Source").setSource(rampOf(8, 8, Components::Rgb));
    EXPECT_EQ(effect.render(0.0, outputLike(source)), kOfxStatFailed);
    EXPECT_THAT(host_.releases(), ElementsAre("Source", "Output"));
    host_.clearLog();
    effect.clip("Source").setConnected(false);
    EXPECT_EQ(effect.render(0.0, outputLike(source)), kOfxStatOK);
    EXPECT_THAT(host_.releases(), ElementsAre("Output"));
  }
}

TEST_F(Render, AlphaOnlyIsReported)
{
  EffectInstance& effect = instance();
  effect.clip("Source").setSource(rampOf(8, 8));
  effect.clip("Source").claims.components = Components::Alpha;
  effect.clip("Output").claims.components = Components::Alpha;
  EXPECT_EQ(effect.render(0.0, outputLike(frameOf(8, 8))), kOfxStatFailed);
  EXPECT_THAT(errors(), ElementsAre("Morvellan : Morvellan only supports RGB and RGBA clips"));
}

TEST_F(Render, OtherDepthsAreReported)
{
  for (const Depth depth : {Depth::Byte, Depth::Short, Depth::Half})
  {
    EffectInstance& effect = instance();
    effect.clip("Source").setSource(rampOf(8, 8));
    effect.clip("Source").claims.depth = depth;
    effect.clip("Output").claims.depth = depth;
    EXPECT_EQ(effect.render(0.0, outputLike(frameOf(8, 8))), kOfxStatFailed);
    EXPECT_THAT(errors(), ElementsAre("Morvellan : Morvellan only supports floating point pixel depths"));
  }
}

TEST_F(Render, ImagesWithoutPixelsAreReported)
{
  for (const char* clip : {"Source", "Output"})
  {
    EffectInstance& effect = instance();
    effect.clip("Source").setSource(rampOf(8, 8));
    effect.clip(clip).claims.nullData = true;
    EXPECT_EQ(effect.render(0.0, outputLike(frameOf(8, 8))), kOfxStatFailed);
    const std::string role = clip == std::string("Source") ? "Input" : "Output";
    EXPECT_THAT(errors(), ElementsAre("Morvellan : Natron gave an " + role +
                                      " image without pixel data. Check that its clip can be read"));
  }
}

TEST_F(Render, EmptyImagesAreReported)
{
  for (const OfxRectI bounds : {OfxRectI{0, 0, 0, 8}, OfxRectI{4, 4, 2, 8}})
  {
    EffectInstance& effect = instance();
    effect.clip("Source").setSource(rampOf(8, 8));
    effect.clip("Source").claims.bounds = bounds;
    EXPECT_EQ(effect.render(0.0, outputLike(frameOf(8, 8))), kOfxStatFailed);
    ASSERT_EQ(errors().size(), 1u);
    EXPECT_THAT(errors()[0], testing::StartsWith("Morvellan : Natron gave an Input image of "));
  }
}

TEST_F(Render, ABlackOutputWithoutPixelsIsReported)
{
  EffectInstance& effect = instance();
  effect.clip("Source").setConnected(false);
  effect.clip("Output").claims.nullData = true;
  EXPECT_EQ(effect.render(0.0, outputLike(frameOf(8, 8))), kOfxStatFailed);
  EXPECT_EQ(errors().size(), 1u);
}

// Rows of any stride, in both images, give the pixels of packed ones; the host watches the padding.
TEST_F(Render, RowsMayBePaddedOrLieTopFirst)
{
  const Frame packed = rampOf(20, 10);
  for (const std::map<std::string, host::ParamValue>& project :
       {copyingProject, std::map<std::string, host::ParamValue>{{"Exposure", 0.1}}})
  {
    EffectInstance& effect = instance(project);
    const Frame expected = renderFrame(effect, packed);
    for (const int padding : {0, 16, 28})
      for (const bool topDown : {false, true})
      {
        Frame source({.bounds = {0, 0, 20, 10}, .rowPadding = padding, .topDown = topDown, .guarded = true});
        for (int y = 0; y < 10; ++y)
          std::ranges::copy(packed.row(y), source.row(y).begin());
        EXPECT_EQ(greatestDifference(renderFrame(effect, source), expected), 0.0F) << padding << topDown;
      }
  }
}

TEST_F(Render, ASourceOfOtherBoundsIsPlacedByItsCoordinates)
{
  EffectInstance& effect = instance();
  for (const OfxRectI bounds :
       {OfxRectI{4, 2, 10, 8}, OfxRectI{-5, -5, 30, 30}, OfxRectI{10, -3, 40, 4}, OfxRectI{100, 100, 104, 104}})
  {
    Frame source({.bounds = bounds, .guarded = true});
    source.fill(0.75F);
    effect.clip("Source").setSource(source);
    const Frame output = outputLike(frameOf(16, 12));
    EXPECT_EQ(effect.render(0.0, output), kOfxStatOK);
    for (int y = 0; y < 12; ++y)
      for (int x = 0; x < 16; ++x)
      {
        const bool inside = x >= bounds.x1 && x < bounds.x2 && y >= bounds.y1 && y < bounds.y2;
        ASSERT_EQ(output.row(y)[static_cast<std::size_t>(4 * x + 3)], inside ? 0.75F : 0.0F) << x << ' ' << y;
      }
  }
  EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(Render, AnOutputThatDoesNotStartAtTheOriginIsFilledWhole)
{
  EffectInstance& effect = instance();
  Frame source({.bounds = {-7, 3, 9, 11}, .guarded = true});
  source.fill(0.5F);
  EXPECT_EQ(greatestDifference(renderFrame(effect, source), source), 0.0F);
}

TEST_F(Render, SizesBeyondTheFrameAreWrittenBackFromTheRender)
{
  EffectInstance& effect =
      instance({{"SourceWidth", 4000}, {"SourceHeight", 50}, {"TargetWidth", 100}, {"TargetHeight", 3000}});
  const Frame source = rampOf(100, 50);
  effect.clip("Source").setSource(source);
  EXPECT_EQ(effect.render(0.0, outputLike(source)), kOfxStatOK);
  EXPECT_EQ(effect.value("SourceWidth").asInt(), 100);
  EXPECT_EQ(effect.value("SourceHeight").asInt(), 50);
  EXPECT_EQ(effect.value("TargetWidth").asInt(), 100);
  EXPECT_EQ(effect.value("TargetHeight").asInt(), 50);
  std::vector<std::string> written;
  for (const host::ParameterWrite& write : host_.writes())
    written.push_back(write.parameter);
  EXPECT_THAT(written, testing::UnorderedElementsAre("SourceWidth", "TargetHeight"));
}

TEST_F(Render, AnExposureOfATenthDoublesLinearPixels)
{
  EffectInstance& effect = instance({{"Exposure", 0.1}});
  for (const Components components : {Components::Rgb, Components::Rgba})
  {
    const Frame source = rampOf(24, 12, components);
    const Frame result = renderFrame(effect, source);
    const std::size_t channels = components == Components::Rgb ? 3 : 4;
    for (int y = 0; y < 12; ++y)
      for (std::size_t i = 0; i < 24 * channels; ++i)
      {
        const float value = source.row(y)[i];
        EXPECT_NEAR(result.row(y)[i], i % channels < 3 ? 2.0F * value : value, 2e-6F * value + 1e-7F);
      }
  }
}

TEST_F(Render, SizeRgbOfZeroIsNoGrain)
{
  EffectInstance& effect = instance({{"GrainBypass", false}, {"SizeRGB", 0.0}});
  const Frame source = rampOf(8, 8);
  effect.clip("Source").setSource(source);
  const Frame output = outputLike(source);
  EXPECT_EQ(effect.render(0.0, output), kOfxStatOK);
  EXPECT_EQ(output.row(0)[0], untouched);
}

}  // namespace

TEST(RenderWithoutADevice, EveryFrameIsACopyWhateverTheParameters)
{
  const ConfigFolder folder;
  StrictHost host(MORVELLAN_BUNDLE, pluginOptions(folder, "auto"));
  host::InstanceSettings settings;
  settings.project = {{"Exposure", 0.5}, {"SoupBypass", false}, {"GrainBypass", false}, {"SourceWidth", 4000}};
  host::EffectInstance& effect = host.create(settings);
  if (host.persistentMessages().empty())
    GTEST_SKIP() << "this machine has a GPU that renders";
  const host::Frame source = rampOf(24, 12);
  EXPECT_EQ(greatestDifference(renderFrame(effect, source), source), 0.0F);
  // Nothing is captured, so nothing is cut either.
  EXPECT_EQ(effect.value("SourceWidth").asInt(), 4000);
}

TEST(RenderWithOldMessages, AHostWithoutPersistentMessagesShowsADialog)
{
  const ConfigFolder folder;
  StrictOptions options = pluginOptions(folder, "cpu");
  options.traits.withheldSuites = {{kOfxMessageSuite, 2}};
  StrictHost host(MORVELLAN_BUNDLE, options);
  host::EffectInstance& effect = host.create();
  effect.clip("Source").setSource(rampOf(4, 4));
  EXPECT_EQ(effect.render(0.0, std::nullopt), kOfxStatFailed);
  ASSERT_EQ(host.messages().size(), 1u);
  EXPECT_EQ(host.messages()[0].type, kOfxMessageError);
  EXPECT_EQ(host.messages()[0].id, "");
  EXPECT_EQ(host.messages()[0].text, "Morvellan : Natron gave Target clip with wrong render scale properties");
}

}  // namespace morvellan::test
