// The transpose of a plane, and the transpose of a square of lanes in registers that the fast filters use in its place.
#pragma once

#include "device/launch.h"

namespace morvellan::MORVELLAN_TARGET
{

// target[(x * height + y) * stride] = source[y * width + x], for a launch over grid2d(width, height). `source` is
// tight, `target` has `stride` floats between pixels; the two must not overlap.
struct u_d_l_r
{
  const float* source;
  float* target;
  int width, height, stride;

  MORVELLAN_KERNEL void operator()(Pixels at) const
  {
    const float* from = source + at.index;
    float* to = target + (static_cast<ptrdiff_t>(at.x) * height + at.y) * stride;
    for (int i = 0; i < at.count; ++i)
      to[static_cast<ptrdiff_t>(i) * height * stride] = from[i];
  }
};

#ifndef MORVELLAN_TARGET_IS_CUDA

namespace detail
{

using WideTag = hw::Repartition<double, RealTag>;

MORVELLAN_INLINE Real lowHalvesOfPairs(Real a, Real b)
{
  const WideTag wide;
  return hw::BitCast(RealTag(), hw::InterleaveLower(wide, hw::BitCast(wide, a.v), hw::BitCast(wide, b.v)));
}

MORVELLAN_INLINE Real highHalvesOfPairs(Real a, Real b)
{
  const WideTag wide;
  return hw::BitCast(RealTag(), hw::InterleaveUpper(wide, hw::BitCast(wide, a.v), hw::BitCast(wide, b.v)));
}

// Four vectors transposed as 4 by 4 squares, one square in each 128-bit block.
MORVELLAN_INLINE void transposeBlocks(Real& a, Real& b, Real& c, Real& d)
{
  const RealTag tag;
  const Real ab0 = hw::InterleaveLower(tag, a.v, b.v);
  const Real ab1 = hw::InterleaveUpper(tag, a.v, b.v);
  const Real cd0 = hw::InterleaveLower(tag, c.v, d.v);
  const Real cd1 = hw::InterleaveUpper(tag, c.v, d.v);
  a = lowHalvesOfPairs(ab0, cd0);
  b = highHalvesOfPairs(ab0, cd0);
  c = lowHalvesOfPairs(ab1, cd1);
  d = highHalvesOfPairs(ab1, cd1);
}

}  // namespace detail

// lanes[i] lane j <-> lanes[j] lane i, for `lanes` vectors.
MORVELLAN_INLINE void transposeLanes(Real (&v)[lanes])
{
  MORVELLAN_UNROLL
  for (int i = 0; i < lanes; i += 4)
    detail::transposeBlocks(v[i], v[i + 1], v[i + 2], v[i + 3]);
#if HWY_MAX_BYTES == 32
  const RealTag tag;
  MORVELLAN_UNROLL
  for (int i = 0; i < 4; ++i)
  {
    const Real low = hw::ConcatLowerLower(tag, v[i + 4].v, v[i].v);
    v[i + 4] = hw::ConcatUpperUpper(tag, v[i + 4].v, v[i].v);
    v[i] = low;
  }
#elif HWY_MAX_BYTES == 64
  MORVELLAN_UNROLL
  for (int i = 0; i < 4; ++i)
  {
    const auto even01 = _mm512_shuffle_f32x4(v[i].v.raw, v[i + 4].v.raw, 0x88);
    const auto even23 = _mm512_shuffle_f32x4(v[i + 8].v.raw, v[i + 12].v.raw, 0x88);
    const auto odd01 = _mm512_shuffle_f32x4(v[i].v.raw, v[i + 4].v.raw, 0xdd);
    const auto odd23 = _mm512_shuffle_f32x4(v[i + 8].v.raw, v[i + 12].v.raw, 0xdd);
    v[i].v.raw = _mm512_shuffle_f32x4(even01, even23, 0x88);
    v[i + 4].v.raw = _mm512_shuffle_f32x4(odd01, odd23, 0x88);
    v[i + 8].v.raw = _mm512_shuffle_f32x4(even01, even23, 0xdd);
    v[i + 12].v.raw = _mm512_shuffle_f32x4(odd01, odd23, 0xdd);
  }
#endif
}

#endif

}  // namespace morvellan::MORVELLAN_TARGET
