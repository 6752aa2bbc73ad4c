// Who runs a body, beside the loops of this folder.
#pragma once

#include <tbb/parallel_for.h>

namespace tbb::this_task_arena
{

inline int max_concurrency()
{
  return plain::threadCount();
}

inline int current_thread_index()
{
  return plain::threadIndex;
}

}  // namespace tbb::this_task_arena
