// Parameters in memory, for tests of what works on ParamAccess: the values and the layout of a new instance, and a
// record of every write, edit block and action. It forgives nothing: a value outside its range or an open edit block
// throws, and every edit is held to be orderly.
#pragma once

#include "params/catalogue.h"
#include "params/rules.h"
#include "tests/params/edited_page.h"

#include <cmath>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace morvellan::params
{
class MemoryParams : public EditedPage
{
public:
  struct Resolution
  {
    int choice = 0;
    Size size;
  };

  MemoryParams()
  {
    for (const Param& param : catalogue())
      values[param.name] = param.defaults;
    reopen();
  }

  // As a new instance with these values is laid out.
  void reopen()
  {
    for (const Param& param : catalogue())
    {
      secret[param.name] = param.hidden != Hidden::No;
      enabled[param.name] = param.hidden != Hidden::SecretAndDisabled;
    }
    forget();
    showForValues(*this);
  }

  void put(std::string_view name, double value) override { checked(name, value)[0] = value; }
  void putRgb(std::string_view name, const Rgb& value) override { values.at(std::string{name}) = value; }
  void forget()
  {
    writes.clear();
    actions.clear();
    resolutions.clear();
  }
  void setImage(Side side, Size size) { (side == Side::Source ? sourceImage : targetImage) = size; }
  void press(std::string_view name) override { change(name, Reason::UserEdited); }
  void change(std::string_view name, Reason reason)
  {
    forget();
    changedParam(*this, name, reason);
    if (block)
      throw std::logic_error("an edit block was left open: " + *block);
    if (find(name) != nullptr)
      expectOrderly(*this, name, writes);
  }

  bool isSecret(std::string_view name) const override { return secret.at(std::string{name}); }
  bool isEnabled(std::string_view name) const override { return enabled.at(std::string{name}); }
  // Everything that is shown or hidden.
  std::map<std::string, std::pair<bool, bool>> layout() const
  {
    std::map<std::string, std::pair<bool, bool>> all;
    for (const auto& [name, isSecret] : secret)
      all[name] = {isSecret, enabled.at(name)};
    return all;
  }

  // ParamAccess.
  double number(std::string_view name) const override { return values.at(std::string{name})[0]; }
  Rgb rgb(std::string_view name) const override { return values.at(std::string{name}); }
  void setNumber(std::string_view name, double value) override
  {
    if (number(name) == value)
      throw std::logic_error("written without need: " + std::string{name});
    checked(name, value)[0] = value;
    record(name);
  }
  void setRgb(std::string_view name, const Rgb& value) override
  {
    if (at(name).kind != Kind::Rgb || rgb(name) == value)
      throw std::logic_error("not a swatch, or written without need: " + std::string{name});
    values.at(std::string{name}) = value;
    record(name);
  }
  void setVisible(std::string_view name, bool visible) override
  {
    if (at(name).hidden == Hidden::SecretOnly)
      throw std::logic_error("the store is never shown: " + std::string{name});
    secret.at(std::string{name}) = !visible;
    enabled.at(std::string{name}) = visible;
  }
  void setSecret(std::string_view name, bool isSecret) override { secret.at(std::string{name}) = isSecret; }
  void beginEdit(std::string_view name) override
  {
    if (block)
      throw std::logic_error("edit blocks do not nest");
    block = name;
  }
  void endEdit(std::string_view name) override
  {
    if (block != name)
      throw std::logic_error("the edit block ends under another name");
    block.reset();
  }
  std::optional<Size> imageSize(Side side) override { return side == Side::Source ? sourceImage : targetImage; }
  void rememberResolution(Side side, int choice, Size size) override { resolutions[side] = {choice, size}; }
  void perform(Action action) override { actions.push_back(action); }

  std::map<Side, Resolution> resolutions;
  std::vector<Action> actions;

private:
  Rgb& checked(std::string_view name, double value)
  {
    const Param& param = at(name);
    const Range choices{0.0, param.name == gpuChoice ? 3.0 : static_cast<double>(param.options.size()) - 1.0};
    const Range range = param.range                   ? *param.range
                        : param.kind == Kind::Choice  ? choices
                        : param.kind == Kind::Boolean ? Range{0.0, 1.0}
                                                      : throw std::logic_error("holds no number: " + param.name);
    if (!(value >= range.min && value <= range.max))
      throw std::logic_error("outside its range: " + param.name);
    if (param.kind != Kind::Double && value != std::floor(value))
      throw std::logic_error("not a whole number: " + param.name);
    return values.at(param.name);
  }
  void record(std::string_view name)
  {
    if (block && *block != name)
      throw std::logic_error("written in the edit block of another: " + std::string{name});
    writes.push_back({std::string{name}, block});
  }

  std::map<std::string, Rgb> values;
  std::map<std::string, bool> secret;
  std::map<std::string, bool> enabled;
  std::optional<Size> sourceImage;
  std::optional<Size> targetImage;
  std::optional<std::string> block;
};
}  // namespace morvellan::params
