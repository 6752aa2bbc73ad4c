// The order of a frame's capture.
#include "pipeline/host/capture.h"

#include "pipeline/host/capture_math.h"
#include "pipeline/host/capture_parts.h"
#include "pipeline/host/render_switches.h"

namespace morvellan
{

CaptureOutcome captureFrame(const ParameterValues& values, const FrameRequest& request, FrameParams& params,
                            GrainTables& tables)
{
  CaptureOutcome outcome{.route = FrameRoute::copy, .corrections = {}};
  params.channelCount = request.channels;
  params.frameWidth = request.width;
  params.frameHeight = request.height;
  if (!params.gpuReady)
    return outcome;

  const RenderSwitches switches = readSwitches(values);
  outcome.corrections = captureSizes(values, params);
  captureOffsets(values, params);
  captureEnhancer(values, params);
  if (leavesOutputUntouched(switches, params))
  {
    outcome.route = FrameRoute::untouched;
    return outcome;
  }

  captureInput(values, params);
  captureCameraSoftClip(values, params);
  capturePitch(values, params);
  params.grainBypassed = switches.grainBypassed;
  if (!params.grainBypassed)
  {
    captureGrain(values, request.time, params);
    tables.update(params);
  }
  captureSoup(values, params);
  captureSoupAttributes(values, params);
  captureSoupRefinements(values, params);
  captureBleachAndTone(values, params);
  captureHalation(values, params);
  capturePrint(values, params);
  outcome.route = dispatch(params);
  return outcome;
}

void seedFrameParams(const ParameterValues& values, FrameParams& params)
{
  captureInput(values, params);
  params.inResolutionChoice = integer(values, "InResolution");
  params.outResolutionChoice = integer(values, "OutResolution");
  captureEnhancer(values, params);
  capturePitch(values, params);
  params.grainBypassed = readSwitches(values).grainBypassed;
  params.soupBypassed = values.on("SoupBypass");
  params.halationBypassed = values.on("HalationBypass") || values.number("HalationBreadth") == 0.0;
  capturePrintSwitches(values, params);
  params.sopranoPitchGain = params.mezzoSopranoPitchGain = params.altoPitchGain = 1.0f;
  params.tenorPitchGain = params.baritonePitchGain = params.bassPitchGain = params.ensemblePitchGain = 1.0f;
  params.cameraHighlightCeiling = 1.0f;
}

}  // namespace morvellan
