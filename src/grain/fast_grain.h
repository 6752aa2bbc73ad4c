// The fast form of the grain kernels on the CPU, equal to them bit for bit: many pixels look at one cell each at once,
// and only cells that hold a grain are drawn.
#pragma once

#include <span>

#include "device/queue.h"
#include "grain/grain.h"

namespace morvellan::MORVELLAN_TARGET
{

// Whether the fast form's ranges hold: cell coordinates exact in float, offsets and reach of a bearable size.
bool fastGrainFits(const GrainLaunch& launch, float tableScale);

// For launches that fit and share their grain.
void renderGrainFast(const Queue& queue, std::span<const GrainLaunch> launches, float tableScale);

}  // namespace morvellan::MORVELLAN_TARGET
