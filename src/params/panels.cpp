// The visibility rules of the page. Each reads what it needs and shows or hides; nothing but the print panel writes.
// Zones, attributes and vectors share one rule for their four zone sliders.
#include "params/panels.h"

#include "params/choices.h"
#include "params/edit.h"
#include "params/index_classes.h"

namespace morvellan::params
{
namespace
{
constexpr std::array<std::string_view, 3> enhancerSliders{"CombinedEnhancer", "HorizontalEnhancer", "VerticalEnhancer"};
constexpr std::array<std::string_view, 3> detailSliders{"CombinedDetails", "HorizontalDetails", "VerticalDetails"};

// The members of a family but its zone sliders, which follow the zone choice.
template <class Names>
void showFamily(ParamAccess& access, const Names& members, std::string_view zone)
{
  show(access, std::span(members).first(members.size() - zoneSuffixes.size()));
  showZone(access, zone);
}

struct Curve
{
  std::string_view stem;
  bool hasPivot;
};

// In the order of ToneCurves, from 1.
constexpr std::array<Curve, 4> curves{
    {{"LabBleach", true}, {"SoupToe", true}, {"SoupKnee", false}, {"SoupShoulder", true}}};

void showCurve(ParamAccess& access, const Curve& curve, bool visible)
{
  show(access, channelNames(curve.stem), visible);
  access.setVisible(joined(curve.stem, "RGB"), visible);
  access.setVisible(joined(curve.stem, "Swatch"), visible);
  if (curve.hasPivot)
    access.setVisible(joined(curve.stem, "Pivot"), visible);
}
}  // namespace

void showInputClass(ParamAccess& access)
{
  const bool linear = isLinearInput(indexOf(access, "InputGamut"));
  access.setVisible("HDRcomp", linear);
  access.setVisible("ProcessLinear", !linear);
}

void showInputPanel(ParamAccess& access)
{
  showInputClass(access);
  const bool linear = isLinearInput(indexOf(access, "InputGamut"));
  access.setVisible("GrainLinear", !(linear && isOn(access, "HDRcomp")));
}

void showSoftClips(ParamAccess& access)
{
  const int choice = indexOf(access, "SoftClips");
  show(access, std::array{"CameraHighlightsCeiling", "CameraHighlightsRecover"}, choice == 1);
  show(access, std::array{"CameraShadowsCeiling", "CameraShadowsRecover"}, choice == 2);
}

void showSizes(ParamAccess& access, Side side)
{
  const std::string_view stem = side == Side::Source ? "Source" : "Target";
  const int choice = indexOf(access, side == Side::Source ? "InResolution" : "OutResolution");
  for (const std::string_view suffix : {"Width", "Height", "WidthOffset", "HeightOffset"})
    access.setVisible(joined(stem, suffix), choice == customResolution);
  if (choice != timelineResolution)
    access.setVisible("SpatialEnhancement", true);
}

void showEnhancement(ParamAccess& access)
{
  if (indexOf(access, "SpatialEnhancement") != 0)
  {
    show(access, enhancerSliders);
    access.setVisible("SpatialEnhancer", false);
    hide(access, detailSliders);
    return;
  }
  hide(access, enhancerSliders);
  access.setVisible("SpatialEnhancer", true);
  if (indexOf(access, "SpatialEnhancer") != 0)
    show(access, detailSliders);
}

void showDetails(ParamAccess& access)
{
  const bool secret = indexOf(access, "SpatialEnhancer") == 0;
  for (const std::string_view name : detailSliders)
    access.setSecret(name, secret);
}

void showZone(ParamAccess& access, std::string_view zone)
{
  const int choice = indexOf(access, zone);
  const auto sliders = zoneSliders(zone);
  show(access, std::span(sliders).first(2), choice == 1);
  show(access, std::span(sliders).last(2), choice == 2);
}

void showAttributes(ParamAccess& access)
{
  const int choice = indexOf(access, "ColorCorrection");
  for (int i = 0; i < static_cast<int>(axes.size()); ++i)
  {
    const Axis& axis = axes[static_cast<std::size_t>(i)];
    const auto members = attributeMembers(axis);
    if (choice == i + 1)
      showFamily(access, members, joined(axis.shortWord, "Zone"));
    else
      hide(access, members);
  }
}

void showRefinement(ParamAccess& access)
{
  const int choice = indexOf(access, "ColorRefine");
  for (int i = 0; i < static_cast<int>(refineWords.size()); ++i)
  {
    const std::string_view word = refineWords[static_cast<std::size_t>(i)];
    const auto members = refinementMembers(word);
    if (choice == i + 1)
      showFamily(access, members, joined("Refine", word, "Zone"));
    else
      hide(access, members);
  }
}

void showToneCurve(ParamAccess& access)
{
  const int choice = indexOf(access, "ToneCurves");
  for (int i = 0; i < static_cast<int>(curves.size()); ++i)
    showCurve(access, curves[static_cast<std::size_t>(i)], choice == i + 1);
  show(access, filmicControls, choice == filmicCurve);
}

void showDispersion(ParamAccess& access)
{
  constexpr int firstUniformPattern = 3;
  access.setVisible("UniformPattern", indexOf(access, "DispersionPattern") >= firstUniformPattern);
}

void hidePrintStockControls(ParamAccess& access)
{
  hide(access, printStockControls);
  access.setVisible("Bleach", false);
  hide(access, printBleachControls);
}

void showPrintPanel(ParamAccess& access)
{
  layOutPrintPanel(access, isGammaInput(indexOf(access, "InputGamut")));
}

void layOutPrintPanel(ParamAccess& access, bool inputBarsPrint)
{
  const bool bypass = isOn(access, "PrintDisplayBypass");
  if (bypass || inputBarsPrint)
  {
    access.setVisible("PrintProfile", false);
    hidePrintStockControls(access);
    access.setVisible("OutputDisplayGamut", false);
    access.setVisible("PrintPeakBrightness", false);
    hide(access, printPointControls);
    if (bypass)
    {
      writeDerived(access, "Bleach", 0.0);
      access.setVisible("LableachBypass", true);
    }
    return;
  }

  access.setVisible("PrintProfile", true);
  if (indexOf(access, "PrintProfile") == 0)
  {
    hidePrintStockControls(access);
  }
  else
  {
    show(access, printStockControls);
    const bool labBleach = isOn(access, "LableachBypass");
    access.setVisible("Bleach", !labBleach);
    show(access, printBleachControls, !labBleach && isOn(access, "Bleach"));
  }
  access.setVisible("OutputDisplayGamut", true);
  show(access, printPointControls);
  access.setVisible("PrintPeakBrightness", isHdrDisplay(indexOf(access, "OutputDisplayGamut")));
}
}  // namespace morvellan::params
