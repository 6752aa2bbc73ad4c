// film_lab_init's decoding on the CPU, over a block of pixels at once.
#pragma once

#ifndef MORVELLAN_TARGET_IS_CUDA

#include "colour/block.h"
#include "film/laboratory_kernels.h"

namespace morvellan::MORVELLAN_TARGET
{

struct ExposureDecode
{
  const float* source;
  float* exposure;
  float* alpha;  // with 4 channels
  int channels;
  FilmEntry entry;

  // The exposure of the `count` pixels from `first`, at most runLength, into its frame and into `block`, and their
  // alpha into its plane. `silver` is the store of each channel, 1 whole.
  MORVELLAN_INLINE void operator()(Rgb silver, ptrdiff_t first, int count, Block& block) const
  {
    const auto at = [&](int i) { return Pixels{0, 0, first + i, count - i < lanes ? count - i : lanes}; };
    for (int i = 0; i < count; i += lanes)
    {
      Rgba p{};
      if (channels == 4)
      {
        p = loadRgba(source, at(i));
        storePlane(alpha, at(i), p.a);
      }
      const Rgb colour = channels == 4 ? Rgb{p.r, p.g, p.b} : loadRgb(source, at(i));
      storeBlock(block, i, filmEntryRange(entry, colour));
    }
    decodeBlock(entry.decoding, block, count);
    for (int i = 0; i < count; i += lanes)
    {
      const Rgb e = latentImage(silver, filmEntryGamut(entry, loadBlock(block, i)));
      storeBlock(block, i, e);
      storeRgb(exposure, at(i), e);
    }
  }
};

}  // namespace morvellan::MORVELLAN_TARGET

#endif
