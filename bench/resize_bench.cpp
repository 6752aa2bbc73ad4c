// The resampler against zimg's Lanczos on four float planes, HD to UHD and back, on one core and beside a copy of the
// same bytes. Times are per output pixel: ns_px. The frames are far larger than the caches, as real ones are.
// `zimg` may use all that the processor has, `zimgOfLevel` the instruction sets of the level that the resampler runs at
// (MORVELLAN_CPU_LEVEL).
#include "device/host/cpu_level.h"
#include "pipeline/host/resize.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <memory>
#include <new>
#include <stdexcept>

#include <zimg.h>

namespace
{

using morvellan::ImageSize;

constexpr ImageSize hd = {1920, 1080};
constexpr ImageSize uhd = {3840, 2160};

constexpr std::size_t pixelsOf(ImageSize size)
{
  return static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height);
}

// Page-touched, cache-line aligned floats.
class Floats
{
public:
  explicit Floats(std::size_t count) : memory(new (std::align_val_t{64}) float[count])
  {
    for (std::size_t i = 0; i < count; ++i)
      memory[i] = static_cast<float>(i % 1021) * 0.001f;
  }
  ~Floats() { operator delete[](memory, std::align_val_t{64}); }
  Floats(const Floats&) = delete;
  Floats& operator=(const Floats&) = delete;

  float* data() const { return memory; }

private:
  float* memory;
};

void report(benchmark::State& state, ImageSize target)
{
  state.counters["ns_px"] =
      benchmark::Counter(static_cast<double>(pixelsOf(target)) * 1e-9,
                         benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

template <typename Resizer>
void resample(benchmark::State& state, ImageSize from, ImageSize to)
{
  const Floats source(pixelsOf(from) * 4);
  const Floats target(pixelsOf(to) * 4);
  for (auto _ : state)
  {
    Resizer resizer;
    resizer.prepare(morvellan::packedImage<const float>(source.data(), from),
                    morvellan::packedImage(target.data(), to));
    resizer.run();
    benchmark::ClobberMemory();
  }
  report(state, to);
}

// One grey plane's filter graph; four planes go through it one after another.
class ZimgPlane
{
public:
  ZimgPlane(ImageSize from, ImageSize to, zimg_cpu_type_e cpu) : source(formatOf(from)), target(formatOf(to))
  {
    zimg_graph_builder_params params;
    zimg_graph_builder_params_default(&params, ZIMG_API_VERSION);
    params.resample_filter = ZIMG_RESIZE_LANCZOS;
    params.filter_param_a = 3.0;
    params.cpu_type = cpu;
    graph.reset(zimg_filter_graph_build(&source, &target, &params));
    std::size_t bytes = 0;
    if (!graph || zimg_filter_graph_get_tmp_size(graph.get(), &bytes) != ZIMG_ERROR_SUCCESS)
      throw std::runtime_error("zimg cannot build the graph");
    scratch = std::make_unique<Floats>(bytes / sizeof(float) + 16);
  }

  void run(const float* from, float* to) const
  {
    zimg_image_buffer_const in = {ZIMG_API_VERSION, {}};
    in.plane[0].data = from;
    in.plane[0].stride = static_cast<std::ptrdiff_t>(source.width * sizeof(float));
    in.plane[0].mask = ZIMG_BUFFER_MAX;
    zimg_image_buffer out = {ZIMG_API_VERSION, {}};
    out.plane[0].data = to;
    out.plane[0].stride = static_cast<std::ptrdiff_t>(target.width * sizeof(float));
    out.plane[0].mask = ZIMG_BUFFER_MAX;
    if (zimg_filter_graph_process(graph.get(), &in, &out, scratch->data(), nullptr, nullptr, nullptr, nullptr) !=
        ZIMG_ERROR_SUCCESS)
      throw std::runtime_error("zimg failed");
  }

private:
  static zimg_image_format formatOf(ImageSize size)
  {
    zimg_image_format format;
    zimg_image_format_default(&format, ZIMG_API_VERSION);
    format.width = static_cast<unsigned>(size.width);
    format.height = static_cast<unsigned>(size.height);
    format.pixel_type = ZIMG_PIXEL_FLOAT;
    format.color_family = ZIMG_COLOR_GREY;
    return format;
  }

  struct FreeGraph
  {
    void operator()(zimg_filter_graph* graph) const { zimg_filter_graph_free(graph); }
  };

  zimg_image_format source;
  zimg_image_format target;
  std::unique_ptr<zimg_filter_graph, FreeGraph> graph;
  std::unique_ptr<Floats> scratch;
};

zimg_cpu_type_e levelOfZimg()
{
  switch (morvellan::device::chosenCpuLevel().level)
  {
  case morvellan::device::CpuLevel::v4:
    return ZIMG_CPU_X86_AVX512_SKX;
  case morvellan::device::CpuLevel::v3:
    return ZIMG_CPU_X86_AVX2;
  default:
    return ZIMG_CPU_X86_SSE42;
  }
}

void zimgAs(benchmark::State& state, ImageSize from, ImageSize to, zimg_cpu_type_e cpu)
{
  const ZimgPlane plane(from, to, cpu);
  const Floats source(pixelsOf(from) * 4);
  const Floats target(pixelsOf(to) * 4);
  for (auto _ : state)
  {
    for (std::size_t c = 0; c < 4; ++c)
      plane.run(source.data() + c * pixelsOf(from), target.data() + c * pixelsOf(to));
    benchmark::ClobberMemory();
  }
  report(state, to);
}

void zimg(benchmark::State& state, ImageSize from, ImageSize to)
{
  zimgAs(state, from, to, ZIMG_CPU_AUTO_64B);
}
void zimgOfLevel(benchmark::State& state, ImageSize from, ImageSize to)
{
  zimgAs(state, from, to, levelOfZimg());
}

void copy(benchmark::State& state, ImageSize size)
{
  const Floats source(pixelsOf(size) * 4);
  const Floats target(pixelsOf(size) * 4);
  for (auto _ : state)
  {
    std::memcpy(target.data(), source.data(), pixelsOf(size) * 16);
    benchmark::ClobberMemory();
  }
  report(state, size);
}

void resize(benchmark::State& state, ImageSize from, ImageSize to)
{
  resample<morvellan::Resize>(state, from, to);
}
void resizeTbb(benchmark::State& state, ImageSize from, ImageSize to)
{
  resample<morvellan::ResizeTBB>(state, from, to);
}

BENCHMARK_CAPTURE(copy, uhd, uhd)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(copy, hd, hd)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(zimg, enlarge, hd, uhd)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(zimgOfLevel, enlarge, hd, uhd)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(resize, enlarge, hd, uhd)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(resizeTbb, enlarge, hd, uhd)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(zimg, reduce, uhd, hd)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(zimgOfLevel, reduce, uhd, hd)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(resize, reduce, uhd, hd)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(resizeTbb, reduce, uhd, hd)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

BENCHMARK_MAIN();
