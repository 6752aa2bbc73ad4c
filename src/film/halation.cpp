// The halation stage: kernel by kernel on interleaved frames, and on three planes with each round's mix in the blur.
#include "film/halation.h"

#include <array>

#include "colour/block.h"
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
          .share = {1.0f / (s.amount[0] + 1.0f), 1.0f / (s.amount[1] + 1.0f), 1.0f / (s.amount[2] + 1.0f)},
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

MORVELLAN_INLINE Pixels pixelsOfRun(ptrdiff_t first, int i, int count)
{
  return {0, 0, first + i, count - i < lanes ? count - i : lanes};
}

// halation_init into the frame, which becomes the original, and three planes.
struct init_planes
{
  static constexpr std::string_view name = "halation_init";
  float* image;
  std::array<PlaneRows, 3> planes;
  int channels;
  FilmEntry entry;

  MORVELLAN_KERNEL void operator()(ptrdiff_t first, int count) const
  {
    Block block;
    for (int i = 0; i < count; i += lanes)
      storeBlock(block, i, filmEntryRange(entry, loadColour(image, pixelsOfRun(first, i, count), channels)));
    decodeBlock(entry.decoding, block, count);
    for (int i = 0; i < count; i += lanes)
    {
      const Pixels at = pixelsOfRun(first, i, count);
      const Rgb light = heldLight(filmEntryGamut(entry, loadBlock(block, i)));
      storeColour(image, at, channels, light);
      planes[0].write(at, light.r);
      planes[1].write(at, light.g);
      planes[2].write(at, light.b);
    }
  }

  void finish() const { finishStreaming(); }
};

// halation_linear from the glow's planes, in place on the frame that holds the original.
struct mix_planes
{
  static constexpr std::string_view name = "halation_linear";
  float* image;
  std::array<float*, 3> planes;
  int channels;
  HalationMix mix;

  MORVELLAN_KERNEL void operator()(ptrdiff_t first, int count) const
  {
    Block block;
    for (int i = 0; i < count; i += lanes)
    {
      const Pixels at = pixelsOfRun(first, i, count);
      const Rgb glow = {loadPlaneInside(planes[0], at), loadPlaneInside(planes[1], at), loadPlaneInside(planes[2], at)};
      const Rgb light = mix.light(glow, loadColour(image, at, channels));
      storeBlock(block, i, mix.exit.hasMatrix ? multiply(mix.exit.toInput, light) : light);
    }
    encodeBlock(mix.exit.encoding, block, count);
    for (int i = 0; i < count; i += lanes)
      storeColour(image, pixelsOfRun(first, i, count), channels, loadBlock(block, i));
  }
};

// FrequencySharpenHalation on a plane, as the last write of its blur.
struct SharpenPlane
{
  const float* sharp;
  float gain;

  MORVELLAN_INLINE Real operator()(Pixels at, Real soft) const
  {
    return FrequencySharpenHalation::mixed(loadPlaneInside(sharp, at), soft, gain);
  }
  MORVELLAN_INLINE void fetch(ptrdiff_t first, ptrdiff_t count) const { MORVELLAN_TARGET::fetch(sharp + first, count); }
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
  const std::array<Round, 4> rounds = roundsOf(settings.breadth);
  // A blur of four channels holds the three planes and the one that the rounds go to and fro with.
  const int scratchPlanes = blurIsWide(rounds.back().sigma) ? 1 : 0;
  const Buffer<float> own(static_cast<size_t>(plane) * static_cast<size_t>(scratchPlanes + 4 - channels));
  const std::array<float*, 3> planes = {blur, blur + plane, blur + 2 * plane};
  float* const other = channels == 4 ? blur + 3 * plane : own.data() + scratchPlanes * plane;
  launch(queue, runs(w, h),
         init_planes{.image = image,
                     .planes = {PlaneRows(planes[0], w, h), PlaneRows(planes[1], w, h), PlaneRows(planes[2], w, h)},
                     .channels = channels,
                     .entry = makeFilmEntry(settings.inputGamut)});
  for (float* channel : planes)
  {
    halationRound(queue, rounds[0], channel, own.data(), other, w, h);
    halationRound(queue, rounds[1], other, own.data(), channel, w, h);
    halationRound(queue, rounds[2], channel, own.data(), other, w, h);
    halationRound(queue, rounds[3], other, own.data(), channel, w, h);
  }
  launch(queue, runs(w, h), mix_planes{.image = image, .planes = planes, .channels = channels, .mix = mixOf(settings)});
}

#endif

}  // namespace morvellan::MORVELLAN_TARGET
