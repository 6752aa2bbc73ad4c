// Names of kernels whose member follows from the frame's class: gamut, channels, table.
#pragma once

#include <string>
#include <string_view>

#include "pipeline/host/frame_params.h"

namespace morvellan
{

class PlanNames
{
public:
  explicit PlanNames(const FrameParams& params) : p(params) {}

  std::string exposure() const;

  // prefix + gamut + suffix with the gamut of a linear clip: rec709, ACES_AP0, ACES_AP1, rec2020.
  std::string ofGamut(std::string_view prefix, std::string_view suffix) const;

  // prefix + "RGBA" or "RGB" + suffix by the clip's channels.
  std::string channels(std::string_view prefix, std::string_view suffix = "") const;

  // The way from LAB to linear light, and the per-index way into it.
  std::string labToLinear() const;
  std::string linearLab() const;

  std::string crop(bool clips, bool decodes, bool compresses, bool exposes) const;

  // The enhancer's kernel; only a horizontal amount needs none.
  std::string enhancer() const;

  // Whether LAB_Colorspace_RGBA, with the full curve table, inverts ColorSpace_LAB, with the short one.
  bool fullTableInvertsLab() const;

  // Whether XYZ_expand_RGB has a case for the clip.
  bool shortTableExpands() const;

  // Whether one of the joins inverts LAB_XYZ_compress_*: in RGBA its rows are the full table's, in RGB the short one's,
  // which Y_RGB_expand_RGB inverts everywhere and XYZ_expand_RGB where it has a case.
  bool compressedLabExpands(bool luminance) const;

  // "", "_RGB", "_Y" or "_Y_RGB".
  std::string expandSuffix(bool luminance) const;

private:
  const FrameParams& p;
};

}  // namespace morvellan
