// Lists of parameters and options.
#include "listing.h"

#include <cfloat>
#include <climits>
#include <type_traits>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "errors.h"
#include "values.h"

namespace morvellan::tool
{
namespace
{

using host::Param;
using host::ParamKind;
using nlohmann::ordered_json;

int depthOf(const host::EffectDescriptor& descriptor, const Param& param)
{
  int depth = 0;
  const Param* group = descriptor.params().find(param.properties().getString(kOfxParamPropParent));
  for (; group != nullptr; group = descriptor.params().find(group->properties().getString(kOfxParamPropParent)))
  {
    ++depth;
  }
  return depth;
}

std::string rangeOf(const Param& param)
{
  const host::PropertySet& set = param.properties();
  if (param.kind() == ParamKind::Choice)
  {
    return fmt::format("0 to {}", static_cast<int>(param.options().size()) - 1);
  }
  if (param.facts().dimension != 1 || !set.has(kOfxParamPropMin))
  {
    return "";
  }
  if (param.facts().family == host::ValueFamily::Int)
  {
    const int least = set.getInt(kOfxParamPropMin);
    const int most = set.getInt(kOfxParamPropMax);
    return least == INT_MIN && most == INT_MAX ? "" : fmt::format("{} to {}", least, most);
  }
  const double least = set.getDouble(kOfxParamPropMin);
  const double most = set.getDouble(kOfxParamPropMax);
  return least == -DBL_MAX && most == DBL_MAX ? "" : fmt::format("{} to {}", least, most);
}

ordered_json toJson(const host::Property& property)
{
  return std::visit(
      [&](const auto& values) -> ordered_json
      {
        using Value = typename std::decay_t<decltype(values)>::value_type;
        ordered_json list = ordered_json::array();
        for (const auto& value : values)
        {
          if constexpr (std::is_same_v<Value, void*>)
          {
            list.push_back(value != nullptr);
          }
          else
          {
            list.push_back(value);
          }
        }
        return property.dimension == 1 ? list.at(0) : list;
      },
      property.values);
}

}  // namespace

std::string listParams(const host::EffectDescriptor& descriptor)
{
  std::string text;
  for (const Param* const param : descriptor.inPageOrder())
  {
    if (param->kind() == ParamKind::Page)
    {
      continue;
    }
    const std::string name(static_cast<std::size_t>(2 * depthOf(descriptor, *param)), ' ');
    text += fmt::format("{:<34} {:<11} {:<12} {:<14} {}{}\n", name + param->name(), param->facts().label,
                        param->hasValue() ? toText(param->defaultValue()) : "", rangeOf(*param), param->label(),
                        param->isSecret() ? " (hidden)" : "");
  }
  return text;
}

std::string listParamsAsJson(const host::EffectDescriptor& descriptor)
{
  ordered_json list = ordered_json::array();
  for (const Param* const param : descriptor.inPageOrder())
  {
    ordered_json properties = ordered_json::object();
    param->properties().visit(
        [&](const std::string& name, const host::Property& property)
        {
          if (property.written)
          {
            properties[name] = toJson(property);
          }
        });
    list.push_back({{"name", param->name()}, {"kind", param->facts().label}, {"properties", properties}});
  }
  return list.dump(2) + "\n";
}

std::string listChoices(const host::EffectDescriptor& descriptor, const std::string& name)
{
  const Param& param = paramNamed(descriptor.params(), name, isChoice);
  if (!isChoice(param))
  {
    throw UsageError(fmt::format("{} ({}) is not a Choice; see --list-params", name, param.facts().label));
  }
  std::string text;
  int index = 0;
  for (const std::string& label : param.options())
  {
    text += fmt::format("{:>3}  {}\n", index++, label);
  }
  return text;
}

}  // namespace morvellan::tool
