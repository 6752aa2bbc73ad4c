// The page's first two groups: Input with Halation and the camera soft clips, and Resize and Textures with the pitches.
// Texts are the product's own and stay as they are, also where a hint speaks of another default than the parameter has.
#include "params/choices.h"
#include "params/families.h"
#include "params/page.h"

#include <fmt/format.h>

namespace morvellan::params
{
void addInput(Page& page)
{
  page.group("Input", "Input", Opens::Open, "",
             "Select Input Colorspace & Gamut, Adjust Exposure, HDR Comp, Linear Processing, Halation, SoftClips ");
  page.choice("InputGamut", 0, inputGamuts(), "Colorspace & Gamut",
              "Input Colorspace & Gamut for Morvellan's Node. If 'Print and Display Bypass' is selected, then Node's "
              "Output Colorspace & Gamut = Input's");
  page.startHidden();
  page.boolean("ProcessLinear", false, "Linear-Gamut Compute",
               " Off (Default) : Process in Input Clip's native Gamut (Log, Gamma, Linear, HybridLogGamma). On : When "
               "Resizing, Textures, Details, Pitches, and SoftClips, ALL input Clips will be forced to process in "
               "Scene Linear | VFX Gamut (Gamma 1.0)");
  page.boolean("HDRcomp", false, "HDR Compensation",
               " With Linear Input Clips, restrict 32-bit float data to 0.0 - 1.0 range. Uses compression to suppress "
               "over-shoots in Speculars and Highlights (and under-shoots in Shadows) when applying Resize, Texture, "
               "Detail, Pitch, and Grain to Linear Gamut Clips");
  page.startShown();
  page.real("Exposure", 0.0, {-1.0, 1.0}, "Exposure",
            "Input Clip's | Camera Exposure. To Bypass, set to Default : 0.0");

  page.group("Halation", "Halation", Opens::Closed, "Input",
             "Amount of Specular Highlights Reflecting off carbon-backed Remjet that Penetrate the Neg's Dye Layers");
  page.boolean("HalationBypass", true, "Halation Bypass", "Bypass Halation");
  page.real("HalationBreadth", 0.25, {0.0, 1.0}, "Breadth", "Reduce or Expand the Halation Field.Default : 0.25");
  page.real("HalationSaturation", 1.0, {0.0, 1.0}, "Saturation", "Tempered to Full. Default : 1.0");
  page.real("HalationCyanRed", 1.0, {0.0, 1.0}, "C -> R",
            "Amount of Specular Highlights Reflecting off carbon-backed Remjet that reach the Neg's Cyan Dyes. Default "
            ": 1.0");
  page.real("HalationMagentaGreen", 0.15, {0.0, 1.0}, "M -> G",
            "Amount of Specular Highlights Reflecting off carbon-backed Remjet that reach the Neg's Magenta Dyes. "
            "Default : 0.15");
  page.real("HalationYellowBlue", 0.07, {0.0, 1.0}, "Y -> B",
            "Amount of Specular Highlights Reflecting off carbon-backed Remjet that reach the Neg's Yellow Dyes. "
            "Default : 0.07");
  for (const char* channel : {"R", "G", "B", "RGB"})
    page.real(fmt::format("HalationBlend{}", channel), 0.3, {0.0, 1.0}, fmt::format("Blend {}", channel),
              "From Full Effect (0.0) to No Effect (1.0). Default : 0.3");
  page.button("ClearHalation", "Halation Reset", " Resets Halation to Default values");

  page.inside("Input");
  page.choice("SoftClips", 0, softClips(), "Soft Clips",
              "Soft Clipping, Hard Clipping, or no Clipping. Use to restrict Input Clip's data range");
  page.startHidden();
  page.real("CameraHighlightsCeiling", 1.0, {-1.0, 1.0}, "Ceiling Threshold",
            "Shoulder compression roll-off curve resides between Ceiling and 1.0. For hard Clipping, set to 0.9999. To "
            "bypass Compression and Clipping, set to 1.0");
  page.real("CameraHighlightsRecover", 0.0, {0.0, 1.0}, "Recover Roll-off",
            "Shape the Separation and Detail response of Shoulder Roll-off Recovery. To Bypass, set to Default : 0.0");
  page.real("CameraShadowsCeiling", 0.0, {0.0, 1.0}, "Floor Threshold",
            "Toe Expansion Roll-off Threshold resides between its Floor and 0.001. For hard clipping, set to 0.001. To "
            "pass values less than 0.001 - including negative values - set to Default : 0.0");
  page.real("CameraShadowsRecover", 0.0, {0.0, 1.0}, "Recover Roll-off",
            "Shape the Separation and Detail response of Toe Roll-off Recovery. To Bypass, set to Default : 0.0");
  page.startShown();
}

namespace
{
// The size controls of one side; "Source" speaks of the input, "Target" of the output.
void addResolution(Page& page, std::string_view choice, std::string_view side, std::string_view way)
{
  page.choice(choice, 0, resolutions(), fmt::format("{} Resolution", choice.substr(0, choice.find("Resolution"))),
              fmt::format("Size, Crop, Pad, or Fit {} clip to less than - or equal to - Timeline dimensions", way));
  page.startHidden();
  const auto hint = [&](std::string_view rest) { return fmt::format(" {} {}", way, rest); };
  page.integer(joined(side, "Width"), 1920, {10, 12288}, "Width | Crop", hint("Width | Crop. Resize, Fit, Crop"));
  page.integer(joined(side, "Height"), 1080, {10, 12288}, "Height | Crop", hint("Height | Crop. Resize, Fit, Crop"));
  page.real(joined(side, "WidthOffset"), 0.5, {0.0, 1.0}, "Pan", hint("Width center offset. Pan, Scan, Crop"));
  page.real(joined(side, "HeightOffset"), 0.5, {0.0, 1.0}, "Tilt", hint("Height center offset. Pan, Scan, Crop"));
  page.startShown();
}
}  // namespace

void addSpatialEnhancer(Page& page, std::string_view choice, std::string_view stem, std::string_view choiceHint)
{
  page.startHidden();
  page.choice(choice, 0, spatialEnhancements(), "Spatial Enhancer", choiceHint);
  page.real(joined("Horizontal", stem), 3.0, {0.0, 10.0}, "Horizontal",
            " Horizontal Spatial Enhancement. To Bypass, set to Default : 0.0");
  page.real(joined("Vertical", stem), 3.0, {0.0, 10.0}, "Vertical",
            " Vertical Spatial Enhancement. To Bypass, set to Default : 0.0");
  page.real(joined("Combined", stem), 3.0, {0.0, 10.0}, "H | V Combined",
            " Combined Horizontal and Vertical Spatial Enhancements. To Bypass, set to Default : 0.0");
  page.startShown();
}

void addResizeTextures(Page& page)
{
  page.group("ResizeTextures", "Resize | Textures", Opens::Closed, "", "Resize Clip, Refine Textures and Details");
  addResolution(page, "InResolution", "Source", "Input");
  addResolution(page, "OutResolution", "Target", "Output");
  addSpatialEnhancer(page, "SpatialEnhancement", "Enhancer",
                     "Textures and Details - or Details only - Spatial Enhancer");

  page.group("TexturePitch", "Texture Pitch", Opens::Closed, "ResizeTextures",
             "Pre-Grain Texture Pitch Emphasis | De-emphasis. Pitches grouped in consecutive octaves");
  page.boolean("PitchBypass", true, "Pitch Bypass", " Bypass Texture Pitch");
  for (const Pitch& pitch : pitches)
    page.real(pitch.name, 3.0, {0.0, 10.0}, pitch.label,
              fmt::format(" {} Texture Band ({} Pixel radius). Accentuate Textures : 3.01 - 10. Mask Textures : 0 - "
                          "2.99. To Bypass, set to Default : 3.0",
                          pitch.band, pitch.radius));
  page.real("EnsemblePitch", 3.0, {0.0, 10.0}, "Ensemble",
            " Overall Strength of Texture Emphasis | De-emphasis. To Bypass, set to Default : 3.0");
  page.button("ClearTexturePitches", "Pitch Reset", " Resets Texture Pitches to Bypass | Default setting");
}
}  // namespace morvellan::params
