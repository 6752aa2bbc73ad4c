// The kinds of parameters and a value of any kind. Numbers are held as doubles, which hold every int exactly.
#pragma once

#include <algorithm>
#include <array>
#include <initializer_list>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace morvellan::host
{

enum class ParamKind
{
  Integer,
  Double,
  Boolean,
  Choice,
  StrChoice,
  Rgba,
  Rgb,
  Double2D,
  Integer2D,
  Double3D,
  Integer3D,
  String,
  Custom,
  Group,
  Page,
  PushButton,
};

enum class ValueFamily
{
  Int,
  Double,
  String,
  None,
};

struct KindFacts
{
  ParamKind kind;
  const char* type;        // the interface's name, such as "OfxParamTypeDouble"
  std::string_view label;  // for people
  ValueFamily family;
  int dimension;
};

const KindFacts& factsOf(ParamKind kind);
std::optional<ParamKind> kindOfType(std::string_view type);

struct ParamValue
{
  std::array<double, 4> numbers{};
  int count = 0;
  std::string text;

  ParamValue() = default;
  ParamValue(double value) : numbers{value}, count(1) {}                    // NOLINT: meant to convert
  ParamValue(int value) : numbers{static_cast<double>(value)}, count(1) {}  // NOLINT: meant to convert
  ParamValue(bool value) : numbers{value ? 1.0 : 0.0}, count(1) {}          // NOLINT: meant to convert
  ParamValue(const char* value) : text(value) {}                            // NOLINT: meant to convert
  ParamValue(std::string value) : text(std::move(value)) {}                 // NOLINT: meant to convert
  ParamValue(std::initializer_list<double> values) : count(static_cast<int>(values.size()))
  {
    if (values.size() > numbers.size())
    {
      throw std::invalid_argument("a parameter has four numbers at most");
    }
    std::copy(values.begin(), values.end(), numbers.begin());
  }

  int asInt() const { return static_cast<int>(numbers[0]); }
  double asDouble() const { return numbers[0]; }
  bool asBool() const { return numbers[0] != 0.0; }

  bool operator==(const ParamValue&) const = default;
};

// As a person writes it: "0.5", "3", "0.1,0.2,0.3", a text.
std::string toText(const ParamValue& value);

}  // namespace morvellan::host
