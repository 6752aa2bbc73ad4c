// The parametric parameter suites.
#pragma once

#include "ofx/ofxCore.h"
#include "ofx/ofxParam.h"

extern "C"
{

  inline constexpr const char* kOfxParametricParameterSuite = "OfxParametricParameterSuite";
  inline constexpr const char* kOfxParamTypeParametric = "OfxParamTypeParametric";
  inline constexpr const char* kOfxParamPropParametricDimension = "OfxParamPropParametricDimension";
  inline constexpr const char* kOfxParamPropParametricUIColour = "OfxParamPropParametricUIColour";
  inline constexpr const char* kOfxParamPropParametricInteractBackground = "OfxParamPropParametricInteractBackground";
  inline constexpr const char* kOfxParamHostPropSupportsParametricAnimation =
      "OfxParamHostPropSupportsParametricAnimation";
  inline constexpr const char* kOfxParamPropParametricRange = "OfxParamPropParametricRange";
  inline constexpr const char* kOfxHostPropSupportedParametricInterpolations =
      "OfxHostPropSupportedParametricInterpolations";
  inline constexpr const char* kOfxHostParametricInterpolationDefault = "OfxHostParametricInterpolationDefault";
  inline constexpr const char* kOfxHostParametricInterpolationConstant = "OfxHostParametricInterpolationConstant";
  inline constexpr const char* kOfxHostParametricInterpolationLinear = "OfxHostParametricInterpolationLinear";
  inline constexpr const char* kOfxHostParametricInterpolationHorizontal = "OfxHostParametricInterpolationHorizontal";
  inline constexpr const char* kOfxHostParametricInterpolationSmooth = "OfxHostParametricInterpolationSmooth";
  inline constexpr const char* kOfxHostParametricInterpolationCubic = "OfxHostParametricInterpolationCubic";
  inline constexpr const char* kOfxHostParametricInterpolationCatmullRom = "OfxHostParametricInterpolationCatmullRom";
  inline constexpr const char* kOfxHostParametricInterpolationCustom = "OfxHostParametricInterpolationCustom";
  inline constexpr const char* kOfxParametricParamCustomInterpInterpolationTime =
      "OfxParametricParamCustomInterpInterpolationTime";
  inline constexpr const char* kOfxParametricParamCustomInterpInterpolationValue =
      "OfxParametricParamCustomInterpInterpolationValue";
  inline constexpr const char* kOfxParametricParamCustomInterpControlPointIndex =
      "OfxParametricParamCustomInterpControlPointIndex";
  inline constexpr const char* kOfxParametricParamCustomInterpCurveIndex = "OfxParametricParamCustomInterpCurveIndex";
  inline constexpr const char* kOfxParamParametricInterpolationCustomInterpCallbackV1 =
      "OfxParamParametricInterpolationCustomInterpCallbackV1";

  using OfxParametricParamCustomInterpFuncV1 = OfxStatus(OfxParamSetHandle instance, OfxPropertySetHandle inArgs,
                                                         OfxPropertySetHandle outArgs);

  struct OfxParametricParameterSuiteV1
  {
    OfxStatus (*parametricParamGetValue)(OfxParamHandle param, int curveIndex, OfxTime time, double parametricPosition,
                                         double* returnValue);
    OfxStatus (*parametricParamGetNControlPoints)(OfxParamHandle param, int curveIndex, double time, int* returnValue);
    OfxStatus (*parametricParamGetNthControlPoint)(OfxParamHandle param, int curveIndex, double time, int nthCtl,
                                                   double* key, double* value);
    OfxStatus (*parametricParamSetNthControlPoint)(OfxParamHandle param, int curveIndex, double time, int nthCtl,
                                                   double key, double value, bool addAnimationKey);
    OfxStatus (*parametricParamAddControlPoint)(OfxParamHandle param, int curveIndex, double time, double key,
                                                double value, bool addAnimationKey);
    OfxStatus (*parametricParamDeleteControlPoint)(OfxParamHandle param, int curveIndex, int nthCtl);
    OfxStatus (*parametricParamDeleteAllControlPoints)(OfxParamHandle param, int curveIndex);
  };

  struct OfxParametricParameterSuiteV2
  {
    OfxStatus (*parametricParamGetValue)(OfxParamHandle param, int curveIndex, OfxTime time, double parametricPosition,
                                         double* returnValue);
    OfxStatus (*parametricParamGetNControlPoints)(OfxParamHandle param, int curveIndex, double time, int* returnValue);
    OfxStatus (*parametricParamGetNthControlPoint)(OfxParamHandle param, int curveIndex, double time, int nthCtl,
                                                   double* key, double* value);
    OfxStatus (*parametricParamGetNthControlPointDerivatives)(OfxParamHandle param, int curveIndex, double time,
                                                              int nthCtl, double* leftDerivative,
                                                              double* rightDerivative);
    OfxStatus (*parametricParamSetNthControlPoint)(OfxParamHandle param, int curveIndex, double time, int nthCtl,
                                                   double key, double value, bool addAnimationKey);
    OfxStatus (*parametricParamSetNthControlPointInterpolation)(OfxParamHandle param, int curveIndex, double time,
                                                                int nthCtl, const char* interpolationMode);
    OfxStatus (*parametricParamAddControlPoint)(OfxParamHandle param, int curveIndex, double time, double key,
                                                double value, const char* interpolationMode, bool addAnimationKey);
    OfxStatus (*parametricParamDeleteControlPoint)(OfxParamHandle param, int curveIndex, int nthCtl);
    OfxStatus (*parametricParamDeleteAllControlPoints)(OfxParamHandle param, int curveIndex);
  };

}  // extern "C"
