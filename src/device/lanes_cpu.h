// Lanes on the CPU, on Highway's statically dispatched vectors: 4, 8 or 16 floats by the target's flags.
// Comparisons give a Mask over floats; integer lanes share its width, so one Mask serves all three types.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include <hwy/cache_control.h>
#include <hwy/highway.h>

#include "device/target.h"

namespace morvellan::MORVELLAN_TARGET
{

namespace hw = hwy::HWY_NAMESPACE;

using RealTag = hw::ScalableTag<float>;
using IntTag = hw::RebindToSigned<RealTag>;
using WordTag = hw::RebindToUnsigned<RealTag>;

inline constexpr int lanes = static_cast<int>(hw::MaxLanes(RealTag()));

struct Mask
{
  hw::Mask<RealTag> m;
};

struct Int
{
  hw::Vec<IntTag> v;
  Int() = default;
  MORVELLAN_INLINE Int(hw::Vec<IntTag> vector) : v(vector) {}
  MORVELLAN_INLINE Int(int value) : v(hw::Set(IntTag(), value)) {}
};

struct Word
{
  hw::Vec<WordTag> v;
  Word() = default;
  MORVELLAN_INLINE Word(hw::Vec<WordTag> vector) : v(vector) {}
  MORVELLAN_INLINE Word(uint32_t value) : v(hw::Set(WordTag(), value)) {}
};

struct Real
{
  hw::Vec<RealTag> v;
  Real() = default;
  MORVELLAN_INLINE Real(hw::Vec<RealTag> vector) : v(vector) {}
  MORVELLAN_INLINE Real(float value) : v(hw::Set(RealTag(), value)) {}
};

// Memory. Rows need not be aligned; what is read or written is `lanes` values from `at`.
MORVELLAN_INLINE Real load(const float* at)
{
  return hw::LoadU(RealTag(), at);
}
MORVELLAN_INLINE void store(float* at, Real x)
{
  hw::StoreU(x.v, RealTag(), at);
}
MORVELLAN_INLINE Int load(const int* at)
{
  return hw::LoadU(IntTag(), at);
}
MORVELLAN_INLINE void store(int* at, Int x)
{
  hw::StoreU(x.v, IntTag(), at);
}
MORVELLAN_INLINE Word load(const uint32_t* at)
{
  return hw::LoadU(WordTag(), at);
}
MORVELLAN_INLINE void store(uint32_t* at, Word x)
{
  hw::StoreU(x.v, WordTag(), at);
}
// base[index] lane by lane; every index must be inside the array.
MORVELLAN_INLINE Real gather(const float* base, Int index)
{
  return hw::GatherIndex(RealTag(), base, index.v);
}
MORVELLAN_INLINE Int gather(const int* base, Int index)
{
  return hw::GatherIndex(IntTag(), base, index.v);
}
// One of eight numbers, by the low three bits of each lane's index.
MORVELLAN_INLINE Real pick(const float (&eight)[8], Int index)
{
  const auto low = [&](int bits) { return hw::IndicesFromVec(RealTag(), hw::And(index.v, hw::Set(IntTag(), bits))); };
  if constexpr (lanes == 16)
  {
    const auto half = hw::LoadU(hw::Half<RealTag>(), eight);
    return hw::TableLookupLanes(hw::Combine(RealTag(), half, half), low(7));
  }
  else if constexpr (lanes == 8)
    return hw::TableLookupLanes(load(eight).v, low(7));
  else
  {
    const auto upper = hw::TestBit(index.v, hw::Set(IntTag(), 4));
    return hw::IfThenElse(hw::RebindMask(RealTag(), upper), hw::TableLookupLanes(load(eight + 4).v, low(3)),
                          hw::TableLookupLanes(load(eight).v, low(3)));
  }
}
// 0, 1, 2, ... along the lanes.
MORVELLAN_INLINE Int laneIndex()
{
  return hw::Iota(IntTag(), 0);
}

// Real arithmetic. Products and sums are fused only by fma.
MORVELLAN_INLINE Real operator+(Real a, Real b)
{
  return hw::Add(a.v, b.v);
}
MORVELLAN_INLINE Real operator-(Real a, Real b)
{
  return hw::Sub(a.v, b.v);
}
MORVELLAN_INLINE Real operator*(Real a, Real b)
{
  return hw::Mul(a.v, b.v);
}
MORVELLAN_INLINE Real operator/(Real a, Real b)
{
  return hw::Div(a.v, b.v);
}
MORVELLAN_INLINE Real operator-(Real a)
{
  return hw::Neg(a.v);
}
// a * b + c, fused where the machine can.
MORVELLAN_INLINE Real fma(Real a, Real b, Real c)
{
  return hw::MulAdd(a.v, b.v, c.v);
}
// The smaller and the larger; a NaN in the first argument gives the second.
MORVELLAN_INLINE Real min(Real a, Real b)
{
  return hw::Min(a.v, b.v);
}
MORVELLAN_INLINE Real max(Real a, Real b)
{
  return hw::Max(a.v, b.v);
}
MORVELLAN_INLINE Real abs(Real a)
{
  return hw::Abs(a.v);
}
MORVELLAN_INLINE Real sqrt(Real a)
{
  return hw::Sqrt(a.v);
}
MORVELLAN_INLINE Real floor(Real a)
{
  return hw::Floor(a.v);
}
// To the nearest integer, ties to even.
MORVELLAN_INLINE Real round(Real a)
{
  return hw::Round(a.v);
}
MORVELLAN_INLINE Real copySign(Real magnitude, Real sign)
{
  return hw::CopySign(magnitude.v, sign.v);
}

// Comparisons. Every one with a NaN is false but !=.
MORVELLAN_INLINE Mask operator<(Real a, Real b)
{
  return {hw::Lt(a.v, b.v)};
}
MORVELLAN_INLINE Mask operator<=(Real a, Real b)
{
  return {hw::Le(a.v, b.v)};
}
MORVELLAN_INLINE Mask operator>(Real a, Real b)
{
  return {hw::Gt(a.v, b.v)};
}
MORVELLAN_INLINE Mask operator>=(Real a, Real b)
{
  return {hw::Ge(a.v, b.v)};
}
MORVELLAN_INLINE Mask operator==(Real a, Real b)
{
  return {hw::Eq(a.v, b.v)};
}
MORVELLAN_INLINE Mask operator!=(Real a, Real b)
{
  return {hw::Not(hw::Eq(a.v, b.v))};
}
MORVELLAN_INLINE Mask isNan(Real a)
{
  return {hw::IsNaN(a.v)};
}

MORVELLAN_INLINE Mask operator&(Mask a, Mask b)
{
  return {hw::And(a.m, b.m)};
}
MORVELLAN_INLINE Mask operator|(Mask a, Mask b)
{
  return {hw::Or(a.m, b.m)};
}
MORVELLAN_INLINE Mask operator!(Mask a)
{
  return {hw::Not(a.m)};
}
MORVELLAN_INLINE bool any(Mask a)
{
  return !hw::AllFalse(RealTag(), a.m);
}
MORVELLAN_INLINE bool all(Mask a)
{
  return hw::AllTrue(RealTag(), a.m);
}
// The first `count` lanes.
MORVELLAN_INLINE Mask firstLanes(int count)
{
  return {hw::FirstN(RealTag(), static_cast<size_t>(count))};
}

// a where the mask holds, b elsewhere.
MORVELLAN_INLINE Real select(Mask m, Real a, Real b)
{
  return hw::IfThenElse(m.m, a.v, b.v);
}

// Larger and smaller of two where a number wins over a NaN on either side.
MORVELLAN_INLINE Real maxNumber(Real a, Real b)
{
#if HWY_TARGET <= HWY_AVX3
  return {hw::Vec<RealTag>{_mm512_range_ps(a.v.raw, b.v.raw, 5)}};
#else
  return select(isNan(b), a, max(a, b));
#endif
}
MORVELLAN_INLINE Real minNumber(Real a, Real b)
{
#if HWY_TARGET <= HWY_AVX3
  return {hw::Vec<RealTag>{_mm512_range_ps(a.v.raw, b.v.raw, 4)}};
#else
  return select(isNan(b), a, min(a, b));
#endif
}
MORVELLAN_INLINE Int select(Mask m, Int a, Int b)
{
  return hw::IfThenElse(hw::RebindMask(IntTag(), m.m), a.v, b.v);
}
MORVELLAN_INLINE Word select(Mask m, Word a, Word b)
{
  return hw::IfThenElse(hw::RebindMask(WordTag(), m.m), a.v, b.v);
}

// Integer lanes.
MORVELLAN_INLINE Int operator+(Int a, Int b)
{
  return hw::Add(a.v, b.v);
}
MORVELLAN_INLINE Int operator-(Int a, Int b)
{
  return hw::Sub(a.v, b.v);
}
MORVELLAN_INLINE Int operator*(Int a, Int b)
{
  return hw::Mul(a.v, b.v);
}
MORVELLAN_INLINE Int operator&(Int a, Int b)
{
  return hw::And(a.v, b.v);
}
MORVELLAN_INLINE Int operator|(Int a, Int b)
{
  return hw::Or(a.v, b.v);
}
template <int Bits>
MORVELLAN_INLINE Int shiftLeft(Int a)
{
  return hw::ShiftLeft<Bits>(a.v);
}
template <int Bits>
MORVELLAN_INLINE Int shiftRight(Int a)
{
  return hw::ShiftRight<Bits>(a.v);
}
MORVELLAN_INLINE Int min(Int a, Int b)
{
  return hw::Min(a.v, b.v);
}
MORVELLAN_INLINE Int max(Int a, Int b)
{
  return hw::Max(a.v, b.v);
}
MORVELLAN_INLINE Mask operator<(Int a, Int b)
{
  return {hw::RebindMask(RealTag(), hw::Lt(a.v, b.v))};
}
MORVELLAN_INLINE Mask operator>(Int a, Int b)
{
  return {hw::RebindMask(RealTag(), hw::Gt(a.v, b.v))};
}
MORVELLAN_INLINE Mask operator==(Int a, Int b)
{
  return {hw::RebindMask(RealTag(), hw::Eq(a.v, b.v))};
}

MORVELLAN_INLINE Word operator+(Word a, Word b)
{
  return hw::Add(a.v, b.v);
}
MORVELLAN_INLINE Word operator-(Word a, Word b)
{
  return hw::Sub(a.v, b.v);
}
MORVELLAN_INLINE Word operator*(Word a, Word b)
{
  return hw::Mul(a.v, b.v);
}
MORVELLAN_INLINE Word operator&(Word a, Word b)
{
  return hw::And(a.v, b.v);
}
MORVELLAN_INLINE Word operator|(Word a, Word b)
{
  return hw::Or(a.v, b.v);
}
MORVELLAN_INLINE Word operator^(Word a, Word b)
{
  return hw::Xor(a.v, b.v);
}
MORVELLAN_INLINE Word exclusiveOr(Word a, Word b, Word c)
{
  return hw::Xor3(a.v, b.v, c.v);
}
template <int Bits>
MORVELLAN_INLINE Word shiftLeft(Word a)
{
  return hw::ShiftLeft<Bits>(a.v);
}
template <int Bits>
MORVELLAN_INLINE Word shiftRight(Word a)
{
  return hw::ShiftRight<Bits>(a.v);
}
MORVELLAN_INLINE Mask operator<(Word a, Word b)
{
  return {hw::RebindMask(RealTag(), hw::Lt(a.v, b.v))};
}
MORVELLAN_INLINE Mask operator==(Word a, Word b)
{
  return {hw::RebindMask(RealTag(), hw::Eq(a.v, b.v))};
}

// Conversions. toInt drops the fraction; what does not fit an int is not defined by it, so clamp first.
MORVELLAN_INLINE Real toReal(Int a)
{
  return hw::ConvertTo(RealTag(), a.v);
}
// To the nearest float, ties to even.
MORVELLAN_INLINE Real toReal(Word a)
{
  return hw::ConvertTo(RealTag(), a.v);
}
MORVELLAN_INLINE Int toInt(Real a)
{
  return hw::ConvertTo(IntTag(), a.v);
}
MORVELLAN_INLINE Int bitsOf(Real a)
{
  return hw::BitCast(IntTag(), a.v);
}
MORVELLAN_INLINE Real realOfBits(Int a)
{
  return hw::BitCast(RealTag(), a.v);
}
MORVELLAN_INLINE Word toWord(Int a)
{
  return hw::BitCast(WordTag(), a.v);
}
MORVELLAN_INLINE Int toInt(Word a)
{
  return hw::BitCast(IntTag(), a.v);
}

namespace detail
{

// For each set of lanes their indices, then the others'. The library's own table for this is rebuilt at every call.
template <int Lanes>
inline constexpr auto packedOrders = []
{
  std::array<std::array<uint8_t, Lanes>, size_t{1} << Lanes> orders{};
  for (size_t set = 0; set < orders.size(); ++set)
  {
    size_t to = 0;
    for (const bool chosen : {true, false})
      for (size_t lane = 0; lane < Lanes; ++lane)
        if (((set >> lane & 1) != 0) == chosen)
          orders[set][to++] = static_cast<uint8_t>(lane);
  }
  return orders;
}();

}  // namespace detail

// The lanes that a mask holds, packed to the front. Vectors are stored whole: what follows the packed lanes is not
// defined.
MORVELLAN_INLINE int countOf(Mask m)
{
  return static_cast<int>(hw::CountTrue(RealTag(), m.m));
}
template <int Lanes = lanes>
MORVELLAN_INLINE Word packed(Word a, Mask m)
{
  if constexpr (Lanes > 8)
    return hw::Compress(a.v, hw::RebindMask(WordTag(), m.m));
  else
  {
    uint8_t bits = 0;
    hw::StoreMaskBits(RealTag(), m.m, &bits);
    const auto order = hw::LoadU(hw::Rebind<uint8_t, WordTag>(), detail::packedOrders<Lanes>[bits].data());
    return hw::TableLookupLanes(a.v, hw::IndicesFromVec(WordTag(), hw::PromoteTo(WordTag(), order)));
  }
}
MORVELLAN_INLINE Int packed(Int a, Mask m)
{
  return toInt(packed(toWord(a), m));
}
MORVELLAN_INLINE float firstLane(Real a)
{
  return hw::GetLane(a.v);
}

// Interleaved pixels: four or three channels of `lanes` neighbouring pixels.
MORVELLAN_INLINE void loadInterleaved(const float* at, Real& r, Real& g, Real& b, Real& a)
{
  hw::LoadInterleaved4(RealTag(), at, r.v, g.v, b.v, a.v);
}
MORVELLAN_INLINE void storeInterleaved(float* at, Real r, Real g, Real b, Real a)
{
  hw::StoreInterleaved4(r.v, g.v, b.v, a.v, RealTag(), at);
}
MORVELLAN_INLINE void loadInterleaved(const float* at, Real& r, Real& g, Real& b)
{
  hw::LoadInterleaved3(RealTag(), at, r.v, g.v, b.v);
}
MORVELLAN_INLINE void storeInterleaved(float* at, Real r, Real g, Real b)
{
  hw::StoreInterleaved3(r.v, g.v, b.v, RealTag(), at);
}

// Four channels with the pixels in an order of their own, which the store undoes: a transpose inside 128-bit blocks,
// about half the shuffles. For work on pixels that does not ask which lane is which.
MORVELLAN_INLINE void transposeBlocks(Real& a, Real& b, Real& c, Real& d)
{
  using Pairs = hw::RepartitionToWide<RealTag>;
  const auto pairs = [](hw::Vec<RealTag> low, hw::Vec<RealTag> high, bool upper)
  {
    const auto l = hw::BitCast(Pairs(), low);
    const auto h = hw::BitCast(Pairs(), high);
    return hw::BitCast(RealTag(), upper ? hw::InterleaveUpper(Pairs(), l, h) : hw::InterleaveLower(Pairs(), l, h));
  };
  const auto ab = hw::InterleaveLower(RealTag(), a.v, b.v);
  const auto abUpper = hw::InterleaveUpper(RealTag(), a.v, b.v);
  const auto cd = hw::InterleaveLower(RealTag(), c.v, d.v);
  const auto cdUpper = hw::InterleaveUpper(RealTag(), c.v, d.v);
  a = pairs(ab, cd, false);
  b = pairs(ab, cd, true);
  c = pairs(abUpper, cdUpper, false);
  d = pairs(abUpper, cdUpper, true);
}

MORVELLAN_INLINE void loadPixelsInAnyOrder(const float* at, Real& r, Real& g, Real& b, Real& a)
{
  r = load(at);
  g = load(at + lanes);
  b = load(at + 2 * lanes);
  a = load(at + 3 * lanes);
  transposeBlocks(r, g, b, a);
}

MORVELLAN_INLINE void storePixelsInAnyOrder(float* at, Real r, Real g, Real b, Real a)
{
  transposeBlocks(r, g, b, a);
  store(at, r);
  store(at + lanes, g);
  store(at + 2 * lanes, b);
  store(at + 3 * lanes, a);
}

// The same past the caches, for frames too large to be found there again; `at` is 64-byte aligned. Whoever streams ends
// with finishStreaming before other threads read.
MORVELLAN_INLINE void streamPixelsInAnyOrder(float* at, Real r, Real g, Real b, Real a)
{
  transposeBlocks(r, g, b, a);
  hw::Stream(r.v, RealTag(), at);
  hw::Stream(g.v, RealTag(), at + lanes);
  hw::Stream(b.v, RealTag(), at + 2 * lanes);
  hw::Stream(a.v, RealTag(), at + 3 * lanes);
}

// One vector past the caches; `at` is aligned to a vector.
MORVELLAN_INLINE void stream(float* at, Real x)
{
  hw::Stream(x.v, RealTag(), at);
}

MORVELLAN_INLINE void finishStreaming()
{
  hwy::FlushStream();
}

// Has `count` floats brought into the second-level cache while others are worked on, for memory that is read faster or
// less evenly than a processor's own prefetch follows. (A fetch into the first level would hold one of its few miss
// registers until the line has come.) They may lie beyond the memory's end.
MORVELLAN_INLINE void expect(const float* from, ptrdiff_t count)
{
  constexpr int forReading = 0;
  constexpr int secondLevel = 2;
  constexpr ptrdiff_t line = 64 / sizeof(float);
  for (ptrdiff_t i = 0; i < count; i += line)
    __builtin_prefetch(from + i, forReading, secondLevel);
}

}  // namespace morvellan::MORVELLAN_TARGET
