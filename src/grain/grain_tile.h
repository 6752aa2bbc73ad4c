// One tile of grain in the fast form: a strip of pixels by a few rows, all samples. For every sample and row the cells
// in reach are taken one after another, nearest first, each for the whole strip at once.
//
// A cell is hashed for every pixel without a branch, and the pixels whose cell holds a grain and that no grain covers
// yet are packed into a queue. The queue's first grains are then drawn densely; what may hold a second grain waits in
// another queue until the tile's rows are through. A covered pixel takes part no more: its threshold becomes
// largestDraw. One hit counts per sample, so the order of cells is free.
//
// Channels whose grain lies at the same places are rendered together: a cell is hashed and drawn once, as if for the
// channel with the most grains in it. A channel has a cell's first grain if the cell's draw is above its own record. So
// a pixel keeps the largest draw of those whose first grain covers it, which at the end says what is covered in which
// channel, and below which no draw is of use any more.
#pragma once

#ifndef MORVELLAN_TARGET_IS_CUDA

#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <vector>

#include "grain/grain_records.h"
#include "grain/grain_strip.h"
#include "grain/grain_tile_memory.h"
#include "grain/radius.h"

namespace morvellan::MORVELLAN_TARGET::grain
{

// Launches that share their grain, as tiles see them.
template <typename Radius, int Channels>
struct FastPlanes
{
  std::span<const GrainLaunch, Channels> launches;
  const Records& records;
  Radius radius;
  float tableScale;
};

template <typename Radius, int Channels>
class Tile
{
public:
  Tile(const FastPlanes<Radius, Channels>& planes, TileMemory& memory, int firstX, int firstY, int width, int rows)
      : p(planes), s(planes.launches[0].settings), m(memory), x0(firstX), y0(firstY), width(width), rows(rows),
        span((width + lanes - 1) / lanes * lanes), cellUnit(s.cell * unit), strip(s, p.radius, m, x0, span)
  {
  }

  void render()
  {
    for (int c = 0; c < Channels; ++c)
      for (int r = 0; r < rows; ++r)
        std::fill_n(m.hits[c][r], span, 0);
    const FilterOffset* const offsets = p.launches[0].offsets;
    for (int i = 0; i < s.count; ++i)
      if (std::isfinite(offsets[i].x) && std::isfinite(offsets[i].y))
        sample(offsets[i]);
    finish();
  }

private:
  struct Cell
  {
    int column, row;
    float distance;
  };

  // The records are those of the pixels that the row's points fall on.
  struct Row
  {
    float gy;
    int firstCell, cells;
    const int* leastNone;
    const int* leastOne;
    std::array<const int*, Channels> none;
  };

  void sample(FilterOffset offset)
  {
    oy = offset.y;
    deferred = 0;
    strip.take(offset.x);
    for (int r = 0; r < rows; ++r)
      prepareRow(r);
    for (columnBase = 0; columnBase < strip.mostColumns(); columnBase += columnsAtOnce)
    {
      const int count = std::min(columnsAtOnce, strip.mostColumns() - columnBase);
      strip.prepareColumns(columnBase, count);
      for (int r = 0; r < rows; ++r)
        for (const Cell& cell : cellsInReach(rowOf[r], count))
          renderCell(r, cell);
    }
    drawDeferred();
    for (int r = 0; r < rows; ++r)
      countHits(r);
  }

  void prepareRow(int r)
  {
    Row& row = rowOf[r];
    row.gy = oy + (static_cast<float>(y0 + r) + 0.5f);
    row.firstCell = static_cast<int>(std::floor((row.gy - p.radius.reach) * s.invCell));
    row.cells = static_cast<int>(std::floor((row.gy + p.radius.reach) * s.invCell)) - row.firstCell + 1;
    const int y = static_cast<int>(std::floor(row.gy));
    int plane = 0;
    row.leastNone = atPoints(p.records.leastNoneRow(y), r, plane++);
    row.leastOne = atPoints(p.records.leastOneRow(y), r, plane++);
    for (size_t c = 0; c < Channels; ++c)
      row.none[c] = Channels == 1 ? row.leastNone : atPoints(p.records.noneRow(c, y), r, plane++);
    std::copy_n(row.leastNone, span, m.threshold[r]);
    std::fill(m.threshold[r] + width, m.threshold[r] + span, largestDraw);
    if constexpr (Channels > 1)
      std::fill_n(m.further[r], span, 0u);
  }

