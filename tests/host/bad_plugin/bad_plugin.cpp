// A small gain effect that behaves, until the environment variable BAD_PLUGIN names a misuse for it to commit. With
// BAD_PLUGIN_TELLS set it prints every action.
// Tests of the host load it to see that good behaviour passes and that each misuse is caught.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>
#include <string_view>

#include "ofx/ofxImageEffect.h"
#include "ofx/ofxMemory.h"
#include "ofx/ofxMessage.h"
#include "ofx/ofxMultiThread.h"
#include "ofx/ofxParam.h"
#include "ofx/ofxProperty.h"

namespace
{

OfxHost* host = nullptr;
const OfxPropertySuiteV1* props = nullptr;
const OfxImageEffectSuiteV1* effects = nullptr;
const OfxParameterSuiteV1* params = nullptr;
const OfxMemorySuiteV1* memory = nullptr;
const OfxMultiThreadSuiteV1* threads = nullptr;
const OfxMessageSuiteV2* messages = nullptr;

bool told(std::string_view misuse)
{
  const char* const chosen = std::getenv("BAD_PLUGIN");
  return chosen != nullptr && misuse == chosen;
}

const char* variable(const char* name)
{
  const char* const value = std::getenv(name);
  return value == nullptr ? "unset" : value;
}

OfxParamSetHandle paramSetOf(OfxImageEffectHandle effect)
{
  OfxParamSetHandle set = nullptr;
  effects->getParamSet(effect, &set);
  return set;
}

OfxParamHandle paramOf(OfxImageEffectHandle effect, const char* name)
{
  OfxParamHandle param = nullptr;
  params->paramGetHandle(paramSetOf(effect), name, &param, nullptr);
  return param;
}

double gainOf(OfxImageEffectHandle effect)
{
  double gain = 0.0;
  params->paramGetValue(paramOf(effect, "Gain"), &gain);
  return gain;
}

OfxPropertySetHandle fetchImage(OfxImageEffectHandle effect, const char* clipName, double time)
{
  OfxImageClipHandle clip = nullptr;
  OfxPropertySetHandle image = nullptr;
  effects->clipGetHandle(effect, clipName, &clip, nullptr);
  effects->clipGetImage(clip, time, nullptr, &image);
  return image;
}

OfxStatus load()
{
  const auto fetch = [](const char* name, int version) { return host->fetchSuite(host->host, name, version); };
  props = static_cast<const OfxPropertySuiteV1*>(fetch(kOfxPropertySuite, 1));
  effects = static_cast<const OfxImageEffectSuiteV1*>(fetch(kOfxImageEffectSuite, 1));
  params = static_cast<const OfxParameterSuiteV1*>(fetch(kOfxParameterSuite, 1));
  memory = static_cast<const OfxMemorySuiteV1*>(fetch(kOfxMemorySuite, 1));
  threads = static_cast<const OfxMultiThreadSuiteV1*>(fetch(kOfxMultiThreadSuite, 1));
  messages = static_cast<const OfxMessageSuiteV2*>(fetch(kOfxMessageSuite, 2));
  if (told("fetch with a foreign handle"))
  {
    host->fetchSuite(nullptr, kOfxPropertySuite, 1);
  }
  return props == nullptr || effects == nullptr || params == nullptr ? kOfxStatErrMissingHostFeature : kOfxStatOK;
}

OfxStatus describe(OfxImageEffectHandle effect)
{
  OfxPropertySetHandle set = nullptr;
  effects->getPropertySet(effect, &set);
  props->propSetString(set, kOfxPropLabel, 0, "Gain");
  props->propSetString(set, kOfxImageEffectPropSupportedContexts, 0, kOfxImageEffectContextFilter);
  props->propSetString(set, kOfxImageEffectPropSupportedPixelDepths, 0, kOfxBitDepthFloat);
  if (told("unpublished property"))
  {
    props->propSetInt(set, "OfxPropNobodyKnows", 0, 1);
  }
  if (told("property of another set"))
  {
    props->propSetString(set, kOfxParamPropHint, 0, "hint");
  }
  if (told("wrong property type"))
  {
    props->propSetInt(set, kOfxPropLabel, 0, 1);
  }
  if (told("index out of dimension"))
  {
    props->propSetString(set, kOfxPropLabel, 1, "again");
  }
  if (told("gap in values"))
  {
    props->propSetString(set, kOfxImageEffectPropSupportedContexts, 5, kOfxImageEffectContextGeneral);
  }
  if (told("read-only property"))
  {
    props->propSetString(set, kOfxPropType, 0, "mine");
  }
  if (told("null text"))
  {
    props->propSetString(set, kOfxPropLabel, 0, nullptr);
  }
  if (told("null property set"))
  {
    props->propSetInt(nullptr, kOfxPropLabel, 0, 1);
  }
  if (told("invented property set"))
  {
    int place = 0;
    props->propSetInt(reinterpret_cast<OfxPropertySetHandle>(&place), kOfxPropLabel, 0, 1);
  }
  if (told("wrong depth"))
  {
    props->propSetString(set, kOfxImageEffectPropSupportedPixelDepths, 0, "OfxBitDepthTwelve");
  }
  if (told("clip defined too early"))
  {
    effects->clipDefine(effect, "Source", nullptr);
  }
  if (told("parameter set too early"))
  {
    paramSetOf(effect);
  }
  if (told("effect property as a parameter set"))
  {
    params->paramDefine(reinterpret_cast<OfxParamSetHandle>(set), kOfxParamTypeDouble, "Lost", nullptr);
  }
  return kOfxStatOK;
}

OfxPropertySetHandle defineParam(OfxParamSetHandle set, const char* type, const char* name)
{
  OfxPropertySetHandle described = nullptr;
  params->paramDefine(set, type, name, &described);
  return described;
}

void misdescribe(OfxParamSetHandle set, OfxPropertySetHandle gain, OfxPropertySetHandle page)
{
  if (told("unknown parent"))
  {
    props->propSetString(gain, kOfxParamPropParent, 0, "Nobody");
  }
  if (told("unknown page child"))
  {
    props->propSetString(page, kOfxParamPropPageChild, 0, "Nobody");
  }
  if (told("child twice on a page"))
  {
    props->propSetString(page, kOfxParamPropPageChild, 1, "Group");
  }
  if (told("default out of range"))
  {
    props->propSetDouble(gain, kOfxParamPropDefault, 0, 9.0);
  }
  if (told("range upside down"))
  {
    props->propSetDouble(gain, kOfxParamPropDisplayMin, 0, 5.0);
  }
  if (told("name taken"))
  {
    params->paramDefine(set, kOfxParamTypeDouble, "Gain", nullptr);
  }
  if (told("unknown parameter type"))
  {
    params->paramDefine(set, "OfxParamTypeNothing", "Strange", nullptr);
  }
  if (told("choice without options"))
  {
    params->paramDefine(set, kOfxParamTypeChoice, "Empty", nullptr);
  }
  if (told("digits of a button"))
  {
    props->propSetInt(defineParam(set, kOfxParamTypePushButton, "Push"), kOfxParamPropDigits, 0, 2);
  }
  if (told("handle of a described parameter"))
  {
    OfxParamHandle handle = nullptr;
    params->paramGetHandle(set, "Gain", &handle, nullptr);
  }
}

OfxStatus describeInContext(OfxImageEffectHandle effect)
{
  for (const char* const name : {kOfxImageEffectSimpleSourceClipName, kOfxImageEffectOutputClipName})
  {
    OfxPropertySetHandle clip = nullptr;
    if (told("no output clip") && std::strcmp(name, kOfxImageEffectOutputClipName) == 0)
    {
      continue;
    }
    effects->clipDefine(effect, name, &clip);
    props->propSetString(clip, kOfxImageEffectPropSupportedComponents, 0, kOfxImageComponentRGBA);
    props->propSetString(clip, kOfxImageEffectPropSupportedComponents, 1, kOfxImageComponentRGB);
  }
  const OfxParamSetHandle set = paramSetOf(effect);
  const OfxPropertySetHandle page = defineParam(set, kOfxParamTypePage, "Controls");
  defineParam(set, kOfxParamTypeGroup, "Group");
  const OfxPropertySetHandle gain = defineParam(set, kOfxParamTypeDouble, "Gain");
  props->propSetDouble(gain, kOfxParamPropMin, 0, 0.0);
  props->propSetDouble(gain, kOfxParamPropMax, 0, 4.0);
  props->propSetDouble(gain, kOfxParamPropDisplayMin, 0, 0.0);
  props->propSetDouble(gain, kOfxParamPropDisplayMax, 0, 4.0);
  props->propSetDouble(gain, kOfxParamPropDefault, 0, 1.0);
  props->propSetInt(gain, kOfxParamPropDigits, 0, 5);
  props->propSetDouble(gain, kOfxParamPropIncrement, 0, 0.001);
  props->propSetString(gain, kOfxParamPropHint, 0, "Multiplies every value.");
  props->propSetString(gain, kOfxParamPropParent, 0, "Group");
  const OfxPropertySetHandle mode = defineParam(set, kOfxParamTypeChoice, "Mode");
  props->propSetString(mode, kOfxParamPropChoiceOption, 0, "Multiply");
  props->propSetString(mode, kOfxParamPropChoiceOption, 1, "Fail");
  props->propSetString(mode, kOfxParamPropChoiceOption, 2, "Multiply Twice");
  defineParam(set, kOfxParamTypeBoolean, "Bypass");
  defineParam(set, kOfxParamTypeInteger, "Count");
  defineParam(set, kOfxParamTypeRGB, "Tint");
  defineParam(set, kOfxParamTypeString, "Note");
  for (const char* const button : {"About", "LoadLooks", "SaveLooks"})
  {
    defineParam(set, kOfxParamTypePushButton, button);
  }
  int nth = 0;
  for (const char* const child :
       {"Group", "Gain", "Mode", "Bypass", "Count", "Tint", "Note", "About", "LoadLooks", "SaveLooks"})
  {
    props->propSetString(page, kOfxParamPropPageChild, nth++, child);
  }
  misdescribe(set, gain, page);
  return kOfxStatOK;
}

OfxStatus create(OfxImageEffectHandle effect)
{
  if (told("unknown parameter"))
  {
    paramOf(effect, "Nobody");
  }
  if (told("unknown clip"))
  {
    OfxImageClipHandle clip = nullptr;
    effects->clipGetHandle(effect, "Nobody", &clip, nullptr);
  }
  if (told("value of a button"))
  {
    int value = 0;
    params->paramGetValue(paramOf(effect, "About"), &value);
  }
  if (told("null place for a value"))
  {
    params->paramGetValue(paramOf(effect, "Gain"), static_cast<double*>(nullptr));
  }
  if (told("value out of range"))
  {
    params->paramSetValue(paramOf(effect, "Gain"), 4.5);
  }
  if (told("choice out of range"))
  {
    params->paramSetValue(paramOf(effect, "Mode"), 3);
  }
  if (told("boolean that is neither"))
  {
    params->paramSetValue(paramOf(effect, "Bypass"), 2);
  }
  if (told("null text value"))
  {
    params->paramSetValue(paramOf(effect, "Note"), static_cast<const char*>(nullptr));
  }
  if (told("open edit block"))
  {
    params->paramEditBegin(paramSetOf(effect), "Gain");
  }
  if (told("edit block ended twice"))
  {
    params->paramEditEnd(paramSetOf(effect));
  }
  if (told("image at creation"))
  {
    effects->clipReleaseImage(fetchImage(effect, "Source", 0.0));
  }
  if (told("new parameter on an instance"))
  {
    params->paramDefine(paramSetOf(effect), kOfxParamTypeDouble, "Late", nullptr);
  }
  if (told("parent of an instance"))
  {
    OfxPropertySetHandle set = nullptr;
    params->paramGetPropertySet(paramOf(effect, "Gain"), &set);
    props->propSetString(set, kOfxParamPropParent, 0, "");
  }
  if (told("message of no type"))
  {
    messages->message(effect, "OfxMessageShout", "", "%s", "hello");
  }
  if (told("persistent message without an effect"))
  {
    messages->setPersistentMessage(nullptr, kOfxMessageError, "", "%s", "hello");
  }
  if (told("memory not freed"))
  {
    void* block = nullptr;
    memory->memoryAlloc(effect, 16, &block);
  }
  if (told("foreign memory freed"))
  {
    int block = 0;
    memory->memoryFree(&block);
  }
  if (told("mutex not destroyed"))
  {
    OfxMutexHandle mutex = nullptr;
    threads->mutexCreate(&mutex, 0);
  }
  if (told("mutex unlocked unheld"))
  {
    OfxMutexHandle mutex = nullptr;
    threads->mutexCreate(&mutex, 0);
    threads->mutexUnLock(mutex);
    threads->mutexDestroy(mutex);
  }
  if (told("mutex destroyed twice"))
  {
    OfxMutexHandle mutex = nullptr;
    threads->mutexCreate(&mutex, 0);
    threads->mutexDestroy(mutex);
    threads->mutexDestroy(mutex);
  }
  if (told("null thread function"))
  {
    threads->multiThread(nullptr, 2, nullptr);
  }
  return kOfxStatOK;
}

struct Rows
{
  char* data = nullptr;
  int stride = 0;
  int bounds[4] = {};
  int channels = 0;
};

Rows rowsOf(OfxPropertySetHandle image)
{
  Rows rows;
  void* data = nullptr;
  const char* components = "";
  props->propGetPointer(image, kOfxImagePropData, 0, &data);
  props->propGetInt(image, kOfxImagePropRowBytes, 0, &rows.stride);
  props->propGetIntN(image, kOfxImagePropBounds, 4, rows.bounds);
  props->propGetString(image, kOfxImageEffectPropComponents, 0, &components);
  rows.data = static_cast<char*>(data);
  rows.channels = std::strcmp(components, kOfxImageComponentRGBA) == 0 ? 4 : 3;
  return rows;
}

void multiply(const Rows& from, const Rows& to, float gain)
{
  const int values = (to.bounds[2] - to.bounds[0]) * to.channels;
  for (int y = 0; y < to.bounds[3] - to.bounds[1]; ++y)
  {
    const auto* const source = reinterpret_cast<const float*>(from.data + static_cast<long>(y) * from.stride);
    auto* const target = reinterpret_cast<float*>(to.data + static_cast<long>(y) * to.stride);
    for (int i = 0; i < values; ++i)
    {
      target[i] = source[i] * gain;
    }
  }
}

void misrender(OfxImageEffectHandle effect, double time, const Rows& from, const Rows& to)
{
  if (told("parameter set in render"))
  {
    params->paramSetValue(paramOf(effect, "Gain"), 2.0);
  }
  if (told("parameter hidden in render"))
  {
    OfxPropertySetHandle set = nullptr;
    params->paramGetPropertySet(paramOf(effect, "Gain"), &set);
    props->propSetInt(set, kOfxParamPropSecret, 0, 1);
  }
  if (told("write beside the pixels"))
  {
    to.data[-1] = 7;
  }
  if (told("write into the input"))
  {
    *reinterpret_cast<float*>(from.data) = 42.0F;
  }
  if (told("write into the padding"))
  {
    to.data[(to.bounds[2] - to.bounds[0]) * to.channels * 4] = 7;
  }
  if (told("image of another time"))
  {
    effects->clipReleaseImage(fetchImage(effect, "Source", time + 1.0));
  }
  if (told("image not released"))
  {
    fetchImage(effect, "Source", time);
  }
}

OfxStatus render(OfxImageEffectHandle effect, OfxPropertySetHandle in)
{
  double time = 0.0;
  props->propGetDouble(in, kOfxPropTime, 0, &time);
  int mode = 0;
  params->paramGetValue(paramOf(effect, "Mode"), &mode);
  if (mode == 1)
  {
    messages->setPersistentMessage(effect, kOfxMessageError, "", "%s", "Gain : told to fail");
    return kOfxStatFailed;
  }
  const OfxPropertySetHandle source = fetchImage(effect, "Source", time);
  const OfxPropertySetHandle output = fetchImage(effect, "Output", time);
  if (source == nullptr || output == nullptr)
  {
    return kOfxStatFailed;
  }
  const auto gain = static_cast<float>(gainOf(effect));
  const Rows from = rowsOf(source);
  const Rows to = rowsOf(output);
  multiply(from, to, mode == 2 ? gain * gain : gain);
  misrender(effect, time, from, to);
  effects->clipReleaseImage(source);
  effects->clipReleaseImage(output);
  if (told("image released twice"))
  {
    effects->clipReleaseImage(output);
  }
  if (told("image used after its release"))
  {
    rowsOf(source);
  }
  return told("answer that is no status") ? 77 : kOfxStatOK;
}

OfxStatus identity(OfxImageEffectHandle effect, OfxPropertySetHandle out)
{
  if (gainOf(effect) != 1.0)
  {
    return kOfxStatReplyDefault;
  }
  props->propSetString(out, kOfxPropName, 0, told("identity of no clip") ? "Nobody" : "Source");
  return kOfxStatOK;
}

// The file that the stand-in for a file dialog names.
std::string dialogAnswer()
{
  const std::string answer = variable("MORVELLAN_FILE_DIALOG");
  return answer.substr(answer.find(':') + 1);
}

// A Look of this effect is a file with the gain.
void loadLook(OfxImageEffectHandle effect)
{
  double gain = 0.0;
  if (!(std::ifstream(dialogAnswer()) >> gain))
  {
    messages->setPersistentMessage(effect, kOfxMessageError, "", "%s", "Gain : the Look has no number");
    gain = 1.0;
  }
  params->paramSetValue(paramOf(effect, "Gain"), gain);
}

OfxStatus changed(OfxImageEffectHandle effect, OfxPropertySetHandle in)
{
  const char* name = "";
  const char* reason = "";
  props->propGetString(in, kOfxPropName, 0, &name);
  props->propGetString(in, kOfxPropChangeReason, 0, &reason);
  if (std::strcmp(reason, kOfxChangeUserEdited) != 0)
  {
    return kOfxStatReplyDefault;
  }
  if (std::strcmp(name, "About") == 0)
  {
    messages->message(effect, kOfxMessageMessage, "", "Gain : device %s, threads %s, trace %s",
                      variable("MORVELLAN_DEVICE"), variable("MORVELLAN_THREADS"), variable("MORVELLAN_TRACE"));
  }
  if (std::strcmp(name, "LoadLooks") == 0)
  {
    loadLook(effect);
  }
  if (std::strcmp(name, "SaveLooks") == 0)
  {
    std::ofstream(dialogAnswer()) << gainOf(effect) << '\n';
  }
  if (std::strcmp(name, "Bypass") == 0)
  {
    // Bypassing is a gain of 1, with the control hidden meanwhile.
    int bypass = 0;
    params->paramGetValue(paramOf(effect, "Bypass"), &bypass);
    params->paramEditBegin(paramSetOf(effect), "Gain");
    params->paramSetValue(paramOf(effect, "Gain"), 1.0);
    params->paramEditEnd(paramSetOf(effect));
    OfxPropertySetHandle set = nullptr;
    params->paramGetPropertySet(paramOf(effect, "Gain"), &set);
    props->propSetInt(set, kOfxParamPropSecret, 0, bypass);
  }
  return kOfxStatOK;
}

OfxStatus mainEntry(const char* action, const void* handle, OfxPropertySetHandle in, OfxPropertySetHandle out)
{
  const std::string_view name(action);
  if (std::getenv("BAD_PLUGIN_TELLS") != nullptr)
  {
    std::fprintf(stderr, "%s\n", action);
  }
  auto* const effect = static_cast<OfxImageEffectHandle>(const_cast<void*>(handle));
  if (name == kOfxActionLoad)
  {
    return load();
  }
  if (name == kOfxActionDescribe)
  {
    return describe(effect);
  }
  if (name == kOfxImageEffectActionDescribeInContext)
  {
    return describeInContext(effect);
  }
  if (name == kOfxActionCreateInstance)
  {
    return create(effect);
  }
  if (name == kOfxActionInstanceChanged)
  {
    return changed(effect, in);
  }
  if (name == kOfxImageEffectActionIsIdentity)
  {
    return identity(effect, out);
  }
  if (name == kOfxImageEffectActionRender)
  {
    return render(effect, in);
  }
  return kOfxStatReplyDefault;
}

void setHost(OfxHost* given)
{
  host = given;
}

OfxPlugin record{
    kOfxImageEffectPluginApi, kOfxImageEffectPluginApiVersion, "com.morvellan.test.Gain", 1, 0, &setHost, &mainEntry};

}  // namespace

extern "C"
{

  __attribute__((visibility("default"))) int OfxGetNumberOfPlugins()
  {
    return 1;
  }

  __attribute__((visibility("default"))) OfxPlugin* OfxGetPlugin(int nth)
  {
    return nth == 0 ? &record : nullptr;
  }

}  // extern "C"
