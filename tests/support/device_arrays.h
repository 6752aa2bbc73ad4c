// Arrays to the device and back, for engine tests.
#pragma once

#include <vector>

#include "device/memory.h"

namespace morvellan::MORVELLAN_TARGET
{

inline Buffer<float> upload(const std::vector<float>& values)
{
  Buffer<float> buffer(values.size());
  copy(buffer.data(), values.data(), values.size() * sizeof(float), CopyKind::HostToDevice);
  return buffer;
}

inline std::vector<float> download(const float* values, size_t count)
{
  std::vector<float> host(count);
  copy(host.data(), values, count * sizeof(float), CopyKind::DeviceToHost);
  return host;
}

inline std::vector<float> download(const Buffer<float>& buffer)
{
  return download(buffer.data(), buffer.size());
}

}  // namespace morvellan::MORVELLAN_TARGET
