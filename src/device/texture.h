// One-channel float textures, point sampled, with unnormalised coordinates that clamp at the edges.
// A texture reads the memory that it was made over and does not own it.
#pragma once

#include <cstddef>

#include "device/lanes.h"

namespace morvellan::MORVELLAN_TARGET
{

// A row of `count` values.
struct Texture1d
{
  const float* values = nullptr;
  int count = 0;
};

// A plane of width * height values, rows packed.
struct Texture2d
{
  const float* values = nullptr;
  int width = 0, height = 0;
};

// The value at an index; an index outside reads the edge value.
MORVELLAN_INLINE Real fetch(const Texture1d& t, Int index)
{
  return gather(t.values, max(min(index, Int(t.count - 1)), Int(0)));
}

MORVELLAN_INLINE Real fetch(const Texture2d& t, Int x, Int y)
{
  const Int column = max(min(x, Int(t.width - 1)), Int(0));
  const Int row = max(min(y, Int(t.height - 1)), Int(0));
  return gather(t.values, row * Int(t.width) + column);
}

// The same for one value in code without lanes.
MORVELLAN_INLINE float texel(const Texture1d& t, int index)
{
  const int last = t.count - 1;
  return t.values[index < 0 ? 0 : (index > last ? last : index)];
}

MORVELLAN_INLINE float texel(const Texture2d& t, int x, int y)
{
  const int column = x < 0 ? 0 : (x > t.width - 1 ? t.width - 1 : x);
  const int row = y < 0 ? 0 : (y > t.height - 1 ? t.height - 1 : y);
  return t.values[static_cast<ptrdiff_t>(row) * t.width + column];
}

}  // namespace morvellan::MORVELLAN_TARGET
