// The laboratory: published results on uniform frames, the process's numbers, and the sweep in registers against the
// chain of kernels.
#include "film/laboratory.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <random>

#include <tbb/global_control.h>

#include "film/laboratory_kernels.h"
#include "tests/support/device_arrays.h"
#include "tests/support/engine_test.h"
#include "tests/support/name_list.h"

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

using Values = std::vector<float>;
using Way = void (*)(const Queue&, const LabFrame&, const LabSettings&);

constexpr int logC4 = 47;
constexpr int linearRec709 = 0;

LabSettings defaults(int w, int h)
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

float code(double linear)
{
  return static_cast<float>((std::log2(linear * 2231.82642 + 64.0) - 6.0) * 0.0647954196 + 0.092864126);
}

Values uniform(int w, int h, float value)
{
  return Values(static_cast<size_t>(w) * static_cast<size_t>(h) * 4, value);
}

// Code values of a picture with smooth and rough places, black to well above white.
Values picture(int w, int h, int channels = 4)
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
Values gradient(int w, int h)
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

Developed developed(const Values& frame, int w, int h, int channels, const LabSettings& settings, Way way = laboratory,
                    LaunchObserver* observer = nullptr)
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

float developedGrey(double linear, int w, int h, const LabSettings& settings, Way way = laboratory)
{
  return developed(uniform(w, h, code(linear)), w, h, 4, settings, way).linear[0];
}

LabSettings diffusing(LabSettings settings, bool low, bool high)
{
  settings.lowDiffusion = low;
  settings.highDiffusion = high;
  settings.lowWidth = low ? 0.4f : 0.0f;
  settings.detailGain = high ? 0.4f : 0.0f;
  return settings;
}

// The developed light of a frame's exposures with every pixel, sum and concentration in double.
std::vector<double> lightInDouble(const Values& exposure, int w, int h, const LabSettings& settings)
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

double largestRelativeError(const Values& actual, const std::vector<double>& expected)
{
  double largest = 0.0;
  for (size_t i = 0; i < actual.size(); ++i)
    if (static_cast<double>(actual[i]) != expected[i])
      largest = std::max(largest, std::fabs(static_cast<double>(actual[i]) - expected[i]) / std::fabs(expected[i]));
  return largest;
}

// Relative to the larger of the values and a floor that is dark beside the picture.
float largestDifference(const Values& a, const Values& b, float floor)
{
  float largest = 0.0f;
  for (size_t i = 0; i < a.size(); ++i)
    largest = std::max(largest, std::fabs(a[i] - b[i]) / std::max(std::fabs(b[i]), floor));
  return largest;
}

}  // namespace

ENGINE_TEST(Laboratory, UniformFramesOfTheDefaultProcess)
{
  const int sizes[][2] = {{1, 1}, {8, 3}, {300, 200}};
  for (const auto& size : sizes)
    for (const Way way : {laboratory, laboratoryByKernels})
    {
      const LabSettings s = defaults(size[0], size[1]);
      EXPECT_NEAR(developedGrey(1.0, size[0], size[1], s, way), 1.004267f, 4e-6f);
      EXPECT_NEAR(developedGrey(0.18, size[0], size[1], s, way), 0.307841f, 2e-6f);
      EXPECT_NEAR(developedGrey(0.01, size[0], size[1], s, way), 0.021308f, 1e-6f);
      EXPECT_NEAR(developedGrey(4.0, size[0], size[1], s, way), 2.251002f, 1e-5f);
    }
}

ENGINE_TEST(Laboratory, PullAndPush)
{
  for (const Way way : {laboratory, laboratoryByKernels})
  {
    LabSettings s = defaults(16, 16);
    s.developmentTime = 1.3f * 125.0f;
    EXPECT_NEAR(developedGrey(0.18, 16, 16, s, way), 0.567269f, 4e-6f);
    s.developmentTime = 0.3f * 125.0f;
    EXPECT_NEAR(developedGrey(0.18, 16, 16, s, way), 0.055324f, 1e-6f);
  }
}

