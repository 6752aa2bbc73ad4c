// Grain on one channel: what a launch takes, and the launch. Lengths are in pixels of the plane.
#pragma once

#include <cstdint>

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

// Runs as render_pixelR or render_variance: on CUDA the kernel of that name, on the CPU a form that gives the same
// bits faster (fast_grain.h).
void renderGrain(const Queue& queue, const GrainLaunch& launch);

// The kernel of that name on every target.
void renderGrainLiterally(const Queue& queue, const GrainLaunch& launch);

}  // namespace morvellan::MORVELLAN_TARGET
