// Every colour kernel with its layout and its composition written out from the routines. The list is made without the
// composition rows; both must name the same kernels.
#pragma once

#include <map>
#include <optional>

#include "colour/colour_kernels.h"
#include "colour/curves.h"
#include "colour/film_space.h"
#include "colour/gamuts.h"
#include "colour/working_spaces.h"

namespace morvellan::MORVELLAN_TARGET::colour_test
{

enum class Layout
{
  InPlace,
  InPlaceZeroingCompanion,
  FrameToFrameRgb,
  FrameToFrameRgba,
  PackedToPackedRgb,
  PackedInPlaceRgb,
  BothRgb,
  BothRgba,
  CropRgb,
  CropRgba,
  FrameToPlanesRgb,
  FrameToPlanesRgba,
  PackedToPlanesRgb,
  PlanesToFrameRgb,
  PlanesToFrameRgba,
  PlanesToPackedRgb,
  PlanesToPlanes,
  PackedToFrame,
  FrameToPacked,
};

struct Setting
{
  LinearGamut gamut;
  int index;
  float value, gain;
  SoftClip soft;
};

using Compose = Rgb (*)(const Setting&, Rgb);

struct Member
{
  const char* pattern;
  Layout layout;
  Compose compose;
};

template <typename F>
inline Rgb each(Rgb p, F f)
{
  return {f(p.r), f(p.g), f(p.b)};
}

// Routines that the compositions are written in.
inline Rgb same(const Setting&, Rgb p)
{
  return p;
}
inline Rgb soft(const Setting& s, Rgb p)
{
  return softClip(s.soft, p);
}
inline Rgb gained(const Setting& s, Rgb p)
{
  return each(p, [&](Real x) { return x * Real(s.gain); });
}
inline Rgb decodeShort(const Setting& s, Rgb p)
{
  return decode(decodingOf(CurveTable::Short, s.index), p);
}
inline Rgb decodeSaturated(const Setting& s, Rgb p)
{
  return decodeShort(s, s.index == 42 || s.index == 43 ? each(p, clamp01) : p);
}
inline Rgb decodeCarried(const Setting& s, Rgb p)
{
  if (s.index == 4 || s.index == 5)
    return each(p, curves::PLogLin::decode);
  return decodeSaturated(s, p);
}
inline Rgb decodeFull(const Setting& s, Rgb p)
{
  return decode(decodingOf(CurveTable::Full, s.index), p);
}
inline Rgb encodeShort(const Setting& s, Rgb p)
{
  return encode(encodingOf(CurveTable::Short, s.index), p);
}
inline Rgb encodeFull(const Setting& s, Rgb p)
{
  return encode(encodingOf(CurveTable::Full, s.index), p);
}
inline Rgb encodeCarried(const Setting& s, Rgb p)
{
  return encode(encodingOf(CurveTable::Short, s.index == 4 || s.index == 5 ? 3 : s.index), p);
}
inline Rgb encodeNative(const Setting& s, Rgb p)
{
  if (s.index >= 45)
    return p;
  const std::map<int, int> logOf = {{0, 2}, {4, 7}, {5, 7}, {30, 31}};
  const auto found = logOf.find(s.index);
  return encode(encodingOf(CurveTable::Short, found == logOf.end() ? s.index : found->second), p);
}
inline Rgb workingLog(const Setting&, Rgb p)
{
  return logC4Encode(p);
}
inline Rgb fromWorkingLog(const Setting&, Rgb p)
{
  return logC4Decode(p);
}
inline Rgb times(const std::optional<Matrix3>& k, Rgb p)
{
  return k ? multiply(*k, p) : p;
}
inline int gamutIndex(const Setting& s)
{
  constexpr int indices[] = {0, 30, 4, 5};
  return indices[static_cast<int>(s.gamut)];
}
inline Rgb toLabAdapted(const Setting& s, Rgb p)
{
  return labFromXyz(LabForm::Rounded, multiply(rounded(*rgbToXyzD65(gamutIndex(s))), p));
}
inline Rgb toLabOwnWhite(const Setting& s, Rgb p)
{
  return labFromXyz(LabForm::Rounded, multiply(*rgbToXyz(gamutIndex(s)), p));
}
inline Rgb fromLabAdapted(const Setting& s, Rgb p)
{
  return multiply(rounded(xyzD65ToRgb(gamutIndex(s))), xyzFromLab(LabForm::Rounded, p));
}
inline Rgb toLab(const Setting& s, Rgb p)
{
  return labFromXyz(LabForm::Exact, times(rgbToXyz(s.index), p));
}
inline Rgb fromLabShort(const Setting& s, Rgb p)
{
  return times(xyzToRgb(CurveTable::Short, s.index), xyzFromLab(LabForm::Exact, p));
}
inline Rgb fromLabFull(const Setting& s, Rgb p)
{
  return times(xyzToRgb(CurveTable::Full, s.index), xyzFromLab(LabForm::Exact, p));
}
inline Row3 rowA(const Setting& s)
{
  constexpr Row3 rows[] = {{0.212640002f, 0.715170026f, 0.0721900016f},
                           {0.262699991f, 0.677999973f, 0.0593000017f},
                           {0.343966454f, 0.728166103f, -0.0721325427f},
                           {0.272228718f, 0.674081743f, 0.0536895171f}};
  return rows[static_cast<int>(s.gamut)];
}
inline Row3 rowB(const Setting& s)
{
  constexpr Row3 rows[] = {{0.212639004f, 0.715168655f, 0.0721923187f},
                           {0.2627002f, 0.677998066f, 0.0593017153f},
                           {0.343966454f, 0.728166103f, -0.0721325427f},
                           {0.272228718f, 0.674081743f, 0.0536895171f}};
  return rows[static_cast<int>(s.gamut)];
}
inline Rgb compressA(const Setting& s, Rgb p)
{
  return compressRange(rowA(s), p);
}
inline Rgb compressB(const Setting& s, Rgb p)
{
  return compressRange(rowB(s), p);
}
inline Rgb expandA(const Setting& s, Rgb p)
{
  return expandRange(rowA(s), p);
}
inline Rgb compressBy(const std::optional<Row3>& row, Rgb p)
{
  return row ? compressRange(*row, p) : p;
}
inline Rgb expandBy(const std::optional<Row3>& row, Rgb p)
{
  return row ? expandRange(*row, p) : p;
}
inline Rgb compressShort(const Setting& s, Rgb p)
{
  return compressBy(luminanceRow(CurveTable::Short, s.index), p);
}
inline Rgb compressFull(const Setting& s, Rgb p)
{
  return compressBy(luminanceRow(CurveTable::Full, s.index), p);
}
inline Rgb expandShort(const Setting& s, Rgb p)
{
  return expandBy(luminanceRow(CurveTable::Short, s.index), p);
}
inline Rgb expandFull(const Setting& s, Rgb p)
{
  return expandBy(luminanceRow(CurveTable::Full, s.index), p);
}
inline Rgb expandLinear(const Setting& s, Rgb p)
{
  const std::map<int, LinearGamut> gamutOf = {
      {0, LinearGamut::Rec709}, {4, LinearGamut::AcesAp0}, {5, LinearGamut::AcesAp1}, {30, LinearGamut::Rec2020}};
  Setting linear = s;
  linear.gamut = gamutOf.at(s.index);
  return expandRange(rowB(linear), p);
}
inline Rgb compressOnly(const Setting& s, Rgb p)
{
  const int i = s.index;
  if (i == 0 || i == 1 || i == 4 || i == 5 || i == 27 || (i >= 29 && i <= 34) || i >= 46)
    return p;
  return i == 2 ? compressRange({0.212599993f, 0.715200007f, 0.0722000003f}, p) : compressShort(s, p);
}
inline Rgb expandToCode(const Setting& s, Rgb p)
{
  const int i = s.index;
  if (i == 0 || i == 1 || i == 4 || i == 5 || i == 27 || (i >= 29 && i <= 34) || (i >= 42 && i <= 44) || i >= 46)
    return p;
  return encodeShort(s, expandShort(s, p));
}
inline Rgb exposedLog(const Setting& s, Rgb p)
{
  return each(p, [&](Real x) { return clamp01(x + Real(s.value)); });
}
inline Rgb exposedLinear(const Setting& s, Rgb p)
{
  return each(p, [&](Real x) { return clamp(x * Real(s.value), Real(0.0f), Real(469.799988f)); });
}
inline Rgb toLog113(const Setting&, Rgb p)
{
  return each(p, [](Real x) { return curves::Log113::encode(clamp01(x)); });
}

template <Compose... Parts>
inline Rgb chain(const Setting& s, Rgb p)
{
  ((p = Parts(s, p)), ...);
  return p;
}

inline Rgb luma(const Setting&, Rgb p)
{
  return rgbFromLuma(p);
}

// clang-format off
inline const Member members[] = {
    {"exposure_log", Layout::InPlace, exposedLog},
    {"exposure_log_in_out", Layout::FrameToFrameRgba, exposedLog},
    {"exposure_linear_gamma", Layout::InPlace, exposedLinear},
    {"exposure_linear_gamma_in_out", Layout::FrameToFrameRgba, exposedLinear},
    {"highlights_shadows_Kernel", Layout::InPlace, soft},
    {"Softclips_Kernel", Layout::InPlace, soft},
    {"highlights_shadows_Kernel_in_out", Layout::FrameToFrameRgba, soft},
    {"highlights_shadows_Kernel_linear_in_out", Layout::FrameToFrameRgba, soft},
    {"highlights_shadows_Kernel_linear_in_out_dest", Layout::FrameToFrameRgb, soft},
    {"highlights_shadows_Kernel_RGB", Layout::FrameToPlanesRgb, soft},
    {"highlights_shadows_Kernel_RGBA", Layout::FrameToPlanesRgba, soft},
    {"highlights_shadows_Kernel_linear_RGB", Layout::FrameToPlanesRgb, soft},
    {"highlights_shadows_Kernel_linear_RGBA", Layout::FrameToPlanesRgba, soft},
    {"Softclips_CropKernelRGB", Layout::CropRgb, soft},
    {"Softclips_CropKernelRGBA", Layout::CropRgba, soft},
    {"Softclips_CropKernelRGB_lin_gam", Layout::CropRgb, chain<gained, soft>},
    {"Softclips_CropKernelRGBA_lin_gam", Layout::CropRgba, chain<gained, soft>},
    {"Softclips_RGB_<g>_compress", Layout::BothRgb, chain<soft, compressB>},
    {"Softclips_RGBA_<g>_compress", Layout::BothRgba, chain<soft, compressB>},
    {"Softclips_compress_<g>", Layout::InPlace, chain<soft, compressB>},
    {"Softclips_CropKernelRGB_compress_<g>", Layout::CropRgb, chain<soft, compressA>},
    {"Softclips_CropKernelRGBA_compress_<g>", Layout::CropRgba, chain<soft, compressA>},
    {"Softclips_CropKernelRGB_compress_<g>_lin_gam", Layout::CropRgb, chain<gained, soft, compressB>},
    {"Softclips_CropKernelRGBA_compress_<g>_lin_gam", Layout::CropRgba, chain<gained, soft, compressB>},
    {"Lin_<g>_soft_clip_compress", Layout::InPlace, chain<soft, compressB>},
    {"Lin_<g>_soft_clip_compress_RGB", Layout::FrameToPlanesRgb, chain<soft, compressB>},
    {"Lin_<g>_soft_clip_compress_RGBA", Layout::FrameToPlanesRgba, chain<soft, compressB>},
    {"Lin_<g>_soft_clip_compress_LAB", Layout::InPlaceZeroingCompanion, chain<soft, compressA, toLabAdapted>},
    {"Lin_<g>_soft_clip_LAB", Layout::InPlaceZeroingCompanion, chain<soft, toLabOwnWhite>},
    {"LAB_<g>_soft_clip", Layout::InPlace, chain<fromLabAdapted, soft>},
    {"LAB_Lin_<g>_expand_soft_clip", Layout::InPlace, chain<fromLabAdapted, expandA, soft>},
    {"expand_LAB_ACES_<x>_soft_clip", Layout::InPlace, chain<fromLabAdapted, expandA, soft>},
    {"Linear_soft_clip_to_Log_RGB", Layout::FrameToPlanesRgb, chain<soft, workingLog>},
    {"Linear_soft_clip_to_Log_RGBA", Layout::FrameToPlanesRgba, chain<soft, workingLog>},
    {"Lab_Linear_to_Log_RGBA", Layout::FrameToPlanesRgba, chain<soft, workingLog>},
    {"LAB_soft_clip_Kernel_linear_RGBA", Layout::FrameToPlanesRgba, chain<fromLabShort, soft>},
    {"LAB_soft_clip_Kernel_linear_log_RGBA", Layout::FrameToPlanesRgba, chain<fromLabShort, soft, workingLog>},
    {"LAB_XYZ_soft_clip", Layout::InPlace, chain<fromLabShort, soft, encodeShort>},
    {"ColorSpace_LAB_softclips", Layout::InPlaceZeroingCompanion, chain<soft, decodeSaturated, toLab>},
    {"linear_softclips_Kernel_RGBA", Layout::FrameToPlanesRgba, chain<decodeShort, soft, encodeShort>},
    {"to_linear_softclips_RGBA", Layout::FrameToPlanesRgba, chain<decodeShort, soft>},

    {"RGB_RGBA_Kernel", Layout::PackedToFrame, same},
    {"RGBA_RGB_Kernel", Layout::FrameToPacked, same},
    {"CropKernelRGB", Layout::CropRgb, same},
    {"CropKernelRGBA", Layout::CropRgba, same},
    {"src_RGB_Kernel", Layout::PackedToPlanesRgb, same},
    {"src_RGBA_Kernel", Layout::FrameToPlanesRgba, same},
    {"src_RGBA_Kernel_RGB", Layout::FrameToPlanesRgb, same},
    {"RGB_src_Kernel", Layout::PlanesToPackedRgb, same},
    {"RGBA_src_Kernel", Layout::PlanesToFrameRgba, same},
    {"Y_RGB_src_Kernel", Layout::PlanesToPackedRgb, luma},
    {"Y_RGBA_src_Kernel", Layout::PlanesToFrameRgba, luma},
    {"RGB_RGB_Kernel_Y", Layout::PlanesToPlanes, [](const Setting&, Rgb p) { return lumaFromRgb(p); }},

    {"To_Linear_Kernel_RGBA", Layout::InPlace, decodeCarried},
    {"To_Linear_Kernel_RGB_in_out", Layout::FrameToFrameRgb, decodeShort},
    {"To_Linear_Kernel_RGBA_in_out", Layout::FrameToFrameRgba, decodeShort},
    {"src_To_Linear_RGBA_Kernel", Layout::FrameToPlanesRgba, decodeShort},
    {"CropKernelRGB_To_Linear_Kernel", Layout::CropRgb, decodeCarried},
    {"CropKernelRGBA_To_Linear_Kernel", Layout::CropRgba, decodeCarried},
    {"Softclips_To_Linear_Kernel_RGB_in_out", Layout::FrameToFrameRgb, chain<soft, decodeShort>},
    {"Softclips_To_Linear_Kernel_RGBA_in_out", Layout::FrameToFrameRgba, chain<soft, decodeShort>},
    {"Softclips_CropKernelRGB_To_Linear_Kernel", Layout::CropRgb, chain<soft, decodeSaturated>},
    {"Softclips_CropKernelRGBA_To_Linear_Kernel", Layout::CropRgba, chain<soft, decodeSaturated>},

    {"To_Log_Kernel", Layout::InPlace, encodeCarried},
    {"To_Log_Kernel_RGB", Layout::InPlace, encodeCarried},
    {"To_Log_Kernel_in_out", Layout::FrameToFrameRgba, encodeShort},
    {"To_Log_Kernel_RGB_in_out", Layout::FrameToFrameRgb, encodeShort},
    {"To_Log_RGBA_Kernel", Layout::FrameToPlanesRgba, encodeFull},
    {"RGBA_To_Log_src_Kernel", Layout::PlanesToFrameRgba, encodeShort},
    {"linear_to_log", Layout::InPlace, encodeShort},
    {"linear_to_log_no_clamp", Layout::InPlace, [](const Setting& s, Rgb p) { return encode(withoutClamp(encodingOf(CurveTable::Short, s.index)), p); }},
    {"linear_Colorspace_RGB", Layout::FrameToPlanesRgb, encodeNative},
    {"linear_Colorspace_RGBA", Layout::FrameToPlanesRgba, encodeNative},

    {"Linear_to_RGB_log", Layout::FrameToPlanesRgb, workingLog},
    {"Linear_to_RGBA_log", Layout::FrameToPlanesRgba, workingLog},
    {"Log_RGB_to_Linear_src_Kernel", Layout::PlanesToFrameRgb, fromWorkingLog},
    {"Log_RGBA_to_Linear_src_Kernel", Layout::PlanesToFrameRgba, fromWorkingLog},
    {"Y_Log_RGB_to_Linear_src_Kernel", Layout::PlanesToFrameRgb, chain<luma, fromWorkingLog>},
    {"Y_Log_RGBA_to_Linear_src_Kernel", Layout::PlanesToFrameRgba, chain<luma, fromWorkingLog>},
    {"RGBA_log_to_Linear", Layout::PlanesToFrameRgba, [](const Setting&, Rgb p) { return each(p, [](Real x) { return curves::Log113::decode(max(x, Real(0.000001f))); }); }},
    {"Lab_Linear_to_RGB_log", Layout::FrameToPlanesRgb, chain<fromLabShort, toLog113>},
    {"Lab_Linear_to_RGBA_log", Layout::FrameToPlanesRgba, chain<fromLabShort, toLog113>},

    {"<g>_LAB", Layout::InPlaceZeroingCompanion, toLabAdapted},
    {"Lin_<g>_LAB", Layout::InPlaceZeroingCompanion, toLabOwnWhite},
    {"LAB_Lin_<v>", Layout::InPlace, fromLabAdapted},
    {"LAB_ACES_<x>", Layout::InPlace, fromLabAdapted},
    {"Lin_<g>_compress_LAB", Layout::InPlaceZeroingCompanion, chain<compressA, toLabAdapted>},
    {"compress_Lin_<g>_LAB", Layout::InPlaceZeroingCompanion, chain<compressA, toLabAdapted>},
    {"compress_ACES_<x>_LAB", Layout::InPlaceZeroingCompanion, chain<compressA, toLabAdapted>},
    {"LAB_Lin_<g>_expand", Layout::InPlace, chain<fromLabAdapted, expandA>},
    {"expand_LAB_ACES_<x>", Layout::InPlace, chain<fromLabAdapted, expandA>},
    {"LAB_Linear_RGB_<g>_expand", Layout::PlanesToFrameRgb, chain<fromLabAdapted, expandA>},
    {"LAB_Linear_RGBA_<g>_expand", Layout::PlanesToFrameRgba, chain<fromLabAdapted, expandA>},
    {"LAB_Linear_RGB_<g>_expand_in_out", Layout::FrameToFrameRgb, chain<fromLabAdapted, expandA>},
    {"LAB_Linear_RGBA_<g>_expand_in_out", Layout::FrameToFrameRgba, chain<fromLabAdapted, expandA>},
    {"RGB_<g>_compress", Layout::BothRgb, compressB},
    {"RGBA_<g>_compress", Layout::BothRgba, compressB},
    {"RGBA_rec709_compress_in_out", Layout::InPlace, compressA},
    {"Lin_<g>_compress_RGB", Layout::FrameToPlanesRgb, compressB},
    {"Lin_<g>_compress_RGBA", Layout::FrameToPlanesRgba, compressB},
    {"src_RGBA_Compress_Kernel_<g>", Layout::FrameToPlanesRgba, compressA},
    {"CropKernelRGB_compress_<g>", Layout::CropRgb, compressA},
    {"CropKernelRGBA_compress_<g>", Layout::CropRgba, compressA},
    {"CropKernelRGB_compress_<g>_lin_gam", Layout::CropRgb, chain<gained, compressB>},
    {"CropKernelRGBA_compress_<g>_lin_gam", Layout::CropRgba, chain<gained, compressB>},
    {"RGB_<g>_expand_sRGB", Layout::PackedToPackedRgb, expandA},
    {"RGBA_<g>_expand_sRGB", Layout::FrameToFrameRgba, expandA},
    {"RGB_<g>_expand_sRGB_in_out", Layout::PackedInPlaceRgb, expandA},
    {"RGBA_<g>_expand_sRGB_in_out", Layout::InPlace, expandA},
    {"RGBA_expand_AP0", Layout::FrameToFrameRgba, [](const Setting&, Rgb p) { return expandRange({0.212640002f, 0.715170026f, 0.0721900016f}, p); }},
    {"RGB_expand_src", Layout::PlanesToFrameRgb, expandLinear},
    {"RGBA_expand_src", Layout::PlanesToFrameRgba, expandLinear},
    {"Y_RGB_expand_src", Layout::PlanesToFrameRgb, chain<luma, expandLinear>},
    {"Y_RGBA_expand_src", Layout::PlanesToFrameRgba, chain<luma, expandLinear>},

    {"ColorSpace_LAB", Layout::InPlaceZeroingCompanion, chain<decodeSaturated, toLab>},
    {"ColorSpace_Linear_LAB", Layout::InPlaceZeroingCompanion, toLab},
    {"LAB_Colorspace", Layout::InPlace, chain<fromLabShort, encodeShort>},
    {"LAB_Colorspace_RGB", Layout::FrameToPlanesRgb, chain<fromLabShort, encodeShort>},
    {"LAB_Colorspace_RGBA", Layout::FrameToPlanesRgba, chain<fromLabFull, encodeFull>},
    {"LAB_Linear_Colorspace", Layout::InPlace, fromLabFull},
    {"LAB_Linear_Colorspace_in_out", Layout::FrameToFrameRgba, fromLabShort},
    {"LAB_Linear_Colorspace_RGB_in_out", Layout::FrameToFrameRgb, fromLabShort},
    {"LAB_Linear_Colorspace_RGB_Kernel", Layout::FrameToPlanesRgb, fromLabShort},
    {"LAB_Linear_Colorspace_RGBA_Kernel", Layout::FrameToPlanesRgba, fromLabShort},
    {"XYZ_compress_RGB", Layout::FrameToPlanesRgb, chain<decodeFull, compressFull>},
    {"XYZ_compress_RGBA", Layout::FrameToPlanesRgba, chain<decodeFull, compressFull>},
    {"Softclips_XYZ_compress_RGB", Layout::FrameToPlanesRgb, chain<soft, decodeFull, compressFull>},
    {"Softclips_XYZ_compress_RGBA", Layout::FrameToPlanesRgba, chain<soft, decodeFull, compressFull>},
    {"ColorSpace_XYZ_compress", Layout::InPlace, chain<decodeSaturated, compressShort>},
    {"ColorSpace_XYZ_expand", Layout::InPlace, expandToCode},
    {"XYZ_expand_RGB", Layout::PlanesToFrameRgb, expandToCode},
    {"RGB_expand_RGB", Layout::PlanesToFrameRgb, chain<expandFull, encodeFull>},
    {"RGB_expand_RGBA", Layout::PlanesToFrameRgba, chain<expandFull, encodeFull>},
    {"Y_RGB_expand_RGB", Layout::PlanesToFrameRgb, chain<luma, expandShort, encodeShort>},
    {"Y_RGB_expand_RGBA", Layout::PlanesToFrameRgba, chain<luma, expandFull, encodeFull>},
    {"RGB_compress_RGB", Layout::FrameToPlanesRgb, compressOnly},
    {"RGB_compress_RGBA", Layout::FrameToPlanesRgba, compressOnly},
    {"LAB_XYZ_compress_RGB", Layout::FrameToPlanesRgb, chain<fromLabShort, compressShort>},
    {"LAB_XYZ_compress_RGBA", Layout::FrameToPlanesRgba, chain<fromLabFull, compressFull>},
    {"Clip_min_max", Layout::InPlace, [](const Setting& s, Rgb p) {
       const int i = s.index;
       if ((i >= 33 && i <= 41) || i >= 44)
         return p;
       float low = -0.125f, high = 1.125f;
       if (i == 0) high = 4.875f;
       if (i == 1 || i == 8 || i == 9 || i == 10 || i == 42 || i == 43) { low = 0.0f; high = 1.0f; }
       if (i == 4 || i == 5) { low = -8.0f; high = 5.0f; }
       if (i == 6) { low = -0.358286828f; high = 1.46799636f; }
       if (i == 7) { low = -0.249136001f; high = 1.46799636f; }
       return each(p, [&](Real x) { return clamp(x, Real(low), Real(high)); });
     }},
};
// clang-format on

}  // namespace morvellan::MORVELLAN_TARGET::colour_test
