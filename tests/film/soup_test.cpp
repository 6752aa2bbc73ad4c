// The Soup's kernels on the laboratory's planes: values worked out in double precision, where they write, and which
// member a frame gets.
#include "film/soup.h"

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

// Planes whose developed light is `linear`.
struct Laboratory
{
  Buffer<float> exposure, density, alpha;
  int count;

  explicit Laboratory(const Values& linear) : count(static_cast<int>(linear.size() / 3))
  {
    Values d(linear.size(), 0.5f), e = linear, a(linear.size() / 3);
    for (float& x : e)
      x = x / (0.25f * developedGain);
    for (size_t i = 0; i < a.size(); ++i)
      a[i] = static_cast<float>(i) * 0.125f;
    exposure = upload(e);
    density = upload(d);
    alpha = upload(a);
  }

  SoupArguments arguments(const SoupLook& look, const SoupExit& exit = {}) const
  {
    SoupArguments a;
    a.exposure = exposure.data();
    a.density = density.data();
    a.planes.alpha = alpha.data();
    a.width = count;
    a.height = 1;
    a.look = look;
    a.exit = exit;
    return a;
  }
};

SoupSettings defaults()
{
  SoupSettings s;
  s.tone = settings::defaultTone();
  s.density = settings::defaultDensity();
  return s;
}

Silver retained()
{
  Silver silver{.power = {1.0f, 1.2f, 0.8f}};
  for (size_t c = 0; c < 3; ++c)
    silver.gain[c] = 0.5f / std::pow(0.5f, silver.power[c]);
  return silver;
}

// Colours of the image that a kernel writes, three floats a pixel; the clip is in the working log.
Values codes(std::string_view kernel, const SoupSettings& settings, const Values& linear)
{
  const Laboratory lab(linear);
  const Buffer<float> image(linear.size());
  SoupArguments a = lab.arguments(makeSoupLook(settings), makeSoupExit(true, 47));
  a.image = image.data();
  a.channels = 3;
  EXPECT_TRUE(launchSoup(Queue{}, kernel, a)) << kernel;
  return download(image);
}

void expectNear(const Values& actual, const Values& expected, float tolerance)
{
  ASSERT_EQ(actual.size(), expected.size());
  for (size_t i = 0; i < actual.size(); ++i)
    EXPECT_NEAR(actual[i], expected[i], tolerance) << i;
}

struct leave_film
{
  const float* source;
  float* target;
  FilmExit exit;
  MORVELLAN_KERNEL void operator()(Pixels at) const { storeRgb(target, at, filmExit(exit, loadRgb(source, at))); }
};

const Values colours{0.0f,  0.0f,  0.0f,  0.18f, 0.18f,  0.18f,  1.0f,  0.2f,
                     0.05f, 30.0f, 10.0f, 2.0f,  400.0f, 400.0f, 400.0f};

}  // namespace

ENGINE_TEST(Soup, DefaultsByValue)
{
  const Values expected{0.0929f,     0.0929f,     0.0929f,     0.18430367f, 0.18430367f,
                        0.18430367f, 0.31088608f, 0.19035506f, 0.127188f,   0.69304494f,
                        0.5712961f,  0.38137675f, 0.90237638f, 0.90237638f, 0.90237638f};
  for (const char* kernel : {"film_soup_cuda_out", "film_soup_cuda_out_hue_chr_vib"})
    expectNear(codes(kernel, defaults(), colours), expected, 4e-6f);
}

ENGINE_TEST(Soup, ToneByValue)
{
  SoupSettings s = defaults();
  s.tone = settings::everyTone();
  expectNear(
      codes("film_soup_cuda_out", s, {0.18f, 0.18f, 0.18f, 1.0f, 0.2f, 0.05f, 30.0f, 10.0f, 2.0f}),
      {0.1842187f, 0.1894657f, 0.2121133f, 0.3111418f, 0.1997882f, 0.1726649f, 0.6937714f, 0.5747982f, 0.3695782f},
      4e-6f);
}

