// Holds the choice lists to their contract: how many entries, which index is which, and the texts that depart from
// their pattern; and the GPU list, which is made from what the machine has.
#include "params/choices.h"

#include "params/families.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>

namespace morvellan::params
{
namespace
{
using testing::ElementsAre;

std::vector<std::string> labels(std::span<const Option> options)
{
  std::vector<std::string> names;
  for (const Option& option : options)
    names.push_back(option.label);
  return names;
}

TEST(Choices, EveryChoiceHasItsList)
{
  const std::map<std::string, std::size_t> sizes{
      {"InputGamut", 49},   {"InResolution", 36},      {"OutResolution", 36},    {"SoftClips", 3},
      {"CameraStock", 25},  {"SpatialEnhancement", 3}, {"SpatialEnhancer", 3},   {"ColorCorrection", 5},
      {"ColorRefine", 12},  {"ToneCurves", 6},         {"DispersionPattern", 5}, {"OutputDisplayGamut", 15},
      {"PrintProfile", 10}, {"GrainDepth", 8},         {"NatronGPU", 0}};
  std::size_t found = 0;
  for (const Param& param : catalogue())
  {
    if (param.kind != Kind::Choice)
      continue;
    const auto size = sizes.find(param.name);
    EXPECT_EQ(param.options.size(), size == sizes.end() ? 3u : size->second) << param.name;
    found += size != sizes.end();
    for (const Option& option : param.options)
    {
      EXPECT_FALSE(option.label.empty()) << param.name;
      EXPECT_FALSE(option.hint.empty()) << param.name;
    }
  }
  EXPECT_EQ(found, sizes.size());
}

TEST(Choices, InputGamutOrderIsHistoric)
{
  EXPECT_THAT(labels(inputGamuts()),
              ElementsAre("Linear Rec.709|sRGB", "Scene Rec.709", "Cineon", "PLogLin", "ACES (AP0) Linear",
                          "ACEScg (AP1) Linear", "ACEScc (AP1)", "ACEScct (AP1)", "ACESproxy (AP1)", "ADX Log",
                          "Nikon, N-log", "ARRI, LogC3", "RED, Log3G10 | Log3G12", "FujiFilm, F-Log2",
                          "Filmlight, T-Log", "Sony, S-Log3", "Sony, S-Log3.Cine", "Sony, S-Log3.Venice",
                          "Sony, S-Log3.Venice.Cine", "Panasonic, V-Log", "Canon, C-Log-D", "Canon, C-Log-T",
                          "Canon, C-Log2-D", "Canon, C-Log2-T", "Canon, C-Log3-D", "Canon, C-Log3-T", "DJI, D-Log",
                          "sRGB Display", "FujiFilm, F-Log", "Rec.2020|2100 Scene", "Rec.2020|2100 Linear", "P3-D60",
                          "P3-D65", "P3-DCI", "BT.1886", "REDcolor2, REDlogFilm", "REDcolor3, REDlogFilm",
                          "REDcolor4, REDlogFilm", "DRAGONcolor, REDlogFilm", "DRAGONcolor2, REDlogFilm",
                          "GoPro, Color", "GoPro, Protune Flat", "ST2084 Rec.2100 PQ", "ST2084 P3-D65 PQ",
                          "HLG (Scene)", "DWG - Intermediate", "DCDM", "ARRI, LogC4", "BMD, Film Gen 5"));
  for (const Option& option : inputGamuts())
    EXPECT_EQ(option.hint.front(), ' ') << option.label;
  EXPECT_EQ(inputGamuts()[46].hint, " Output-referred, DCDM X'Y'Z' Color space, Pure Gamma 2.6, E White @5454K : "
                                    "x0.33333, y0.33333");
}

TEST(Choices, ResolutionPresets)
{
  EXPECT_EQ(resolutions().size(), resolutionPresets().size() + firstPreset);
  EXPECT_EQ(resolutions()[timelineResolution].label, "Timeline");
  EXPECT_EQ(resolutions()[timelineResolution].hint, " Timeline dimensions are used as Input resolution");
  EXPECT_EQ(resolutions()[customResolution].label, "Custom Size");
  EXPECT_EQ(resolutions()[2].hint, " Square pixel aspect ratio. Center offsets with auto fit or crop");
  EXPECT_EQ(resolutions()[9].label, "2K Academy Scope 1828x1556");
  EXPECT_EQ(resolutions()[9].hint, " 2.0 pixel aspect ratio. Center offsets with auto fit or crop");
  EXPECT_EQ(resolutions()[28].hint, " 1.0667 pixel aspect ratio. Center offsets with auto fit or crop");
  EXPECT_EQ(resolutions()[35].label, "WEB 320x240");
  EXPECT_EQ(at("InResolution").options.data(), at("OutResolution").options.data());
  // Every label ends with its size.
  for (const ResolutionPreset& preset : resolutionPresets())
    EXPECT_TRUE(
        preset.label.ends_with(" " + std::to_string(preset.size.width) + "x" + std::to_string(preset.size.height)))
        << preset.label;
  const std::map<std::size_t, double> aspects{{9, 2.0}, {11, 2.0}, {25, 0.9}, {27, 1.2}, {28, 1.0667}, {30, 1.4223}};
  for (std::size_t i = 0; i < resolutionPresets().size(); ++i)
  {
    const auto aspect = aspects.find(i + firstPreset);
    EXPECT_EQ(resolutionPresets()[i].pixelAspect, aspect == aspects.end() ? 1.0 : aspect->second) << i;
  }
  EXPECT_EQ(resolutionPresets()[20 - firstPreset].size, (Size{7680, 4320}));
}

TEST(Choices, SmallLists)
{
  EXPECT_THAT(labels(softClips()), ElementsAre("Bypass", "Highlights", "Shadows"));
  EXPECT_THAT(labels(spatialEnhancements()), ElementsAre("Bypass", "Textures & Details", "Details only"));
  EXPECT_THAT(labels(colorCorrections()), ElementsAre("Bypass", "Saturation", "Hue", "Chroma", "Vibrance"));
  EXPECT_THAT(labels(toneCurves()), ElementsAre("Bypass", "Bleach", "Toe", "Knee", "Shoulder", "Filmic"));
  EXPECT_THAT(labels(dispersionPatterns()), ElementsAre("Random Color", "Random Mono | Color", "Random Luminance",
                                                        "Uniform Mono | Color", "Uniform Luminance"));
  EXPECT_THAT(labels(outputDisplays()),
              ElementsAre("Rec.709 Gamma 2.4", "Rec.709 Gamma 2.4 D60 Sim", "P3-DCI D60 Sim", "P3-D65",
                          "P3-D65 D60 Sim", "Rec.2020", "Rec.2020 PQ", "P3-D65 PQ", "Rec.2020 HLG", "RCM SDR",
                          "RCM HDR", "ACEScc SDR", "ACEScc HDR", "ACEScct SDR", "ACEScct HDR"));
  EXPECT_EQ(outputDisplays()[11].hint, "SDR,  100 Nits");
  EXPECT_EQ(outputDisplays()[13].hint, " SDR, 100 Nits");
  EXPECT_EQ(dispersionPatterns()[1].hint,
            " Grain Dispersion Patterns : Random Monochromatic, or Random Color. When any "
            "R,G,B channel is offest from another, Random Mono turns into Random Color");
}

TEST(Choices, ColourLists)
{
  for (std::size_t i = 0; i < axes.size(); ++i)
  {
    const std::span<const Option> zones = at(joined(axes[i].shortWord, "Zone")).options;
    EXPECT_EQ(zones.data(), attributeZones(i).data());
    EXPECT_THAT(labels(zones), ElementsAre("Bypass", "Lower Intensities", "Upper Intensities"));
    EXPECT_EQ(zones[0].hint, joined(" Bypass ", axes[i].word, " Extraction Zones"));
    EXPECT_EQ(zones[1].hint, joined(" Lower Intensities ", axes[i].word, " Extraction Zone"));
    EXPECT_EQ(zones[2].hint, joined(" Upper Intensities ", axes[i].word, " Extraction Zone"));
  }
  ASSERT_EQ(colorRefines().size(), refineWords.size() + 1);
  EXPECT_EQ(colorRefines()[0].hint, " Bypass Custom Refinements to Saturation, Hue, Chroma, Vibrance");
  for (std::size_t i = 0; i < refineWords.size(); ++i)
  {
    EXPECT_EQ(colorRefines()[i + 1].label, refineWords[i]);
    EXPECT_EQ(colorRefines()[i + 1].hint,
              joined(" Custom-", refineWords[i], " Refinements to Saturation, Hue, Chroma, Vibrance"));
    const std::span<const Option> zones = at(joined("Refine", refineWords[i], "Zone")).options;
    EXPECT_EQ(zones[0].hint, joined(" Bypass Custom-", refineWords[i], " Extraction Zones"));
    EXPECT_EQ(zones[1].hint, joined(" Custom-", refineWords[i], " Lower Intensities Extraction Zone"));
    EXPECT_EQ(zones[2].hint, joined(" Custom-", refineWords[i], " Upper Intensities Extraction Zone"));
  }
}

TEST(Choices, GrainDepthIsTenBitsAndTwoMoreEach)
{
  for (std::size_t i = 0; i < grainDepths().size(); ++i)
    EXPECT_EQ(grainDepths()[i].label, std::to_string(10 + 2 * i) + " Bits | channel");
  EXPECT_TRUE(grainDepths()[3].hint.ends_with("Luminance Channel - Default"));
  EXPECT_TRUE(grainDepths()[4].hint.ends_with("of 18 bits per Color | Monochromatic | Luminance Channel"));
}

TEST(Choices, Stocks)
{
  EXPECT_THAT(labels(cameraStocks()),
              ElementsAre("None", "Custom", "Agfa XT 125, 125T. Ver-A", "Agfa XTR 250, 250T. Ver-A",
                          "Fuji-8522, 64D. Ver-A", "Fuji-8543, 160T. Ver-A", "Fuji-8553, 250T. Ver-A",
                          "Fuji-8563, 250D. Ver-A", "Fuji-8583, 400T. Ver-A", "Fuji-8548, 400T. Ver-A",
                          "Fuji-8573, 500T. Ver-A", "Fuji-8547, 500T. Ver-A", "Fuji-8592, 500D. Ver-A",
                          "EK-5201, 50D. Ver-A", "EK-5203, 50D. Ver-A", "EK-5212, 100T. Ver-A", "EK-5213, 200T. Ver-A",
                          "EK-5217, 200T. Ver-A", "EK-5274, 200T. Ver-A", "EK-5207, 250D. Ver-A",
                          "EK-5219, 500T. Ver-A", "EK-5279, 500T. Ver-A", "EK-5229, 500T. Ver-A",
                          "EK-7268, 32T | 25D. Ver-A", "EK-7294, 100D. Ver-A"));
  EXPECT_THAT(labels(printStocks()), ElementsAre("None", "Custom", "EK-2383, D65. Ver-A", "EK-2393, D65. Ver-A",
                                                 "Fuji-DI, D65. Ver-A", "Fuji-XD, D65. Ver-A", "EK-2383, D55. Ver-A",
                                                 "EK-2393, D55. Ver-A", "Fuji-DI, D55. Ver-A", "Fuji-XD, D55. Ver-A"));
  EXPECT_TRUE(printStocks()[1].hint.ends_with("created | edited | saved through Morvellan"));
  EXPECT_EQ(cameraStocks()[0].hint, "Bypass Cine Film Stock Profile");
}
}  // namespace
}  // namespace morvellan::params
