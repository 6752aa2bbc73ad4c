// Names of the parameter families, composed from their words.
// Every order here is the order of the page.
#include "params/families.h"

namespace morvellan::params
{
namespace
{
void append(std::vector<std::string>& names, const auto& more)
{
  names.insert(names.end(), more.begin(), more.end());
}
}  // namespace

std::array<std::string, 3> channelNames(std::string_view stem)
{
  return {joined(stem, "Red"), joined(stem, "Green"), joined(stem, "Blue")};
}

std::vector<std::string> colourNames(const Axis& axis)
{
  std::vector<std::string> names;
  names.reserve(colours.size());
  for (const std::string_view colour : colours)
    names.push_back(joined(axis.word, colour));
  return names;
}

std::array<std::string, 4> zoneSliders(std::string_view zone)
{
  return {joined(zone, zoneSuffixes[0]), joined(zone, zoneSuffixes[1]), joined(zone, zoneSuffixes[2]),
          joined(zone, zoneSuffixes[3])};
}

std::vector<std::string> attributeSliders(const Axis& axis)
{
  std::vector<std::string> names = colourNames(axis);
  for (const std::string_view suffix : {"Strength", "CustomHue", "CustomWidth", "CustomStrength"})
    names.push_back(joined(axis.word, suffix));
  append(names, zoneSliders(joined(axis.shortWord, "Zone")));
  return names;
}

std::vector<std::string> attributeMembers(const Axis& axis)
{
  std::vector<std::string> names = colourNames(axis);
  for (const std::string_view suffix : {"Combo", "Strength"})
    names.push_back(joined(axis.word, suffix));
  names.push_back(joined(axis.shortWord, "Swatch"));
  for (const std::string_view suffix : {"CustomHue", "CustomWidth", "CustomStrength"})
    names.push_back(joined(axis.word, suffix));
  names.push_back(joined(axis.shortWord, "Zone"));
  append(names, zoneSliders(joined(axis.shortWord, "Zone")));
  return names;
}

std::vector<std::string> refinementSliders(std::string_view word)
{
  std::vector<std::string> names;
  for (const Axis& axis : axes)
    for (const std::string_view suffix : {"Hue", "Width", "Strength"})
      names.push_back(joined("Refine", word, axis.shortWord, suffix));
  append(names, zoneSliders(joined("Refine", word, "Zone")));
  return names;
}

std::vector<std::string> refinementMembers(std::string_view word)
{
  std::vector<std::string> names = refinementSliders(word);
  names.insert(names.begin(), joined("Refine", word, "Swatch"));
  names.insert(names.end() - std::ptrdiff_t{zoneSuffixes.size()}, joined("Refine", word, "Zone"));
  return names;
}
}  // namespace morvellan::params
