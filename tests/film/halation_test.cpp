// Halation: the mix of a pixel, what the controls do at their ends, and the fused stage against the kernels.
#include "film/halation.h"

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

constexpr int logC4 = 47;
constexpr int linearRec709 = 0;
constexpr int cinemaXyz = 31;

HalationSettings defaults(int inputGamut = logC4)
{
  return {.breadth = 0.125f,
          .saturation = 1.0f,
          .amount = {1.0f, 0.15f, 0.07f},
          .keep = {0.7f, 0.7f, 0.7f},
          .inputGamut = inputGamut};
}

size_t floats(int w, int h, int channels)
{
  return static_cast<size_t>(w) * static_cast<size_t>(h) * static_cast<size_t>(channels);
}

Values noise(size_t count)
{
  std::mt19937 generator(17);
  std::uniform_real_distribution<float> uniform(0.1f, 1.0f);
  Values values(count);
  for (float& v : values)
    v = uniform(generator);
  return values;
}

struct Frames
{
  Buffer<float> image, blur;

  explicit Frames(const Values& frame) : image(upload(frame)), blur(upload(Values(frame.size(), 0.0f))) {}
};

Values glowing(const Values& frame, int w, int h, int channels, const HalationSettings& settings,
               LaunchObserver* observer = nullptr)
{
  const Frames frames(frame);
  halation(Queue{0, observer}, frames.image.data(), frames.blur.data(), w, h, channels, settings);
  return download(frames.image);
}

Values glowingByKernels(const Values& frame, int w, int h, int channels, const HalationSettings& settings,
                        LaunchObserver* observer = nullptr)
{
  const Frames frames(frame);
  halationByKernels(Queue{0, observer}, frames.image.data(), frames.blur.data(), w, h, channels, settings);
  return download(frames.image);
}

// One pixel through halation_linear with an exit that only floors at 0 and encodes to LogC4, undone here.
std::array<double, 3> mixed(const Values& glow, const Values& original, const HalationSettings& s)
{
  const Buffer<float> image = upload(glow);
  const Buffer<float> blur(3);
  const Buffer<float> kept = upload(original);
  const HalationMix mix{
      .amount = {s.amount[0], s.amount[1], s.amount[2]},
      .share = {1.0f / (s.amount[0] + 1.0f), 1.0f / (s.amount[1] + 1.0f), 1.0f / (s.amount[2] + 1.0f)},
      .keep = {s.keep[0], s.keep[1], s.keep[2]},
      .saturation = s.saturation,
      .exit = makeFilmExit(logC4)};
  launch(Queue{}, grid2d(1, 1),
         halation_linear{.image = image.data(),
                         .blur = blur.data(),
                         .original = kept.data(),
                         .width = 1,
                         .height = 1,
                         .mix = mix,
                         .channels = 3});
  const Values coded = download(image);
  EXPECT_EQ(download(blur), coded);
  std::array<double, 3> linear{};
  for (size_t k = 0; k < 3; ++k)
    linear[k] = (std::exp2((static_cast<double>(coded[k]) - 0.092864126) / 0.0647954196 + 6.0) - 64.0) / 2231.82642;
  return linear;
}

void expectClose(const Values& a, const Values& b, float tolerance)
{
  ASSERT_EQ(a.size(), b.size());
  for (size_t i = 0; i < a.size(); ++i)
    ASSERT_NEAR(a[i], b[i], tolerance) << i;
}

}  // namespace

ENGINE_TEST(Halation, SharesOfTheGlow)
{
  HalationSettings s = defaults();
  s.keep[0] = s.keep[1] = s.keep[2] = 1.0f;
  const auto mix = mixed({2.0f, 2.0f, 2.0f}, {1.0f, 1.0f, 1.0f}, s);
  EXPECT_NEAR(mix[0], 1.5, 1e-5);                // half of red is the glow
  EXPECT_NEAR(mix[1], 1.0 + 0.15 / 1.15, 1e-5);  // 13 percent of green
  EXPECT_NEAR(mix[2], 1.0 + 0.07 / 1.07, 1e-5);  // 6.5 percent of blue
  const auto kept = mixed({2.0f, 2.0f, 2.0f}, {1.0f, 1.0f, 1.0f}, defaults());
  for (size_t k = 0; k < 3; ++k)
    EXPECT_NEAR(kept[k], 0.7 * mix[k] + 0.3, 1e-5);  // and the blend comes after the shares
}

