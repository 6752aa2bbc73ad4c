// The base operations, which do nothing, and the calls of the image effect and message suites.
#include "entry/image_effect.h"

#include "entry/exceptions.h"
#include "entry/host_description.h"
#include "entry/log.h"
#include "entry/suites.h"

namespace OFX
{

namespace
{

PropertySet propertiesOf(OfxImageEffectHandle handle)
{
  OfxPropertySetHandle properties = nullptr;
  throwIfFailed(suites().effect->getPropertySet(handle, &properties));
  return PropertySet(properties);
}

OfxParamSetHandle paramSetOf(OfxImageEffectHandle handle)
{
  OfxParamSetHandle set = nullptr;
  throwIfFailed(suites().effect->getParamSet(handle, &set));
  return set;
}

const char* levelName(MessageLevel level)
{
  switch (level)
  {
  case MessageLevel::Warning:
    return kOfxMessageWarning;
  case MessageLevel::Message:
    return kOfxMessageMessage;
  default:
    return kOfxMessageError;
  }
}

// A message that the host refuses is logged and no more: it reports something, it decides nothing.
void logRefusal(OfxStatus status, const std::string& text)
{
  if (status != kOfxStatOK && status != kOfxStatReplyDefault)
    Log::warning("Failed on showing the message '{}', host returned status {};", text, statusName(status));
}

}  // namespace

HostTraits hostTraits(const std::string& hostName)
{
  return {.isDaVinciResolve = hostName.starts_with("DaVinciResolve"),
          .isFusion = hostName == "com.eyeonline.Fusion" || hostName == "com.blackmagicdesign.Fusion",
          .isVegas = hostName == "com.sonycreativesoftware.vegas"};
}

ImageEffect::ImageEffect(OfxImageEffectHandle handle)
    : ParamSet(paramSetOf(handle)), handle_(handle), properties_(propertiesOf(handle)),
      traits_(hostDescription() != nullptr ? hostTraits(hostDescription()->name) : HostTraits{})
{
}

ImageEffect::~ImageEffect() = default;

void ImageEffect::purgeCaches() {}

void ImageEffect::syncPrivateData() {}

void ImageEffect::beginSequenceRender(const SequenceArguments&) {}

void ImageEffect::endSequenceRender(const SequenceArguments&) {}

bool ImageEffect::isIdentity(const IdentityArguments&, IdentityAnswer&)
{
  return false;
}

bool ImageEffect::getRegionOfDefinition(const PropertySet&, const PropertySet&)
{
  return false;
}

bool ImageEffect::getRegionsOfInterest(const PropertySet&, const PropertySet&)
{
  return false;
}

bool ImageEffect::getFramesNeeded(const PropertySet&, const PropertySet&)
{
  return false;
}

bool ImageEffect::getClipPreferences(const PropertySet&)
{
  return false;
}

bool ImageEffect::getTimeDomain(const PropertySet&)
{
  return false;
}

void ImageEffect::beginEdit() {}

void ImageEffect::endEdit() {}

void ImageEffect::changedParam(const ChangeArguments&, const std::string&) {}

void ImageEffect::changedClip(const ChangeArguments&, const std::string&) {}

void ImageEffect::beginChanged(ChangeReason) {}

void ImageEffect::endChanged(ChangeReason) {}

Clip ImageEffect::fetchClip(const std::string& name) const
{
  OfxImageClipHandle clip = nullptr;
  OfxPropertySetHandle properties = nullptr;
  const OfxStatus status = suites().effect->clipGetHandle(handle_, name.c_str(), &clip, &properties);
  if (status != kOfxStatOK)
  {
    Log::error("Failed on fetching clip {}, host returned status {};", name, statusName(status));
    throw Exception::Suite(status);
  }
  return {clip, PropertySet(properties)};
}

void ImageEffect::setPersistentMessage(MessageLevel level, const std::string& text) const
{
  const OfxMessageSuiteV2* persistent = suites().messageV2;
  if (persistent == nullptr || persistent->setPersistentMessage == nullptr)
  {
    showMessage(level, text);
    return;
  }
  logRefusal(persistent->setPersistentMessage(handle_, levelName(level), "", "%s", text.c_str()), text);
}

void ImageEffect::clearPersistentMessage() const
{
  const OfxMessageSuiteV2* persistent = suites().messageV2;
  if (persistent != nullptr && persistent->clearPersistentMessage != nullptr)
    persistent->clearPersistentMessage(handle_);
}

void ImageEffect::showMessage(MessageLevel level, const std::string& text) const
{
  logRefusal(suites().message->message(handle_, levelName(level), "", "%s", text.c_str()), text);
}

void ClipDescriptor::addSupportedComponent(PixelComponents components)
{
  const char* name = components == PixelComponents::RGBA  ? kOfxImageComponentRGBA
                     : components == PixelComponents::RGB ? kOfxImageComponentRGB
                                                          : kOfxImageComponentAlpha;
  properties_.setString(kOfxImageEffectPropSupportedComponents, name, components_++);
}

void ClipDescriptor::setTemporalClipAccess(bool access)
{
  properties_.setInt(kOfxImageEffectPropTemporalClipAccess, access ? 1 : 0);
}

void ClipDescriptor::setSupportsTiles(bool tiles)
{
  properties_.setInt(kOfxImageEffectPropSupportsTiles, tiles ? 1 : 0);
}

void ClipDescriptor::setIsMask(bool mask)
{
  properties_.setInt(kOfxImageClipPropIsMask, mask ? 1 : 0);
}

void ClipDescriptor::setOptional(bool optional)
{
  properties_.setInt(kOfxImageClipPropOptional, optional ? 1 : 0);
}

ImageEffectDescriptor::ImageEffectDescriptor(OfxImageEffectHandle handle)
    : handle_(handle), properties_(propertiesOf(handle))
{
}

void ImageEffectDescriptor::addSupportedContext(const char* context)
{
  properties_.setString(kOfxImageEffectPropSupportedContexts, context, contexts_++);
}

void ImageEffectDescriptor::addSupportedBitDepth(const char* depth)
{
  properties_.setString(kOfxImageEffectPropSupportedPixelDepths, depth, depths_++);
}

ClipDescriptor ImageEffectDescriptor::defineClip(const std::string& name) const
{
  OfxPropertySetHandle properties = nullptr;
  throwIfFailed(suites().effect->clipDefine(handle_, name.c_str(), &properties));
  return ClipDescriptor(PropertySet(properties));
}

ParamSetDescriptor ImageEffectDescriptor::params() const
{
  return ParamSetDescriptor(paramSetOf(handle_));
}

}  // namespace OFX
