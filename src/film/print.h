// The print: the negative's linear light through a print stock to code values of a display. Cast and tints, the colour
// attributes, saturation, the tone scale, gamma and curves, silver retention, the display's gamut and encoding, and the
// print's density in code values. Its kernels differ in what they leave out and where they write.
#pragma once

#include "film/display.h"
#include "film/saturation.h"
#include "film/soup.h"
#include "film/tone_scale.h"

namespace morvellan::MORVELLAN_TARGET
{

struct PrintSettings
{
  CastSettings cast;
  AttributeBlock attributes;
  bool refine = false;
  std::span<const RefinementSettings> refinements;
  float saturation = 1.0f;
  PrintGamma gamma;
  ToneSettings tone;  // live if any of its amounts is
  Silver silver;
  DensityCurve density;  // floor: black; ceiling: the printer's light
  int profile = 0;       // from 6 on the stock's white is D55
  int display = 0;
  float peak = 100.0f;  // cd/m2
};

// What the print does to a pixel in one launch; each member reads what it uses. The matrices lead to the display's
// linear primaries from weighted channels of the neutral space and from linear film colour.
struct PrintLook
{
  Cast cast;
  AttributeEngine attributes;
  bool saturates = false;
  Matrix3 saturation = identityMatrix;
  ToneScale scale;
  bool bends = false;  // any of gamma and tone is on
  PrintGamma gamma;
  ToneCurve tone;
  Silver silver;
  Matrix3 fromNeutral = identityMatrix;
  Matrix3 fromFilm = identityMatrix;
  DisplayEncoding encoding;
  DensityCurve density;
};

PrintLook makePrintLook(const PrintSettings& settings);

// The print's members are the look's three, and one that shows a negative without a stock.
enum class PrintMember
{
  Plain,
  Vectors,
  Bleach,
  Display,
};

constexpr LookMember lookOf(PrintMember member)
{
  return member == PrintMember::Bleach    ? LookMember::Bleach
         : member == PrintMember::Vectors ? LookMember::Vectors
                                          : LookMember::Plain;
}

// Everything of a stock before the tone scale, on linear light. The bleach has its curves here, without the gamma.
template <PrintMember Member, int Groups>
MORVELLAN_INLINE void gradePrint(const PrintLook& look, Rgb (&c)[Groups])
{
  if (Member == PrintMember::Display)
    return;
  for (Rgb& p : c)
    p = applyCast(look.cast, p);
  applyAttributes<hasVectors(lookOf(Member))>(look.attributes, c);
  for (Rgb& p : c)
  {
    if (look.saturates)
      p = multiply(look.saturation, p);
    if (Member == PrintMember::Bleach)
    {
      if (look.tone.on)
        p = filmDecode(bendTone(look.tone, filmEncode(p)));
      p = filmDecodeOpen(retainSilver(look.silver, p));
    }
  }
}

// Gamma and curves of linear light.
MORVELLAN_INLINE Rgb bendPrint(const PrintLook& look, Rgb c)
{
  Rgb x = tilt(look.gamma, filmEncode(c));
  if (look.tone.on)
    x = bendTone(look.tone, x);
  return filmDecode(x);
}

// The print's density, on code values of the display. Without a stock there is no power. It is densityOf as one
// quotient: codes near black keep the digits that a sum with the ceiling rounds away. The bound keeps an endless power
// a number.
MORVELLAN_INLINE Rgb printDensity(const DensityCurve& d, bool power, Rgb e)
{
  const auto channel = [&](int i, Real v)
  {
    const Real y = min(Real(1e30f), power ? filmicPower(d, v) : v);
    return clamp01((y * Real(d.ceiling[i]) + Real(d.floor[i])) / (y + Real(1.0f)));
  };
  return {channel(0, e.r), channel(1, e.g), channel(2, e.b)};
}

// From the tone scale to code values.
template <PrintMember Member>
MORVELLAN_INLINE Rgb displayPrint(const PrintLook& look, Rgb c)
{
  const Rgb y = scaleTone(look.scale, c);
  constexpr bool stock = Member != PrintMember::Display;
  constexpr bool bends = Member == PrintMember::Plain || Member == PrintMember::Vectors;
  const Rgb linear = bends && look.bends ? multiply(look.fromFilm, bendPrint(look, fromWeightedNeutral(y)))
                                         : multiply(look.fromNeutral, y);
  return printDensity(look.density, stock, encodeDisplay(look.encoding, linear));
}

// Frames hold `channels` floats a pixel, 3 or 4. A member writes `image` in place and, unless it is null, `image2`,
// with the alpha of `image`; or the planes, alpha too where there is a plane for it.
struct PrintArguments
{
  float* image = nullptr;
  float* image2 = nullptr;
  LookPlanes planes = {};
  int width = 0, height = 0, channels = 4;
  PrintLook look = {};
};

// The graded light of a call's groups, and their alpha.
template <PrintMember Member>
MORVELLAN_INLINE void loadGraded(const PrintArguments& a, Pixels at, Rgb (&c)[lookGroups], Real (&alpha)[lookGroups])
{
  for (int k = 0; k < lookGroups; ++k)
  {
    const Rgba p = loadPixel(a.image, a.channels, group(at, k));
    c[k] = {p.r, p.g, p.b};
    alpha[k] = p.a;
  }
  gradePrint<Member>(a.look, c);
}

template <PrintMember Member>
struct print_to_frames
{
  static constexpr int groups = lookGroups;
  PrintArguments a;

