// The base of every effect instance, its operations being the actions that the host sends; and the descriptors that an
// effect and its clips are described through.
#pragma once

#include <memory>
#include <string>

#include "entry/clip_image.h"
#include "entry/params.h"
#include "entry/property_set.h"
#include "ofx/ofxImageEffect.h"

namespace OFX
{

struct RenderArguments
{
  double time = 0.0;
  OfxRectI renderWindow{};
  OfxPointD renderScale{1.0, 1.0};
  std::string fieldToRender;
};

struct SequenceArguments
{
  OfxRangeD frameRange{};
  double frameStep = 1.0;
  bool isInteractive = false;
};

struct IdentityArguments
{
  double time = 0.0;
  OfxRectI renderWindow{};
  OfxPointD renderScale{1.0, 1.0};
};

/// The clip and time that stand for the effect's result.
struct IdentityAnswer
{
  std::string clip;
  double time = 0.0;
};

enum class ChangeReason
{
  UserEdit = 0,
  PluginEdit = 1,
  Time = 2,
};

struct ChangeArguments
{
  ChangeReason reason = ChangeReason::UserEdit;
  double time = 0.0;
  OfxPointD renderScale{1.0, 1.0};
};

/// What the layer notes of the host that an effect runs in.
struct HostTraits
{
  bool isDaVinciResolve = false;  // the host's name begins with "DaVinciResolve"
  bool isFusion = false;          // it is "com.eyeonline.Fusion" or "com.blackmagicdesign.Fusion"
  bool isVegas = false;           // it is "com.sonycreativesoftware.vegas"
};

HostTraits hostTraits(const std::string& hostName);

enum class MessageLevel
{
  Error,
  Warning,
  Message,
};

/// One instance. It belongs to the host's handle and lives from OfxActionCreateInstance to OfxActionDestroyInstance.
/// The operations that this class answers itself leave the host's defaults as they are.
class ImageEffect : public ParamSet
{
public:
  explicit ImageEffect(OfxImageEffectHandle handle);
  ~ImageEffect() override;
  ImageEffect(const ImageEffect&) = delete;
  ImageEffect& operator=(const ImageEffect&) = delete;

  virtual void purgeCaches();
  virtual void syncPrivateData();
  virtual void render(const RenderArguments& arguments) = 0;
  virtual void beginSequenceRender(const SequenceArguments& arguments);
  virtual void endSequenceRender(const SequenceArguments& arguments);
  /// True, with the answer filled, where the result is a clip as it stands.
  virtual bool isIdentity(const IdentityArguments& arguments, IdentityAnswer& answer);
  // Each answers whether it has written the out arguments.
  virtual bool getRegionOfDefinition(const PropertySet& in, const PropertySet& out);
  virtual bool getRegionsOfInterest(const PropertySet& in, const PropertySet& out);
  virtual bool getFramesNeeded(const PropertySet& in, const PropertySet& out);
  virtual bool getClipPreferences(const PropertySet& out);
  virtual bool getTimeDomain(const PropertySet& out);
  virtual void beginEdit();
  virtual void endEdit();
  virtual void changedParam(const ChangeArguments& arguments, const std::string& name);
  virtual void changedClip(const ChangeArguments& arguments, const std::string& name);
  virtual void beginChanged(ChangeReason reason);
  virtual void endChanged(ChangeReason reason);

  OfxImageEffectHandle handle() const { return handle_; }
  const PropertySet& properties() const { return properties_; }
  const HostTraits& traits() const { return traits_; }

  /// Raises Exception::Suite with the host's status where the effect has no such clip.
  Clip fetchClip(const std::string& name) const;

  /// A message that stays on the effect, with an empty identifier. A host without persistent messages shows it once.
  void setPersistentMessage(MessageLevel level, const std::string& text) const;
  void clearPersistentMessage() const;

  /// A message shown once.
  void showMessage(MessageLevel level, const std::string& text) const;

private:
  OfxImageEffectHandle handle_;
  PropertySet properties_;
  HostTraits traits_;
};

/// A clip of the effect's description.
class ClipDescriptor
{
public:
  explicit ClipDescriptor(PropertySet properties) : properties_(properties) {}
  void addSupportedComponent(PixelComponents components);
  void setTemporalClipAccess(bool access);
  void setSupportsTiles(bool tiles);
  void setIsMask(bool mask);
  void setOptional(bool optional);

private:
  PropertySet properties_;
  int components_ = 0;
};

/// The effect's description.
class ImageEffectDescriptor
{
public:
  explicit ImageEffectDescriptor(OfxImageEffectHandle handle);

  const PropertySet& properties() const { return properties_; }
  void addSupportedContext(const char* context);
  void addSupportedBitDepth(const char* depth);
  ClipDescriptor defineClip(const std::string& name) const;
  ParamSetDescriptor params() const;

private:
  OfxImageEffectHandle handle_;
  PropertySet properties_;
  int contexts_ = 0;
  int depths_ = 0;
};

}  // namespace OFX
