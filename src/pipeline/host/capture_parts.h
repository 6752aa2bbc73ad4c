// The parts of a frame's capture, one function for each block of FrameParams. captureFrame calls them in the block's
// order. Each writes its own fields only, and skips what its switches say is not read.
#pragma once

#include "pipeline/host/frame_params.h"
#include "pipeline/host/parameter_values.h"

namespace morvellan
{

// Input encoding, exposure, HDR compensation, linear processing.
void captureInput(const ParameterValues& values, FrameParams& params);
void captureCameraSoftClip(const ParameterValues& values, FrameParams& params);

// Mode and amounts of whichever spatial enhancer is on: the one of the resize controls goes before that of the grain
// controls.
void captureEnhancer(const ParameterValues& values, FrameParams& params);

void capturePitch(const ParameterValues& values, FrameParams& params);

// Everything of grain but its tables. Needs the target size, gpuCount, and the render time in frames.
void captureGrain(const ParameterValues& values, double time, FrameParams& params);

void captureSoup(const ParameterValues& values, FrameParams& params);
void captureSoupAttributes(const ParameterValues& values, FrameParams& params);
void captureSoupRefinements(const ParameterValues& values, FrameParams& params);
void captureBleachAndTone(const ParameterValues& values, FrameParams& params);
void captureHalation(const ParameterValues& values, FrameParams& params);

// printBypassed and printProfile, which rest on inputGamut too.
void capturePrintSwitches(const ParameterValues& values, FrameParams& params);
void capturePrint(const ParameterValues& values, FrameParams& params);
void capturePrintAttributes(const ParameterValues& values, FrameParams& params);
void capturePrintRefinements(const ParameterValues& values, FrameParams& params);

}  // namespace morvellan