  // A row of records, moved so that a point's is found at its pixel's place in the strip. Where the shift differs from
  // pixel to pixel that takes a copy.
  const int* atPoints(const int* records, int r, int plane)
  {
    if (strip.shiftIsOne())
      return records + strip.shift();
    for (int i = 0; i < span; ++i)
      m.shifted[r][plane][i] = records[strip.planeColumn(i)];
    return m.shifted[r][plane];
  }

  // Nearest first; without those that no grain can reach into the strip from.
  std::span<const Cell> cellsInReach(const Row& row, int columns)
  {
    cells.clear();
    for (int j = 0; j < row.cells; ++j)
    {
      const float base = static_cast<float>(row.firstCell + j) * s.cell;
      const float dy = std::max({base - row.gy, row.gy - (s.cell + base), 0.0f});
      for (int c = 0; c < columns; ++c)
      {
        const float distance = strip.distance(c) * strip.distance(c) + dy * dy;
        if (distance < p.radius.mostSquared())
          cells.push_back({c, j, distance});
      }
    }
    std::ranges::sort(cells, {}, &Cell::distance);
    return cells;
  }

  void renderCell(int r, const Cell& cell)
  {
    const int cy = rowOf[r].firstCell + cell.row;
    const uint32_t rowWord = static_cast<uint32_t>(cy) << 16;
    // A cell whose coordinates and seed add up to 0 has a state of its own.
    const bool meetsZero = 0u - (rowWord + s.seed) < 65536u;
    const int column = columnBase + cell.column;
    const int queued = meetsZero || column >= strip.leastColumns() ? queueOccupied<true>(r, cell.column, rowWord)
                                                                   : queueOccupied<false>(r, cell.column, rowWord);
    drawFirst(r, column, cell.row, cy, queued);
  }

  // The draw of a cell that says how many grains it holds, turned over.
  template <bool Careful>
  MORVELLAN_INLINE static Word drawOf(Word cs)
  {
    Word state = hash(cs);
    if constexpr (Careful)
      state = select(cs == Word(0u), Word(stateOfZero), state);
    return step(state, Word(signBit));
  }

  // Every pixel's cell is hashed, and the occupied ones are queued.
  template <bool Careful>
  int queueOccupied(int r, int column, uint32_t rowWord)
  {
    const uint32_t* const columns = m.columns[column];
    const int* const threshold = m.threshold[r];
    const int* const one = rowOf[r].leastOne;
    uint32_t* queue = m.queue;
    Int x = laneIndex();
    for (int i = 0; i < span; i += lanes)
    {
      const Word draw = drawOf<Careful>(load(columns + i) + Word(rowWord));
      Mask occupied = toInt(draw) > load(threshold + i);
      if constexpr (Careful)
        occupied = occupied & (load(m.columnCount + i) > Int(columnBase + column));
      store(queue, packed(toWord(load(one + i) | x), occupied));
      queue += countOf(occupied);
      x = x + Int(lanes);
    }
    return static_cast<int>(queue - m.queue);
  }

