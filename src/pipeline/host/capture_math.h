// Small conversions that every part of the capture uses. Derivations run in double; only the stored field is narrowed.
#pragma once

#include "pipeline/host/parameter_names.h"
#include "pipeline/host/parameter_values.h"

#include <cmath>
#include <limits>

namespace morvellan
{

// The larger of the two; a NaN becomes the lower bound.
constexpr double atLeast(double value, double lowerBound)
{
  return value > lowerBound ? value : lowerBound;
}

constexpr float narrow(double value)
{
  return static_cast<float>(value);
}

// The integer part, held to the range of int; a NaN gives 0.
constexpr int integerPart(double value)
{
  constexpr double highest = std::numeric_limits<int>::max();
  constexpr double lowest = std::numeric_limits<int>::min();
  if (value != value)
    return 0;
  return value >= highest  ? std::numeric_limits<int>::max()
         : value <= lowest ? std::numeric_limits<int>::min()
                           : static_cast<int>(value);
}

inline int integer(const ParameterValues& values, std::string_view name)
{
  return integerPart(values.number(name));
}

// field[c] = parameter * scale + offset, for red, green and blue.
inline void readChannels(const ParameterValues& values, const ChannelNames& names, float (&field)[3],
                         double scale = 1.0, double offset = 0.0)
{
  for (std::size_t channel = 0; channel < names.size(); ++channel)
    field[channel] = narrow(values.number(names[channel]) * scale + offset);
}

}  // namespace morvellan
