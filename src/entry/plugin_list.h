// The bodies of the two exported functions: how many plug-ins the library holds, and the record of each.
#pragma once

#include "ofx/ofxCore.h"

namespace OFX
{

int numberOfPlugins() noexcept;

/// Null, with a line in the log, for a number past the end.
OfxPlugin* pluginRecord(int nth) noexcept;

}  // namespace OFX
