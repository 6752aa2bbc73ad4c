// The Gaussian of a plane on the CPU. Narrow blurs go tile by tile, columns and rows in one pass; wide ones down strips
// of columns and then along bands of rows.
#pragma once

#include "film/gaussian_band.h"

#ifndef MORVELLAN_TARGET_IS_CUDA

#include <algorithm>
#include <bit>
#include <string>

#include <tbb/parallel_for.h>
#include <tbb/task_arena.h>

#include "device/memory.h"

namespace morvellan::MORVELLAN_TARGET
{

// Brings `count` floats into the second-level cache: read one after the other, which a machine's prefetchers follow at
// full speed, as they don't many rows that are read side by side.
MORVELLAN_INLINE void fetch(const float* from, ptrdiff_t count)
{
  Real sum = Real(0.0f);
  for (ptrdiff_t i = 0; i + lanes <= count; i += 16)
    sum = sum + load(from + i);
  asm volatile("" : : "x"(sum.v.raw));
}

namespace detail
{

inline constexpr int tileRows = 64;      // rows of a narrow blur's work item
inline constexpr int longestRunUp = 32;  // of a narrow blur, in rows and columns
inline constexpr int rowsAhead = 64;     // expected by a wide one

static_assert(longestRunUp <= stripColumns * 2 && tileRows % bandRows == 0);

// The last write of a blur, for the rows from `firstRow`: what `finish` makes of the blurred pixels.
template <typename Finish>
struct FinishedRows
{
  const Finish& finish;
  const PlaneRows& rows;
  int firstRow;

  MORVELLAN_INLINE void operator()(int row, int x, Real blurred) const
  {
    const Pixels at = rows.at(x, firstRow + row);
    rows.write(at, finish(at, blurred));
  }

