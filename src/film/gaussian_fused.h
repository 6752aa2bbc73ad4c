// The Gaussian of a plane on the CPU: a cascade of a forward and a backward filter on each axis, with the transposes
// done in registers inside the filters. Narrow blurs go tile by tile, columns and rows in one pass; wide ones down
// strips of columns and then along bands of rows.
#pragma once

#include "film/gaussian.h"

#ifndef MORVELLAN_TARGET_IS_CUDA

#include <algorithm>
#include <array>
#include <bit>
#include <string>

#include <tbb/parallel_for.h>
#include <tbb/task_arena.h>

#include "device/memory.h"
#include "film/transpose.h"

namespace morvellan::MORVELLAN_TARGET
{

// The response of a GaussianFilter as one filter run forward and then, over its answers, backward, so that each run
// reads and writes one plane. Its double pole is two poles one after the other,
// u[i] = x[i] + beta x[i-1] + pole u[i-1] and y[i] = u[i] + pole y[i-1],
// which keeps the rounding of wide blurs an order of magnitude below that of y's own second-order recursion.
struct GaussianCascade
{
  float beta, pole;
  float steadyMiddle, steady;  // u and y of a constant 1
  float gain;                  // of the input, for a gain of 1 over both runs of both axes
  float endMiddle[2], end[2];  // of the backward run where the line ends: see CascadeState::startAfter
};

GaussianCascade gaussianCascade(float sigma);

// What a step needs, in registers.
struct CascadeFeedback
{
  Real beta, pole;

  MORVELLAN_INLINE explicit CascadeFeedback(const GaussianCascade& f) : beta(Real(f.beta)), pole(Real(f.pole)) {}
};

// One of the runs.
struct CascadeState
{
  Real in, middle, out;  // the sample before, and what it left in u and y

  // In the steady state of a line that was `edge` up to here.
  MORVELLAN_INLINE void start(const GaussianCascade& f, Real edge)
  {
    in = edge;
    middle = Real(f.steadyMiddle) * edge;
    out = Real(f.steady) * edge;
  }

  // Backward over the answers of `forward`, whose last sample goes on for ever: its further answers fall from where
  // they are to the steady state, and the filter's `end` says what they leave behind.
  MORVELLAN_INLINE void startAfter(const GaussianCascade& f, const CascadeState& forward)
  {
    CascadeState settled;
    settled.start(f, forward.in);
    const Real middleOff = forward.middle - settled.middle;
    const Real outOff = forward.out - settled.out;
    start(f, settled.out);
    in = fma(Real(f.pole), middleOff + outOff, in);
    middle = middle + fma(Real(f.endMiddle[0]), middleOff, Real(f.endMiddle[1]) * outOff);
    out = out + fma(Real(f.end[0]), middleOff, Real(f.end[1]) * outOff);
  }

  MORVELLAN_INLINE Real step(const CascadeFeedback& f, Real x)
  {
    middle = fma(f.pole, middle, fma(f.beta, in, x));
    out = fma(f.pole, out, middle);
    in = x;
    return out;
  }
};

// Whether a plane may hold samples that are not finite, which the filter then reads as 0.
enum class Samples
{
  Any,
  Finite,
};

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

inline constexpr int stripVectors = 4;  // chains down a strip
inline constexpr int stripColumns = stripVectors * lanes;
inline constexpr int bandRows = 16;  // rows filtered side by side along their length
inline constexpr int bandVectors = bandRows / lanes;
inline constexpr int tileRows = 64;      // rows of a narrow blur's work item
inline constexpr int longestRunUp = 32;  // of a narrow blur, in rows and columns
inline constexpr int rowsAhead = 64;     // expected by a wide one

static_assert(longestRunUp <= stripColumns * 2 && tileRows % bandRows == 0);

struct Plane
{
  const float* data;
  int width, height;

  MORVELLAN_INLINE const float* row(int y) const { return data + static_cast<ptrdiff_t>(y) * width; }

