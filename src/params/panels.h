// What is shown for the values that the parameters hold: one function for each panel of the page.
// A new instance, a user's edit and a Look load all lay the page out through these.
#pragma once

#include "params/families.h"
#include "params/param_access.h"

#include <array>
#include <string_view>

namespace morvellan::params
{
// HDRcomp for linear inputs, ProcessLinear for the others. The panel also shows or hides GrainLinear.
void showInputClass(ParamAccess& access);
void showInputPanel(ParamAccess& access);

// The soft clip sliders of SoftClips.
void showSoftClips(ParamAccess& access);

// The size sliders of a side, shown for Custom Size alone, and SpatialEnhancement for any choice but the timeline's.
void showSizes(ParamAccess& access, Side side);

// The enhancer that SpatialEnhancement and SpatialEnhancer call for; the second sets the secret property alone.
void showEnhancement(ParamAccess& access);
void showDetails(ParamAccess& access);

// The attribute family of ColorCorrection, or none; of its zone sliders what its zone choice allows.
void showAttributes(ParamAccess& access);

// The custom vector of ColorRefine, or none, with its zone sliders.
void showRefinement(ParamAccess& access);

// The four sliders behind a zone choice, by its name ("SatZone").
void showZone(ParamAccess& access, std::string_view zone);

// The curve of ToneCurves, or none.
void showToneCurve(ParamAccess& access);
inline constexpr int filmicCurve = 5;
inline constexpr std::array<std::string_view, 2> filmicControls{"SoupFilmicPivot", "SoupFilmicSlope"};

// UniformPattern for the uniform patterns of DispersionPattern.
void showDispersion(ParamAccess& access);

// The print stock's controls, in three parts that are shown and hidden together or each on its own.
inline constexpr std::array<std::string_view, 6> printStockControls{
    "PrintCast", "PrintTintGtoM", "PrintTintRtoC", "PrintSaturation", "PrintFilmicPivot", "PrintFilmicSlope"};
inline constexpr std::array<std::string_view, 5> printBleachControls{
    "PrintBleach", "PrintBleachPivot", "PrintBleachRed", "PrintBleachGreen", "PrintBleachBlue"};
inline constexpr std::array<std::string_view, 8> printPointControls{
    "PrintBlackRGB",    "PrintBlackRed",   "PrintBlackGreen",   "PrintBlackBlue",
    "PrinterLightsRGB", "PrinterLightRed", "PrinterLightGreen", "PrinterLightBlue"};

void hidePrintStockControls(ParamAccess& access);

// The whole print side for PrintDisplayBypass, InputGamut, PrintProfile, the two bleach bypasses and the display. With
// PrintDisplayBypass on, Bleach is set off; nothing else is written.
void showPrintPanel(ParamAccess& access);
// The same where the caller says whether the input bars print, as a Look load does, whose list of such inputs is its
// own.
void layOutPrintPanel(ParamAccess& access, bool inputBarsPrint);
}  // namespace morvellan::params