  // The pixels of the next strip.
  MORVELLAN_INLINE void expect(int x, int inside) const
  {
    for (int row = 0; row < inside; ++row)
    {
      rows.expect(rows.at(x + stripColumns, firstRow + row));
    }
  }
};

// Runs body(item, memory) for each item with `floats` of scratch memory of its thread.
template <typename Body>
void withScratch(int count, size_t floats, const Body& body)
{
  const size_t whole = (floats + 15) / 16 * 16;
  const int slots = tbb::this_task_arena::max_concurrency();
  const Buffer<float> memory(whole * static_cast<size_t>(slots));
  tbb::parallel_for(0, count,
                    [&](int item)
                    {
                      const int slot = tbb::this_task_arena::current_thread_index();
                      body(item, memory.data() + whole * static_cast<size_t>(slot));
                      finishStreaming();
                    });
}

// Columns and rows of one tile at a time, straight from the source: for run-ups of at most longestRunUp.
template <Samples Kind, typename Finish>
void blurTiles(const GaussianCascade& f, const Plane& source, int runUp, const PlaneRows& rows, const Finish& finish)
{
  const int width = source.width;
  const int height = source.height;
  constexpr int ring = 2 * stripColumns;
  constexpr int tileBands = tileRows / bandRows;
  constexpr size_t tileFloats = static_cast<size_t>(tileRows + 2 * longestRunUp) * stripColumns;
  withScratch((height + tileRows - 1) / tileRows, tileFloats + tileBands * Band::floats(ring),
              [&](int item, float* memory)
              {
                const int first = item * tileRows;
                const int last = std::min(first + tileRows, height);
                fetch(source.row(first), static_cast<ptrdiff_t>(std::min(last + runUp, height) - first) * width);
                const auto bandAt = [&](int k)
                { return Band(f, memory + tileFloats + Band::floats(ring) * static_cast<size_t>(k), ring, width); };
                Band bands[tileBands] = {bandAt(0), bandAt(1), bandAt(2), bandAt(3)};
                for (int x = 0; x < width; x += stripColumns)
                {
                  float* const tile = memory + longestRunUp * stripColumns;
                  // In place if it is a copy: a sample is read before its answer takes its memory.
                  const Strip strip(source, x, std::max(0, first - runUp), std::min(height, last + runUp), first, tile);
                  filterStrip<Kind>(f, strip.plane, strip.x, first, last, runUp, 0, tile,
                                    [&](int y, int v, Real r)
                                    { store(tile + (y - first) * stripColumns + v * lanes, r); });
                  const int taken = std::min(x + stripColumns, width);
                  for (int k = 0; first + k * bandRows < last; ++k)
                  {
                    const int top = first + k * bandRows;
                    const int inside = std::min(bandRows, last - top);
                    const FinishedRows<Finish> write{finish, rows, top};
                    bands[k].forward(tile + k * bandRows * stripColumns, stripColumns, inside, x);
                    if (x > 0)
                      bands[k].backward(x - stripColumns, x, std::min(x + runUp, taken), inside, write);
                    if (taken == width)
                      bands[k].backward(x, width, width, inside, write);
                  }
                }
              });
}

template <Samples Kind>
void blurColumns(const GaussianCascade& f, const Plane& source, const PlaneRows& rows)
{
  withScratch((source.width + stripColumns - 1) / stripColumns, static_cast<size_t>(source.height) * stripColumns,
              [&](int strip, float* memory)
              {
                const int x = strip * stripColumns;
                const Strip from(source, x, 0, source.height, 0, memory);
                filterStrip<Kind>(f, from.plane, from.x, 0, source.height, 0, ptrdiff_t{rowsAhead} * source.width,
                                  memory, [&](int y, int v, Real r) { rows.write(rows.at(x + v * lanes, y), r); });
              });
}

// The ring of a band that keeps whole rows.
inline int ringOf(int width)
{
  return static_cast<int>(std::bit_ceil(static_cast<unsigned>(std::max(width, stripColumns))));
}

// The forward run of `inside` rows of a plane from row `first`.
MORVELLAN_INLINE void forwardRows(Band& band, const Plane& source, int first, int inside)
{
  float copy[bandRows * stripColumns];
  for (int x = 0; x < source.width; x += stripColumns)
  {
    const Strip strip(source, x, first, first + inside, first, copy);
    band.forward(strip.plane.row(first) + strip.x, strip.plane.width, inside, x);
  }
}

template <typename Finish>
void blurRows(const GaussianCascade& f, const Plane& source, const PlaneRows& rows, const Finish& finish)
{
  const int ring = ringOf(source.width);
  withScratch((source.height + bandRows - 1) / bandRows, Band::floats(ring),
              [&](int item, float* memory)
              {
                const int first = item * bandRows;
                const int inside = std::min(bandRows, source.height - first);
                Band band(f, memory, ring, source.width);
                forwardRows(band, source, first, inside);
                if constexpr (requires { finish.fetch(0, 0); })
                  finish.fetch(static_cast<ptrdiff_t>(first) * source.width,
                               static_cast<ptrdiff_t>(inside) * source.width);
                band.backward(0, source.width, source.width, inside, FinishedRows<Finish>{finish, rows, first});
              });
}

}  // namespace detail

// Whether a blur needs its scratch plane.
inline bool blurIsWide(float sigma)
{
  return gaussianRunUp(sigma) > detail::longestRunUp;
}

// One Gaussian of a plane. finish(pixels, blurred) gives what is written for a group of pixels of one row, of which
// `pixels.count` are inside; it may read and write other planes at those pixels, and have a
// fetch(first, count) that fetches them for a stretch of the plane. `fused` are the names of the kernels that `finish`
// stands for, each with a "+" before it.
template <Samples Kind = Samples::Any, typename Finish>
void blurFused(const Queue& queue, const float* source, float* scratch, float* target, int width, int height,
               float sigma, const Finish& finish, std::string_view fused = {})
{
  if (width <= 0 || height <= 0)
    return;
  const GaussianCascade f = gaussianCascade(sigma);
  const PlaneRows rows(target, width, height);
  if (!blurIsWide(sigma))
  {
    const std::string name = "iir_guassian+u_d_l_r+iir_guassian+u_d_l_r" + std::string(fused);
    const LaunchWatch watch(queue, name, width, height);
    detail::blurTiles<Kind>(f, {source, width, height}, gaussianRunUp(sigma), rows, finish);
    return;
  }
  {
    const LaunchWatch watch(queue, "iir_guassian+u_d_l_r", width, height);
    detail::blurColumns<Kind>(f, {source, width, height}, PlaneRows(scratch, width, height));
  }
  const std::string name = "iir_guassian+u_d_l_r" + std::string(fused);
  const LaunchWatch watch(queue, name, height, width);
  detail::blurRows(f, {scratch, width, height}, rows, finish);
}

}  // namespace morvellan::MORVELLAN_TARGET

#endif
