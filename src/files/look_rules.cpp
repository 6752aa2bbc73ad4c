// The rules of a Look load. They are those of the page's edits where these have a form that a load can use.
#include "files/look_rules.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "params/catalogue.h"
#include "params/edit.h"
#include "params/families.h"
#include "params/hue_swatches.h"
#include "params/index_classes.h"
#include "params/masters.h"
#include "params/panels.h"
#include "params/print_stock.h"

namespace morvellan::files
{

using params::Side;

double LookLoad::value(std::string_view parameter) const
{
  const auto found = values.find(parameter);
  return found != values.end() ? found->second : access.number(parameter);
}

void LookLoad::set(std::string_view parameter, double value) const
{
  const params::Param& param = params::at(parameter);
  if (param.kind != params::Kind::Choice || value < static_cast<double>(param.options.size()))
    params::write(access, parameter, value);
}

namespace
{

using Rules = std::unordered_map<std::string_view, LookRule>;

// Input

bool linearInput(const LookLoad& load)
{
  return params::isLinearInput(static_cast<int>(load.value("InputGamut")));
}

void addInputRules(Rules& rules)
{
  rules["InputGamut"].then = [](LookLoad& load) { params::showInputClass(load.access); };
  rules["CameraShadowsRecover"].then = [](LookLoad& load) { params::showSoftClips(load.access); };
  const auto showInput = [](LookLoad& load) { params::showInputPanel(load.access); };
  rules["HDRcomp"] = {.fallback = {},
                      .set = [](LookLoad& load, double value)
                      { load.set("HDRcomp", value != 0.0 && linearInput(load) ? 1.0 : 0.0); },
                      .then = showInput};
  rules["ProcessLinear"] = {.fallback = {},
                            .set = [](LookLoad& load, double value)
                            { load.set("ProcessLinear", value != 0.0 && !linearInput(load) ? 1.0 : 0.0); },
                            .then = showInput};
}

// Sizes and enhancers

void addSizeRules(Rules& rules)
{
  const auto imageSize = [](const LookLoad& load, Side side) {
    return load.access.imageSize(side).value_or(params::Size{1920, 1080});
  };
  const auto width = [imageSize](Side side)
  { return [=](const LookLoad& load) { return static_cast<double>(imageSize(load, side).width); }; };
  const auto height = [imageSize](Side side)
  { return [=](const LookLoad& load) { return static_cast<double>(imageSize(load, side).height); }; };
  rules["SourceWidth"].fallback = width(Side::Source);
  rules["SourceHeight"].fallback = height(Side::Source);
  rules["TargetWidth"].fallback = width(Side::Target);
  rules["TargetHeight"].fallback = height(Side::Target);

  const auto showSizes = [](Side side, std::string_view choice)
  {
    return [=](LookLoad& load)
    {
      params::showSizes(load.access, side);
      load.access.setVisible("SpatialEnhancement", load.value(choice) == 1.0);
    };
  };
  rules["InResolution"].then = showSizes(Side::Source, "InResolution");
  rules["OutResolution"].then = showSizes(Side::Target, "OutResolution");
}

// The file holds one enhancer. It is the resizer's where a side has a resolution, else the one without a resize.
void setEnhancers(LookLoad& load)
{
  const double choice = load.value("SpatialEnhancement");
  const bool resizes = load.value("InResolution") != 0.0 || load.value("OutResolution") != 0.0;
  const bool withResize = choice != 0.0 && resizes;
  load.set("SpatialEnhancement", withResize ? choice : 0.0);
  load.set("SpatialEnhancer", withResize ? 0.0 : choice);
  for (const std::string_view word : {"Combined", "Horizontal", "Vertical"})
  {
    const double amount = load.value(params::joined(word, "Enhancer"));
    load.set(params::joined(word, "Enhancer"), withResize ? amount : 0.0);
    load.set(params::joined(word, "Details"), withResize ? 0.0 : amount);
  }
  params::showEnhancement(load.access);
  if (choice == 0.0)
    params::showDetails(load.access);
  load.access.setVisible("SpatialEnhancement", withResize);
}

void addEnhancerRules(Rules& rules)
{
  const auto amount = [](const LookLoad& load) { return load.isOn("SpatialEnhancement") ? 2.0 : 0.0; };
  const auto hold = [](LookLoad&, double) {};
  rules["SpatialEnhancement"].set = hold;
  rules["HorizontalEnhancer"] = {.fallback = amount, .set = hold, .then = {}};
  rules["VerticalEnhancer"] = {.fallback = amount, .set = hold, .then = {}};
  rules["CombinedEnhancer"] = {.fallback = amount, .set = hold, .then = setEnhancers};
}

// Masters and swatches follow the last of their channels.

double meanOf(const LookLoad& load, const params::Master& master)
{
  std::vector<double> values;
  for (const std::string& channel : master.channels)
    values.push_back(load.value(channel));
  const double mean = params::mean(values);
  // Part of the format: this one master is loaded at half its mean.
  return master.name == "SaturationCombo" ? mean * 0.5 : mean;
}

void addMasterRules(Rules& rules)
{
  for (const params::Master& master : params::masters())
  {
    // The enhancers' masters have fields of their own.
    if (master.name.starts_with("Combined"))
      continue;
    rules[master.channels.back()].then = [&master](LookLoad& load) { load.set(master.name, meanOf(load, master)); };
  }
  for (const params::HueSwatch& swatch : params::hueSwatches())
  {
    if (swatch.centres.size() != 1)
      continue;
    rules[swatch.centres.front()].then = [&swatch](LookLoad& load)
    { params::writeRgb(load.access, swatch.name, params::colourOf(load.value(swatch.centres.front()))); };
  }
}

// Does `more` after what the parameter's rule does already.
void addThen(Rules& rules, std::string_view parameter, std::function<void(LookLoad&)> more)
{
  LookRule& rule = rules[parameter];
  if (!rule.then)
  {
    rule.then = std::move(more);
    return;
  }
  rule.then = [first = std::move(rule.then), more = std::move(more)](LookLoad& load)
  {
    first(load);
    more(load);
  };
}

// Soup

// A bleach of nothing at all is no bleach: its pivot goes home too.
void resetEmptyBleach(LookLoad& load)
{
  if (!load.isOn("SoupBypass") || params::isOn(load.access, "LableachBypass") ||
      load.access.number("LabBleachRGB") != 0.0)
    return;
  for (const std::string_view name : {"LabBleachRed", "LabBleachGreen", "LabBleachBlue", "LabBleachRGB"})
    load.set(name, 0.0);
  load.set("LabBleachPivot", 0.3);
}

void addSoupRules(Rules& rules)
{
  rules["SoupBypass"].then = [](LookLoad& load)
  {
    if (load.isOn("SoupBypass"))
      load.set("CameraStock", 0.0);
  };
  // The index alone: the stock's values are the fields that follow.
  rules["CameraStock"].set = [](LookLoad& load, double value)
  { load.set("CameraStock", load.isOn("SoupBypass") ? 0.0 : value); };
  rules["LableachBypass"].set = [](LookLoad& load, double value)
  {
    const bool active = load.isOn("CameraStock") && !load.isOn("SoupBypass");
    load.set("LableachBypass", active ? value : 0.0);
  };
  addThen(rules, "VibZoneHighRange", [](LookLoad& load) { params::showAttributes(load.access); });
  for (const params::Param& param : params::catalogue())
    if (param.kind == params::Kind::Choice && param.name.starts_with("Refine") && param.name.ends_with("Zone"))
      addThen(rules, param.name, [&param](LookLoad& load) { params::showZone(load.access, param.name); });
  addThen(rules, "RefineTwelveZoneHighRange", [](LookLoad& load) { params::showRefinement(load.access); });
  addThen(rules, "ToneCurves", [](LookLoad& load) { params::showToneCurve(load.access); });
  addThen(rules, "LabBleachBlue", resetEmptyBleach);
  addThen(rules, "UniformPattern", [](LookLoad& load) { params::showDispersion(load.access); });
}

// Print

// Shorter than the page's list: a load has never barred print for the four encodings at the end of that one.
constexpr std::array inputsThatBarPrint{1, 8, 27, 29, 31, 32, 33, 34};

void layOutPrint(LookLoad& load)
{
  const bool barred =
      std::ranges::find(inputsThatBarPrint, static_cast<int>(load.value("InputGamut"))) != inputsThatBarPrint.end();
  params::layOutPrintPanel(load.access, barred);
  if (!barred)
    return;
  load.set("Bleach", 0.0);
  load.set("PrintDisplayBypass", 1.0);
}

void addPrintRules(Rules& rules)
{
  rules["PrintProfile"].then = [](LookLoad& load)
  {
    const int stock = static_cast<int>(load.value("PrintProfile"));
    if (stock == 0)
      load.set("Bleach", 0.0);
    params::writePrintStore(load.access, stock);
  };
  rules["Bleach"].set = [](LookLoad& load, double value)
  {
    const bool off = load.isOn("PrintDisplayBypass") || params::isOn(load.access, "LableachBypass");
    load.set("Bleach", off ? 0.0 : value);
  };
  rules["PrintPeakBrightness"] = {
      .fallback =
          [](const LookLoad& load)
      {
        return params::isHdrDisplay(static_cast<int>(load.value("OutputDisplayGamut"))) ? params::hdrPeakBrightness
                                                                                        : params::sdrPeakBrightness;
      },
      .set = [](LookLoad& load, double value) { load.set("PrintPeakBrightness", std::max(value, 0.001)); },
      .then = {}};
  addThen(rules, "PrinterLightBlue", layOutPrint);
}

Rules makeRules()
{
  Rules rules;
  addInputRules(rules);
  addSizeRules(rules);
  addEnhancerRules(rules);
  addMasterRules(rules);
  addSoupRules(rules);
  addPrintRules(rules);
  return rules;
}

}  // namespace

const LookRule& lookRuleOf(std::string_view parameter)
{
  static const Rules all = makeRules();
  static const LookRule none;
  const auto found = all.find(parameter);
  return found != all.end() ? found->second : none;
}

}  // namespace morvellan::files
