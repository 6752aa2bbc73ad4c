// The laboratory: published results on uniform frames, the process's numbers, and the sweep in registers against the
// chain of kernels and against double precision.
#include "tests/film/laboratory_runs.h"

#include <limits>
#include <numbers>

#include <tbb/global_control.h>

#include "film/laboratory_sweep.h"
#include "tests/support/name_list.h"

namespace morvellan::MORVELLAN_TARGET
{

using namespace laboratory_runs;

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

// Both ways against double precision. Measured where pixels lose by an exchange: the chain within 0.95e-6, the sweep
// within 0.85e-6 with the tank's course solved for to the end, and 1.75e-6 where it stops at its bound of 4e-7.
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

// The lean form leaves out the bounds that the first two cycles, and pixels that gain by no exchange, cannot reach. On
// both sides of the ends of its range a frame with the brightest light is as exact as by the chain of kernels.
ENGINE_TEST(Laboratory, BothFormsOfACycleAtTheEndsOfTheLeanOne)
{
  struct Case
  {
    float time, replenish, concentration;
    bool lean;
  };
  const Case cases[] = {{100.0f, 1.0f, 1.0f, true},   {100.0f, 1.0001f, 1.0f, false}, {7100.0f, 0.2f, 1.0f, true},
                        {7300.0f, 0.2f, 1.0f, false}, {100.0f, 0.2f, 71.0f, true},    {100.0f, 0.2f, 73.0f, false}};
  const int w = 96, h = 64;
  Values frame = picture(w, h);
  std::fill_n(frame.begin() + 4 * 1000, 4 * 200, 1.0f);  // the brightest light
  for (const Case& c : cases)
  {
    SCOPED_TRACE(testing::Message() << "time " << c.time << ", replenish " << c.replenish << ", concentration "
                                    << c.concentration);
    LabSettings s = defaults(w, h);
    s.developmentTime = c.time;
    s.replenish = c.replenish;
    s.concentration = c.concentration;
    EXPECT_EQ(isLean(labProcess(s, w, h), s.concentration), c.lean);
    const Developed sweep = developed(frame, w, h, 4, s);
    const Developed chain = developed(frame, w, h, 4, s, laboratoryByKernels);
    // Seventy times the usual development cancels nearly all silver: the chain itself is up to 3e-4 off there.
    const std::vector<double> expected = lightInDouble(chain.exposure, w, h, s);
    const double exact = std::max(2e-6, 3.0 * largestRelativeError(chain.linear, expected));
    EXPECT_LE(exact, 1e-3);
    EXPECT_LE(largestRelativeError(sweep.linear, expected), exact);
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

// A sweep decodes its source in stretches, the chain's kernel pixel by pixel.
ENGINE_TEST(Laboratory, ExposureIsTheSameByBothWaysFromEveryEncoding)
{
  const int w = 61, h = 5;
  for (const int channels : {3, 4})
    for (int gamut = 0; gamut <= 48; ++gamut)
    {
      LabSettings s = defaults(w, h);
      s.inputGamut = gamut;
      const Values frame = picture(w, h, channels);
      EXPECT_EQ(developed(frame, w, h, channels, s).exposure,
                developed(frame, w, h, channels, s, laboratoryByKernels).exposure)
          << gamut;
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

// A picture as cameras see them: dark ground, bright sky, a lamp in a corner, colours that change from place to place.
Values landscape(int w, int h)
{
  std::mt19937 generator(5);
  std::uniform_real_distribution<float> noise(-0.02f, 0.02f);
  Values values(static_cast<size_t>(w) * static_cast<size_t>(h) * 4);
  for (size_t i = 0; i < values.size(); ++i)
  {
    const float x = static_cast<float>(i / 4 % static_cast<size_t>(w)) / static_cast<float>(w);
    const size_t row = i / 4 / static_cast<size_t>(w);
    const float y = static_cast<float>(row) / static_cast<float>(h);
    const float tint = 0.08f * std::sin(9.0f * x + 2.0f * static_cast<float>(i % 4));
    const bool lamp = x > 0.9f && y > 0.2f && y < 0.3f;
    values[i] = (lamp ? 0.95f : 0.12f + 0.55f * y * y) + tint + noise(generator);
  }
  return values;
}

ENGINE_TEST(Laboratory, TwoSweepsDevelopAFrame)
{
  for (const auto& [w, h] : {std::pair{1920, 1080}, std::pair{1024, 512}, std::pair{960, 540}})
    for (const Values& frame : {gradient(w, h), landscape(w, h)})
      for (const int agitation : {2, 5})
      {
        SCOPED_TRACE(testing::Message() << w << "x" << h << ", agitation " << agitation);
        LabSettings settings = defaults(w, h);
        settings.agitation = agitation;
        NameList names;
        developed(frame, w, h, 4, settings, laboratory, &names);
        EXPECT_EQ(names.count("film_lab_init"), 1u);
        EXPECT_EQ(names.count("develop_cuda"), 1u);
        EXPECT_EQ(names.count("laboratory_sweep"), 2u);
      }
}

// The sample meets every stretch of the frame once, and a part of it is spread over the frame as all of it is.
ENGINE_TEST(Laboratory, TheSampleIsSpreadOverTheFrame)
{
  constexpr int every = 16, lines = 1875, stride = 1159, part = lines / 15;
  constexpr int line = laboratory_sample::line;
  // Linear light, so that exposures rise with the pixel's place.
  Values frame(static_cast<size_t>(every) * lines * line * 4);
  for (size_t i = 0; i < frame.size(); ++i)
  {
    const size_t stretch = i / (4 * line) / every;
    frame[i] = static_cast<float>(stretch + 1) / lines;
  }
  const Buffer<float> source = upload(frame);
  const Buffer<float> exposure(static_cast<size_t>(lines) * line * 3);
  launch(Queue{}, items((lines + laboratory_sample::batch - 1) / laboratory_sample::batch),
         laboratory_sample{.source = source.data(),
                           .exposure = exposure.data(),
                           .every = every,
                           .lines = lines,
                           .stride = stride,
                           .channels = 4,
                           .entry = makeFilmEntry(linearRec709),
                           .silver = {1.0f, 1.0f, 1.0f}});
  const Values met = download(exposure);
  const float largest = *std::max_element(met.begin(), met.end());
  std::vector<int> stretches;
  for (size_t i = 0; i < met.size(); i += size_t{line} * 3)
    stretches.push_back(static_cast<int>(std::lround(met[i] / largest * lines)) - 1);
  std::vector<int> first(stretches.begin(), stretches.begin() + part);
  std::sort(stretches.begin(), stretches.end());
  for (int i = 0; i < lines; ++i)
    ASSERT_EQ(stretches[static_cast<size_t>(i)], i);
  // Steps by the golden ratio leave no gap above its square times the mean (the three-gap theorem).
  constexpr double largestGap = std::numbers::phi * std::numbers::phi * lines / part;
  std::sort(first.begin(), first.end());
  for (size_t i = 1; i < first.size(); ++i)
    EXPECT_LT(first[i] - first[i - 1], largestGap) << i;
}

namespace
{

std::string blurs(size_t count)
{
  std::string text;
  for (size_t i = 0; i < count; ++i)
    text += "iir_guassian+u_d_l_r+iir_guassian+u_d_l_r+";
  return text;
}

constexpr const char* stirring = "reservoir_developer_concentration_init_two+";

// The thirteen cycles kernel by kernel.
std::string chainLaunches(const LabProcess& process, const LabSettings& s)
{
  std::string text;
  for (int cycle = 0; cycle < labCycles; ++cycle)
  {
    text += "develop_cuda+";
    if (s.lowDiffusion || s.highDiffusion)
      text += "film_lab_diffuse_reset_pfe+" + blurs(1) + "pitch_sharp_film_lab+" + blurs(s.lowDiffusion ? 1 : 0) +
              "pitch_accumulate_film_lab_pfe+";
    text += "sum_block+developer_to_layer+sum_block+";
    if (process.agitates(cycle))
      text += stirring;
  }
  return text;
}

// The same fused: one sum is enough, what recombines is part of the last blur, an exchange is made as the next cycle
// loads, and what follows the twelfth only if the tank was stirred.
std::string fusedLaunches(const LabProcess& process, const LabSettings& s)
{
  std::string text;
  for (int cycle = 0; cycle < labCycles - 1; ++cycle)
  {
    text += "develop_cuda+film_lab_diffuse_reset_pfe+" + blurs(s.lowDiffusion ? 2 : 1) +
            "pitch_sharp_film_lab+pitch_accumulate_film_lab_pfe+";
    if (process.agitates(cycle) || cycle < labCycles - 2)
      text += "sum_block+";
    text += "developer_to_layer+";
    if (process.agitates(cycle))
      text += stirring;
  }
  return text + "develop_cuda+";
}

}  // namespace

// Both diffusion switches, every agitation, RGB and RGBA: what runs, in its order.
ENGINE_TEST(Laboratory, LaunchesOfEveryCombination)
{
  const int w = 60, h = 40;
  for (const int channels : {3, 4})
    for (const bool low : {false, true})
      for (const bool high : {false, true})
        for (int agitation = 1; agitation <= 5; ++agitation)
        {
          SCOPED_TRACE(testing::Message() << "channels " << channels << ", low " << low << ", high " << high
                                          << ", agitation " << agitation);
          LabSettings s = diffusing(defaults(w, h), low, high);
          s.agitation = agitation;
          const LabProcess process = labProcess(s, w, h);
          const std::string init = channels == 4 ? "+film_lab_init+" : "+film_lab_init_RGB+";
          const Values frame = picture(w, h, channels);
          NameList chain, fused;
          developed(frame, w, h, channels, s, laboratoryByKernels, &chain);
          EXPECT_EQ(chain.text(), init + chainLaunches(process, s));
          developed(frame, w, h, channels, s, laboratory, &fused);
          if (low || high)
          {
            EXPECT_EQ(fused.text(), init + fusedLaunches(process, s));
            continue;
          }
          std::string sweeps = init + "laboratory_sweep+laboratory_sweep+develop_cuda+";
          while (sweeps.size() < fused.text().size())
            sweeps += "laboratory_sweep+develop_cuda+";
          EXPECT_EQ(fused.text(), sweeps);
          EXPECT_LE(fused.count("develop_cuda"), 12u);
        }
}

PARITY(laboratorySweep, .absolute = 1e-9f)
{
  return developed(picture(310, 203), 310, 203, 4, defaults(310, 203)).density;
}

PARITY(laboratoryChain, .absolute = 1e-9f)
{
  return developed(picture(90, 60), 90, 60, 4, defaults(90, 60), laboratoryByKernels).density;
}

}  // namespace morvellan::MORVELLAN_TARGET
