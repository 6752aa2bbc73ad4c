// The input stages and the geometry: exposure, halation, soft clips and the range compressor, on the frame or folded
// into the cut on its way to the resampler.
#include "pipeline/host/planner.h"

namespace morvellan
{

void Planner::exposureInPlace()
{
  if (p.exposureValue != 0.0f)
    inPlace(Stage::Input, name.exposure());
}

void Planner::halation()
{
  if (!p.halationBypassed)
    add(Stage::Input, Work::Halation, "halation", image, image);
}

void Planner::softClipInPlace(bool& pending, ClipFields fields)
{
  if (std::exchange(pending, false))
    inPlace(Stage::Input, "highlights_shadows_Kernel", fields);
}

void Planner::inputToOtherFrame()
{
  if (p.exposureValue != 0.0f)
  {
    if (cameraClip || !p.halationBypassed)
      inPlace(Stage::Input, name.exposure());
    else
      across(Stage::Input, name.exposure() + "_in_out");
  }
  halation();
  if (cameraClip)
    across(Stage::Input, "highlights_shadows_Kernel_in_out", ClipFields::Camera);
  cameraClip = false;
}

void Planner::inputInPlace()
{
  exposureInPlace();
  halation();
  const bool compressorClipsSoup = wantsCompression && soupClip;
  const bool folds = grain && (pitch || !look) && !compressorClipsSoup;
  if (!folds)
    softClipInPlace(cameraClip, ClipFields::Camera);
  if (compressorClipsSoup && !pitch)
    softClipInPlace(soupClip, ClipFields::Soup);
}

void Planner::cropAndResample()
{
  const bool reduces = route == FrameRoute::ReducePipeline;
  const bool compressorClipsSoup = wantsCompression && soupClip;
  const bool clipFolds = !reduces;
  // Of two clips the Soup's is the one next to the compressor.
  const bool cropClipsSoup = clipFolds && compressorClipsSoup;
  const bool cropClipsCamera = clipFolds && cameraClip && !compressorClipsSoup;
  const bool clips = cropClipsSoup || cropClipsCamera;
  decoded = p.processLinear && !linear;
  compressed = wantsCompression;
  const bool exposureFolds = !reduces && p.exposureValue != 0.0f && p.exposureKind == 1 && p.halationBypassed &&
                             !decoded && (clips || compressed) && !(cropClipsSoup && cameraClip);
  if (!exposureFolds)
    exposureInPlace();
  halation();
  if (!cropClipsCamera)
    softClipInPlace(cameraClip, ClipFields::Camera);
  if (compressorClipsSoup && !cropClipsSoup)
    softClipInPlace(soupClip, ClipFields::Soup);
  const ClipFields fields =
      cropClipsSoup ? ClipFields::Soup : (cropClipsCamera ? ClipFields::Camera : ClipFields::None);
  add(Stage::Geometry, Work::Colour, name.crop(clips, decoded, compressed, exposureFolds), image, Slot::Cropped,
      fields);
  cameraClip = false;
  if (compressorClipsSoup)
    soupClip = false;
  add(Stage::Geometry, Work::Resample, "ResizeTBB", Slot::Cropped, Slot::FrameA);
  if (enhanced)
    add(Stage::Geometry, Work::Enhance, name.enhancer(), Slot::FrameA, Slot::FrameA);
  image = Slot::FrameA;
}

void Planner::enhanceAtUnitScale()
{
  exposureInPlace();
  halation();
  softClipInPlace(cameraClip, ClipFields::Camera);
  if (p.processLinear && !linear)
  {
    inPlace(Stage::Input, "To_Linear_Kernel_RGBA");
    decoded = true;
  }
  if (wantsCompression)
    compress(Stage::Input);
  add(Stage::Geometry, Work::Resample, "ResizeTBB", image, Slot::FrameA);
  add(Stage::Geometry, Work::Enhance, name.enhancer(), Slot::FrameA, Slot::FrameA);
  image = Slot::FrameA;
}

void Planner::compress(Stage stage)
{
  softClipInPlace(soupClip, ClipFields::Soup);
  add(stage, Work::Colour, name.ofGamut("RGBA_", "_compress"), image, other());
  compressed = true;
}

void Planner::expand()
{
  across(Stage::Look, name.ofGamut("RGBA_", "_expand_sRGB"));
  compressed = false;
}

}  // namespace morvellan
