// This target's entry in the table of engines.
#include "pipeline/host/engine.h"

#include "device/queue.h"
#include "pipeline/frame_run.h"

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

void render(const RenderJob& job)
{
  FrameRun(job).run();
}

}  // namespace

extern const Engine engine;
const Engine engine{MORVELLAN_TARGET_NAME, setSoftwareDevices, render};

}  // namespace morvellan::MORVELLAN_TARGET
