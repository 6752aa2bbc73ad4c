// What a launch in the film working space needs of an index.
#include "colour/film_space.h"

#include <limits>

#include "colour/gamuts.h"

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

constexpr int logC4Index = 47;

}  // namespace

FilmEntry makeFilmEntry(int colourspace)
{
  FilmEntry entry{.highest = isLinear(colourspace) ? logC4Largest : 1.0f,
                  .decoding = decodingOf(CurveTable::Full, colourspace)};
  if (const std::optional<DoubleMatrix3> toXyz = rgbToXyzD65(colourspace))
  {
    entry.hasMatrix = true;
    entry.toFilm = rounded(product(widen(xyzToAwg4), *toXyz));
  }
  return entry;
}

FilmExit makeFilmExit(int colourspace)
{
  if (colourspace < 0 || colourspace >= colourspaceCount)
    return {};
  // The film gamut's own clip leaves by its log alone, with nothing but the floor at black.
  if (colourspace == logC4Index)
    return {.encoding = {
                .curve = Curve::LogC4, .clamped = true, .low = 0.0f, .high = std::numeric_limits<float>::infinity()}};
  return {.hasMatrix = true,
          .toInput = rounded(product(xyzD65ToRgb(colourspace), widen(awg4ToXyz))),
          .encoding = encodingOf(CurveTable::Full, colourspace)};
}

}  // namespace morvellan::MORVELLAN_TARGET
