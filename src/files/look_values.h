// Parameter values without a host: what a Look makes of the catalogue's defaults, for tools that look at Look files.
// Panels, edit blocks and actions have no meaning here and are ignored.
#pragma once

#include <string_view>
#include <vector>

#include "params/param_access.h"

namespace morvellan::files
{

class LookValues final : public params::ParamAccess
{
public:
  LookValues();

  double number(std::string_view name) const override { return at(name)[0]; }
  params::Rgb rgb(std::string_view name) const override { return at(name); }
  void setNumber(std::string_view name, double value) override { at(name)[0] = value; }
  void setRgb(std::string_view name, const params::Rgb& value) override { at(name) = value; }

  void setVisible(std::string_view, bool) override {}
  void setSecret(std::string_view, bool) override {}
  void beginEdit(std::string_view) override {}
  void endEdit(std::string_view) override {}
  std::optional<params::Size> imageSize(params::Side) override { return std::nullopt; }
  void rememberResolution(params::Side, int, params::Size) override {}
  void perform(params::Action) override {}

private:
  params::Rgb& at(std::string_view name);
  const params::Rgb& at(std::string_view name) const;

  std::vector<params::Rgb> values_;  // in the catalogue's order
};

}  // namespace morvellan::files
