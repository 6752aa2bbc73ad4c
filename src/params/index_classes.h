// The classes of choice indices that rules branch on, each stated once.
// A render keeps lists of its own, which are shorter; these are the page's.
#pragma once

#include <algorithm>
#include <array>

namespace morvellan::params
{
// InputGamut: scene-linear encodings.
inline constexpr std::array linearInputs{0, 4, 5, 30};

// InputGamut: gamma encodings, for which print and display are barred.
inline constexpr std::array gammaInputs{1, 8, 27, 29, 31, 32, 33, 34, 42, 43, 44, 46};

// OutputDisplayGamut: displays whose brightness the user may set.
inline constexpr std::array hdrDisplays{6, 7, 8, 10, 12, 14};

constexpr bool isLinearInput(int gamut)
{
  return std::ranges::find(linearInputs, gamut) != linearInputs.end();
}
constexpr bool isGammaInput(int gamut)
{
  return std::ranges::find(gammaInputs, gamut) != gammaInputs.end();
}
constexpr bool isHdrDisplay(int display)
{
  return std::ranges::find(hdrDisplays, display) != hdrDisplays.end();
}

// PrintPeakBrightness that a display starts from, in units of 1000 nits.
inline constexpr double hdrPeakBrightness = 0.203;
inline constexpr double sdrPeakBrightness = 0.1;
}  // namespace morvellan::params
