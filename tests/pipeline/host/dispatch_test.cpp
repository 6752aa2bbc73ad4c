// Sizes, the early return, identity and the choice of pipeline, by value.
#include "pipeline/host/dispatch.h"

#include "pipeline/host/render_switches.h"
#include "tests/pipeline/host/capture_fixture.h"

#include <gmock/gmock.h>

#include <limits>

namespace morvellan
{

static void PrintTo(const SizeCorrection& correction, std::ostream* out)
{
  *out << correction.name << " = " << correction.value;
}

static bool operator==(const SizeCorrection& a, const SizeCorrection& b)
{
  return a.name == b.name && a.value == b.value;
}

}  // namespace morvellan

namespace morvellan::test
{
namespace
{

using Dispatch = CaptureTest;

TEST_F(Dispatch, WithoutAGpuEveryFrameIsACopy)
{
  params.gpuReady = 0;
  wake();
  values.set("SourceWidth", 5000);
  values.forgetReads();
  const CaptureOutcome outcome = capture();
  EXPECT_EQ(outcome.route, FrameRoute::copy);
  EXPECT_TRUE(outcome.corrections.list().empty());
  EXPECT_FALSE(values.wasRead("SoupBypass"));
}

TEST_F(Dispatch, SizesBeyondTheFrameAreCutAndWrittenBack)
{
  values.set("SourceWidth", 2048);
  values.set("SourceHeight", 1081);
  values.set("TargetWidth", 12288);
  values.set("TargetHeight", 500);
  const CaptureOutcome outcome = capture();
  EXPECT_THAT(outcome.corrections.list(),
              testing::ElementsAre(SizeCorrection{"SourceWidth", 1920}, SizeCorrection{"SourceHeight", 1080},
                                   SizeCorrection{"TargetWidth", 1920}));
  EXPECT_EQ(params.sourceWidth, 1920);
  EXPECT_EQ(params.sourceHeight, 1080);
  EXPECT_EQ(params.targetWidth, 1920);
  EXPECT_EQ(params.targetHeight, 500);
  EXPECT_EQ(params.resizeMode, 2);
  EXPECT_EQ(outcome.route, FrameRoute::ReducePipeline);
}

TEST_F(Dispatch, SizesBelowOneCountAsOne)
{
  values.set("SourceWidth", 0);
  values.set("SourceHeight", -5);
  capture();
  EXPECT_EQ(params.sourceWidth, 1);
  EXPECT_EQ(params.sourceHeight, 1);
}

TEST_F(Dispatch, WiderButShorterIsAReduction)
{
  values.set("SourceWidth", 2000);
  values.set("SourceHeight", 1000);
  values.set("TargetWidth", 1000);
  values.set("TargetHeight", 2000);
  capture(0.0, 4096, 4096);
  EXPECT_EQ(params.resizeMode, 2);
}

TEST_F(Dispatch, EqualCropAndTargetInsideALargerFrameIsNoResize)
{
  wake();
  values.setSizes(640, 480);
  const CaptureOutcome outcome = capture();
  EXPECT_EQ(params.resizeMode, 0);
  EXPECT_EQ(params.sourceWidth, 1920);
  EXPECT_EQ(params.sourceHeight, 1080);
  EXPECT_EQ(params.targetWidth, 1920);
  EXPECT_EQ(params.targetHeight, 1080);
  EXPECT_TRUE(outcome.corrections.list().empty());
}

TEST_F(Dispatch, EnlargementByHeightAlone)
{
  values.set("SourceHeight", 1000);
  EXPECT_EQ(capture().route, FrameRoute::EnlargeEnhancedPipeline);
  values.set("SpatialEnhancement", 1);
  EXPECT_EQ(capture().route, FrameRoute::EnlargeEnhancedPipeline);
  values.set("SpatialEnhancement", 2);
  EXPECT_EQ(capture().route, FrameRoute::EnlargeDetailsPipeline);
}

TEST_F(Dispatch, ReductionIgnoresTheEnhancer)
{
  values.set("TargetHeight", 1000);
  values.set("SpatialEnhancement", 2);
  EXPECT_EQ(capture().route, FrameRoute::ReducePipeline);
}

TEST_F(Dispatch, EnhancerAtUnitScale)
{
  values.set("SpatialEnhancement", 1);
  EXPECT_EQ(capture().route, FrameRoute::SameSizeTexturesPipeline);
  values.set("SpatialEnhancement", 2);
  EXPECT_EQ(capture().route, FrameRoute::SameSizeDetailsPipeline);
  values.set("SpatialEnhancement", 0);
  values.set("SpatialEnhancer", 1);
  EXPECT_EQ(capture().route, FrameRoute::SameSizeTexturesPipeline);
}

TEST_F(Dispatch, GrainAtUnitScale)
{
  values.set("GrainBypass", 0);
  EXPECT_EQ(capture().route, FrameRoute::SameSizeGrainPipeline);
  values.setChannels("Size", 0.0);
  EXPECT_EQ(capture().route, FrameRoute::copy);
  EXPECT_FALSE(params.grainBypassed);
  EXPECT_EQ(params.grainChannelCount, 0);
}

TEST_F(Dispatch, MasterSizeOrStrengthOfZeroBypassesGrain)
{
  for (const char* master : {"SizeRGB", "StrengthRGB"})
  {
    ParameterMap fresh;
    fresh.set("GrainBypass", 0);
    fresh.set("SoupBypass", 0);
    fresh.set(master, 0.0);
    values = fresh;
    EXPECT_EQ(capture().route, FrameRoute::SameSizeLookPipeline) << master;
    EXPECT_TRUE(params.grainBypassed) << master;
  }
}

TEST_F(Dispatch, NothingOnLeavesTheOutputUntouched)
{
  EXPECT_EQ(capture().route, FrameRoute::untouched);
  values.set("PitchBypass", 0);
  EXPECT_EQ(capture().route, FrameRoute::untouched);  // EnsemblePitch is at 3.0
}

TEST_F(Dispatch, NeutralSoftClipIsCopied)
{
  values.set("SoftClips", 1);
  EXPECT_EQ(capture().route, FrameRoute::copy);
  EXPECT_EQ(params.cameraSoftClipActive, 0);
}

TEST_F(Dispatch, EachStageAloneTakesTheLookPipeline)
{
  const std::pair<const char*, double> wakers[] = {
      {"SoupBypass", 0.0}, {"PrintDisplayBypass", 0.0}, {"HalationBypass", 0.0}, {"Exposure", 0.01}};
  for (const auto& [name, value] : wakers)
  {
    values = ParameterMap();
    values.set(name, value);
    EXPECT_EQ(capture().route, FrameRoute::SameSizeLookPipeline) << name;
  }
  values = ParameterMap();
  values.set("PitchBypass", 0.0);
  values.set("EnsemblePitch", 3.5);
  EXPECT_EQ(capture().route, FrameRoute::SameSizeLookPipeline);
  values = ParameterMap();
  values.set("SoftClips", 1);
  values.set("CameraHighlightsCeiling", 0.9);
  EXPECT_EQ(capture().route, FrameRoute::SameSizeLookPipeline);
}

TEST_F(Dispatch, PrintOfADisplayReferredClipIsACopy)
{
  values.set("PrintDisplayBypass", 0.0);
  values.set("InputGamut", 27);
  EXPECT_EQ(capture().route, FrameRoute::copy);
  EXPECT_TRUE(params.printBypassed);
}

TEST_F(Dispatch, HalationWithoutBreadthIsACopy)
{
  values.set("HalationBypass", 0.0);
  values.set("HalationBreadth", 0.0);
  EXPECT_EQ(capture().route, FrameRoute::copy);
}

TEST_F(Dispatch, NanAmountCountsAsAnEnhancer)
{
  FrameParams block{};
  block.enhancerVertical = std::numeric_limits<float>::quiet_NaN();
  EXPECT_EQ(dispatch(block), FrameRoute::untouched);  // mode 0
  block.enhancerMode = 1;
  EXPECT_EQ(dispatch(block), FrameRoute::SameSizeTexturesPipeline);
  block.enhancerMode = 2;
  EXPECT_EQ(dispatch(block), FrameRoute::SameSizeDetailsPipeline);
}

TEST(Identity, TrueForeverWithoutAGpu)
{
  ParameterMap values;
  values.set("SoupBypass", 0);
  EXPECT_TRUE(isIdentity(values, false));
  EXPECT_FALSE(isIdentity(values, true));
}

TEST(Identity, DefaultsAreIdentity)
{
  EXPECT_TRUE(isIdentity(ParameterMap(), true));
}

TEST(Identity, EachSwitchAloneEndsIt)
{
  const std::pair<const char*, double> wakers[] = {
      {"SoupBypass", 0.0},         {"PrintDisplayBypass", 0.0}, {"GrainBypass", 0.0},    {"HalationBypass", 0.0},
      {"Exposure", -0.1},          {"SoftClips", 2.0},          {"SourceWidth", 1919.0}, {"TargetHeight", 540.0},
      {"SpatialEnhancement", 1.0}, {"SpatialEnhancer", 2.0}};
  for (const auto& [name, value] : wakers)
  {
    ParameterMap values;
    values.set(name, value);
    EXPECT_FALSE(isIdentity(values, true)) << name;
  }
}

TEST(Identity, LooksAtTheCombinedAmounts)
{
  ParameterMap values;
  values.set("SpatialEnhancement", 1);
  values.set("CombinedEnhancer", 0.0);
  EXPECT_TRUE(isIdentity(values, true));  // though HorizontalEnhancer is not 0
  values.set("SpatialEnhancer", 1);
  EXPECT_TRUE(isIdentity(values, true));  // not looked at while SpatialEnhancement is on
  values.set("SpatialEnhancement", 0);
  EXPECT_FALSE(isIdentity(values, true));
  values.set("CombinedDetails", 0.0);
  EXPECT_TRUE(isIdentity(values, true));
}

TEST(Identity, PitchAndGrain)
{
  ParameterMap values;
  values.set("PitchBypass", 0);
  EXPECT_TRUE(isIdentity(values, true));
  values.set("EnsemblePitch", 3.1);
  EXPECT_FALSE(isIdentity(values, true));
  values.set("PitchBypass", 1);
  values.set("GrainBypass", 0);
  for (const char* master : {"StrengthRGB", "SizeRGB"})
  {
    ParameterMap without = values;
    without.set(master, 0.0);
    EXPECT_TRUE(isIdentity(without, true)) << master;
  }
}

}  // namespace
}  // namespace morvellan::test
