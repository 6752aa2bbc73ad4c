// Sweeps: every half float through every curve of every index and table, by itself and on every target.
#include <cmath>
#include <string>
#include <vector>

#include "tests/colour/curve_run.h"
#include "tests/support/engine_test.h"

namespace morvellan::MORVELLAN_TARGET
{

using namespace colour_test;

namespace
{

// The first channel of all decodes and encodes of a frame.
std::vector<float> throughEveryCurve(const std::vector<float>& levels)
{
  const std::vector<float> frame = neutrals(levels);
  std::vector<float> all;
  for (const CurveTable table : tables)
    for (int index = 0; index < colourspaceCount; ++index)
      for (const std::vector<float>& values : {decoded(table, index, frame), encoded(table, index, frame)})
      {
        const std::vector<float> first = reds(values);
        all.insert(all.end(), first.begin(), first.end());
      }
  return all;
}

}  // namespace

ENGINE_TEST(CurveSweeps, HalfFloatsAreAllThere)
{
  const std::vector<float> halves = finiteHalfFloats();
  EXPECT_EQ(halves.size(), 2u * 31 * 1024);
  EXPECT_EQ(halves.back(), 65504.0f);
  EXPECT_EQ(halves[31 * 1024 + 1], std::ldexp(1.0f, -24));
  EXPECT_EQ(halves[31 * 1024 + 15 * 1024], 1.0f);
}

// A number gives a number.
ENGINE_TEST(CurveSweeps, NumbersStayNumbers)
{
  const std::vector<float> halves = finiteHalfFloats();
  const std::vector<float> frame = neutrals(halves);
  for (const CurveTable table : tables)
    for (int index = 0; index < colourspaceCount; ++index)
      for (const bool encodes : {false, true})
      {
        const std::vector<float> values = encodes ? encoded(table, index, frame) : decoded(table, index, frame);
        size_t bad = 0, first = 0;
        for (size_t i = 0; i < values.size(); ++i)
          if (std::isnan(values[i]) && bad++ == 0)
            first = i / 4;
        EXPECT_EQ(bad, 0u) << label(table, index) << (encodes ? " encode" : " decode") << ", first of "
                           << halves[first];
      }
}

PARITY(every_curve_of_every_half_float, morvellan::parity::sameBits)
{
  return throughEveryCurve(finiteHalfFloats());
}

PARITY(every_curve_of_fine_steps, morvellan::parity::sameBits)
{
  std::vector<float> levels;
  for (int i = -2000; i <= 12000; ++i)
    levels.push_back(static_cast<float>(i) / 10000.0f);
  for (int i = 0; i <= 4000; ++i)
    levels.push_back(std::exp2(-20.0f + static_cast<float>(i) * 0.0075f));
  return throughEveryCurve(levels);
}

}  // namespace morvellan::MORVELLAN_TARGET
