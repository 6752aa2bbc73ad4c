// Lanes on CUDA: one pixel a thread, so every lane type is a plain scalar behind the CPU's interface.
// Most functions serve the host side of the CUDA build too, where scalar set-up code calls them.
#pragma once

#include <cmath>
#include <cstdint>
#include <cstring>

#include "device/target.h"

namespace morvellan::MORVELLAN_TARGET
{

inline constexpr int lanes = 1;

struct Mask
{
  bool m;
};

struct Int
{
  int32_t v;
  Int() = default;
  MORVELLAN_INLINE Int(int value) : v(value) {}
};

struct Word
{
  uint32_t v;
  Word() = default;
  MORVELLAN_INLINE Word(uint32_t value) : v(value) {}
};

struct Real
{
  float v;
  Real() = default;
  MORVELLAN_INLINE Real(float value) : v(value) {}
};

MORVELLAN_INLINE Real load(const float* at)
{
  return *at;
}
MORVELLAN_INLINE void store(float* at, Real x)
{
  *at = x.v;
}

// A GPU's stores pass no cache by.
MORVELLAN_INLINE void stream(float* at, Real x)
{
  store(at, x);
}

inline void finishStreaming() {}
MORVELLAN_INLINE void expect(const float*, ptrdiff_t) {}
MORVELLAN_INLINE Int load(const int* at)
{
  return *at;
}
MORVELLAN_INLINE void store(int* at, Int x)
{
  *at = x.v;
}
MORVELLAN_INLINE Word load(const uint32_t* at)
{
  return *at;
}
MORVELLAN_INLINE void store(uint32_t* at, Word x)
{
  *at = x.v;
}
MORVELLAN_INLINE Real gather(const float* base, Int index)
{
  return base[index.v];
}
MORVELLAN_INLINE Int gather(const int* base, Int index)
{
  return base[index.v];
}
MORVELLAN_INLINE Real pick(const float (&eight)[8], Int index)
{
  return eight[index.v & 7];
}
MORVELLAN_INLINE Int laneIndex()
{
  return 0;
}

MORVELLAN_INLINE Real operator+(Real a, Real b)
{
  return a.v + b.v;
}
MORVELLAN_INLINE Real operator-(Real a, Real b)
{
  return a.v - b.v;
}
MORVELLAN_INLINE Real operator*(Real a, Real b)
{
  return a.v * b.v;
}
MORVELLAN_INLINE Real operator/(Real a, Real b)
{
  return a.v / b.v;
}
MORVELLAN_INLINE Real operator-(Real a)
{
  return -a.v;
}
MORVELLAN_INLINE Real fma(Real a, Real b, Real c)
{
  return ::fmaf(a.v, b.v, c.v);
}
MORVELLAN_INLINE Real min(Real a, Real b)
{
  return a.v < b.v ? a.v : b.v;
}
MORVELLAN_INLINE Real max(Real a, Real b)
{
  return a.v > b.v ? a.v : b.v;
}
MORVELLAN_INLINE Real abs(Real a)
{
  return ::fabsf(a.v);
}
MORVELLAN_INLINE Real sqrt(Real a)
{
  return ::sqrtf(a.v);
}
MORVELLAN_INLINE Real floor(Real a)
{
  return ::floorf(a.v);
}
MORVELLAN_INLINE Real round(Real a)
{
  return ::rintf(a.v);
}
MORVELLAN_INLINE Real copySign(Real magnitude, Real sign)
{
  return ::copysignf(magnitude.v, sign.v);
}

MORVELLAN_INLINE Mask operator<(Real a, Real b)
{
  return {a.v < b.v};
}
MORVELLAN_INLINE Mask operator<=(Real a, Real b)
{
  return {a.v <= b.v};
}
MORVELLAN_INLINE Mask operator>(Real a, Real b)
{
  return {a.v > b.v};
}
MORVELLAN_INLINE Mask operator>=(Real a, Real b)
{
  return {a.v >= b.v};
}
MORVELLAN_INLINE Mask operator==(Real a, Real b)
{
  return {a.v == b.v};
}
MORVELLAN_INLINE Mask operator!=(Real a, Real b)
{
  return {a.v != b.v};
}
MORVELLAN_INLINE Mask isNan(Real a)
{
  return {a.v != a.v};
}
MORVELLAN_INLINE Mask operator&(Mask a, Mask b)
{
  return {a.m && b.m};
}
MORVELLAN_INLINE Mask operator|(Mask a, Mask b)
{
  return {a.m || b.m};
}
MORVELLAN_INLINE Mask operator!(Mask a)
{
  return {!a.m};
}
MORVELLAN_INLINE bool any(Mask a)
{
  return a.m;
}
MORVELLAN_INLINE bool all(Mask a)
{
  return a.m;
}
MORVELLAN_INLINE Mask firstLanes(int count)
{
  return {count > 0};
}
MORVELLAN_INLINE Real select(Mask m, Real a, Real b)
{
  return m.m ? a.v : b.v;
}
// Larger and smaller of two where a number wins over a NaN on either side.
MORVELLAN_INLINE Real maxNumber(Real a, Real b)
{
  return select(isNan(b), a, max(a, b));
}

MORVELLAN_INLINE Real minNumber(Real a, Real b)
{
  return select(isNan(b), a, min(a, b));
}
MORVELLAN_INLINE Int select(Mask m, Int a, Int b)
{
  return m.m ? a.v : b.v;
}
MORVELLAN_INLINE Word select(Mask m, Word a, Word b)
{
  return m.m ? a.v : b.v;
}

MORVELLAN_INLINE Int operator+(Int a, Int b)
{
  return static_cast<int32_t>(static_cast<uint32_t>(a.v) + static_cast<uint32_t>(b.v));
}
MORVELLAN_INLINE Int operator-(Int a, Int b)
{
  return static_cast<int32_t>(static_cast<uint32_t>(a.v) - static_cast<uint32_t>(b.v));
}
MORVELLAN_INLINE Int operator*(Int a, Int b)
{
  return static_cast<int32_t>(static_cast<uint32_t>(a.v) * static_cast<uint32_t>(b.v));
}
MORVELLAN_INLINE Int operator&(Int a, Int b)
{
  return a.v & b.v;
}
MORVELLAN_INLINE Int operator|(Int a, Int b)
{
  return a.v | b.v;
}
template <int Bits>
MORVELLAN_INLINE Int shiftLeft(Int a)
{
  return static_cast<int32_t>(static_cast<uint32_t>(a.v) << Bits);
}
template <int Bits>
MORVELLAN_INLINE Int shiftRight(Int a)
{
  return a.v >> Bits;
}
MORVELLAN_INLINE Int min(Int a, Int b)
{
  return a.v < b.v ? a.v : b.v;
}
MORVELLAN_INLINE Int max(Int a, Int b)
{
  return a.v > b.v ? a.v : b.v;
}
MORVELLAN_INLINE Mask operator<(Int a, Int b)
{
  return {a.v < b.v};
}
MORVELLAN_INLINE Mask operator>(Int a, Int b)
{
  return {a.v > b.v};
}
MORVELLAN_INLINE Mask operator==(Int a, Int b)
{
  return {a.v == b.v};
}

MORVELLAN_INLINE Word operator+(Word a, Word b)
{
  return a.v + b.v;
}
MORVELLAN_INLINE Word operator-(Word a, Word b)
{
  return a.v - b.v;
}
MORVELLAN_INLINE Word operator*(Word a, Word b)
{
  return a.v * b.v;
}
MORVELLAN_INLINE Word operator&(Word a, Word b)
{
  return a.v & b.v;
}
MORVELLAN_INLINE Word operator|(Word a, Word b)
{
  return a.v | b.v;
}
MORVELLAN_INLINE Word operator^(Word a, Word b)
{
  return a.v ^ b.v;
}
MORVELLAN_INLINE Word exclusiveOr(Word a, Word b, Word c)
{
  return a.v ^ b.v ^ c.v;
}
template <int Bits>
MORVELLAN_INLINE Word shiftLeft(Word a)
{
  return a.v << Bits;
}
template <int Bits>
MORVELLAN_INLINE Word shiftRight(Word a)
{
  return a.v >> Bits;
}
MORVELLAN_INLINE Mask operator<(Word a, Word b)
{
  return {a.v < b.v};
}
MORVELLAN_INLINE Mask operator==(Word a, Word b)
{
  return {a.v == b.v};
}

MORVELLAN_INLINE Real toReal(Int a)
{
  return static_cast<float>(a.v);
}
MORVELLAN_INLINE Real toReal(Word a)
{
  return static_cast<float>(a.v);
}
MORVELLAN_INLINE Int toInt(Real a)
{
  return static_cast<int32_t>(a.v);
}
MORVELLAN_INLINE Int bitsOf(Real a)
{
  int32_t bits;
  memcpy(&bits, &a.v, sizeof bits);
  return bits;
}
MORVELLAN_INLINE Real realOfBits(Int a)
{
  float value;
  memcpy(&value, &a.v, sizeof value);
  return value;
}
MORVELLAN_INLINE Word toWord(Int a)
{
  return static_cast<uint32_t>(a.v);
}
MORVELLAN_INLINE Int toInt(Word a)
{
  return static_cast<int32_t>(a.v);
}

MORVELLAN_INLINE int countOf(Mask m)
{
  return m.m ? 1 : 0;
}
MORVELLAN_INLINE Int packed(Int a, Mask)
{
  return a;
}
MORVELLAN_INLINE Word packed(Word a, Mask)
{
  return a;
}
MORVELLAN_INLINE float firstLane(Real a)
{
  return a.v;
}

MORVELLAN_INLINE void loadInterleaved(const float* at, Real& r, Real& g, Real& b, Real& a)
{
  r = at[0];
  g = at[1];
  b = at[2];
  a = at[3];
}
MORVELLAN_INLINE void storeInterleaved(float* at, Real r, Real g, Real b, Real a)
{
  at[0] = r.v;
  at[1] = g.v;
  at[2] = b.v;
  at[3] = a.v;
}
MORVELLAN_INLINE void loadInterleaved(const float* at, Real& r, Real& g, Real& b)
{
  r = at[0];
  g = at[1];
  b = at[2];
}
MORVELLAN_INLINE void storeInterleaved(float* at, Real r, Real g, Real b)
{
  at[0] = r.v;
  at[1] = g.v;
  at[2] = b.v;
}

}  // namespace morvellan::MORVELLAN_TARGET