ENGINE_TEST(Laboratory, AgitationFallsOnItsCycles)
{
  const std::vector<std::vector<int>> expected = {{6}, {3, 9}, {2, 6, 10}, {2, 5, 8, 11}, {1, 3, 5, 7, 9, 11}};
  for (int count = 1; count <= 5; ++count)
  {
    LabSettings s = defaults(4, 4);
    s.agitation = count;
    const LabProcess p = labProcess(s, 4, 4);
    std::vector<int> cycles;
    for (int cycle = 0; cycle < labCycles; ++cycle)
      if (p.agitates(cycle))
        cycles.push_back(cycle);
    EXPECT_EQ(cycles, expected[static_cast<size_t>(count) - 1]);
  }
}

ENGINE_TEST(Laboratory, DiffusionDoesNotChangeWithTheResolution)
{
  for (const int w : {7, 1920, 8192})
  {
    const LabProcess p = labProcess(defaults(w, w / 2 + 1), w, w / 2 + 1);
    EXPECT_NEAR(p.area, 2400.0f, 2e-3f);
    EXPECT_NEAR(p.firstSigma, 12.8018f * 0.5f, 1e-3f);
  }
}

ENGINE_TEST(Laboratory, ReplenishmentAboveTheKneeGainsInTheExchange)
{
  LabSettings s = defaults(8, 8);
  EXPECT_LT(labProcess(s, 8, 8).retained, 1.0f);
  s.replenish = 3.2f;
  EXPECT_GT(labProcess(s, 8, 8).retained, 1.0f);
  EXPECT_LT(labProcess(s, 8, 8).replenished, 0.0f);
}

// Both ways against double precision. Measured: the sweep stays within 1e-6 wherever the chain does, and within 1e-6 at
// any setting in which pixels lose by an exchange.
ENGINE_TEST(Laboratory, SweepIsExactWhereverTheChainIs)
{
  constexpr double exact = 2e-6;
  int exactSettings = 0;
  const int sizes[][2] = {{1, 1}, {37, 11}, {310, 203}};
  for (const auto& size : sizes)
  {
    const Values frame = picture(size[0], size[1]);
    for (int agitation = 1; agitation <= 5; ++agitation)
      for (const float replenish : {0.2f, 1.0f, 2.0f, 3.2f})
        for (const float time : {37.5f, 100.0f, 162.5f})
        {
          SCOPED_TRACE(testing::Message() << size[0] << " by " << size[1] << ", agitation " << agitation
                                          << ", replenish " << replenish << ", time " << time);
          LabSettings s = defaults(size[0], size[1]);
          s.agitation = agitation;
          s.replenish = replenish;
          s.developmentTime = time;
          const Developed sweep = developed(frame, size[0], size[1], 4, s);
          const Developed chain = developed(frame, size[0], size[1], 4, s, laboratoryByKernels);
          EXPECT_EQ(sweep.exposure, chain.exposure);
          const std::vector<double> expected = lightInDouble(chain.exposure, size[0], size[1], s);
          const double chainError = largestRelativeError(chain.linear, expected);
          if (replenish <= 1.0f)
          {
            EXPECT_LE(chainError, exact);
          }
          if (chainError <= exact)
          {
            ++exactSettings;
            EXPECT_LE(largestRelativeError(sweep.linear, expected), exact);
          }
          // Where pixels gain by an exchange the retained share, up to 3.2^(13.5 / 20) = 2.2, multiplies a last bit
          // twelve times over: 6e-8 * 2.2^12 = 8e-4, twice that in the square of the density.
          EXPECT_LT(largestDifference(sweep.linear, chain.linear, 1e-3f), replenish > 1.0f ? 2e-3f : 2e-6f);
        }
  }
  EXPECT_GE(exactSettings, 150) << "of 180";
}

