// The words that the parameter families are built from, and the names that follow from them.
// Catalogue, rules, stocks and Look files take family names from here, so that a family is spelled in one place.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace morvellan::params
{
// Concatenation of words to a name.
template <class... Words>
std::string joined(const Words&... words)
{
  std::string name;
  (name.append(words), ...);
  return name;
}

// A colour attribute: its word in slider names, and the short word in the names of its swatch and zones.
struct Axis
{
  std::string_view word;
  std::string_view shortWord;
};

inline constexpr std::array<Axis, 4> axes{
    {{"Saturation", "Sat"}, {"Hue", "Hue"}, {"Chroma", "Chr"}, {"Vibrance", "Vib"}}};

// The six vectors of an attribute, in the order of their sliders.
inline constexpr std::array<std::string_view, 6> colours{"Red", "Magenta", "Blue", "Cyan", "Green", "Yellow"};

// The custom vectors after the first, which is the Custom row of the attributes. Choice index 1 is Two.
inline constexpr std::array<std::string_view, 11> refineWords{"Two",   "Three", "Four", "Five",   "Six",   "Seven",
                                                              "Eight", "Nine",  "Ten",  "Eleven", "Twelve"};
// The print store has six of them.
inline constexpr std::array<std::string_view, 6> printRefineWords{"Two", "Three", "Four", "Five", "Six", "Seven"};

inline constexpr std::array<std::string_view, 3> channelWords{"Red", "Green", "Blue"};

// The four sliders behind a zone choice, in page order.
inline constexpr std::array<std::string_view, 4> zoneSuffixes{"LowRange", "Low", "HighRange", "High"};

struct Pitch
{
  std::string_view name;
  std::string_view label;
  std::string_view band;  // how wide, in words
  int radius;             // pixels
};

inline constexpr std::array<Pitch, 6> pitches{{{"SopranoPitch", "Soprano", "Narrowest", 1},
                                               {"MezzoSopranoPitch", "Mezzo-Soprano", "Narrow", 2},
                                               {"AltoPitch", "Alto", "Medium", 4},
                                               {"TenorPitch", "Tenor", "Medium-Wide", 8},
                                               {"BaritonePitch", "Baritone", "Wide", 16},
                                               {"BassPitch", "Bass", "Widest", 32}}};

// "SoupToe" -> SoupToeRed, SoupToeGreen, SoupToeBlue.
std::array<std::string, 3> channelNames(std::string_view stem);

// "Saturation" -> SaturationRed ... SaturationYellow.
std::vector<std::string> colourNames(const Axis& axis);

// The sliders of an attribute without Combo, swatch and zone choice: six colours, Strength, Custom trio, zone sliders.
std::vector<std::string> attributeSliders(const Axis& axis);

// All 17 members of an attribute, in page order.
std::vector<std::string> attributeMembers(const Axis& axis);

// The sixteen sliders of a custom vector: Hue, Width and Strength for each attribute, and the zone sliders.
std::vector<std::string> refinementSliders(std::string_view word);

// All 18 members of a custom vector, in page order.
std::vector<std::string> refinementMembers(std::string_view word);

// "SatZone" -> SatZoneLowRange, SatZoneLow, SatZoneHighRange, SatZoneHigh.
std::array<std::string, 4> zoneSliders(std::string_view zone);
}  // namespace morvellan::params
