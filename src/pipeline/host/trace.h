// What ran for a frame: one event per launch, in order, each with the stage that it belongs to.
// MORVELLAN_TRACE=1 in the environment makes the plug-in print the events on standard error.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "device/host/launch_observer.h"

namespace morvellan
{

struct TraceEvent
{
  std::string stage, kernel;
  int width = 0, height = 0;
  double seconds = 0.0;
};

class Trace : public LaunchObserver
{
public:
  // The stage that the following launches belong to.
  void enterStage(std::string_view name) { stage = name; }
  void launched(std::string_view kernel, int width, int height, double seconds) override;

  const std::vector<TraceEvent>& events() const { return all; }

  // One line per event: "trace: stage kernel WxH time ms".
  std::string text() const;

  // Whether the environment asks for a trace.
  static bool wanted();

private:
  std::string stage = "upload";
  std::vector<TraceEvent> all;
};

}  // namespace morvellan
