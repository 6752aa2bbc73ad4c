// The suites that the host hands over at load, fetched once for the whole process. Everything that talks to the host
// goes through this one record.
#pragma once

#include "ofx/ofxImageEffect.h"
#include "ofx/ofxMemory.h"
#include "ofx/ofxMessage.h"
#include "ofx/ofxMultiThread.h"
#include "ofx/ofxParam.h"
#include "ofx/ofxParametricParam.h"
#include "ofx/ofxProgress.h"
#include "ofx/ofxProperty.h"
#include "ofx/ofxTimeLine.h"

namespace OFX
{

struct Suites
{
  // Required.
  const OfxImageEffectSuiteV1* effect = nullptr;
  const OfxPropertySuiteV1* property = nullptr;
  const OfxParameterSuiteV1* param = nullptr;
  const OfxMemorySuiteV1* memory = nullptr;
  const OfxMultiThreadSuiteV1* multiThread = nullptr;
  const OfxMessageSuiteV1* message = nullptr;
  // Optional; null where the host has none.
  const OfxMessageSuiteV2* messageV2 = nullptr;
  const OfxProgressSuiteV1* progress = nullptr;
  const OfxTimeLineSuiteV1* timeLine = nullptr;
  const OfxParametricParameterSuiteV1* parametric = nullptr;
};

/// All suites of the host. Raises Exception::HostInadequate for a required suite that it does not have.
Suites fetchSuites(const OfxHost& host);

/// The process-wide record: written at load and by the repair of the multi-thread suite, read everywhere.
Suites& suites();

}  // namespace OFX
