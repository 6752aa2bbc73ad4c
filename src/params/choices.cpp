// The lists of the choice parameters: labels and hints of every entry, in the order that projects and Looks rely on.
// The order is historic and not to be altered; hints keep their leading blank.
#include "params/choices.h"

#include "params/families.h"

#include <fmt/format.h>

namespace morvellan::params
{
std::span<const Option> inputGamuts()
{
  static const std::vector<Option> list{
      {"Linear Rec.709|sRGB",
       " Scene Linear | VFX Gamut, Gamma 1.0, ITU-R BT.709 | sRGB Primaries, D65 White : x0.3127, y0.329"},
      {"Scene Rec.709", " Scene-Referred, Gamma @1.96 (linear near black, then gamma slope of 2.2), ITU-R BT.709 | "
                        "sRGB Primaries, D65 White : x0.3127, y0.329"},
      {"Cineon", " Scene-Referred, Kodak Film Scan Log, ITU-R BT.709 | sRGB , D65 White : x0.3127, y0.329"},
      {"PLogLin",
       " Scene-Referred, Josh Pines Pivoted Log-Linear, ITU-R BT.709 | sRGB Primaries, D65 White : x0.3127, y0.329"},
      {"ACES (AP0) Linear",
       " ACES2065-1 Scene-Linear | VFX Gamut, Gamma 1.0, ACES AP0 Primaries, ACES D60 White : x0.32168, y0.33767"},
      {"ACEScg (AP1) Linear",
       " Scene-Linear | VFX Gamut, Gamma 1.0, ACES AP1 Primaries, ACES D60 White : x0.32168, y0.33767"},
      {"ACEScc (AP1)", " Scene-Referred, ACEScc Log, ACES AP1 Primaries, ACES D60 White : x0.32168, y0.33767"},
      {"ACEScct (AP1)", " Scene-Referred, ACEScct Log, ACES AP1 Primaries, ACES D60 White : x0.32168, y0.33767"},
      {"ACESproxy (AP1)", " Scene-Referred, ACESproxy Log, ACES AP1 Primaries, ACES D60 White : x0.32168, y0.33767"},
      {"ADX Log", " Academy Density Exchange. ADX 10 | ADX 16 Log densitometric encoding for scanned film negative"},
      {"Nikon, N-log",
       " Scene-Referred, Nikon N-log, Rec.2100 | Rec.ITU-R BT.2020 Primaries, D65 White : x0.3127, y0.329"},
      {"ARRI, LogC3",
       " Scene-Referred, LogC SUP 3.x EI800, ARRI Alexa Wide Gamut 3 Primaries, D65 White : x0.3127, y0.329"},
      {"RED, Log3G10 | Log3G12",
       " Scene-Referred, RED Log3G10 | RED Log3G12, REDWideGamutRGB Primaries, D65 White : x0.3127, y0.329"},
      {"FujiFilm, F-Log2",
       " Scene-Referred, FujiFilm F-Log2, ITU-R BT.2020 | Rec.2100 Primaries, D65 White : x0.3127, y0.329"},
      {"Filmlight, T-Log", " Scene-Referred, Filmlight T-Log, User defined E-Gamut Primaries & Whitepoint"},
      {"Sony, S-Log3", " Scene-Referred, Sony-Log3, Sony S-Gamut | S-Gamut3 Primaries, D65 White : x0.3127, y0.329"},
      {"Sony, S-Log3.Cine", " Scene-Referred, Sony-Log3, Sony S-Gamut3.Cine Primaries, D65 White : x0.3127, y0.329"},
      {"Sony, S-Log3.Venice",
       " Scene-Referred, Sony-Log3, Sony S-Gamut3.Venice Primaries, D65 White : x0.3127, y0.329"},
      {"Sony, S-Log3.Venice.Cine",
       " Scene-Referred,  Sony-Log3, Sony S-Gamut3.Venice.Cine Primaries, D65 White : x0.3127, y0.329"},
      {"Panasonic, V-Log",
       " Scene-Referred, Panasonic Varicam-Log,  Panasonic V-Gamut Primaries, D65 White : x0.3127, y0.329"},
      {"Canon, C-Log-D",
       " Scene-Referred, Canon-Log Daylight. Canon Cinema Gamut Primaries, D65 White : x0.3127, y0.329"},
      {"Canon, C-Log-T",
       " Scene-Referred, Canon-Log Tungsten. Canon Cinema Gamut Primaries, D65 White : x0.3127, y0.329"},
      {"Canon, C-Log2-D",
       " Scene-Referred, Canon-Log2 Daylight EI800. Canon Cinema Gamut Primaries, D65 White : x0.3127, y0.329"},
      {"Canon, C-Log2-T",
       " Scene-Referred, Canon-Log2 Tungsten EI800, Canon Cinema Gamut Primaries, D65 White : x0.3127, y0.329"},
      {"Canon, C-Log3-D",
       " Scene-Referred, Canon-Log3 Daylight. Canon Cinema Gamut Primaries, D65 White : x0.3127, y0.329"},
      {"Canon, C-Log3-T",
       " Scene-Referred, Canon-Log3 Tungsten. Canon Cinema Gamut Primaries, D65 White : x0.3127, y0.329"},
      {"DJI, D-Log", " Scene-Referred, D-Log, DJI D-Gamut Primaries, D65 White : x0.3127, y0.329"},
      {"sRGB Display", " Display-Referred, Gamma @2.2 (linear near black, then gamma slope of 2.4), sRGB IEC "
                       "61966-2-1, ITU-R BT.709 | sRGB Primaries, D65 White : x0.3127, y0.329"},
      {"FujiFilm, F-Log",
       " Scene-Referred, FujiFilm F-Log, Rec.2100 | Rec.ITU-R BT.2020 Primaries, D65 White : x0.3127, y0.329"},
      {"Rec.2020|2100 Scene", " Scene-Referred, Gamma @1.96 (linear near black, then gamma slope of 2.2), ITU-R "
                              "BT.2020 | Rec.2100 Primaries, D65 White : x0.3127, y0.329"},
      {"Rec.2020|2100 Linear",
       " Scene-Linear | VFX Gamut, Gamma 1.0, ITU-R BT.2020 | Rec.2100 Primaries, D65 White : x0.3127, y0.329"},
      {"P3-D60", " Display-Referred, ACES Cinema, Pure Gamma 2.6, P3 Primaries, D60 White : x0.32168, y0.33767"},
      {"P3-D65", " Display-Referred, sRGB Gamma, P3 Primaries, D65 White : x0.3127, y0.329"},
      {"P3-DCI", " Theater | Projector-referred, Pure Gamma 2.6, P3 Primaries, DCI White @6300K : x0.314, y0.351"},
      {"BT.1886", " Display-Referred, Pure Gamma 2.4, ITU-R BT.709 | sRGB Primaries, D65 White : x0.3127, y0.329"},
      {"REDcolor2, REDlogFilm",
       " Scene-Referred, REDlogFilm, REDcolor2 Primaries, ACES D60 White : x0.32168, y0.33767"},
      {"REDcolor3, REDlogFilm",
       " Scene-Referred, REDlogFilm, REDcolor3 Primaries, ACES D60 White : x0.32168, y0.33767"},
      {"REDcolor4, REDlogFilm",
       " Scene-Referred, REDlogFilm, REDcolor4 Primaries, ACES D60 White : x0.32168, y0.33767"},
      {"DRAGONcolor, REDlogFilm",
       " Scene-Referred, REDlogFilm, DRAGONcolor Primaries, ACES D60 White : x0.32168, y0.33767"},
      {"DRAGONcolor2, REDlogFilm",
       " Scene-Referred, REDlogFilm, DRAGONcolor2 Primaries, ACES D60 White : x0.32168, y0.33767"},
      {"GoPro, Color", " Scene-Referred, GoPro Auto Color, ITU-R BT.709 | sRGB Primaries, D65 White : x0.3127, y0.329"},
      {"GoPro, Protune Flat",
       " Scene-Referred, GoPro Protune Log Flat, Protune Native Primaries, D65 White : x0.3127, y0.329"},
      {"ST2084 Rec.2100 PQ",
       " Display-Referred, Dolby PQ ICtCp, Rec.2100 | Rec.ITU-R BT.2020 Primaries, D65 White : x0.3127, y0.329"},
      {"ST2084 P3-D65 PQ", " Display-Referred, Dolby PQ ICtCp, P3 Primaries, D65 White : x0.3127, y0.329"},
      {"HLG (Scene)", " Scene-Referred, HybridLogGamma ARIB STD-B67, Rec.2100 | Rec.ITU-R BT.2020 Primaries, D65 White "
                      ": x0.3127, y0.329"},
      {"DWG - Intermediate",
       " Scene-Referred, DaVinci Wide Gamut Log, DaVinci Intermediate Primaries, D65 White : x0.3127, y0.329"},
      {"DCDM", " Output-referred, DCDM X'Y'Z' Color space, Pure Gamma 2.6, E White @5454K : x0.33333, y0.33333"},
      {"ARRI, LogC4",
       " Scene-Referred, ARRI LogC4 (EI independent), ARRI Wide Gamut 4 Primaries, D65 White : x0.3127, y0.329"},
      {"BMD, Film Gen 5", " Scene-Referred, Blackmagic Film Generation 5 Log, Blackmagic Wide Gamut Gen 4|5 Primaries, "
                          "D65 White : x0.312717, y0.3290312"},
  };
  return list;
}

std::span<const Option> softClips()
{
  static const std::vector<Option> list{
      {"Bypass", " Bypass SoftClip. No Clipping - values below 0, and above 1, are processed"},
      {"Highlights", " Shoulder compression. Ceiling Compression Threshold, and Highlight Roll-off recovery"},
      {"Shadows", " Toe expansion. Floor Expansion Threshold, and Shadow Roll-off recovery"},
  };
  return list;
}

std::span<const Option> spatialEnhancements()
{
  static const std::vector<Option> list{
      {"Bypass", " No enhancement"},
      {"Textures & Details", " Textures and Details enhancement"},
      {"Details only", " Details only enhancement"},
  };
  return list;
}

std::span<const Option> colorCorrections()
{
  static const std::vector<Option> list{
      {"Bypass", " Bypass Saturation, Hue, Chroma, Vibrance Color Corrections"},
      {"Saturation", " Saturation Color Corrections"},
      {"Hue", " Hue Color Corrections"},
      {"Chroma", " Chroma Color Corrections"},
      {"Vibrance", " Vibrance Color Corrections"},
  };
  return list;
}

std::span<const Option> toneCurves()
{
  static const std::vector<Option> list{
      {"Bypass", " Bleach Bypass, Toe, Knee, Shoulder, and Filmic Tone Curves"},
      {"Bleach", " Silver Retention Tone Curve"},
      {"Toe", " Toe Tone Curve"},
      {"Knee", " Knee Tone Curve"},
      {"Shoulder", " Shoulder Tone Curve"},
      {"Filmic", " Filmic Tone Curve"},
  };
  return list;
}

std::span<const Option> dispersionPatterns()
{
  static const std::vector<Option> list{
      {"Random Color", " Grain Dispersion Patterns : Random Color"},
      {"Random Mono | Color", " Grain Dispersion Patterns : Random Monochromatic, or Random Color. When any R,G,B "
                              "channel is offest from another, Random Mono turns into Random Color"},
      {"Random Luminance", " Grain Dispersion Patterns : Random Luminance"},
      {"Uniform Mono | Color", " Grain Dispersion Pattern : Uniform Monochromatic, or Uniform Color.  When any R,G,B "
                               "channel is offest from another, Uniform Mono turns into Uniform Color"},
      {"Uniform Luminance", " Grain Dispersion Pattern : Uniform Luminance"},
  };
  return list;
}

std::span<const Option> outputDisplays()
{
  static const std::vector<Option> list{
      {"Rec.709 Gamma 2.4", " SDR, 100 Nits. BT.1886 Gamma 2.4, Rec.709 | sRGB Primaries"},
      {"Rec.709 Gamma 2.4 D60 Sim", " SDR, 100 Nits. BT.1886 Gamma 2.4, Rec.709 | sRGB Primaries"},
      {"P3-DCI D60 Sim", " SDR, 100 Nits. Gamma 2.6, P3 Primaries"},
      {"P3-D65", " SDR, 100 Nits. Gamma 2.6, P3 Primaries"},
      {"P3-D65 D60 Sim", " SDR, 100 Nits. Gamma 2.6, P3 Primaries"},
      {"Rec.2020", " SDR, 100 Nits. ITU-R BT.1886 Gamma 2.4, Rec.2020 | Rec.2100 Primaries"},
      {"Rec.2020 PQ", " HDR, 203 Nits default. Dolby PQ ST2084, Rec.2020 | Rec.2100 Primaries"},
      {"P3-D65 PQ", " HDR, 203 Nits default. Dolby PQ ST2084, P3 Primaries"},
      {"Rec.2020 HLG", " HDR, 203 Nits default. HybridLogGamma ARIB STD-B67, Rec.2100 | Rec.2020 Primaries"},
      {"RCM SDR", " SDR, 100 Nits"},
      {"RCM HDR", " HDR, 203 Nits default"},
      {"ACEScc SDR", "SDR,  100 Nits"},
      {"ACEScc HDR", " HDR, 203 Nits default"},
      {"ACEScct SDR", " SDR, 100 Nits"},
      {"ACEScct HDR", " HDR, 203 Nits default"},
  };
  return list;
}

namespace
{
std::vector<Option> refineZoneList(std::string_view word)
{
  return {{"Bypass", fmt::format(" Bypass {} Extraction Zones", word)},
          {"Lower Intensities", fmt::format(" {} Lower Intensities Extraction Zone", word)},
          {"Upper Intensities", fmt::format(" {} Upper Intensities Extraction Zone", word)}};
}

// Attributes put their word behind "Intensities", custom vectors put theirs in front.
std::vector<Option> attributeZoneList(std::string_view word)
{
  return {{"Bypass", fmt::format(" Bypass {} Extraction Zones", word)},
          {"Lower Intensities", fmt::format(" Lower Intensities {} Extraction Zone", word)},
          {"Upper Intensities", fmt::format(" Upper Intensities {} Extraction Zone", word)}};
}
}  // namespace

std::span<const Option> attributeZones(std::size_t axis)
{
  static const std::array<std::vector<Option>, axes.size()> lists{
      attributeZoneList(axes[0].word), attributeZoneList(axes[1].word), attributeZoneList(axes[2].word),
      attributeZoneList(axes[3].word)};
  return lists[axis];
}

std::span<const Option> refineZones(std::size_t vector)
{
  static const auto lists = []
  {
    std::array<std::vector<Option>, refineWords.size()> made;
    for (std::size_t i = 0; i < made.size(); ++i)
      made[i] = refineZoneList(fmt::format("Custom-{}", refineWords[i]));
    return made;
  }();
  return lists[vector];
}

std::span<const Option> colorRefines()
{
  static const auto list = []
  {
    const std::string_view what = "Refinements to Saturation, Hue, Chroma, Vibrance";
    std::vector<Option> made{{"Bypass", fmt::format(" Bypass Custom {}", what)}};
    for (const std::string_view word : refineWords)
      made.push_back({std::string{word}, fmt::format(" Custom-{} {}", word, what)});
    return made;
  }();
  return list;
}

std::span<const Option> grainDepths()
{
  static const auto list = []
  {
    std::vector<Option> made;
    for (int bits = 10; bits <= 24; bits += 2)
      made.push_back({fmt::format("{} Bits | channel", bits),
                      fmt::format(" Film Grain precision of {} bits per Color | Monochromatic | Luminance Channel{}",
                                  bits, bits == 16 ? " - Default" : "")});
    return made;
  }();
  return list;
}

std::span<const ResolutionPreset> resolutionPresets()
{
  static const std::vector<ResolutionPreset> presets{
      {"2K DCI Full 2048x1080", {2048, 1080}, 1.0},
      {"2K DCI Flat 1998x1080", {1998, 1080}, 1.0},
      {"2K DCI Scope 2048x858", {2048, 858}, 1.0},
      {"4K DCI Full 4096x2160", {4096, 2160}, 1.0},
      {"4K DCI Flat 3996x2160", {3996, 2160}, 1.0},
      {"4K DCI Scope 4096x1716", {4096, 1716}, 1.0},
      {"2K Academy Flat 1828x1332", {1828, 1332}, 1.0},
      {"2K Academy Scope 1828x1556", {1828, 1556}, 2.0},
      {"4K Academy Flat 3656x2664", {3656, 2664}, 1.0},
      {"4K Academy Scope 3656x3112", {3656, 3112}, 2.0},
      {"2K Super35 Full Ap 2048x1556", {2048, 1556}, 1.0},
      {"4K Super35 Full Ap 4096x3112", {4096, 3112}, 1.0},
      {"2K 16x9 2048x1152", {2048, 1152}, 1.0},
      {"4K 16x9 4096x2304", {4096, 2304}, 1.0},
      {"2K 2:1 2048x1024", {2048, 1024}, 1.0},
      {"4K 2:1 4096x2048", {4096, 2048}, 1.0},
      {"HD 1920x1080", {1920, 1080}, 1.0},
      {"4K UHD-1 3840x2160", {3840, 2160}, 1.0},
      {"8K UHD-2 7680x4320", {7680, 4320}, 1.0},
      {"HDV 1440x1080", {1440, 1080}, 1.0},
      {"DVCPRO HD 1280x1080", {1280, 1080}, 1.0},
      {"HD 720p 1280x720", {1280, 720}, 1.0},
      {"DVCPRO 960x720", {960, 720}, 1.0},
      {"NTSC D1 720x486", {720, 486}, 0.9},
      {"NTSC D1 Square 720x540", {720, 540}, 1.0},
      {"NTSC D1 16:9 720x486", {720, 486}, 1.2},
      {"PAL D1 720x576", {720, 576}, 1.0667},
      {"PAL D1 Square 768x576", {768, 576}, 1.0},
      {"PAL D1 16:9 720x576", {720, 576}, 1.4223},
      {"NTSC 648x486", {648, 486}, 1.0},
      {"NTSC 640x480", {640, 480}, 1.0},
      {"NTSC DV 720x480", {720, 480}, 1.0},
      {"MPEG 352x240", {352, 240}, 1.0},
      {"WEB 320x240", {320, 240}, 1.0},
  };
  return presets;
}

std::span<const Option> resolutions()
{
  static const auto list = []
  {
    std::vector<Option> made{{"Timeline", " Timeline dimensions are used as Input resolution"},
                             {"Custom Size", " User defined Input settings"}};
    for (const ResolutionPreset& preset : resolutionPresets())
      made.push_back(
          {preset.label, fmt::format(" {} pixel aspect ratio. Center offsets with auto fit or crop",
                                     preset.pixelAspect == 1.0 ? "Square" : fmt::format("{:#}", preset.pixelAspect))});
    return made;
  }();
  return list;
}
}  // namespace morvellan::params