  MORVELLAN_KERNEL void operator()(Pixels at) const
  {
    Rgb c[groups];
    Real alpha[groups];
    loadGraded<Member>(a, at, c, alpha);
    for (int k = 0; k < groups; ++k)
    {
      const Rgb result = displayPrint<Member>(a.look, c[k]);
      storePixel(a.image, a.channels, group(at, k), result, alpha[k]);
      if (a.image2)
        storePixel(a.image2, a.channels, group(at, k), result, alpha[k]);
    }
  }
};

// Up to the tone scale, as linear light compressed in range for grain.
template <PrintMember Member>
struct print_to_planes
{
  static constexpr int groups = lookGroups;
  PrintArguments a;

  MORVELLAN_KERNEL void operator()(Pixels at) const
  {
    Rgb c[groups];
    Real alpha[groups];
    loadGraded<Member>(a, at, c, alpha);
    for (int k = 0; k < groups; ++k)
    {
      const Rgb light = positive(fromWeightedNeutral(scaleTone(a.look.scale, positive(c[k]))));
      storePlanes(a.planes, group(at, k), compressFilm(light));
      if (a.planes.alpha)
        storePlane(a.planes.alpha, group(at, k), alpha[k]);
    }
  }
};

enum class PrintTarget
{
  Frames,
  Planes,
};

struct PrintRow
{
  std::string_view kernel;
  PrintMember member;
  PrintTarget target;
};

inline constexpr PrintRow printRows[] = {
    {"film_print_cuda_out_pfe", PrintMember::Plain, PrintTarget::Frames},
    {"film_print_cuda_out_hue_chr_vib_pfe", PrintMember::Vectors, PrintTarget::Frames},
    {"film_print_cuda_out_bleach_pfe", PrintMember::Bleach, PrintTarget::Frames},
    {"film_print_cuda_out_pfe_display", PrintMember::Display, PrintTarget::Frames},
    {"lin_grain_display_custom_rangecompress_display", PrintMember::Plain, PrintTarget::Planes},
    {"lin_grain_display_hue_chr_vib_rangecompress_display", PrintMember::Vectors, PrintTarget::Planes},
    {"lin_grain_display_bleach_rangecompress_display", PrintMember::Bleach, PrintTarget::Planes},
    {"lin_grain_display_rangecompress_display", PrintMember::Display, PrintTarget::Planes},
};

// Launches the named kernel over width * height pixels; false if the family has none of that name.
bool launchPrint(const Queue& queue, std::string_view kernel, const PrintArguments& arguments);

}  // namespace morvellan::MORVELLAN_TARGET