ENGINE_TEST(Soup, BleachByValueWithAndWithoutTone)
{
  SoupSettings s = defaults();
  s.silver = retained();
  const Values probes{0.18f, 0.18f,  0.18f, 0.02f, 0.02f, 0.02f, 1.0f, 0.2f,
                      0.05f, 0.001f, 0.0f,  3.0f,  30.0f, 10.0f, 2.0f};
  expectNear(codes("film_soup_cuda_out_bleach", s, probes),
             {0.1429257f, 0.1388422f, 0.147136f, 0.0929f, 0.0929f, 0.0929f, 0.3663122f, 0.2285998f, 0.1375393f,
              0.0984425f, 0.0932914f, 0.2432834f, 0.8063215f, 0.795999f, 0.7121503f},
             1e-5f);
  s.tone.live = false;
  expectNear(codes("film_soup_cuda_out_bleach", s, probes),
             {0.2922379f, 0.2907264f, 0.2937461f, 0.0929f, 0.0929f, 0.0929f, 0.4426608f, 0.3698145f, 0.2876103f,
              0.1987926f, 0.1875646f, 0.3506058f, 0.6058537f, 0.6028449f, 0.5608591f},
             4e-6f);
}

// All steps at once, in their order: cast and tints, the attributes in both zones with eleven refinements, the curves,
// silver and the density. The plain member has no vectors.
ENGINE_TEST(Soup, EveryStepOfEachMemberByValue)
{
  SoupSettings s = defaults();
  const ZoneSettings zones = settings::zone(1, true);
  const std::vector<RefinementSettings> refinements = settings::refinements(soupRefinements, zones);
  s.cast = {.live = true, .row = 45, .greenMagenta = 0.1f, .redCyan = -0.1f};
  s.attributes = settings::everyAttribute(zones);
  s.refine = true;
  s.refinements = refinements;
  s.tone = settings::everyTone();
  s.silver = retained();
  struct Row
  {
    const char* kernel;
    bool tone;
    Values expected;
  };
  const Row rows[] = {
      {"film_soup_cuda_out",
       true,
       {0.1835654f, 0.1872073f, 0.2111487f, 0.2556036f, 0.2613097f, 0.2346707f, 0.1597797f, 0.2725290f, 0.3980023f,
        0.1300128f, 0.1052183f, 0.1749316f}},
      {"film_soup_cuda_out",
       false,
       {0.3108318f, 0.3101822f, 0.3100191f, 0.3686856f, 0.3460812f, 0.3427840f, 0.2864011f, 0.3506838f, 0.4430356f,
        0.2497106f, 0.2490677f, 0.2498870f}},
      {"film_soup_cuda_out_hue_chr_vib",
       true,
       {0.1847625f, 0.1885869f, 0.2115147f, 0.3184689f, 0.2608292f, 0.2319032f, 0.1661155f, 0.1592155f, 0.5399581f,
        0.1249839f, 0.0991185f, 0.1709929f}},
      {"film_soup_cuda_out_hue_chr_vib",
       false,
       {0.3119772f, 0.3109628f, 0.3105659f, 0.4046866f, 0.3458839f, 0.3391802f, 0.2932484f, 0.2932484f, 0.4787073f,
        0.2425230f, 0.2418945f, 0.2425172f}},
      {"film_soup_cuda_out_bleach",
       true,
       {0.1463672f, 0.1470082f, 0.1819664f, 0.4209151f, 0.3767952f, 0.3085469f, 0.0929000f, 0.0929000f, 0.5609917f,
        0.0929000f, 0.0929000f, 0.0929000f}},
      {"film_soup_cuda_out_bleach",
       false,
       {0.2926197f, 0.2896607f, 0.2922702f, 0.4564072f, 0.4136162f, 0.3877834f, 0.1075430f, 0.0929000f, 0.4816169f,
        0.0929000f, 0.0929000f, 0.0929000f}},
  };
  const Values probes{0.18f, 0.18f, 0.18f, 1.0f, 0.2f, 0.05f, 0.1f, 0.6f, 2.0f, 0.05f, 0.02f, 0.09f};
  for (const Row& row : rows)
  {
    SCOPED_TRACE(testing::Message() << row.kernel << ", tone " << row.tone);
    s.tone.live = row.tone;
    expectNear(codes(row.kernel, s, probes), row.expected, 4e-6f);
  }
}

