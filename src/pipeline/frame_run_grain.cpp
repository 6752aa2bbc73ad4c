// The grain of a frame: its channels dealt to the devices, rendered there, and brought back to the frame's own.
#include <algorithm>

#include "pipeline/frame_run.h"
#include "pipeline/host/grain_mode.h"

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

std::vector<GrainShare> sharesOf(const FrameParams& p, int height)
{
  if (isLuminanceGrain(p.grainMode))
    return p.grainChannelCount > 0 ? std::vector<GrainShare>{{GrainChannel::red, p.gpuRed, 0, height}}
                                   : std::vector<GrainShare>{};
  return dealGrain({p.grainChannelOn[0] != 0, p.grainChannelOn[1] != 0, p.grainChannelOn[2] != 0},
                   {.red = p.gpuRed, .green = p.gpuGreen, .blue = p.gpuBlue, .count = p.gpuCount}, height);
}

}  // namespace

// Every share's plane is copied before the first launch: two devices may write halves of one plane.
void FrameRun::render()
{
  synchronize();
  for (const GrainShare& share : sharesOf(params, height))
  {
    const GrainSettings settings =
        isLuminanceGrain(params.grainMode) ? luminanceGrainSettings(params) : grainSettings(params, share.channel);
    makeCurrent(share.device);
    grainInputs.emplace_back(share, settings, params, planes[static_cast<size_t>(share.channel)].data(), width, height,
                             params.gpuRed);
  }
  for (const GrainInput& input : grainInputs)
  {
    makeCurrent(input.device());
    input.render(queue.observer);
  }
  for (GrainInput& input : grainInputs)
    if (input.device() != params.gpuRed)
    {
      makeCurrent(input.device());
      synchronize();
      input.collect();
    }
  makeCurrent(params.gpuRed);
}

// The frames first, then what grain read, channel by channel, then the planes.
void FrameRun::release()
{
  frameA.reset();
  frameB.reset();
  std::ranges::stable_sort(grainInputs, {}, &GrainInput::channel);
  grainInputs.clear();
  for (Buffer<float>& plane : planes)
    plane.reset();
}

}  // namespace morvellan::MORVELLAN_TARGET
