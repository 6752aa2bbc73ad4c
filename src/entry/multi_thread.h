// Work spread over the host's threads: the base class of a job, and the number of processors that the host counts.
#pragma once

namespace OFX::MultiThread
{

/// How many CPUs the host offers; at least 1.
unsigned int numCPUs();

/// A job for several threads. A derived class does the share `threadId` of `threadCount` in its function; the shares
/// together are the whole job.
class Processor
{
public:
  virtual ~Processor() = default;

  virtual void multiThreadFunction(unsigned int threadId, unsigned int threadCount) = 0;

  /// Runs the job on `threadCount` threads, 0 meaning one for each CPU; one thread is the calling one. Raises what the
  /// host answers, and rethrows the first exception of a share.
  void multiThread(unsigned int threadCount = 0);
};

}  // namespace OFX::MultiThread
