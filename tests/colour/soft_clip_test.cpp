// Exposure, soft clips and hard clip: what each does at its edges.
#include "colour/soft_clip.h"

#include <cmath>
#include <limits>
#include <vector>

#include "tests/colour/device_frame.h"
#include "tests/support/engine_test.h"

namespace morvellan::MORVELLAN_TARGET
{

using namespace colour_test;

namespace
{

constexpr float nan = std::numeric_limits<float>::quiet_NaN();
constexpr float infinity = std::numeric_limits<float>::infinity();

float clipped(const SoftClip& settings, float x)
{
  return reds(inPlace("highlights_shadows_Kernel", neutrals({x}), {.softClip = settings}))[0];
}

}  // namespace

ENGINE_TEST(Exposure, LogAddsAndSaturates)
{
  const std::vector<float> frame = neutrals({1.2f, 0.5f, -0.3f, nan});
  EXPECT_EQ(reds(inPlace("exposure_log", frame, {.value = 0.0f})), (std::vector<float>{1.0f, 0.5f, 0.0f, 0.0f}));
  const std::vector<float> raised = reds(inPlace("exposure_log", frame, {.value = 0.2f}));
  EXPECT_EQ(raised[0], 1.0f);
  EXPECT_FLOAT_EQ(raised[1], 0.7f);
  EXPECT_EQ(raised[2], 0.0f);
}

ENGINE_TEST(Exposure, LinearMultipliesAndClamps)
{
  const std::vector<float> frame = neutrals({-1.0f, 0.18f, 300.0f, infinity, nan});
  const std::vector<float> r = reds(inPlace("exposure_linear_gamma", frame, {.value = 2.0f}));
  EXPECT_EQ(r, (std::vector<float>{0.0f, 0.36f, 469.799988f, 469.799988f, 0.0f}));
}

ENGINE_TEST(Exposure, AlphaIsCarriedToAnotherFrame)
{
  const std::vector<float> frame = neutrals({0.25f, 0.75f});
  for (const ColourKernel kernel : {ColourKernel("exposure_log_in_out"), ColourKernel("exposure_linear_gamma_in_out")})
  {
    const std::vector<float> r =
        toFrame(kernel, frame, {.value = kernel.name() == "exposure_log_in_out" ? 0.0f : 1.0f});
    EXPECT_EQ(r, frame) << kernel.name();
  }
}

ENGINE_TEST(SoftClip, DefaultsChangeNothingButTheRounding)
{
  const std::vector<float> levels = {-2.0f, -0.1f, 0.0f, 0.25f, 0.5f, 1.0f, 1.5f, 40.0f};
  const std::vector<float> r = reds(inPlace("highlights_shadows_Kernel", neutrals(levels), {}));
  for (size_t i = 0; i < levels.size(); ++i)
    EXPECT_FLOAT_EQ(r[i], levels[i]);
}

ENGINE_TEST(SoftClip, ShoulderTendsToItsEnd)
{
  const SoftClip hard{.ceiling = 0.9999f};
  EXPECT_FLOAT_EQ(clipped(hard, 0.5f), 0.5f);
  EXPECT_NEAR(clipped(hard, 2.0f), 1.0f, 1e-5f);
  EXPECT_NEAR(clipped(hard, 100.0f), 1.0f, 1e-6f);
  const SoftClip soft{.ceiling = 0.5f};
  EXPECT_FLOAT_EQ(clipped(soft, 0.5f), 0.5f);
  // Half-way: 0.5 (1 - 1 / 2) above the start.
  EXPECT_NEAR(clipped(soft, 1.0f), 0.75f, 1e-6f);
}

ENGINE_TEST(SoftClip, ToeMirrorsTheShoulder)
{
  // The first toe starts at floor / 10 and ends at expand; the value turned over runs the same shoulder.
  const SoftClip toe{.floor = 1.5f, .expand = -0.3f};
  EXPECT_FLOAT_EQ(clipped(toe, 0.5f), 0.5f);
  const float low = clipped(toe, -5.0f);
  EXPECT_GT(low, -0.31f);
  EXPECT_LT(low, 0.15f);
  EXPECT_LT(clipped(toe, -10.0f), low);
}

ENGINE_TEST(SoftClip, NanGoesThrough)
{
  EXPECT_TRUE(std::isnan(clipped({}, nan)));
  EXPECT_TRUE(std::isnan(clipped({.ceiling = 0.5f, .comp = 2.0f, .floor = 1.0f, .expand = -1.0f}, nan)));
}

ENGINE_TEST(HardClip, BoundsByIndex)
{
  const auto at = [](int colourspace, float x)
  { return reds(inPlace("Clip_min_max", neutrals({x}), {.colourspace = colourspace}))[0]; };
  EXPECT_EQ(at(0, 4.875f), 4.875f);
  EXPECT_EQ(at(0, 5.0f), 4.875f);
  EXPECT_EQ(at(0, -1.0f), -0.125f);
  for (const int index : {1, 8, 9, 10, 42, 43})
  {
    EXPECT_EQ(at(index, 1.5f), 1.0f) << index;
    EXPECT_EQ(at(index, -0.5f), 0.0f) << index;
    EXPECT_EQ(at(index, nan), 0.0f) << index;
  }
  for (const int index : {2, 3, 11, 20, 32})
  {
    EXPECT_EQ(at(index, 1.5f), 1.125f) << index;
    EXPECT_EQ(at(index, -1.5f), -0.125f) << index;
  }
  for (const int index : {4, 5})
  {
    EXPECT_EQ(at(index, 6.0f), 5.0f) << index;
    EXPECT_EQ(at(index, -9.0f), -8.0f) << index;
  }
  EXPECT_EQ(at(6, 2.0f), 1.46799636f);
  EXPECT_EQ(at(6, -2.0f), -0.358286828f);
  EXPECT_EQ(at(7, 2.0f), 1.46799636f);
  EXPECT_EQ(at(7, -2.0f), -0.249136001f);
  for (const int index : {33, 41, 44, 48})
    EXPECT_EQ(at(index, 100.0f), 100.0f) << index;
}

}  // namespace morvellan::MORVELLAN_TARGET
