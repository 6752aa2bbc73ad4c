// The colour families of the page: the four attributes, and the custom vectors Two to Twelve.
// The families share their build; texts that depart from the pattern stand in tables and stay as they are.
#include "params/choices.h"
#include "params/families.h"
#include "params/page.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>

namespace morvellan::params
{
namespace
{
struct AttributeTexts
{
  std::string_view colour;  // behind the colour's word
  std::string_view combo;
  std::string_view strength;
  std::string_view customHue;
  std::string_view customWidth;
  std::string_view customStrength;
  std::array<std::string_view, 4> zones;  // LowRange, Low, HighRange, High
};

constexpr std::array<AttributeTexts, 4> attributeTexts{{
    {
        .colour = "Saturation compresssion or expansion. To Bypass, set to Default : 0.5",
        .combo = "R-M-B-C-G-Y Saturation compresssion or expansion. To Bypass, set to Default : 0.5",
        .strength = "R-M-B-C-G-Y Saturation compresssion or expansion Strength. Default : 0.5",
        .customHue = "Custom-One Saturation Hue Center, in degrees",
        .customWidth = "Custom-One Saturation Breadth. Narrow to Wide range, in degrees. Default : 60",
        .customStrength = "Custom-One Saturation compresssion or expansion Strength. Default : 0.5",
        .zones = {"Saturation low Range. Darker(0) to lighter(1) inclusion Range. Default : 0.5",
                  "Saturation low-Range Intensity Level. To bypass the Lower Intensities Range, set to 0.5",
                  "Saturation high Range. Lighter(0) to darker(1) inclusion range. Default : 0.5",
                  "Saturation high Range Intensity Level. To bypass the Upper Intensities Range, set to 0.5"},
    },
    {
        .colour = "Hue angle. To Bypass, set to Default : 0.5",
        .combo = "R-M-B-C-G-Y Hue angles, Ganged",
        .strength = "R-M-B-C-G-Y Hue Strengths. Default : 0.5",
        .customHue = "Custom-One Hue Center, in degrees",
        .customWidth = "Custom-One Hue angle Breadth. Narrow to Wide range, in degrees. Default : 60",
        .customStrength = "Custom-One Hue Strength. Default : 0.5",
        .zones = {"Hue low Range. Darker(0) to lighter(1) inclusion Range. Default : 0.5",
                  "Hue low Range Intensity Level. To bypass the lower intensities Level, set to Default : 0.5",
                  "Hue high Range. Lighter(0) to darker(1) inclusion Range. Default : 0.5",
                  "Hue high Range Intensity Level. To bypass the Upper Intensities Range, set default : 0.5"},
    },
    {
        .colour = "Chroma compresssion or expansion. To Bypass, set to Default : 0.5",
        .combo = "R-M-B-C-G-Y Chroma compresssion or expansion, Ganged",
        .strength = "R-M-B-C-G-Y Chroma compresssion or expansion Strength. Default : 0.5",
        .customHue = "Custom-One Chroma angle Center, in degrees",
        .customWidth = "Custom-One Chroma Breadth. Narrow to Wide range, in degrees. Default : 60",
        .customStrength = "Custom-One Chroma compresssion or expansion Strength. Default : 0.5",
        .zones = {"Chroma low range. Darker(0) to lighter(1) inclusion Range. Default : 0.5",
                  "Chroma low Range Intensity Level. To bypass the Lower Intensities Range, set to Default : 0.5",
                  "Chroma high Range. Lighter(0) to darker(1) inclusion Range. Default : 0.5",
                  "Chroma high Range Intensity Level. To bypass the Upper Intensities Range, set to Default : 0.5"},
    },
    {
        .colour = "Vibrance compresssion or expansion. To Bypass, set to Default : 0.5",
        .combo = "R-M-B-C-G-Y Vibrance compresssion or expansion, Ganged",
        .strength = "R-M-B-C-G-Y Vibrance compresssion or expansion Strength. Default : 0.5",
        .customHue = "Custom-One Vibrance angle Center, in degrees",
        .customWidth = "Custom-One Vibrance Breadth. Narrow to Wide range, in degrees. Default : 60",
        .customStrength = "Custom-One Vibrance compresssion or expansion Strength. Default : 0.5",
        .zones = {"Vibrance low range. Darker(0) to lighter(1) inclusion Range. Default : 0.5",
                  "Vibrance low Range Intensity Level. To bypass the Lower Intensities Range, set to Default : 0.5",
                  "Vibrance high Range. Lighter(0) to darker(1) inclusion Range. Default : 0.5",
                  "Vibrance high Range Intensity Level. To bypass the Upper Intensities Range, set to Default : 0.5"},
    },
}};

constexpr std::array<double, 3> cyan{0.0, 1.0, 1.0};
constexpr std::array<std::string_view, 4> zoneLabels{"Range", "Level", "Range", "Level"};

void addZone(Page& page, std::string_view name, std::string_view label, std::string_view hint,
             std::span<const Option> options, const std::array<std::string_view, 4>& sliderHints)
{
  page.choice(name, 0, options, label, hint);
  const auto sliders = zoneSliders(name);
  for (std::size_t i = 0; i < sliders.size(); ++i)
    page.real(sliders[i], 0.5, {0.0, 1.0}, zoneLabels[i], sliderHints[i]);
}

// "Custom-Five Zone": the labels are in the plural up to Four. The hints are in the singular for Three and Four, and
// those of Three, Four, Five, Seven and Nine lack the blank that the others begin with.
std::string refineZoneLabel(std::string_view word)
{
  const bool plural = word == "Two" || word == "Three" || word == "Four";
  return fmt::format("Custom-{} Zone{}", word, plural ? "s" : "");
}

std::string refineZoneHint(std::string_view word)
{
  const bool singular = word == "Three" || word == "Four";
  const bool blank = !singular && word != "Five" && word != "Seven" && word != "Nine";
  return fmt::format("{}Custom-{} Extraction Zone{} based on pixel intensities", blank ? " " : "", word,
                     singular ? "" : "s");
}
}  // namespace

void addAttributes(Page& page, const Axis& axis)
{
  const auto index = static_cast<std::size_t>(std::ranges::find(axes, axis.word, &Axis::word) - axes.begin());
  const AttributeTexts& texts = attributeTexts[index];
  const auto name = [&](std::string_view suffix) { return joined(axis.word, suffix); };
  page.startHidden();
  for (const std::string_view colour : colours)
    page.real(name(colour), 0.5, {0.0, 1.0}, colour, fmt::format("{} {}", colour, texts.colour));
  page.real(name("Combo"), 0.5, {0.0, 1.0}, "R-M-B-C-G-Y", texts.combo);
  page.real(name("Strength"), 0.5, {0.0, 1.0}, "Strength", texts.strength);
  page.swatch(joined(axis.shortWord, "Swatch"), cyan, {0.0, 1.0}, fmt::format("Custom {}", axis.word),
              swatchHint(fmt::format("{} Angle Swatch", axis.word)));
  page.degrees(name("CustomHue"), 180.0, "Custom Center", texts.customHue);
  page.degrees(name("CustomWidth"), 60.0, "Custom Breadth", texts.customWidth);
  page.real(name("CustomStrength"), 0.5, {0.0, 1.0}, "Custom Strength", texts.customStrength);
  addZone(page, joined(axis.shortWord, "Zone"), fmt::format("{} Zones", axis.word),
          fmt::format(" {} Extraction Zones, based on pixel intensities", axis.word), attributeZones(index),
          texts.zones);
  page.startShown();
}

void addRefinement(Page& page, std::string_view word)
{
  constexpr std::array<std::string_view, 4> zoneHints{
      "Low Intensity Inclusion Range - Darkest(0) to Lightest(1). Default : 0.5",
      "Low Range Intensity Level. To bypass the Lower Intensities Range, set to Default : 0.5",
      "High Intensity Inclusion Range - Lightest(0) to Darkest(1). Default : 0.5",
      "High Range Intensity Level. To bypass the Upper Intensities Range, set to Default : 0.5"};
  const auto custom = [&](std::string_view rest) { return fmt::format("Custom-{}{}", word, rest); };
  page.startHidden();
  page.swatch(joined("Refine", word, "Swatch"), cyan, {0.0, 1.0}, custom(""), swatchHint(custom(" Angle Swatch")));
  for (const Axis& axis : axes)
  {
    const bool saturation = axis.shortWord == "Sat";
    const std::string stem = joined("Refine", word, axis.shortWord);
    page.degrees(joined(stem, "Hue"), 180.0, fmt::format("{} Center", axis.word),
                 custom(fmt::format(" {}Center, in degrees", saturation ? "Saturation Hue " : joined(axis.word, " "))));
    page.degrees(joined(stem, "Width"), 60.0, fmt::format("{} Breadth", axis.word),
                 custom(fmt::format(" {} Breadth. Narrow to Wide range, in degrees. Default : 60", axis.word)));
    page.real(
        joined(stem, "Strength"), 0.5, {0.0, 1.0}, fmt::format("{} Strength", axis.word),
        custom(fmt::format(" {}{} Strength. Default : 0.5", axis.word, saturation ? " compression or expansion" : "")));
  }
  const auto index = static_cast<std::size_t>(std::ranges::find(refineWords, word) - refineWords.begin());
  addZone(page, joined("Refine", word, "Zone"), refineZoneLabel(word), refineZoneHint(word), refineZones(index),
          zoneHints);
  page.startShown();
}
}  // namespace morvellan::params
