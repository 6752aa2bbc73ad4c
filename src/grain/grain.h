// Grain on one channel: what a launch takes, and the launch. Lengths are in pixels of the plane.
#pragma once

#include <cstdint>
#include <span>

#include "device/queue.h"
#include "device/texture.h"
#include "grain/offsets.h"

namespace morvellan::MORVELLAN_TARGET
{

// One channel's grain. A `sigma` of 0 has all grains of one size; the radius law is read otherwise.
struct GrainSettings
{
  uint32_t seed;
  int count;  // samples a pixel
  float soft;
  float radius, radiusSquared;
  float cell, invCell;  // side of a grid cell, and its inverse
  float sigma, logSigma, logMu, radiusMax;
  float targetScaleX, targetScaleY;
  int levels;  // last index of the tables
  float blendKeep, strengthPerCount;
};

// destination = hits * strengthPerCount + image * blendKeep on rows [firstRow, firstRow + rows) of a width * height
// plane. Image, tables, offsets (settings.count of them, from filterOffsets) and destination are device memory that
// outlives the launch; the image is not the destination.
struct GrainLaunch
{
  Texture2d image;
  Texture1d lambda, exp;
  const FilterOffset* offsets;
  float* destination;
  int width, height;
  int firstRow, rows;
  GrainSettings settings;
};

std::vector<FilterOffset> filterOffsets(const GrainSettings& settings);

// Whether the grain of two launches lies at the same places, so that they may be rendered together: all of their
// settings agree but how strong it is.
bool sharesGrain(const GrainLaunch& a, const GrainLaunch& b);

inline constexpr int mostSharedLaunches = 3;

// One to three launches that share their grain, as render_pixelR or render_variance. On CUDA these are kernels of that
// name, a launch each; on the CPU a form that gives the same bits faster, all planes in one walk (fast_grain.h).
void renderGrain(const Queue& queue, std::span<const GrainLaunch> launches);

inline void renderGrain(const Queue& queue, const GrainLaunch& launch)
{
  renderGrain(queue, std::span(&launch, 1));
}

// The kernels on every target: `Plain` tries one cell of a point's reach after another, `OccupiedFirst` looks which of
// them hold grains and tries those. The grain is the same.
enum class GrainSearch
{
  Plain,
  OccupiedFirst
};
void renderGrainByKernel(const Queue& queue, const GrainLaunch& launch, GrainSearch search);

}  // namespace morvellan::MORVELLAN_TARGET
