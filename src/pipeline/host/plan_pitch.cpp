// The way into LAB, the pitch bands, and the way out: back to the clip's values, or straight into the planes of grain.
#include "pipeline/host/input_class.h"
#include "pipeline/host/planner.h"

namespace morvellan
{

void Planner::bands(std::string wayIn, ClipFields fields)
{
  add(Stage::Pitch, Work::Colour, std::move(wayIn), image, other(), fields);
  add(Stage::Pitch, Work::Bands, "pitch", image, other());
  image = other();
}

void Planner::pitchBands()
{
  if (decoded)
  {
    bands("ColorSpace_Linear_LAB");
    across(Stage::Pitch, "LAB_Linear_Colorspace_in_out");
    return;
  }
  if (linear)
    pitchOfLinearClip();
  else
    pitchOfCodedClip();
}

void Planner::pitchOfLinearClip()
{
  if (grain && !look && !compressed)
  {
    // The way out is a per-index kernel, so the way in has its rows.
    const ClipFields fields = takeCameraClip();
    bands(fields == ClipFields::None ? name.linearLab() : name.ofGamut("Lin_", "_soft_clip_LAB"), fields);
    if (p.grainLinear)
      split(name.channels("LAB_Linear_Colorspace_", "_Kernel"));
    else if (p.hdrCompress)
    {
      split(name.channels("LAB_XYZ_compress_"));
      compressed = true;
    }
    else
      across(Stage::Pitch, "LAB_Linear_Colorspace_in_out");
    return;
  }
  if (wantsCompression && !compressed)
  {
    ClipFields fields = ClipFields::None;
    if (soupClip)
    {
      softClipInPlace(cameraClip, ClipFields::Camera);
      softClipInPlace(soupClip, ClipFields::Soup);
    }
    else
      fields = takeCameraClip();
    bands(name.ofGamut("Lin_", fields == ClipFields::None ? "_compress_LAB" : "_soft_clip_compress_LAB"), fields);
    compressed = true;
  }
  else if (cameraClip)
  {
    bands(name.ofGamut("Lin_", "_soft_clip_LAB"), takeCameraClip());
    across(Stage::Pitch, "LAB_Linear_Colorspace_in_out");
    return;
  }
  else
    bands(name.ofGamut("", "_LAB"));
  const bool expandsHere = compressed && !look && !grain;
  inPlace(Stage::Pitch, expandsHere ? name.ofGamut("LAB_Lin_", "_expand") : name.labToLinear());
  if (expandsHere)
    compressed = false;
}

void Planner::pitchOfCodedClip()
{
  if (resized && p.inputGamut == 10)
    inPlace(Stage::Pitch, "Clip_min_max");
  const ClipFields fields = takeCameraClip();
  bands(fields == ClipFields::None ? "ColorSpace_LAB" : "ColorSpace_LAB_softclips", fields);
  if (!grain || look)
    inPlace(Stage::Pitch, "LAB_Colorspace");
  else if (p.grainLinear && name.compressedLabExpands(luminance()))
  {
    split(name.channels("LAB_XYZ_compress_"));
    compressed = true;
  }
  else if (p.grainLinear || (fourChannels() && !name.fullTableInvertsLab()))
    inPlace(Stage::Pitch, "LAB_Colorspace");
  else
    split(name.channels("LAB_Colorspace_"));
}

void Planner::encode()
{
  inPlace(Stage::Pitch, "To_Log_Kernel");
  decoded = false;
}

}  // namespace morvellan
