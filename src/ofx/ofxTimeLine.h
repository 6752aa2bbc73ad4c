// The timeline suite.
#pragma once

#include "ofx/ofxCore.h"

extern "C"
{

  inline constexpr const char* kOfxTimeLineSuite = "OfxTimeLineSuite";

  struct OfxTimeLineSuiteV1
  {
    OfxStatus (*getTime)(void* instance, double* time);
    OfxStatus (*gotoTime)(void* instance, double time);
    OfxStatus (*getTimeBounds)(void* instance, double* firstTime, double* lastTime);
  };

}  // extern "C"
