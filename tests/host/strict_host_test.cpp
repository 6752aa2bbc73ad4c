// The strict host holds an effect that behaves to be clean, and catches each misuse that the small effect can commit.
#include "tests/host/strict_host.h"

#include <gmock/gmock.h>

#include "host/action_scope.h"
#include "host/suites.h"

namespace morvellan::test
{
namespace
{

using host::Components;
using host::Frame;
using host::ParamValue;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

StrictOptions misusing(const std::string& misuse)
{
  StrictOptions options;
  options.environment["BAD_PLUGIN"] = misuse;
  return options;
}

// Everything that a host does with an effect, once.
void liveThrough(StrictHost& host, int rowPadding = 0)
{
  host::EffectInstance& instance = host.create();
  Frame source({.bounds = {0, 0, 8, 4}, .components = Components::Rgba, .rowPadding = rowPadding, .guarded = true});
  source.fill(0.25F);
  instance.clip("Source").setSource(source);
  instance.edit("Bypass", true);
  instance.edit("Gain", 1.0);
  instance.regionOfDefinition(0.0);
  instance.regionsOfInterest(0.0, {0, 0, 8, 4});
  instance.framesNeeded(0.0);
  instance.isIdentity(0.0);
  instance.beginSequence({0.0, 0.0}, 1.0);
  instance.render(0.0, outputLike(source));
  instance.endSequence({0.0, 0.0}, 1.0);
  host.destroy(instance);
  host.plugin().unload();
}

TEST(StrictHost, FindsNothingInAnEffectThatBehaves)
{
  StrictHost host(BAD_PLUGIN_BUNDLE);
  liveThrough(host);
  EXPECT_TRUE(nothingMisused(host));
}

TEST(StrictHost, RendersThroughTheEffect)
{
  StrictHost host(BAD_PLUGIN_BUNDLE);
  host::EffectInstance& instance = host.create({.project = {{"Gain", 2.0}}});
  const Frame source = rampOf(5, 3);
  const Frame result = renderFrame(instance, source);
  for (int y = 0; y < 3; ++y)
  {
    for (std::size_t i = 0; i < 20; ++i)
    {
      EXPECT_EQ(result.row(y)[i], source.row(y)[i] * 2.0F);
    }
  }
}

TEST(StrictHost, RowsMayBePaddedOrLieTopFirst)
{
  StrictHost host(BAD_PLUGIN_BUNDLE);
  host::EffectInstance& instance = host.create({.project = {{"Gain", 3.0}}});
  const Frame packed = rampOf(4, 3);
  for (const bool topDown : {false, true})
  {
    Frame source({.bounds = {0, 0, 4, 3}, .rowPadding = 24, .topDown = topDown, .guarded = true});
    for (int y = 0; y < 3; ++y)
    {
      std::ranges::copy(packed.row(y), source.row(y).begin());
    }
    EXPECT_EQ(greatestDifference(renderFrame(instance, source), renderFrame(instance, packed)), 0.0F);
  }
}

TEST(StrictHost, LogsWritesWithTheirEditBlocks)
{
  StrictHost host(BAD_PLUGIN_BUNDLE);
  host::EffectInstance& instance = host.create({.project = {{"Gain", 2.0}}});
  instance.edit("Bypass", true);
  ASSERT_EQ(host.writes().size(), 1U);
  const host::ParameterWrite write = host.writes()[0];
  EXPECT_EQ(write.parameter, "Gain");
  EXPECT_EQ(write.before, ParamValue(2.0));
  EXPECT_EQ(write.after, ParamValue(1.0));
  EXPECT_EQ(write.editBlock, "Gain");
  ASSERT_EQ(host.propertyWrites().size(), 1U);
  EXPECT_EQ(host.propertyWrites()[0].property, kOfxParamPropSecret);
  EXPECT_TRUE(instance.params().at("Gain").isSecret());
  host.clearLog();
  EXPECT_THAT(host.writes(), IsEmpty());
}

TEST(StrictHost, CollectsMessages)
{
  StrictHost host(BAD_PLUGIN_BUNDLE);
  host::EffectInstance& instance = host.create();
  instance.press("About");
  ASSERT_EQ(host.messages().size(), 1U);
  EXPECT_THAT(host.messages()[0].text, HasSubstr("Gain : device "));
  EXPECT_EQ(host.messages()[0].type, kOfxMessageMessage);
  instance.edit("Mode", 1);
  const Frame source = rampOf(2, 2);
  instance.clip("Source").setSource(source);
  EXPECT_EQ(instance.render(0.0, outputLike(source)), kOfxStatFailed);
  ASSERT_EQ(host.persistentMessages().size(), 1U);
  EXPECT_EQ(host.persistentMessages()[0].text, "Gain : told to fail");
}

TEST(StrictHost, InterpolatesKeysAndHoldsWholeNumbers)
{
  StrictHost host(BAD_PLUGIN_BUNDLE);
  host::EffectInstance& instance = host.create();
  host::Param& gain = instance.params().at("Gain");
  gain.setKey(0.0, 1.0);
  gain.setKey(10.0, 3.0);
  EXPECT_EQ(gain.valueAt(-1.0), ParamValue(1.0));
  EXPECT_EQ(gain.valueAt(5.0), ParamValue(2.0));
  EXPECT_EQ(gain.valueAt(11.0), ParamValue(3.0));
  host::Param& mode = instance.params().at("Mode");
  mode.setKey(0.0, 0);
  mode.setKey(10.0, 2);
  EXPECT_EQ(mode.valueAt(9.0), ParamValue(0));
  // A read without a time means the time of the render.
  const Frame source = rampOf(4, 4);
  const Frame result = renderFrame(instance, source, 5.0);
  EXPECT_EQ(result.row(3)[15], source.row(3)[15] * 2.0F);
}

TEST(StrictHost, RefusesEditsThatNoPersonCouldMake)
{
  StrictHost host(BAD_PLUGIN_BUNDLE);
  host::EffectInstance& instance = host.create();
  EXPECT_THROW(instance.edit("Gain", 5.0), std::invalid_argument);
  EXPECT_THROW(instance.edit("Mode", 3), std::invalid_argument);
  EXPECT_THROW(instance.edit("Nobody", 1.0), std::out_of_range);
  EXPECT_THROW(instance.press("Gain"), std::invalid_argument);
}

TEST(StrictHost, WithholdsSuitesAndRefusesProperties)
{
  StrictOptions options;
  options.traits.withheldSuites.insert({kOfxParameterSuite, 1});
  EXPECT_THROW(StrictHost(BAD_PLUGIN_BUNDLE, options), host::LoadError);

  StrictOptions refusing;
  refusing.traits.refusedProperties.insert(kOfxPropLabel);
  StrictHost host(BAD_PLUGIN_BUNDLE, refusing);
  // The label is refused without a word of misuse; that the effect then has none is the description's fault.
  EXPECT_THAT(host.takeViolations(), ElementsAre(HasSubstr("has no label")));
}

TEST(StrictHost, OffersWrongImages)
{
  StrictHost host(BAD_PLUGIN_BUNDLE);
  host::EffectInstance& instance = host.create();
  const Frame source = rampOf(4, 4);
  instance.clip("Source").setSource([](double) { return std::nullopt; });
  EXPECT_EQ(instance.render(0.0, outputLike(source)), kOfxStatFailed);
  host.takeViolations();  // the effect keeps the output image here
  instance.clip("Source").setSource(source);
  EXPECT_EQ(instance.render(0.0, std::nullopt), kOfxStatFailed);
  host.takeViolations();
  instance.clip("Source").setConnected(false);
  EXPECT_EQ(instance.render(0.0, outputLike(source)), kOfxStatFailed);
  EXPECT_THAT(host.takeViolations(), Contains(HasSubstr("is not connected")));
}

TEST(StrictHost, ImagesMayLie)
{
  StrictHost host(BAD_PLUGIN_BUNDLE);
  host::EffectInstance& instance = host.create();
  host::Clip& clip = instance.clip("Source");
  clip.setSource(rampOf(4, 4));
  clip.claims = {.nullData = true,
                 .bounds = OfxRectI{1, 2, 1, 2},
                 .rowBytes = -48,
                 .components = Components::Alpha,
                 .depth = host::Depth::Half,
                 .renderScale = OfxPointD{0.5, 0.5}};
  const host::ActionScope scope(kOfxImageEffectActionRender, &instance, 0.0);
  OfxPropertySetHandle handle = nullptr;
  ASSERT_EQ(host::imageEffectSuite().clipGetImage(clip.handle(), 0.0, nullptr, &handle), kOfxStatOK);
  const host::PropertySet& image = *host::PropertySet::living(handle);
  EXPECT_EQ(image.getPointer(kOfxImagePropData), nullptr);
  EXPECT_EQ(image.getInt(kOfxImagePropBounds, 1), 2);
  EXPECT_EQ(image.getInt(kOfxImagePropRowBytes), -48);
  EXPECT_EQ(image.getString(kOfxImageEffectPropComponents), kOfxImageComponentAlpha);
  EXPECT_EQ(image.getString(kOfxImageEffectPropPixelDepth), kOfxBitDepthHalf);
  EXPECT_EQ(image.getDouble(kOfxImageEffectPropRenderScale, 1), 0.5);
  EXPECT_EQ(host::imageEffectSuite().clipReleaseImage(handle), kOfxStatOK);
}

TEST(StrictHost, AnswersQuestionsAsTold)
{
  StrictOptions options;
  options.answer = [](const host::Message&) { return kOfxStatReplyYes; };
  StrictHost host(BAD_PLUGIN_BUNDLE, options);
  host::EffectInstance& instance = host.create();
  const host::ActionScope scope(kOfxActionInstanceChanged, &instance, 0.0);
  EXPECT_EQ(host::messageSuiteV2().message(instance.handle(), kOfxMessageQuestion, "id", "%d of %s", 3, "four"),
            kOfxStatReplyYes);
  ASSERT_EQ(host.messages().size(), 1U);
  EXPECT_EQ(host.messages()[0].text, "3 of four");
  EXPECT_EQ(host.messages()[0].id, "id");
}

TEST(StrictHost, RendersInstancesTogether)
{
  StrictHost host(BAD_PLUGIN_BUNDLE);
  std::vector<host::EffectInstance*> instances;
  for (const double gain : {0.5, 2.0})
  {
    instances.push_back(&host.create({.project = {{"Gain", gain}}}));
    instances.back()->clip("Source").setSource(rampOf(64, 64));
  }
  std::vector<std::function<void()>> jobs;
  std::vector<Frame> results(8, frameOf(64, 64));
  for (std::size_t i = 0; i < results.size(); ++i)
  {
    results[i] = frameOf(64, 64);
    jobs.emplace_back(
        [&, i]
        {
          for (int frame = 0; frame < 20; ++frame)
          {
            instances[i % 2]->render(static_cast<double>(i) * 100 + frame, results[i]);
          }
        });
  }
  runTogether(jobs);
  const Frame source = rampOf(64, 64);
  for (std::size_t i = 0; i < results.size(); ++i)
  {
    EXPECT_EQ(results[i].row(63)[255], source.row(63)[255] * (i % 2 == 0 ? 0.5F : 2.0F));
  }
}

struct Misuse
{
  const char* name;
  const char* report;  // a part of what the host says

