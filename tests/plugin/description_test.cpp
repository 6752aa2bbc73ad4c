// The effect as it describes itself: identity, contexts, clips and the page.
#include <gmock/gmock.h>

#include "ofx/ofxNatron.h"
#include "tests/plugin/plugin_host.h"

namespace morvellan::test
{
namespace
{

using host::Param;
using host::PropertySet;
using testing::ElementsAre;
using testing::HasSubstr;

class Description : public PluginTest
{
protected:
  const host::EffectDescriptor& effect_ = host_.descriptor();
  const PropertySet& properties_ = effect_.properties();

  const Param& param(const char* name) const { return effect_.params().at(name); }
};

TEST_F(Description, OnePluginOfThatIdentity)
{
  const OfxPlugin& record = host_.plugin().record();
  EXPECT_EQ(host_.plugin().pluginCount(), 1);
  EXPECT_STREQ(record.pluginApi, "OfxImageEffectPluginAPI");
  EXPECT_EQ(record.apiVersion, 1);
  EXPECT_STREQ(record.pluginIdentifier, "com.morvellan.MorvellanNatron");
  EXPECT_EQ(record.pluginVersionMajor, 3u);
  EXPECT_EQ(record.pluginVersionMinor, 7u);
  EXPECT_EQ(host_.plugin().recordAt(1), nullptr);
  EXPECT_EQ(host_.plugin().recordAt(-1), nullptr);
  EXPECT_EQ(host_.plugin().recordAt(0), &record);
}

TEST_F(Description, Texts)
{
  EXPECT_EQ(properties_.getString(kOfxPropLabel), "Morvellan_Natron_3_7");
  EXPECT_EQ(properties_.getString(kOfxImageEffectPluginPropGrouping), "Morvellan");
  const std::string text = properties_.getString(kOfxPropPluginDescription);
  EXPECT_THAT(text, HasSubstr("3.7"));
  EXPECT_THAT(text, HasSubstr("Film Lab Processing, Cine Camera and Print Film Stocks, Halation, Film Grain, Resizing, "
                              "Textures, Details."));
  EXPECT_THAT(text,
              HasSubstr("Note : Morvellan requires nVidia Studio - or Game Ready - Driver ver. 527.41, or higher"));
}

TEST_F(Description, ContextsDepthAndThreading)
{
  EXPECT_THAT(properties_.getStrings(kOfxImageEffectPropSupportedContexts),
              ElementsAre("OfxImageEffectContextFilter", "OfxImageEffectContextGeneral"));
  EXPECT_THAT(properties_.getStrings(kOfxImageEffectPropSupportedPixelDepths), ElementsAre("OfxBitDepthFloat"));
  EXPECT_EQ(properties_.getString(kOfxImageEffectPluginRenderThreadSafety), "OfxImageEffectRenderInstanceSafe");
  EXPECT_EQ(properties_.getInt(kOfxImageEffectPluginPropHostFrameThreading), 1);
  EXPECT_EQ(properties_.getInt(kOfxImageEffectPropSupportsMultiResolution), 0);
  EXPECT_EQ(properties_.getInt(kOfxImageEffectPropSupportsTiles), 0);
  EXPECT_EQ(properties_.getInt(kOfxImageEffectPluginPropFieldRenderTwiceAlways), 0);
  EXPECT_EQ(properties_.getInt(kOfxImageEffectPropSupportsMultipleClipPARs), 0);
  EXPECT_EQ(properties_.getInt(kOfxImageEffectPropSupportsMultipleClipDepths), 0);
  EXPECT_EQ(properties_.getPointer(kOfxImageEffectPluginPropOverlayInteractV1), nullptr);
}

TEST_F(Description, TwoClips)
{
  ASSERT_EQ(effect_.clips().size(), 2u);
  const PropertySet& source = effect_.clip("Source").properties();
  EXPECT_THAT(source.getStrings(kOfxImageEffectPropSupportedComponents),
              ElementsAre("OfxImageComponentRGBA", "OfxImageComponentRGB"));
  EXPECT_EQ(source.getInt(kOfxImageEffectPropTemporalClipAccess), 0);
  EXPECT_EQ(source.getInt(kOfxImageEffectPropSupportsTiles), 0);
  EXPECT_EQ(source.getInt(kOfxImageClipPropIsMask), 0);
  EXPECT_EQ(source.getInt(kOfxImageClipPropOptional), 0);
  const PropertySet& output = effect_.clip("Output").properties();
  EXPECT_THAT(output.getStrings(kOfxImageEffectPropSupportedComponents),
              ElementsAre("OfxImageComponentRGBA", "OfxImageComponentRGB"));
  EXPECT_EQ(output.getInt(kOfxImageEffectPropSupportsTiles), 0);
}

TEST_F(Description, ThePageHoldsEverythingFromInputToTheHiddenMark)
{
  const std::vector<std::string> children = param("Controls").properties().getStrings(kOfxParamPropPageChild);
  EXPECT_EQ(children.size() + 1, effect_.params().params().size());
  EXPECT_EQ(children.front(), "Input");
  EXPECT_EQ(children.back(), "SrcClipChanged");
  for (std::size_t i = 0; i < children.size(); ++i)
    EXPECT_EQ(effect_.params().params()[i + 1]->name(), children[i]);
}

TEST_F(Description, ADouble)
{
  const PropertySet& exposure = param("Exposure").properties();
  EXPECT_EQ(exposure.getString(kOfxPropLabel), "Exposure");
  EXPECT_EQ(exposure.getString(kOfxParamPropHint), "Input Clip's | Camera Exposure. To Bypass, set to Default : 0.0");
  EXPECT_EQ(exposure.getDouble(kOfxParamPropDefault), 0.0);
  EXPECT_EQ(exposure.getDouble(kOfxParamPropMin), -1.0);
  EXPECT_EQ(exposure.getDouble(kOfxParamPropMax), 1.0);
  EXPECT_EQ(exposure.getDouble(kOfxParamPropDisplayMin), -1.0);
  EXPECT_EQ(exposure.getDouble(kOfxParamPropDisplayMax), 1.0);
  EXPECT_EQ(exposure.getInt(kOfxParamPropDigits), 5);
  EXPECT_EQ(exposure.getDouble(kOfxParamPropIncrement), 0.001);
  EXPECT_EQ(exposure.getString(kOfxParamPropParent), "Input");
  EXPECT_FALSE(param("Exposure").isSecret());
}

TEST_F(Description, AnIntegerThatStartsHidden)
{
  const PropertySet& width = param("SourceWidth").properties();
  EXPECT_EQ(width.getInt(kOfxParamPropDefault), 1920);
  EXPECT_EQ(width.getInt(kOfxParamPropMin), 10);
  EXPECT_EQ(width.getInt(kOfxParamPropMax), 12288);
  EXPECT_EQ(width.getInt(kOfxParamPropDisplayMax), 12288);
  EXPECT_TRUE(param("SourceWidth").isSecret());
  EXPECT_FALSE(param("SourceWidth").isEnabled());
  EXPECT_EQ(width.getString(kOfxParamPropParent), "ResizeTextures");
}

TEST_F(Description, ChoicesAndTheirAnimation)
{
  const PropertySet& gamut = param("InputGamut").properties();
  const std::vector<std::string> options = gamut.getStrings(kOfxParamPropChoiceOption);
  ASSERT_EQ(options.size(), 49u);
  EXPECT_EQ(options[0], "Linear Rec.709|sRGB");
  EXPECT_EQ(gamut.getStrings(kOfxParamPropChoiceLabelOption).size(), 49u);
  EXPECT_EQ(gamut.getInt(kOfxParamPropAnimates), 1);
  for (const char* name : {"GrainDepth", "NatronGPU", "SrcClipChanged"})
    EXPECT_EQ(param(name).properties().getInt(kOfxParamPropAnimates), 0) << name;
  EXPECT_EQ(param("GrainDepth").properties().getInt(kOfxParamPropDefault), 3);
}

TEST_F(Description, ASwatchHasADisplayRangeOfThree)
{
  const PropertySet& swatch = param("SoupToeSwatch").properties();
  EXPECT_EQ(param("SoupToeSwatch").kind(), host::ParamKind::Rgb);
  for (int i = 0; i < 3; ++i)
  {
    EXPECT_GT(swatch.getDouble(kOfxParamPropDisplayMax, i), swatch.getDouble(kOfxParamPropDisplayMin, i));
    EXPECT_EQ(swatch.getDouble(kOfxParamPropDefault, i), 0.5);
  }
}

TEST_F(Description, GroupsButtonsAndTheMark)
{
  EXPECT_EQ(param("Input").properties().getInt(kOfxParamPropGroupOpen), 1);
  EXPECT_EQ(param("Halation").properties().getInt(kOfxParamPropGroupOpen), 0);
  EXPECT_EQ(param("Halation").properties().getString(kOfxParamPropParent), "Input");
  EXPECT_EQ(param("About").kind(), host::ParamKind::PushButton);
  EXPECT_EQ(param("About").properties().getInt(kOfxParamPropLayoutHint), 2);
  EXPECT_EQ(param("ResetPrintDisplay").properties().getInt(kOfxParamPropLayoutHint), 1);
  EXPECT_EQ(param("SrcClipChanged").properties().getInt(kOfxParamPropEvaluateOnChange), 0);
  EXPECT_EQ(param("Exposure").properties().getInt(kOfxParamPropEvaluateOnChange), 1);
}

TEST(DescriptionOfDevices, SoftwareDevicesFillTheList)
{
  const ConfigFolder folder;
  StrictHost host(MORVELLAN_BUNDLE, pluginOptions(folder, "cpu:2"));
  const std::vector<std::string> options =
      host.descriptor().params().at("NatronGPU").properties().getStrings(kOfxParamPropChoiceOption);
  ASSERT_EQ(options.size(), 4u);
  EXPECT_THAT(options[0], HasSubstr("CPU, "));
  EXPECT_THAT(options[1], HasSubstr("CPU, "));
  EXPECT_EQ(options[2], "3rd GPU unavailable");
  EXPECT_EQ(options[3], "4th GPU unavailable");
}

TEST(DescriptionInContexts, TheGeneralContextIsTheSame)
{
  const ConfigFolder folder;
  StrictOptions options = pluginOptions(folder, "cpu");
  options.context = kOfxImageEffectContextGeneral;
  StrictHost host(MORVELLAN_BUNDLE, options);
  EXPECT_EQ(host.descriptor().clips().size(), 2u);
  EXPECT_GT(host.descriptor().params().params().size(), 500u);
}

TEST(DescriptionByHosts, AHostWithoutTheExtensionsIsServedToo)
{
  const ConfigFolder folder;
  StrictOptions options = pluginOptions(folder, "cpu");
  options.traits.natronExtensions = false;
  options.traits.refusedProperties = {kOfxParamPropLayoutHint, kOfxParamPropChoiceLabelOption};
  StrictHost host(MORVELLAN_BUNDLE, options);
  host.create();
  EXPECT_TRUE(nothingMisused(host));
}

}  // namespace
}  // namespace morvellan::test
