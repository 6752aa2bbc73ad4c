// The Grain group, its five channel families with their masters beside them, and the page's end: Look buttons, Manage.
// Texts are the product's own and stay as they are.
#include "params/choices.h"
#include "params/families.h"
#include "params/page.h"

namespace morvellan::params
{
void addGrain(Page& page)
{
  page.group("Grain", "Grain", Opens::Closed, "", "Adds Grain - Granularity, Size, Softness, Variance, and Strength");
  page.boolean("GrainBypass", true, "Grain Bypass", "Bypass Grain on all RGB channels");
  page.startHidden();
  page.boolean("GrainLinear", false, "Linear-Gamut Grain",
               "Off (default) : Grain is applied in Clip's native gamut, with Linear Clips converted to Log. On : Log "
               "| Gamma | HybridLogGamma Clips are converted to Linear. With Linear Grain, best set "
               "'Morvellan->Manage->Grain Depth Resolution' to 6 Bits more than Clip's native bit depth");
  page.startShown();
  addSpatialEnhancer(page, "SpatialEnhancer", "Details",
                     "Textures and Details - or Details only - Spatial Enhancer. Applied Pre-Grain");
  page.choice("DispersionPattern", 0, dispersionPatterns(), "Dispersion Pattern",
              " Grain Dispersion Patterns. Random or Uniform; Color or Monochromatic");
  page.startHidden();
  page.real("UniformPattern", 5.0, {0.0, 10.0}, "Uniform Pattern",
            " Uniform Grain Dispersion Pattern. Monochromatic and | or Color");
  page.startShown();

  page.group("Granularity", "Granularity", Opens::Closed, "Grain",
             " Grain Granularity. Coarse-grained (lower value = Faster throughput), to Fine-Grained (higher value = "
             "Slower throughput)");
  page.channels({.stem = "Granularity",
                 .value = 5.0,
                 .range = {0.0, 10.0},
                 .label = "Granularity",
                 .hint = " {} Grain Granularity. Coarse-grained (lower value = Faster throughput), to Fine-Grained "
                         "(higher value = Slower throughput)"});
  page.inside("Grain");
  page.master("GranularityRGB");

  page.group("Size", "Size", Opens::Closed, "Grain", " Grain Size. To bypass Grain, set Size or Strength to 0.0");
  page.channels({.stem = "Size",
                 .value = 0.01,
                 .range = {0.0, 50.0},
                 .label = "Size",
                 .hint = " {0} Grain Size. Small (0.01) to Large (50). To bypass {0} Grain, set {0} Size - or {0} "
                         "Strength - or to 0"});
  page.rehint("SizeRed", " Red Grain Size. Small (0.01) to Large (50). To bypass Red Grain, set Red Size - or Red "
                         "Strength - to 0");
  page.inside("Grain");
  page.master("SizeRGB");
  page.rehint("SizeRGB", " RGB Grain Size. Small (0.01) to Large (50). To bypass Grain on all channels, set RGB Size - "
                         "or RGB Strength - or to 0");

  page.group("Softness", "Softness", Opens::Closed, "Grain",
             " Grain Softness. In-Camera Gate Weave is invoked with Higher Softness");
  page.channels({.stem = "Soft",
                 .value = 2.0,
                 .range = {0.0, 10.0},
                 .label = "Softness",
                 .hint = " {} Grain Softness. Hard (0) to Soft (10)"});
  page.inside("Grain");
  page.master("SoftRGB");

  page.group("Variance", "Variance", Opens::Closed, "Grain",
             " Grain Shape & Density Variability. Lower value = faster throughput. Higher value = slower throughput");
  page.channels({.stem = "Variance",
                 .value = 0.0,
                 .range = {0.0, 10.0},
                 .label = "Variance",
                 .hint = " {} Grain Shape & Density Variability. Lower value = faster throughput. Higher value = "
                         "slower throughput"});
  page.inside("Grain");
  page.master("VarianceRGB");

  page.group("Strength", "Strength", Opens::Closed, "Grain",
             " Grain Strength. To bypass Grain, set Strength or Size to 0.0");
  page.channels({.stem = "Strength",
                 .value = 10.0,
                 .range = {0.0, 10.0},
                 .label = "Strength",
                 .hint = " {0} Grain Strength. None (0) to Most (10). To bypass {0} Grain, set Strength - or Size - to "
                         "0"});
  page.inside("Grain");
  page.master("StrengthRGB");
  page.button("ResetGrains", "Grain Reset", " Resets Grain to Default values");
}

void addManage(Page& page)
{
  page.inside("");
  page.button("LoadLooks", "Load Look", " Load Morvellan | Soup Look profile from file");
  page.button("SaveLooks", "Save Look", " Save Morvellan's Look profile to file");

  page.group("Manage", "Manage", Opens::Closed, "",
             "Grain Depth Resolution, Morvellan's Primary GPU, and Information on GPUs, Clips, and Morvellan");
  page.choice("GrainDepth", 3, grainDepths(), "Grain Depth Resolution",
              " Film Grain Precision. Fastest (10 bits) through slowest (24 bits) throughput per "
              "Log/Linear/Gamma/HybridLogGamma Color Channel. To activate changes, reload Morvellan or restart Natron. "
              "Default : 16 bits");
  page.last().animates = Animates::No;
  page.choice("NatronGPU", 0, {}, "Morvellan's Primary GPU",
              " Defaults to fastest. Optionally, from the Command line run 'morvellan-cuda-devices.exe' to match an "
              "alternative GPU's address to selected Primary GPU");
  page.last().animates = Animates::No;
  page.button("CudaInfo", "CUDA Info", " Information on nVidia CUDA GPU Devices");
  page.button("ClipInfo", "Clip Info", " Information about input and output clips");
  page.button("About", "Morvellan Info", " Morvellan product information");
  page.last().layoutHint = 2;  // no new line after it

  page.inside("");
  page.startHidden();
  page.boolean("SrcClipChanged", false, "", "");
  page.last().animates = Animates::No;
  page.last().evaluateOnChange = false;
  page.startShown();
}
}  // namespace morvellan::params
