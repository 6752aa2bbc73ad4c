// The image effect suite: property and parameter sets, clips, images, image memory.
#include <algorithm>
#include <cstdlib>

#include <fmt/format.h>

#include "host/action_scope.h"
#include "host/host.h"
#include "host/suites.h"

namespace morvellan::host
{
namespace
{

// A block of image memory: allocated through one handle, locked to be used.
class ImageMemory : public Handled<ImageMemory, OfxImageMemoryHandle>
{
public:
  explicit ImageMemory(void* memory) : memory_(memory) {}

  void* memory() const { return memory_; }
  int locks = 0;

private:
  void* memory_;
};

Effect* livingEffect(OfxImageEffectHandle handle, const char* call)
{
  Effect* const effect = Effect::living(handle);
  if (effect == nullptr)
  {
    reportMisuse(fmt::format("{}: the effect handle is {}", call, handle == nullptr ? "null" : "not alive"));
  }
  return effect;
}

Clip* livingClip(OfxImageClipHandle handle, const char* call)
{
  Clip* const clip = Clip::living(handle);
  if (clip == nullptr)
  {
    reportMisuse(fmt::format("{}: the clip handle is {}", call, handle == nullptr ? "null" : "not alive"));
    return nullptr;
  }
  if (!clip->effect().isInstance())
  {
    reportMisuse(fmt::format("{}({}): the clip is a descriptor's", call, clip->name()));
    return nullptr;
  }
  return clip;
}

OfxStatus getPropertySet(OfxImageEffectHandle handle, OfxPropertySetHandle* properties)
{
  Effect* const effect = livingEffect(handle, "getPropertySet");
  if (effect == nullptr || properties == nullptr)
  {
    return kOfxStatErrBadHandle;
  }
  *properties = effect->properties().handle();
  return kOfxStatOK;
}

OfxStatus getParamSet(OfxImageEffectHandle handle, OfxParamSetHandle* set)
{
  Effect* const effect = livingEffect(handle, "getParamSet");
  if (effect == nullptr || set == nullptr)
  {
    return kOfxStatErrBadHandle;
  }
  const ActionScope* const scope = ActionScope::current();
  if (scope != nullptr && scope->action() == kOfxActionDescribe)
  {
    reportMisuse("getParamSet: parameters are described in context");
  }
  *set = effect->params().handle();
  return kOfxStatOK;
}

OfxStatus clipDefine(OfxImageEffectHandle handle, const char* name, OfxPropertySetHandle* properties)
{
  Effect* const effect = livingEffect(handle, "clipDefine");
  if (effect == nullptr)
  {
    return kOfxStatErrBadHandle;
  }
  requireAction("clipDefine", {kOfxImageEffectActionDescribeInContext});
  if (name == nullptr || *name == '\0' || effect->isInstance())
  {
    reportMisuse("clipDefine: the name is missing, or the effect is an instance");
    return kOfxStatErrBadHandle;
  }
  if (effect->findClip(name) != nullptr)
  {
    reportMisuse(fmt::format("clipDefine({}): the name is taken", name));
    return kOfxStatErrExists;
  }
  Clip& clip = effect->addClip(std::make_unique<Clip>(*effect, name));
  if (properties != nullptr)
  {
    *properties = clip.properties().handle();
  }
  return kOfxStatOK;
}

OfxStatus clipGetHandle(OfxImageEffectHandle handle, const char* name, OfxImageClipHandle* clip,
                        OfxPropertySetHandle* properties)
{
  Effect* const effect = livingEffect(handle, "clipGetHandle");
  if (effect == nullptr)
  {
    return kOfxStatErrBadHandle;
  }
  if (!effect->isInstance())
  {
    reportMisuse("clipGetHandle: the effect is a descriptor");
    return kOfxStatErrBadHandle;
  }
  Clip* const found = name == nullptr ? nullptr : effect->findClip(name);
  if (found == nullptr)
  {
    reportMisuse(fmt::format("clipGetHandle({}): no such clip was described", name == nullptr ? "null" : name));
    return kOfxStatErrUnknown;
  }
  if (clip == nullptr)
  {
    reportMisuse("clipGetHandle: the place for the answer is null");
    return kOfxStatErrValue;
  }
  *clip = found->handle();
  if (properties != nullptr)
  {
    *properties = found->properties().handle();
  }
  return kOfxStatOK;
}

OfxStatus clipGetPropertySet(OfxImageClipHandle handle, OfxPropertySetHandle* properties)
{
  Clip* const clip = livingClip(handle, "clipGetPropertySet");
  if (clip == nullptr || properties == nullptr)
  {
    return kOfxStatErrBadHandle;
  }
  *properties = clip->properties().handle();
  return kOfxStatOK;
}

OfxStatus clipGetImage(OfxImageClipHandle handle, OfxTime time, const OfxRectD* /*region*/, OfxPropertySetHandle* image)
{
  const Clip* const clip = livingClip(handle, "clipGetImage");
  if (clip == nullptr)
  {
    return kOfxStatErrBadHandle;
  }
  if (image == nullptr)
  {
    reportMisuse(fmt::format("clipGetImage({}): the place for the answer is null", clip->name()));
    return kOfxStatErrValue;
  }
  requireAction(fmt::format("clipGetImage({})", clip->name()),
                {kOfxImageEffectActionRender, kOfxActionInstanceChanged, kOfxImageEffectActionBeginSequenceRender,
                 kOfxImageEffectActionEndSequenceRender});
  if (!clip->isOutput() && !clip->isConnected())
  {
    reportMisuse(fmt::format("clipGetImage({}): the clip is not connected", clip->name()));
    return kOfxStatFailed;
  }
  const ActionScope* const scope = ActionScope::current();
  const bool rendering = scope != nullptr && scope->action() == kOfxImageEffectActionRender;
  if (rendering && !clip->isOutput() && time != scope->time() &&
      clip->properties().getInt(kOfxImageEffectPropTemporalClipAccess) == 0)
  {
    reportMisuse(fmt::format("clipGetImage({}): time {} in the render of {} without temporal access", clip->name(),
                             time, scope->time()));
  }
  const auto& instance = static_cast<const EffectInstance&>(clip->effect());
  const bool writable = clip->isOutput() && rendering;
  const std::optional<Frame> frame = writable ? instance.outputAt(time) : clip->frameAt(time);
  if (!frame)
  {
    return kOfxStatFailed;
  }
  Host& host = Host::current();
  *image = host.lend(std::make_unique<Image>(instance, clip->name(), time, *frame, clip->claims, writable))
               .properties()
               .handle();
  return kOfxStatOK;
}

OfxStatus clipReleaseImage(OfxPropertySetHandle image)
{
  if (!Host::current().release(image))
  {
    reportMisuse(fmt::format("clipReleaseImage: the handle is {}", image == nullptr ? "null" : "of no living image"));
    return kOfxStatErrBadHandle;
  }
  return kOfxStatOK;
}

OfxStatus clipGetRegionOfDefinition(OfxImageClipHandle handle, OfxTime /*time*/, OfxRectD* bounds)
{
  const Clip* const clip = livingClip(handle, "clipGetRegionOfDefinition");
  if (clip == nullptr || bounds == nullptr)
  {
    return kOfxStatErrBadHandle;
  }
  if (!clip->regionOfDefinition)
  {
    return kOfxStatFailed;
  }
  *bounds = *clip->regionOfDefinition;
  return kOfxStatOK;
}

int abortRequested(OfxImageEffectHandle handle)
{
  return livingEffect(handle, "abort") != nullptr && Host::current().observer().abortRequested() ? 1 : 0;
}

OfxStatus imageMemoryAlloc(OfxImageEffectHandle handle, size_t bytes, OfxImageMemoryHandle* memory)
{
  if ((handle != nullptr && livingEffect(handle, "imageMemoryAlloc") == nullptr) || memory == nullptr)
  {
    return kOfxStatErrBadHandle;
  }
  void* const block = Host::current().allocate(bytes, handle);
  if (block == nullptr)
  {
    return kOfxStatErrMemory;
  }
  *memory = (new ImageMemory(block))->handle();  // owned by the handle until imageMemoryFree
  return kOfxStatOK;
}

ImageMemory* livingMemory(OfxImageMemoryHandle handle, const char* call)
{
  ImageMemory* const memory = ImageMemory::living(handle);
  if (memory == nullptr)
  {
    reportMisuse(fmt::format("{}: the memory handle is not alive", call));
  }
  return memory;
}

OfxStatus imageMemoryFree(OfxImageMemoryHandle handle)
{
  const std::unique_ptr<ImageMemory> memory(livingMemory(handle, "imageMemoryFree"));
  if (memory == nullptr)
  {
    return kOfxStatErrBadHandle;
  }
  if (memory->locks > 0)
  {
    reportMisuse("imageMemoryFree: the memory is locked");
  }
  Host::current().free(memory->memory());
  return kOfxStatOK;
}

OfxStatus imageMemoryLock(OfxImageMemoryHandle handle, void** pointer)
{
  ImageMemory* const memory = livingMemory(handle, "imageMemoryLock");
  if (memory == nullptr || pointer == nullptr)
  {
    return kOfxStatErrBadHandle;
  }
  ++memory->locks;
  *pointer = memory->memory();
  return kOfxStatOK;
}

OfxStatus imageMemoryUnlock(OfxImageMemoryHandle handle)
{
  ImageMemory* const memory = livingMemory(handle, "imageMemoryUnlock");
  if (memory == nullptr)
  {
    return kOfxStatErrBadHandle;
  }
  if (memory->locks == 0)
  {
    reportMisuse("imageMemoryUnlock: the memory is not locked");
    return kOfxStatErrValue;
  }
  --memory->locks;
  return kOfxStatOK;
}

}  // namespace

const OfxImageEffectSuiteV1& imageEffectSuite()
{
  static const OfxImageEffectSuiteV1 suite{
      &getPropertySet,     &getParamSet,      &clipDefine,       &clipGetHandle,
      &clipGetPropertySet, &clipGetImage,     &clipReleaseImage, &clipGetRegionOfDefinition,
      &abortRequested,     &imageMemoryAlloc, &imageMemoryFree,  &imageMemoryLock,
      &imageMemoryUnlock};
  return suite;
}

}  // namespace morvellan::host
