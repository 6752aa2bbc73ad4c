// Parameter values as people write them.
#pragma once

#include <string>

#include "host/effect.h"

namespace morvellan::tool
{

// A parameter by its name; a UsageError names the nearest one of those that would do.
using ParamTest = bool (*)(const host::Param&);
host::Param& paramNamed(const host::ParamSet& params, const std::string& name, ParamTest wouldDo);

inline bool hasValue(const host::Param& param)
{
  return param.hasValue();
}
inline bool isButton(const host::Param& param)
{
  return param.kind() == host::ParamKind::PushButton;
}
inline bool isChoice(const host::Param& param)
{
  return param.kind() == host::ParamKind::Choice;
}

// A value for the parameter: a number, on/off or true/false, a Choice's index or label, r,g,b, a text. Throws
// UsageError.
host::ParamValue parseValue(const host::Param& param, const std::string& text);

// Throws UsageError where the value does not suit the parameter or leaves its range.
void requireFit(const host::Param& param, const host::ParamValue& value);

}  // namespace morvellan::tool
