// Angles and colours of the hue swatches.
// The host's point sample may hold any numbers, so a hue that is no number counts as that of grey.
#include "params/hue_swatches.h"

#include "params/edit.h"
#include "params/families.h"

#include <algorithm>
#include <cmath>

namespace morvellan::params
{
namespace
{
std::vector<HueSwatch> makeSwatches()
{
  std::vector<HueSwatch> made;
  made.reserve(axes.size() + refineWords.size());
  for (const Axis& axis : axes)
    made.push_back({joined(axis.shortWord, "Swatch"), {joined(axis.word, "CustomHue")}});
  for (const std::string_view word : refineWords)
  {
    HueSwatch swatch{joined("Refine", word, "Swatch"), {}};
    for (const Axis& axis : axes)
      swatch.centres.push_back(joined("Refine", word, axis.shortWord, "Hue"));
    made.push_back(std::move(swatch));
  }
  return made;
}

// 0 to 1.
double hueOf(const Rgb& colour)
{
  const auto [r, g, b] = colour;
  const double most = std::max({r, g, b});
  const double spread = most - std::min({r, g, b});
  if (spread == 0.0)
    return 0.0;
  const double sixths = r == most ? (g - b) / spread : g == most ? (b - r) / spread + 2.0 : (r - g) / spread + 4.0;
  const double hue = sixths / 6.0;
  if (!std::isfinite(hue))
    return 0.0;
  return hue < 0.0 ? hue + 1.0 : hue;
}
}  // namespace

std::span<const HueSwatch> hueSwatches()
{
  static const std::vector<HueSwatch> all = makeSwatches();
  return all;
}

double degreesOf(const Rgb& colour)
{
  const double degrees = (4.0 / 3.0 - hueOf(colour)) * 360.0;
  return degrees > 360.0 ? static_cast<double>(static_cast<int>(degrees) % 360) : degrees;
}

Rgb colourOf(double degrees)
{
  constexpr double saturation = 0.75;
  constexpr double value = 0.75;
  const double sixths = (480.0 - degrees) / 360.0 * 6.0;
  const double sector = std::floor(sixths);
  const double fraction = sixths - sector;
  const double low = value * (1.0 - saturation);
  const double falling = value * (1.0 - saturation * fraction);
  const double rising = value * (1.0 - saturation * (1.0 - fraction));
  switch (static_cast<int>(sector) % 6)
  {
  case 0:
    return {value, rising, low};
  case 1:
    return {falling, value, low};
  case 2:
    return {low, value, rising};
  case 3:
    return {low, falling, value};
  case 4:
    return {rising, low, value};
  default:
    return {value, low, falling};
  }
}

void hueSwatchChanged(ParamAccess& access, const HueSwatch& swatch)
{
  const double degrees = degreesOf(access.rgb(swatch.name));
  for (const std::string& centre : swatch.centres)
    writeDerived(access, centre, degrees);
}

void hueCentreChanged(ParamAccess& access, const HueSwatch& swatch, std::string_view centre)
{
  writeDerivedRgb(access, swatch.name, colourOf(access.number(centre)));
}
}  // namespace morvellan::params
