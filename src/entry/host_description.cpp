// Reads the host's own property set.
#include "entry/host_description.h"

#include <memory>
#include <optional>

#include "entry/log.h"
#include "entry/property_set.h"
#include "entry/suites.h"
#include "ofx/ofxImageEffect.h"
#include "ofx/ofxNatron.h"
#include "ofx/ofxParam.h"

namespace OFX
{

namespace
{

std::unique_ptr<const HostDescription>& record()
{
  static std::unique_ptr<const HostDescription> instance;
  return instance;
}

// The values of a property of any dimension. Hosts older than the property do not have it, which is no error.
std::vector<int> intValues(const PropertySet& properties, const char* name)
{
  int count = 0;
  std::vector<int> values;
  if (suites().property->propGetDimension(properties.handle(), name, &count) != kOfxStatOK)
    return values;
  for (int i = 0; i < count; ++i)
    values.push_back(properties.getInt(name, i));
  return values;
}

}  // namespace

void createHostDescription(const OfxHost& host)
{
  if (record())
  {
    Log::error("Tried to create host description when we already have one.");
    return;
  }
  const PropertySet properties(host.host);
  const auto flag = [&](const char* name) { return properties.findInt(name).value_or(0) != 0; };

  auto description = std::make_unique<HostDescription>();
  description->apiVersion = intValues(properties, kOfxPropAPIVersion);
  description->name = properties.getString(kOfxPropName);
  description->label = properties.findString(kOfxPropLabel).value_or(description->name);
  description->version = intValues(properties, kOfxPropVersion);
  description->isBackground = flag(kOfxImageEffectHostPropIsBackground);
  description->supportsOverlays = flag(kOfxImageEffectPropSupportsOverlays);
  description->supportsMultiResolution = flag(kOfxImageEffectPropSupportsMultiResolution);
  description->supportsTiles = flag(kOfxImageEffectPropSupportsTiles);
  description->temporalClipAccess = flag(kOfxImageEffectPropTemporalClipAccess);
  description->supportsMultipleClipDepths = flag(kOfxImageEffectPropSupportsMultipleClipDepths);
  description->supportsMultipleClipPARs = flag(kOfxImageEffectPropSupportsMultipleClipPARs);
  description->supportsStringAnimation = flag(kOfxParamHostPropSupportsStringAnimation);
  description->supportsCustomInteract = flag(kOfxParamHostPropSupportsCustomInteract);
  description->supportsChoiceAnimation = flag(kOfxParamHostPropSupportsChoiceAnimation);
  description->supportsBooleanAnimation = flag(kOfxParamHostPropSupportsBooleanAnimation);
  description->supportsCustomAnimation = flag(kOfxParamHostPropSupportsCustomAnimation);
  description->maxParameters = properties.findInt(kOfxParamHostPropMaxParameters).value_or(-1);
  description->maxPages = properties.findInt(kOfxParamHostPropMaxPages).value_or(-1);
  description->isNatron = flag(kNatronOfxHostIsNatron);
  description->supportsDynamicChoices = flag(kNatronOfxParamHostPropSupportsDynamicChoices);
  record() = std::move(description);
}

const HostDescription* hostDescription()
{
  return record().get();
}

void releaseHostDescription()
{
  record().reset();
}

}  // namespace OFX
