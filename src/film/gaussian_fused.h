// The Gaussian of a plane on the CPU, with the transposes done in registers inside the filters. Narrow blurs go band by
// band, columns and rows in one pass; wide ones down strips of columns and then along bands of rows.
#pragma once

#include "film/gaussian.h"

#ifndef MORVELLAN_TARGET_IS_CUDA

#include <algorithm>
#include <string>

#include <tbb/task_arena.h>

#include "device/memory.h"
#include "film/transpose.h"

namespace morvellan::MORVELLAN_TARGET
{

// Whether a plane may hold samples that are not finite, which the filter then reads as 0.
enum class Samples
{
  Any,
  Finite,
};

namespace detail
{

inline constexpr int bandRows = 32;     // rows filtered side by side: two chains of 16 lanes hide their latency
inline constexpr int stripVectors = 4;  // as many chains down a strip
inline constexpr int stripColumns = stripVectors * lanes;
inline constexpr int bandVectors = bandRows / lanes;
inline constexpr int chains = std::min(2, bandVectors);
inline constexpr int prefetchDistance = 4 * lanes;  // rows are too many for the machine's own prefetchers

struct Plane
{
  const float* data;
  int width, height;

  MORVELLAN_INLINE const float* row(int y) const { return data + static_cast<ptrdiff_t>(y) * width; }
};

// Filters the columns [x, x + stripColumns) of `source` over the rows [first, last), with a run-up of `runUp` rows on
// either side where the plane has them. emit(row, vector, value) gets the forward answers, top to bottom, and then
// revise(row, vector, value) the backward ones, bottom to top.
template <Samples Kind, typename Emit, typename Revise>
MORVELLAN_INLINE void filterStrip(const GaussianFilter& f, const Plane& source, int x, int first, int last, int runUp,
                                  const Emit& emit, const Revise& revise)
{
  const auto sample = [&](int y, int v)
  {
    const Real read = load(source.row(y) + x + v * lanes);
    return Kind == Samples::Any ? finiteOrZero(read) : read;
  };
  ForwardState forward[stripVectors];
  const int top = std::max(0, first - runUp);
  MORVELLAN_UNROLL
  for (int v = 0; v < stripVectors; ++v)
    forward[v].start(f, sample(top, v));
  for (int y = top; y < first; ++y)
  {
    MORVELLAN_UNROLL
    for (int v = 0; v < stripVectors; ++v)
      forward[v].step(f, sample(y, v));
  }
  for (int y = first; y < last; ++y)
  {
    MORVELLAN_UNROLL
    for (int v = 0; v < stripVectors; ++v)
      emit(y, v, forward[v].step(f, sample(y, v)));
  }

  BackwardState backward[stripVectors];
  const int bottom = std::min(source.height, last + runUp);
  MORVELLAN_UNROLL
  for (int v = 0; v < stripVectors; ++v)
    backward[v].start(f, sample(bottom - 1, v));
  for (int y = bottom - 1; y >= last; --y)
  {
    MORVELLAN_UNROLL
    for (int v = 0; v < stripVectors; ++v)
      backward[v].step(f, sample(y, v));
  }
  for (int y = last - 1; y >= first; --y)
  {
    MORVELLAN_UNROLL
    for (int v = 0; v < stripVectors; ++v)
      revise(y, v, backward[v].step(f, sample(y, v)));
  }
}

// The last write of a blur, row by row from `firstRow`: what finish makes of the blurred pixels, into `target`.
template <typename Finish>
struct FinishedRows
{
  const Finish& finish;
  float* target;
  int width;
  int firstRow = 0;

  FinishedRows below(int row) const { return {finish, target, width, row}; }

  MORVELLAN_INLINE Pixels pixelsAt(int row, int x) const
  {
    const int y = firstRow + row;
    return {x, y, static_cast<ptrdiff_t>(y) * width + x, std::min(lanes, width - x)};
  }

  MORVELLAN_INLINE void operator()(int row, int x, Real blurred) const
  {
    const Pixels at = pixelsAt(row, x);
    storePlane(target, at, finish(at, blurred));
  }

