// A lenient host in memory, for tests of the support layer that need a property or an instance and nothing more. Tests
// of the plug-in itself run on the strict host.
#pragma once

#include <map>
#include <set>
#include <string>
#include <variant>
#include <vector>

#include "entry/host_description.h"
#include "entry/log.h"
#include "entry/main_entry.h"
#include "entry/suites.h"

namespace fake
{

using Value = std::variant<int, double, std::string, void*>;

struct Properties
{
  std::map<std::string, std::vector<Value>> values;
  std::map<std::string, OfxStatus> refusals;  // the status that a call on that name gets
  std::vector<std::string> written;           // names, in the order of the calls

  OfxPropertySetHandle handle() { return reinterpret_cast<OfxPropertySetHandle>(this); }
};

struct Effect
{
  Properties properties;
  const void* handle() const { return this; }
};

inline Properties& of(OfxPropertySetHandle handle)
{
  return *reinterpret_cast<Properties*>(handle);
}

template <class T>
OfxStatus set(OfxPropertySetHandle handle, const char* name, int index, const T& value)
{
  Properties& properties = of(handle);
  if (const auto refusal = properties.refusals.find(name); refusal != properties.refusals.end())
    return refusal->second;
  properties.written.emplace_back(name);
  auto& list = properties.values[name];
  if (index < 0 || static_cast<std::size_t>(index) > list.size())
    return kOfxStatErrBadIndex;
  if (static_cast<std::size_t>(index) == list.size())
    list.emplace_back();
  list[static_cast<std::size_t>(index)] = value;
  return kOfxStatOK;
}

template <class T, class Place>
OfxStatus get(OfxPropertySetHandle handle, const char* name, int index, const Place& place)
{
  Properties& properties = of(handle);
  if (const auto refusal = properties.refusals.find(name); refusal != properties.refusals.end())
    return refusal->second;
  const auto found = properties.values.find(name);
  if (found == properties.values.end())
    return kOfxStatErrUnknown;
  if (index < 0 || static_cast<std::size_t>(index) >= found->second.size())
    return kOfxStatErrBadIndex;
  const T* value = std::get_if<T>(&found->second[static_cast<std::size_t>(index)]);
  if (value == nullptr)
    return kOfxStatErrValue;
  place(*value);
  return kOfxStatOK;
}

inline const OfxPropertySuiteV1 propertySuite{
    .propSetPointer = [](auto h, auto n, int i, void* v) { return set<void*>(h, n, i, v); },
    .propSetString = [](auto h, auto n, int i, const char* v) { return set<std::string>(h, n, i, v); },
    .propSetDouble = [](auto h, auto n, int i, double v) { return set<double>(h, n, i, v); },
    .propSetInt = [](auto h, auto n, int i, int v) { return set<int>(h, n, i, v); },
    .propSetPointerN = nullptr,
    .propSetStringN = nullptr,
    .propSetDoubleN = nullptr,
    .propSetIntN = nullptr,
    .propGetPointer = [](auto h, auto n, int i, void** v)
    { return get<void*>(h, n, i, [v](void* found) { *v = found; }); },
    .propGetString = [](auto h, auto n, int i, const char** v)
    { return get<std::string>(h, n, i, [v](const std::string& found) { *v = found.c_str(); }); },
    .propGetDouble = [](auto h, auto n, int i, double* v)
    { return get<double>(h, n, i, [v](double found) { *v = found; }); },
    .propGetInt = [](auto h, auto n, int i, int* v) { return get<int>(h, n, i, [v](int found) { *v = found; }); },
    .propGetPointerN = nullptr,
    .propGetStringN = nullptr,
    .propGetDoubleN = nullptr,
    .propGetIntN = nullptr,
    .propReset = nullptr,
    .propGetDimension =
        [](auto h, auto n, int* count)
    {
      const auto found = of(h).values.find(n);
      if (found == of(h).values.end())
        return kOfxStatErrUnknown;
      *count = static_cast<int>(found->second.size());
      return kOfxStatOK;
    },
};

inline const OfxImageEffectSuiteV1 effectSuite{
    .getPropertySet =
        [](OfxImageEffectHandle effect, OfxPropertySetHandle* properties)
    {
      *properties = reinterpret_cast<Effect*>(effect)->properties.handle();
      return kOfxStatOK;
    },
    .getParamSet =
        [](OfxImageEffectHandle, OfxParamSetHandle* set)
    {
      *set = nullptr;
      return kOfxStatOK;
    },
    .clipDefine = nullptr,
    .clipGetHandle = nullptr,
    .clipGetPropertySet = nullptr,
    .clipGetImage = nullptr,
    .clipReleaseImage = [](OfxPropertySetHandle) { return kOfxStatOK; },
    .clipGetRegionOfDefinition = nullptr,
    .abort = nullptr,
    .imageMemoryAlloc = nullptr,
    .imageMemoryFree = nullptr,
    .imageMemoryLock = nullptr,
    .imageMemoryUnlock = nullptr,
};

inline const OfxParameterSuiteV1 paramSuite{};
inline const OfxMemorySuiteV1 memorySuite{};
inline const OfxMessageSuiteV1 messageSuite{};
inline const OfxProgressSuiteV1 progressSuite{};
inline const OfxTimeLineSuiteV1 timeLineSuite{};
inline const OfxParametricParameterSuiteV1 parametricSuite{};
inline const OfxMessageSuiteV2 messageSuiteV2{};
inline OfxMultiThreadSuiteV1 multiThreadSuite{};

/// The host: a property set of its own and suites, any of which may be missing.
class Host
{
public:
  Host()
  {
    current() = this;
    properties.values[kOfxPropName] = {std::string("fr.inria.Natron")};
    record = {.host = properties.handle(), .fetchSuite = fetchSuite};
    OFX::setHost(&record);
  }
  ~Host()
  {
    OFX::setHost(nullptr);
    OFX::releaseHostDescription();
    OFX::suites() = {};
    current() = nullptr;
  }

  Properties properties;
  OfxHost record{};
  std::set<std::pair<std::string, int>> missing;  // suite name and version

private:
  static Host*& current()
  {
    static Host* host = nullptr;
    return host;
  }

  static const void* fetchSuite(OfxPropertySetHandle, const char* name, int version)
  {
    if (current()->missing.contains({name, version}))
      return nullptr;
    const std::map<std::pair<std::string, int>, const void*> suites{
        {{kOfxImageEffectSuite, 1}, &effectSuite},      {{kOfxPropertySuite, 1}, &propertySuite},
        {{kOfxParameterSuite, 1}, &paramSuite},         {{kOfxMemorySuite, 1}, &memorySuite},
        {{kOfxMultiThreadSuite, 1}, &multiThreadSuite}, {{kOfxMessageSuite, 1}, &messageSuite},
        {{kOfxMessageSuite, 2}, &messageSuiteV2},       {{kOfxProgressSuite, 1}, &progressSuite},
        {{kOfxTimeLineSuite, 1}, &timeLineSuite},       {{kOfxParametricParameterSuite, 1}, &parametricSuite}};
    const auto found = suites.find({name, version});
    return found != suites.end() ? found->second : nullptr;
  }
};

}  // namespace fake
