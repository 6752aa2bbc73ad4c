// The message suites: dialogs (V1) and persistent messages (V2).
#pragma once

#include "ofx/ofxCore.h"

extern "C"
{

  inline constexpr const char* kOfxMessageSuite = "OfxMessageSuite";
  inline constexpr const char* kOfxMessageFatal = "OfxMessageFatal";
  inline constexpr const char* kOfxMessageError = "OfxMessageError";
  inline constexpr const char* kOfxMessageWarning = "OfxMessageWarning";
  inline constexpr const char* kOfxMessageMessage = "OfxMessageMessage";
  inline constexpr const char* kOfxMessageLog = "OfxMessageLog";
  inline constexpr const char* kOfxMessageQuestion = "OfxMessageQuestion";

  struct OfxMessageSuiteV1
  {
    OfxStatus (*message)(void* handle, const char* messageType, const char* messageId, const char* format, ...);
  };

  struct OfxMessageSuiteV2
  {
    OfxStatus (*message)(void* handle, const char* messageType, const char* messageId, const char* format, ...);
    OfxStatus (*setPersistentMessage)(void* handle, const char* messageType, const char* messageId, const char* format,
                                      ...);
    OfxStatus (*clearPersistentMessage)(void* handle);
  };

}  // extern "C"
