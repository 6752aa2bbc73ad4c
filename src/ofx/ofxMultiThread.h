// The multi-thread suite: worker threads and mutexes.
#pragma once

#include "ofx/ofxCore.h"

extern "C"
{

  inline constexpr const char* kOfxMultiThreadSuite = "OfxMultiThreadSuite";

  using OfxMutexHandle = struct OfxMutex*;
  using OfxThreadFunctionV1 = void(unsigned int threadIndex, unsigned int threadMax, void* customArg);

  struct OfxMultiThreadSuiteV1
  {
    OfxStatus (*multiThread)(OfxThreadFunctionV1 func, unsigned int nThreads, void* customArg);
    OfxStatus (*multiThreadNumCPUs)(unsigned int* nCPUs);
    OfxStatus (*multiThreadIndex)(unsigned int* threadIndex);
    int (*multiThreadIsSpawnedThread)(void);
    OfxStatus (*mutexCreate)(OfxMutexHandle* mutex, int lockCount);
    OfxStatus (*mutexDestroy)(const OfxMutexHandle mutex);
    OfxStatus (*mutexLock)(const OfxMutexHandle mutex);
    OfxStatus (*mutexUnLock)(const OfxMutexHandle mutex);
    OfxStatus (*mutexTryLock)(const OfxMutexHandle mutex);
  };

}  // extern "C"