ENGINE_TEST(Halation, SaturationTakesBlueFirst)
{
  HalationSettings s = defaults();
  s.keep[0] = s.keep[1] = s.keep[2] = 1.0f;
  for (float& a : s.amount)
    a = 1e6f;  // the glow alone
  const double r = 0.8, g = 0.5, b = 0.6;
  for (const double keep : {0.0, 0.4, 1.6})
  {
    s.saturation = static_cast<float>(keep);
    const auto luminance = [](double red, double green, double blue)
    { return 0.254524171 * red + 0.781477749 * green - 0.0360019095 * blue; };
    const double blue = keep * b + (1.0 - keep) * luminance(r, g, b);
    const double grey = (1.0 - keep) * luminance(r, g, blue);
    const auto result = mixed({0.8f, 0.5f, 0.6f}, {0.0f, 0.0f, 0.0f}, s);
    EXPECT_NEAR(result[0], keep * r + grey, 2e-5);
    EXPECT_NEAR(result[1], keep * g + grey, 2e-5);
    EXPECT_NEAR(result[2], blue, 2e-5);
  }
}

ENGINE_TEST(Halation, NoSaturationMakesTheGlowGrey)
{
  HalationSettings s = defaults();
  s.saturation = 0.0f;
  for (size_t k = 0; k < 3; ++k)
  {
    s.amount[k] = 1e6f;
    s.keep[k] = 1.0f;
  }
  const auto result = mixed({3.0f, 0.4f, 0.1f}, {0.0f, 0.0f, 0.0f}, s);
  EXPECT_NEAR(result[0], result[1], 1e-4);
  EXPECT_NEAR(result[0], result[2], 0.05 * result[0]);  // red and green see the new blue, blue saw the old
}

ENGINE_TEST(Halation, NothingKeptIsTheInputAgain)
{
  HalationSettings s = defaults();
  s.keep[0] = s.keep[1] = s.keep[2] = 0.0f;
  const Values frame = noise(floats(40, 30, 4));
  for (const int gamut : {logC4, linearRec709, 30})
  {
    s.inputGamut = gamut;
    expectClose(glowing(frame, 40, 30, 4, s), frame, 4e-6f);
  }
  // Past what the decode holds, values are lost.
  EXPECT_NEAR(glowing({600.0f, 600.0f, 600.0f, 0.5f}, 1, 1, 4, defaults(linearRec709))[0], 469.8f, 0.01f);
  EXPECT_NEAR(glowing({1.5f, -0.5f, 0.4f, 0.5f}, 1, 1, 4, s = defaults())[0], 1.0f, 1e-5f);
}

ENGINE_TEST(Halation, NoAmountIsNoHalationWhateverTheBlend)
{
  HalationSettings s = defaults();
  s.amount[0] = 0.0f;
  const Values frame = noise(floats(40, 30, 4));
  const Values result = glowing(frame, 40, 30, 4, s);
  float green = 0.0f;
  for (size_t i = 0; i < frame.size(); i += 4)
  {
    ASSERT_NEAR(result[i], frame[i], 3e-6f);
    green = std::max(green, std::fabs(result[i + 1] - frame[i + 1]));
  }
  EXPECT_GT(green, 0.001f);
}

ENGINE_TEST(Halation, UniformFrameStays)
{
  const Values frame(floats(33, 21, 3), 0.6f);
  expectClose(glowing(frame, 33, 21, 3, defaults()), frame, 4e-6f);
}

