// What the factory does at load and in describing that a host cannot see from outside: the order of its calls, the
// repair of the multi-thread suite, and what it keeps of the host.
#include "entry/morvellan_plugin_factory.h"

#include <gmock/gmock.h>

#include "entry/local_multi_thread.h"
#include "ofx/ofxNatron.h"
#include "tests/entry/fake_host.h"

namespace
{

using testing::ElementsAre;

class Factory : public testing::Test
{
protected:
  ~Factory() override
  {
    send(kOfxActionUnload, nullptr);
    fake::multiThreadSuite = {};
  }

  OfxStatus send(const char* action, const void* handle)
  {
    return morvellan::pluginFactory().mainEntry()(action, handle, nullptr, nullptr);
  }

  /// The suite in use after a load by a host of that name.
  const OfxMultiThreadSuiteV1* suiteOn(const std::string& host)
  {
    send(kOfxActionUnload, nullptr);
    host_.properties.values[kOfxPropName] = {host};
    EXPECT_EQ(send(kOfxActionLoad, nullptr), kOfxStatOK);
    return OFX::suites().multiThread;
  }

  fake::Host host_;
  fake::Effect effect_;
};

TEST_F(Factory, DescribesInAFixedOrder)
{
  ASSERT_EQ(send(kOfxActionLoad, nullptr), kOfxStatOK);
  ASSERT_EQ(send(kOfxActionDescribe, effect_.handle()), kOfxStatOK);
  EXPECT_THAT(effect_.properties.written,
              ElementsAre(kOfxPropLabel, kOfxImageEffectPluginPropGrouping, kOfxPropPluginDescription,
                          kOfxImageEffectPropSupportedContexts, kOfxImageEffectPropSupportedContexts,
                          kOfxImageEffectPropSupportedPixelDepths, kOfxImageEffectPluginRenderThreadSafety,
                          kOfxImageEffectPluginPropHostFrameThreading, kOfxImageEffectPropSupportsMultiResolution,
                          kOfxImageEffectPropSupportsTiles, kOfxImageEffectPluginPropFieldRenderTwiceAlways,
                          kOfxImageEffectPropSupportsMultipleClipPARs, kOfxImageEffectPropSupportsMultipleClipDepths));
}

TEST_F(Factory, LatchesWhetherTheHostIsNatron)
{
  for (const int isNatron : {1, 0})
  {
    send(kOfxActionUnload, nullptr);
    host_.properties.values[kNatronOfxHostIsNatron] = {isNatron};
    ASSERT_EQ(send(kOfxActionLoad, nullptr), kOfxStatOK);
    ASSERT_EQ(send(kOfxActionDescribe, effect_.handle()), kOfxStatOK);
    EXPECT_EQ(morvellan::hostIsNatron(), isNatron == 1);
  }
}

TEST_F(Factory, RepairsTheMultiThreadSuiteAtLoad)
{
  using namespace OFX::MultiThread;
  fake::multiThreadSuite = localSuite();  // complete
  EXPECT_EQ(suiteOn("fr.inria.Natron"), &fake::multiThreadSuite);
  EXPECT_EQ(suiteOn("DaVinciResolveLite"), &localSuite());
  EXPECT_EQ(suiteOn("com.sony.Catalyst.Edit"), &mixedSuite());
  fake::multiThreadSuite.multiThreadIndex = nullptr;
  EXPECT_EQ(suiteOn("fr.inria.Natron"), &localSuite());
  fake::multiThreadSuite = localSuite();
  fake::multiThreadSuite.mutexTryLock = nullptr;
  EXPECT_EQ(suiteOn("fr.inria.Natron"), &mixedSuite());
}

}  // namespace
