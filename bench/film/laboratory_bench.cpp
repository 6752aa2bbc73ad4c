// The film laboratory on an HD frame, its fast ways and the chain of kernels, on one thread.
#include "film/laboratory.h"

#include "bench/film/hd_frame.h"

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

LabSettings defaults()
{
  return {.silver = {1.0f, 1.0f, 1.0f},
          .developmentTime = 100.0f,
          .concentration = 1.0f,
          .agitation = 3,
          .replenish = 0.2f,
          .spectrumBand = 0.5f,
          .lowDiffusion = false,
          .highDiffusion = false,
          .lowWidth = 0.0f,
          .detailGain = 0.0f,
          .areaScale = static_cast<float>(bench::width) * 0.00041666668f * static_cast<float>(bench::height),
          .inputGamut = 47};
}

template <typename Run>
void develop(benchmark::State& state, const LabSettings& settings, const Run& run)
{
  const tbb::global_control oneThread(tbb::global_control::max_allowed_parallelism, 1);
  const Buffer<float> input = bench::hdValues(4);
  const Buffer<float> source = bench::hdValues(4);
  const Buffer<float> second = bench::hdValues(4);
  const Buffer<float> exposure = bench::hdValues(3);
  const Buffer<float> density = bench::hdValues(3);
  const Buffer<float> alpha = bench::hdValues(1);
  for ([[maybe_unused]] auto _ : state)
  {
    if (settings.lowDiffusion || settings.highDiffusion)
    {
      state.PauseTiming();
      copy(source.data(), input.data(), input.size() * sizeof(float), CopyKind::DeviceToDevice);
      state.ResumeTiming();
    }
    run(Queue{},
        LabFrame{.source = source.data(),
                 .second = second.data(),
                 .exposure = exposure.data(),
                 .density = density.data(),
                 .alpha = alpha.data(),
                 .width = bench::width,
                 .height = bench::height,
                 .channels = 4},
        settings);
    synchronize();
  }
  bench::perPixel(state);
}

void laboratoryPlain(benchmark::State& state)
{
  LabSettings settings = defaults();
  settings.agitation = static_cast<int>(state.range(0));
  settings.inputGamut = static_cast<int>(state.range(1));
  develop(state, settings, laboratory);
}
BENCHMARK(laboratoryPlain)
    ->ArgNames({"agitation", "gamut"})
    ->Unit(benchmark::kMillisecond)
    ->Args({3, 47})
    ->Args({5, 47})
    ->Args({3, 31});

void laboratoryPlainByKernels(benchmark::State& state)
{
  develop(state, defaults(), laboratoryByKernels);
}
BENCHMARK(laboratoryPlainByKernels)->Unit(benchmark::kMillisecond);

LabSettings diffusing(int64_t low, int64_t high)
{
  LabSettings settings = defaults();
  settings.lowDiffusion = low != 0;
  settings.highDiffusion = high != 0;
  settings.lowWidth = low != 0 ? 0.5f : 0.0f;
  settings.detailGain = high != 0 ? 0.4f : 0.0f;
  return settings;
}

void laboratoryDiffusion(benchmark::State& state)
{
  develop(state, diffusing(state.range(0), state.range(1)), laboratory);
}
BENCHMARK(laboratoryDiffusion)
    ->ArgNames({"low", "high"})
    ->Unit(benchmark::kMillisecond)
    ->Args({1, 1})
    ->Args({0, 1})
    ->Args({1, 0});

void laboratoryDiffusionByKernels(benchmark::State& state)
{
  develop(state, diffusing(1, 1), laboratoryByKernels);
}
BENCHMARK(laboratoryDiffusionByKernels)->Unit(benchmark::kMillisecond);

}  // namespace

}  // namespace morvellan::MORVELLAN_TARGET
