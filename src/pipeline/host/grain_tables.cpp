// Building and sharing of the grain tables.
#include "pipeline/host/grain_tables.h"

#include "pipeline/host/grain_mode.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <limits>

#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>

namespace morvellan
{
namespace
{

constexpr float pi = 3.14159274f;

// ln(x) for 0 and for positive normal x, exact to about 2^-50 before the one rounding. No branch and no table, so that
// the loops over it become vector code.
inline float naturalLog(float x)
{
  // x = 2^exponent * mantissa with the mantissa between sqrt(1/2) and sqrt(2).
  constexpr std::int32_t sqrtHalf = 0x3F3504F3;
  constexpr std::int32_t one = 0x3F800000;
  const auto bits = std::bit_cast<std::int32_t>(x);
  const std::int32_t exponent = (bits - sqrtHalf) >> 23;
  const auto mantissa = static_cast<double>(std::bit_cast<float>(bits - exponent * (1 << 23)));
  static_assert(one - sqrtHalf < (1 << 23));

  // ln(m) = 2 artanh(s), s = (m - 1) / (m + 1), |s| < 0.172.
  const double s = (mantissa - 1.0) / (mantissa + 1.0);
  const double z = s * s;
  double series = 1.0 / 19.0;
  for (int denominator = 17; denominator >= 1; denominator -= 2)
    series = series * z + 1.0 / denominator;
  constexpr double ln2 = 0.69314718055994530942;
  const auto value = static_cast<float>(exponent * ln2 + 2.0 * s * series);
  return x > 0.0f ? value : -std::numeric_limits<float>::infinity();
}

// e^-x for x >= 0, infinity included, exact to about 2^-46 before the one rounding.
inline float exponentialOfMinus(float x)
{
  constexpr double log2e = 1.44269504088896340736;
  constexpr double ln2 = 0.69314718055994530942;
  constexpr double beyondFloat = 200.0;
  constexpr double roundingShift = 0x1.8p52;  // added to a small number, its low mantissa bits hold the nearest integer
  const double y = -(x < beyondFloat ? static_cast<double>(x) : beyondFloat);
  const double shifted = y * log2e + roundingShift;
  const double r = y - (shifted - roundingShift) * ln2;
  double series = 1.0;
  for (int n = 12; n >= 1; --n)
    series = series * (r / n) + 1.0;
  const double power = std::bit_cast<double>((std::bit_cast<std::uint64_t>(shifted) + 1023u) << 52);
  return static_cast<float>(series * power);
}

float scaleOf(const GrainTableShape& shape)
{
  const float radiusSquared = shape.radius * shape.radius;
  const float cellSquared = shape.cell * shape.cell;
  return shape.sigma == 0.0f ? cellSquared / (pi * radiusSquared)
                             : cellSquared / (pi * (shape.sigma * shape.sigma + radiusSquared));
}

}  // namespace

void buildGrainTable(const GrainTableShape& shape, std::span<float> lambda, std::span<float> exp)
{
  const float scale = scaleOf(shape);
  const float step = 1.0f / (static_cast<float>(shape.levels) + 0.1f);
  constexpr int grain = 4096;
  tbb::parallel_for(tbb::blocked_range<int>(0, shape.levels + 1, grain),
                    [=](const tbb::blocked_range<int>& range)
                    {
                      float* const intensities = lambda.data();
                      float* const chances = exp.data();
                      for (int i = range.begin(); i < range.end(); ++i)
                      {
                        const float u = 1.0f - static_cast<float>(i) * step;
                        // The added 0 makes the first entry a positive zero.
                        intensities[i] = naturalLog(u) * -scale + 0.0f;
                        chances[i] = exponentialOfMinus(intensities[i]);
                      }
                    });
}

GrainTables::GrainTables(const std::array<Storage, 3>& storage)
{
  for (std::size_t channel = 0; channel < slots.size(); ++channel)
    slots[channel].storage = storage[channel];
}

// A channel may stand on the slots before its own: no later channel of the frame rebuilds those.
const GrainTables::Storage& GrainTables::tableFor(const GrainTableShape& shape, std::size_t channel)
{
  const auto end = slots.begin() + static_cast<std::ptrdiff_t>(channel) + 1;
  const auto ready = std::find_if(slots.begin(), end, [&](const Slot& slot) { return slot.built == shape; });
  if (ready != end)
    return ready->storage;
  Slot& own = slots[channel];
  buildGrainTable(shape, own.storage.lambda, own.storage.exp);
  own.built = shape;
  return own.storage;
}

void GrainTables::update(FrameParams& params)
{
  if (isLuminanceGrain(params.grainMode))
  {
    if (params.grainChannelCount == 0)
      return;
    const Storage& table = tableFor({params.lumaRadius, params.lumaCell, params.lumaSigma, params.grainLevels}, 0);
    params.redLambda = table.lambda.data();
    params.redExp = table.exp.data();
    return;
  }
  const float** const lambdas[] = {&params.redLambda, &params.greenLambda, &params.blueLambda};
  const float** const exps[] = {&params.redExp, &params.greenExp, &params.blueExp};
  for (std::size_t channel = 0; channel < slots.size(); ++channel)
  {
    if (!params.grainChannelOn[channel])
      continue;
    const GrainTableShape shape = {params.grainRadius[channel], params.grainCell[channel], params.grainSigma[channel],
                                   params.grainLevels};
    const Storage& table = tableFor(shape, channel);
    *lambdas[channel] = table.lambda.data();
    *exps[channel] = table.exp.data();
  }
}

}  // namespace morvellan
