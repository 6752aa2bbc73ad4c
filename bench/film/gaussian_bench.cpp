// The recursive Gaussian of one HD plane, both axes, and the pitches, against copies of the same memory, on one thread.
#include "film/gaussian.h"

#include "bench/film/hd_frame.h"
#include "film/pitch.h"

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

void frameCopy(benchmark::State& state)
{
  const int channels = static_cast<int>(state.range(0));
  const Buffer<float> from = bench::hdValues(channels);
  const Buffer<float> to = bench::hdValues(channels);
  for ([[maybe_unused]] auto _ : state)
  {
    copy(to.data(), from.data(), from.size() * sizeof(float), CopyKind::DeviceToDevice);
    synchronize();
  }
  bench::perPixel(state);
}
BENCHMARK(frameCopy)->ArgName("channels")->Unit(benchmark::kMillisecond)->Arg(1)->Arg(4);

void blur(benchmark::State& state)
{
  const tbb::global_control oneThread(tbb::global_control::max_allowed_parallelism, 1);
  const float sigma = static_cast<float>(state.range(0)) * 0.1f;
  const Buffer<float> source = bench::hdValues(1);
  const Buffer<float> scratch = bench::hdValues(1);
  const Buffer<float> target = bench::hdValues(1);
  for ([[maybe_unused]] auto _ : state)
  {
    blurPlane(Queue{}, source.data(), scratch.data(), target.data(), bench::width, bench::height, sigma);
    synchronize();
  }
  bench::perPixel(state);
}
BENCHMARK(blur)
    ->ArgName("tenths")
    ->Unit(benchmark::kMillisecond)
    ->Arg(2)
    ->Arg(4)
    ->Arg(8)
    ->Arg(16)
    ->Arg(32)
    ->Arg(64)
    ->Arg(128)
    ->Arg(163);

void pitches(benchmark::State& state)
{
  const tbb::global_control oneThread(tbb::global_control::max_allowed_parallelism, 1);
  const Buffer<float> lab = bench::hdValues(4);
  const Buffer<float> work = bench::hdValues(4);
  const Buffer<float> scratch = bench::hdValues(1);
  PitchGains gains = {1.0f, 1.0f, 1.0f, 1.0f, 1.0f, 1.0f};
  gains[static_cast<size_t>(state.range(0))] = 1.1f;
  for ([[maybe_unused]] auto _ : state)
  {
    benchmark::DoNotOptimize(
        pitchBands(Queue{}, lab.data(), work.data(), scratch.data(), bench::width, bench::height, gains));
    synchronize();
  }
  bench::perPixel(state);
}
BENCHMARK(pitches)->ArgName("band")->Unit(benchmark::kMillisecond)->Arg(0)->Arg(5);

}  // namespace

}  // namespace morvellan::MORVELLAN_TARGET
