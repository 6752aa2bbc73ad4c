// The print's kernels, the fifteen displays and the tone scale, by values worked out in double precision.
#include "film/print.h"

#include <cmath>
#include <limits>

#include "tests/support/device_arrays.h"
#include "tests/support/engine_test.h"
#include "tests/support/film_settings.h"

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

using Values = std::vector<float>;

constexpr bool isHdr(int display)
{
  return display == 6 || display == 7 || display == 8 || display == 10 || display == 12 || display == 14;
}

PrintSettings stock(int profile, int display = 0)
{
  PrintSettings s;
  s.density = {.floor = {0.01f, 0.012f, 0.008f}, .ceiling = {1.6f, 1.62f, 1.58f}, .scale = 1.0f / 0.71f, .slope = 2.5f};
  s.profile = profile;
  s.display = display;
  s.peak = isHdr(display) ? 800.0f : 100.0f;
  return s;
}

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

Values run(std::string_view kernel, const PrintSettings& settings, const Values& linear)
{
  const Buffer<float> image = upload(linear);
  PrintArguments a;
  a.image = image.data();
  a.width = static_cast<int>(linear.size() / 3);
  a.height = 1;
  a.channels = 3;
  a.look = makePrintLook(settings);
  EXPECT_TRUE(launchPrint(Queue{}, kernel, a)) << kernel;
  return download(image);
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

void expectNear(const Values& actual, const Values& expected, float tolerance, const char* what)
{
  ASSERT_EQ(actual.size(), expected.size());
  for (size_t i = 0; i < actual.size(); ++i)
    EXPECT_NEAR(actual[i], expected[i], tolerance) << what << " " << i;
}

const Values colours{0.18f, 0.18f, 0.18f, 1.0f, 0.2f, 0.05f, 0.02f, 0.3f, 0.35f, 8.0f, 6.0f, 9.0f};

}  // namespace

ENGINE_TEST(Display, FifteenEntriesByValue)
{
  const Values expected[displayCount] = {{0.4355363f, 0.4423538f, 0.428719f, 0.7944894f, 0.3647647f, 0.3033564f, 0.01f,
                                          0.5452779f, 0.5341001f, 0.8078436f, 0.7804054f, 0.7969716f},
                                         {0.4420896f, 0.4415675f, 0.4164662f, 0.7979273f, 0.3617967f, 0.288286f, 0.01f,
                                          0.544719f, 0.5207079f, 0.8153234f, 0.7794155f, 0.7814497f},
                                         {0.5018089f, 0.4869416f, 0.4858313f, 0.7847732f, 0.46259f, 0.4063117f, 0.01f,
                                          0.5701566f, 0.5760226f, 0.8210397f, 0.780013f, 0.8035878f},
                                         {0.4855001f, 0.4928832f, 0.4781171f, 0.7683785f, 0.4689824f, 0.3998984f, 0.01f,
                                          0.5764972f, 0.5675368f, 0.8021614f, 0.7870732f, 0.794411f},
                                         {0.4902672f, 0.4923987f, 0.4680856f, 0.7711936f, 0.4678799f, 0.3904869f, 0.01f,
                                          0.5760938f, 0.5566067f, 0.8074463f, 0.7865357f, 0.7823932f},
                                         {0.4355364f, 0.4423538f, 0.428719f, 0.7171868f, 0.458418f, 0.3433164f, 0.01f,
                                          0.5261196f, 0.5294173f, 0.7961813f, 0.7838171f, 0.7939456f},
                                         {0.4060858f, 0.4125698f, 0.3996019f, 0.5459465f, 0.4223663f, 0.3310536f,
                                          0.01000116f, 0.4561845f, 0.4511191f, 0.6505944f, 0.644711f, 0.6464838f},
                                         {0.4060858f, 0.4125698f, 0.3996019f, 0.5637883f, 0.393775f, 0.3316629f,
                                          0.01000116f, 0.4610096f, 0.4510692f, 0.6538655f, 0.6433048f, 0.6467966f},
                                         {0.3767022f, 0.3828535f, 0.3705509f, 0.6445585f, 0.3789291f, 0.2402913f, 0.01f,
                                          0.4639389f, 0.4692874f, 0.7610844f, 0.7507747f, 0.7574897f},
                                         {0.3635081f, 0.3695101f, 0.3575062f, 0.5051627f, 0.3833369f, 0.351512f,
                                          0.1869447f, 0.4203939f, 0.4110822f, 0.546214f, 0.5475678f, 0.5400855f},
                                         {0.3923404f, 0.3986688f, 0.3860121f, 0.5423326f, 0.4144926f, 0.3779124f,
                                          0.2091279f, 0.4500441f, 0.4399569f, 0.6545877f, 0.6537036f, 0.6480778f},
                                         {0.4414687f, 0.4483516f, 0.4345935f, 0.5490294f, 0.456615f, 0.3930173f, 0,
                                          0.4858894f, 0.4785887f, 0.5745939f, 0.5760766f, 0.5687008f},
                                         {0.4624564f, 0.469577f, 0.4553433f, 0.5763867f, 0.4789206f, 0.3982602f, 0.01f,
                                          0.50736f, 0.499371f, 0.656718f, 0.6548853f, 0.6511196f},
                                         {0.4414687f, 0.4483516f, 0.4345935f, 0.5490294f, 0.456615f, 0.3930173f,
                                          0.118174f, 0.4858894f, 0.4785887f, 0.5745939f, 0.5760766f, 0.5687008f},
                                         {0.4624564f, 0.469577f, 0.4553433f, 0.5763867f, 0.4789206f, 0.3982602f,
                                          0.1180429f, 0.50736f, 0.499371f, 0.656718f, 0.6548853f, 0.6511196f}};
  for (int display = 0; display < displayCount; ++display)
  {
    SCOPED_TRACE(testing::Message() << "display " << display);
    // A small channel beside large ones keeps their absolute error in the matrices.
    expectNear(run("film_print_cuda_out_pfe_display", stock(0, display), colours), expected[display], 2e-5f, "code");
  }
}