// A picture of one row, whose columns no blur changes: four rounds of doubling width, each keeping half as much of the
// sharp picture as the one before, in double precision. The narrowest breadth starts below the least sigma.
ENGINE_TEST(Halation, RoundsByValue)
{
  const int w = 150;
  const Values frame = noise(floats(w, 1, 3));
  for (const float breadth : {0.03f, 0.125f, 0.5f})
  {
    HalationSettings s = defaults();
    s.breadth = breadth;
    const Values result = glowing(frame, w, 1, 3, s);
    for (size_t k = 0; k < 3; ++k)
    {
      std::vector<double> original;
      for (size_t i = k; i < frame.size(); i += 3)
        original.push_back((std::exp2((static_cast<double>(frame[i]) - 0.092864126) / 0.0647954196 + 6.0) - 64.0) /
                           2231.82642);
      std::vector<double> glow = original;
      double sigma = static_cast<double>(breadth) * 1.6, kept = 0.5;
      for (int round = 0; round < 4; ++round, sigma *= 2.0, kept *= 0.5)
      {
        const std::vector<double> soft = gaussianInDouble(glow, sigma);
        for (size_t i = 0; i < glow.size(); ++i)
          glow[i] = (glow[i] - soft[i]) * kept + soft[i];
      }
      const double amount = static_cast<double>(s.amount[k]), share = static_cast<double>(s.keep[k]);
      for (size_t i = 0; i < glow.size(); ++i)
      {
        const double mix = (glow[i] * amount + original[i]) / (amount + 1.0) * share + (1.0 - share) * original[i];
        const double code = (std::log2(mix * 2231.82642 + 64.0) - 6.0) * 0.0647954196 + 0.092864126;
        ASSERT_NEAR(result[3 * i + k], code, 2e-6) << "breadth " << breadth << ", channel " << k << ", pixel " << i;
      }
    }
  }
}

ENGINE_TEST(Halation, FusedStageAgreesWithTheKernels)
{
  const int sizes[][2] = {{1, 1}, {19, 7}, {64, 33}, {130, 90}};
  for (const auto& size : sizes)
    for (const int channels : {3, 4})
      for (const float breadth : {0.02f, 0.125f, 0.5f})
        for (const int gamut : {logC4, linearRec709, cinemaXyz})
        {
          const Values frame = noise(floats(size[0], size[1], channels));
          HalationSettings s = defaults(gamut);
          s.breadth = breadth;
          s.saturation = 1.4f;
          const Values fused = glowing(frame, size[0], size[1], channels, s);
          Values byKernels = glowingByKernels(frame, size[0], size[1], channels, s);
          // At its black the cinema's curve makes 1e-5 of code of 1e-8 of light, where channels of light near 1 cancel:
          // there one rounding of light 1 is allowed instead.
          if (gamut == cinemaXyz)
            for (size_t k = 0; k < fused.size(); ++k)
              if (fused[k] > 0.0f && byKernels[k] > 0.0f &&
                  std::fabs(std::pow(fused[k], 2.6f) - std::pow(byKernels[k], 2.6f)) <= 6e-8f)
                byKernels[k] = fused[k];
          expectClose(fused, byKernels, 1e-5f);
        }
}

ENGINE_TEST(Halation, AlphaIsUntouchedAndTheKernelsLeaveTheColourInBothFrames)
{
  const Values frame = noise(floats(50, 20, 4));
  const Frames frames(frame);
  halation(Queue{}, frames.image.data(), frames.blur.data(), 50, 20, 4, defaults());
  const Values image = download(frames.image);
  const Frames byKernels(frame);
  halationByKernels(Queue{}, byKernels.image.data(), byKernels.blur.data(), 50, 20, 4, defaults());
  const Values imageByKernels = download(byKernels.image);
  const Values blurByKernels = download(byKernels.blur);
  for (size_t i = 0; i < frame.size(); ++i)
    if (i % 4 == 3)
    {
      ASSERT_EQ(image[i], frame[i]);
      ASSERT_EQ(imageByKernels[i], frame[i]);
    }
    else
    {
      ASSERT_EQ(blurByKernels[i], imageByKernels[i]);
    }
}

