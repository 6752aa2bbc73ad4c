// Names of statuses, and both directions between exceptions and statuses.
#include "entry/exceptions.h"

#include <array>
#include <new>

#include <fmt/format.h>

#include "entry/log.h"
#include "ofx/ofxImageEffect.h"

namespace OFX
{

std::string statusName(OfxStatus status)
{
  // Index = status value.
  static constexpr std::array<const char*, 15> names{
      "kOfxStatOK",
      "kOfxStatFailed",
      "kOfxStatErrFatal",
      "kOfxStatErrUnknown",
      "kOfxStatErrMissingHostFeature",
      "kOfxStatErrUnsupported",
      "kOfxStatErrExists",
      "kOfxStatErrFormat",
      "kOfxStatErrMemory",
      "kOfxStatErrBadHandle",
      "kOfxStatErrBadIndex",
      "kOfxStatErrValue",
      "kOfxStatReplyYes",
      "kOfxStatReplyNo",
      "kOfxStatReplyDefault",
  };
  if (status >= 0 && static_cast<std::size_t>(status) < names.size())
    return names[static_cast<std::size_t>(status)];
  return status == kOfxStatErrImageFormat ? "kOfxStatErrImageFormat" : fmt::format("unknown status {}", status);
}

void throwIfFailed(OfxStatus status)
{
  switch (status)
  {
  case kOfxStatOK:
  case kOfxStatReplyYes:
  case kOfxStatReplyNo:
  case kOfxStatReplyDefault:
    return;
  case kOfxStatErrMemory:
    throw std::bad_alloc();
  case kOfxStatErrMissingHostFeature:
    throw Exception::HostInadequate(statusName(status));
  default:
    throw Exception::Suite(status);
  }
}

namespace
{

OfxStatus logged(OfxStatus status, const char* what) noexcept
{
  try
  {
    Log::error("Action ended with {} : {}", statusName(status), what);
  }
  catch (...)  // a log line that cannot be composed changes no status
  {
    return status;
  }
  return status;
}

}  // namespace

OfxStatus statusOfCurrentException() noexcept
{
  try
  {
    throw;
  }
  catch (const Exception::Suite& e)
  {
    return logged(e.status(), e.what());
  }
  catch (const Exception::HostInadequate& e)
  {
    return logged(kOfxStatErrMissingHostFeature, e.what());
  }
  catch (const Exception::PropertyUnknownToHost& e)
  {
    return logged(kOfxStatErrMissingHostFeature, e.what());
  }
  catch (const std::bad_alloc& e)
  {
    return logged(kOfxStatErrMemory, e.what());
  }
  catch (const std::exception& e)
  {
    return logged(kOfxStatFailed, e.what());
  }
  catch (...)
  {
    return logged(kOfxStatFailed, "an exception that says nothing");
  }
}

}  // namespace OFX
