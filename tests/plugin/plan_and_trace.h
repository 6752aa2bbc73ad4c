// A frame's plan beside the trace of what ran: the same data, from the plug-in's own capture, held together launch by
// launch.
#pragma once

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include "params/catalogue.h"
#include "pipeline/host/capture.h"
#include "pipeline/host/plan.h"
#include "tests/plugin/plugin_host.h"

namespace morvellan::test
{

class ProjectValues : public ParameterValues
{
public:
  explicit ProjectValues(const ProjectRenderer::Project& values) : project(values) {}
  double number(std::string_view name) const override
  {
    const auto found = project.find(std::string(name));
    return found != project.end() ? found->second.numbers[0] : params::at(name).defaults[0];
  }

private:
  const ProjectRenderer::Project& project;
};

// What the frame is to run, from the same values by the plug-in's own capture and plan.
struct Planned
{
  Planned(const ProjectRenderer::Project& project, int width, int height, int channels)
  {
    params.gpuReady = 1;
    params.gpuCount = 1;
    params.grainLevels = 2047;
    params.inResolutionChoice = params.outResolutionChoice = 1;
    std::vector<std::vector<float>> memory(6, std::vector<float>(2048));
    GrainTables tables({{{memory[0], memory[1]}, {memory[2], memory[3]}, {memory[4], memory[5]}}});
    route = captureFrame(ProjectValues(project), {.width = width, .height = height, .channels = channels, .time = 3.0},
                         params, tables)
                .route;
    if (route != FrameRoute::copy && route != FrameRoute::untouched)
      steps = planFrame(route, params);
  }

  // Whether a kernel with this in its name is part of the plan.
  bool runs(std::string_view part) const
  {
    return std::any_of(steps.begin(), steps.end(),
                       [&](const Step& step) { return step.kernel.find(part) != std::string::npos; });
  }

  FrameParams params{};
  FrameRoute route;
  std::vector<Step> steps;
};

struct Launch
{
  std::string stage, kernel, size;
};

inline std::vector<Launch> launchesOf(const std::string& trace)
{
  std::vector<Launch> launches;
  std::istringstream lines(trace);
  for (std::string line; std::getline(lines, line);)
  {
    std::istringstream words(line);
    std::string mark;
    Launch launch;
    if (words >> mark >> launch.stage >> launch.kernel >> launch.size && mark == "trace:")
      launches.push_back(launch);
  }
  return launches;
}

inline std::string sizeText(int width, int height)
{
  return std::to_string(width) + "x" + std::to_string(height);
}

// Goes through a trace along a plan. Every launch must belong to the step that is due, with its stage and size.
class TraceReader
{
public:
  TraceReader(const Planned& planned, const std::string& trace)
      : p(planned.params), launches(launchesOf(trace)), width(p.frameWidth), height(p.frameHeight)
  {
    for (size_t i = 0; i < planned.steps.size() && fault.empty(); ++i)
      read(planned.steps[i], i + 1 < planned.steps.size() ? planned.steps[i + 1].kernel : "");
    if (fault.empty() && at != launches.size())
      fault = launches[at].kernel + " is not in the plan";
  }

  // Empty where the trace is the plan's.
  std::string fault;

private:
  void read(const Step& step, const std::string& nextKernel)
  {
    switch (step.work)
    {
    case Work::Upload:
    case Work::Clear:
    case Work::Download:
      return;  // copies are no launches
    case Work::Halation:
    case Work::Bands:
      return several(step, nextKernel);
    case Work::Lab:
      return step.to == Slot::None ? several(step, nextKernel) : one(step, step.kernel);
    case Work::Render:
      for (int c = 0; c < (p.grainMode == 2 || p.grainMode == 4 ? 1 : p.grainChannelCount); ++c)
        oneOf(step);
      return;
    case Work::Resample:
      return resample(step);
    case Work::Enhance:
      if (p.enhancerHorizontal != 0.0f)
        one(step, "horizontal", p.targetWidth, p.targetHeight + (p.enhancerVertical != 0.0f ? 1 : 0));
      if (p.enhancerVertical != 0.0f)
        one(step, "CsplashTexLV");
      return;
    default:
      if (step.to == Slot::Cropped)
        return one(step, step.kernel, p.sourceWidth, p.sourceHeight);
      one(step, step.kernel);
      if (step.work == Work::Pad)
      {
        width = p.frameWidth;
        height = p.frameHeight;
      }
    }
  }

  void resample(const Step& step)
  {
    width = p.targetWidth;
    height = p.targetHeight;
    const bool enlarged = p.resizeMode != 2;
    one(step, step.kernel, width + (enlarged && p.enhancerHorizontal != 0.0f),
        height + (enlarged && p.enhancerVertical != 0.0f));
  }

  void one(const Step& step, const std::string& kernel) { one(step, kernel, width, height); }
  void one(const Step& step, const std::string& kernel, int w, int h)
  {
    if (!due(step))
      return;
    const Launch& launch = launches[at++];
    if (launch.kernel != kernel || launch.size != sizeText(w, h))
      fault = launch.kernel + " " + launch.size + " where " + kernel + " " + sizeText(w, h) + " is due";
  }

  void oneOf(const Step& step)
  {
    if (due(step) && step.kernel.find(launches[at++].kernel) == std::string::npos)
      fault = launches[at - 1].kernel + " where one of " + step.kernel + " is due";
  }

  // The launches of a larger stage: at least one, up to the kernel of the step after it.
  void several(const Step& step, const std::string& nextKernel)
  {
    if (!due(step))
      return;
    do
      ++at;
    while (at < launches.size() && launches[at].stage == stageName(step.stage) && launches[at].kernel != nextKernel);
  }

  bool due(const Step& step)
  {
    if (fault.empty() && (at == launches.size() || launches[at].stage != stageName(step.stage)))
      fault = step.kernel + " did not run" + (at < launches.size() ? ", but " + launches[at].kernel + " did" : "");
    return fault.empty();
  }

  const FrameParams& p;
  const std::vector<Launch> launches;
  size_t at = 0;
  int width, height;
};

}  // namespace morvellan::test
