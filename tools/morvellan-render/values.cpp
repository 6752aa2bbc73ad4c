// Values from texts.
#include "values.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <optional>
#include <sstream>

#include <fmt/format.h>

#include "errors.h"

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

}  // namespace

void requireFit(const Param& param, const ParamValue& value)
{
  if (const std::string complaint = param.complaintAbout(value); !complaint.empty())
  {
    throw UsageError(complaint);
  }
}

Param& paramNamed(const host::ParamSet& params, const std::string& name, ParamTest wouldDo)
{
  if (Param* const found = params.find(name))
  {
    return *found;
  }
  const Param* nearest = nullptr;
  std::size_t best = std::max<std::size_t>(2, name.size() / 3) + 1;
  for (const auto& param : params.params())
  {
    const std::size_t longer = std::max(name.size(), param->name().size());
    if (!wouldDo(*param) || longer - std::min(name.size(), param->name().size()) >= best)
    {
      continue;  // it differs by that many letters at least
    }
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
  else if (isChoice(param))
  {
    value = parseChoice(param, text);
  }
  else if (isButton(param))
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

}  // namespace morvellan::tool
