// The parameter suite's functions on keys: animation, and copies of it.
#include "host/suite_param.h"

#include <iterator>

#include <fmt/format.h>

#include "host/host.h"

namespace morvellan::host
{

// The host computes no derivatives and integrals, as the interface allows.
OfxStatus paramGetDerivative(OfxParamHandle handle, OfxTime /*time*/, ...)
{
  return valueParam(handle, "paramGetDerivative") == nullptr ? kOfxStatErrBadHandle : kOfxStatErrUnsupported;
}

OfxStatus paramGetIntegral(OfxParamHandle handle, OfxTime /*from*/, OfxTime /*to*/, ...)
{
  return valueParam(handle, "paramGetIntegral") == nullptr ? kOfxStatErrBadHandle : kOfxStatErrUnsupported;
}

OfxStatus paramGetNumKeys(OfxParamHandle handle, unsigned int* count)
{
  const Param* const param = valueParam(handle, "paramGetNumKeys");
  if (param == nullptr || count == nullptr)
  {
    return kOfxStatErrBadHandle;
  }
  *count = static_cast<unsigned int>(param->keys().size());
  return kOfxStatOK;
}

OfxStatus paramGetKeyTime(OfxParamHandle handle, unsigned int nth, OfxTime* time)
{
  const Param* const param = valueParam(handle, "paramGetKeyTime");
  if (param == nullptr || time == nullptr)
  {
    return kOfxStatErrBadHandle;
  }
  const auto keys = param->keys();
  if (nth >= keys.size())
  {
    reportMisuse(fmt::format("paramGetKeyTime({}): key {} of {}", param->name(), nth, keys.size()));
    return kOfxStatErrBadIndex;
  }
  *time = std::next(keys.begin(), nth)->first;
  return kOfxStatOK;
}

OfxStatus paramGetKeyIndex(OfxParamHandle handle, OfxTime time, int direction, int* index)
{
  const Param* const param = valueParam(handle, "paramGetKeyIndex");
  if (param == nullptr || index == nullptr)
  {
    return kOfxStatErrBadHandle;
  }
  const auto keys = param->keys();
  auto found = keys.find(time);
  if (direction > 0)
  {
    found = keys.upper_bound(time);
  }
  else if (direction < 0)
  {
    const auto notBefore = keys.lower_bound(time);
    found = notBefore == keys.begin() ? keys.end() : std::prev(notBefore);
  }
  if (found == keys.end())
  {
    return kOfxStatFailed;
  }
  *index = static_cast<int>(std::distance(keys.begin(), found));
  return kOfxStatOK;
}

OfxStatus paramDeleteKey(OfxParamHandle handle, OfxTime time)
{
  Param* const param = valueParam(handle, "paramDeleteKey");
  if (param == nullptr)
  {
    return kOfxStatErrBadHandle;
  }
  requireWritable(*param, "paramDeleteKey");
  return param->removeKey(time) ? kOfxStatOK : kOfxStatErrBadIndex;
}

OfxStatus paramDeleteAllKeys(OfxParamHandle handle)
{
  Param* const param = valueParam(handle, "paramDeleteAllKeys");
  if (param == nullptr)
  {
    return kOfxStatErrBadHandle;
  }
  requireWritable(*param, "paramDeleteAllKeys");
  param->removeKeys();
  return kOfxStatOK;
}

OfxStatus paramCopy(OfxParamHandle toHandle, OfxParamHandle fromHandle, OfxTime offset, const OfxRangeD* range)
{
  Param* const to = valueParam(toHandle, "paramCopy");
  const Param* const from = valueParam(fromHandle, "paramCopy");
  if (to == nullptr || from == nullptr)
  {
    return kOfxStatErrBadHandle;
  }
  requireWritable(*to, "paramCopy");
  if (to->kind() != from->kind())
  {
    reportMisuse(fmt::format("paramCopy({}, {}): the kinds differ", to->name(), from->name()));
    return kOfxStatErrValue;
  }
  to->setValue(from->value());
  for (const auto& [time, value] : from->keys())
  {
    if (range == nullptr || (time >= range->min && time <= range->max))
    {
      to->setKey(time + offset, value);
    }
  }
  return kOfxStatOK;
}

}  // namespace morvellan::host
