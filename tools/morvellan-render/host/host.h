// A host of image effects: its suites, the plug-ins that it loads, and what they hold of it.
// One host lives at a time, since most calls of the interface do not say which host they mean.
#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "host/effect.h"
#include "host/observer.h"
#include "host/property_set.h"
#include "ofx/ofxCore.h"

namespace morvellan::host
{

class Host
{
public:
  Host(HostTraits traits, Observer& observer);
  ~Host();
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  // The living host; throws where there is none.
  static Host& current();
  static Host* currentOrNull();

  const HostTraits& traits() const { return traits_; }
  Observer& observer() const { return observer_; }
  PropertySet& properties() { return properties_; }
  OfxHost* interface() { return &interface_; }

  // What plug-ins hold. All of these may be called from any thread.
  Image& lend(std::unique_ptr<Image> image);
  bool release(OfxPropertySetHandle image);  // false: no image of ours
  std::vector<std::string> imagesOut(const Effect& effect, std::string_view action) const;
  void* allocate(std::size_t bytes, const void* owner);  // null: no memory
  bool free(void* memory);
  std::size_t allocationsOut() const;

private:
  HostTraits traits_;
  Observer& observer_;
  PropertySet properties_;
  OfxHost interface_;
  mutable std::mutex mutex_;
  std::map<OfxPropertySetHandle, std::unique_ptr<Image>> images_;
  std::set<void*> allocations_;
};

class LoadError : public std::runtime_error
{
public:
  using std::runtime_error::runtime_error;
};

// A bundle's shared library, opened, with its one image effect loaded and described.
class LoadedPlugin
{
public:
  // Throws LoadError with one sentence that says what was wrong.
  LoadedPlugin(Host& host, const std::filesystem::path& bundle);
  // Unloads the plug-in and closes the library.
  ~LoadedPlugin();
  LoadedPlugin(const LoadedPlugin&) = delete;
  LoadedPlugin& operator=(const LoadedPlugin&) = delete;

  // Load, describe and describe in context, as a host does at its start. Each throws LoadError where it fails.
  void load();
  void describe();
  const EffectDescriptor& describeIn(const std::string& context);
  OfxStatus unload();

  const OfxPlugin& record() const { return *record_; }
  int pluginCount() const { return count_; }
  OfxPlugin* recordAt(int nth) const { return getPlugin_(nth); }
  const EffectDescriptor& descriptor() const { return *descriptor_; }
  std::unique_ptr<EffectInstance> newInstance(const InstanceSettings& settings);

  // Calls the plug-in's main entry, with the calling thread marked as in this action.
  OfxStatus call(const char* action, Effect* effect, double time, PropertySet* in, PropertySet* out);
  // The same with handles as they are, for calls that no decent host makes.
  OfxStatus callRaw(const char* action, const void* handle, OfxPropertySetHandle in, OfxPropertySetHandle out);

private:
  Host& host_;
  const std::filesystem::path bundle_;
  void* library_ = nullptr;
  OfxPlugin* (*getPlugin_)(int) = nullptr;
  int count_ = 0;
  OfxPlugin* record_ = nullptr;
  bool loaded_ = false;
  std::unique_ptr<EffectDescriptor> described_;   // of the describe action
  std::unique_ptr<EffectDescriptor> descriptor_;  // of a context
};

// A status by its standard's name.
std::string statusName(OfxStatus status);

}  // namespace morvellan::host
