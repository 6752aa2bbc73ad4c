// The names of family members.
#include "pipeline/host/plan_names.h"

namespace morvellan
{

namespace
{

std::string_view gamutOf(int inputGamut)
{
  switch (inputGamut)
  {
  case 4:
    return "ACES_AP0";
  case 5:
    return "ACES_AP1";
  case 30:
    return "rec2020";
  default:
    return "rec709";
  }
}

}  // namespace

std::string PlanNames::exposure() const
{
  return p.exposureKind == 2 ? "exposure_log" : "exposure_linear_gamma";
}

std::string PlanNames::ofGamut(std::string_view prefix, std::string_view suffix) const
{
  return std::string(prefix).append(gamutOf(p.inputGamut)).append(suffix);
}

std::string PlanNames::channels(std::string_view prefix, std::string_view suffix) const
{
  return std::string(prefix).append(p.channelCount == 4 ? "RGBA" : "RGB").append(suffix);
}

std::string PlanNames::labToLinear() const
{
  const bool aces = p.inputGamut == 4 || p.inputGamut == 5;
  return ofGamut(aces ? "LAB_" : "LAB_Lin_", "");
}

std::string PlanNames::linearLab() const
{
  return ofGamut("Lin_", "_LAB");
}

std::string PlanNames::crop(bool clips, bool decodes, bool compresses, bool exposes) const
{
  std::string kernel = clips ? "Softclips_CropKernelRGBA" : "CropKernelRGBA";
  if (decodes)
    kernel += "_To_Linear_Kernel";
  if (compresses)
    kernel += ofGamut("_compress_", "");
  if (exposes)
    kernel += "_lin_gam";
  return kernel;
}

std::string PlanNames::enhancer() const
{
  return p.enhancerVertical != 0.0f ? "CsplashTexLV" : "horizontal";
}

bool PlanNames::fullTableInvertsLab() const
{
  const int cs = p.inputGamut;
  return !((cs >= 13 && cs <= 16) || cs == 34 || cs == 40 || cs == 41 || cs >= 46);
}

bool PlanNames::shortTableExpands() const
{
  const int cs = p.inputGamut;
  return !(cs <= 1 || cs == 4 || cs == 5 || cs == 27 || (cs >= 29 && cs <= 34) || (cs >= 42 && cs <= 44) || cs >= 46);
}

bool PlanNames::compressedLabExpands(bool luminance) const
{
  return fullTableInvertsLab() || (p.channelCount == 3 && (luminance || shortTableExpands()));
}

std::string PlanNames::expandSuffix(bool luminance) const
{
  std::string suffix = luminance ? "_Y" : "";
  if (p.channelCount == 3)
    suffix += "_RGB";
  return suffix;
}

}  // namespace morvellan
