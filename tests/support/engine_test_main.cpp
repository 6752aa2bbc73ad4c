// The main of every engine test binary: runs the suites of the target that it is named after, then parity with cpu_v2.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>

#include <gtest/gtest.h>

#define MORVELLAN_TARGET cpu_v2
#include "tests/support/engine_test.h"

namespace morvellan::parity
{

std::vector<Case>& cases()
{
  static std::vector<Case> all;
  return all;
}

namespace
{

class ParityTest : public ::testing::Test
{
public:
  ParityTest(const Case& reference, const Case& other) : reference(reference), other(other) {}

  void TestBody() override
  {
    const std::vector<float> expected = reference.run();
    const std::vector<float> actual = other.run();
    ASSERT_FALSE(expected.empty());
    ASSERT_EQ(expected.size(), actual.size());
    size_t wrong = 0;
    size_t first = 0;
    for (size_t i = 0; i < expected.size(); ++i)
    {
      const float e = expected[i];
      const float a = actual[i];
      const bool same = (std::isnan(e) && std::isnan(a)) || e == a ||
                        std::fabs(e - a) <= std::fabs(e) * other.tolerance.relative + other.tolerance.absolute;
      if (!same && wrong++ == 0)
        first = i;
    }
    EXPECT_LE(static_cast<double>(wrong), other.tolerance.outliers * static_cast<double>(expected.size()))
        << wrong << " of " << expected.size() << " values differ, the first at " << first << ": " << expected[first]
        << " on cpu_v2, " << actual[first] << " on " << other.target;
  }

private:
  Case reference, other;
};

void registerAll(const std::string& target)
{
  for (const Case& other : cases())
  {
    if (other.target != target)
      continue;
    for (const Case& reference : cases())
      if (reference.target == "cpu_v2" && reference.name == other.name)
        ::testing::RegisterTest(("Parity_" + target).c_str(), other.name.c_str(), nullptr, nullptr, __FILE__, __LINE__,
                                [reference, other]() -> ::testing::Test* { return new ParityTest(reference, other); });
  }
}

}  // namespace

}  // namespace morvellan::parity

int main(int argc, char** argv)
{
  std::string self = argv[0];
  const std::string marker = "test_engine_";
  const std::string target = self.substr(self.rfind(marker) + marker.size());
  if (target != "cpu_v2")
    morvellan::parity::registerAll(target);
  ::testing::InitGoogleTest(&argc, argv);
  std::string& filter = ::testing::GTEST_FLAG(filter);
  const std::string chosen = filter.substr(0, filter.find('-'));  // behind the dash stands what is left out
  if (chosen.empty() || chosen == "*")
    filter.replace(0, chosen.size(), target + "_*:Parity_*");
  const int result = RUN_ALL_TESTS();
  if (::testing::UnitTest::GetInstance()->test_to_run_count() == 0)
  {
    std::fprintf(stderr, "no test of %s matches the filter\n", target.c_str());
    return 1;
  }
  return result;
}
