// The progress suites.
#pragma once

#include "ofx/ofxCore.h"

extern "C"
{

  inline constexpr const char* kOfxProgressSuite = "OfxProgressSuite";

  struct OfxProgressSuiteV1
  {
    OfxStatus (*progressStart)(void* effectInstance, const char* label);
    OfxStatus (*progressUpdate)(void* effectInstance, double progress);
    OfxStatus (*progressEnd)(void* effectInstance);
  };

  struct OfxProgressSuiteV2
  {
    OfxStatus (*progressStart)(void* effectInstance, const char* message, const char* messageid);
    OfxStatus (*progressUpdate)(void* effectInstance, double progress);
    OfxStatus (*progressEnd)(void* effectInstance);
  };

}  // extern "C"
