// Property sets: the checks of the plug-in's calls, and the host's own access.
#include "host/property_set.h"

#include <algorithm>
#include <stdexcept>
#include <type_traits>

#include <fmt/format.h>

#include "host/host.h"
#include "ofx/ofxNatron.h"
#include "ofx/propertyTypes.h"

namespace morvellan::host
{
namespace
{

// The host's extensions that the published table leaves out.
constexpr std::array<ofx::PropertyFact, 5> extensionFacts{{
    {kNatronOfxHostIsNatron, ofx::PropertyType::Int, 1},
    {kNatronOfxParamHostPropSupportsDynamicChoices, ofx::PropertyType::Int, 1},
    {kNatronOfxImageEffectPropProjectId, ofx::PropertyType::String, 1},
    {kNatronOfxImageEffectPropInstanceId, ofx::PropertyType::String, 1},
    {kNatronOfxPropDescriptionIsMarkdown, ofx::PropertyType::Int, 1},
}};

const ofx::PropertyFact* factOf(std::string_view name)
{
  const auto named = [name](const ofx::PropertyFact& fact) { return fact.name == name; };
  if (const auto found = std::find_if(ofx::propertyFacts.begin(), ofx::propertyFacts.end(), named);
      found != ofx::propertyFacts.end())
  {
    return &*found;
  }
  const auto found = std::find_if(extensionFacts.begin(), extensionFacts.end(), named);
  return found == extensionFacts.end() ? nullptr : &*found;
}

bool typeMatches(ofx::PropertyType type, const PropertyValues& values)
{
  switch (type)
  {
  case ofx::PropertyType::Int:
    return std::holds_alternative<std::vector<int>>(values);
  case ofx::PropertyType::Double:
    return std::holds_alternative<std::vector<double>>(values);
  case ofx::PropertyType::String:
    return std::holds_alternative<std::deque<std::string>>(values);
  case ofx::PropertyType::Pointer:
    return std::holds_alternative<std::vector<void*>>(values);
  case ofx::PropertyType::IntOrDouble:
    return std::holds_alternative<std::vector<int>>(values) || std::holds_alternative<std::vector<double>>(values);
  case ofx::PropertyType::ByParameter:
    return true;
  }
  return false;
}

// A property of the interface per clip has the clip's name behind its own, such as "OfxImageClipPropROI_Source".
bool isPerClip(std::string_view name)
{
  constexpr std::array<std::string_view, 5> prefixes{"OfxImageClipPropComponents_", "OfxImageClipPropDepth_",
                                                     "OfxImageClipPropPAR_", "OfxImageClipPropROI_",
                                                     "OfxImageClipPropFrameRange_"};
  return std::any_of(prefixes.begin(), prefixes.end(),
                     [name](std::string_view prefix) { return name.starts_with(prefix); });
}

template <class Value>
struct Stored
{
  using Container = std::vector<Value>;
  static constexpr const char* label = std::is_same_v<Value, int>      ? "int"
                                       : std::is_same_v<Value, double> ? "double"
                                                                       : "pointer";
};

template <>
struct Stored<const char*>
{
  using Container = std::deque<std::string>;
  static constexpr const char* label = "string";
};

const char* labelOf(const PropertyValues& values)
{
  constexpr std::array<const char*, 4> labels{"int", "double", "string", "pointer"};
  return labels[values.index()];
}

int sizeOf(const PropertyValues& values)
{
  return std::visit([](const auto& list) { return static_cast<int>(list.size()); }, values);
}

}  // namespace

void PropertySet::define(std::string_view name, Access access, PropertyValues values)
{
  const ofx::PropertyFact* fact = factOf(name);
  int dimension = fact != nullptr ? fact->dimension : 0;
  if (isPerClip(name) || (fact != nullptr && fact->type == ofx::PropertyType::ByParameter))
  {
    dimension = sizeOf(values);
  }
  define(name, access, std::move(values), dimension);
}

void PropertySet::define(std::string_view name, Access access, PropertyValues values, int dimension)
{
  const ofx::PropertyFact* fact = factOf(name);
  if (fact == nullptr && !isPerClip(name))
  {
    throw std::logic_error(fmt::format("{} is no property of the interface", name));
  }
  if (fact != nullptr && !typeMatches(fact->type, values))
  {
    throw std::logic_error(fmt::format("{} is not of type {}", name, labelOf(values)));
  }
  if (dimension > 0 && sizeOf(values) != dimension)
  {
    throw std::logic_error(fmt::format("{} has {} values, not {}", name, dimension, sizeOf(values)));
  }
  Property property{.values = std::move(values), .defaults = {}, .dimension = dimension, .access = access};
  property.defaults = property.values;
  properties_.insert_or_assign(std::string(name), std::move(property));
}

void PropertySet::copyFrom(const PropertySet& other, const std::vector<std::string_view>& writable)
{
  for (const auto& [name, property] : other.properties_)
  {
    Property copy = property;
    copy.defaults = copy.values;
    copy.written = false;
    const bool mayWrite = std::find(writable.begin(), writable.end(), name) != writable.end();
    copy.access = mayWrite ? Access::Writable : Access::ReadOnly;
    properties_.insert_or_assign(name, std::move(copy));
  }
}

bool PropertySet::has(std::string_view name) const
{
  return properties_.find(name) != properties_.end();
}

const Property& PropertySet::at(std::string_view name) const
{
  const auto found = properties_.find(name);
  if (found == properties_.end())
  {
    throw std::logic_error(fmt::format("{} has no property {}", owner_, name));
  }
  return found->second;
}

int PropertySet::getInt(std::string_view name, int index) const
{
  const std::scoped_lock lock(mutex_);
  return std::get<std::vector<int>>(at(name).values).at(static_cast<std::size_t>(index));
}

double PropertySet::getDouble(std::string_view name, int index) const
{
  const std::scoped_lock lock(mutex_);
  return std::get<std::vector<double>>(at(name).values).at(static_cast<std::size_t>(index));
}

std::string PropertySet::getString(std::string_view name, int index) const
{
  const std::scoped_lock lock(mutex_);
  return std::get<std::deque<std::string>>(at(name).values).at(static_cast<std::size_t>(index));
}

void* PropertySet::getPointer(std::string_view name, int index) const
{
  const std::scoped_lock lock(mutex_);
  return std::get<std::vector<void*>>(at(name).values).at(static_cast<std::size_t>(index));
}

std::vector<std::string> PropertySet::getStrings(std::string_view name) const
{
  const std::scoped_lock lock(mutex_);
  const auto& strings = std::get<std::deque<std::string>>(at(name).values);
  return {strings.begin(), strings.end()};
}

void PropertySet::put(std::string_view name, PropertyValues values)
{
  const std::scoped_lock lock(mutex_);
  const auto found = properties_.find(name);
  if (found == properties_.end() || found->second.values.index() != values.index())
  {
    throw std::logic_error(fmt::format("{} has no {} property {}", owner_, labelOf(values), name));
  }
  found->second.values = std::move(values);
}

void PropertySet::visit(const std::function<void(const std::string&, const Property&)>& visitor) const
{
  const std::scoped_lock lock(mutex_);
  for (const auto& [name, property] : properties_)
  {
    visitor(name, property);
  }
}

OfxStatus PropertySet::wrong(const char* call, const char* name, const std::string& what, OfxStatus status) const
{
  reportMisuse(fmt::format("{}({}, {}): {}", call, owner_, name == nullptr ? "null" : name, what));
  return status;
}

PropertySet::Found PropertySet::lookUp(const char* call, const char* name, bool writing)
{
  if (name == nullptr)
  {
    return {nullptr, wrong(call, name, "the property's name is null", kOfxStatErrUnknown)};
  }
  if (Host::current().traits().refusedProperties.contains(name))
  {
    return {nullptr, kOfxStatErrUnknown};
  }
  const auto found = properties_.find(std::string_view(name));
  if (found == properties_.end())
  {
    if (factOf(name) == nullptr && !isPerClip(name))
    {
      return {nullptr, wrong(call, name, "no such property is published", kOfxStatErrUnknown)};
    }
    const bool mayAsk = open_ && !writing;
    return {nullptr,
            mayAsk ? kOfxStatErrUnknown : wrong(call, name, "the set does not have this property", kOfxStatErrUnknown)};
  }
  if (writing && found->second.access == Access::ReadOnly)
  {
    return {nullptr, wrong(call, name, "the property is read-only here", kOfxStatErrValue)};
  }
  return {&found->second, kOfxStatOK};
}

template <class Value>
OfxStatus PropertySet::pluginSet(const char* call, const char* name, int index, int count, const Value* values)
{
  {
    const std::scoped_lock lock(mutex_);
    const auto [property, status] = lookUp(call, name, true);
    if (property == nullptr)
    {
      return status;
    }
    auto* const list = std::get_if<typename Stored<Value>::Container>(&property->values);
    if (list == nullptr)
    {
      return wrong(call, name, fmt::format("its type is {}, not {}", labelOf(property->values), Stored<Value>::label),
                   kOfxStatErrValue);
    }
    if (index < 0 || count < 0 || (property->dimension > 0 && index + count > property->dimension))
    {
      return wrong(call, name, fmt::format("values {} to {} of {}", index, index + count - 1, property->dimension),
                   kOfxStatErrBadIndex);
    }
    if (property->dimension == 0 && index > static_cast<int>(list->size()))
    {
      return wrong(call, name, fmt::format("value {} is set before value {}", index, list->size()),
                   kOfxStatErrBadIndex);
    }
    if (count > 0 && values == nullptr)
    {
      return wrong(call, name, "the values are null", kOfxStatErrValue);
    }
    if constexpr (std::is_same_v<Value, const char*>)
    {
      if (std::any_of(values, values + count, [](const char* text) { return text == nullptr; }))
      {
        return wrong(call, name, "a text is null", kOfxStatErrValue);
      }
    }
    const auto needed = static_cast<std::size_t>(index) + static_cast<std::size_t>(count);
    if (list->size() < needed)
    {
      list->resize(needed);
    }
    std::copy(values, values + count, list->begin() + index);
    property->written = true;
  }
  if (listener_)
  {
    listener_(name);
  }
  return kOfxStatOK;
}

template <class Value>
OfxStatus PropertySet::pluginGet(const char* call, const char* name, int index, int count, Value* values)
{
  const std::scoped_lock lock(mutex_);
  const auto [property, status] = lookUp(call, name, false);
  if (property == nullptr)
  {
    return status;
  }
  const auto* const list = std::get_if<typename Stored<Value>::Container>(&property->values);
  if (list == nullptr)
  {
    return wrong(call, name, fmt::format("its type is {}, not {}", labelOf(property->values), Stored<Value>::label),
                 kOfxStatErrValue);
  }
  if (index < 0 || count < 0 || index + count > static_cast<int>(list->size()))
  {
    return wrong(call, name, fmt::format("values {} to {} of {}", index, index + count - 1, list->size()),
                 kOfxStatErrBadIndex);
  }
  if (values == nullptr)
  {
    return wrong(call, name, "the place for the answer is null", kOfxStatErrValue);
  }
  std::transform(list->begin() + index, list->begin() + index + count, values,
                 [](const auto& value)
                 {
                   if constexpr (std::is_same_v<Value, const char*>)
                   {
                     return value.c_str();
                   }
                   else
                   {
                     return value;
                   }
                 });
  return kOfxStatOK;
}

OfxStatus PropertySet::pluginReset(const char* name)
{
  const std::scoped_lock lock(mutex_);
  const auto [property, status] = lookUp("propReset", name, true);
  if (property != nullptr)
  {
    property->values = property->defaults;
  }
  return status;
}

OfxStatus PropertySet::pluginDimension(const char* name, int* count)
{
  const std::scoped_lock lock(mutex_);
  const auto [property, status] = lookUp("propGetDimension", name, false);
  if (property == nullptr)
  {
    return status;
  }
  if (count == nullptr)
  {
    return wrong("propGetDimension", name, "the place for the answer is null", kOfxStatErrValue);
  }
  *count = sizeOf(property->values);
  return kOfxStatOK;
}

template OfxStatus PropertySet::pluginSet(const char*, const char*, int, int, const int*);
template OfxStatus PropertySet::pluginSet(const char*, const char*, int, int, const double*);
template OfxStatus PropertySet::pluginSet(const char*, const char*, int, int, const char* const*);
template OfxStatus PropertySet::pluginSet(const char*, const char*, int, int, void* const*);
template OfxStatus PropertySet::pluginGet(const char*, const char*, int, int, int*);
template OfxStatus PropertySet::pluginGet(const char*, const char*, int, int, double*);
template OfxStatus PropertySet::pluginGet(const char*, const char*, int, int, const char**);
template OfxStatus PropertySet::pluginGet(const char*, const char*, int, int, void**);

}  // namespace morvellan::host
