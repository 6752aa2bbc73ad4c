// A complete local implementation of the multi-thread suite, for hosts whose own is missing or not trusted, and the
// repairs that put it, whole or its mutexes only, in the place of the host's.
#pragma once

#include <string_view>

#include "entry/suites.h"

namespace OFX::MultiThread
{

/// The nine functions, all local.
const OfxMultiThreadSuiteV1& localSuite();

/// Local mutexes; the first four functions are those of the suite that it was last made from.
const OfxMultiThreadSuiteV1& mixedSuite();

/// Repairs the current suite, in this order:
/// 1. unless it is the local one: missing, or one of its first four functions null, or a host whose name begins with
///    "DaVinciResolve": the local suite takes its place;
/// 2. unless it is the mixed one: one of its five mutex functions missing, or a host whose name begins with
///    "com.sony.Catalyst.Edit": its first four functions go into the mixed suite, which takes its place.
void repairSuite(const OfxMultiThreadSuiteV1*& current, std::string_view hostName);

}  // namespace OFX::MultiThread
