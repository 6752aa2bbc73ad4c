// The laboratory without diffusion: the course of the tank is solved for on a sample and corrected by the frame.
#include "film/laboratory.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>
#include <vector>

#include "device/memory.h"
#include "film/laboratory_diffusion.h"
#include "film/laboratory_sweep.h"

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

// Concentrations of the tank at the start of cycles 0 to 12; the first is given.
using Course = std::array<double, labCycles>;
using Sums = std::array<double, labExchanges>;

// change[i][j]: how concentration i answers to one unit more of concentration j, by way of the pixels' sums.
// Only earlier concentrations count, so that 1 - change is a triangle.
using Jacobian = std::array<Course, labCycles>;

constexpr double settled = 4e-7;  // of the first concentration: less than a float's rounding moves the picture
constexpr ptrdiff_t smallestSampled = 50000;   // pixels; below, sweeping the frame is as quick as sampling it
constexpr ptrdiff_t sampledLines = 16384;      // cache lines of a frame that are wanted as its sample,
constexpr ptrdiff_t leastOf = 8, mostOf = 64;  // but no more than one of 8 and no fewer than one of 64
constexpr ptrdiff_t jacobianPixels = 2048;     // of the sample

// Steps around a circle of `count` places that meet each once and are spread over it at any time: by the golden ratio,
// or as near to it as has no divisor in common with `count`.
int spreadingStride(int count)
{
  int stride = static_cast<int>(static_cast<double>(count) / std::numbers::phi);
  while (stride > 1 && std::gcd(stride, count) != 1)
    --stride;
  return std::max(stride, 1);
}

class Solver
{
public:
  Solver(const Queue& queue, const LabFrame& frame, const LabSettings& settings)
      : queue(queue), frame(frame), settings(settings), process(labProcess(settings, frame.width, frame.height)),
        entry(makeFilmEntry(settings.inputGamut)), count(static_cast<ptrdiff_t>(frame.width) * frame.height),
        exchanges(process.agitates(labExchanges - 1) ? labExchanges : labExchanges - 1)
  {
    course.fill(static_cast<double>(settings.concentration));
  }

  void run()
  {
    if (count >= smallestSampled)
      solveSample();
    const Sums sums = sweepFrame(frame.source, nullptr);
    if (sample)
      correctBySample(sums);
    else
      correct(answerOf(sums));
    // Each further sweep fixes at least one more concentration, so that this ends.
    for (int sweep = 0; sweep < labCycles; ++sweep)
    {
      const Course answer = answerOf(sweepFrame(nullptr, frame.density));
      if (distance(answer) <= settled)
        break;
      correct(answer);
    }
  }

private:
  LabSchedule schedule(const Course& c) const
  {
    LabSchedule s{};
    for (size_t i = 0; i < labExchanges; ++i)
    {
      const bool agitates = process.agitates(static_cast<int>(i));
      s.retain[i] = agitates ? 0.0f : process.retained;
      s.add[i] = static_cast<float>(agitates ? c[i + 1] : static_cast<double>(process.replenished) * c[i]);
    }
    s.concentration = settings.concentration;
    s.rate = process.rate;
    std::copy_n(settings.silver, 3, s.silver);
    s.units = developerUnits(settings.concentration, process.rate, settings.silver);
    return s;
  }

  // The course that the tank takes with these sums over the frame's pixels.
  Course answerOf(const Sums& sums) const
  {
    Course c{};
    c[0] = static_cast<double>(settings.concentration);
    for (size_t i = 0; i < static_cast<size_t>(exchanges); ++i)
    {
      const double before = sums[i];
      const double after = static_cast<double>(process.retained) * before +
                           static_cast<double>(count) * static_cast<double>(process.replenished) * c[i];
      c[i + 1] = reservoirAfter(process, static_cast<int>(i), c[i], before, after);
    }
    return c;
  }

  double distance(const Course& answer) const
  {
    double largest = 0.0;
    const double scale = std::fabs(static_cast<double>(settings.concentration));
    for (size_t i = 1; i <= static_cast<size_t>(exchanges); ++i)
      largest = std::max(largest, std::fabs(answer[i] - course[i]) / std::max(std::fabs(answer[i]), scale));
    return largest;
  }

  // Newton's step towards the course that is its own answer.
  void correct(const Course& answer)
  {
    Course step{};
    for (size_t i = 1; i <= static_cast<size_t>(exchanges); ++i)
    {
      step[i] = answer[i] - course[i];
      for (size_t j = 1; j < i; ++j)
        step[i] += change[i][j] * step[j];
    }
    for (size_t i = 1; i <= static_cast<size_t>(exchanges); ++i)
      course[i] += step[i];
  }

