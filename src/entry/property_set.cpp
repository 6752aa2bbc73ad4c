// Property calls: each goes to the host's property suite, and a refusal names the call, the property and the status.
#include "entry/property_set.h"

#include "entry/exceptions.h"
#include "entry/log.h"
#include "entry/suites.h"

namespace OFX
{

namespace
{

[[noreturn]] void raise(OfxStatus status, const char* name)
{
  if (status == kOfxStatErrUnknown || status == kOfxStatErrUnsupported)
    throw Exception::PropertyUnknownToHost(fmt::format("the host does not know the property {}", name));
  throwIfFailed(status);
  throw Exception::Suite(kOfxStatFailed);  // a reply is no answer to a property call
}

void checkGet(OfxStatus status, const char* type, const char* name, int index)
{
  if (status == kOfxStatOK)
    return;
  Log::error("Failed on getting {} property {}[{}], host returned status {};", type, name, index, statusName(status));
  raise(status, name);
}

template <class Value>
void checkSet(OfxStatus status, const char* type, const char* name, int index, const Value& value)
{
  if (status == kOfxStatOK)
    return;
  Log::error("Failed on setting {} property {}[{}] to {}, host returned status {};", type, name, index, value,
             statusName(status));
  raise(status, name);
}

template <class Value>
void warnSet(OfxStatus status, const char* type, const char* name, int index, const Value& value)
{
  if (status != kOfxStatOK)
    Log::warning("Failed on setting {} property {}[{}] to {}, host returned status {};", type, name, index, value,
                 statusName(status));
}

template <class Value>
std::optional<Value> optionalResult(OfxStatus status, const char* type, const char* name, int index, Value value)
{
  if (status == kOfxStatOK)
    return value;
  Log::warning("Failed on getting {} property {}[{}], host returned status {};", type, name, index, statusName(status));
  return std::nullopt;
}

}  // namespace

int PropertySet::getInt(const char* name, int index) const
{
  int value = 0;
  checkGet(suites().property->propGetInt(handle_, name, index, &value), "int", name, index);
  return value;
}

double PropertySet::getDouble(const char* name, int index) const
{
  double value = 0.0;
  checkGet(suites().property->propGetDouble(handle_, name, index, &value), "double", name, index);
  return value;
}

std::string PropertySet::getString(const char* name, int index) const
{
  const char* value = nullptr;
  checkGet(suites().property->propGetString(handle_, name, index, &value), "string", name, index);
  return value != nullptr ? value : "";
}

void* PropertySet::getPointer(const char* name, int index) const
{
  void* value = nullptr;
  checkGet(suites().property->propGetPointer(handle_, name, index, &value), "pointer", name, index);
  return value;
}

int PropertySet::dimension(const char* name) const
{
  int value = 0;
  const OfxStatus status = suites().property->propGetDimension(handle_, name, &value);
  if (status != kOfxStatOK)
  {
    Log::error("Failed on getting dimension of property {}, host returned status {};", name, statusName(status));
    raise(status, name);
  }
  return value;
}

void PropertySet::setInt(const char* name, int value, int index) const
{
  checkSet(suites().property->propSetInt(handle_, name, index, value), "int", name, index, value);
}

void PropertySet::setDouble(const char* name, double value, int index) const
{
  checkSet(suites().property->propSetDouble(handle_, name, index, value), "double", name, index, value);
}

void PropertySet::setString(const char* name, const std::string& value, int index) const
{
  checkSet(suites().property->propSetString(handle_, name, index, value.c_str()), "string", name, index, value);
}

void PropertySet::setPointer(const char* name, void* value, int index) const
{
  checkSet(suites().property->propSetPointer(handle_, name, index, value), "pointer", name, index, value);
}

std::optional<int> PropertySet::findInt(const char* name, int index) const
{
  int value = 0;
  const OfxStatus status = suites().property->propGetInt(handle_, name, index, &value);
  return optionalResult(status, "int", name, index, value);
}

std::optional<double> PropertySet::findDouble(const char* name, int index) const
{
  double value = 0.0;
  const OfxStatus status = suites().property->propGetDouble(handle_, name, index, &value);
  return optionalResult(status, "double", name, index, value);
}

std::optional<std::string> PropertySet::findString(const char* name, int index) const
{
  const char* value = nullptr;
  const OfxStatus status = suites().property->propGetString(handle_, name, index, &value);
  return optionalResult(status, "string", name, index, std::string(value != nullptr ? value : ""));
}

void PropertySet::trySetInt(const char* name, int value, int index) const
{
  warnSet(suites().property->propSetInt(handle_, name, index, value), "int", name, index, value);
}

void PropertySet::trySetString(const char* name, const std::string& value, int index) const
{
  warnSet(suites().property->propSetString(handle_, name, index, value.c_str()), "string", name, index, value);
}

}  // namespace OFX
