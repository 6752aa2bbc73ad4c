// Decode, matrix and encode of one HD RGBA frame on one core: this system's programs beside OpenColorIO's CPU processor
// doing the same conversions in the same process, and a copy of the frame as the floor of both.
#include <cstring>
#include <string>
#include <vector>

#include <OpenColorIO/OpenColorIO.h>
#include <benchmark/benchmark.h>
#include <tbb/global_control.h>

#include "colour/colour_kernels.h"
#include "colour/gamuts.h"
#include "colour/primaries.h"
#include "colour/program.h"
#include "device/memory.h"

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

namespace OCIO = OCIO_NAMESPACE;

constexpr int width = 1920, height = 1080;
constexpr size_t floats = static_cast<size_t>(width) * height * 4;

struct Frames
{
  Frames() : source(floats), destination(floats)
  {
    for (size_t i = 0; i < floats; ++i)
      source.data()[i] = 0.05f + 0.9f * static_cast<float>((i * 2654435761u >> 7) & 0xffff) / 65535.0f;
    std::memset(destination.data(), 0, floats * sizeof(float));
  }
  Buffer<float> source, destination;
};

Frames& frames()
{
  static Frames shared;
  return shared;
}

void perPixel(benchmark::State& state)
{
  state.counters["ns/pixel"] =
      benchmark::Counter(static_cast<double>(width) * height * 1e-9,
                         benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void copyFrame(benchmark::State& state)
{
  Frames& f = frames();
  for (auto _ : state)
  {
    std::memcpy(f.destination.data(), f.source.data(), floats * sizeof(float));
    benchmark::ClobberMemory();
  }
  perPixel(state);
}
BENCHMARK(copyFrame)->Unit(benchmark::kMillisecond);

// Code values of an index to scene-linear AP1.
void ours(benchmark::State& state, int colourspace)
{
  const tbb::global_control oneThread(tbb::global_control::max_allowed_parallelism, 1);
  Frames& f = frames();
  Program program{.from = From::Frame,
                  .to = To::Frame,
                  .alpha = Alpha::Copy,
                  .width = width,
                  .height = height,
                  .source = f.source.data(),
                  .destination = f.destination.data()};
  program.add({.kind = StepKind::Decode, .decoding = decodingOf(CurveTable::Full, colourspace)});
  program.add({.kind = StepKind::Matrix, .matrix = rounded(product(xyzD65ToRgb(5), *rgbToXyzD65(colourspace)))});
  for (auto _ : state)
    runProgram(Queue{}, "bench", program);
  perPixel(state);
}
BENCHMARK_CAPTURE(ours, LogC3, 11)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ours, SLog3, 17)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ours, ACEScct, 7)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ours, PQ, 42)->Unit(benchmark::kMillisecond);

// From one log to another, with the matrix between: decode, matrix and encode in one pass.
void oursLogToLog(benchmark::State& state)
{
  const tbb::global_control oneThread(tbb::global_control::max_allowed_parallelism, 1);
  Frames& f = frames();
  Program program{.from = From::Frame,
                  .to = To::Frame,
                  .alpha = Alpha::Copy,
                  .width = width,
                  .height = height,
                  .source = f.source.data(),
                  .destination = f.destination.data()};
  program.add({.kind = StepKind::Decode, .decoding = decodingOf(CurveTable::Full, 11)});
  program.add({.kind = StepKind::Matrix, .matrix = rounded(product(xyzD65ToRgb(7), *rgbToXyzD65(11)))});
  program.add({.kind = StepKind::Encode, .encoding = encodingOf(CurveTable::Full, 7)});
  for (auto _ : state)
    runProgram(Queue{}, "bench", program);
  perPixel(state);
}
BENCHMARK(oursLogToLog)->Unit(benchmark::kMillisecond);

OCIO::TransformRcPtr builtin(const char* style, OCIO::TransformDirection direction = OCIO::TRANSFORM_DIR_FORWARD)
{
  const OCIO::BuiltinTransformRcPtr transform = OCIO::BuiltinTransform::Create();
  transform->setStyle(style);
  transform->setDirection(direction);
  return transform;
}

OCIO::GroupTransformRcPtr groupOf(const std::vector<const char*>& styles, const char* back)
{
  OCIO::GroupTransformRcPtr group = OCIO::GroupTransform::Create();
  for (const char* style : styles)
    group->appendTransform(builtin(style));
  if (back)
    group->appendTransform(builtin(back, OCIO::TRANSFORM_DIR_INVERSE));
  return group;
}

void timeOf(benchmark::State& state, const OCIO::GroupTransformRcPtr& group)
{
  const OCIO::ConstConfigRcPtr config = OCIO::Config::CreateRaw();
  const OCIO::ConstCPUProcessorRcPtr processor = config->getProcessor(group)->getOptimizedCPUProcessor(
      OCIO::BIT_DEPTH_F32, OCIO::BIT_DEPTH_F32, OCIO::OPTIMIZATION_DEFAULT);
  Frames& f = frames();
  const OCIO::PackedImageDesc source(f.source.data(), width, height, 4);
  OCIO::PackedImageDesc destination(f.destination.data(), width, height, 4);
  for (auto _ : state)
    processor->apply(source, destination);
  perPixel(state);
}

void openColorIo(benchmark::State& state, const std::vector<const char*>& styles, const char* back)
{
  timeOf(state, groupOf(styles, back));
}
BENCHMARK_CAPTURE(openColorIo, LogC3, {"ARRI_ALEXA-LOGC-EI800-AWG_to_ACES2065-1"}, "ACEScg_to_ACES2065-1")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(openColorIo, SLog3, {"SONY_SLOG3-SGAMUT3-VENICE_to_ACES2065-1"}, "ACEScg_to_ACES2065-1")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(openColorIo, ACEScct, {"ACEScct_to_ACES2065-1"}, "ACEScg_to_ACES2065-1")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(openColorIo, PQ, {"CURVE - ST-2084_to_LINEAR", "UTILITY - ACES-AP0_to_CIE-XYZ-D65_BFD"}, nullptr)
    ->Unit(benchmark::kMillisecond);

// What index 42 is: PQ, the inverse of the system gamma 1.2 and the matrix. openColorIo/PQ is the curve and the matrix.
void openColorIoPqOfScene(benchmark::State& state)
{
  const OCIO::GroupTransformRcPtr group = groupOf({"CURVE - ST-2084_to_LINEAR"}, nullptr);
  const double gamma = 1.0 / 1.2;
  group->appendTransform(OCIO::FixedFunctionTransform::Create(OCIO::FIXED_FUNCTION_REC2100_SURROUND, &gamma, 1));
  group->appendTransform(builtin("UTILITY - ACES-AP0_to_CIE-XYZ-D65_BFD"));
  timeOf(state, group);
}
BENCHMARK(openColorIoPqOfScene)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(openColorIo, LogToLog, {"ARRI_ALEXA-LOGC-EI800-AWG_to_ACES2065-1"}, "ACEScct_to_ACES2065-1")
    ->Unit(benchmark::kMillisecond);

}  // namespace

}  // namespace morvellan::MORVELLAN_TARGET
