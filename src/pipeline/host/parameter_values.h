// The one thing that the capture of a frame asks of whoever holds the parameters: a value by name.
// The plug-in answers from its parameter handles, a test from a map.
#pragma once

#include <string_view>

namespace morvellan
{

class ParameterValues
{
public:
  virtual ~ParameterValues() = default;

  // The present value of a parameter: a Double or Integer as it stands, a Boolean as 0 or 1, a Choice as its index.
  virtual double number(std::string_view name) const = 0;

  bool on(std::string_view name) const { return number(name) != 0.0; }
};

}  // namespace morvellan
