// The one plug-in of the library: its identity, its description and the making of its instances.
#pragma once

#include <memory>
#include <string>

#include "entry/plugin_factory.h"

namespace morvellan
{

class MorvellanPluginFactory final : public OFX::PluginFactoryHelper<MorvellanPluginFactory>
{
public:
  using PluginFactoryHelper::PluginFactoryHelper;

  /// Repairs the host's multi-thread suite where it needs it, and finds the devices.
  void load() override;
  void unload() override {}
  void describe(OFX::ImageEffectDescriptor& descriptor) override;
  void describeInContext(OFX::ImageEffectDescriptor& descriptor, const std::string& context) override;
  std::unique_ptr<OFX::ImageEffect> createInstance(OfxImageEffectHandle handle, const std::string& context) override;
};

/// The static object, built when the library is loaded.
MorvellanPluginFactory& pluginFactory();

/// What the description has latched of the host: it calls itself Natron.
bool hostIsNatron();

}  // namespace morvellan
