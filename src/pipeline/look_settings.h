// From the frame's block of values to what the film kernels take. Kernels never see the block; this is the one place
// where its fields meet their settings.
#pragma once

#include "film/laboratory.h"
#include "film/print.h"
#include "film/soup.h"
#include "pipeline/host/frame_params.h"

namespace morvellan::MORVELLAN_TARGET
{

SoupLook soupLook(const FrameParams& p);
PrintLook printLook(const FrameParams& p);
LabSettings labSettings(const FrameParams& p);

}  // namespace morvellan::MORVELLAN_TARGET
