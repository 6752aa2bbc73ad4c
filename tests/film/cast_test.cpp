// Cast and tints: gains by temperature, and the luminance that they keep.
#include "film/cast.h"

#include <limits>

#include "device/launch.h"
#include "film/saturation.h"
#include "tests/support/device_arrays.h"
#include "tests/support/engine_test.h"
#include "tests/support/film_settings.h"

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

struct cast_pixels
{
  const float* source;
  float* target;
  Cast cast;
  MORVELLAN_KERNEL void operator()(Pixels at) const { storeRgb(target, at, applyCast(cast, loadRgb(source, at))); }
};

std::vector<float> run(const CastSettings& settings, const std::vector<float>& frame)
{
  const Buffer<float> source = upload(frame);
  const Buffer<float> target(frame.size());
  launch(Queue{}, pixels(static_cast<int>(frame.size() / 3), 1),
         cast_pixels{source.data(), target.data(), makeCast(settings)});
  return download(target);
}

void expectNear(const std::vector<float>& actual, const std::vector<float>& expected)
{
  ASSERT_EQ(actual.size(), expected.size());
  for (size_t i = 0; i < actual.size(); ++i)
    EXPECT_NEAR(actual[i], expected[i], 2e-6f) << i;
}

double luminance(const float* p)
{
  return 0.272228718 * static_cast<double>(p[0]) + 0.674081743 * static_cast<double>(p[1]) +
         0.0536895171 * static_cast<double>(p[2]);
}

const std::vector<float> pixel{0.5f, 0.4f, 0.3f};

}  // namespace

ENGINE_TEST(Cast, OffChangesNothing)
{
  const std::vector<float> frame{0.5f, 0.4f, 0.3f, -1.0f, 0.2f, 1000.0f};
  EXPECT_EQ(run({}, frame), frame);
}

ENGINE_TEST(Cast, TemperaturesByValue)
{
  expectNear(run({.live = true, .row = 30}, pixel), {0.6383490f, 0.3548725f, 0.1650954f});
  expectNear(run({.live = true, .row = 65}, pixel), {0.5014909f, 0.3997926f, 0.2950441f});
  // The upper branch begins at 66, one kelvin above the neutral setting.
  expectNear(run({.live = true, .row = 66}, pixel), {0.5042208f, 0.3980937f, 0.3025325f});
  expectNear(run({.live = true, .row = 140}, pixel), {0.4566996f, 0.4111205f, 0.3799316f});
  expectNear(run({.live = true, .row = 45, .greenMagenta = 0.1f, .redCyan = -0.1f}, pixel),
             {0.5933745f, 0.3663840f, 0.2486061f});
}

ENGINE_TEST(Cast, KeepsLuminanceAndLeavesBlackAlone)
{
  const std::vector<float> frame = settings::everyHue(200);
  const CastSettings all{.live = true, .row = 90, .greenMagenta = -0.3f, .redCyan = 0.2f};
  const std::vector<float> r = run(all, frame);
  for (size_t i = 0; i < frame.size(); i += 3)
    EXPECT_NEAR(luminance(&r[i]), luminance(&frame[i]), 1e-6 * luminance(&frame[i]));
  const std::vector<float> dark{0.0f, 0.0f, 0.0f, -0.2f, 0.01f, 0.3f};
  EXPECT_EQ(run(all, dark), dark) << "nothing without a positive luminance is touched";
}

ENGINE_TEST(Saturation, BlueFirst)
{
  const Matrix3 m = saturationMatrix(0.5f);
  // Worked out step by step from the rows 0.254524, 0.781478, -0.036002 of the primaries.
  const float r = 0.3f, g = 0.2f, b = 0.8f;
  const float lr = 0.5f * 0.254524171f, lg = 0.5f * 0.781477749f, lb = 0.5f * -0.0360019095f;
  const float blue = b * (lb + 0.5f) + g * lg + r * lr;
  const float red = blue * lb + g * lg + r * (lr + 0.5f);
  const float green = blue * lb + g * (lg + 0.5f) + r * lr;
  EXPECT_NEAR(m.m[0] * r + m.m[1] * g + m.m[2] * b, red, 1e-6f);
  EXPECT_NEAR(m.m[3] * r + m.m[4] * g + m.m[5] * b, green, 1e-6f);
  EXPECT_NEAR(m.m[6] * r + m.m[7] * g + m.m[8] * b, blue, 1e-6f);
  for (float s : {0.0f, 0.7f, 1.4f})
    for (int row = 0; row < 3; ++row)
    {
      const Matrix3 k = saturationMatrix(s);
      EXPECT_NEAR(k.m[row * 3] + k.m[row * 3 + 1] + k.m[row * 3 + 2], 1.0f, 1e-6f) << "neutrals stay";
    }
}

PARITY(cast, morvellan::parity::sameBits)
{
  return run({.live = true, .row = 40, .greenMagenta = -0.3f, .redCyan = 0.2f}, settings::everyHue(2000));
}

}  // namespace morvellan::MORVELLAN_TARGET
