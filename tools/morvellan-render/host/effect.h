// An image effect, as a plug-in describes it and as an instance of it lives: its clips, parameters and actions.
// The actions of an instance are called in the way of a real host; each returns what the plug-in answered.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "host/clip.h"
#include "host/handles.h"
#include "host/param.h"
#include "ofx/ofxImageEffect.h"

namespace morvellan::host
{

class LoadedPlugin;

// What descriptors and instances share.
class Effect : public Handled<Effect, OfxImageEffectHandle>
{
public:
  Effect(const std::string& owner, bool instance) : params_(owner, instance), properties_(owner), instance_(instance) {}

  bool isInstance() const { return instance_; }
  PropertySet& properties() { return properties_; }
  const PropertySet& properties() const { return properties_; }
  ParamSet& params() { return params_; }
  const ParamSet& params() const { return params_; }
  const std::vector<std::unique_ptr<Clip>>& clips() const { return clips_; }
  Clip* findClip(std::string_view name) const;
  Clip& clip(std::string_view name) const;  // throws where there is none
  Clip& addClip(std::unique_ptr<Clip> clip) { return *clips_.emplace_back(std::move(clip)); }

private:
  ParamSet params_;
  PropertySet properties_;
  std::vector<std::unique_ptr<Clip>> clips_;
  const bool instance_;
};

class EffectDescriptor : public Effect
{
public:
  explicit EffectDescriptor(const std::string& bundle);

  // Misuse in what was described: families that contradict one another, unknown parents and page children, defaults
  // out of range. Each is reported.
  void verify(const std::string& context) const;
  // Parameters and groups in the order of the pages, then those that stand on no page.
  std::vector<const Param*> inPageOrder() const;
};

struct InstanceSettings
{
  std::string context = kOfxImageEffectContextFilter;
  OfxPointD projectSize{1920.0, 1080.0};
  OfxPointD projectOffset{0.0, 0.0};
  double pixelAspect = 1.0;
  double frameRate = 24.0;
  OfxRangeD frameRange{0.0, 0.0};
  Components components = Components::Rgba;
  Depth depth = Depth::Float;
  bool sourceConnected = true;
  bool interactive = false;
  // Values as a stored project has them: in place before the instance is created.
  std::map<std::string, ParamValue> project;
};

struct Identity
{
  std::string clip;
  double time;
};

class EffectInstance : public Effect
{
public:
  EffectInstance(LoadedPlugin& plugin, const EffectDescriptor& described, const InstanceSettings& settings);
  // Destroys the plug-in's side, if it was created.
  ~EffectInstance();

  // Creates the plug-in's side. An instance whose creation fails is not to be used.
  OfxStatus create();
  OfxStatus destroy();
  bool isCreated() const { return created_; }

  // The time of the host's playhead, which a value read without a time means.
  double currentTime() const { return currentTime_; }
  void setCurrentTime(double time) { currentTime_ = time; }
  OfxPointD renderScale() const { return renderScale_; }
  void setRenderScale(OfxPointD scale) { renderScale_ = scale; }
  void setProjectSize(OfxPointD size);

  // A person's edit: the value is set, then the change actions run. The value must suit the parameter.
  OfxStatus edit(std::string_view name, const ParamValue& value);
  OfxStatus press(std::string_view name);
  ParamValue value(std::string_view name) const { return params().at(name).valueAt(currentTime_); }

  OfxStatus beginChanged(const char* reason);
  OfxStatus changed(const char* type, std::string_view name, const char* reason);
  OfxStatus endChanged(const char* reason);
  // Begin, changed and end in one.
  OfxStatus clipChanged(std::string_view name, const char* reason);

  std::optional<Identity> isIdentity(double time);
  OfxStatus beginSequence(OfxRangeD frames, double step);
  OfxStatus endSequence(OfxRangeD frames, double step);
  // One frame into `output`; calls from several threads wait where the effect is not safe for them. No output: the host
  // has no image for it.
  OfxStatus render(double time, const std::optional<Frame>& output);
  OfxStatus render(double time, const std::optional<Frame>& output, OfxRectI window);

  // The plug-in's answer, or the host's default.
  OfxRectD regionOfDefinition(double time);
  OfxStatus regionsOfInterest(double time, OfxRectD region);
  OfxStatus framesNeeded(double time);
  OfxStatus clipPreferences();
  OfxStatus timeDomain();
  OfxStatus simple(const char* action);  // one without arguments, such as kOfxActionPurgeCaches

  // Called by the parameter suite.
  void noteWrite(Param& param);
  // The output image of a render that is under way at this time.
  std::optional<Frame> outputAt(double time) const;

private:
  OfxStatus call(const char* action, double time, PropertySet* in, PropertySet* out);
  void echoWrites();
  std::unique_lock<std::mutex> renderTurn();
  void defineRenderArguments(PropertySet& arguments, double time, OfxRectI window) const;
  void defineSequenceArguments(PropertySet& arguments, OfxRangeD frames, double step) const;

  LoadedPlugin& plugin_;
  const InstanceSettings settings_;
  bool created_ = false;
  double currentTime_ = 0.0;
  OfxPointD renderScale_{1.0, 1.0};
  std::vector<std::string> written_;  // by the plug-in in the change action under way
  bool collectWrites_ = false;
  mutable std::mutex mutex_;
  std::map<double, Frame> outputs_;
  std::mutex renderMutex_;
};

}  // namespace morvellan::host
