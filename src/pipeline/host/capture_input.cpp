// Capture of what happens to a clip on its way in: encoding, exposure, camera soft clip, enhancer, Pitch.
#include "pipeline/host/capture_math.h"
#include "pipeline/host/capture_parts.h"
#include "pipeline/host/input_class.h"

namespace morvellan
{
namespace
{

// Ten stops each way on linear light, five on gamma encodings, two tenths of the code range on log encodings.
// At 0 the kind stays what it was.
void captureExposure(double exposure, FrameParams& params)
{
  if (exposure == 0.0)
  {
    params.exposureValue = 0.0f;
  }
  else if (isLinearInput(params.inputGamut) || isGammaInput(params.inputGamut))
  {
    const double stops = isLinearInput(params.inputGamut) ? 10.0 : 5.0;
    params.exposureValue = narrow(std::exp2(exposure * stops));
    params.exposureKind = 1;
  }
  else
  {
    params.exposureValue = narrow(exposure * 0.2);
    params.exposureKind = 2;
  }
}

struct EnhancerNames
{
  std::string_view choice;
  std::string_view horizontal;
  std::string_view vertical;
};

constexpr EnhancerNames resizeEnhancer = {"SpatialEnhancement", "HorizontalEnhancer", "VerticalEnhancer"};
constexpr EnhancerNames grainEnhancer = {"SpatialEnhancer", "HorizontalDetails", "VerticalDetails"};

// False when this enhancer is off.
bool captureEnhancer(const ParameterValues& values, const EnhancerNames& names, FrameParams& params)
{
  const int choice = integer(values, names.choice);
  if (choice == 0)
    return false;
  const double horizontal = values.number(names.horizontal);
  const double vertical = values.number(names.vertical);
  params.enhancerHorizontal = narrow(horizontal);
  params.enhancerVertical = narrow(vertical);
  params.enhancerMode = params.enhancerModeCopy = horizontal == 0.0 && vertical == 0.0 ? 0 : choice;
  return true;
}

}  // namespace

void captureInput(const ParameterValues& values, FrameParams& params)
{
  params.inputGamut = integer(values, "InputGamut");
  captureExposure(values.number("Exposure"), params);
  params.hdrCompress = values.on("HDRcomp");
  params.processLinear = values.on("ProcessLinear");
}

void captureCameraSoftClip(const ParameterValues& values, FrameParams& params)
{
  params.cameraSoftClipActive = 0;
  if (!values.on("SoftClips"))
    return;
  const double ceiling = values.number("CameraHighlightsCeiling");
  const double floor = values.number("CameraShadowsCeiling") * 1.5;
  params.cameraHighlightCeiling = narrow(ceiling);
  params.cameraHighlightRecover = narrow(values.number("CameraHighlightsRecover") * 5.0 + 1.0);
  params.cameraShadowCeiling = narrow(floor);
  params.cameraShadowRecover = narrow(values.number("CameraShadowsRecover") * -1.5);
  params.cameraSoftClipActive = ceiling == 1.0 && floor == 0.0 ? 0 : 1;
}

void captureEnhancer(const ParameterValues& values, FrameParams& params)
{
  if (captureEnhancer(values, resizeEnhancer, params) || captureEnhancer(values, grainEnhancer, params))
    return;
  params.enhancerHorizontal = params.enhancerVertical = 0.0f;
  params.enhancerMode = params.enhancerModeCopy = 0;
}

void capturePitch(const ParameterValues& values, FrameParams& params)
{
  const auto gain = [&](std::string_view name) { return narrow(values.number(name) * 0.2 + 0.4); };
  const float ensemble = gain("EnsemblePitch");
  params.pitchBypassed = values.on("PitchBypass") || ensemble == 1.0f;
  if (params.pitchBypassed)
    return;
  params.sopranoPitchGain = gain("SopranoPitch");
  params.mezzoSopranoPitchGain = gain("MezzoSopranoPitch");
  params.altoPitchGain = gain("AltoPitch");
  params.tenorPitchGain = gain("TenorPitch");
  params.baritonePitchGain = gain("BaritonePitch");
  params.bassPitchGain = gain("BassPitch");
  params.ensemblePitchGain = ensemble;
}

}  // namespace morvellan
