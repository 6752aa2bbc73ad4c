// `About` and `ClipInfo`.
#include "gpu/reports.h"

#include <string_view>
#include <utility>

#include <fmt/format.h>

namespace morvellan::gpu
{
namespace
{

struct Word
{
  std::string_view value;
  std::string_view shown;
};

template <std::size_t N>
std::string_view wordFor(std::string_view value, const std::array<Word, N>& words, std::string_view otherwise)
{
  for (const Word& word : words)
    if (word.value == value)
      return word.shown;
  return otherwise;
}

constexpr std::array<Word, 6> depthWords{{{"OfxBitDepthNone", " - 0 BitDepthNone"},
                                          {"OfxBitDepthByte", " - 8u BitDepthUByte:"},
                                          {"OfxBitDepthShort", " - 16u BitDepthUShort"},
                                          {"OfxBitDepthHalf", " - 16f BitDepthHalf"},
                                          {"OfxBitDepthFloat", " - 32f BitDepthFloat"},
                                          {"OfxBitDepthCustom", " - BitDepthCustom"}}};
constexpr std::array<Word, 3> premultiplicationWords{{{"OfxImageOpaque", "Opaque"},
                                                      {"OfxImageAlphaPremultiplied", "PreMultiplied"},
                                                      {"OfxImageAlphaUnPremultiplied", "UnPreMultiplied"}}};
constexpr std::array<Word, 6> fieldWords{{{"OfxFieldNone", "None"},
                                          {"OfxFieldBoth", "Both"},
                                          {"OfxFieldLower", "Lower"},
                                          {"OfxFieldUpper", "Upper"},
                                          {"OfxFieldSingle", "Single"},
                                          {"OfxFieldDoubled", "Doubled"}}};

// The words that the source's section and the output's differ in.
struct Section
{
  std::string_view head;
  std::string_view unavailable;
  std::string_view node;
  std::string_view continuous;
};
constexpr Section sourceSection{"Input : \n", "    Input Clip info is unavailable\n\n",
                                "    Node input : ", "   Continuous samples\n"};
constexpr Section outputSection{"Output : \n", "    Output Clip info unavailable\n\n",
                                "    Node output : ", "    Continuous samples\n"};

std::string withoutPrefix(std::string text)
{
  constexpr std::string_view prefix = "OfxImageComponent";
  if (const std::size_t at = text.find(prefix); at != std::string::npos)
    text.erase(at, prefix.size());
  return text;
}

std::string four(const std::array<double, 4>& numbers)
{
  return fmt::format("{:g}, {:g}, {:g}, {:g}", numbers[0], numbers[1], numbers[2], numbers[3]);
}

std::string describe(const ClipFacts& clip, const Section& section)
{
  std::string text{section.head};
  if (!clip.available)
    return text.append(section.unavailable);
  text += fmt::format("    {}{}\n", withoutPrefix(clip.components),
                      wordFor(clip.pixelDepth, depthWords, "[Unknown bit depth]"));
  text += fmt::format("    Premultiplication : {}\n",
                      wordFor(clip.premultiplication, premultiplicationWords, "[Unknown premult]"));
  text += fmt::format("    Field order : {}\n", wordFor(clip.fieldOrder, fieldWords, "[Unknown field order]"));
  text += fmt::format("{}{}\n", section.node, clip.connected ? "Connected" : "Not connected");
  text += clip.continuousSamples ? section.continuous : "    Discontinuous samples\n";
  text += fmt::format("    Resolution : {}\n", four(clip.format));
  text += fmt::format("    Pixel aspect ratio : {:g}\n", clip.pixelAspectRatio);
  text += fmt::format("    Frame rate : {:g}\n", clip.frameRate);
  text += fmt::format("    Frame range : {:g} ... {:g}\n", clip.frameRange[0], clip.frameRange[1]);
  text += fmt::format("    Region of definition : {}\n\n", four(clip.regionOfDefinition));
  return text;
}

}  // namespace

std::string aboutText()
{
  return "\nMorvellan for Natron, ver 3.7.\n\n\n"
         "  Film Lab Processing, Cine Camera and Print Film Stocks, Halation, Film Grain, Resizing, Textures, "
         "Details.\n\n"
         "  Licensed under the Apache License, Version 2.0.\n"
         "  Problems and questions go to the project's issue list.\n\n"
         " Note : Morvellan requires nVidia Studio - or Game Ready - Driver ver. 527.41, or higher";
}

std::string clipInfoText(const ClipFacts& source, const ClipFacts& output, const std::array<double, 2>& renderScale)
{
  return fmt::format("Morvellan Clip Info :\n\n{}{}    Render Scale : {:g}, {:g}", describe(source, sourceSection),
                     describe(output, outputSection), renderScale[0], renderScale[1]);
}

}  // namespace morvellan::gpu
