// The kernels that end the look after grain: what the split before the grain took apart comes together again.
#include "film/grain_expand.h"

#include <cmath>
#include <string>

#include "tests/support/device_arrays.h"
#include "tests/support/engine_test.h"
#include "tests/support/film_settings.h"

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

using Values = std::vector<float>;

struct Planes
{
  Buffer<float> red, green, blue, alpha;
  int count;

  Planes(const Values& r, const Values& g, const Values& b)
      : red(upload(r)), green(upload(g)), blue(upload(b)), alpha(upload(Values(r.size(), 0.25f))),
        count(static_cast<int>(r.size()))
  {
  }

  ExpandFrames frames(const Buffer<float>& frame, int channels) const
  {
    return {.frame = frame.data(),
            .planes = {.red = red.data(), .green = green.data(), .blue = blue.data(), .alpha = alpha.data()},
            .width = count,
            .height = 1,
            .channels = channels};
  }
};

// Interleaved colours compressed in range, as planes.
Planes compressed(const Values& linear)
{
  Values planes[3];
  for (size_t i = 0; i < linear.size(); i += 3)
  {
    const double y = 0.254524171 * static_cast<double>(linear[i]) + 0.781477749 * static_cast<double>(linear[i + 1]) -
                     0.0360019095 * static_cast<double>(linear[i + 2]);
    const double to = y <= 0.18 ? y : std::log(y * 284.357788 + 1.0) * 0.183516696 - 0.545768857;
    for (size_t c = 0; c < 3; ++c)
      planes[c].push_back(y > 0.0 ? static_cast<float>(static_cast<double>(linear[i + c]) * to / y) : 0.0f);
  }
  return {planes[0], planes[1], planes[2]};
}

Planes luma(const Planes& p)
{
  const Values r = download(p.red), g = download(p.green), b = download(p.blue);
  Values y(r.size()), co(r.size()), cg(r.size());
  for (size_t i = 0; i < r.size(); ++i)
  {
    y[i] = r[i] * 0.25f + g[i] * 0.5f + b[i] * 0.25f;
    co[i] = r[i] * 0.5f - b[i] * 0.5f;
    cg[i] = g[i] * 0.5f - r[i] * 0.25f - b[i] * 0.25f;
  }
  return {y, co, cg};
}

SoupLook soupLook()
{
  SoupSettings s;
  s.tone = settings::defaultTone();
  s.density = settings::defaultDensity();
  for (size_t c = 0; c < 3; ++c)
    s.silver.gain[c] = 1.0f;
  return makeSoupLook(s);
}

PrintLook printLook()
{
  PrintSettings s;
  s.density = {.floor = {0.01f, 0.012f, 0.008f}, .ceiling = {1.6f, 1.62f, 1.58f}, .scale = 1.0f / 0.71f, .slope = 2.5f};
  s.profile = 1;
  s.tone = settings::defaultTone();
  return makePrintLook(s);
}

void expectNear(const Values& actual, const Values& expected, float tolerance, std::string_view what)
{
  ASSERT_EQ(actual.size(), expected.size());
  for (size_t i = 0; i < actual.size(); ++i)
    EXPECT_NEAR(actual[i], expected[i], tolerance) << what << " " << i;
}

const Values colours{0.0f, 0.0f, 0.0f, 0.18f, 0.18f, 0.18f, 1.0f, 0.2f, 0.05f, 30.0f, 10.0f, 2.0f, 4.0f, 6.0f, 5.0f};

// What the Soup makes of linear light without grain between.
Values soupOf(const char* kernel, const Values& linear, const SoupExit& exit)
{
  Values e = linear;
  for (float& x : e)
    x /= 0.25f * developedGain;
  const Buffer<float> exposure = upload(e), density = upload(Values(linear.size(), 0.5f)), image(linear.size());
  SoupArguments a;
  a.exposure = exposure.data();
  a.density = density.data();
  a.image = image.data();
  a.width = static_cast<int>(linear.size() / 3);
  a.height = 1;
  a.channels = 3;
  a.look = soupLook();
  a.exit = exit;
  EXPECT_TRUE(launchSoup(Queue{}, kernel, a));
  return download(image);
}

Values expanded(std::string_view kernel, const Planes& planes, const SoupExit& exit)
{
  const Buffer<float> frame(static_cast<size_t>(planes.count) * 3);
  EXPECT_TRUE(launchSoupExpand(Queue{}, kernel, planes.frames(frame, 3), soupLook(), exit)) << kernel;
  return download(frame);
}

Values displayed(std::string_view kernel, const Planes& planes, bool bleached = false)
{
  const Buffer<float> frame(static_cast<size_t>(planes.count) * 3);
  EXPECT_TRUE(launchDisplayExpand(Queue{}, kernel, planes.frames(frame, 3), printLook(), bleached)) << kernel;
  return download(frame);
}

}  // namespace

