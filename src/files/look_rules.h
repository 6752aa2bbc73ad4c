// What a Look load does with a field beyond setting its parameter: derived masters and swatches, fields that depend on
// one another, and the panels to lay out. One row for each parameter that has such a rule.
#pragma once

#include <functional>
#include <string_view>
#include <unordered_map>

#include "params/param_access.h"

namespace morvellan::files
{

// A load under way. Keys are names of the field table, which lives as long as the process.
struct LookLoad
{
  params::ParamAccess& access;
  std::unordered_map<std::string_view, double> values;  // what the file gave, or what was taken instead

  // The file's value, else the parameter's own.
  double value(std::string_view parameter) const;
  bool isOn(std::string_view parameter) const { return value(parameter) != 0.0; }

  // Writes what differs. A choice's index that has no entry is not written.
  void set(std::string_view parameter, double value) const;
};

// Each may be empty: the table's value, a plain set, and nothing more.
struct LookRule
{
  std::function<double(const LookLoad&)> fallback;  // instead of a value out of range
  std::function<void(LookLoad&, double)> set;       // instead of setting the parameter
  std::function<void(LookLoad&)> then;
};

const LookRule& lookRuleOf(std::string_view parameter);

}  // namespace morvellan::files