  // The draw is hashed again, which costs less than to queue it along.
  void drawFirst(int r, int column, int cellRow, int cy, int queued)
  {
    const Real gy(rowOf[r].gy), baseY(static_cast<float>(cy) * s.cell);
    const Word rowWord(s.seed + (static_cast<uint32_t>(cy) << 16));
    const Word code(Code::of(r, column, cellRow));
    uint32_t* const queue = m.queue;
    int hits = 0;
    for (int j = 0; j < queued; j += lanes)
    {
      const Mask valid = firstLanes(queued - j < lanes ? queued - j : lanes);
      const Word item = load(queue + j);
      const Word x = item & Word(Code::xMask);
      const Real gx = strip.gxAt(toReal(toInt(x)));
      const Real cx = strip.firstColumn(gx) + Real(static_cast<float>(column));
      const Word draw = drawOf<true>((toWord(toInt(cx)) & Word(65535u)) + rowWord);
      Word state = draw ^ Word(signBit);
      const Mask hit = drawGrain(state, gx, cx * Real(s.cell), gy, baseY) & valid;
      const Mask more = (toInt(draw) > toInt(item & Word(~Code::xMask))) & valid & !hit;
      // Packed in place: what is written lies before what is still to be read.
      store(queue + hits, packed(x, hit));
      if constexpr (Channels > 1)
        store(m.hitDraw + hits, packed(draw, hit));
      hits += countOf(hit);
      store(m.deferredCode + deferred, packed(x | code, more));
      store(m.deferredDraw + deferred, packed(draw, more));
      store(m.deferredState + deferred, packed(state, more));
      deferred += countOf(more);
    }
    for (int j = 0; j < hits; ++j)
      cover(r, queue[j], Channels == 1 ? largestDraw : static_cast<int>(m.hitDraw[j]));
    if (deferred > TileMemory::deferredCapacity - stripLength)
      drawDeferred();
  }

  // Draws one grain of a cell and says whether it covers (gx, gy); the bases are the cell's corner.
  MORVELLAN_INLINE Mask drawGrain(Word& state, Real gx, Real baseX, Real gy, Real baseY) const
  {
    const Word first = step(state);
    state = step(first);
    const Real dx = toReal(first) * Real(cellUnit) + baseX - gx;
    const Real dy = toReal(state) * Real(cellUnit) + baseY - gy;
    return dx * dx + dy * dy < p.radius.nextSquared(state);
  }

  // A pixel that the first grain of a cell with this draw covers. With no channel left to cover it takes part no more.
  void cover(int r, uint32_t x, int draw)
  {
    bool inAll = true;
    for (size_t c = 0; c < Channels; ++c)
    {
      const int none = rowOf[r].none[c][x];
      inAll = inAll && (none < draw || none == largestDraw);
    }
    m.threshold[r][x] = inAll ? largestDraw : draw;
  }

  // Of the cells that wait, those whose pixel a grain has covered meanwhile go.
  void dropCovered()
  {
    int kept = 0;
    for (int j = 0; j < deferred; j += lanes)
    {
      const Mask valid = firstLanes(deferred - j < lanes ? deferred - j : lanes);
      const Word code = select(valid, load(m.deferredCode + j), Word(0u));
      const Word draw = load(m.deferredDraw + j);
      const Word state = load(m.deferredState + j);
      const Int threshold = gather(m.threshold[0], Code::rowOf(code) * Int(TileMemory::row) + Code::xOf(code));
      const Mask open = valid & (threshold < Int(largestDraw));
      store(m.deferredCode + kept, packed(code, open));
      store(m.deferredDraw + kept, packed(draw, open));
      store(m.deferredState + kept, packed(state, open));
      kept += countOf(open);
    }
    deferred = kept;
  }

  // Second and further grains of the cells that wait, and of those the ones that a grain covers.
  void drawDeferred()
  {
    dropCovered();
    for (int j = 0; j < deferred; j += lanes)
    {
      const Mask valid = firstLanes(deferred - j < lanes ? deferred - j : lanes);
      const Word code = select(valid, load(m.deferredCode + j), Word(0u));
      const ChannelMasks hit = drawFurther(code, load(m.deferredDraw + j), load(m.deferredState + j), valid);
      for (size_t c = 0; c < Channels; ++c)
      {
        uint32_t covered[lanes];
        store(covered, packed(code, hit[c]));
        for (int k = 0; k < countOf(hit[c]); ++k)
          coverFurther(Code::rowOf(covered[k]), Code::xOf(covered[k]), 1u << c);
      }
    }
    deferred = 0;
  }

  // A pixel that a second or further grain covers in one channel.
  void coverFurther(int r, uint32_t x, uint32_t channel)
  {
    if (Channels == 1 || (m.further[r][x] |= channel) == (1u << Channels) - 1u)
      m.threshold[r][x] = largestDraw;
  }

  using ChannelMasks = std::array<Mask, Channels>;

  // The sums of a channel's distribution of grains.
  struct Distribution
  {
    Real lambda, limit, term, sum;
  };

