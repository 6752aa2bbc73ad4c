// The plan of a frame, case by case as a reader would look it up.
#include <gtest/gtest.h>

#include "tests/pipeline/host/plan_fixture.h"

namespace morvellan::test
{

TEST(Plan, ExposureAloneWritesTheFrameToDownload)
{
  FrameParams p = neutral();
  p.exposureValue = 0.02f;
  EXPECT_EQ(kernels(p), Names{"exposure_log_in_out"});
  EXPECT_EQ(planFrame(routeOf(p), p).back().from, Slot::FrameB);
  p.inputGamut = 0;
  p.exposureKind = 1;
  EXPECT_EQ(kernels(p), Names{"exposure_linear_gamma_in_out"});
}

TEST(Plan, RgbIsWidenedAndPacked)
{
  FrameParams p = neutral(47, 3);
  p.exposureValue = 0.02f;
  EXPECT_EQ(kernels(p), (Names{"RGB_RGBA_Kernel", "exposure_log_in_out", "RGBA_RGB_Kernel"}));
}

TEST(Plan, HalationAloneIsTheStageAndTheDownload)
{
  FrameParams p = neutral();
  p.halationBypassed = false;
  EXPECT_EQ(kernels(p), Names{"halation"});
}

TEST(Plan, SoftClipEndsTheInputStage)
{
  FrameParams p = neutral();
  p.exposureValue = 0.02f;
  p.halationBypassed = false;
  p.cameraSoftClipActive = 1;
  EXPECT_EQ(kernels(p), (Names{"exposure_log", "halation", "highlights_shadows_Kernel_in_out"}));
}

TEST(Plan, NothingIsCompressedForExposureAlone)
{
  FrameParams p = neutral(30);
  p.hdrCompress = true;
  p.exposureKind = 1;
  p.exposureValue = 2.0f;
  EXPECT_EQ(kernels(p), Names{"exposure_linear_gamma_in_out"});
}

TEST(Plan, PitchOfEachClass)
{
  FrameParams p = neutral(47);
  withPitch(p);
  EXPECT_EQ(kernels(p), (Names{"ColorSpace_LAB", "pitch", "LAB_Colorspace"}));
  p.inputGamut = 0;
  EXPECT_EQ(kernels(p), (Names{"rec709_LAB", "pitch", "LAB_Lin_rec709"}));
  p.inputGamut = 4;
  EXPECT_EQ(kernels(p), (Names{"ACES_AP0_LAB", "pitch", "LAB_ACES_AP0"}));
  p.hdrCompress = true;
  EXPECT_EQ(kernels(p), (Names{"Lin_ACES_AP0_compress_LAB", "pitch", "LAB_Lin_ACES_AP0_expand"}));
}

TEST(Plan, SoupAndPrintOnACompressedClip)
{
  FrameParams p = neutral(5);
  p.hdrCompress = true;
  p.soupBypassed = false;
  EXPECT_EQ(kernels(p),
            (Names{"RGBA_ACES_AP1_compress", "film_lab", "film_soup_cuda_out", "RGBA_ACES_AP1_expand_sRGB"}));
  p.printBypassed = false;
  p.printProfile = 2;
  EXPECT_EQ(kernels(p), (Names{"RGBA_ACES_AP1_compress", "film_lab", "film_soup_cuda_out", "film_print_cuda_out_pfe"}));
}

TEST(Plan, BothSoftClipsRunBeforeTheCompressor)
{
  FrameParams p = neutral(5);
  p.hdrCompress = true;
  p.soupBypassed = false;
  p.soupSoftClipActive = true;
  p.cameraSoftClipActive = 1;
  const std::vector<Step> steps = planFrame(routeOf(p), p);
  ASSERT_GE(steps.size(), 4u);
  EXPECT_EQ(steps[1].kernel, "highlights_shadows_Kernel");
  EXPECT_EQ(steps[1].clip, ClipFields::Camera);
  EXPECT_EQ(steps[2].kernel, "highlights_shadows_Kernel");
  EXPECT_EQ(steps[2].clip, ClipFields::Soup);
  EXPECT_EQ(steps[3].kernel, "RGBA_ACES_AP1_compress");
}

TEST(Plan, PrintAloneStillClipsWithTheSoupsFields)
{
  FrameParams p = neutral(47);
  p.printBypassed = false;
  p.soupSoftClipActive = true;
  EXPECT_EQ(kernels(p), (Names{"highlights_shadows_Kernel", "film_lab_init_pfe", "film_print_cuda_out_pfe_display"}));
}

TEST(Plan, FilmKernelsAreTheSmallestThatServe)
{
  FrameParams p = neutral(47);
  p.soupBypassed = p.printBypassed = false;
  p.printProfile = 3;
  p.soupAttributes.hue.vectorLive = true;
  p.printAttributes.vibrance.vectorLive = true;
  EXPECT_EQ(kernels(p), (Names{"film_lab", "film_soup_cuda_out_hue_chr_vib", "film_print_cuda_out_hue_chr_vib_pfe"}));
  p.labBleach = p.printBleachOn = true;
  EXPECT_EQ(kernels(p), (Names{"film_lab", "film_soup_cuda_out_bleach", "film_print_cuda_out_bleach_pfe"}));
  p.printProfile = 0;
  EXPECT_EQ(kernels(p), (Names{"film_lab", "film_soup_cuda_out_bleach", "film_print_cuda_out_pfe_display"}));
  p.soupBypassed = true;
  EXPECT_EQ(kernels(p), (Names{"film_lab_init_pfe", "film_print_cuda_out_pfe_display"}));
  p.printProfile = 3;
  EXPECT_EQ(kernels(p), (Names{"film_lab_init_pfe", "film_print_cuda_out_bleach_pfe"}));
}

// Silver retention, the four groups of vectors and the custom bands, in every combination.
TEST(Plan, SoupKernelOfEveryCombination)
{
  for (unsigned bits = 0; bits < 1u << 6; ++bits)
  {
    const auto on = [bits](unsigned bit) { return (bits >> bit & 1u) != 0; };
    FrameParams p = neutral(47);
    p.soupBypassed = false;
    p.labBleach = on(0);
    p.soupAttributes.saturation.vectorLive = on(1);
    p.soupAttributes.hue.vectorLive = on(2);
    p.soupAttributes.chroma.vectorLive = on(3);
    p.soupAttributes.vibrance.vectorLive = on(4);
    // Bands and refinements need no vectors.
    p.soupAttributes.hue.custom.live = p.soupRefinements[3].live = p.refineActive = on(5);
    const bool vectors = (bits & 0b11110u) != 0;
    const std::string member = on(0) ? "_bleach" : vectors ? "_hue_chr_vib" : "";
    SCOPED_TRACE(bits);
    EXPECT_EQ(kernels(p), (Names{"film_lab", "film_soup_cuda_out" + member}));
    withGrain(p);
    p.grainLinear = true;
    EXPECT_EQ(kernels(p)[1], vectors ? "lin_grain_hue_chr_vib_lin_rangecompress" : "lin_grain_rangecompress");
    p.printBypassed = false;
    EXPECT_EQ(kernels(p)[1], "lin_grain_display" + member);
    p.grainBypassed = true;
    EXPECT_EQ(kernels(p), (Names{"film_lab", "film_soup_cuda_out" + member, "film_print_cuda_out_pfe_display"}));
    p.soupBypassed = true;
    EXPECT_EQ(kernels(p), (Names{"film_lab_init_pfe", "film_print_cuda_out_pfe_display"}));
  }
}

TEST(Plan, GrainAloneByClassAndMode)
{
  struct Row
  {
    int inputGamut;
    bool linearGrain, hdr;
    const char* split;
    const char* join;
  };
  for (const Row& row : std::initializer_list<Row>{
           {47, false, false, "src_RGBA_Kernel", "RGBA_src_Kernel"},
           {27, true, false, "XYZ_compress_RGBA", "RGB_expand_RGBA"},
           {0, false, false, "Linear_to_RGBA_log", "Log_RGBA_to_Linear_src_Kernel"},
           {0, false, true, "Lin_rec709_compress_RGBA", "RGBA_expand_src"},
           {30, true, false, "src_RGBA_Kernel", "RGBA_src_Kernel"},
           {30, true, true, "src_RGBA_Kernel", "RGBA_src_Kernel"},
       })
  {
    FrameParams p = neutral(row.inputGamut);
    withGrain(p);
    p.grainLinear = row.linearGrain;
    p.hdrCompress = row.hdr;
    EXPECT_EQ(kernels(p), (Names{row.split, "render_pixelR", row.join})) << row.inputGamut;
    p.grainMode = 2;
    EXPECT_EQ(kernels(p), (Names{row.split, "RGB_RGB_Kernel_Y", "render_pixelR", std::string("Y_") + row.join}));
  }
}

TEST(Plan, GrainFoldsTheCameraClipIntoTheSplit)
{
  FrameParams p = neutral(47);
  withGrain(p);
  p.cameraSoftClipActive = 1;
  EXPECT_EQ(kernels(p).front(), "highlights_shadows_Kernel_RGBA");
  p.grainLinear = true;
  EXPECT_EQ(kernels(p).front(), "Softclips_XYZ_compress_RGBA");
  p.inputGamut = 4;
  p.grainLinear = false;
  EXPECT_EQ(kernels(p).front(), "Linear_soft_clip_to_Log_RGBA");
  p.hdrCompress = true;
  EXPECT_EQ(kernels(p).front(), "Lin_ACES_AP0_soft_clip_compress_RGBA");
}

TEST(Plan, GrainSitsBetweenNegativeAndPrint)
{
  FrameParams p = neutral(47);
  withGrain(p);
  p.soupBypassed = p.printBypassed = false;
  p.printProfile = 2;
  EXPECT_EQ(kernels(p), (Names{"film_lab", "film_soup_cuda_out", "Linear_to_RGBA_log", "render_pixelR",
                               "Log_RGBA_to_Linear_src_Kernel", "film_print_cuda_out_pfe"}));
  p.grainLinear = true;
  EXPECT_EQ(kernels(p), (Names{"film_lab", "lin_grain_display", "lin_grain_display_custom_rangecompress_display",
                               "render_pixelR", "lin_grain_display_only_expand_print_stock"}));
  p.printProfile = 0;
  EXPECT_EQ(kernels(p), (Names{"film_lab", "lin_grain_display", "lin_grain_display_rangecompress_display",
                               "render_pixelR", "lin_grain_display_only_expand"}));
  p.printBypassed = true;
  EXPECT_EQ(kernels(p), (Names{"film_lab", "lin_grain_rangecompress", "render_pixelR", "lin_grain_soup_expand"}));
}

TEST(Plan, LinearGrainStandsBetweenTheSmallestFilmKernels)
{
  FrameParams p = neutral(47);
  withGrain(p);
  p.grainLinear = true;
  p.soupBypassed = p.printBypassed = false;
  p.printProfile = 2;
  p.soupAttributes.chroma.vectorLive = p.printAttributes.hue.vectorLive = true;
  EXPECT_EQ(kernels(p),
            (Names{"film_lab", "lin_grain_display_hue_chr_vib", "lin_grain_display_hue_chr_vib_rangecompress_display",
                   "render_pixelR", "lin_grain_display_only_expand_print_stock"}));
  p.labBleach = p.printBleachOn = true;
  EXPECT_EQ(kernels(p), (Names{"film_lab", "lin_grain_display_bleach", "lin_grain_display_bleach_rangecompress_display",
                               "render_pixelR", "lin_grain_display_only_expand_print_stock"}));
  p.soupBypassed = true;
  EXPECT_EQ(kernels(p), (Names{"film_lab_init_pfe", "lin_grain_display_bleach_rangecompress_display", "render_pixelR",
                               "lin_grain_display_only_expand_print_stock"}));
  p.printProfile = 0;
  EXPECT_EQ(kernels(p), (Names{"film_lab_init_pfe", "lin_grain_display_rangecompress_display", "render_pixelR",
                               "lin_grain_display_only_expand"}));
  p.soupBypassed = false;
  p.printBypassed = true;
  EXPECT_EQ(kernels(p), (Names{"film_lab", "lin_grain_hue_chr_vib_lin_rangecompress", "render_pixelR",
                               "lin_grain_soup_bleach_expand"}));
}

TEST(Plan, LinearGrainOnAnRgbClip)
{
  FrameParams p = neutral(47, 3);
  withGrain(p);
  p.grainLinear = true;
  p.soupBypassed = p.printBypassed = false;
  p.printProfile = 2;
  EXPECT_EQ(kernels(p),
            (Names{"RGB_RGBA_Kernel", "film_lab", "lin_grain_display", "lin_grain_display_custom_rangecompress_display",
                   "render_pixelR", "lin_grain_display_only_expand_print_stock_RGB"}));
  p.printBypassed = true;
  EXPECT_EQ(kernels(p), (Names{"RGB_RGBA_Kernel", "film_lab", "lin_grain_rangecompress", "render_pixelR",
                               "lin_grain_soup_expand_RGB"}));
}

TEST(Plan, GrainAfterAnUnprintedNegative)
{
  FrameParams p = neutral(47, 3);
  withGrain(p);
  p.soupBypassed = false;
  EXPECT_EQ(kernels(p), (Names{"RGB_RGBA_Kernel", "film_lab", "film_soup_cuda_out", "src_RGBA_Kernel_RGB",
                               "render_pixelR", "RGB_src_Kernel"}));
  p.inputGamut = 0;
  EXPECT_EQ(kernels(p), (Names{"RGB_RGBA_Kernel", "film_lab", "film_soup_cuda_out", "Linear_to_RGB_log",
                               "render_pixelR", "Log_RGB_to_Linear_src_Kernel"}));
}

TEST(Plan, GrainFromPitch)
{
  FrameParams p = neutral(47);
  withGrain(p);
  withPitch(p);
  EXPECT_EQ(kernels(p), (Names{"ColorSpace_LAB", "pitch", "LAB_Colorspace", "src_RGBA_Kernel", "render_pixelR",
                               "RGBA_src_Kernel"}));
  p.inputGamut = 11;
  EXPECT_EQ(kernels(p), (Names{"ColorSpace_LAB", "pitch", "LAB_Colorspace_RGBA", "render_pixelR", "RGBA_src_Kernel"}));
  p.grainLinear = true;
  EXPECT_EQ(kernels(p),
            (Names{"ColorSpace_LAB", "pitch", "LAB_XYZ_compress_RGBA", "render_pixelR", "RGB_expand_RGBA"}));
  p.inputGamut = 0;
  EXPECT_EQ(kernels(p), (Names{"Lin_rec709_LAB", "pitch", "LAB_Linear_Colorspace_RGBA_Kernel", "render_pixelR",
                               "RGBA_src_Kernel"}));
  p.grainLinear = false;
  EXPECT_EQ(kernels(p), (Names{"Lin_rec709_LAB", "pitch", "LAB_Linear_Colorspace_in_out", "Linear_to_RGBA_log",
                               "render_pixelR", "Log_RGBA_to_Linear_src_Kernel"}));
  p.hdrCompress = true;
  EXPECT_EQ(kernels(p),
            (Names{"Lin_rec709_LAB", "pitch", "LAB_XYZ_compress_RGBA", "render_pixelR", "RGBA_expand_src"}));
}

// LAB goes straight into compressed planes where the way out of them inverts the way into LAB, and by way of the clip's
// code elsewhere.
TEST(Plan, LinearGrainAfterPitchOfACodedClip)
{
  struct Row
  {
    int inputGamut, channels, grainMode;
    Names wayOut;
    const char* join;
  };
  for (const Row& row : std::initializer_list<Row>{
           {11, 4, 0, {"LAB_XYZ_compress_RGBA"}, "RGB_expand_RGBA"},
           {11, 3, 0, {"LAB_XYZ_compress_RGB"}, "XYZ_expand_RGB"},
           {27, 3, 0, {"LAB_XYZ_compress_RGB"}, "RGB_expand_RGB"},
           {13, 4, 0, {"LAB_Colorspace", "XYZ_compress_RGBA"}, "RGB_expand_RGBA"},
           {13, 3, 0, {"LAB_XYZ_compress_RGB"}, "XYZ_expand_RGB"},
           {47, 4, 0, {"LAB_Colorspace", "XYZ_compress_RGBA"}, "RGB_expand_RGBA"},
           {47, 4, 2, {"LAB_Colorspace", "XYZ_compress_RGBA", "RGB_RGB_Kernel_Y"}, "Y_RGB_expand_RGBA"},
           {47, 3, 0, {"LAB_Colorspace", "XYZ_compress_RGB"}, "RGB_expand_RGB"},
           {47, 3, 2, {"LAB_XYZ_compress_RGB", "RGB_RGB_Kernel_Y"}, "Y_RGB_expand_RGB"},
       })
  {
    FrameParams p = neutral(row.inputGamut, row.channels);
    withPitch(p);
    withGrain(p);
    p.grainLinear = true;
    p.grainMode = row.grainMode;
    Names expected = row.channels == 3 ? Names{"RGB_RGBA_Kernel"} : Names{};
    expected.insert(expected.end(), {"ColorSpace_LAB", "pitch"});
    expected.insert(expected.end(), row.wayOut.begin(), row.wayOut.end());
    expected.insert(expected.end(), {"render_pixelR", row.join});
    EXPECT_EQ(kernels(p), expected) << row.inputGamut << " " << row.channels << " " << row.grainMode;
  }
}

TEST(Plan, EnlargeFoldsTheInputStagesIntoTheCrop)
{
  FrameParams p = neutral(0);
  p.resizeMode = 1;
  p.sourceWidth = 32;
  p.sourceHeight = 16;
  p.exposureKind = 1;
  p.exposureValue = 2.0f;
  EXPECT_EQ(kernels(p), (Names{"exposure_linear_gamma", "CropKernelRGBA", "ResizeTBB"}));
  p.cameraSoftClipActive = 1;
  EXPECT_EQ(kernels(p), (Names{"Softclips_CropKernelRGBA_lin_gam", "ResizeTBB"}));
  p.hdrCompress = true;
  EXPECT_EQ(kernels(p),
            (Names{"Softclips_CropKernelRGBA_compress_rec709_lin_gam", "ResizeTBB", "RGBA_rec709_expand_sRGB"}));
  p.halationBypassed = false;
  EXPECT_EQ(kernels(p), (Names{"exposure_linear_gamma", "halation", "Softclips_CropKernelRGBA_compress_rec709",
                               "ResizeTBB", "RGBA_rec709_expand_sRGB"}));
}

TEST(Plan, ReduceClipsBeforeTheCropAndHasNoEnhancer)
{
  FrameParams p = neutral(47);
  p.resizeMode = 2;
  p.targetWidth = 32;
  p.targetHeight = 16;
  p.cameraSoftClipActive = 1;
  p.enhancerVertical = 4.0f;
  p.enhancerMode = 1;
  EXPECT_EQ(kernels(p), (Names{"highlights_shadows_Kernel", "CropKernelRGBA", "ResizeTBB", "Pad2DArrayRGBA"}));
}

TEST(Plan, ProcessLinearDecodesBeforeTheEnhancerAndEncodesAfterPitch)
{
  FrameParams p = neutral(47);
  p.processLinear = true;
  p.enhancerMode = 1;
  p.enhancerHorizontal = p.enhancerVertical = 4.0f;
  withPitch(p);
  EXPECT_EQ(kernels(p), (Names{"To_Linear_Kernel_RGBA", "ResizeTBB", "CsplashTexLV", "ColorSpace_Linear_LAB", "pitch",
                               "LAB_Linear_Colorspace_in_out", "To_Log_Kernel"}));
  // Without a resample or the enhancer it has nothing to act on.
  p.enhancerHorizontal = p.enhancerVertical = 0.0f;
  EXPECT_EQ(kernels(p), (Names{"ColorSpace_LAB", "pitch", "LAB_Colorspace"}));
}

TEST(Plan, HardClipForOneLogAfterAResample)
{
  FrameParams p = neutral(10);
  p.resizeMode = 1;
  p.sourceWidth = 32;
  withPitch(p);
  EXPECT_EQ(kernels(p),
            (Names{"CropKernelRGBA", "ResizeTBB", "Clip_min_max", "ColorSpace_LAB", "pitch", "LAB_Colorspace"}));
  p.processLinear = true;
  EXPECT_EQ(kernels(p), (Names{"CropKernelRGBA_To_Linear_Kernel", "ResizeTBB", "ColorSpace_Linear_LAB", "pitch",
                               "LAB_Linear_Colorspace_in_out", "To_Log_Kernel"}));
}

}  // namespace morvellan::test
