// Grain on the planes of a frame: its channels dealt to the devices, rendered there, and brought back.
#pragma once

#include <array>
#include <vector>

#include "pipeline/grain_input.h"

namespace morvellan::MORVELLAN_TARGET
{

// Renders in place: red, green and blue planes of width * height values on device params.gpuRed, or in the luminance
// modes the first of them with the luminance fields and red's tables. Channels that are off pass. What the launches
// read is the answer, red before green before blue; it may go once the frame is downloaded. params.gpuRed is current
// afterwards.
std::vector<GrainInput> grainStage(LaunchObserver* observer, const FrameParams& params,
                                   const std::array<float*, 3>& planes, int width, int height);

}  // namespace morvellan::MORVELLAN_TARGET
