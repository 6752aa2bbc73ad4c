// Runs of the laboratory for its tests: settings, pictures, both ways of developing them, and the light of a frame
// worked out in double precision.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstring>
#include <random>

#include "film/laboratory.h"
#include "film/laboratory_process.h"
#include "tests/support/device_arrays.h"
#include "tests/support/engine_test.h"

namespace morvellan::MORVELLAN_TARGET::laboratory_runs
{

using Values = std::vector<float>;
using Way = void (*)(const Queue&, const LabFrame&, const LabSettings&);

inline constexpr int logC4 = 47;
inline constexpr int linearRec709 = 0;

inline LabSettings defaults(int w, int h)
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
          .areaScale = static_cast<float>(w) * 0.00041666668f * static_cast<float>(h),
          .inputGamut = logC4};
}

inline float code(double linear)
{
  return static_cast<float>((std::log2(linear * 2231.82642 + 64.0) - 6.0) * 0.0647954196 + 0.092864126);
}

inline Values uniform(int w, int h, float value)
{
  return Values(static_cast<size_t>(w) * static_cast<size_t>(h) * 4, value);
}

// Code values of a picture with smooth and rough places, black to well above white.
inline Values picture(int w, int h, int channels = 4)
{
  std::mt19937 generator(23);
  std::uniform_real_distribution<float> noise(-0.05f, 0.05f);
  Values values(static_cast<size_t>(w) * static_cast<size_t>(h) * static_cast<size_t>(channels));
  for (size_t i = 0; i < values.size(); ++i)
  {
    const auto at = static_cast<float>(i / static_cast<size_t>(channels) % static_cast<size_t>(w));
    values[i] = 0.35f + 0.3f * std::sin(at * 0.11f + static_cast<float>(i % 3)) + noise(generator);
  }
  return values;
}

// A picture without texture.
inline Values gradient(int w, int h)
{
  Values values(static_cast<size_t>(w) * static_cast<size_t>(h) * 4);
  for (size_t i = 0; i < values.size(); ++i)
    values[i] = static_cast<float>(i / 4 % static_cast<size_t>(w)) / static_cast<float>(w);
  return values;
}

struct Developed
{
  Values exposure, density, alpha, linear;
};

inline Developed developed(const Values& frame, int w, int h, int channels, const LabSettings& settings,
                           Way way = laboratory, LaunchObserver* observer = nullptr)
{
  const size_t count = static_cast<size_t>(w) * static_cast<size_t>(h);
  const Buffer<float> source = upload(frame);
  const Buffer<float> second(frame.size());
  const Buffer<float> exposure(count * 3);
  const Buffer<float> density(count * 3);
  const Buffer<float> alpha = upload(Values(count, -1.0f));
  way(Queue{0, observer},
      LabFrame{.source = source.data(),
               .second = second.data(),
               .exposure = exposure.data(),
               .density = density.data(),
               .alpha = alpha.data(),
               .width = w,
               .height = h,
               .channels = channels},
      settings);
  if (!settings.lowDiffusion && !settings.highDiffusion)
  {
    EXPECT_EQ(std::memcmp(download(source).data(), frame.data(), frame.size() * sizeof(float)), 0);
  }
  Developed result{download(exposure), download(density), download(alpha), {}};
  result.linear.resize(count * 3);
  for (size_t i = 0; i < count * 3; ++i)
    result.linear[i] = result.density[i] * result.density[i] * result.exposure[i] * labOutputGain;
  return result;
}

inline float developedGrey(double linear, int w, int h, const LabSettings& settings, Way way = laboratory)
{
  return developed(uniform(w, h, code(linear)), w, h, 4, settings, way).linear[0];
}

inline LabSettings diffusing(LabSettings settings, bool low, bool high)
{
  settings.lowDiffusion = low;
  settings.highDiffusion = high;
  settings.lowWidth = low ? 0.4f : 0.0f;
  settings.detailGain = high ? 0.4f : 0.0f;
  return settings;
}

// The developed light of a frame's exposures with every pixel, sum and concentration in double.
inline std::vector<double> lightInDouble(const Values& exposure, int w, int h, const LabSettings& settings)
{
  const LabProcess p = labProcess(settings, w, h);
  const size_t pixelCount = exposure.size() / 3;
  std::vector<double> density(exposure.size(), static_cast<double>(labFirstDensity)), silver(exposure.size());
  std::vector<double> developer(pixelCount, static_cast<double>(settings.concentration));
  for (size_t i = 0; i < silver.size(); ++i)
    silver[i] = static_cast<double>(settings.silver[i % 3]);
  double reservoir = static_cast<double>(settings.concentration);
  for (int cycle = 0; cycle < labCycles; ++cycle)
  {
    double before = 0.0, after = 0.0;
    for (size_t i = 0; i < pixelCount; ++i)
    {
      double used = 0.0;
      for (size_t k = i * 3; k < i * 3 + 3; ++k)
      {
        const double grown = developer[i] * silver[k] * static_cast<double>(p.rate);
        const double consumed = std::clamp(static_cast<double>(exposure[k]) * density[k] * density[k] * grown, 0.0,
                                           static_cast<double>(labFullScale));
        density[k] += grown;
        silver[k] -= consumed * static_cast<double>(labSilverUse);
        used += consumed;
      }
      developer[i] = std::max(developer[i] - used * static_cast<double>(labDeveloperUse), 0.0);
      before += developer[i];
      developer[i] = developer[i] * static_cast<double>(p.retained) + static_cast<double>(p.replenished) * reservoir;
      after += developer[i];
    }
    reservoir = reservoirAfter(p, cycle, reservoir, before, after);
    if (p.agitates(cycle))
      std::fill(developer.begin(), developer.end(), reservoir);
  }
  for (size_t i = 0; i < density.size(); ++i)
    density[i] *= density[i] * static_cast<double>(exposure[i]) * static_cast<double>(labOutputGain);
  return density;
}

inline double largestRelativeError(const Values& actual, const std::vector<double>& expected)
{
  double largest = 0.0;
  for (size_t i = 0; i < actual.size(); ++i)
    if (static_cast<double>(actual[i]) != expected[i])
      largest = std::max(largest, std::fabs(static_cast<double>(actual[i]) - expected[i]) / std::fabs(expected[i]));
  return largest;
}

// Relative to the larger of the values and a floor that is dark beside the picture.
inline float largestDifference(const Values& a, const Values& b, float floor)
{
  float largest = 0.0f;
  for (size_t i = 0; i < a.size(); ++i)
    largest = std::max(largest, std::fabs(a[i] - b[i]) / std::max(std::fabs(b[i]), floor));
  return largest;
}

}  // namespace morvellan::MORVELLAN_TARGET::laboratory_runs
