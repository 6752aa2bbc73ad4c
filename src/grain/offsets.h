// The offsets of the viewing filter's samples from a pixel's centre: one list a launch, the same on every target.
#pragma once

#include <cstdint>
#include <vector>

#include "device/target.h"

namespace morvellan::MORVELLAN_TARGET
{

// In pixels. An offset that is not finite gives no hit.
struct FilterOffset
{
  float x, y;
};

// Normally distributed with deviation `soft`, stretched by the scales. Logarithm and cosine are rounded once to float.
std::vector<FilterOffset> filterOffsets(uint32_t seed, int count, float soft, float scaleX, float scaleY);

}  // namespace morvellan::MORVELLAN_TARGET
