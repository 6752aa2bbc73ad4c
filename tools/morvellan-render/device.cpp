// Whether a GPU is usable is the plug-in's to say, and it says so once, when it is loaded. A child process therefore
// loads it first and asks an instance that has something to render whether it would pass its source on.
#include "device.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <exception>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fmt/format.h>

#include "errors.h"
#include "host/host.h"
#include "tool_host.h"

namespace morvellan::tool
{
namespace
{

constexpr const char* variable = "MORVELLAN_DEVICE";

struct Probe
{
  bool usable;
  std::string why;  // the last persistent message, where it is not
};

// The last one is about the devices; what comes before it is about files.
class LastMessage : public host::Observer
{
public:
  void persistentMessage(const host::Message& message) override { text = message.text; }

  std::string text;
};

Probe askPlugin(const std::filesystem::path& bundle)
{
  LastMessage observer;
  host::Host host(toolTraits(), observer);
  host::LoadedPlugin plugin(host, bundle);
  plugin.load();
  plugin.describe();
  const host::EffectDescriptor& described = plugin.describeIn(kOfxImageEffectContextFilter);
  host::InstanceSettings settings;
  if (described.params().find("Exposure") != nullptr)
  {
    settings.project["Exposure"] = 0.5;
  }
  const auto instance = plugin.newInstance(settings);
  const bool alive = instance->create() == kOfxStatOK;
  const bool usable = alive && !instance->isIdentity(0.0);
  return {usable, observer.text};
}

// In the child: never returns.
[[noreturn]] void answer(int pipe, const char* device, const std::filesystem::path& bundle)
{
  const int nowhere = open("/dev/null", O_WRONLY);
  dup2(nowhere, STDOUT_FILENO);
  dup2(nowhere, STDERR_FILENO);
  setenv(variable, device, 1);
  Probe probe{false, ""};
  try
  {
    probe = askPlugin(bundle);
  }
  catch (const std::exception& error)
  {
    probe.why = error.what();
  }
  const auto written = write(pipe, probe.why.data(), probe.why.size());
  _exit(probe.usable && written >= 0 ? 0 : 1);
}

Probe probeGpu(const char* device, const std::filesystem::path& bundle)
{
  std::array<int, 2> ends{};
  if (pipe(ends.data()) != 0)
  {
    return {false, "no pipe to a probe could be made"};
  }
  const pid_t child = fork();
  if (child == 0)
  {
    answer(ends[1], device, bundle);
  }
  close(ends[1]);
  std::string why;
  std::array<char, 512> buffer{};
  for (ssize_t count = 0; child > 0 && (count = read(ends[0], buffer.data(), buffer.size())) > 0;)
  {
    why.append(buffer.data(), static_cast<std::size_t>(count));
  }
  close(ends[0]);
  int status = 0;
  if (child < 0 || waitpid(child, &status, 0) != child || WIFSIGNALED(status))
  {
    return {false, "the probe of the GPU broke down"};
  }
  return {WEXITSTATUS(status) == 0, why};
}

// What the plug-in said, up to the end of its first sentence.
std::string firstSentence(const std::string& text)
{
  const auto begin = text.find_first_not_of(" \n");
  if (begin == std::string::npos)
  {
    return "the plug-in gave no reason";
  }
  return text.substr(begin, std::min(text.find('\n', begin), text.find(". ", begin)) - begin);
}

}  // namespace

void chooseDevice(const std::string& request, const std::filesystem::path& bundle, Progress& progress, Talk talk)
{
  if (request == "host")
  {
    return;
  }
  if (request != "auto" && request != "cuda")
  {
    setenv(variable, request.c_str(), 1);
    return;
  }
  const Probe probe = probeGpu(request.c_str(), bundle);
  if (request == "cuda" && !probe.usable)
  {
    throw RenderError(fmt::format("no GPU is usable ({}); use --device cpu", firstSentence(probe.why)));
  }
  setenv(variable, probe.usable ? request.c_str() : "cpu", 1);
  if (request == "auto" && talk != Talk::Quiet)
  {
    progress.line(probe.usable ? "device: GPU"
                               : fmt::format("device: CPU, since no GPU is usable ({})", firstSentence(probe.why)));
  }
}

}  // namespace morvellan::tool
