// Small arithmetic on colours that the film routines share.
#pragma once

#include "colour/film_space.h"
#include "colour/log_c4.h"
#include "colour/working_spaces.h"
#include "device/math.h"
#include "device/pixels.h"

namespace morvellan::MORVELLAN_TARGET
{

// To the linear range that ARRI LogC4 holds; NaN becomes 0.
MORVELLAN_INLINE Real clampFilm(Real x)
{
  return clamp(x, Real(0.0f), Real(logC4Largest));
}

MORVELLAN_INLINE Rgb clampFilm(Rgb c)
{
  return {clampFilm(c.r), clampFilm(c.g), clampFilm(c.b)};
}

MORVELLAN_INLINE Rgb select(Mask m, Rgb a, Rgb b)
{
  return {select(m, a.r, b.r), select(m, a.g, b.g), select(m, a.b, b.b)};
}

MORVELLAN_INLINE Rgb scaled(Rgb c, Real by)
{
  return {by * c.r, by * c.g, by * c.b};
}

// Of three channels; a number wins over a NaN.
MORVELLAN_INLINE Real largest(Rgb c)
{
  return maxNumber(maxNumber(c.r, c.g), c.b);
}

MORVELLAN_INLINE Real smallest(Rgb c)
{
  return minNumber(minNumber(c.r, c.g), c.b);
}

MORVELLAN_INLINE Real averageOf(Rgb c)
{
  return (c.b + (c.r + c.g)) * Real(1.0f / 3.0f);
}

MORVELLAN_INLINE Rgb positive(Rgb c)
{
  const Real zero(0.0f);
  return {max(c.r, zero), max(c.g, zero), max(c.b, zero)};
}

// The working log of film colour, of linear values at or above 0.
MORVELLAN_INLINE Rgb filmEncode(Rgb c)
{
  const Rgb p = positive(c);
  return {logC4EncodeCurve(p.r), logC4EncodeCurve(p.g), logC4EncodeCurve(p.b)};
}

// The lowest code value that the film's density and its decode admit: just above that of no light, 0.092864126.
inline constexpr float filmBlackCode = 0.0929000005f;

// Back to linear, of code values bounded below.
MORVELLAN_INLINE Real filmDecodeOpen(Real v)
{
  return logC4DecodeCurve(max(v, Real(filmBlackCode)));
}

MORVELLAN_INLINE Rgb filmDecodeOpen(Rgb v)
{
  return {filmDecodeOpen(v.r), filmDecodeOpen(v.g), filmDecodeOpen(v.b)};
}

// The same, and what is above 1 decodes as 1.
MORVELLAN_INLINE Rgb filmDecode(Rgb v)
{
  const Real one(1.0f);
  return filmDecodeOpen(Rgb{min(v.r, one), min(v.g, one), min(v.b, one)});
}

// Range compression of linear film colour by its luminance, as grain wants it, and back.
MORVELLAN_INLINE Rgb compressFilm(Rgb c)
{
  constexpr Row3 luminance = awg4Luminance;
  return compressRange(luminance, c);
}

MORVELLAN_INLINE Rgb expandFilm(Rgb c)
{
  constexpr Row3 luminance = awg4Luminance;
  return expandRange(luminance, c);
}

}  // namespace morvellan::MORVELLAN_TARGET
