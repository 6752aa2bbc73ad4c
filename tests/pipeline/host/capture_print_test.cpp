// Values of the print and the display.
#include "tests/pipeline/host/capture_fixture.h"

#include <bit>
#include <cmath>
#include <cstdint>

namespace morvellan::test
{
namespace
{

class CapturePrint : public CaptureTest
{
protected:
  CapturePrint()
  {
    values.set("PrintDisplayBypass", 0);
    values.set("PrintProfile", 2);
  }
};

TEST_F(CapturePrint, BypassedBySwitchOrByADisplayReferredInput)
{
  capture();
  EXPECT_FALSE(params.printBypassed);
  EXPECT_EQ(params.printProfile, 2);
  for (const int gamut : {1, 27, 29, 31, 32, 33, 34, 46})
  {
    values.set("InputGamut", gamut);
    capture();
    EXPECT_TRUE(params.printBypassed) << gamut;
    EXPECT_EQ(params.printProfile, 0) << gamut;
  }
  for (const int gamut : {0, 2, 26, 28, 30, 35, 44, 45, 47})
  {
    values.set("InputGamut", gamut);
    capture();
    EXPECT_FALSE(params.printBypassed) << gamut;
  }
  wake();
  values.set("PrintDisplayBypass", 1);
  capture();
  EXPECT_TRUE(params.printBypassed);
  EXPECT_EQ(params.printProfile, 0);
}

TEST_F(CapturePrint, CastTintsSaturation)
{
  values.set("PrintCast", 3000);
  values.set("PrintTintGtoM", 0.5);
  values.set("PrintTintRtoC", -0.5);
  values.set("PrintSaturation", 0.4);
  capture();
  EXPECT_TRUE(params.printCastActive);
  EXPECT_EQ(params.printCast, 30);
  EXPECT_EQ(params.printTintGtoM, 0.3f);
  EXPECT_EQ(params.printTintRtoC, -0.3f);
  EXPECT_EQ(params.printSaturation, 0.4f);
  values.set("PrintCast", 6504);
  capture();
  EXPECT_FALSE(params.printCastActive);
  EXPECT_EQ(params.printCast, 6504);
}

TEST_F(CapturePrint, Gamma)
{
  values.set("PrintGammaPivot", 0.0);
  values.set("PrintGammaGreen", 0.8);
  capture();
  EXPECT_EQ(params.printGammaPivot, 0.05f);
  EXPECT_FALSE(params.printGammaLive[0]);
  EXPECT_TRUE(params.printGammaLive[1]);
  EXPECT_EQ(params.printGamma[0], 1.0f);
  EXPECT_EQ(params.printGamma[1], 2.0f);
  EXPECT_EQ(params.printGammaScale[0], 1.0f);
  EXPECT_FLOAT_EQ(params.printGammaScale[1], 20.0f);
}

TEST_F(CapturePrint, BleachIsReadOnlyWhileOn)
{
  values.set("PrintBleachPivot", 0.5);
  values.set("PrintBleachBlue", 0.8);
  capture();
  EXPECT_FALSE(params.printBleachOn);
  EXPECT_EQ(params.printBleachPivot, 0.0f);
  values.set("Bleach", 1);
  capture();
  EXPECT_TRUE(params.printBleachOn);
  EXPECT_EQ(params.printBleachPivot, 0.5f);
  EXPECT_EQ(params.printBleachGamma[2], 2.0f);
  EXPECT_FLOAT_EQ(params.printBleachScale[2], 2.0f);
  values.set("PrintBleachPivot", 0.0);
  capture();
  EXPECT_EQ(params.printBleachPivot, 0.05f);
  EXPECT_FLOAT_EQ(params.printBleachScale[2], 20.0f);
}

TEST_F(CapturePrint, Curve)
{
  capture();
  EXPECT_TRUE(params.printCurve.live);
  EXPECT_EQ(params.printCurve.shadowPivot, static_cast<float>(0.669 - 0.108993157));
  EXPECT_EQ(params.printCurve.midtone[0], -0.093f);
  EXPECT_EQ(params.printCurve.highlightPivot, static_cast<float>(0.334 - 0.011241447));
  for (const char* stem : {"PrintCurveShadow", "PrintCurveMidtone", "PrintCurveHighlight"})
    values.setChannels(stem, 0.0);
  capture();
  EXPECT_FALSE(params.printCurve.live);
  EXPECT_EQ(std::bit_cast<std::uint32_t>(params.printCurve.shadowPivot), 0x3EC8320Du);
  EXPECT_EQ(std::bit_cast<std::uint32_t>(params.printCurve.highlightPivot), 0x3EFA3E90u);
  values.set("PrintCurveMidtoneBlue", 0.1);
  capture();
  EXPECT_TRUE(params.printCurve.live);
}

TEST_F(CapturePrint, DisplayValues)
{
  values.set("PrintFilmicPivot", 0.5);
  values.set("PrintFilmicSlope", 0.02);
  capture();
  EXPECT_EQ(params.printBlack[0], static_cast<float>(0.141 * 0.125));
  EXPECT_EQ(params.printerLight[2], static_cast<float>(0.909 * 2.0));
  EXPECT_FLOAT_EQ(params.printFilmicScale, static_cast<float>(1.0 / 0.36));
  EXPECT_EQ(params.printFilmicSlope, 3.0f);
}

TEST_F(CapturePrint, PeakBrightnessCountsOnHdrDisplays)
{
  for (int display = 0; display < 15; ++display)
  {
    values.set("OutputDisplayGamut", display);
    values.set("PrintPeakBrightness", 0.203);
    capture();
    const bool hdr = display == 6 || display == 7 || display == 8 || display == 10 || display == 12 || display == 14;
    EXPECT_EQ(params.outputDisplayGamut, display);
    EXPECT_FLOAT_EQ(params.peakBrightness, hdr ? 203.0f : 100.0f) << display;
    values.set("PrintPeakBrightness", 0.0);
    capture();
    EXPECT_FLOAT_EQ(params.peakBrightness, hdr ? 1.0f : 100.0f) << display;
  }
}

}  // namespace
}  // namespace morvellan::test
