// Values of exposure, soft clips, offsets, enhancer and Pitch, and what survives when a block is skipped.
#include "tests/pipeline/host/capture_fixture.h"

#include <cmath>

namespace morvellan::test
{
namespace
{

using CaptureInput = CaptureTest;

TEST_F(CaptureInput, ExposureFollowsTheClassOfTheEncoding)
{
  values.set("Exposure", 0.1);
  const auto exposureOf = [&](int gamut)
  {
    values.set("InputGamut", gamut);
    capture();
    return std::pair(params.exposureValue, params.exposureKind);
  };
  EXPECT_EQ(exposureOf(2), std::pair(0.02f, 2));
  for (const int linear : {0, 4, 5, 30})
    EXPECT_EQ(exposureOf(linear), std::pair(2.0f, 1)) << linear;
  for (const int gamma : {1, 27, 29, 31, 32, 33, 34, 46})
    EXPECT_EQ(exposureOf(gamma), std::pair(static_cast<float>(std::sqrt(2.0)), 1)) << gamma;
  for (const int log : {3, 28, 35, 42, 43, 44, 45, 47, 48})
    EXPECT_EQ(exposureOf(log), std::pair(0.02f, 2)) << log;
}

TEST_F(CaptureInput, NoExposureLeavesTheKindAlone)
{
  wake();
  values.set("InputGamut", 2);
  values.set("Exposure", 0.5);
  capture();
  ASSERT_EQ(params.exposureKind, 2);
  values.set("InputGamut", 0);
  values.set("Exposure", 0.0);
  capture();
  EXPECT_EQ(params.exposureValue, 0.0f);
  EXPECT_EQ(params.exposureKind, 2);
}

TEST_F(CaptureInput, CameraSoftClip)
{
  values.set("SoftClips", 1);
  values.set("CameraHighlightsCeiling", 0.5);
  values.set("CameraHighlightsRecover", 0.2);
  values.set("CameraShadowsCeiling", 0.1);
  values.set("CameraShadowsRecover", 0.4);
  capture();
  EXPECT_EQ(params.cameraSoftClipActive, 1);
  EXPECT_EQ(params.cameraHighlightCeiling, 0.5f);
  EXPECT_EQ(params.cameraHighlightRecover, 2.0f);
  EXPECT_FLOAT_EQ(params.cameraShadowCeiling, 0.15f);
  EXPECT_FLOAT_EQ(params.cameraShadowRecover, -0.6f);

  // Off: the flag goes, the four values stay.
  wake();
  values.set("SoftClips", 0);
  values.set("CameraHighlightsCeiling", 0.7);
  capture();
  EXPECT_EQ(params.cameraSoftClipActive, 0);
  EXPECT_EQ(params.cameraHighlightCeiling, 0.5f);
}

TEST_F(CaptureInput, NeutralCameraSoftClipIsNotActive)
{
  values.set("SoftClips", 2);
  capture();
  EXPECT_EQ(params.cameraSoftClipActive, 0);
  values.set("CameraShadowsCeiling", 0.001);
  capture();
  EXPECT_EQ(params.cameraSoftClipActive, 1);
}

TEST_F(CaptureInput, OffsetsCountForCustomSizesOnly)
{
  values.set("SourceWidth", 1000);
  values.set("SourceWidthOffset", 0.0);
  values.set("SourceHeightOffset", 0.25);
  values.set("TargetWidthOffset", 0.25);
  values.set("TargetHeightOffset", 1.0);
  params.inResolutionChoice = 2;
  capture();
  EXPECT_EQ(params.sourceOffsetX, 0.5f);
  EXPECT_EQ(params.sourceOffsetY, 0.5f);
  EXPECT_EQ(params.targetOffsetX, 0.5f);
  EXPECT_EQ(params.targetOffsetY, 0.5f);
  params.inResolutionChoice = params.outResolutionChoice = 1;
  capture();
  EXPECT_EQ(params.sourceOffsetX, 0.0f);
  EXPECT_EQ(params.sourceOffsetY, 0.25f);
  EXPECT_EQ(params.targetOffsetX, 0.75f);
  EXPECT_EQ(params.targetOffsetY, 0.0f);

  // Without a resize the offsets are not read and keep their values.
  wake();
  values.setSizes(1920, 1080);
  values.set("SourceWidthOffset", 0.9);
  values.forgetReads();
  capture();
  EXPECT_EQ(params.sourceOffsetX, 0.0f);
  EXPECT_FALSE(values.wasRead("SourceWidthOffset"));
}

TEST_F(CaptureInput, ResizeEnhancerGoesBeforeTheGrainEnhancer)
{
  values.set("SpatialEnhancement", 1);
  values.set("SpatialEnhancer", 2);
  values.set("HorizontalEnhancer", 0.0);
  values.set("VerticalEnhancer", 4.0);
  capture();
  EXPECT_EQ(params.enhancerMode, 1);
  EXPECT_EQ(params.enhancerModeCopy, 1);
  EXPECT_EQ(params.enhancerHorizontal, 0.0f);
  EXPECT_EQ(params.enhancerVertical, 4.0f);

  values.set("SpatialEnhancement", 0);
  values.set("HorizontalDetails", 5.0);
  capture();
  EXPECT_EQ(params.enhancerMode, 2);
  EXPECT_EQ(params.enhancerHorizontal, 5.0f);
  EXPECT_EQ(params.enhancerVertical, 3.0f);

  wake();
  values.set("SpatialEnhancer", 0);
  capture();
  EXPECT_EQ(params.enhancerMode, 0);
  EXPECT_EQ(params.enhancerModeCopy, 0);
  EXPECT_EQ(params.enhancerHorizontal, 0.0f);
  EXPECT_EQ(params.enhancerVertical, 0.0f);
  EXPECT_FALSE(values.wasRead("CombinedEnhancer"));
  EXPECT_FALSE(values.wasRead("CombinedDetails"));
}

TEST_F(CaptureInput, EnhancerWithoutAmountsIsOff)
{
  wake();
  values.set("SpatialEnhancement", 2);
  values.set("SpatialEnhancer", 1);
  values.set("HorizontalEnhancer", 0.0);
  values.set("VerticalEnhancer", 0.0);
  capture();
  EXPECT_EQ(params.enhancerMode, 0);
  EXPECT_EQ(params.enhancerHorizontal, 0.0f);
}

TEST_F(CaptureInput, PitchGains)
{
  values.set("PitchBypass", 0);
  values.set("EnsemblePitch", 4.0);
  values.set("SopranoPitch", 0.0);
  values.set("BassPitch", 10.0);
  capture();
  EXPECT_FALSE(params.pitchBypassed);
  EXPECT_EQ(params.sopranoPitchGain, 0.4f);
  EXPECT_EQ(params.altoPitchGain, 1.0f);
  EXPECT_EQ(params.bassPitchGain, 2.4f);
  EXPECT_EQ(params.ensemblePitchGain, static_cast<float>(1.2));
}

TEST_F(CaptureInput, NeutralEnsembleBypassesPitchAndRewritesNothing)
{
  wake();
  params.sopranoPitchGain = 7.0f;
  params.ensemblePitchGain = 8.0f;
  values.set("PitchBypass", 0);
  values.set("SopranoPitch", 10.0);
  capture();
  EXPECT_TRUE(params.pitchBypassed);
  EXPECT_EQ(params.sopranoPitchGain, 7.0f);
  EXPECT_EQ(params.ensemblePitchGain, 8.0f);
}

TEST_F(CaptureInput, FlagsOfTheInput)
{
  wake();
  values.set("HDRcomp", 1);
  values.set("ProcessLinear", 1);
  capture();
  EXPECT_TRUE(params.hdrCompress);
  EXPECT_TRUE(params.processLinear);
  EXPECT_EQ(params.channelCount, 4);
  EXPECT_EQ(params.frameWidth, 1920);
  EXPECT_EQ(params.frameHeight, 1080);
}

TEST_F(CaptureInput, SeedOfANewInstance)
{
  values.set("InputGamut", 2);
  values.set("Exposure", 0.1);
  values.set("InResolution", 18);
  values.set("OutResolution", 1);
  values.set("SpatialEnhancement", 2);
  values.set("PitchBypass", 0);
  values.set("EnsemblePitch", 5.0);
  values.set("SopranoPitch", 9.0);
  FrameParams fresh{};
  seedFrameParams(values, fresh);
  EXPECT_EQ(fresh.inputGamut, 2);
  EXPECT_EQ(fresh.exposureValue, 0.02f);
  EXPECT_EQ(fresh.exposureKind, 2);
  EXPECT_EQ(fresh.inResolutionChoice, 18);
  EXPECT_EQ(fresh.outResolutionChoice, 1);
  EXPECT_EQ(fresh.enhancerMode, 2);
  EXPECT_FALSE(fresh.pitchBypassed);
  EXPECT_EQ(fresh.sopranoPitchGain, 1.0f);
  EXPECT_EQ(fresh.ensemblePitchGain, 1.0f);
  EXPECT_EQ(fresh.cameraHighlightCeiling, 1.0f);
  EXPECT_TRUE(fresh.grainBypassed);
  EXPECT_TRUE(fresh.soupBypassed);
  EXPECT_TRUE(fresh.halationBypassed);
  EXPECT_TRUE(fresh.printBypassed);
}

}  // namespace
}  // namespace morvellan::test
