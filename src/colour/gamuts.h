// Gamuts of the colourspace indices: matrix rows to and from CIE XYZ, luminance rows, and white points. Host code: a
// launch gets the rows that it needs as numbers.
#pragma once

#include <optional>

#include "colour/curve_table.h"
#include "colour/matrix.h"

namespace morvellan::MORVELLAN_TARGET
{

// CIE XYZ to linear RGB by index. None where the index has no rows: ADX (9), DCDM (46), in the short table 46 to 48.
std::optional<Matrix3> xyzToRgb(CurveTable table, int colourspace);

// Linear RGB to CIE XYZ in the gamut's own white, the rows that belong to the short table. None at 9 and 46 to 48.
std::optional<Matrix3> rgbToXyz(int colourspace);

// Linear RGB to CIE XYZ with a D65 white, the film path's rows; 31 and 33 include their computed adaptation. None for
// LogC4 (47), whose data is in the film gamut.
std::optional<DoubleMatrix3> rgbToXyzD65(int colourspace);

// CIE XYZ with a D65 white to linear RGB by the full table, adapted to the index's own white. At ADX (9) it leads to
// AP0, at DCDM (46) it is the identity.
DoubleMatrix3 xyzD65ToRgb(int colourspace);

// Luminance (Y) of a linear pixel, for range compression. Short: the rows of rgbToXyz, ADX with those of AP0, none at
// 46 to 48. Full: the film path's rows, LogC4 with its own gamut's.
std::optional<Row3> luminanceRow(CurveTable table, int colourspace);

// The four gamuts of scene-linear clips that have kernels of their own.
enum class LinearGamut
{
  Rec709,
  Rec2020,
  AcesAp0,
  AcesAp1,
};

// Of the linear inputs 0, 30, 4 and 5; their index the other way.
LinearGamut linearGamut(int colourspace);
int colourspaceOf(LinearGamut gamut);

// The same luminance to two precisions, on purpose: which member of a family uses which is part of its composition.
enum class LuminancePrecision
{
  RowA,
  RowB,
};
Row3 luminanceRow(LinearGamut gamut, LuminancePrecision precision);

}  // namespace morvellan::MORVELLAN_TARGET
