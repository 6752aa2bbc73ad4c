// A deterministic sum of a float plane: fixed blocks, double partials, added in block order, so that the result does
// not depend on the number of threads.
#pragma once

#include <cstddef>

#include "device/queue.h"

namespace morvellan::MORVELLAN_TARGET
{

// The sum of `count` floats of device memory, read on the host. Error below 1e-9 of the sum of the absolute values.
double sumPlane(const Queue& queue, const float* plane, ptrdiff_t count);

}  // namespace morvellan::MORVELLAN_TARGET
