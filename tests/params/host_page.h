// The page of the real plug-in on the strict host, used as MemoryParams is: a new instance, edited as by a person, with
// a record of what the plug-in wrote. The rules' tests run on both.
#pragma once

#include "params/rules.h"
#include "tests/params/edited_page.h"
#include "tests/plugin/plugin_host.h"

#include <map>
#include <memory>
#include <stdexcept>

namespace morvellan::params
{
// What an instance holds and shows.
struct PageState
{
  std::map<std::string, host::ParamValue> values;
  std::map<std::string, std::pair<bool, bool>> layout;  // secret, enabled

  static PageState of(const host::EffectInstance& effect)
  {
    PageState state;
    for (const auto& param : effect.params().params())
    {
      if (param->hasValue())
        state.values[param->name()] = param->value();
      if (find(param->name()) != nullptr)
        state.layout[param->name()] = {param->isSecret(), param->isEnabled()};
    }
    return state;
  }
  void restoreTo(host::EffectInstance& effect) const
  {
    for (const auto& [name, value] : values)
      effect.params().at(name).setValue(value);
    for (const auto& [name, how] : layout)
    {
      effect.params().at(name).properties().put(kOfxParamPropSecret, how.first ? 1 : 0);
      effect.params().at(name).properties().put(kOfxParamPropEnabled, how.second ? 1 : 0);
    }
  }
};

// One host for all pages of the process. A page that is done with leaves its instance to the next: making one anew
// takes many times longer than to put everything back.
class PageHost : public testing::Environment
{
public:
  static test::StrictHost& get() { return *held(); }
  void SetUp() override
  {
    folder_ = std::make_unique<test::ConfigFolder>();
    test::StrictOptions options = test::pluginOptions(*folder_, "cpu");
    options.environment["XDG_DATA_HOME"] = folder_->path().string();
    held() = std::make_unique<test::StrictHost>(MORVELLAN_BUNDLE, options);
  }
  void TearDown() override { held().reset(); }

  static host::EffectInstance& make(const std::map<std::string, host::ParamValue>& stored)
  {
    host::InstanceSettings settings;
    settings.project = stored;
    return get().create(settings);
  }
  static host::EffectInstance& takeNew()
  {
    if (free().empty())
      return make({});
    host::EffectInstance& effect = *free().back();
    free().pop_back();
    newState().restoreTo(effect);
    return effect;
  }
  static void giveBack(host::EffectInstance& effect) { free().push_back(&effect); }

private:
  static std::unique_ptr<test::StrictHost>& held()
  {
    static std::unique_ptr<test::StrictHost> host;
    return host;
  }
  static std::vector<host::EffectInstance*>& free()
  {
    static std::vector<host::EffectInstance*> instances;
    return instances;
  }
  static const PageState& newState()
  {
    static const PageState state = PageState::of(make({}));
    return state;
  }
  std::unique_ptr<test::ConfigFolder> folder_;
};
inline testing::Environment* const pageHost = testing::AddGlobalTestEnvironment(new PageHost);

class HostPage : public EditedPage
{
public:
  HostPage() : effect_(&PageHost::takeNew()) { forget(); }
  HostPage(const HostPage& other) : EditedPage(other), effect_(&PageHost::takeNew())
  {
    PageState::of(*other.effect_).restoreTo(*effect_);
  }
  HostPage& operator=(const HostPage&) = delete;
  ~HostPage() override
  {
    for (const char* clip : {"Source", "Output"})
      effect_->clip(clip).setSource([](double) { return std::nullopt; });
    PageHost::giveBack(*effect_);
    EXPECT_TRUE(test::nothingMisused(PageHost::get()));
    PageHost::get().takeViolations();
  }

  // As a new instance with these values is laid out.
  void reopen()
  {
    std::map<std::string, host::ParamValue> stored;
    for (const auto& each : effect_->params().params())
      if (each->hasValue() && each->isPersistent())
        stored[each->name()] = each->value();
    PageHost::get().destroy(*effect_);
    effect_ = &PageHost::make(stored);
    forget();
  }

  void put(std::string_view name, double value) override { param(name).setValue(value); }
  void putRgb(std::string_view name, const Rgb& value) override
  {
    param(name).setValue({value[0], value[1], value[2]});
  }
  void press(std::string_view name) override
  {
    forget();
    EXPECT_EQ(effect_->edit(name, param(name).hasValue() ? effect_->value(name) : host::ParamValue{}), kOfxStatOK);
    record();
    expectOrderly(*this, name, writes);
  }
  void change(std::string_view name, Reason reason)
  {
    forget();
    const char* const why = reason == Reason::PluginEdited ? kOfxChangePluginEdited : kOfxChangeTime;
    effect_->beginChanged(why);
    EXPECT_EQ(effect_->changed(kOfxTypeParameter, name, why), kOfxStatOK) << name;
    effect_->endChanged(why);
    record();
  }
  // Presses a button whose writes are no rule's; gives the messages.
  std::vector<std::string> pressFor(std::string_view button)
  {
    forget();
    EXPECT_EQ(effect_->press(button), kOfxStatOK);
    record();
    return test::textsOf(PageHost::get().messages());
  }
  void forget()
  {
    writes.clear();
    PageHost::get().clearLog();
  }
  void setImage(Side side, Size size)
  {
    effect_->clip(side == Side::Source ? "Source" : "Output").setSource(test::frameOf(size.width, size.height));
  }

  bool isSecret(std::string_view name) const override { return param(name).isSecret(); }
  bool isEnabled(std::string_view name) const override { return param(name).isEnabled(); }
  // Everything that is shown or hidden.
  std::map<std::string, std::pair<bool, bool>> layout() const
  {
    std::map<std::string, std::pair<bool, bool>> all;
    for (const Param& each : catalogue())
      all[each.name] = {isSecret(each.name), isEnabled(each.name)};
    return all;
  }

  // ParamAccess, for tests that read a page or lay it out; the rules reach the host through the plug-in alone.
  double number(std::string_view name) const override { return effect_->value(name).asDouble(); }
  Rgb rgb(std::string_view name) const override
  {
    const host::ParamValue value = effect_->value(name);
    return {value.numbers[0], value.numbers[1], value.numbers[2]};
  }
  void setVisible(std::string_view name, bool visible) override
  {
    setSecret(name, !visible);
    param(name).properties().put(kOfxParamPropEnabled, visible ? 1 : 0);
  }
  void setSecret(std::string_view name, bool secret) override
  {
    param(name).properties().put(kOfxParamPropSecret, secret ? 1 : 0);
  }
  void setNumber(std::string_view name, double) override { notARule(name); }
  void setRgb(std::string_view name, const Rgb&) override { notARule(name); }
  void beginEdit(std::string_view name) override { notARule(name); }
  void endEdit(std::string_view name) override { notARule(name); }
  std::optional<Size> imageSize(Side) override { throw std::logic_error("asked by a rule alone"); }
  void rememberResolution(Side, int, Size) override { throw std::logic_error("told by a rule alone"); }
  void perform(Action) override { throw std::logic_error("done by a rule alone"); }

private:
  [[noreturn]] static void notARule(std::string_view name)
  {
    throw std::logic_error("written past the plug-in: " + std::string{name});
  }
  host::Param& param(std::string_view name) const { return effect_->params().at(name); }
  void record()
  {
    for (const host::ParameterWrite& write : PageHost::get().writes())
      writes.push_back({write.parameter, write.editBlock, write.before != write.after});
  }

  host::EffectInstance* effect_;
};
}  // namespace morvellan::params