  MORVELLAN_INLINE void expect(int row, int x) const
  {
    const Pixels at = pixelsAt(row, x);
    __builtin_prefetch(target + at.index, 1);
    if constexpr (requires { finish.expect(at); })
      finish.expect(at);
  }
};

// A band of rows on its way through the row filter: samples and forward answers, transposed, `bandRows` values a
// column.
class Band
{
public:
  static constexpr size_t floats(int width)
  {
    return 2 * static_cast<size_t>((width + stripColumns - 1) / stripColumns * stripColumns) * bandRows;
  }

  MORVELLAN_INLINE Band(const GaussianFilter& filter, float* memory, int width)
      : filter(filter), samples(memory), answers(memory + floats(width) / 2), width(width)
  {
  }

  // Takes the columns [x, x + stripColumns) of the band, the first of its rows at `rows` and `rowStep` floats from row
  // to row; `inside` of its rows exist. Strips come left to right.
  MORVELLAN_INLINE void forward(const float* rows, ptrdiff_t rowStep, int inside, int x)
  {
    for (int v = 0; v < bandVectors; ++v)
      for (int c = 0; c < stripColumns; c += lanes)
      {
        Real square[lanes];
        MORVELLAN_UNROLL
        for (int i = 0; i < lanes; ++i)
          square[i] = load(rows + std::min(v * lanes + i, inside - 1) * rowStep + c);
        transposeLanes(square);
        MORVELLAN_UNROLL
        for (int i = 0; i < lanes; ++i)
          store(column(samples, x + c + i) + v * lanes, square[i]);
      }
    const int end = std::min(x + stripColumns, width);
    for (int v = 0; v < bandVectors; v += chains)
    {
      if (x == 0)
      {
        MORVELLAN_UNROLL
        for (int k = 0; k < chains; ++k)
          states[v + k].start(filter, load(column(samples, 0) + (v + k) * lanes));
      }
      ForwardState state[chains];
      MORVELLAN_UNROLL
      for (int k = 0; k < chains; ++k)
        state[k] = states[v + k];
      for (int i = x; i < end; ++i)
      {
        MORVELLAN_UNROLL
        for (int k = 0; k < chains; ++k)
        {
          const ptrdiff_t at = (v + k) * lanes;
          store(column(answers, i) + at, state[k].step(filter, load(column(samples, i) + at)));
        }
      }
      MORVELLAN_UNROLL
      for (int k = 0; k < chains; ++k)
        states[v + k] = state[k];
    }
  }

  // Filters backward and hands each group of `lanes` pixels to write(row, x, value), for the rows that exist;
  // write.expect(row, x) comes some time before.
  template <typename Write>
  MORVELLAN_INLINE void backward(int inside, const Write& write)
  {
    for (int v = 0; v < bandVectors; v += chains)
    {
      BackwardState state[chains];
      MORVELLAN_UNROLL
      for (int k = 0; k < chains; ++k)
        state[k].start(filter, load(column(samples, width - 1) + (v + k) * lanes));
      for (int x = (width - 1) / lanes * lanes; x >= 0; x -= lanes)
      {
        for (int row = v * lanes; row < std::min(inside, (v + chains) * lanes); ++row)
          write.expect(row, x - prefetchDistance);
        for (int i = std::min(x + lanes, width) - 1; i >= x; --i)
        {
          MORVELLAN_UNROLL
          for (int k = 0; k < chains; ++k)
          {
            float* answer = column(answers, i) + (v + k) * lanes;
            store(answer, load(answer) + state[k].step(filter, load(column(samples, i) + (v + k) * lanes)));
          }
        }
        MORVELLAN_UNROLL
        for (int k = 0; k < chains; ++k)
          writeSquare((v + k) * lanes, x, inside, write);
      }
    }
  }

private:
  MORVELLAN_INLINE static float* column(float* plane, int x) { return plane + static_cast<ptrdiff_t>(x) * bandRows; }

  template <typename Write>
  MORVELLAN_INLINE void writeSquare(int row, int x, int inside, const Write& write)
  {
    Real square[lanes];
    MORVELLAN_UNROLL
    for (int i = 0; i < lanes; ++i)
      square[i] = load(column(answers, x + i) + row);
    transposeLanes(square);
    const int rows = std::min(lanes, inside - row);
    for (int i = 0; i < rows; ++i)
      write(row + i, x, square[i]);
  }

