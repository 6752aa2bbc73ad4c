// The list of factories and the records made of it.
#include "entry/plugin_list.h"

#include <deque>

#include "entry/exceptions.h"
#include "entry/log.h"
#include "entry/main_entry.h"
#include "entry/plugin_factory.h"

namespace OFX
{

namespace
{

// Built on the first call. A deque: the host keeps the addresses.
std::deque<OfxPlugin>& records()
{
  static std::deque<OfxPlugin> built = []
  {
    std::deque<OfxPlugin> list;
    for (const PluginFactory* factory : pluginList())
      list.push_back({.pluginApi = kOfxImageEffectPluginApi,
                      .apiVersion = kOfxImageEffectPluginApiVersion,
                      .pluginIdentifier = factory->id().c_str(),
                      .pluginVersionMajor = factory->majorVersion(),
                      .pluginVersionMinor = factory->minorVersion(),
                      .setHost = setHost,
                      .mainEntry = factory->mainEntry()});
    return list;
  }();
  return built;
}

}  // namespace

std::vector<PluginFactory*>& pluginList()
{
  static std::vector<PluginFactory*> list;
  return list;
}

int numberOfPlugins() noexcept
{
  int count = 0;
  statusOf(
      [&]
      {
        count = static_cast<int>(records().size());
        return kOfxStatOK;
      });
  return count;
}

OfxPlugin* pluginRecord(int nth) noexcept
{
  OfxPlugin* record = nullptr;
  statusOf(
      [&]
      {
        const int count = static_cast<int>(records().size());
        if (nth < 0 || nth >= count)
        {
          Log::error("Host attempted to get plugin {}, when there is only {} plugin(s), so it should have asked for 0.",
                     nth, count);
          throw Exception::Suite(kOfxStatErrBadIndex);
        }
        record = &records()[static_cast<std::size_t>(nth)];
        return kOfxStatOK;
      });
  return record;
}

}  // namespace OFX
