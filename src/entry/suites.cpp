// Fetches suites by name and version; the absence of one is logged, and raised where the suite is required.
#include "entry/suites.h"

#include "entry/exceptions.h"
#include "entry/log.h"

namespace OFX
{

namespace
{

enum class Need
{
  Required,
  Optional
};

template <class Suite>
void fetch(const OfxHost& host, const char* name, int version, Need need, const Suite*& place)
{
  place = static_cast<const Suite*>(host.fetchSuite(host.host, name, version));
  if (place != nullptr)
    return;
  if (need == Need::Optional)
  {
    Log::warning("Could not fetch the optional suite '{}' version {}.", name, version);
    return;
  }
  Log::error("Could not fetch the required suite '{}' version {}.", name, version);
  throw Exception::HostInadequate(fmt::format("the host has no suite '{}' version {}", name, version));
}

}  // namespace

Suites fetchSuites(const OfxHost& host)
{
  if (host.fetchSuite == nullptr)
    throw Exception::HostInadequate("the host offers no way to fetch a suite");
  Suites fetched;
  fetch(host, kOfxImageEffectSuite, 1, Need::Required, fetched.effect);
  fetch(host, kOfxPropertySuite, 1, Need::Required, fetched.property);
  fetch(host, kOfxParameterSuite, 1, Need::Required, fetched.param);
  fetch(host, kOfxMemorySuite, 1, Need::Required, fetched.memory);
  fetch(host, kOfxMultiThreadSuite, 1, Need::Required, fetched.multiThread);
  fetch(host, kOfxMessageSuite, 1, Need::Required, fetched.message);
  fetch(host, kOfxMessageSuite, 2, Need::Optional, fetched.messageV2);
  fetch(host, kOfxProgressSuite, 1, Need::Optional, fetched.progress);
  fetch(host, kOfxTimeLineSuite, 1, Need::Optional, fetched.timeLine);
  fetch(host, kOfxParametricParameterSuite, 1, Need::Optional, fetched.parametric);
  return fetched;
}

Suites& suites()
{
  static Suites record;
  return record;
}

}  // namespace OFX
