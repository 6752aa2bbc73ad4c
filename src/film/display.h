// Display encodings: from the print's colour to code values of one of fifteen displays. The gamut and the adaptation
// are one matrix a launch; the curve is the same for a whole launch.
#pragma once

#include "colour/curves_aces.h"
#include "colour/curves_camera.h"
#include "colour/curves_video.h"
#include "colour/matrix.h"

namespace morvellan::MORVELLAN_TARGET
{

inline constexpr int displayCount = 15;

enum class DisplayCurve
{
  Gamma22,  // 1 / 2.2, also for the entries labelled 2.4
  Gamma26,
  Pq,
  Hlg,
  Intermediate,
  AcesCc,
  AcesCct,
};

struct DisplayEncoding
{
  DisplayCurve curve = DisplayCurve::Gamma22;
  float scale = 1.0f;    // of PQ and HLG: linear 1 in units of the curve
  float highest = 1.0f;  // of PQ and HLG: the peak in units of the curve
};

// The encoding of an entry, 0 to 14, for a peak in cd/m2 (100 for standard displays); entries outside count as 0.
DisplayEncoding makeDisplayEncoding(int display, float peak);

enum class PrintWhite
{
  D65,
  D55,
};

// CIE XYZ under the print's white to the display's linear primaries, by Bradford to its white.
DoubleMatrix3 xyzToDisplay(int display, PrintWhite white);

namespace detail
{

template <typename C>
MORVELLAN_INLINE Rgb encodePositive(Rgb c)
{
  const Real zero(0.0f);
  return {C::encode(max(c.r, zero)), C::encode(max(c.g, zero)), C::encode(max(c.b, zero))};
}

MORVELLAN_INLINE Rgb toPeak(const DisplayEncoding& e, Rgb c)
{
  const Real scale(e.scale);
  const Real zero(0.0f);
  const Real highest(e.highest);
  return {clamp(c.r * scale, zero, highest), clamp(c.g * scale, zero, highest), clamp(c.b * scale, zero, highest)};
}

// Gamma 2.2, whatever the label says.
struct Gamma22
{
  static MORVELLAN_INLINE Real encode(Real x) { return curves::power(x, 0.454545468f); }
};

// The inverse of HLG's system gamma of 1.2 (ITU-R BT.2100-2), then its curve.
MORVELLAN_INLINE Rgb encodeHlg(Rgb v)
{
  const Real luminance = dot({0.2627f, 0.678f, 0.0593f}, v);
  const Real gain = select(luminance != Real(0.0f), curves::power(luminance, -0.166666672f), Real(1.0f));
  return encodePositive<curves::Hlg>({v.r * gain, v.g * gain, v.b * gain});
}

}  // namespace detail

// Code values of a linear colour in the display's primaries, before the print's density.
MORVELLAN_INLINE Rgb encodeDisplay(const DisplayEncoding& e, Rgb c)
{
  switch (e.curve)
  {
  case DisplayCurve::Gamma22:
    return detail::encodePositive<detail::Gamma22>(c);
  case DisplayCurve::Gamma26:
    return detail::encodePositive<curves::Gamma26>(c);
  case DisplayCurve::Pq:
    return detail::encodePositive<curves::Pq>(detail::toPeak(e, c));
  case DisplayCurve::Hlg:
    return detail::encodeHlg(detail::toPeak(e, c));
  case DisplayCurve::Intermediate:
    return detail::encodePositive<curves::Intermediate>(c);
  case DisplayCurve::AcesCc:
    return detail::encodePositive<curves::AcesCc>(c);
  case DisplayCurve::AcesCct:
    return detail::encodePositive<curves::AcesCct>(c);
  }
  return c;
}

}  // namespace morvellan::MORVELLAN_TARGET
