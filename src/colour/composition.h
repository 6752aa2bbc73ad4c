// What a colour kernel is made of, as data: where its pixels come from, the steps that they pass, where they go.
// The kernels themselves are the rows of composition_rows.h.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "device/target.h"

namespace morvellan::MORVELLAN_TARGET
{

// Where pixels come from. Interleaved frames have `channels` floats a pixel unless the row says how many.
enum class From : uint8_t
{
  Self,    // the destination, in place
  Frame,   // the source
  Crop,    // a rectangle of the source
  Planes,  // one plane a channel
};

enum class To : uint8_t
{
  Self,              // in place; a fourth channel is not touched
  SelfAndCompanion,  // in place, and 0 into the first float of the companion's pixel
  Frame,             // the destination
  FrameAndSource,    // the destination and, in place, the source
  Planes,
};

// The fourth channel on its way to another frame, or to the fourth plane.
enum class Alpha : uint8_t
{
  None,
  Copy,  // where both sides have four channels
  One,
};

// A step, still without the numbers that the launch's arguments decide.
enum class Op : uint8_t
{
  End,

  // Conditions on the index.
  WhereExpanded,    // all but 0, 1, 4, 5, 27, 29 to 34, 42 to 44, 46 and above; else unchanged
  WhereCompressed,  // all but 0, 1, 4, 5, 27, 29 to 34, 46 and above; else unchanged
  WhereLinear,      // 0, 4, 5, 30; else nothing is written

  ExposureAdd,       // the value added, to 0..1
  ExposureMultiply,  // times the value, to 0..469.799988
  Gain,              // times the gain, no clamp
  SoftClip,
  HardClip,

  // Curves by index. The short table's decoders come in three: plain; with PQ code values saturated first; and so with
  // ACES linear carried as PLogLin. The encoders follow them.
  DecodeShort,
  DecodeShortSaturated,
  DecodeCarried,
  DecodeFull,
  EncodeShort,
  EncodeCarried,
  EncodeUnclamped,
  EncodeNative,  // linear data to a log: 0 to Cineon, 4 and 5 to ACEScct, 30 to gamma 2.6
  EncodeFull,

  // The fixed logs of grain.
  EncodeWorkingLog,
  DecodeWorkingLog,
  EncodeLog113,  // after saturation
  DecodeLog113,  // of 0.000001 and above

  // Gamuts by index, and those of the row's linear gamut in its own white or adapted to D65.
  RgbToXyz,
  XyzToRgbShort,
  XyzToRgbFull,
  GamutToXyz,
  GamutToXyzD65,
  XyzD65ToGamut,

  ToLabRounded,
  FromLabRounded,
  ToLabExact,
  FromLabExact,

  // Range compression by the luminance of the row's gamut in its two precisions, or by index.
  CompressA,
  CompressB,
  CompressShort,
  CompressShortCineon,  // Cineon with BT.709's rounded luminance
  CompressFull,
  ExpandA,
  ExpandB,
  ExpandShort,
  ExpandFull,
  ExpandLinear,  // the index's linear gamut in precision B

  RgbToLuma,
  LumaToRgb,
};

inline constexpr int longestComposition = 6;

struct Composition
{
  std::string_view pattern;  // <g> stands for each linear gamut, <v> for the video ones, <x> for AP0 and AP1
  From from;
  To to;
  Alpha alpha = Alpha::None;
  std::array<Op, longestComposition> ops{};
  uint8_t floatsIn = 0, floatsOut = 0;  // 0: the launch's `channels`
};

}  // namespace morvellan::MORVELLAN_TARGET
