// The host's images as the frames that pipelines take: packed rows, bottom row first, of the output's size. A source of
// other bounds is placed by its coordinates, with transparent black around it; nothing beyond either image is touched.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "entry/clip_image.h"

namespace morvellan
{

/// A rectangle of float pixels in memory, of 3 or 4 channels.
template <class Byte>
struct FloatRows
{
  OfxRectI bounds{};
  Byte* first = nullptr;        // pixel (x1, y1)
  std::ptrdiff_t rowBytes = 0;  // may be negative
  int channels = 4;

  std::size_t width() const { return static_cast<std::size_t>(bounds.x2 - bounds.x1); }
  std::size_t height() const { return static_cast<std::size_t>(bounds.y2 - bounds.y1); }
  std::size_t pixelBytes() const { return static_cast<std::size_t>(channels) * sizeof(float); }
  /// Whether the rows follow one another without a gap, upwards.
  bool isPacked() const { return rowBytes == static_cast<std::ptrdiff_t>(width() * pixelBytes()); }
  Byte* row(int y) const { return first + (static_cast<std::ptrdiff_t>(y) - bounds.y1) * rowBytes; }
};

using SourceRows = FloatRows<const std::byte>;
using TargetRows = FloatRows<std::byte>;

/// What is wrong with an image that is to be read or written, in words for the user; nothing where it can be used.
/// `role` is "Input" or "Output".
std::optional<std::string> imageFault(const OFX::Image& image, int channels, const std::string& role);

// Of images without fault.
SourceRows sourceRows(const OFX::Image& image, int channels);
TargetRows targetRows(const OFX::Image& image, int channels);

/// Every pixel of the target: the source's pixel of the same coordinates, or zero where it has none.
void copyByCoordinates(const SourceRows& source, const TargetRows& target);

/// A source image as a packed frame of the output's bounds. It is the host's own memory where that already fits.
class SourceFrame
{
public:
  SourceFrame(const SourceRows& source, const TargetRows& target);
  const float* pixels() const { return pixels_; }

private:
  std::vector<float> copy_;
  const float* pixels_;
};

/// The output image as a packed frame. It is the host's own memory where that is packed, otherwise finish() writes the
/// frame into the image.
class TargetFrame
{
public:
  explicit TargetFrame(const TargetRows& target);
  float* pixels() { return pixels_; }
  void finish();

private:
  TargetRows target_;
  std::vector<float> copy_;
  float* pixels_;
};

}  // namespace morvellan
