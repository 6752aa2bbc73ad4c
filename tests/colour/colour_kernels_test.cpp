// Every colour kernel against its composition written out here from the routines: what it does to a colour, and where
// it reads and writes. The list below is made without the composition rows; both must name the same kernels.
#include "colour/colour_kernels.h"

#include <array>
#include <cmath>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "colour/curves.h"
#include "colour/film_space.h"
#include "colour/working_spaces.h"
#include "tests/colour/device_frame.h"
#include "tests/support/engine_test.h"

namespace morvellan::MORVELLAN_TARGET
{

using namespace colour_test;

namespace
{

constexpr bool isCuda = std::string_view(MORVELLAN_TARGET_NAME) == "cuda";

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

using Composition = Rgb (*)(const Setting&, Rgb);

struct Member
{
  const char* pattern;
  Layout layout;
  Composition compose;
};

template <typename F>
Rgb each(Rgb p, F f)
{
  return {f(p.r), f(p.g), f(p.b)};
}

// Routines that the compositions are written in.
Rgb same(const Setting&, Rgb p)
{
  return p;
}
Rgb soft(const Setting& s, Rgb p)
{
  return softClip(s.soft, p);
}
Rgb gained(const Setting& s, Rgb p)
{
  return each(p, [&](Real x) { return x * Real(s.gain); });
}
Rgb decodeShort(const Setting& s, Rgb p)
{
  return decode(decodingOf(CurveTable::Short, s.index), p);
}
Rgb decodeSaturated(const Setting& s, Rgb p)
{
  return decodeShort(s, s.index == 42 || s.index == 43 ? each(p, clamp01) : p);
}
Rgb decodeCarried(const Setting& s, Rgb p)
{
  if (s.index == 4 || s.index == 5)
    return each(p, curves::PLogLin::decode);
  return decodeSaturated(s, p);
}
Rgb decodeFull(const Setting& s, Rgb p)
{
  return decode(decodingOf(CurveTable::Full, s.index), p);
}
Rgb encodeShort(const Setting& s, Rgb p)
{
  return encode(encodingOf(CurveTable::Short, s.index), p);
}
Rgb encodeFull(const Setting& s, Rgb p)
{
  return encode(encodingOf(CurveTable::Full, s.index), p);
}
Rgb encodeCarried(const Setting& s, Rgb p)
{
  return encode(encodingOf(CurveTable::Short, s.index == 4 || s.index == 5 ? 3 : s.index), p);
}
Rgb encodeNative(const Setting& s, Rgb p)
{
  if (s.index >= 45)
    return p;
  const std::map<int, int> logOf = {{0, 2}, {4, 7}, {5, 7}, {30, 31}};
  const auto found = logOf.find(s.index);
  return encode(encodingOf(CurveTable::Short, found == logOf.end() ? s.index : found->second), p);
}
Rgb workingLog(const Setting&, Rgb p)
{
  return logC4Encode(p);
}
Rgb fromWorkingLog(const Setting&, Rgb p)
{
  return logC4Decode(p);
}
Rgb times(const std::optional<Matrix3>& k, Rgb p)
{
  return k ? multiply(*k, p) : p;
}
int gamutIndex(const Setting& s)
{
  constexpr int indices[] = {0, 30, 4, 5};
  return indices[static_cast<int>(s.gamut)];
}
Rgb toLabAdapted(const Setting& s, Rgb p)
{
  return labFromXyz(LabForm::Rounded, multiply(rounded(*rgbToXyzD65(gamutIndex(s))), p));
}
Rgb toLabOwnWhite(const Setting& s, Rgb p)
{
  return labFromXyz(LabForm::Rounded, multiply(*rgbToXyz(gamutIndex(s)), p));
}
Rgb fromLabAdapted(const Setting& s, Rgb p)
{
  return multiply(rounded(xyzD65ToRgb(gamutIndex(s))), xyzFromLab(LabForm::Rounded, p));
}
Rgb toLab(const Setting& s, Rgb p)
{
  return labFromXyz(LabForm::Exact, times(rgbToXyz(s.index), p));
}
Rgb fromLabShort(const Setting& s, Rgb p)
{
  return times(xyzToRgb(CurveTable::Short, s.index), xyzFromLab(LabForm::Exact, p));
}
Rgb fromLabFull(const Setting& s, Rgb p)
{
  return times(xyzToRgb(CurveTable::Full, s.index), xyzFromLab(LabForm::Exact, p));
}
Row3 rowA(const Setting& s)
{
  constexpr Row3 rows[] = {{0.212640002f, 0.715170026f, 0.0721900016f},
                           {0.262699991f, 0.677999973f, 0.0593000017f},
                           {0.343966454f, 0.728166103f, -0.0721325427f},
                           {0.272228718f, 0.674081743f, 0.0536895171f}};
  return rows[static_cast<int>(s.gamut)];
}
Row3 rowB(const Setting& s)
{
  constexpr Row3 rows[] = {{0.212639004f, 0.715168655f, 0.0721923187f},
                           {0.2627002f, 0.677998066f, 0.0593017153f},
                           {0.343966454f, 0.728166103f, -0.0721325427f},
                           {0.272228718f, 0.674081743f, 0.0536895171f}};
  return rows[static_cast<int>(s.gamut)];
}
Rgb compressA(const Setting& s, Rgb p)
{
  return compressRange(rowA(s), p);
}
Rgb compressB(const Setting& s, Rgb p)
{
  return compressRange(rowB(s), p);
}
Rgb expandA(const Setting& s, Rgb p)
{
  return expandRange(rowA(s), p);
}
Rgb compressBy(const std::optional<Row3>& row, Rgb p)
{
  return row ? compressRange(*row, p) : p;
}
Rgb expandBy(const std::optional<Row3>& row, Rgb p)
{
  return row ? expandRange(*row, p) : p;
}
Rgb compressShort(const Setting& s, Rgb p)
{
  return compressBy(luminanceRow(CurveTable::Short, s.index), p);
}
Rgb compressFull(const Setting& s, Rgb p)
{
  return compressBy(luminanceRow(CurveTable::Full, s.index), p);
}
Rgb expandShort(const Setting& s, Rgb p)
{
  return expandBy(luminanceRow(CurveTable::Short, s.index), p);
}
Rgb expandFull(const Setting& s, Rgb p)
{
  return expandBy(luminanceRow(CurveTable::Full, s.index), p);
}
Rgb expandLinear(const Setting& s, Rgb p)
{
  const std::map<int, LinearGamut> gamutOf = {
      {0, LinearGamut::Rec709}, {4, LinearGamut::AcesAp0}, {5, LinearGamut::AcesAp1}, {30, LinearGamut::Rec2020}};
  Setting linear = s;
  linear.gamut = gamutOf.at(s.index);
  return expandRange(rowB(linear), p);
}
Rgb compressOnly(const Setting& s, Rgb p)
{
  const int i = s.index;
  if (i == 0 || i == 1 || i == 4 || i == 5 || i == 27 || (i >= 29 && i <= 34) || i >= 46)
    return p;
  return i == 2 ? compressRange({0.212599993f, 0.715200007f, 0.0722000003f}, p) : compressShort(s, p);
}
Rgb expandToCode(const Setting& s, Rgb p)
{
  const int i = s.index;
  if (i == 0 || i == 1 || i == 4 || i == 5 || i == 27 || (i >= 29 && i <= 34) || (i >= 42 && i <= 44) || i >= 46)
    return p;
  return encodeShort(s, expandShort(s, p));
}
Rgb exposedLog(const Setting& s, Rgb p)
{
  return each(p, [&](Real x) { return clamp01(x + Real(s.value)); });
}
Rgb exposedLinear(const Setting& s, Rgb p)
{
  return each(p, [&](Real x) { return clamp(x * Real(s.value), Real(0.0f), Real(469.799988f)); });
}
Rgb toLog113(const Setting&, Rgb p)
{
  return each(p, [](Real x) { return curves::Log113::encode(clamp01(x)); });
}

template <Composition... Parts>
Rgb chain(const Setting& s, Rgb p)
{
  ((p = Parts(s, p)), ...);
  return p;
}

Rgb luma(const Setting&, Rgb p)
{
  return rgbFromLuma(p);
}

// clang-format off
const Member members[] = {
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

constexpr int width = 37, height = 19;
constexpr int sourceWidth = 53, sourceHeight = 31, offsetX = 11, offsetY = 6;
constexpr size_t pixelCount = static_cast<size_t>(width) * height;
constexpr float untouched = -77.0f;

// Colours with shadows, lights, negatives and values above 1; alpha is the pixel's own.
std::vector<float> makeFrame(int frameWidth, int frameHeight, unsigned seed)
{
  std::mt19937 random(seed);
  std::uniform_real_distribution<float> level(0.02f, 1.1f), tilt(0.7f, 1.3f);
  std::vector<float> frame;
  for (int i = 0; i < frameWidth * frameHeight; ++i)
  {
    const float x = i % 50 == 49 ? -0.2f : level(random);
    frame.insert(frame.end(), {x * tilt(random), x, x * tilt(random), 0.01f * static_cast<float>(i % 97)});
  }
  return frame;
}

struct Expectation
{
  std::array<std::vector<float>, 3> colour;
};

float laneZero(Real x)
{
  float values[lanes];
  store(values, x);
  return values[0];
}

std::array<float, 3> composed(const Member& member, const Setting& setting, const float* pixel)
{
  const Rgb p = member.compose(setting, {Real(pixel[0]), Real(pixel[1]), Real(pixel[2])});
  return {laneZero(p.r), laneZero(p.g), laneZero(p.b)};
}

bool close(float a, float b)
{
  const float relative = isCuda ? 1e-4f : 2e-6f;
  const float absolute = isCuda ? 2e-5f : 5e-7f;
  return (std::isnan(a) && std::isnan(b)) || a == b || std::fabs(a - b) <= std::fabs(b) * relative + absolute;
}

bool readsPlanes(Layout layout)
{
  return layout == Layout::PlanesToFrameRgb || layout == Layout::PlanesToFrameRgba ||
         layout == Layout::PlanesToPackedRgb || layout == Layout::PlanesToPlanes;
}

bool writesPlanes(Layout layout)
{
  return layout == Layout::FrameToPlanesRgb || layout == Layout::FrameToPlanesRgba ||
         layout == Layout::PackedToPlanesRgb || layout == Layout::PlanesToPlanes;
}

bool isCrop(Layout layout)
{
  return layout == Layout::CropRgb || layout == Layout::CropRgba;
}

bool isInPlace(Layout layout)
{
  return layout == Layout::InPlace || layout == Layout::InPlaceZeroingCompanion || layout == Layout::PackedInPlaceRgb;
}

// Floats of a pixel that is read and of one that is written.
int floatsRead(Layout layout)
{
  return layout == Layout::PackedToPackedRgb || layout == Layout::PackedInPlaceRgb || layout == Layout::BothRgb ||
                 layout == Layout::PackedToPlanesRgb || layout == Layout::PackedToFrame
             ? 3
             : 4;
}

int floatsWritten(Layout layout)
{
  return layout == Layout::FrameToPacked || layout == Layout::PlanesToPackedRgb ? 3
         : layout == Layout::PackedToFrame                                      ? 4
                                                                                : floatsRead(layout);
}

// What the fourth float of a written pixel, or the fourth plane, must hold.
float expectedAlpha(Layout layout, float alpha)
{
  switch (layout)
  {
  case Layout::FrameToFrameRgb:
  case Layout::CropRgb:
  case Layout::FrameToPlanesRgb:
  case Layout::PlanesToFrameRgb:
  case Layout::PackedToPlanesRgb:
    return untouched;
  case Layout::PackedToFrame:
    return 1.0f;
  default:
    return alpha;
  }
}

std::vector<float> withoutAlpha(const std::vector<float>& frame)
{
  std::vector<float> packed;
  for (size_t i = 0; i < frame.size(); ++i)
    if (i % 4 != 3)
      packed.push_back(frame[i]);
  return packed;
}

void checkMember(const Member& member, const std::string& name, const Setting& setting)
{
  const Layout layout = member.layout;
  const int readFloats = floatsRead(layout), writtenFloats = floatsWritten(layout);
  const std::vector<float> whole =
      isCrop(layout) ? makeFrame(sourceWidth, sourceHeight, 5) : makeFrame(width, height, 5);
  const std::vector<float> input = readFloats == 3 ? withoutAlpha(whole) : whole;

  const Buffer<float> source = toDevice(input);
  const Buffer<float> destination = toDevice(
      isInPlace(layout) ? input : std::vector<float>(pixelCount * static_cast<size_t>(writtenFloats), untouched));
  const Buffer<float> companion = toDevice(std::vector<float>(pixelCount * 4, untouched));
  std::array<Buffer<float>, 4> planes;
  ColourArguments arguments{.source = source.data(),
                            .destination = destination.data(),
                            .companion = companion.data(),
                            .width = width,
                            .height = height,
                            .channels = writtenFloats == 3 ? 3 : readFloats,
                            .colourspace = setting.index,
                            .sourceWidth = sourceWidth,
                            .offsetX = offsetX,
                            .offsetY = offsetY,
                            .value = setting.value,
                            .gain = setting.gain,
                            .softClip = setting.soft};
  for (size_t k = 0; k < 4; ++k)
  {
    std::vector<float> values(pixelCount, untouched);
    if (readsPlanes(layout))
      for (size_t i = 0; i < pixelCount; ++i)
        values[i] = whole[i * 4 + k];
    planes[k] = toDevice(values);
    arguments.planes[k] = planes[k].data();
  }
  runColour(Queue{}, ColourKernel::named(name), arguments);

  const std::vector<float> written = toHost(destination);
  const std::vector<float> zeroed = toHost(companion);
  const std::vector<float> sourceAfter = toHost(source);
  PlaneSet planesAfter;
  for (size_t k = 0; k < 4; ++k)
    planesAfter[k] = toHost(planes[k]);
  const bool both = layout == Layout::BothRgb || layout == Layout::BothRgba;
  for (size_t i = 0; i < pixelCount; ++i)
  {
    const size_t x = i % width, y = i / width;
    const size_t from = isCrop(layout) ? (y + offsetY) * sourceWidth + x + offsetX : i;
    const std::array<float, 3> colour = composed(member, setting, &whole[from * 4]);
    const size_t to = i * static_cast<size_t>(writtenFloats);
    for (size_t k = 0; k < 3; ++k)
    {
      const float actual = writesPlanes(layout) ? planesAfter[k][i] : written[to + k];
      ASSERT_TRUE(close(actual, colour[k])) << name << " index " << setting.index << " pixel " << i << " channel " << k
                                            << ": " << actual << ", composed " << colour[k];
      if (both)
      {
        ASSERT_EQ(sourceAfter[to + k], written[to + k]) << name;
      }
    }
    const float alpha = expectedAlpha(layout, whole[from * 4 + 3]);
    if (writesPlanes(layout) && layout != Layout::PlanesToPlanes)
    {
      ASSERT_EQ(planesAfter[3][i], alpha) << name << " index " << setting.index;
    }
    else if (!writesPlanes(layout) && writtenFloats == 4)
    {
      ASSERT_EQ(written[to + 3], alpha) << name << " index " << setting.index;
    }
    for (size_t k = 0; k < 4; ++k)
      ASSERT_EQ(zeroed[i * 4 + k], k == 0 && layout == Layout::InPlaceZeroingCompanion ? 0.0f : untouched) << name;
  }
}

struct GamutOfName
{
  LinearGamut gamut;
  const char *any, *video, *aces;
};

constexpr GamutOfName gamutNames[] = {{LinearGamut::Rec709, "rec709", "rec709", nullptr},
                                      {LinearGamut::Rec2020, "rec2020", "rec2020", nullptr},
                                      {LinearGamut::AcesAp0, "ACES_AP0", nullptr, "AP0"},
                                      {LinearGamut::AcesAp1, "ACES_AP1", nullptr, "AP1"}};

std::map<std::string, LinearGamut> namesOf(const Member& member)
{
  const std::string pattern = member.pattern;
  const size_t at = pattern.find('<');
  if (at == std::string::npos)
    return {{pattern, LinearGamut::Rec709}};
  std::map<std::string, LinearGamut> names;
  for (const GamutOfName& gamut : gamutNames)
  {
    const char* value = pattern[at + 1] == 'g' ? gamut.any : pattern[at + 1] == 'v' ? gamut.video : gamut.aces;
    if (value)
      names[pattern.substr(0, at) + value + pattern.substr(at + 3)] = gamut.gamut;
  }
  return names;
}

bool linearOnly(const Member& member)
{
  return member.compose == expandLinear || member.compose == static_cast<Composition>(chain<luma, expandLinear>);
}

}  // namespace

ENGINE_TEST(ColourKernels, TableAndListNameTheSameKernels)
{
  std::map<std::string, int> listed;
  for (const Member& member : members)
    for (const auto& [name, gamut] : namesOf(member))
      ++listed[name];
  std::map<std::string, int> inTable;
  for (const ColourRow& row : colourRows)
    ++inTable[std::string(row.name())];
  EXPECT_EQ(listed, inTable);
  for (const auto& [name, count] : inTable)
    EXPECT_EQ(count, 1) << name;
}

ENGINE_TEST(ColourKernels, EveryMemberIsItsComposition)
{
  const SoftClip softSettings{.ceiling = 0.7f, .comp = 1.6f, .floor = 0.6f, .expand = -0.4f};
  for (const Member& member : members)
    for (const auto& [name, gamut] : namesOf(member))
      for (int index = 0; index < colourspaceCount; ++index)
      {
        if (linearOnly(member) && !isLinear(index))
          continue;
        checkMember(member, name, {.gamut = gamut, .index = index, .value = 0.13f, .gain = 1.7f, .soft = softSettings});
        if (::testing::Test::HasFatalFailure())
          break;
        // The gamut's members do not read the index.
        if (std::string(member.pattern).find('<') != std::string::npos)
          break;
      }
}

ENGINE_TEST(ColourKernels, UnknownNamesAreRefused)
{
  EXPECT_THROW((void)ColourKernel::named("To_Log"), std::invalid_argument);
  EXPECT_THROW((void)ColourKernel::forGamut("LAB_ACES_<x>", LinearGamut::Rec709), std::invalid_argument);
  EXPECT_EQ(ColourKernel::forGamut("RGBA_<g>_compress", LinearGamut::AcesAp1).name(), "RGBA_ACES_AP1_compress");
}

// RGB frames run the same members with three channels: no fourth float is read or written.
ENGINE_TEST(ColourKernels, ThreeChannelFrames)
{
  const std::vector<float> whole = makeFrame(width, height, 9);
  const std::vector<float> packed = withoutAlpha(whole);
  const ColourArguments four{.colourspace = 11}, three{.channels = 3, .colourspace = 11};
  for (const ColourKernel kernel : {ColourKernel("To_Log_Kernel"), ColourKernel("To_Linear_Kernel_RGBA"),
                                    ColourKernel("highlights_shadows_Kernel")})
    EXPECT_EQ(inPlace(kernel, packed, three), withoutAlpha(inPlace(kernel, whole, four))) << kernel.name();
  EXPECT_EQ(toFrame("To_Linear_Kernel_RGB_in_out", packed, three),
            withoutAlpha(toFrame("To_Linear_Kernel_RGBA_in_out", whole, four)));
  const PlaneSet fromThree = toPlanes("XYZ_compress_RGB", packed, three);
  const PlaneSet fromFour = toPlanes("XYZ_compress_RGB", whole, four);
  EXPECT_EQ(fromThree, fromFour);
  EXPECT_EQ(fromPlanes("RGB_expand_RGB", fromThree, three),
            withoutAlpha(fromPlanes("RGB_expand_RGBA", fromFour, four)));
}

// Every kernel at every index, for the targets to agree on. Exponentials behind sums of large values are the worst.
PARITY(every_colour_kernel, .relative = 1e-5f, .absolute = 2e-6f)
{
  const SoftClip softSettings{.ceiling = 0.7f, .comp = 1.6f, .floor = 0.6f, .expand = -0.4f};
  const std::vector<float> whole = makeFrame(97, 1, 21);
  std::vector<float> all;
  for (const ColourRow& row : colourRows)
    for (int index = 0; index < colourspaceCount; index += row.gamut == LinearGamut::Rec709 ? 1 : colourspaceCount)
    {
      if (index == 8)
        continue;  // whole codes: a last bit decides between two
      const Buffer<float> source = toDevice(whole), destination = toDevice(whole), companion = toDevice(whole);
      ColourArguments arguments{.source = source.data(),
                                .destination = destination.data(),
                                .companion = companion.data(),
                                .width = 96,
                                .height = 1,
                                .colourspace = index,
                                .sourceWidth = 97,
                                .offsetX = 1,
                                .value = 0.1f,
                                .gain = 1.3f,
                                .softClip = softSettings};
      std::array<Buffer<float>, 4> planes;
      for (size_t k = 0; k < 4; ++k)
      {
        std::vector<float> values(97);
        for (size_t i = 0; i < values.size(); ++i)
          values[i] = whole[i * 4 + k];
        planes[k] = toDevice(values);
        arguments.planes[k] = planes[k].data();
      }
      runColour(Queue{}, ColourKernel::named(row.name()), arguments);
      // Whole groups of lanes for every target: nothing is written past the last pixel.
      const std::vector<float> frame = toHost(destination);
      all.insert(all.end(), frame.begin(), frame.begin() + 96 * 4);
      for (const Buffer<float>& plane : planes)
      {
        const std::vector<float> values = toHost(plane);
        all.insert(all.end(), values.begin(), values.begin() + 96);
      }
    }
  return all;
}

}  // namespace morvellan::MORVELLAN_TARGET
