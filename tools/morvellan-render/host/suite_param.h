// What the two halves of the parameter suite share.
#pragma once

#include "host/param.h"
#include "ofx/ofxParam.h"

namespace morvellan::host
{

// A living parameter of an instance; null, and a misuse, where the handle is none.
Param* livingParam(OfxParamHandle handle, const char* call);
// The same of one that has a value.
Param* valueParam(OfxParamHandle handle, const char* call);
// A misuse where the action that runs may not change parameters.
void requireWritable(const Param& param, const char* call);

// The suite's functions on keys.
OfxStatus paramGetDerivative(OfxParamHandle handle, OfxTime time, ...);
OfxStatus paramGetIntegral(OfxParamHandle handle, OfxTime from, OfxTime to, ...);
OfxStatus paramGetNumKeys(OfxParamHandle handle, unsigned int* count);
OfxStatus paramGetKeyTime(OfxParamHandle handle, unsigned int nth, OfxTime* time);
OfxStatus paramGetKeyIndex(OfxParamHandle handle, OfxTime time, int direction, int* index);
OfxStatus paramDeleteKey(OfxParamHandle handle, OfxTime time);
OfxStatus paramDeleteAllKeys(OfxParamHandle handle);
OfxStatus paramCopy(OfxParamHandle toHandle, OfxParamHandle fromHandle, OfxTime offset, const OfxRangeD* range);

}  // namespace morvellan::host
