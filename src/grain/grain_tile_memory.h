// The memory of one tile of grain in the fast form, and how a queue names a pixel and a cell.
// Queues are written in whole vectors, so that every row carries `lanes` more than it holds.
#pragma once

#include <cstdint>

#include "device/lanes.h"
#include "grain/grain_records.h"

namespace morvellan::MORVELLAN_TARGET::grain
{

inline constexpr int stripLength = 960;  // pixels: a multiple of every target's lanes, below 1 << xBitsOfRecords
inline constexpr int tileRows = 8;
inline constexpr int columnsAtOnce = 8;
inline constexpr int mostCells = 250;  // columns or rows of cells in reach

// A pixel of the tile and a cell in its reach, packed into a word of a queue.
struct Code
{
  static constexpr int xBits = xBitsOfRecords, rowBits = 3, columnBits = 8;
  static constexpr uint32_t xMask = (1u << xBits) - 1u;
  static uint32_t of(int row, int column, int cellRow)
  {
    return static_cast<uint32_t>(row) << xBits | static_cast<uint32_t>(column) << (xBits + rowBits) |
           static_cast<uint32_t>(cellRow) << (xBits + rowBits + columnBits);
  }
  static uint32_t xOf(uint32_t code) { return code & xMask; }
  static int rowOf(uint32_t code) { return static_cast<int>(code >> xBits & (tileRows - 1)); }
  static Int xOf(Word code) { return toInt(code & Word(xMask)); }
  static Int rowOf(Word code) { return toInt(shiftRight<xBits>(code) & Word(tileRows - 1)); }
  static Int columnOf(Word code) { return toInt(shiftRight<xBits + rowBits>(code) & Word((1u << columnBits) - 1u)); }
  static Int cellRowOf(Word code) { return toInt(shiftRight<xBits + rowBits + columnBits>(code)); }
};

// The memory of one tile, reused from sample to sample.
struct TileMemory
{
  static constexpr int row = stripLength + lanes;
  static constexpr int deferredCapacity = 4096;

  alignas(64) uint32_t columns[columnsAtOnce][row];  // (cx & 65535) + seed
  alignas(64) int columnCount[row];
  alignas(64) int threshold[tileRows][row];
  // Records of a row whose shift is not one for all pixels.
  alignas(64) int shifted[tileRows][mostSharedLaunches + 2][row];
  alignas(64) int hits[mostSharedLaunches][tileRows][row];
  alignas(64) uint32_t further[tileRows][row];  // a bit for each of several channels that a second grain covers
  // Pixels to draw a first grain for: x in the record of the largest draw that means one grain. Then those that the
  // grain covers: x, and beside it the draw.
  alignas(64) uint32_t queue[row];
  alignas(64) uint32_t hitDraw[row];
  // Pixels to draw further grains for: where, draw, and state after the first grain.
  alignas(64) uint32_t deferredCode[deferredCapacity + row], deferredDraw[deferredCapacity + row],
      deferredState[deferredCapacity + row];
};

}  // namespace morvellan::MORVELLAN_TARGET::grain
