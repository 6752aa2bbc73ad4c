// Tone and density by values worked out in double precision, their limits, and where they are monotonic.
#include "film/tone.h"

#include <cmath>
#include <limits>

#include "device/launch.h"
#include "tests/support/device_arrays.h"
#include "tests/support/engine_test.h"
#include "tests/support/film_settings.h"

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

struct bend_tone
{
  const float* source;
  float* target;
  ToneCurve tone;
  MORVELLAN_KERNEL void operator()(Pixels at) const { storeRgb(target, at, bendTone(tone, loadRgb(source, at))); }
};

struct develop_density
{
  const float* source;
  float* target;
  DensityCurve density;
  bool power;
  MORVELLAN_KERNEL void operator()(Pixels at) const
  {
    storeRgb(target, at, filmDensity(density, power, loadRgb(source, at)));
  }
};

struct tilt_codes
{
  const float* source;
  float* target;
  PrintGamma gamma;
  MORVELLAN_KERNEL void operator()(Pixels at) const { storeRgb(target, at, tilt(gamma, loadRgb(source, at))); }
};

enum class Step
{
  Encode,
  Decode,
  DecodeOpen,
};

struct film_log
{
  const float* source;
  float* target;
  Step step;
  MORVELLAN_KERNEL void operator()(Pixels at) const
  {
    const Rgb c = loadRgb(source, at);
    storeRgb(target, at,
             step == Step::Encode   ? filmEncode(c)
             : step == Step::Decode ? filmDecode(c)
                                    : filmDecodeOpen(c));
  }
};

// The same value in the three channels of each pixel.
std::vector<float> neutral(const std::vector<float>& values)
{
  std::vector<float> frame;
  for (float v : values)
    frame.insert(frame.end(), 3, v);
  return frame;
}

template <typename Kernel, typename... Arguments>
std::vector<float> run(const std::vector<float>& frame, const Arguments&... arguments)
{
  const Buffer<float> source = upload(frame);
  const Buffer<float> target(frame.size());
  launch(Queue{}, pixels(static_cast<int>(frame.size() / 3), 1), Kernel{source.data(), target.data(), arguments...});
  return download(target);
}

std::vector<float> ramp(float from, float to, int steps)
{
  std::vector<float> values;
  for (int i = 0; i <= steps; ++i)
    values.push_back(from + (to - from) * static_cast<float>(i) / static_cast<float>(steps));
  return values;
}

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float nan = std::numeric_limits<float>::quiet_NaN();

}  // namespace

ENGINE_TEST(Tone, KneeToeAndShoulderByValue)
{
  const std::vector<float> codes{0.0929f, 0.12f, 0.2f, 0.2784f, 0.35f, 0.45f, 0.55f, 0.7f, 0.9f, 1.05f};
  const float expected[][3] = {{0.09823228f, -0.00052f, 0.20102262f},   {0.12388585f, 0.03954673f, 0.21447912f},
                               {0.19651525f, 0.15719723f, 0.25605628f}, {0.26359459f, 0.26983352f, 0.29565807f},
                               {0.32379155f, 0.37381521f, 0.3308021f},  {0.41973183f, 0.4973812f, 0.40503999f},
                               {0.53519914f, 0.58891573f, 0.54508419f}, {0.73908523f, 0.69889254f, 0.902207f},
                               {1.05079444f, 0.81739779f, 1.56729263f}, {1.30237823f, 0.89534432f, 2.1163959f}};
  const std::vector<float> r = run<bend_tone>(neutral(codes), makeToneCurve(settings::everyTone()));
  for (size_t i = 0; i < codes.size(); ++i)
    for (size_t c = 0; c < 3; ++c)
      EXPECT_NEAR(r[i * 3 + c], expected[i][c], 2e-6f) << codes[i] << " channel " << c;
}

ENGINE_TEST(Tone, AmountsOfZeroChangeNothing)
{
  const ToneSettings zero{.live = true};
  const std::vector<float> codes = neutral(ramp(0.0f, 1.2f, 300));
  EXPECT_EQ(run<bend_tone>(codes, makeToneCurve(zero)), codes);
  ToneSettings red = zero;
  red.toe[0] = 0.2f;
  const std::vector<float> r = run<bend_tone>(codes, makeToneCurve(red));
  for (size_t i = 0; i < r.size(); i += 3)
  {
    EXPECT_EQ(r[i + 1], codes[i + 1]) << "a toe of 0 beside one that is not";
    EXPECT_EQ(r[i + 2], codes[i + 2]);
  }
}

ENGINE_TEST(Tone, PivotOfOneLeavesNoShoulder)
{
  ToneSettings s{.live = true, .shoulderPivot = 1.0f, .shoulder = {0.4f, -0.4f, 0.1f}};
  const std::vector<float> codes = neutral(ramp(0.0f, 1.5f, 300));
  EXPECT_EQ(run<bend_tone>(codes, makeToneCurve(s)), codes);
}

ENGINE_TEST(Tone, PartsMeetWithoutSteps)
{
  const ToneSettings s = settings::everyTone();
  for (float pivot : {s.toePivot, s.shoulderPivot})
  {
    const std::vector<float> r = run<bend_tone>(neutral({pivot - 1e-5f, pivot, pivot + 1e-5f}), makeToneCurve(s));
    for (size_t c = 0; c < 3; ++c)
    {
      EXPECT_NEAR(r[c], r[3 + c], 5e-5f) << "below " << pivot;
      EXPECT_NEAR(r[6 + c], r[3 + c], 5e-5f) << "above " << pivot;
    }
  }
}

