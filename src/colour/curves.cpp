// The CPU's one copy of each curve's code.
#include "colour/curves.h"

namespace morvellan::MORVELLAN_TARGET
{

#ifndef MORVELLAN_TARGET_IS_CUDA

Rgb decode(const Decoding& decoding, Rgb p)
{
  withCurve(decoding.curve, detail::DecodePixel{decoding, p});
  return p;
}

Rgb encode(const Encoding& encoding, Rgb p)
{
  withCurve(encoding.curve, detail::EncodePixel{encoding, p});
  return p;
}

#endif

}  // namespace morvellan::MORVELLAN_TARGET
