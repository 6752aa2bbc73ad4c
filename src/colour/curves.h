// Decode and encode of a pixel by the curve, guard and clamp of a colourspace index. The curve is the same for a whole
// launch: the switch on it is uniform.
#pragma once

#include "colour/curve_table.h"
#include "colour/curves_aces.h"
#include "colour/curves_camera.h"
#include "colour/curves_video.h"
#include "device/pixels.h"

namespace morvellan::MORVELLAN_TARGET
{

// visitor(curves::X{}) for the structure of the curve.
template <typename Visitor>
MORVELLAN_INLINE void withCurve(Curve curve, const Visitor& visitor)
{
  switch (curve)
  {
  case Curve::Identity:
    return visitor(curves::Identity{});
  case Curve::Rec709:
    return visitor(curves::Rec709{});
  case Curve::Rec2020:
    return visitor(curves::Rec2020{});
  case Curve::Srgb:
    return visitor(curves::Srgb{});
  case Curve::Gamma26:
    return visitor(curves::Gamma26{});
  case Curve::Gamma26Positive:
    return visitor(curves::Gamma26Positive{});
  case Curve::Gamma24:
    return visitor(curves::Gamma24{});
  case Curve::Dcdm:
    return visitor(curves::Dcdm{});
  case Curve::Cineon:
    return visitor(curves::Cineon{});
  case Curve::PLogLin:
    return visitor(curves::PLogLin{});
  case Curve::AcesCc:
    return visitor(curves::AcesCc{});
  case Curve::AcesCct:
    return visitor(curves::AcesCct{});
  case Curve::AcesProxy:
    return visitor(curves::AcesProxy{});
  case Curve::Adx:
    return visitor(curves::Adx{});
  case Curve::NLog:
    return visitor(curves::NLog{});
  case Curve::LogC3:
    return visitor(curves::LogC3{});
  case Curve::LogC3Full:
    return visitor(curves::LogC3Full{});
  case Curve::Log3G10:
    return visitor(curves::Log3G10{});
  case Curve::SLog:
    return visitor(curves::SLog{});
  case Curve::SLog2:
    return visitor(curves::SLog2{});
  case Curve::FLog2:
    return visitor(curves::FLog2{});
  case Curve::TLog:
    return visitor(curves::TLog{});
  case Curve::SLog3:
    return visitor(curves::SLog3{});
  case Curve::VLog:
    return visitor(curves::VLog{});
  case Curve::CLog:
    return visitor(curves::CLog{});
  case Curve::CLog2:
    return visitor(curves::CLog2{});
  case Curve::CLog3:
    return visitor(curves::CLog3{});
  case Curve::DLog:
    return visitor(curves::DLog{});
  case Curve::FLog:
    return visitor(curves::FLog{});
  case Curve::Log113:
    return visitor(curves::Log113{});
  case Curve::Pq1000:
    return visitor(curves::Pq1000{});
  case Curve::Hlg:
    return visitor(curves::Hlg{});
  case Curve::Intermediate:
    return visitor(curves::Intermediate{});
  case Curve::LogC4:
    return visitor(curves::LogC4{});
  case Curve::Gen5:
    return visitor(curves::Gen5{});
  }
}

namespace detail
{

MORVELLAN_INLINE Real guarded(Guard guard, Real before, Real after)
{
  if (guard == Guard::None)
    return after;
  const Real zero = Real(0.0f);
  const Mask low = guard == Guard::Negative ? before < zero : before <= zero;
  return select(low | (before > Real(1.0f)), before, after);
}

template <typename C>
MORVELLAN_INLINE Rgb decodeCurve(const Decoding& d, Rgb p)
{
  if (d.saturate)
    p = {clamp01(p.r), clamp01(p.g), clamp01(p.b)};
  if constexpr (requires { C::threeChannels; })
    return C::decode(p);
  else
    return {guarded(d.guard, p.r, C::decode(p.r)), guarded(d.guard, p.g, C::decode(p.g)),
            guarded(d.guard, p.b, C::decode(p.b))};
}

template <typename C>
MORVELLAN_INLINE Rgb encodeCurve(const Encoding& e, Rgb p)
{
  if (e.clamped)
  {
    const Real low = Real(e.low);
    const Real high = Real(e.high);
    p = {clamp(p.r, low, high), clamp(p.g, low, high), clamp(p.b, low, high)};
  }
  if constexpr (requires { C::threeChannels; })
    p = C::encode(p);
  else
    p = {guarded(e.guard, p.r, C::encode(p.r)), guarded(e.guard, p.g, C::encode(p.g)),
         guarded(e.guard, p.b, C::encode(p.b))};
  if (e.saturate)
    p = {clamp01(p.r), clamp01(p.g), clamp01(p.b)};
  return p;
}

struct DecodePixel
{
  const Decoding& decoding;
  Rgb& p;
  template <typename C>
  MORVELLAN_APART void operator()(C) const
  {
    p = decodeCurve<C>(decoding, p);
  }
};

struct EncodePixel
{
  const Encoding& encoding;
  Rgb& p;
  template <typename C>
  MORVELLAN_APART void operator()(C) const
  {
    p = encodeCurve<C>(encoding, p);
  }
};

}  // namespace detail

#ifdef MORVELLAN_TARGET_IS_CUDA

MORVELLAN_INLINE Rgb decode(const Decoding& decoding, Rgb p)
{
  withCurve(decoding.curve, detail::DecodePixel{decoding, p});
  return p;
}

MORVELLAN_INLINE Rgb encode(const Encoding& encoding, Rgb p)
{
  withCurve(encoding.curve, detail::EncodePixel{encoding, p});
  return p;
}

#else

// Out of line: every curve once in the library, not once in every kernel that enters or leaves an encoding.
Rgb decode(const Decoding& decoding, Rgb p);
Rgb encode(const Encoding& encoding, Rgb p);

#endif

}  // namespace morvellan::MORVELLAN_TARGET
