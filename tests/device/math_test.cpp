// Error bounds of the lane functions, over every exponent and densely where it matters.
#include "device/math.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "device/launch.h"
#include "device/memory.h"
#include "tests/support/engine_test.h"

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

enum class Function
{
  Log2,
  Exp2,
  Pow,
  Cos,
  Cbrt,
  Log2Positive,
  Exp2NotPositive,
  PlainLog2,
  PlainExp2,
  PlainCos,
  PlainLog2Positive,
  InverseFifthRoot,
  MaxNumber,
  MinNumber,
  Pick,
};

struct apply_function
{
  const float* x;
  const float* y;
  float* result;
  Function function;

  MORVELLAN_KERNEL void operator()(Pixels at) const
  {
    const Real a = loadPlane(x, at);
    const Real b = loadPlane(y, at);
    Real r = a;
    switch (function)
    {
    case Function::Log2:
      r = fast_log2(a);
      break;
    case Function::Exp2:
      r = fast_exp2(a);
      break;
    case Function::Pow:
      r = fast_pow(a, b);
      break;
    case Function::Cos:
      r = fast_cos(a);
      break;
    case Function::Cbrt:
      r = plain_cbrt(a);
      break;
    case Function::Log2Positive:
      r = log2Positive(a);
      break;
    case Function::Exp2NotPositive:
      r = exp2NotPositive(a);
      break;
    case Function::PlainLog2:
      r = plain_log2(a);
      break;
    case Function::PlainExp2:
      r = plain_exp2(a);
      break;
    case Function::PlainCos:
      r = plain_cos(a);
      break;
    case Function::PlainLog2Positive:
      r = plain_log2Positive(a);
      break;
    case Function::InverseFifthRoot:
      r = inverseFifthRoot(a);
      break;
    case Function::MaxNumber:
      r = maxNumber(a, b);
      break;
    case Function::MinNumber:
      r = minNumber(a, b);
      break;
    case Function::Pick:
      static constexpr float primes[8] = {2.0f, 3.0f, 5.0f, 7.0f, 11.0f, 13.0f, 17.0f, 19.0f};
      r = pick(primes, toInt(a));
      break;
    }
    storePlane(result, at, r);
  }
};

std::vector<float> run(Function function, const std::vector<float>& x, const std::vector<float>& y)
{
  const Buffer<float> a(x.size()), b(x.size()), r(x.size());
  copy(a.data(), x.data(), x.size() * 4, CopyKind::HostToDevice);
  copy(b.data(), y.data(), y.size() * 4, CopyKind::HostToDevice);
  launch(Queue{}, pixels(static_cast<int>(x.size()), 1),
         apply_function{.x = a.data(), .y = b.data(), .result = r.data(), .function = function});
  std::vector<float> result(x.size());
  copy(result.data(), r.data(), x.size() * 4, CopyKind::DeviceToHost);
  return result;
}

std::vector<float> run(Function function, const std::vector<float>& x)
{
  return run(function, x, x);
}

// 4096 values in each binade of the positive normal numbers.
std::vector<float> everyExponent()
{
  std::vector<float> x;
  std::mt19937 random(7);
  for (int e = -126; e < 128; ++e)
    for (int i = 0; i < 4096; ++i)
      x.push_back(std::ldexp(1.0f + static_cast<float>(random() >> 9) / 8388608.0f, e));
  return x;
}

double relativeErrorOfExp2(Function function, const std::vector<float>& x)
{
  const std::vector<float> r = run(function, x);
  double relative = 0.0;
  for (size_t i = 0; i < x.size(); ++i)
  {
    const double exact = std::exp2(static_cast<double>(x[i]));
    relative = std::max(relative, std::fabs(static_cast<double>(r[i]) - exact) / exact);
  }
  return relative;
}

constexpr bool isCuda = std::string_view(MORVELLAN_TARGET_NAME) == "cuda";
constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float nan = std::numeric_limits<float>::quiet_NaN();

}  // namespace

ENGINE_TEST(Math, Log2OverEveryExponent)
{
  std::vector<float> x = everyExponent();
  for (int i = 1; i < 200000; ++i)
    x.push_back(0.5f + static_cast<float>(i) / 133333.0f);
  for (const Function function : {Function::Log2, Function::PlainLog2})
  {
    const bool hardware = isCuda && function == Function::Log2;
    const std::vector<float> r = run(function, x);
    double absolute = 0.0, relative = 0.0;
    for (size_t i = 0; i < x.size(); ++i)
    {
      const double exact = std::log2(static_cast<double>(x[i]));
      const double error = std::fabs(static_cast<double>(r[i]) - exact);
      absolute = std::max(absolute, error / std::max(1.0, std::fabs(exact)));
      if (exact != 0.0)
        relative = std::max(relative, error / std::fabs(exact));
    }
    EXPECT_LE(absolute, std::ldexp(1.0, hardware ? -21 : -23));
    EXPECT_LE(relative, hardware ? 1.0 : 2.5e-7);
  }
}

