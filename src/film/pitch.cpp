// The cascade of pitches: kernel by kernel on frames, and on separate planes with the bands added up in the blur.
#include "film/pitch.h"

#include "film/gaussian.h"
#include "film/gaussian_fused.h"

namespace morvellan::MORVELLAN_TARGET
{

int pitchBandCount(const PitchGains& gains)
{
  int count = 1;
  for (int band = 1; band < 6; ++band)
    if (gains[static_cast<size_t>(band)] != 1.0f)
      count = band + 1;
  return count;
}

void pitchBandsByKernels(const Queue& queue, const float* lab, float* work, float* scratch, int w, int h,
                         const PitchGains& gains)
{
  const int bands = pitchBandCount(gains);
  float* low = work + 2;
  float* previousLow = work + 3;
  const float* previous = lab;
  for (int band = 0; band < bands; ++band)
  {
    const auto at = static_cast<size_t>(band);
    blurChannel(queue, previous, scratch, low, w, h, pitchSigmas[at], 4);
    launch(queue, grid2d(w, h),
           pitch_sharp{.w = w, .h = h, .a = previous, .b = low, .acc = work, .gain = gains[at], .ch = 4});
    if (band + 1 == bands)
      break;
    launch(queue, grid2d(w, h), CopyY{.src = low, .dst = previousLow, .w = w, .h = h, .ch = 4});
    previous = previousLow;
  }
  launch(queue, grid2d(w, h), pitch_accumulate{.w = w, .h = h, .src = lab, .work = work, .ch = 4});
}

#ifdef MORVELLAN_TARGET_IS_CUDA

float* pitchBands(const Queue& queue, float* lab, float* work, float* scratch, int w, int h, const PitchGains& gains)
{
  pitchBandsByKernels(queue, lab, work, scratch, w, h, gains);
  return work;
}

#else

namespace
{

// Lightness as a plane of its own, with an empty accumulator beside it.
struct lightness_plane
{
  const float* lab;
  float* plane;
  float* accumulator;

  MORVELLAN_KERNEL void operator()(Pixels at) const
  {
    storePlane(plane, at, loadRgba(lab, at).r);
    storePlane(accumulator, at, Real(0.0f));
  }
};

// pitch_accumulate from planes, in place on the frame whose a, b and alpha stay.
struct accumulate_planes
{
  static constexpr std::string_view name = "pitch_accumulate";
  const float* accumulator;
  const float* low;
  float* lab;

  MORVELLAN_KERNEL void operator()(Pixels at) const
  {
    Rgba p = loadRgbaInside(lab, at);
    p.r = loadPlaneInside(accumulator, at) + loadPlaneInside(low, at);
    storeRgba(lab, at, p);
  }
};

}  // namespace

float* pitchBands(const Queue& queue, float* lab, float* work, float* scratch, int w, int h, const PitchGains& gains)
{
  const ptrdiff_t plane = static_cast<ptrdiff_t>(w) * h;
  float* accumulator = work;
  float* previous = work + plane;
  float* low = work + 2 * plane;
  launch(queue, grid2d(w, h), lightness_plane{.lab = lab, .plane = previous, .accumulator = accumulator});
  const int bands = pitchBandCount(gains);
  for (int band = 0; band < bands; ++band)
  {
    const auto step = static_cast<size_t>(band);
    const auto addBand = [&](const Pixels& at, Real blurred)
    {
      const Real sum = loadPlaneInside(accumulator, at);
      storePlane(accumulator, at, pitch_sharp::summed(loadPlaneInside(previous, at), blurred, sum, gains[step]));
      return blurred;
    };
    const bool last = band + 1 == bands;
    blurFused(queue, previous, scratch, low, w, h, pitchSigmas[step], addBand,
              last ? "+pitch_sharp" : "+pitch_sharp+CopyY");
    if (!last)
      std::swap(previous, low);
  }
  launch(queue, grid2d(w, h), accumulate_planes{.accumulator = accumulator, .low = low, .lab = lab});
  return lab;
}

#endif

}  // namespace morvellan::MORVELLAN_TARGET
