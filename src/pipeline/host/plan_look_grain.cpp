// The look and grain: the film stages, the splits into planes, and the joins that invert them.
#include "pipeline/host/film_choice.h"
#include "pipeline/host/planner.h"

namespace morvellan
{

void Planner::split(std::string kernel, ClipFields fields)
{
  planesSplit = kernel;
  add(Stage::Grain, Work::Colour, std::move(kernel), image, Slot::Planes, fields);
}

void Planner::render()
{
  if (luminance())
  {
    add(Stage::Grain, Work::Colour, "RGB_RGB_Kernel_Y", Slot::Planes, Slot::Planes);
    add(Stage::Grain, Work::Render, p.lumaSigma == 0.0f ? "render_pixelR" : "render_variance", Slot::Planes,
        Slot::Planes);
    return;
  }
  bool plain = false, varying = false;
  for (int c = 0; c < 3; ++c)
    if (p.grainChannelOn[c])
      (p.grainSigma[c] == 0.0f ? plain : varying) = true;
  add(Stage::Grain, Work::Render,
      plain && varying ? "render_pixelR, render_variance" : (plain ? "render_pixelR" : "render_variance"), Slot::Planes,
      Slot::Planes);
}

void Planner::join(const std::string& rgbaName, const std::string& rgbName, bool last)
{
  const std::string kernel = (luminance() ? "Y_" : "") + (fourChannels() ? rgbaName : rgbName);
  const bool packs = last && !fourChannels();
  add(Stage::Grain, Work::Colour, kernel, Slot::Planes, packs ? Slot::Packed : Slot::FrameB, ClipFields::None,
      packs ? 3 : 4);
  image = packs ? Slot::Packed : Slot::FrameB;
}

void Planner::grainAlone()
{
  if (linear)
    grainOnLinearClip();
  else
    grainOnCodedClip();
}

void Planner::grainOnLinearClip()
{
  if (p.grainLinear)
  {
    if (planesSplit.empty())
      splitPlain();
    render();
    join("RGBA_src_Kernel", "RGB_src_Kernel", true);
  }
  else if (p.hdrCompress)
  {
    if (planesSplit.empty())
    {
      if (compressed)
        splitPlain();
      else
      {
        const ClipFields fields = takeCameraClip();
        split(name.channels(name.ofGamut("Lin_", fields == ClipFields::None ? "_compress_" : "_soft_clip_compress_")),
              fields);
      }
    }
    render();
    join("RGBA_expand_src", "RGB_expand_src", true);
  }
  else
  {
    splitWorkingLog();
    render();
    joinWorkingLog(true);
  }
}

void Planner::grainOnCodedClip()
{
  if (!p.grainLinear)
  {
    if (planesSplit.empty())
      splitPlain();
    render();
    join("RGBA_src_Kernel", "RGB_src_Kernel", true);
    return;
  }
  const bool fromPitch = !planesSplit.empty();
  if (!fromPitch)
  {
    const ClipFields fields = takeCameraClip();
    split(name.channels(fields == ClipFields::None ? "XYZ_compress_" : "Softclips_XYZ_compress_"), fields);
  }
  render();
  const bool shortRows = fromPitch && !luminance() && name.shortTableExpands();
  join("RGB_expand_RGBA", shortRows ? "XYZ_expand_RGB" : "RGB_expand_RGB", true);
}

void Planner::splitPlain()
{
  const ClipFields fields = takeCameraClip();
  if (fields == ClipFields::None)
    split(fourChannels() ? "src_RGBA_Kernel" : "src_RGBA_Kernel_RGB");
  else
    split(name.channels("highlights_shadows_Kernel_"), fields);
}

void Planner::splitWorkingLog()
{
  const ClipFields fields = takeCameraClip();
  split(fields == ClipFields::None ? (fourChannels() ? "Linear_to_RGBA_log" : "Linear_to_RGB_log")
                                   : name.channels("Linear_soft_clip_to_Log_"),
        fields);
}

void Planner::enterLook()
{
  softClipInPlace(cameraClip, ClipFields::Camera);
  if (wantsCompression && !compressed)
    compress(Stage::Look);
  softClipInPlace(soupClip, ClipFields::Soup);
}

void Planner::negative(std::string soupKernel)
{
  if (p.soupBypassed)
  {
    add(Stage::Look, Work::Lab, "film_lab_init_pfe", image, image);
    return;
  }
  add(Stage::Look, Work::Lab, "film_lab", image, Slot::None);
  add(Stage::Look, Work::Soup, std::move(soupKernel), Slot::None, image);
}

void Planner::lookThenGrain()
{
  enterLook();
  negative(std::string(soupKernel(p)));
  const bool printed = !p.printBypassed;
  if (grain && printed)
  {
    splitWorkingLog();
    render();
    joinWorkingLog(false);
  }
  if (printed)
    add(Stage::Look, Work::Print, std::string(printKernel(p)), image, image);
  else if (compressed)
    expand();
  if (!grain || printed)
    return;
  if (linear)
  {
    splitWorkingLog();
    render();
    joinWorkingLog(true);
  }
  else
  {
    splitPlain();
    render();
    join("RGBA_src_Kernel", "RGB_src_Kernel", true);
  }
}

void Planner::lookAroundLinearGrain()
{
  enterLook();
  const bool printed = !p.printBypassed;
  if (printed)
  {
    negative(std::string(grainNegativeKernel(p)));
    add(Stage::Grain, Work::Print, std::string(grainPrintKernel(p)), image, Slot::Planes);
  }
  else
  {
    add(Stage::Look, Work::Lab, "film_lab", image, Slot::None);
    add(Stage::Grain, Work::Soup, std::string(grainRangeKernel(p)), Slot::None, Slot::Planes);
  }
  render();
  const std::string kernel = expandKernel(p) + name.expandSuffix(luminance());
  const bool expandsAfter = compressed && !printed;
  const bool packs = !fourChannels() && !expandsAfter;
  add(Stage::Grain, Work::Expand, kernel, Slot::Planes, packs ? Slot::Packed : Slot::FrameB, ClipFields::None,
      packs ? 3 : 4);
  image = packs ? Slot::Packed : Slot::FrameB;
  if (expandsAfter)
    expand();
}

}  // namespace morvellan