ENGINE_TEST(GrainExpand, SoupWithoutGrainIsTheSoup)
{
  for (int index : {47, 11, 0, 27})
  {
    const SoupExit exit = makeSoupExit(true, index);
    const Planes planes = compressed(colours);
    for (const std::string base : {"lin_grain_soup_expand", "lin_grain_soup_bleach_expand"})
    {
      const char* soup = base == "lin_grain_soup_expand" ? "film_soup_cuda_out" : "film_soup_cuda_out_bleach";
      const Values expected = soupOf(soup, colours, exit);
      // Thirty times mid-grey goes through a logarithm and back.
      expectNear(expanded(base, planes, exit), expected, 2e-4f, base);
      expectNear(expanded(base + "_RGB", planes, exit), expected, 2e-4f, base + "_RGB");
      expectNear(expanded(base + "_Y", luma(planes), exit), expected, 2e-4f, base + "_Y");
      expectNear(expanded(base + "_Y_RGB", luma(planes), exit), expected, 2e-4f, base + "_Y_RGB");
    }
  }
}

ENGINE_TEST(GrainExpand, DisplayIsTheEncodingAndItsDensity)
{
  // Mid-grey through Rec.709's 1 / 2.2 and the density without a power.
  const float e = std::pow(0.18f, 0.454545468f);
  const Planes grey = compressed({0.18f, 0.18f, 0.18f});
  const Values r = displayed("lin_grain_display_only_expand", grey);
  EXPECT_NEAR(r[0], (0.01f - 1.6f) / (e + 1.0f) + 1.6f, 2e-5f);
  EXPECT_NEAR(r[1], (0.012f - 1.62f) / (e + 1.0f) + 1.62f, 2e-5f);
  EXPECT_EQ(displayed("lin_grain_display_only_expand_RGB", grey), r);
}

ENGINE_TEST(GrainExpand, StockBendsUnlessItsBleachDid)
{
  const Planes grey = compressed({0.18f, 0.18f, 0.18f});
  const Values bent = displayed("lin_grain_display_only_expand_print_stock", grey, false);
  const Values flat = displayed("lin_grain_display_only_expand_print_stock", grey, true);
  const float e = std::pow(0.18f, 0.454545468f);
  EXPECT_NEAR(flat[0], (0.01f - 1.6f) / (std::pow(e / 0.71f, 2.5f) + 1.0f) + 1.6f, 2e-5f);
  EXPECT_GT(std::fabs(bent[0] - flat[0]), 1e-3f);
}

ENGINE_TEST(GrainExpand, NegativeLuminanceIsBlack)
{
  const Planes planes({0.5f}, {-0.4f}, {0.3f});
  const Values r = displayed("lin_grain_display_only_expand", planes);
  EXPECT_NEAR(r[0], 0.01f, 1e-6f);
  EXPECT_NEAR(r[1], 0.012f, 1e-6f);
}

ENGINE_TEST(GrainExpand, AlphaComesFromItsPlaneOrIsOne)
{
  const Planes planes = compressed(colours);
  for (const ExpandRow& row : expandRows)
  {
    const Buffer<float> frame(20);
    const bool soup = row.end == ExpandEnd::Soup || row.end == ExpandEnd::SoupBleach;
    const ExpandFrames frames = planes.frames(frame, 4);
    ASSERT_TRUE(soup ? launchSoupExpand(Queue{}, row.kernel, frames, soupLook(), makeSoupExit(true, 47))
                     : launchDisplayExpand(Queue{}, row.kernel, frames, printLook(), false));
    const Values r = download(frame);
    for (size_t i = 3; i < 20; i += 4)
      EXPECT_EQ(r[i], row.alpha ? 0.25f : 1.0f) << row.kernel;
  }
  const Buffer<float> frame(20);
  EXPECT_FALSE(launchSoupExpand(Queue{}, "lin_grain_display_only_expand", planes.frames(frame, 4), {}, {}));
  EXPECT_FALSE(launchDisplayExpand(Queue{}, "lin_grain_soup_expand", planes.frames(frame, 4), {}, false));
}

PARITY(grain_expand)
{
  const Planes planes = compressed(settings::everyHue(3000));
  Values all;
  for (const ExpandRow& row : expandRows)
  {
    const bool soup = row.end == ExpandEnd::Soup || row.end == ExpandEnd::SoupBleach;
    const Values r = soup ? expanded(row.kernel, planes, makeSoupExit(true, 11)) : displayed(row.kernel, planes);
    all.insert(all.end(), r.begin(), r.end());
  }
  return all;
}

}  // namespace morvellan::MORVELLAN_TARGET
