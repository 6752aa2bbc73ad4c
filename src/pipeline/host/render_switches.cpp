// The switches of a frame and the two tests made on them.
#include "pipeline/host/render_switches.h"

namespace morvellan
{
namespace
{

bool allStagesIdle(const RenderSwitches& switches)
{
  return switches.soupBypass && switches.printDisplayBypass && switches.halationBypass && switches.grainBypassed &&
         switches.pitchIdle && !switches.softClips && !switches.exposed;
}

bool combinedEnhancerIdle(const ParameterValues& values)
{
  if (values.on("SpatialEnhancement"))
    return values.number("CombinedEnhancer") == 0.0;
  return !values.on("SpatialEnhancer") || values.number("CombinedDetails") == 0.0;
}

}  // namespace

RenderSwitches readSwitches(const ParameterValues& values)
{
  return {
      .soupBypass = values.on("SoupBypass"),
      .printDisplayBypass = values.on("PrintDisplayBypass"),
      .halationBypass = values.on("HalationBypass"),
      .grainBypassed =
          values.on("GrainBypass") || values.number("SizeRGB") == 0.0 || values.number("StrengthRGB") == 0.0,
      .pitchIdle = values.on("PitchBypass") || values.number("EnsemblePitch") == 3.0,
      .softClips = values.on("SoftClips"),
      .exposed = values.number("Exposure") != 0.0,
  };
}

bool leavesOutputUntouched(const RenderSwitches& switches, const FrameParams& params)
{
  return allStagesIdle(switches) && params.enhancerMode == 0 && params.resizeMode == 0;
}

bool isIdentity(const ParameterValues& values, bool gpuReady)
{
  if (!gpuReady)
    return true;
  return allStagesIdle(readSwitches(values)) && combinedEnhancerIdle(values) &&
         values.number("SourceWidth") == values.number("TargetWidth") &&
         values.number("SourceHeight") == values.number("TargetHeight");
}

}  // namespace morvellan
