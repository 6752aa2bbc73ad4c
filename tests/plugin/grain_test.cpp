// Grain through the plug-in: what changes from frame to frame, and that the number of devices changes nothing.
#include <map>
#include <optional>
#include <string>

#include "tests/plugin/plugin_host.h"

namespace morvellan::test
{
namespace
{

using host::EffectInstance;
using host::Frame;

using Project = std::map<std::string, host::ParamValue>;

constexpr int width = 40, height = 23;  // odd: the halves of a cut plane differ

// Softness below 0.4 is the same for a blue plane that is cut between devices.
Project grainOf(int pattern)
{
  Project project{{"GrainBypass", false}, {"InputGamut", 27}, {"DispersionPattern", pattern}};
  for (const char* channel : {"Red", "Green", "Blue"})
  {
    project[std::string("Soft") + channel] = 0.2;
    project[std::string("Granularity") + channel] = 2.0;
  }
  project["SizeGreen"] = 20.0;
  project["VarianceBlue"] = 1.0;
  return project;
}

EffectInstance& instanceOf(StrictHost& strict, const Project& project)
{
  host::InstanceSettings settings;
  settings.project = project;
  return strict.create(settings);
}

TEST(Grain, ChangesFromFrameToFrameUnlessItIsUniform)
{
  const ConfigFolder folder;
  StrictHost strict(MORVELLAN_BUNDLE, pluginOptions(folder, "cpu"));
  const Frame source = rampOf(width, height);
  for (int pattern = 0; pattern <= 4; ++pattern)
  {
    EffectInstance& effect = instanceOf(strict, grainOf(pattern));
    const Frame first = renderFrame(effect, source, 1.0);
    EXPECT_EQ(greatestDifference(renderFrame(effect, source, 1.0), first), 0.0F) << pattern;
    const float change = greatestDifference(renderFrame(effect, source, 2.0), first);
    if (pattern <= 2)
      EXPECT_GT(change, 0.05F) << pattern;
    else
      EXPECT_EQ(change, 0.0F) << pattern;
    EXPECT_GT(greatestDifference(first, source), 0.05F) << pattern;
  }
}

TEST(Grain, EveryNumberOfDevicesGivesThePixelsOfOne)
{
  const Frame source = rampOf(width, height);
  for (const int pattern : {0, 1, 2})
  {
    std::optional<Frame> expected;
    for (const char* device : {"cpu", "cpu:2", "cpu:3", "cpu:4"})
      for (const char* peers : {"", "0"})
        for (const int selection : {0, 1})
        {
          if (selection == 1 && device == std::string("cpu"))
            continue;
          const ConfigFolder folder(ConfigFolder::text(selection, 0));
          StrictOptions options = pluginOptions(folder, device);
          options.environment["MORVELLAN_CPU_PEER"] = peers;
          StrictHost strict(MORVELLAN_BUNDLE, options);
          const Frame result = renderFrame(instanceOf(strict, grainOf(pattern)), source, 1.0);
          if (!expected)
            expected = result;
          EXPECT_EQ(greatestDifference(result, *expected), 0.0F)
              << device << ", peers '" << peers << "', selection " << selection << ", pattern " << pattern;
        }
  }
}

}  // namespace
}  // namespace morvellan::test
