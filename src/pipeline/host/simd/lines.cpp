// The line functions, compiled once for each CPU level. Every output is a fixed sequence of operations on its own taps,
// so a picture comes out the same to the bit however it is cut into tiles.
#include "pipeline/host/lines.h"

#include "device/lanes.h"

#include <hwy/cache_control.h>

namespace morvellan::MORVELLAN_TARGET
{
namespace
{

// As many taps at a time as a vector of at most two pixels holds.
using TapTag = hw::CappedTag<float, 2 * rgba>;
constexpr int tapsAtOnce = static_cast<int>(hw::MaxLanes(TapTag())) / rgba;
using TapVector = hw::Vec<TapTag>;

// The six weighted taps of a pixel, added up but for the pixels of a vector.
MORVELLAN_INLINE TapVector filterTapsAt(const float* source, const float* weights)
{
  const TapTag d;
  TapVector sums = hw::Mul(hw::LoadU(d, source), hw::LoadU(d, weights));
  for (int tap = tapsAtOnce; tap < filterTaps; tap += tapsAtOnce)
    sums = hw::MulAdd(hw::LoadU(d, source + tap * rgba), hw::LoadU(d, weights + tap * rgba), sums);
  return sums;
}

// Adds up the pixels of two vectors of taps: two pixels of the target.
template <typename Tag>
MORVELLAN_INLINE void storeTwo(Tag d, hw::Vec<Tag> a, hw::Vec<Tag> b, float* target)
{
  if constexpr (hw::MaxLanes(Tag()) == rgba)
  {
    hw::StoreU(a, d, target);
    hw::StoreU(b, d, target + rgba);
  }
  else
    hw::StoreU(hw::Add(hw::ConcatLowerLower(d, b, a), hw::ConcatUpperUpper(d, b, a)), d, target);
}

template <typename Tag>
MORVELLAN_INLINE void storeOne(Tag, hw::Vec<Tag> a, float* target)
{
  const hw::FixedTag<float, rgba> pixel;
  if constexpr (hw::MaxLanes(Tag()) == rgba)
    hw::StoreU(a, pixel, target);
  else
    hw::StoreU(hw::Add(hw::LowerHalf(pixel, a), hw::UpperHalf(pixel, a)), pixel, target);
}

void filterAlongRow(const float* source, ptrdiff_t nextRow, const int* first, const int* phase, const float* weights,
                    int count, float* target)
{
  const auto tapsOf = [&](int x) { return source + static_cast<ptrdiff_t>(first[x]) * rgba; };
  const auto pixel = [&](int x) { return filterTapsAt(tapsOf(x), weights + phase[x]); };
  constexpr int stretch = 8;
  int x = 0;
  for (; x + stretch <= count; x += stretch)
  {
    const float* const begin = tapsOf(x) + nextRow;
    expect(begin, tapsOf(x + stretch - 1) + nextRow - begin);
    for (int i = x; i < x + stretch; i += 2)
      storeTwo(TapTag(), pixel(i), pixel(i + 1), target + static_cast<ptrdiff_t>(i) * rgba);
  }
  for (; x + 2 <= count; x += 2)
    storeTwo(TapTag(), pixel(x), pixel(x + 1), target + static_cast<ptrdiff_t>(x) * rgba);
  if (x < count)
    storeOne(TapTag(), pixel(x), target + static_cast<ptrdiff_t>(x) * rgba);
}

MORVELLAN_INLINE Real acrossRows(const float* const* rows, const Real* weights, ptrdiff_t i)
{
  Real sum = weights[0] * load(rows[0] + i);
  for (int tap = 1; tap < filterTaps; ++tap)
    sum = fma(weights[tap], load(rows[tap] + i), sum);
  return sum;
}

void filterAcrossRows(const float* const* rows, const float* weights, int count, bool stream, float* target)
{
  const float* const local[filterTaps] = {rows[0], rows[1], rows[2], rows[3], rows[4], rows[5]};
  const Real weight[filterTaps] = {weights[0], weights[1], weights[2], weights[3], weights[4], weights[5]};
  const bool aligned = reinterpret_cast<uintptr_t>(target) % (lanes * sizeof(float)) == 0;
  const ptrdiff_t whole = count - count % lanes;
  if (stream && aligned)
  {
    for (ptrdiff_t i = 0; i < whole; i += lanes)
      hw::Stream(acrossRows(local, weight, i).v, RealTag(), target + i);
  }
  else
  {
    for (ptrdiff_t i = 0; i < whole; i += lanes)
      store(target + i, acrossRows(local, weight, i));
  }
  if (whole < count)
  {
    float tail[lanes];
    store(tail, acrossRows(local, weight, whole));
    for (ptrdiff_t i = whole; i < count; ++i)
      target[i] = tail[i - whole];
  }
}

void streamFence()
{
  hwy::FlushStream();
}

// One channel at the pixels of a walk: the linear step and the curvature.
struct Walk
{
  Real linear;
  Real curvature;
};

MORVELLAN_INLINE Walk walk(Real before, Real here, Real next, Real afterNext, Real frac)
{
  return {here + frac * (next - here), ((here - before) - (afterNext - next)) * Real(0.5f)};
}

struct Rgba
{
  Real r, g, b, a;
};

MORVELLAN_INLINE Rgba loadPixels(const float* at)
{
  Rgba pixels;
  loadInterleaved(at, pixels.r, pixels.g, pixels.b, pixels.a);
  return pixels;
}

// before, here, next, afterNext: the pixels at p - 1, p, p + 1, p + 2.
MORVELLAN_INLINE Rgba enhance(const Rgba& before, const Rgba& here, const Rgba& next, const Rgba& afterNext, Real frac,
                              Real curve)
{
  const Walk r = walk(before.r, here.r, next.r, afterNext.r, frac);
  const Walk g = walk(before.g, here.g, next.g, afterNext.g, frac);
  const Walk b = walk(before.b, here.b, next.b, afterNext.b, frac);
  const Walk a = walk(before.a, here.a, next.a, afterNext.a, frac);
  const Real red = Real(0.25f) * r.linear;
  const Real green = Real(0.5f) * g.linear;
  const Real blue = Real(0.25f) * b.linear;
  const Real y = red + green + blue;
  const Real co = Real(0.5f) * r.linear - Real(0.5f) * b.linear;
  const Real cg = green - red - blue;
  // Each channel's curvature counts in proportion to its own value, and only luminance receives it.
  const Real sharp = y + curve * (red * r.curvature + green * g.curvature + blue * b.curvature);
  return {co + sharp - cg, cg + sharp, sharp - co - cg, a.linear + curve * a.curvature};
}

// Target pixels from `from`, of which `inside` exist, by way of a buffer that holds the edges.
void enhanceAtEdge(const float* source, const float* frac, const float* curve, int count, int from, int inside,
                   float* target)
{
  float held[(lanes + 3) * rgba];
  float fracs[lanes] = {};
  float curves[lanes] = {};
  float out[lanes * rgba];
  for (int i = 0; i < lanes + 3; ++i)
  {
    const int wanted = from - 1 + i;
    const ptrdiff_t at = wanted > count ? count : wanted;
    for (int c = 0; c < rgba; ++c)
      held[i * rgba + c] = source[at * rgba + c];
  }
  for (int i = 0; i < inside; ++i)
  {
    fracs[i] = frac[from - 1 + i];
    curves[i] = curve[from - 1 + i];
  }
  const Rgba pixels = enhance(loadPixels(held), loadPixels(held + rgba), loadPixels(held + 2 * rgba),
                              loadPixels(held + 3 * rgba), load(fracs), load(curves));
  storeInterleaved(out, pixels.r, pixels.g, pixels.b, pixels.a);
  for (int i = 0; i < inside * rgba; ++i)
    target[static_cast<ptrdiff_t>(from) * rgba + i] = out[i];
}

void enhanceRow(const float* source, const float* frac, const float* curve, int count, float* target)
{
  for (int c = 0; c < rgba; ++c)
    target[c] = source[c];
  int x = 1;
  // Whole vectors whose last pixel still has two real neighbours to its right.
  for (; x + lanes + 1 <= count; x += lanes)
  {
    const float* const here = source + static_cast<ptrdiff_t>(x) * rgba;
    const Rgba pixels = enhance(loadPixels(here - rgba), loadPixels(here), loadPixels(here + rgba),
                                loadPixels(here + 2 * rgba), load(frac + x - 1), load(curve + x - 1));
    storeInterleaved(target + static_cast<ptrdiff_t>(x) * rgba, pixels.r, pixels.g, pixels.b, pixels.a);
  }
  for (; x < count; x += lanes)
    enhanceAtEdge(source, frac, curve, count, x, count - x < lanes ? count - x : lanes, target);
}

}  // namespace

extern const LineFunctions lines;
const LineFunctions lines = {filterAlongRow, filterAcrossRows, streamFence, enhanceRow};

}  // namespace morvellan::MORVELLAN_TARGET
