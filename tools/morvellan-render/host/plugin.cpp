// A bundle opened and its plug-in taken through load, describe and unload.
#include <array>
#include <cstring>

#include <dlfcn.h>

#include <fmt/format.h>

#include "host/action_scope.h"
#include "host/host.h"
#include "host/property_tables.h"
#include "host/suites.h"

namespace morvellan::host
{
namespace
{

// NAME.ofx.bundle/Contents/Linux-x86-64/NAME.ofx, or the .ofx file itself.
std::filesystem::path libraryOf(const std::filesystem::path& bundle)
{
  std::error_code ignored;
  if (!std::filesystem::is_directory(bundle, ignored))
  {
    return bundle;
  }
  std::filesystem::path folder = bundle;
  if (!folder.has_filename())
  {
    folder = folder.parent_path();
  }
  return folder / "Contents" / "Linux-x86-64" / folder.stem();
}

}  // namespace

LoadedPlugin::LoadedPlugin(Host& host, const std::filesystem::path& bundle) : host_(host), bundle_(bundle)
{
  const std::filesystem::path file = libraryOf(bundle);
  if (!std::filesystem::exists(file))
  {
    throw LoadError(fmt::format("there is no plug-in {}", file.string()));
  }
  library_ = dlopen(std::filesystem::absolute(file).c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library_ == nullptr)
  {
    throw LoadError(fmt::format("the plug-in {} cannot be loaded: {}", file.string(), dlerror()));
  }
  auto* const getCount = reinterpret_cast<int (*)()>(dlsym(library_, "OfxGetNumberOfPlugins"));
  getPlugin_ = reinterpret_cast<OfxPlugin* (*)(int)>(dlsym(library_, "OfxGetPlugin"));
  const auto refuse = [&](const char* why)
  {
    dlclose(library_);
    throw LoadError(fmt::format("{} {}", file.string(), why));
  };
  if (getCount == nullptr || getPlugin_ == nullptr)
  {
    refuse("is no image effect: it lacks the two entry points");
  }
  count_ = getCount();
  record_ = count_ > 0 ? getPlugin_(0) : nullptr;
  if (record_ == nullptr || std::strcmp(record_->pluginApi, kOfxImageEffectPluginApi) != 0)
  {
    refuse("holds no image effect");
  }
}

LoadedPlugin::~LoadedPlugin()
{
  if (loaded_)
  {
    unload();
  }
  dlclose(library_);
}

void LoadedPlugin::load()
{
  record_->setHost(host_.interface());
  const OfxStatus status = call(kOfxActionLoad, nullptr, 0.0, nullptr, nullptr);
  if (status != kOfxStatOK && status != kOfxStatReplyDefault)
  {
    throw LoadError(fmt::format("the plug-in {} failed to load ({})", bundle_.string(), statusName(status)));
  }
  loaded_ = true;
}

void LoadedPlugin::describe()
{
  described_ = std::make_unique<EffectDescriptor>(bundle_.string());
  const OfxStatus status = call(kOfxActionDescribe, described_.get(), 0.0, nullptr, nullptr);
  if (status != kOfxStatOK && status != kOfxStatReplyDefault)
  {
    throw LoadError(fmt::format("the plug-in {} failed to describe itself ({})", bundle_.string(), statusName(status)));
  }
}

const EffectDescriptor& LoadedPlugin::describeIn(const std::string& context)
{
  descriptor_ = std::make_unique<EffectDescriptor>(bundle_.string());
  descriptor_->properties().copyFrom(described_->properties(), {});
  PropertySet in(fmt::format("arguments of {}", kOfxImageEffectActionDescribeInContext));
  in.define(kOfxImageEffectPropContext, Access::ReadOnly, std::deque<std::string>{context});
  const OfxStatus status = call(kOfxImageEffectActionDescribeInContext, descriptor_.get(), 0.0, &in, nullptr);
  if (status != kOfxStatOK && status != kOfxStatReplyDefault)
  {
    throw LoadError(fmt::format("the plug-in {} failed to describe itself in {} ({})", bundle_.string(), context,
                                statusName(status)));
  }
  descriptor_->verify(context);
  return *descriptor_;
}

OfxStatus LoadedPlugin::unload()
{
  const OfxStatus status = call(kOfxActionUnload, nullptr, 0.0, nullptr, nullptr);
  loaded_ = false;
  if (host_.allocationsOut() > 0)
  {
    host_.observer().misuse(
        fmt::format("[{}] {} blocks of memory were not freed", kOfxActionUnload, host_.allocationsOut()));
  }
  if (const std::size_t mutexes = takeMutexes(); mutexes > 0)
  {
    host_.observer().misuse(fmt::format("[{}] {} mutexes were not destroyed", kOfxActionUnload, mutexes));
  }
  return status;
}

std::unique_ptr<EffectInstance> LoadedPlugin::newInstance(const InstanceSettings& settings)
{
  return std::make_unique<EffectInstance>(*this, *descriptor_, settings);
}

OfxStatus LoadedPlugin::call(const char* action, Effect* effect, double time, PropertySet* in, PropertySet* out)
{
  const ActionScope scope(action, effect, time);
  const OfxStatus status =
      record_->mainEntry(action, effect == nullptr ? nullptr : static_cast<const void*>(effect->handle()),
                         in == nullptr ? nullptr : in->handle(), out == nullptr ? nullptr : out->handle());
  if (statusName(status).starts_with("status"))
  {
    reportMisuse(fmt::format("the answer {} is no status", status));
  }
  return status;
}

OfxStatus LoadedPlugin::callRaw(const char* action, const void* handle, OfxPropertySetHandle in,
                                OfxPropertySetHandle out)
{
  const ActionScope scope(action == nullptr ? "null" : action, nullptr, 0.0);
  return record_->mainEntry(action, handle, in, out);
}

}  // namespace morvellan::host
