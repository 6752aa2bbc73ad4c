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
#include "tests/support/gaussian_in_double.h"

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

// The developer of a frame's pixels after a diffusion, in double: spread in the log of the film by one blur, what that
// took away weighted and held to [0, 1], and with the low diffusion by a second blur of the first.
inline std::vector<double> diffusedInDouble(const std::vector<double>& developer, int w, int h,
                                            const LabSettings& settings, double firstSigma, double secondSigma)
{
  constexpr double black = 0.092864126;
  std::vector<double> log(developer.size());
  for (size_t i = 0; i < log.size(); ++i)
    log[i] = (std::log2(std::min(developer[i] * 0.00113631552, 469.799988) * 2231.82642 + 64.0) - 6.0) * 0.0647954196 +
             black;
  const std::vector<double> first = blurInDouble(log, w, h, firstSigma);
  const std::vector<double> base = settings.lowDiffusion ? blurInDouble(first, w, h, secondSigma) : first;
  std::vector<double> result(developer.size());
  for (size_t i = 0; i < result.size(); ++i)
  {
    const double detail = std::clamp((log[i] - first[i]) * static_cast<double>(settings.detailGain), 0.0, 1.0);
    const double u = detail + base[i];
    result[i] =
        u > 1.0 ? 880.037292 : (std::exp2((u - black) * 14.0 * 1.10237074 + 6.0) - 64.0) * 880.037292 * 0.00044806354;
  }
  return result;
}

// The developed light of a frame's exposures with every pixel, sum, concentration and blur in double.
inline std::vector<double> lightInDouble(const Values& exposure, int w, int h, const LabSettings& settings)
{
  const size_t pixelCount = exposure.size() / 3;
  const double pixels = static_cast<double>(w) * h, areaScale = static_cast<double>(settings.areaScale);
  const double area = pixels / areaScale, tank = areaScale * 1000.0 / 864.0;
  const double time = static_cast<double>(settings.developmentTime) / 12.0, rate = time * 1e-5;
  const double retained = std::pow(static_cast<double>(settings.replenish), time / 20.0);
  const double spread = std::sqrt(time * area * 0.04) * 0.45261669;
  const int period = 12 / settings.agitation, offset = period / 2;
  std::vector<double> density(exposure.size(), 1e-5), silver(exposure.size());
  std::vector<double> developer(pixelCount, static_cast<double>(settings.concentration));
  for (size_t i = 0; i < silver.size(); ++i)
    silver[i] = static_cast<double>(settings.silver[i % 3]);
  double reservoir = static_cast<double>(settings.concentration);
  for (int cycle = 0; cycle < 13; ++cycle)
  {
    for (size_t i = 0; i < pixelCount; ++i)
    {
      double used = 0.0;
      for (size_t k = i * 3; k < i * 3 + 3; ++k)
      {
        const double grown = developer[i] * silver[k] * rate;
        const double consumed =
            std::clamp(static_cast<double>(exposure[k]) * density[k] * density[k] * grown, 0.0, 880.037292);
        density[k] += grown;
        silver[k] -= consumed * 4000000.0;
        used += consumed;
      }
      developer[i] = std::max(developer[i] - used * 13333333.0, 0.0);
    }
    if (settings.lowDiffusion || settings.highDiffusion)
      developer = diffusedInDouble(developer, w, h, settings, spread * static_cast<double>(settings.spectrumBand),
                                   spread * static_cast<double>(settings.lowWidth));
    double before = 0.0, after = 0.0;
    for (double& d : developer)
    {
      before += d;
      d = d * retained + (1.0 - retained) * reservoir;
      after += d;
    }
    reservoir -= (after - before) * 0.1 / (area * tank);
    if ((cycle + offset) % period == 0)
    {
      reservoir = (after * 0.1 / area + tank * reservoir) / (pixels * 0.1 / area + tank);
      std::fill(developer.begin(), developer.end(), reservoir);
    }
  }
  for (size_t i = 0; i < density.size(); ++i)
    density[i] *= density[i] * static_cast<double>(exposure[i]) * 2058.0;
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
