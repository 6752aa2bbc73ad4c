// Cuts a launch into tiles for the threads, for either kernel.
#include "grain/fast_grain.h"

#ifndef MORVELLAN_TARGET_IS_CUDA

#include <memory>

#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>

#include "device/launch.h"
#include "grain/grain_tile.h"

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

constexpr float mostOffset = 512.0f;  // pixels; borders of records are this wide at most

struct Extent
{
  float x = 0.0f, y = 0.0f;
};

// The largest finite offset of each axis.
Extent extentOf(const GrainLaunch& l)
{
  Extent most;
  for (int i = 0; i < l.settings.count; ++i)
    if (std::isfinite(l.offsets[i].x) && std::isfinite(l.offsets[i].y))
      most = {std::max(most.x, std::fabs(l.offsets[i].x)), std::max(most.y, std::fabs(l.offsets[i].y))};
  return most;
}

float reachOf(const GrainSettings& s)
{
  return s.sigma == 0.0f ? s.radius : s.radiusMax;
}

template <int Channels, typename Radius>
void renderTiles(std::span<const GrainLaunch, Channels> launches, const Radius& radius, float tableScale)
{
  const GrainLaunch& l = launches[0];
  const grain::Records records(launches, tableScale, static_cast<int>(extentOf(l).x) + 2);
  const grain::FastPlanes<Radius, Channels> planes{launches, records, radius, tableScale};
  const int across = (l.width + grain::stripLength - 1) / grain::stripLength;
  const int down = (l.rows + grain::tileRows - 1) / grain::tileRows;
  tbb::parallel_for(tbb::blocked_range<int>(0, across * down),
                    [&](const tbb::blocked_range<int>& range)
                    {
                      const auto memory = std::make_unique_for_overwrite<grain::TileMemory>();
                      for (int i = range.begin(); i < range.end(); ++i)
                      {
                        const int x = i % across * grain::stripLength;
                        const int y = i / across * grain::tileRows;
                        grain::Tile<Radius, Channels>(planes, *memory, x, l.firstRow + y,
                                                      std::min(grain::stripLength, l.width - x),
                                                      std::min(grain::tileRows, l.rows - y))
                            .render();
                      }
                    });
}

template <typename Radius>
void renderTiles(std::span<const GrainLaunch> launches, const Radius& radius, float tableScale)
{
  switch (launches.size())
  {
  case 1:
    return renderTiles<1>(launches.first<1>(), radius, tableScale);
  case 2:
    return renderTiles<2>(launches.first<2>(), radius, tableScale);
  default:
    return renderTiles<mostSharedLaunches>(launches.first<mostSharedLaunches>(), radius, tableScale);
  }
}

}  // namespace

bool fastGrainFits(const GrainLaunch& l, float tableScale)
{
  const GrainSettings& s = l.settings;
  const float reach = reachOf(s);
  const Extent offset = extentOf(l);
  const float farthest =
      std::max(static_cast<float>(l.width) + offset.x, static_cast<float>(l.height) + offset.y) + 1.0f + reach;
  return offset.x <= mostOffset && offset.y <= mostOffset && farthest * s.invCell < 8388608.0f &&
         farthest < 4194304.0f && reach > 0.0f &&
         2.0f * reach * s.invCell + 3.0f < static_cast<float>(grain::mostCells) && tableScale > 0.0f;
}

void renderGrainFast(const Queue& queue, std::span<const GrainLaunch> launches, float tableScale)
{
  const GrainLaunch& l = launches.front();
  const GrainSettings& s = l.settings;
  const LaunchWatch watch(queue, s.sigma == 0.0f ? "render_pixelR" : "render_variance", l.width, l.rows);
  if (s.sigma == 0.0f)
    renderTiles(launches, grain::OneRadius{s.radius, s.radiusSquared}, tableScale);
  else
    renderTiles(launches, grain::VaryingRadius{grain::radiusLaw(s.logSigma, s.logMu, s.radiusMax), s.radiusMax},
                tableScale);
}

}  // namespace morvellan::MORVELLAN_TARGET

#endif
