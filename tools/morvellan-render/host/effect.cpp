// Effect instances: their making from a description, and their actions in a real host's order.
#include "host/effect.h"

#include <cmath>
#include <stdexcept>

#include <fmt/format.h>

#include "host/action_scope.h"
#include "host/host.h"
#include "host/property_tables.h"

namespace morvellan::host
{
namespace
{

constexpr Access readOnly = Access::ReadOnly;
constexpr Access writable = Access::Writable;

std::vector<double> pair(OfxPointD point)
{
  return {point.x, point.y};
}

}  // namespace

Clip* Effect::findClip(std::string_view name) const
{
  for (const auto& clip : clips_)
  {
    if (clip->name() == name)
    {
      return clip.get();
    }
  }
  return nullptr;
}

Clip& Effect::clip(std::string_view name) const
{
  Clip* const found = findClip(name);
  if (found == nullptr)
  {
    throw std::out_of_range(fmt::format("there is no clip {}", name));
  }
  return *found;
}

EffectInstance::EffectInstance(LoadedPlugin& plugin, const EffectDescriptor& described,
                               const InstanceSettings& settings)
    : Effect("effect instance", true), plugin_(plugin), settings_(settings)
{
  defineEffectInstanceProperties(properties(), described.properties());
  properties().put(kOfxImageEffectPropContext, settings.context);
  properties().put(kOfxImageEffectPropProjectOffset, pair(settings.projectOffset));
  properties().put(kOfxImageEffectPropProjectPixelAspectRatio, settings.pixelAspect);
  properties().put(kOfxImageEffectPropFrameRate, settings.frameRate);
  properties().put(kOfxImageEffectInstancePropEffectDuration, settings.frameRange.max - settings.frameRange.min + 1.0);
  properties().put(kOfxPropIsInteractive, settings.interactive ? 1 : 0);
  setProjectSize(settings.projectSize);
  for (const auto& clip : described.clips())
  {
    Clip& added = addClip(std::make_unique<Clip>(*this, *clip));
    added.setFormat(settings.components, settings.depth);
    added.setFrameRange(settings.frameRange.min, settings.frameRange.max);
    added.setFrameRate(settings.frameRate);
    added.setPixelAspect(settings.pixelAspect);
    added.setConnected(added.isOutput() || settings.sourceConnected);
    added.regionOfDefinition = OfxRectD{0.0, 0.0, settings.projectSize.x, settings.projectSize.y};
    added.setPixelFrame({0, 0, static_cast<int>(settings.projectSize.x), static_cast<int>(settings.projectSize.y)});
  }
  for (const auto& param : described.params().params())
  {
    params().addInstanceOf(*param);
    // Changes that the plug-in itself makes to a living parameter's look.
    Param& added = params().at(param->name());
    added.properties().onWrite(
        [name = added.name()](const std::string& property)
        {
          const ActionScope* const scope = ActionScope::current();
          requireAction(fmt::format("setting {} of {}", property, name),
                        {kOfxActionCreateInstance, kOfxActionInstanceChanged, kOfxActionBeginInstanceChanged,
                         kOfxActionEndInstanceChanged, kOfxActionSyncPrivateData});
          Host::current().observer().parameterPropertyWritten(
              {name, property, scope == nullptr ? "" : scope->action()});
        });
  }
  for (const auto& [name, value] : settings.project)
  {
    params().at(name).setValue(value);
  }
}

EffectInstance::~EffectInstance()
{
  if (created_)
  {
    destroy();
  }
}

void EffectInstance::setProjectSize(OfxPointD size)
{
  properties().put(kOfxImageEffectPropProjectSize, pair(size));
  properties().put(kOfxImageEffectPropProjectExtent, pair(size));
}

OfxStatus EffectInstance::call(const char* action, double time, PropertySet* in, PropertySet* out)
{
  const OfxStatus status = plugin_.call(action, this, time, in, out);
  for (const std::string& clip : Host::current().imagesOut(*this, action))
  {
    Host::current().observer().misuse(fmt::format("[{}] an image of {} was not released", action, clip));
  }
  while (!params().editBlocks().empty())
  {
    Host::current().observer().misuse(
        fmt::format("[{}] the edit block {} was not ended", action, params().editBlocks().back()));
    params().endEdit();
  }
  return status;
}

OfxStatus EffectInstance::create()
{
  const OfxStatus status = call(kOfxActionCreateInstance, currentTime_, nullptr, nullptr);
  created_ = status == kOfxStatOK || status == kOfxStatReplyDefault;
  return status;
}

OfxStatus EffectInstance::destroy()
{
  created_ = false;
  return call(kOfxActionDestroyInstance, currentTime_, nullptr, nullptr);
}

OfxStatus EffectInstance::beginChanged(const char* reason)
{
  PropertySet in(fmt::format("arguments of {}", kOfxActionBeginInstanceChanged));
  in.define(kOfxPropChangeReason, readOnly, std::deque<std::string>{reason});
  return call(kOfxActionBeginInstanceChanged, currentTime_, &in, nullptr);
}

OfxStatus EffectInstance::changed(const char* type, std::string_view name, const char* reason)
{
  PropertySet in(fmt::format("arguments of {}", kOfxActionInstanceChanged));
  in.define(kOfxPropType, readOnly, std::deque<std::string>{type});
  in.define(kOfxPropName, readOnly, std::deque<std::string>{std::string(name)});
  in.define(kOfxPropChangeReason, readOnly, std::deque<std::string>{reason});
  in.define(kOfxPropTime, readOnly, std::vector<double>{currentTime_});
  in.define(kOfxImageEffectPropRenderScale, readOnly, pair(renderScale_));
  return call(kOfxActionInstanceChanged, currentTime_, &in, nullptr);
}

OfxStatus EffectInstance::endChanged(const char* reason)
{
  PropertySet in(fmt::format("arguments of {}", kOfxActionEndInstanceChanged));
  in.define(kOfxPropChangeReason, readOnly, std::deque<std::string>{reason});
  return call(kOfxActionEndInstanceChanged, currentTime_, &in, nullptr);
}

void EffectInstance::noteWrite(Param& param)
{
  if (collectWrites_)
  {
    written_.push_back(param.name());
  }
}

// A host answers a plug-in's own writes with change actions of their own, after the edit that caused them.
void EffectInstance::echoWrites()
{
  collectWrites_ = false;
  const std::vector<std::string> written = std::move(written_);
  written_.clear();
  if (written.empty() || !Host::current().traits().echoPluginEdits)
  {
    return;
  }
  beginChanged(kOfxChangePluginEdited);
  for (const std::string& name : written)
  {
    changed(kOfxTypeParameter, name, kOfxChangePluginEdited);
  }
  endChanged(kOfxChangePluginEdited);
}

OfxStatus EffectInstance::edit(std::string_view name, const ParamValue& value)
{
  Param& param = params().at(name);
  if (param.hasValue())
  {
    if (const std::string complaint = param.complaintAbout(value); !complaint.empty())
    {
      throw std::invalid_argument(complaint);
    }
    if (param.keys().empty())
    {
      param.setValue(value);
    }
    else
    {
      param.setKey(currentTime_, value);
    }
  }
  beginChanged(kOfxChangeUserEdited);
  collectWrites_ = true;
  const OfxStatus status = changed(kOfxTypeParameter, name, kOfxChangeUserEdited);
  echoWrites();
  endChanged(kOfxChangeUserEdited);
  return status;
}

OfxStatus EffectInstance::press(std::string_view name)
{
  if (params().at(name).kind() != ParamKind::PushButton)
  {
    throw std::invalid_argument(fmt::format("{} is not a button", name));
  }
  return edit(name, {});
}

OfxStatus EffectInstance::clipChanged(std::string_view name, const char* reason)
{
  beginChanged(reason);
  collectWrites_ = true;
  const OfxStatus status = changed(kOfxTypeClip, name, reason);
  echoWrites();
  endChanged(reason);
  return status;
}

void EffectInstance::defineRenderArguments(PropertySet& arguments, double time, OfxRectI window) const
{
  arguments.define(kOfxPropTime, readOnly, std::vector<double>{time});
  arguments.define(kOfxImageEffectPropFieldToRender, readOnly, std::deque<std::string>{kOfxImageFieldNone});
  arguments.define(kOfxImageEffectPropRenderWindow, readOnly,
                   std::vector<int>{window.x1, window.y1, window.x2, window.y2});
  arguments.define(kOfxImageEffectPropRenderScale, readOnly, pair(renderScale_));
  arguments.define(kOfxImageEffectPropSequentialRenderStatus, readOnly, std::vector<int>{0});
  arguments.define(kOfxImageEffectPropInteractiveRenderStatus, readOnly,
                   std::vector<int>{settings_.interactive ? 1 : 0});
  arguments.define(kOfxImageEffectPropRenderQualityDraft, readOnly, std::vector<int>{0});
}

void EffectInstance::defineSequenceArguments(PropertySet& arguments, OfxRangeD frames, double step) const
{
  arguments.define(kOfxImageEffectPropFrameRange, readOnly, std::vector<double>{frames.min, frames.max});
  arguments.define(kOfxImageEffectPropFrameStep, readOnly, std::vector<double>{step});
  arguments.define(kOfxPropIsInteractive, readOnly, std::vector<int>{settings_.interactive ? 1 : 0});
  arguments.define(kOfxImageEffectPropRenderScale, readOnly, pair(renderScale_));
  arguments.define(kOfxImageEffectPropSequentialRenderStatus, readOnly, std::vector<int>{0});
  arguments.define(kOfxImageEffectPropInteractiveRenderStatus, readOnly,
                   std::vector<int>{settings_.interactive ? 1 : 0});
}

std::optional<Identity> EffectInstance::isIdentity(double time)
{
  const OfxRectD region = regionOfDefinition(time);
  const OfxRectI window{static_cast<int>(std::floor(region.x1)), static_cast<int>(std::floor(region.y1)),
                        static_cast<int>(std::ceil(region.x2)), static_cast<int>(std::ceil(region.y2))};
  PropertySet in(fmt::format("arguments of {}", kOfxImageEffectActionIsIdentity));
  defineRenderArguments(in, time, window);
  PropertySet out(fmt::format("answers of {}", kOfxImageEffectActionIsIdentity));
  out.define(kOfxPropName, writable, std::deque<std::string>{""});
  out.define(kOfxPropTime, writable, std::vector<double>{time});
  if (call(kOfxImageEffectActionIsIdentity, time, &in, &out) != kOfxStatOK)
  {
    return std::nullopt;
  }
  Identity identity{out.getString(kOfxPropName), out.getDouble(kOfxPropTime)};
  if (findClip(identity.clip) == nullptr)
  {
    Host::current().observer().misuse(fmt::format("[{}] identity of the clip \"{}\", which does not exist",
                                                  kOfxImageEffectActionIsIdentity, identity.clip));
    return std::nullopt;
  }
  return identity;
}

OfxStatus EffectInstance::beginSequence(OfxRangeD frames, double step)
{
  PropertySet in(fmt::format("arguments of {}", kOfxImageEffectActionBeginSequenceRender));
  defineSequenceArguments(in, frames, step);
  return call(kOfxImageEffectActionBeginSequenceRender, frames.min, &in, nullptr);
}

OfxStatus EffectInstance::endSequence(OfxRangeD frames, double step)
{
  PropertySet in(fmt::format("arguments of {}", kOfxImageEffectActionEndSequenceRender));
  defineSequenceArguments(in, frames, step);
  return call(kOfxImageEffectActionEndSequenceRender, frames.max, &in, nullptr);
}

std::optional<Frame> EffectInstance::outputAt(double time) const
{
  const std::scoped_lock lock(mutex_);
  const auto found = outputs_.find(time);
  return found == outputs_.end() ? std::nullopt : std::optional(found->second);
}

OfxStatus EffectInstance::render(double time, const std::optional<Frame>& output)
{
  return render(time, output, output ? output->layout().bounds : OfxRectI{});
}

// A host keeps to the thread safety that the effect declares.
std::unique_lock<std::mutex> EffectInstance::renderTurn()
{
  static std::mutex allInstances;
  const std::string safety = properties().getString(kOfxImageEffectPluginRenderThreadSafety);
  if (safety == kOfxImageEffectRenderFullySafe)
  {
    return {};
  }
  return std::unique_lock(safety == kOfxImageEffectRenderInstanceSafe ? renderMutex_ : allInstances);
}

OfxStatus EffectInstance::render(double time, const std::optional<Frame>& output, OfxRectI window)
{
  const std::unique_lock turn = renderTurn();
  if (output)
  {
    const std::scoped_lock lock(mutex_);
    outputs_.insert_or_assign(time, *output);
  }
  PropertySet in(fmt::format("arguments of {}", kOfxImageEffectActionRender));
  defineRenderArguments(in, time, window);
  const OfxStatus status = call(kOfxImageEffectActionRender, time, &in, nullptr);
  const std::scoped_lock lock(mutex_);
  outputs_.erase(time);
  return status;
}

OfxRectD EffectInstance::regionOfDefinition(double time)
{
  PropertySet in(fmt::format("arguments of {}", kOfxImageEffectActionGetRegionOfDefinition));
  in.define(kOfxPropTime, readOnly, std::vector<double>{time});
  in.define(kOfxImageEffectPropRenderScale, readOnly, pair(renderScale_));
  PropertySet out(fmt::format("answers of {}", kOfxImageEffectActionGetRegionOfDefinition));
  OfxRectD region{0.0, 0.0, settings_.projectSize.x, settings_.projectSize.y};
  if (const Clip* const source = findClip(kOfxImageEffectSimpleSourceClipName);
      source != nullptr && source->isConnected() && source->regionOfDefinition)
  {
    region = *source->regionOfDefinition;
  }
  out.define(kOfxImageEffectPropRegionOfDefinition, writable,
             std::vector<double>{region.x1, region.y1, region.x2, region.y2});
  if (call(kOfxImageEffectActionGetRegionOfDefinition, time, &in, &out) == kOfxStatOK)
  {
    const auto side = [&](int index) { return out.getDouble(kOfxImageEffectPropRegionOfDefinition, index); };
    region = {side(0), side(1), side(2), side(3)};
  }
  return region;
}

OfxStatus EffectInstance::regionsOfInterest(double time, OfxRectD region)
{
  PropertySet in(fmt::format("arguments of {}", kOfxImageEffectActionGetRegionsOfInterest));
  const std::vector<double> sides{region.x1, region.y1, region.x2, region.y2};
  in.define(kOfxPropTime, readOnly, std::vector<double>{time});
  in.define(kOfxImageEffectPropRenderScale, readOnly, pair(renderScale_));
  in.define(kOfxImageEffectPropRegionOfInterest, readOnly, sides);
  PropertySet out(fmt::format("answers of {}", kOfxImageEffectActionGetRegionsOfInterest));
  for (const auto& clip : clips())
  {
    out.define("OfxImageClipPropROI_" + clip->name(), writable, sides);
  }
  return call(kOfxImageEffectActionGetRegionsOfInterest, time, &in, &out);
}

OfxStatus EffectInstance::framesNeeded(double time)
{
  PropertySet in(fmt::format("arguments of {}", kOfxImageEffectActionGetFramesNeeded));
  in.define(kOfxPropTime, readOnly, std::vector<double>{time});
  PropertySet out(fmt::format("answers of {}", kOfxImageEffectActionGetFramesNeeded));
  for (const auto& clip : clips())
  {
    out.define("OfxImageClipPropFrameRange_" + clip->name(), writable, std::vector<double>{time, time}, 0);
  }
  return call(kOfxImageEffectActionGetFramesNeeded, time, &in, &out);
}

OfxStatus EffectInstance::clipPreferences()
{
  PropertySet out(fmt::format("answers of {}", kOfxImageEffectActionGetClipPreferences));
  for (const auto& clip : clips())
  {
    const PropertySet& own = clip->properties();
    out.define("OfxImageClipPropComponents_" + clip->name(), writable,
               std::deque<std::string>{own.getString(kOfxImageEffectPropComponents)});
    out.define("OfxImageClipPropDepth_" + clip->name(), writable,
               std::deque<std::string>{own.getString(kOfxImageEffectPropPixelDepth)});
    out.define("OfxImageClipPropPAR_" + clip->name(), writable,
               std::vector<double>{own.getDouble(kOfxImagePropPixelAspectRatio)});
  }
  out.define(kOfxImageEffectPropFrameRate, writable, std::vector<double>{settings_.frameRate});
  out.define(kOfxImageClipPropFieldOrder, writable, std::deque<std::string>{kOfxImageFieldNone});
  out.define(kOfxImageEffectPropPreMultiplication, writable, std::deque<std::string>{kOfxImagePreMultiplied});
  out.define(kOfxImageClipPropContinuousSamples, writable, std::vector<int>{0});
  out.define(kOfxImageEffectFrameVarying, writable, std::vector<int>{0});
  return call(kOfxImageEffectActionGetClipPreferences, currentTime_, nullptr, &out);
}

OfxStatus EffectInstance::timeDomain()
{
  PropertySet out(fmt::format("answers of {}", kOfxImageEffectActionGetTimeDomain));
  out.define(kOfxImageEffectPropFrameRange, writable,
             std::vector<double>{settings_.frameRange.min, settings_.frameRange.max});
  return call(kOfxImageEffectActionGetTimeDomain, currentTime_, nullptr, &out);
}

OfxStatus EffectInstance::simple(const char* action)
{
  return call(action, currentTime_, nullptr, nullptr);
}

}  // namespace morvellan::host