ENGINE_TEST(Math, Log2OfWhatIsNotPositive)
{
  for (const Function function : {Function::Log2, Function::PlainLog2})
  {
    const std::vector<float> r = run(function, {0.0f, -0.0f, -1.0f, infinity, nan, 1.0f});
    EXPECT_EQ(r[0], -infinity);
    EXPECT_EQ(r[1], -infinity);
    EXPECT_TRUE(std::isnan(r[2]));
    EXPECT_EQ(r[3], infinity);
    EXPECT_TRUE(std::isnan(r[4]));
    EXPECT_EQ(r[5], 0.0f);
  }
}

ENGINE_TEST(Math, Exp2OverItsRange)
{
  std::vector<float> x;
  for (int i = 0; i <= 2000000; ++i)
    x.push_back(-126.0f + 253.49f * static_cast<float>(i) / 2000000.0f);
  for (const Function function : {Function::Exp2, Function::PlainExp2})
  {
    EXPECT_LE(relativeErrorOfExp2(function, x), 2.5e-7);
    const std::vector<float> edges = run(function, {-200.0f, -infinity, 128.0f, infinity, nan, 0.0f, 1.0f, -1.0f});
    EXPECT_EQ(edges[0], 0.0f);
    EXPECT_EQ(edges[1], 0.0f);
    EXPECT_EQ(edges[2], infinity);
    EXPECT_EQ(edges[3], infinity);
    EXPECT_TRUE(std::isnan(edges[4]));
    EXPECT_EQ(edges[5], 1.0f);
    EXPECT_EQ(edges[6], 2.0f);
    EXPECT_EQ(edges[7], 0.5f);
  }
}

ENGINE_TEST(Math, LogarithmAndExponentialOfTheUnitRange)
{
  const std::vector<float> x = everyExponent();
  EXPECT_EQ(run(Function::Log2Positive, x), run(Function::Log2, x));
  EXPECT_EQ(run(Function::Log2Positive, {0.0f})[0], -infinity);
  EXPECT_EQ(run(Function::PlainLog2Positive, x), run(Function::PlainLog2, x));
  EXPECT_EQ(run(Function::PlainLog2Positive, {0.0f})[0], -infinity);

  std::vector<float> y;
  for (int i = 0; i <= 1000000; ++i)
    y.push_back(-126.0f * static_cast<float>(i) / 1000000.0f);
  EXPECT_LE(relativeErrorOfExp2(Function::Exp2NotPositive, y), 2.5e-7);
  const std::vector<float> edges = run(Function::Exp2NotPositive, {0.0f, -0.0f, -127.0f, -200.0f, -infinity, nan});
  EXPECT_EQ(edges, (std::vector<float>{1.0f, 1.0f, 0.0f, 0.0f, 0.0f, 0.0f}));
}

ENGINE_TEST(Math, PowKeepsItsRelativeError)
{
  std::vector<float> x, y;
  std::mt19937 random(11);
  std::uniform_real_distribution<float> exponent(-12.0f, 12.0f), logBase(-8.0f, 6.0f);
  for (int i = 0; i < 500000; ++i)
  {
    x.push_back(std::exp2(logBase(random)));
    y.push_back(exponent(random));
  }
  const std::vector<float> r = run(Function::Pow, x, y);
  for (size_t i = 0; i < x.size(); ++i)
  {
    const double exact = std::pow(static_cast<double>(x[i]), static_cast<double>(y[i]));
    const double bound = 5e-7 * std::max(1.0, std::fabs(static_cast<double>(y[i])) / 8.0);
    ASSERT_LE(std::fabs(static_cast<double>(r[i]) - exact) / exact, isCuda ? 4 * bound : bound) << x[i] << " " << y[i];
  }
  const std::vector<float> edges = run(Function::Pow, {0.0f, 1.0f, -1.0f, infinity}, {2.4f, 78.84f, 0.5f, 2.0f});
  EXPECT_EQ(edges[0], 0.0f);
  EXPECT_EQ(edges[1], 1.0f);
  EXPECT_TRUE(std::isnan(edges[2]));
  EXPECT_EQ(edges[3], infinity);
}

