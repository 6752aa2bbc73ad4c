// What the tests of print and displays share: settings of a plain stock, runs of the print's kernels on a few colours.
#pragma once

#include "film/print.h"
#include "tests/support/device_arrays.h"
#include "tests/support/engine_test.h"

namespace morvellan::MORVELLAN_TARGET::print_runs
{

using Values = std::vector<float>;

constexpr bool isHdr(int display)
{
  return display == 6 || display == 7 || display == 8 || display == 10 || display == 12 || display == 14;
}

inline PrintSettings stock(int profile, int display = 0)
{
  PrintSettings s;
  s.density = {.floor = {0.01f, 0.012f, 0.008f}, .ceiling = {1.6f, 1.62f, 1.58f}, .scale = 1.0f / 0.71f, .slope = 2.5f};
  s.profile = profile;
  s.display = display;
  s.peak = isHdr(display) ? 800.0f : 100.0f;
  return s;
}

inline Values run(std::string_view kernel, const PrintSettings& settings, const Values& linear)
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

inline void expectNear(const Values& actual, const Values& expected, float tolerance, const char* what)
{
  ASSERT_EQ(actual.size(), expected.size());
  for (size_t i = 0; i < actual.size(); ++i)
    EXPECT_NEAR(actual[i], expected[i], tolerance) << what << " " << i;
}

inline const Values colours{0.18f, 0.18f, 0.18f, 1.0f, 0.2f, 0.05f, 0.02f, 0.3f, 0.35f, 8.0f, 6.0f, 9.0f};

}  // namespace morvellan::MORVELLAN_TARGET::print_runs
