// Parameters of an instance by kind, and the definition of parameters in a descriptor. A parameter object is a pair of
// the host's handles and may be copied freely.
#pragma once

#include <string>

#include "entry/property_set.h"
#include "ofx/ofxParam.h"

namespace OFX
{

class Param
{
public:
  Param() = default;
  Param(OfxParamHandle handle, PropertySet properties) : handle_(handle), properties_(properties) {}

  explicit operator bool() const { return handle_ != nullptr; }
  OfxParamHandle handle() const { return handle_; }
  const PropertySet& properties() const { return properties_; }

  void setSecret(bool secret) const;
  void setEnabled(bool enabled) const;
  /// Secret and disabled together, or neither: how a control is hidden and shown.
  void setHidden(bool hidden) const;

protected:
  OfxParamHandle handle_ = nullptr;
  PropertySet properties_;
};

// Values without a time are those of the host's current time. Each call raises what the host answers.

class DoubleParam : public Param
{
public:
  static constexpr const char* type = kOfxParamTypeDouble;
  using Param::Param;
  double value() const;
  double valueAt(double time) const;
  void set(double value) const;
};

class IntParam : public Param
{
public:
  static constexpr const char* type = kOfxParamTypeInteger;
  using Param::Param;
  int value() const;
  int valueAt(double time) const;
  void set(int value) const;
};

class BooleanParam : public Param
{
public:
  static constexpr const char* type = kOfxParamTypeBoolean;
  using Param::Param;
  bool value() const;
  bool valueAt(double time) const;
  void set(bool value) const;
};

class ChoiceParam : public Param
{
public:
  static constexpr const char* type = kOfxParamTypeChoice;
  using Param::Param;
  int value() const;
  int valueAt(double time) const;
  void set(int index) const;
};

struct RGBColour
{
  double r = 0.0, g = 0.0, b = 0.0;
};

class RGBParam : public Param
{
public:
  static constexpr const char* type = kOfxParamTypeRGB;
  using Param::Param;
  RGBColour value() const;
  RGBColour valueAt(double time) const;
  void set(const RGBColour& value) const;
};

class StringParam : public Param
{
public:
  static constexpr const char* type = kOfxParamTypeString;
  using Param::Param;
  std::string value() const;
  std::string valueAt(double time) const;
  void set(const std::string& value) const;
};

class PushButtonParam : public Param
{
public:
  static constexpr const char* type = kOfxParamTypePushButton;
  using Param::Param;
};

/// The parameters of an instance.
class ParamSet
{
public:
  ParamSet() = default;
  explicit ParamSet(OfxParamSetHandle handle) : handle_(handle) {}
  virtual ~ParamSet() = default;

  /// The parameter of that name. Raises Exception::Suite with the host's status where there is none, and with
  /// kOfxStatErrValue where it is of another kind.
  template <class P>
  P fetch(const std::string& name) const
  {
    OfxPropertySetHandle properties = nullptr;
    const OfxParamHandle handle = fetchHandle(name, P::type, properties);
    return P(handle, PropertySet(properties));
  }

  /// An undo step of the host named `name`.
  void beginEditBlock(const std::string& name) const;
  void endEditBlock() const;

private:
  OfxParamHandle fetchHandle(const std::string& name, const char* type, OfxPropertySetHandle& properties) const;

  OfxParamSetHandle handle_ = nullptr;
};

/// An undo step for as long as it lives.
class EditBlock
{
public:
  EditBlock(const ParamSet& set, const std::string& name) : set_(set) { set_.beginEditBlock(name); }
  ~EditBlock();
  EditBlock(const EditBlock&) = delete;
  EditBlock& operator=(const EditBlock&) = delete;

private:
  const ParamSet& set_;
};

/// The parameters of a descriptor.
class ParamSetDescriptor
{
public:
  ParamSetDescriptor() = default;
  explicit ParamSetDescriptor(OfxParamSetHandle handle) : handle_(handle) {}

  /// Defines a parameter of a type of the standard, and gives its properties to be described.
  PropertySet define(const char* type, const std::string& name) const;

private:
  OfxParamSetHandle handle_ = nullptr;
};

}  // namespace OFX
