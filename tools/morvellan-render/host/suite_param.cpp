// The parameter suite: definition, handles, values read and written through variable arguments, edit blocks.
#include <cmath>
#include <cstdarg>
#include <optional>

#include <fmt/format.h>

#include "host/action_scope.h"
#include "host/host.h"
#include "host/suite_param.h"
#include "host/suites.h"

namespace morvellan::host
{

Param* livingParam(OfxParamHandle handle, const char* call)
{
  Param* const param = Param::living(handle);
  if (param == nullptr)
  {
    reportMisuse(fmt::format("{}: the parameter handle is {}", call, handle == nullptr ? "null" : "not alive"));
    return nullptr;
  }
  if (!param->set().isInstance())
  {
    reportMisuse(fmt::format("{}({}): the parameter is a descriptor's", call, param->name()));
    return nullptr;
  }
  return param;
}

Param* valueParam(OfxParamHandle handle, const char* call)
{
  Param* const param = livingParam(handle, call);
  if (param != nullptr && !param->hasValue())
  {
    reportMisuse(fmt::format("{}({}): a {} has no value", call, param->name(), param->facts().label));
    return nullptr;
  }
  return param;
}

void requireWritable(const Param& param, const char* call)
{
  const ActionScope* const scope = ActionScope::current();
  if (scope != nullptr && scope->action() == kOfxImageEffectActionRender &&
      Host::current().traits().writableInRender.contains(param.name()))
  {
    return;
  }
  requireAction(fmt::format("{}({})", call, param.name()),
                {kOfxActionCreateInstance, kOfxActionInstanceChanged, kOfxActionBeginInstanceChanged,
                 kOfxActionEndInstanceChanged, kOfxActionSyncPrivateData});
}

namespace
{

ParamSet* livingSet(OfxParamSetHandle handle, const char* call)
{
  ParamSet* const set = ParamSet::living(handle);
  if (set == nullptr)
  {
    reportMisuse(fmt::format("{}: the parameter set handle is {}", call, handle == nullptr ? "null" : "not alive"));
  }
  return set;
}

// The time that a read without a time means: the action's, on the thread of an action.
double timeOfCall()
{
  const ActionScope* const scope = ActionScope::current();
  return scope == nullptr ? 0.0 : scope->time();
}

OfxStatus paramDefine(OfxParamSetHandle handle, const char* type, const char* name, OfxPropertySetHandle* properties)
{
  ParamSet* const set = livingSet(handle, "paramDefine");
  if (set == nullptr)
  {
    return kOfxStatErrBadHandle;
  }
  requireAction("paramDefine", {kOfxImageEffectActionDescribeInContext});
  if (set->isInstance())
  {
    reportMisuse("paramDefine: the set is an instance's");
    return kOfxStatErrBadHandle;
  }
  if (type == nullptr || name == nullptr || *name == '\0')
  {
    reportMisuse("paramDefine: the type or the name is missing");
    return kOfxStatErrUnknown;
  }
  const std::optional<ParamKind> kind = kindOfType(type);
  if (!kind)
  {
    reportMisuse(fmt::format("paramDefine({}): unknown type {}", name, type));
    return kOfxStatErrUnknown;
  }
  if (set->find(name) != nullptr)
  {
    reportMisuse(fmt::format("paramDefine({}): the name is taken", name));
    return kOfxStatErrExists;
  }
  Param& param = set->add(*kind, name);
  if (properties != nullptr)
  {
    *properties = param.properties().handle();
  }
  return kOfxStatOK;
}

OfxStatus paramGetHandle(OfxParamSetHandle handle, const char* name, OfxParamHandle* param,
                         OfxPropertySetHandle* properties)
{
  const ParamSet* const set = livingSet(handle, "paramGetHandle");
  if (set == nullptr)
  {
    return kOfxStatErrBadHandle;
  }
  if (!set->isInstance())
  {
    reportMisuse(fmt::format("paramGetHandle({}): the set is a descriptor's", name == nullptr ? "null" : name));
    return kOfxStatErrBadHandle;
  }
  Param* const found = name == nullptr ? nullptr : set->find(name);
  if (found == nullptr)
  {
    reportMisuse(fmt::format("paramGetHandle({}): no such parameter was described", name == nullptr ? "null" : name));
    return kOfxStatErrUnknown;
  }
  if (param == nullptr)
  {
    reportMisuse(fmt::format("paramGetHandle({}): the place for the answer is null", name));
    return kOfxStatErrValue;
  }
  *param = found->handle();
  if (properties != nullptr)
  {
    *properties = found->properties().handle();
  }
  return kOfxStatOK;
}

OfxStatus paramSetGetPropertySet(OfxParamSetHandle handle, OfxPropertySetHandle* properties)
{
  ParamSet* const set = livingSet(handle, "paramSetGetPropertySet");
  if (set == nullptr || properties == nullptr)
  {
    return kOfxStatErrBadHandle;
  }
  *properties = set->properties().handle();
  return kOfxStatOK;
}

OfxStatus paramGetPropertySet(OfxParamHandle handle, OfxPropertySetHandle* properties)
{
  Param* const param = livingParam(handle, "paramGetPropertySet");
  if (param == nullptr || properties == nullptr)
  {
    return kOfxStatErrBadHandle;
  }
  *properties = param->properties().handle();
  return kOfxStatOK;
}

OfxStatus readValue(Param& param, const ParamValue& value, const char* call, va_list arguments)
{
  const auto missing = [&]
  {
    reportMisuse(fmt::format("{}({}): a place for the answer is null", call, param.name()));
    return kOfxStatErrValue;
  };
  if (param.facts().family == ValueFamily::String)
  {
    auto* const place = va_arg(arguments, const char**);
    if (place == nullptr)
    {
      return missing();
    }
    *place = param.heldText(value);
    return kOfxStatOK;
  }
  for (std::size_t i = 0; i < static_cast<std::size_t>(param.facts().dimension); ++i)
  {
    if (param.facts().family == ValueFamily::Int)
    {
      auto* const place = va_arg(arguments, int*);
      if (place == nullptr)
      {
        return missing();
      }
      *place = static_cast<int>(value.numbers[i]);
    }
    else
    {
      auto* const place = va_arg(arguments, double*);
      if (place == nullptr)
      {
        return missing();
      }
      *place = value.numbers[i];
    }
  }
  return kOfxStatOK;
}

OfxStatus paramGetValue(OfxParamHandle handle, ...)
{
  Param* const param = valueParam(handle, "paramGetValue");
  if (param == nullptr)
  {
    return kOfxStatErrBadHandle;
  }
  requireAction("paramGetValue", {});
  va_list arguments;
  va_start(arguments, handle);
  const OfxStatus status = readValue(*param, param->valueAt(timeOfCall()), "paramGetValue", arguments);
  va_end(arguments);
  return status;
}

OfxStatus paramGetValueAtTime(OfxParamHandle handle, OfxTime time, ...)
{
  Param* const param = valueParam(handle, "paramGetValueAtTime");
  if (param == nullptr)
  {
    return kOfxStatErrBadHandle;
  }
  requireAction("paramGetValueAtTime", {});
  va_list arguments;
  va_start(arguments, time);
  const OfxStatus status = readValue(*param, param->valueAt(time), "paramGetValueAtTime", arguments);
  va_end(arguments);
  return status;
}

// The value that a plug-in writes, or nothing where a text is null.
std::optional<ParamValue> writtenValue(const Param& param, va_list arguments)
{
  ParamValue value;
  if (param.facts().family == ValueFamily::String)
  {
    const auto* const text = va_arg(arguments, const char*);
    return text == nullptr ? std::nullopt : std::optional<ParamValue>(text);
  }
  value.count = param.facts().dimension;
  for (std::size_t i = 0; i < static_cast<std::size_t>(value.count); ++i)
  {
    value.numbers[i] = param.facts().family == ValueFamily::Int ? va_arg(arguments, int) : va_arg(arguments, double);
  }
  return value;
}

OfxStatus writeValue(Param& param, double time, bool asKey, const char* call, va_list arguments)
{
  const std::optional<ParamValue> value = writtenValue(param, arguments);
  if (!value)
  {
    reportMisuse(fmt::format("{}({}): the text is null", call, param.name()));
    return kOfxStatErrValue;
  }
  requireWritable(param, call);
  if (const std::string complaint = param.complaintAbout(*value); !complaint.empty())
  {
    if (Host::current().traits().reportOutOfRange)
    {
      reportMisuse(fmt::format("{}: {}", call, complaint));
    }
    if (!std::isfinite(value->numbers[0]) || param.facts().family == ValueFamily::Int)
    {
      return kOfxStatErrValue;
    }
  }
  const std::vector<std::string> blocks = param.set().editBlocks();
  const ActionScope* const scope = ActionScope::current();
  const ParameterWrite write{.parameter = param.name(),
                             .before = param.valueAt(time),
                             .after = *value,
                             .editBlock = blocks.empty() ? std::nullopt : std::optional(blocks.back()),
                             .action = scope == nullptr ? "" : scope->action()};
  if (asKey || !param.keys().empty())
  {
    param.setKey(time, *value);
  }
  else
  {
    param.setValue(*value);
  }
  Host::current().observer().parameterWritten(write);
  if (scope != nullptr && scope->effect() != nullptr && scope->effect()->isInstance())
  {
    static_cast<EffectInstance*>(scope->effect())->noteWrite(param);
  }
  return kOfxStatOK;
}

OfxStatus paramSetValue(OfxParamHandle handle, ...)
{
  Param* const param = valueParam(handle, "paramSetValue");
  if (param == nullptr)
  {
    return kOfxStatErrBadHandle;
  }
  va_list arguments;
  va_start(arguments, handle);
  const OfxStatus status = writeValue(*param, timeOfCall(), false, "paramSetValue", arguments);
  va_end(arguments);
  return status;
}

OfxStatus paramSetValueAtTime(OfxParamHandle handle, OfxTime time, ...)
{
  Param* const param = valueParam(handle, "paramSetValueAtTime");
  if (param == nullptr)
  {
    return kOfxStatErrBadHandle;
  }
  const bool animates = param->properties().getInt(kOfxParamPropAnimates) != 0;
  va_list arguments;
  va_start(arguments, time);
  const OfxStatus status = writeValue(*param, time, animates, "paramSetValueAtTime", arguments);
  va_end(arguments);
  return status;
}

OfxStatus paramEditBegin(OfxParamSetHandle handle, const char* name)
{
  ParamSet* const set = livingSet(handle, "paramEditBegin");
  if (set == nullptr)
  {
    return kOfxStatErrBadHandle;
  }
  if (name == nullptr)
  {
    reportMisuse("paramEditBegin: the name is null");
    return kOfxStatErrValue;
  }
  requireAction(fmt::format("paramEditBegin({})", name),
                {kOfxActionCreateInstance, kOfxActionInstanceChanged, kOfxActionBeginInstanceChanged,
                 kOfxActionEndInstanceChanged, kOfxActionSyncPrivateData});
  set->beginEdit(name);
  return kOfxStatOK;
}

OfxStatus paramEditEnd(OfxParamSetHandle handle)
{
  ParamSet* const set = livingSet(handle, "paramEditEnd");
  if (set == nullptr)
  {
    return kOfxStatErrBadHandle;
  }
  if (!set->endEdit())
  {
    reportMisuse("paramEditEnd: no edit block is open");
    return kOfxStatFailed;
  }
  return kOfxStatOK;
}

}  // namespace

const OfxParameterSuiteV1& parameterSuite()
{
  static const OfxParameterSuiteV1 suite{&paramDefine,         &paramGetHandle,   &paramSetGetPropertySet,
                                         &paramGetPropertySet, &paramGetValue,    &paramGetValueAtTime,
                                         &paramGetDerivative,  &paramGetIntegral, &paramSetValue,
                                         &paramSetValueAtTime, &paramGetNumKeys,  &paramGetKeyTime,
                                         &paramGetKeyIndex,    &paramDeleteKey,   &paramDeleteAllKeys,
                                         &paramCopy,           &paramEditBegin,   &paramEditEnd};
  return suite;
}

}  // namespace morvellan::host
