// The kernels of cycles with diffusion: the cycles between two diffusions, and the diffusion's own arithmetic around
// its blurs.
#pragma once

#include <array>
#include <string_view>

#include "film/gaussian_pair.h"
#include "film/laboratory_decode.h"
#include "film/laboratory_pixel.h"

namespace morvellan::MORVELLAN_TARGET
{

// Pixels that a kernel develops side by side: a cycle is a chain of arithmetic that waits for its own results.
#ifdef MORVELLAN_TARGET_IS_CUDA
inline constexpr int developGroups = 1;
#else
inline constexpr int developGroups = lanes == 16 ? 2 : 1;  // where there are registers for it
#endif

// The developer as a picture: the log of the film less its code of black, which a blur would only round.
MORVELLAN_INLINE Real developerLog(Real developer)
{
  const Real v = min(developer * Real(0.00113631552f), Real(logC4Largest));
  return log2Positive(fma(v, Real(2231.82642f / 64.0f), Real(1.0f))) * Real(0.0647954196f);
}

MORVELLAN_INLINE Real developerOfLog(Real log)
{
  const Real linear =
      (fast_exp2(log * Real(14.0f * 1.10237074f)) - Real(1.0f)) * Real(64.0f * 0.00044806354f * labFullScale);
  return select(log <= Real(1.0f - 0.092864126f), linear, Real(labFullScale));
}

// body(pixels) over the `count` pixels from `first`, for as many groups at once as there are, and then group by group.
template <typename Body>
MORVELLAN_INLINE void inGroups(ptrdiff_t first, int count, const Body& body)
{
  int i = 0;
  for (; i + developGroups * lanes <= count; i += developGroups * lanes)
  {
    Pixels at[developGroups];
    for (int k = 0; k < developGroups; ++k)
      at[k] = {0, 0, first + i + k * lanes, lanes};
    body(at);
  }
  for (; i < count; i += lanes)
  {
    const Pixels at[1] = {{0, 0, first + i, count - i < lanes ? count - i : lanes}};
    body(at);
  }
}

// What a pixel's developer is at the start of a cycle: a plane that the exchange is still to be made on, or a constant.
struct DeveloperOfCycle
{
  const float* plane;  // null for a constant
  float add;           // the constant, or what the exchange adds

  MORVELLAN_INLINE Real at(Pixels p, float retained) const
  {
    return plane ? fma(loadPlane(plane, p), Real(retained), Real(add)) : Real(add);
  }
};

// One or more cycles, from the state before the first of them, or from the start of the run, to the log of the
// developer after the last of them. All but the last were run before: they bring the state, which nobody stored, up to
// date. Pixel is one of laboratory_pixel.h.
template <typename Pixel>
struct develop_cycles
{
  const float* exposure;
  std::array<float*, 6> planes;  // density and silver
  bool loads, saves;
  PlaneRows log;   // but in the run's last cycle
  float* density;  // set in the run's last cycle
  int cycles;
  std::array<DeveloperOfCycle, labCycles> developers;
  float retained;
  LabSchedule schedule;

  MORVELLAN_KERNEL void operator()(ptrdiff_t first, int count) const
  {
    inGroups(first, count,
             [&]<int Groups>(const Pixels(&at)[Groups])
             {
               expectAfter<Groups>(at[0]);
               Rgb e[Groups];
               for (int k = 0; k < Groups; ++k)
                 e[k] = loadRgb(exposure, at[k]);
               develop(at, e);
             });
  }

  void finish() const { finishStreaming(); }

  template <int Groups>
  MORVELLAN_INLINE void develop(const Pixels (&at)[Groups], const Rgb (&e)[Groups]) const
  {
    Pixel pixels[Groups];
    Real left[Groups];
    int cycle = 0;
    if (loads)
    {
      MORVELLAN_UNROLL
      for (int k = 0; k < Groups; ++k)
        pixels[k].resume(schedule, e[k], loadPlanes(at[k], 0), loadPlanes(at[k], 3));
    }
    else
    {
      MORVELLAN_UNROLL
      for (int k = 0; k < Groups; ++k)
      {
        pixels[k].begin(schedule, e[k]);
        left[k] = pixels[k].firstCycle(schedule);
      }
      cycle = 1;
      if (cycles > 1)
      {
        meet(1, at, pixels);
        MORVELLAN_UNROLL
        for (int k = 0; k < Groups; ++k)
          left[k] = pixels[k].secondCycle(schedule);
        cycle = 2;
      }
    }
    for (; cycle + 1 < cycles; ++cycle)
    {
      meet(cycle, at, pixels);
      MORVELLAN_UNROLL
      for (int k = 0; k < Groups; ++k)
        pixels[k].cycle(schedule);
    }
    if (cycle < cycles)
      meet(cycle, at, pixels);
    if (density)
    {
      MORVELLAN_UNROLL
      for (int k = 0; k < Groups; ++k)
        storeRgb(density, at[k], pixels[k].developed(schedule));
      return;
    }
    MORVELLAN_UNROLL
    for (int k = 0; k < Groups; ++k)
      log.write(at[k], developerLog(cycle < cycles ? pixels[k].cycle(schedule) : left[k]));
    if (!saves)
      return;
    MORVELLAN_UNROLL
    for (int k = 0; k < Groups; ++k)
    {
      storePlanes(at[k], 0, pixels[k].density);
      storePlanes(at[k], 3, pixels[k].silver);
    }
  }

private:
  // The developer that the pixels have at the start of a cycle.
  template <int Groups>
  MORVELLAN_INLINE void meet(int cycle, const Pixels (&at)[Groups], Pixel (&pixels)[Groups]) const
  {
    const DeveloperOfCycle developer = developers[static_cast<size_t>(cycle)];
    MORVELLAN_UNROLL
    for (int k = 0; k < Groups; ++k)
      pixels[k].developer = developer.at(at[k], retained);
  }

