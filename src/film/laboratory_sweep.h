// A pixel's whole development in registers, given the course of the tank: what the laboratory's fast way runs over the
// frame. It adds up the sums that the tank's course must agree with.
#pragma once

#include <array>
#include <cstddef>

#include "device/launch.h"
#include "film/laboratory_decode.h"
#include "film/laboratory_pixel.h"

namespace morvellan::MORVELLAN_TARGET
{

namespace detail
{

#ifdef MORVELLAN_TARGET_IS_CUDA
inline constexpr int sweepItem =
    16;  // pixels of a work item, `items` apart so that neighbouring threads read side by side
inline constexpr int sweepGroups = 1;
inline constexpr int sweepChunk = 1;
#else
inline constexpr int sweepItem = 2304;                   // pixels of a work item, one after the other
inline constexpr int sweepGroups = lanes == 16 ? 3 : 1;  // side by side, where there are registers for it
inline constexpr int sweepChunk = 96;                    // pixels that are decoded together
#endif

// The cycles of `Groups` groups of pixels up to the last of `exchanges`, and after the last of all the density. sums[i]
// grows by the developer after cycle i, before its exchange, of the pixels that are inside.
template <typename Pixel, int Groups, typename Exposures>
MORVELLAN_INLINE void developPixels(const LabSchedule& s, int exchanges, const Exposures& exposures,
                                    Rgb (&density)[Groups], Pixels at, Real (&sums)[labExchanges])
{
  Pixel pixels[Groups];
  MORVELLAN_UNROLL
  for (int k = 0; k < Groups; ++k)
    pixels[k].begin(s, exposures(Pixels{0, 0, at.index + k * lanes, at.count}));
  const auto exchange = [&](int cycle, const auto& develop)
  {
    const Real retain = Real(s.retain[cycle]);
    const Real add = Real(s.add[cycle]);
    Real sum = sums[cycle];
    MORVELLAN_UNROLL
    for (int k = 0; k < Groups; ++k)
    {
      const Real left = develop(pixels[k]);
      pixels[k].developer = fma(left, retain, add);
      sum = sum + (at.count < lanes ? select(firstLanes(at.count), left, Real(0.0f)) : left);
    }
    sums[cycle] = sum;
  };
  exchange(0, [&](Pixel& p) { return p.firstCycle(s); });
  exchange(1, [&](Pixel& p) { return p.secondCycle(s); });
  for (int cycle = 2; cycle < exchanges; ++cycle)
    exchange(cycle, [&](Pixel& p) { return p.cycle(s); });
  MORVELLAN_UNROLL
  for (int k = 0; k < Groups; ++k)
    density[k] = pixels[k].developed(s);
}

}  // namespace detail

// How many work items a sweep over `count` pixels has.
inline int sweepItems(ptrdiff_t count)
{
  return static_cast<int>((count + detail::sweepItem - 1) / detail::sweepItem);
}

// Sweeps over `count` pixels, in a launch over items(sweepItems(count)). A sweep with a source decodes it to exposure
// and alpha first; another reads exposure. With density the cycles are run to the end; without, only the sums of the
// first `exchanges` are wanted. partials[i * items + item] is the item's share of the sum after cycle i, which is the
// same on any number of threads. Pixel is one of laboratory_pixel.h.
template <typename Pixel>
struct laboratory_sweep
{
  const float* source;
  float* exposure;
  float* alpha;
  float* density;
  ptrdiff_t count;
  int channels;
  FilmEntry entry;
  LabSchedule schedule;
  int exchanges;
  double* partials;
  int items;

  MORVELLAN_KERNEL void operator()(int item) const
  {
    double totals[labExchanges][lanes] = {};
    // A run is short enough for its sums to be added in float.
    constexpr int run = lanes == 1 ? detail::sweepItem : detail::sweepChunk * (lanes / 2);
    static_assert(detail::sweepItem % run == 0 && run % detail::sweepChunk == 0);
    for (int from = 0; from < detail::sweepItem; from += run)
    {
      Real sums[labExchanges];
      for (Real& sum : sums)
        sum = Real(0.0f);
      for (int i = from; i < from + run; i += detail::sweepChunk)
        developChunk(index(item, i), sums);
      addTo(totals, sums);
    }
    for (int cycle = 0; cycle < labExchanges; ++cycle)
    {
      double total = 0.0;
      for (int k = 0; k < lanes; ++k)
        total += totals[cycle][k];
      partials[static_cast<ptrdiff_t>(cycle) * items + item] = total;
    }
  }

private:
  MORVELLAN_INLINE ptrdiff_t index(int item, int i) const
  {
    return lanes == 1 ? item + static_cast<ptrdiff_t>(i) * items : static_cast<ptrdiff_t>(item) * detail::sweepItem + i;
  }

#ifdef MORVELLAN_TARGET_IS_CUDA

  struct Exposures
  {
    Rgb e;
    MORVELLAN_INLINE Rgb operator()(Pixels) const { return e; }
  };

  MORVELLAN_INLINE void developChunk(ptrdiff_t first, Real (&sums)[labExchanges]) const
  {
    if (first >= count)
      return;
    const Pixels at{0, 0, first, 1};
    if (source && channels == 4)
      storePlane(alpha, at, loadRgba(source, at).a);
    develop<1>(at, sums, Exposures{source ? exposed(at, loadColour(source, at, channels)) : loadRgb(exposure, at)});
  }

  MORVELLAN_INLINE Rgb exposed(Pixels at, Rgb p) const
  {
    const Rgb e = latentImage(entry, initialSilver(), p);
    storeRgb(exposure, at, e);
    return e;
  }

#else