  const GaussianFilter filter;
  float* samples;
  float* answers;
  int width;
  ForwardState states[bandVectors];
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
                    });
}

// Columns and rows of one band at a time, straight from the source: for run-ups that are short beside a band.
template <Samples Kind, typename Write>
void blurBands(const GaussianFilter& f, const Plane& source, int runUp, const Write& write)
{
  const int width = source.width;
  const int height = source.height;
  withScratch((height + bandRows - 1) / bandRows, Band::floats(width),
              [&](int item, float* memory)
              {
                const int first = item * bandRows;
                const int inside = std::min(bandRows, height - first);
                Band band(f, memory, width);
                alignas(64) float tile[bandRows * stripColumns];
                for (int x = 0; x < width; x += stripColumns)
                {
                  const auto at = [&](int y, int v) { return tile + (y - first) * stripColumns + v * lanes; };
                  filterStrip<Kind>(
                      f, source, x, first, first + inside, runUp, [&](int y, int v, Real r) { store(at(y, v), r); },
                      [&](int y, int v, Real r) { store(at(y, v), load(at(y, v)) + r); });
                  band.forward(tile, stripColumns, inside, x);
                }
                band.backward(inside, write.below(first));
              });
}

template <typename Write>
void blurRows(const GaussianFilter& f, const Plane& source, const Write& write)
{
  withScratch((source.height + bandRows - 1) / bandRows, Band::floats(source.width),
              [&](int item, float* memory)
              {
                const int first = item * bandRows;
                const int inside = std::min(bandRows, source.height - first);
                Band band(f, memory, source.width);
                for (int x = 0; x < source.width; x += stripColumns)
                  band.forward(source.row(first) + x, source.width, inside, x);
                band.backward(inside, write.below(first));
              });
}

template <Samples Kind>
void blurColumns(const GaussianFilter& f, const Plane& source, float* target)
{
  const int width = source.width;
  tbb::parallel_for(
      0, (width + stripColumns - 1) / stripColumns,
      [&](int strip)
      {
        const int x = strip * stripColumns;
        const auto at = [&](int y, int v)
        {
          const int column = x + v * lanes;
          return Pixels{0, 0, static_cast<ptrdiff_t>(y) * width + column, std::clamp(width - column, 0, lanes)};
        };
        filterStrip<Kind>(
            f, source, x, 0, source.height, 0, [&](int y, int v, Real r) { storePlane(target, at(y, v), r); },
            [&](int y, int v, Real r) { storePlane(target, at(y, v), loadPlane(target, at(y, v)) + r); });
      });
}

}  // namespace detail

// One Gaussian of a plane. finish(pixels, blurred) gives what is written for a group of pixels of one row, of which
// `pixels.count` are inside; it may read and write other planes at those pixels, and have an expect(pixels) that
// prefetches them (the pixels may lie outside the plane). `fused` are the names of the kernels
// that `finish` stands for, each with a "+" before it.
template <Samples Kind = Samples::Any, typename Finish>
void blurFused(const Queue& queue, const float* source, float* scratch, float* target, int width, int height,
               float sigma, const Finish& finish, std::string_view fused = {})
{
  const GaussianFilter f = gaussianFilter(sigma);
  const detail::FinishedRows<Finish> write{finish, target, width};
  const int runUp = gaussianRunUp(sigma);
  if (width <= 0 || height <= 0)
    return;
  if (runUp <= detail::bandRows)
  {
    const std::string name = "iir_guassian+u_d_l_r+iir_guassian+u_d_l_r" + std::string(fused);
    const LaunchWatch watch(queue, name, width, height);
    detail::blurBands<Kind>(f, {source, width, height}, runUp, write);
    return;
  }
  {
    const LaunchWatch watch(queue, "iir_guassian+u_d_l_r", width, height);
    detail::blurColumns<Kind>(f, {source, width, height}, scratch);
  }
  const std::string name = "iir_guassian+u_d_l_r" + std::string(fused);
  const LaunchWatch watch(queue, name, height, width);
  detail::blurRows(f, {scratch, width, height}, write);
}

}  // namespace morvellan::MORVELLAN_TARGET

#endif