  // The memory of pixels to come, as much as `Groups` groups are.
  template <int Groups>
  MORVELLAN_INLINE void expectAfter(const Pixels& at) const
  {
    constexpr ptrdiff_t ahead = 4096;
    constexpr ptrdiff_t pixels = Groups * lanes;
    const ptrdiff_t next = at.index + ahead;
    expect(exposure + next * 3, pixels * 3);
    for (int i = 0; i < cycles; ++i)
      if (const float* plane = developers[static_cast<size_t>(i)].plane)
        expect(plane + next, pixels);
    if (loads || saves)
      for (const float* plane : planes)
        expect(plane + next, pixels);
  }

  MORVELLAN_INLINE Rgb loadPlanes(Pixels at, size_t first) const
  {
    return {loadPlaneInside(planes[first], at), loadPlaneInside(planes[first + 1], at),
            loadPlaneInside(planes[first + 2], at)};
  }

  MORVELLAN_INLINE void storePlanes(Pixels at, size_t first, Rgb p) const
  {
    storePlane(planes[first], at, p.r);
    storePlane(planes[first + 1], at, p.g);
    storePlane(planes[first + 2], at, p.b);
  }
};

// film_lab_init and the first cycle.
template <typename Pixel>
struct develop_first_cycle
{
  const float* source;
  float* exposure;
  float* alpha;
  int channels;
  FilmEntry entry;
  develop_cycles<Pixel> cycle;

  MORVELLAN_KERNEL void operator()(ptrdiff_t first, int count) const
  {
    const float* stored = cycle.schedule.silver;
    const Rgb silver = {Real(stored[0]), Real(stored[1]), Real(stored[2])};
#ifndef MORVELLAN_TARGET_IS_CUDA
    Block block;
    ExposureDecode{.source = source, .exposure = exposure, .alpha = alpha, .channels = channels, .entry = entry}(
        silver, first, count, block);
#endif
    inGroups(first, count,
             [&]<int Groups>(const Pixels(&at)[Groups])
             {
               Rgb e[Groups];
               for (int k = 0; k < Groups; ++k)
               {
#ifdef MORVELLAN_TARGET_IS_CUDA
                 e[k] = latentImage(entry, silver, loadColour(source, at[k], channels));
                 storeRgb(exposure, at[k], e[k]);
                 if (channels == 4)
                   storePlane(alpha, at[k], loadRgba(source, at[k]).a);
#else
                 e[k] = loadBlock(block, static_cast<int>(at[k].index - first));
#endif
               }
               cycle.develop(at, e);
             });
  }

  void finish() const
  {
    finishStreaming();
  }
};

// pitch_sharp_film_lab and pitch_accumulate_film_lab_pfe: what the first blur took away, weighted, goes onto the last
// blur.
struct recombine
{
  static constexpr std::string_view name = "pitch_sharp_film_lab+pitch_accumulate_film_lab_pfe";
  const float* log;
  const float* base;     // the first blur
  const float* blurred;  // the last blur, which may be the first
  float* developer;
  float gain;

  MORVELLAN_KERNEL void operator()(Pixels at) const
  {
    storePlane(developer, at, combined(at, loadPlane(base, at), loadPlane(blurred, at)));
  }

  MORVELLAN_INLINE Real combined(Pixels at, Real low, Real last) const
  {
    return developerOfLog(clamp01((loadPlane(log, at) - low) * Real(gain)) + last);
  }
};

#ifndef MORVELLAN_TARGET_IS_CUDA

// The same as the last write of the second blur, and of the first where there is no second.
struct CombineSecond
{
  const recombine& combine;

  MORVELLAN_INLINE Real operator()(Pixels at, Real blurred) const
  {
    return combine.combined(at, loadPlane(combine.base, at), blurred);
  }
  MORVELLAN_INLINE void fetch(ptrdiff_t first, ptrdiff_t count) const
  {
    MORVELLAN_TARGET::fetch(combine.log + first, count);
    MORVELLAN_TARGET::fetch(combine.base + first, count);
  }
};

// And of the two in one.
struct CombineBoth
{
  const recombine& combine;

  MORVELLAN_INLINE Real operator()(Pixels at, Real first, Real second) const
  {
    return combine.combined(at, first, second);
  }
  MORVELLAN_INLINE void fetch(ptrdiff_t first, ptrdiff_t count) const
  {
    MORVELLAN_TARGET::fetch(combine.log + first, count);
  }
};

struct CombineFirst
{
  const recombine& combine;

  MORVELLAN_INLINE Real operator()(Pixels at, Real blurred) const { return combine.combined(at, blurred, blurred); }
  MORVELLAN_INLINE void fetch(ptrdiff_t first, ptrdiff_t count) const
  {
    MORVELLAN_TARGET::fetch(combine.log + first, count);
  }
};

#endif

}  // namespace morvellan::MORVELLAN_TARGET
