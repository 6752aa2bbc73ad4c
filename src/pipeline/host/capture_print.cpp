// Capture of the contact print and the display it is made for.
#include "pipeline/host/capture_math.h"
#include "pipeline/host/capture_parts.h"
#include "pipeline/host/capture_tone.h"
#include "pipeline/host/input_class.h"

namespace morvellan
{
namespace
{

constexpr bool isHdrDisplay(int outputDisplayGamut)
{
  switch (outputDisplayGamut)
  {
  case 6:
  case 7:
  case 8:
  case 10:
  case 12:
  case 14:
    return true;
  default:
    return false;
  }
}

void capturePrintGamma(const ParameterValues& values, FrameParams& params)
{
  static constexpr ChannelNames names = channelNames("PrintGamma");
  captureGamma(values, "PrintGammaPivot", names, {params.printGammaPivot, params.printGamma, params.printGammaScale});
  for (std::size_t channel = 0; channel < names.size(); ++channel)
    params.printGammaLive[channel] = values.number(names[channel]) != 0.4;
}

void capturePrintBleach(const ParameterValues& values, FrameParams& params)
{
  static constexpr ChannelNames names = channelNames("PrintBleach");
  params.printBleachOn = values.on("Bleach");
  if (params.printBleachOn)
    captureGamma(values, "PrintBleachPivot", names,
                 {params.printBleachPivot, params.printBleachGamma, params.printBleachScale});
}

bool anyNonZero(const float (&amounts)[3])
{
  return amounts[0] != 0.0f || amounts[1] != 0.0f || amounts[2] != 0.0f;
}

void capturePrintCurve(const ParameterValues& values, FrameParams& params)
{
  static constexpr ToneNames names = toneNames("PrintCurve", "Shadow", "Midtone", "Highlight");
  PrintCurveParams& curve = params.printCurve;
  captureTone(values, names, {curve.shadowPivot, curve.shadow, curve.midtone, curve.highlightPivot, curve.highlight});
  curve.live = anyNonZero(curve.shadow) || anyNonZero(curve.midtone) || anyNonZero(curve.highlight);
}

void captureDisplay(const ParameterValues& values, FrameParams& params)
{
  static constexpr ChannelNames black = channelNames("PrintBlack");
  static constexpr ChannelNames light = channelNames("PrinterLight");
  readChannels(values, black, params.printBlack, 0.125);
  readChannels(values, light, params.printerLight, 2.0);
  params.printFilmicScale = filmicScale(values.number("PrintFilmicPivot"));
  params.printFilmicSlope = narrow(values.number("PrintFilmicSlope") * 50.0 + 2.0);
  params.outputDisplayGamut = integer(values, "OutputDisplayGamut");
  params.peakBrightness = isHdrDisplay(params.outputDisplayGamut)
                              ? narrow(atLeast(values.number("PrintPeakBrightness"), 0.001) * 1000.0)
                              : 100.0f;
}

}  // namespace

void capturePrintSwitches(const ParameterValues& values, FrameParams& params)
{
  params.printBypassed = values.on("PrintDisplayBypass") || isGammaInput(params.inputGamut);
  params.printProfile = params.printBypassed ? 0 : integer(values, "PrintProfile");
}

void capturePrint(const ParameterValues& values, FrameParams& params)
{
  capturePrintSwitches(values, params);
  const Cast cast = castOf(integer(values, "PrintCast"));
  params.printCast = cast.row;
  params.printCastActive = cast.active;
  params.printTintGtoM = narrow(values.number("PrintTintGtoM") * 0.6);
  params.printTintRtoC = narrow(values.number("PrintTintRtoC") * 0.6);
  params.printSaturation = narrow(values.number("PrintSaturation"));
  capturePrintAttributes(values, params);
  capturePrintRefinements(values, params);
  capturePrintGamma(values, params);
  capturePrintBleach(values, params);
  capturePrintCurve(values, params);
  captureDisplay(values, params);
}

}  // namespace morvellan
