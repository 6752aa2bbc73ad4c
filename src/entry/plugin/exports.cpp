// The two functions that the library exports.
#include "entry/morvellan_plugin_factory.h"
#include "entry/plugin_list.h"

#if defined(_WIN32)
#define MORVELLAN_EXPORT __declspec(dllexport)
#else
#define MORVELLAN_EXPORT __attribute__((visibility("default")))
#endif

extern "C" MORVELLAN_EXPORT int OfxGetNumberOfPlugins(void)
{
  // Naming the factory links it into the library; it has put itself into the list by now.
  static_cast<void>(morvellan::pluginFactory());
  return OFX::numberOfPlugins();
}

extern "C" MORVELLAN_EXPORT OfxPlugin* OfxGetPlugin(int nth)
{
  return OFX::pluginRecord(nth);
}
