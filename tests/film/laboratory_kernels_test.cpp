// The laboratory's kernels one by one, by value and at their bounds.
#include "film/laboratory_kernels.h"

#include <limits>

#include "tests/film/laboratory_runs.h"

namespace morvellan::MORVELLAN_TARGET
{

using namespace laboratory_runs;

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

}  // namespace morvellan::MORVELLAN_TARGET
