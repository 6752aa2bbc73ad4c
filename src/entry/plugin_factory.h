// What a plug-in offers the main entry: its identity and the operations that are not an instance's. The list of the
// library's factories is what the exported functions read.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "entry/image_effect.h"

namespace OFX
{

class PluginFactory
{
public:
  virtual ~PluginFactory() = default;
  virtual void load() = 0;
  virtual void unload() = 0;
  virtual void describe(ImageEffectDescriptor& descriptor) = 0;
  virtual void describeInContext(ImageEffectDescriptor& descriptor, const std::string& context) = 0;
  virtual std::unique_ptr<ImageEffect> createInstance(OfxImageEffectHandle handle, const std::string& context) = 0;
  virtual const std::string& id() const = 0;
  /// The identifier and the version in one: no two factories of a process share it.
  virtual std::string uniqueId() const = 0;
  virtual unsigned int majorVersion() const = 0;
  virtual unsigned int minorVersion() const = 0;
  virtual OfxPluginEntryPoint* mainEntry() const = 0;
};

/// The one list of the process. A factory appends itself when the library is loaded and is never taken out.
std::vector<PluginFactory*>& pluginList();

/// Handles one action for one factory; see main_entry.h.
OfxStatus dispatch(PluginFactory& factory, const char* action, const void* handle, OfxPropertySetHandle in,
                   OfxPropertySetHandle out) noexcept;

/// Holds the identity, and makes an entry function of the derived class's own: the C interface gives an entry no
/// other way to know which plug-in it serves.
template <class Factory>
class PluginFactoryHelper : public PluginFactory
{
public:
  PluginFactoryHelper(std::string id, unsigned int majorVersion, unsigned int minorVersion)
      : id_(std::move(id)), majorVersion_(majorVersion), minorVersion_(minorVersion)
  {
    self() = this;
    pluginList().push_back(this);
  }

  void load() override {}
  void unload() override {}
  const std::string& id() const override { return id_; }
  std::string uniqueId() const override
  {
    return id_ + "." + std::to_string(majorVersion_) + "." + std::to_string(minorVersion_);
  }
  unsigned int majorVersion() const override { return majorVersion_; }
  unsigned int minorVersion() const override { return minorVersion_; }
  OfxPluginEntryPoint* mainEntry() const override { return entry; }

private:
  static PluginFactory*& self()
  {
    static PluginFactory* factory = nullptr;
    return factory;
  }

  static OfxStatus entry(const char* action, const void* handle, OfxPropertySetHandle in, OfxPropertySetHandle out)
  {
    return dispatch(*self(), action, handle, in, out);
  }

  std::string id_;
  unsigned int majorVersion_;
  unsigned int minorVersion_;
};

}  // namespace OFX
