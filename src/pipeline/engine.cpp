// This target's entry in the table of engines.
#include "pipeline/host/engine.h"

#include <new>

#include "device/memory.h"
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

void* allocatePinned(std::size_t bytes)
{
  try
  {
    return allocate(MemoryKind::Pinned, bytes);
  }
  catch (const std::bad_alloc&)
  {
    return nullptr;
  }
}

void releasePinned(void* memory)
{
  release(MemoryKind::Pinned, memory);
}

}  // namespace

extern const Engine engine;
const Engine engine{MORVELLAN_TARGET_NAME, setSoftwareDevices, render, allocatePinned, releasePinned};

}  // namespace morvellan::MORVELLAN_TARGET
