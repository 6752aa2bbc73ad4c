// The dispersion patterns of grain, by the index of their choice.
#pragma once

namespace morvellan
{

inline constexpr int grainRandomColor = 0;
inline constexpr int grainRandomMono = 1;
inline constexpr int grainRandomLuminance = 2;
inline constexpr int grainUniformMono = 3;
inline constexpr int grainUniformLuminance = 4;

// One plane of luminance takes the grain in place of the colour channels.
constexpr bool isLuminanceGrain(int mode)
{
  return mode == grainRandomLuminance || mode == grainUniformLuminance;
}

}  // namespace morvellan
