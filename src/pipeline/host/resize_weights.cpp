// Weights of the resampling filter.
#include "pipeline/host/resize_weights.h"

#include "pipeline/host/lines.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <numeric>

namespace morvellan
{

double lanczos3(double x)
{
  constexpr double lobes = 3.0;
  if (x == 0.0)
    return 1.0;
  // The zeros are exact, so that a picture resampled to its own size is not touched by its neighbours' values.
  if (std::abs(x) >= lobes || x == std::floor(x))
    return 0.0;
  const double angle = std::numbers::pi * x;
  return lobes * std::sin(angle) * std::sin(angle / lobes) / (angle * angle);
}

namespace
{

// Appends the weights of a target sample that stands `fraction` of the way from the third tap to the fourth.
void appendWeights(double fraction, int copies, std::vector<float>& weights)
{
  constexpr int tapsBefore = filterTaps / 2 - 1;
  std::array<double, filterTaps> lanczos{};
  for (int tap = 0; tap < filterTaps; ++tap)
    lanczos[static_cast<std::size_t>(tap)] = lanczos3(fraction + tapsBefore - tap);
  const double sum = std::accumulate(lanczos.begin(), lanczos.end(), 0.0);
  for (const double weight : lanczos)
    weights.insert(weights.end(), static_cast<std::size_t>(copies), static_cast<float>(weight / sum));
}

}  // namespace

// A target sample stands at ((2 i + 1) * source - target) / (2 * target), which is worked out in whole numbers.
FilterAxis filterAxis(int sourceSize, int targetSize, int copies)
{
  FilterAxis axis;
  axis.first.reserve(static_cast<std::size_t>(targetSize));
  axis.phase.reserve(static_cast<std::size_t>(targetSize));
  const int phases = targetSize / std::gcd(sourceSize, targetSize);
  const std::int64_t denominator = 2 * static_cast<std::int64_t>(targetSize);
  for (int i = 0; i < targetSize; ++i)
  {
    const std::int64_t numerator = (2 * static_cast<std::int64_t>(i) + 1) * sourceSize - targetSize;
    const std::int64_t below =
        (numerator + denominator) / denominator - 1;  // floor; the numerator is above -denominator
    axis.first.push_back(static_cast<int>(below) - (filterTaps / 2 - 1));
    axis.phase.push_back(i % phases * filterTaps * copies);
    if (i < phases)
      appendWeights(static_cast<double>(numerator - below * denominator) / static_cast<double>(denominator), copies,
                    axis.weights);
  }
  return axis;
}

}  // namespace morvellan