  friend void PrintTo(const Misuse& self, std::ostream* out) { *out << self.name; }
};

class MisuseTest : public testing::TestWithParam<Misuse>
{
};

TEST_P(MisuseTest, IsCaught)
{
  std::vector<std::string> violations;
  {
    StrictHost host(BAD_PLUGIN_BUNDLE, misusing(GetParam().name));
    liveThrough(host, GetParam().name == std::string("write into the padding") ? 16 : 0);
    violations = host.takeViolations();
  }
  EXPECT_THAT(violations, Contains(HasSubstr(GetParam().report)));
}

INSTANTIATE_TEST_SUITE_P(
    All, MisuseTest,
    testing::Values(
        Misuse{"fetch with a foreign handle", "the handle is not the host's"},
        Misuse{"unpublished property", "no such property is published"},
        Misuse{"property of another set", "does not have this property"},
        Misuse{"wrong property type", "its type is string, not int"},
        Misuse{"index out of dimension", "values 1 to 1 of 1"},
        Misuse{"gap in values", "value 5 is set before value 1"}, Misuse{"read-only property", "read-only here"},
        Misuse{"null text", "a text is null"}, Misuse{"null property set", "the property set handle is null"},
        Misuse{"invented property set", "the property set handle is not alive"},
        Misuse{"wrong depth", "the pixel depth OfxBitDepthTwelve does not exist"},
        Misuse{"clip defined too early", "clipDefine is not allowed in this action"},
        Misuse{"parameter set too early", "parameters are described in context"},
        Misuse{"effect property as a parameter set", "the parameter set handle is not alive"},
        Misuse{"unknown parent", "the parent Nobody is no group"},
        Misuse{"unknown page child", "the child Nobody is no parameter"},
        Misuse{"child twice on a page", "the child Group stands on it twice"},
        Misuse{"default out of range", "Gain must be at most 4, not 9"},
        Misuse{"range upside down", "its range is upside down"}, Misuse{"name taken", "the name is taken"},
        Misuse{"unknown parameter type", "unknown type OfxParamTypeNothing"},
        Misuse{"choice without options", "a Choice without options"},
        Misuse{"digits of a button", "does not have this property"},
        Misuse{"handle of a described parameter", "the set is a descriptor's"},
        Misuse{"unknown parameter", "no such parameter was described"},
        Misuse{"unknown clip", "no such clip was described"}, Misuse{"value of a button", "a PushButton has no value"},
        Misuse{"null place for a value", "a place for the answer is null"},
        Misuse{"value out of range", "Gain must be at most 4, not 4.5"},
        Misuse{"choice out of range", "Mode has the options 0 to 2"},
        Misuse{"boolean that is neither", "Bypass must be 0 or 1"}, Misuse{"null text value", "the text is null"},
        Misuse{"open edit block", "the edit block Gain was not ended"},
        Misuse{"edit block ended twice", "no edit block is open"},
        Misuse{"image at creation", "clipGetImage(Source) is not allowed in this action"},
        Misuse{"new parameter on an instance", "the set is an instance's"},
        Misuse{"parent of an instance", "read-only here"}, Misuse{"message of no type", "unknown type OfxMessageShout"},
        Misuse{"persistent message without an effect", "the effect handle is null"},
        Misuse{"memory not freed", "1 blocks of memory were not freed"},
        Misuse{"foreign memory freed", "the memory is not the host's"},
        Misuse{"mutex not destroyed", "1 mutexes were not destroyed"},
        Misuse{"mutex unlocked unheld", "does not hold the mutex"},
        Misuse{"mutex destroyed twice", "the mutex handle is not alive"},
        Misuse{"null thread function", "the function is null"},
        Misuse{"parameter set in render", "paramSetValue(Gain) is not allowed in this action"},
        Misuse{"parameter hidden in render", "setting OfxParamPropSecret of Gain is not allowed"},
        Misuse{"write beside the pixels", "memory beside the pixels of the image of Output was written"},
        Misuse{"write into the padding", "memory beside the pixels of the image of Output was written"},
        Misuse{"write into the input", "the pixels of the image of Source were written"},
        Misuse{"image of another time", "without temporal access"},
        Misuse{"image not released", "an image of Source was not released"},
        Misuse{"image released twice", "of no living image"},
        Misuse{"image used after its release", "the property set handle is not alive"},
        Misuse{"answer that is no status", "the answer 77 is no status"},
        Misuse{"identity of no clip", "identity of the clip \"Nobody\""}));

TEST(StrictHost, NamesAMissingOutputClip)
{
  StrictHost host(BAD_PLUGIN_BUNDLE, misusing("no output clip"));
  EXPECT_THAT(host.takeViolations(), ElementsAre(HasSubstr("the clip Output is not defined")));
}

TEST(StrictHost, LoadErrorsSayWhatWasWrong)
{
  const auto failure = [](const std::string& bundle) -> std::string
  {
    try
    {
      StrictHost host(bundle);
    }
    catch (const host::LoadError& error)
    {
      return error.what();
    }
    return "";
  };
  EXPECT_THAT(failure("/nowhere/Nothing.ofx.bundle"), HasSubstr("there is no plug-in"));
  EXPECT_THAT(failure(std::string(MORVELLAN_SOURCE_DIR) + "/CMakeLists.txt"), HasSubstr("cannot be loaded"));
}

}  // namespace
}  // namespace morvellan::test
