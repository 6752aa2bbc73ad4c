// Frames and the memory under them.
#include "host/frame.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <new>
#include <stdexcept>

#include <sys/mman.h>
#include <unistd.h>

#include "ofx/ofxImageEffect.h"

namespace morvellan::host
{
namespace
{

constexpr std::byte sentinel{0xA5};

std::size_t roundUp(std::size_t bytes, std::size_t unit)
{
  return (bytes + unit - 1) / unit * unit;
}

}  // namespace

// Memory of a frame. When guarded, it ends flush with a page that cannot be touched, and the rest of its first page
// holds sentinels behind another such page.
class PixelStore
{
public:
  PixelStore(std::size_t bytes, bool guarded)
  {
    if (!guarded)
    {
      data_ = static_cast<std::byte*>(::operator new(std::max<std::size_t>(bytes, 1), alignment));
      return;
    }
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    const std::size_t inner = roundUp(bytes + 64, page);
    mapped_ = inner + 2 * page;
    void* const memory = mmap(nullptr, mapped_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED)
    {
      throw std::bad_alloc();
    }
    base_ = static_cast<std::byte*>(memory);
    lead_ = base_ + page;
    data_ = base_ + page + inner - bytes;
    std::fill(lead_, data_, sentinel);
    mprotect(base_, page, PROT_NONE);
    mprotect(base_ + page + inner, page, PROT_NONE);
  }

  ~PixelStore()
  {
    if (base_ != nullptr)
    {
      munmap(base_, mapped_);
    }
    else
    {
      ::operator delete(data_, alignment);
    }
  }

  PixelStore(const PixelStore&) = delete;
  PixelStore& operator=(const PixelStore&) = delete;

  std::byte* data() const { return data_; }
  bool intact() const
  {
    return base_ == nullptr || std::all_of(lead_, data_, [](std::byte value) { return value == sentinel; });
  }

private:
  static constexpr std::align_val_t alignment{64};
  std::byte* base_ = nullptr;
  std::byte* lead_ = nullptr;
  std::byte* data_ = nullptr;
  std::size_t mapped_ = 0;
};

int countOf(Components components)
{
  constexpr std::array<int, 4> counts{0, 1, 3, 4};
  return counts[static_cast<std::size_t>(components)];
}

std::size_t bytesOf(Depth depth)
{
  constexpr std::array<std::size_t, 5> sizes{0, 1, 2, 2, 4};
  return sizes[static_cast<std::size_t>(depth)];
}

const char* nameOf(Components components)
{
  constexpr std::array<const char*, 4> names{kOfxImageComponentNone, kOfxImageComponentAlpha, kOfxImageComponentRGB,
                                             kOfxImageComponentRGBA};
  return names[static_cast<std::size_t>(components)];
}

const char* nameOf(Depth depth)
{
  constexpr std::array<const char*, 5> names{kOfxBitDepthNone, kOfxBitDepthByte, kOfxBitDepthShort, kOfxBitDepthHalf,
                                             kOfxBitDepthFloat};
  return names[static_cast<std::size_t>(depth)];
}

Frame::Frame(const FrameLayout& layout) : layout_(layout)
{
  if (width() < 0 || height() < 0)
  {
    throw std::invalid_argument("a frame cannot have a negative size");
  }
  packed_ = width() * countOf(layout.components) * static_cast<int>(bytesOf(layout.depth));
  stride_ = packed_ + layout.rowPadding;
  // The last row has no padding behind it: a plug-in that copies whole strides runs into the guard.
  const std::size_t bytes = height() == 0 ? 0
                                          : static_cast<std::size_t>(stride_) * static_cast<std::size_t>(height() - 1) +
                                                static_cast<std::size_t>(packed_);
  store_ = std::make_shared<PixelStore>(bytes, layout.guarded);
  std::fill_n(store_->data(), bytes, sentinel);
  for (int y = layout.bounds.y1; y < layout.bounds.y2; ++y)
  {
    std::fill_n(rowStart(y), packed_, std::byte{0});
  }
}

std::byte* Frame::rowStart(int y) const
{
  const int line = layout_.topDown ? layout_.bounds.y2 - 1 - y : y - layout_.bounds.y1;
  return store_->data() + static_cast<std::ptrdiff_t>(line) * stride_;
}

std::byte* Frame::origin() const
{
  return height() == 0 ? store_->data() : rowStart(layout_.bounds.y1);
}

std::span<float> Frame::row(int y) const
{
  if (layout_.depth != Depth::Float || y < layout_.bounds.y1 || y >= layout_.bounds.y2)
  {
    throw std::out_of_range("no such row of floats");
  }
  return {reinterpret_cast<float*>(rowStart(y)), static_cast<std::size_t>(packed_) / sizeof(float)};
}

void Frame::fill(float value) const
{
  for (int y = layout_.bounds.y1; y < layout_.bounds.y2; ++y)
  {
    std::ranges::fill(row(y), value);
  }
}

Frame Frame::clone() const
{
  Frame copy(layout_);
  for (int y = layout_.bounds.y1; y < layout_.bounds.y2; ++y)
  {
    std::memcpy(copy.rowStart(y), rowStart(y), static_cast<std::size_t>(packed_));
  }
  return copy;
}

bool Frame::intact() const
{
  for (int line = 0; line + 1 < height(); ++line)
  {
    const std::byte* const padding = store_->data() + static_cast<std::ptrdiff_t>(line) * stride_ + packed_;
    if (!std::all_of(padding, padding + layout_.rowPadding, [](std::byte value) { return value == sentinel; }))
    {
      return false;
    }
  }
  return store_->intact();
}

std::uint64_t Frame::checksum() const
{
  std::uint64_t sum = 0xcbf29ce484222325U;  // FNV-1a
  for (int y = layout_.bounds.y1; y < layout_.bounds.y2; ++y)
  {
    const std::byte* const start = rowStart(y);
    for (int i = 0; i < packed_; ++i)
    {
      sum = (sum ^ static_cast<std::uint64_t>(start[i])) * 0x100000001b3U;
    }
  }
  return sum;
}

}  // namespace morvellan::host
