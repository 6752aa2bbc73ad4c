// A frame of pixels in a host's memory, as an image of the interface presents it: bottom row first, any row stride.
// Guarded frames end at an unreadable page and carry sentinels wherever a plug-in has nothing to write.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "ofx/ofxCore.h"

namespace morvellan::host
{

enum class Components
{
  None,
  Alpha,
  Rgb,
  Rgba,
};

enum class Depth
{
  None,
  Byte,
  Short,
  Half,
  Float,
};

int countOf(Components components);
std::size_t bytesOf(Depth depth);
const char* nameOf(Components components);  // the interface's names
const char* nameOf(Depth depth);

struct FrameLayout
{
  OfxRectI bounds{};
  Components components = Components::Rgba;
  Depth depth = Depth::Float;
  int rowPadding = 0;    // bytes between the rows
  bool topDown = false;  // rows lie top first in memory: the row stride is negative
  bool guarded = false;
};

class PixelStore;

// Copies share their pixels.
class Frame
{
public:
  explicit Frame(const FrameLayout& layout);

  const FrameLayout& layout() const { return layout_; }
  int width() const { return layout_.bounds.x2 - layout_.bounds.x1; }
  int height() const { return layout_.bounds.y2 - layout_.bounds.y1; }
  // The stride of rows in bytes, negative for rows that lie top first.
  int rowBytes() const { return layout_.topDown ? -stride_ : stride_; }
  // Pixel (x1, y1), as OfxImagePropData has it.
  std::byte* origin() const;
  // The values of row y of the bounds; the depth must be float.
  std::span<float> row(int y) const;
  // Sets every value of a float frame.
  void fill(float value) const;
  // A frame of the same layout with pixels of its own.
  Frame clone() const;

  // False if anything was written where there are no pixels.
  bool intact() const;
  // A checksum of the pixels.
  std::uint64_t checksum() const;

private:
  std::byte* rowStart(int y) const;

  FrameLayout layout_;
  int packed_ = 0;
  int stride_ = 0;
  std::shared_ptr<PixelStore> store_;
};

}  // namespace morvellan::host
