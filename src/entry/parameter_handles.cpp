// Fetches handles by kind, and moves numbers in and out of them whatever their kind.
#include "entry/parameter_handles.h"

#include <algorithm>
#include <stdexcept>

#include <fmt/format.h>

namespace morvellan
{

namespace
{

[[noreturn]] void wrongKind(std::string_view name, const char* wanted)
{
  throw std::invalid_argument(fmt::format("the parameter {} holds no {}", name, wanted));
}

// Reads or writes a handle that holds one number; `use` is given the typed handle.
template <class Handle, class Use>
auto withNumber(const Handle& handle, std::string_view name, const Use& use)
{
  return std::visit(
      [&](const auto& param)
      {
        using P = std::decay_t<decltype(param)>;
        if constexpr (std::is_same_v<P, OFX::DoubleParam> || std::is_same_v<P, OFX::IntParam> ||
                      std::is_same_v<P, OFX::BooleanParam> || std::is_same_v<P, OFX::ChoiceParam>)
          return use(param);
        else
          wrongKind(name, "number");
        return decltype(use(OFX::DoubleParam()))();
      },
      handle);
}

params::Rgb toRgb(const OFX::RGBColour& colour)
{
  return {colour.r, colour.g, colour.b};
}

}  // namespace

ParameterHandles::ParameterHandles(const OFX::ParamSet& set)
{
  handles_.reserve(params::catalogue().size());
  for (const params::Param& param : params::catalogue())
    handles_.push_back(fetch(set, param));
}

ParameterHandles::Handle ParameterHandles::fetch(const OFX::ParamSet& set, const params::Param& param)
{
  switch (param.kind)
  {
  case params::Kind::Double:
    return set.fetch<OFX::DoubleParam>(param.name);
  case params::Kind::Integer:
    return set.fetch<OFX::IntParam>(param.name);
  case params::Kind::Boolean:
    return set.fetch<OFX::BooleanParam>(param.name);
  case params::Kind::Choice:
    return set.fetch<OFX::ChoiceParam>(param.name);
  case params::Kind::Rgb:
    return set.fetch<OFX::RGBParam>(param.name);
  case params::Kind::PushButton:
    return set.fetch<OFX::PushButtonParam>(param.name);
  case params::Kind::Group:
    break;
  }
  return std::monostate();
}

const ParameterHandles::Handle& ParameterHandles::handle(std::string_view name) const
{
  return handles_[static_cast<std::size_t>(&params::at(name) - params::catalogue().data())];
}

double ParameterHandles::number(std::string_view name) const
{
  return withNumber(handle(name), name, [](const auto& param) { return static_cast<double>(param.value()); });
}

double ParameterHandles::numberAt(std::string_view name, double time) const
{
  return withNumber(handle(name), name, [time](const auto& param) { return static_cast<double>(param.valueAt(time)); });
}

params::Rgb ParameterHandles::rgb(std::string_view name) const
{
  if (const auto* param = std::get_if<OFX::RGBParam>(&handle(name)))
    return toRgb(param->value());
  wrongKind(name, "colour");
}

params::Rgb ParameterHandles::rgbAt(std::string_view name, double time) const
{
  if (const auto* param = std::get_if<OFX::RGBParam>(&handle(name)))
    return toRgb(param->valueAt(time));
  wrongKind(name, "colour");
}

double ParameterHandles::heldInRange(std::string_view name, double value)
{
  const auto& range = params::at(name).range;
  if (!range)
    return value;
  return value >= range->min ? std::min(value, range->max) : range->min;
}

void ParameterHandles::setNumber(std::string_view name, double value) const
{
  withNumber(handle(name), name,
             [value = heldInRange(name, value)](const auto& param)
             {
               using P = std::decay_t<decltype(param)>;
               if constexpr (std::is_same_v<P, OFX::DoubleParam>)
                 param.set(value);
               else if constexpr (std::is_same_v<P, OFX::BooleanParam>)
                 param.set(value != 0.0);
               else
                 param.set(static_cast<int>(value));
               return 0;
             });
}

void ParameterHandles::setRgb(std::string_view name, const params::Rgb& value) const
{
  const auto* param = std::get_if<OFX::RGBParam>(&handle(name));
  if (param == nullptr)
    wrongKind(name, "colour");
  param->set({value[0], value[1], value[2]});
}

const OFX::Param& ParameterHandles::param(std::string_view name) const
{
  return std::visit(
      [name](const auto& param) -> const OFX::Param&
      {
        if constexpr (std::is_base_of_v<OFX::Param, std::decay_t<decltype(param)>>)
          return param;
        else
          wrongKind(name, "handle");
      },
      handle(name));
}

}  // namespace morvellan
