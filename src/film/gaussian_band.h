// The two axes of the cascade: columns in strips, and rows in bands of sixteen that are transposed in registers on
// their way into the filter and out of it.
#pragma once

#include "film/gaussian_cascade.h"

#ifndef MORVELLAN_TARGET_IS_CUDA

#include <algorithm>

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

inline constexpr int stripVectors = 4;  // chains down a strip
inline constexpr int stripColumns = stripVectors * lanes;
inline constexpr int bandRows = 16;  // rows filtered side by side along their length
inline constexpr int bandVectors = bandRows / lanes;

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
      answer<Run::Backward>(back, feedback, x, end, inside, write);
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
      answer<Run::Forward>(out, feedback, x, width, inside, write);
  }

private:
  enum class Run
  {
    Forward,
    Backward,
  };

  // The last run over a group of columns from x, as far as `end`: its answers go to `write`.
  template <Run Direction, typename Write>
  MORVELLAN_INLINE void answer(CascadeState (&state)[bandVectors], const CascadeFeedback& feedback, int x, int end,
                               int inside, const Write& write) const
  {
    write.expect(x, inside);
    const float* from = columnAt(x);
    Real square[bandVectors][lanes];
    const auto column = [&](int i)
    {
      MORVELLAN_UNROLL
      for (int v = 0; v < bandVectors; ++v)
        square[v][i] = state[v].step(feedback, load(from + i * bandRows + v * lanes));
    };
    const int columns = end - x;
    if (columns >= lanes)
    {
      MORVELLAN_UNROLL
      for (int i = 0; i < lanes; ++i)
        column(Direction == Run::Forward ? i : lanes - 1 - i);
    }
    else
    {
      for (int v = 0; v < bandVectors; ++v)
        std::fill_n(square[v], lanes, Real(0.0f));
      for (int i = 0; i < columns; ++i)
        column(Direction == Run::Forward ? i : columns - 1 - i);
    }
    writeSquares(square, x, inside, write);
  }

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

}  // namespace detail

}  // namespace morvellan::MORVELLAN_TARGET

#endif
