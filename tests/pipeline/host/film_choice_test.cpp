// Which member of a film kernel family a frame launches, by its settings.
#include "pipeline/host/film_choice.h"

#include <gtest/gtest.h>

namespace morvellan::test
{
namespace
{

FrameParams printed(int profile, bool bleach, bool vectors)
{
  FrameParams p{};
  p.printProfile = profile;
  p.printBleachOn = bleach;
  p.printAttributes.vibrance.vectorLive = vectors;
  return p;
}

FrameParams developed(bool bleach, bool vectors)
{
  FrameParams p{};
  p.labBleach = bleach;
  p.soupAttributes.hue.vectorLive = vectors;
  return p;
}

TEST(FilmChoice, SoupAfterTheLaboratory)
{
  EXPECT_EQ(soupKernel(developed(false, false)), "film_soup_cuda_out");
  EXPECT_EQ(soupKernel(developed(false, true)), "film_soup_cuda_out_hue_chr_vib");
  EXPECT_EQ(soupKernel(developed(true, false)), "film_soup_cuda_out_bleach");
  EXPECT_EQ(soupKernel(developed(true, true)), "film_soup_cuda_out_bleach");
}

TEST(FilmChoice, AnyAttributeVectorCounts)
{
  for (AttributeParams AttributesParams::*attribute :
       {&AttributesParams::saturation, &AttributesParams::hue, &AttributesParams::chroma, &AttributesParams::vibrance})
  {
    FrameParams p{};
    (p.soupAttributes.*attribute).vectorLive = true;
    EXPECT_EQ(soupKernel(p), "film_soup_cuda_out_hue_chr_vib");
    EXPECT_EQ(printKernel(p), "film_print_cuda_out_pfe_display");
  }
}

TEST(FilmChoice, PrintOfAStockAndDisplayWithoutOne)
{
  for (const bool bleach : {false, true})
    for (const bool vectors : {false, true})
    {
      EXPECT_EQ(printKernel(printed(0, bleach, vectors)), "film_print_cuda_out_pfe_display");
      EXPECT_EQ(grainPrintKernel(printed(0, bleach, vectors)), "lin_grain_display_rangecompress_display");
    }
  for (const int stock : {1, 8})
  {
    EXPECT_EQ(printKernel(printed(stock, false, false)), "film_print_cuda_out_pfe");
    EXPECT_EQ(printKernel(printed(stock, false, true)), "film_print_cuda_out_hue_chr_vib_pfe");
    EXPECT_EQ(printKernel(printed(stock, true, false)), "film_print_cuda_out_bleach_pfe");
    EXPECT_EQ(printKernel(printed(stock, true, true)), "film_print_cuda_out_bleach_pfe");
    EXPECT_EQ(grainPrintKernel(printed(stock, false, false)), "lin_grain_display_custom_rangecompress_display");
    EXPECT_EQ(grainPrintKernel(printed(stock, false, true)), "lin_grain_display_hue_chr_vib_rangecompress_display");
    EXPECT_EQ(grainPrintKernel(printed(stock, true, true)), "lin_grain_display_bleach_rangecompress_display");
  }
}

TEST(FilmChoice, SoupBeforeLinearGrain)
{
  EXPECT_EQ(grainNegativeKernel(developed(false, false)), "lin_grain_display");
  EXPECT_EQ(grainNegativeKernel(developed(false, true)), "lin_grain_display_hue_chr_vib");
  EXPECT_EQ(grainNegativeKernel(developed(true, true)), "lin_grain_display_bleach");
  EXPECT_EQ(grainRangeKernel(developed(false, false)), "lin_grain_rangecompress");
  EXPECT_EQ(grainRangeKernel(developed(true, false)), "lin_grain_rangecompress");
  EXPECT_EQ(grainRangeKernel(developed(true, true)), "lin_grain_hue_chr_vib_lin_rangecompress");
}

TEST(FilmChoice, RestOfTheLookAfterLinearGrain)
{
  FrameParams p = developed(false, false);
  p.printBypassed = true;
  EXPECT_EQ(expandKernel(p), "lin_grain_soup_expand");
  p.labBleach = true;
  EXPECT_EQ(expandKernel(p), "lin_grain_soup_bleach_expand");
  p.printBypassed = false;
  EXPECT_EQ(expandKernel(p), "lin_grain_display_only_expand");
  p.printProfile = 3;
  EXPECT_EQ(expandKernel(p), "lin_grain_display_only_expand_print_stock");
}

}  // namespace
}  // namespace morvellan::test
