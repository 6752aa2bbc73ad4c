// The tables of the suites that the host offers.
#pragma once

#include <cstddef>

#include "ofx/ofxImageEffect.h"
#include "ofx/ofxMemory.h"
#include "ofx/ofxMessage.h"
#include "ofx/ofxMultiThread.h"
#include "ofx/ofxParam.h"
#include "ofx/ofxProgress.h"
#include "ofx/ofxProperty.h"
#include "ofx/ofxTimeLine.h"

namespace morvellan::host
{

const OfxPropertySuiteV1& propertySuite();
const OfxImageEffectSuiteV1& imageEffectSuite();
const OfxParameterSuiteV1& parameterSuite();
const OfxMemorySuiteV1& memorySuite();
const OfxMultiThreadSuiteV1& multiThreadSuite();
const OfxMessageSuiteV1& messageSuiteV1();
const OfxMessageSuiteV2& messageSuiteV2();
const OfxProgressSuiteV1& progressSuiteV1();
const OfxProgressSuiteV2& progressSuiteV2();
const OfxTimeLineSuiteV1& timeLineSuite();

// Destroys the mutexes that a plug-in has left, and says how many they were.
std::size_t takeMutexes();

// What the host record's fetchSuite does: null for a suite that the host does not have.
const void* fetchSuite(OfxPropertySetHandle host, const char* name, int version);

}  // namespace morvellan::host
