// Project files, read and written.
#include "project.h"

#include <algorithm>
#include <fstream>
#include <iterator>

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
using host::ParamValue;
using host::ValueFamily;

// Many times what a project of all parameters takes.
constexpr std::uintmax_t largestProject = 16 * 1024 * 1024;

ParamValue fromJson(const Param& param, const nlohmann::json& json)
{
  if (json.is_boolean() && param.kind() == ParamKind::Boolean)
  {
    return json.get<bool>();
  }
  if (json.is_string() && param.facts().family == ValueFamily::String)
  {
    return json.get<std::string>();
  }
  if (json.is_number())
  {
    return json.get<double>();
  }
  ParamValue value;
  if (json.is_array() && json.size() <= value.numbers.size() &&
      std::all_of(json.begin(), json.end(), [](const auto& item) { return item.is_number(); }))
  {
    for (const auto& item : json)
    {
      value.numbers[static_cast<std::size_t>(value.count++)] = item.template get<double>();
    }
    return value;
  }
  throw UsageError(
      fmt::format("{} ({}) cannot be {}; see --list-params", param.name(), param.facts().label, json.dump()));
}

nlohmann::ordered_json toJson(const Param& param, const ParamValue& value)
{
  if (param.kind() == ParamKind::Boolean)
  {
    return value.asBool();
  }
  const auto number = [&](std::size_t index) -> nlohmann::ordered_json
  {
    if (param.facts().family == ValueFamily::Int)
    {
      return static_cast<int>(value.numbers[index]);
    }
    return value.numbers[index];
  };
  if (param.facts().family == ValueFamily::String)
  {
    return value.text;
  }
  if (value.count == 1)
  {
    return number(0);
  }
  nlohmann::ordered_json list = nlohmann::ordered_json::array();
  for (std::size_t i = 0; i < static_cast<std::size_t>(value.count); ++i)
  {
    list.push_back(number(i));
  }
  return list;
}

}  // namespace

std::map<std::string, ParamValue> parseProject(std::string_view text, const std::string& name,
                                               const host::ParamSet& described)
{
  nlohmann::json json;
  try
  {
    json = nlohmann::json::parse(text);
  }
  catch (const nlohmann::json::exception& error)
  {
    throw RenderError(fmt::format("the project {} is damaged or no JSON: {}", name, error.what()));
  }
  if (!json.is_object() || !json.contains("params") || !json["params"].is_object())
  {
    throw RenderError(
        fmt::format("the project {} lacks its object \"params\"; write {{\"params\": {{NAME: VALUE}}}}", name));
  }
  std::map<std::string, ParamValue> values;
  for (const auto& [parameter, content] : json["params"].items())
  {
    try
    {
      const Param& param = paramNamed(described, parameter, hasValue);
      const ParamValue value = fromJson(param, content);
      requireFit(param, value);
      values.emplace(parameter, value);
    }
    catch (const UsageError& error)
    {
      throw UsageError(fmt::format("the project {}: {}", name, error.what()));
    }
  }
  return values;
}

std::map<std::string, ParamValue> loadProject(const std::filesystem::path& file, const host::ParamSet& described)
{
  std::error_code failure;
  if (std::filesystem::is_directory(file, failure))
  {
    throw RenderError(fmt::format("the project {} is a folder; give a file's name", file.string()));
  }
  std::ifstream stream(file, std::ios::binary);
  if (!stream)
  {
    throw RenderError(fmt::format("the project {} cannot be read; check the name and its permissions", file.string()));
  }
  std::string text(largestProject + 1, '\0');
  stream.read(text.data(), static_cast<std::streamsize>(text.size()));
  text.resize(static_cast<std::size_t>(stream.gcount()));
  if (text.size() > largestProject)
  {
    throw RenderError(fmt::format("the project {} is larger than any project is; check the name", file.string()));
  }
  return parseProject(text, file.string(), described);
}

std::string formatProject(const host::EffectInstance& instance)
{
  nlohmann::ordered_json params = nlohmann::ordered_json::object();
  for (const auto& param : instance.params().params())
  {
    if (param->isPersistent())
    {
      params[param->name()] = toJson(*param, param->value());
    }
  }
  return nlohmann::ordered_json{{"params", params}}.dump(2) + "\n";
}

}  // namespace morvellan::tool
