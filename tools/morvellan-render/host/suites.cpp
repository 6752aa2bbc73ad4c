// The list of suites, and the small ones: property, memory, message, progress and time line.
#include "host/suites.h"

#include <array>
#include <cstdarg>
#include <cstdio>
#include <string>

#include <fmt/format.h>

#include "host/action_scope.h"
#include "host/host.h"

namespace morvellan::host
{
namespace
{

// ---- property suite

OfxStatus withSet(OfxPropertySetHandle handle, const char* call, const char* name, auto&& action)
{
  PropertySet* const set = PropertySet::living(handle);
  if (set == nullptr)
  {
    reportMisuse(fmt::format("{}({}): the property set handle is {}", call, name == nullptr ? "null" : name,
                             handle == nullptr ? "null" : "not alive"));
    return kOfxStatErrBadHandle;
  }
  return action(*set);
}

template <class Value>
OfxStatus setMany(OfxPropertySetHandle handle, const char* name, int count, const Value* values)
{
  return withSet(handle, "propSetN", name,
                 [&](PropertySet& set) { return set.pluginSet("propSetN", name, 0, count, values); });
}

template <class Value>
OfxStatus setOne(OfxPropertySetHandle handle, const char* name, int index, Value value)
{
  return withSet(handle, "propSet", name,
                 [&](PropertySet& set) { return set.pluginSet("propSet", name, index, 1, &value); });
}

template <class Value>
OfxStatus getMany(OfxPropertySetHandle handle, const char* name, int count, Value* values)
{
  return withSet(handle, "propGetN", name,
                 [&](PropertySet& set) { return set.pluginGet("propGetN", name, 0, count, values); });
}

template <class Value>
OfxStatus getOne(OfxPropertySetHandle handle, const char* name, int index, Value* value)
{
  return withSet(handle, "propGet", name,
                 [&](PropertySet& set) { return set.pluginGet("propGet", name, index, 1, value); });
}

OfxStatus reset(OfxPropertySetHandle handle, const char* name)
{
  return withSet(handle, "propReset", name, [&](PropertySet& set) { return set.pluginReset(name); });
}

OfxStatus dimension(OfxPropertySetHandle handle, const char* name, int* count)
{
  return withSet(handle, "propGetDimension", name, [&](PropertySet& set) { return set.pluginDimension(name, count); });
}

// ---- memory suite

OfxStatus memoryAlloc(void* handle, size_t bytes, void** data)
{
  if (handle != nullptr && Effect::living(handle) == nullptr)
  {
    reportMisuse("memoryAlloc: the effect handle is not alive");
    return kOfxStatErrBadHandle;
  }
  if (data == nullptr)
  {
    reportMisuse("memoryAlloc: the place for the answer is null");
    return kOfxStatErrValue;
  }
  *data = Host::current().allocate(bytes, handle);
  return *data == nullptr ? kOfxStatErrMemory : kOfxStatOK;
}

OfxStatus memoryFree(void* data)
{
  if (!Host::current().free(data))
  {
    reportMisuse("memoryFree: the memory is not the host's");
    return kOfxStatErrBadHandle;
  }
  return kOfxStatOK;
}

// ---- message suites

std::string formatted(const char* format, va_list arguments)
{
  if (format == nullptr)
  {
    reportMisuse("a message's text is null");
    return {};
  }
  va_list again;
  va_copy(again, arguments);
  const int length = std::vsnprintf(nullptr, 0, format, arguments);
  std::string text(length > 0 ? static_cast<std::size_t>(length) : 0, '\0');
  std::vsnprintf(text.data(), text.size() + 1, format, again);
  va_end(again);
  return text;
}

// The message, or misuse and nothing.
std::optional<Message> messageOf(void* handle, bool needsEffect, const char* type, const char* id, std::string text)
{
  if (handle == nullptr ? needsEffect : Effect::living(handle) == nullptr)
  {
    reportMisuse(
        fmt::format("message \"{}\": the effect handle is {}", text, handle == nullptr ? "null" : "not alive"));
    return std::nullopt;
  }
  constexpr std::array<std::string_view, 6> types{kOfxMessageFatal,   kOfxMessageError, kOfxMessageWarning,
                                                  kOfxMessageMessage, kOfxMessageLog,   kOfxMessageQuestion};
  if (type == nullptr || std::find(types.begin(), types.end(), type) == types.end())
  {
    reportMisuse(fmt::format("message \"{}\": unknown type {}", text, type == nullptr ? "null" : type));
    return std::nullopt;
  }
  return Message{type, id == nullptr ? "" : id, std::move(text)};
}

OfxStatus message(void* handle, const char* type, const char* id, const char* format, ...)
{
  va_list arguments;
  va_start(arguments, format);
  std::string text = formatted(format, arguments);
  va_end(arguments);
  const std::optional<Message> message = messageOf(handle, false, type, id, std::move(text));
  return message ? Host::current().observer().message(*message) : kOfxStatErrBadHandle;
}

OfxStatus setPersistentMessage(void* handle, const char* type, const char* id, const char* format, ...)
{
  va_list arguments;
  va_start(arguments, format);
  std::string text = formatted(format, arguments);
  va_end(arguments);
  const std::optional<Message> message = messageOf(handle, true, type, id, std::move(text));
  if (!message)
  {
    return kOfxStatErrBadHandle;
  }
  if (message->type == kOfxMessageQuestion || message->type == kOfxMessageLog)
  {
    reportMisuse(fmt::format("setPersistentMessage: a message of type {} cannot persist", message->type));
    return kOfxStatErrUnsupported;
  }
  Host::current().observer().persistentMessage(*message);
  return kOfxStatOK;
}

OfxStatus clearPersistentMessage(void* handle)
{
  if (Effect::living(handle) == nullptr)
  {
    reportMisuse("clearPersistentMessage: the effect handle is not alive");
    return kOfxStatErrBadHandle;
  }
  Host::current().observer().persistentMessageCleared();
  return kOfxStatOK;
}

// ---- progress suites

bool isInstance(void* handle, const char* call)
{
  const Effect* const effect = Effect::living(handle);
  if (effect == nullptr || !effect->isInstance())
  {
    reportMisuse(fmt::format("{}: the handle is of no living instance", call));
    return false;
  }
  return true;
}

OfxStatus progressStart(void* instance, const char* label)
{
  if (!isInstance(instance, "progressStart"))
  {
    return kOfxStatErrBadHandle;
  }
  Host::current().observer().progressStarted(label == nullptr ? "" : label);
  return kOfxStatOK;
}

OfxStatus progressStartV2(void* instance, const char* text, const char* /*id*/)
{
  return progressStart(instance, text);
}

OfxStatus progressUpdate(void* instance, double fraction)
{
  if (!isInstance(instance, "progressUpdate"))
  {
    return kOfxStatErrBadHandle;
  }
  return Host::current().observer().progressed(fraction) ? kOfxStatOK : kOfxStatReplyNo;
}

OfxStatus progressEnd(void* instance)
{
  if (!isInstance(instance, "progressEnd"))
  {
    return kOfxStatErrBadHandle;
  }
  Host::current().observer().progressEnded();
  return kOfxStatOK;
}

// ---- time line suite

EffectInstance* instanceOf(void* handle, const char* call)
{
  return isInstance(handle, call) ? static_cast<EffectInstance*>(Effect::living(handle)) : nullptr;
}

OfxStatus getTime(void* handle, double* time)
{
  const EffectInstance* const instance = instanceOf(handle, "getTime");
  if (instance == nullptr || time == nullptr)
  {
    return kOfxStatErrBadHandle;
  }
  *time = instance->currentTime();
  return kOfxStatOK;
}

OfxStatus gotoTime(void* handle, double time)
{
  EffectInstance* const instance = instanceOf(handle, "gotoTime");
  if (instance == nullptr)
  {
    return kOfxStatErrBadHandle;
  }
  instance->setCurrentTime(time);
  return kOfxStatOK;
}

OfxStatus getTimeBounds(void* handle, double* first, double* last)
{
  EffectInstance* const instance = instanceOf(handle, "getTimeBounds");
  if (instance == nullptr || first == nullptr || last == nullptr)
  {
    return kOfxStatErrBadHandle;
  }
  const PropertySet& output = instance->clip(kOfxImageEffectOutputClipName).properties();
  *first = output.getDouble(kOfxImageEffectPropFrameRange, 0);
  *last = output.getDouble(kOfxImageEffectPropFrameRange, 1);
  return kOfxStatOK;
}

}  // namespace

const OfxPropertySuiteV1& propertySuite()
{
  static const OfxPropertySuiteV1 suite{
      &setOne<void*>,
      &setOne<const char*>,
      &setOne<double>,
      &setOne<int>,
      [](OfxPropertySetHandle set, const char* name, int count, void* const* values)
      { return setMany<void*>(set, name, count, values); },
      [](OfxPropertySetHandle set, const char* name, int count, const char* const* values)
      { return setMany<const char*>(set, name, count, values); },
      &setMany<double>,
      &setMany<int>,
      &getOne<void*>,
      &getOne<const char*>,
      &getOne<double>,
      &getOne<int>,
      &getMany<void*>,
      &getMany<const char*>,
      &getMany<double>,
      &getMany<int>,
      &reset,
      &dimension};
  return suite;
}

const OfxMemorySuiteV1& memorySuite()
{
  static const OfxMemorySuiteV1 suite{&memoryAlloc, &memoryFree};
  return suite;
}

const OfxMessageSuiteV1& messageSuiteV1()
{
  static const OfxMessageSuiteV1 suite{&message};
  return suite;
}

const OfxMessageSuiteV2& messageSuiteV2()
{
  static const OfxMessageSuiteV2 suite{&message, &setPersistentMessage, &clearPersistentMessage};
  return suite;
}

const OfxProgressSuiteV1& progressSuiteV1()
{
  static const OfxProgressSuiteV1 suite{&progressStart, &progressUpdate, &progressEnd};
  return suite;
}

const OfxProgressSuiteV2& progressSuiteV2()
{
  static const OfxProgressSuiteV2 suite{&progressStartV2, &progressUpdate, &progressEnd};
  return suite;
}

const OfxTimeLineSuiteV1& timeLineSuite()
{
  static const OfxTimeLineSuiteV1 suite{&getTime, &gotoTime, &getTimeBounds};
  return suite;
}

const void* fetchSuite(OfxPropertySetHandle host, const char* name, int version)
{
  static const std::map<SuiteKey, const void*> suites{
      {{kOfxPropertySuite, 1}, &propertySuite()},       {{kOfxImageEffectSuite, 1}, &imageEffectSuite()},
      {{kOfxParameterSuite, 1}, &parameterSuite()},     {{kOfxMemorySuite, 1}, &memorySuite()},
      {{kOfxMultiThreadSuite, 1}, &multiThreadSuite()}, {{kOfxMessageSuite, 1}, &messageSuiteV1()},
      {{kOfxMessageSuite, 2}, &messageSuiteV2()},       {{kOfxProgressSuite, 1}, &progressSuiteV1()},
      {{kOfxProgressSuite, 2}, &progressSuiteV2()},     {{kOfxTimeLineSuite, 1}, &timeLineSuite()}};
  Host* const current = Host::currentOrNull();
  if (current == nullptr || host != current->properties().handle() || name == nullptr)
  {
    reportMisuse(fmt::format("fetchSuite({}): the handle is not the host's", name == nullptr ? "null" : name));
    return nullptr;
  }
  const SuiteKey key{name, version};
  if (current->traits().withheldSuites.contains(key))
  {
    return nullptr;
  }
  if (const auto replaced = current->traits().replacedSuites.find(key);
      replaced != current->traits().replacedSuites.end())
  {
    return replaced->second;
  }
  const auto found = suites.find(key);
  return found == suites.end() ? nullptr : found->second;
}

}  // namespace morvellan::host
