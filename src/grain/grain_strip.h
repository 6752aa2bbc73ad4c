// One sample of the viewing filter along a strip of pixels: where its points lie, which pixels of the plane they fall
// on, and how many columns of cells they have in reach and how far away those are.
#pragma once

#ifndef MORVELLAN_TARGET_IS_CUDA

#include <algorithm>
#include <cmath>

#include "grain/grain.h"
#include "grain/grain_tile_memory.h"
#include "grain/radius.h"

namespace morvellan::MORVELLAN_TARGET::grain
{

template <typename Radius>
class Strip
{
public:
  // `pixels` of the plane from column x0 on, a multiple of the lanes; some of the last may lie beyond it.
  Strip(const GrainSettings& settings, const Radius& law, TileMemory& memory, int x0, int pixels)
      : s(settings), radius(law), m(memory), first(x0), span(pixels)
  {
  }

  // From here on the points lie `x` pixels right of the pixels' centres.
  void take(float x)
  {
    offset = x;
    Int least(mostCells), most(1), leastShift(1 << 24), mostShift(-(1 << 24));
    for (int i = 0; i < span; i += lanes)
    {
      const Int pixel = laneIndex() + Int(i);
      const Real gx = gxAt(toReal(pixel));
      const Int start = toInt(firstColumn(gx));
      const Int end = toInt(floor((gx + Real(radius.reach)) * Real(s.invCell)));
      const Int count = max(end - start, Int(1));
      const Int whole = toInt(floor(gx)) - pixel;
      store(m.columnCount + i, count);
      least = min(least, count);
      most = max(most, count);
      leastShift = min(leastShift, whole);
      mostShift = max(mostShift, whole);
    }
    leastColumns_ = leastOf(least);
    mostColumns_ = mostOf(most);
    shift_ = leastOf(leastShift);
    shiftIsOne_ = shift_ == mostOf(mostShift);
  }

  // The columns of cells base to base + count - 1 of every pixel's, into memory.columns; the distance, along the strip,
  // of its points to each. Grains lie no nearer, as float operations keep order.
  void prepareColumns(int base, int count)
  {
    for (int c = 0; c < count; ++c)
    {
      Real nearest(3.0e38f);
      for (int i = 0; i < span; i += lanes)
      {
        const Real gx = gxAt(toReal(laneIndex() + Int(i)));
        const Real cx = firstColumn(gx) + Real(static_cast<float>(base + c));
        const Real left = cx * Real(s.cell);
        nearest = min(nearest, max(max(left - gx, gx - (Real(s.cell) + left)), Real(0.0f)));
        store(m.columns[c] + i, (toWord(toInt(cx)) & Word(65535u)) + Word(s.seed));
      }
      float all[lanes];
      store(all, nearest);
      distance_[c] = *std::min_element(all, all + lanes);
    }
  }

  // The point of a pixel of the strip, and the first of its columns of cells.
  MORVELLAN_INLINE Real gxAt(Real pixel) const
  {
    return Real(offset) + (pixel + Real(static_cast<float>(first) + 0.5f));
  }
  MORVELLAN_INLINE Real firstColumn(Real gx) const { return floor((gx - Real(radius.reach)) * Real(s.invCell)); }

  // The column of the plane that a pixel's point falls on; where shiftIsOne, `shift` right of the pixel's place in the
  // strip.
  int planeColumn(int pixel) const
  {
    return static_cast<int>(std::floor(offset + (static_cast<float>(first + pixel) + 0.5f)));
  }
  bool shiftIsOne() const { return shiftIsOne_; }
  int shift() const { return shift_; }

  int leastColumns() const { return leastColumns_; }
  int mostColumns() const { return mostColumns_; }
  float distance(int column) const { return distance_[column]; }

private:
  static int leastOf(Int x)
  {
    int all[lanes];
    store(all, x);
    return *std::min_element(all, all + lanes);
  }

  static int mostOf(Int x)
  {
    int all[lanes];
    store(all, x);
    return *std::max_element(all, all + lanes);
  }

  const GrainSettings& s;
  const Radius& radius;
  TileMemory& m;
  const int first, span;

  float offset = 0.0f;
  int leastColumns_ = 0, mostColumns_ = 0;
  int shift_ = 0;
  bool shiftIsOne_ = true;
  float distance_[columnsAtOnce] = {};
};

}  // namespace morvellan::MORVELLAN_TARGET::grain

#endif
