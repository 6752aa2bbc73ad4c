// One tile of grain in the fast form: a strip of pixels by a few rows, all samples. For every sample and row the cells
// in reach are taken one after another, nearest first, each for the whole strip at once.
//
// A cell is hashed for every pixel without a branch, and the pixels whose cell holds a grain and that no grain covers
// yet are packed into a queue. The queue's first grains are then drawn densely; what may hold a second grain waits in
// another queue until the tile's rows are through. A covered pixel takes part no more: its threshold becomes
// largestDraw. One hit counts per sample, so the order of cells is free.
#pragma once

#ifndef MORVELLAN_TARGET_IS_CUDA

#include <algorithm>
#include <cmath>
#include <span>
#include <vector>

#include "grain/grain_records.h"
#include "grain/grain_tile_memory.h"
#include "grain/radius.h"

namespace morvellan::MORVELLAN_TARGET::grain
{

// A launch as tiles see it.
template <typename Radius>
struct FastPlane
{
  const GrainLaunch& launch;
  const Records& records;
  Radius radius;
  float tableScale;
};

template <typename Radius>
class Tile
{
public:
  Tile(const FastPlane<Radius>& plane, TileMemory& memory, int firstX, int firstY, int width, int rows)
      : p(plane), s(plane.launch.settings), m(memory), x0(firstX), y0(firstY), width(width), rows(rows),
        span((width + lanes - 1) / lanes * lanes), cellUnit(s.cell * unit)
  {
  }

  void render()
  {
    for (int r = 0; r < rows; ++r)
      std::fill_n(m.hits[r], span, 0);
    for (int i = 0; i < s.count; ++i)
      if (std::isfinite(p.launch.offsets[i].x) && std::isfinite(p.launch.offsets[i].y))
        sample(p.launch.offsets[i]);
    finish();
  }

private:
  struct Cell
  {
    int column, row;
    float distance;
  };

  struct Row
  {
    float gy;
    int firstCell, cells;
    const int* none;
    const int* one;
  };

  void sample(FilterOffset offset)
  {
    ox = offset.x;
    oy = offset.y;
    deferred = 0;
    lookAlongStrip();
    for (int r = 0; r < rows; ++r)
      prepareRow(r);
    for (columnBase = 0; columnBase < mostColumns; columnBase += columnsAtOnce)
    {
      const int count = std::min(columnsAtOnce, mostColumns - columnBase);
      prepareColumns(count);
      for (int r = 0; r < rows; ++r)
        renderRow(r, count);
    }
    drawDeferred();
    for (int r = 0; r < rows; ++r)
      countHits(r);
  }

  Real gxAt(Real x) const { return Real(ox) + (x + Real(static_cast<float>(x0) + 0.5f)); }
  Real firstColumn(Real gx) const { return floor((gx - Real(p.radius.reach)) * Real(s.invCell)); }

  // How many columns of cells the pixels of the strip have in reach, and which record is the first of its pixels.
  void lookAlongStrip()
  {
    Int least(mostCells), most(1), leastShift(1 << 24), mostShift(-(1 << 24));
    for (int i = 0; i < span; i += lanes)
    {
      const Int x = laneIndex() + Int(i);
      const Real gx = gxAt(toReal(x));
      const Int first = toInt(firstColumn(gx));
      const Int last = toInt(floor((gx + Real(p.radius.reach)) * Real(s.invCell)));
      const Int count = max(last - first, Int(1));
      const Int shift = toInt(floor(gx)) - x;
      store(m.columnCount + i, count);
      least = min(least, count);
      most = max(most, count);
      leastShift = min(leastShift, shift);
      mostShift = max(mostShift, shift);
    }
    leastColumns = leastOf(least);
    mostColumns = mostOf(most);
    shift = leastOf(leastShift);
    shiftIsOne = shift == mostOf(mostShift);
  }

  static int leastOf(Int x)
  {
    int all[lanes];
    store(all, x);
    return *std::min_element(all, all + lanes);
  }

  static int mostOf(Int x)
  {
    int all[lanes];
    store(all, x);
    return *std::max_element(all, all + lanes);
  }

