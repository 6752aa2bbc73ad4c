// The steps that move pixels: transfers, the colour families, the cut and the placing. The larger stages are in
// frame_run_film.cpp, frame_run_grain.cpp and frame_run_resample.cpp.
#include "pipeline/frame_run.h"

#include "colour/colour_kernels.h"
#include "device/launch.h"
#include "pipeline/host/geometry.h"
#include "pipeline/host/trace.h"
#include "pipeline/place.h"

namespace morvellan::MORVELLAN_TARGET
{

FrameRun::FrameRun(const RenderJob& request)
    : job(request), params(request.params),
      plan(planFrame(request.route, request.params)), queue{.device = request.params.gpuRed, .observer = request.trace},
      width(request.params.frameWidth), height(request.params.frameHeight)
{
}

void FrameRun::run()
{
  makeCurrent(params.gpuRed);
  frameA = Buffer<float>(pixelCount() * 4);
  frameB = Buffer<float>(pixelCount() * 4);
  for (const Step& step : plan)
  {
    if (job.trace)
      job.trace->enterStage(stageName(step.stage));
    runStep(step);
  }
  release();
}

void FrameRun::runStep(const Step& step)
{
  switch (step.work)
  {
  case Work::Upload:
    return upload(step);
  case Work::Colour:
    return colour(step);
  case Work::Halation:
    return halation();
  case Work::Bands:
    return bands(step);
  case Work::Lab:
    return lab(step);
  case Work::Soup:
    return soup(step);
  case Work::Print:
    return print(step);
  case Work::Render:
    return render();
  case Work::Expand:
    return expand(step);
  case Work::Resample:
    return resample(step);
  case Work::Enhance:
    return enhance();
  case Work::Clear:
    return clear(step);
  case Work::Pad:
    return pad(step);
  case Work::Download:
    return download(step);
  }
}

float* FrameRun::frame(Slot slot)
{
  switch (slot)
  {
  case Slot::FrameA:
    return frameA.data();
  case Slot::FrameB:
  case Slot::Packed:
    return frameB.data();
  case Slot::Cropped:
    return cropped.data();
  case Slot::Output:
    return output.data();
  case Slot::None:
  case Slot::Host:
  case Slot::Planes:
    break;
  }
  return nullptr;
}

void FrameRun::needPlanes()
{
  for (size_t c = 0; c < (fourChannels() ? 4u : 3u); ++c)
    if (!planes[c])
      planes[c] = Buffer<float>(pixelCount());
}

void FrameRun::upload(const Step& step)
{
  copy(frame(step.to), job.source, pixelCount() * static_cast<size_t>(step.channels) * sizeof(float),
       CopyKind::Default);
}

void FrameRun::download(const Step& step)
{
  const size_t pixels = static_cast<size_t>(params.frameWidth) * static_cast<size_t>(params.frameHeight);
  copy(job.destination, frame(step.from), pixels * static_cast<size_t>(step.channels) * sizeof(float),
       CopyKind::Default);
}

// A kernel that works in place has its frame as destination; one that enters LAB clears the other frame's accumulator.
void FrameRun::colour(const Step& step)
{
  if (step.from == Slot::Planes || step.to == Slot::Planes)
    needPlanes();
  const ColourKernel kernel = ColourKernel::named(step.kernel);
  const bool entersLab = compositionOf(kernel.entry()).to == To::SelfAndCompanion;
  const PixelOffset corner = cropOffset(params);
  ColourArguments arguments{.source = frame(step.from),
                            .destination = entersLab ? frame(step.from) : frame(step.to),
                            .companion = entersLab ? frame(step.to) : nullptr,
                            .planes = {planes[0].data(), planes[1].data(), planes[2].data(), planes[3].data()},
                            .width = width,
                            .height = height,
                            .channels = step.channels,
                            .colourspace = params.inputGamut,
                            .sourceWidth = params.frameWidth,
                            .offsetX = corner.x,
                            .offsetY = corner.y,
                            .value = params.exposureValue,
                            .gain = params.exposureValue,
                            .softClip = softClip(step.clip)};
  if (step.to == Slot::Cropped)
  {
    arguments.width = params.sourceWidth;
    arguments.height = params.sourceHeight;
    cropped = Buffer<float>(static_cast<size_t>(params.sourceWidth) * static_cast<size_t>(params.sourceHeight) * 4);
    arguments.destination = cropped.data();
  }
  runColour(queue, kernel, arguments);
}

SoftClip FrameRun::softClip(ClipFields fields) const
{
  switch (fields)
  {
  case ClipFields::Camera:
    return {params.cameraHighlightCeiling, params.cameraHighlightRecover, params.cameraShadowCeiling,
            params.cameraShadowRecover};
  case ClipFields::Soup:
    return {params.soupHighlightCeiling, params.soupHighlightCompress, params.soupShadowFloor, params.soupShadowExpand};
  case ClipFields::None:
    break;
  }
  return {};
}

void FrameRun::clear(const Step& step)
{
  const size_t pixels = static_cast<size_t>(params.frameWidth) * static_cast<size_t>(params.frameHeight);
  output = Buffer<float>(pixels * 4);
  fill(output.data(), 0, pixels * static_cast<size_t>(step.channels) * sizeof(float));
}

void FrameRun::pad(const Step& step)
{
  const PixelOffset at = padOffset(params);
  const float* from = frame(step.from);
  if (step.channels == 3)
    launch(queue, grid2d(width, height),
           Pad2DArrayRGB{from, output.data(), height, width, params.frameWidth, 3, at.x, at.y});
  else
    launch(queue, grid2d(width, height),
           Pad2DArrayRGBA{from, output.data(), height, width, params.frameWidth, 4, at.x, at.y});
  width = params.frameWidth;
  height = params.frameHeight;
}

}  // namespace morvellan::MORVELLAN_TARGET
