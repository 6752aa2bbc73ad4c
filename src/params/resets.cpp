// The reset table. Most rows are the catalogue's defaults; the curves and the print side have reset values of their
// own. A reset is one bulk write and stands in no edit block.
#include "params/resets.h"

#include "params/catalogue.h"
#include "params/edit.h"
#include "params/families.h"
#include "params/index_classes.h"
#include "params/panels.h"
#include "params/stock_points.h"
#include "params/stocks.h"

#include <algorithm>

namespace morvellan::params
{
namespace
{
template <class Names>
void writeDefaults(ParamAccess& access, const Names& names)
{
  for (const auto& name : names)
    writeDefault(access, name);
}

// A tone curve back to flat: its channels, its pivot where it has one, its swatch.
struct FlatCurve
{
  std::string_view stem;
  std::optional<double> pivot;
};

// In the order of ToneCurves, from 1.
constexpr std::array<FlatCurve, 4> flatCurves{
    {{"LabBleach", 0.3}, {"SoupToe", 0.5}, {"SoupKnee", std::nullopt}, {"SoupShoulder", 0.5}}};

void flatten(ParamAccess& access, const FlatCurve& curve)
{
  writeFamily(access, curve.stem, joined(curve.stem, "RGB"), 0.0);
  if (curve.pivot)
    write(access, joined(curve.stem, "Pivot"), *curve.pivot);
  writeRgb(access, joined(curve.stem, "Swatch"), {0.5, 0.5, 0.5});
}

void resetFilmic(ParamAccess& access)
{
  write(access, "SoupFilmicPivot", 0.0);
  write(access, "SoupFilmicSlope", 0.014);
}

void resetAllCurves(ParamAccess& access)
{
  for (const FlatCurve& curve : flatCurves)
    flatten(access, curve);
  resetFilmic(access);
}

void resetAllAttributes(ParamAccess& access)
{
  for (const Axis& axis : axes)
    writeDefaults(access, attributeMembers(axis));
}

void resetAllRefinements(ParamAccess& access)
{
  for (const std::string_view word : refineWords)
    writeDefaults(access, refinementMembers(word));
}
}  // namespace

void clearTexturePitches(ParamAccess& access)
{
  for (const Pitch& pitch : pitches)
    writeDefault(access, pitch.name);
  writeDefault(access, "EnsemblePitch");
  // Off, although the default is on: the pitches are neutral and the next move is to be seen.
  write(access, "PitchBypass", 0.0);
}

void clearHalation(ParamAccess& access)
{
  for (const Param& param : catalogue())
    if (param.parent == "Halation" && param.kind == Kind::Double)
      writeDefault(access, param.name);
}

void clearAttributes(ParamAccess& access)
{
  const int choice = indexOf(access, "ColorCorrection");
  if (choice == 0)
    resetAllAttributes(access);
  else
    writeDefaults(access, attributeMembers(axes.at(static_cast<std::size_t>(choice - 1))));
}

void resetRefine(ParamAccess& access)
{
  const int choice = indexOf(access, "ColorRefine");
  if (choice == 0)
    resetAllRefinements(access);
  else
    writeDefaults(access, refinementMembers(refineWords.at(static_cast<std::size_t>(choice - 1))));
}

void resetCurves(ParamAccess& access)
{
  const int choice = indexOf(access, "ToneCurves");
  if (choice == 0)
    resetAllCurves(access);
  else if (choice == filmicCurve)
    resetFilmic(access);
  else
    flatten(access, flatCurves.at(static_cast<std::size_t>(choice - 1)));
}

void clearLab(ParamAccess& access)
{
  for (const Param& param : catalogue())
    if (param.parent == "Lab" && param.kind != Kind::PushButton)
      writeDefault(access, param.name);
}

void resetSoup(ParamAccess& access)
{
  for (const std::string_view name :
       {"SoupHighlightCeiling", "SoupHighlightCompress", "SoupShadowFloor", "SoupShadowExpand", "CameraStock",
        "CameraCast", "CameraTintGtoM", "CameraTintRtoC"})
    writeDefault(access, name);
  resetAllAttributes(access);
  resetAllRefinements(access);
  resetAllCurves(access);
  clearLab(access);
  for (const std::string_view stem : {"SoupDmin", "SoupDmax"})
  {
    writeDefaults(access, channelNames(stem));
    writeDefault(access, joined(stem, "RGB"));
  }
}

void resetGrains(ParamAccess& access)
{
  for (const std::string_view name : {"GrainLinear", "DispersionPattern", "UniformPattern"})
    writeDefault(access, name);
  for (const std::string_view stem : {"Granularity", "Size", "Soft", "Variance", "Strength"})
  {
    writeDefaults(access, channelNames(stem));
    writeDefault(access, joined(stem, "RGB"));
  }
}

void resetPrintDisplay(ParamAccess& access)
{
  for (const std::string_view name : {"PrintProfile", "PrintCast", "PrintTintGtoM", "PrintTintRtoC", "PrintSaturation",
                                      "Bleach", "OutputDisplayGamut"})
    writeDefault(access, name);
  write(access, "PrintPeakBrightness", sdrPeakBrightness);
  writePoints(access, plainPoints);
  for (const Param& param : catalogue())
    if (param.hidden == Hidden::SecretOnly)
      writeDefault(access, param.name);
  hidePrintStockControls(access);
  access.setVisible("PrintPeakBrightness", false);
}
}  // namespace morvellan::params
