// Values from texts and from project files.
#include "values.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <fstream>
#include <optional>
#include <sstream>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "errors.h"
#include "picture.h"

namespace morvellan::tool
{
namespace
{

using host::Param;
using host::ParamKind;
using host::ParamValue;
using host::ValueFamily;

std::string lowered(std::string text)
{
  std::transform(text.begin(), text.end(), text.begin(),
                 [](char letter) { return static_cast<char>(std::tolower(static_cast<unsigned char>(letter))); });
  return text;
}

std::string trimmed(const std::string& text)
{
  const auto first = text.find_first_not_of(" \t");
  return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

// Levenshtein's distance.
std::size_t distance(const std::string& a, const std::string& b)
{
  std::vector<std::size_t> row(b.size() + 1);
  for (std::size_t j = 0; j < row.size(); ++j)
  {
    row[j] = j;
  }
  for (std::size_t i = 0; i < a.size(); ++i)
  {
    std::size_t diagonal = row[0];
    row[0] = i + 1;
    for (std::size_t j = 0; j < b.size(); ++j)
    {
      const std::size_t above = row[j + 1];
      row[j + 1] = std::min({above + 1, row[j] + 1, diagonal + (a[i] == b[j] ? 0 : 1)});
      diagonal = above;
    }
  }
  return row.back();
}

std::optional<double> toNumber(const std::string& text)
{
  double value = 0.0;
  const char* const begin = text.data() + (text.starts_with('+') ? 1 : 0);
  const auto [end, error] = std::from_chars(begin, text.data() + text.size(), value);
  return error == std::errc() && end == text.data() + text.size() ? std::optional(value) : std::nullopt;
}

ParamValue parseNumbers(const Param& param, const std::string& text)
{
  ParamValue value;
  std::stringstream parts(text);
  for (std::string part; std::getline(parts, part, ',');)
  {
    const std::optional<double> number = toNumber(trimmed(part));
    if (!number || value.count == param.facts().dimension)
    {
      throw UsageError(fmt::format(
          "{} takes {}, not \"{}\"", param.name(),
          param.facts().dimension == 1 ? "a number" : fmt::format("{} numbers with commas", param.facts().dimension),
          text));
    }
    value.numbers[static_cast<std::size_t>(value.count++)] = *number;
  }
  return value;
}

ParamValue parseChoice(const Param& param, const std::string& text)
{
  if (const std::optional<double> index = toNumber(text))
  {
    return *index;
  }
  const std::vector<std::string> options = param.options();
  const auto matches = [&](auto&& form)
  {
    std::vector<int> found;
    for (std::size_t i = 0; i < options.size(); ++i)
    {
      if (form(options[i]) == form(text))
      {
        found.push_back(static_cast<int>(i));
      }
    }
    return found;
  };
  std::vector<int> found = matches([](const std::string& label) { return label; });
  if (found.empty())
  {
    found = matches([](const std::string& label) { return lowered(trimmed(label)); });
  }
  if (found.size() != 1)
  {
    throw UsageError(fmt::format("{} has {} option \"{}\"; see --list-choices {}", param.name(),
                                 found.empty() ? "no" : "more than one", text, param.name()));
  }
  return found[0];
}

ParamValue parseBoolean(const Param& param, const std::string& text)
{
  const std::string word = lowered(text);
  for (const char* const yes : {"1", "true", "on", "yes"})
  {
    if (word == yes)
    {
      return true;
    }
  }
  for (const char* const no : {"0", "false", "off", "no"})
  {
    if (word == no)
    {
      return false;
    }
  }
  throw UsageError(fmt::format("{} takes on or off, not \"{}\"", param.name(), text));
}

void requireFit(const Param& param, const ParamValue& value)
{
  if (const std::string complaint = param.complaintAbout(value); !complaint.empty())
  {
    throw UsageError(complaint);
  }
}

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
      fmt::format("the project's value of {} does not suit a {}: {}", param.name(), param.facts().label, json.dump()));
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

Param& paramNamed(const host::ParamSet& params, const std::string& name)
{
  if (Param* const found = params.find(name))
  {
    return *found;
  }
  const Param* nearest = nullptr;
  std::size_t best = std::max<std::size_t>(2, name.size() / 3) + 1;
  for (const auto& param : params.params())
  {
    if (const std::size_t away = distance(lowered(name), lowered(param->name())); away < best)
    {
      best = away;
      nearest = param.get();
    }
  }
  throw UsageError(nearest == nullptr
                       ? fmt::format("there is no parameter {}; see --list-params", name)
                       : fmt::format("there is no parameter {}; did you mean {}?", name, nearest->name()));
}

ParamValue parseValue(const Param& param, const std::string& text)
{
  ParamValue value;
  if (param.kind() == ParamKind::Boolean)
  {
    value = parseBoolean(param, trimmed(text));
  }
  else if (param.kind() == ParamKind::Choice)
  {
    value = parseChoice(param, text);
  }
  else if (param.kind() == ParamKind::PushButton)
  {
    throw UsageError(fmt::format("{} is a button; use --press {}", param.name(), param.name()));
  }
  else if (param.facts().family == ValueFamily::String)
  {
    value = text;
  }
  else if (param.hasValue())
  {
    value = parseNumbers(param, text);
  }
  requireFit(param, value);
  return value;
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
  nlohmann::json json;
  try
  {
    json = nlohmann::json::parse(stream);
  }
  catch (const nlohmann::json::exception& error)
  {
    throw RenderError(fmt::format("the project {} is damaged or no JSON: {}", file.string(), error.what()));
  }
  if (!json.is_object() || !json.contains("params") || !json["params"].is_object())
  {
    throw RenderError(fmt::format("the project {} lacks its object \"params\"", file.string()));
  }
  std::map<std::string, ParamValue> values;
  for (const auto& [name, content] : json["params"].items())
  {
    const Param& param = paramNamed(described, name);
    const ParamValue value = fromJson(param, content);
    requireFit(param, value);
    values.emplace(name, value);
  }
  return values;
}

void saveProject(const std::filesystem::path& file, const host::EffectInstance& instance)
{
  nlohmann::ordered_json params = nlohmann::ordered_json::object();
  for (const auto& param : instance.params().params())
  {
    if (param->isPersistent())
    {
      params[param->name()] = toJson(*param, param->value());
    }
  }
  writeText(file, nlohmann::ordered_json{{"params", params}}.dump(2) + "\n");
}

}  // namespace morvellan::tool
