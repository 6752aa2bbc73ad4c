// The handles of an instance's parameters, one for each value and button of the catalogue, and the views of them that
// the rest of the system works through: values by name, now or at a time.
#pragma once

#include <string_view>
#include <variant>
#include <vector>

#include "entry/params.h"
#include "params/catalogue.h"
#include "params/param_access.h"
#include "pipeline/host/parameter_values.h"

namespace morvellan
{

/// Every call is by name. A name that the catalogue does not hold raises std::out_of_range, one of the wrong kind
/// std::invalid_argument; what the host refuses raises what the layer makes of it.
class ParameterHandles
{
public:
  /// Fetches all handles, in the catalogue's order.
  explicit ParameterHandles(const OFX::ParamSet& set);

  // Booleans are 0 or 1, choices their index. Values without a time are those of the host's current time.
  double number(std::string_view name) const;
  double numberAt(std::string_view name, double time) const;
  params::Rgb rgb(std::string_view name) const;
  params::Rgb rgbAt(std::string_view name, double time) const;

  /// Sets what heldInRange makes of the value: hosts differ in what they do with one outside the control's range.
  void setNumber(std::string_view name, double value) const;
  void setRgb(std::string_view name, const params::Rgb& value) const;

  const OFX::Param& param(std::string_view name) const;

  /// A value outside the control's range at its end, NaN at its least.
  static double heldInRange(std::string_view name, double value);

private:
  // Groups hold no value and have no handle.
  using Handle = std::variant<std::monostate, OFX::DoubleParam, OFX::IntParam, OFX::BooleanParam, OFX::ChoiceParam,
                              OFX::RGBParam, OFX::PushButtonParam>;

  static Handle fetch(const OFX::ParamSet& set, const params::Param& param);
  const Handle& handle(std::string_view name) const;

  std::vector<Handle> handles_;  // as the catalogue
};

/// Values at the host's current time.
class CurrentValues final : public ParameterValues
{
public:
  explicit CurrentValues(const ParameterHandles& handles) : handles_(handles) {}
  double number(std::string_view name) const override { return handles_.number(name); }

private:
  const ParameterHandles& handles_;
};

/// Values at a time.
class ValuesAt final : public ParameterValues
{
public:
  ValuesAt(const ParameterHandles& handles, double time) : handles_(handles), time_(time) {}
  double number(std::string_view name) const override { return handles_.numberAt(name, time_); }

private:
  const ParameterHandles& handles_;
  double time_;
};

}  // namespace morvellan
