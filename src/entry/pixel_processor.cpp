// Deals rows to threads.
#include "entry/pixel_processor.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace OFX
{

void PixelProcessor::setDestination(const Image& image)
{
  bounds_ = image.bounds();
  data_ = static_cast<std::byte*>(image.pixelData());
  rowBytes_ = image.rowBytes();
  bytesPerPixel_ = static_cast<std::size_t>(channelCount(image.components())) * bytesPerChannel(image.depth());
}

std::byte* PixelProcessor::destination(int x, int y) const
{
  const auto row = static_cast<std::ptrdiff_t>(std::int64_t{y} - bounds_.y1);
  const auto column = static_cast<std::ptrdiff_t>(std::int64_t{x} - bounds_.x1);
  return data_ + row * rowBytes_ + column * static_cast<std::ptrdiff_t>(bytesPerPixel_);
}

void PixelProcessor::process()
{
  window_ = {std::max(window_.x1, bounds_.x1), std::max(window_.y1, bounds_.y1), std::min(window_.x2, bounds_.x2),
             std::min(window_.y2, bounds_.y2)};
  if (data_ == nullptr || window_.x1 >= window_.x2 || window_.y1 >= window_.y2)
    return;
  const auto rows = static_cast<std::uint64_t>(std::int64_t{window_.y2} - window_.y1);
  multiThread(static_cast<unsigned int>(std::min<std::uint64_t>(rows, MultiThread::numCPUs())));
}

void PixelProcessor::multiThreadFunction(unsigned int threadId, unsigned int threadCount)
{
  const std::int64_t rows = std::int64_t{window_.y2} - window_.y1;
  const auto bound = [&](unsigned int share) { return static_cast<int>(window_.y1 + rows * share / threadCount); };
  const OfxRectI share{window_.x1, bound(threadId), window_.x2, bound(threadId + 1)};
  if (share.y1 < share.y2)
    processRows(share);
}

void BlackFiller::processRows(const OfxRectI& rows)
{
  const std::size_t channelBytes = bytesPerPixel() / static_cast<std::size_t>(std::max(1, components_));
  const auto width = static_cast<std::size_t>(std::int64_t{rows.x2} - rows.x1);
  const std::size_t bytes = width * static_cast<std::size_t>(components_) * channelBytes;
  for (int y = rows.y1; y < rows.y2; ++y)
    std::memset(destination(rows.x1, y), 0, bytes);
}

}  // namespace OFX
