// Two wide Gaussians one after the other on the CPU, when both results are wanted: the columns of both in one pass and
// the rows of both in another, so that the first result is never a plane.
#pragma once

#include "film/gaussian_fused.h"

#ifndef MORVELLAN_TARGET_IS_CUDA

namespace morvellan::MORVELLAN_TARGET
{

namespace detail
{

// The columns of the first blur into `first`, and of both into `both`.
template <Samples Kind>
void blurColumnsTwice(const GaussianCascade& f, const GaussianCascade& g, const Plane& source, const PlaneRows& first,
                      const PlaneRows& both)
{
  const int height = source.height;
  withScratch((source.width + stripColumns - 1) / stripColumns, static_cast<size_t>(height) * stripColumns,
              [&](int strip, float* tile)
              {
                const int x = strip * stripColumns;
                const Strip from(source, x, 0, height, 0, tile);
                filterStrip<Kind>(f, from.plane, from.x, 0, height, 0, ptrdiff_t{rowsAhead} * source.width, tile,
                                  [&](int y, int v, Real r)
                                  {
                                    store(tile + y * stripColumns + v * lanes, r);
                                    first.write(first.at(x + v * lanes, y), r);
                                  });
                // In place: a sample is read before its answer takes its memory.
                filterStrip<Samples::Finite>(g, {tile, stripColumns, height}, 0, 0, height, 0, 0, tile,
                                             [&](int y, int v, Real r) { both.write(both.at(x + v * lanes, y), r); });
              });
}

// Keeps the rows of a band, `width` floats each.
struct KeptRows
{
  float* rows;
  int width;

  MORVELLAN_INLINE void operator()(int row, int x, Real blurred) const
  {
    storePlane(rows, {x, row, static_cast<ptrdiff_t>(row) * width + x, std::min(lanes, width - x)}, blurred);
  }
  MORVELLAN_INLINE void expect(int, int) const {}
};

MORVELLAN_INLINE Band filteredBand(const GaussianCascade& f, float* memory, int ring, const Plane& source, int first,
                                   int inside)
{
  Band band(f, memory, ring, source.width);
  forwardRows(band, source, first, inside);
  return band;
}

template <typename Finish>
void blurRowsTwice(const GaussianCascade& f, const GaussianCascade& g, const Plane& first, const Plane& both,
                   const PlaneRows& rows, const Finish& finish)
{
  const int width = first.width;
  const int ring = ringOf(width);
  const size_t kept = static_cast<size_t>(width) * bandRows + stripColumns;
  withScratch((first.height + bandRows - 1) / bandRows, Band::floats(ring) + kept,
              [&](int item, float* memory)
              {
                const int top = item * bandRows;
                const int inside = std::min(bandRows, first.height - top);
                const ptrdiff_t begin = static_cast<ptrdiff_t>(top) * width;
                const ptrdiff_t count = static_cast<ptrdiff_t>(inside) * width;
                const KeptRows base{memory + Band::floats(ring), width};
                filteredBand(f, memory, ring, first, top, inside).backward(0, width, width, inside, base);
                Band band = filteredBand(f, memory, ring, both, top, inside);
                band.backwardInto(g);
                finish.fetch(begin, count);
                const auto combine = [&](const Pixels& at, Real blurred) {
                  return finish(at, loadPlane(base.rows, {0, 0, at.index - begin, 0}), blurred);
                };
                band.forwardOut(g, inside, FinishedRows<decltype(combine)>{combine, rows, top});
              });
}

}  // namespace detail

// The blur by `firstSigma`, and of its result by `secondSigma`, both wide. finish(pixels, first, second) gives what is
// written, and finish.fetch(first, count) fetches what it reads for a stretch of the plane; `fused` as for blurFused.
// Planes are distinct, `scratch` and `scratch2` of the same size.
template <Samples Kind, typename Finish>
void blurTwiceFused(const Queue& queue, const float* source, float* scratch, float* scratch2, float* target, int width,
                    int height, float firstSigma, float secondSigma, const Finish& finish, std::string_view fused)
{
  if (width <= 0 || height <= 0)
    return;
  const GaussianCascade f = gaussianCascade(firstSigma);
  const GaussianCascade g = gaussianCascade(secondSigma);
  const std::string name = "iir_guassian+u_d_l_r+iir_guassian+u_d_l_r";
  {
    const LaunchWatch watch(queue, name, width, height);
    detail::blurColumnsTwice<Kind>(f, g, {source, width, height}, PlaneRows(scratch, width, height),
                                   PlaneRows(scratch2, width, height));
  }
  const std::string last = name + std::string(fused);
  const LaunchWatch watch(queue, last, height, width);
  detail::blurRowsTwice(f, g, {scratch, width, height}, {scratch2, width, height}, PlaneRows(target, width, height),
                        finish);
}

}  // namespace morvellan::MORVELLAN_TARGET

#endif
