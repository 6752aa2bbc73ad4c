// The cascade of pitches: what each band's gain does, which bands run, and the fused form against the kernels.
#include "film/pitch.h"

#include <cmath>
#include <limits>
#include <random>

#include <tbb/global_control.h>

#include "tests/support/device_arrays.h"
#include "tests/support/engine_test.h"
#include "tests/support/gaussian_in_double.h"
#include "tests/support/name_list.h"

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

using Values = std::vector<float>;

constexpr PitchGains neutral = {1.0f, 1.0f, 1.0f, 1.0f, 1.0f, 1.0f};

Values labNoise(int w, int h)
{
  std::mt19937 generator(11);
  std::uniform_real_distribution<float> uniform(0.0f, 1.0f);
  Values values(static_cast<size_t>(w) * static_cast<size_t>(h) * 4);
  for (float& v : values)
    v = uniform(generator);
  return values;
}

struct Run
{
  Buffer<float> lab, work, scratch;

  Run(const Values& frame, int w, int h)
      : lab(upload(frame)), work(upload(Values(frame.size(), 0.0f))),
        scratch(static_cast<size_t>(w) * static_cast<size_t>(h))
  {
  }
};

Values weighted(const Values& frame, int w, int h, const PitchGains& gains, LaunchObserver* observer = nullptr)
{
  const Run run(frame, w, h);
  const float* result =
      pitchBands(Queue{0, observer}, run.lab.data(), run.work.data(), run.scratch.data(), w, h, gains);
  return download(result, frame.size());
}

Values weightedByKernels(const Values& frame, int w, int h, const PitchGains& gains, LaunchObserver* observer = nullptr)
{
  const Run run(frame, w, h);
  pitchBandsByKernels(Queue{0, observer}, run.lab.data(), run.work.data(), run.scratch.data(), w, h, gains);
  return download(run.work);
}

void expectClose(const Values& a, const Values& b, float tolerance)
{
  ASSERT_EQ(a.size(), b.size());
  for (size_t i = 0; i < a.size(); ++i)
    ASSERT_NEAR(a[i], b[i], tolerance) << i;
}

}  // namespace

ENGINE_TEST(Pitch, NeutralGainsGiveTheInput)
{
  const Values frame = labNoise(75, 50);
  expectClose(weighted(frame, 75, 50, neutral), frame, 3e-7f);
}

ENGINE_TEST(Pitch, BandsRunUpToTheLastThatIsNotNeutral)
{
  EXPECT_EQ(pitchBandCount(neutral), 1);
  for (int band = 0; band < 6; ++band)
  {
    PitchGains gains = neutral;
    gains[static_cast<size_t>(band)] = 1.2f;
    EXPECT_EQ(pitchBandCount(gains), band + 1);
    std::string bands;
    for (int i = 0; i <= band; ++i)
      bands += std::string("iir_guassian+u_d_l_r+iir_guassian+u_d_l_r+pitch_sharp+") + (i < band ? "CopyY+" : "");
    NameList fused, byKernels;
    weighted(labNoise(40, 40), 40, 40, gains, &fused);
    weightedByKernels(labNoise(40, 40), 40, 40, gains, &byKernels);
    EXPECT_EQ(fused.text(), "+lightness_plane+" + bands + "pitch_accumulate+");
    EXPECT_EQ(byKernels.text(), "+" + bands + "pitch_accumulate+");
  }
}

// A picture of one row: each band is what its sigma takes from the low-pass before it, in double precision.
ENGINE_TEST(Pitch, CascadeByValue)
{
  const int w = 220;
  const Values frame = labNoise(w, 1);
  const PitchGains gains = {1.8f, 0.4f, 1.4f, 2.4f, 0.6f, 1.2f};
  std::vector<double> previous;
  for (size_t i = 0; i < frame.size(); i += 4)
    previous.push_back(static_cast<double>(frame[i]));
  std::vector<double> sum(previous.size(), 0.0);
  double sigma = 0.4;
  for (const float gain : gains)
  {
    const std::vector<double> low = gaussianInDouble(previous, sigma);
    for (size_t i = 0; i < sum.size(); ++i)
      sum[i] += (previous[i] - low[i]) * static_cast<double>(gain);
    previous = low;
    sigma *= 2.0;
  }
  const Values result = weighted(frame, w, 1, gains);
  for (size_t i = 0; i < sum.size(); ++i)
    ASSERT_NEAR(result[4 * i], sum[i] + previous[i], 4e-6) << i;
}

ENGINE_TEST(Pitch, FusedBandsAgreeWithTheKernels)
{
  const int sizes[][2] = {{1, 1}, {17, 5}, {64, 64}, {131, 77}};
  for (const auto& size : sizes)
  {
    const Values frame = labNoise(size[0], size[1]);
    const PitchGains gains = {1.8f, 0.4f, 1.4f, 2.4f, 0.6f, 1.2f};
    expectClose(weighted(frame, size[0], size[1], gains), weightedByKernels(frame, size[0], size[1], gains), 8e-6f);
  }
}

