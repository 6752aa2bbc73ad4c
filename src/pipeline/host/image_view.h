// A picture of RGBA floats in memory that somebody else owns.
#pragma once

#include <cstddef>
#include <type_traits>

namespace morvellan
{

struct ImageSize
{
  int width;
  int height;

  bool operator==(const ImageSize&) const = default;
};

// Rows of 4 floats a pixel; rowStep is the distance of rows in bytes and may exceed width * 16.
template <typename Float>
struct BasicImageView
{
  Float* pixels;
  int width;
  int height;
  std::ptrdiff_t rowStep;

  Float* row(int y) const
  {
    using Byte = std::conditional_t<std::is_const_v<Float>, const std::byte, std::byte>;
    return reinterpret_cast<Float*>(reinterpret_cast<Byte*>(pixels) + y * rowStep);
  }
};

using ImageView = BasicImageView<float>;
using ConstImageView = BasicImageView<const float>;

// A picture whose rows follow one another without padding.
template <typename Float>
BasicImageView<Float> packedImage(Float* pixels, ImageSize size)
{
  return {pixels, size.width, size.height,
          static_cast<std::ptrdiff_t>(size.width) * 4 * static_cast<std::ptrdiff_t>(sizeof(float))};
}

}  // namespace morvellan