  // The distance, along one axis, of the strip's pixels to a cell; grains lie no nearer, as float operations keep
  // order.
  void prepareColumns(int count)
  {
    for (int c = 0; c < count; ++c)
    {
      Real nearest(3.0e38f);
      for (int i = 0; i < span; i += lanes)
      {
        const Real gx = gxAt(toReal(laneIndex() + Int(i)));
        const Real cx = firstColumn(gx) + Real(static_cast<float>(columnBase + c));
        const Real base = cx * Real(s.cell);
        nearest = min(nearest, max(max(base - gx, gx - (Real(s.cell) + base)), Real(0.0f)));
        store(m.columns[c] + i, (toWord(toInt(cx)) & Word(65535u)) + Word(s.seed));
      }
      float all[lanes];
      store(all, nearest);
      columnDistance[c] = *std::min_element(all, all + lanes);
    }
  }

  void prepareRow(int r)
  {
    Row& row = rowOf[r];
    row.gy = oy + (static_cast<float>(y0 + r) + 0.5f);
    row.firstCell = static_cast<int>(std::floor((row.gy - p.radius.reach) * s.invCell));
    row.cells = static_cast<int>(std::floor((row.gy + p.radius.reach) * s.invCell)) - row.firstCell + 1;
    const int y = static_cast<int>(std::floor(row.gy));
    row.none = p.records.noneRow(y) + shift;
    row.one = p.records.oneRow(y) + shift;
    if (!shiftIsOne)
      shiftPixelByPixel(r, y);
    std::copy_n(row.none, span, m.threshold[r]);
    std::fill(m.threshold[r] + width, m.threshold[r] + span, largestDraw);
  }

  void shiftPixelByPixel(int r, int y)
  {
    for (int i = 0; i < span; ++i)
    {
      const int column = static_cast<int>(std::floor(ox + (static_cast<float>(x0 + i) + 0.5f)));
      m.shifted[r][0][i] = p.records.noneRow(y)[column];
      m.shifted[r][1][i] = p.records.oneRow(y)[column];
    }
    rowOf[r].none = m.shifted[r][0];
    rowOf[r].one = m.shifted[r][1];
  }

