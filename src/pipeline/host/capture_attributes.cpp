// Capture of attributes, refinements and their zones.
#include "pipeline/host/capture_attributes.h"

#include "pipeline/host/capture_math.h"
#include "pipeline/host/capture_parts.h"

namespace morvellan
{
namespace
{

constexpr double neutral = 0.5;
constexpr double usualWidthFloor = 0.001;
constexpr double noWidthFloor = 0.0;

// How one attribute turns its sliders into kernel units.
struct AttributeRule
{
  double axisOffset;  // an axis is 2 times its slider, less this
  double (*vectorStrength)(double);
  double widthFloor;
};

constexpr AttributeRule saturationRule = {0.0, [](double value) { return value * 2.0; }, usualWidthFloor};
constexpr AttributeRule hueRule = {1.0, [](double value) { return atLeast(value, 0.001); }, noWidthFloor};
constexpr AttributeRule chromaRule = {1.0, [](double value) { return value; }, usualWidthFloor};
// The custom band of vibrance is never narrower than a vector's window.
constexpr AttributeRule vibranceRule = {1.0, [](double value) { return value * 2.0 - 1.0; }, 1.0};

double exponentialGain(double value, double scale)
{
  return std::exp2((value * scale - 2.0) * scale);
}

// Reads a band unless its strength is neutral; strengthOf takes the slider and the half-width.
template <typename StrengthOf>
void captureBand(const ParameterValues& values, const BandNames& names, double widthFloor, StrengthOf strengthOf,
                 BandParams& band)
{
  const double slider = values.number(names.strength);
  band.live = slider != neutral;
  if (!band.live)
    return;
  const double width = atLeast(values.number(names.width) / 180.0, widthFloor);
  band.hue = narrow(values.number(names.hue) / 60.0);
  band.width = narrow(width);
  band.strength = narrow(strengthOf(slider, width));
}

void clearZone(ZoneParams& zone)
{
  zone.mode = 0;
  zone.both = false;
}

void captureZone(const ParameterValues& values, const ZoneNames& names, double rangeOffset, ZoneParams& zone)
{
  const auto range = [&](const FamilyName& name)
  { return narrow(1.0 / std::exp2(values.number(name) * 8.0 - rangeOffset)); };
  clearZone(zone);
  const double low = values.number(names.low);
  if (low != neutral)
  {
    zone.low = narrow(low * 2.0);
    zone.lowRange = range(names.lowRange);
    zone.mode = 1;
  }
  const double high = values.number(names.high);
  if (high != neutral)
  {
    zone.high = narrow(high * 2.0);
    zone.highRange = range(names.highRange);
    zone.both = zone.mode == 1;
    zone.mode = zone.both ? 1 : 2;
  }
}

void captureVector(const ParameterValues& values, const AttributeNames& names, const AttributeRule& rule,
                   AttributeParams& attribute)
{
  std::array<double, 6> doubled{};
  std::transform(names.axis.begin(), names.axis.end(), doubled.begin(),
                 [&](const FamilyName& name) { return values.number(name) * 2.0; });
  attribute.vectorLive = std::any_of(doubled.begin(), doubled.end(), [](double value) { return value != 1.0; });
  if (!attribute.vectorLive)
    return;
  std::transform(doubled.begin(), doubled.end(), attribute.axis,
                 [&](double value) { return narrow(value - rule.axisOffset); });
  attribute.vectorStrength = narrow(rule.vectorStrength(values.number(names.strength)));
}

template <typename StrengthOf>
void captureAttribute(const ParameterValues& values, const AttributeNames& names, const AttributeRule& rule,
                      StrengthOf customStrength, AttributeParams& attribute)
{
  captureVector(values, names, rule, attribute);
  captureBand(values, names.custom, rule.widthFloor, customStrength, attribute.custom);
  if ((attribute.vectorLive || attribute.custom.live) && values.on(names.zone.choice))
    captureZone(values, names.zone, 4.0, attribute.zone);
  else
    clearZone(attribute.zone);
}

void clearSwitches(AttributeParams& attribute)
{
  attribute.vectorLive = false;
  attribute.custom.live = false;
  clearZone(attribute.zone);
}

}  // namespace

void captureAttributes(const ParameterValues& values, const AttributesNames& names, const AttributeConstants& constants,
                       AttributesParams& attributes)
{
  captureAttribute(
      values, names.saturation, saturationRule, [](double slider, double) { return slider * 2.0; },
      attributes.saturation);
  captureAttribute(
      values, names.hue, hueRule,
      [&](double slider, double width)
      { return (slider * constants.customHueScale - constants.customHueOffset) * width; },
      attributes.hue);
  captureAttribute(
      values, names.chroma, chromaRule, [](double slider, double) { return exponentialGain(slider, 4.0); },
      attributes.chroma);
  captureAttribute(
      values, names.vibrance, vibranceRule, [](double slider, double) { return slider * 2.0 - 1.0; },
      attributes.vibrance);
}

void clearSwitches(AttributesParams& attributes)
{
  clearSwitches(attributes.saturation);
  clearSwitches(attributes.hue);
  clearSwitches(attributes.chroma);
  clearSwitches(attributes.vibrance);
}

bool captureRefinement(const ParameterValues& values, const RefinementNames& names,
                       const RefinementConstants& constants, double saturationWidthFloor, RefinementParams& refinement)
{
  captureBand(
      values, names.saturation, saturationWidthFloor, [](double slider, double) { return slider * 2.0; },
      refinement.saturation);
  captureBand(
      values, names.hue, noWidthFloor,
      [&](double slider, double) { return slider * constants.hueScale - constants.hueOffset; }, refinement.hue);
  captureBand(
      values, names.chroma, usualWidthFloor,
      [&](double slider, double) { return exponentialGain(slider, constants.chromaScale); }, refinement.chroma);
  captureBand(
      values, names.vibrance, usualWidthFloor, [](double slider, double) { return slider * 2.0 - 1.0; },
      refinement.vibrance);
  refinement.live =
      refinement.saturation.live || refinement.hue.live || refinement.chroma.live || refinement.vibrance.live;
  if (refinement.live && values.on(names.zone.choice))
    captureZone(values, names.zone, constants.zoneRangeOffset, refinement.zone);
  else
    clearZone(refinement.zone);
  return refinement.live;
}

void clearSwitches(std::span<RefinementParams> refinements)
{
  for (RefinementParams& refinement : refinements)
  {
    refinement.live = false;
    for (BandParams* band : {&refinement.saturation, &refinement.hue, &refinement.chroma, &refinement.vibrance})
      band->live = false;
    clearZone(refinement.zone);
  }
}

void captureSoupAttributes(const ParameterValues& values, FrameParams& params)
{
  static constexpr AttributesNames names = attributesNames("");
  constexpr AttributeConstants constants = {.customHueScale = 2.0, .customHueOffset = 1.0};
  if (values.on("ColorCorrection"))
    captureAttributes(values, names, constants, params.soupAttributes);
  else
    clearSwitches(params.soupAttributes);
}

void captureSoupRefinements(const ParameterValues& values, FrameParams& params)
{
  static constexpr std::array<RefinementNames, 11> names = {
      refinementNames("RefineTwo"),    refinementNames("RefineThree"), refinementNames("RefineFour"),
      refinementNames("RefineFive"),   refinementNames("RefineSix"),   refinementNames("RefineSeven"),
      refinementNames("RefineEight"),  refinementNames("RefineNine"),  refinementNames("RefineTen"),
      refinementNames("RefineEleven"), refinementNames("RefineTwelve")};
  constexpr RefinementConstants constants = {
      .hueScale = 4.0, .hueOffset = 2.0, .chromaScale = 4.0, .zoneRangeOffset = 4.0};
  constexpr std::size_t twelve = names.size() - 1;
  params.refineActive = false;
  if (!values.on("ColorRefine"))
    return clearSwitches(params.soupRefinements);
  for (std::size_t i = 0; i < names.size(); ++i)
  {
    // The last refinement alone takes a width of 0 as it is.
    const double widthFloor = i == twelve ? noWidthFloor : usualWidthFloor;
    params.refineActive |= captureRefinement(values, names[i], constants, widthFloor, params.soupRefinements[i]);
  }
}

void capturePrintAttributes(const ParameterValues& values, FrameParams& params)
{
  static constexpr AttributesNames names = attributesNames("Print");
  constexpr AttributeConstants constants = {.customHueScale = 3.0, .customHueOffset = 1.5};
  // PrintHue has no say: alone it does not open the block.
  if (values.on("PrintSat") || values.on("PrintChr") || values.on("PrintVib"))
    captureAttributes(values, names, constants, params.printAttributes);
  else
    clearSwitches(params.printAttributes);
}

void capturePrintRefinements(const ParameterValues& values, FrameParams& params)
{
  static constexpr std::array<std::string_view, 6> switches = {
      "PrintRefineTwo", "PrintRefineThree", "PrintRefineFour", "PrintRefineFive", "PrintRefineSix", "PrintRefineSeven"};
  static constexpr std::array<RefinementNames, 6> names = {refinementNames(switches[0]), refinementNames(switches[1]),
                                                           refinementNames(switches[2]), refinementNames(switches[3]),
                                                           refinementNames(switches[4]), refinementNames(switches[5])};
  constexpr RefinementConstants constants = {
      .hueScale = 5.0, .hueOffset = 2.5, .chromaScale = 0.4, .zoneRangeOffset = 0.4};
  params.printRefineActive = false;
  // Any one of the switches opens all six.
  if (std::none_of(switches.begin(), switches.end(), [&](std::string_view name) { return values.on(name); }))
    return clearSwitches(params.printRefinements);
  for (std::size_t i = 0; i < names.size(); ++i)
    params.printRefineActive |=
        captureRefinement(values, names[i], constants, usualWidthFloor, params.printRefinements[i]);
}

}  // namespace morvellan
