// Writes print stocks into the print controls and the store, and lays out what a stock shows.
// The writes of a stock are one bulk write and stand in no edit block.
#include "params/print_stock.h"

#include "params/camera_stock.h"
#include "params/catalogue.h"
#include "params/edit.h"
#include "params/index_classes.h"
#include "params/panels.h"
#include "params/stock_points.h"
#include "params/stocks.h"

#include <algorithm>

namespace morvellan::params
{
namespace
{
constexpr double plainBleachPivot = 0.3;

bool hasTable(int stock)
{
  return stock >= firstStock && stock < firstStock + static_cast<int>(printStockCount);
}

// The custom stock: the store at its defaults, but the curves flat and the attributes active as for every stock.
void writeNeutralStore(ParamAccess& access)
{
  for (const Param& param : catalogue())
    if (param.hidden == Hidden::SecretOnly && param.kind == Kind::Double && !param.name.starts_with("PrintCurve"))
      writeDefault(access, param.name);
  for (const std::string_view stem : {"PrintCurveShadow", "PrintCurveMidtone", "PrintCurveHighlight"})
    writeFamily(access, stem, stem, 0.0);
  for (const std::string_view pivot : {"PrintCurveShadowPivot", "PrintCurveHighlightPivot"})
    write(access, pivot, 0.5);
  for (const Setting& setting : printCommon())
    if (at(setting.name).kind == Kind::Integer && at(setting.name).hidden == Hidden::SecretOnly)
      write(access, setting.name, setting.value);
}

void writeNeutralControls(ParamAccess& access)
{
  write(access, "Bleach", 0.0);
  write(access, "PrintBleachPivot", plainBleachPivot);
  writeFamily(access, "PrintBleach", "PrintBleach", 0.0);
  write(access, "PrintFilmicPivot", 0.0);
  write(access, "PrintFilmicSlope", 0.0);
}

// The print points when the print side has no stock of its own; a bypassed Soup counts as a custom camera stock.
// Without any stock the tone set of such a page is written with them, unless the print stock is the custom one.
void writeCameraPoints(ParamAccess& access, bool withTone)
{
  const int camera = isOn(access, "SoupBypass") ? customStock : indexOf(access, "CameraStock");
  if (camera >= firstStock)
    writePoints(access, stockPoints);
  else if (camera == noStock && withTone)
    writeNoStockTone(access);
  else
    writePoints(access, plainPoints);
}

void writeBleachLayer(ParamAccess& access, int stock)
{
  const PrintConstants& constants = printConstants(stock);
  write(access, "PrintBleachPivot", constants.bleachPivot);
  writeFamily(access, "PrintBleach", "PrintBleach", 0.0);
  write(access, "PrintFilmicPivot", 0.0);
  write(access, "PrintFilmicSlope", 0.0);

  Rgb black = readFamily(access, "PrintBlack");
  const double most = std::ranges::max(black);
  const double shift = most > 0.0 ? -(1.0 + most + constants.c) : 1.0 - most - constants.c;
  for (double& channel : black)
    channel += shift;
  writeFamily(access, "PrintBlack", "PrintBlackRGB", black);
  scaleByMean(access, "PrinterLight", "PrinterLightsRGB", constants.k);
}

// The table's values of a stock that has any, for the parameters that are wanted.
template <class Wanted>
void writeTable(ParamAccess& access, int stock, const Wanted& wanted)
{
  if (!hasTable(stock))
    return;
  for (const Setting& setting : printCommon())
    if (wanted(setting.name))
      write(access, setting.name, setting.value);
  for (const PrintRow& row : printRows())
    if (wanted(row.name))
      write(access, row.name, row.values[static_cast<std::size_t>(stock - firstStock)]);
}

void noneChosen(ParamAccess& access)
{
  hidePrintStockControls(access);
  write(access, "Bleach", 0.0);
  writeCameraPoints(access, true);
  show(access, printPointControls);
}
}  // namespace

void writePrintStock(ParamAccess& access, int stock)
{
  if (stock == customStock)
  {
    writeNeutralStore(access);
    writeNeutralControls(access);
  }
  writeTable(access, stock, [](std::string_view) { return true; });
}

void writePrintStore(ParamAccess& access, int stock)
{
  if (stock == customStock)
    writeNeutralStore(access);
  writeTable(access, stock, [](std::string_view name) { return at(name).hidden == Hidden::SecretOnly; });
}

void printStockChosen(ParamAccess& access)
{
  const int stock = indexOf(access, "PrintProfile");
  if (stock == noStock)
  {
    noneChosen(access);
    return;
  }
  if (stock == customStock)
    writeCameraPoints(access, false);
  writePrintStock(access, stock);
  showPrintPanel(access);
  if (hasTable(stock) && isOn(access, "Bleach") && !isOn(access, "LableachBypass"))
    writeBleachLayer(access, stock);
}

namespace
{
void bleachOn(ParamAccess& access, int stock)
{
  if (isOn(access, "LableachBypass"))
  {
    writeDerived(access, "Bleach", 0.0);
    access.setVisible("Bleach", false);
    return;
  }
  if (stock == noStock)
    return;
  show(access, printBleachControls);
  const bool untouched = access.number("PrintBleach") == 0.0 && access.number("PrintBleachPivot") == plainBleachPivot;
  if (untouched && hasTable(stock))
    writeBleachLayer(access, stock);
}

void bleachOff(ParamAccess& access, int stock)
{
  hide(access, printBleachControls);
  writeFamily(access, "PrintBleach", "PrintBleach", 0.0);
  write(access, "PrintBleachPivot", plainBleachPivot);
  if (hasTable(stock))
  {
    const PrintConstants& constants = printConstants(stock);
    writePoints(access, {constants.black, constants.white});
    write(access, "PrintFilmicPivot", constants.filmicContrast);
    write(access, "PrintFilmicSlope", 0.0);
  }
  access.setVisible("LableachBypass", true);
}
}  // namespace

void printBleachChanged(ParamAccess& access)
{
  const int stock = indexOf(access, "PrintProfile");
  if (isOn(access, "Bleach"))
    bleachOn(access, stock);
  else
    bleachOff(access, stock);
}

void displayChosen(ParamAccess& access)
{
  const bool hdr = isHdrDisplay(indexOf(access, "OutputDisplayGamut"));
  writeDerived(access, "PrintPeakBrightness", hdr ? hdrPeakBrightness : sdrPeakBrightness);
  access.setVisible("PrintPeakBrightness", hdr);
}
}  // namespace morvellan::params
