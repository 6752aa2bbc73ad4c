// Parameter values as people write them.
#pragma once

#include <string>

#include "host/effect.h"

namespace morvellan::tool
{

// A parameter by its name; a UsageError names the nearest one there is.
host::Param& paramNamed(const host::ParamSet& params, const std::string& name);

// A value for the parameter: a number, on/off or true/false, a Choice's index or label, r,g,b, a text. Throws
// UsageError.
host::ParamValue parseValue(const host::Param& param, const std::string& text);

// Throws UsageError where the value does not suit the parameter or leaves its range.
void requireFit(const host::Param& param, const host::ParamValue& value);

}  // namespace morvellan::tool
