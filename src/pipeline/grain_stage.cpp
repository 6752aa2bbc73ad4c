// The order of work over several devices. Every plane is copied before the first launch, as two devices may write
// halves of one plane.
#include "pipeline/grain_stage.h"

#include <algorithm>

#include "pipeline/host/grain_mode.h"

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

std::vector<GrainShare> sharesOf(const FrameParams& p, int height)
{
  if (isLuminanceGrain(p.grainMode))
    return p.grainChannelCount > 0 ? std::vector<GrainShare>{{GrainChannel::red, p.gpuRed, 0, height}}
                                   : std::vector<GrainShare>{};
  return dealGrain({p.grainChannelOn[0] != 0, p.grainChannelOn[1] != 0, p.grainChannelOn[2] != 0},
                   {.red = p.gpuRed, .green = p.gpuGreen, .blue = p.gpuBlue, .count = p.gpuCount}, height);
}

// In the order given, but planes of one device whose grain lies at the same places together.
void renderAll(const std::vector<GrainInput>& inputs, LaunchObserver* observer)
{
  std::vector<bool> rendered(inputs.size());
  for (size_t i = 0; i < inputs.size(); ++i)
  {
    if (rendered[i])
      continue;
    std::vector<GrainLaunch> launches{inputs[i].launch()};
    for (size_t j = i + 1; j < inputs.size(); ++j)
      if (inputs[j].device() == inputs[i].device() && sharesGrain(inputs[j].launch(), launches.front()))
      {
        launches.push_back(inputs[j].launch());
        rendered[j] = true;
      }
    makeCurrent(inputs[i].device());
    renderGrain({.device = inputs[i].device(), .observer = observer}, launches);
  }
}

// Makes the rendering device current at the end, also when memory ran out on another.
class HomeAtLast
{
public:
  explicit HomeAtLast(int device) : home(device) {}
  HomeAtLast(const HomeAtLast&) = delete;
  HomeAtLast& operator=(const HomeAtLast&) = delete;
  ~HomeAtLast() { makeCurrent(home); }

private:
  int home;
};

}  // namespace

std::vector<GrainInput> grainStage(LaunchObserver* observer, const FrameParams& params,
                                   const std::array<float*, 3>& planes, int width, int height)
{
  synchronize();
  std::vector<GrainInput> inputs;
  const HomeAtLast homeAtLast(params.gpuRed);  // before the inputs are given back, if they have to be
  for (const GrainShare& share : sharesOf(params, height))
  {
    const GrainSettings settings =
        isLuminanceGrain(params.grainMode) ? luminanceGrainSettings(params) : grainSettings(params, share.channel);
    makeCurrent(share.device);
    inputs.emplace_back(share, settings, params, planes[static_cast<size_t>(share.channel)], width, height,
                        params.gpuRed);
  }
  renderAll(inputs, observer);
  for (GrainInput& input : inputs)
    if (input.device() != params.gpuRed)
    {
      makeCurrent(input.device());
      synchronize();
      input.collect();
    }
  std::ranges::stable_sort(inputs, {}, &GrainInput::channel);
  return inputs;
}

}  // namespace morvellan::MORVELLAN_TARGET
