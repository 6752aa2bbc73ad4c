// Launches grain: the kernels, and on the CPU their fast form.
#include "grain/grain.h"

#include "device/launch.h"
#include "grain/fast_grain.h"
#include "grain/render_kernels.h"

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

float tableScaleOf(const GrainSettings& s)
{
  return static_cast<float>(s.levels + 0.1);
}

grain::Plane planeOf(const GrainLaunch& l)
{
  const GrainSettings& s = l.settings;
  return {.image = l.image,
          .lambda = l.lambda,
          .exp = l.exp,
          .offsets = l.offsets,
          .destination = l.destination,
          .width = l.width,
          .height = l.height,
          .firstRow = l.firstRow,
          .seed = s.seed,
          .count = s.count,
          .cell = s.cell,
          .tableScale = tableScaleOf(s),
          .levels = s.levels,
          .blendKeep = s.blendKeep,
          .strengthPerCount = s.strengthPerCount,
          .invCell = s.invCell};
}

template <typename Search>
void launchKernel(const Queue& queue, const GrainLaunch& l)
{
  const GrainSettings& s = l.settings;
  const Grid2d grid = grid2d(l.width, l.rows);
  if (s.sigma == 0.0f)
    launch(queue, grid, render_pixelR<Search>{planeOf(l), s.radiusSquared, s.radius});
  else
    launch(queue, grid, render_variance<Search>{planeOf(l), s.radiusMax, s.logSigma, s.logMu});
}

bool sharesLaw(const GrainSettings& a, const GrainSettings& b)
{
  return a.sigma == b.sigma && a.radius == b.radius && a.radiusSquared == b.radiusSquared &&
         (a.sigma == 0.0f || (a.logSigma == b.logSigma && a.logMu == b.logMu && a.radiusMax == b.radiusMax));
}

}  // namespace

std::vector<FilterOffset> filterOffsets(const GrainSettings& s)
{
  return filterOffsets(s.seed, s.count, s.soft, s.targetScaleX, s.targetScaleY);
}

bool sharesGrain(const GrainLaunch& a, const GrainLaunch& b)
{
  const GrainSettings& s = a.settings;
  const GrainSettings& t = b.settings;
  return a.width == b.width && a.height == b.height && a.firstRow == b.firstRow && a.rows == b.rows &&
         s.seed == t.seed && s.count == t.count && s.soft == t.soft && s.targetScaleX == t.targetScaleX &&
         s.targetScaleY == t.targetScaleY && s.cell == t.cell && s.invCell == t.invCell && s.levels == t.levels &&
         sharesLaw(s, t);
}

void renderGrainByKernel(const Queue& queue, const GrainLaunch& l, GrainSearch search)
{
  if (search == GrainSearch::Plain)
    launchKernel<grain::EveryCell>(queue, l);
  else
    launchKernel<grain::OccupiedCellsFirst>(queue, l);
}

void renderGrain(const Queue& queue, std::span<const GrainLaunch> launches)
{
#ifndef MORVELLAN_TARGET_IS_CUDA
  const float tableScale = tableScaleOf(launches.front().settings);
  if (fastGrainFits(launches.front(), tableScale))
    return renderGrainFast(queue, launches, tableScale);
#endif
  for (const GrainLaunch& l : launches)
    renderGrainByKernel(queue, l, GrainSearch::OccupiedFirst);
}

}  // namespace morvellan::MORVELLAN_TARGET
