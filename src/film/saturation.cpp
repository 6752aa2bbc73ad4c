// The saturation matrix, from the luminance row that the primaries give.
#include "film/saturation.h"

#include "colour/primaries.h"

namespace morvellan::MORVELLAN_TARGET
{

Matrix3 saturationMatrix(float saturation)
{
  const double s = static_cast<double>(saturation);
  const Row3 luminance = luminanceRow(awg4Primaries);
  const double r = (1.0 - s) * static_cast<double>(luminance.r);
  const double g = (1.0 - s) * static_cast<double>(luminance.g);
  const double b = (1.0 - s) * static_cast<double>(luminance.b);
  const DoubleMatrix3 blueFirst{{1, 0, 0, 0, 1, 0, r, g, b + s}};
  const DoubleMatrix3 redAndGreen{{r + s, g, b, r, g + s, b, 0, 0, 1}};
  return rounded(product(redAndGreen, blueFirst));
}

}  // namespace morvellan::MORVELLAN_TARGET
