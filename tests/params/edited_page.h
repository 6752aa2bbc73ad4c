// What a page in memory and the page of the plug-in have in common for the rules' tests: edits as a person makes them,
// and what was written since the last one.
#pragma once

#include "params/param_access.h"
#include "tests/params/orderly.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace morvellan::params
{
class EditedPage : public ParamAccess
{
public:
  // Set without a trace; press runs the rules as an edit of the user does, and forgets the record first.
  virtual void put(std::string_view name, double value) = 0;
  virtual void putRgb(std::string_view name, const Rgb& value) = 0;
  virtual void press(std::string_view name) = 0;
  virtual bool isSecret(std::string_view name) const = 0;
  virtual bool isEnabled(std::string_view name) const = 0;

  void edit(std::string_view name, double value)
  {
    put(name, value);
    press(name);
  }
  void editRgb(std::string_view name, const Rgb& value)
  {
    putRgb(name, value);
    press(name);
  }

  double operator[](std::string_view name) const { return number(name); }
  bool shown(std::string_view name) const { return !isSecret(name) && isEnabled(name); }
  std::vector<std::string> written() const
  {
    std::vector<std::string> names;
    for (const PageWrite& write : writes)
      names.push_back(write.name);
    return names;
  }
  bool allBracketed() const { return std::ranges::all_of(writes, &PageWrite::bracketed); }
  bool noneBracketed() const { return std::ranges::none_of(writes, &PageWrite::bracketed); }

  std::vector<PageWrite> writes;
};
}  // namespace morvellan::params
