// Builds the records of a launch, row by row.
#include "grain/grain_records.h"

#ifndef MORVELLAN_TARGET_IS_CUDA

#include <algorithm>

#include <tbb/parallel_for.h>

namespace morvellan::MORVELLAN_TARGET::grain
{

Records::Records(std::span<const GrainLaunch> launches, float tableScale, int borderColumns)
    : height(launches[0].height), border(borderColumns),
      pitch(static_cast<ptrdiff_t>(launches[0].width) + 2 * border + lanes),
      leastNone(static_cast<size_t>(pitch) * static_cast<size_t>(height)), leastOne(leastNone.size())
{
  for (size_t c = 0; c < launches.size() && launches.size() > 1; ++c)
    none[c] = Buffer<int>(leastNone.size());
  tbb::parallel_for(0, height, [&](int y) { build(launches, tableScale, y); });
}

void Records::build(std::span<const GrainLaunch> launches, float tableScale, int y) const
{
  const int width = launches[0].width;
  const bool several = launches.size() > 1;
  int* const noneTo = leastNone.data() + at(y);
  int* const oneTo = leastOne.data() + at(y);
  for (int x = 0; x < width; x += lanes)
  {
    Int fewestNone(largestDraw), fewestOne(largestDraw);
    for (size_t c = 0; c < launches.size(); ++c)
    {
      const GrainLaunch& l = launches[c];
      const Int index =
          tableIndices(load(l.image.values + static_cast<ptrdiff_t>(y) * width + x), tableScale, l.settings.levels);
      const Real lambda = fetch(l.lambda, index);
      const Real exp = fetch(l.exp, index);
      // The draw of a cell ends at a number of grains in proportion to the intensity.
      const Real limit = lambda * Real(10000.0f);
      const Int noGrain = select(limit >= Real(1.0f), largestDrawAtMost(exp), Int(largestDraw));
      const Int oneGrain = select(limit >= Real(2.0f), largestDrawAtMost(exp + exp * lambda), Int(largestDraw));
      if (several)
        store(none[c].data() + at(y) + x, noGrain);
      fewestNone = min(fewestNone, noGrain);
      fewestOne = min(fewestOne, oneGrain);
    }
    store(noneTo + x, fewestNone);
    store(oneTo + x, fewestOne & Int(-(1 << xBitsOfRecords)));
  }
  repeatEdges(noneTo, width);
  repeatEdges(oneTo, width);
  for (size_t c = 0; c < launches.size() && several; ++c)
    repeatEdges(none[c].data() + at(y), width);
}

void Records::repeatEdges(int* row, int width) const
{
  std::fill(row - border, row, row[0]);
  std::fill(row + width, row + width + border + lanes, row[width - 1]);
}

}  // namespace morvellan::MORVELLAN_TARGET::grain

#endif
