// The exceptions of the OFX support layer and the names of the statuses that they carry. The main entry turns each of
// them into a status, so that none crosses into the host.
#pragma once

#include <exception>
#include <string>
#include <utility>

#include "ofx/ofxCore.h"

namespace OFX
{

/// The standard's name of a status, such as "kOfxStatFailed"; "unknown status N" for a number outside the standard.
std::string statusName(OfxStatus status);

namespace Exception
{

/// A status that ends the action: what the main entry returns.
class Suite : public std::exception
{
public:
  explicit Suite(OfxStatus status) : status_(status), text_(statusName(status)) {}
  OfxStatus status() const { return status_; }
  const char* what() const noexcept override { return text_.c_str(); }

private:
  OfxStatus status_;
  std::string text_;
};

/// The host lacks something that the effect cannot do without.
class HostInadequate : public std::exception
{
public:
  explicit HostInadequate(std::string what) : text_(std::move(what)) {}
  const char* what() const noexcept override { return text_.c_str(); }

private:
  std::string text_;
};

/// The host does not know a property by its name.
class PropertyUnknownToHost : public std::exception
{
public:
  explicit PropertyUnknownToHost(std::string property) : text_(std::move(property)) {}
  const char* what() const noexcept override { return text_.c_str(); }

private:
  std::string text_;
};

}  // namespace Exception

/// Returns when the status is kOfxStatOK or one of the replies. Raises std::bad_alloc for kOfxStatErrMemory,
/// HostInadequate for kOfxStatErrMissingHostFeature and Suite for any other failure.
void throwIfFailed(OfxStatus status);

/// Runs `action` and turns what it raises into the status that the host is given; logs the reason of a failure.
template <class Action>
OfxStatus statusOf(const Action& action) noexcept;

/// The status of the exception that is being handled; for use within a catch block only.
OfxStatus statusOfCurrentException() noexcept;

template <class Action>
OfxStatus statusOf(const Action& action) noexcept
{
  try
  {
    return action();
  }
  catch (...)
  {
    return statusOfCurrentException();
  }
}

}  // namespace OFX
