// What the tests of camera and print stocks expect alike: one value in all channels of a family, and the print points.
// Compared to 1e-9, the rounding of values worked out by hand.
#pragma once

#include "params/families.h"
#include "tests/params/test_page.h"

#include <gtest/gtest.h>

namespace morvellan::params
{
inline void expectFamily(const TestPage& params, std::string_view stem, std::string_view master, double value)
{
  for (const std::string& channel : channelNames(stem))
    EXPECT_NEAR(params[channel], value, 1e-9) << channel;
  EXPECT_NEAR(params[master], value, 1e-9) << master;
}

inline void expectPoints(const TestPage& params, double black, double white)
{
  expectFamily(params, "PrintBlack", "PrintBlackRGB", black);
  expectFamily(params, "PrinterLight", "PrinterLightsRGB", white);
}
}  // namespace morvellan::params
