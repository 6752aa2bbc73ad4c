// The memory suite.
#pragma once

#include <cstddef>

#include "ofx/ofxCore.h"

extern "C"
{

  inline constexpr const char* kOfxMemorySuite = "OfxMemorySuite";

  struct OfxMemorySuiteV1
  {
    OfxStatus (*memoryAlloc)(void* handle, size_t nBytes, void** allocatedData);
    OfxStatus (*memoryFree)(void* allocatedData);
  };

}  // extern "C"