  // The exposures of a chunk, from where they were just decoded, or from their plane.
  struct DecodedExposures
  {
    const Block& block;
    ptrdiff_t first;
    MORVELLAN_INLINE Rgb operator()(Pixels at) const { return loadBlock(block, static_cast<int>(at.index - first)); }
  };

  struct StoredExposures
  {
    const float* exposure;
    MORVELLAN_INLINE Rgb operator()(Pixels at) const { return loadRgb(exposure, at); }
  };

  MORVELLAN_INLINE void developChunk(ptrdiff_t first, Real (&sums)[labExchanges]) const
  {
    const ptrdiff_t left = count - first;
    const int inside = left < detail::sweepChunk ? static_cast<int>(left) : detail::sweepChunk;
    if (inside <= 0)
      return;
    if (!source)
    {
      developGroups(first, inside, sums, StoredExposures{exposure});
      return;
    }
    Block block;
    ExposureDecode{.source = source, .exposure = exposure, .alpha = alpha, .channels = channels, .entry = entry}(
        initialSilver(), first, inside, block);
    developGroups(first, inside, sums, DecodedExposures{block, first});
  }

  template <typename Exposures>
  MORVELLAN_INLINE void developGroups(ptrdiff_t first, int inside, Real (&sums)[labExchanges],
                                      const Exposures& exposures) const
  {
    constexpr int step = lanes * detail::sweepGroups;
    int i = 0;
    for (; i + step <= inside; i += step)
    {
      // The next chunk's memory comes while this one is developed; the hardware looks ahead only while it is used.
      if (source)
        for (int line = 0; line < step * 4; line += 16)
          __builtin_prefetch(source + (first + detail::sweepChunk + i) * 4 + line);
      float* written = density ? density : exposure;
      for (int line = 0; line < step * 3; line += 16)
        __builtin_prefetch(written + (first + detail::sweepChunk + i) * 3 + line, 1);
      develop<detail::sweepGroups>(Pixels{0, 0, first + i}, sums, exposures);
    }
    for (; i < inside; i += lanes)
      develop<1>(Pixels{0, 0, first + i, inside - i < lanes ? inside - i : lanes}, sums, exposures);
  }

#endif

  template <int Groups, typename Exposures>
  MORVELLAN_INLINE void develop(Pixels at, Real (&sums)[labExchanges], const Exposures& exposures) const
  {
    Rgb d[Groups];
    detail::developPixels<Pixel, Groups>(schedule, density ? labExchanges : exchanges, exposures, d, at, sums);
    if (!density)
      return;
    MORVELLAN_UNROLL
    for (int k = 0; k < Groups; ++k)
      storeRgb(density, Pixels{0, 0, at.index + k * lanes, at.count}, d[k]);
  }

  MORVELLAN_INLINE Rgb initialSilver() const
  {
    return {Real(schedule.silver[0]), Real(schedule.silver[1]), Real(schedule.silver[2])};
  }

  MORVELLAN_INLINE static void addTo(double (&totals)[labExchanges][lanes], const Real (&sums)[labExchanges])
  {
    for (int cycle = 0; cycle < labExchanges; ++cycle)
    {
      float values[lanes];
      store(values, sums[cycle]);
      for (int k = 0; k < lanes; ++k)
        totals[cycle][k] += static_cast<double>(values[k]);
    }
  }
};

// One line of `line` pixels out of each `every` of a frame, at a place that a hash chooses, as exposures one
// after the other; in a launch over items(ceil(lines / batch)), where `lines` are taken in all. They come from all over
// the frame in turn, so that the first of them are a sample, too: `stride` and `lines` have no common divisor.
struct laboratory_sample
{
  static constexpr int line = 4;    // RGBA pixels of a cache line
  static constexpr int batch = 64;  // lines of a work item, whose cache misses overlap

  const float* source;
  float* exposure;
  int every, lines, stride, channels;
  FilmEntry entry;
  float silver[3];

  MORVELLAN_KERNEL void operator()(int item) const
  {
    const int first = item * batch;
    const int taken = lines - first < batch ? lines - first : batch;
    float pixels[(batch * line + lanes) * 4];
    const int floats = line * channels;
    const float* chosen[batch];
    for (int i = 0; i < taken; ++i)
    {
      const auto stretch = static_cast<ptrdiff_t>(static_cast<int64_t>(first + i) * stride % lines);
      chosen[i] = source + (stretch * every + static_cast<ptrdiff_t>(hash(first + i) % every)) * floats;
      expect(chosen[i], floats);
    }
    for (int i = 0; i < taken; ++i)
      for (int k = 0; k < floats; ++k)
        pixels[i * floats + k] = chosen[i][k];
    const Rgb store = {Real(silver[0]), Real(silver[1]), Real(silver[2])};
    for (int i = 0; i < taken * line; i += lanes)
    {
      const int inside = taken * line - i < lanes ? taken * line - i : lanes;
      storeRgb(exposure + static_cast<ptrdiff_t>(first) * line * 3, Pixels{0, 0, i, inside},
               latentImage(entry, store, loadColour(pixels, Pixels{0, 0, i, inside}, channels)));
    }
  }

  // Wang's integer hash.
  MORVELLAN_INLINE static uint32_t hash(int item)
  {
    auto x = static_cast<uint32_t>(item);
    x = (x ^ 61u) ^ (x >> 16);
    x *= 9u;
    x ^= x >> 4;
    x *= 0x27d4eb2du;
    return x ^ (x >> 15);
  }
};

}  // namespace morvellan::MORVELLAN_TARGET
