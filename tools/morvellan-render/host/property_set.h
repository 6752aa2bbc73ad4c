// A set of typed properties, as a plug-in reads and writes it through the property suite and as the host uses it.
// Every name, type, index and permission is checked on the plug-in's side; the host's side throws on its own mistakes.
#pragma once

#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "host/handles.h"
#include "ofx/ofxProperty.h"

namespace morvellan::host
{

// A deque keeps the characters that a plug-in was given in place while the property grows.
using PropertyValues = std::variant<std::vector<int>, std::vector<double>, std::deque<std::string>, std::vector<void*>>;

enum class Access
{
  ReadOnly,  // the plug-in may read
  Writable,
};

struct Property
{
  PropertyValues values;
  PropertyValues defaults;
  int dimension = 1;  // 0: any number of values
  Access access = Access::ReadOnly;
  bool written = false;  // by the plug-in
};

class PropertySet : public Handled<PropertySet, OfxPropertySetHandle>
{
public:
  // `owner` names the set in reports of misuse, such as "parameter Exposure". A plug-in may ask a set that is `open`
  // for properties that it does not have: asking is how the abilities of a host are found out.
  explicit PropertySet(std::string owner, bool open = false) : owner_(std::move(owner)), open_(open) {}

  // Adds a property that the interface publishes, with its default. The type of `values` is the property's type.
  void define(std::string_view name, Access access, PropertyValues values);
  // The same for one whose dimension depends on what carries it.
  void define(std::string_view name, Access access, PropertyValues values, int dimension);
  // The properties and values of another set, with none writable but those named.
  void copyFrom(const PropertySet& other, const std::vector<std::string_view>& writable);

  // The host's side.
  bool has(std::string_view name) const;
  int getInt(std::string_view name, int index = 0) const;
  double getDouble(std::string_view name, int index = 0) const;
  std::string getString(std::string_view name, int index = 0) const;
  void* getPointer(std::string_view name, int index = 0) const;
  std::vector<std::string> getStrings(std::string_view name) const;
  void put(std::string_view name, PropertyValues values);
  void put(std::string_view name, std::string_view value) { put(name, std::deque<std::string>{std::string(value)}); }
  void put(std::string_view name, int value) { put(name, std::vector<int>{value}); }
  void put(std::string_view name, double value) { put(name, std::vector<double>{value}); }
  void put(std::string_view name, void* value) { put(name, std::vector<void*>{value}); }
  void visit(const std::function<void(const std::string& name, const Property&)>& visitor) const;
  const std::string& owner() const { return owner_; }
  // Called after a plug-in's successful write.
  void onWrite(std::function<void(const std::string& name)> listener) { listener_ = std::move(listener); }

  // The plug-in's side. Value is int, double, const char* or void*.
  template <class Value>
  OfxStatus pluginSet(const char* call, const char* name, int index, int count, const Value* values);
  template <class Value>
  OfxStatus pluginGet(const char* call, const char* name, int index, int count, Value* values);
  OfxStatus pluginReset(const char* name);
  OfxStatus pluginDimension(const char* name, int* count);

private:
  struct Found
  {
    Property* property;
    OfxStatus status;
  };
  Found lookUp(const char* call, const char* name, bool writing);
  const Property& at(std::string_view name) const;
  OfxStatus wrong(const char* call, const char* name, const std::string& what, OfxStatus status) const;

  const std::string owner_;
  const bool open_;
  mutable std::mutex mutex_;
  std::map<std::string, Property, std::less<>> properties_;
  std::function<void(const std::string&)> listener_;
};

// Hands a misuse of the interface to the current host's observer, with the action in which it happened.
void reportMisuse(const std::string& what);

}  // namespace morvellan::host
