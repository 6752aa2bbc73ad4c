// The control page as data: every parameter and group of the effect, in page order, with all that its description
// needs. The describe step, the instance, the rules, the Look files and the tools all read this one table; names are a
// contract.
#pragma once

#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace morvellan::params
{
enum class Kind
{
  Double,
  Integer,
  Boolean,
  Choice,
  Rgb,
  PushButton,
  Group
};

// What the description does to the secret and enabled properties. Starts hidden: secret true and enabled false
// together. The hidden store of the print stock is secret only, and never shown.
enum class Hidden
{
  No,
  SecretAndDisabled,
  SecretOnly
};

enum class Animates
{
  HostDefault,
  Yes,
  No
};

// One entry of a choice; its index is its place in the list. Entries have an empty enum string.
struct Option
{
  std::string label;
  std::string hint;
};

struct Range
{
  double min = 0.0;
  double max = 1.0;
};

struct Param
{
  std::string name;
  Kind kind = Kind::Double;
  std::string label;   // empty: not set
  std::string hint;    // empty: not set
  std::string parent;  // a group's name; empty: top level

  // Double, Integer: the number. Boolean: 0 or 1. Choice: the index. Rgb: red, green, blue; the others use [0] alone.
  std::array<double, 3> defaults{};
  std::optional<Range> range;         // Double and Integer
  std::optional<Range> displayRange;  // Double and Integer (equal to range) and Rgb (each channel the same)
  std::optional<int> digits;
  std::optional<double> increment;
  std::span<const Option> options;  // Choice only; empty for the device choice, which discovery fills

  Animates animates = Animates::HostDefault;
  Hidden hidden = Hidden::No;
  bool evaluateOnChange = true;   // false: the description sets the property to false; true: leaves it alone
  bool open = false;              // Group: open at start
  std::optional<int> layoutHint;  // OfxParamPropLayoutHint
};

// The one page, which takes every entry of the catalogue as a child, in the catalogue's order.
inline constexpr std::string_view pageName = "Controls";

// The choice whose options are the devices of this machine.
inline constexpr std::string_view gpuChoice = "NatronGPU";

// Every group and parameter in page order. Built once, on first use; the elements live as long as the process.
std::span<const Param> catalogue();

// By name, or null. The pointer stays valid.
const Param* find(std::string_view name);

// By name. Throws std::out_of_range for a name that the catalogue does not hold.
const Param& at(std::string_view name);
}  // namespace morvellan::params
