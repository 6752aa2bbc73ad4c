// The seeds of a frame's grain: from the frame's number in the random patterns, from the user's pattern in the uniform
// ones.
#pragma once

#include <cstdint>

namespace morvellan
{

// The Wang integer hash, unsigned 32-bit.
constexpr std::uint32_t wangHash(std::uint32_t x)
{
  x = (x ^ 61u) ^ (x >> 16);
  x *= 9u;
  x ^= x >> 4;
  x *= 0x27D4EB2Du;
  x ^= x >> 15;
  return x;
}

}  // namespace morvellan
