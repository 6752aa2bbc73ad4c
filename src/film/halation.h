// Halation: the glow of light that passed through the film and came back from behind it. The frame is decoded to film
// light, drawn towards four blurs of doubling width, mixed channel by channel, and encoded again.
#pragma once

#include "colour/film_space.h"
#include "device/launch.h"
#include "device/tails.h"

namespace morvellan::MORVELLAN_TARGET
{

// Colour of interleaved pixels with 3 or 4 channels; a store leaves the fourth as it is.
MORVELLAN_INLINE Rgb loadColour(const float* frame, Pixels at, int channels)
{
  if (channels != 4)
    return loadRgbInside(frame, at);
  const Rgba p = loadRgbaInside(frame, at);
  return {p.r, p.g, p.b};
}

MORVELLAN_INLINE void storeColour(float* frame, Pixels at, int channels, Rgb p)
{
  if (channels == 4)
    storeRgba(frame, at, {p.r, p.g, p.b, loadRgbaInside(frame, at).a});
  else
    storeRgb(frame, at, p);
}

// Linear film colour as the film model holds it: in [0, 469.799988], NaN as 0.
MORVELLAN_INLINE Rgb heldLight(Rgb p)
{
  const Real zero = Real(0.0f);
  const Real most = Real(logC4Largest);
  return {clamp(p.r, zero, most), clamp(p.g, zero, most), clamp(p.b, zero, most)};
}

// The same of an input pixel.
MORVELLAN_INLINE Rgb filmLight(const FilmEntry& entry, Rgb p)
{
  return heldLight(filmEntry(entry, p));
}

// Decodes into both frames.
struct halation_init
{
  float* image;
  float* original;
  int width, height, channels;
  FilmEntry entry;

  MORVELLAN_KERNEL void operator()(Pixels at) const
  {
    const Rgb light = filmLight(entry, loadColour(image, at, channels));
    storeColour(image, at, channels, light);
    storeColour(original, at, channels, light);
  }
};

// image = (image - blur) * gain + blur.
struct FrequencySharpenHalation
{
  float* image;
  const float* blur;
  int width, height;
  float gain;
  int channels;

  MORVELLAN_KERNEL void operator()(Pixels at) const
  {
    const Rgb sharp = loadColour(image, at, channels);
    const Rgb soft = loadColour(blur, at, channels);
    storeColour(image, at, channels,
                {mixed(sharp.r, soft.r, gain), mixed(sharp.g, soft.g, gain), mixed(sharp.b, soft.b, gain)});
  }

  MORVELLAN_INLINE static Real mixed(Real sharp, Real soft, float gain) { return fma(sharp - soft, Real(gain), soft); }
};

// The mix of one frame: what halation_linear does to a pixel.
struct HalationMix
{
  float amount[3];   // red, green, blue: weight of the glow beside the original's 1
  float share[3];    // 1 / (amount + 1)
  float keep[3];     // 1 is the full effect, 0 none
  float saturation;  // of the glow; 0 makes it grey
  FilmExit exit;

  MORVELLAN_INLINE Rgb operator()(Rgb glow, Rgb original) const { return filmExit(exit, light(glow, original)); }

  // Before the exit.
  MORVELLAN_INLINE Rgb light(Rgb glow, Rgb original) const
  {
    if (saturation != 1.0f)
      glow = saturated(glow);
    return {blended(0, glow.r, original.r), blended(1, glow.g, original.g), blended(2, glow.b, original.b)};
  }

private:
  // Blue first, and its new value is part of the luminance that red and green then mix in.
  MORVELLAN_INLINE Rgb saturated(Rgb c) const
  {
    constexpr Row3 weights = awg4Luminance;  // a constant of its own, which device code may refer to
    const Real keepColour = Real(saturation);
    const Real grey = Real(1.0f - saturation);
    const Real blue = fma(keepColour, c.b, grey * dot(weights, c));
    const Real luminance = dot(weights, {c.r, c.g, blue});
    return {fma(keepColour, c.r, grey * luminance), fma(keepColour, c.g, grey * luminance), blue};
  }

  MORVELLAN_INLINE Real blended(int channel, Real glow, Real original) const
  {
    const Real mix = fma(glow, Real(amount[channel]), original) * Real(share[channel]);
    const float kept = keep[channel];
    return kept == 1.0f ? mix : fma(mix, Real(kept), Real(1.0f - kept) * original);
  }
};

// The final mix and the way back to code values, into image and blur alike.
struct halation_linear
{
  float* image;
  float* blur;
  const float* original;
  int width, height;
  HalationMix mix;
  int channels;

  MORVELLAN_KERNEL void operator()(Pixels at) const
  {
    const Rgb p = mix(loadColour(image, at, channels), loadColour(original, at, channels));
    storeColour(image, at, channels, p);
    storeColour(blur, at, channels, p);
  }
};

struct HalationSettings
{
  float breadth;     // times 1.6: the first round's sigma in pixels, which doubles from round to round
  float saturation;  // see HalationMix for these three
  float amount[3];
  float keep[3];
  int inputGamut;  // colourspace index of the frame's code values
};

// The stage on `image`, w * h pixels of 3 or 4 channels, whose fourth it leaves alone. `blur`, a frame of the same
// shape, is the stage's to use.
void halation(const Queue& queue, float* image, float* blur, int w, int h, int channels,
              const HalationSettings& settings);

// The same kernel by kernel: what halation does on a GPU, and what its fused form is held against. `blur` ends with the
// same colour as `image`.
void halationByKernels(const Queue& queue, float* image, float* blur, int w, int h, int channels,
                       const HalationSettings& settings);

}  // namespace morvellan::MORVELLAN_TARGET
