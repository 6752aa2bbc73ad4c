// The choices among film kernels.
#include "pipeline/host/film_choice.h"

namespace morvellan
{

namespace
{

bool anyVector(const AttributesParams& a)
{
  return a.saturation.vectorLive || a.hue.vectorLive || a.chroma.vectorLive || a.vibrance.vectorLive;
}

}  // namespace

std::string_view soupKernel(const FrameParams& p)
{
  if (p.labBleach)
    return "film_soup_cuda_out_bleach";
  return anyVector(p.soupAttributes) ? "film_soup_cuda_out_hue_chr_vib" : "film_soup_cuda_out";
}

std::string_view printKernel(const FrameParams& p)
{
  if (p.printProfile == 0)
    return "film_print_cuda_out_pfe_display";
  if (p.printBleachOn)
    return "film_print_cuda_out_bleach_pfe";
  return anyVector(p.printAttributes) ? "film_print_cuda_out_hue_chr_vib_pfe" : "film_print_cuda_out_pfe";
}

std::string_view grainNegativeKernel(const FrameParams& p)
{
  if (p.labBleach)
    return "lin_grain_display_bleach";
  return anyVector(p.soupAttributes) ? "lin_grain_display_hue_chr_vib" : "lin_grain_display";
}

std::string_view grainPrintKernel(const FrameParams& p)
{
  if (p.printProfile == 0)
    return "lin_grain_display_rangecompress_display";
  if (p.printBleachOn)
    return "lin_grain_display_bleach_rangecompress_display";
  return anyVector(p.printAttributes) ? "lin_grain_display_hue_chr_vib_rangecompress_display"
                                      : "lin_grain_display_custom_rangecompress_display";
}

std::string_view grainRangeKernel(const FrameParams& p)
{
  return anyVector(p.soupAttributes) ? "lin_grain_hue_chr_vib_lin_rangecompress" : "lin_grain_rangecompress";
}

std::string expandKernel(const FrameParams& p)
{
  if (p.printBypassed)
    return p.labBleach ? "lin_grain_soup_bleach_expand" : "lin_grain_soup_expand";
  return p.printProfile == 0 ? "lin_grain_display_only_expand" : "lin_grain_display_only_expand_print_stock";
}

}  // namespace morvellan
