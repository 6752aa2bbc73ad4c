// Capture of the colour attributes and refinements, which the negative and the print have alike but for a few
// constants. The constants that differ are data here; what they act on is written once.
#pragma once

#include "pipeline/host/frame_params.h"
#include "pipeline/host/parameter_names.h"
#include "pipeline/host/parameter_values.h"

#include <span>

namespace morvellan
{

struct ZoneNames
{
  FamilyName choice;
  FamilyName low;
  FamilyName lowRange;
  FamilyName high;
  FamilyName highRange;
};

constexpr ZoneNames zoneNames(std::string_view stem)
{
  return {FamilyName(stem, ""), FamilyName(stem, "Low"), FamilyName(stem, "LowRange"), FamilyName(stem, "High"),
          FamilyName(stem, "HighRange")};
}

struct BandNames
{
  FamilyName hue;
  FamilyName width;
  FamilyName strength;
};

constexpr BandNames bandNames(std::string_view stem)
{
  return {FamilyName(stem, "Hue"), FamilyName(stem, "Width"), FamilyName(stem, "Strength")};
}

struct AttributeNames
{
  std::array<FamilyName, 6> axis;
  FamilyName strength;
  BandNames custom;
  ZoneNames zone;
};

// word: the attribute's name in its axes, shortWord: in its zone.
constexpr AttributeNames attributeNames(std::string_view prefix, std::string_view word, std::string_view shortWord)
{
  const FamilyName stem(prefix, word);
  return {{FamilyName(stem, "Red"), FamilyName(stem, "Magenta"), FamilyName(stem, "Blue"), FamilyName(stem, "Cyan"),
           FamilyName(stem, "Green"), FamilyName(stem, "Yellow")},
          FamilyName(stem, "Strength"),
          bandNames(FamilyName(stem, "Custom")),
          zoneNames(FamilyName(prefix, shortWord, "Zone"))};
}

struct AttributesNames
{
  AttributeNames saturation;
  AttributeNames hue;
  AttributeNames chroma;
  AttributeNames vibrance;
};

constexpr AttributesNames attributesNames(std::string_view prefix)
{
  return {attributeNames(prefix, "Saturation", "Sat"), attributeNames(prefix, "Hue", "Hue"),
          attributeNames(prefix, "Chroma", "Chr"), attributeNames(prefix, "Vibrance", "Vib")};
}

struct RefinementNames
{
  BandNames saturation;
  BandNames hue;
  BandNames chroma;
  BandNames vibrance;
  ZoneNames zone;
};

// stem: "RefineTwo", "PrintRefineSeven".
constexpr RefinementNames refinementNames(std::string_view stem)
{
  return {bandNames(FamilyName(stem, "Sat")), bandNames(FamilyName(stem, "Hue")), bandNames(FamilyName(stem, "Chr")),
          bandNames(FamilyName(stem, "Vib")), zoneNames(FamilyName(stem, "Zone"))};
}

// What differs between the attributes of the negative and of the print: the scale of the custom hue band's strength.
struct AttributeConstants
{
  double customHueScale;
  double customHueOffset;
};

// What differs between the refinements of the negative and of the print.
struct RefinementConstants
{
  double hueScale;
  double hueOffset;
  double chromaScale;  // both factors of the chroma strength's exponent
  double zoneRangeOffset;
};

void captureAttributes(const ParameterValues& values, const AttributesNames& names, const AttributeConstants& constants,
                       AttributesParams& attributes);
void clearSwitches(AttributesParams& attributes);

// saturationWidthFloor: the least half-width of the saturation band. Returns whether the refinement is live.
bool captureRefinement(const ParameterValues& values, const RefinementNames& names,
                       const RefinementConstants& constants, double saturationWidthFloor, RefinementParams& refinement);
void clearSwitches(std::span<RefinementParams> refinements);

}  // namespace morvellan
