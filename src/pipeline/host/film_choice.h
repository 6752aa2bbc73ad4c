// Which member of a film kernel family a frame launches: the smallest that its settings allow.
#pragma once

#include <string>
#include <string_view>

#include "pipeline/host/frame_params.h"

namespace morvellan
{

// After the laboratory.
std::string_view soupKernel(const FrameParams& p);
// On the negative, or on the decoded clip when the Soup is bypassed.
std::string_view printKernel(const FrameParams& p);
// The same two where grain on linear light stands between Soup and print.
std::string_view grainNegativeKernel(const FrameParams& p);
std::string_view grainPrintKernel(const FrameParams& p);
// After the laboratory, where grain on linear light ends the frame without a print. Silver retention belongs to the
// density, which the planes of grain do not have yet.
std::string_view grainRangeKernel(const FrameParams& p);
// After grain on linear light: the rest of the look, without the suffix of its layout.
std::string expandKernel(const FrameParams& p);

}  // namespace morvellan
