// Transfer curves against values worked out in double, round trips of every index and table, and the edges of the rules
// that belong to an index.
#include "colour/curves.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <set>
#include <string>
#include <vector>

#include "tests/colour/curve_run.h"
#include "tests/colour/curve_values.h"
#include "tests/support/engine_test.h"

namespace morvellan::MORVELLAN_TARGET
{

using namespace colour_test;

namespace
{

constexpr float nan = std::numeric_limits<float>::quiet_NaN();

// Where an index's constants close the circle of decode and encode, in code values.
struct RoundTrip
{
  float low = 0.0f, high = 1.0f, tolerance = 4e-6f;
  std::string reason;  // why not everywhere
};

RoundTrip roundTripOf(CurveTable table, int index)
{
  const bool isShort = table == CurveTable::Short;
  switch (index)
  {
  case 8:
    return {.low = 2.0f, .reason = "whole codes, tested by themselves"};
  case 9:
    return {.low = 0.0929f, .tolerance = 5e-5f, .reason = "a code below the offset of 0.19 does not come back"};
  case 10:
    return {.low = 0.005f,
            .tolerance = 1.4e-4f,
            .reason = "small cubes are lost beside their offset; the two segments meet 1.3e-4 apart"};
  case 13:
    return isShort ? RoundTrip{.low = 0.0301f, .reason = "light at and below 0 encodes to itself"}
                   : RoundTrip{.low = 0.0929f, .high = 0.567f, .reason = "the encode clamps light to 0..1"};
  case 14:
    if (isShort)
      return {.low = 0.0883f, .reason = "light at and below 0 encodes to itself"};
    break;
  case 31:
  case 33:
  case 34:
    if (isShort)
      return {.low = 0.005f, .reason = "light below 0.000001 is lifted"};
    break;
  case 46:
    if (!isShort)
      return {.low = 2.0f, .reason = "the encode's factor is the decode's inverse without its gamma"};
    break;
  case 48:
    if (!isShort)
      return {.low = 0.0925f, .reason = "light below 0 is clamped"};
    break;
  default:
    break;
  }
  return {};
}

}  // namespace

ENGINE_TEST(Curves, AgreeWithTheirConstantsInDouble)
{
  const std::vector<float> codes(std::begin(colour_values::codes), std::end(colour_values::codes));
  const std::vector<float> light(std::begin(colour_values::light), std::end(colour_values::light));
  const float relative = 4e-6f, absolute = 2e-7f;
  uint64_t seen[2] = {};
  for (const colour_values::CurveValues& row : colour_values::curveValues)
    for (const CurveTable table : tables)
      for (int index = 0; index < colourspaceCount; ++index)
      {
        const uint64_t members = table == CurveTable::Short ? row.inShort : row.inFull;
        if ((members >> index & 1) == 0)
          continue;
        seen[table == CurveTable::Full] |= uint64_t{1} << index;
        const std::vector<float> toLight = decoded(table, index, neutrals(codes));
        const std::vector<float> toCode = encoded(table, index, neutrals(light));
        for (size_t i = 0; i < codes.size(); ++i)
          EXPECT_NEAR(toLight[i * 4], row.decoded[i], std::fabs(row.decoded[i]) * relative + absolute)
              << label(table, index) << " decode of " << codes[i];
        for (size_t i = 0; i < light.size(); ++i)
          EXPECT_NEAR(toCode[i * 4], row.encoded[i], std::fabs(row.encoded[i]) * relative + absolute)
              << label(table, index) << " encode of " << light[i];
      }
  // All but those that mix channels.
  const uint64_t every = (uint64_t{1} << colourspaceCount) - 1;
  for (const uint64_t indices : seen)
    EXPECT_EQ(indices | colour_values::of(9, 42, 43), every);
}

ENGINE_TEST(Curves, ThatMixChannelsAgreeWithTheirConstantsInDouble)
{
  for (const colour_values::TripleValues& row : colour_values::tripleValues)
    for (const CurveTable table : tables)
    {
      const std::vector<float> toLight = decoded(table, row.colourspace, {row.code[0], row.code[1], row.code[2], 1.0f});
      const std::vector<float> toCode =
          encoded(table, row.colourspace, {row.light[0], row.light[1], row.light[2], 1.0f});
      for (size_t k = 0; k < 3; ++k)
      {
        EXPECT_NEAR(toLight[k], row.decoded[k], std::fabs(row.decoded[k]) * 1e-5f + 2e-7f) << row.colourspace;
        EXPECT_NEAR(toCode[k], row.encoded[k], std::fabs(row.encoded[k]) * 1e-5f + 1e-6f) << row.colourspace;
      }
    }
}

ENGINE_TEST(Curves, RoundTripOfEveryIndexAndTable)
{
  // The codes of 12 bits, and every half float of the range.
  std::vector<float> codes;
  for (int i = 0; i <= 4095; ++i)
    codes.push_back(static_cast<float>(i) / 4095.0f);
  for (const float half : finiteHalfFloats())
    if (half >= 0.0f && half <= 1.0f)
      codes.push_back(half);
  const std::vector<float> frame = neutrals(codes);
  for (const CurveTable table : tables)
    for (int index = 0; index < colourspaceCount; ++index)
    {
      const RoundTrip trip = roundTripOf(table, index);
      const std::vector<float> back = encoded(table, index, decoded(table, index, frame));
      float worst = 0.0f, at = 0.0f;
      for (size_t i = 0; i < codes.size(); ++i)
      {
        if (codes[i] < trip.low || codes[i] > trip.high)
          continue;
        const float error = std::fabs(back[i * 4] - codes[i]);
        if (!(error <= worst))
        {
          worst = error;
          at = codes[i];
        }
      }
      EXPECT_LE(worst, trip.tolerance) << label(table, index) << " at code " << at;
    }
}

// The listed exceptions are real: each departs where it is left out above.
ENGINE_TEST(Curves, ExceptionsOfTheRoundTripAreNeeded)
{
  const auto error = [](CurveTable table, int index, float code)
  { return std::fabs(encoded(table, index, decoded(table, index, neutrals({code})))[0] - code); };
  EXPECT_GT(error(CurveTable::Short, 8, 0.50005f), 1e-5f);
  EXPECT_GT(error(CurveTable::Short, 9, 0.05f), 1e-3f);
  EXPECT_GT(error(CurveTable::Full, 10, 0.0002f), 1e-5f);
  EXPECT_GT(error(CurveTable::Short, 13, 0.02f), 1e-3f);
  EXPECT_GT(error(CurveTable::Full, 13, 0.6f), 1e-2f);
  EXPECT_GT(error(CurveTable::Short, 14, 0.05f), 1e-3f);
  EXPECT_GT(error(CurveTable::Short, 31, 0.0f), 1e-3f);
  EXPECT_GT(error(CurveTable::Full, 46, 0.5f), 1e-2f);
  EXPECT_GT(error(CurveTable::Full, 48, 0.05f), 1e-2f);
}

ENGINE_TEST(Curves, AcesProxyIsWholeCodes)
{
  const std::vector<float> levels = reds(encoded(CurveTable::Short, 8, neutrals({0.0f, 0.18f, 1.0f, 1e6f, nan})));
  EXPECT_FLOAT_EQ(levels[0], 256.0f / 4095.0f);
  for (const float level : levels)
    EXPECT_NEAR(level * 4095.0f, std::round(level * 4095.0f), 1e-3f);
  EXPECT_LE(levels[3], 3760.0f / 4095.0f + 1e-6f);
  EXPECT_FLOAT_EQ(levels[4], 256.0f / 4095.0f);
  std::vector<float> codes;
  for (int code = 256; code <= 3760; ++code)
    codes.push_back(static_cast<float>(code) / 4095.0f);
  const std::vector<float> back = encoded(CurveTable::Short, 8, decoded(CurveTable::Short, 8, neutrals(codes)));
  for (size_t i = 0; i < codes.size(); ++i)
    ASSERT_FLOAT_EQ(back[i * 4], codes[i]);
}

ENGINE_TEST(Curves, AcesCcOfBlack)
{
  EXPECT_EQ(encoded(CurveTable::Short, 6, neutrals({0.0f}))[0], 0.0f);
  EXPECT_NEAR(encoded(CurveTable::Full, 6, neutrals({0.0f}))[0],
              (std::log2(0.00118499994f) + 9.72000027f) * 0.0570776239f, 1e-6f);
}

ENGINE_TEST(Curves, CineonWhite)
{
  EXPECT_NEAR(decoded(CurveTable::Short, 2, neutrals({685.0f / 1023.0f}))[0], 1.0f, 2e-6f);
}

ENGINE_TEST(Curves, FLog2AndSLogShareAnIndex)
{
  const std::vector<float> frame = neutrals({0.5f});
  const float sLog = std::pow(10.0f, (0.5f - 0.646596014f) * 2.31107545f) - 0.0375839993f;
  const float fLog2 = std::pow(10.0f, (0.5f - 0.384315997f) * 4.07695675f) * 0.179999992f - 0.0116692195f;
  EXPECT_NEAR(inPlace("To_Linear_Kernel_RGBA", frame, {.colourspace = 13})[0], sLog, 2e-6f);
  // The range compressor behind the decode leaves neutrals up to 0.18 alone.
  const float below = 0.35f;
  const float dark = std::pow(10.0f, (below - 0.384315997f) * 4.07695675f) * 0.179999992f - 0.0116692195f;
  EXPECT_NEAR(toPlanes("XYZ_compress_RGBA", neutrals({below}), {.colourspace = 13})[0][0], dark, 2e-6f);
  EXPECT_GT(fLog2, 0.18f);
}

ENGINE_TEST(Curves, PqOfBlackIsBlack)
{
  for (const int index : {42, 43})
    for (const CurveTable table : tables)
    {
      const std::vector<float> r = decoded(table, index, {0.0f, 0.0f, 0.0f, 1.0f});
      EXPECT_EQ(r, (std::vector<float>{0.0f, 0.0f, 0.0f, 1.0f}));
    }
}

// Every code of 16 bits, and codes beyond 1, against the definition in double: a neutral's light L leaves as L^(5/6),
// in thousands of cd/m2.
ENGINE_TEST(Curves, PqKeepsItsRelativeError)
{
  std::vector<float> codes;
  for (int i = 1; i < 65536 + 8192; ++i)
    codes.push_back(static_cast<float>(i) / 65535.0f);
  const std::vector<float> light = reds(decoded(CurveTable::Full, 42, neutrals(codes)));
  struct Range
  {
    float from;
    double bound, worst = 0.0;
  };
  Range ranges[] = {{0.0f, 3.5e-6}, {0.01125f, 2e-6}, {0.0425f, 1e-6}, {1.00013f, 5e-6}};
  for (size_t i = 0; i < codes.size(); ++i)
  {
    const double root = std::pow(static_cast<double>(codes[i]), 1.0 / 78.84375);
    const double quotient = (root - 0.8359375) / (18.8515625 - 18.6875 * root);
    const double exact = std::pow(10.0 * std::pow(quotient, 1.0 / 0.1593017578125), 5.0 / 6.0);
    const auto range =
        std::find_if(std::rbegin(ranges), std::rend(ranges), [&](const Range& r) { return codes[i] >= r.from; });
    range->worst = std::max(range->worst, std::fabs(static_cast<double>(light[i]) / exact - 1.0));
  }
  for (const Range& range : ranges)
    EXPECT_LE(range.worst, range.bound) << "from code " << range.from;
}

ENGINE_TEST(Curves, PqSaturatesInPlaceAndInCropsOnly)
{
  const std::vector<float> over = neutrals({1.02f});
  const std::vector<float> white = neutrals({1.0f});
  const ColourArguments pq{.colourspace = 42};
  EXPECT_EQ(inPlace("To_Linear_Kernel_RGBA", over, pq), inPlace("To_Linear_Kernel_RGBA", white, pq));
  EXPECT_EQ(inPlace("ColorSpace_XYZ_compress", over, pq), inPlace("ColorSpace_XYZ_compress", white, pq));
  EXPECT_NE(toFrame("To_Linear_Kernel_RGBA_in_out", over, pq), toFrame("To_Linear_Kernel_RGBA_in_out", white, pq));
  EXPECT_NE(toPlanes("XYZ_compress_RGBA", over, pq), toPlanes("XYZ_compress_RGBA", white, pq));
}

ENGINE_TEST(Curves, GuardLeavesCodesBeyondOne)
{
  const std::vector<float> frame = neutrals({1.5f});
  EXPECT_EQ(toPlanes("To_Log_RGBA_Kernel", frame, {.colourspace = 1})[0][0], 1.5f);
  EXPECT_NEAR(inPlace("To_Log_Kernel", frame, {.colourspace = 1})[0],
              std::pow(1.5f, 0.45f) * 1.09930003f - 0.0992999971f, 2e-6f);
}

ENGINE_TEST(Curves, HlgOfANegativeTakesTheExponential)
{
  const float expected = (std::exp((-0.1f - 0.559910715f) * 5.59181643f) + 0.284668922f) * 0.0833333358f;
  EXPECT_NEAR(decoded(CurveTable::Short, 44, neutrals({-0.1f}))[0], expected, 1e-7f);
}

ENGINE_TEST(Curves, NLogCubesNegativeCodes)
{
  const float root = -0.1f * 1023.0f * 0.00153846154f;
  EXPECT_NEAR(decoded(CurveTable::Short, 10, neutrals({-0.1f}))[0], root * root * root - 0.0075f, 1e-7f);
}

ENGINE_TEST(Curves, NanMeetsAClampAsItsLowerBound)
{
  const float low = encoded(CurveTable::Short, 11, neutrals({-0.017290419f}))[0];
  EXPECT_EQ(encoded(CurveTable::Short, 11, neutrals({nan}))[0], low);
  EXPECT_EQ(inPlace("linear_to_log", neutrals({nan}), {.colourspace = 11})[0], low);
  EXPECT_TRUE(std::isnan(inPlace("linear_to_log_no_clamp", neutrals({nan}), {.colourspace = 11})[0]));
}

ENGINE_TEST(Curves, AcesLinearIsCarriedAsPLogLinInPlaceOnly)
{
  const std::vector<float> frame = neutrals({0.445f});
  for (const int index : {4, 5})
  {
    EXPECT_EQ(inPlace("To_Linear_Kernel_RGBA", frame, {.colourspace = index}),
              inPlace("To_Linear_Kernel_RGBA", frame, {.colourspace = 3}));
    EXPECT_EQ(inPlace("To_Log_Kernel", frame, {.colourspace = index}),
              inPlace("To_Log_Kernel", frame, {.colourspace = 3}));
    EXPECT_EQ(toFrame("To_Linear_Kernel_RGBA_in_out", frame, {.colourspace = index}), frame);
    EXPECT_EQ(toFrame("To_Log_Kernel_in_out", frame, {.colourspace = index}), frame);
  }
  for (const int index : {0, 30})
    EXPECT_EQ(inPlace("To_Linear_Kernel_RGBA", frame, {.colourspace = index}), frame);
}

ENGINE_TEST(Curves, IndicesWithoutACasePassThrough)
{
  const std::vector<float> frame = neutrals({-0.5f, 0.3f, 2.0f});
  for (const int index : {46, 47, 48, 49, -1})
  {
    EXPECT_EQ(decoded(CurveTable::Short, index, frame), frame) << index;
    EXPECT_EQ(encoded(CurveTable::Short, index, frame), frame) << index;
  }
}

}  // namespace morvellan::MORVELLAN_TARGET
