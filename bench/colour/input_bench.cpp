// The way in and out of a frame and the two plain input stages, of an HD frame on one thread: exposure and soft clip in
// place and to another frame, upload from and download to ordinary memory, RGB widened and packed. `frameCopy` of the
// same binary is the floor.
#include <vector>

#include "bench/film/hd_frame.h"
#include "colour/colour_kernels.h"
#include "device/memory.h"

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

void runNamed(benchmark::State& state, const char* name, const SoftClip& softClip = {})
{
  const tbb::global_control oneThread(tbb::global_control::max_allowed_parallelism, 1);
  const Buffer<float> source = bench::hdValues(4);
  const Buffer<float> destination = bench::hdValues(4);
  const ColourKernel kernel = ColourKernel::named(name);
  const ColourArguments arguments{.source = source.data(),
                                  .destination = destination.data(),
                                  .width = bench::width,
                                  .height = bench::height,
                                  .value = std::string_view(name).starts_with("exposure_log") ? 0.0f : 1.0f,
                                  .softClip = softClip};
  for ([[maybe_unused]] auto _ : state)
  {
    runColour(Queue{}, kernel, arguments);
    synchronize();
  }
  bench::perPixel(state);
}

void exposure(benchmark::State& state, const char* name)
{
  runNamed(state, name);
}
BENCHMARK_CAPTURE(exposure, log, "exposure_log")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(exposure, log_in_out, "exposure_log_in_out")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(exposure, linear, "exposure_linear_gamma")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(exposure, linear_in_out, "exposure_linear_gamma_in_out")->Unit(benchmark::kMillisecond);

void softClip(benchmark::State& state, const char* name)
{
  runNamed(state, name, {.ceiling = 0.5f, .comp = 2.0f, .floor = 0.15f, .expand = -0.3f});
}
BENCHMARK_CAPTURE(softClip, inPlace, "highlights_shadows_Kernel")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(softClip, in_out, "highlights_shadows_Kernel_in_out")->Unit(benchmark::kMillisecond);

void layout(benchmark::State& state, const char* name)
{
  runNamed(state, name);
}
BENCHMARK_CAPTURE(layout, widen, "RGB_RGBA_Kernel")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(layout, pack, "RGBA_RGB_Kernel")->Unit(benchmark::kMillisecond);

// Between ordinary memory, which a host's images are, and a frame of the device.
void transfer(benchmark::State& state, bool up)
{
  const auto channels = static_cast<size_t>(state.range(0));
  const Buffer<float> frame = bench::hdValues(4);
  std::vector<float> image(bench::pixelCount * channels, 0.5f);
  const size_t bytes = image.size() * sizeof(float);
  for ([[maybe_unused]] auto _ : state)
  {
    if (up)
      copy(frame.data(), image.data(), bytes, CopyKind::Default);
    else
      copy(image.data(), frame.data(), bytes, CopyKind::Default);
    synchronize();
  }
  bench::perPixel(state);
}
BENCHMARK_CAPTURE(transfer, upload, true)->ArgName("channels")->Unit(benchmark::kMillisecond)->Arg(3)->Arg(4);
BENCHMARK_CAPTURE(transfer, download, false)->ArgName("channels")->Unit(benchmark::kMillisecond)->Arg(3)->Arg(4);

}  // namespace

}  // namespace morvellan::MORVELLAN_TARGET
