// The halation stage: kernel by kernel on interleaved frames, and on three planes with each round's mix in the blur.
#include "film/halation.h"

#include <array>

#include "device/memory.h"
#include "film/gaussian.h"
#include "film/gaussian_fused.h"

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

struct Round
{
  float sigma, gain;
};

std::array<Round, 4> roundsOf(float breadth)
{
  float sigma = breadth * 0.4f;
  sigma = sigma + sigma;
  sigma = sigma + sigma;
  return {{{sigma, 0.5f}, {2.0f * sigma, 0.25f}, {4.0f * sigma, 0.125f}, {8.0f * sigma, 0.0625f}}};
}

HalationMix mixOf(const HalationSettings& s)
{
  return {.amount = {s.amount[0], s.amount[1], s.amount[2]},
          .keep = {s.keep[0], s.keep[1], s.keep[2]},
          .saturation = s.saturation,
          .exit = makeFilmExit(s.inputGamut)};
}

}  // namespace

void halationByKernels(const Queue& queue, float* image, float* blur, int w, int h, int channels,
                       const HalationSettings& settings)
{
  const size_t pixelCount = static_cast<size_t>(w) * static_cast<size_t>(h);
  const Buffer<float> original(pixelCount * static_cast<size_t>(channels));
  const Buffer<float> plane(pixelCount);
  launch(queue, grid2d(w, h),
         halation_init{.image = image,
                       .original = original.data(),
                       .width = w,
                       .height = h,
                       .channels = channels,
                       .entry = makeFilmEntry(settings.inputGamut)});
  for (const Round round : roundsOf(settings.breadth))
  {
    for (int channel = 0; channel < 3; ++channel)
      blurChannel(queue, image + channel, plane.data(), blur + channel, w, h, round.sigma, channels);
    launch(queue, grid2d(w, h),
           FrequencySharpenHalation{
               .image = image, .blur = blur, .width = w, .height = h, .gain = round.gain, .channels = channels});
  }
  launch(queue, grid2d(w, h),
         halation_linear{.image = image,
                         .blur = blur,
                         .original = original.data(),
                         .width = w,
                         .height = h,
                         .mix = mixOf(settings),
                         .channels = channels});
}

#ifdef MORVELLAN_TARGET_IS_CUDA

void halation(const Queue& queue, float* image, float* blur, int w, int h, int channels,
              const HalationSettings& settings)
{
  halationByKernels(queue, image, blur, w, h, channels, settings);
}

#else

namespace
{

// halation_init into the frame, which becomes the original, and three planes.
struct init_planes
{
  static constexpr std::string_view name = "halation_init";
  float* image;
  std::array<float*, 3> planes;
  int channels;
  FilmEntry entry;

  MORVELLAN_KERNEL void operator()(Pixels at) const
  {
    const Rgb light = filmLight(entry, loadColour(image, at, channels));
    storeColour(image, at, channels, light);
    storePlane(planes[0], at, light.r);
    storePlane(planes[1], at, light.g);
    storePlane(planes[2], at, light.b);
  }
};

// halation_linear from the glow's planes, in place on the frame that holds the original.
struct mix_planes
{
  static constexpr std::string_view name = "halation_linear";
  float* image;
  float* blur;
  std::array<float*, 3> planes;
  int channels;
  HalationMix mix;

  MORVELLAN_KERNEL void operator()(Pixels at) const
  {
    const Rgb glow = {loadPlane(planes[0], at), loadPlane(planes[1], at), loadPlane(planes[2], at)};
    if (channels == 4)
    {
      const Rgba original = loadRgba(image, at);
      const Rgb p = mix(glow, {original.r, original.g, original.b});
      storeRgba(image, at, {p.r, p.g, p.b, original.a});
      storeRgba(blur, at, {p.r, p.g, p.b, original.a});
      return;
    }
    const Rgb p = mix(glow, loadRgb(image, at));
    storeRgb(image, at, p);
    storeRgb(blur, at, p);
  }
};

// FrequencySharpenHalation on a plane, as the last write of its blur.
struct SharpenPlane
{
  const float* sharp;
  float gain;

  MORVELLAN_INLINE Real operator()(Pixels at, Real soft) const
  {
    return FrequencySharpenHalation::mixed(loadPlane(sharp, at), soft, gain);
  }
  MORVELLAN_INLINE void expect(Pixels at) const { __builtin_prefetch(sharp + at.index); }
};

// One round on one channel.
void halationRound(const Queue& queue, Round round, const float* source, float* scratch, float* target, int w, int h)
{
  blurFused<Samples::Finite>(queue, source, scratch, target, w, h, round.sigma, SharpenPlane{source, round.gain},
                             "+FrequencySharpenHalation");
}

}  // namespace

void halation(const Queue& queue, float* image, float* blur, int w, int h, int channels,
              const HalationSettings& settings)
{
  const ptrdiff_t plane = static_cast<ptrdiff_t>(w) * h;
  const Buffer<float> own(static_cast<size_t>(plane) * 3);
  const std::array<float*, 3> planes = {own.data(), own.data() + plane, own.data() + 2 * plane};
  float* scratch = blur;
  float* first = blur + plane;
  float* second = blur + 2 * plane;
  launch(
      queue, grid2d(w, h),
      init_planes{.image = image, .planes = planes, .channels = channels, .entry = makeFilmEntry(settings.inputGamut)});
  const std::array<Round, 4> rounds = roundsOf(settings.breadth);
  for (float* channel : planes)
  {
    halationRound(queue, rounds[0], channel, scratch, first, w, h);
    halationRound(queue, rounds[1], first, scratch, second, w, h);
    halationRound(queue, rounds[2], second, scratch, first, w, h);
    halationRound(queue, rounds[3], first, scratch, channel, w, h);
  }
  launch(queue, grid2d(w, h),
         mix_planes{.image = image, .blur = blur, .planes = planes, .channels = channels, .mix = mixOf(settings)});
}

#endif

}  // namespace morvellan::MORVELLAN_TARGET