ENGINE_TEST(Laboratory, SilverAndDeveloperScaleTheirShare)
{
  const Values frame = picture(64, 40);
  LabSettings s = defaults(64, 40);
  s.silver[0] = 0.5f;
  s.silver[2] = 1.5f;
  for (const float concentration : {0.101111f, 0.5f, 1.111111f})
  {
    s.concentration = concentration;
    const Developed sweep = developed(frame, 64, 40, 4, s);
    const Developed chain = developed(frame, 64, 40, 4, s, laboratoryByKernels);
    EXPECT_LT(largestDifference(sweep.linear, chain.linear, 1e-3f), 2e-6f) << concentration;
    EXPECT_LT(largestDifference(sweep.density, chain.density, 1e-6f), 2e-6f) << concentration;
    const std::vector<double> expected = lightInDouble(chain.exposure, 64, 40, s);
    EXPECT_LE(largestRelativeError(chain.linear, expected), 2e-6) << concentration;
    EXPECT_LE(largestRelativeError(sweep.linear, expected), 2e-6) << concentration;
  }
}

ENGINE_TEST(Laboratory, ChannelsAndAlpha)
{
  const int w = 33, h = 21;
  const Values rgba = picture(w, h);
  Values rgb, alpha;
  for (size_t i = 0; i < rgba.size(); ++i)
    (i % 4 == 3 ? alpha : rgb).push_back(rgba[i]);
  for (const Way way : {laboratory, laboratoryByKernels})
  {
    const Developed four = developed(rgba, w, h, 4, defaults(w, h), way);
    const Developed three = developed(rgb, w, h, 3, defaults(w, h), way);
    EXPECT_EQ(four.alpha, alpha);
    EXPECT_EQ(three.alpha, Values(alpha.size(), -1.0f));
    EXPECT_EQ(four.exposure, three.exposure);
    EXPECT_LT(largestDifference(four.linear, three.linear, 1e-3f), 1e-6f);
  }
}

ENGINE_TEST(Laboratory, BadPixelsReachNoOther)
{
  const int w = 300, h = 200;
  for (const int gamut : {logC4, linearRec709})
    for (const Way way : {laboratory, laboratoryByKernels})
    {
      LabSettings s = defaults(w, h);
      s.inputGamut = gamut;
      const Values frame = picture(w, h);
      Values bad = frame;
      Values repaired = frame;
      const float infinity = std::numeric_limits<float>::infinity();
      const std::pair<float, float> values[] = {{std::numeric_limits<float>::quiet_NaN(), 0.0f},
                                                {infinity, gamut == logC4 ? 1.0f : 469.799988f},
                                                {-infinity, 0.0f},
                                                {-1e5f, 0.0f},
                                                {1e5f, gamut == logC4 ? 1.0f : 469.799988f}};
      size_t at = 4 * 777;
      for (const auto& [value, held] : values)
      {
        for (size_t k = 0; k < 3; ++k)
        {
          bad[at + k] = value;
          repaired[at + k] = held;
        }
        at += 4 * 9001;
      }
      const Developed result = developed(bad, w, h, 4, s, way);
      EXPECT_EQ(result.density, developed(repaired, w, h, 4, s, way).density);
      for (const float value : result.linear)
        ASSERT_TRUE(std::isfinite(value));
    }
}

ENGINE_TEST(Laboratory, ThreadCountChangesNothing)
{
  const Values frame = picture(310, 203);
  const Developed many = developed(frame, 310, 203, 4, defaults(310, 203));
  const tbb::global_control one(tbb::global_control::max_allowed_parallelism, 1);
  EXPECT_EQ(developed(frame, 310, 203, 4, defaults(310, 203)).density, many.density);
}

ENGINE_TEST(Laboratory, TwoSweepsDevelopAFrame)
{
  NameList names;
  developed(gradient(1920, 1080), 1920, 1080, 4, defaults(1920, 1080), laboratory, &names);
  EXPECT_EQ(names.count("film_lab_init"), 1u);
  EXPECT_EQ(names.count("develop_cuda"), 1u);
  EXPECT_EQ(names.count("laboratory_sweep"), 2u);
}

