// Grain on one HD plane on one thread: the form that renders, the literal kernels, and a copy of the plane.
// Times are per pixel and channel.
#include "grain/grain.h"

#include "bench/film/hd_frame.h"
#include "tests/grain/grain_plane.h"

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

using grainplane::Controls;
using grainplane::Image;

enum Content
{
  photo,
  dark,
  middle,
  bright
};

// A picture-like plane: slopes with texture, from black to white.
Image imageOf(Content content)
{
  Image image =
      grainplane::flat(bench::width, bench::height, content == dark ? 0.18f : (content == middle ? 0.5f : 0.9f));
  if (content != photo)
    return image;
  Image picture = image;
  for (size_t i = 0; i < picture.values.size(); ++i)
  {
    const auto x = static_cast<float>(i % bench::width) / bench::width;
    const size_t row = i / bench::width;
    const auto y = static_cast<float>(row) / bench::height;
    const auto noise = static_cast<float>((i * 2654435761u) >> 8 & 0xffff) / 65535.0f;
    picture.values[i] = 0.05f + 0.6f * x * y + 0.2f * (1.0f - y) + 0.1f * noise;
  }
  return picture;
}

void planeCopy(benchmark::State& state)
{
  const Buffer<float> from = bench::hdValues(1);
  const Buffer<float> to = bench::hdValues(1);
  for ([[maybe_unused]] auto _ : state)
  {
    copy(to.data(), from.data(), from.size() * sizeof(float), CopyKind::DeviceToDevice);
    synchronize();
  }
  bench::perPixel(state);
}
BENCHMARK(planeCopy)->Unit(benchmark::kMillisecond);

void run(benchmark::State& state, const Controls& controls, Content content, bool literal)
{
  const tbb::global_control oneThread(tbb::global_control::max_allowed_parallelism, 1);
  const GrainSettings settings = settingsOf(controls, bench::width, bench::height);
  const grainplane::Bench plane(imageOf(content), settings, grainplane::tablesOf(settings));
  // The literal kernels take seconds for a frame: a sixteenth of the rows will do.
  const int rows = literal ? bench::height / 16 : bench::height;
  const GrainLaunch launch = plane.launch(bench::height / 3 * (literal ? 1 : 0), rows);
  for ([[maybe_unused]] auto _ : state)
  {
    literal ? renderGrainByKernel({}, launch, GrainSearch::Plain) : renderGrain({}, launch);
    synchronize();
  }
  state.counters["ns/px"] =
      benchmark::Counter(static_cast<double>(bench::width) * rows * 1e-9,
                         benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void plain(benchmark::State& state)
{
  run(state, {}, static_cast<Content>(state.range(0)), false);
}
BENCHMARK(plain)->ArgName("content")->Unit(benchmark::kMillisecond)->DenseRange(photo, bright);

void plainLiteral(benchmark::State& state)
{
  run(state, {}, photo, true);
}
BENCHMARK(plainLiteral)->Unit(benchmark::kMillisecond);

void variance(benchmark::State& state)
{
  run(state, {.variance = static_cast<double>(state.range(0))}, photo, false);
}
BENCHMARK(variance)->ArgName("variance")->Unit(benchmark::kMillisecond)->Arg(1)->Arg(3);

void varianceLiteral(benchmark::State& state)
{
  run(state, {.variance = 1.0}, photo, true);
}
BENCHMARK(varianceLiteral)->Unit(benchmark::kMillisecond);

// Three channels of one grain, one after another and together.
void channels(benchmark::State& state)
{
  const tbb::global_control oneThread(tbb::global_control::max_allowed_parallelism, 1);
  const GrainSettings settings =
      grainplane::settingsOf(Controls{.variance = static_cast<double>(state.range(1))}, bench::width, bench::height);
  const grainplane::Tables tables = grainplane::tablesOf(settings);
  std::vector<grainplane::Bench> planes;
  planes.reserve(3);
  std::vector<GrainLaunch> launches;
  for (const float gain : {1.0f, 0.9f, 0.7f})
  {
    Image image = imageOf(photo);
    for (float& value : image.values)
      value *= gain;
    launches.push_back(planes.emplace_back(image, settings, tables).launch());
  }
  for ([[maybe_unused]] auto _ : state)
  {
    if (state.range(0) != 0)
      renderGrain({}, launches);
    else
      for (const GrainLaunch& launch : launches)
        renderGrain({}, launch);
    synchronize();
  }
  state.counters["ns/px"] =
      benchmark::Counter(3.0 * bench::width * bench::height * 1e-9,
                         benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
BENCHMARK(channels)
    ->ArgNames({"together", "variance"})
    ->Unit(benchmark::kMillisecond)
    ->Args({0, 0})
    ->Args({1, 0})
    ->Args({0, 1})
    ->Args({1, 1});

void size(benchmark::State& state)
{
  run(state, {.size = static_cast<double>(state.range(0))}, photo, false);
}
BENCHMARK(size)->ArgName("size")->Unit(benchmark::kMillisecond)->Arg(13)->Arg(50);

}  // namespace

}  // namespace morvellan::MORVELLAN_TARGET