  Distribution distributionOf(size_t channel, Real gx, Real gy) const
  {
    const GrainLaunch& l = p.launches[channel];
    const Int index = tableIndices(fetch(l.image, toInt(floor(gx)), toInt(floor(gy))), p.tableScale, s.levels);
    const Real lambda = fetch(l.lambda, index);
    const Real exp = fetch(l.exp, index);
    return {lambda, floor(lambda * Real(10000.0f)), exp * lambda, exp + exp * lambda};
  }

  MORVELLAN_INLINE ChannelMasks drawFurther(Word code, Word draw, Word state, Mask valid) const
  {
    const Real gx = strip.gxAt(toReal(Code::xOf(code)));
    const Real gy = Real(oy) + (toReal(Code::rowOf(code) + Int(y0)) + Real(0.5f));
    const Real cy = floor((gy - Real(p.radius.reach)) * Real(s.invCell)) + toReal(Code::cellRowOf(code));
    const Real baseX = (strip.firstColumn(gx) + toReal(Code::columnOf(code))) * Real(s.cell);
    const Real baseY = cy * Real(s.cell);
    const Real u = toReal(draw ^ Word(signBit)) * Real(unit);
    std::array<Distribution, Channels> of;
    ChannelMasks covered, drawing;
    Mask anyDrawing = firstLanes(0);
    for (size_t c = 0; c < Channels; ++c)
    {
      of[c] = distributionOf(c, gx, gy);
      // The record of one grain lacks its last bits, so that a cell may be here that has no second grain.
      drawing[c] = valid & (u > of[c].sum) & (of[c].limit >= Real(2.0f));
      covered[c] = firstLanes(0);
      anyDrawing = anyDrawing | drawing[c];
    }
    for (float k = 2.0f; any(anyDrawing); k += 1.0f)
    {
      const Mask hit = drawGrain(state, gx, baseX, gy, baseY);
      anyDrawing = firstLanes(0);
      for (size_t c = 0; c < Channels; ++c)
      {
        of[c].term = of[c].term * (of[c].lambda / Real(k));
        of[c].sum = of[c].sum + of[c].term;
        covered[c] = covered[c] | (hit & drawing[c]);
        drawing[c] = drawing[c] & !hit & (u > of[c].sum) & (Real(k) < of[c].limit);
        anyDrawing = anyDrawing | drawing[c];
      }
    }
    return covered;
  }

  void countHits(int r)
  {
    for (int i = 0; i < span; i += lanes)
    {
      const Int largest = load(m.threshold[r] + i);
      for (size_t c = 0; c < Channels; ++c)
      {
        Mask covered = largest > load(rowOf[r].none[c] + i);
        if constexpr (Channels > 1)
          covered = covered | !((load(m.further[r] + i) & Word(1u << c)) == Word(0u));
        store(m.hits[c][r] + i, load(m.hits[c][r] + i) + select(covered, Int(1), Int(0)));
      }
    }
  }

  void finish()
  {
    for (size_t c = 0; c < Channels; ++c)
      for (int r = 0; r < rows; ++r)
      {
        const GrainLaunch& l = p.launches[c];
        const ptrdiff_t first = static_cast<ptrdiff_t>(y0 + r) * l.width + x0;
        for (int i = 0; i < width; i += lanes)
        {
          const Pixels at{x0 + i, y0 + r, first + i, std::min(lanes, width - i)};
          const Real hits = toReal(load(m.hits[c][r] + i));
          storePlane(l.destination, at,
                     hits * Real(l.settings.strengthPerCount) +
                         loadPlane(l.image.values, at) * Real(l.settings.blendKeep));
        }
      }
  }

  const FastPlanes<Radius, Channels>& p;
  const GrainSettings& s;
  TileMemory& m;
  const int x0, y0, width, rows, span;
  // cell * 2^-32: a state times this is the uniform number times the cell, as a power of two keeps the rounding.
  const float cellUnit;

  // The sample.
  Strip<Radius> strip;
  float oy = 0.0f;
  int columnBase = 0;
  Row rowOf[tileRows] = {};
  std::vector<Cell> cells;
  int deferred = 0;
};

}  // namespace morvellan::MORVELLAN_TARGET::grain

#endif