ENGINE_TEST(Tone, DefaultsRiseMonotonically)
{
  const std::vector<float> bent =
      run<bend_tone>(neutral(ramp(0.0929f, 1.0f, 20000)), makeToneCurve(settings::defaultTone()));
  const std::vector<float> density = run<develop_density>(bent, settings::defaultDensity(), true);
  for (size_t i = 3; i < bent.size(); ++i)
  {
    ASSERT_GE(bent[i], bent[i - 3] - 2e-7f) << i;
    ASSERT_GE(density[i], density[i - 3] - 2e-7f) << i;
    ASSERT_EQ(density[i], density[i - i % 3]) << "equal amounts keep a neutral neutral";
  }
}

ENGINE_TEST(Density, OfNoLightWithoutThePower)
{
  const DensityCurve d{.floor = {0.1f, 0.2f, -0.1f}, .ceiling = {1.1f, 0.9f, 1.5f}, .scale = 1.4f, .slope = 3.0f};
  const std::vector<float> black = run<film_log>(std::vector<float>{0.0f, 0.0f, 0.0f}, Step::Encode);
  EXPECT_NEAR(black[0], 0.092864126f, 1e-7f);
  const std::vector<float> v = run<develop_density>(black, d, false);
  // The code value of no light stands in the quotient, so the floor itself is not reached.
  for (size_t c = 0; c < 2; ++c)
    EXPECT_NEAR(v[c], d.ceiling[c] + (d.floor[c] - d.ceiling[c]) / 1.092864126f, 1e-6f) << c;
  EXPECT_EQ(v[2], 0.0929000005f) << "held at the lowest code";
}

ENGINE_TEST(Density, LimitsAndPower)
{
  const DensityCurve d{.floor = {0.15f, 0.15f, 0.15f}, .ceiling = {2.0f, 2.0f, 2.0f}, .scale = 1.4f, .slope = 2.0f};
  const std::vector<float> v = run<develop_density>(neutral({0.0f, -0.01f, 0.5f, 3.0f, nan}), d, true);
  EXPECT_NEAR(v[0], 0.15f, 1e-6f);
  EXPECT_NEAR(v[3], 2.0f - 1.85f / 0.99f, 1e-6f) << "what is not positive takes no power";
  EXPECT_NEAR(v[6], 2.0f - 1.85f / 1.49f, 1e-6f);
  EXPECT_EQ(v[9], 1.0f);
  EXPECT_EQ(v[12], 0.0929000005f);
  const std::vector<float> white = run<film_log>(neutral({1.0f, 1.7f}), Step::Decode);
  EXPECT_NEAR(white[0], (1048576.0f - 64.0f) * 0.00044806354f, 1e-3f);
  EXPECT_EQ(white[3], white[0]);
  EXPECT_GT(run<film_log>(neutral({1.1f}), Step::DecodeOpen)[0], 1000.0f) << "the open decode has no cap";
}

ENGINE_TEST(Density, FilmLogReturns)
{
  const std::vector<float> light = neutral({0.001f, 0.01f, 0.18f, 1.0f, 10.0f, 400.0f});
  const std::vector<float> codes = run<film_log>(light, Step::Encode);
  EXPECT_NEAR(codes[6], 0.2783958f, 1e-6f);
  const std::vector<float> back = run<film_log>(codes, Step::Decode);
  for (size_t i = 0; i < light.size(); ++i)
    EXPECT_NEAR(back[i], light[i], 4e-6f * light[i] + 1e-6f);
  const std::vector<float> odd = run<film_log>(neutral({-3.0f, nan}), Step::Encode);
  EXPECT_NEAR(odd[0], 0.092864126f, 1e-7f);
  EXPECT_NEAR(odd[3], 0.092864126f, 1e-7f);
}

ENGINE_TEST(PrintGamma, TurnsAboutItsPivot)
{
  const float pivot = 0.4f;
  PrintGamma gamma;
  for (size_t c = 0; c < 3; ++c)
  {
    gamma.power[c] = 0.8f + 0.4f * static_cast<float>(c);
    gamma.scale[c] = pivot / std::pow(pivot, gamma.power[c]);
    gamma.live[c] = c != 1;
  }
  const std::vector<float> r = run<tilt_codes>(neutral({0.4f, 0.1f, 0.9f}), gamma);
  EXPECT_NEAR(r[0], 0.4f, 1e-6f);
  EXPECT_NEAR(r[2], 0.4f, 1e-6f);
  EXPECT_EQ(r[4], 0.1f) << "a switch that is off";
  EXPECT_NEAR(r[3], 0.131951f, 1e-6f);
  EXPECT_NEAR(r[8], 1.464037f, 2e-6f);
}

// To the last bit, at slopes that magnify it.
PARITY(tone, morvellan::parity::sameBits)
{
  const std::vector<float> codes = neutral(ramp(0.09f, 1.0f, 10000));
  std::vector<float> r = run<bend_tone>(codes, makeToneCurve(settings::everyTone()));
  const std::vector<float> v = run<develop_density>(r, settings::defaultDensity(), true);
  r.insert(r.end(), v.begin(), v.end());
  return r;
}

}  // namespace morvellan::MORVELLAN_TARGET
