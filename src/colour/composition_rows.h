// Every colour kernel as one row: name, source, destination, fourth channel, steps, then floats in and out where they
// are fixed. A member of a family that differs only in layout differs only in those columns; no row has arithmetic of
// its own.
#pragma once

#include "colour/composition.h"

namespace morvellan::MORVELLAN_TARGET
{

// clang-format off
inline constexpr Composition compositions[] = {

    // Exposure and the plain soft clip.
    {"exposure_log", From::Self, To::Self, Alpha::None, {Op::ExposureAdd}},
    {"exposure_log_in_out", From::Frame, To::Frame, Alpha::Copy, {Op::ExposureAdd}},
    {"exposure_linear_gamma", From::Self, To::Self, Alpha::None, {Op::ExposureMultiply}},
    {"exposure_linear_gamma_in_out", From::Frame, To::Frame, Alpha::Copy, {Op::ExposureMultiply}},
    {"highlights_shadows_Kernel", From::Self, To::Self, Alpha::None, {Op::SoftClip}},
    {"Softclips_Kernel", From::Self, To::Self, Alpha::None, {Op::SoftClip}},
    {"highlights_shadows_Kernel_in_out", From::Frame, To::Frame, Alpha::Copy, {Op::SoftClip}},
    {"highlights_shadows_Kernel_linear_in_out", From::Frame, To::Frame, Alpha::Copy, {Op::SoftClip}},
    {"highlights_shadows_Kernel_linear_in_out_dest", From::Frame, To::Frame, Alpha::None, {Op::SoftClip}},
    {"highlights_shadows_Kernel_RGB", From::Frame, To::Planes, Alpha::None, {Op::SoftClip}},
    {"highlights_shadows_Kernel_RGBA", From::Frame, To::Planes, Alpha::Copy, {Op::SoftClip}},
    {"highlights_shadows_Kernel_linear_RGB", From::Frame, To::Planes, Alpha::None, {Op::SoftClip}},
    {"highlights_shadows_Kernel_linear_RGBA", From::Frame, To::Planes, Alpha::Copy, {Op::SoftClip}},
    {"Clip_min_max", From::Self, To::Self, Alpha::None, {Op::HardClip}},

    // Layout alone: the way in and out of a frame, crops, the planes of grain.
    {"RGB_RGBA_Kernel", From::Frame, To::Frame, Alpha::One, {}, 3, 4},
    {"RGBA_RGB_Kernel", From::Frame, To::Frame, Alpha::None, {}, 4, 3},
    {"CropKernelRGB", From::Crop, To::Frame, Alpha::None, {}},
    {"CropKernelRGBA", From::Crop, To::Frame, Alpha::Copy, {}},
    {"src_RGB_Kernel", From::Frame, To::Planes, Alpha::None, {}, 3},
    {"src_RGBA_Kernel", From::Frame, To::Planes, Alpha::Copy, {}, 4},
    {"src_RGBA_Kernel_RGB", From::Frame, To::Planes, Alpha::None, {}, 4},
    {"RGB_src_Kernel", From::Planes, To::Frame, Alpha::None, {}, 0, 3},
    {"RGBA_src_Kernel", From::Planes, To::Frame, Alpha::Copy, {}, 0, 4},
    {"Y_RGB_src_Kernel", From::Planes, To::Frame, Alpha::None, {Op::LumaToRgb}, 0, 3},
    {"Y_RGBA_src_Kernel", From::Planes, To::Frame, Alpha::Copy, {Op::LumaToRgb}, 0, 4},
    {"RGB_RGB_Kernel_Y", From::Planes, To::Planes, Alpha::None, {Op::RgbToLuma}},

    // Decode.
    {"To_Linear_Kernel_RGBA", From::Self, To::Self, Alpha::None, {Op::DecodeCarried}},
    {"To_Linear_Kernel_RGB_in_out", From::Frame, To::Frame, Alpha::None, {Op::DecodeShort}},
    {"To_Linear_Kernel_RGBA_in_out", From::Frame, To::Frame, Alpha::Copy, {Op::DecodeShort}},
    {"src_To_Linear_RGBA_Kernel", From::Frame, To::Planes, Alpha::Copy, {Op::DecodeShort}},
    {"CropKernelRGB_To_Linear_Kernel", From::Crop, To::Frame, Alpha::None, {Op::DecodeCarried}},
    {"CropKernelRGBA_To_Linear_Kernel", From::Crop, To::Frame, Alpha::Copy, {Op::DecodeCarried}},
    {"Softclips_To_Linear_Kernel_RGB_in_out", From::Frame, To::Frame, Alpha::None, {Op::SoftClip, Op::DecodeShort}},
    {"Softclips_To_Linear_Kernel_RGBA_in_out", From::Frame, To::Frame, Alpha::Copy, {Op::SoftClip, Op::DecodeShort}},
    {"Softclips_CropKernelRGB_To_Linear_Kernel", From::Crop, To::Frame, Alpha::None, {Op::SoftClip, Op::DecodeShortSaturated}},
    {"Softclips_CropKernelRGBA_To_Linear_Kernel", From::Crop, To::Frame, Alpha::Copy, {Op::SoftClip, Op::DecodeShortSaturated}},
    {"to_linear_softclips_RGBA", From::Frame, To::Planes, Alpha::Copy, {Op::DecodeShort, Op::SoftClip}},

    // Encode.
    {"To_Log_Kernel", From::Self, To::Self, Alpha::None, {Op::EncodeCarried}},
    {"To_Log_Kernel_RGB", From::Self, To::Self, Alpha::None, {Op::EncodeCarried}},
    {"To_Log_Kernel_in_out", From::Frame, To::Frame, Alpha::Copy, {Op::EncodeShort}},
    {"To_Log_Kernel_RGB_in_out", From::Frame, To::Frame, Alpha::None, {Op::EncodeShort}},
    {"To_Log_RGBA_Kernel", From::Frame, To::Planes, Alpha::Copy, {Op::EncodeFull}},
    {"RGBA_To_Log_src_Kernel", From::Planes, To::Frame, Alpha::Copy, {Op::EncodeShort}},
    {"linear_to_log", From::Self, To::Self, Alpha::None, {Op::EncodeShort}},
    {"linear_to_log_no_clamp", From::Self, To::Self, Alpha::None, {Op::EncodeUnclamped}},
    {"linear_Colorspace_RGB", From::Frame, To::Planes, Alpha::None, {Op::EncodeNative}},
    {"linear_Colorspace_RGBA", From::Frame, To::Planes, Alpha::Copy, {Op::EncodeNative}},
    {"linear_softclips_Kernel_RGBA", From::Frame, To::Planes, Alpha::Copy, {Op::DecodeShort, Op::SoftClip, Op::EncodeShort}},

    // The working log, and log113.
    {"Linear_to_RGB_log", From::Frame, To::Planes, Alpha::None, {Op::EncodeWorkingLog}},
    {"Linear_to_RGBA_log", From::Frame, To::Planes, Alpha::Copy, {Op::EncodeWorkingLog}},
    {"Linear_soft_clip_to_Log_RGB", From::Frame, To::Planes, Alpha::None, {Op::SoftClip, Op::EncodeWorkingLog}},
    {"Linear_soft_clip_to_Log_RGBA", From::Frame, To::Planes, Alpha::Copy, {Op::SoftClip, Op::EncodeWorkingLog}},
    {"Lab_Linear_to_Log_RGBA", From::Frame, To::Planes, Alpha::Copy, {Op::SoftClip, Op::EncodeWorkingLog}},
    {"Log_RGB_to_Linear_src_Kernel", From::Planes, To::Frame, Alpha::None, {Op::DecodeWorkingLog}},
    {"Log_RGBA_to_Linear_src_Kernel", From::Planes, To::Frame, Alpha::Copy, {Op::DecodeWorkingLog}},
    {"Y_Log_RGB_to_Linear_src_Kernel", From::Planes, To::Frame, Alpha::None, {Op::LumaToRgb, Op::DecodeWorkingLog}},
    {"Y_Log_RGBA_to_Linear_src_Kernel", From::Planes, To::Frame, Alpha::Copy, {Op::LumaToRgb, Op::DecodeWorkingLog}},
    {"RGBA_log_to_Linear", From::Planes, To::Frame, Alpha::Copy, {Op::DecodeLog113}},
    {"Lab_Linear_to_RGB_log", From::Frame, To::Planes, Alpha::None, {Op::FromLabExact, Op::XyzToRgbShort, Op::EncodeLog113}},
    {"Lab_Linear_to_RGBA_log", From::Frame, To::Planes, Alpha::Copy, {Op::FromLabExact, Op::XyzToRgbShort, Op::EncodeLog113}},

    // Range compression of the linear gamuts.
    {"RGB_<g>_compress", From::Frame, To::FrameAndSource, Alpha::None, {Op::CompressB}, 3, 3},
    {"RGBA_<g>_compress", From::Frame, To::FrameAndSource, Alpha::Copy, {Op::CompressB}, 4, 4},
    {"RGBA_rec709_compress_in_out", From::Self, To::Self, Alpha::None, {Op::CompressA}, 4, 4},
    {"Lin_<g>_compress_RGB", From::Frame, To::Planes, Alpha::None, {Op::CompressB}},
    {"Lin_<g>_compress_RGBA", From::Frame, To::Planes, Alpha::Copy, {Op::CompressB}},
    {"src_RGBA_Compress_Kernel_<g>", From::Frame, To::Planes, Alpha::Copy, {Op::CompressA}, 4},
    {"CropKernelRGB_compress_<g>", From::Crop, To::Frame, Alpha::None, {Op::CompressA}},
    {"CropKernelRGBA_compress_<g>", From::Crop, To::Frame, Alpha::Copy, {Op::CompressA}},
    {"CropKernelRGB_compress_<g>_lin_gam", From::Crop, To::Frame, Alpha::None, {Op::Gain, Op::CompressB}},
    {"CropKernelRGBA_compress_<g>_lin_gam", From::Crop, To::Frame, Alpha::Copy, {Op::Gain, Op::CompressB}},
    {"RGB_<g>_expand_sRGB", From::Frame, To::Frame, Alpha::None, {Op::ExpandA}, 3, 3},
    {"RGBA_<g>_expand_sRGB", From::Frame, To::Frame, Alpha::Copy, {Op::ExpandA}, 4, 4},
    {"RGB_<g>_expand_sRGB_in_out", From::Self, To::Self, Alpha::None, {Op::ExpandA}, 3, 3},
    {"RGBA_<g>_expand_sRGB_in_out", From::Self, To::Self, Alpha::None, {Op::ExpandA}, 4, 4},
    // In spite of its name with the luminance of BT.709, the gamut of a row without a tag.
    {"RGBA_expand_AP0", From::Frame, To::Frame, Alpha::Copy, {Op::ExpandA}, 4, 4},
    {"RGB_expand_src", From::Planes, To::Frame, Alpha::None, {Op::WhereLinear, Op::ExpandLinear}},
    {"RGBA_expand_src", From::Planes, To::Frame, Alpha::Copy, {Op::WhereLinear, Op::ExpandLinear}},
    {"Y_RGB_expand_src", From::Planes, To::Frame, Alpha::None, {Op::WhereLinear, Op::LumaToRgb, Op::ExpandLinear}},
    {"Y_RGBA_expand_src", From::Planes, To::Frame, Alpha::Copy, {Op::WhereLinear, Op::LumaToRgb, Op::ExpandLinear}},

    // Soft clip, then range compression.
    {"Softclips_CropKernelRGB", From::Crop, To::Frame, Alpha::None, {Op::SoftClip}},
    {"Softclips_CropKernelRGBA", From::Crop, To::Frame, Alpha::Copy, {Op::SoftClip}},
    {"Softclips_CropKernelRGB_lin_gam", From::Crop, To::Frame, Alpha::None, {Op::Gain, Op::SoftClip}},
    {"Softclips_CropKernelRGBA_lin_gam", From::Crop, To::Frame, Alpha::Copy, {Op::Gain, Op::SoftClip}},
    {"Softclips_RGB_<g>_compress", From::Frame, To::FrameAndSource, Alpha::None, {Op::SoftClip, Op::CompressB}, 3, 3},
    {"Softclips_RGBA_<g>_compress", From::Frame, To::FrameAndSource, Alpha::Copy, {Op::SoftClip, Op::CompressB}, 4, 4},
    {"Softclips_compress_<g>", From::Self, To::Self, Alpha::None, {Op::SoftClip, Op::CompressB}},
    {"Softclips_CropKernelRGB_compress_<g>", From::Crop, To::Frame, Alpha::None, {Op::SoftClip, Op::CompressA}},
    {"Softclips_CropKernelRGBA_compress_<g>", From::Crop, To::Frame, Alpha::Copy, {Op::SoftClip, Op::CompressA}},
    {"Softclips_CropKernelRGB_compress_<g>_lin_gam", From::Crop, To::Frame, Alpha::None, {Op::Gain, Op::SoftClip, Op::CompressB}},
    {"Softclips_CropKernelRGBA_compress_<g>_lin_gam", From::Crop, To::Frame, Alpha::Copy, {Op::Gain, Op::SoftClip, Op::CompressB}},
    {"Lin_<g>_soft_clip_compress", From::Self, To::Self, Alpha::None, {Op::SoftClip, Op::CompressB}},
    {"Lin_<g>_soft_clip_compress_RGB", From::Frame, To::Planes, Alpha::None, {Op::SoftClip, Op::CompressB}},
    {"Lin_<g>_soft_clip_compress_RGBA", From::Frame, To::Planes, Alpha::Copy, {Op::SoftClip, Op::CompressB}},

    // LAB of the linear gamuts.
    {"<g>_LAB", From::Self, To::SelfAndCompanion, Alpha::None, {Op::GamutToXyzD65, Op::ToLabRounded}},
    {"Lin_<g>_LAB", From::Self, To::SelfAndCompanion, Alpha::None, {Op::GamutToXyz, Op::ToLabRounded}},
    {"Lin_<g>_soft_clip_LAB", From::Self, To::SelfAndCompanion, Alpha::None, {Op::SoftClip, Op::GamutToXyz, Op::ToLabRounded}},
    {"Lin_<g>_compress_LAB", From::Self, To::SelfAndCompanion, Alpha::None, {Op::CompressA, Op::GamutToXyzD65, Op::ToLabRounded}},
    {"compress_Lin_<g>_LAB", From::Self, To::SelfAndCompanion, Alpha::None, {Op::CompressA, Op::GamutToXyzD65, Op::ToLabRounded}},
    {"compress_ACES_<x>_LAB", From::Self, To::SelfAndCompanion, Alpha::None, {Op::CompressA, Op::GamutToXyzD65, Op::ToLabRounded}},
    {"Lin_<g>_soft_clip_compress_LAB", From::Self, To::SelfAndCompanion, Alpha::None, {Op::SoftClip, Op::CompressA, Op::GamutToXyzD65, Op::ToLabRounded}},
    {"LAB_Lin_<v>", From::Self, To::Self, Alpha::None, {Op::FromLabRounded, Op::XyzD65ToGamut}},
    {"LAB_ACES_<x>", From::Self, To::Self, Alpha::None, {Op::FromLabRounded, Op::XyzD65ToGamut}},
    {"LAB_<g>_soft_clip", From::Self, To::Self, Alpha::None, {Op::FromLabRounded, Op::XyzD65ToGamut, Op::SoftClip}},
    {"LAB_Lin_<g>_expand", From::Self, To::Self, Alpha::None, {Op::FromLabRounded, Op::XyzD65ToGamut, Op::ExpandA}},
    {"expand_LAB_ACES_<x>", From::Self, To::Self, Alpha::None, {Op::FromLabRounded, Op::XyzD65ToGamut, Op::ExpandA}},
    {"LAB_Lin_<g>_expand_soft_clip", From::Self, To::Self, Alpha::None, {Op::FromLabRounded, Op::XyzD65ToGamut, Op::ExpandA, Op::SoftClip}},
    {"expand_LAB_ACES_<x>_soft_clip", From::Self, To::Self, Alpha::None, {Op::FromLabRounded, Op::XyzD65ToGamut, Op::ExpandA, Op::SoftClip}},
    {"LAB_Linear_RGB_<g>_expand", From::Planes, To::Frame, Alpha::None, {Op::FromLabRounded, Op::XyzD65ToGamut, Op::ExpandA}},
    {"LAB_Linear_RGBA_<g>_expand", From::Planes, To::Frame, Alpha::Copy, {Op::FromLabRounded, Op::XyzD65ToGamut, Op::ExpandA}},
    {"LAB_Linear_RGB_<g>_expand_in_out", From::Frame, To::Frame, Alpha::None, {Op::FromLabRounded, Op::XyzD65ToGamut, Op::ExpandA}},
    {"LAB_Linear_RGBA_<g>_expand_in_out", From::Frame, To::Frame, Alpha::Copy, {Op::FromLabRounded, Op::XyzD65ToGamut, Op::ExpandA}},

    // LAB by index.
    {"ColorSpace_LAB", From::Self, To::SelfAndCompanion, Alpha::None, {Op::DecodeShortSaturated, Op::RgbToXyz, Op::ToLabExact}},
    {"ColorSpace_Linear_LAB", From::Self, To::SelfAndCompanion, Alpha::None, {Op::RgbToXyz, Op::ToLabExact}},
    {"ColorSpace_LAB_softclips", From::Self, To::SelfAndCompanion, Alpha::None, {Op::SoftClip, Op::DecodeShortSaturated, Op::RgbToXyz, Op::ToLabExact}},
    {"LAB_Colorspace", From::Self, To::Self, Alpha::None, {Op::FromLabExact, Op::XyzToRgbShort, Op::EncodeShort}},
    {"LAB_Colorspace_RGB", From::Frame, To::Planes, Alpha::None, {Op::FromLabExact, Op::XyzToRgbShort, Op::EncodeShort}},
    {"LAB_Colorspace_RGBA", From::Frame, To::Planes, Alpha::Copy, {Op::FromLabExact, Op::XyzToRgbFull, Op::EncodeFull}},
    {"LAB_Linear_Colorspace", From::Self, To::Self, Alpha::None, {Op::FromLabExact, Op::XyzToRgbFull}},
    {"LAB_Linear_Colorspace_in_out", From::Frame, To::Frame, Alpha::Copy, {Op::FromLabExact, Op::XyzToRgbShort}},
    {"LAB_Linear_Colorspace_RGB_in_out", From::Frame, To::Frame, Alpha::None, {Op::FromLabExact, Op::XyzToRgbShort}},
    {"LAB_Linear_Colorspace_RGB_Kernel", From::Frame, To::Planes, Alpha::None, {Op::FromLabExact, Op::XyzToRgbShort}},
    {"LAB_Linear_Colorspace_RGBA_Kernel", From::Frame, To::Planes, Alpha::Copy, {Op::FromLabExact, Op::XyzToRgbShort}},
    {"LAB_soft_clip_Kernel_linear_RGBA", From::Frame, To::Planes, Alpha::Copy, {Op::FromLabExact, Op::XyzToRgbShort, Op::SoftClip}},
    {"LAB_soft_clip_Kernel_linear_log_RGBA", From::Frame, To::Planes, Alpha::Copy, {Op::FromLabExact, Op::XyzToRgbShort, Op::SoftClip, Op::EncodeWorkingLog}},
    {"LAB_XYZ_soft_clip", From::Self, To::Self, Alpha::None, {Op::FromLabExact, Op::XyzToRgbShort, Op::SoftClip, Op::EncodeShort}},
    {"LAB_XYZ_compress_RGB", From::Frame, To::Planes, Alpha::None, {Op::FromLabExact, Op::XyzToRgbShort, Op::CompressShort}},
    {"LAB_XYZ_compress_RGBA", From::Frame, To::Planes, Alpha::Copy, {Op::FromLabExact, Op::XyzToRgbFull, Op::CompressFull}},

    // Range compression by index.
    {"XYZ_compress_RGB", From::Frame, To::Planes, Alpha::None, {Op::DecodeFull, Op::CompressFull}},
    {"XYZ_compress_RGBA", From::Frame, To::Planes, Alpha::Copy, {Op::DecodeFull, Op::CompressFull}},
    {"Softclips_XYZ_compress_RGB", From::Frame, To::Planes, Alpha::None, {Op::SoftClip, Op::DecodeFull, Op::CompressFull}},
    {"Softclips_XYZ_compress_RGBA", From::Frame, To::Planes, Alpha::Copy, {Op::SoftClip, Op::DecodeFull, Op::CompressFull}},
    {"ColorSpace_XYZ_compress", From::Self, To::Self, Alpha::None, {Op::DecodeShortSaturated, Op::CompressShort}},
    {"ColorSpace_XYZ_expand", From::Self, To::Self, Alpha::None, {Op::WhereExpanded, Op::ExpandShort, Op::EncodeShort}},
    {"XYZ_expand_RGB", From::Planes, To::Frame, Alpha::None, {Op::WhereExpanded, Op::ExpandShort, Op::EncodeShort}},
    {"RGB_expand_RGB", From::Planes, To::Frame, Alpha::None, {Op::ExpandFull, Op::EncodeFull}},
    {"RGB_expand_RGBA", From::Planes, To::Frame, Alpha::Copy, {Op::ExpandFull, Op::EncodeFull}},
    {"Y_RGB_expand_RGB", From::Planes, To::Frame, Alpha::None, {Op::LumaToRgb, Op::ExpandShort, Op::EncodeShort}},
    {"Y_RGB_expand_RGBA", From::Planes, To::Frame, Alpha::Copy, {Op::LumaToRgb, Op::ExpandFull, Op::EncodeFull}},
    {"RGB_compress_RGB", From::Frame, To::Planes, Alpha::None, {Op::WhereCompressed, Op::CompressShortCineon}},
    {"RGB_compress_RGBA", From::Frame, To::Planes, Alpha::Copy, {Op::WhereCompressed, Op::CompressShortCineon}},
};
// clang-format on

}  // namespace morvellan::MORVELLAN_TARGET
