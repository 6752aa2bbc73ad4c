// The Soup's kernels on an HD frame against a copy of the same bytes, on one thread.
#include <benchmark/benchmark.h>
#include <tbb/global_control.h>

#include "device/memory.h"
#include "film/soup.h"
#include "tests/support/film_settings.h"

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

constexpr int width = 1920;
constexpr int height = 1080;
constexpr size_t count = static_cast<size_t>(width) * height;

struct SoupFrame
{
  Buffer<float> exposure{count * 3}, density{count * 3}, alpha{count}, image{count * 4}, image2{count * 4};

  SoupFrame()
  {
    const std::vector<float> light = settings::everyHue(count);
    std::vector<float> e(light.size()), d(light.size(), 0.000743f), a(count, 1.0f);
    for (size_t i = 0; i < light.size(); ++i)
      e[i] = light[i] * 880.0f;
    copy(exposure.data(), e.data(), e.size() * 4, CopyKind::HostToDevice);
    copy(density.data(), d.data(), d.size() * 4, CopyKind::HostToDevice);
    copy(alpha.data(), a.data(), a.size() * 4, CopyKind::HostToDevice);
    fill(image.data(), 0, count * 16);
    fill(image2.data(), 0, count * 16);
  }

  SoupArguments arguments(const SoupLook& look, int inputGamut = 47) const
  {
    return {.exposure = exposure.data(),
            .image = image.data(),
            .image2 = image2.data(),
            .planes = {.alpha = alpha.data()},
            .density = density.data(),
            .width = width,
            .height = height,
            .channels = 4,
            .look = look,
            .exit = makeSoupExit(inputGamut != 47, inputGamut)};
  }
};

void perPixel(benchmark::State& state)
{
  state.counters["ns/px"] = benchmark::Counter(
      static_cast<double>(count) * 1e-9, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

// Reads and writes of the Soup: seven floats in, two frames of four out.
void memoryCopy(benchmark::State& state)
{
  const SoupFrame frame;
  for ([[maybe_unused]] auto _ : state)
  {
    copy(frame.image.data(), frame.image2.data(), count * 16, CopyKind::DeviceToDevice);
    copy(frame.image2.data(), frame.exposure.data(), count * 12, CopyKind::DeviceToDevice);
    synchronize();
  }
  perPixel(state);
}
BENCHMARK(memoryCopy)->Name("soup/memory_copy")->Unit(benchmark::kMillisecond);

SoupLook defaults()
{
  SoupLook look;
  look.tone = makeToneCurve(settings::defaultTone());
  look.density = settings::defaultDensity();
  return look;
}

SoupLook everything(bool zones)
{
  SoupLook look = defaults();
  look.cast = makeCast({.live = true, .row = 45, .greenMagenta = 0.1f, .redCyan = -0.1f});
  const ZoneSettings zone = zones ? settings::zone(1, true) : ZoneSettings{};
  look.attributes =
      makeAttributeEngine(settings::everyAttribute(zone), true, settings::refinements(soupRefinements, zone));
  return look;
}

void run(benchmark::State& state, const char* kernel, const SoupLook& look, int inputGamut = 47)
{
  const tbb::global_control oneThread(tbb::global_control::max_allowed_parallelism, 1);
  const SoupFrame frame;
  const SoupArguments arguments = frame.arguments(look, inputGamut);
  for ([[maybe_unused]] auto _ : state)
  {
    launchSoup(Queue{}, kernel, arguments);
    synchronize();
  }
  perPixel(state);
}

void soupDefaults(benchmark::State& state)
{
  run(state, "film_soup_cuda_out", defaults());
}
void soupDefaultsToInput(benchmark::State& state)
{
  run(state, "film_soup_cuda_out", defaults(), 11);
}
void soupBleach(benchmark::State& state)
{
  run(state, "film_soup_cuda_out_bleach", defaults());
}
void soupEverything(benchmark::State& state)
{
  run(state, "film_soup_cuda_out_hue_chr_vib", everything(false));
}
void soupEverythingInZones(benchmark::State& state)
{
  run(state, "film_soup_cuda_out_hue_chr_vib", everything(true));
}

BENCHMARK(soupDefaults)->Name("soup/defaults")->Unit(benchmark::kMillisecond);
BENCHMARK(soupDefaultsToInput)->Name("soup/defaults_to_logc3")->Unit(benchmark::kMillisecond);
BENCHMARK(soupBleach)->Name("soup/bleach")->Unit(benchmark::kMillisecond);
BENCHMARK(soupEverything)->Name("soup/vectors_and_refinements")->Unit(benchmark::kMillisecond);
BENCHMARK(soupEverythingInZones)->Name("soup/vectors_refinements_and_zones")->Unit(benchmark::kMillisecond);

}  // namespace

}  // namespace morvellan::MORVELLAN_TARGET