// With a gain of 0.4 the finest band keeps 40 percent of its detail: the sum is the low-pass plus 0.4 of the rest.
ENGINE_TEST(Pitch, LeastGainDoesNotMuteABand)
{
  const int w = 60, h = 45;
  const Values frame = labNoise(w, h);
  PitchGains least = neutral, none = neutral;
  least[0] = 0.4f;
  none[0] = 0.0f;
  const Values kept = weighted(frame, w, h, least);
  const Values low = weighted(frame, w, h, none);
  for (size_t i = 0; i < frame.size(); i += 4)
    ASSERT_NEAR(kept[i], low[i] + 0.4f * (frame[i] - low[i]), 1e-6f);
}

ENGINE_TEST(Pitch, ChromaAndAlphaAreThoseOfTheSource)
{
  const Values frame = labNoise(50, 30);
  const Values result = weighted(frame, 50, 30, {2.4f, 0.4f, 1.0f, 1.0f, 1.7f, 0.5f});
  for (size_t i = 0; i < frame.size(); ++i)
    if (i % 4 != 0)
    {
      ASSERT_EQ(result[i], frame[i]);
    }
}

ENGINE_TEST(Pitch, ConstantLightnessStays)
{
  const Values frame(40 * 30 * 4, 0.7f);
  expectClose(weighted(frame, 40, 30, {2.4f, 2.4f, 2.4f, 2.4f, 2.4f, 2.4f}), frame, 1e-5f);
}

ENGINE_TEST(Pitch, BadPixelStaysOnePixel)
{
  const int w = 70, h = 60;
  const PitchGains gains = {1.8f, 1.8f, 1.8f, 1.8f, 1.8f, 1.8f};
  const float infinity = std::numeric_limits<float>::infinity();
  for (const float bad : {std::numeric_limits<float>::quiet_NaN(), infinity, -infinity})
  {
    Values frame = labNoise(w, h);
    const size_t at = static_cast<size_t>((30 * w + 35) * 4);
    frame[at] = 0.0f;
    const Values repaired = weighted(frame, w, h, gains);
    frame[at] = bad;
    const Values result = weighted(frame, w, h, gains);
    for (size_t i = 0; i < result.size(); ++i)
      if (i != at)
      {
        ASSERT_EQ(result[i], repaired[i]) << i;
      }
    EXPECT_FALSE(std::isfinite(result[at]));
  }
}

ENGINE_TEST(Pitch, ThreadCountChangesNothing)
{
  const Values frame = labNoise(150, 120);
  const PitchGains gains = {1.8f, 0.4f, 1.4f, 2.4f, 0.6f, 1.2f};
  const Values many = weighted(frame, 150, 120, gains);
  const tbb::global_control one(tbb::global_control::max_allowed_parallelism, 1);
  EXPECT_EQ(weighted(frame, 150, 120, gains), many);
}

ENGINE_TEST(Pitch, KernelsTouchTheFirstFloatOnly)
{
  const Buffer<float> a = upload({1, 9, 9, 9, 2, 9, 9, 9, 3, 9, 9, 9});
  const Buffer<float> acc = upload({10, 8, 8, 8, 20, 8, 8, 8, 30, 8, 8, 8});
  const Buffer<float> b = upload({0.5f, 7, 7, 7, 0.5f, 7, 7, 7, 0.5f, 7, 7, 7});
  launch(Queue{}, grid2d(3, 1),
         pitch_sharp{.w = 3, .h = 1, .a = a.data(), .b = b.data(), .acc = acc.data(), .gain = 2.0f, .ch = 4});
  EXPECT_EQ(download(acc), (Values{11, 8, 8, 8, 23, 8, 8, 8, 35, 8, 8, 8}));
  launch(Queue{}, grid2d(3, 1), CopyY{.src = a.data(), .dst = acc.data() + 2, .w = 3, .h = 1, .ch = 4});
  EXPECT_EQ(download(acc), (Values{11, 8, 1, 8, 23, 8, 2, 8, 35, 8, 3, 8}));
  launch(Queue{}, grid2d(3, 1), pitch_accumulate{.w = 3, .h = 1, .src = b.data(), .work = acc.data(), .ch = 4});
  EXPECT_EQ(download(acc), (Values{12, 7, 7, 7, 25, 7, 7, 7, 38, 7, 7, 7}));
}

// Where bands cancel a sum keeps the blurs' own rounding (see blurOfAPlane): with these gains the low-passes of sigma
// 3.2, 6.4 and 12.8 come in with weights -1.8, 0.6 and -0.2, which makes 2.8e-7, 2.6e-7 and 2.5e-7 of a lightness of 1,
// the three narrow ones 1.2e-7 for each weight of 1.
PARITY(pitchBands, .relative = 0.0f, .absolute = 1.2e-6f)
{
  return weighted(labNoise(131, 77), 131, 77, {1.8f, 0.4f, 1.4f, 2.4f, 0.6f, 1.2f});
}

}  // namespace morvellan::MORVELLAN_TARGET