  void renderRow(int r, int columns)
  {
    for (const Cell& cell : cellsInReach(rowOf[r], columns))
      renderCell(r, cell);
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
        const float distance = columnDistance[c] * columnDistance[c] + dy * dy;
        if (distance < p.radius.mostSquared())
          cells.push_back({c, j, distance});
      }
    }
    std::ranges::sort(cells, {}, &Cell::distance);
    return cells;
  }

  void renderCell(int r, const Cell& cell)
  {
    const Row& row = rowOf[r];
    const int cy = row.firstCell + cell.row;
    const uint32_t rowWord = static_cast<uint32_t>(cy) << 16;
    // A cell whose coordinates and seed add up to 0 has a state of its own.
    const bool meetsZero = 0u - (rowWord + s.seed) < 65536u;
    const int column = columnBase + cell.column;
    const int queued = meetsZero || column >= leastColumns ? queueOccupied<true>(r, cell.column, rowWord)
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
    return step(state) ^ Word(signBit);
  }

  // Every pixel's cell is hashed, and the occupied ones are queued.
  template <bool Careful>
  int queueOccupied(int r, int column, uint32_t rowWord)
  {
    const uint32_t* const columns = m.columns[column];
    const int* const threshold = m.threshold[r];
    const int* const one = rowOf[r].one;
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
      const Real gx = gxAt(toReal(toInt(x)));
      const Real cx = firstColumn(gx) + Real(static_cast<float>(column));
      const Word draw = drawOf<true>((toWord(toInt(cx)) & Word(65535u)) + rowWord);
      Word state = draw ^ Word(signBit);
      const Mask hit = drawGrain(state, gx, cx * Real(s.cell), gy, baseY) & valid;
      const Mask more = (toInt(draw) > toInt(item & Word(~Code::xMask))) & valid & !hit;
      // Packed in place: what is written lies before what is still to be read.
      store(queue + hits, packed(x, hit));
      hits += countOf(hit);
      store(m.deferredCode + deferred, packed(x | code, more));
      store(m.deferredDraw + deferred, packed(draw, more));
      store(m.deferredState + deferred, packed(state, more));
      deferred += countOf(more);
    }
    int* const threshold = m.threshold[r];
    for (int j = 0; j < hits; ++j)
      threshold[queue[j]] = largestDraw;
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

  static Int xOf(Word code) { return toInt(code & Word(Code::xMask)); }
  static Int rowOfCode(Word code) { return toInt(shiftRight<Code::xBits>(code) & Word(tileRows - 1)); }

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
      const Int threshold = gather(m.threshold[0], rowOfCode(code) * Int(TileMemory::row) + xOf(code));
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
      const Mask hit = drawFurther(code, load(m.deferredDraw + j), load(m.deferredState + j), valid);
      uint32_t covered[lanes];
      store(covered, packed(code, hit));
      for (int k = 0; k < countOf(hit); ++k)
        m.threshold[covered[k] >> Code::xBits & (tileRows - 1)][covered[k] & Code::xMask] = largestDraw;
    }
    deferred = 0;
  }

  MORVELLAN_INLINE Mask drawFurther(Word code, Word draw, Word state, Mask valid) const
  {
    const Real gx = gxAt(toReal(xOf(code)));
    const Int row = rowOfCode(code);
    const Int column = toInt(shiftRight<Code::xBits + Code::rowBits>(code) & Word((1u << Code::columnBits) - 1u));
    const Int cellRow = toInt(shiftRight<Code::xBits + Code::rowBits + Code::columnBits>(code));
    const Real gy = Real(oy) + (toReal(row + Int(y0)) + Real(0.5f));
    const Real cy = floor((gy - Real(p.radius.reach)) * Real(s.invCell)) + toReal(cellRow);
    const Real baseX = (firstColumn(gx) + toReal(column)) * Real(s.cell);
    const Real baseY = cy * Real(s.cell);
    const Real value = fetch(p.launch.image, toInt(floor(gx)), toInt(floor(gy)));
    const Int index = tableIndices(value, p.tableScale, s.levels);
    const Real lambda = fetch(p.launch.lambda, index);
    const Real exp = fetch(p.launch.exp, index);
    const Real limit = floor(lambda * Real(10000.0f));
    const Real u = toReal(draw ^ Word(signBit)) * Real(unit);
    Real term = exp * lambda;
    Real sum = exp + term;
    // The record of one grain lacks its last bits, so that a cell may be here that has no second grain.
    Mask drawing = valid & (u > sum) & (limit >= Real(2.0f));
    Mask covered = firstLanes(0);
    for (float k = 2.0f; any(drawing); k += 1.0f)
    {
      term = term * (lambda / Real(k));
      sum = sum + term;
      const Mask hit = drawGrain(state, gx, baseX, gy, baseY) & drawing;
      covered = covered | hit;
      drawing = drawing & !hit & (u > sum) & (Real(k) < limit);
    }
    return covered;
  }

  // A threshold that is no longer the record's is that of a covered pixel.
  void countHits(int r)
  {
    for (int i = 0; i < span; i += lanes)
    {
      const Mask same = load(m.threshold[r] + i) == load(rowOf[r].none + i);
      store(m.hits[r] + i, load(m.hits[r] + i) + select(same, Int(0), Int(1)));
    }
  }

  void finish()
  {
    for (int r = 0; r < rows; ++r)
    {
      const ptrdiff_t first = static_cast<ptrdiff_t>(y0 + r) * p.launch.width + x0;
      for (int i = 0; i < width; i += lanes)
      {
        const Pixels at{x0 + i, y0 + r, first + i, std::min(lanes, width - i)};
        const Real hits = toReal(load(m.hits[r] + i));
        storePlane(p.launch.destination, at,
                   hits * Real(s.strengthPerCount) + loadPlane(p.launch.image.values, at) * Real(s.blendKeep));
      }
    }
  }

  const FastPlane<Radius>& p;
  const GrainSettings& s;
  TileMemory& m;
  const int x0, y0, width, rows, span;
  // cell * 2^-32: a state times this is the uniform number times the cell, as a power of two keeps the rounding.
  const float cellUnit;

  // The sample.
  float ox = 0.0f, oy = 0.0f;
  int leastColumns = 0, mostColumns = 0, columnBase = 0;
  int shift = 0;
  bool shiftIsOne = true;
  float columnDistance[columnsAtOnce] = {};
  Row rowOf[tileRows] = {};
  std::vector<Cell> cells;
  int deferred = 0;
};

}  // namespace morvellan::MORVELLAN_TARGET::grain

#endif