ENGINE_TEST(Display, WhitesOfThePrint)
{
  const Values d55[] = {
      {0.2387207f, 0.2718336f, 0.3080884f, 1, 0.1639867f, 0.1289808f, 0.01f, 0.4811951f, 0.5461356f, 1, 1, 1},
      {0.3690725f, 0.3539627f, 0.4162318f, 1, 0.3094258f, 0.2571115f, 0.01f, 0.5396948f, 0.6384378f, 1, 1, 1},
      {0.2681219f, 0.2800427f, 0.2895518f, 0.4934492f, 0.2942612f, 0.2203175f, 0.01f, 0.3506133f, 0.3745712f,
       0.5541209f, 0.5526315f, 0.5806619f}};
  const int displays[] = {0, 2, 11};
  for (size_t i = 0; i < 3; ++i)
    expectNear(run("film_print_cuda_out_pfe", stock(6, displays[i]), colours), d55[i], 2e-5f, "D55");
  EXPECT_EQ(run("film_print_cuda_out_pfe", stock(5), colours), run("film_print_cuda_out_pfe", stock(1), colours));
  EXPECT_EQ(run("film_print_cuda_out_pfe", stock(9), colours), run("film_print_cuda_out_pfe", stock(6), colours));
}

ENGINE_TEST(Display, NeutralsAreTheDisplaysNeutral)
{
  Values greys;
  for (int i = 0; i < 60; ++i)
    greys.insert(greys.end(), 3, std::exp2(static_cast<float>(i) * 0.2f - 8.0f));
  for (int display : {0, 3, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14})
  {
    PrintSettings s = stock(0, display);
    s.density = {.floor = {0, 0, 0}, .ceiling = {1.5f, 1.5f, 1.5f}};
    const Values r = run("film_print_cuda_out_pfe_display", s, greys);
    for (size_t i = 0; i < r.size(); ++i)
      ASSERT_NEAR(r[i], r[i - i % 3], 2e-4f) << "display " << display << " value " << i;
    for (size_t i = 3; i < r.size(); i += 3)
      ASSERT_GE(r[i], r[i - 3] - 1e-6f) << "display " << display << ": a grey ramp rises";
  }
}

