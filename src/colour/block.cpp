// The loops of the steps over a block. Every curve's loop is a function of its own: one function with all of them
// inlined costs the compiler time that grows with the square of their number.
#include "colour/block.h"

#ifndef MORVELLAN_TARGET_IS_CUDA

#include "colour/curves.h"
#include "colour/step.h"

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

template <typename C, int Stage>
MORVELLAN_INLINE void decodeStages(Block& block, int count)
{
  for (int i = 0; i < count; i += lanes)
    storeBlock(block, i, C::template decodeStage<Stage>(loadBlock(block, i)));
  if constexpr (Stage + 1 < C::decodeStages)
    decodeStages<C, Stage + 1>(block, count);
}

template <typename C, int Stage>
MORVELLAN_INLINE void encodeStages(Block& block, int count)
{
  for (int i = 0; i < count; i += lanes)
    storeBlock(block, i, C::template encodeStage<Stage>(loadBlock(block, i)));
  if constexpr (Stage + 1 < C::encodeStages)
    encodeStages<C, Stage + 1>(block, count);
}

MORVELLAN_INLINE void saturate(Block& block, int count)
{
  for (int i = 0; i < count; i += lanes)
  {
    const Rgb p = loadBlock(block, i);
    storeBlock(block, i, {clamp01(p.r), clamp01(p.g), clamp01(p.b)});
  }
}

struct DecodeBlock
{
  const Decoding& decoding;
  Block& block;
  int count;

  template <typename C>
  MORVELLAN_APART void operator()(C) const
  {
    const Decoding local = decoding;
    if constexpr (requires { C::decodeStages; })
    {
      if (local.saturate)
        saturate(block, count);
      decodeStages<C, 0>(block, count);
    }
    else
      for (int i = 0; i < count; i += lanes)
        storeBlock(block, i, detail::decodeCurve<C>(local, loadBlock(block, i)));
  }
};

struct EncodeBlock
{
  const Encoding& encoding;
  Block& block;
  int count;

  template <typename C>
  MORVELLAN_APART void operator()(C) const
  {
    const Encoding local = encoding;
    if constexpr (requires { C::encodeStages; })
    {
      encodeStages<C, 0>(block, count);
      if (local.saturate)
        saturate(block, count);
    }
    else
      for (int i = 0; i < count; i += lanes)
        storeBlock(block, i, detail::encodeCurve<C>(local, loadBlock(block, i)));
  }
};

struct StepBlock
{
  const Step& step;
  Block& block;
  int count;

  template <StepKind Kind>
  MORVELLAN_APART void operator()(KindOf<Kind>) const
  {
    const Step local = step;
    for (int i = 0; i < count; i += lanes)
      storeBlock(block, i, stepped<Kind>(local, loadBlock(block, i)));
  }
};

}  // namespace

void decodeBlock(const Decoding& decoding, Block& block, int count)
{
  withCurve(decoding.curve, DecodeBlock{decoding, block, count});
}

void encodeBlock(const Encoding& encoding, Block& block, int count)
{
  withCurve(encoding.curve, EncodeBlock{encoding, block, count});
}

void applyStep(const Step& step, Block& block, int count)
{
  if (step.kind == StepKind::Decode)
    decodeBlock(step.decoding, block, count);
  else if (step.kind == StepKind::Encode)
    encodeBlock(step.encoding, block, count);
  else
    withKind(step.kind, StepBlock{step, block, count});
}

}  // namespace morvellan::MORVELLAN_TARGET

#endif
