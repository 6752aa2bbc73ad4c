// The fields of a Look file as data: 372 lines in a fixed order, each with its label, its parameter, how its value is
// printed and what a reader accepts. The writer, the reader and the tools all work from this one table.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace morvellan::files
{

enum class LookFormat
{
  whole,       // a decimal integer; a Boolean is 0 or 1, a Choice its index
  oneDecimal,  // degrees
  fourDecimals,
};

struct LookField
{
  std::string label;      // 36 columns: a text, dashes up to column 35, "|"
  std::string parameter;  // of the two that the enhancer fields stand for, the one of SpatialEnhancement
  LookFormat format = LookFormat::whole;
  double least = 0.0;  // both ends are accepted
  double most = 0.0;
  double otherwise = 0.0;  // taken for a value out of range, where the reader has no rule of its own for it
  std::string_view range;  // how the message about a value out of range ends
};

inline constexpr std::size_t lookFieldCount = 372;
inline constexpr std::size_t lookLabelColumns = 36;

// In file order. Made once, kept for the life of the process.
std::span<const LookField> lookFields();

}  // namespace morvellan::files
