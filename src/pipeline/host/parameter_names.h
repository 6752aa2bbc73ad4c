// Names of parameters that come in families, put together at compile time.
// A frame's capture reads several hundred values, so no name is built while a frame waits.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

namespace morvellan
{

// A name of a family's member. Every name of the catalogue fits; a longer one does not compile.
class FamilyName
{
public:
  constexpr FamilyName() = default;
  constexpr FamilyName(std::string_view first, std::string_view second, std::string_view third = {})
  {
    for (const std::string_view part : {first, second, third})
    {
      std::copy(part.begin(), part.end(), text.begin() + static_cast<std::ptrdiff_t>(size));
      size += part.size();
    }
  }

  constexpr operator std::string_view() const { return {text.data(), size}; }

private:
  std::array<char, 40> text{};
  std::size_t size = 0;
};

// <stem>Red, <stem>Green, <stem>Blue.
using ChannelNames = std::array<FamilyName, 3>;

constexpr ChannelNames channelNames(std::string_view stem)
{
  return {FamilyName(stem, "Red"), FamilyName(stem, "Green"), FamilyName(stem, "Blue")};
}

}  // namespace morvellan
