// A parameter, as described or as an instance has it: its properties, and in an instance its value and keys.
// A set of parameters belongs to one effect descriptor or instance.
#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "host/handles.h"
#include "host/param_value.h"
#include "host/property_set.h"
#include "ofx/ofxParam.h"

namespace morvellan::host
{

class ParamSet;

class Param : public Handled<Param, OfxParamHandle>
{
public:
  // A parameter that is being described.
  Param(ParamSet& set, ParamKind kind, const std::string& name);
  // A parameter of an instance, at the described default.
  Param(ParamSet& set, const Param& described);

  const std::string& name() const { return name_; }
  ParamKind kind() const { return kind_; }
  const KindFacts& facts() const { return factsOf(kind_); }
  ParamSet& set() const { return set_; }
  PropertySet& properties() { return properties_; }
  const PropertySet& properties() const { return properties_; }

  bool isSecret() const;
  bool isEnabled() const;
  // A page, group or button has no value.
  bool hasValue() const { return facts().family != ValueFamily::None; }
  bool isPersistent() const;
  ParamValue defaultValue() const;
  // What a person reads beside the control.
  std::string label() const;
  // The labels of a Choice's options.
  std::vector<std::string> options() const;
  // One sentence if the value does not suit the kind or leaves the range; empty if it does.
  std::string complaintAbout(const ParamValue& value) const;

  // The value at a time: keys are interpolated, linearly for doubles and held for the rest.
  ParamValue valueAt(double time) const;
  // The value that holds where there are no keys.
  ParamValue value() const;
  void setValue(const ParamValue& value);
  void setKey(double time, const ParamValue& value);
  std::map<double, ParamValue> keys() const;
  bool removeKey(double time);
  void removeKeys();
  // The characters of a text value, valid until the value is next asked for.
  const char* heldText(const ParamValue& value);

private:
  ParamSet& set_;
  const ParamKind kind_;
  const std::string name_;
  PropertySet properties_;
  mutable std::mutex mutex_;
  ParamValue value_;
  std::map<double, ParamValue> keys_;
  std::string held_;
};

class ParamSet : public Handled<ParamSet, OfxParamSetHandle>
{
public:
  ParamSet(const std::string& owner, bool instance);

  bool isInstance() const { return instance_; }
  PropertySet& properties() { return properties_; }
  // In the order of their definition.
  const std::vector<std::unique_ptr<Param>>& params() const { return params_; }
  Param* find(std::string_view name) const;
  // Throws where there is none.
  Param& at(std::string_view name) const;
  Param& add(ParamKind kind, const std::string& name);
  void addInstanceOf(const Param& described);

  // Open edit blocks, innermost last.
  std::vector<std::string> editBlocks() const;
  void beginEdit(const std::string& name);
  bool endEdit();

private:
  Param& insert(std::unique_ptr<Param> param);

  const bool instance_;
  PropertySet properties_;
  std::vector<std::unique_ptr<Param>> params_;
  std::map<std::string, Param*, std::less<>> byName_;
  mutable std::mutex mutex_;
  std::vector<std::string> editBlocks_;
};

}  // namespace morvellan::host
