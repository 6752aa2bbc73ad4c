// Hue swatches: a colour that stands for an angle, and the custom centres that hold the angle in degrees.
// The conversion is the hexcone model's (Smith, "Color gamut transform pairs", 1978) with the angle running backwards.
#pragma once

#include "params/param_access.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace morvellan::params
{
// A swatch and the centres that it sets; each centre sets the swatch.
struct HueSwatch
{
  std::string name;
  std::vector<std::string> centres;
};

// The four attributes' (one centre each) and the eleven vectors' (four centres each).
std::span<const HueSwatch> hueSwatches();

// Degrees, 0 to 360, of a sampled colour; grey gives 120.
double degreesOf(const Rgb& colour);

// The colour that stands for an angle: hue (480 - degrees) / 360, saturation and value 0.75.
Rgb colourOf(double degrees);

// The rules of a user's edit.
void hueSwatchChanged(ParamAccess& access, const HueSwatch& swatch);
void hueCentreChanged(ParamAccess& access, const HueSwatch& swatch, std::string_view centre);
}  // namespace morvellan::params
