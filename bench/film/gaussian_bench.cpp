// The recursive Gaussian of one HD plane, both axes, against a copy of the same plane, on one thread.
#include <benchmark/benchmark.h>
#include <tbb/global_control.h>

#include "device/memory.h"
#include "film/gaussian.h"

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

constexpr int width = 1920;
constexpr int height = 1080;
constexpr size_t count = static_cast<size_t>(width) * height;

Buffer<float> testPlane()
{
  Buffer<float> plane(count);
  std::vector<float> host(count);
  for (size_t i = 0; i < count; ++i)
    host[i] = static_cast<float>((i * 2654435761u) >> 8 & 0xffff) * 1e-5f + 0.1f;
  copy(plane.data(), host.data(), count * 4, CopyKind::HostToDevice);
  return plane;
}

void perPixel(benchmark::State& state)
{
  state.counters["ns/px"] = benchmark::Counter(
      static_cast<double>(count) * 1e-9, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void planeCopy(benchmark::State& state)
{
  const Buffer<float> from = testPlane();
  const Buffer<float> to = testPlane();
  for ([[maybe_unused]] auto _ : state)
  {
    copy(to.data(), from.data(), count * 4, CopyKind::DeviceToDevice);
    synchronize();
  }
  perPixel(state);
}
BENCHMARK(planeCopy)->Unit(benchmark::kMillisecond);

void blur(benchmark::State& state)
{
  const tbb::global_control oneThread(tbb::global_control::max_allowed_parallelism, 1);
  const float sigma = static_cast<float>(state.range(0)) * 0.1f;
  const Buffer<float> source = testPlane();
  const Buffer<float> scratch = testPlane();
  const Buffer<float> target = testPlane();
  for ([[maybe_unused]] auto _ : state)
  {
    blurPlane(Queue{}, source.data(), scratch.data(), target.data(), width, height, sigma);
    synchronize();
  }
  perPixel(state);
}
BENCHMARK(blur)->Unit(benchmark::kMillisecond)->Arg(2)->Arg(4)->Arg(8)->Arg(16)->Arg(32)->Arg(64)->Arg(128)->Arg(163);

}  // namespace

}  // namespace morvellan::MORVELLAN_TARGET
