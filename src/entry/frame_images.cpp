// Row by row placing of images, and the judgement of images that a host should not have given.
#include "entry/frame_images.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <functional>

#include <fmt/format.h>

namespace morvellan
{

namespace
{

template <class Byte>
FloatRows<Byte> rowsOf(const OFX::Image& image, int channels)
{
  return {.bounds = image.bounds(),
          .first = static_cast<Byte*>(image.pixelData()),
          .rowBytes = image.rowBytes(),
          .channels = channels};
}

// A packed frame over the bounds of a target.
template <class Byte>
FloatRows<Byte> packedRows(Byte* first, const TargetRows& like)
{
  return {.bounds = like.bounds,
          .first = first,
          .rowBytes = static_cast<std::ptrdiff_t>(like.width() * like.pixelBytes()),
          .channels = like.channels};
}

bool sameRectangle(const OfxRectI& a, const OfxRectI& b)
{
  return a.x1 == b.x1 && a.y1 == b.y1 && a.x2 == b.x2 && a.y2 == b.y2;
}

struct Extent
{
  const std::byte* begin;
  const std::byte* end;
};

template <class Byte>
Extent extentOf(const FloatRows<Byte>& rows)
{
  const std::byte* first = rows.row(rows.bounds.y1);
  const std::byte* last = rows.row(rows.bounds.y2 - 1);
  const auto [low, high] = std::minmax(first, last, std::less<>());
  return {low, high + rows.width() * rows.pixelBytes()};
}

bool overlap(const SourceRows& source, const TargetRows& target)
{
  const Extent a = extentOf(source);
  const Extent b = extentOf(target);
  return std::less<>()(a.begin, b.end) && std::less<>()(b.begin, a.end);
}

std::vector<float> frameFor(const TargetRows& target)
{
  return std::vector<float>(target.width() * target.height() * static_cast<std::size_t>(target.channels));
}

}  // namespace

std::optional<std::string> imageFault(const OFX::Image& image, int channels, const std::string& role)
{
  const OfxRectI& bounds = image.bounds();
  const std::int64_t width = std::int64_t{bounds.x2} - bounds.x1;
  const std::int64_t height = std::int64_t{bounds.y2} - bounds.y1;
  if (width <= 0 || height <= 0)
    return fmt::format("Morvellan : Natron gave an {} image of {} x {} pixels. Check the size of the input clip", role,
                       width, height);
  constexpr std::int64_t most = INT32_MAX;
  if (width > most || height > most)
    return fmt::format("Morvellan : Natron gave an {} image of {} x {} pixels, which is more than Morvellan can render",
                       role, width, height);
  if (image.pixelData() == nullptr)
    return fmt::format("Morvellan : Natron gave an {} image without pixel data. Check that its clip can be read", role);
  const std::int64_t needed = width * channels * static_cast<std::int64_t>(OFX::bytesPerChannel(image.depth()));
  if (height > 1 && std::abs(std::int64_t{image.rowBytes()}) < needed)
    return fmt::format("Morvellan : Natron gave an {} image whose rows of {} bytes are too short for {} pixels", role,
                       image.rowBytes(), width);
  return std::nullopt;
}

SourceRows sourceRows(const OFX::Image& image, int channels)
{
  return rowsOf<const std::byte>(image, channels);
}

TargetRows targetRows(const OFX::Image& image, int channels)
{
  return rowsOf<std::byte>(image, channels);
}

void copyByCoordinates(const SourceRows& source, const TargetRows& target)
{
  const std::size_t pixel = target.pixelBytes();
  const std::size_t rowBytes = target.width() * pixel;
  const int left = std::max(source.bounds.x1, target.bounds.x1);
  const int right = std::min(source.bounds.x2, target.bounds.x2);
  for (int y = target.bounds.y1; y < target.bounds.y2; ++y)
  {
    std::byte* to = target.row(y);
    if (y < source.bounds.y1 || y >= source.bounds.y2 || left >= right)
    {
      std::memset(to, 0, rowBytes);
      continue;
    }
    const auto before = static_cast<std::size_t>(left - target.bounds.x1) * pixel;
    const auto shared = static_cast<std::size_t>(right - left) * pixel;
    const std::byte* from = source.row(y) + static_cast<std::size_t>(left - source.bounds.x1) * pixel;
    // A host may have one memory for both images.
    std::memmove(to + before, from, shared);
    std::memset(to, 0, before);
    std::memset(to + before + shared, 0, rowBytes - before - shared);
  }
}

SourceFrame::SourceFrame(const SourceRows& source, const TargetRows& target)
{
  if (sameRectangle(source.bounds, target.bounds) && source.isPacked() && !overlap(source, target))
  {
    pixels_ = reinterpret_cast<const float*>(source.first);
    return;
  }
  copy_ = frameFor(target);
  copyByCoordinates(source, packedRows(reinterpret_cast<std::byte*>(copy_.data()), target));
  pixels_ = copy_.data();
}

TargetFrame::TargetFrame(const TargetRows& target) : target_(target)
{
  if (target.isPacked())
  {
    pixels_ = reinterpret_cast<float*>(target.first);
    return;
  }
  copy_ = frameFor(target);
  pixels_ = copy_.data();
}

void TargetFrame::finish()
{
  if (!copy_.empty())
    copyByCoordinates(packedRows(reinterpret_cast<const std::byte*>(copy_.data()), target_), target_);
}

}  // namespace morvellan
