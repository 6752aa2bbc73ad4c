// Which rule a changed parameter has: a table from name to rule, filled once from the tables of families and masters.
// The rules themselves stand with their panels, masters, stocks and resets; the small ones stand here.
#include "params/rules.h"

#include "params/bulk_writes.h"
#include "params/camera_stock.h"
#include "params/choices.h"
#include "params/edit.h"
#include "params/hue_swatches.h"
#include "params/index_classes.h"
#include "params/masters.h"
#include "params/panels.h"
#include "params/print_stock.h"
#include "params/resets.h"

#include <functional>
#include <string>
#include <unordered_map>

namespace morvellan::params
{
namespace
{
void inputGamutChanged(ParamAccess& access)
{
  showInputPanel(access);
  showPrintPanel(access);
  if (isGammaInput(indexOf(access, "InputGamut")))
    writeDerived(access, "PrintDisplayBypass", 1.0);
}

void hdrCompensationChanged(ParamAccess& access)
{
  if (!isLinearInput(indexOf(access, "InputGamut")))
    writeDerived(access, "HDRcomp", 0.0);
  showInputPanel(access);
}

void resolutionChanged(ParamAccess& access, Side side)
{
  const std::string_view stem = side == Side::Source ? "Source" : "Target";
  const auto named = [&](std::string_view suffix) { return joined(stem, suffix); };
  const int choice = indexOf(access, side == Side::Source ? "InResolution" : "OutResolution");

  Size size{indexOf(access, named("Width")), indexOf(access, named("Height"))};
  if (choice == timelineResolution)
    size = access.imageSize(side).value_or(size);
  else if (choice >= firstPreset)
    size = resolutionPresets()[static_cast<std::size_t>(choice - firstPreset)].size;
  writeDerived(access, named("Width"), size.width);
  writeDerived(access, named("Height"), size.height);
  access.rememberResolution(side, choice, size);

  showSizes(access, side);
  if (choice != customResolution)
  {
    writeDerived(access, named("WidthOffset"), 0.5);
    writeDerived(access, named("HeightOffset"), 0.5);
  }
}

using Rule = std::function<void(ParamAccess&)>;
using Rules = std::unordered_map<std::string_view, Rule>;

Rule performs(Action action)
{
  return [action](ParamAccess& access) { access.perform(action); };
}

void addPageRules(Rules& rules)
{
  rules["InputGamut"] = inputGamutChanged;
  rules["ProcessLinear"] = showInputClass;
  rules["HDRcomp"] = hdrCompensationChanged;
  rules["SoftClips"] = showSoftClips;
  rules["InResolution"] = [](ParamAccess& access) { resolutionChanged(access, Side::Source); };
  rules["OutResolution"] = [](ParamAccess& access) { resolutionChanged(access, Side::Target); };
  rules["SpatialEnhancement"] = showEnhancement;
  rules["SpatialEnhancer"] = showDetails;
  rules["ColorCorrection"] = showAttributes;
  rules["ColorRefine"] = showRefinement;
  rules["ToneCurves"] = showToneCurve;
  rules["DispersionPattern"] = showDispersion;
  rules["PrintDisplayBypass"] = showPrintPanel;

  // The layers of a stock overwrite one another.
  rules["CameraStock"] = [](ParamAccess& access) { inOneGo(access, cameraStockChosen); };
  rules["LableachBypass"] = labBleachChanged;
  rules["SoupBypass"] = soupBypassChanged;
  rules["PrintProfile"] = [](ParamAccess& access) { inOneGo(access, printStockChosen); };
  rules["Bleach"] = printBleachChanged;
  rules["OutputDisplayGamut"] = displayChosen;
}

void addButtonRules(Rules& rules)
{
  rules["ClearHalation"] = clearHalation;
  rules["ClearTexturePitches"] = clearTexturePitches;
  rules["ClearSoupSatHueChrVib"] = clearAttributes;
  rules["ResetSoupRefine"] = resetRefine;
  rules["ResetCurves"] = resetCurves;
  rules["ClearLab"] = clearLab;
  rules["ResetSoup"] = resetSoup;
  rules["ResetGrains"] = resetGrains;
  rules["ResetPrintDisplay"] = resetPrintDisplay;

  rules["SaveLooks"] = performs(Action::SaveLook);
  rules["LoadLooks"] = performs(Action::LoadLook);
  rules["CudaInfo"] = performs(Action::CudaReport);
  rules["ClipInfo"] = performs(Action::ClipReport);
  rules["About"] = performs(Action::AboutReport);
  rules["GrainDepth"] = performs(Action::GrainDepthChosen);
  rules["NatronGPU"] = performs(Action::GpuChosen);
}

// The names of these rules live in tables that last as long as the process.
void addFamilyRules(Rules& rules)
{
  for (const Master& master : masters())
  {
    rules[master.name] = [&master](ParamAccess& access) { masterChanged(access, master); };
    for (const std::string& channel : master.channels)
      rules[channel] = [&master](ParamAccess& access) { channelChanged(access, master); };
    if (!master.swatch.empty())
      rules[master.swatch] = [&master](ParamAccess& access) { toneSwatchChanged(access, master); };
  }
  for (const HueSwatch& swatch : hueSwatches())
  {
    rules[swatch.name] = [&swatch](ParamAccess& access) { hueSwatchChanged(access, swatch); };
    for (const std::string& centre : swatch.centres)
      rules[centre] = [&swatch, &centre](ParamAccess& access) { hueCentreChanged(access, swatch, centre); };
  }
  for (const Param& param : catalogue())
    if (param.kind == Kind::Choice && param.name.ends_with("Zone"))
      rules[param.name] = [&param](ParamAccess& access) { showZone(access, param.name); };
}

const Rules& theRules()
{
  static const Rules all = []
  {
    Rules made;
    addPageRules(made);
    addButtonRules(made);
    addFamilyRules(made);
    return made;
  }();
  return all;
}
}  // namespace

void changedParam(ParamAccess& access, std::string_view name, Reason reason)
{
  if (reason != Reason::UserEdited)
    return;
  if (const auto rule = theRules().find(name); rule != theRules().end())
    rule->second(access);
}

void showForValues(ParamAccess& access)
{
  showInputPanel(access);
  showSoftClips(access);
  showSizes(access, Side::Source);
  showSizes(access, Side::Target);
  showEnhancement(access);
  if (indexOf(access, "SpatialEnhancement") == 0)
    showDetails(access);
  showDispersion(access);
  showAttributes(access);
  showRefinement(access);
  showToneCurve(access);
  showPrintPanel(access);
}
}  // namespace morvellan::params