// Bad pixels are taken for the ends of the range that the decode holds: the rest of the frame, glow and all, is to the
// last bit that of a frame with those ends, and what is read as 0 glows nowhere.
ENGINE_TEST(Halation, BadPixelsGlowAsTheEndsOfTheRange)
{
  const int w = 90, h = 80;
  const float infinity = std::numeric_limits<float>::infinity();
  const float nan = std::numeric_limits<float>::quiet_NaN();
  for (const int channels : {3, 4})
    for (const int gamut : {logC4, linearRec709})
    {
      const float most = gamut == logC4 ? 1.0f : 469.799988f;
      Values frame = noise(floats(w, h, channels));
      Values repaired = frame;
      const std::pair<float, float> values[] = {
          {nan, 0.0f}, {infinity, most}, {-infinity, 0.0f}, {1e5f, most}, {-1e5f, 0.0f}};
      size_t at = 0;
      for (const auto& [bad, held] : values)
        for (size_t k = 0; k < 4; ++k, at += 311 * static_cast<size_t>(channels))  // one channel, or all of them
          for (size_t c = 0; c < 3; ++c)
            if (k == c || k == 3)
            {
              frame[at + c] = bad;
              repaired[at + c] = held;
            }
      HalationSettings s = defaults(gamut);
      s.breadth = 0.5f;
      s.saturation = 0.3f;
      const Values result = glowing(frame, w, h, channels, s);
      EXPECT_EQ(result, glowing(repaired, w, h, channels, s));
      EXPECT_EQ(glowingByKernels(frame, w, h, channels, s), glowingByKernels(repaired, w, h, channels, s));
      for (const float value : result)
        ASSERT_TRUE(std::isfinite(value));
    }
}

// Four rounds of three channels: 24 filters and 24 transposes. Fused, a channel's four rounds follow one another, each
// with its mix.
ENGINE_TEST(Halation, LaunchesOfAFrame)
{
  const std::string blur = "iir_guassian+u_d_l_r+iir_guassian+u_d_l_r+";
  std::string rounds, fusedRounds;
  for (int i = 0; i < 4; ++i)
    rounds += blur + blur + blur + "FrequencySharpenHalation+";
  for (int i = 0; i < 12; ++i)
    fusedRounds += blur + "FrequencySharpenHalation+";
  for (const int channels : {3, 4})
    for (const float breadth : {0.125f, 0.5f})
    {
      HalationSettings s = defaults();
      s.breadth = breadth;
      NameList fused, byKernels;
      glowing(noise(floats(40, 30, channels)), 40, 30, channels, s, &fused);
      glowingByKernels(noise(floats(40, 30, channels)), 40, 30, channels, s, &byKernels);
      EXPECT_EQ(fused.text(), "+halation_init+" + fusedRounds + "halation_linear+");
      EXPECT_EQ(byKernels.text(), "+halation_init+" + rounds + "halation_linear+");
    }
}

ENGINE_TEST(Halation, ThreadCountChangesNothing)
{
  const Values frame = noise(floats(150, 110, 4));
  const Values many = glowing(frame, 150, 110, 4, defaults());
  const tbb::global_control one(tbb::global_control::max_allowed_parallelism, 1);
  EXPECT_EQ(glowing(frame, 150, 110, 4, defaults()), many);
}

PARITY(halationStage)
{
  Values all;
  for (const int gamut : {logC4, linearRec709, 31})
  {
    HalationSettings s = defaults(gamut);
    s.breadth = 0.5f;
    const Values result = glowing(noise(floats(131, 77, 4)), 131, 77, 4, s);
    all.insert(all.end(), result.begin(), result.end());
  }
  return all;
}

}  // namespace morvellan::MORVELLAN_TARGET
