// The table of a Look's fields, as the format fixes it: labels, ranges and messages are contracts with files that users
// keep. A label's brackets are part of its text and not always the range that is accepted.
#include "files/look_table.h"

#include <array>
#include <vector>

#include <fmt/format.h>

#include "params/families.h"

namespace morvellan::files
{
namespace
{

using enum LookFormat;

struct Row
{
  std::string_view label;  // without its dashes
  std::string_view parameter;
  LookFormat format;
  double least;
  double most;
  double otherwise;
  std::string_view range;
};

constexpr std::string_view unit = "to a range between 0 and 1.0. Using Default UI value";
constexpr std::string_view toTen = "to a range between 0.0 and 10.0. Using Default UI value";
constexpr std::string_view degrees = "to a range between 0 and 360.0. Using Default UI value";
constexpr std::string_view signedUnit = "to a range between -1.0 and 1.0. Using Default UI value";
constexpr std::string_view offOn = "to 0(Off) or 1(On). Using Default UI value";
constexpr std::string_view threeWays = "to 0, 1, or 2. Using Default UI value";
constexpr std::string_view tint = "to a range between -1.0 - 1.0. Using Default UI value";
constexpr std::string_view toe = "to a range between -0.5 - 0.5. Using Default UI value";
constexpr std::string_view knee = "to a range between -0.5 and 0.5. Using Default UI value";
constexpr std::string_view toFifty = "to a range between 0.0 and 50.0. Using Default UI value";
constexpr std::string_view resolution = "to a range between 0 and 33. Using Default UI value";
constexpr std::string_view inputSize = "to a range between 10 - 12288. Using Clip Input resolution";
constexpr std::string_view kelvin = "to a range between 3000 - 14000";
constexpr std::string_view unitDashed = "to a range between 0.0 - 1.0. Using Default UI value";

constexpr std::array<Row, 110> beforeVectors{{
    {"In | Out Color Space(0 - 50)", "InputGamut", whole, 0, 48, 0, "to a range between 0 and 48"},
    {"Exposure(-1.0 - 1.0)", "Exposure", fourDecimals, -1.0, 1.0, 0.0, signedUnit},
    {"Halation Bypass Off/On(0, 1)", "HalationBypass", whole, 0, 1, 0, offOn},
    {"Halation Breadth(0 - 1.0)", "HalationBreadth", fourDecimals, 0.0, 1.0, 0.25, unit},
    {"Halation Saturation(0 - 1.0)", "HalationSaturation", fourDecimals, 0.0, 1.0, 0.0, unit},
    {"Halation Cyan -> Red(0 - 1.0)", "HalationCyanRed", fourDecimals, 0.0, 1.0, 0.0, unit},
    {"Halation Magenta -> Green(0 - 1.0)", "HalationMagentaGreen", fourDecimals, 0.0, 1.0, 0.0, unit},
    {"Halation Yellow -> Blue(0 - 1.0)", "HalationYellowBlue", fourDecimals, 0.0, 1.0, 0.0, unit},
    {"Halation Blend-R(0 - 1.0)", "HalationBlendR", fourDecimals, 0.0, 1.0, 0.0, unit},
    {"Halation Blend-G(0 - 1.0)", "HalationBlendG", fourDecimals, 0.0, 1.0, 0.0, unit},
    {"Halation Blend-B(0 - 1.0)", "HalationBlendB", fourDecimals, 0.0, 1.0, 0.0, unit},
    {"Camera SoftClips(0,1,2)", "SoftClips", whole, 0, 2, 0, threeWays},
    {"Highlights Soft Peak(-1.0 - 1.0)", "CameraHighlightsCeiling", fourDecimals, -1.0, 1.0, 1.0, signedUnit},
    {"Highlights Recover(0 - 1.0)", "CameraHighlightsRecover", fourDecimals, 0.0, 1.0, 0.0, unit},
    {"Shadows Soft Floor(0 - 1.0)", "CameraShadowsCeiling", fourDecimals, 0.0, 1.0, 0.0, unit},
    {"Shadows Recover(0 - 1.0)", "CameraShadowsRecover", fourDecimals, 0.0, 1.0, 0.0, unit},
    {"HDR Off/On(0, 1)", "HDRcomp", whole, 0, 1, 0, offOn},
    {"Process Linear Off/On(0, 1)", "ProcessLinear", whole, 0, 1, 0, offOn},
    {"Input Format | Res(0 - 40)", "InResolution", whole, 0, 33, 0, resolution},
    {"Source Width(10 - 12288)", "SourceWidth", whole, 10, 12288, 1920, inputSize},
    {"Source Height(10 - 12288)", "SourceHeight", whole, 10, 12288, 1080, inputSize},
    {"Source Width offset(0 - 1.0)", "SourceWidthOffset", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Source Height offset(0 - 1.0)", "SourceHeightOffset", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Output Format | Res(0 - 40)", "OutResolution", whole, 0, 33, 0, resolution},
    {"Target Width(10 - 12288)", "TargetWidth", whole, 10, 12288, 1920,
     "to a range between 10 - 12288. Using Clip Output resolution"},
    {"Target Height(10 - 12288)", "TargetHeight", whole, 10, 12288, 1080,
     "to a range between 10 and 12288. Using Clip Output resolution"},
    {"Target Width offset(0 - 1.0)", "TargetWidthOffset", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Target Height offset(0 - 1.0)", "TargetHeightOffset", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Texture|Detail enhancers(0,1,2)", "SpatialEnhancement", whole, 0, 2, 0, threeWays},
    {"Horizontal Enhancer(0 - 10.0)", "HorizontalEnhancer", fourDecimals, 0.0, 10.0, 0.0, toTen},
    {"Vertical Enhancer(0 - 10.0)", "VerticalEnhancer", fourDecimals, 0.0, 10.0, 0.0, toTen},
    {"Enhancer amount(0 - 10.0)", "CombinedEnhancer", fourDecimals, 0.0, 10.0, 0.0, toTen},
    {"Pitch Bypass Off/On(0, 1)", "PitchBypass", whole, 0, 1, 0, offOn},
    {"Pitch - Soprano(0 - 10.0)", "SopranoPitch", fourDecimals, 0.0, 10.0, 3.0, toTen},
    {"Pitch - Mezzo(0 - 10.0)", "MezzoSopranoPitch", fourDecimals, 0.0, 10.0, 3.0, toTen},
    {"Pitch - Alto(0 - 10.0)", "AltoPitch", fourDecimals, 0.0, 10.0, 3.0, toTen},
    {"Pitch - Tenor(0 - 10.0)", "TenorPitch", fourDecimals, 0.0, 10.0, 3.0, toTen},
    {"Pitch - Baritone(0 - 10.0)", "BaritonePitch", fourDecimals, 0.0, 10.0, 3.0, toTen},
    {"Pitch - Bass(0 - 10.0)", "BassPitch", fourDecimals, 0.0, 10.0, 3.0, toTen},
    {"Soup Bypass Off/On(0, 1)", "SoupBypass", whole, 0, 1, 0, offOn},
    {"Soup High Soft Peak(-1.0 - 1.0)", "SoupHighlightCeiling", fourDecimals, -1.0, 1.0, 1.0, signedUnit},
    {"Soup High Recover(0 - 1.0)", "SoupHighlightCompress", fourDecimals, 0.0, 1.0, 0.0, unit},
    {"Soup Shadow Soft Floor(0 - 1.0)", "SoupShadowFloor", fourDecimals, 0.0, 1.0, 0.0, unit},
    {"Soup Shadow Recover(0 - 1.0)", "SoupShadowExpand", fourDecimals, 0.0, 1.0, 0.0, unit},
    {"Soup Camera Film Stock(0 - 60)", "CameraStock", whole, 0, 24, 0, "to a range between 0 and 24"},
    {"Soup Camera Cast(3000 - 14000)", "CameraCast", whole, 3000, 14000, 6504, kelvin},
    {"Soup Camera Tint-G->M(-1.0 - 1.0)", "CameraTintGtoM", fourDecimals, -1.0, 1.0, 0.0, tint},
    {"Soup Camera Tint-R->C(-1.0 - 1.0)", "CameraTintRtoC", fourDecimals, -1.0, 1.0, 0.0, tint},
    {"Soup Color Corrector(0,1,2,3,4)", "ColorCorrection", whole, 0, 4, 0, "to 0, 1, 2, 3, or 4"},
    {"Soup Saturation-R(0 - 1.0)", "SaturationRed", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Soup Saturation-M(0 - 1.0)", "SaturationMagenta", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Soup Saturation-B(0 - 1.0)", "SaturationBlue", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Soup Saturation-C(0 - 1.0)", "SaturationCyan", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Soup Saturation-G(0 - 1.0)", "SaturationGreen", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Soup Saturation-Y(0 - 1.0)", "SaturationYellow", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Soup Sat-Strength(0 - 1.0)", "SaturationStrength", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Soup Sat-CusH(0 - 360.0)", "SaturationCustomHue", oneDecimal, 0.0, 360.0, 480.0, degrees},
    {"Soup Sat-CusW(0 - 360.0)", "SaturationCustomWidth", oneDecimal, 0.0, 360.0, 60.0, degrees},
    {"Soup Sat-CusS(0 - 1.0)", "SaturationCustomStrength", fourDecimals, 0.0, 1.0, 0.2, unit},
    {"Soup Sat-Zones(0,1,2)", "SatZone", whole, 0, 2, 0, threeWays},
    {"Soup Sat-Zone Low(0 - 1.0)", "SatZoneLow", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Soup Sat-L range(0 - 1.0)", "SatZoneLowRange", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Soup Sat-Zone High(0 - 1.0)", "SatZoneHigh", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Soup Sat-H range(0 - 1.0)", "SatZoneHighRange", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Soup Hue-R(0 - 1.0)", "HueRed", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Soup Hue-M(0 - 1.0)", "HueMagenta", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Soup Hue-B(0 - 1.0)", "HueBlue", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Soup Hue-C(0 - 1.0)", "HueCyan", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Soup Hue-G(0 - 1.0)", "HueGreen", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Soup Hue-Y(0 - 1.0)", "HueYellow", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Soup Hue-Strength(0 - 1.0)", "HueStrength", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Soup Hue-CusH(0 - 360.0)", "HueCustomHue", oneDecimal, 0.0, 360.0, 480.0, degrees},
    {"Soup Hue-CusW(0 - 360.0)", "HueCustomWidth", oneDecimal, 0.0, 360.0, 60.0, degrees},
    {"Soup Hue-CusS(0 - 1.0)", "HueCustomStrength", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Soup Hue-Zones(0,1,2)", "HueZone", whole, 0, 2, 0, threeWays},
    {"Soup Hue-Zone Low(0 - 1.0)", "HueZoneLow", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Soup Hue-L range(0 - 1.0)", "HueZoneLowRange", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Soup Hue-Zone High(0 - 1.0)", "HueZoneHigh", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Soup Hue-H range(0 - 1.0)", "HueZoneHighRange", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Soup Chroma-R(0 - 1.0)", "ChromaRed", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Soup Chroma-M(0 - 1.0)", "ChromaMagenta", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Soup Chroma-B(0 - 1.0)", "ChromaBlue", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Soup Chroma-C(0 - 1.0)", "ChromaCyan", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Soup Chroma-G(0 - 1.0)", "ChromaGreen", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Soup Chroma-Y(0 - 1.0)", "ChromaYellow", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Soup Chroma-Strength(0 - 1.0)", "ChromaStrength", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Soup Chroma-CusH(0 - 360.0)", "ChromaCustomHue", oneDecimal, 0.0, 360.0, 480.0, degrees},
    {"Soup Chroma-CusW(0 - 360.0)", "ChromaCustomWidth", oneDecimal, 0.0, 360.0, 60.0, degrees},
    {"Soup Chroma-CusS(0 - 1.0)", "ChromaCustomStrength", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Soup Chroma-Zones(0,1,2)", "ChrZone", whole, 0, 2, 0, threeWays},
    {"Soup Chroma-Zone Low(0 - 1.0)", "ChrZoneLow", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Soup Chroma-L range(0 - 1.0)", "ChrZoneLowRange", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Soup Chroma-Zone High(0 - 1.0)", "ChrZoneHigh", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Soup Chroma-H range(0 - 1.0)", "ChrZoneHighRange", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Soup Vibrance-R(0 - 1.0)", "VibranceRed", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Soup Vibrance-M(0 - 1.0)", "VibranceMagenta", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Soup Vibrance-B(0 - 1.0)", "VibranceBlue", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Soup Vibrance-C(0 - 1.0)", "VibranceCyan", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Soup Vibrance-G(0 - 1.0)", "VibranceGreen", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Soup Vibrance-Y(0 - 1.0)", "VibranceYellow", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Soup Vibr-Strength(0 - 1.0)", "VibranceStrength", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Soup Vibrance-CusH(0 - 360.0)", "VibranceCustomHue", oneDecimal, 0.0, 360.0, 480.0, degrees},
    {"Soup Vibrance-CusW(0 - 360.0)", "VibranceCustomWidth", oneDecimal, 0.0, 360.0, 60.0, degrees},
    {"Soup Vibrance-CusS(0 - 1.0)", "VibranceCustomStrength", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Soup Vibr-Zones(0,1,2)", "VibZone", whole, 0, 2, 0, threeWays},
    {"Soup Vibr-Zone Low(0 - 1.0)", "VibZoneLow", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Soup Vibr-L range(0 - 1.0)", "VibZoneLowRange", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Soup Vibr-Zone High(0 - 1.0)", "VibZoneHigh", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Soup Vibr-H range(0 - 1.0)", "VibZoneHighRange", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Soup Refine(0 - 12)", "ColorRefine", whole, 0, 12, 0, "to 0 - 12"},
}};

// Of the vector Two; the others differ in the number and its word alone.
constexpr std::array<Row, 17> vector{{
    {"Sat-H(0 - 360.0)", "SatHue", oneDecimal, 0.0, 360.0, 180.0, degrees},
    {"Sat-W(0 - 360.0)", "SatWidth", oneDecimal, 0.0, 360.0, 60.0, degrees},
    {"Sat-S(0 - 1.0)", "SatStrength", fourDecimals, 0.0, 1.0, 0.2, unit},
    {"Hue-H(0 - 360.0)", "HueHue", oneDecimal, 0.0, 360.0, 180.0, degrees},
    {"Hue-W(0 - 360.0)", "HueWidth", oneDecimal, 0.0, 360.0, 60.0, degrees},
    {"Hue-S(0 - 1.0)", "HueStrength", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Chr-H(0 - 360.0)", "ChrHue", oneDecimal, 0.0, 360.0, 180.0, degrees},
    {"Chr-W(0 - 360.0)", "ChrWidth", oneDecimal, 0.0, 360.0, 60.0, degrees},
    {"Chr-S(0 - 1.0)", "ChrStrength", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Vib-H(0 - 360.0)", "VibHue", oneDecimal, 0.0, 360.0, 180.0, degrees},
    {"Vib-W(0 - 360.0)", "VibWidth", oneDecimal, 0.0, 360.0, 60.0, degrees},
    {"Vib-S(0 - 1.0)", "VibStrength", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Zone(0,1,2)", "Zone", whole, 0, 2, 0, threeWays},
    {"Zone-L(0 - 1.0)", "ZoneLow", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Zone-LR(0 - 1.0)", "ZoneLowRange", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Zone-H(0 - 1.0)", "ZoneHigh", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Zone-HR(0 - 1.0)", "ZoneHighRange", fourDecimals, 0.0, 1.0, 0.5, unit},
}};

constexpr std::array<Row, 75> afterVectors{{
    {"Soup Tones(0,1,2,3,4,5)", "ToneCurves", whole, 0, 5, 0, "to 0, 1, 2, 3, 4, or 5"},
    {"Soup Bleach Pivot(0 - 1.0)", "LabBleachPivot", fourDecimals, 0.0, 1.0, 0.3, unit},
    {"Soup Bleach-R(0 - 1.0)", "LabBleachRed", fourDecimals, 0.0, 1.0, 0.0, unit},
    {"Soup Bleach-G(0 - 1.0)", "LabBleachGreen", fourDecimals, 0.0, 1.0, 0.0, unit},
    {"Soup Bleach-B(0 - 1.0)", "LabBleachBlue", fourDecimals, 0.0, 1.0, 0.0, unit},
    {"Soup Toe Pivot(0 - 1.0)", "SoupToePivot", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Soup Toe-R(-0.5 - 0.5)", "SoupToeRed", fourDecimals, -0.5, 0.5, 0.0, toe},
    {"Soup Toe-G(-0.5 - 0.5)", "SoupToeGreen", fourDecimals, -0.5, 0.5, 0.0, toe},
    {"Soup Toe-B(-0.5 - 0.5)", "SoupToeBlue", fourDecimals, -0.5, 0.5, 0.0, toe},
    {"Soup Knee-R(-0.5 - 0.5)", "SoupKneeRed", fourDecimals, -0.5, 0.5, 0.0, knee},
    {"Soup Knee-G(-0.5 - 0.5)", "SoupKneeGreen", fourDecimals, -0.5, 0.5, 0.0, knee},
    {"Soup Knee-B(-0.5 - 0.5)", "SoupKneeBlue", fourDecimals, -0.5, 0.5, 0.0, knee},
    {"Soup Shoulder Pivot(0 - 1.0)", "SoupShoulderPivot", fourDecimals, 0.0, 1.0, 0.5,
     "to a range between 0.1 and 1.0. Using Default UI value"},
    {"Soup Shoulder-R(-1.0 - 1.0)", "SoupShoulderRed", fourDecimals, -1.0, 1.0, 0.0, signedUnit},
    {"Soup Shoulder-G(-1.0 - 1.0)", "SoupShoulderGreen", fourDecimals, -1.0, 1.0, 0.0, signedUnit},
    {"Soup Shoulder-B(-1.0 - 1.0)", "SoupShoulderBlue", fourDecimals, -1.0, 1.0, 0.0, signedUnit},
    {"Soup Filmic Contrast(0 - 1.0)", "SoupFilmicPivot", fourDecimals, 0.0, 1.0, 0.0, unit},
    {"Soup Filmic Slope(0 - 1.0)", "SoupFilmicSlope", fourDecimals, 0.0, 1.0, 0.014, unit},
    {"Lab Silver-R(0 - 1.0)", "LabSilverRed", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Lab Silver-G(0 - 1.0)", "LabSilverGreen", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Lab Silver-B(0 - 1.0)", "LabSilverBlue", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Lab Bleach Bypass Off/On(0, 1)", "LableachBypass", whole, 0, 1, 0, offOn},
    {"Lab Pull | Push(0 - 1.0)", "LabPullPush", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Lab Developer(0 - 1.0)", "LabDevelop", fourDecimals, 0.0, 1.0, 0.9, unit},
    {"Lab Agitation(1 - 5)", "LabAgitate", whole, 1, 5, 3, "to a range between 1 and 5. Using Default UI value"},
    {"Lab Replenisher(0 - 1.0)", "LabReplenish", fourDecimals, 0.0, 1.0, 1.0, unit},
    {"Lab Spectra(0 - 1.0)", "LabSpectrumBand", fourDecimals, 0.0, 1.0, 0.5, unit},
    {"Lab Diffuse Lo-Mid(0 - 1.0)", "LabDiffuseLoMid", fourDecimals, 0.0, 1.0, 1.0, unit},
    {"Lab Diffuse Mid-Hi(0 - 1.0)", "LabDiffuseMidHi", fourDecimals, 0.0, 1.0, 1.0, unit},
    {"Soup Dmin-R(-1.0 - 1.0)", "SoupDminRed", fourDecimals, -1.0, 1.0, 0.584, signedUnit},
    {"Soup Dmin-G(-1.0 - 1.0)", "SoupDminGreen", fourDecimals, -1.0, 1.0, 0.584, signedUnit},
    {"Soup Dmin-B(-1.0 - 1.0)", "SoupDminBlue", fourDecimals, -1.0, 1.0, 0.584, signedUnit},
    {"Soup Dmax-R(0.0 - 1.0)", "SoupDmaxRed", fourDecimals, 0.0, 1.0, 0.838, unit},
    {"Soup Dmax-G(0.0 - 1.0)", "SoupDmaxGreen", fourDecimals, 0.0, 1.0, 0.838, unit},
    {"Soup Dmax-B(0.0 - 1.0)", "SoupDmaxBlue", fourDecimals, 0.0, 1.0, 0.838, unit},
    {"Grain Bypass Off/On(0, 1)", "GrainBypass", whole, 0, 1, 0, offOn},
    {"Grain Linear Off/On(0, 1)", "GrainLinear", whole, 0, 1, 0, offOn},
    {"Grain Dispersion(0,1,2,3,4)", "DispersionPattern", whole, 0, 4, 0, "to 0, 1, 2, 3, or 4. Using Default UI value"},
    {"Grain Pattern(0 - 10.0)", "UniformPattern", fourDecimals, 0.0, 10.0, 5.0, toTen},
    {"Grain Size-R(0 - 50.0)", "SizeRed", fourDecimals, 0.0, 50.0, 2.0, toFifty},
    {"Grain Size-G(0 - 50.0)", "SizeGreen", fourDecimals, 0.0, 50.0, 2.0, toFifty},
    {"Grain Size-B(0 - 50.0)", "SizeBlue", fourDecimals, 0.0, 50.0, 2.0, toFifty},
    {"Grain Granularity-R(0 - 10.0)", "GranularityRed", fourDecimals, 0.0, 10.0, 5.0, toTen},
    {"Grain Granularity-G(0 - 10.0)", "GranularityGreen", fourDecimals, 0.0, 10.0, 5.0, toTen},
    {"Grain Granularity-B(0 - 10.0)", "GranularityBlue", fourDecimals, 0.0, 10.0, 5.0, toTen},
    {"Grain Softness-R(0 - 10.0)", "SoftRed", fourDecimals, 0.0, 10.0, 2.0, toTen},
    {"Grain Softness-G(0 - 10.0)", "SoftGreen", fourDecimals, 0.0, 10.0, 2.0, toTen},
    {"Grain Softness-B(0 - 10.0)", "SoftBlue", fourDecimals, 0.0, 10.0, 2.0, toTen},
    {"Grain Variance-R(0 - 10.0)", "VarianceRed", fourDecimals, 0.0, 10.0, 0.0, toTen},
    {"Grain Variance-G(0 - 10.0)", "VarianceGreen", fourDecimals, 0.0, 10.0, 0.0, toTen},
    {"Grain Variance-B(0 - 10.0)", "VarianceBlue", fourDecimals, 0.0, 10.0, 0.0, toTen},
    {"Grain Strength-R(0 - 10.0)", "StrengthRed", fourDecimals, 0.0, 10.0, 0.0, toTen},
    {"Grain Strength-G(0 - 10.0)", "StrengthGreen", fourDecimals, 0.0, 10.0, 0.0, toTen},
    {"Grain Strength-B(0 - 10.0)", "StrengthBlue", fourDecimals, 0.0, 10.0, 0.0, toTen},
    {"Print Bypass Off/On(0, 1)", "PrintDisplayBypass", whole, 0, 1, 1, offOn},
    {"Print Film Stock(0 - 20)", "PrintProfile", whole, 0, 20, 0, "to a range between 0 and 9"},
    {"Print Cast(3000 - 14000)", "PrintCast", whole, 3000, 14000, 6504, kelvin},
    {"Print Tint - G->M(-1.0 - 1.0)", "PrintTintGtoM", fourDecimals, -1.0, 1.0, 0.0, tint},
    {"Print Tint - R->C(-1.0 - 1.0)", "PrintTintRtoC", fourDecimals, -1.0, 1.0, 0.0, tint},
    {"Print Saturation(0 - 1.0)", "PrintSaturation", fourDecimals, 0.0, 1.0, 1.0, unitDashed},
    {"Print Bleach Bypass Off/On(0, 1)", "Bleach", whole, 0, 1, 0, offOn},
    {"Print Bleach Pivot(0 - 1.0)", "PrintBleachPivot", fourDecimals, 0.0, 1.0, 0.3, unit},
    {"Print Bleach-R(0 - 1.0)", "PrintBleachRed", fourDecimals, 0.0, 1.0, 0.0, unit},
    {"Print Bleach-G(0 - 1.0)", "PrintBleachGreen", fourDecimals, 0.0, 1.0, 0.0, unit},
    {"Print Bleach-B(0 - 1.0)", "PrintBleachBlue", fourDecimals, 0.0, 1.0, 0.0, unit},
    {"Print Display Contrast(0 - 1.0)", "PrintFilmicPivot", fourDecimals, 0.0, 1.0, 0.0, unit},
    {"Print Display Slope(0 - 1.0)", "PrintFilmicSlope", fourDecimals, 0.0, 1.0, 0.0, unit},
    {"Print Display Gamut(0 - 30)", "OutputDisplayGamut", whole, 0, 15, 0, "to a range between 0 and 15"},
    {"Print Peak White(0 - 1.0)", "PrintPeakBrightness", fourDecimals, 0.0, 1.0, 0.1, unitDashed},
    {"Print Black-R(-1.0 - 1.0)", "PrintBlackRed", fourDecimals, -1.0, 1.0, 0.141, signedUnit},
    {"Print Black-G(-1.0 - 1.0)", "PrintBlackGreen", fourDecimals, -1.0, 1.0, 0.141, signedUnit},
    {"Print Black-B(-1.0 - 1.0)", "PrintBlackBlue", fourDecimals, -1.0, 1.0, 0.141, signedUnit},
    {"Print White-R(0.0 - 1.0)", "PrinterLightRed", fourDecimals, 0.0, 1.0, 0.909, unit},
    {"Print White-G(0.0 - 1.0)", "PrinterLightGreen", fourDecimals, 0.0, 1.0, 0.909, unit},
    {"Print White-B(0.0 - 1.0)", "PrinterLightBlue", fourDecimals, 0.0, 1.0, 0.909, unit},
}};

LookField made(std::string_view label, std::string_view parameter, const Row& row)
{
  return {.label = fmt::format("{:-<{}}|", label, lookLabelColumns - 1),
          .parameter = std::string{parameter},
          .format = row.format,
          .least = row.least,
          .most = row.most,
          .otherwise = row.otherwise,
          .range = row.range};
}

std::vector<LookField> makeFields()
{
  std::vector<LookField> fields;
  fields.reserve(lookFieldCount);
  for (const Row& row : beforeVectors)
    fields.push_back(made(row.label, row.parameter, row));
  int number = 2;
  for (const std::string_view word : params::refineWords)
  {
    for (const Row& row : vector)
      fields.push_back(made(fmt::format("Soup Refine-{}-{}", number, row.label),
                            params::joined("Refine", word, row.parameter), row));
    ++number;
  }
  for (const Row& row : afterVectors)
    fields.push_back(made(row.label, row.parameter, row));
  return fields;
}

}  // namespace

std::span<const LookField> lookFields()
{
  static const std::vector<LookField> all = makeFields();
  return all;
}

}  // namespace morvellan::files
