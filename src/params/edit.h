// How rules write: only what differs from the value held, never outside the parameter's range, and in an edit block
// where the write is a single derived parameter.
#pragma once

#include "params/param_access.h"

#include <string_view>

namespace morvellan::params
{
// For the bulk writes of stocks and resets.
void write(ParamAccess& access, std::string_view name, double value);
void writeRgb(ParamAccess& access, std::string_view name, const Rgb& value);

// For a derived parameter: the same within an edit block named after the parameter, so that one undo step covers it.
void writeDerived(ParamAccess& access, std::string_view name, double value);
void writeDerivedRgb(ParamAccess& access, std::string_view name, const Rgb& value);

// Any value parameter to its default of the catalogue, without an edit block.
void writeDefault(ParamAccess& access, std::string_view name);

inline bool isOn(const ParamAccess& access, std::string_view name)
{
  return access.number(name) != 0.0;
}
inline int indexOf(const ParamAccess& access, std::string_view name)
{
  return static_cast<int>(access.number(name));
}

// Shows or hides every name of a range.
template <class Names>
void show(ParamAccess& access, const Names& names, bool visible = true)
{
  for (const auto& name : names)
    access.setVisible(name, visible);
}

template <class Names>
void hide(ParamAccess& access, const Names& names)
{
  show(access, names, false);
}
}  // namespace morvellan::params