ENGINE_TEST(Laboratory, DiffusionAgreesWithTheChain)
{
  const int sizes[][2] = {{1, 1}, {37, 11}, {150, 90}};
  for (const auto& size : sizes)
    for (const int channels : {3, 4})
      for (int agitation = 1; agitation <= 5; ++agitation)
        for (const auto& [low, high] : {std::pair{true, true}, {true, false}, {false, true}})
          for (const float band : {0.05f, 0.5f, 1.0f})
          {
            LabSettings s = diffusing(defaults(size[0], size[1]), low, high);
            s.agitation = agitation;
            s.spectrumBand = band;
            const Values frame = picture(size[0], size[1], channels);
            const Developed fused = developed(frame, size[0], size[1], channels, s);
            const Developed chain = developed(frame, size[0], size[1], channels, s, laboratoryByKernels);
            EXPECT_EQ(fused.exposure, chain.exposure);
            EXPECT_EQ(fused.alpha, chain.alpha);
            EXPECT_LT(largestDifference(fused.linear, chain.linear, 1e-3f), 1e-3f)
                << size[0] << " by " << size[1] << ", agitation " << agitation << ", low " << low << ", high " << high
                << ", band " << band;
          }
}

ENGINE_TEST(Laboratory, DiffusionOfAUniformFrameChangesNothing)
{
  const float plain = developedGrey(0.18, 60, 40, defaults(60, 40));
  EXPECT_NEAR(developedGrey(0.18, 60, 40, diffusing(defaults(60, 40), true, true)), plain, 1e-5f);
  EXPECT_NEAR(developedGrey(0.18, 60, 40, diffusing(defaults(60, 40), false, true)), plain, 1e-5f);
}

// With no detail gain the developer is its own blur; a gain that was left over brings detail back with the low switch
// on alone.
ENGINE_TEST(Laboratory, LeftOverDetailGainCounts)
{
  const int w = 120, h = 80;
  const Values frame = picture(w, h);
  LabSettings s = diffusing(defaults(w, h), true, false);
  s.detailGain = 0.0f;
  const Developed without = developed(frame, w, h, 4, s);
  s.detailGain = 0.9f;
  const Developed with = developed(frame, w, h, 4, s);
  EXPECT_GT(largestDifference(with.linear, without.linear, 1e-2f), 1e-3f);
}

ENGINE_TEST(Laboratory, DiffusionTakesBadPixelsForTheEndsOfTheRange)
{
  const int w = 100, h = 70;
  Values frame = picture(w, h);
  Values repaired = frame;
  const auto replace = [&](size_t at, float bad, float held)
  {
    frame[at] = bad;
    repaired[at] = held;
  };
  replace(4 * 3500, std::numeric_limits<float>::quiet_NaN(), 0.0f);
  replace(4 * 3501 + 1, std::numeric_limits<float>::infinity(), 1.0f);
  replace(4 * 10 + 2, -std::numeric_limits<float>::infinity(), 0.0f);
  replace(4 * 99, 1e5f, 1.0f);
  replace(4 * 5000 + 1, -1e5f, 0.0f);
  const LabSettings s = diffusing(defaults(w, h), true, true);
  for (const Way way : {laboratory, laboratoryByKernels})
  {
    const Developed result = developed(frame, w, h, 4, s, way);
    EXPECT_EQ(result.density, developed(repaired, w, h, 4, s, way).density);
    for (const float value : result.linear)
      ASSERT_TRUE(std::isfinite(value));
  }
}

// Both diffusion switches, every agitation, RGB and RGBA: what runs, and how often.
ENGINE_TEST(Laboratory, LaunchesOfEveryCombination)
{
  constexpr size_t agitations[] = {1, 2, 3, 4, 6};
  for (const Way way : {laboratory, laboratoryByKernels})
    for (const int channels : {3, 4})
      for (const bool low : {false, true})
        for (const bool high : {false, true})
          for (int agitation = 1; agitation <= 5; ++agitation)
          {
            const bool fused = way == laboratory;
            SCOPED_TRACE(testing::Message() << "fused " << fused << ", channels " << channels << ", low " << low
                                            << ", high " << high << ", agitation " << agitation);
            LabSettings s = diffusing(defaults(60, 40), low, high);
            s.agitation = agitation;
            NameList names;
            developed(picture(60, 40, channels), 60, 40, channels, s, way, &names);
            EXPECT_EQ(names.count("film_lab_init"), channels == 4 ? 1u : 0u);
            EXPECT_EQ(names.count("film_lab_init_RGB"), channels == 3 ? 1u : 0u);
            const bool diffuses = low || high;
            const bool sweeps = fused && !diffuses;
            EXPECT_EQ(names.count("laboratory_sweep") > 0, sweeps);
            if (!sweeps)
            {
              EXPECT_EQ(names.count("develop_cuda"), 13u);
              EXPECT_EQ(names.count("developer_to_layer"), fused ? 12u : 13u) << "the last reaches no pixel";
            }
            EXPECT_EQ(names.count("reservoir_developer_concentration_init_two"),
                      sweeps ? 0u : agitations[static_cast<size_t>(agitation) - 1]);
            const size_t diffusions = !diffuses ? 0u : fused ? 12u : 13u;
            EXPECT_EQ(names.count("film_lab_diffuse_reset_pfe"), diffusions);
            EXPECT_EQ(names.count("iir_guassian"), (low ? 4 : 2) * diffusions);
            EXPECT_EQ(names.count("u_d_l_r"), (low ? 4 : 2) * diffusions);
            EXPECT_EQ(names.count("pitch_sharp_film_lab"), diffusions);
            EXPECT_EQ(names.count("pitch_accumulate_film_lab_pfe"), diffusions);
          }
}

