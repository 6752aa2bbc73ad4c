// Parameter calls of the parameter suite, which takes values through C varargs.
#include "entry/params.h"

#include "entry/exceptions.h"
#include "entry/log.h"
#include "entry/suites.h"

namespace OFX
{

namespace
{

void check(OfxStatus status, const char* call)
{
  if (status == kOfxStatOK)
    return;
  Log::error("Failed on {}, host returned status {};", call, statusName(status));
  throwIfFailed(status);
  throw Exception::Suite(kOfxStatFailed);  // a reply is no answer to a parameter call
}

template <class... Places>
void get(OfxParamHandle handle, Places*... places)
{
  check(suites().param->paramGetValue(handle, places...), "getting a parameter's value");
}

template <class... Places>
void getAt(OfxParamHandle handle, double time, Places*... places)
{
  check(suites().param->paramGetValueAtTime(handle, time, places...), "getting a parameter's value at a time");
}

template <class... Values>
void put(OfxParamHandle handle, Values... values)
{
  check(suites().param->paramSetValue(handle, values...), "setting a parameter's value");
}

}  // namespace

void Param::setSecret(bool secret) const
{
  properties_.setInt(kOfxParamPropSecret, secret ? 1 : 0);
}

void Param::setEnabled(bool enabled) const
{
  properties_.setInt(kOfxParamPropEnabled, enabled ? 1 : 0);
}

void Param::setHidden(bool hidden) const
{
  setSecret(hidden);
  setEnabled(!hidden);
}

double DoubleParam::value() const
{
  double value = 0.0;
  get(handle_, &value);
  return value;
}

double DoubleParam::valueAt(double time) const
{
  double value = 0.0;
  getAt(handle_, time, &value);
  return value;
}

void DoubleParam::set(double value) const
{
  put(handle_, value);
}

int IntParam::value() const
{
  int value = 0;
  get(handle_, &value);
  return value;
}

int IntParam::valueAt(double time) const
{
  int value = 0;
  getAt(handle_, time, &value);
  return value;
}

void IntParam::set(int value) const
{
  put(handle_, value);
}

bool BooleanParam::value() const
{
  int value = 0;
  get(handle_, &value);
  return value != 0;
}

bool BooleanParam::valueAt(double time) const
{
  int value = 0;
  getAt(handle_, time, &value);
  return value != 0;
}

void BooleanParam::set(bool value) const
{
  put(handle_, value ? 1 : 0);
}

int ChoiceParam::value() const
{
  int index = 0;
  get(handle_, &index);
  return index;
}

int ChoiceParam::valueAt(double time) const
{
  int index = 0;
  getAt(handle_, time, &index);
  return index;
}

void ChoiceParam::set(int index) const
{
  put(handle_, index);
}

RGBColour RGBParam::value() const
{
  RGBColour colour;
  get(handle_, &colour.r, &colour.g, &colour.b);
  return colour;
}

RGBColour RGBParam::valueAt(double time) const
{
  RGBColour colour;
  getAt(handle_, time, &colour.r, &colour.g, &colour.b);
  return colour;
}

void RGBParam::set(const RGBColour& value) const
{
  put(handle_, value.r, value.g, value.b);
}

std::string StringParam::value() const
{
  const char* text = nullptr;
  get(handle_, &text);
  return text != nullptr ? text : "";
}

std::string StringParam::valueAt(double time) const
{
  const char* text = nullptr;
  getAt(handle_, time, &text);
  return text != nullptr ? text : "";
}

void StringParam::set(const std::string& value) const
{
  put(handle_, value.c_str());
}

OfxParamHandle ParamSet::fetchHandle(const std::string& name, const char* type, OfxPropertySetHandle& properties) const
{
  OfxParamHandle handle = nullptr;
  const OfxStatus status = suites().param->paramGetHandle(handle_, name.c_str(), &handle, &properties);
  if (status != kOfxStatOK)
  {
    Log::error("Failed on fetching parameter {}, host returned status {};", name, statusName(status));
    throw Exception::Suite(status);
  }
  if (const std::string found = PropertySet(properties).getString(kOfxParamPropType); found != type)
  {
    Log::error("Parameter {} is of type {}, not {}.", name, found, type);
    throw Exception::Suite(kOfxStatErrValue);
  }
  return handle;
}

void ParamSet::beginEditBlock(const std::string& name) const
{
  check(suites().param->paramEditBegin(handle_, name.c_str()), "beginning an edit block");
}

void ParamSet::endEditBlock() const
{
  check(suites().param->paramEditEnd(handle_), "ending an edit block");
}

EditBlock::~EditBlock()
{
  statusOf(
      [this]
      {
        set_.endEditBlock();
        return kOfxStatOK;
      });
}

PropertySet ParamSetDescriptor::define(const char* type, const std::string& name) const
{
  OfxPropertySetHandle properties = nullptr;
  const OfxStatus status = suites().param->paramDefine(handle_, type, name.c_str(), &properties);
  if (status != kOfxStatOK)
    Log::error("Failed on defining parameter {} of type {}, host returned status {};", name, type, statusName(status));
  throwIfFailed(status);
  return PropertySet(properties);
}

}  // namespace OFX
