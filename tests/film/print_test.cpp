// The print's kernels, by values worked out in double precision.
#include "film/print.h"

#include <cmath>
#include <limits>

#include "tests/film/print_runs.h"
#include "tests/support/film_settings.h"

namespace morvellan::MORVELLAN_TARGET
{

using namespace print_runs;

namespace
{

PrintSettings graded(int profile)
{
  PrintSettings s = stock(profile);
  s.cast = {.live = true, .row = 45, .greenMagenta = 0.1f, .redCyan = -0.1f};
  s.saturation = 1.2f;
  return s;
}

PrintGamma twoGammas()
{
  PrintGamma gamma{.power = {0.9f, 1.1f, 1.0f}, .live = {true, true, false}};
  for (size_t c = 0; c < 3; ++c)
    gamma.scale[c] = 0.4f / std::pow(0.4f, gamma.power[c]);
  return gamma;
}

Silver retained()
{
  Silver silver{.power = {1.0f, 1.2f, 0.8f}};
  for (size_t c = 0; c < 3; ++c)
    silver.gain[c] = 0.5f / std::pow(0.5f, silver.power[c]);
  return silver;
}

// The three planes one after the other.
Values planes(std::string_view kernel, const PrintSettings& settings, const Values& linear)
{
  const size_t count = linear.size() / 3;
  const Buffer<float> image = upload(linear), out(count * 3 + 64);
  PrintArguments a;
  a.image = image.data();
  a.width = static_cast<int>(count);
  a.height = 1;
  a.channels = 3;
  a.look = makePrintLook(settings);
  const Buffer<float> red(count), green(count), blue(count);
  a.planes = {.red = red.data(), .green = green.data(), .blue = blue.data()};
  EXPECT_TRUE(launchPrint(Queue{}, kernel, a)) << kernel;
  Values all;
  for (size_t i = 0; i < count; ++i)
    for (const Buffer<float>* plane : {&red, &green, &blue})
      all.push_back(download(*plane)[i]);
  return all;
}

}  // namespace

ENGINE_TEST(Print, GradeSaturationAndCurvesByValue)
{
  const Values plain{0.3881348f, 0.2346146f, 0.207324f, 1, 0.012f, 0.008f, 0.01f, 0.5074799f, 0.4542688f, 1, 1, 1};
  expectNear(run("film_print_cuda_out_pfe", graded(1), colours), plain, 1e-6f, "plain");
  expectNear(run("film_print_cuda_out_hue_chr_vib_pfe", graded(1), colours), plain, 1e-6f, "vectors");
  PrintSettings bent = graded(1);
  bent.gamma = twoGammas();
  bent.tone = settings::everyTone();
  expectNear(run("film_print_cuda_out_pfe", bent, colours),
             {0.4370443f, 0.05223087f, 0.3954586f, 1, 0.012f, 0.2105298f, 0.01f, 0.3921491f, 0.5267927f, 0.5222288f, 1,
              0.7860668f},
             3e-6f, "bent");
}

ENGINE_TEST(Print, BleachHasCurvesAndNoGamma)
{
  PrintSettings s = graded(1);
  s.tone = settings::everyTone();
  s.silver = retained();
  const Values expected{0.1617488f, 0.0616853f, 0.1714316f, 1, 0.012f, 0.1801283f,
                        0.01f,      0.7288509f, 0.482204f,  1, 1,      1};
  expectNear(run("film_print_cuda_out_bleach_pfe", s, colours), expected, 3e-6f, "bleach");
  s.gamma = twoGammas();
  expectNear(run("film_print_cuda_out_bleach_pfe", s, colours), expected, 3e-6f, "gamma is not read");
}

ENGINE_TEST(Print, PlanesByValue)
{
  PrintSettings s = graded(1);
  s.tone = settings::everyTone();
  s.silver = retained();
  s.gamma = twoGammas();
  expectNear(planes("lin_grain_display_rangecompress_display", s, colours),
             {0.1091902f, 0.1091902f, 0.1091902f, 0.5359395f, 0.1317475f, 0.05596146f, 0.01683075f, 0.1837005f,
              0.2134986f, 0.5065512f, 0.4583115f, 0.5306786f},
             1e-6f, "display");
  const Values custom{0.1357187f,   0.09999824f, 0.08851103f, 0.6419314f, 0.09348371f, 0.03404866f,
                      0.004942054f, 0.192321f,   0.2041632f,  0.5564505f, 0.4411062f,  0.4976875f};
  expectNear(planes("lin_grain_display_custom_rangecompress_display", s, colours), custom, 1e-6f, "custom");
  expectNear(planes("lin_grain_display_hue_chr_vib_rangecompress_display", s, colours), custom, 1e-6f, "vectors");
  expectNear(planes("lin_grain_display_bleach_rangecompress_display", s, colours),
             {0.05116899f, 0.03134871f, 0.06536839f, 0.7232703f, 0.1059273f, 0.08060365f, 0.02780668f, 0.305172f,
              0.2254158f, 0.4950764f, 0.4994271f, 0.490738f},
             3e-6f, "bleach");
  const Values dark = planes("lin_grain_display_rangecompress_display", s, {-0.1f, -0.2f, -0.1f, 0.0f, 0.0f, 0.0f});
  for (float v : dark)
    EXPECT_NEAR(v, 0.0f, 1e-12f);
}

ENGINE_TEST(Print, WithoutAStockOnlyDensityAndDisplayCount)
{
  PrintSettings s = graded(0);
  s.attributes = settings::everyAttribute();
  s.tone = settings::everyTone();
  s.gamma = twoGammas();
  EXPECT_EQ(run("film_print_cuda_out_pfe_display", s, colours),
            run("film_print_cuda_out_pfe_display", stock(0), colours));
}

ENGINE_TEST(Print, ZeroIsBlackAndNegativeCodesAreZero)
{
  // ACEScc gives zero light the code 0, and faint light a negative one.
  const Values r = run("film_print_cuda_out_pfe", stock(1, 11), {-1.0f, -1.0f, -1.0f, 0.0002f, 0.0002f, 0.0002f});
  EXPECT_NEAR(r[3], 0.0f, 1e-7f);
  const Values black = run("film_print_cuda_out_pfe", stock(1, 0), {0.0f, 0.0f, 0.0f});
  EXPECT_NEAR(black[0], 0.01f, 1e-5f);
  EXPECT_NEAR(black[1], 0.012f, 1e-5f);
  constexpr float nan = std::numeric_limits<float>::quiet_NaN();
  for (float v : run("film_print_cuda_out_pfe", stock(1, 0), {nan, nan, nan, 1e30f, 1e30f, 1e30f}))
    EXPECT_TRUE(v >= 0.0f && v <= 1.0f) << v;
}

// Filmic contrast and slope at their ends: the power leaves the range of floats, its code is the printer's light.
ENGINE_TEST(Print, EndlessPowerIsThePrintersLight)
{
  PrintSettings s = stock(1);
  s.density.ceiling[0] = s.density.ceiling[1] = s.density.ceiling[2] = 0.9f;
  s.density.scale = 100.0f;
  s.density.slope = 52.0f;
  for (float v : run("film_print_cuda_out_pfe", s, {20.0f, 20.0f, 20.0f}))
    EXPECT_FLOAT_EQ(v, 0.9f);
}

// A printer's light below the black point turns the curve round; both ends stay within the code values.
ENGINE_TEST(Print, CodesAreHeldBetweenZeroAndOne)
{
  PrintSettings s = stock(1);
  s.density.floor[0] = -0.086f;
  s.density.ceiling[1] = 2.0f;
  const Values r = run("film_print_cuda_out_pfe", s, {0.001f, 0.001f, 0.001f, 50.0f, 50.0f, 50.0f});
  EXPECT_EQ(r[0], 0.0f);
  EXPECT_EQ(r[4], 1.0f);
}

// Blue light has a negative luminance in the film's gamut.
ENGINE_TEST(Print, PlanesOfNegativeLuminanceAreBlack)
{
  for (float v : planes("lin_grain_display_rangecompress_display", stock(0), {0.0f, 0.0f, 0.02f}))
    EXPECT_EQ(v, 0.0f);
}

ENGINE_TEST(Print, BothFramesAndAlpha)
{
  const Buffer<float> image = upload(settings::everyHue(5, 4)), image2 = upload(Values(20, -1.0f));
  const Values before = download(image);
  PrintArguments a;
  a.image = image.data();
  a.image2 = image2.data();
  a.width = 5;
  a.height = 1;
  a.look = makePrintLook(stock(1));
  ASSERT_TRUE(launchPrint(Queue{}, "film_print_cuda_out_pfe", a));
  const Values after = download(image);
  EXPECT_EQ(after, download(image2));
  for (size_t i = 3; i < 20; i += 4)
    EXPECT_EQ(after[i], before[i]);
  const Buffer<float> red(5), green(5), blue(5), alpha(5);
  a.planes = {.red = red.data(), .green = green.data(), .blue = blue.data(), .alpha = alpha.data()};
  ASSERT_TRUE(launchPrint(Queue{}, "lin_grain_display_rangecompress_display", a));
  EXPECT_EQ(download(alpha)[2], before[11]);
}

ENGINE_TEST(Print, AnUnknownKernelIsRefused)
{
  EXPECT_FALSE(launchPrint(Queue{}, "film_print", {}));
}

// A print stock as its table gives it, EK-2383 for D65, on greys: their attributes change nothing.
ENGINE_TEST(Print, GreysThroughAStockRise)
{
  PrintSettings s = stock(2);
  s.gamma = {.power = {0.87125f, 0.8475f, 0.77375f}, .live = {true, true, true}};
  for (size_t c = 0; c < 3; ++c)
    s.gamma.scale[c] = 0.173f / std::pow(0.173f, s.gamma.power[c]);
  s.tone = {.live = true,
            .toePivot = 0.323006843f,
            .toe = {0.289f, 0.287f, 0.266f},
            .shoulderPivot = 0.262758553f,
            .shoulder = {0.205f, 0.394f, 0.293f},
            .kneeCentre = 0.34f};
  s.density = {
      .floor = {-0.086f, -0.086f, -0.086f}, .ceiling = {1.5f, 1.5f, 1.5f}, .scale = 1.0f / 0.612f, .slope = 2.0f};
  // Mid-grey and white of a linear clip as the negative EK-5219 leaves them, after the laboratory's default process.
  expectNear(
      run("film_print_cuda_out_pfe", s, {0.1760054f, 0.1760054f, 0.1760054f, 0.96805009f, 0.96805009f, 0.96805009f}),
      {0.3263491f, 0.3140532f, 0.2847414f, 0.7429062f, 0.7046642f, 0.5969224f}, 3e-6f, "print of a negative");
  Values greys;
  for (int i = 0; i < 2000; ++i)
    greys.insert(greys.end(), 3, std::exp2(static_cast<float>(i) * 0.01f - 12.0f));
  for (int display = 0; display < displayCount; ++display)
  {
    s.display = display;
    s.peak = isHdr(display) ? 203.0f : 100.0f;
    const Values ramp = run("film_print_cuda_out_pfe", s, greys);
    for (size_t i = 3; i < ramp.size(); ++i)
      ASSERT_GE(ramp[i], ramp[i - 3] - 3e-6f) << "display " << display << " value " << i;
  }
}

PARITY(print)
{
  PrintSettings s = graded(7);
  const std::vector<RefinementSettings> refinements = settings::refinements(printRefinements);
  s.attributes = settings::everyAttribute(settings::zone(1, true));
  s.refine = true;
  s.refinements = refinements;
  s.gamma = twoGammas();
  s.tone = settings::everyTone();
  s.silver = retained();
  Values all;
  for (const PrintRow& row : printRows)
  {
    const Values frame = settings::everyHue(2000);
    const Values r = row.target == PrintTarget::Frames ? run(row.kernel, s, frame) : planes(row.kernel, s, frame);
    all.insert(all.end(), r.begin(), r.end());
  }
  return all;
}

}  // namespace morvellan::MORVELLAN_TARGET