ENGINE_TEST(Laboratory, KernelsOfAnExchangeByValue)
{
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const int count = 4;
  const Buffer<float> developer = upload({0.0f, 0.18f * 880.037292f, 880.037292f, 1e9f});
  const Buffer<float> detail(count), base(count);
  launch(Queue{}, grid2d(count, 1),
         film_lab_diffuse_reset_pfe{
             .developer = developer.data(), .detail = detail.data(), .base = base.data(), .width = count, .height = 1});
  const Values log = download(detail);
  EXPECT_EQ(download(base), log);
  EXPECT_NEAR(log[0], 0.092864126f, 1e-7f);
  EXPECT_NEAR(log[1], code(0.18), 1e-6f);
  EXPECT_NEAR(log[2], code(1.0), 1e-6f);
  EXPECT_NEAR(log[3], 1.0f, 1e-6f) << "held at the top of the log";

  const Buffer<float> sharp = upload({0.5f, 0.3f, nan, 9.0f});
  const Buffer<float> soft = upload({0.2f, 0.4f, 0.1f, 0.1f});
  launch(Queue{}, grid2d(count, 1),
         pitch_sharp_film_lab{.detail = sharp.data(), .base = soft.data(), .width = count, .height = 1, .gain = 0.5f});
  const Values weighted = download(sharp);
  EXPECT_NEAR(weighted[0], 0.15f, 1e-7f);
  EXPECT_EQ(weighted[1], 0.0f);
  EXPECT_EQ(weighted[2], 0.0f);
  EXPECT_EQ(weighted[3], 1.0f);
  launch(Queue{}, grid2d(count, 1),
         pitch_sharp_film_lab{.detail = sharp.data(), .base = soft.data(), .width = count, .height = 1, .gain = 0.0f});
  EXPECT_EQ(download(sharp), Values(4, 0.0f)) << "without gain the blur alone is left";

  const Buffer<float> added = upload({0.1f, 0.0f, 0.6f, nan});
  const Buffer<float> low = upload({code(0.18) - 0.1f, 0.092864126f, 0.5f, 0.1f});
  launch(Queue{}, grid2d(count, 1),
         pitch_accumulate_film_lab_pfe{
             .detail = added.data(), .base = low.data(), .developer = developer.data(), .width = count, .height = 1});
  const Values back = download(developer);
  EXPECT_NEAR(back[0], 0.18f * 880.037292f, 1e-3f);
  EXPECT_NEAR(back[1], 0.0f, 2e-3f);
  EXPECT_EQ(back[2], 880.037292f) << "above code value 1";
  EXPECT_EQ(back[3], 880.037292f) << "not a number";

  launch(Queue{}, pixels(count, 1),
         developer_to_layer{.developer = developer.data(), .scale = 0.5f, .add = 0.25f, .count = count});
  EXPECT_EQ(download(developer)[2], 880.037292f * 0.5f + 0.25f);
  launch(Queue{}, grid2d(count, 1),
         reservoir_developer_concentration_init_two{
             .developer = developer.data(), .width = count, .height = 1, .value = 0.75f});
  EXPECT_EQ(download(developer), Values(4, 0.75f));
}

