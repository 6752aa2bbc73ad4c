// The property tables, after the published interface.
#include "host/property_tables.h"

#include <cfloat>
#include <climits>

#include "host/frame.h"
#include "ofx/ofxImageEffect.h"
#include "ofx/ofxParam.h"
#include "ofx/ofxParametricParam.h"

namespace morvellan::host
{
namespace
{

using Ints = std::vector<int>;
using Doubles = std::vector<double>;
using Strings = std::deque<std::string>;
using Pointers = std::vector<void*>;

constexpr Access readOnly = Access::ReadOnly;
constexpr Access writable = Access::Writable;

void defineLabels(PropertySet& set, const std::string& name)
{
  set.define(kOfxPropLabel, writable, Strings{name});
  set.define(kOfxPropShortLabel, writable, Strings{name});
  set.define(kOfxPropLongLabel, writable, Strings{name});
}

void defineRange(PropertySet& set, ParamKind kind)
{
  const KindFacts& facts = factsOf(kind);
  const auto dimension = static_cast<std::size_t>(facts.dimension);
  const auto both = [&](const char* lower, const char* upper)
  {
    if (facts.family == ValueFamily::Int)
    {
      set.define(lower, writable, Ints(dimension, INT_MIN), facts.dimension);
      set.define(upper, writable, Ints(dimension, INT_MAX), facts.dimension);
    }
    else
    {
      set.define(lower, writable, Doubles(dimension, -DBL_MAX), facts.dimension);
      set.define(upper, writable, Doubles(dimension, DBL_MAX), facts.dimension);
    }
  };
  both(kOfxParamPropMin, kOfxParamPropMax);
  both(kOfxParamPropDisplayMin, kOfxParamPropDisplayMax);
  if (facts.dimension > 1)
  {
    set.define(kOfxParamPropDimensionLabel, writable, Strings{"x"});
  }
  if (facts.family == ValueFamily::Double)
  {
    set.define(kOfxParamPropIncrement, writable, Doubles{1.0});
    set.define(kOfxParamPropDigits, writable, Ints{2});
    set.define(kOfxParamPropDoubleType, writable, Strings{kOfxParamDoubleTypePlain});
    set.define(kOfxParamPropDefaultCoordinateSystem, writable, Strings{kOfxParamCoordinatesCanonical});
    set.define(kOfxParamPropShowTimeMarker, writable, Ints{0});
    set.define(kOfxParamPropUseHostOverlayHandle, writable, Ints{0});
    set.define(kOfxParamPropHasHostOverlayHandle, readOnly, Ints{0});
  }
}

void defineValue(PropertySet& set, ParamKind kind)
{
  const KindFacts& facts = factsOf(kind);
  const auto dimension = static_cast<std::size_t>(facts.dimension);
  switch (facts.family)
  {
  case ValueFamily::Int:
    set.define(kOfxParamPropDefault, writable, Ints(dimension, 0));
    break;
  case ValueFamily::Double:
    set.define(kOfxParamPropDefault, writable, Doubles(dimension, 0.0));
    break;
  case ValueFamily::String:
    set.define(kOfxParamPropDefault, writable, Strings{""});
    break;
  case ValueFamily::None:
    return;
  }
  set.define(kOfxParamPropAnimates, writable, Ints{facts.family == ValueFamily::String ? 0 : 1});
  set.define(kOfxParamPropIsAnimating, readOnly, Ints{0});
  set.define(kOfxParamPropIsAutoKeying, readOnly, Ints{0});
  set.define(kOfxParamPropPersistent, writable, Ints{1});
  set.define(kOfxParamPropEvaluateOnChange, writable, Ints{1});
  set.define(kOfxParamPropPluginMayWrite, writable, Ints{0});
  set.define(kOfxParamPropCacheInvalidation, writable, Strings{kOfxParamInvalidateValueChange});
  set.define(kOfxParamPropCanUndo, writable, Ints{1});
}

void defineKindProperties(PropertySet& set, ParamKind kind)
{
  switch (kind)
  {
  case ParamKind::Choice:
    set.define(kOfxParamPropChoiceOption, writable, Strings{});
    set.define(kOfxParamPropChoiceLabelOption, writable, Strings{});
    set.define(kNatronOfxParamPropChoiceCascading, writable, Ints{0});
    break;
  case ParamKind::StrChoice:
    set.define(kOfxParamPropChoiceOption, writable, Strings{});
    set.define(kOfxParamPropChoiceEnum, writable, Strings{});
    break;
  case ParamKind::String:
    set.define(kOfxParamPropStringMode, writable, Strings{kOfxParamStringIsSingleLine});
    set.define(kOfxParamPropStringFilePathExists, writable, Ints{1});
    break;
  case ParamKind::Custom:
    set.define(kOfxParamPropCustomInterpCallbackV1, writable, Pointers{nullptr});
    break;
  case ParamKind::Group:
    set.define(kOfxParamPropGroupOpen, writable, Ints{1});
    break;
  case ParamKind::Page:
    set.define(kOfxParamPropPageChild, writable, Strings{});
    break;
  case ParamKind::Boolean:
  case ParamKind::PushButton:
    break;
  default:
    defineRange(set, kind);
  }
}

}  // namespace

void defineHostProperties(PropertySet& set, const HostTraits& traits)
{
  set.define(kOfxPropType, readOnly, Strings{kOfxTypeImageEffectHost});
  set.define(kOfxPropName, readOnly, Strings{traits.name});
  set.define(kOfxPropLabel, readOnly, Strings{traits.label});
  set.define(kOfxPropVersion, readOnly, traits.version);
  set.define(kOfxPropVersionLabel, readOnly, Strings{traits.label});
  set.define(kOfxPropAPIVersion, readOnly, traits.apiVersion);
  set.define(kOfxImageEffectHostPropIsBackground, readOnly, Ints{traits.background ? 1 : 0});
  set.define(kOfxImageEffectPropSupportsOverlays, readOnly, Ints{0});
  set.define(kOfxImageEffectPropSupportsMultiResolution, readOnly, Ints{1});
  set.define(kOfxImageEffectPropSupportsTiles, readOnly, Ints{1});
  set.define(kOfxImageEffectPropTemporalClipAccess, readOnly, Ints{1});
  set.define(kOfxImageEffectPropSupportedComponents, readOnly,
             Strings{kOfxImageComponentRGBA, kOfxImageComponentAlpha, kOfxImageComponentRGB});
  set.define(kOfxImageEffectPropSupportedPixelDepths, readOnly,
             Strings{kOfxBitDepthFloat, kOfxBitDepthShort, kOfxBitDepthByte});
  set.define(kOfxImageEffectPropSupportedContexts, readOnly,
             Strings{kOfxImageEffectContextFilter, kOfxImageEffectContextGeneral, kOfxImageEffectContextGenerator});
  set.define(kOfxImageEffectPropSupportsMultipleClipDepths, readOnly, Ints{1});
  set.define(kOfxImageEffectPropSupportsMultipleClipPARs, readOnly, Ints{0});
  set.define(kOfxImageEffectPropSetableFrameRate, readOnly, Ints{0});
  set.define(kOfxImageEffectPropSetableFielding, readOnly, Ints{0});
  set.define(kOfxImageEffectInstancePropSequentialRender, readOnly, Ints{0});
  set.define(kOfxImageEffectPropRenderQualityDraft, readOnly, Ints{0});
  set.define(kOfxImageEffectHostPropNativeOrigin, readOnly, Strings{kOfxHostNativeOriginBottomLeft});
  set.define(kOfxParamHostPropSupportsCustomAnimation, readOnly, Ints{0});
  set.define(kOfxParamHostPropSupportsStringAnimation, readOnly, Ints{0});
  set.define(kOfxParamHostPropSupportsBooleanAnimation, readOnly, Ints{1});
  set.define(kOfxParamHostPropSupportsChoiceAnimation, readOnly, Ints{1});
  set.define(kOfxParamHostPropSupportsStrChoiceAnimation, readOnly, Ints{0});
  set.define(kOfxParamHostPropSupportsCustomInteract, readOnly, Ints{0});
  set.define(kOfxParamHostPropSupportsParametricAnimation, readOnly, Ints{0});
  set.define(kOfxParamHostPropMaxParameters, readOnly, Ints{-1});
  set.define(kOfxParamHostPropMaxPages, readOnly, Ints{0});
  set.define(kOfxParamHostPropPageRowColumnCount, readOnly, Ints{0, 0});
  set.define(kOfxPropHostOSHandle, readOnly, Pointers{nullptr});
  if (traits.natronExtensions)
  {
    set.define(kNatronOfxHostIsNatron, readOnly, Ints{1});
    set.define(kNatronOfxParamHostPropSupportsDynamicChoices, readOnly, Ints{1});
    set.define(kNatronOfxParamPropChoiceCascading, readOnly, Ints{1});
    set.define(kNatronOfxPropDescriptionIsMarkdown, readOnly, Ints{1});
  }
}

void defineEffectProperties(PropertySet& set, const std::string& bundle)
{
  defineLabels(set, "");
  set.define(kOfxPropType, readOnly, Strings{kOfxTypeImageEffect});
  set.define(kOfxPropVersion, writable, Ints{0});
  set.define(kOfxPropVersionLabel, writable, Strings{""});
  set.define(kOfxPropPluginDescription, writable, Strings{""});
  set.define(kOfxPropIcon, writable, Strings{"", ""});
  set.define(kOfxPluginPropFilePath, readOnly, Strings{bundle});
  set.define(kOfxImageEffectPropSupportedContexts, writable, Strings{});
  set.define(kOfxImageEffectPluginPropGrouping, writable, Strings{""});
  set.define(kOfxImageEffectPluginPropSingleInstance, writable, Ints{0});
  set.define(kOfxImageEffectPluginRenderThreadSafety, writable, Strings{kOfxImageEffectRenderInstanceSafe});
  set.define(kOfxImageEffectPluginPropHostFrameThreading, writable, Ints{0});
  set.define(kOfxImageEffectPluginPropOverlayInteractV1, writable, Pointers{nullptr});
  set.define(kOfxImageEffectPropSupportedPixelDepths, writable, Strings{});
  set.define(kOfxImageEffectPluginPropFieldRenderTwiceAlways, writable, Ints{1});
  set.define(kOfxImageEffectPropSupportsMultiResolution, writable, Ints{1});
  set.define(kOfxImageEffectPropSupportsTiles, writable, Ints{1});
  set.define(kOfxImageEffectPropTemporalClipAccess, writable, Ints{0});
  set.define(kOfxImageEffectPropSupportsMultipleClipDepths, writable, Ints{0});
  set.define(kOfxImageEffectPropSupportsMultipleClipPARs, writable, Ints{0});
  set.define(kOfxImageEffectPropClipPreferencesSlaveParam, writable, Strings{});
  set.define(kOfxImageEffectInstancePropSequentialRender, writable, Ints{0});
  set.define(kOfxImageEffectPropNoSpatialAwareness, writable, Strings{"false"});
  set.define(kNatronOfxPropDescriptionIsMarkdown, writable, Ints{0});
}

void defineEffectInstanceProperties(PropertySet& set, const PropertySet& described)
{
  set.copyFrom(described, {kOfxImageEffectPropSupportsTiles, kOfxImageEffectInstancePropSequentialRender});
  set.define(kOfxPropType, readOnly, Strings{kOfxTypeImageEffectInstance});
  set.define(kOfxImageEffectPropContext, readOnly, Strings{""});
  set.define(kOfxPropInstanceData, writable, Pointers{nullptr});
  set.define(kOfxImageEffectPropPluginHandle, readOnly, Pointers{nullptr});
  set.define(kOfxImageEffectPropProjectSize, readOnly, Doubles{0.0, 0.0});
  set.define(kOfxImageEffectPropProjectOffset, readOnly, Doubles{0.0, 0.0});
  set.define(kOfxImageEffectPropProjectExtent, readOnly, Doubles{0.0, 0.0});
  set.define(kOfxImageEffectPropProjectPixelAspectRatio, readOnly, Doubles{1.0});
  set.define(kOfxImageEffectInstancePropEffectDuration, readOnly, Doubles{1.0});
  set.define(kOfxImageEffectPropFrameRate, readOnly, Doubles{24.0});
  set.define(kOfxPropIsInteractive, readOnly, Ints{0});
}

void defineClipProperties(PropertySet& set, const std::string& name)
{
  defineLabels(set, name);
  set.define(kOfxPropType, readOnly, Strings{kOfxTypeClip});
  set.define(kOfxPropName, readOnly, Strings{name});
  set.define(kOfxImageEffectPropSupportedComponents, writable, Strings{});
  set.define(kOfxImageEffectPropTemporalClipAccess, writable, Ints{0});
  set.define(kOfxImageClipPropOptional, writable, Ints{0});
  set.define(kOfxImageClipPropFieldExtraction, writable, Strings{kOfxImageFieldDoubled});
  set.define(kOfxImageClipPropIsMask, writable, Ints{0});
  set.define(kOfxImageEffectPropSupportsTiles, writable, Ints{1});
}

void defineClipInstanceProperties(PropertySet& set, const PropertySet& described)
{
  set.copyFrom(described, {});
  set.define(kOfxImageEffectPropPixelDepth, readOnly, Strings{kOfxBitDepthNone});
  set.define(kOfxImageEffectPropComponents, readOnly, Strings{kOfxImageComponentNone});
  set.define(kOfxImageClipPropUnmappedPixelDepth, readOnly, Strings{kOfxBitDepthNone});
  set.define(kOfxImageClipPropUnmappedComponents, readOnly, Strings{kOfxImageComponentNone});
  set.define(kOfxImageEffectPropPreMultiplication, readOnly, Strings{kOfxImagePreMultiplied});
  set.define(kOfxImagePropPixelAspectRatio, readOnly, Doubles{1.0});
  set.define(kOfxImageEffectPropFrameRate, readOnly, Doubles{24.0});
  set.define(kOfxImageEffectPropUnmappedFrameRate, readOnly, Doubles{24.0});
  set.define(kOfxImageEffectPropFrameRange, readOnly, Doubles{0.0, 0.0});
  set.define(kOfxImageEffectPropUnmappedFrameRange, readOnly, Doubles{0.0, 0.0});
  set.define(kOfxImageClipPropFieldOrder, readOnly, Strings{kOfxImageFieldNone});
  set.define(kOfxImageClipPropConnected, readOnly, Ints{0});
  set.define(kOfxImageClipPropContinuousSamples, readOnly, Ints{0});
}

void defineImageProperties(PropertySet& set)
{
  set.define(kOfxPropType, readOnly, Strings{kOfxTypeImage});
  set.define(kOfxImageEffectPropPixelDepth, readOnly, Strings{kOfxBitDepthNone});
  set.define(kOfxImageEffectPropComponents, readOnly, Strings{kOfxImageComponentNone});
  set.define(kOfxImageEffectPropPreMultiplication, readOnly, Strings{kOfxImagePreMultiplied});
  set.define(kOfxImageEffectPropRenderScale, readOnly, Doubles{1.0, 1.0});
  set.define(kOfxImagePropPixelAspectRatio, readOnly, Doubles{1.0});
  set.define(kOfxImagePropData, readOnly, Pointers{nullptr});
  set.define(kOfxImagePropBounds, readOnly, Ints{0, 0, 0, 0});
  set.define(kOfxImagePropRegionOfDefinition, readOnly, Ints{0, 0, 0, 0});
  set.define(kOfxImagePropRowBytes, readOnly, Ints{0});
  set.define(kOfxImagePropField, readOnly, Strings{kOfxImageFieldNone});
  set.define(kOfxImagePropUniqueIdentifier, readOnly, Strings{""});
}

void defineParamSetProperties(PropertySet& set)
{
  set.define(kOfxPropParamSetNeedsSyncing, writable, Ints{0});
  set.define(kOfxPluginPropParamPageOrder, writable, Strings{});
}

void defineParamProperties(PropertySet& set, ParamKind kind, const std::string& name)
{
  defineLabels(set, name);
  set.define(kOfxPropType, readOnly, Strings{kOfxTypeParameter});
  set.define(kOfxPropName, readOnly, Strings{name});
  set.define(kOfxParamPropType, readOnly, Strings{factsOf(kind).type});
  set.define(kOfxParamPropSecret, writable, Ints{0});
  set.define(kOfxParamPropLayoutHint, writable, Ints{0});
  set.define(kOfxParamPropEnabled, writable, Ints{1});
  set.define(kOfxParamPropHint, writable, Strings{""});
  set.define(kOfxParamPropScriptName, writable, Strings{name});
  set.define(kOfxParamPropParent, writable, Strings{""});
  set.define(kOfxParamPropDataPtr, writable, Pointers{nullptr});
  set.define(kOfxPropIcon, writable, Strings{"", ""});
  if (kind != ParamKind::Group && kind != ParamKind::Page)
  {
    set.define(kOfxParamPropInteractV1, writable, Pointers{nullptr});
    set.define(kOfxParamPropInteractSizeAspect, writable, Doubles{1.0});
    set.define(kOfxParamPropInteractMinimumSize, writable, Doubles{10.0, 10.0});
    set.define(kOfxParamPropInteractPreferedSize, writable, Ints{10, 10});
  }
  defineValue(set, kind);
  defineKindProperties(set, kind);
}

void defineParamInstanceProperties(PropertySet& set, const PropertySet& described)
{
  set.copyFrom(described,
               {kOfxPropLabel, kOfxPropShortLabel, kOfxPropLongLabel, kOfxParamPropSecret, kOfxParamPropEnabled,
                kOfxParamPropHint, kOfxParamPropDataPtr, kOfxParamPropMin, kOfxParamPropMax, kOfxParamPropDisplayMin,
                kOfxParamPropDisplayMax, kOfxParamPropEvaluateOnChange, kOfxParamPropChoiceOption, kOfxParamPropDefault,
                kOfxParamPropIncrement, kOfxParamPropDigits});
  set.define(kOfxPropType, readOnly, Strings{kOfxTypeParameterInstance});
}

}  // namespace morvellan::host
