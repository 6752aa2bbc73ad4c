// The grain of a frame, and the freeing of what the frame held.
#include "pipeline/frame_run.h"
#include "pipeline/grain_stage.h"

namespace morvellan::MORVELLAN_TARGET
{

void FrameRun::render()
{
  grainInputs =
      grainStage(queue.observer, params, {planes[0].data(), planes[1].data(), planes[2].data()}, width, height);
}

// The frames first, then what grain read, channel by channel, then the planes.
void FrameRun::release()
{
  frameA.reset();
  frameB.reset();
  grainInputs.clear();
  for (Buffer<float>& plane : planes)
    plane.reset();
}

}  // namespace morvellan::MORVELLAN_TARGET
