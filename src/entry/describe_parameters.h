// Turns entries of the catalogue into parameters of the effect's description.
#pragma once

#include <span>

#include "entry/params.h"
#include "params/catalogue.h"

namespace morvellan
{

/// Defines one parameter or group with every property that its entry states; `options` are the entries of a choice.
void describeParameter(const OFX::ParamSetDescriptor& set, const params::Param& param,
                       std::span<const params::Option> options);

/// The page "Controls" and then the whole catalogue, in its order, as the page's children. The entries of the device
/// choice are `devices`.
void describeControls(const OFX::ParamSetDescriptor& set, std::span<const params::Option> devices);

}  // namespace morvellan
