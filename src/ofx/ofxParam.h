// The parameter suite: kinds of parameters and their properties.
#pragma once

#include "ofx/ofxCore.h"

extern "C"
{

  inline constexpr const char* kOfxParameterSuite = "OfxParameterSuite";
  inline constexpr const char* kOfxTypeParameter = "OfxTypeParameter";
  inline constexpr const char* kOfxTypeParameterInstance = "OfxTypeParameterInstance";
  inline constexpr const char* kOfxParamTypeInteger = "OfxParamTypeInteger";
  inline constexpr const char* kOfxParamTypeDouble = "OfxParamTypeDouble";
  inline constexpr const char* kOfxParamTypeBoolean = "OfxParamTypeBoolean";
  inline constexpr const char* kOfxParamTypeChoice = "OfxParamTypeChoice";
  inline constexpr const char* kOfxParamTypeStrChoice = "OfxParamTypeStrChoice";
  inline constexpr const char* kOfxParamTypeRGBA = "OfxParamTypeRGBA";
  inline constexpr const char* kOfxParamTypeRGB = "OfxParamTypeRGB";
  inline constexpr const char* kOfxParamTypeDouble2D = "OfxParamTypeDouble2D";
  inline constexpr const char* kOfxParamTypeInteger2D = "OfxParamTypeInteger2D";
  inline constexpr const char* kOfxParamTypeDouble3D = "OfxParamTypeDouble3D";
  inline constexpr const char* kOfxParamTypeInteger3D = "OfxParamTypeInteger3D";
  inline constexpr const char* kOfxParamTypeString = "OfxParamTypeString";
  inline constexpr const char* kOfxParamTypeCustom = "OfxParamTypeCustom";
  inline constexpr const char* kOfxParamTypeGroup = "OfxParamTypeGroup";
  inline constexpr const char* kOfxParamTypePage = "OfxParamTypePage";
  inline constexpr const char* kOfxParamTypePushButton = "OfxParamTypePushButton";
  inline constexpr const char* kOfxParamHostPropSupportsCustomAnimation = "OfxParamHostPropSupportsCustomAnimation";
  inline constexpr const char* kOfxParamHostPropSupportsStringAnimation = "OfxParamHostPropSupportsStringAnimation";
  inline constexpr const char* kOfxParamHostPropSupportsBooleanAnimation = "OfxParamHostPropSupportsBooleanAnimation";
  inline constexpr const char* kOfxParamHostPropSupportsChoiceAnimation = "OfxParamHostPropSupportsChoiceAnimation";
  inline constexpr const char* kOfxParamHostPropSupportsStrChoiceAnimation =
      "OfxParamHostPropSupportsStrChoiceAnimation";
  inline constexpr const char* kOfxParamHostPropSupportsCustomInteract = "OfxParamHostPropSupportsCustomInteract";
  inline constexpr const char* kOfxParamHostPropMaxParameters = "OfxParamHostPropMaxParameters";
  inline constexpr const char* kOfxParamHostPropMaxPages = "OfxParamHostPropMaxPages";
  inline constexpr const char* kOfxParamHostPropPageRowColumnCount = "OfxParamHostPropPageRowColumnCount";
  inline constexpr const char* kOfxParamPageSkipRow = "OfxParamPageSkipRow";
  inline constexpr const char* kOfxParamPageSkipColumn = "OfxParamPageSkipColumn";
  inline constexpr const char* kOfxParamPropInteractV1 = "OfxParamPropInteractV1";
  inline constexpr const char* kOfxParamPropInteractSize = "OfxParamPropInteractSize";
  inline constexpr const char* kOfxParamPropInteractSizeAspect = "OfxParamPropInteractSizeAspect";
  inline constexpr const char* kOfxParamPropInteractMinimumSize = "OfxParamPropInteractMinimumSize";
  inline constexpr const char* kOfxParamPropInteractPreferedSize = "OfxParamPropInteractPreferedSize";
  inline constexpr const char* kOfxParamPropType = "OfxParamPropType";
  inline constexpr const char* kOfxParamPropAnimates = "OfxParamPropAnimates";
  inline constexpr const char* kOfxParamPropCanUndo = "OfxParamPropCanUndo";
  inline constexpr const char* kOfxPropParamSetNeedsSyncing = "OfxPropParamSetNeedsSyncing";
  inline constexpr const char* kOfxParamPropIsAnimating = "OfxParamPropIsAnimating";
  inline constexpr const char* kOfxParamPropPluginMayWrite = "OfxParamPropPluginMayWrite";
  inline constexpr const char* kOfxParamPropPersistent = "OfxParamPropPersistant";
  inline constexpr const char* kOfxParamPropEvaluateOnChange = "OfxParamPropEvaluateOnChange";
  inline constexpr const char* kOfxParamPropSecret = "OfxParamPropSecret";
  inline constexpr const char* kOfxParamPropScriptName = "OfxParamPropScriptName";
  inline constexpr const char* kOfxParamPropCacheInvalidation = "OfxParamPropCacheInvalidation";
  inline constexpr const char* kOfxParamInvalidateValueChange = "OfxParamInvalidateValueChange";
  inline constexpr const char* kOfxParamInvalidateValueChangeToEnd = "OfxParamInvalidateValueChangeToEnd";
  inline constexpr const char* kOfxParamInvalidateAll = "OfxParamInvalidateAll";
  inline constexpr const char* kOfxParamPropHint = "OfxParamPropHint";
  inline constexpr const char* kOfxParamPropDefault = "OfxParamPropDefault";
  inline constexpr const char* kOfxParamPropDoubleType = "OfxParamPropDoubleType";
  inline constexpr const char* kOfxParamDoubleTypePlain = "OfxParamDoubleTypePlain";
  inline constexpr const char* kOfxParamDoubleTypeScale = "OfxParamDoubleTypeScale";
  inline constexpr const char* kOfxParamDoubleTypeAngle = "OfxParamDoubleTypeAngle";
  inline constexpr const char* kOfxParamDoubleTypeTime = "OfxParamDoubleTypeTime";
  inline constexpr const char* kOfxParamDoubleTypeAbsoluteTime = "OfxParamDoubleTypeAbsoluteTime";
  inline constexpr const char* kOfxParamDoubleTypeX = "OfxParamDoubleTypeX";
  inline constexpr const char* kOfxParamDoubleTypeY = "OfxParamDoubleTypeY";
  inline constexpr const char* kOfxParamDoubleTypeXAbsolute = "OfxParamDoubleTypeXAbsolute";
  inline constexpr const char* kOfxParamDoubleTypeYAbsolute = "OfxParamDoubleTypeYAbsolute";
  inline constexpr const char* kOfxParamDoubleTypeXY = "OfxParamDoubleTypeXY";
  inline constexpr const char* kOfxParamDoubleTypeXYAbsolute = "OfxParamDoubleTypeXYAbsolute";
  inline constexpr const char* kOfxParamPropDefaultCoordinateSystem = "OfxParamPropDefaultCoordinateSystem";
  inline constexpr const char* kOfxParamCoordinatesCanonical = "OfxParamCoordinatesCanonical";
  inline constexpr const char* kOfxParamCoordinatesNormalised = "OfxParamCoordinatesNormalised";
  inline constexpr const char* kOfxParamPropHasHostOverlayHandle = "OfxParamPropHasHostOverlayHandle";
  inline constexpr const char* kOfxParamPropUseHostOverlayHandle = "kOfxParamPropUseHostOverlayHandle";
  inline constexpr const char* kOfxParamPropShowTimeMarker = "OfxParamPropShowTimeMarker";
  inline constexpr const char* kOfxPluginPropParamPageOrder = "OfxPluginPropParamPageOrder";
  inline constexpr const char* kOfxParamPropPageChild = "OfxParamPropPageChild";
  inline constexpr const char* kOfxParamPropParent = "OfxParamPropParent";
  inline constexpr const char* kOfxParamPropGroupOpen = "OfxParamPropGroupOpen";
  inline constexpr const char* kOfxParamPropEnabled = "OfxParamPropEnabled";
  inline constexpr const char* kOfxParamPropDataPtr = "OfxParamPropDataPtr";
  inline constexpr const char* kOfxParamPropChoiceOption = "OfxParamPropChoiceOption";
  inline constexpr const char* kOfxParamPropChoiceEnum = "OfxParamPropChoiceEnum";
  inline constexpr const char* kOfxParamPropChoiceLabelOption = "OfxParamPropChoiceLabelOption";
  inline constexpr const char* kOfxParamPropMin = "OfxParamPropMin";
  inline constexpr const char* kOfxParamPropMax = "OfxParamPropMax";
  inline constexpr const char* kOfxParamPropDisplayMin = "OfxParamPropDisplayMin";
  inline constexpr const char* kOfxParamPropDisplayMax = "OfxParamPropDisplayMax";
  inline constexpr const char* kOfxParamPropIncrement = "OfxParamPropIncrement";
  inline constexpr const char* kOfxParamPropDigits = "OfxParamPropDigits";
  inline constexpr const char* kOfxParamPropDimensionLabel = "OfxParamPropDimensionLabel";
  inline constexpr const char* kOfxParamPropIsAutoKeying = "OfxParamPropIsAutoKeying";
  inline constexpr const char* kOfxParamPropCustomInterpCallbackV1 = "OfxParamPropCustomCallbackV1";
  inline constexpr const char* kOfxParamPropStringMode = "OfxParamPropStringMode";
  inline constexpr const char* kOfxParamPropStringFilePathExists = "OfxParamPropStringFilePathExists";
  inline constexpr const char* kOfxParamStringIsSingleLine = "OfxParamStringIsSingleLine";
  inline constexpr const char* kOfxParamStringIsMultiLine = "OfxParamStringIsMultiLine";
  inline constexpr const char* kOfxParamStringIsFilePath = "OfxParamStringIsFilePath";
  inline constexpr const char* kOfxParamStringIsDirectoryPath = "OfxParamStringIsDirectoryPath";
  inline constexpr const char* kOfxParamStringIsLabel = "OfxParamStringIsLabel";
  inline constexpr const char* kOfxParamStringIsRichTextFormat = "OfxParamStringIsRichTextFormat";
  inline constexpr const char* kOfxParamPropCustomValue = "OfxParamPropCustomValue";
  inline constexpr const char* kOfxParamPropInterpolationTime = "OfxParamPropInterpolationTime";
  inline constexpr const char* kOfxParamPropInterpolationAmount = "OfxParamPropInterpolationAmount";

  using OfxParamHandle = struct OfxParamStruct*;
  using OfxParamSetHandle = struct OfxParamSetStruct*;
  using OfxCustomParamInterpFuncV1 = OfxStatus(OfxParamSetHandle instance, OfxPropertySetHandle inArgs,
                                               OfxPropertySetHandle outArgs);

  struct OfxParameterSuiteV1
  {
    OfxStatus (*paramDefine)(OfxParamSetHandle paramSet, const char* paramType, const char* name,
                             OfxPropertySetHandle* propertySet);
    OfxStatus (*paramGetHandle)(OfxParamSetHandle paramSet, const char* name, OfxParamHandle* param,
                                OfxPropertySetHandle* propertySet);
    OfxStatus (*paramSetGetPropertySet)(OfxParamSetHandle paramSet, OfxPropertySetHandle* propHandle);
    OfxStatus (*paramGetPropertySet)(OfxParamHandle param, OfxPropertySetHandle* propHandle);
    OfxStatus (*paramGetValue)(OfxParamHandle paramHandle, ...);
    OfxStatus (*paramGetValueAtTime)(OfxParamHandle paramHandle, OfxTime time, ...);
    OfxStatus (*paramGetDerivative)(OfxParamHandle paramHandle, OfxTime time, ...);
    OfxStatus (*paramGetIntegral)(OfxParamHandle paramHandle, OfxTime time1, OfxTime time2, ...);
    OfxStatus (*paramSetValue)(OfxParamHandle paramHandle, ...);
    OfxStatus (*paramSetValueAtTime)(OfxParamHandle paramHandle, OfxTime time, ...);
    OfxStatus (*paramGetNumKeys)(OfxParamHandle paramHandle, unsigned int* numberOfKeys);
    OfxStatus (*paramGetKeyTime)(OfxParamHandle paramHandle, unsigned int nthKey, OfxTime* time);
    OfxStatus (*paramGetKeyIndex)(OfxParamHandle paramHandle, OfxTime time, int direction, int* index);
    OfxStatus (*paramDeleteKey)(OfxParamHandle paramHandle, OfxTime time);
    OfxStatus (*paramDeleteAllKeys)(OfxParamHandle paramHandle);
    OfxStatus (*paramCopy)(OfxParamHandle paramTo, OfxParamHandle paramFrom, OfxTime dstOffset,
                           const OfxRangeD* frameRange);
    OfxStatus (*paramEditBegin)(OfxParamSetHandle paramSet, const char* name);
    OfxStatus (*paramEditEnd)(OfxParamSetHandle paramSet);
  };

}  // extern "C"
