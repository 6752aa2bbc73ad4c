// Prints docs/pipelines.md: what runs for a frame, by pipeline and by settings, from the very plans that frames run.
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include <fmt/format.h>

#include "pipeline/host/plan.h"

namespace
{

using morvellan::FrameParams;
using morvellan::FrameRoute;
using morvellan::Step;

struct Clip
{
  std::string_view name;
  int inputGamut;
  bool hdrCompress;
};

constexpr Clip clips[] = {
    {"log clip", 47, false},
    {"display gamma clip", 27, false},
    {"linear clip", 0, false},
    {"linear clip, HDRcomp", 0, true},
};

struct Look
{
  std::string_view name;
  bool soup, print, grain, grainLinear;
};

constexpr Look looks[] = {
    {"no look", false, false, false, false},
    {"Soup", true, false, false, false},
    {"Soup and print", true, true, false, false},
    {"grain", false, false, true, false},
    {"grain, GrainLinear", false, false, true, true},
    {"Soup, grain", true, false, true, false},
    {"Soup, grain, GrainLinear", true, false, true, true},
    {"Soup, print, grain", true, true, true, false},
    {"Soup, print, grain, GrainLinear", true, true, true, true},
};

// A frame of 1920 by 1080 with exposure, halation and the camera's soft clip on.
FrameParams frame(const Clip& clip, const Look& look, bool pitch, FrameRoute route)
{
  FrameParams p{};
  p.inputGamut = clip.inputGamut;
  p.hdrCompress = clip.hdrCompress;
  p.exposureValue = 0.5f;
  p.exposureKind = clip.inputGamut == 47 ? 2 : 1;
  p.cameraSoftClipActive = 1;
  p.channelCount = 4;
  p.frameWidth = p.sourceWidth = p.targetWidth = 1920;
  p.frameHeight = p.sourceHeight = p.targetHeight = 1080;
  p.soupBypassed = !look.soup;
  p.printBypassed = !look.print || clip.inputGamut == 27;
  p.printProfile = 2;
  p.pitchBypassed = !pitch;
  p.ensemblePitchGain = pitch ? 1.2f : 1.0f;
  p.grainBypassed = !look.grain;
  p.grainChannelCount = look.grain ? 3 : 0;
  for (int& on : p.grainChannelOn)
    on = look.grain;
  p.grainLinear = look.grainLinear;
  switch (route)
  {
  case FrameRoute::EnlargeDetailsPipeline:
  case FrameRoute::EnlargeEnhancedPipeline:
    p.resizeMode = 1;
    p.sourceWidth = 960;
    p.sourceHeight = 540;
    p.enhancerHorizontal = p.enhancerVertical = 3.0f;
    p.enhancerMode = route == FrameRoute::EnlargeDetailsPipeline ? 2 : 1;
    break;
  case FrameRoute::ReducePipeline:
    p.resizeMode = 2;
    p.targetWidth = 960;
    p.targetHeight = 540;
    break;
  case FrameRoute::SameSizeTexturesPipeline:
  case FrameRoute::SameSizeDetailsPipeline:
    p.enhancerHorizontal = p.enhancerVertical = 3.0f;
    p.enhancerMode = route == FrameRoute::SameSizeDetailsPipeline ? 2 : 1;
    break;
  default:
    break;
  }
  return p;
}

std::string chain(const std::vector<Step>& steps)
{
  std::string text, stage;
  for (const Step& step : steps)
  {
    if (step.kernel.empty())
      continue;
    const std::string_view name = morvellan::stageName(step.stage);
    if (stage != name)
    {
      text += fmt::format("{}*{}:* ", text.empty() ? "" : "<br>", name);
      stage = name;
    }
    else
      text += ", ";
    const std::string_view from = morvellan::slotName(step.from);
    const std::string_view to = morvellan::slotName(step.to);
    const std::string_view clip = step.clip == morvellan::ClipFields::Camera ? " (camera clip)"
                                  : step.clip == morvellan::ClipFields::Soup ? " (Soup clip)"
                                                                             : "";
    const std::string way = from == to     ? fmt::format("in {}", to)
                            : from.empty() ? fmt::format("to {}", to)
                            : to.empty()   ? fmt::format("from {}", from)
                                           : fmt::format("{} to {}", from, to);
    text += fmt::format("`{}`{} {}", step.kernel, clip, way);
  }
  return text;
}

void printPipeline(std::string_view name, FrameRoute route, bool grainOnly, bool neverGrain)
{
  fmt::print("\n## {}\n\n| clip | settings | what runs |\n|---|---|---|\n", name);
  for (const Clip& clip : clips)
    for (const bool pitch : {false, true})
      for (const Look& look : looks)
      {
        if ((grainOnly && !look.grain) || (neverGrain && look.grain))
          continue;
        if (clip.inputGamut == 27 && look.print)
          continue;
        const FrameParams p = frame(clip, look, pitch, route);
        fmt::print("| {} | {}{} | {} |\n", clip.name, pitch ? "Pitch, " : "", look.name,
                   chain(morvellan::planFrame(route, p)));
      }
}

}  // namespace

int main()
{
  fmt::print("# What runs for a frame\n\n"
             "Printed by `build/release/bin/pipeline-map` from the plans that frames run "
             "(`src/pipeline/host/plan.cpp`); a test holds this file to that output. "
             "Every row has exposure and the camera's soft clip on, halation on, four channels, 1920 by 1080. "
             "`morvellan-render --trace` prints the launches of a real frame in the same order: the larger stages "
             "(halation, pitch, film_lab, the resampler) are several launches each.\n\n"
             "Slots: frameA and frameB are RGBA frames that take turns; ChannelPlanes are one plane a channel; "
             "cropped is the cut on its way to the resampler; output is the cleared output frame. "
             "The Details pipelines run what their Textures siblings run, on the amounts of the other enhancer.\n");
  printPipeline("SameSizeLookPipeline", FrameRoute::SameSizeLookPipeline, false, true);
  printPipeline("SameSizeGrainPipeline", FrameRoute::SameSizeGrainPipeline, true, false);
  printPipeline("SameSizeTexturesPipeline, SameSizeDetailsPipeline", FrameRoute::SameSizeTexturesPipeline, false,
                false);
  printPipeline("EnlargeEnhancedPipeline, EnlargeDetailsPipeline", FrameRoute::EnlargeEnhancedPipeline, false, false);
  printPipeline("ReducePipeline", FrameRoute::ReducePipeline, false, false);
  return 0;
}
