// The host: its one living object, what it lends, and the reports of misuse.
#include "host/host.h"

#include <array>
#include <cstdlib>

#include <fmt/format.h>

#include "host/action_scope.h"
#include "host/property_tables.h"
#include "host/suites.h"

namespace morvellan::host
{
namespace
{

Host* livingHost = nullptr;

}  // namespace

Host::Host(HostTraits traits, Observer& observer)
    : traits_(std::move(traits)), observer_(observer),
      properties_("host", true), interface_{properties_.handle(), &fetchSuite}
{
  if (livingHost != nullptr)
  {
    throw std::logic_error("there is a host already");
  }
  livingHost = this;
  defineHostProperties(properties_, traits_);
}

Host::~Host()
{
  for (void* const memory : allocations_)
  {
    std::free(memory);
  }
  livingHost = nullptr;
}

Host& Host::current()
{
  if (livingHost == nullptr)
  {
    throw std::logic_error("there is no host");
  }
  return *livingHost;
}

Host* Host::currentOrNull()
{
  return livingHost;
}

Image& Host::lend(std::unique_ptr<Image> image)
{
  const std::scoped_lock lock(mutex_);
  const OfxPropertySetHandle handle = image->properties().handle();
  return *images_.emplace(handle, std::move(image)).first->second;
}

bool Host::release(OfxPropertySetHandle image)
{
  std::unique_ptr<Image> returned;
  {
    const std::scoped_lock lock(mutex_);
    const auto found = images_.find(image);
    if (found == images_.end())
    {
      return false;
    }
    returned = std::move(found->second);
    images_.erase(found);
  }
  if (const std::string damage = returned->damage(); !damage.empty())
  {
    reportMisuse(damage);
  }
  observer().imageReleased(returned->clip());
  return true;
}

std::vector<std::string> Host::imagesOut(const Effect& effect, std::string_view action) const
{
  const std::scoped_lock lock(mutex_);
  std::vector<std::string> clips;
  for (const auto& [handle, image] : images_)
  {
    if (&image->effect() == &effect && image->action() == action)
    {
      clips.push_back(image->clip());
    }
  }
  return clips;
}

void* Host::allocate(std::size_t bytes, const void* /*owner*/)
{
  void* const memory = std::malloc(bytes == 0 ? 1 : bytes);
  if (memory != nullptr)
  {
    const std::scoped_lock lock(mutex_);
    allocations_.insert(memory);
  }
  return memory;
}

bool Host::free(void* memory)
{
  {
    const std::scoped_lock lock(mutex_);
    if (allocations_.erase(memory) == 0)
    {
      return false;
    }
  }
  std::free(memory);
  return true;
}

std::size_t Host::allocationsOut() const
{
  const std::scoped_lock lock(mutex_);
  return allocations_.size();
}

void reportMisuse(const std::string& what)
{
  Host* const host = Host::currentOrNull();
  if (host == nullptr)
  {
    return;
  }
  const ActionScope* const scope = ActionScope::current();
  host->observer().misuse(fmt::format("[{}] {}", scope == nullptr ? "outside any action" : scope->action(), what));
}

bool requireAction(std::string_view call, std::initializer_list<std::string_view> actions)
{
  const ActionScope* const scope = ActionScope::current();
  if (scope == nullptr)
  {
    reportMisuse(fmt::format("{} is called on a thread that is in no action", call));
    return false;
  }
  if (actions.size() == 0 || std::find(actions.begin(), actions.end(), scope->action()) != actions.end())
  {
    return true;
  }
  reportMisuse(fmt::format("{} is not allowed in this action", call));
  return false;
}

std::string statusName(OfxStatus status)
{
  constexpr std::array<const char*, 15> names{"kOfxStatOK",
                                              "kOfxStatFailed",
                                              "kOfxStatErrFatal",
                                              "kOfxStatErrUnknown",
                                              "kOfxStatErrMissingHostFeature",
                                              "kOfxStatErrUnsupported",
                                              "kOfxStatErrExists",
                                              "kOfxStatErrFormat",
                                              "kOfxStatErrMemory",
                                              "kOfxStatErrBadHandle",
                                              "kOfxStatErrBadIndex",
                                              "kOfxStatErrValue",
                                              "kOfxStatReplyYes",
                                              "kOfxStatReplyNo",
                                              "kOfxStatReplyDefault"};
  if (status == kOfxStatErrImageFormat)
  {
    return "kOfxStatErrImageFormat";
  }
  return status >= 0 && status < static_cast<int>(names.size()) ? names[static_cast<std::size_t>(status)]
                                                                : fmt::format("status {}", status);
}

}  // namespace morvellan::host
