// The conventions of the page: digits and increments, what animates, and how channel families and store twins are made.
// The sections hold the data.
#include "params/page.h"

#include <algorithm>
#include <fmt/format.h>
#include <stdexcept>

namespace morvellan::params
{
namespace
{
constexpr int sliderDigits = 5;
constexpr double sliderIncrement = 0.001;
constexpr double degreeIncrement = 0.1;
}  // namespace

Param& Page::add(std::string_view name, Kind kind, std::string_view label, std::string_view hint)
{
  Param& param = params.emplace_back();
  param.name = name;
  param.kind = kind;
  param.label = label;
  param.hint = hint;
  param.parent = parent;
  param.hidden = hidden;
  if (kind == Kind::Choice || kind == Kind::Boolean || kind == Kind::Rgb)
    param.animates = Animates::Yes;
  return param;
}

void Page::group(std::string_view name, std::string_view label, Opens opens, std::string_view parentGroup,
                 std::string_view hint)
{
  parent = parentGroup;
  Param& added = add(name, Kind::Group, label, hint);
  added.open = opens == Opens::Open;
  added.hidden = Hidden::No;
  parent = name;
}

void Page::real(std::string_view name, double value, Range range, std::string_view label, std::string_view hint)
{
  Param& param = add(name, Kind::Double, label, hint);
  param.defaults[0] = value;
  param.range = range;
  param.displayRange = range;
  if (hidden == Hidden::SecretOnly)
    return;
  param.digits = sliderDigits;
  param.increment = sliderIncrement;
}

void Page::degrees(std::string_view name, double value, std::string_view label, std::string_view hint)
{
  real(name, value, {0.0, 360.0}, label, hint);
  last().increment = degreeIncrement;
}

void Page::integer(std::string_view name, int value, Range range, std::string_view label, std::string_view hint)
{
  Param& param = add(name, Kind::Integer, label, hint);
  param.defaults[0] = value;
  param.range = range;
  param.displayRange = range;
}

void Page::boolean(std::string_view name, bool value, std::string_view label, std::string_view hint)
{
  add(name, Kind::Boolean, label, hint).defaults[0] = value ? 1.0 : 0.0;
}

void Page::choice(std::string_view name, int value, std::span<const Option> options, std::string_view label,
                  std::string_view hint)
{
  Param& param = add(name, Kind::Choice, label, hint);
  param.defaults[0] = value;
  param.options = options;
}

void Page::swatch(std::string_view name, const std::array<double, 3>& value, Range display, std::string_view label,
                  std::string_view hint)
{
  Param& param = add(name, Kind::Rgb, label, hint);
  param.defaults = value;
  param.displayRange = display;
}

void Page::button(std::string_view name, std::string_view label, std::string_view hint)
{
  add(name, Kind::PushButton, label, hint);
}

void Page::channels(const ChannelTexts& texts)
{
  lastChannels = texts;
  for (const std::string_view word : channelWords)
    real(joined(texts.stem, word), texts.value, texts.range, fmt::format("{} {}", texts.label, word.front()),
         fmt::format(fmt::runtime(texts.hint), word));
}

void Page::master(std::string_view name)
{
  const ChannelTexts& texts = lastChannels;
  real(name, texts.value, texts.range, fmt::format("{} RGB", texts.label),
       fmt::format(fmt::runtime(texts.hint), "RGB"));
}

void Page::copyToStore(const std::vector<std::string>& names)
{
  for (const std::string& name : names)
  {
    Param twin = named(name);
    twin.name = joined("Print", name);
    twin.parent = parent;
    twin.hidden = Hidden::SecretOnly;
    twin.digits.reset();
    if (twin.increment != degreeIncrement)
      twin.increment.reset();
    params.push_back(std::move(twin));
  }
}

void Page::rehint(std::string_view name, std::string_view hint)
{
  named(name).hint = hint;
}

Param& Page::named(std::string_view name)
{
  const auto found = std::ranges::find(params, name, &Param::name);
  if (found == params.end())
    throw std::out_of_range(fmt::format("the page holds no parameter named {}", name));
  return *found;
}

std::string swatchHint(std::string_view head)
{
  return fmt::format("{}. This Swatch point-sample displays Natron's output color values. However, Morvellan samples "
                     "the input Clip's RGB value and converts that to degrees",
                     head);
}
}  // namespace morvellan::params
