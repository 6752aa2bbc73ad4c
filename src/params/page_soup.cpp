// The Soup: soft clips, the camera look with its tone curves, the film laboratory, and the negative's densities.
// Texts are the product's own and stay as they are, also where a hint speaks of another default than the parameter has.
#include "params/choices.h"
#include "params/families.h"
#include "params/page.h"

namespace morvellan::params
{
namespace
{
void addTone(Page& page)
{
  page.group("Tone", "Tone", Opens::Closed, "Look", "Tone Curves - Bleach, Toe, Knee, Shoulder, and Filmic");
  page.choice("ToneCurves", 5, toneCurves(), "Curves", " Bleach, Toe, Knee, Shoulder, and Filmic Tone Curves");
  page.startHidden();
  page.swatch("LabBleachSwatch", {0.5, 0.5, 0.5}, {0.0, 1.0}, "Bleach", swatchHint("Bleach Swatch"));
  page.real("LabBleachPivot", 0.3, {0.0, 1.0}, "Bleach Pivot",
            "Bleach Silver Retention Threshold. Lowering Pivot increases Silver Retention. Raising Pivot reduces "
            "Silver Retention. Default : Changes with Camera Stock");
  page.channels({.stem = "LabBleach",
                 .value = 0.0,
                 .range = {0.0, 1.0},
                 .label = "Bleach",
                 .hint = "{} Lower to higher Silver Retention. Default : Changes with Camera Stock"});
  page.master("LabBleachRGB");
  page.rehint("LabBleachRGB", "RGB Lower to higher Silver Retention. Default : Changes with Camera Stock : 0.0");

  page.swatch("SoupToeSwatch", {0.5, 0.5, 0.5}, {-0.5, 0.5}, "Toe", swatchHint("Toe Swatch"));
  addToeCurve(page, "SoupToePivot", "SoupToe", "SoupToeRGB");
  page.swatch("SoupKneeSwatch", {0.5, 0.5, 0.5}, {-0.5, 0.5}, "Knee", swatchHint("Knee Swatch"));
  addKneeCurve(page, "SoupKnee", "SoupKneeRGB");
  page.swatch("SoupShoulderSwatch", {0.5, 0.5, 0.5}, {-1.0, 1.0}, "Shoulder", swatchHint("Shoulder Swatch"));
  addShoulderCurve(page, "SoupShoulderPivot", "SoupShoulder", "SoupShoulderRGB");
  page.real("SoupFilmicPivot", 0.0, {0.0, 1.0}, "Filmic Contrast",
            "Filmic Tone curve Contrast. Default : Changes with Camera Stock");
  page.real("SoupFilmicSlope", 0.014, {0.0, 1.0}, "Filmic Slope",
            "Filmic Tone curve Slope. Default : Changes with Camera Stock");
  page.startShown();
  page.button("ResetCurves", "Curve(s) Reset",
              "If 'Soup->Look->Tone->Curves->Bypass' is selected, then Bleach, Toe, Knee, Shoulder, and Filmic are "
              "Reset. Otherwise only Resets the '...Tone->Curves' selection");
}

void addLab(Page& page)
{
  page.group("Lab", "Lab", Opens::Closed, "Soup",
             "Film Lab Processing : Silver Halide Sensitivity, Bleach Bypass, Developer Dilution, Developer Pull-Push, "
             "Developer Agitation, Developer Replenisher, Spectral Diffusion");
  page.channels({.stem = "LabSilver",
                 .value = 0.5,
                 .range = {0.0, 1.0},
                 .label = "Silver",
                 .hint = "{} Silver Halide Spectral Sensitivity. Weak (0) to Strong (1). For Regular Sensitivity, set "
                         "to Default : 0.5"});
  page.master("LabSilverRGB");
  page.rehint("LabSilverBlue", "Blue SilveBr Halide Spectral Sensitivity. Weak (0) to Strong (1). For Regular "
                               "Sensitivity, set to Default : 0.5");
  page.rehint("LabSilverRGB", "RGB SilveBr Halide Spectral Sensitivity. Weak (0) to Strong (1). For Regular "
                              "Sensitivity, set to Default : 0.5");
  page.boolean("LableachBypass", false, "Bleach Bypass",
               " Skip-Bleach | Bleach-Bypass Film Processing. Control Silver Retention through "
               "'Soup->Look->Tone->Curves->Bleach'. If Bleach sliders are at UI defaults, Bleach is matched to current "
               "Camera Stock profile. Choose either Lab's 'Bleach', or Print's 'Bleach', not both");
  page.real("LabDevelop", 0.9, {0.0, 1.0}, "Developer",
            "Developer Concentrate. To Dilute Developer Concentration, reduce level. For Regular Developer "
            "Concentration, set to Default : 0.9");
  page.real("LabPullPush", 0.5, {0.0, 1.0}, "Pull->Push",
            "Pull (0) reduces contrast by simulating shorter Development time for over-exposed camera stocks, Push (1) "
            "increases contrast by simulating extended Development time for under-exposed camera stocks. For Regular | "
            "Unforced Development, Set to Default : 0.5");
  page.integer("LabAgitate", 3, {1, 5}, "Agitation",
               "Develop Cycle Agitation. Under Agitate (1), Regular Agitate (3), Over Agitate (5). For Regular "
               "Agitation Cycle, Set to Default : 3");
  page.real("LabReplenish", 1.0, {0.0, 1.0}, "Replenisher",
            "Developer Replenisher. From Restricted Replenisher flow (0), to Regular Replenisher flow (1). For most "
            "pronounced Spectra Diffusion, set to lowest value");
  page.real("LabSpectrumBand", 0.5, {0.0, 1.0}, "Diffuse Spectra",
            "Replenisher-depraved Tunable Spectra Diffusion. 0.0 -> 0.5 Correlates to Low->Mid Spectral densities. "
            "0.501 -> 1.0 Correlates to Mid->High Spectral densities. Only active when Low->Mid and/or Mid->High are "
            "in 0->0.999 range. Default : 0.5");
  page.real("LabDiffuseLoMid", 1.0, {0.0, 1.0}, "Low -> Mid Spectrum",
            "Lows to Mids Replenisher-depraved Spectral Diffusion. Most (0) to Least (1.0) Diffusion. To Bypass, set "
            "to Default : 1.0");
  page.real("LabDiffuseMidHi", 1.0, {0.0, 1.0}, "Mid -> High Spectrum",
            "Mids to Highs Replenisher-depraved Spectral Diffusion. Most (0) to Least (1.0) Diffusion. To Bypass, set "
            "to Default : 1.0");
  page.button("ClearLab", "Lab Reset",
              " Resets Lab to Default values. Lab is always active when 'Soup Bypass' is unchecked");
}
}  // namespace

void addToeCurve(Page& page, std::string_view pivot, std::string_view stem, std::string_view master)
{
  page.real(pivot, 0.669, {0.0, 1.0}, "Toe Pivot",
            "Point at which Toe Roll-off (compression) - or roll-up (expansion) - begins. Default : 0.5");
  page.channels({.stem = stem,
                 .value = 0.02,
                 .range = {-0.5, 0.5},
                 .label = "Toe",
                 .hint = "Toe {} Roll-off (compress), or roll-up (expand). To Bypass, set to Default : 0.0"});
  page.master(master);
}

void addKneeCurve(Page& page, std::string_view stem, std::string_view master)
{
  page.channels({.stem = stem,
                 .value = -0.093,
                 .range = {-0.5, 0.5},
                 .label = "Knee",
                 .hint = "{} Knee compression or expansion. To Bypass, set to Default : 0.0"});
  page.master(master);
}

void addShoulderCurve(Page& page, std::string_view pivot, std::string_view stem, std::string_view master)
{
  page.real(pivot, 0.334, {0.0, 1.0}, "Pivot",
            "Point at which Shoulder Roll-off (compression) - or roll-up (expansion) - begins. Default : 0.5");
  page.channels({.stem = stem,
                 .value = 0.145,
                 .range = {-1.0, 1.0},
                 .label = "Shoulder",
                 .hint = "{} Shoulder Roll-off (compress), or roll-up (expand). To Bypass, set to Default : 0.0"});
  page.master(master);
}

void addSoup(Page& page)
{
  page.group("Soup", "Soup", Opens::Open, "",
             "SoftClips, Cine Camera Stock Profiles, Color, Tone, Film Lab Processing");
  page.boolean("SoupBypass", true, "Soup Bypass", " Bypass SoftClips, Look, Lab, Dmin, and Dmax");
  page.real("SoupHighlightCeiling", 1.0, {-1.0, 1.0}, "SoftClip Ceiling",
            "Shoulder Compression Threshold for Highlights. Compression Roll-off resides between this Threshold and "
            "0.999. For Hard Clipping, set to : 0.999. To pass values above 0.999, set to Default : 1.0");
  page.real("SoupHighlightCompress", 0.0, {0.0, 1.0}, "Recover Roll-off",
            "Shape the Separation and Detail response of Shoulder Roll-off Recovery. To Bypass, set to Default : 0.0");
  page.real("SoupShadowFloor", 0.0, {0.0, 1.0}, "SoftClip Floor",
            "Toe Expansion Threshold for Shadows. Expansion Roll-off resides between this Threshold and 0.001. For "
            "hard clipping, set to 0.001. To pass values below 0.001, set to Default : 0.0");
  page.real("SoupShadowExpand", 0.0, {0.0, 1.0}, "Recover Roll-off",
            "Shape the Separation and Detail response of Toe Roll-off Recovery. To Bypass, set to Default : 0.0");

  page.group("Look", "Look", Opens::Open, "Soup", "Camera Stock Look Profiles, Cast, Tint, Color, Tone");
  page.choice("CameraStock", 0, cameraStocks(), "Camera Stock", " Cine Camera Film Stock Profiles");
  page.integer("CameraCast", 6504, {3000, 14000}, "Cast",
               "Temperature, in degrees Kelvin (K). Warmer (3000 K) to Cooler (14000 K). To Bypass, set to Default : "
               "6504 K (D65 Daylight)");
  page.real("CameraTintGtoM", 0.0, {-1.0, 1.0}, "Tint G -> M",
            "Color Tint. From Green to Magenta. To Bypass, set to Default : 0.0");
  page.real("CameraTintRtoC", 0.0, {-1.0, 1.0}, "Tint R -> C",
            "Color Tint. From Red to Cyan. To Bypass, set to Default : 0.0");

  page.group("Color", "Color", Opens::Closed, "Look", "Color - Saturation, Hue, Chroma, Vibrance");
  page.choice("ColorCorrection", 0, colorCorrections(), "Attribute",
              " Saturation, Hue, Chroma, and Vibrance Color Corrections");
  page.last().animates = Animates::HostDefault;
  for (const Axis& axis : axes)
    addAttributes(page, axis);
  page.button("ClearSoupSatHueChrVib", "Attribute(s) Reset",
              "If 'Soup->Look->Color->Attribute->Bypass' is selected, then Saturation, Hue, Chroma, Vibrance are "
              "reset. Otherwise only Resets the '...Color->Attribute' selection");

  page.group("Refine", "Refine", Opens::Closed, "Color",
             "Color Refine - 11 Custom vectors for Saturation, Hue, Chroma, and Vibrance");
  page.choice("ColorRefine", 0, colorRefines(), "Custom", " Custom Refinements to Saturation, Hue, Chroma, Vibrance");
  for (const std::string_view word : refineWords)
    addRefinement(page, word);
  page.button("ResetSoupRefine", "Custom(s) Reset",
              " If 'Soup->Look->Color->Refine->Custom->Bypass' is selected, Custom 2 through 12 are reset. Otherwise "
              "only Resets the '...Refine->Custom' (2 - 12) selection");

  addTone(page);
  addLab(page);

  page.group("NegDmin", "Dmin", Opens::Closed, "Soup", "Film element's Minimum Densities");
  page.channels({.stem = "SoupDmin",
                 .value = 0.584,
                 .range = {-1.0, 1.0},
                 .label = "Dmin",
                 .hint = "Film element's Minimum {} Density. Default : Changes with Camera Stock"});
  page.inside("Soup");
  page.master("SoupDminRGB");

  page.group("NegDmax", "Dmax", Opens::Closed, "Soup", "Film element's Maximum Densities");
  page.channels({.stem = "SoupDmax",
                 .value = 0.584,
                 .range = {-1.0, 1.0},
                 .label = "Dmax",
                 .hint = "Film element's Maximum {} Density. Default : Changes with Camera Stock"});
  page.inside("Soup");
  page.master("SoupDmaxRGB");
  page.button("ResetSoup", "Soup Reset", " Resets Soup to Default values");
}
}  // namespace morvellan::params
