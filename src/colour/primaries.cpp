// Matrices from primaries.
#include "colour/primaries.h"

#include <algorithm>

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

struct Xyz
{
  double x, y, z;
};

Xyz multiply(const DoubleMatrix3& k, Xyz v)
{
  return {k.m[0] * v.x + k.m[1] * v.y + k.m[2] * v.z, k.m[3] * v.x + k.m[4] * v.y + k.m[5] * v.z,
          k.m[6] * v.x + k.m[7] * v.y + k.m[8] * v.z};
}

// At Y = 1.
Xyz xyzOf(Chromaticity c)
{
  const double x = static_cast<double>(c.x);
  const double y = static_cast<double>(c.y);
  const double divisor = std::max(y, 1e-10);
  return {x / divisor, 1.0, (1.0 - x - y) / divisor};
}

// The Bradford cone matrix, printed for row vectors.
constexpr DoubleMatrix3 coneResponse =
    transposed(widen({{0.895099998f, -0.750199974f, 0.0388999991f, 0.266400009f, 1.71350002f, -0.0684999973f,
                       -0.161400005f, 0.0366999991f, 1.02960002f}}));

}  // namespace

DoubleMatrix3 rgbToXyz(const Primaries& primaries)
{
  const Chromaticity corners[3] = {primaries.red, primaries.green, primaries.blue};
  DoubleMatrix3 chromaticities{};
  for (int i = 0; i < 3; ++i)
  {
    const double x = static_cast<double>(corners[i].x);
    const double y = static_cast<double>(corners[i].y);
    chromaticities.m[i] = x;
    chromaticities.m[3 + i] = y;
    chromaticities.m[6 + i] = 1.0 - (x + y);
  }
  const Xyz scale = multiply(inverse(chromaticities), xyzOf(primaries.white));
  return product(chromaticities, {{scale.x, 0, 0, 0, scale.y, 0, 0, 0, scale.z}});
}

Row3 luminanceRow(const Primaries& primaries)
{
  const DoubleMatrix3 k = rgbToXyz(primaries);
  return {static_cast<float>(k.m[3]), static_cast<float>(k.m[4]), static_cast<float>(k.m[5])};
}

DoubleMatrix3 bradford(Chromaticity from, Chromaticity to)
{
  const Xyz source = multiply(coneResponse, xyzOf(from));
  const Xyz target = multiply(coneResponse, xyzOf(to));
  const DoubleMatrix3 ratios{{target.x / source.x, 0, 0, 0, target.y / source.y, 0, 0, 0, target.z / source.z}};
  return product(inverse(coneResponse), product(ratios, coneResponse));
}

}  // namespace morvellan::MORVELLAN_TARGET
