// Grain radius steps, per-channel and folded values, seeds, and the sharing of tables.
#include "pipeline/host/grain_radius.h"
#include "pipeline/host/grain_seed.h"
#include "tests/pipeline/host/capture_fixture.h"

#include <bit>
#include <cmath>

namespace morvellan::test
{
namespace
{

class CaptureGrain : public CaptureTest
{
protected:
  CaptureGrain() { values.set("GrainBypass", 0); }
};

double radiusAt(int longerSide, double stepValue)
{
  return grainRadiusOf(stepValue / 0.25, longerSide) / 0.02;
}

TEST(GrainRadius, StepsOfEachBand)
{
  EXPECT_DOUBLE_EQ(radiusAt(1000, 0.04), 0.05);
  EXPECT_DOUBLE_EQ(radiusAt(1000, 0.06), 0.065);
  EXPECT_DOUBLE_EQ(radiusAt(1000, 0.3), 0.3);
  EXPECT_DOUBLE_EQ(radiusAt(1001, 0.04), 0.0525);
  EXPECT_DOUBLE_EQ(radiusAt(10, 0.0), 0.003125);
  EXPECT_DOUBLE_EQ(radiusAt(800, 0.0), 0.04875);
  EXPECT_DOUBLE_EQ(radiusAt(801, 0.0), 0.0495);
  EXPECT_DOUBLE_EQ(radiusAt(900, 0.0), 0.0495);
  EXPECT_DOUBLE_EQ(radiusAt(901, 0.0), 0.05);
  EXPECT_DOUBLE_EQ(radiusAt(1920, 0.0025), 0.095);
  EXPECT_DOUBLE_EQ(radiusAt(2001, 0.0), 0.1);
  EXPECT_DOUBLE_EQ(radiusAt(2901, 0.0), 0.1925);
  EXPECT_DOUBLE_EQ(radiusAt(3001, 0.2), 0.20625);
  EXPECT_DOUBLE_EQ(radiusAt(4101, 0.0), 0.235);
  EXPECT_DOUBLE_EQ(radiusAt(4200, 0.24), 0.24);
  EXPECT_DOUBLE_EQ(radiusAt(4201, 0.0), (4201 * 0.000249311 + 0.0617914) * 0.25);
  EXPECT_DOUBLE_EQ(radiusAt(4201, 1.0), 1.0);
}

TEST(GrainRadius, AStepEqualToTheValueIsNotGreater)
{
  EXPECT_DOUBLE_EQ(radiusAt(1000, 0.05), 0.0525);
}

TEST(GrainRadius, CellIsAWholeFractionOfAPixel)
{
  EXPECT_DOUBLE_EQ(grainCellOf(0.0019), 1.0 / 527.0);
  EXPECT_DOUBLE_EQ(grainCellOf(0.25), 0.25);
  EXPECT_DOUBLE_EQ(grainCellOf(3.0), 1.0);
}

TEST_F(CaptureGrain, ChannelFields)
{
  values.set("StrengthRed", 2.0);
  values.set("SoftRed", 0.39);
  values.set("SoftGreen", 0.4);
  values.set("SoftBlue", 10.0);
  values.set("GranularityGreen", 0.0);
  values.set("GranularityBlue", 3.2);
  capture();
  EXPECT_FALSE(params.grainBypassed);
  EXPECT_EQ(params.grainChannelCount, 3);
  EXPECT_EQ(params.grainSoft[0], 0.16f);
  EXPECT_EQ(params.grainSoft[1], 0.16f);
  EXPECT_EQ(params.grainSoft[2], 4.0f);
  EXPECT_EQ(params.grainCount[0], 39);
  EXPECT_EQ(params.grainCount[1], 8);
  EXPECT_EQ(params.grainCount[2], 16);  // 2^3.2 + 7 = 16.19
  EXPECT_FLOAT_EQ(params.grainStrengthPerCount[0], 0.2f / 39.0f);
  EXPECT_FLOAT_EQ(params.grainBlendKeep[0], 0.8f);
  EXPECT_EQ(params.grainBlendKeep[1], 0.0f);
  EXPECT_EQ(params.grainRadius[0], 0.0019f);
  EXPECT_EQ(params.grainRadiusSquared[0], static_cast<float>(0.0019 * 0.0019));
  EXPECT_EQ(params.grainCell[0], static_cast<float>(1.0 / 527.0));
  EXPECT_FLOAT_EQ(params.grainInvCell[0], 527.0f);
  EXPECT_EQ(params.grainSigma[0], 0.0f);
  EXPECT_EQ(params.targetScaleX, static_cast<float>(1920.0 / 1919.0));
  EXPECT_EQ(params.targetScaleY, static_cast<float>(1080.0 / 1079.0));
}

TEST_F(CaptureGrain, VarianceFields)
{
  values.set("VarianceGreen", 4.0);
  params.grainLogSigma[0] = 5.0f;
  capture();
  EXPECT_EQ(params.grainLogSigma[0], 5.0f);  // no law at variance 0
  const double sigma = 4.0 * 0.0019 * 0.15;
  const double logSigma = std::sqrt(std::log(std::pow(sigma / 0.0019, 2.0) + 1.0));
  const double logMu = std::log(0.0019) - logSigma * logSigma / 2.0;
  EXPECT_FLOAT_EQ(params.grainSigma[1], static_cast<float>(sigma));
  EXPECT_FLOAT_EQ(params.grainLogSigma[1], static_cast<float>(logSigma));
  EXPECT_FLOAT_EQ(params.grainLogMu[1], static_cast<float>(logMu));
  EXPECT_FLOAT_EQ(params.grainRadiusMax[1], static_cast<float>(std::exp(logMu + logSigma * 3.0902)));
}

TEST_F(CaptureGrain, AChannelWithoutSizeOrStrengthIsOff)
{
  params.grainSoft[0] = 9.0f;
  values.set("SizeRed", 0.0);
  values.set("StrengthBlue", 0.0);
  capture();
  EXPECT_EQ(params.grainChannelOn[0], 0);
  EXPECT_EQ(params.grainChannelOn[1], 1);
  EXPECT_EQ(params.grainChannelOn[2], 0);
  EXPECT_EQ(params.grainChannelCount, 1);
  EXPECT_EQ(params.grainSoft[0], 9.0f);
  EXPECT_EQ(params.redLambda, nullptr);
  EXPECT_NE(params.greenLambda, nullptr);
}

TEST_F(CaptureGrain, BypassedGrainKeepsItsBlock)
{
  capture(7.0);
  const FrameParams before = params;
  wake();
  values.set("GrainBypass", 1);
  values.set("GrainLinear", 1);
  values.set("DispersionPattern", 3);
  values.set("SoftRed", 10.0);
  capture(8.0);
  EXPECT_TRUE(params.grainBypassed);
  EXPECT_FALSE(params.grainLinear);
  EXPECT_EQ(params.grainMode, 0);
  EXPECT_EQ(params.grainSeedRed, before.grainSeedRed);
  EXPECT_EQ(params.grainSoft[0], before.grainSoft[0]);
  EXPECT_EQ(params.redLambda, before.redLambda);
}

// Values of an independent evaluation in unbounded integers, masked to 32 bits at each product.
TEST(GrainSeed, HashIsUnsigned)
{
  EXPECT_EQ(wangHash(0u), 3232319850u);
  EXPECT_EQ(wangHash(1u), 663891101u);
  EXPECT_EQ(wangHash(4294967295u), 1895078355u);
}

TEST_F(CaptureGrain, RandomColourSeeds)
{
  capture(0.0);
  EXPECT_EQ(std::bit_cast<std::uint32_t>(params.grainSeedRed), 3232319850u);
  EXPECT_EQ(params.grainSeedGreen, 1616159925);
  EXPECT_EQ(params.grainSeedBlue, static_cast<int>(3232319850.0 * 0.3333));
  values.set("SizeRed", 0.0);
  values.set("SizeBlue", 0.0);
  capture(1.9);  // frame 1
  EXPECT_EQ(std::bit_cast<std::uint32_t>(params.grainSeedRed), 3232319850u);
  EXPECT_EQ(params.grainSeedGreen, 663891101 / 2);
  EXPECT_EQ(params.grainSeedBlue, static_cast<int>(3232319850.0 * 0.3333));
}

TEST_F(CaptureGrain, NegativeFramesWrap)
{
  capture(-1.0);
  EXPECT_EQ(std::bit_cast<std::uint32_t>(params.grainSeedRed), 1895078355u);
  capture(-0.9);
  EXPECT_EQ(std::bit_cast<std::uint32_t>(params.grainSeedRed), 3232319850u);
}

TEST_F(CaptureGrain, SharedAndUniformSeeds)
{
  values.set("DispersionPattern", 1);
  values.set("SizeBlue", 0.0);
  capture(1.0);
  EXPECT_EQ(params.grainSeedRed, 663891101);
  EXPECT_EQ(params.grainSeedGreen, 663891101);
  EXPECT_EQ(params.grainSeedBlue, 663891101);
  values.set("DispersionPattern", 3);
  capture(1.0);
  EXPECT_EQ(params.grainSeedRed, 2016);
  EXPECT_EQ(params.grainSeedGreen, 2016);
  EXPECT_EQ(params.grainSeedBlue, 2016);
  values.set("DispersionPattern", 2);
  capture(1.0);
  EXPECT_EQ(params.grainSeedRed, 663891101);
  EXPECT_EQ(params.grainSeedGreen, 2016);
  values.set("DispersionPattern", 4);
  values.set("UniformPattern", 10.0);
  capture(1.0);
  EXPECT_EQ(params.grainSeedRed, 4032);
  EXPECT_EQ(params.grainSeedGreen, 2016);
}

TEST_F(CaptureGrain, LuminanceFoldsTheLiveChannels)
{
  values.set("DispersionPattern", 2);
  values.set("SizeRed", 20.0);
  values.set("SizeGreen", 30.0);
  values.set("SizeBlue", 0.0);
  values.set("StrengthRed", 2.0);
  values.set("StrengthGreen", 4.0);
  values.set("GranularityRed", 2.0);
  values.set("GranularityGreen", 4.0);
  values.set("SoftRed", 1.0);
  values.set("SoftGreen", 3.0);
  values.set("SoftBlue", 10.0);
  values.set("VarianceRed", 1.0);
  values.set("VarianceGreen", 3.0);
  capture();
  EXPECT_EQ(params.grainChannelCount, 2);
  EXPECT_FLOAT_EQ(params.lumaRadius, 25.0f * 0.25f * 0.02f);
  EXPECT_FLOAT_EQ(params.lumaRadiusSquared, 0.125f * 0.125f);
  EXPECT_FLOAT_EQ(params.lumaCell, 0.125f);
  EXPECT_FLOAT_EQ(params.lumaInvCell, 8.0f);
  EXPECT_EQ(params.lumaCount, 15);
  EXPECT_FLOAT_EQ(params.lumaBlendKeep, 0.7f);
  EXPECT_FLOAT_EQ(params.lumaStrengthPerCount, 0.3f / 15.0f);
  EXPECT_FLOAT_EQ(params.lumaSoft, 0.8f);
  EXPECT_FLOAT_EQ(params.lumaSigma, 2.0f * 0.125f * 0.15f);
  EXPECT_GT(params.lumaRadiusMax, params.lumaRadius);
  EXPECT_EQ(params.redLambda, memory[0].data());
  EXPECT_EQ(params.greenLambda, nullptr);
}

TEST_F(CaptureGrain, LuminanceOfOneAndOfThreeChannels)
{
  values.set("DispersionPattern", 4);
  values.set("SizeRed", 0.0);
  values.set("StrengthGreen", 0.0);
  values.set("SizeBlue", 40.0);
  values.set("SoftBlue", 0.1);
  capture();
  EXPECT_EQ(params.grainChannelCount, 1);
  EXPECT_FLOAT_EQ(params.lumaRadius, 0.2f);
  EXPECT_EQ(params.lumaSoft, 0.16f);
  EXPECT_EQ(params.lumaSigma, 0.0f);
  values.set("SizeRed", 35.0);
  values.set("SizeGreen", 45.0);
  values.set("StrengthGreen", 4.0);
  capture();
  EXPECT_EQ(params.grainChannelCount, 3);
  EXPECT_FLOAT_EQ(params.lumaRadius, 0.2f);
  EXPECT_FLOAT_EQ(params.lumaBlendKeep, 0.2f);
  EXPECT_FLOAT_EQ(params.lumaSoft, 4.1f / 3.0f * 0.4f);
}

TEST_F(CaptureGrain, SoftnessOfACutBluePlane)
{
  const auto blueSoft = [&](double soft)
  {
    values.set("SoftBlue", soft);
    capture();
    return params.grainSoft[2];
  };
  EXPECT_EQ(blueSoft(2.0), 0.8f);
  params.gpuCount = 2;
  EXPECT_EQ(blueSoft(2.0), 0.18f);
  EXPECT_EQ(blueSoft(0.1), 0.16f);
  EXPECT_FLOAT_EQ(blueSoft(0.42), 0.168f);
  values.set("SizeRed", 0.0);
  EXPECT_EQ(blueSoft(2.0), 0.8f);
}

TEST_F(CaptureGrain, ATargetOfOnePixelIsBorne)
{
  values.setSizes(1, 1);
  capture(0.0, 1, 1);
  EXPECT_TRUE(std::isinf(params.targetScaleX));
  EXPECT_TRUE(std::isinf(params.targetScaleY));
}

TEST_F(CaptureGrain, ChannelsThatAgreeShareTables)
{
  capture();
  EXPECT_EQ(params.redLambda, memory[0].data());
  EXPECT_EQ(params.redExp, memory[1].data());
  EXPECT_EQ(params.greenLambda, params.redLambda);
  EXPECT_EQ(params.blueExp, params.redExp);

  values.set("SizeGreen", 20.0);
  capture();
  EXPECT_EQ(params.greenLambda, memory[2].data());
  EXPECT_EQ(params.blueLambda, memory[0].data());

  // Softness, strength and granularity are no part of a table.
  values.set("SizeBlue", 20.0);
  values.set("SoftBlue", 1.0);
  values.set("StrengthBlue", 3.0);
  values.set("GranularityBlue", 1.0);
  capture();
  EXPECT_EQ(params.blueLambda, memory[2].data());
}

TEST_F(CaptureGrain, TablesAreRebuiltOnlyWhenTheirInputsChange)
{
  capture(0.0);
  memory[0][5] = -1.0f;
  capture(1.0);
  EXPECT_EQ(memory[0][5], -1.0f);
  values.setChannels("Size", 20.0);
  capture(2.0);
  EXPECT_GT(memory[0][5], 0.0f);
}

// Green stands on red's table; then red changes while green stays: green must get its own, not red's new one.
TEST_F(CaptureGrain, AChangedOwnerDoesNotDragTheOthersAlong)
{
  values.setChannels("Size", 20.0);
  capture();
  const float shared = params.greenLambda[100];
  values.set("SizeRed", 40.0);
  values.set("VarianceRed", 5.0);
  capture();
  EXPECT_NE(params.redLambda, params.greenLambda);
  EXPECT_EQ(params.greenLambda, params.blueLambda);
  EXPECT_EQ(params.greenLambda[100], shared);
  EXPECT_NE(params.redLambda[100], shared);
}

}  // namespace
}  // namespace morvellan::test
