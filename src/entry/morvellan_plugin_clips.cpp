// The fit of the resolution parameters to a newly connected clip, and the report on the clips.
#include <algorithm>
#include <cmath>

#include "entry/host_description.h"
#include "entry/morvellan_plugin.h"
#include "gpu/reports.h"
#include "ofx/ofxNatron.h"
#include "params/choices.h"

namespace morvellan
{

namespace
{

constexpr std::array sizeParameters{"SourceWidth", "SourceHeight", "SourceWidthOffset", "SourceHeightOffset",
                                    "TargetWidth", "TargetHeight", "TargetWidthOffset", "TargetHeightOffset"};

// The last preset of the list takes no part in the fit.
constexpr int lastFittedPreset = 34;
constexpr double aspectTolerance = 0.01;

// The integer part of a length. Regions may be without bounds; what no int holds fits no preset either.
int wholeOf(double length)
{
  constexpr double most = 1e9;
  return length > 0.0 ? static_cast<int>(std::min(length, most)) : 0;
}

// The choice whose preset has that size and, where one is given, that pixel aspect; Custom Size where none has.
int fittingChoice(params::Size size, std::optional<double> pixelAspect)
{
  const auto presets = params::resolutionPresets();
  for (int choice = params::firstPreset; choice <= lastFittedPreset; ++choice)
  {
    const params::ResolutionPreset& preset = presets[static_cast<std::size_t>(choice - params::firstPreset)];
    if (preset.size == size && (!pixelAspect || std::abs(preset.pixelAspect - *pixelAspect) <= aspectTolerance))
      return choice;
  }
  return params::customResolution;
}

}  // namespace

void MorvellanPlugin::changedClip(const OFX::ChangeArguments& arguments, const std::string& name)
{
  if (name == kOfxImageEffectSimpleSourceClipName && sourceClip_ && arguments.reason == OFX::ChangeReason::UserEdit &&
      parameters_->numberAt("SrcClipChanged", arguments.time) == 0.0)
    fitSizes(arguments.time);
  parameters_->setNumber("SrcClipChanged", 0.0);
}

// First to the clip, then to the project, whose size therefore stands where the two differ.
void MorvellanPlugin::fitSizes(double time)
{
  const auto apply = [this](params::Size size, int choice, bool showEnhancer)
  {
    for (const char* side : {"InResolution", "OutResolution"})
    {
      const OFX::EditBlock block(*this, side);
      parameters_->setNumber(side, choice);
    }
    for (const char* name : sizeParameters)
      parameters_->param(name).setHidden(choice != params::customResolution);
    parameters_->param("SpatialEnhancement").setHidden(!showEnhancer);
    parameters_->setNumber("SourceWidth", size.width);
    parameters_->setNumber("TargetWidth", size.width);
    parameters_->setNumber("SourceHeight", size.height);
    parameters_->setNumber("TargetHeight", size.height);
    params_.inResolutionChoice = choice;
    params_.outResolutionChoice = choice;
  };

  if (sourceClip_.isConnected())
  {
    const OfxRectD region = sourceClip_.regionOfDefinition(time);
    const double aspect = sourceClip_.pixelAspectRatio();
    const params::Size size{wholeOf(region.x2 - region.x1), wholeOf(region.y2 - region.y1)};
    apply(size, fittingChoice(size, aspect == 0.0 ? 1.0 : aspect), true);
  }
  const params::Size project{wholeOf(properties().getDouble(kOfxImageEffectPropProjectSize, 0)),
                             wholeOf(properties().getDouble(kOfxImageEffectPropProjectSize, 1))};
  const int choice = fittingChoice(project, std::nullopt);
  apply(project, choice, choice == params::customResolution);
}

namespace
{

gpu::ClipFacts factsOf(const OFX::Clip& clip, double time)
{
  if (!clip)
    return {};
  const OFX::PropertySet& properties = clip.properties();
  const auto text = [&](const char* name) { return properties.findString(name).value_or(""); };
  const OfxRectD region = clip.regionOfDefinition(time);
  gpu::ClipFacts facts{.available = true,
                       .components = text(kOfxImageEffectPropComponents),
                       .pixelDepth = text(kOfxImageEffectPropPixelDepth),
                       .premultiplication = text(kOfxImageEffectPropPreMultiplication),
                       .fieldOrder = text(kOfxImageClipPropFieldOrder),
                       .connected = clip.isConnected(),
                       .continuousSamples = properties.findInt(kOfxImageClipPropContinuousSamples).value_or(0) != 0,
                       .pixelAspectRatio = properties.findDouble(kOfxImagePropPixelAspectRatio).value_or(1.0),
                       .frameRate = properties.findDouble(kOfxImageEffectPropFrameRate).value_or(0.0),
                       .regionOfDefinition = {region.x1, region.y1, region.x2, region.y2}};
  // An extension; elsewhere the region says as much.
  facts.format = facts.regionOfDefinition;
  if (OFX::hostDescription() != nullptr && OFX::hostDescription()->isNatron)
    for (std::size_t i = 0; i < facts.format.size(); ++i)
      facts.format[i] =
          properties.findInt(kOfxImageClipPropFormat, static_cast<int>(i)).value_or(static_cast<int>(facts.format[i]));
  for (std::size_t i = 0; i < facts.frameRange.size(); ++i)
    facts.frameRange[i] = properties.findDouble(kOfxImageEffectPropFrameRange, static_cast<int>(i)).value_or(0.0);
  return facts;
}

}  // namespace

void MorvellanPlugin::showClipReport(double time, const OfxPointD& renderScale)
{
  showMessage(OFX::MessageLevel::Message, gpu::clipInfoText(factsOf(sourceClip_, time), factsOf(outputClip_, time),
                                                            {renderScale.x, renderScale.y}));
}

}  // namespace morvellan