ENGINE_TEST(Laboratory, DiffusionIsTheSameOnOneThread)
{
  const Values frame = picture(200, 130);
  const LabSettings s = diffusing(defaults(200, 130), true, true);
  const Developed many = developed(frame, 200, 130, 4, s);
  const tbb::global_control one(tbb::global_control::max_allowed_parallelism, 1);
  EXPECT_EQ(developed(frame, 200, 130, 4, s).density, many.density);
}

ENGINE_TEST(Laboratory, BypassedFilmIsLight)
{
  const Values frame = {code(0.18), code(1.0), code(4.0), 0.25f, -1.0f, 7.0f, std::numeric_limits<float>::quiet_NaN(),
                        1.0f};
  const Buffer<float> buffer = upload(frame);
  launch(Queue{}, grid2d(2, 1),
         film_lab_init_pfe{
             .buffer = buffer.data(), .width = 2, .height = 1, .channels = 4, .entry = makeFilmEntry(logC4)});
  const Values light = download(buffer);
  EXPECT_NEAR(light[0], 0.18f, 1e-6f);
  EXPECT_NEAR(light[1], 1.0f, 2e-6f);
  EXPECT_NEAR(light[2], 4.0f, 8e-6f);
  EXPECT_EQ(light[3], 0.25f);
  EXPECT_EQ(light[4], 0.0f);
  EXPECT_NEAR(light[5], 469.8f, 1e-2f);
  EXPECT_EQ(light[6], 0.0f);
  EXPECT_EQ(light[7], 1.0f);
}

ENGINE_TEST(Laboratory, DevelopStepOfOnePixel)
{
  // With much light the consumption reaches its bounds: 0 for a NaN and below, the full scale above.
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const Buffer<float> density = upload({1.0f, 1.0f, 1.0f});
  const Buffer<float> exposure = upload({1e9f, nan, 0.0f});
  const Buffer<float> silver = upload({1.0f, 1.0f, 1.0f});
  const Buffer<float> developer = upload({1.0f});
  launch(Queue{}, grid2d(1, 1),
         develop_cuda{.density = density.data(),
                      .exposure = exposure.data(),
                      .silver = silver.data(),
                      .developer = developer.data(),
                      .rate = 0.5f,
                      .developerUse = labDeveloperUse,
                      .silverUse = labSilverUse,
                      .width = 1,
                      .height = 1});
  EXPECT_EQ(download(density), (Values{1.5f, 1.5f, 1.5f}));
  EXPECT_EQ(download(silver), (Values{1.0f - 880.037292f * 4e6f, 1.0f, 1.0f}));
  EXPECT_EQ(download(developer), (Values{0.0f}));

  // Silver below 0 takes density away, and uses up nothing more.
  const Buffer<float> overdrawn = upload({-0.5f, -0.5f, -0.5f});
  const Buffer<float> fresh = upload({1.0f});
  launch(Queue{}, grid2d(1, 1),
         develop_cuda{.density = density.data(),
                      .exposure = exposure.data(),
                      .silver = overdrawn.data(),
                      .developer = fresh.data(),
                      .rate = 0.5f,
                      .developerUse = labDeveloperUse,
                      .silverUse = labSilverUse,
                      .width = 1,
                      .height = 1});
  EXPECT_EQ(download(density), (Values{1.25f, 1.25f, 1.25f}));
  EXPECT_EQ(download(overdrawn), (Values{-0.5f, -0.5f, -0.5f}));
  EXPECT_EQ(download(fresh), (Values{1.0f}));
}

PARITY(laboratorySweep, .absolute = 1e-9f)
{
  return developed(picture(310, 203), 310, 203, 4, defaults(310, 203)).density;
}

PARITY(laboratoryDiffusion, .absolute = 1e-9f)
{
  return developed(picture(150, 90), 150, 90, 4, diffusing(defaults(150, 90), true, true)).density;
}

PARITY(laboratoryChain, .absolute = 1e-9f)
{
  return developed(picture(90, 60), 90, 60, 4, defaults(90, 60), laboratoryByKernels).density;
}

}  // namespace morvellan::MORVELLAN_TARGET
