// The plan from end to end: what the settings ask for, the order of the stages, and the frame's way in and out.
#include "pipeline/host/plan.h"

#include <array>

#include "pipeline/host/input_class.h"
#include "pipeline/host/planner.h"

namespace morvellan
{

std::string_view stageName(Stage stage)
{
  static constexpr std::array<std::string_view, 7> names{"upload", "geometry", "input",   "pitch",
                                                         "look",   "grain",    "download"};
  return names[static_cast<size_t>(stage)];
}

std::string_view slotName(Slot slot)
{
  static constexpr std::array<std::string_view, 8> names{"",       "host",    "frameA",        "frameB",
                                                         "frameB", "cropped", "ChannelPlanes", "output"};
  return names[static_cast<size_t>(slot)];
}

Planner::Planner(FrameRoute route, const FrameParams& params) : p(params), name(params), route(route)
{
  linear = isLinearInput(p.inputGamut);
  look = !p.soupBypassed || !p.printBypassed;
  pitch = !p.pitchBypassed && p.ensemblePitchGain != 1.0f;
  grain = !p.grainBypassed && p.grainChannelCount != 0;
  resized = p.resizeMode != 0;
  enhanced = route != FrameRoute::ReducePipeline && (p.enhancerHorizontal != 0.0f || p.enhancerVertical != 0.0f);
  cameraClip = p.cameraSoftClipActive != 0;
  soupClip = look && p.soupSoftClipActive;
  // Plain linear grain wants no compression; with nothing but exposure, halation or a clip on there is none either.
  const bool plainGrain = grain && p.grainLinear && !look;
  wantsCompression = linear && p.hdrCompress && !plainGrain && (look || pitch || grain || resized || enhanced);
}

std::vector<Step> Planner::plan()
{
  upload();
  if (resized)
    cropAndResample();
  else if (enhanced)
    enhanceAtUnitScale();
  else if (!look && !pitch && !grain)
  {
    inputToOtherFrame();
    download();
    return std::move(steps);
  }
  else
    inputInPlace();
  if (pitch)
    pitchBands();
  if (decoded)
    encode();
  if (look && grain && p.grainLinear)
    lookAroundLinearGrain();
  else if (look)
    lookThenGrain();
  else if (grain)
    grainAlone();
  else if (compressed)
    expand();
  download();
  return std::move(steps);
}

void Planner::add(Stage stage, Work work, std::string kernel, Slot from, Slot to, ClipFields clip, int channels)
{
  steps.push_back({stage, work, std::move(kernel), from, to, clip, channels});
}

void Planner::inPlace(Stage stage, std::string kernel, ClipFields clip)
{
  add(stage, Work::Colour, std::move(kernel), image, image, clip);
}

void Planner::across(Stage stage, std::string kernel, ClipFields clip)
{
  add(stage, Work::Colour, std::move(kernel), image, other(), clip);
  image = other();
}

void Planner::upload()
{
  if (fourChannels())
    add(Stage::Upload, Work::Upload, "", Slot::Host, Slot::FrameA);
  else
  {
    add(Stage::Upload, Work::Upload, "", Slot::Host, Slot::Packed, ClipFields::None, 3);
    add(Stage::Upload, Work::Colour, "RGB_RGBA_Kernel", Slot::Packed, Slot::FrameA);
  }
}

void Planner::download()
{
  const bool packed = image == Slot::Packed;
  if (p.targetWidth != p.frameWidth || p.targetHeight != p.frameHeight)
  {
    add(Stage::Download, Work::Clear, "", Slot::None, Slot::Output, ClipFields::None, packed ? 3 : 4);
    add(Stage::Download, Work::Pad, packed ? "Pad2DArrayRGB" : "Pad2DArrayRGBA", image, Slot::Output, ClipFields::None,
        packed ? 3 : 4);
    image = Slot::Output;
  }
  if (!fourChannels() && !packed)
  {
    // The frame that is not in use takes the packed pixels.
    const Slot to = image == Slot::FrameB ? Slot::FrameA : Slot::FrameB;
    add(Stage::Download, Work::Colour, "RGBA_RGB_Kernel", image, to, ClipFields::None, 3);
    image = to;
  }
  add(Stage::Download, Work::Download, "", image, Slot::Host, ClipFields::None, p.channelCount);
}

std::vector<Step> planFrame(FrameRoute route, const FrameParams& params)
{
  return Planner(route, params).plan();
}

}  // namespace morvellan
