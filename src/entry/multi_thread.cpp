// Passes a job through the host's multi-thread suite, whose callback is a C function.
#include "entry/multi_thread.h"

#include <algorithm>
#include <atomic>
#include <exception>

#include "entry/exceptions.h"
#include "entry/suites.h"

namespace OFX::MultiThread
{

namespace
{

struct Job
{
  Processor& processor;
  std::atomic<bool> failed{false};
  std::exception_ptr reason{};
};

void runShare(unsigned int threadId, unsigned int threadCount, void* argument)
{
  Job& job = *static_cast<Job*>(argument);
  try
  {
    job.processor.multiThreadFunction(threadId, threadCount);
  }
  catch (...)
  {
    if (!job.failed.exchange(true))
      job.reason = std::current_exception();
  }
}

}  // namespace

unsigned int numCPUs()
{
  unsigned int count = 0;
  throwIfFailed(suites().multiThread->multiThreadNumCPUs(&count));
  return std::max(1u, count);
}

void Processor::multiThread(unsigned int threadCount)
{
  if (threadCount == 0)
    threadCount = numCPUs();
  if (threadCount == 1)
  {
    multiThreadFunction(0, 1);
    return;
  }
  Job job{.processor = *this};
  const OfxStatus status = suites().multiThread->multiThread(runShare, threadCount, &job);
  if (job.reason)
    std::rethrow_exception(job.reason);
  throwIfFailed(status);
}

}  // namespace OFX::MultiThread
