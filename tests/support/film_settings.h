// Settings of the look for tests and benchmarks: everything on at once, with values that reach every branch, and
// frames that hold every hue.
#pragma once

#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

#include "film/attributes.h"
#include "film/tone.h"

namespace morvellan::MORVELLAN_TARGET::settings
{

inline ZoneSettings zone(int mode, bool both)
{
  return {.mode = mode, .both = both, .low = 0.7f, .lowRange = 1.4f, .high = 1.3f, .highRange = 0.8f};
}

inline AttributeBlock everyAttribute(ZoneSettings z = {})
{
  AttributeBlock b;
  b.saturation = {.vectorLive = true,
                  .axis = {1.3f, 0.8f, 1.1f, 0.7f, 1.2f, 0.9f},
                  .vectorStrength = 1.1f,
                  .custom = {.live = true, .hue = 3.2f, .width = 0.5f, .strength = 1.4f},
                  .zone = z};
  b.hue = {.vectorLive = true,
           .axis = {0.2f, -0.3f, 0.1f, 0.25f, -0.15f, 0.3f},
           .vectorStrength = 0.5f,
           .custom = {.live = true, .hue = 4.1f, .width = 0.6f, .strength = 0.1f},
           .zone = z};
  b.chroma = {.vectorLive = true,
              .axis = {0.1f, -0.2f, 0.15f, 0.05f, -0.1f, 0.2f},
              .vectorStrength = 0.8f,
              .custom = {.live = true, .hue = 1.3f, .width = 0.8f, .strength = 1.5f},
              .zone = z};
  b.vibrance = {.vectorLive = true,
                .axis = {0.2f, 0.1f, -0.2f, 0.3f, -0.1f, 0.15f},
                .vectorStrength = 0.1f,
                .custom = {.live = true, .hue = 0.4f, .width = 1.0f, .strength = 0.3f},
                .zone = z};
  return b;
}

// `count` live refinements around the hue circle, each with its four bands.
inline std::vector<RefinementSettings> refinements(int count, ZoneSettings z = {})
{
  std::vector<RefinementSettings> all;
  for (int i = 0; i < count; ++i)
  {
    const float hue = static_cast<float>(i) * 0.53f;
    const float sign = i % 2 == 0 ? 1.0f : -1.0f;
    all.push_back({.live = true,
                   .saturation = {.live = true, .hue = hue, .width = 0.4f, .strength = 1.0f + sign * 0.1f},
                   .hue = {.live = true, .hue = hue + 0.1f, .width = 0.5f, .strength = sign * 0.2f},
                   .chroma = {.live = true, .hue = hue + 0.2f, .width = 0.6f, .strength = std::exp2(sign * 0.3f)},
                   .vibrance = {.live = true, .hue = hue + 0.3f, .width = 0.7f, .strength = sign * 0.1f},
                   .zone = z});
  }
  return all;
}

// A tone curve with every part bent, both ways.
inline ToneSettings everyTone()
{
  return {.live = true,
          .toePivot = 0.56f,
          .toe = {0.02f, -0.1f, 0.3f},
          .knee = {-0.093f, 0.1f, -0.2f},
          .shoulderPivot = 0.32f,
          .shoulder = {0.145f, -0.2f, 0.5f},
          .kneeCentre = 0.3892f};
}

// The Soup's curves and densities as a new effect has them.
inline ToneSettings defaultTone()
{
  return {.live = true,
          .toePivot = 0.669f - 0.108993157f,
          .toe = {0.02f, 0.02f, 0.02f},
          .knee = {-0.093f, -0.093f, -0.093f},
          .shoulderPivot = 0.334f - 0.011241447f,
          .shoulder = {0.145f, 0.145f, 0.145f},
          .kneeCentre = 0.3892f};
}

inline DensityCurve defaultDensity()
{
  return {.floor = {0.073f, 0.073f, 0.073f},
          .ceiling = {1.168f, 1.168f, 1.168f},
          .scale = 1.0f / 0.71f,
          .slope = 0.014f * 50.0f + 1.5f};
}

// Interleaved linear pixels, `channels` floats each: hues all around, from deep shadows to highlights.
inline std::vector<float> everyHue(size_t pixels, int channels = 3)
{
  std::vector<float> frame(pixels * static_cast<size_t>(channels));
  uint32_t state = 12345;
  const auto next = [&]
  {
    state = state * 1664525u + 1013904223u;
    return static_cast<float>(state >> 8) * (1.0f / 16777216.0f);
  };
  for (size_t i = 0; i < pixels; ++i)
  {
    const float level = std::exp2(next() * 14.0f - 9.0f);
    for (int c = 0; c < channels; ++c)
      frame[i * static_cast<size_t>(channels) + static_cast<size_t>(c)] = c == 3 ? next() : level * (0.05f + next());
  }
  return frame;
}

}  // namespace morvellan::MORVELLAN_TARGET::settings
