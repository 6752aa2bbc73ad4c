// The texts behind the buttons `CudaInfo`, `ClipInfo` and `About`.
// They are composed here and shown by the instance through the host's message suite.
#pragma once

#include <array>
#include <string>

#include "gpu/gpu_platform.h"

namespace morvellan::gpu
{

[[nodiscard]] std::string aboutText();

// A failing query writes its line and the report goes on.
[[nodiscard]] std::string cudaInfoText(GpuPlatform& platform);

// A clip as the host describes it; strings are the values of the host's properties.
struct ClipFacts
{
  bool available = false;
  std::string components;         // "OfxImageComponentRGBA"
  std::string pixelDepth;         // "OfxBitDepthFloat"
  std::string premultiplication;  // "OfxImageUnPreMultiplied"
  std::string fieldOrder;         // "OfxFieldNone"
  bool connected = false;
  bool continuousSamples = false;
  std::array<double, 4> format = {};  // x1, y1, x2, y2 in pixels
  double pixelAspectRatio = 1.0;
  double frameRate = 0.0;                         // frames a second
  std::array<double, 2> frameRange = {};          // first, last
  std::array<double, 4> regionOfDefinition = {};  // x1, y1, x2, y2 in canonical coordinates
};

[[nodiscard]] std::string clipInfoText(const ClipFacts& source, const ClipFacts& output,
                                       const std::array<double, 2>& renderScale);

}  // namespace morvellan::gpu
