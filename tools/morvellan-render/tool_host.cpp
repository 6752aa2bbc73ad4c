// The tool's traits, messages and interrupts.
#include "tool_host.h"

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <sstream>

#include <fmt/format.h>

#include "errors.h"
#include "ofx/ofxMessage.h"

namespace morvellan::tool
{
namespace
{

constexpr const char* bundleName = "Morvellan.ofx.bundle";

std::atomic<bool> stop{false};
static_assert(std::atomic<bool>::is_always_lock_free);

bool isError(const host::Message& message)
{
  return message.type == kOfxMessageError || message.type == kOfxMessageFatal;
}

}  // namespace

host::HostTraits toolTraits()
{
  host::HostTraits traits;
  traits.name = "com.morvellan.MorvellanRender";
  traits.label = "Morvellan Render";
  traits.version = {3, 7, 0};
  traits.natronExtensions = false;
  traits.background = true;
  // The effect cuts its size parameters to the image from inside a render.
  traits.writableInRender = {"SourceWidth", "SourceHeight", "TargetWidth", "TargetHeight"};
  return traits;
}

std::filesystem::path findBundle(const std::optional<std::filesystem::path>& asked)
{
  std::error_code failure;
  if (asked)
  {
    if (!std::filesystem::exists(*asked, failure))
    {
      throw RenderError(fmt::format("there is no bundle {}; check --bundle", asked->string()));
    }
    return *asked;
  }
  const std::filesystem::path tool = std::filesystem::read_symlink("/proc/self/exe", failure).parent_path();
  std::vector<std::filesystem::path> folders{tool.parent_path(), tool, tool.parent_path() / "OFX" / "Plugins"};
  if (const char* const path = std::getenv("OFX_PLUGIN_PATH"))
  {
    std::stringstream parts(path);
    for (std::string part; std::getline(parts, part, ':');)
    {
      folders.emplace_back(part);
    }
  }
  folders.emplace_back("/usr/OFX/Plugins");
  for (const auto& folder : folders)
  {
    if (std::filesystem::exists(folder / bundleName, failure))
    {
      return folder / bundleName;
    }
  }
  throw RenderError(
      fmt::format("{} is neither beside the tool nor in /usr/OFX/Plugins; build it or give --bundle", bundleName));
}

std::string ToolObserver::lastComplaint() const
{
  const std::scoped_lock lock(mutex_);
  return complaint_;
}

std::vector<std::string> ToolObserver::takeMessages()
{
  const std::scoped_lock lock(mutex_);
  return std::exchange(messages_, {});
}

std::vector<std::string> ToolObserver::errorsOf(const std::function<void()>& action)
{
  {
    const std::scoped_lock lock(mutex_);
    errors_.emplace();
  }
  action();
  const std::scoped_lock lock(mutex_);
  return std::exchange(errors_, std::nullopt).value();
}

std::set<std::string> ToolObserver::takeWritten()
{
  const std::scoped_lock lock(mutex_);
  return std::exchange(written_, {});
}

void ToolObserver::parameterWritten(const host::ParameterWrite& write)
{
  const std::scoped_lock lock(mutex_);
  written_.insert(write.parameter);
}

void ToolObserver::misuse(const std::string& what)
{
  if (talk_ == Talk::Verbose)
  {
    progress_.line(fmt::format("misuse of the interface: {}", what));
  }
}

void ToolObserver::show(const host::Message& message)
{
  const bool error = isError(message);
  if ((talk_ == Talk::Quiet && !error) || (talk_ != Talk::Verbose && message.type == kOfxMessageLog))
  {
    return;
  }
  const char* const kind = error ? "error: " : message.type == kOfxMessageWarning ? "warning: " : "";
  progress_.line(kind + message.text);
}

OfxStatus ToolObserver::message(const host::Message& message)
{
  {
    const std::scoped_lock lock(mutex_);
    if (errors_ && isError(message))
    {
      errors_->push_back(message.text);
      return kOfxStatOK;
    }
    if (collecting_)
    {
      messages_.push_back(message.text);
      return kOfxStatOK;
    }
  }
  show(message);
  // Nobody is there to consent.
  return message.type == kOfxMessageQuestion ? kOfxStatReplyNo : kOfxStatOK;
}

void ToolObserver::persistentMessage(const host::Message& message)
{
  {
    const std::scoped_lock lock(mutex_);
    if (errors_ && isError(message))
    {
      errors_->push_back(message.text);
      return;
    }
    if (collecting_)
    {
      messages_.push_back(message.text);
      return;
    }
    if (std::exchange(complaint_, message.text) == message.text)
    {
      return;  // it still stands
    }
  }
  show(message);
}

void ToolObserver::persistentMessageCleared()
{
  const std::scoped_lock lock(mutex_);
  complaint_.clear();
}

bool ToolObserver::abortRequested()
{
  return interrupted();
}

void watchForInterrupts()
{
  struct sigaction action = {};
  action.sa_handler = [](int) { stop.store(true); };
  action.sa_flags = static_cast<int>(SA_RESETHAND);  // a second one ends the tool at once
  sigaction(SIGINT, &action, nullptr);
  sigaction(SIGTERM, &action, nullptr);
}

bool interrupted()
{
  return stop.load();
}

}  // namespace morvellan::tool
