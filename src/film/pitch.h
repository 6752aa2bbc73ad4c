// Texture pitches: lightness split into six octave bands by a cascade of Gaussians, each band weighted and the sum put
// back. The pixels are LAB, four floats each, lightness first.
#pragma once

#include <array>

#include "device/launch.h"
#include "device/tails.h"

namespace morvellan::MORVELLAN_TARGET
{

// Every `stride`th float from the first pixel's `base`, for the pixels of a launch.
MORVELLAN_INLINE Real loadStrided(const float* base, Pixels at, int stride)
{
  const float* from = base + at.index * stride;
  return stride == 1 ? loadFirst(from, at.count) : gather(from, min(laneIndex(), Int(at.count - 1)) * Int(stride));
}

MORVELLAN_INLINE void storeStrided(float* base, Pixels at, int stride, Real x)
{
  float whole[lanes];
  store(whole, x);
  float* to = base + at.index * stride;
  for (int i = 0; i < at.count; ++i)
    to[i * stride] = whole[i];
}

// acc = (a - b) * gain + acc, on the first float of each pixel.
struct pitch_sharp
{
  int w, h;
  const float* a;
  const float* b;
  float* acc;
  float gain;
  int ch;

  MORVELLAN_KERNEL void operator()(Pixels at) const
  {
    storeStrided(acc, at, ch, summed(loadStrided(a, at, ch), loadStrided(b, at, ch), loadStrided(acc, at, ch), gain));
  }

  MORVELLAN_INLINE static Real summed(Real from, Real blurred, Real sum, float weight)
  {
    return fma(from - blurred, Real(weight), sum);
  }
};

// dst = src, on the first float of each pixel; offset pointers move one channel to another.
struct CopyY
{
  const float* src;
  float* dst;
  int w, h, ch;

  MORVELLAN_KERNEL void operator()(Pixels at) const { storeStrided(dst, at, ch, loadStrided(src, at, ch)); }
};

// Lightness is the accumulator of `work` plus its low-pass (channels 0 and 2); a and b are those of `src`, and so is
// alpha when `ch` is 4.
struct pitch_accumulate
{
  int w, h;
  const float* src;
  float* work;
  int ch;

  MORVELLAN_KERNEL void operator()(Pixels at) const
  {
    const Real lightness = loadStrided(work, at, ch) + loadStrided(work + 2, at, ch);
    if (ch == 4)
    {
      const Rgba p = loadRgba(src, at);
      storeRgba(work, at, {lightness, p.g, p.b, p.a});
      return;
    }
    const Rgb p = loadRgb(src, at);
    storeRgb(work, at, {lightness, p.g, p.b});
  }
};

// Gains of the bands, finest (Soprano) to widest (Bass); 1 is neutral.
using PitchGains = std::array<float, 6>;

// Sigmas of the bands' steps, in pixels; they add in quadrature along the cascade.
inline constexpr std::array<float, 6> pitchSigmas = {0.4f, 0.8f, 1.6f, 3.2f, 6.4f, 12.8f};

// How many bands run: the first always, a later one if its gain or one after it is not exactly 1.
int pitchBandCount(const PitchGains& gains);

// The stage on `lab` (w * h LAB pixels of 4 floats). `work` is a frame of the same size whose first channel the way
// into LAB has set to 0, `scratch` a plane of w * h floats. Returns the frame that holds the result, `lab` or `work`;
// the other holds nothing of use. A pixel that is not finite stays as it is and counts as 0 in its neighbours' bands.
[[nodiscard]] float* pitchBands(const Queue& queue, float* lab, float* work, float* scratch, int w, int h,
                                const PitchGains& gains);

// The same kernel by kernel, into `work`: what pitchBands does on a GPU, and what its fused form is held against.
void pitchBandsByKernels(const Queue& queue, const float* lab, float* work, float* scratch, int w, int h,
                         const PitchGains& gains);

}  // namespace morvellan::MORVELLAN_TARGET
