// The composition rows with their gamut tags written out: one entry for each kernel name.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>

#include "colour/composition_rows.h"
#include "colour/gamuts.h"

namespace morvellan::MORVELLAN_TARGET
{

struct ColourRow
{
  std::array<char, 56> text{};
  uint8_t length = 0;
  LinearGamut gamut = LinearGamut::Rec709;
  uint16_t composition = 0;

  constexpr std::string_view name() const { return {text.data(), length}; }
};

namespace detail
{

struct GamutName
{
  LinearGamut gamut;
  std::string_view inAny, inVideo, inAces;  // empty where the tag leaves the gamut out
};

inline constexpr GamutName gamutNames[] = {
    {LinearGamut::Rec709, "rec709", "rec709", ""},
    {LinearGamut::Rec2020, "rec2020", "rec2020", ""},
    {LinearGamut::AcesAp0, "ACES_AP0", "", "AP0"},
    {LinearGamut::AcesAp1, "ACES_AP1", "", "AP1"},
};

constexpr std::string_view tagValue(const GamutName& name, char tag)
{
  return tag == 'g' ? name.inAny : tag == 'v' ? name.inVideo : name.inAces;
}

constexpr size_t countRows()
{
  size_t count = 0;
  for (const Composition& c : compositions)
  {
    const size_t at = c.pattern.find('<');
    if (at == std::string_view::npos)
      ++count;
    else
      for (const GamutName& name : gamutNames)
        count += tagValue(name, c.pattern[at + 1]).empty() ? 0 : 1;
  }
  return count;
}

constexpr void append(ColourRow& row, std::string_view text)
{
  for (const char c : text)
    row.text[row.length++] = c;
}

constexpr auto expandRows()
{
  std::array<ColourRow, countRows()> rows{};
  size_t next = 0;
  for (size_t i = 0; i < std::size(compositions); ++i)
  {
    const std::string_view pattern = compositions[i].pattern;
    const size_t at = pattern.find('<');
    for (const GamutName& name : gamutNames)
    {
      const std::string_view value = at == std::string_view::npos ? "" : tagValue(name, pattern[at + 1]);
      if (at == std::string_view::npos ? name.gamut != LinearGamut::Rec709 : value.empty())
        continue;
      ColourRow& row = rows[next++];
      row.gamut = name.gamut;
      row.composition = static_cast<uint16_t>(i);
      append(row, pattern.substr(0, at));
      if (at == std::string_view::npos)
        continue;
      append(row, value);
      append(row, pattern.substr(at + 3));
    }
  }
  return rows;
}

}  // namespace detail

// All kernels, the members of a family one after the other.
inline constexpr auto colourRows = detail::expandRows();

constexpr const Composition& compositionOf(const ColourRow& row)
{
  return compositions[row.composition];
}

}  // namespace morvellan::MORVELLAN_TARGET
