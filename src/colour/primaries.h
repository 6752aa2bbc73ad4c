// Matrices worked out from primaries and white points, on the host in double: RGB to XYZ and Bradford adaptation.
#pragma once

#include "colour/matrix.h"

namespace morvellan::MORVELLAN_TARGET
{

struct Chromaticity
{
  float x, y;
};

struct Primaries
{
  Chromaticity red, green, blue, white;
};

inline constexpr Chromaticity whiteD65{0.312709987f, 0.329019994f};
inline constexpr Chromaticity whiteD60{0.321680009f, 0.337669998f};
inline constexpr Chromaticity whiteDci{0.31400001f, 0.351000011f};
inline constexpr Chromaticity whiteD55{0.332419991f, 0.347429991f};

// SMPTE RP 431-2 with the white of each theatre or monitor standard.
inline constexpr Primaries p3D65Primaries{
    {0.680000007f, 0.319999993f}, {0.264999986f, 0.689999998f}, {0.150000006f, 0.0599999987f}, whiteD65};
inline constexpr Primaries p3D60Primaries{p3D65Primaries.red, p3D65Primaries.green, p3D65Primaries.blue, whiteD60};
inline constexpr Primaries p3DciPrimaries{p3D65Primaries.red, p3D65Primaries.green, p3D65Primaries.blue, whiteDci};

// ARRI Wide Gamut 4 (2022).
inline constexpr Primaries awg4Primaries{{0.734700024f, 0.265300006f},
                                         {0.142399997f, 0.857599974f},
                                         {0.0991000012f, -0.0307999998f},
                                         {0.312700003f, 0.328999996f}};

// Linear RGB to CIE XYZ, white at Y = 1 (SMPTE RP 177).
DoubleMatrix3 rgbToXyz(const Primaries& primaries);

// The Y row of it.
Row3 luminanceRow(const Primaries& primaries);

// CIE XYZ seen under one white to XYZ seen under another, by the Bradford cone responses.
DoubleMatrix3 bradford(Chromaticity from, Chromaticity to);

}  // namespace morvellan::MORVELLAN_TARGET
