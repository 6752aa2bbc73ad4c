// Values of the negative: soft clip, cast, laboratory, bleach, tone curves, mid grey, halation.
#include "tests/pipeline/host/capture_fixture.h"

#include <bit>
#include <cmath>
#include <cstdint>

namespace morvellan::test
{
namespace
{

class CaptureSoup : public CaptureTest
{
protected:
  CaptureSoup() { wake(); }
};

TEST_F(CaptureSoup, Defaults)
{
  capture();
  EXPECT_FALSE(params.soupBypassed);
  EXPECT_FALSE(params.soupSoftClipActive);
  EXPECT_EQ(params.soupHighlightCeiling, 1.0f);
  EXPECT_EQ(params.soupHighlightCompress, 1.0f);
  EXPECT_EQ(params.soupShadowFloor, 0.0f);
  EXPECT_EQ(params.soupShadowExpand, 0.0f);
  EXPECT_EQ(params.soupDmin[1], static_cast<float>(0.584 * 0.125));
  EXPECT_EQ(params.soupDmax[2], static_cast<float>(0.584 * 2.0));
  EXPECT_EQ(params.labSilver[0], 1.0f);
  EXPECT_EQ(params.labPullPush, 100.0f);
  EXPECT_FLOAT_EQ(params.labDevelop, 1.0f);
  EXPECT_EQ(params.labAgitate, 3);
  EXPECT_EQ(params.labReplenish, 0.2f);
  EXPECT_EQ(params.labSpectrumBand, 0.5f);
  EXPECT_FALSE(params.labDiffuseLoMidOn);
  EXPECT_FALSE(params.labDiffuseMidHiOn);
  EXPECT_FLOAT_EQ(params.labAreaScale, 1920.0f * 1080.0f / 2400.0f);
}

TEST_F(CaptureSoup, FieldsAreCapturedWhileTheSoupIsBypassed)
{
  values.set("SoupBypass", 1);
  values.set("HalationBypass", 0);
  values.set("SoupHighlightCeiling", 0.5);
  values.set("CameraStock", 4);
  capture();
  EXPECT_TRUE(params.soupBypassed);
  EXPECT_TRUE(params.soupSoftClipActive);
  EXPECT_EQ(params.soupHighlightCeiling, 0.5f);
  EXPECT_EQ(params.cameraStock, 4);
}

TEST_F(CaptureSoup, SoftClip)
{
  values.set("SoupHighlightCompress", 1.0);
  capture();
  EXPECT_FALSE(params.soupSoftClipActive);  // the roll-off alone does not switch it on
  values.set("SoupShadowFloor", 0.1);
  values.set("SoupShadowExpand", 1.0);
  capture();
  EXPECT_TRUE(params.soupSoftClipActive);
  EXPECT_EQ(params.soupHighlightCompress, 6.0f);
  EXPECT_FLOAT_EQ(params.soupShadowFloor, 0.15f);
  EXPECT_EQ(params.soupShadowExpand, -1.5f);
}

TEST_F(CaptureSoup, CastAndTints)
{
  capture();
  EXPECT_EQ(params.cameraCast, 6504);
  EXPECT_FALSE(params.cameraCastActive);
  values.set("CameraTintGtoM", 0.5);
  values.set("CameraTintRtoC", -1.0);
  const auto castAt = [&](int kelvin)
  {
    values.set("CameraCast", kelvin);
    capture();
    EXPECT_TRUE(params.cameraCastActive);
    return params.cameraCast;
  };
  EXPECT_EQ(castAt(6505), 66);
  EXPECT_EQ(castAt(6503), 65);
  EXPECT_EQ(castAt(3000), 30);
  EXPECT_EQ(castAt(3004), 31);
  EXPECT_EQ(castAt(14000), 140);
  EXPECT_EQ(params.cameraTintGtoM, 0.2f);
  EXPECT_EQ(params.cameraTintRtoC, -0.4f);
}

// The frame area is that of the target, of this frame and not of the one before.
TEST_F(CaptureSoup, AreaFollowsTheTargetOfEachFrame)
{
  EXPECT_EQ(params.labAreaScale, 0.0f);
  for (const auto& [width, height] : {std::pair{1920, 1080}, {640, 360}, {4096, 2160}})
  {
    values.set("SourceWidth", width);
    values.set("SourceHeight", height);
    values.set("TargetWidth", width);
    values.set("TargetHeight", height);
    capture(0.0, width, height);
    EXPECT_EQ(params.labAreaScale, static_cast<float>(width) * 0.00041666668f * static_cast<float>(height));
  }
}

TEST_F(CaptureSoup, LabFloors)
{
  values.set("LabDevelop", 0.0);
  values.set("LabReplenish", 0.0);
  capture();
  EXPECT_FLOAT_EQ(params.labDevelop, 0.091f * 1.111111111f);
  EXPECT_EQ(params.labReplenish, 3.2f);
  values.set("LabReplenish", 0.95);
  capture();
  EXPECT_EQ(params.labReplenish, 0.2f);
}

TEST_F(CaptureSoup, DiffusionValuesSurviveTheirSwitch)
{
  capture();
  EXPECT_EQ(params.labDiffuseLoMid, 0.0f);
  EXPECT_EQ(params.labDiffuseMidHi, 0.0f);
  values.set("LabDiffuseLoMid", 0.25);
  values.set("LabDiffuseMidHi", 0.25);
  capture();
  EXPECT_TRUE(params.labDiffuseLoMidOn);
  EXPECT_TRUE(params.labDiffuseMidHiOn);
  EXPECT_EQ(params.labDiffuseLoMid, 0.75f);
  EXPECT_EQ(params.labDiffuseMidHi, -0.5f);
  values.set("LabDiffuseLoMid", 1.0);
  values.set("LabDiffuseMidHi", 1.0);
  capture();
  EXPECT_FALSE(params.labDiffuseLoMidOn);
  EXPECT_FALSE(params.labDiffuseMidHiOn);
  EXPECT_EQ(params.labDiffuseLoMid, 0.75f);
  EXPECT_EQ(params.labDiffuseMidHi, -0.5f);
}

TEST_F(CaptureSoup, BleachIsReadOnlyWhileOn)
{
  values.set("LabBleachPivot", 0.01);
  values.set("LabBleachRed", 0.2);
  values.set("LabBleachGreen", 0.8);
  capture();
  EXPECT_EQ(params.labBleachPivot, 0.0f);
  values.set("LableachBypass", 1);
  capture();
  EXPECT_TRUE(params.labBleach);
  EXPECT_EQ(params.labBleachPivot, 0.05f);
  EXPECT_EQ(params.labBleachGamma[0], 0.5f);
  EXPECT_EQ(params.labBleachGamma[1], 2.0f);
  EXPECT_EQ(params.labBleachGamma[2], 0.0f);
  EXPECT_FLOAT_EQ(params.labBleachScale[0], 0.05f / std::sqrt(0.05f));
  EXPECT_FLOAT_EQ(params.labBleachScale[1], 20.0f);
  EXPECT_EQ(params.labBleachScale[2], 0.05f);
}

TEST_F(CaptureSoup, ToneCurves)
{
  capture();
  EXPECT_EQ(params.toneCurves, 5);
  EXPECT_TRUE(params.toneCurvesOn);
  EXPECT_EQ(params.soupToePivot, static_cast<float>(0.669 - 0.108993157));
  EXPECT_EQ(params.soupShoulderPivot, static_cast<float>(0.334 - 0.011241447));
  EXPECT_EQ(params.soupToe[0], 0.02f);
  EXPECT_EQ(params.soupKnee[1], -0.093f);
  EXPECT_EQ(params.soupShoulder[2], 0.145f);
  EXPECT_EQ(params.soupFilmicScale, static_cast<float>(1.0 / 0.71));
  EXPECT_EQ(params.soupFilmicSlope, 2.2f);

  values.set("ToneCurves", 0);
  values.setChannels("SoupToe", 0.0);
  values.setChannels("SoupShoulder", 0.0);
  capture();
  EXPECT_FALSE(params.toneCurvesOn);
  EXPECT_EQ(std::bit_cast<std::uint32_t>(params.soupToePivot), 0x3EC8320Du);
  EXPECT_EQ(std::bit_cast<std::uint32_t>(params.soupShoulderPivot), 0x3EFA3E90u);
  EXPECT_NEAR(params.soupToePivot, 0.391007, 1e-6);
  EXPECT_NEAR(params.soupShoulderPivot, 0.488759, 1e-6);

  // One live channel is enough for the real pivot, which has a floor.
  values.set("SoupToeBlue", 0.1);
  values.set("SoupToePivot", 0.0);
  values.set("SoupShoulderRed", -0.1);
  values.set("SoupShoulderPivot", 0.0);
  capture();
  EXPECT_EQ(params.soupToePivot, 0.001f);
  EXPECT_EQ(params.soupShoulderPivot, 0.0f);
  EXPECT_EQ(params.soupToe[0], 0.0f);
}

TEST_F(CaptureSoup, MidGreyGoesHalfwayToTheMiddle)
{
  const auto midGreyAt = [&](int gamut)
  {
    values.set("InputGamut", gamut);
    capture();
    EXPECT_EQ(params.labMidGrey, params.printMidGrey);
    return params.labMidGrey;
  };
  EXPECT_FLOAT_EQ(midGreyAt(0), 0.34f);
  EXPECT_FLOAT_EQ(midGreyAt(30), 0.34f);
  EXPECT_FLOAT_EQ(midGreyAt(2), (0.458984375f + 0.5f) / 2.0f);
  EXPECT_FLOAT_EQ(midGreyAt(31), 0.5155f);
  EXPECT_FLOAT_EQ(midGreyAt(40), 0.59f);
  EXPECT_FLOAT_EQ(midGreyAt(47), 0.3892f);
  EXPECT_FLOAT_EQ(midGreyAt(48), (0.3835616438356165f + 0.5f) / 2.0f);
  EXPECT_FLOAT_EQ(midGreyAt(49), 0.34f);  // no such entry
}

TEST_F(CaptureSoup, Halation)
{
  values.set("HalationBypass", 0);
  values.set("HalationBlendG", 1.0);
  capture();
  EXPECT_FALSE(params.halationBypassed);
  EXPECT_EQ(params.halationBreadth, 0.125f);
  EXPECT_EQ(params.halationSaturation, 1.0f);
  EXPECT_EQ(params.halationCyanRed, 1.0f);
  EXPECT_EQ(params.halationMagentaGreen, 0.15f);
  EXPECT_EQ(params.halationYellowBlue, 0.07f);
  EXPECT_EQ(params.halationKeepRed, 0.7f);
  EXPECT_EQ(params.halationKeepGreen, 0.0f);
  values.set("HalationBreadth", 0.0);
  capture();
  EXPECT_TRUE(params.halationBypassed);
  values.set("HalationBreadth", 0.25);
  values.set("HalationBypass", 1);
  capture();
  EXPECT_TRUE(params.halationBypassed);
}

}  // namespace
}  // namespace morvellan::test