  // A sample as the filter takes it.
  template <Samples Kind>
  MORVELLAN_INLINE Real read(int y, int x, float gain) const
  {
    const Real sample = load(row(y) + x);
    const Real scaled = sample * Real(gain);
    return Kind == Samples::Finite ? scaled : select(abs(sample) <= Real(3.40282347e38f), scaled, Real(0.0f));
  }
};

// Filters the columns [x, x + stripColumns) of `source` for the rows [first, last), with a run-up of `runUp` rows on
// either side where the plane has them. `tile` is working memory for them and the run-up below, stripColumns floats a
// row. Samples are expected `ahead` floats before they are read, 0 for not at all. done(row, vector, value) gets the
// answers, bottom to top.
template <Samples Kind, typename Done>
MORVELLAN_INLINE void filterStrip(const GaussianCascade& f, const Plane& source, int x, int first, int last, int runUp,
                                  ptrdiff_t ahead, float* tile, const Done& done)
{
  const auto sample = [&](int y, int v) { return source.read<Kind>(y, x + v * lanes, f.gain); };
  const auto expectAfter = [&](int y)
  {
    if (ahead != 0)
      expect(source.row(y) + x + ahead, stripColumns);
  };
  const auto at = [&](int y, int v) { return tile + (y - first) * stripColumns + v * lanes; };
  const CascadeFeedback feedback(f);
  const int top = std::max(0, first - runUp);
  const int bottom = std::min(source.height, last + runUp);
  CascadeState forward[stripVectors];
  MORVELLAN_UNROLL
  for (int v = 0; v < stripVectors; ++v)
    forward[v].start(f, sample(top, v));
  for (int y = top; y < first; ++y)
  {
    expectAfter(y);
    MORVELLAN_UNROLL
    for (int v = 0; v < stripVectors; ++v)
      forward[v].step(feedback, sample(y, v));
  }
  for (int y = first; y < bottom; ++y)
  {
    expectAfter(y);
    MORVELLAN_UNROLL
    for (int v = 0; v < stripVectors; ++v)
      store(at(y, v), forward[v].step(feedback, sample(y, v)));
  }
  CascadeState backward[stripVectors];
  MORVELLAN_UNROLL
  for (int v = 0; v < stripVectors; ++v)
    backward[v].startAfter(f, forward[v]);
  for (int y = bottom - 1; y >= last; --y)
  {
    MORVELLAN_UNROLL
    for (int v = 0; v < stripVectors; ++v)
      backward[v].step(feedback, load(at(y, v)));
  }
  for (int y = last - 1; y >= first; --y)
  {
    MORVELLAN_UNROLL
    for (int v = 0; v < stripVectors; ++v)
      done(y, v, backward[v].step(feedback, load(at(y, v))));
  }
}

// The columns [x, x + stripColumns) of the rows [first, last): where they stand, or, where they reach past the end of
// the plane, a copy with zeros beyond the right end, its row `zero` at `memory`. What follows a plane may be another
// that is being written; what follows a row is the next, whose samples do no harm.
struct Strip
{
  Plane plane;
  int x;

  MORVELLAN_INLINE Strip(const Plane& source, int x, int first, int last, int zero, float* memory) : plane(source), x(x)
  {
    if (source.row(last - 1) + x + stripColumns <= source.row(source.height))
      return;
    plane = {memory - static_cast<ptrdiff_t>(zero) * stripColumns, stripColumns, source.height};
    this->x = 0;
    const int inside = std::min(source.width - x, stripColumns);
    for (int y = first; y < last; ++y)
    {
      float* const to = memory + static_cast<ptrdiff_t>(y - zero) * stripColumns;
      std::copy_n(source.row(y) + x, inside, to);
      std::fill_n(to + inside, stripColumns - inside, 0.0f);
    }
  }
};

// Sixteen rows on their way through the row filter: the forward answers, transposed, in a ring of columns.
class Band
{
public:
  // `ring` columns, a power of two.
  static constexpr size_t floats(int ring) { return static_cast<size_t>(ring) * bandRows; }

  MORVELLAN_INLINE Band(const GaussianCascade& filter, float* memory, int ring, int width)
      : filter(filter), memory(memory), last(ring - 1), width(width)
  {
  }

  // Takes the columns [x, x + stripColumns) of the band, the first of its rows at `rows` and `rowStep` floats from row
  // to row; `inside` of its rows exist. Strips come left to right.
  MORVELLAN_INLINE void forward(const float* rows, ptrdiff_t rowStep, int inside, int x)
  {
    const CascadeFeedback feedback(filter);
    CascadeState state[bandVectors];
    std::copy_n(states, bandVectors, state);
    const int end = std::min(x + stripColumns, width);
    for (int from = x; from < end; from += lanes)
    {
      Real square[bandVectors][lanes];
      MORVELLAN_UNROLL
      for (int v = 0; v < bandVectors; ++v)
      {
        MORVELLAN_UNROLL
        for (int i = 0; i < lanes; ++i)
          square[v][i] = load(rows + std::min(v * lanes + i, inside - 1) * rowStep + (from - x));
        transposeLanes(square[v]);
      }
      if (from == 0)
      {
        MORVELLAN_UNROLL
        for (int v = 0; v < bandVectors; ++v)
          state[v].start(filter, square[v][0]);
      }
      float* to = columnAt(from);
      const auto column = [&](int i)
      {
        MORVELLAN_UNROLL
        for (int v = 0; v < bandVectors; ++v)
          store(to + i * bandRows + v * lanes, state[v].step(feedback, square[v][i]));
      };
      if (from + lanes <= end)
      {
        MORVELLAN_UNROLL
        for (int i = 0; i < lanes; ++i)
          column(i);
      }
      else
      {
        for (int i = 0; i < end - from; ++i)
          column(i);
      }
    }
    std::copy_n(state, bandVectors, states);
  }

