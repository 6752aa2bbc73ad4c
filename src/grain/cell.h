// What every renderer of grain shares about a cell of the grid: its random numbers.
// The model is that of A. Newson, J. Delon and B. Galerne, "A stochastic film grain model for resolution-independent
// rendering" (2017).
#pragma once

#include <cstdint>

#include "device/lanes.h"

namespace morvellan::MORVELLAN_TARGET
{

// The random numbers are the same on lanes and on one word; `W` is Word or OneWord.
struct OneWord
{
  uint32_t v;
  OneWord() = default;
  MORVELLAN_INLINE OneWord(uint32_t value) : v(value) {}
};

MORVELLAN_INLINE OneWord operator*(OneWord a, OneWord b)
{
  return a.v * b.v;
}
MORVELLAN_INLINE OneWord operator^(OneWord a, OneWord b)
{
  return a.v ^ b.v;
}
MORVELLAN_INLINE OneWord exclusiveOr(OneWord a, OneWord b, OneWord c)
{
  return a.v ^ b.v ^ c.v;
}
template <int Bits>
MORVELLAN_INLINE OneWord shiftLeft(OneWord a)
{
  return a.v << Bits;
}
template <int Bits>
MORVELLAN_INLINE OneWord shiftRight(OneWord a)
{
  return a.v >> Bits;
}

namespace grain
{

// The state of the cell whose coordinates and seed add up to 0.
inline constexpr uint32_t stateOfZero = 663891101u;

// 2^-32: a state as a number in (0, 1]. The product is exact.
inline constexpr float unit = 2.32830644e-10f;

// 2 pi / 2^32: a state as an angle.
inline constexpr float turn = 1.46291812e-09f;

template <typename W>
MORVELLAN_INLINE W hash(W s)
{
  s = exclusiveOr(s, shiftRight<16>(s), W(61u)) * W(9u);
  s = (shiftRight<4>(s) ^ s) * W(668265261u);
  return shiftRight<15>(s) ^ s;
}

// Xorshift; 0 stays 0.
template <typename W>
MORVELLAN_INLINE W step(W s)
{
  s = s ^ shiftLeft<13>(s);
  s = s ^ shiftRight<17>(s);
  return s ^ shiftLeft<5>(s);
}

// The next state with the bits of `turned` turned over.
template <typename W>
MORVELLAN_INLINE W step(W s, W turned)
{
  s = s ^ shiftLeft<13>(s);
  s = s ^ shiftRight<17>(s);
  return exclusiveOr(s, shiftLeft<5>(s), turned);
}

}  // namespace grain

}  // namespace morvellan::MORVELLAN_TARGET
