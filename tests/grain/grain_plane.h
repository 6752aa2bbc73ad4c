// A plane of grain for tests and benchmarks: settings from the values of the panel, tables, and one launch.
#pragma once

#include <cmath>
#include <utility>
#include <vector>

#include "grain/grain.h"
#include "pipeline/host/grain_radius.h"
#include "pipeline/host/grain_tables.h"
#include "tests/support/device_arrays.h"

namespace morvellan::MORVELLAN_TARGET::grainplane
{

// The values of the panel for one channel; `picture` is the longer side that the radius is stepped for.
struct Controls
{
  double size = 0.01, variance = 0.0, strength = 10.0, soft = 0.4, granularity = 5.0;
  int picture = 1920;
  uint32_t seed = 12345u;
  int levels = 131071;
};

inline float narrow(double x)
{
  return static_cast<float>(x);
}

inline GrainSettings settingsOf(const Controls& c, int width, int height)
{
  const double radius = grainRadiusOf(c.size, c.picture);
  const double cell = grainCellOf(radius);
  const double sigma = c.variance * radius * 0.15;
  const RadiusLaw law = sigma > 0.0 ? radiusLawOf(radius, sigma) : RadiusLaw{};
  const int count = static_cast<int>(std::exp2(c.granularity) + 7.0);
  return {.seed = c.seed,
          .count = count,
          .soft = narrow(c.soft < 0.4 ? 0.16 : c.soft * 0.4),
          .radius = narrow(radius),
          .radiusSquared = narrow(radius * radius),
          .cell = narrow(cell),
          .invCell = narrow(1.0 / cell),
          .sigma = narrow(sigma),
          .logSigma = narrow(law.logSigma),
          .logMu = narrow(law.logMu),
          .radiusMax = narrow(law.radiusMax),
          .targetScaleX = narrow(width / (width - 1.0)),
          .targetScaleY = narrow(height / (height - 1.0)),
          .levels = c.levels,
          .blendKeep = narrow(1.0 - c.strength * 0.1),
          .strengthPerCount = narrow(c.strength * 0.1 / count)};
}

struct Tables
{
  std::vector<float> lambda, exp;
};

inline Tables tablesOf(const GrainSettings& s)
{
  Tables t;
  t.lambda.resize(static_cast<size_t>(s.levels) + 1);
  t.exp.resize(t.lambda.size());
  buildGrainTable({.radius = s.radius, .cell = s.cell, .sigma = s.sigma, .levels = s.levels}, t.lambda, t.exp);
  return t;
}

struct Image
{
  int width, height;
  std::vector<float> values;
};

inline Image flat(int width, int height, float value)
{
  return {width, height, std::vector<float>(static_cast<size_t>(width) * static_cast<size_t>(height), value)};
}

// Every value from below 0 to above 1, with edges and slopes.
inline Image mixed(int width, int height)
{
  Image image = flat(width, height, 0.0f);
  for (size_t i = 0; i < image.values.size(); ++i)
  {
    const auto noise = static_cast<float>((i * 2654435761u) >> 8 & 0xffff) / 65535.0f;
    const float slope = static_cast<float>(i % static_cast<size_t>(width)) / static_cast<float>(width);
    image.values[i] = (i / 64) % 3 == 0 ? noise * 1.2f - 0.1f : slope;
  }
  return image;
}

// A launch with all that it reads on the device.
class Bench
{
public:
  Bench(const Image& source, const GrainSettings& s, const Tables& t)
      : settings(s), width(source.width), height(source.height), image(upload(source.values)), lambda(upload(t.lambda)),
        exp(upload(t.exp)), destination(source.values.size()), offsets(static_cast<size_t>(s.count))
  {
    const std::vector<FilterOffset> list = filterOffsets(s);
    copy(offsets.data(), list.data(), list.size() * sizeof(FilterOffset), CopyKind::HostToDevice);
  }

  GrainLaunch launch() const { return launch(0, height); }
  GrainLaunch launch(int firstRow, int rows) const
  {
    const int entries = settings.levels + 1;
    return {.image = {.values = image.data(), .width = width, .height = height},
            .lambda = {.values = lambda.data(), .count = entries},
            .exp = {.values = exp.data(), .count = entries},
            .offsets = offsets.data(),
            .destination = destination.data(),
            .width = width,
            .height = height,
            .firstRow = firstRow,
            .rows = rows,
            .settings = settings};
  }
  std::vector<float> result() const { return download(destination); }

private:
  GrainSettings settings;
  int width, height;
  Buffer<float> image, lambda, exp, destination;
  Buffer<FilterOffset> offsets;
};

inline std::vector<float> rendered(const Image& image, const GrainSettings& settings)
{
  const Bench bench(image, settings, tablesOf(settings));
  renderGrain({}, bench.launch());
  return bench.result();
}

inline std::vector<float> renderedLiterally(const Image& image, const GrainSettings& settings)
{
  const Bench bench(image, settings, tablesOf(settings));
  renderGrainByKernel({}, bench.launch(), GrainSearch::Plain);
  return bench.result();
}

}  // namespace morvellan::MORVELLAN_TARGET::grainplane
