// The planner: one pass down the stages, carrying what the image is at each point (its slot, whether it is decoded to
// linear light, whether it is range compressed), so that every way in finds the way out that inverts it.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "pipeline/host/plan.h"
#include "pipeline/host/plan_names.h"

namespace morvellan
{

class Planner
{
public:
  Planner(FrameRoute route, const FrameParams& params);
  std::vector<Step> plan();

private:
  const FrameParams& p;
  PlanNames name;
  FrameRoute route;
  std::vector<Step> steps;

  // What the settings ask for.
  bool linear, look, pitch, grain, resized, enhanced, cameraClip, soupClip, wantsCompression;

  // What the image is now.
  Slot image = Slot::FrameA;
  bool decoded = false;     // a log or gamma clip carried in linear light
  bool compressed = false;  // range compressed linear light
  std::string planesSplit;  // set when the way out of Pitch has split the image already

  bool fourChannels() const { return p.channelCount == 4; }
  Slot other() const { return image == Slot::FrameA ? Slot::FrameB : Slot::FrameA; }
  void add(Stage stage, Work work, std::string kernel, Slot from, Slot to, ClipFields clip = ClipFields::None,
           int channels = 4);
  void inPlace(Stage stage, std::string kernel, ClipFields clip = ClipFields::None);

  // The image moves to the other frame.
  void across(Stage stage, std::string kernel, ClipFields clip = ClipFields::None);
  void upload();

  // Exposure, halation and the camera's soft clip, each only if it is on.
  void exposureInPlace();
  void halation();
  void softClipInPlace(bool& pending, ClipFields fields);

  // With nothing after them, the last input kernel writes straight to the frame that is downloaded.
  void inputToOtherFrame();

  // On the frame, for the pipelines of unit scale. A soft clip may wait for a kernel that has it folded in: the way
  // into Pitch or the split into planes, in the pipelines with grain.
  void inputInPlace();

  // Crop, with the input stages folded in where a kernel has them, and resample to the target size.
  void cropAndResample();
  void enhanceAtUnitScale();

  // The Soup's clip, if it is due, and the range compressor: it writes both frames.
  void compress(Stage stage);
  void expand();
  void bands(std::string wayIn, ClipFields fields = ClipFields::None);
  ClipFields takeCameraClip() { return std::exchange(cameraClip, false) ? ClipFields::Camera : ClipFields::None; }
  void pitchBands();
  void pitchOfLinearClip();
  void pitchOfCodedClip();
  void encode();

  // Into the channel planes.
  void split(std::string kernel, ClipFields fields = ClipFields::None);

  bool luminance() const { return p.grainMode == 2 || p.grainMode == 4; }
  void render();

  // Out of the planes: the last join of an RGB clip packs it.
  void join(const std::string& rgbaName, const std::string& rgbName, bool last);
  void grainAlone();
  void grainOnLinearClip();
  void grainOnCodedClip();
  void splitPlain();
  void splitWorkingLog();
  void joinWorkingLog(bool last) { join("Log_RGBA_to_Linear_src_Kernel", "Log_RGB_to_Linear_src_Kernel", last); }

  // What every look starts with: the clips and the compressor, if they are still due.
  void enterLook();
  void negative(std::string soupKernel);

  // filmStage, with grain between negative and print, or after a negative that is not printed.
  void lookThenGrain();

  // The look cut in two, with grain on range compressed linear light between the halves.
  void lookAroundLinearGrain();
  void download();
};

}  // namespace morvellan
