// The fifteen displays as data, and their matrices.
#include "film/display.h"

#include "colour/gamuts.h"
#include "colour/primaries.h"

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

enum class DisplayWhite
{
  D65,
  D60,
};

struct DisplayRow
{
  int colourspace;  // whose primaries the display has
  DisplayWhite white;
  DisplayCurve curve;
};

// data
constexpr DisplayRow displays[displayCount] = {
    {0, DisplayWhite::D65, DisplayCurve::Gamma22},        // Rec.709 Gamma 2.4
    {0, DisplayWhite::D60, DisplayCurve::Gamma22},        // Rec.709 Gamma 2.4 D60 Sim
    {33, DisplayWhite::D60, DisplayCurve::Gamma26},       // P3-DCI D60 Sim
    {32, DisplayWhite::D65, DisplayCurve::Gamma26},       // P3-D65
    {32, DisplayWhite::D60, DisplayCurve::Gamma26},       // P3-D65 D60 Sim
    {30, DisplayWhite::D65, DisplayCurve::Gamma22},       // Rec.2020
    {30, DisplayWhite::D65, DisplayCurve::Pq},            // Rec.2020 PQ
    {32, DisplayWhite::D65, DisplayCurve::Pq},            // P3-D65 PQ
    {30, DisplayWhite::D65, DisplayCurve::Hlg},           // Rec.2020 HLG
    {45, DisplayWhite::D65, DisplayCurve::Intermediate},  // RCM SDR
    {45, DisplayWhite::D65, DisplayCurve::Intermediate},  // RCM HDR
    {5, DisplayWhite::D60, DisplayCurve::AcesCc},         // ACEScc SDR
    {5, DisplayWhite::D60, DisplayCurve::AcesCc},         // ACEScc HDR
    {5, DisplayWhite::D60, DisplayCurve::AcesCct},        // ACEScct SDR
    {5, DisplayWhite::D60, DisplayCurve::AcesCct},        // ACEScct HDR
};

const DisplayRow& rowOf(int display)
{
  return displays[display >= 0 && display < displayCount ? display : 0];
}

}  // namespace

DisplayEncoding makeDisplayEncoding(int display, float peak)
{
  const DisplayCurve curve = rowOf(display).curve;
  const float scale = curve == DisplayCurve::Hlg ? 0.1f : 0.01f;
  return {.curve = curve, .scale = scale, .highest = scale * peak / 100.0f};
}

DoubleMatrix3 xyzToDisplay(int display, PrintWhite white)
{
  const DisplayRow& row = rowOf(display);
  const Chromaticity from = white == PrintWhite::D55 ? whiteD55 : whiteD65;
  const Chromaticity to = row.white == DisplayWhite::D60 ? whiteD60 : whiteD65;
  const DoubleMatrix3 rows = widen(xyzToRgb(CurveTable::Full, row.colourspace).value_or(identityMatrix));
  const bool adapts = white == PrintWhite::D55 || row.white == DisplayWhite::D60;
  return adapts ? product(rows, bradford(from, to)) : rows;
}

}  // namespace morvellan::MORVELLAN_TARGET
