// The image effect suite, its clips, images, contexts and properties.
#pragma once

#include <cstddef>

#include "ofx/ofxCore.h"
#include "ofx/ofxParam.h"

extern "C"
{

  inline constexpr const char* kOfxImageEffectPluginApi = "OfxImageEffectPluginAPI";
  inline constexpr int kOfxImageEffectPluginApiVersion = 1;
  inline constexpr const char* kOfxImageComponentNone = "OfxImageComponentNone";
  inline constexpr const char* kOfxImageComponentRGBA = "OfxImageComponentRGBA";
  inline constexpr const char* kOfxImageComponentRGB = "OfxImageComponentRGB";
  inline constexpr const char* kOfxImageComponentAlpha = "OfxImageComponentAlpha";
  inline constexpr const char* kOfxImageEffectContextGenerator = "OfxImageEffectContextGenerator";
  inline constexpr const char* kOfxImageEffectContextFilter = "OfxImageEffectContextFilter";
  inline constexpr const char* kOfxImageEffectContextTransition = "OfxImageEffectContextTransition";
  inline constexpr const char* kOfxImageEffectContextPaint = "OfxImageEffectContextPaint";
  inline constexpr const char* kOfxImageEffectContextGeneral = "OfxImageEffectContextGeneral";
  inline constexpr const char* kOfxImageEffectContextRetimer = "OfxImageEffectContextRetimer";
  inline constexpr const char* kOfxImageEffectContextReader = "OfxImageEffectContextReader";
  inline constexpr const char* kOfxImageEffectContextWriter = "OfxImageEffectContextWriter";
  inline constexpr const char* kOfxImageEffectFileParamName = "filename";
  inline constexpr const char* kOfxImageEffectProxyParamName = "proxy";
  inline constexpr const char* kOfxTypeImageEffectHost = "OfxTypeImageEffectHost";
  inline constexpr const char* kOfxTypeImageEffect = "OfxTypeImageEffect";
  inline constexpr const char* kOfxTypeImageEffectInstance = "OfxTypeImageEffectInstance";
  inline constexpr const char* kOfxTypeClip = "OfxTypeClip";
  inline constexpr const char* kOfxTypeImage = "OfxTypeImage";
  inline constexpr const char* kOfxImageEffectActionGetRegionOfDefinition = "OfxImageEffectActionGetRegionOfDefinition";
  inline constexpr const char* kOfxImageEffectActionGetRegionsOfInterest = "OfxImageEffectActionGetRegionsOfInterest";
  inline constexpr const char* kOfxImageEffectActionGetTimeDomain = "OfxImageEffectActionGetTimeDomain";
  inline constexpr const char* kOfxImageEffectActionGetFramesNeeded = "OfxImageEffectActionGetFramesNeeded";
  inline constexpr const char* kOfxImageEffectActionGetClipPreferences = "OfxImageEffectActionGetClipPreferences";
  inline constexpr const char* kOfxImageEffectActionIsIdentity = "OfxImageEffectActionIsIdentity";
  inline constexpr const char* kOfxImageEffectActionRender = "OfxImageEffectActionRender";
  inline constexpr const char* kOfxImageEffectActionBeginSequenceRender = "OfxImageEffectActionBeginSequenceRender";
  inline constexpr const char* kOfxImageEffectActionEndSequenceRender = "OfxImageEffectActionEndSequenceRender";
  inline constexpr const char* kOfxImageEffectActionDescribeInContext = "OfxImageEffectActionDescribeInContext";
  inline constexpr const char* kOfxImageEffectPropSupportedContexts = "OfxImageEffectPropSupportedContexts";
  inline constexpr const char* kOfxImageEffectPropPluginHandle = "OfxImageEffectPropPluginHandle";
  inline constexpr const char* kOfxImageEffectHostPropIsBackground = "OfxImageEffectHostPropIsBackground";
  inline constexpr const char* kOfxImageEffectPluginPropSingleInstance = "OfxImageEffectPluginPropSingleInstance";
  inline constexpr const char* kOfxImageEffectPluginRenderThreadSafety = "OfxImageEffectPluginRenderThreadSafety";
  inline constexpr const char* kOfxImageEffectRenderUnsafe = "OfxImageEffectRenderUnsafe";
  inline constexpr const char* kOfxImageEffectRenderInstanceSafe = "OfxImageEffectRenderInstanceSafe";
  inline constexpr const char* kOfxImageEffectRenderFullySafe = "OfxImageEffectRenderFullySafe";
  inline constexpr const char* kOfxImageEffectPluginPropHostFrameThreading =
      "OfxImageEffectPluginPropHostFrameThreading";
  inline constexpr const char* kOfxImageEffectPropSupportsMultipleClipDepths = "OfxImageEffectPropMultipleClipDepths";
  inline constexpr const char* kOfxImageEffectPropSupportsMultipleClipPARs =
      "OfxImageEffectPropSupportsMultipleClipPARs";
  inline constexpr const char* kOfxImageEffectPropClipPreferencesSlaveParam =
      "OfxImageEffectPropClipPreferencesSlaveParam";
  inline constexpr const char* kOfxImageEffectPropSetableFrameRate = "OfxImageEffectPropSetableFrameRate";
  inline constexpr const char* kOfxImageEffectPropSetableFielding = "OfxImageEffectPropSetableFielding";
  inline constexpr const char* kOfxImageEffectInstancePropSequentialRender =
      "OfxImageEffectInstancePropSequentialRender";
  inline constexpr const char* kOfxImageEffectPropSequentialRenderStatus = "OfxImageEffectPropSequentialRenderStatus";
  inline constexpr const char* kOfxHostNativeOriginBottomLeft = "kOfxImageEffectHostPropNativeOriginBottomLeft";
  inline constexpr const char* kOfxHostNativeOriginTopLeft = "kOfxImageEffectHostPropNativeOriginTopLeft";
  inline constexpr const char* kOfxHostNativeOriginCenter = "kOfxImageEffectHostPropNativeOriginCenter";
  inline constexpr const char* kOfxImageEffectHostPropNativeOrigin = "OfxImageEffectHostPropNativeOrigin";
  inline constexpr const char* kOfxImageEffectPropInteractiveRenderStatus = "OfxImageEffectPropInteractiveRenderStatus";
  inline constexpr const char* kOfxImageEffectPluginPropGrouping = "OfxImageEffectPluginPropGrouping";
  inline constexpr const char* kOfxImageEffectPropSupportsOverlays = "OfxImageEffectPropSupportsOverlays";
  inline constexpr const char* kOfxImageEffectPluginPropOverlayInteractV1 = "OfxImageEffectPluginPropOverlayInteractV1";
  inline constexpr const char* kOfxImageEffectPropSupportsMultiResolution = "OfxImageEffectPropSupportsMultiResolution";
  inline constexpr const char* kOfxImageEffectPropSupportsTiles = "OfxImageEffectPropSupportsTiles";
  inline constexpr const char* kOfxImageEffectPropTemporalClipAccess = "OfxImageEffectPropTemporalClipAccess";
  inline constexpr const char* kOfxImageEffectPropContext = "OfxImageEffectPropContext";
  inline constexpr const char* kOfxImageEffectPropPixelDepth = "OfxImageEffectPropPixelDepth";
  inline constexpr const char* kOfxImageEffectPropComponents = "OfxImageEffectPropComponents";
  inline constexpr const char* kOfxImagePropUniqueIdentifier = "OfxImagePropUniqueIdentifier";
  inline constexpr const char* kOfxImageClipPropContinuousSamples = "OfxImageClipPropContinuousSamples";
  inline constexpr const char* kOfxImageClipPropUnmappedPixelDepth = "OfxImageClipPropUnmappedPixelDepth";
  inline constexpr const char* kOfxImageClipPropUnmappedComponents = "OfxImageClipPropUnmappedComponents";
  inline constexpr const char* kOfxImageEffectPropPreMultiplication = "OfxImageEffectPropPreMultiplication";
  inline constexpr const char* kOfxImageOpaque = "OfxImageOpaque";
  inline constexpr const char* kOfxImagePreMultiplied = "OfxImageAlphaPremultiplied";
  inline constexpr const char* kOfxImageUnPreMultiplied = "OfxImageAlphaUnPremultiplied";
  inline constexpr const char* kOfxImageEffectPropSupportedPixelDepths = "OfxImageEffectPropSupportedPixelDepths";
  inline constexpr const char* kOfxImageEffectPropSupportedComponents = "OfxImageEffectPropSupportedComponents";
  inline constexpr const char* kOfxImageClipPropOptional = "OfxImageClipPropOptional";
  inline constexpr const char* kOfxImageClipPropIsMask = "OfxImageClipPropIsMask";
  inline constexpr const char* kOfxImagePropPixelAspectRatio = "OfxImagePropPixelAspectRatio";
  inline constexpr const char* kOfxImageEffectPropFrameRate = "OfxImageEffectPropFrameRate";
  inline constexpr const char* kOfxImageEffectPropUnmappedFrameRate = "OfxImageEffectPropUnmappedFrameRate";
  inline constexpr const char* kOfxImageEffectPropFrameStep = "OfxImageEffectPropFrameStep";
  inline constexpr const char* kOfxImageEffectPropFrameRange = "OfxImageEffectPropFrameRange";
  inline constexpr const char* kOfxImageEffectPropUnmappedFrameRange = "OfxImageEffectPropUnmappedFrameRange";
  inline constexpr const char* kOfxImageClipPropConnected = "OfxImageClipPropConnected";
  inline constexpr const char* kOfxImageClipPropThumbnail = "kOfxImageClipPropThumbnail";
  inline constexpr const char* kOfxImageEffectPropResolvePage = "OfxImageEffectPropResolvePage";
  inline constexpr const char* kOfxImageEffectFrameVarying = "OfxImageEffectFrameVarying";
  inline constexpr const char* kOfxImageEffectPropRenderScale = "OfxImageEffectPropRenderScale";
  inline constexpr const char* kOfxImageEffectPropRenderQualityDraft = "OfxImageEffectPropRenderQualityDraft";
  inline constexpr const char* kOfxImageEffectPropProjectExtent = "OfxImageEffectPropProjectExtent";
  inline constexpr const char* kOfxImageEffectPropProjectSize = "OfxImageEffectPropProjectSize";
  inline constexpr const char* kOfxImageEffectPropProjectOffset = "OfxImageEffectPropProjectOffset";
  inline constexpr const char* kOfxImageEffectPropProjectPixelAspectRatio = "OfxImageEffectPropPixelAspectRatio";
  inline constexpr const char* kOfxImageEffectInstancePropEffectDuration = "OfxImageEffectInstancePropEffectDuration";
  inline constexpr const char* kOfxImageClipPropFieldOrder = "OfxImageClipPropFieldOrder";
  inline constexpr const char* kOfxImagePropData = "OfxImagePropData";
  inline constexpr const char* kOfxImagePropBounds = "OfxImagePropBounds";
  inline constexpr const char* kOfxImagePropRegionOfDefinition = "OfxImagePropRegionOfDefinition";
  inline constexpr const char* kOfxImagePropRowBytes = "OfxImagePropRowBytes";
  inline constexpr const char* kOfxImagePropField = "OfxImagePropField";
  inline constexpr const char* kOfxImageEffectPluginPropFieldRenderTwiceAlways =
      "OfxImageEffectPluginPropFieldRenderTwiceAlways";
  inline constexpr const char* kOfxImageClipPropFieldExtraction = "OfxImageClipPropFieldExtraction";
  inline constexpr const char* kOfxImageEffectPropFieldToRender = "OfxImageEffectPropFieldToRender";
  inline constexpr const char* kOfxImageEffectPropRegionOfDefinition = "OfxImageEffectPropRegionOfDefinition";
  inline constexpr const char* kOfxImageEffectPropRegionOfInterest = "OfxImageEffectPropRegionOfInterest";
  inline constexpr const char* kOfxImageEffectPropRenderWindow = "OfxImageEffectPropRenderWindow";
  inline constexpr const char* kOfxImageEffectPropCudaRenderSupported = "OfxImageEffectPropCudaRenderSupported";
  inline constexpr const char* kOfxImageEffectPropCudaEnabled = "OfxImageEffectPropCudaEnabled";
  inline constexpr const char* kOfxImageEffectPropCudaStreamSupported = "OfxImageEffectPropCudaStreamSupported";
  inline constexpr const char* kOfxImageEffectPropCudaStream = "OfxImageEffectPropCudaStream";
  inline constexpr const char* kOfxImageEffectPropMetalRenderSupported = "OfxImageEffectPropMetalRenderSupported";
  inline constexpr const char* kOfxImageEffectPropMetalEnabled = "OfxImageEffectPropMetalEnabled";
  inline constexpr const char* kOfxImageEffectPropMetalCommandQueue = "OfxImageEffectPropMetalCommandQueue";
  inline constexpr const char* kOfxImageEffectPropOpenCLRenderSupported = "OfxImageEffectPropOpenCLRenderSupported";
  inline constexpr const char* kOfxImageEffectPropOpenCLEnabled = "OfxImageEffectPropOpenCLEnabled";
  inline constexpr const char* kOfxImageEffectPropOpenCLCommandQueue = "OfxImageEffectPropOpenCLCommandQueue";
  inline constexpr const char* kOfxImageEffectPropNoSpatialAwareness = "OfxImageEffectPropNoSpatialAwareness";
  inline constexpr const char* kOfxImageFieldNone = "OfxFieldNone";
  inline constexpr const char* kOfxImageFieldLower = "OfxFieldLower";
  inline constexpr const char* kOfxImageFieldUpper = "OfxFieldUpper";
  inline constexpr const char* kOfxImageFieldBoth = "OfxFieldBoth";
  inline constexpr const char* kOfxImageFieldSingle = "OfxFieldSingle";
  inline constexpr const char* kOfxImageFieldDoubled = "OfxFieldDoubled";
  inline constexpr const char* kOfxImageEffectOutputClipName = "Output";
  inline constexpr const char* kOfxImageEffectSimpleSourceClipName = "Source";
  inline constexpr const char* kOfxImageEffectTransitionSourceFromClipName = "SourceFrom";
  inline constexpr const char* kOfxImageEffectTransitionSourceToClipName = "SourceTo";
  inline constexpr const char* kOfxImageEffectTransitionParamName = "Transition";
  inline constexpr const char* kOfxImageEffectRetimerParamName = "SourceTime";
  inline constexpr const char* kOfxImageEffectSuite = "OfxImageEffectSuite";
  inline constexpr int kOfxStatErrImageFormat = 1000;

  using OfxImageEffectHandle = struct OfxImageEffectStruct*;
  using OfxImageClipHandle = struct OfxImageClipStruct*;
  using OfxImageMemoryHandle = struct OfxImageMemoryStruct*;

  struct OfxImageEffectSuiteV1
  {
    OfxStatus (*getPropertySet)(OfxImageEffectHandle imageEffect, OfxPropertySetHandle* propHandle);
    OfxStatus (*getParamSet)(OfxImageEffectHandle imageEffect, OfxParamSetHandle* paramSet);
    OfxStatus (*clipDefine)(OfxImageEffectHandle imageEffect, const char* name, OfxPropertySetHandle* propertySet);
    OfxStatus (*clipGetHandle)(OfxImageEffectHandle imageEffect, const char* name, OfxImageClipHandle* clip,
                               OfxPropertySetHandle* propertySet);
    OfxStatus (*clipGetPropertySet)(OfxImageClipHandle clip, OfxPropertySetHandle* propHandle);
    OfxStatus (*clipGetImage)(OfxImageClipHandle clip, OfxTime time, const OfxRectD* region,
                              OfxPropertySetHandle* imageHandle);
    OfxStatus (*clipReleaseImage)(OfxPropertySetHandle imageHandle);
    OfxStatus (*clipGetRegionOfDefinition)(OfxImageClipHandle clip, OfxTime time, OfxRectD* bounds);
    int (*abort)(OfxImageEffectHandle imageEffect);
    OfxStatus (*imageMemoryAlloc)(OfxImageEffectHandle instanceHandle, size_t nBytes,
                                  OfxImageMemoryHandle* memoryHandle);
    OfxStatus (*imageMemoryFree)(OfxImageMemoryHandle memoryHandle);
    OfxStatus (*imageMemoryLock)(OfxImageMemoryHandle memoryHandle, void** returnedPtr);
    OfxStatus (*imageMemoryUnlock)(OfxImageMemoryHandle memoryHandle);
  };

}  // extern "C"
