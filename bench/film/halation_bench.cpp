// The halation stage on an HD frame against a copy of the frame, on one thread.
#include "film/halation.h"

#include "bench/film/hd_frame.h"

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

void halationStage(benchmark::State& state)
{
  const tbb::global_control oneThread(tbb::global_control::max_allowed_parallelism, 1);
  const Buffer<float> input = bench::hdValues(4);
  const Buffer<float> image = bench::hdValues(4);
  const Buffer<float> blur = bench::hdValues(4);
  const HalationSettings settings{.breadth = static_cast<float>(state.range(0)) * 1e-3f,
                                  .saturation = 1.2f,
                                  .amount = {1.0f, 0.15f, 0.07f},
                                  .keep = {0.7f, 0.7f, 0.7f},
                                  .inputGamut = static_cast<int>(state.range(1))};
  for ([[maybe_unused]] auto _ : state)
  {
    halation(Queue{}, image.data(), blur.data(), bench::width, bench::height, 4, settings);
    synchronize();
  }
  bench::perPixel(state);
}
BENCHMARK(halationStage)
    ->ArgNames({"breadth", "gamut"})
    ->Unit(benchmark::kMillisecond)
    ->Args({125, 47})
    ->Args({500, 47})
    ->Args({125, 31});

}  // namespace

}  // namespace morvellan::MORVELLAN_TARGET
