// The ARRI LogC4 curve (ARRI, 2022): the log in which tone work is done and in which grain composites linear frames.
// Constants are the publication's, rounded to float; the linear segment below its cut is the publication's too.
#pragma once

#include "device/math.h"
#include "device/pixels.h"

namespace morvellan::MORVELLAN_TARGET
{

// The largest scene-linear value that the curve holds: code value 1.
inline constexpr float logC4Largest = 469.799988f;

// (log2(x * 2231.82642 + 64) - 6) * 0.0647954196 + 0.092864126 for any x above -0.028676; no linear segment.
MORVELLAN_INLINE Real logC4EncodeCurve(Real x)
{
  return (plain_log2(x * Real(2231.82642f) + Real(64.0f)) - Real(6.0f)) * Real(0.0647954196f) + Real(0.092864126f);
}

// Scene-linear from a code value at or above 0, the inverse of logC4EncodeCurve.
MORVELLAN_INLINE Real logC4DecodeCurve(Real x)
{
  const Real stops = (x - Real(0.092864126f)) * Real(14.0f) * Real(1.10237074f) + Real(6.0f);
  return (plain_exp2(stops) - Real(64.0f)) * Real(0.00044806354f);
}

// The whole curve with its linear segment below -0.0180569962 (below code value 0); no clamp.
MORVELLAN_INLINE Real logC4Encode(Real x)
{
  const Real line = (x + Real(0.0180569962f)) * Real(8.80303288f);
  return select(x < Real(-0.0180569962f), line, logC4EncodeCurve(x));
}

MORVELLAN_INLINE Real logC4Decode(Real x)
{
  const Real line = x * Real(0.113597207f) - Real(0.0180569962f);
  return select(x < Real(0.0f), line, logC4DecodeCurve(x));
}

MORVELLAN_INLINE Rgb logC4Encode(Rgb p)
{
  return {logC4Encode(p.r), logC4Encode(p.g), logC4Encode(p.b)};
}

MORVELLAN_INLINE Rgb logC4Decode(Rgb p)
{
  return {logC4Decode(p.r), logC4Decode(p.g), logC4Decode(p.b)};
}

}  // namespace morvellan::MORVELLAN_TARGET
