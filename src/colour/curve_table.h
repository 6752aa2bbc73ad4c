// Which transfer curve each colourspace index has, as data: the short table (indices 0 to 45) and the full table
// (0 to 48), with the guards and clamps that belong to the index. The curves themselves are in curves_*.h.
#pragma once

#include <cstdint>

#include "device/target.h"

namespace morvellan::MORVELLAN_TARGET
{

inline constexpr int colourspaceCount = 49;

enum class Curve : uint8_t
{
  Identity,
  Rec709,
  Rec2020,
  Srgb,
  Gamma26,
  Gamma26Positive,  // decodes max(x, 0)
  Gamma24,
  Dcdm,
  Cineon,
  PLogLin,
  AcesCc,
  AcesCct,
  AcesProxy,
  Adx,
  NLog,
  LogC3,      // encodes by the exposure form
  LogC3Full,  // encodes by the published parameters
  Log3G10,
  SLog,
  SLog2,
  FLog2,
  TLog,
  SLog3,
  VLog,
  CLog,
  CLog2,
  CLog3,
  DLog,
  FLog,
  Log113,
  Pq1000,
  Hlg,
  Intermediate,
  LogC4,
  Gen5,
};

// A channel outside the guard is left unchanged.
enum class Guard : uint8_t
{
  None,
  Negative,     // x < 0 or x > 1 stay
  NotPositive,  // x <= 0 or x > 1 stay
};

// Code value to scene-linear.
struct Decoding
{
  Curve curve = Curve::Identity;
  Guard guard = Guard::None;
  bool saturate = false;  // to 0..1 first
};

// Scene-linear to code value.
struct Encoding
{
  Curve curve = Curve::Identity;
  Guard guard = Guard::None;
  bool clamped = false;
  float low = 0.0f, high = 0.0f;
  bool saturate = false;  // the result, to 0..1
};

enum class CurveTable : uint8_t
{
  Short,
  Full,
};

// Decode and encode of a colourspace index; indices without a case are the identity.
Decoding decodingOf(CurveTable table, int colourspace);
Encoding encodingOf(CurveTable table, int colourspace);

// The same curve without anything of its clamp.
constexpr Encoding withoutClamp(Encoding e)
{
  e.clamped = false;
  e.saturate = false;
  return e;
}

// The ACES linear indices carried as PLogLin, so that the native-gamut stages have a log signal to work on.
constexpr bool isAcesLinear(int colourspace)
{
  return colourspace == 4 || colourspace == 5;
}

// Scene-linear inputs.
constexpr bool isLinear(int colourspace)
{
  return colourspace == 0 || colourspace == 4 || colourspace == 5 || colourspace == 30;
}

constexpr bool isPq(int colourspace)
{
  return colourspace == 42 || colourspace == 43;
}

}  // namespace morvellan::MORVELLAN_TARGET
