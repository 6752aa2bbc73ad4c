// A clip, as described or as an instance has it, and the images that it hands to a plug-in.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "host/frame.h"
#include "host/handles.h"
#include "host/property_set.h"
#include "ofx/ofxImageEffect.h"

namespace morvellan::host
{

class Effect;

// What a host may claim about an image in place of the truth, to see how a plug-in takes it.
struct ImageClaims
{
  bool nullData = false;
  std::optional<OfxRectI> bounds;
  std::optional<int> rowBytes;
  std::optional<Components> components;
  std::optional<Depth> depth;
  std::optional<OfxPointD> renderScale;
};

// An image in a plug-in's hands, from its fetching to its release.
class Image
{
public:
  Image(const Effect& effect, const std::string& clip, double time, const Frame& frame, const ImageClaims& claims,
        bool writable);

  PropertySet& properties() { return properties_; }
  const Effect& effect() const { return effect_; }
  const std::string& clip() const { return clip_; }
  const std::string& action() const { return action_; }
  // What a plug-in did to the memory that it must not do; empty if nothing.
  std::string damage() const;

private:
  const Effect& effect_;
  const std::string clip_;
  std::string action_;  // in which it was fetched
  PropertySet properties_;
  Frame frame_;
  std::optional<std::uint64_t> checksum_;  // of an image that is to be read only, where frames are guarded
};

class Clip : public Handled<Clip, OfxImageClipHandle>
{
public:
  // A clip that is being described.
  Clip(Effect& effect, const std::string& name);
  // A clip of an instance.
  Clip(Effect& effect, const Clip& described);

  const std::string& name() const { return name_; }
  Effect& effect() const { return effect_; }
  PropertySet& properties() { return properties_; }
  const PropertySet& properties() const { return properties_; }
  bool isOutput() const { return name_ == kOfxImageEffectOutputClipName; }

  bool isConnected() const { return properties_.getInt(kOfxImageClipPropConnected) != 0; }
  void setConnected(bool connected) { properties_.put(kOfxImageClipPropConnected, connected ? 1 : 0); }
  // The pixels that the host delivers.
  void setFormat(Components components, Depth depth);
  void setFrameRange(double first, double last);
  void setFrameRate(double rate);
  // Where the host has the property of its frame in pixels.
  void setPixelFrame(const OfxRectI& frame);
  void setPixelAspect(double aspect) { properties_.put(kOfxImagePropPixelAspectRatio, aspect); }
  // Called for an image at a time, on the thread that asks; nothing means that there is none.
  void setSource(std::function<std::optional<Frame>(double time)> source) { source_ = std::move(source); }
  void setSource(const Frame& frame);
  std::optional<Frame> frameAt(double time) const { return source_ ? source_(time) : std::nullopt; }
  // Nothing: the clip has no region (its status is failed).
  std::optional<OfxRectD> regionOfDefinition;
  ImageClaims claims;

private:
  Effect& effect_;
  const std::string name_;
  PropertySet properties_;
  std::function<std::optional<Frame>(double)> source_;
};

}  // namespace morvellan::host
