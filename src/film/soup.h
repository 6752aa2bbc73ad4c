// The Soup: from the laboratory's planes to a graded negative. Cast and tints, the colour attributes, the tone curve,
// silver retention and the density, then out to the frame.
#pragma once

#include "colour/film_space.h"
#include "device/launch.h"
#include "film/attribute_engine.h"
#include "film/cast.h"
#include "film/silver.h"
#include "film/tone.h"

namespace morvellan::MORVELLAN_TARGET
{

// The light that passes the laboratory's developed density, per exposure.
inline constexpr float developedGain = 2058.0f;

// What the Soup does to a pixel in one launch. It fits any of the family's members; each reads what it uses.
struct SoupLook
{
  Cast cast;
  AttributeEngine attributes;
  ToneCurve tone;
  Silver silver;
  DensityCurve density;
};

enum class SoupMember
{
  Plain,
  Vectors,  // with hue vectors
  Bleach,   // with hue vectors and silver retention
};

constexpr bool hasVectors(SoupMember member)
{
  return member != SoupMember::Plain;
}

// The smallest member that the settings allow.
constexpr SoupMember chooseSoup(bool bleach, bool vectors)
{
  return bleach ? SoupMember::Bleach : vectors ? SoupMember::Vectors : SoupMember::Plain;
}

// Linear light of the laboratory's planes, three floats a pixel each.
MORVELLAN_INLINE Rgb developedLight(const float* exposure, const float* density, Pixels at)
{
  const Rgb e = loadRgb(exposure, at);
  const Rgb d = loadRgb(density, at);
  const Real gain(developedGain);
  return {d.r * d.r * e.r * gain, d.g * d.g * e.g * gain, d.b * d.b * e.b * gain};
}

// The first half of the Soup: a linear colour with its cast, tints and attributes.
template <SoupMember Member>
MORVELLAN_INLINE Rgb gradeSoup(const SoupLook& look, Rgb linear)
{
  return applyAttributes<hasVectors(Member)>(look.attributes, applyCast(look.cast, linear));
}

// The second half, on the working log of a colour: code values of the negative.
template <SoupMember Member>
MORVELLAN_INLINE Rgb developSoup(const SoupLook& look, Rgb linear)
{
  Rgb x;
  if (Member != SoupMember::Bleach)
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

// Where the frame goes after the Soup.
struct SoupExit
{
  bool leaves = false;      // no print follows: back to the clip's encoding
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

// The arguments of the three kernels. Frames hold `channels` floats a pixel, 3 or 4; with 4 the alpha plane is copied
// into both. `image2` may be null.
struct SoupArguments
{
  const float* exposure;
  float* image;
  float* image2;
  const float* alpha;
  const float* density;
  int width, height, channels;
  SoupLook look;
  SoupExit exit;
};

// A pixel into a frame of 3 or 4 channels.
MORVELLAN_INLINE void storePixel(float* image, int channels, Pixels at, Rgb c, Real alpha)
{
  if (channels == 4)
    storeRgba(image, at, {c.r, c.g, c.b, alpha});
  else
    storeRgb(image, at, c);
}

template <SoupMember Member>
MORVELLAN_KERNEL void soupPixel(const SoupArguments& a, Pixels at)
{
  const Rgb linear = gradeSoup<Member>(a.look, developedLight(a.exposure, a.density, at));
  const Rgb result = leaveSoup(a.exit, developSoup<Member>(a.look, linear));
  const Real alpha = a.channels == 4 ? loadPlane(a.alpha, at) : Real(0.0f);
  storePixel(a.image, a.channels, at, result, alpha);
  if (a.image2)
    storePixel(a.image2, a.channels, at, result, alpha);
}

struct film_soup_cuda_out
{
  SoupArguments arguments;
  MORVELLAN_KERNEL void operator()(Pixels at) const { soupPixel<SoupMember::Plain>(arguments, at); }
};

struct film_soup_cuda_out_hue_chr_vib
{
  SoupArguments arguments;
  MORVELLAN_KERNEL void operator()(Pixels at) const { soupPixel<SoupMember::Vectors>(arguments, at); }
};

struct film_soup_cuda_out_bleach
{
  SoupArguments arguments;
  MORVELLAN_KERNEL void operator()(Pixels at) const { soupPixel<SoupMember::Bleach>(arguments, at); }
};

// Launches the member over width * height pixels.
void launchSoup(const Queue& queue, SoupMember member, const SoupArguments& arguments);

}  // namespace morvellan::MORVELLAN_TARGET
