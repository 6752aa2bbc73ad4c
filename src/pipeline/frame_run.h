// One frame on one target: the buffers of the frame, and the step by step execution of its plan.
// A step is a launch, a transfer or one of the larger stages; what runs and in which order is the plan's alone.
#pragma once

#include <array>
#include <vector>

#include "colour/soft_clip.h"
#include "device/memory.h"
#include "device/queue.h"
#include "film/look_frames.h"
#include "pipeline/grain_input.h"
#include "pipeline/host/engine.h"
#include "pipeline/host/plan.h"

namespace morvellan::MORVELLAN_TARGET
{

class FrameRun
{
public:
  explicit FrameRun(const RenderJob& job);

  // Every step of the plan, in order. Returns when the destination image is filled.
  void run();

private:
  void runStep(const Step& step);
  void upload(const Step& step);
  void download(const Step& step);
  void colour(const Step& step);
  void halation();
  void bands(const Step& step);
  void render();
  void lab(const Step& step);
  void soup(const Step& step);
  void print(const Step& step);
  void expand(const Step& step);
  void resample(const Step& step);
  void enhance();
  void clear(const Step& step);
  void pad(const Step& step);
  void release();

  float* frame(Slot slot);
  SoftClip softClip(ClipFields fields) const;
  void needPlanes();
  LookPlanes lookPlanes() const;
  size_t pixelCount() const { return static_cast<size_t>(width) * static_cast<size_t>(height); }
  bool fourChannels() const { return params.channelCount == 4; }

  const RenderJob& job;
  const FrameParams& params;
  std::vector<Step> plan;
  Queue queue;

  // The size of the image at this point: the frame's, the target's after a resample, the frame's again once placed.
  int width, height;

  Buffer<float> frameA, frameB, scratchPlane, cropped, output;
  std::array<Buffer<float>, 4> planes;  // red, green, blue, alpha
  std::vector<GrainInput> grainInputs;
  Buffer<float> exposure, density;  // the laboratory's, three floats a pixel
  Buffer<float> resampled;          // host memory, what the enhancer reads
};

}  // namespace morvellan::MORVELLAN_TARGET