ENGINE_TEST(Print, GradeSaturationAndCurvesByValue)
{
  const Values plain{0.3881348f, 0.2346146f, 0.207324f, 1, 0.012f, 0.008f, 0.01f, 0.5074799f, 0.4542688f, 1, 1, 1};
  expectNear(run("film_print_cuda_out_pfe", graded(1), colours), plain, 2e-5f, "plain");
  expectNear(run("film_print_cuda_out_hue_chr_vib_pfe", graded(1), colours), plain, 2e-5f, "vectors");
  PrintSettings bent = graded(1);
  bent.gamma = twoGammas();
  bent.tone = settings::everyTone();
  expectNear(run("film_print_cuda_out_pfe", bent, colours),
             {0.4370443f, 0.05223087f, 0.3954586f, 1, 0.012f, 0.2105298f, 0.01f, 0.3921491f, 0.5267927f, 0.5222288f, 1,
              0.7860668f},
             5e-5f, "bent");
}

ENGINE_TEST(Print, BleachHasCurvesAndNoGamma)
{
  PrintSettings s = graded(1);
  s.tone = settings::everyTone();
  s.silver = retained();
  const Values expected{0.1617488f, 0.0616853f, 0.1714316f, 1, 0.012f, 0.1801283f,
                        0.01f,      0.7288509f, 0.482204f,  1, 1,      1};
  expectNear(run("film_print_cuda_out_bleach_pfe", s, colours), expected, 5e-5f, "bleach");
  s.gamma = twoGammas();
  expectNear(run("film_print_cuda_out_bleach_pfe", s, colours), expected, 5e-5f, "gamma is not read");
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
             4e-6f, "display");
  const Values custom{0.1357187f,   0.09999824f, 0.08851103f, 0.6419314f, 0.09348371f, 0.03404866f,
                      0.004942054f, 0.192321f,   0.2041632f,  0.5564505f, 0.4411062f,  0.4976875f};
  expectNear(planes("lin_grain_display_custom_rangecompress_display", s, colours), custom, 4e-6f, "custom");
  expectNear(planes("lin_grain_display_hue_chr_vib_rangecompress_display", s, colours), custom, 4e-6f, "vectors");
  expectNear(planes("lin_grain_display_bleach_rangecompress_display", s, colours),
             {0.05116899f, 0.03134871f, 0.06536839f, 0.7232703f, 0.1059273f, 0.08060365f, 0.02780668f, 0.305172f,
              0.2254158f, 0.4950764f, 0.4994271f, 0.490738f},
             2e-5f, "bleach");
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
      {0.3263491f, 0.3140532f, 0.2847414f, 0.7429062f, 0.7046642f, 0.5969224f}, 2e-5f, "print of a negative");
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

ENGINE_TEST(ToneScale, ScalarsOfAPeak)
{
  const ToneScale sdr = makeToneScale(100.0f);
  EXPECT_NEAR(sdr.ceiling, 1.0427482f, 2e-6f);
  EXPECT_NEAR(sdr.contrast, 1.3472037f, 2e-6f);
  EXPECT_NEAR(sdr.purity, 1.1f, 1e-6f);
  EXPECT_EQ(makeToneScale(1000.0f).purity, 1.0f);
}

PARITY(print, .relative = 3e-5f, .absolute = 5e-6f, .outliers = 1e-3)
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

// A channel that a gamut matrix cancels to almost nothing stands on the steep foot of its curve.
PARITY(displays, .relative = 1e-5f, .absolute = 2e-6f, .outliers = 1e-3)
{
  Values all;
  for (int display = 0; display < displayCount; ++display)
  {
    const Values r = run("film_print_cuda_out_pfe_display", stock(0, display), settings::everyHue(1000));
    all.insert(all.end(), r.begin(), r.end());
  }
  return all;
}

}  // namespace morvellan::MORVELLAN_TARGET
