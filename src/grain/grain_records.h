// What the fast form keeps of every pixel for a launch: the largest draws of a cell that still mean no grain and one
// grain. Planes with borders that repeat the edge, so that a sample reads its pixels at a whole-pixel shift.
#pragma once

#include <array>
#include <span>

#include "device/memory.h"
#include "grain/grain.h"

namespace morvellan::MORVELLAN_TARGET::grain
{

// Draws are compared as signed integers: their upper bit is turned over.
inline constexpr uint32_t signBit = 0x80000000u;

// Records of one grain lack their lowest bits, which hold a pixel's place in its strip while it is queued. More draws
// than necessary are then looked at as if there were a second grain, and found to have none.
inline constexpr int xBitsOfRecords = 10;

// A draw is never above this one.
inline constexpr int largestDraw = 0x7fffffff;

// The largest draw s, turned over, with !(s * 2^-32 > chance) in float. A chance is 0 or more; NaN and 1 give
// largestDraw.
MORVELLAN_INLINE Int largestDrawAtMost(Real chance)
{
  const Real scaled = chance * Real(4294967296.0f);
  const Real bounded = min(scaled, Real(4294967040.0f));
  const Real high = floor(bounded * Real(1.0f / 65536.0f));
  const Real low = bounded - high * Real(65536.0f);
  // Where floats lie more than 1 apart, draws up to half way to the next one round down to this one; at half way they
  // round to the even one.
  const Int half = toInt(realOfBits(bitsOf(bounded) & Int(0x7f800000)) * Real(1.0f / 16777216.0f));
  const Int rounded = half - (bitsOf(bounded) & Int(1));
  const Int whole = shiftLeft<16>(toInt(high)) + toInt(low);
  const Int draw = whole + select(half > Int(0), rounded, Int(0));
  const Int turned = toInt(toWord(draw) ^ Word(signBit));
  return select(scaled < Real(4294967296.0f), turned, Int(largestDraw));
}

// Of launches that share their grain. Rows are given at column 0; a row outside is the edge's, and columns from -border
// to width + border + lanes are there.
class Records
{
public:
  // `border` pixels left and right; rows need none.
  Records(std::span<const GrainLaunch> launches, float tableScale, int border);

  // Of the channel with the most grains at a pixel; that of one grain without its lowest bits.
  const int* leastNoneRow(int y) const { return leastNone.data() + at(y); }
  const int* leastOneRow(int y) const { return leastOne.data() + at(y); }

  // Of each of several channels.
  const int* noneRow(size_t channel, int y) const { return none[channel].data() + at(y); }

private:
  ptrdiff_t at(int y) const
  {
    const int row = y < 0 ? 0 : (y < height ? y : height - 1);
    return row * pitch + border;
  }
  void build(std::span<const GrainLaunch> launches, float tableScale, int y) const;
  void repeatEdges(int* row, int width) const;

  int height, border;
  ptrdiff_t pitch;
  Buffer<int> leastNone, leastOne;
  std::array<Buffer<int>, mostSharedLaunches> none;
};

// The index of image values in tables; NaN and negatives are 0.
MORVELLAN_INLINE Int tableIndices(Real value, float tableScale, int levels)
{
  const Real floored = floor(value * Real(tableScale));
  return min(toInt(min(max(floored, Real(0.0f)), Real(1073741824.0f))), Int(levels));
}

}  // namespace morvellan::MORVELLAN_TARGET::grain
