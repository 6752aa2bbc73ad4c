// The action table. An action's handles are checked first, then its arguments are read, then the factory or the
// instance is called; whatever is raised on the way becomes the status.
#include "entry/main_entry.h"

#include <array>
#include <string_view>

#include "entry/exceptions.h"
#include "entry/host_description.h"
#include "entry/log.h"
#include "entry/plugin_factory.h"
#include "entry/suites.h"

namespace OFX
{

namespace
{

const OfxHost* hostRecord = nullptr;

struct Call
{
  PluginFactory& factory;
  const char* action;
  OfxImageEffectHandle effect;
  PropertySet in;
  PropertySet out;
};

ImageEffect& instanceOf(const Call& call)
{
  OfxPropertySetHandle properties = nullptr;
  throwIfFailed(suites().effect->getPropertySet(call.effect, &properties));
  void* instance = PropertySet(properties).getPointer(kOfxPropInstanceData);
  if (instance == nullptr)
  {
    Log::error("The handle passed to '{}' carries no instance.", call.action);
    throw Exception::Suite(kOfxStatErrBadHandle);
  }
  return *static_cast<ImageEffect*>(instance);
}

OfxRectI rectangle(const PropertySet& in, const char* name)
{
  return {in.getInt(name, 0), in.getInt(name, 1), in.getInt(name, 2), in.getInt(name, 3)};
}

OfxPointD renderScale(const PropertySet& in)
{
  return {in.findDouble(kOfxImageEffectPropRenderScale, 0).value_or(1.0),
          in.findDouble(kOfxImageEffectPropRenderScale, 1).value_or(1.0)};
}

ChangeReason changeReason(const PropertySet& in)
{
  const std::string reason = in.getString(kOfxPropChangeReason);
  if (reason == kOfxChangeUserEdited)
    return ChangeReason::UserEdit;
  if (reason == kOfxChangePluginEdited)
    return ChangeReason::PluginEdit;
  if (reason == kOfxChangeTime)
    return ChangeReason::Time;
  throw Exception::Suite(kOfxStatErrValue);
}

SequenceArguments sequenceArguments(const PropertySet& in)
{
  return {
      .frameRange = {in.getDouble(kOfxImageEffectPropFrameRange, 0), in.getDouble(kOfxImageEffectPropFrameRange, 1)},
      .frameStep = in.findDouble(kOfxImageEffectPropFrameStep).value_or(1.0),
      .isInteractive = in.findInt(kOfxPropIsInteractive).value_or(0) != 0};
}

OfxStatus load(const Call& call)
{
  if (host() == nullptr)
    throw Exception::HostInadequate("no host was set before the load");
  suites() = fetchSuites(*host());
  createHostDescription(*host());
  call.factory.load();
  return kOfxStatOK;
}

OfxStatus unload(const Call& call)
{
  call.factory.unload();
  releaseHostDescription();
  return kOfxStatOK;
}

OfxStatus describe(const Call& call)
{
  ImageEffectDescriptor descriptor(call.effect);
  call.factory.describe(descriptor);
  return kOfxStatOK;
}

OfxStatus describeInContext(const Call& call)
{
  const std::string context = call.in.getString(kOfxImageEffectPropContext);
  ImageEffectDescriptor descriptor(call.effect);
  call.factory.describeInContext(descriptor, context);
  return kOfxStatOK;
}

OfxStatus createInstance(const Call& call)
{
  OfxPropertySetHandle handle = nullptr;
  throwIfFailed(suites().effect->getPropertySet(call.effect, &handle));
  const PropertySet properties(handle);
  const std::string context = properties.findString(kOfxImageEffectPropContext).value_or("");
  std::unique_ptr<ImageEffect> instance = call.factory.createInstance(call.effect, context);
  properties.setPointer(kOfxPropInstanceData, instance.get());
  static_cast<void>(instance.release());  // owned by the host's handle until the destroy action
  return kOfxStatOK;
}

OfxStatus destroyInstance(const Call& call)
{
  const std::unique_ptr<ImageEffect> instance(&instanceOf(call));
  instance->properties().setPointer(kOfxPropInstanceData, nullptr);
  return kOfxStatOK;
}

OfxStatus render(const Call& call)
{
  instanceOf(call).render({.time = call.in.getDouble(kOfxPropTime),
                           .renderWindow = rectangle(call.in, kOfxImageEffectPropRenderWindow),
                           .renderScale = renderScale(call.in),
                           .fieldToRender = call.in.findString(kOfxImageEffectPropFieldToRender).value_or("")});
  return kOfxStatOK;
}

OfxStatus isIdentity(const Call& call)
{
  IdentityAnswer answer;
  if (!instanceOf(call).isIdentity({.time = call.in.getDouble(kOfxPropTime),
                                    .renderWindow = rectangle(call.in, kOfxImageEffectPropRenderWindow),
                                    .renderScale = renderScale(call.in)},
                                   answer))
    return kOfxStatReplyDefault;
  call.out.setString(kOfxPropName, answer.clip);
  call.out.setDouble(kOfxPropTime, answer.time);
  return kOfxStatOK;
}

OfxStatus instanceChanged(const Call& call)
{
  const std::string type = call.in.getString(kOfxPropType);
  const std::string name = call.in.getString(kOfxPropName);
  const ChangeArguments arguments{
      .reason = changeReason(call.in), .time = call.in.getDouble(kOfxPropTime), .renderScale = renderScale(call.in)};
  if (type == kOfxTypeParameter)
    instanceOf(call).changedParam(arguments, name);
  else if (type == kOfxTypeClip)
    instanceOf(call).changedClip(arguments, name);
  else
    return kOfxStatReplyDefault;
  return kOfxStatOK;
}

OfxStatus beginInstanceChanged(const Call& call)
{
  instanceOf(call).beginChanged(changeReason(call.in));
  return kOfxStatOK;
}

OfxStatus endInstanceChanged(const Call& call)
{
  instanceOf(call).endChanged(changeReason(call.in));
  return kOfxStatOK;
}

OfxStatus beginSequenceRender(const Call& call)
{
  instanceOf(call).beginSequenceRender(sequenceArguments(call.in));
  return kOfxStatOK;
}

OfxStatus endSequenceRender(const Call& call)
{
  instanceOf(call).endSequenceRender(sequenceArguments(call.in));
  return kOfxStatOK;
}

OfxStatus reply(bool answered)
{
  return answered ? kOfxStatOK : kOfxStatReplyDefault;
}

OfxStatus getRegionOfDefinition(const Call& call)
{
  return reply(instanceOf(call).getRegionOfDefinition(call.in, call.out));
}

OfxStatus getRegionsOfInterest(const Call& call)
{
  return reply(instanceOf(call).getRegionsOfInterest(call.in, call.out));
}

OfxStatus getFramesNeeded(const Call& call)
{
  return reply(instanceOf(call).getFramesNeeded(call.in, call.out));
}

OfxStatus getClipPreferences(const Call& call)
{
  return reply(instanceOf(call).getClipPreferences(call.out));
}

OfxStatus getTimeDomain(const Call& call)
{
  return reply(instanceOf(call).getTimeDomain(call.out));
}

template <void (ImageEffect::*operation)()>
OfxStatus plain(const Call& call)
{
  (instanceOf(call).*operation)();
  return kOfxStatOK;
}

enum class Given
{
  Null,
  Set,
};

struct Action
{
  const char* name;
  Given handle;
  Given in;
  Given out;
  OfxStatus (*operation)(const Call&);
};

constexpr std::array actions{
    Action{kOfxActionLoad, Given::Null, Given::Null, Given::Null, load},
    Action{kOfxActionUnload, Given::Null, Given::Null, Given::Null, unload},
    Action{kOfxActionDescribe, Given::Set, Given::Null, Given::Null, describe},
    Action{kOfxImageEffectActionDescribeInContext, Given::Set, Given::Set, Given::Null, describeInContext},
    Action{kOfxActionCreateInstance, Given::Set, Given::Null, Given::Null, createInstance},
    Action{kOfxActionDestroyInstance, Given::Set, Given::Null, Given::Null, destroyInstance},
    Action{kOfxImageEffectActionRender, Given::Set, Given::Set, Given::Null, render},
    Action{kOfxImageEffectActionIsIdentity, Given::Set, Given::Set, Given::Set, isIdentity},
    Action{kOfxActionInstanceChanged, Given::Set, Given::Set, Given::Null, instanceChanged},
    Action{kOfxActionBeginInstanceChanged, Given::Set, Given::Set, Given::Null, beginInstanceChanged},
    Action{kOfxActionEndInstanceChanged, Given::Set, Given::Set, Given::Null, endInstanceChanged},
    Action{kOfxImageEffectActionBeginSequenceRender, Given::Set, Given::Set, Given::Null, beginSequenceRender},
    Action{kOfxImageEffectActionEndSequenceRender, Given::Set, Given::Set, Given::Null, endSequenceRender},
    Action{kOfxImageEffectActionGetRegionOfDefinition, Given::Set, Given::Set, Given::Set, getRegionOfDefinition},
    Action{kOfxImageEffectActionGetRegionsOfInterest, Given::Set, Given::Set, Given::Set, getRegionsOfInterest},
    Action{kOfxImageEffectActionGetFramesNeeded, Given::Set, Given::Set, Given::Set, getFramesNeeded},
    Action{kOfxImageEffectActionGetClipPreferences, Given::Set, Given::Null, Given::Set, getClipPreferences},
    Action{kOfxImageEffectActionGetTimeDomain, Given::Set, Given::Null, Given::Set, getTimeDomain},
    Action{kOfxActionPurgeCaches, Given::Set, Given::Null, Given::Null, plain<&ImageEffect::purgeCaches>},
    Action{kOfxActionSyncPrivateData, Given::Set, Given::Null, Given::Null, plain<&ImageEffect::syncPrivateData>},
    Action{kOfxActionBeginInstanceEdit, Given::Set, Given::Null, Given::Null, plain<&ImageEffect::beginEdit>},
    Action{kOfxActionEndInstanceEdit, Given::Set, Given::Null, Given::Null, plain<&ImageEffect::endEdit>},
};

// A handle too many is logged and otherwise ignored: hosts differ in what they pass along. One too few ends the action.
void checkHandles(const Action& action, const void* handle, const void* in, const void* out)
{
  bool complete = true;
  const auto missing = [&](Given expected, const void* given)
  {
    const bool isMissing = expected == Given::Set && given == nullptr;
    complete = complete && !isMissing;
    return isMissing;
  };
  const auto surplus = [](Given expected, const void* given) { return expected == Given::Null && given != nullptr; };

  if (missing(action.handle, handle))
    Log::error("'Handle passed to '{}' is null.", action.name);
  if (surplus(action.handle, handle))
    Log::warning("Handle passed to '{}' is not null.", action.name);
  if (missing(action.in, in))
    Log::error("'inArgs' handle passed to '{}' is null.", action.name);
  if (surplus(action.in, in))
    Log::warning("'inArgs' Handle passed to '{}' is not null.", action.name);
  if (missing(action.out, out))
    Log::error("'outArgs' handle passed to '{}' is null.", action.name);
  if (surplus(action.out, out))
    Log::warning("'outArgs' Handle passed to '{}' is not null.", action.name);
  if (!complete)
    throw Exception::Suite(kOfxStatErrBadHandle);
}

OfxStatus perform(PluginFactory& factory, std::string_view name, const void* handle, OfxPropertySetHandle in,
                  OfxPropertySetHandle out)
{
  for (const Action& action : actions)
  {
    if (name != action.name)
      continue;
    checkHandles(action, handle, in, out);
    // The standard's entry takes the handle as const; its suites take it without.
    const auto effect = static_cast<OfxImageEffectHandle>(const_cast<void*>(handle));
    return action.operation({factory, action.name, effect, PropertySet(in), PropertySet(out)});
  }
  return kOfxStatReplyDefault;
}

}  // namespace

const OfxHost* host()
{
  return hostRecord;
}

void setHost(OfxHost* host)
{
  hostRecord = host;
}

OfxStatus dispatch(PluginFactory& factory, const char* action, const void* handle, OfxPropertySetHandle in,
                   OfxPropertySetHandle out) noexcept
{
  const std::string_view name = action != nullptr ? action : "";
  return statusOf(
      [&]
      {
        Log::print("START mainEntry ({})", name);
        OfxStatus status = kOfxStatOK;
        {
          const Log::NestingScope scope;
          status = statusOf([&] { return perform(factory, name, handle, in, out); });
        }
        Log::print("STOP mainEntry ({})\n", name);
        return status;
      });
}

}  // namespace OFX
