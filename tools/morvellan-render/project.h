// Project files: the values of an instance as JSON.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>

#include "host/effect.h"

namespace morvellan::tool
{

// {"params": {NAME: VALUE}}: numbers, booleans, choice indices, [r, g, b], texts. Any bytes may come; `name` is the
// project's for messages. Text that is no such JSON is a RenderError; names that do not exist and values that do not
// fit are UsageErrors.
std::map<std::string, host::ParamValue> parseProject(std::string_view text, const std::string& name,
                                                     const host::ParamSet& described);
// The same of a file; one that cannot be read is a RenderError.
std::map<std::string, host::ParamValue> loadProject(const std::filesystem::path& file, const host::ParamSet& described);

std::string formatProject(const host::EffectInstance& instance);

}  // namespace morvellan::tool
