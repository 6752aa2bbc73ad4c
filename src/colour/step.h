// What each kind of step does to a pixel, the curves apart, for any number of pixels in lanes.
#pragma once

#include "colour/program.h"

namespace morvellan::MORVELLAN_TARGET
{

template <StepKind Kind>
struct KindOf
{
  static constexpr StepKind value = Kind;
};

// visitor(KindOf<kind>{}) for every kind but Decode and Encode.
template <typename Visitor>
MORVELLAN_INLINE void withKind(StepKind kind, const Visitor& visitor)
{
  switch (kind)
  {
  case StepKind::Decode:
  case StepKind::Encode:
    return;
  case StepKind::Matrix:
    return visitor(KindOf<StepKind::Matrix>{});
  case StepKind::Add:
    return visitor(KindOf<StepKind::Add>{});
  case StepKind::Multiply:
    return visitor(KindOf<StepKind::Multiply>{});
  case StepKind::Clamp:
    return visitor(KindOf<StepKind::Clamp>{});
  case StepKind::SoftClip:
    return visitor(KindOf<StepKind::SoftClip>{});
  case StepKind::ToLab:
    return visitor(KindOf<StepKind::ToLab>{});
  case StepKind::FromLab:
    return visitor(KindOf<StepKind::FromLab>{});
  case StepKind::Compress:
    return visitor(KindOf<StepKind::Compress>{});
  case StepKind::Expand:
    return visitor(KindOf<StepKind::Expand>{});
  case StepKind::RgbToLuma:
    return visitor(KindOf<StepKind::RgbToLuma>{});
  case StepKind::LumaToRgb:
    return visitor(KindOf<StepKind::LumaToRgb>{});
  }
}

template <StepKind Kind>
MORVELLAN_INLINE Rgb stepped(const Step& step, Rgb p)
{
  const Real low = Real(step.low);
  const Real high = Real(step.high);
  if constexpr (Kind == StepKind::Matrix)
    return multiply(step.matrix, p);
  else if constexpr (Kind == StepKind::Add)
    return {p.r + low, p.g + low, p.b + low};
  else if constexpr (Kind == StepKind::Multiply)
    return {p.r * low, p.g * low, p.b * low};
  else if constexpr (Kind == StepKind::Clamp)
    return {clamp(p.r, low, high), clamp(p.g, low, high), clamp(p.b, low, high)};
  else if constexpr (Kind == StepKind::SoftClip)
    return softClip(step.softClip, p);
  else if constexpr (Kind == StepKind::ToLab)
    return labFromXyz(step.labForm, p);
  else if constexpr (Kind == StepKind::FromLab)
    return xyzFromLab(step.labForm, p);
  else if constexpr (Kind == StepKind::Compress)
    return compressRange(step.luminance, p);
  else if constexpr (Kind == StepKind::Expand)
    return expandRange(step.luminance, p);
  else if constexpr (Kind == StepKind::RgbToLuma)
    return lumaFromRgb(p);
  else
    return rgbFromLuma(p);
}

}  // namespace morvellan::MORVELLAN_TARGET
