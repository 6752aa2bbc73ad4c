// The inner loops of the host's pixel work on every level of the CPU that this machine runs: against sums in double,
// and cut anywhere against the whole, bit for bit.
#include "pipeline/host/lines.h"

#include "device/host/cpu_level.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <vector>

namespace morvellan::test
{
namespace
{

using device::CpuLevel;

constexpr int longest = 83;

std::vector<float> noise(std::size_t count, unsigned seed)
{
  std::mt19937 generator(seed);
  std::uniform_real_distribution<float> values(-0.3f, 1.5f);
  std::vector<float> all(count);
  std::generate(all.begin(), all.end(), [&] { return values(generator); });
  return all;
}

std::size_t at(int index)
{
  return static_cast<std::size_t>(index);
}

class Lines : public testing::TestWithParam<CpuLevel>
{
protected:
  void SetUp() override
  {
    if (GetParam() > device::highestLevel(device::readCpuFeatures()))
      GTEST_SKIP() << "this machine does not run level " << static_cast<int>(GetParam());
  }

  const LineFunctions& lines = lineFunctions(GetParam());
};

// Taps and weights of a row: a few sets of weights, taps that go back and forth.
struct Row
{
  std::vector<float> source = noise((longest + 8) * rgba, 1);
  std::vector<float> weights;
  std::vector<int> first, phase;

  Row()
  {
    constexpr int sets = 5;
    const std::vector<float> values = noise(sets * filterTaps, 2);
    for (const float value : values)
      weights.insert(weights.end(), rgba, value);
    for (int x = 0; x < longest; ++x)
    {
      first.push_back(x * 7 % (longest + 2));
      phase.push_back(x % sets * filterTaps * rgba);
    }
  }

  // `count` pixels from pixel `begin`.
  std::vector<float> filtered(const LineFunctions& lines, int begin, int count) const
  {
    std::vector<float> target(at(count * rgba + 1), -9.0f);
    lines.filterAlongRow(source.data(), 0, first.data() + begin, phase.data() + begin, weights.data(), count,
                         target.data());
    EXPECT_EQ(target.back(), -9.0f);
    target.pop_back();
    return target;
  }
};

TEST_P(Lines, AlongARowIsTheSumOfItsTaps)
{
  const Row row;
  const std::vector<float> actual = row.filtered(lines, 0, longest);
  for (int x = 0; x < longest; ++x)
    for (int c = 0; c < rgba; ++c)
    {
      double sum = 0.0;
      for (int tap = 0; tap < filterTaps; ++tap)
        sum += static_cast<double>(row.weights[at(row.phase[at(x)] + tap * rgba)]) *
               row.source[at((row.first[at(x)] + tap) * rgba + c)];
      ASSERT_NEAR(actual[at(x * rgba + c)], sum, 2e-6) << x << " " << c;
    }
}

TEST_P(Lines, AlongARowCutAnywhereIsTheSame)
{
  const Row row;
  const std::vector<float> whole = row.filtered(lines, 0, longest);
  for (int begin = 0; begin < longest; ++begin)
    for (const int count : {1, 2, 3, 8, 9, longest - begin})
    {
      if (begin + count > longest)
        continue;
      const std::vector<float> part = row.filtered(lines, begin, count);
      ASSERT_TRUE(std::equal(part.begin(), part.end(), whole.begin() + begin * rgba)) << begin << " " << count;
    }
}

TEST_P(Lines, AcrossRowsIsTheSumOfItsRowsWithAndWithoutTheCaches)
{
  const std::vector<float> weights = noise(filterTaps, 4);
  std::array<std::vector<float>, filterTaps> memory;
  std::array<const float*, filterTaps> rows;
  for (std::size_t tap = 0; tap < filterTaps; ++tap)
  {
    memory[tap] = noise(longest * rgba + rowPadding, 5 + static_cast<unsigned>(tap));
    rows[tap] = memory[tap].data();
  }
  for (const int count : {1, 3, 4, 15, 16, 17, 40, longest * rgba})
    for (const int offset : {0, 1})  // of the target from 64 bytes: past the caches only where it is aligned
    {
      alignas(64) std::array<float, longest * rgba + 2> streamed, stored;
      streamed.fill(-9.0f);
      stored.fill(-9.0f);
      lines.filterAcrossRows(rows.data(), weights.data(), count, true, streamed.data() + offset);
      lines.streamFence();
      lines.filterAcrossRows(rows.data(), weights.data(), count, false, stored.data() + offset);
      ASSERT_EQ(streamed, stored) << count;
      ASSERT_EQ(stored[at(count + offset)], -9.0f) << count;
      for (int i = 0; i < count; ++i)
      {
        double sum = 0.0;
        for (std::size_t tap = 0; tap < filterTaps; ++tap)
          sum += static_cast<double>(weights[tap]) * memory[tap][at(i)];
        ASSERT_NEAR(stored[at(i + offset)], sum, 2e-6) << count << " " << i;
      }
    }
}

// The enhancer's walk is held to its formulas elsewhere, on the level that is chosen.
TEST_P(Lines, TheEnhancersWalkIsThatOfTheLowestLevel)
{
  const std::vector<float> frac = noise(longest, 20), curve = noise(longest, 21);
  for (int count = 1; count <= longest; ++count)
  {
    const std::vector<float> source = noise(at((count + 1) * rgba), 22);
    std::vector<float> expected(at(count * rgba + 1), -9.0f), actual = expected;
    lineFunctions(CpuLevel::v2).enhanceRow(source.data(), frac.data(), curve.data(), count, expected.data());
    lines.enhanceRow(source.data(), frac.data(), curve.data(), count, actual.data());
    for (std::size_t i = 0; i < actual.size(); ++i)
      ASSERT_NEAR(actual[i], expected[i], 2e-6) << count << " " << i;
    ASSERT_EQ(actual.back(), -9.0f);
  }
}

INSTANTIATE_TEST_SUITE_P(EveryLevel, Lines, testing::Values(CpuLevel::v2, CpuLevel::v3, CpuLevel::v4),
                         [](const auto& level) { return "v" + std::to_string(static_cast<int>(level.param)); });

}  // namespace
}  // namespace morvellan::test
