// The rules that tie the parameters of the page to one another: what a user's edit shows, hides and writes.
// The instance calls changedParam for every change that the host reports, and showForValues once when it is made.
#pragma once

#include "params/param_access.h"

#include <string_view>

namespace morvellan::params
{
// Why the host reports a change.
enum class Reason
{
  UserEdited,
  PluginEdited,
  TimeChanged
};

// Applies the rule of the changed parameter, if it has one. Only a user's edit does anything. Writes of single derived
// parameters are bracketed by an edit block of that parameter's name; the bulk writes of stocks and resets are not.
// A parameter that already holds the value it is to get is not written.
void changedParam(ParamAccess& access, std::string_view name, Reason reason);

// Brings what is shown in line with the stored values, for a new instance. Writes no value but those that the print
// panel's own rule writes.
void showForValues(ParamAccess& access);
}  // namespace morvellan::params
