// Derivations of casts, tone curves and pivoted powers.
#include "pipeline/host/capture_tone.h"

#include "pipeline/host/capture_math.h"

#include <bit>
#include <cstdint>

namespace morvellan
{
namespace
{

// Pivots of a curve whose three amounts are 0, to the bit: about 0.391007 and 0.488759.
constexpr float idleShadowPivot = std::bit_cast<float>(std::uint32_t{0x3EC8320D});
constexpr float idleHighlightPivot = std::bit_cast<float>(std::uint32_t{0x3EFA3E90});

bool allZero(const ParameterValues& values, const ChannelNames& names)
{
  return values.number(names[0]) == 0.0 && values.number(names[1]) == 0.0 && values.number(names[2]) == 0.0;
}

}  // namespace

Cast castOf(int kelvin)
{
  constexpr int neutral = 6504;
  if (kelvin == neutral)
    return {.row = neutral, .active = false};
  return {.row = integerPart((static_cast<double>(kelvin) - 4.0) * 0.01 + 1.0), .active = true};
}

void captureTone(const ParameterValues& values, const ToneNames& names, ToneFields fields)
{
  fields.shadowPivot = allZero(values, names.shadow)
                           ? idleShadowPivot
                           : narrow(atLeast(values.number(names.shadowPivot) - 0.108993157, 0.001));
  readChannels(values, names.shadow, fields.shadow);
  readChannels(values, names.midtone, fields.midtone);
  fields.highlightPivot = allZero(values, names.highlight)
                              ? idleHighlightPivot
                              : narrow(atLeast(values.number(names.highlightPivot) - 0.011241447, 0.0));
  readChannels(values, names.highlight, fields.highlight);
}

void captureGamma(const ParameterValues& values, std::string_view pivotName, const ChannelNames& gammaNames,
                  GammaFields fields)
{
  fields.pivot = narrow(atLeast(values.number(pivotName), 0.05));
  readChannels(values, gammaNames, fields.gamma, 2.5);
  for (int channel = 0; channel < 3; ++channel)
    fields.scale[channel] = fields.pivot / std::pow(fields.pivot, fields.gamma[channel]);
}

float filmicScale(double pivot)
{
  return narrow(1.0 / (0.72 - (pivot * 0.7 + 0.01)));
}

}  // namespace morvellan
