// Clips and their images.
#include "host/clip.h"

#include <fmt/format.h>

#include "host/action_scope.h"
#include "host/host.h"
#include "host/property_tables.h"
#include "ofx/ofxNatron.h"

namespace morvellan::host
{

Image::Image(const Effect& effect, const std::string& clip, double time, const Frame& frame, const ImageClaims& claims,
             bool writable)
    : effect_(effect), clip_(clip), properties_(fmt::format("image of {}", clip)), frame_(frame)
{
  if (const ActionScope* scope = ActionScope::current())
  {
    action_ = scope->action();
  }
  if (!writable && Host::current().traits().guardedImages)
  {
    checksum_ = frame.checksum();
  }
  defineImageProperties(properties_);
  const OfxRectI bounds = claims.bounds.value_or(frame.layout().bounds);
  const std::vector<int> corners{bounds.x1, bounds.y1, bounds.x2, bounds.y2};
  const OfxPointD scale = claims.renderScale.value_or(OfxPointD{1.0, 1.0});
  properties_.put(kOfxImageEffectPropPixelDepth, nameOf(claims.depth.value_or(frame.layout().depth)));
  properties_.put(kOfxImageEffectPropComponents, nameOf(claims.components.value_or(frame.layout().components)));
  properties_.put(kOfxImagePropData, static_cast<void*>(claims.nullData ? nullptr : frame.origin()));
  properties_.put(kOfxImagePropBounds, corners);
  properties_.put(kOfxImagePropRegionOfDefinition, corners);
  properties_.put(kOfxImagePropRowBytes, claims.rowBytes.value_or(frame.rowBytes()));
  properties_.put(kOfxImageEffectPropRenderScale, std::vector<double>{scale.x, scale.y});
  properties_.put(kOfxImagePropUniqueIdentifier,
                  fmt::format("{}.{}.{}", clip, time, static_cast<const void*>(frame.origin())));
}

std::string Image::damage() const
{
  if (!frame_.intact())
  {
    return fmt::format("memory beside the pixels of the image of {} was written", clip_);
  }
  if (checksum_ && *checksum_ != frame_.checksum())
  {
    return fmt::format("the pixels of the image of {} were written, which is an input", clip_);
  }
  return {};
}

Clip::Clip(Effect& effect, const std::string& name)
    : effect_(effect), name_(name), properties_(fmt::format("clip {}", name))
{
  defineClipProperties(properties_, name);
}

Clip::Clip(Effect& effect, const Clip& described)
    : effect_(effect), name_(described.name_), properties_(fmt::format("clip {}", name_))
{
  defineClipInstanceProperties(properties_, described.properties_);
  if (Host::current().traits().natronExtensions)
  {
    properties_.define(kOfxImageClipPropFormat, Access::ReadOnly, std::vector<int>{0, 0, 0, 0});
  }
}

void Clip::setFormat(Components components, Depth depth)
{
  properties_.put(kOfxImageEffectPropComponents, nameOf(components));
  properties_.put(kOfxImageClipPropUnmappedComponents, nameOf(components));
  properties_.put(kOfxImageEffectPropPixelDepth, nameOf(depth));
  properties_.put(kOfxImageClipPropUnmappedPixelDepth, nameOf(depth));
}

void Clip::setFrameRange(double first, double last)
{
  properties_.put(kOfxImageEffectPropFrameRange, std::vector<double>{first, last});
  properties_.put(kOfxImageEffectPropUnmappedFrameRange, std::vector<double>{first, last});
}

void Clip::setFrameRate(double rate)
{
  properties_.put(kOfxImageEffectPropFrameRate, rate);
  properties_.put(kOfxImageEffectPropUnmappedFrameRate, rate);
}

void Clip::setPixelFrame(const OfxRectI& frame)
{
  if (properties_.has(kOfxImageClipPropFormat))
  {
    properties_.put(kOfxImageClipPropFormat, std::vector<int>{frame.x1, frame.y1, frame.x2, frame.y2});
  }
}

void Clip::setSource(const Frame& frame)
{
  setSource([frame](double) { return std::optional<Frame>(frame); });
  const OfxRectI bounds = frame.layout().bounds;
  regionOfDefinition = OfxRectD{static_cast<double>(bounds.x1), static_cast<double>(bounds.y1),
                                static_cast<double>(bounds.x2), static_cast<double>(bounds.y2)};
  setFormat(frame.layout().components, frame.layout().depth);
  setPixelFrame(bounds);
}

}  // namespace morvellan::host