  void solveSample()
  {
    const ptrdiff_t lines = count / laboratory_sample::line;
    const ptrdiff_t every = std::clamp(lines / sampledLines, leastOf, mostOf);
    const ptrdiff_t sampled = lines / every;
    samplePixels = sampled * laboratory_sample::line;
    sample = Buffer<float>(static_cast<size_t>(samplePixels) * 3);
    const int batches = static_cast<int>((sampled + laboratory_sample::batch - 1) / laboratory_sample::batch);
    launch(queue, items(batches),
           laboratory_sample{.source = frame.source,
                             .exposure = sample.data(),
                             .every = static_cast<int>(every),
                             .lines = static_cast<int>(sampled),
                             .stride = spreadingStride(static_cast<int>(sampled)),
                             .channels = frame.channels,
                             .entry = entry,
                             .silver = {settings.silver[0], settings.silver[1], settings.silver[2]}});
    differentiate();
    correct(answerOf(sampleSums(samplePixels, course)));
  }

  // Sums over the first pixels of the sample, blown up to the frame.
  Sums sampleSums(ptrdiff_t pixelsTaken, const Course& c)
  {
    Sums sums = sweep(nullptr, sample.data(), nullptr, pixelsTaken, c);
    for (double& sum : sums)
      sum *= static_cast<double>(count) / static_cast<double>(pixelsTaken);
    return sums;
  }

  // A course that a part of the sample settles for, and one-sided differences there.
  void differentiate()
  {
    const ptrdiff_t part = std::min(samplePixels, jacobianPixels);
    const auto answerTo = [&](const Course& c) { return answerOf(sampleSums(part, c)); };
    for (int step = 0; step < 3; ++step)
      course = answerTo(course);
    const double nudge = 0.01 * static_cast<double>(settings.concentration);
    const Course here = answerTo(course);
    for (size_t j = 1; j < static_cast<size_t>(exchanges); ++j)
    {
      Course moved = course;
      moved[j] += nudge;
      const Course there = answerTo(moved);
      for (size_t i = j + 1; i <= static_cast<size_t>(exchanges); ++i)
        change[i][j] = (there[i] - here[i]) / nudge;
    }
    correct(here);
  }

  // The course that settles if the frame's sums change in proportion to those of a part of the sample.
  void correctBySample(const Sums& frameSums)
  {
    const ptrdiff_t part = samplePixels / 4;
    const Sums before = sampleSums(part, course);
    correct(answerOf(frameSums));
    Sums sums = sampleSums(part, course);
    for (size_t i = 0; i < labExchanges; ++i)
      sums[i] = before[i] > 0.0 ? frameSums[i] * (sums[i] / before[i]) : frameSums[i];
    correct(answerOf(sums));
  }

  Sums sweepFrame(const float* source, float* density) { return sweep(source, frame.exposure, density, count, course); }

  Sums sweep(const float* source, float* exposure, float* density, ptrdiff_t pixelsTaken, const Course& c)
  {
    return isLean(process, settings.concentration) ? sweepAs<LeanPixel>(source, exposure, density, pixelsTaken, c)
                                                   : sweepAs<BoundedPixel>(source, exposure, density, pixelsTaken, c);
  }

  template <typename Pixel>
  Sums sweepAs(const float* source, float* exposure, float* density, ptrdiff_t pixelsTaken, const Course& c)
  {
    const int itemCount = sweepItems(pixelsTaken);
    const size_t partialCount = static_cast<size_t>(itemCount) * labExchanges;
    const Buffer<double> partials(partialCount);
    launchNamed(queue, nameOf(source, density), items(itemCount),
                laboratory_sweep<Pixel>{.source = source,
                                        .exposure = exposure,
                                        .alpha = frame.alpha,
                                        .density = density,
                                        .count = pixelsTaken,
                                        .channels = frame.channels,
                                        .entry = entry,
                                        .schedule = schedule(c),
                                        .exchanges = exchanges,
                                        .partials = partials.data(),
                                        .items = itemCount});
    std::vector<double> host(partialCount);
    copy(host.data(), partials.data(), partialCount * sizeof(double), CopyKind::DeviceToHost);
    Sums sums{};
    for (size_t i = 0; i < labExchanges; ++i)
      for (size_t item = 0; item < static_cast<size_t>(itemCount); ++item)
        sums[i] += host[i * static_cast<size_t>(itemCount) + item];
    return sums;
  }

  std::string_view nameOf(const float* source, const float* density) const
  {
    if (source)
      return frame.channels == 4 ? "film_lab_init+laboratory_sweep" : "film_lab_init_RGB+laboratory_sweep";
    return density ? "laboratory_sweep+develop_cuda" : "laboratory_sample_sweep";
  }

  const Queue& queue;
  const LabFrame& frame;
  const LabSettings& settings;
  const LabProcess process;
  const FilmEntry entry;
  const ptrdiff_t count;
  const int exchanges;   // after the last only an agitation changes what a pixel meets
  Buffer<float> sample;  // exposures of samplePixels pixels; empty for a small frame
  ptrdiff_t samplePixels = 0;
  Course course{};
  Jacobian change{};
};

}  // namespace

void laboratory(const Queue& queue, const LabFrame& frame, const LabSettings& settings)
{
  if (frame.width <= 0 || frame.height <= 0)
    return;
  if (settings.lowDiffusion || settings.highDiffusion)
    laboratoryWithDiffusion(queue, frame, settings);
  else
    Solver(queue, frame, settings).run();
}

}  // namespace morvellan::MORVELLAN_TARGET
