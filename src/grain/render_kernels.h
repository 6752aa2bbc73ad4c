// The grain kernels: pixel by pixel, sample by sample, cell by cell. CUDA runs them; the CPU's fast form is held
// against them bit for bit.
#pragma once

#include "device/pixels.h"
#include "grain/grain.h"
#include "grain/radius.h"

namespace morvellan::MORVELLAN_TARGET
{

namespace grain
{

// What a cell holds on average at one image value: the intensity, the chance of none, and where the draw ends.
struct CellLaw
{
  float lambda, exp;
  int limit;
};

// floor(x) as an index; what an index can't hold is held at its ends, NaN is 0.
MORVELLAN_INLINE int floorIndex(float x)
{
  constexpr float most = 1073741824.0f;
  const float floored = ::floorf(x);
  return floored < most ? (floored > -most ? static_cast<int>(floored) : static_cast<int>(-most))
                        : (floored >= most ? static_cast<int>(most) : 0);
}

MORVELLAN_INLINE int tableIndex(float value, float tableScale, int levels)
{
  const int i = floorIndex(value * tableScale);
  return i < 0 ? 0 : (i < levels ? i : levels);
}

MORVELLAN_INLINE CellLaw cellLaw(const Texture1d& lambda, const Texture1d& exp, int index)
{
  const float intensity = texel(lambda, index);
  return {intensity, texel(exp, index), floorIndex(intensity * 10000.0f)};
}

MORVELLAN_INLINE float uniform(OneWord& state)
{
  state = step(state);
  return static_cast<float>(state.v) * unit;
}

// The number of grains at u, by the inverse of the Poisson distribution. A sum that is no number ends the search.
MORVELLAN_INLINE int grainCountAt(float u, const CellLaw& law)
{
  int k = 0;
  if (!(u > law.exp))
    return k;
  float term = law.exp;
  float sum = law.exp;
  while (k < law.limit)
  {
    ++k;
    term = term * (law.lambda / static_cast<float>(k));
    sum = sum + term;
    if (!(u > sum))
      break;
  }
  return k;
}

// A launch but for the radius.
struct Plane
{
  Texture2d image;
  Texture1d lambda, exp;
  const FilterOffset* offsets;
  float* destination;
  int width, height, firstRow;
  uint32_t seed;
  int count;
  float cell, tableScale;
  int levels;
  float blendKeep, strengthPerCount, invCell;
};

struct Point
{
  float x, y;
};

// The state of a cell, from which all its random numbers come.
MORVELLAN_INLINE OneWord cellState(const Plane& p, int cx, int cy)
{
  const uint32_t cs = (static_cast<uint32_t>(cx) & 65535u) + p.seed + (static_cast<uint32_t>(cy) << 16);
  return cs == 0 ? OneWord(stateOfZero) : hash(OneWord(cs));
}

// Whether a grain of cell (cx, cy) covers g.
template <typename Radius>
MORVELLAN_INLINE bool cellCovers(const Plane& p, const Radius& radius, const CellLaw& law, int cx, int cy, Point g)
{
  OneWord state = cellState(p, cx, cy);
  const float u = uniform(state);
  const int grains = grainCountAt(u, law);
  for (int i = 0; i < grains; ++i)
  {
    const float dx = uniform(state) * p.cell + static_cast<float>(cx) * p.cell - g.x;
    const float dy = uniform(state) * p.cell + static_cast<float>(cy) * p.cell - g.y;
    const float squared = radius.nextSquared(state);
    if (dx * dx + dy * dy < squared)
      return true;
  }
  return false;
}

// The cells of a point's reach. Columns run up to the last but one (at least one), rows through the last.
struct Reach
{
  int x0, columns, y0, rows;
};

template <typename Radius>
MORVELLAN_INLINE Reach reachOf(const Plane& p, const Radius& radius, Point g)
{
  const int x0 = floorIndex((g.x - radius.reach) * p.invCell);
  const int x1 = floorIndex((g.x + radius.reach) * p.invCell);
  const int y0 = floorIndex((g.y - radius.reach) * p.invCell);
  const int y1 = floorIndex((g.y + radius.reach) * p.invCell);
  return {x0, x0 > x1 ? 0 : (x1 > x0 ? x1 - x0 : 1), y0, y1 - y0 + 1};
}

// The place of the lowest set bit of a word that is not 0.
MORVELLAN_INLINE int lowestBit(uint32_t bits)
{
#ifdef __CUDA_ARCH__
  return __ffs(static_cast<int>(bits)) - 1;
#else
  return __builtin_ctz(bits);
#endif
}

struct EveryCell
{
  template <typename Radius>
  MORVELLAN_INLINE static bool covers(const Plane& p, const Radius& radius, const CellLaw& law, Reach cells, Point g)
  {
    for (int cx = cells.x0; cx < cells.x0 + cells.columns; ++cx)
      for (int cy = cells.y0; cy < cells.y0 + cells.rows; ++cy)
        if (cellCovers(p, radius, law, cx, cy, g))
          return true;
    return false;
  }
};

// Threads of a GPU that run in step wait for each other. Few cells hold grains: here all threads hash, a bit for each
// cell that holds one, and then draw the cells of the set bits.
struct OccupiedCellsFirst
{
  template <typename Radius>
  MORVELLAN_INLINE static bool covers(const Plane& p, const Radius& radius, const CellLaw& law, Reach cells, Point g)
  {
    constexpr int bits = 32;
    const int count = cells.columns * cells.rows;
    int column = 0, row = 0;
    for (int first = 0; first < count; first += bits)
    {
      uint32_t occupied = 0;
      for (int i = 0; i < bits && first + i < count; ++i)
      {
        OneWord state = cellState(p, cells.x0 + column, cells.y0 + row);
        occupied |= static_cast<uint32_t>(uniform(state) > law.exp) << i;
        row = row + 1 < cells.rows ? row + 1 : 0;
        column += row == 0 ? 1 : 0;
      }
      for (; occupied != 0; occupied &= occupied - 1)
      {
        const int i = first + lowestBit(occupied);
        if (cellCovers(p, radius, law, cells.x0 + i / cells.rows, cells.y0 + i % cells.rows, g))
          return true;
      }
    }
    return false;
  }
};

// Whether any grain in reach covers g.
template <typename Search, typename Radius>
MORVELLAN_INLINE bool covered(const Plane& p, const Radius& radius, Point g)
{
  const Reach cells = reachOf(p, radius, g);
  if (cells.columns == 0)
    return false;
  const float value = texel(p.image, floorIndex(g.x), floorIndex(g.y));
  const CellLaw law = cellLaw(p.lambda, p.exp, tableIndex(value, p.tableScale, p.levels));
  return Search::covers(p, radius, law, cells, g);
}

template <typename Search, typename Radius>
MORVELLAN_INLINE float grainAt(const Plane& p, const Radius& radius, int x, int y)
{
  const float px = static_cast<float>(x) + 0.5f;
  const float py = static_cast<float>(y) + 0.5f;
  int count = 0;
  for (int i = 0; i < p.count; ++i)
  {
    const FilterOffset offset = p.offsets[i];
    const Point g = {offset.x + px, offset.y + py};
    if (::fabsf(g.x) <= 3.40282347e38f && ::fabsf(g.y) <= 3.40282347e38f && covered<Search>(p, radius, g))
      ++count;
  }
  return static_cast<float>(count) * p.strengthPerCount + texel(p.image, x, y) * p.blendKeep;
}

template <typename Search, typename Radius>
MORVELLAN_INLINE void renderPixels(const Plane& p, const Radius& radius, Pixels at)
{
  const int y = at.y + p.firstRow;
  float* row = p.destination + static_cast<ptrdiff_t>(y) * p.width;
  for (int x = at.x; x < at.x + at.count; ++x)
    row[x] = grainAt<Search>(p, radius, x, y);
}

}  // namespace grain

// Over a grid of the plane's width and the rows to render. `Search` is EveryCell or OccupiedCellsFirst.
template <typename Search>
struct render_pixelR
{
  grain::Plane plane;
  float grainRadiusSquared, grainRadius;

  MORVELLAN_KERNEL void operator()(Pixels at) const
  {
    grain::renderPixels<Search>(plane, grain::OneRadius{grainRadius, grainRadiusSquared}, at);
  }
};

template <typename Search>
struct render_variance
{
  grain::Plane plane;
  float grainRadiusMax, grainLogSigma, grainLogMu;

  MORVELLAN_KERNEL void operator()(Pixels at) const
  {
    grain::renderPixels<Search>(
        plane, grain::VaryingRadius{grain::radiusLaw(grainLogSigma, grainLogMu, grainRadiusMax), grainRadiusMax}, at);
  }
};

}  // namespace morvellan::MORVELLAN_TARGET
