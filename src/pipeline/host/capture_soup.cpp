// Capture of the camera negative and its laboratory: soft clip, cast, densities, development, bleach, tone curves,
// halation. These fields are read whether or not the Soup is bypassed.
#include "pipeline/host/capture_math.h"
#include "pipeline/host/capture_parts.h"
#include "pipeline/host/capture_tone.h"
#include "pipeline/host/mid_grey.h"

namespace morvellan
{
namespace
{

void captureSoupSoftClip(const ParameterValues& values, FrameParams& params)
{
  const double ceiling = values.number("SoupHighlightCeiling");
  const double floor = values.number("SoupShadowFloor") * 1.5;
  params.soupSoftClipActive = !(ceiling == 1.0 && floor == 0.0);
  params.soupHighlightCeiling = narrow(ceiling);
  params.soupHighlightCompress = narrow(values.number("SoupHighlightCompress") * 5.0 + 1.0);
  params.soupShadowFloor = narrow(floor);
  params.soupShadowExpand = narrow(values.number("SoupShadowExpand") * -1.5);
}

// The two diffusion values are written only while they act, so that one may be left over from an earlier frame.
void captureLab(const ParameterValues& values, FrameParams& params)
{
  static constexpr ChannelNames silver = channelNames("LabSilver");
  params.labBleach = values.on("LableachBypass");
  readChannels(values, silver, params.labSilver, 1.0, 0.5);
  params.labPullPush = narrow((values.number("LabPullPush") + 0.3) * 125.0);
  params.labDevelop = narrow(atLeast(values.number("LabDevelop"), 0.091) * 1.111111111);
  params.labAgitate = integer(values, "LabAgitate");
  params.labReplenish = narrow(atLeast((1.0 - values.number("LabReplenish")) * 3.2, 0.2));
  params.labSpectrumBand = narrow(values.number("LabSpectrumBand"));

  const double loMid = values.number("LabDiffuseLoMid");
  params.labDiffuseLoMidOn = loMid != 1.0;
  if (params.labDiffuseLoMidOn)
    params.labDiffuseLoMid = narrow(1.0 - loMid);

  const double midHi = values.number("LabDiffuseMidHi") * 2.0 - 1.0;
  params.labDiffuseMidHiOn = midHi != 1.0;
  if (params.labDiffuseMidHiOn)
    params.labDiffuseMidHi = narrow(midHi);
}

}  // namespace

void captureSoup(const ParameterValues& values, FrameParams& params)
{
  static constexpr ChannelNames dmin = channelNames("SoupDmin");
  static constexpr ChannelNames dmax = channelNames("SoupDmax");
  params.soupBypassed = values.on("SoupBypass");
  captureSoupSoftClip(values, params);
  params.cameraStock = integer(values, "CameraStock");
  const Cast cast = castOf(integer(values, "CameraCast"));
  params.cameraCast = cast.row;
  params.cameraCastActive = cast.active;
  params.cameraTintGtoM = narrow(values.number("CameraTintGtoM") * 0.4);
  params.cameraTintRtoC = narrow(values.number("CameraTintRtoC") * 0.4);
  readChannels(values, dmin, params.soupDmin, 0.125);
  readChannels(values, dmax, params.soupDmax, 2.0);
  captureLab(values, params);
}

void captureBleachAndTone(const ParameterValues& values, FrameParams& params)
{
  static constexpr ChannelNames bleach = channelNames("LabBleach");
  static constexpr ToneNames tone = toneNames("Soup", "Toe", "Knee", "Shoulder");
  params.toneCurves = integer(values, "ToneCurves");
  params.toneCurvesOn = params.toneCurves != 0;
  if (params.labBleach)
    captureGamma(values, "LabBleachPivot", bleach,
                 {params.labBleachPivot, params.labBleachGamma, params.labBleachScale});
  captureTone(values, tone,
              {params.soupToePivot, params.soupToe, params.soupKnee, params.soupShoulderPivot, params.soupShoulder});
  params.soupFilmicScale = filmicScale(values.number("SoupFilmicPivot"));
  params.soupFilmicSlope = narrow(values.number("SoupFilmicSlope") * 50.0 + 1.5);
  params.labAreaScale =
      static_cast<float>(params.targetWidth) * 0.00041666668f * static_cast<float>(params.targetHeight);
  params.labMidGrey = params.printMidGrey = midGreyCentre(params.inputGamut);
}

void captureHalation(const ParameterValues& values, FrameParams& params)
{
  const double breadth = values.number("HalationBreadth");
  params.halationBypassed = values.on("HalationBypass") || breadth == 0.0;
  params.halationBreadth = narrow(breadth * 0.5);
  params.halationSaturation = narrow(values.number("HalationSaturation"));
  params.halationCyanRed = narrow(values.number("HalationCyanRed"));
  params.halationMagentaGreen = narrow(values.number("HalationMagentaGreen"));
  params.halationYellowBlue = narrow(values.number("HalationYellowBlue"));
  params.halationKeepRed = narrow(1.0 - values.number("HalationBlendR"));
  params.halationKeepGreen = narrow(1.0 - values.number("HalationBlendG"));
  params.halationKeepBlue = narrow(1.0 - values.number("HalationBlendB"));
}

}  // namespace morvellan
