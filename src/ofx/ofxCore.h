// Actions, statuses, basic types and the plug-in record of the OFX standard, API 1.4.
#pragma once

#include <climits>

extern "C"
{

  inline constexpr const char* kOfxActionLoad = "OfxActionLoad";
  inline constexpr const char* kOfxActionDescribe = "OfxActionDescribe";
  inline constexpr const char* kOfxActionUnload = "OfxActionUnload";
  inline constexpr const char* kOfxActionPurgeCaches = "OfxActionPurgeCaches";
  inline constexpr const char* kOfxActionSyncPrivateData = "OfxActionSyncPrivateData";
  inline constexpr const char* kOfxActionCreateInstance = "OfxActionCreateInstance";
  inline constexpr const char* kOfxActionDestroyInstance = "OfxActionDestroyInstance";
  inline constexpr const char* kOfxActionInstanceChanged = "OfxActionInstanceChanged";
  inline constexpr const char* kOfxActionBeginInstanceChanged = "OfxActionBeginInstanceChanged";
  inline constexpr const char* kOfxActionEndInstanceChanged = "OfxActionEndInstanceChanged";
  inline constexpr const char* kOfxActionBeginInstanceEdit = "OfxActionBeginInstanceEdit";
  inline constexpr const char* kOfxActionEndInstanceEdit = "OfxActionEndInstanceEdit";
  inline constexpr const char* kOfxPropAPIVersion = "OfxPropAPIVersion";
  inline constexpr const char* kOfxPropTime = "OfxPropTime";
  inline constexpr const char* kOfxPropIsInteractive = "OfxPropIsInteractive";
  inline constexpr const char* kOfxPluginPropFilePath = "OfxPluginPropFilePath";
  inline constexpr const char* kOfxPropInstanceData = "OfxPropInstanceData";
  inline constexpr const char* kOfxPropType = "OfxPropType";
  inline constexpr const char* kOfxPropName = "OfxPropName";
  inline constexpr const char* kOfxPropVersion = "OfxPropVersion";
  inline constexpr const char* kOfxPropVersionLabel = "OfxPropVersionLabel";
  inline constexpr const char* kOfxPropPluginDescription = "OfxPropPluginDescription";
  inline constexpr const char* kOfxPropLabel = "OfxPropLabel";
  inline constexpr const char* kOfxPropIcon = "OfxPropIcon";
  inline constexpr const char* kOfxPropShortLabel = "OfxPropShortLabel";
  inline constexpr const char* kOfxPropLongLabel = "OfxPropLongLabel";
  inline constexpr const char* kOfxPropChangeReason = "OfxPropChangeReason";
  inline constexpr const char* kOfxPropEffectInstance = "OfxPropEffectInstance";
  inline constexpr const char* kOfxPropHostOSHandle = "OfxPropHostOSHandle";
  inline constexpr const char* kOfxChangeUserEdited = "OfxChangeUserEdited";
  inline constexpr const char* kOfxChangePluginEdited = "OfxChangePluginEdited";
  inline constexpr const char* kOfxChangeTime = "OfxChangeTime";
  inline constexpr int kOfxFlagInfiniteMax = INT_MAX;
  inline constexpr int kOfxFlagInfiniteMin = INT_MIN;
  inline constexpr const char* kOfxBitDepthNone = "OfxBitDepthNone";
  inline constexpr const char* kOfxBitDepthByte = "OfxBitDepthByte";
  inline constexpr const char* kOfxBitDepthShort = "OfxBitDepthShort";
  inline constexpr const char* kOfxBitDepthHalf = "OfxBitDepthHalf";
  inline constexpr const char* kOfxBitDepthFloat = "OfxBitDepthFloat";
  inline constexpr int kOfxStatOK = 0;
  inline constexpr int kOfxStatFailed = 1;
  inline constexpr int kOfxStatErrFatal = 2;
  inline constexpr int kOfxStatErrUnknown = 3;
  inline constexpr int kOfxStatErrMissingHostFeature = 4;
  inline constexpr int kOfxStatErrUnsupported = 5;
  inline constexpr int kOfxStatErrExists = 6;
  inline constexpr int kOfxStatErrFormat = 7;
  inline constexpr int kOfxStatErrMemory = 8;
  inline constexpr int kOfxStatErrBadHandle = 9;
  inline constexpr int kOfxStatErrBadIndex = 10;
  inline constexpr int kOfxStatErrValue = 11;
  inline constexpr int kOfxStatReplyYes = 12;
  inline constexpr int kOfxStatReplyNo = 13;
  inline constexpr int kOfxStatReplyDefault = 14;

  using OfxPropertySetHandle = struct OfxPropertySetStruct*;
  using OfxStatus = int;
  using OfxTime = double;
  using OfxPluginEntryPoint = OfxStatus(const char* action, const void* handle, OfxPropertySetHandle inArgs,
                                        OfxPropertySetHandle outArgs);

  struct OfxHost
  {
    OfxPropertySetHandle host;
    const void* (*fetchSuite)(OfxPropertySetHandle host, const char* suiteName, int suiteVersion);
  };

  struct OfxPlugin
  {
    const char* pluginApi;
    int apiVersion;
    const char* pluginIdentifier;
    unsigned int pluginVersionMajor;
    unsigned int pluginVersionMinor;
    void (*setHost)(OfxHost* host);
    OfxPluginEntryPoint* mainEntry;
  };

  struct OfxRangeI
  {
    int min, max;
  };

  struct OfxRangeD
  {
    double min, max;
  };

  struct OfxPointI
  {
    int x, y;
  };

  struct OfxPointD
  {
    double x, y;
  };

  struct OfxRectI
  {
    int x1, y1, x2, y2;
  };

  struct OfxRectD
  {
    double x1, y1, x2, y2;
  };

}  // extern "C"
