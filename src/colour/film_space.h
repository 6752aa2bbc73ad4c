// The way from a clip's encoding into the film working space and back: linear ARRI Wide Gamut 4 with a D65 white.
// A film kernel holds a FilmEntry or FilmExit among its arguments, prepared once per launch on the host.
#pragma once

#include "colour/curve_table.h"
#include "colour/curves.h"
#include "colour/matrix.h"
#include "device/pixels.h"

namespace morvellan::MORVELLAN_TARGET
{

// Luminance (the Y row) of ARRI Wide Gamut 4, its whole matrix to CIE XYZ at D65, and the way back as printed; it is
// the inverse to seven digits.
inline constexpr Row3 awg4Luminance{0.254524171f, 0.781477749f, -0.0360019095f};
inline constexpr Matrix3 awg4ToXyz{
    {0.704858303f, 0.129760295f, 0.115837313f, 0.254524171f, 0.781477749f, -0.0360019095f, 0.0f, 0.0f, 1.0890578f}};
inline constexpr Matrix3 xyzToAwg4{
    {1.50921547f, -0.250597358f, -0.16881147f, -0.491545439f, 1.36124551f, 0.0972829387f, 0.0f, 0.0f, 0.918224931f}};

struct FilmEntry
{
  float highest = 1.0f;  // what a code value, or a linear value, is clamped to before the decode
  Decoding decoding;
  bool hasMatrix = false;
  Matrix3 toFilm = identityMatrix;
};

struct FilmExit
{
  bool hasMatrix = false;
  Matrix3 toInput = identityMatrix;
  Encoding encoding;
};

// For a colourspace index 0 to 48; any other is passed through as it is.
FilmEntry makeFilmEntry(int colourspace);
FilmExit makeFilmExit(int colourspace);

// Code values to linear film colour, in three steps: the source clamped to [0, highest], NaN to 0; decoded; into the
// film gamut. The result is not clamped.
MORVELLAN_INLINE Rgb filmEntryRange(const FilmEntry& entry, Rgb p)
{
  const Real low = Real(0.0f);
  const Real high = Real(entry.highest);
  return {clamp(p.r, low, high), clamp(p.g, low, high), clamp(p.b, low, high)};
}

MORVELLAN_INLINE Rgb filmEntryGamut(const FilmEntry& entry, Rgb p)
{
  return entry.hasMatrix ? multiply(entry.toFilm, p) : p;
}

MORVELLAN_INLINE Rgb filmEntry(const FilmEntry& entry, Rgb p)
{
  return filmEntryGamut(entry, decode(entry.decoding, filmEntryRange(entry, p)));
}

// Linear film colour to the input's gamut and code values, with the clamps and guards of the full table.
MORVELLAN_INLINE Rgb filmExit(const FilmExit& exit, Rgb p)
{
  return encode(exit.encoding, exit.hasMatrix ? multiply(exit.toInput, p) : p);
}

}  // namespace morvellan::MORVELLAN_TARGET
