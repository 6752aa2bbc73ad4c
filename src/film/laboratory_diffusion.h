// The laboratory with diffusion: after each cycle the developer spreads across the frame, so that the cycles run one by
// one. Exchanges are folded into the next cycle's load, and density and silver are stored in few of the cycles.
#pragma once

#include "film/laboratory.h"

namespace morvellan::MORVELLAN_TARGET
{

// As laboratory, for settings with a diffusion.
void laboratoryWithDiffusion(const Queue& queue, const LabFrame& frame, const LabSettings& settings);

}  // namespace morvellan::MORVELLAN_TARGET
