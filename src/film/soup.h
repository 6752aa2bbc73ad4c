// The Soup: from the laboratory's planes to a graded negative. Cast and tints, the colour attributes, the tone curve,
// silver retention and the density, then out to the frame. Its kernels differ in what they leave out and where they
// write.
#pragma once

#include <span>
#include <string_view>

#include "colour/film_space.h"
#include "device/launch.h"
#include "film/attribute_engine.h"
#include "film/cast.h"
#include "film/look_frames.h"
#include "film/silver.h"
#include "film/tone.h"

namespace morvellan::MORVELLAN_TARGET
{

struct SoupSettings
{
  CastSettings cast;
  AttributeBlock attributes;
  bool refine = false;
  std::span<const RefinementSettings> refinements;
  ToneSettings tone;
  Silver silver;
  DensityCurve density;
};

// What the Soup does to a pixel in one launch. It fits any of the family's members; each reads what it uses.
struct SoupLook
{
  Cast cast;
  AttributeEngine attributes;
  ToneCurve tone;
  Silver silver;
  DensityCurve density;
};

SoupLook makeSoupLook(const SoupSettings& settings);

enum class LookMember
{
  Plain,
  Vectors,  // with hue vectors
  Bleach,   // with hue vectors and silver retention
};

constexpr bool hasVectors(LookMember member)
{
  return member != LookMember::Plain;
}

// The light that passes the laboratory's developed density, per exposure.
inline constexpr float developedGain = 2058.0f;

// Linear light of the laboratory's planes, three floats a pixel each.
MORVELLAN_INLINE Rgb developedLight(const float* exposure, const float* density, Pixels at)
{
  const Rgb e = loadRgb(exposure, at);
  const Rgb d = loadRgb(density, at);
  const Real gain(developedGain);
  return {d.r * d.r * e.r * gain, d.g * d.g * e.g * gain, d.b * d.b * e.b * gain};
}

// The first half of the Soup: linear colours with their cast, tints and attributes.
template <LookMember Member, int Groups>
MORVELLAN_INLINE void gradeSoup(const SoupLook& look, Rgb (&c)[Groups])
{
  for (Rgb& p : c)
    p = applyCast(look.cast, p);
  applyAttributes<hasVectors(Member)>(look.attributes, c);
}

// The second half: code values of the negative. With the tone curve off, silver is retained on the linear colour.
template <LookMember Member>
MORVELLAN_INLINE Rgb developSoup(const SoupLook& look, Rgb linear)
{
  Rgb x;
  if (Member != LookMember::Bleach)
  {
    x = filmEncode(linear);
    if (look.tone.on)
      x = bendTone(look.tone, x);
  }
  else if (look.tone.on)
    x = retainSilver(look.silver, filmDecode(bendTone(look.tone, filmEncode(linear))));
  else
    x = retainSilver(look.silver, linear);
  return filmDensity(look.density, look.tone.on, x);
}

// Where the frame goes after the Soup: on to the print as linear light, or back to the clip's encoding.
struct SoupExit
{
  bool leaves = false;
  bool workingLog = false;  // the clip is in the working log itself
  FilmExit exit;
};

SoupExit makeSoupExit(bool leaves, int inputGamut);

MORVELLAN_INLINE Rgb leaveSoup(const SoupExit& to, Rgb code)
{
  if (to.leaves && to.workingLog)
    return code;
  const Rgb linear = filmDecode(code);
  return to.leaves ? filmExit(to.exit, linear) : linear;
}

// Frames hold `channels` floats a pixel, 3 or 4; with 4 the alpha plane is copied into them. A member writes `image`
// and, unless it is null, `image2`; or the three planes, whose alpha is the laboratory's alpha plane as it stands.
struct SoupArguments
{
  const float* exposure = nullptr;
  float* image = nullptr;
  float* image2 = nullptr;
  LookPlanes planes = {};
  const float* density = nullptr;
  int width = 0, height = 0, channels = 4;
  SoupLook look = {};
  SoupExit exit = {};
};

// The graded light of a call's groups.
template <LookMember Member>
MORVELLAN_INLINE void loadGraded(const SoupArguments& a, Pixels at, Rgb (&c)[lookGroups])
{
  for (int k = 0; k < lookGroups; ++k)
    c[k] = developedLight(a.exposure, a.density, group(at, k));
  gradeSoup<Member>(a.look, c);
}

template <LookMember Member>
struct soup_to_frames
{
  static constexpr int groups = lookGroups;
  SoupArguments a;

  MORVELLAN_KERNEL void operator()(Pixels at) const
  {
    Rgb c[groups];
    loadGraded<Member>(a, at, c);
    for (int k = 0; k < groups; ++k)
    {
      const Pixels to = group(at, k);
      const Rgb result = leaveSoup(a.exit, developSoup<Member>(a.look, c[k]));
      const Real alpha = a.channels == 4 ? loadPlane(a.planes.alpha, to) : Real(1.0f);
      storePixel(a.image, a.channels, to, result, alpha);
      if (a.image2)
        storePixel(a.image2, a.channels, to, result, alpha);
    }
  }
};

// Before the curves, compressed in range for grain.
template <LookMember Member>
struct soup_to_planes
{
  static constexpr int groups = lookGroups;
  SoupArguments a;

  MORVELLAN_KERNEL void operator()(Pixels at) const
  {
    Rgb c[groups];
    loadGraded<Member>(a, at, c);
    for (int k = 0; k < groups; ++k)
      storePlanes(a.planes, group(at, k), compressFilm(c[k]));
  }
};

enum class SoupTarget
{
  Frames,  // both frames, by the exit
  Linear,  // one frame, as linear light
  Planes,
};

struct SoupRow
{
  std::string_view kernel;
  LookMember member;
  SoupTarget target;
};

inline constexpr SoupRow soupRows[] = {
    {"film_soup_cuda_out", LookMember::Plain, SoupTarget::Frames},
    {"film_soup_cuda_out_hue_chr_vib", LookMember::Vectors, SoupTarget::Frames},
    {"film_soup_cuda_out_bleach", LookMember::Bleach, SoupTarget::Frames},
    {"lin_grain_display", LookMember::Plain, SoupTarget::Linear},
    {"lin_grain_display_hue_chr_vib", LookMember::Vectors, SoupTarget::Linear},
    {"lin_grain_display_bleach", LookMember::Bleach, SoupTarget::Linear},
    {"lin_grain_rangecompress", LookMember::Plain, SoupTarget::Planes},
    {"lin_grain_hue_chr_vib_lin_rangecompress", LookMember::Vectors, SoupTarget::Planes},
};

// Launches the named kernel over width * height pixels; false if the family has none of that name.
bool launchSoup(const Queue& queue, std::string_view kernel, const SoupArguments& arguments);

}  // namespace morvellan::MORVELLAN_TARGET
