// The inner loops of the host's pixel work, one form for each level of the CPU: filters along a row and across rows of
// RGBA floats. The resampler and the spatial enhancer call them through one table that is chosen at run time.
#pragma once

#include <cstddef>

namespace morvellan
{

namespace device
{
enum class CpuLevel;
}

// Taps of the resampling filter at any scale.
inline constexpr int filterTaps = 6;

// Floats in a pixel.
inline constexpr int rgba = 4;

// Floats that a row buffer must hold beyond its pixels, so that loops over it need no tail.
inline constexpr int rowPadding = 16;

struct LineFunctions
{
  // target[x] = sum over 6 taps of weight * source[first[x] + tap], for `count` pixels. The weights of a pixel begin at
  // weights[phase[x]]: 24 floats, each tap's weight four times over. Reads exactly the pixels that the taps name, and
  // has those of the row that begins nextRow floats after this one fetched meanwhile.
  void (*filterAlongRow)(const float* source, std::ptrdiff_t nextRow, const int* first, const int* phase,
                         const float* weights, int count, float* target);

  // target[i] = sum over 6 rows of weights[row] * rows[row][i], for `count` floats. The rows are padded by rowPadding,
  // the target is not. With `stream` the target bypasses the caches; streamFence makes it visible to other threads.
  void (*filterAcrossRows)(const float* const* rows, const float* weights, int count, bool stream, float* target);
  void (*streamFence)();

  // The spatial enhancer's walk along a row of count + 1 pixels: target pixel 0 is source pixel 0, target pixel x
  // stands between source pixels x and x + 1, with weight frac[x - 1] of the latter and weight curve[x - 1] of the
  // curvature over the four nearest. Samples past an edge are held at the edge.
  void (*enhanceRow)(const float* source, const float* frac, const float* curve, int count, float* target);
};

// The table of a level, which the machine must be able to run.
const LineFunctions& lineFunctions(device::CpuLevel level);

// The table for this machine, as the choice of the CPU engine has it.
const LineFunctions& lineFunctions();

}  // namespace morvellan