  // Filters the columns [first, end) backward and hands each group of `lanes` pixels to write(row, x, value), for the
  // rows that exist. `first` begins a strip, `end` is another's first or the width. The run starts at column `start`,
  // which the forward run has reached.
  template <typename Write>
  MORVELLAN_INLINE void backward(int first, int end, int start, int inside, const Write& write)
  {
    const CascadeFeedback feedback(filter);
    CascadeState back[bandVectors];
    MORVELLAN_UNROLL
    for (int v = 0; v < bandVectors; ++v)
      if (start == width)
        back[v].startAfter(filter, states[v]);
      else
        back[v].start(filter, load(columnAt(start - 1) + v * lanes));
    for (int i = start - 1; i >= end; --i)
    {
      MORVELLAN_UNROLL
      for (int v = 0; v < bandVectors; ++v)
        back[v].step(feedback, load(columnAt(i) + v * lanes));
    }
    for (int x = (end - 1) / lanes * lanes; x >= first; x -= lanes)
    {
      write.expect(x, inside);
      const float* from = columnAt(x);
      Real square[bandVectors][lanes];
      const auto column = [&](int i)
      {
        MORVELLAN_UNROLL
        for (int v = 0; v < bandVectors; ++v)
          square[v][i] = back[v].step(feedback, load(from + i * bandRows + v * lanes));
      };
      if (x + lanes <= end)
      {
        MORVELLAN_UNROLL
        for (int i = lanes - 1; i >= 0; --i)
          column(i);
      }
      else
      {
        for (int v = 0; v < bandVectors; ++v)
          std::fill_n(square[v], lanes, Real(0.0f));
        for (int i = end - x - 1; i >= 0; --i)
          column(i);
      }
      writeSquares(square, x, inside, write);
    }
  }

  // For a ring of all columns: filters backward, and over the answers, as they come, runs the first run of another
  // filter, whose answers stay in the ring.
  MORVELLAN_INLINE void backwardInto(const GaussianCascade& next)
  {
    const CascadeFeedback feedback(filter);
    const CascadeFeedback nextFeedback(next);
    CascadeState back[bandVectors];
    MORVELLAN_UNROLL
    for (int v = 0; v < bandVectors; ++v)
      back[v].startAfter(filter, states[v]);
    for (int i = width - 1; i >= 0; --i)
    {
      MORVELLAN_UNROLL
      for (int v = 0; v < bandVectors; ++v)
      {
        float* at = columnAt(i) + v * lanes;
        const Real sample = back[v].step(feedback, load(at));
        if (i == width - 1)
          states[v].start(next, sample);
        store(at, states[v].step(nextFeedback, sample));
      }
    }
  }

  // The second run of the filter that backwardInto began, left to right; `write` as for backward.
  template <typename Write>
  MORVELLAN_INLINE void forwardOut(const GaussianCascade& next, int inside, const Write& write)
  {
    const CascadeFeedback feedback(next);
    CascadeState out[bandVectors];
    MORVELLAN_UNROLL
    for (int v = 0; v < bandVectors; ++v)
      out[v].startAfter(next, states[v]);
    for (int x = 0; x < width; x += lanes)
    {
      write.expect(x, inside);
      const float* from = columnAt(x);
      Real square[bandVectors][lanes];
      const auto column = [&](int i)
      {
        MORVELLAN_UNROLL
        for (int v = 0; v < bandVectors; ++v)
          square[v][i] = out[v].step(feedback, load(from + i * bandRows + v * lanes));
      };
      if (x + lanes <= width)
      {
        MORVELLAN_UNROLL
        for (int i = 0; i < lanes; ++i)
          column(i);
      }
      else
      {
        for (int v = 0; v < bandVectors; ++v)
          std::fill_n(square[v], lanes, Real(0.0f));
        for (int i = 0; i < width - x; ++i)
          column(i);
      }
      writeSquares(square, x, inside, write);
    }
  }

private:
  template <typename Write>
  MORVELLAN_INLINE static void writeSquares(Real (&square)[bandVectors][lanes], int x, int inside, const Write& write)
  {
    MORVELLAN_UNROLL
    for (int v = 0; v < bandVectors; ++v)
    {
      transposeLanes(square[v]);
      if (inside == bandRows)
      {
        MORVELLAN_UNROLL
        for (int i = 0; i < lanes; ++i)
          write(v * lanes + i, x, square[v][i]);
      }
      else
      {
        for (int i = 0; i < std::min(lanes, inside - v * lanes); ++i)
          write(v * lanes + i, x, square[v][i]);
      }
    }
  }

  MORVELLAN_INLINE float* columnAt(int x) const { return memory + static_cast<ptrdiff_t>(x & last) * bandRows; }

  const GaussianCascade filter;
  float* memory;
  int last;  // of the ring's columns
  int width;
  CascadeState states[bandVectors];
};

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
