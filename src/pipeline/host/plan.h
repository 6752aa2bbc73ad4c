// What runs for a frame, in which order, on which buffers: the stage list of the seven pipelines as data.
// The pipelines run a plan step by step, the trace shows its launches, and docs/pipelines.md is printed from it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "pipeline/host/dispatch.h"
#include "pipeline/host/frame_params.h"

namespace morvellan
{

enum class Stage
{
  Upload,
  Geometry,
  Input,
  Pitch,
  Look,
  Grain,
  Download,
};

std::string_view stageName(Stage stage);

// Where pixels are. FrameA and FrameB are RGBA frames of the current size; Packed is FrameB's memory holding three
// floats a pixel; Cropped is a device frame of the crop's size on its way to the resampler; Output is a cleared frame
// of the output's size.
enum class Slot
{
  None,
  Host,
  FrameA,
  FrameB,
  Packed,
  Cropped,
  Planes,
  Output,
};

std::string_view slotName(Slot slot);

enum class Work
{
  Upload,    // host image to a frame
  Colour,    // a kernel of the colour families, by its name
  Halation,  // the whole halation stage
  Bands,     // the pitch cascade; FrameA or FrameB in LAB, result in the companion
  Lab,       // the laboratory: decoding and thirteen cycles; a frame to the laboratory's planes
  Soup,      // the laboratory's planes to a frame or to planes
  Print,     // a frame to a frame or to planes
  Render,    // grain on the planes
  Expand,    // planes after grain through the rest of the look to a frame
  Resample,  // Lanczos on the host, from Cropped or a frame to a FrameA of the target size
  Enhance,   // the spatial enhancer on the resampled image
  Clear,     // the output frame to black, transparent
  Pad,       // a frame placed in the output frame
  Download,  // a frame to the host image
};

// Which four soft clip values a step takes.
enum class ClipFields
{
  None,
  Camera,
  Soup,
};

struct Step
{
  Stage stage;
  Work work;
  std::string kernel;  // as launched; empty for transfers
  Slot from = Slot::None, to = Slot::None;
  ClipFields clip = ClipFields::None;
  int channels = 4;  // floats a pixel of the interleaved side

  bool operator==(const Step&) const = default;
};

// The steps of one frame. `route` is one of the seven pipelines.
std::vector<Step> planFrame(FrameRoute route, const FrameParams& params);

}  // namespace morvellan
