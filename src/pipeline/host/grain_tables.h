// The lookup tables of grain: for every image level the Poisson intensity of grains in a cell, and the chance of a cell
// without one. A table is built when what it rests on changes, and channels whose grain agrees share one.
//
// The model is that of A. Newson, J. Delon and B. Galerne, "A stochastic film grain model for resolution-independent
// rendering" (2017).
#pragma once

#include "pipeline/host/frame_params.h"

#include <array>
#include <cstddef>
#include <optional>
#include <span>

namespace morvellan
{

// What a pair of tables rests on. Lengths are in pixels.
struct GrainTableShape
{
  float radius;
  float cell;
  float sigma;  // deviation of the radius; 0 when all grains are of one size
  int levels;   // last index

  bool operator==(const GrainTableShape&) const = default;
};

// lambda[i] = -scale * ln(1 - i / (levels + 0.1)), exp[i] = e^-lambda[i], where scale = cell^2 / (pi * (sigma^2 +
// radius^2)). Every operation is a float operation in this order; logarithm and exponential are computed in double and
// rounded once, with additions, products and divisions alone, so the same tables come out on every machine. Both spans
// hold levels + 1 entries. Entry 0 is exactly 0 and 1; from 2097152 entries on the last intensity is infinite, as 1 - i
// / (levels + 0.1) is then 0 in float.
void buildGrainTable(const GrainTableShape& shape, std::span<float> lambda, std::span<float> exp);

class GrainTables
{
public:
  struct Storage
  {
    std::span<float> lambda;
    std::span<float> exp;
  };

  GrainTables() = default;

  // red, green, blue; each span holds at least as many entries as the deepest table asked for, and outlives this
  // object.
  explicit GrainTables(const std::array<Storage, 3>& storage);

  // Brings the tables of the channels that are on up to date (of red's alone in the luminance modes) and puts their
  // addresses into params. The addresses of a channel that is off stay as they are.
  void update(FrameParams& params);

private:
  struct Slot
  {
    Storage storage;
    std::optional<GrainTableShape> built;
  };

  const Storage& tableFor(const GrainTableShape& shape, std::size_t channel);

  std::array<Slot, 3> slots;
};

}  // namespace morvellan
