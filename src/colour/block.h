// On the CPU the steps of a colour program run over a block of pixels that lies in planes in the first-level cache.
// Each step is a tight loop over it, so that the choice of a step and of its curve stands outside the pixel loop.
#pragma once

#ifndef MORVELLAN_TARGET_IS_CUDA

#include "colour/program.h"
#include "device/launch.h"

namespace morvellan::MORVELLAN_TARGET
{

struct Block
{
  // A row of a crop may end anywhere in a run, and its last lanes are written before the next row's first.
  alignas(64) float r[runLength + lanes];
  alignas(64) float g[runLength + lanes];
  alignas(64) float b[runLength + lanes];
  alignas(64) float a[runLength + lanes];
};

MORVELLAN_INLINE Rgb loadBlock(const Block& block, int i)
{
  return {load(block.r + i), load(block.g + i), load(block.b + i)};
}

MORVELLAN_INLINE void storeBlock(Block& block, int i, Rgb p)
{
  store(block.r + i, p.r);
  store(block.g + i, p.g);
  store(block.b + i, p.b);
}

// decode and encode, and any step, over the block's first `count` pixels. The fourth channel is not touched.
void decodeBlock(const Decoding& decoding, Block& block, int count);
void encodeBlock(const Encoding& encoding, Block& block, int count);
void applyStep(const Step& step, Block& block, int count);

}  // namespace morvellan::MORVELLAN_TARGET

#endif
