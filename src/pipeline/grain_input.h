// What one share of a frame's grain needs on the device that renders it, owned until the frame's end.
#pragma once

#include "device/memory.h"
#include "grain/grain.h"
#include "pipeline/host/frame_params.h"
#include "pipeline/host/grain_dealing.h"

namespace morvellan::MORVELLAN_TARGET
{

// A table of the host as a texture of a device; memory of its own only where the device can't read the host's.
class GrainTable
{
public:
  // On the current device.
  GrainTable(const float* hostTable, int count);
  Texture1d texture() const { return {.values = memory ? memory.data() : host, .count = count}; }

private:
  const float* host;
  int count;
  Buffer<float> memory;
};

// The plane's texture is a copy, since the launch writes the plane. A device that can't reach the plane's own device
// works on a private plane, from which the rendered rows are copied back.
class GrainInput
{
public:
  // The share's device is current. `plane` has width * height values on device `home`.
  GrainInput(const GrainShare& share, const GrainSettings& settings, const FrameParams& params, float* plane, int width,
             int height, int home);

  int device() const { return share.device; }
  GrainChannel channel() const { return share.channel; }
  // What renders it.
  GrainLaunch launch() const;
  // Brings the rows home where the device rendered them into a private plane, and frees that.
  void collect();

private:
  GrainShare share;
  GrainSettings settings;
  float* plane;
  int width, height;
  GrainTable lambda, exp;
  Buffer<float> image, privatePlane;
  Buffer<FilterOffset> offsets;
};

// The settings of a channel, and of the luminance plane.
GrainSettings grainSettings(const FrameParams& params, GrainChannel channel);
GrainSettings luminanceGrainSettings(const FrameParams& params);

}  // namespace morvellan::MORVELLAN_TARGET
