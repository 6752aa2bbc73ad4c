// Writes camera stocks into the look, the tone curves, the densities and the print points.
// The writes of a stock are one bulk write and stand in no edit block.
#include "params/camera_stock.h"

#include "params/edit.h"
#include "params/hue_swatches.h"
#include "params/masters.h"
#include "params/panels.h"
#include "params/stock_points.h"
#include "params/stocks.h"

#include <algorithm>
#include <cmath>

namespace morvellan::params
{
namespace
{
constexpr double plainDmin = 0.584;
constexpr double plainDmax = 0.838;

constexpr std::array noStockTone{
    Setting{"SoupToePivot", 0.5545},      Setting{"SoupToeRed", 0.0795},     Setting{"SoupToeGreen", 0.0795},
    Setting{"SoupToeBlue", 0.0795},       Setting{"SoupToeRGB", 0.0795},     Setting{"SoupKneeRed", 0.024},
    Setting{"SoupKneeGreen", 0.024},      Setting{"SoupKneeBlue", 0.024},    Setting{"SoupKneeRGB", 0.024},
    Setting{"SoupShoulderPivot", 0.3805}, Setting{"SoupShoulderRed", 0.412}, Setting{"SoupShoulderGreen", 0.412},
    Setting{"SoupShoulderBlue", 0.412},   Setting{"SoupShoulderRGB", 0.412}, Setting{"SoupFilmicPivot", 0.0},
    Setting{"SoupFilmicSlope", 0.01},
};

void writeDensities(ParamAccess& access, double dmin, double dmax)
{
  writeFamily(access, "SoupDmin", "SoupDminRGB", dmin);
  writeFamily(access, "SoupDmax", "SoupDmaxRGB", dmax);
}

bool isDensity(std::string_view name)
{
  return name.starts_with("SoupDmin") || name.starts_with("SoupDmax");
}

double valueOf(const CameraRow& row, int stock)
{
  return row.values.at(static_cast<std::size_t>(stock - firstStock));
}

void writeStock(ParamAccess& access, int stock)
{
  for (const Setting& setting : cameraCommon())
    write(access, setting.name, setting.value);
  for (const CameraRow& row : cameraRows())
    if (const double value = valueOf(row, stock); !std::isnan(value))
      write(access, row.name, value);
}

void writeBleachLayer(ParamAccess& access, int stock)
{
  const CameraBleach& layer = cameraBleach(stock);
  write(access, "LabBleachPivot", layer.pivot);
  writeFamily(access, "LabBleach", "LabBleachRGB", layer.bleach);
  if (layer.toe)
  {
    write(access, "SoupToePivot", layer.toe->pivot);
    write(access, "SoupToeRed", layer.toe->red);
    write(access, "SoupToeGreen", layer.toe->green);
    write(access, "SoupToeBlue", layer.toe->blue);
    write(access, "SoupToeRGB", layer.toe->rgb);
  }

  const Rgb dmin = readFamily(access, "SoupDmin");
  const double most = std::ranges::max(dmin);
  Rgb shifted{};
  for (std::size_t i = 0; i < dmin.size(); ++i)
    shifted[i] = most > 0.0 ? dmin[i] + (1.0 - most - layer.c) : (1.0 + most - layer.c) - dmin[i];
  writeFamily(access, "SoupDmin", "SoupDminRGB", shifted);
  scaleByMean(access, "SoupDmax", "SoupDmaxRGB", layer.k);
}

// Everything that a stock writes, at its neutral value; the swatches too.
void writeCustom(ParamAccess& access)
{
  for (const Setting& setting : cameraCommon())
    writeDefault(access, setting.name);
  for (const CameraRow& row : cameraRows())
    if (!isDensity(row.name))
      writeDefault(access, row.name);
  writeDensities(access, plainDmin, plainDmax);
  for (const HueSwatch& swatch : hueSwatches())
    writeDefault(access, swatch.name);
  for (const Master& master : masters())
    if (!master.swatch.empty())
      writeDefault(access, master.swatch);
}

// The print points of a camera stock, which a print stock's own take the place of.
void writePointsWithoutPrint(ParamAccess& access, const PrintPoints& points)
{
  if (const int print = indexOf(access, "PrintProfile"); print == noStock || print == customStock)
    writePoints(access, points);
}

// Switches on what is still off, so that the stock can be seen.
void openPanels(ParamAccess& access)
{
  if (indexOf(access, "ColorCorrection") == 0)
  {
    write(access, "ColorCorrection", 1.0);
    showAttributes(access);
  }
  if (indexOf(access, "ColorRefine") == 0)
  {
    write(access, "ColorRefine", 1.0);
    showRefinement(access);
  }
  if (indexOf(access, "ToneCurves") == 0)
  {
    write(access, "ToneCurves", filmicCurve);
    show(access, filmicControls);
  }
}

void noneChosen(ParamAccess& access)
{
  write(access, "ColorCorrection", 0.0);
  write(access, "ColorRefine", 0.0);
  write(access, "ToneCurves", filmicCurve);
  show(access, filmicControls);
  if (!isOn(access, "PrintDisplayBypass") && indexOf(access, "PrintProfile") == noStock)
  {
    writeNoStockTone(access);
    return;
  }
  writeCustom(access);
  writePointsWithoutPrint(access, plainPoints);
}
}  // namespace

void writeNoStockTone(ParamAccess& access)
{
  for (const Setting& setting : noStockTone)
    write(access, setting.name, setting.value);
  writeDensities(access, 0.558, 0.647);
  writePoints(access, plainPoints);
}

void cameraStockChosen(ParamAccess& access)
{
  if (isOn(access, "SoupBypass"))
    return;
  const int stock = indexOf(access, "CameraStock");
  if (stock == noStock)
  {
    noneChosen(access);
    return;
  }
  openPanels(access);
  if (stock == customStock)
  {
    writeCustom(access);
    writePointsWithoutPrint(access, plainPoints);
    return;
  }
  writeStock(access, stock);
  if (isOn(access, "LableachBypass") && !isOn(access, "Bleach"))
    writeBleachLayer(access, stock);
  writePointsWithoutPrint(access, stockPoints);
}

namespace
{
void labBleachOn(ParamAccess& access)
{
  if (isOn(access, "Bleach"))
  {
    writeDerived(access, "LableachBypass", 0.0);
    access.setVisible("LableachBypass", false);
    return;
  }
  if (isOn(access, "SoupBypass"))
    return;
  access.setVisible("Bleach", false);
  const int stock = indexOf(access, "CameraStock");
  if (stock >= firstStock)
  {
    writeBleachLayer(access, stock);
  }
  else if (stock == noStock)
  {
    writeFamily(access, "LabBleach", "LabBleachRGB", 0.0);
    write(access, "LabBleachPivot", 0.3);
    writeDensities(access, plainDmin, plainDmax);
  }
}

void labBleachOff(ParamAccess& access)
{
  writeFamily(access, "LabBleach", "LabBleachRGB", 0.0);
  write(access, "LabBleachPivot", 0.3);
  const int stock = indexOf(access, "CameraStock");
  if (stock == noStock)
    writeDensities(access, plainDmin, plainDmax);
  for (const CameraRow& row : cameraRows())
    if (stock >= firstStock && isDensity(row.name))
      write(access, row.name, valueOf(row, stock));
  if (!isOn(access, "PrintDisplayBypass") && indexOf(access, "PrintProfile") != noStock)
    access.setVisible("Bleach", true);
}
}  // namespace

void labBleachChanged(ParamAccess& access)
{
  if (isOn(access, "LableachBypass"))
    labBleachOn(access);
  else
    labBleachOff(access);
}

void soupBypassChanged(ParamAccess& access)
{
  if (!isOn(access, "SoupBypass"))
    return;
  writeDerived(access, "LableachBypass", 0.0);
  if (indexOf(access, "PrintProfile") != noStock)
    access.setVisible("Bleach", true);
}
}  // namespace morvellan::params
