// Frames and planes of the colour tests: host values copied to the device, run through a kernel, and read back.
#pragma once

#include <array>
#include <vector>

#include "colour/colour_kernels.h"
#include "device/memory.h"

namespace morvellan::MORVELLAN_TARGET::colour_test
{

inline Buffer<float> toDevice(const std::vector<float>& values)
{
  Buffer<float> buffer(values.size());
  copy(buffer.data(), values.data(), values.size() * sizeof(float), CopyKind::HostToDevice);
  return buffer;
}

inline std::vector<float> toHost(const Buffer<float>& buffer)
{
  std::vector<float> values(buffer.size());
  copy(values.data(), buffer.data(), values.size() * sizeof(float), CopyKind::DeviceToHost);
  return values;
}

// An in-place kernel over a frame of one row.
inline std::vector<float> inPlace(ColourKernel kernel, const std::vector<float>& frame, ColourArguments arguments)
{
  const Buffer<float> buffer = toDevice(frame);
  const Buffer<float> companion = toDevice(std::vector<float>(frame.size(), -1.0f));
  arguments.destination = buffer.data();
  arguments.companion = companion.data();
  arguments.width = static_cast<int>(frame.size()) / arguments.channels;
  arguments.height = 1;
  runColour(Queue{}, kernel, arguments);
  return toHost(buffer);
}

// A kernel from a frame of one row to another.
inline std::vector<float> toFrame(ColourKernel kernel, const std::vector<float>& frame, ColourArguments arguments)
{
  const Buffer<float> source = toDevice(frame);
  const Buffer<float> destination = toDevice(std::vector<float>(frame.size(), -1.0f));
  arguments.source = source.data();
  arguments.destination = destination.data();
  arguments.width = static_cast<int>(frame.size()) / arguments.channels;
  arguments.height = 1;
  runColour(Queue{}, kernel, arguments);
  return toHost(destination);
}

using PlaneSet = std::array<std::vector<float>, 4>;

// A kernel from a frame of one row to planes; planes that it does not write stay -1.
inline PlaneSet toPlanes(ColourKernel kernel, const std::vector<float>& frame, ColourArguments arguments)
{
  const Buffer<float> source = toDevice(frame);
  const size_t pixels = frame.size() / static_cast<size_t>(arguments.channels);
  std::array<Buffer<float>, 4> planes;
  for (size_t k = 0; k < 4; ++k)
  {
    planes[k] = toDevice(std::vector<float>(pixels, -1.0f));
    arguments.planes[k] = planes[k].data();
  }
  arguments.source = source.data();
  arguments.width = static_cast<int>(pixels);
  arguments.height = 1;
  runColour(Queue{}, kernel, arguments);
  return {toHost(planes[0]), toHost(planes[1]), toHost(planes[2]), toHost(planes[3])};
}

// A kernel from planes to a frame of one row.
inline std::vector<float> fromPlanes(ColourKernel kernel, const PlaneSet& values, ColourArguments arguments)
{
  std::array<Buffer<float>, 4> planes;
  for (size_t k = 0; k < 4; ++k)
  {
    planes[k] = toDevice(values[k]);
    arguments.planes[k] = planes[k].data();
  }
  const size_t floats = values[0].size() * static_cast<size_t>(arguments.channels);
  const Buffer<float> destination = toDevice(std::vector<float>(floats, -1.0f));
  arguments.destination = destination.data();
  arguments.width = static_cast<int>(values[0].size());
  arguments.height = 1;
  runColour(Queue{}, kernel, arguments);
  return toHost(destination);
}

// An RGBA frame of neutral pixels.
inline std::vector<float> neutrals(const std::vector<float>& levels)
{
  std::vector<float> frame;
  for (const float level : levels)
    frame.insert(frame.end(), {level, level, level, 0.5f});
  return frame;
}

// The first channel of each RGBA pixel.
inline std::vector<float> reds(const std::vector<float>& frame)
{
  std::vector<float> values;
  for (size_t i = 0; i < frame.size(); i += 4)
    values.push_back(frame[i]);
  return values;
}

}  // namespace morvellan::MORVELLAN_TARGET::colour_test
