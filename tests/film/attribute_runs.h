// Runs of the attribute engine for its tests.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "device/launch.h"
#include "film/attribute_engine.h"
#include "tests/support/device_arrays.h"
#include "tests/support/engine_test.h"

namespace morvellan::MORVELLAN_TARGET::attribute_runs
{

using Pixel = std::array<float, 3>;

struct apply_attributes
{
  const float* source;
  float* target;
  AttributeEngine engine;
  bool vectors;

  MORVELLAN_KERNEL void operator()(Pixels at) const
  {
    Rgb c[] = {loadRgb(source, at)};
    if (vectors)
      applyAttributes<true>(engine, c);
    else
      applyAttributes<false>(engine, c);
    storeRgb(target, at, c[0]);
  }
};

inline std::vector<float> run(const AttributeEngine& engine, const std::vector<float>& pixels3, bool vectors = true)
{
  const Buffer<float> source = upload(pixels3);
  const Buffer<float> target(pixels3.size());
  launch(Queue{}, pixels(static_cast<int>(pixels3.size() / 3), 1),
         apply_attributes{source.data(), target.data(), engine, vectors});
  return download(target);
}

inline Pixel pixelBy(const AttributeEngine& engine, Pixel p, bool vectors = true)
{
  const std::vector<float> r = run(engine, std::vector<float>(p.begin(), p.end()), vectors);
  return {r[0], r[1], r[2]};
}

// Relative to the largest channel.
inline void expectNear(Pixel actual, Pixel expected, float tolerance, const char* what = "")
{
  const float scale = std::max({std::fabs(expected[0]), std::fabs(expected[1]), std::fabs(expected[2]), 0.01f});
  for (size_t c = 0; c < 3; ++c)
    EXPECT_NEAR(actual[c], expected[c], tolerance * scale) << what << " channel " << c;
}

}  // namespace morvellan::MORVELLAN_TARGET::attribute_runs
