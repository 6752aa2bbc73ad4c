// Parameter values as people and project files write them.
#pragma once

#include <filesystem>
#include <map>
#include <string>

#include "host/effect.h"

namespace morvellan::tool
{

// A parameter by its name; a UsageError names the nearest one there is.
host::Param& paramNamed(const host::ParamSet& params, const std::string& name);

// A value for the parameter: a number, on/off or true/false, a Choice's index or label, r,g,b, a text. Throws
// UsageError.
host::ParamValue parseValue(const host::Param& param, const std::string& text);

// {"params": {NAME: VALUE}}: numbers, booleans, choice indices, [r, g, b], texts. A file that cannot be read is a
// RenderError; names that do not exist and values that do not fit are UsageErrors.
std::map<std::string, host::ParamValue> loadProject(const std::filesystem::path& file, const host::ParamSet& described);
void saveProject(const std::filesystem::path& file, const host::EffectInstance& instance);

}  // namespace morvellan::tool
