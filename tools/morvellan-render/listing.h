// What the tool prints about the parameters of a described effect.
#pragma once

#include <string>

#include "host/effect.h"

namespace morvellan::tool
{

// A line for each parameter, in page order: name, kind, default, range, label; members of groups are indented.
std::string listParams(const host::EffectDescriptor& descriptor);
// An array of objects in page order: name, kind and every property that the plug-in described.
std::string listParamsAsJson(const host::EffectDescriptor& descriptor);
// A line for each option of a Choice: its index and label. Throws UsageError.
std::string listChoices(const host::EffectDescriptor& descriptor, const std::string& name);

}  // namespace morvellan::tool
