// The tool as a host: what it says of itself, where it finds the plug-in, and how it passes messages on.
#pragma once

#include <filesystem>
#include <functional>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "host/observer.h"
#include "progress.h"

namespace morvellan::tool
{

host::HostTraits toolTraits();

// The bundle asked for, or the one built or installed beside the tool, or one in the folders where hosts look.
// Throws RenderError.
std::filesystem::path findBundle(const std::optional<std::filesystem::path>& asked);

class ToolObserver : public host::Observer
{
public:
  ToolObserver(Progress& progress, Talk talk) : progress_(progress), talk_(talk) {}

  // The last persistent message, which explains a failure.
  std::string lastComplaint() const;
  // Keeps messages instead of printing them, and hands over what was kept.
  void collectMessages() { collecting_ = true; }
  std::vector<std::string> takeMessages();
  // Runs an action; the errors that the plug-in tells of meanwhile are given back instead of printed.
  std::vector<std::string> errorsOf(const std::function<void()>& action);
  // The parameters that the plug-in has written, and forgets them.
  std::set<std::string> takeWritten();

  void misuse(const std::string& what) override;
  OfxStatus message(const host::Message& message) override;
  void persistentMessage(const host::Message& message) override;
  void persistentMessageCleared() override;
  void parameterWritten(const host::ParameterWrite& write) override;
  bool abortRequested() override;

private:
  void show(const host::Message& message);

  Progress& progress_;
  const Talk talk_;
  mutable std::mutex mutex_;
  std::string complaint_;
  bool collecting_ = false;
  std::vector<std::string> messages_;
  std::optional<std::vector<std::string>> errors_;  // while an action runs whose errors are kept
  std::set<std::string> written_;
};

// From here on an interrupt or a termination ends the render after the frame, with nothing half-written.
void watchForInterrupts();
bool interrupted();

}  // namespace morvellan::tool
