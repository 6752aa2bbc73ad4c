// The host's own record as it was handed over before load, and the action table behind every plug-in's entry function.
#pragma once

#include "ofx/ofxCore.h"

namespace OFX
{

/// What OfxPlugin::setHost is given; null until then.
const OfxHost* host();
void setHost(OfxHost* host);

}  // namespace OFX
