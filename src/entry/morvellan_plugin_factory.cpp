// The effect as the host gets to know it.
#include "entry/morvellan_plugin_factory.h"

#include <vector>

#include "entry/describe_parameters.h"
#include "entry/file_dialog_service.h"
#include "entry/host_description.h"
#include "entry/local_multi_thread.h"
#include "entry/morvellan_plugin.h"
#include "entry/suites.h"
#include "gpu/discovery.h"

namespace morvellan
{

namespace
{

constexpr const char* identifier = "com.morvellan.MorvellanNatron";
constexpr unsigned int majorVersion = 3;
constexpr unsigned int minorVersion = 7;

constexpr const char* label = "Morvellan_Natron_3_7";
constexpr const char* grouping = "Morvellan";
constexpr const char* description =
    "Morvellan for Natron, version 3.7\n"
    "Film Lab Processing, Cine Camera and Print Film Stocks, Halation, Film Grain, Resizing, Textures, Details.\n"
    "Note : Morvellan requires nVidia Studio - or Game Ready - Driver ver. 527.41, or higher";

bool natronLatch = false;

MorvellanPluginFactory factory(identifier, majorVersion, minorVersion);

}  // namespace

MorvellanPluginFactory& pluginFactory()
{
  return factory;
}

bool hostIsNatron()
{
  return natronLatch;
}

void MorvellanPluginFactory::load()
{
  OFX::MultiThread::repairSuite(OFX::suites().multiThread, OFX::hostDescription()->name);
  // Found once, before any instance exists. Not earlier: the engines register themselves while the library is loaded.
  static_cast<void>(gpu::processDiscovery());
}

void MorvellanPluginFactory::describe(OFX::ImageEffectDescriptor& descriptor)
{
  natronLatch = OFX::hostDescription()->isNatron;

  const OFX::PropertySet& properties = descriptor.properties();
  properties.setString(kOfxPropLabel, label);
  properties.setString(kOfxImageEffectPluginPropGrouping, grouping);
  properties.setString(kOfxPropPluginDescription, description);
  descriptor.addSupportedContext(kOfxImageEffectContextFilter);
  descriptor.addSupportedContext(kOfxImageEffectContextGeneral);
  descriptor.addSupportedBitDepth(kOfxBitDepthFloat);
  properties.setString(kOfxImageEffectPluginRenderThreadSafety, kOfxImageEffectRenderInstanceSafe);
  properties.setInt(kOfxImageEffectPluginPropHostFrameThreading, 1);
  properties.setInt(kOfxImageEffectPropSupportsMultiResolution, 0);
  properties.setInt(kOfxImageEffectPropSupportsTiles, 0);
  properties.setInt(kOfxImageEffectPluginPropFieldRenderTwiceAlways, 0);
  properties.setInt(kOfxImageEffectPropSupportsMultipleClipPARs, 0);
  properties.setInt(kOfxImageEffectPropSupportsMultipleClipDepths, 0);
  proveFileDialogService();
}

void MorvellanPluginFactory::describeInContext(OFX::ImageEffectDescriptor& descriptor, const std::string&)
{
  OFX::ClipDescriptor source = descriptor.defineClip(kOfxImageEffectSimpleSourceClipName);
  source.addSupportedComponent(OFX::PixelComponents::RGBA);
  source.addSupportedComponent(OFX::PixelComponents::RGB);
  source.setTemporalClipAccess(false);
  source.setSupportsTiles(false);
  source.setIsMask(false);
  source.setOptional(false);

  OFX::ClipDescriptor output = descriptor.defineClip(kOfxImageEffectOutputClipName);
  output.addSupportedComponent(OFX::PixelComponents::RGBA);
  output.addSupportedComponent(OFX::PixelComponents::RGB);
  output.setSupportsTiles(false);

  std::vector<params::Option> devices;
  for (const gpu::DeviceOption& device : gpu::deviceOptions(gpu::processDiscovery().devices))
    devices.push_back({.label = device.label, .hint = device.hint});
  describeControls(descriptor.params(), devices);
}

std::unique_ptr<OFX::ImageEffect> MorvellanPluginFactory::createInstance(OfxImageEffectHandle handle,
                                                                         const std::string&)
{
  return std::make_unique<MorvellanPlugin>(handle);
}

}  // namespace morvellan
