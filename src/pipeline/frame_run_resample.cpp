// Resampling and the spatial enhancer of a frame: down to the host, through the resampler and the enhancer's horizontal
// pass, up again, and the enhancer's vertical pass on the device.
#include <vector>

#include "device/launch.h"
#include "film/splash.h"
#include "pipeline/frame_run.h"
#include "pipeline/host/enhancer.h"
#include "pipeline/host/geometry.h"
#include "pipeline/host/resize.h"

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

size_t floatsOf(ImageSize size)
{
  return static_cast<size_t>(size.width) * static_cast<size_t>(size.height) * 4;
}

Buffer<float> pinnedImage(ImageSize size)
{
  return Buffer<float>(floatsOf(size), MemoryKind::Pinned);
}

template <typename T>
Buffer<T> onDevice(const std::vector<T>& values)
{
  Buffer<T> buffer(values.size());
  copy(buffer.data(), values.data(), values.size() * sizeof(T), CopyKind::HostToDevice);
  return buffer;
}

}  // namespace

void FrameRun::resample(const Step& step)
{
  const ImageSize from =
      step.from == Slot::Cropped ? ImageSize{params.sourceWidth, params.sourceHeight} : ImageSize{width, height};
  const ImageSize to = resampledSize(params);
  const float* source = frame(step.from);
  Buffer<float> hostStaging;
  if (!deviceIsHost)
  {
    synchronize();
    hostStaging = pinnedImage(from);
    copy(hostStaging.data(), source, floatsOf(from) * sizeof(float), CopyKind::DeviceToHost);
    source = hostStaging.data();
  }
  // The enhancer's image may be a pixel larger than a frame; without it the frame itself takes the result.
  const bool direct = deviceIsHost && !isEnhanced(params);
  if (!direct)
    resampled = pinnedImage(to);
  float* target = direct ? frame(step.to) : resampled.data();
  {
    const LaunchWatch watch(queue, step.kernel, to.width, to.height);
    ResizeTBB resize;
    resize.prepare(packedImage(source, from), packedImage(target, to));
    resize.run();
  }
  cropped.reset();
  width = params.targetWidth;
  height = params.targetHeight;
  if (!direct && !isEnhanced(params))
  {
    copy(frame(step.to), target, floatsOf(to) * sizeof(float), CopyKind::HostToDevice);
    resampled.reset();
  }
}

void FrameRun::enhance()
{
  const EnhancerAmounts amounts = enhancerAmounts(params);
  const ImageSize from = resampledSize(params);
  ImageSize size = from;
  if (amounts.horizontal != 0.0f)
  {
    size.width = params.targetWidth;
    Buffer<float> walked = pinnedImage(size);
    {
      const LaunchWatch watch(queue, "horizontal", size.width, size.height);
      enhanceHorizontally(packedImage<const float>(resampled.data(), from),
                          enhancerAxis(size.width, amounts.horizontal, params.m_table),
                          packedImage(walked.data(), size));
    }
    resampled = std::move(walked);
  }
  if (amounts.vertical == 0.0f)
  {
    copy(frameA.data(), resampled.data(), floatsOf(size) * sizeof(float), CopyKind::HostToDevice);
    resampled.reset();
    return;
  }
  Buffer<float> image;
  const float* source = resampled.data();
  if (!deviceIsHost)
  {
    image = Buffer<float>(floatsOf(size));
    copy(image.data(), resampled.data(), floatsOf(size) * sizeof(float), CopyKind::HostToDevice);
    source = image.data();
  }
  std::vector<int> row;
  std::vector<float> curve, frac;
  for (const EnhancerRow& r : enhancerRows(enhancerAxis(params.targetHeight, amounts.vertical, params.m_table)))
  {
    row.push_back(r.i0);
    curve.push_back(r.curve);
    frac.push_back(r.frac);
  }
  const Buffer<int> rows = onDevice(row);
  const Buffer<float> curves = onDevice(curve);
  const Buffer<float> fracs = onDevice(frac);
  launch(queue, grid2d(width, height),
         CsplashTexLV{.image = source,
                      .dst = frameA.data(),
                      .row = rows.data(),
                      .curve = curves.data(),
                      .frac = fracs.data(),
                      .width = size.width,
                      .height = size.height});
  synchronize();
  resampled.reset();
}

}  // namespace morvellan::MORVELLAN_TARGET