ENGINE_TEST(Soup, BlackPassesCastAndTintsAndTakesTheDensity)
{
  SoupSettings s = defaults();
  s.cast = {.live = true, .row = 40, .greenMagenta = 0.2f, .redCyan = 0.3f};
  s.attributes = settings::everyAttribute(settings::zone(1, true));
  s.tone.live = false;
  const Values black = codes("film_soup_cuda_out_hue_chr_vib", s, {0.0f, 0.0f, 0.0f});
  for (float v : black)
    EXPECT_NEAR(v, 1.168f + (0.073f - 1.168f) / 1.092864126f, 1e-6f);
}

ENGINE_TEST(Soup, WritesBothFramesWithTheAlphaPlane)
{
  const Laboratory lab(colours);
  const Buffer<float> image = upload(Values(20, -7.0f)), image2 = upload(Values(20, -7.0f));
  SoupArguments a = lab.arguments(makeSoupLook(defaults()));
  a.image = image.data();
  a.image2 = image2.data();
  ASSERT_TRUE(launchSoup(Queue{}, "film_soup_cuda_out", a));
  const Values first = download(image);
  EXPECT_EQ(first, download(image2));
  for (size_t i = 0; i < 5; ++i)
    EXPECT_EQ(first[i * 4 + 3], static_cast<float>(i) * 0.125f);
  // Linear light of the negative, for the print.
  EXPECT_NEAR(first[4], (std::exp2((0.18430367f - 0.092864126f) * 14.0f * 1.10237074f + 6.0f) - 64.0f) * 0.00044806354f,
              2e-6f);
}

ENGINE_TEST(Soup, LinearMembersNeverLeaveAndWriteOneFrame)
{
  const Laboratory lab(colours);
  const Buffer<float> expected(20), image(20), image2 = upload(Values(20, -7.0f));
  SoupArguments a = lab.arguments(makeSoupLook(defaults()));
  a.image = expected.data();
  ASSERT_TRUE(launchSoup(Queue{}, "film_soup_cuda_out", a));
  a.exit = makeSoupExit(true, 11);
  a.image = image.data();
  a.image2 = image2.data();
  ASSERT_TRUE(launchSoup(Queue{}, "lin_grain_display", a));
  EXPECT_EQ(download(image), download(expected));
  EXPECT_EQ(download(image2), Values(20, -7.0f));
}

ENGINE_TEST(Soup, PlanesAreCompressedBeforeTheCurves)
{
  const Values linear{0.0f, 0.0f, 0.0f, 0.1f, 0.1f, 0.1f, 5.0f, 2.0f, 1.0f, 0.0f, 0.0f, 3.0f};
  const Laboratory lab(linear);
  const Buffer<float> red(4), green(4), blue(4);
  SoupArguments a = lab.arguments(makeSoupLook(defaults()));
  a.planes.red = red.data();
  a.planes.green = green.data();
  a.planes.blue = blue.data();
  ASSERT_TRUE(launchSoup(Queue{}, "lin_grain_rangecompress", a));
  const double y = 0.254524171 * 5.0 + 0.781477749 * 2.0 - 0.0360019095;
  const double q = (std::log(y * 284.357788 + 1.0) * 0.183516696 - 0.545768857) / y;
  const Values r = download(red), g = download(green), b = download(blue);
  EXPECT_EQ(r[0], 0.0f);
  EXPECT_NEAR(g[1], 0.1f, 1e-6f);
  EXPECT_NEAR(r[2], 5.0 * q, 2e-6);
  EXPECT_NEAR(b[2], q, 2e-6);
  EXPECT_EQ(b[3], 0.0f) << "a negative luminance is black";
  EXPECT_EQ(download(lab.alpha)[3], 0.375f);
}

