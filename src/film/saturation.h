// Saturation about the luminance of ARRI Wide Gamut 4, as print and halation have it: one matrix a launch.
#pragma once

#include "colour/matrix.h"

namespace morvellan::MORVELLAN_TARGET
{

// Blue is mixed first, and red and green are mixed with the blue that came of it. 1 is the identity.
Matrix3 saturationMatrix(float saturation);

}  // namespace morvellan::MORVELLAN_TARGET
