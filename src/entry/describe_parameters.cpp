// Writes the properties of parameters in one order, whatever their kind. What an entry leaves open is left to the host.
#include "entry/describe_parameters.h"

#include "ofx/ofxNatron.h"
#include "ofx/ofxParam.h"

namespace morvellan
{

namespace
{

using params::Kind;
using params::Param;

const char* typeName(Kind kind)
{
  switch (kind)
  {
  case Kind::Double:
    return kOfxParamTypeDouble;
  case Kind::Integer:
    return kOfxParamTypeInteger;
  case Kind::Boolean:
    return kOfxParamTypeBoolean;
  case Kind::Choice:
    return kOfxParamTypeChoice;
  case Kind::Rgb:
    return kOfxParamTypeRGB;
  case Kind::PushButton:
    return kOfxParamTypePushButton;
  case Kind::Group:
    return kOfxParamTypeGroup;
  }
  return kOfxParamTypeGroup;
}

bool isWhole(Kind kind)
{
  return kind == Kind::Integer || kind == Kind::Boolean || kind == Kind::Choice;
}

// A number, as the type that the kind of parameter calls for.
void setNumber(const OFX::PropertySet& properties, const char* name, Kind kind, double value, int index = 0)
{
  if (isWhole(kind))
    properties.setInt(name, static_cast<int>(value), index);
  else
    properties.setDouble(name, value, index);
}

void describeValue(const OFX::PropertySet& properties, const Param& param)
{
  if (param.kind == Kind::PushButton || param.kind == Kind::Group)
    return;
  const int dimensions = param.kind == Kind::Rgb ? 3 : 1;
  for (int i = 0; i < dimensions; ++i)
    setNumber(properties, kOfxParamPropDefault, param.kind, param.defaults[static_cast<std::size_t>(i)], i);
  const auto setRange = [&](const std::optional<params::Range>& range, const char* min, const char* max)
  {
    for (int i = 0; range && i < dimensions; ++i)
    {
      setNumber(properties, min, param.kind, range->min, i);
      setNumber(properties, max, param.kind, range->max, i);
    }
  };
  setRange(param.range, kOfxParamPropMin, kOfxParamPropMax);
  setRange(param.displayRange, kOfxParamPropDisplayMin, kOfxParamPropDisplayMax);
  if (param.increment)
    properties.setDouble(kOfxParamPropIncrement, *param.increment);
  if (param.digits)
    properties.setInt(kOfxParamPropDigits, *param.digits);
}

// Labels are the standard's; the text that explains an option is an extension that not every host has.
void describeOptions(const OFX::PropertySet& properties, std::span<const params::Option> options)
{
  for (int i = 0; const params::Option& option : options)
  {
    properties.setString(kOfxParamPropChoiceOption, option.label, i);
    properties.trySetString(kOfxParamPropChoiceLabelOption, option.hint, i);
    ++i;
  }
}

void describeState(const OFX::PropertySet& properties, const Param& param)
{
  if (param.animates != params::Animates::HostDefault)
    properties.setInt(kOfxParamPropAnimates, param.animates == params::Animates::Yes ? 1 : 0);
  if (!param.evaluateOnChange)
    properties.setInt(kOfxParamPropEvaluateOnChange, 0);
  if (param.hidden != params::Hidden::No)
    properties.setInt(kOfxParamPropSecret, 1);
  if (param.hidden == params::Hidden::SecretAndDisabled)
    properties.setInt(kOfxParamPropEnabled, 0);
  if (param.kind == Kind::Group)
    properties.setInt(kOfxParamPropGroupOpen, param.open ? 1 : 0);
}

}  // namespace

void describeParameter(const OFX::ParamSetDescriptor& set, const Param& param, std::span<const params::Option> options)
{
  const OFX::PropertySet properties = set.define(typeName(param.kind), param.name);
  if (!param.label.empty())
    properties.setString(kOfxPropLabel, param.label);
  if (!param.hint.empty())
    properties.setString(kOfxParamPropHint, param.hint);
  if (param.kind == Kind::Choice)
    describeOptions(properties, options);
  describeValue(properties, param);
  describeState(properties, param);
  if (!param.parent.empty())
    properties.setString(kOfxParamPropParent, param.parent);
  if (param.layoutHint)
    properties.trySetInt(kOfxParamPropLayoutHint, *param.layoutHint);
}

void describeControls(const OFX::ParamSetDescriptor& set, std::span<const params::Option> devices)
{
  const OFX::PropertySet page = set.define(kOfxParamTypePage, std::string(params::pageName));
  for (int i = 0; const Param& param : params::catalogue())
  {
    describeParameter(set, param, param.name == params::gpuChoice ? devices : param.options);
    page.setString(kOfxParamPropPageChild, param.name, i);
    ++i;
  }
}

}  // namespace morvellan
