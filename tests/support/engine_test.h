// Tests of engine code, compiled once per target. ENGINE_TEST names the target in the suite; PARITY registers an output
// that every target must agree on with cpu_v2.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "device/target.h"

namespace morvellan::parity
{

struct Tolerance
{
  float relative = 2e-6f;
  float absolute = 1e-7f;
  // How many values may differ by more, as a share of all of them.
  double outliers = 0.0;
};

// What is worked out in plain products and sums: every CPU target has the same bits. CUDA keeps the common bounds.
#ifdef MORVELLAN_TARGET_IS_CUDA
inline constexpr Tolerance sameBits{};
#else
inline constexpr Tolerance sameBits{.relative = 0.0f, .absolute = 0.0f};
#endif

struct Case
{
  std::string target, name;
  Tolerance tolerance;
  std::function<std::vector<float>()> run;
};

std::vector<Case>& cases();

inline int add(Case c)
{
  cases().push_back(std::move(c));
  return 0;
}

}  // namespace morvellan::parity

#define MORVELLAN_JOIN2(a, b) a##_##b
#define MORVELLAN_JOIN(a, b) MORVELLAN_JOIN2(a, b)
#define ENGINE_TEST(suite, name) TEST(MORVELLAN_JOIN(MORVELLAN_TARGET, suite), name)

// PARITY(name, tolerance) { return values; }
#define PARITY(name, ...)                                                                                              \
  static std::vector<float> parity_run_##name();                                                                       \
  [[maybe_unused]] static const int parity_added_##name = morvellan::parity::add(                                      \
      {MORVELLAN_TARGET_NAME, #name, morvellan::parity::Tolerance{__VA_ARGS__}, parity_run_##name});                   \
  static std::vector<float> parity_run_##name()
