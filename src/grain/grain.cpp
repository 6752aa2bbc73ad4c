// Launches grain: the literal kernels, and on the CPU their fast form.
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

}  // namespace

std::vector<FilterOffset> filterOffsets(const GrainSettings& s)
{
  return filterOffsets(s.seed, s.count, s.soft, s.targetScaleX, s.targetScaleY);
}

void renderGrainLiterally(const Queue& queue, const GrainLaunch& l)
{
  const Grid2d grid = grid2d(l.width, l.rows);
  if (l.settings.sigma == 0.0f)
    launch(queue, grid, render_pixelR{planeOf(l), l.settings.radiusSquared, l.settings.radius});
  else
    launch(queue, grid, render_variance{planeOf(l), l.settings.radiusMax, l.settings.logSigma, l.settings.logMu});
}

void renderGrain(const Queue& queue, const GrainLaunch& l)
{
#ifndef MORVELLAN_TARGET_IS_CUDA
  if (fastGrainFits(l, tableScaleOf(l.settings)))
    return renderGrainFast(queue, l, tableScaleOf(l.settings));
#endif
  renderGrainLiterally(queue, l);
}

}  // namespace morvellan::MORVELLAN_TARGET
