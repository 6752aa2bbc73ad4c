// The colour attributes as settings and as what a launch needs of them: saturation, hue, chroma and vibrance by six hue
// vectors, custom hue bands and intensity zones. Everything that is one number for a launch is worked out here.
#pragma once

#include <array>
#include <span>

#include "device/target.h"

namespace morvellan::MORVELLAN_TARGET
{

// Settings, in the units of the frame's block of values. Axes stand in the order red, magenta, blue, cyan, green,
// yellow; hues and widths are in hue units of 60 degrees.
struct ZoneSettings
{
  int mode = 0;       // 0 no zone, 1 low side, 2 high side
  bool both = false;  // with mode 1: the high side acts too
  float low = 1.0f;   // the pull towards the average: 1 leaves a channel alone
  float lowRange = 1.0f;
  float high = 1.0f;
  float highRange = 1.0f;
};

struct BandSettings
{
  bool live = false;
  float hue = 0.0f;    // the band stands at hue 2 - this
  float width = 1.0f;  // half-width
  float strength = 1.0f;
};

struct AttributeSettings
{
  bool vectorLive = false;
  float axis[6] = {};
  float vectorStrength = 1.0f;
  BandSettings custom = {};
  ZoneSettings zone = {};
};

struct AttributeBlock
{
  AttributeSettings saturation, hue, chroma, vibrance;
};

// The strength of a refinement's hue band comes without its width; a custom hue band's comes multiplied by it.
struct RefinementSettings
{
  bool live = false;
  BandSettings saturation = {}, hue = {}, chroma = {}, vibrance = {};
  ZoneSettings zone = {};
};

inline constexpr int soupRefinements = 11;
inline constexpr int printRefinements = 6;

// A band's window over hue: a tent of height 1 over x = 2, x being (hue + centre) modulo 6. Without a width it is 1 for
// every x beyond 2, which is what a quotient by 0 comes to within its bounds.
struct HueWindow
{
  float fromMiddle = 0.0f;  // centre - 2
  float perWidth = 1.0f;    // of the half-width; 0 without one
};

struct SaturationBand
{
  bool on = false;
  HueWindow window = {};
  float strength = 1.0f;
};

struct HueBand
{
  bool on = false;
  HueWindow window = {};
  float move[3] = {};  // of red, green, blue at full weight
};

struct ChromaBand
{
  bool on = false;
  HueWindow window = {};
  float excess = 0.0f;  // the gain, less 1
  float flank = 1.0f;   // exponent of the window's flank: min(1, 2 / gain)
};

struct VibranceBand
{
  bool on = false;
  HueWindow window = {};
  float exponent = 1.0f;
};

struct ZoneWeights
{
  bool lowOn = false, highOn = false;
  float low = 1.0f, lowRange = 1.0f, high = 1.0f, highRange = 1.0f;
};

struct SaturationVectors
{
  bool on = false;
  float axis[6] = {};
  float strength = 1.0f;
};

struct HueVectors
{
  bool on = false;
  float axis[6] = {};
  float strength = 1.0f;
};

struct ChromaVectors
{
  bool on = false;
  float excess[6] = {};  // the gains, less 1
  float flank[6] = {};
  bool flanked = false;  // whether any flank is not 1
  float shape = 0.0f;    // 1 - the overall strength
};

struct VibranceVectors
{
  bool on = false;
  float exponent[6] = {};
};

// The four attributes' bands, and their common zone where the bands are a refinement's.
struct RefinementBands
{
  SaturationBand saturation;
  HueBand hue;
  ChromaBand chroma;
  VibranceBand vibrance;
  ZoneWeights zone;
};

// The attribute engine of one launch. Only refinements that are live stand in the list, in their order.
struct AttributeEngine
{
  bool on = false;
  SaturationVectors saturationVectors;
  HueVectors hueVectors;
  ChromaVectors chromaVectors;
  VibranceVectors vibranceVectors;
  RefinementBands custom;
  ZoneWeights saturationZone, hueZone, chromaZone, vibranceZone;
  int refinementCount = 0;
  RefinementBands refinements[soupRefinements] = {};
};

// Whether any of the four attributes has a live vector; a frame without takes the plain member of a kernel family.
bool anyVector(const AttributeBlock& block);

// `refinements` holds at most `soupRefinements`; with `refine` off none of them acts.
AttributeEngine makeAttributeEngine(const AttributeBlock& block, bool refine,
                                    std::span<const RefinementSettings> refinements);

}  // namespace morvellan::MORVELLAN_TARGET
