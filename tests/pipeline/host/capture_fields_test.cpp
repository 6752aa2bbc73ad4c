// Every field of the block that stands for one parameter, or for one of three colours: which parameter reaches which
// field, through which law. The tests of the parts hold the laws' edges; this one holds the wiring.
#include "tests/pipeline/host/capture_fixture.h"

#include <array>
#include <cmath>
#include <cstring>
#include <functional>

namespace morvellan::test
{
namespace
{

using CaptureFields = CaptureTest;

float field(double value)
{
  return static_cast<float>(value);
}

struct Wire
{
  const char* parameter;
  double value;
  std::function<double(const FrameParams&)> field;
  double expected;
};

// Values differ, so that no field can hold another one's.
const std::vector<Wire>& wires()
{
  static const std::vector<Wire> all{
      {"InputGamut", 11, [](const FrameParams& p) { return p.inputGamut; }, 11},
      {"HDRcomp", 1, [](const FrameParams& p) { return p.hdrCompress; }, 1},
      {"ProcessLinear", 1, [](const FrameParams& p) { return p.processLinear; }, 1},
      {"CameraHighlightsCeiling", 0.81, [](const FrameParams& p) { return p.cameraHighlightCeiling; }, field(0.81)},
      {"CameraHighlightsRecover", 0.31, [](const FrameParams& p) { return p.cameraHighlightRecover; },
       field(0.31 * 5.0 + 1.0)},
      {"CameraShadowsCeiling", 0.21, [](const FrameParams& p) { return p.cameraShadowCeiling; }, field(0.21 * 1.5)},
      {"CameraShadowsRecover", 0.41, [](const FrameParams& p) { return p.cameraShadowRecover; }, field(0.41 * -1.5)},
      {"SopranoPitch", 1.0, [](const FrameParams& p) { return p.sopranoPitchGain; }, field(1.0 * 0.2 + 0.4)},
      {"MezzoSopranoPitch", 2.0, [](const FrameParams& p) { return p.mezzoSopranoPitchGain; }, field(2.0 * 0.2 + 0.4)},
      {"AltoPitch", 4.0, [](const FrameParams& p) { return p.altoPitchGain; }, field(4.0 * 0.2 + 0.4)},
      {"TenorPitch", 5.0, [](const FrameParams& p) { return p.tenorPitchGain; }, field(5.0 * 0.2 + 0.4)},
      {"BaritonePitch", 6.0, [](const FrameParams& p) { return p.baritonePitchGain; }, field(6.0 * 0.2 + 0.4)},
      {"BassPitch", 7.0, [](const FrameParams& p) { return p.bassPitchGain; }, field(7.0 * 0.2 + 0.4)},
      {"EnsemblePitch", 8.0, [](const FrameParams& p) { return p.ensemblePitchGain; }, field(8.0 * 0.2 + 0.4)},
      {"GrainLinear", 1, [](const FrameParams& p) { return p.grainLinear; }, 1},
      {"SoupHighlightCeiling", 0.82, [](const FrameParams& p) { return p.soupHighlightCeiling; }, field(0.82)},
      {"SoupHighlightCompress", 0.32, [](const FrameParams& p) { return p.soupHighlightCompress; },
       field(0.32 * 5.0 + 1.0)},
      {"SoupShadowFloor", 0.22, [](const FrameParams& p) { return p.soupShadowFloor; }, field(0.22 * 1.5)},
      {"SoupShadowExpand", 0.42, [](const FrameParams& p) { return p.soupShadowExpand; }, field(0.42 * -1.5)},
      {"CameraStock", 7, [](const FrameParams& p) { return p.cameraStock; }, 7},
      {"CameraCast", 5000, [](const FrameParams& p) { return p.cameraCast; }, 50},
      {"CameraTintGtoM", 0.11, [](const FrameParams& p) { return p.cameraTintGtoM; }, field(0.11 * 0.4)},
      {"CameraTintRtoC", 0.12, [](const FrameParams& p) { return p.cameraTintRtoC; }, field(0.12 * 0.4)},
      {"LabPullPush", 0.7, [](const FrameParams& p) { return p.labPullPush; }, field((0.7 + 0.3) * 125.0)},
      {"LabDevelop", 0.6, [](const FrameParams& p) { return p.labDevelop; }, field(0.6 * 1.111111111)},
      {"LabAgitate", 5, [](const FrameParams& p) { return p.labAgitate; }, 5},
      {"LabReplenish", 0.3, [](const FrameParams& p) { return p.labReplenish; }, field((1.0 - 0.3) * 3.2)},
      {"LabSpectrumBand", 0.61, [](const FrameParams& p) { return p.labSpectrumBand; }, field(0.61)},
      {"LabDiffuseLoMid", 0.15, [](const FrameParams& p) { return p.labDiffuseLoMid; }, field(1.0 - 0.15)},
      {"LabDiffuseMidHi", 0.65, [](const FrameParams& p) { return p.labDiffuseMidHi; }, field(0.65 * 2.0 - 1.0)},
      {"ToneCurves", 3, [](const FrameParams& p) { return p.toneCurves; }, 3},
      {"LabBleachPivot", 0.41, [](const FrameParams& p) { return p.labBleachPivot; }, field(0.41)},
      {"SoupToePivot", 0.71, [](const FrameParams& p) { return p.soupToePivot; }, field(0.71 - 0.108993157)},
      {"SoupShoulderPivot", 0.35, [](const FrameParams& p) { return p.soupShoulderPivot; }, field(0.35 - 0.011241447)},
      {"SoupFilmicPivot", 0.2, [](const FrameParams& p) { return p.soupFilmicScale; },
       field(1.0 / (0.72 - (0.2 * 0.7 + 0.01)))},
      {"SoupFilmicSlope", 0.03, [](const FrameParams& p) { return p.soupFilmicSlope; }, field(0.03 * 50.0 + 1.5)},
      {"HalationBreadth", 0.34, [](const FrameParams& p) { return p.halationBreadth; }, field(0.34 * 0.5)},
      {"HalationSaturation", 0.91, [](const FrameParams& p) { return p.halationSaturation; }, field(0.91)},
      {"HalationCyanRed", 0.92, [](const FrameParams& p) { return p.halationCyanRed; }, field(0.92)},
      {"HalationMagentaGreen", 0.16, [](const FrameParams& p) { return p.halationMagentaGreen; }, field(0.16)},
      {"HalationYellowBlue", 0.08, [](const FrameParams& p) { return p.halationYellowBlue; }, field(0.08)},
      {"HalationBlendR", 0.13, [](const FrameParams& p) { return p.halationKeepRed; }, field(1.0 - 0.13)},
      {"HalationBlendG", 0.14, [](const FrameParams& p) { return p.halationKeepGreen; }, field(1.0 - 0.14)},
      {"HalationBlendB", 0.17, [](const FrameParams& p) { return p.halationKeepBlue; }, field(1.0 - 0.17)},
      {"PrintProfile", 6, [](const FrameParams& p) { return p.printProfile; }, 6},
      {"PrintCast", 7004, [](const FrameParams& p) { return p.printCast; }, 71},
      {"PrintTintGtoM", 0.18, [](const FrameParams& p) { return p.printTintGtoM; }, field(0.18 * 0.6)},
      {"PrintTintRtoC", 0.19, [](const FrameParams& p) { return p.printTintRtoC; }, field(0.19 * 0.6)},
      {"PrintSaturation", 0.93, [](const FrameParams& p) { return p.printSaturation; }, field(0.93)},
      {"PrintGammaPivot", 0.23, [](const FrameParams& p) { return p.printGammaPivot; }, field(0.23)},
      {"PrintBleachPivot", 0.43, [](const FrameParams& p) { return p.printBleachPivot; }, field(0.43)},
      {"PrintCurveShadowPivot", 0.72, [](const FrameParams& p) { return p.printCurve.shadowPivot; },
       field(0.72 - 0.108993157)},
      {"PrintCurveHighlightPivot", 0.36, [](const FrameParams& p) { return p.printCurve.highlightPivot; },
       field(0.36 - 0.011241447)},
      {"PrintFilmicPivot", 0.25, [](const FrameParams& p) { return p.printFilmicScale; },
       field(1.0 / (0.72 - (0.25 * 0.7 + 0.01)))},
      {"PrintFilmicSlope", 0.04, [](const FrameParams& p) { return p.printFilmicSlope; }, field(0.04 * 50.0 + 2.0)},
      {"OutputDisplayGamut", 7, [](const FrameParams& p) { return p.outputDisplayGamut; }, 7},
      {"PrintPeakBrightness", 0.5, [](const FrameParams& p) { return p.peakBrightness; }, 500},
  };
  return all;
}

TEST_F(CaptureFields, EachParameterReachesItsField)
{
  for (const char* on : {"SoftClips", "LableachBypass", "Bleach"})
    values.set(on, 1);
  for (const char* bypass : {"PitchBypass", "GrainBypass", "SoupBypass", "HalationBypass", "PrintDisplayBypass"})
    values.set(bypass, 0);
  for (const Wire& wire : wires())
    values.set(wire.parameter, wire.value);
  capture();
  for (const Wire& wire : wires())
    EXPECT_EQ(wire.field(params), wire.expected) << wire.parameter;
  EXPECT_FALSE(params.soupBypassed);
  EXPECT_FALSE(params.halationBypassed);
  EXPECT_FALSE(params.printBypassed);
  EXPECT_FALSE(params.grainBypassed);
  EXPECT_FALSE(params.pitchBypassed);
  EXPECT_TRUE(params.labDiffuseLoMidOn);
  EXPECT_TRUE(params.labDiffuseMidHiOn);
  EXPECT_TRUE(params.toneCurvesOn);
  EXPECT_TRUE(params.cameraCastActive);
  EXPECT_TRUE(params.printCastActive);
}

// Red, green and blue of each triple, in the block's order.
TEST_F(CaptureFields, ColoursStandInTheirOrder)
{
  struct Triple
  {
    const char* stem;
    const float (FrameParams::*field)[3];
    double scale, offset;
  };
  const std::vector<Triple> triples{{"SoupDmin", &FrameParams::soupDmin, 0.125, 0.0},
                                    {"SoupDmax", &FrameParams::soupDmax, 2.0, 0.0},
                                    {"LabSilver", &FrameParams::labSilver, 1.0, 0.5},
                                    {"LabBleach", &FrameParams::labBleachGamma, 2.5, 0.0},
                                    {"SoupToe", &FrameParams::soupToe, 1.0, 0.0},
                                    {"SoupKnee", &FrameParams::soupKnee, 1.0, 0.0},
                                    {"SoupShoulder", &FrameParams::soupShoulder, 1.0, 0.0},
                                    {"PrintGamma", &FrameParams::printGamma, 2.5, 0.0},
                                    {"PrintBleach", &FrameParams::printBleachGamma, 2.5, 0.0},
                                    {"PrintBlack", &FrameParams::printBlack, 0.125, 0.0},
                                    {"PrinterLight", &FrameParams::printerLight, 2.0, 0.0}};
  for (const char* on : {"LableachBypass", "Bleach"})
    values.set(on, 1);
  for (const char* bypass : {"SoupBypass", "PrintDisplayBypass"})
    values.set(bypass, 0);
  const auto valueOf = [](std::size_t triple, std::size_t colour)
  { return 0.1 + 0.03 * static_cast<double>(triple) + 0.01 * static_cast<double>(colour); };
  constexpr std::array colours{"Red", "Green", "Blue"};
  for (std::size_t t = 0; t < triples.size(); ++t)
    for (std::size_t c = 0; c < 3; ++c)
      values.set(std::string(triples[t].stem) + colours[c], valueOf(t, c));
  for (std::size_t c = 0; c < 3; ++c)
  {
    values.set(std::string("PrintCurveShadow") + colours[c], valueOf(20, c));
    values.set(std::string("PrintCurveMidtone") + colours[c], valueOf(21, c));
    values.set(std::string("PrintCurveHighlight") + colours[c], valueOf(22, c));
  }
  capture();
  for (std::size_t t = 0; t < triples.size(); ++t)
    for (std::size_t c = 0; c < 3; ++c)
      EXPECT_EQ((params.*triples[t].field)[c], field(valueOf(t, c) * triples[t].scale + triples[t].offset))
          << triples[t].stem << colours[c];
  for (std::size_t c = 0; c < 3; ++c)
  {
    EXPECT_EQ(params.printCurve.shadow[c], field(valueOf(20, c)));
    EXPECT_EQ(params.printCurve.midtone[c], field(valueOf(21, c)));
    EXPECT_EQ(params.printCurve.highlight[c], field(valueOf(22, c)));
    const auto scaleAt = [](float pivot, float gamma) { return pivot / std::pow(pivot, gamma); };
    EXPECT_EQ(params.labBleachScale[c], scaleAt(params.labBleachPivot, params.labBleachGamma[c]));
    EXPECT_EQ(params.printBleachScale[c], scaleAt(params.printBleachPivot, params.printBleachGamma[c]));
    EXPECT_EQ(params.printGammaScale[c], scaleAt(params.printGammaPivot, params.printGamma[c]));
    EXPECT_TRUE(params.printGammaLive[c]);
  }
}

TEST_F(CaptureFields, GrainOfEachColour)
{
  values.set("GrainBypass", 0);
  constexpr std::array colours{"Red", "Green", "Blue"};
  for (std::size_t c = 0; c < 3; ++c)
  {
    const auto k = static_cast<double>(c);
    values.set(std::string("Size") + colours[c], 20.0 + k);
    values.set(std::string("Soft") + colours[c], 3.0 + k);
    values.set(std::string("Granularity") + colours[c], 4.0 + k);
    values.set(std::string("Variance") + colours[c], 2.0 + k);
    values.set(std::string("Strength") + colours[c], 5.0 + k);
  }
  capture();
  for (std::size_t c = 0; c < 3; ++c)
  {
    const auto k = static_cast<double>(c);
    const double radius = (20.0 + k) * 0.25 * 0.02;  // above every step of this frame
    const double cell = 1.0 / std::ceil(1.0 / radius);
    const double sigma = (2.0 + k) * radius * 0.15;
    const double logSigma = std::sqrt(std::log(std::pow(sigma / radius, 2.0) + 1.0));
    const double logMu = std::log(radius) - logSigma * logSigma / 2.0;
    const int count = 16 * (1 << c) + 7;
    EXPECT_EQ(params.grainChannelOn[c], 1);
    EXPECT_EQ(params.grainSoft[c], field((3.0 + k) * 0.4));
    EXPECT_EQ(params.grainCount[c], count);
    EXPECT_FLOAT_EQ(params.grainStrengthPerCount[c], field((5.0 + k) * 0.1 / count));
    EXPECT_FLOAT_EQ(params.grainBlendKeep[c], field(1.0 - (5.0 + k) * 0.1));
    EXPECT_FLOAT_EQ(params.grainRadius[c], field(radius));
    EXPECT_FLOAT_EQ(params.grainRadiusSquared[c], field(radius * radius));
    EXPECT_FLOAT_EQ(params.grainCell[c], field(cell));
    EXPECT_FLOAT_EQ(params.grainInvCell[c], field(1.0 / cell));
    EXPECT_FLOAT_EQ(params.grainSigma[c], field(sigma));
    EXPECT_FLOAT_EQ(params.grainLogSigma[c], field(logSigma));
    EXPECT_FLOAT_EQ(params.grainLogMu[c], field(logMu));
    EXPECT_FLOAT_EQ(params.grainRadiusMax[c], field(std::exp(logMu + logSigma * 3.0902)));
  }
  // Three grains, three pairs of tables.
  EXPECT_EQ(params.redLambda, memory[0].data());
  EXPECT_EQ(params.redExp, memory[1].data());
  EXPECT_EQ(params.greenLambda, memory[2].data());
  EXPECT_EQ(params.greenExp, memory[3].data());
  EXPECT_EQ(params.blueLambda, memory[4].data());
  EXPECT_EQ(params.blueExp, memory[5].data());
}

// The one set of the luminance modes obeys the laws of a channel.
TEST_F(CaptureFields, LuminanceGrainIsThatOfAChannel)
{
  values.set("GrainBypass", 0);
  values.setChannels("Size", 22.0);
  values.setChannels("Soft", 3.0);
  values.setChannels("Granularity", 4.0);
  values.setChannels("Variance", 2.0);
  values.setChannels("Strength", 6.0);
  capture();
  const FrameParams channels = params;
  values.set("DispersionPattern", 2);
  capture();
  EXPECT_EQ(params.lumaSoft, channels.grainSoft[0]);
  EXPECT_EQ(params.lumaCount, channels.grainCount[0]);
  EXPECT_EQ(params.lumaCell, channels.grainCell[0]);
  EXPECT_EQ(params.lumaBlendKeep, channels.grainBlendKeep[0]);
  EXPECT_EQ(params.lumaSigma, channels.grainSigma[0]);
  EXPECT_EQ(params.lumaStrengthPerCount, channels.grainStrengthPerCount[0]);
  EXPECT_EQ(params.lumaInvCell, channels.grainInvCell[0]);
  EXPECT_EQ(params.lumaRadiusSquared, channels.grainRadiusSquared[0]);
  EXPECT_EQ(params.lumaRadius, channels.grainRadius[0]);
  EXPECT_EQ(params.lumaLogMu, channels.grainLogMu[0]);
  EXPECT_EQ(params.lumaLogSigma, channels.grainLogSigma[0]);
  EXPECT_EQ(params.lumaRadiusMax, channels.grainRadiusMax[0]);
}

// Code values of 18 % grey, in the order of the encodings.
constexpr std::array<double, 49> midGreys{
    0.18,        0.405,       0.458984375, 0.4345703125, 0.18,        0.18,         0.414,
    0.414,       0.414,       0.458984375, 0.352,        0.391,       0.33333,      0.377,
    0.323,       0.406,       0.41015625,  0.41015625,   0.41015625,  0.4228515625, 0.343,
    0.343,       0.398,       0.398,       0.343,        0.343,       0.3984375,    0.466,
    0.458984375, 0.405,       0.18,        0.531,        0.531,       0.531,        0.499,
    0.458984375, 0.458984375, 0.458984375, 0.458984375,  0.458984375, 0.68,         0.68,
    0.378,       0.378,       0.212,       0.336043,     0.531,       0.2784,       0.3835616438356165};

TEST_F(CaptureFields, MidGreyOfEveryEncoding)
{
  wake();
  for (std::size_t gamut = 0; gamut < midGreys.size(); ++gamut)
  {
    values.set("InputGamut", static_cast<double>(gamut));
    capture();
    const double v = midGreys[gamut];
    EXPECT_EQ(params.labMidGrey, field(v < 0.5 ? 0.5 - (0.5 - v) * 0.5 : (v - 0.5) * 0.5 + 0.5)) << gamut;
    EXPECT_EQ(params.printMidGrey, params.labMidGrey) << gamut;
  }
}

// What a frame without a resize, grain, bleach, diffusion or attributes must not touch.
TEST_F(CaptureFields, ABlockThatIsSkippedKeepsEveryByte)
{
  values.set("GrainBypass", 0);
  wake();
  capture();
  // Every byte of the grain block, from its common fields to the tables' addresses.
  const auto* const first = reinterpret_cast<const char*>(&params.grainLinear);
  const auto* const last = reinterpret_cast<const char*>(&params.grainRadiusMax[3]);
  const std::vector<char> before(first, last);
  values.set("GrainBypass", 1);
  for (const char* stem : {"Size", "Soft", "Granularity", "Variance", "Strength"})
    values.setChannels(stem, 7.0);
  values.set("GrainLinear", 1);
  values.set("DispersionPattern", 3);
  values.forgetReads();
  capture(9.0);
  EXPECT_TRUE(params.grainBypassed);
  EXPECT_EQ(std::memcmp(first, before.data(), before.size()), 0);
  for (const char* unread :
       {"GrainLinear", "DispersionPattern", "SizeRed", "UniformPattern", "SourceWidthOffset", "SopranoPitch",
        "CameraHighlightsCeiling", "LabBleachPivot", "PrintBleachPivot", "SaturationRed", "RefineTwoSatStrength",
        "HorizontalEnhancer", "CombinedEnhancer", "CombinedDetails"})
    EXPECT_FALSE(values.wasRead(unread)) << unread;
}

}  // namespace
}  // namespace morvellan::test
