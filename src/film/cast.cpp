// The gains of a colour temperature: a fit of the blackbody locus in two branches, relative to about 6600 K.
#include "film/cast.h"

#include <algorithm>
#include <cmath>

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

float share(double of255)
{
  return static_cast<float>(std::clamp(of255, 0.0, 255.0) / 255.0);
}

// k is the temperature in hundreds of kelvin: warm casts cut green and blue, cool ones red and green.
ChannelGain temperatureGain(int row)
{
  const double k = row;
  if (row < 66)
    return {.on = true,
            .g = share(std::log(k) * 99.4708023 - 161.119568),
            .b = share(std::log(k - 10.0) * 138.517731 - 305.0448)};
  const double l = std::log2(k - 60.0);
  return {.on = true,
          .r = share(std::exp2(l * -0.133204758) * 329.69873),
          .g = share(std::exp2(l * -0.0755148456) * 288.122162)};
}

}  // namespace

Cast makeCast(const CastSettings& settings)
{
  Cast cast;
  if (settings.live)
    cast.temperature = temperatureGain(settings.row);
  const float magenta = settings.greenMagenta * 0.5f + 1.0f;
  const float cyan = settings.redCyan * 0.5f + 1.0f;
  if (settings.greenMagenta != 0.0f)
    cast.greenMagenta = {.on = true, .r = magenta, .b = magenta};
  if (settings.redCyan != 0.0f)
    cast.redCyan = {.on = true, .g = cyan, .b = cyan};
  return cast;
}

}  // namespace morvellan::MORVELLAN_TARGET
