// Builds the records of a launch, row by row.
#include "grain/grain_records.h"

#ifndef MORVELLAN_TARGET_IS_CUDA

#include <algorithm>

#include <tbb/parallel_for.h>

namespace morvellan::MORVELLAN_TARGET::grain
{

Records::Records(const GrainLaunch& launch, float tableScale, int borderColumns)
    : height(launch.height), border(borderColumns), pitch(static_cast<ptrdiff_t>(launch.width) + 2 * border + lanes),
      none(static_cast<size_t>(pitch) * static_cast<size_t>(height)), one(none.size())
{
  tbb::parallel_for(0, height, [&](int y) { build(launch, tableScale, y); });
}

void Records::build(const GrainLaunch& l, float tableScale, int y) const
{
  const float* image = l.image.values + static_cast<ptrdiff_t>(y) * l.width;
  int* const noneTo = none.data() + at(y);
  int* const oneTo = one.data() + at(y);
  for (int x = 0; x < l.width; x += lanes)
  {
    const Int index = tableIndices(load(image + x), tableScale, l.settings.levels);
    const Real lambda = fetch(l.lambda, index);
    const Real exp = fetch(l.exp, index);
    // The draw of a cell ends at a number of grains in proportion to the intensity.
    const Real limit = lambda * Real(10000.0f);
    store(noneTo + x, select(limit >= Real(1.0f), largestDrawAtMost(exp), Int(largestDraw)));
    const Int oneGrain = select(limit >= Real(2.0f), largestDrawAtMost(exp + exp * lambda), Int(largestDraw));
    store(oneTo + x, oneGrain & Int(-(1 << xBitsOfRecords)));
  }
  repeatEdges(noneTo, l.width);
  repeatEdges(oneTo, l.width);
}

void Records::repeatEdges(int* row, int width) const
{
  std::fill(row - border, row, row[0]);
  std::fill(row + width, row + width + border + lanes, row[width - 1]);
}

}  // namespace morvellan::MORVELLAN_TARGET::grain

#endif