ENGINE_TEST(Math, CosAndCubeRoot)
{
  std::vector<float> x;
  for (int i = -400000; i <= 400000; ++i)
    x.push_back(static_cast<float>(i) * 0.02048f);
  for (const Function function : {Function::Cos, Function::PlainCos})
  {
    const double bound = isCuda && function == Function::Cos ? 2e-3 : 3e-7;
    const std::vector<float> c = run(function, x);
    for (size_t i = 0; i < x.size(); ++i)
      ASSERT_NEAR(c[i], std::cos(static_cast<double>(x[i])), bound) << x[i];
  }

  std::vector<float> positive = everyExponent();
  const size_t half = positive.size();
  for (size_t i = 0; i < half; ++i)
    positive.push_back(-positive[i]);
  const std::vector<float> r = run(Function::Cbrt, positive);
  for (size_t i = 0; i < positive.size(); ++i)
  {
    const double exact = std::cbrt(static_cast<double>(positive[i]));
    ASSERT_LE(std::fabs((static_cast<double>(r[i]) - exact) / exact), 3e-7) << positive[i];
  }
  EXPECT_EQ(run(Function::Cbrt, {0.0f})[0], 0.0f);
}

ENGINE_TEST(Math, InverseFifthRootOverEveryExponent)
{
  const std::vector<float> x = everyExponent();
  const std::vector<float> r = run(Function::InverseFifthRoot, x);
  for (size_t i = 0; i < x.size(); ++i)
    ASSERT_NEAR(r[i] * std::pow(static_cast<double>(x[i]), 0.2), 1.0, 2.5e-7) << x[i];
  EXPECT_TRUE(std::isfinite(run(Function::InverseFifthRoot, {0.0f})[0]));
}

ENGINE_TEST(Math, ANumberWinsOverWhatIsNone)
{
  const std::vector<float> a{1.0f, nan, 3.0f, -infinity, nan, -2.0f}, b{2.0f, 5.0f, nan, nan, nan, -1.0f};
  const std::vector<float> larger = run(Function::MaxNumber, a, b), smaller = run(Function::MinNumber, a, b);
  const std::vector<float> expectedLarger{2.0f, 5.0f, 3.0f, -infinity, nan, -1.0f};
  const std::vector<float> expectedSmaller{1.0f, 5.0f, 3.0f, -infinity, nan, -2.0f};
  for (size_t i = 0; i < a.size(); ++i)
  {
    EXPECT_TRUE(larger[i] == expectedLarger[i] || (i == 4 && std::isnan(larger[i]))) << i;
    EXPECT_TRUE(smaller[i] == expectedSmaller[i] || (i == 4 && std::isnan(smaller[i]))) << i;
  }
}

ENGINE_TEST(Math, PickTakesTheLowestThreeBits)
{
  EXPECT_EQ(run(Function::Pick, {0, 1, 2, 3, 4, 5, 6, 7, 8, 13, -1, 1024}),
            (std::vector<float>{2, 3, 5, 7, 11, 13, 17, 19, 2, 13, 19, 2}));
}

PARITY(plain_functions, morvellan::parity::sameBits)
{
  std::vector<float> all;
  const std::vector<float> x = everyExponent();
  std::vector<float> y;
  for (int i = 0; i <= 500000; ++i)
    y.push_back(-140.0f + 280.0f * static_cast<float>(i) / 500000.0f);
  const std::vector<float> notPositive(y.begin(), y.begin() + 250000);
  std::vector<float> angles;
  for (int i = 0; i < 10000; ++i)
    angles.push_back(static_cast<float>(i) * 1.6f - 8000.0f);
  for (const std::vector<float>& r : {run(Function::PlainLog2, x), run(Function::PlainExp2, y), run(Function::Cbrt, x),
                                      run(Function::PlainLog2Positive, x), run(Function::PlainCos, angles),
                                      run(Function::Exp2NotPositive, notPositive), run(Function::InverseFifthRoot, x)})
    all.insert(all.end(), r.begin(), r.end());
  return all;
}

// An exponential magnifies the last bit of its argument by up to 128 ln 2.
PARITY(log_and_exp, .relative = 8e-6f, .absolute = 1e-7f)
{
  const std::vector<float> x = everyExponent();
  std::vector<float> r = run(Function::Log2, x);
  const std::vector<float> e = run(Function::Exp2, r);
  r.insert(r.end(), e.begin(), e.end());
  return r;
}

}  // namespace morvellan::MORVELLAN_TARGET