ENGINE_TEST(Soup, EveryExitIsAFrame)
{
  for (int index = 0; index < 49; ++index)
  {
    const Laboratory lab(colours);
    const Buffer<float> image(colours.size());
    SoupArguments a = lab.arguments(makeSoupLook(defaults()), makeSoupExit(true, index));
    a.image = image.data();
    a.channels = 3;
    ASSERT_TRUE(launchSoup(Queue{}, "film_soup_cuda_out", a));
    const Values r = download(image);
    for (size_t i = 0; i < r.size(); ++i)
      ASSERT_TRUE(std::isfinite(r[i])) << "index " << index << " value " << i;
    EXPECT_GT(r[12], r[3]) << "index " << index << ": highlights are brighter than mid-grey";
  }
}

ENGINE_TEST(Soup, LeavesByTheWayOutOfTheClipsEncoding)
{
  const Laboratory lab(colours);
  const Buffer<float> image(colours.size());
  SoupArguments a = lab.arguments(makeSoupLook(defaults()));
  a.image = image.data();
  a.channels = 3;
  ASSERT_TRUE(launchSoup(Queue{}, "film_soup_cuda_out", a));
  const Buffer<float> linear = upload(download(image));
  for (const int index : {0, 2, 9, 11, 27, 31, 45})
  {
    a.exit = makeSoupExit(true, index);
    ASSERT_TRUE(launchSoup(Queue{}, "film_soup_cuda_out", a));
    const Buffer<float> expected(colours.size());
    launch(Queue{}, pixels(static_cast<int>(colours.size() / 3), 1),
           leave_film{linear.data(), expected.data(), makeFilmExit(index)});
    EXPECT_EQ(download(image), download(expected)) << "index " << index;
  }
}

ENGINE_TEST(Soup, AnUnknownKernelIsRefused)
{
  EXPECT_FALSE(launchSoup(Queue{}, "film_soup", {}));
}

ENGINE_TEST(Soup, BadLightStaysInItsPixel)
{
  constexpr float nan = std::numeric_limits<float>::quiet_NaN();
  Values light(48, 0.18f);
  light[9] = light[10] = light[11] = nan;
  light[20] = -1e5f;
  light[31] = std::numeric_limits<float>::infinity();
  SoupSettings s = defaults();
  s.attributes = settings::everyAttribute(settings::zone(1, true));
  s.silver = retained();
  for (const char* kernel : {"film_soup_cuda_out", "film_soup_cuda_out_hue_chr_vib", "film_soup_cuda_out_bleach"})
  {
    const Values r = codes(kernel, s, light);
    for (size_t i = 0; i < r.size(); ++i)
    {
      EXPECT_TRUE(r[i] >= 0.0929f - 1e-6f && r[i] <= 1.0f) << kernel << " " << i << ": " << r[i];
      const bool bad = i / 3 == 3 || i / 3 == 6 || i / 3 == 10;
      EXPECT_TRUE(bad || r[i] == r[i % 3]) << kernel << " " << i;
    }
  }
}

// To the last bit, as the attributes.
PARITY(soup, morvellan::parity::sameBits)
{
  SoupSettings s = defaults();
  const std::vector<RefinementSettings> refinements = settings::refinements(soupRefinements);
  s.cast = {.live = true, .row = 45, .greenMagenta = 0.1f, .redCyan = -0.1f};
  s.attributes = settings::everyAttribute(settings::zone(1, true));
  s.refine = true;
  s.refinements = refinements;
  s.silver = retained();
  Values all;
  for (const char* kernel : {"film_soup_cuda_out", "film_soup_cuda_out_hue_chr_vib", "film_soup_cuda_out_bleach"})
  {
    const Values r = codes(kernel, s, settings::everyHue(5000));
    all.insert(all.end(), r.begin(), r.end());
  }
  return all;
}

}  // namespace morvellan::MORVELLAN_TARGET
