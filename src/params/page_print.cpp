// Print and Display: the controls that the user sees, and the hidden store that holds a print stock's numbers.
// The store lives among the parameters so that a project saves it and a render reads it; it is never shown.
#include "params/choices.h"
#include "params/families.h"
#include "params/page.h"

#include <fmt/format.h>

namespace morvellan::params
{
namespace
{
void addControls(Page& page)
{
  page.group("PrintDisplay", "Print | Display", Opens::Open, "", " Cine Print Stock and Display Output Profiles");
  page.boolean("PrintDisplayBypass", true, "Print and Display Bypass",
               " Bypass Cine Print Film Stock & Display Output Profiles. By design, Print & Display options are "
               "Disabled for all Gamma-based Clip inputs");
  page.startHidden();
  page.choice("PrintProfile", 0, printStocks(), "Print Stock", " Cine Print Film Stock Profiles");
  page.integer("PrintCast", 6504, {3000, 14000}, "Cast",
               "Temperature, in degrees Kelvin (K). Warmer (3000 K) to Cooler (14000 K). To Bypass, set to Default : "
               "6504 K (D65 Daylight)");
  page.real("PrintTintGtoM", 0.0, {-1.0, 1.0}, "Tint G -> M",
            "Color Tint. From Green to Magenta. To Bypass, set to Default : 0.0");
  page.real("PrintTintRtoC", 0.0, {-1.0, 1.0}, "Tint R -> C",
            "Color Tint. From Red to Cyan. To Bypass, set to Default : 0.0");
  page.real("PrintSaturation", 1.0, {0.0, 1.0}, "Saturation", "Print Saturation. To Bypass, set to Default : 1.0");
  page.boolean("Bleach", false, "Print Bleach Bypass",
               " Skip-Bleach | Bleach-Bypass Film Processing. If Bleach sliders are at UI defaults, Bleach is matched "
               "to current Print Stock profile. Choose to use either Print's 'Bleach', or Soup's 'Bleach', not both");
  page.real("PrintBleachPivot", 0.3, {0.0, 1.0}, "Bleach Pivot",
            "Bleach Silver Retention Threshold. Lowering Pivot increases Silver Retention. Raising Pivot reduces "
            "Silver Retention. Default : Changes with Print Stock");
  page.channels({.stem = "PrintBleach",
                 .value = 0.0,
                 .range = {0.0, 1.0},
                 .label = "Bleach",
                 .hint = "{} Lower to higher Silver Retention. Default : Changes with Print Stock"});
  page.master("PrintBleach");
  page.rehint("PrintBleach", "RGB Lower to higher Silver Retention. Default : Changes with Print Stock : 0.0");
  page.real("PrintFilmicPivot", 0.0, {0.0, 1.0}, "Filmic Contrast",
            "Film Print Filmic Contrast. Default : Changes with Print Stock");
  page.real("PrintFilmicSlope", 0.0, {0.0, 1.0}, "Filmic Slope",
            "Film Print Filmic Slope. Default : Changes with Print Stock");
  page.choice("OutputDisplayGamut", 0, outputDisplays(), "Display Gamut", " Display Colorspace & Gamut");
  page.real("PrintPeakBrightness", 0.203, {0.0, 1.0}, "Display Brightness",
            "Nominal diffuse white for the simulated Contact Film Print. For HDR displays, default is 203 Nits "
            "(0.203). For SDR displays, set & hidden at 100 Nits. Range : 0.001 (1 nit) to 1.0 (1000 Nits)");
  page.last().animates = Animates::Yes;

  page.group("PrintBlackPoint", "Black Point", Opens::Closed, "PrintDisplay", "Film Print's Black Points");
  page.channels({.stem = "PrintBlack",
                 .value = 0.141,
                 .range = {-1.0, 1.0},
                 .label = "Black Point",
                 .hint = "{} Black Point on Film Print. Default : Changes with Print Stock"});
  page.inside("PrintDisplay");
  page.master("PrintBlackRGB");

  page.group("PrintWhitePoint", "White Point", Opens::Closed, "PrintDisplay", "Film Print's White Points");
  page.channels(
      {.stem = "PrinterLight",
       .value = 0.909,
       .range = {0.0, 1.0},
       .label = "White Point",
       .hint = "{} White Point on Film Print. Dark (0.0) to Light (1.0). Default : Changes with Print Stock"});
  page.inside("PrintDisplay");
  page.master("PrinterLightsRGB");
  page.startShown();
}

// Whether a family or vector is active for the stock, and its zone selection.
void addIndices(Page& page)
{
  const auto index = [&](const std::string& name, int value, double max, std::string_view hint) {
    page.integer(name, value, {0.0, max}, name, fmt::format("Print {}", hint));
  };
  for (const Axis& axis : axes)
    index(joined("Print", axis.shortWord), 0, 10, axis.shortWord);
  for (const Axis& axis : axes)
    index(joined("Print", axis.shortWord, "Zone"), 0, 10, fmt::format("{} Zone", axis.shortWord));
  for (const std::string_view word : printRefineWords)
    index(joined("PrintRefine", word), 1, 10, fmt::format("Custom-{}", word));
  for (const std::string_view word : printRefineWords)
    index(joined("PrintRefine", word, "Zone"), 0, 2, fmt::format("Custom-{}Zone", word));
}

void addGammaAndCurves(Page& page)
{
  page.real("PrintGammaPivot", 0.18, {0.0, 1.0}, "Gamma Pivot",
            "Print Gamma Compression or expansion Threshold. Values below Pivot compress Gamma, values above Pivot "
            "expand Gamma. Default : 0.18");
  page.channels({.stem = "PrintGamma",
                 .value = 0.4,
                 .range = {0.0, 1.0},
                 .label = "Gamma",
                 .hint = "{} Print Gamma compression or expansion. To Bypass, set to Default 0.4"});
  addToeCurve(page, "PrintCurveShadowPivot", "PrintCurveShadow", "PrintCurveShadow");
  addKneeCurve(page, "PrintCurveMidtone", "PrintCurveMidtone");
  addShoulderCurve(page, "PrintCurveHighlightPivot", "PrintCurveHighlight", "PrintCurveHighlight");
}
}  // namespace

void addPrintDisplay(Page& page)
{
  addControls(page);

  page.startSecret();
  addIndices(page);
  for (const Axis& axis : axes)
    page.copyToStore(attributeSliders(axis));
  for (const std::string_view word : printRefineWords)
    page.copyToStore(refinementSliders(word));
  addGammaAndCurves(page);
  page.startShown();

  page.button("ResetPrintDisplay", "Print | Display Reset", " Reset Print | Display to Default settings");
  page.last().layoutHint = 1;  // a divider after it
}
}  // namespace morvellan::params
