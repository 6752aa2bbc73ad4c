// Whose threads and mutexes the effect works with, host by host: the black of an unconnected source is spread over
// them.
#include <atomic>

#include "host/suites.h"
#include "tests/plugin/plugin_host.h"

namespace morvellan::test
{
namespace
{

// The host's own suite, counting the calls that reach it.
struct CountedThreads
{
  static inline std::atomic<int> started = 0;
  static inline std::atomic<int> asked = 0;

  static OfxStatus multiThread(OfxThreadFunctionV1 function, unsigned int count, void* argument)
  {
    ++started;
    return host::multiThreadSuite().multiThread(function, count, argument);
  }
  static OfxStatus multiThreadNumCPUs(unsigned int* count)
  {
    ++asked;
    *count = 3;
    return kOfxStatOK;
  }
  static OfxMultiThreadSuiteV1 table()
  {
    OfxMultiThreadSuiteV1 suite = host::multiThreadSuite();
    suite.multiThread = multiThread;
    suite.multiThreadNumCPUs = multiThreadNumCPUs;
    return suite;
  }
};

// Whether an effect on a host of that name and suite fills a frame with black on the host's own threads.
bool worksOnTheHostsThreads(const std::string& name, const OfxMultiThreadSuiteV1& suite)
{
  CountedThreads::started = CountedThreads::asked = 0;
  const ConfigFolder folder;
  StrictOptions options = pluginOptions(folder, "cpu");
  options.traits.name = name;
  options.traits.replacedSuites[{kOfxMultiThreadSuite, 1}] = &suite;
  StrictHost host(MORVELLAN_BUNDLE, options);
  host::InstanceSettings settings;
  settings.sourceConnected = false;
  host::EffectInstance& effect = host.create(settings);
  const host::Frame output = outputLike(frameOf(40, 30));
  EXPECT_EQ(effect.render(0.0, output), kOfxStatOK) << name;
  for (int y = 0; y < 30; ++y)
    for (const float value : output.row(y))
      EXPECT_EQ(value, 0.0F) << name;
  EXPECT_EQ(CountedThreads::started, CountedThreads::asked) << name;
  return CountedThreads::started == 1;
}

TEST(Threads, OfTheHostServe)
{
  const OfxMultiThreadSuiteV1 suite = CountedThreads::table();
  EXPECT_TRUE(worksOnTheHostsThreads("fr.inria.Natron", suite));
  EXPECT_TRUE(worksOnTheHostsThreads("DaVinciResolv", suite));
}

TEST(Threads, OfTwoHostsAreNotTrusted)
{
  const OfxMultiThreadSuiteV1 suite = CountedThreads::table();
  EXPECT_FALSE(worksOnTheHostsThreads("DaVinciResolve", suite));
  EXPECT_FALSE(worksOnTheHostsThreads("DaVinciResolveStudio", suite));
  // Its mutexes alone are replaced.
  EXPECT_TRUE(worksOnTheHostsThreads("com.sony.Catalyst.Edit", suite));
}

TEST(Threads, AnIncompleteSuiteIsReplaced)
{
  OfxMultiThreadSuiteV1 suite = CountedThreads::table();
  suite.multiThreadIsSpawnedThread = nullptr;
  EXPECT_FALSE(worksOnTheHostsThreads("fr.inria.Natron", suite));
  suite = CountedThreads::table();
  suite.mutexCreate = nullptr;
  EXPECT_TRUE(worksOnTheHostsThreads("fr.inria.Natron", suite));
}

}  // namespace
}  // namespace morvellan::test
