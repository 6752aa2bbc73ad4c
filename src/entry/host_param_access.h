// The parameters of an instance as the rules see them.
#pragma once

#include <optional>
#include <string_view>

#include "entry/morvellan_plugin.h"
#include "params/param_access.h"

namespace morvellan
{

class HostParamAccess final : public params::ParamAccess
{
public:
  /// `change` is what the host reported, or null while the instance is made: values are then read without a time.
  HostParamAccess(MorvellanPlugin& plugin, const OFX::ChangeArguments* change) : plugin_(plugin), change_(change) {}

  double number(std::string_view name) const override;
  params::Rgb rgb(std::string_view name) const override;
  void setNumber(std::string_view name, double value) override;
  void setRgb(std::string_view name, const params::Rgb& value) override;
  void setVisible(std::string_view name, bool visible) override;
  void setSecret(std::string_view name, bool secret) override;
  void beginEdit(std::string_view name) override;
  void endEdit(std::string_view name) override;
  std::optional<params::Size> imageSize(params::Side side) override;
  void rememberResolution(params::Side side, int choice, params::Size size) override;
  void perform(params::Action action) override;

private:
  MorvellanPlugin& plugin_;
  const OFX::ChangeArguments* change_;
};

}  // namespace morvellan
