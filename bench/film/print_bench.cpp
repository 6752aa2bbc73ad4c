// The print's kernels on an HD frame against a copy of the same bytes, on one thread.
#include <benchmark/benchmark.h>
#include <tbb/global_control.h>

#include "device/memory.h"
#include "film/print.h"
#include "tests/support/film_settings.h"

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

constexpr int width = 1920;
constexpr int height = 1080;
constexpr size_t count = static_cast<size_t>(width) * height;

void perPixel(benchmark::State& state)
{
  state.counters["ns/px"] = benchmark::Counter(
      static_cast<double>(count) * 1e-9, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

// The print reads a frame and writes two.
void memoryCopy(benchmark::State& state)
{
  const Buffer<float> image(count * 4), image2(count * 4), image3(count * 4);
  for (const Buffer<float>* b : {&image, &image2, &image3})
    fill(b->data(), 0, count * 16);
  for ([[maybe_unused]] auto _ : state)
  {
    copy(image2.data(), image.data(), count * 16, CopyKind::DeviceToDevice);
    copy(image3.data(), image.data(), count * 16, CopyKind::DeviceToDevice);
    synchronize();
  }
  perPixel(state);
}
BENCHMARK(memoryCopy)->Name("print/memory_copy")->Unit(benchmark::kMillisecond);

PrintSettings stock(int display)
{
  PrintSettings s;
  s.profile = 2;
  s.display = display;
  s.peak = display == 6 ? 1000.0f : 100.0f;
  s.density = {.floor = {0.01f, 0.01f, 0.01f}, .ceiling = {1.6f, 1.6f, 1.6f}, .scale = 1.0f / 0.71f, .slope = 2.5f};
  return s;
}

// The kernel works in place, so that from the second iteration on it reads codes as light: its speed does not depend on
// values.
void run(benchmark::State& state, std::string_view kernel, const PrintSettings& settings)
{
  const tbb::global_control oneThread(tbb::global_control::max_allowed_parallelism, 1);
  const std::vector<float> light = settings::everyHue(count, 4);
  const Buffer<float> image(count * 4), image2(count * 4);
  copy(image.data(), light.data(), count * 16, CopyKind::HostToDevice);
  fill(image2.data(), 0, count * 16);
  PrintArguments a;
  a.image = image.data();
  a.image2 = image2.data();
  a.width = width;
  a.height = height;
  a.look = makePrintLook(settings);
  for ([[maybe_unused]] auto _ : state)
  {
    launchPrint(Queue{}, kernel, a);
    synchronize();
  }
  perPixel(state);
}

void printEverything(benchmark::State& state)
{
  PrintSettings s = stock(0);
  const std::vector<RefinementSettings> refinements = settings::refinements(printRefinements);
  s.attributes = settings::everyAttribute();
  s.refine = true;
  s.refinements = refinements;
  run(state, "film_print_cuda_out_hue_chr_vib_pfe", s);
}

void printCurves(benchmark::State& state)
{
  PrintSettings s = stock(0);
  s.tone = settings::everyTone();
  s.gamma.live[0] = true;
  run(state, "film_print_cuda_out_pfe", s);
}

void printPlain(benchmark::State& state)
{
  run(state, "film_print_cuda_out_pfe", stock(0));
}
void printBleach(benchmark::State& state)
{
  run(state, "film_print_cuda_out_bleach_pfe", stock(0));
}
void display709(benchmark::State& state)
{
  run(state, "film_print_cuda_out_pfe_display", stock(0));
}
void displayPq(benchmark::State& state)
{
  run(state, "film_print_cuda_out_pfe_display", stock(6));
}

BENCHMARK(display709)->Name("print/display_rec709")->Unit(benchmark::kMillisecond);
BENCHMARK(displayPq)->Name("print/display_pq")->Unit(benchmark::kMillisecond);
BENCHMARK(printPlain)->Name("print/plain")->Unit(benchmark::kMillisecond);
BENCHMARK(printCurves)->Name("print/gamma_and_curves")->Unit(benchmark::kMillisecond);
BENCHMARK(printBleach)->Name("print/bleach")->Unit(benchmark::kMillisecond);
BENCHMARK(printEverything)->Name("print/vectors_and_refinements")->Unit(benchmark::kMillisecond);

}  // namespace

}  // namespace morvellan::MORVELLAN_TARGET
