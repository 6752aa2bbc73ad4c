// Colour cast and tints of a stage: gains by channel that keep the pixel's luminance.
#pragma once

#include "film/colour_math.h"

namespace morvellan::MORVELLAN_TARGET
{

struct CastSettings
{
  bool live = false;
  int row = 6504;             // colour temperature in hundreds of kelvin, once live
  float greenMagenta = 0.0f;  // 0 skips the tint
  float redCyan = 0.0f;
};

// A gain on each channel, before the luminance is restored.
struct ChannelGain
{
  bool on = false;
  float r = 1.0f, g = 1.0f, b = 1.0f;
};

struct Cast
{
  ChannelGain temperature, greenMagenta, redCyan;
};

Cast makeCast(const CastSettings& settings);

// Luminance as casts and tints measure it: the second row of ACES AP1, whatever the pixel's primaries.
MORVELLAN_INLINE Real castLuminance(Rgb c)
{
  constexpr Row3 row{0.272228718f, 0.674081743f, 0.0536895171f};
  return dot(row, c);
}

MORVELLAN_INLINE Rgb applyCast(const Cast& cast, Rgb c)
{
  if (!cast.temperature.on && !cast.greenMagenta.on && !cast.redCyan.on)
    return c;
  const Real luminance = castLuminance(c);
  const auto apply = [&](const ChannelGain& gain, Rgb p)
  {
    const Rgb q{p.r * Real(gain.r), p.g * Real(gain.g), p.b * Real(gain.b)};
    return scaled(q, luminance / castLuminance(q));
  };
  Rgb result = c;
  if (cast.temperature.on)
    result = apply(cast.temperature, result);
  if (cast.greenMagenta.on)
    result = apply(cast.greenMagenta, result);
  if (cast.redCyan.on)
    result = apply(cast.redCyan, result);
  return select(luminance > Real(0.0f), result, c);
}

}  // namespace morvellan::MORVELLAN_TARGET
