// What the benchmarks of this folder share: an HD frame of mixed values, and times per pixel.
#pragma once

#include <vector>

#include <benchmark/benchmark.h>
#include <tbb/global_control.h>

#include "device/memory.h"
#include "device/queue.h"

namespace morvellan::MORVELLAN_TARGET::bench
{

inline constexpr int width = 1920;
inline constexpr int height = 1080;
inline constexpr size_t pixelCount = static_cast<size_t>(width) * height;

// Values in [0.1, 0.76], `channels` a pixel.
inline Buffer<float> hdValues(int channels)
{
  std::vector<float> host(pixelCount * static_cast<size_t>(channels));
  for (size_t i = 0; i < host.size(); ++i)
    host[i] = static_cast<float>((i * 2654435761u) >> 8 & 0xffff) * 1e-5f + 0.1f;
  Buffer<float> buffer(host.size());
  copy(buffer.data(), host.data(), host.size() * sizeof(float), CopyKind::HostToDevice);
  return buffer;
}

// Counter ns/px: nanoseconds a pixel of the frame (shown as seconds per 1e9 pixels).
inline void perPixel(benchmark::State& state)
{
  state.counters["ns/px"] =
      benchmark::Counter(static_cast<double>(pixelCount) * 1e-9,
                         benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

}  // namespace morvellan::MORVELLAN_TARGET::bench
