// Which properties each kind of set has, with their defaults and what a plug-in may write.
#pragma once

#include <string>

#include "host/observer.h"
#include "host/param_value.h"
#include "host/property_set.h"

namespace morvellan::host
{

void defineHostProperties(PropertySet& set, const HostTraits& traits);
void defineEffectProperties(PropertySet& set, const std::string& bundle);
void defineEffectInstanceProperties(PropertySet& set, const PropertySet& described);
void defineClipProperties(PropertySet& set, const std::string& name);
void defineClipInstanceProperties(PropertySet& set, const PropertySet& described);
void defineImageProperties(PropertySet& set);
void defineParamSetProperties(PropertySet& set);
void defineParamProperties(PropertySet& set, ParamKind kind, const std::string& name);
void defineParamInstanceProperties(PropertySet& set, const PropertySet& described);

}  // namespace morvellan::host
