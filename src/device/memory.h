// Device and pinned memory, owned by value, and the copies between them. On the CPU both are plain aligned memory.
#pragma once

#include <cstddef>
#include <utility>

#include "device/lanes.h"

namespace morvellan::MORVELLAN_TARGET
{

// Bytes that every allocation carries beyond its size, so that a launch may read and write two groups of `lanes` whole
// RGBA pixels from any pixel of a frame.
inline constexpr size_t paddingBytes = 2 * 16 * 4 * 4 + 64;

enum class MemoryKind
{
  Device,  // of the current device
  Pinned,  // host memory that devices copy from and to quickly
};

// 64-byte aligned; contents undefined. Throws std::bad_alloc.
void* allocate(MemoryKind kind, size_t bytes);
void release(MemoryKind kind, void* memory) noexcept;

// Whether the host may read and write device memory in place.
#ifdef MORVELLAN_TARGET_IS_CUDA
inline constexpr bool deviceIsHost = false;
#else
inline constexpr bool deviceIsHost = true;
#endif

enum class CopyKind
{
  HostToDevice = 1,
  DeviceToHost = 2,
  DeviceToDevice = 3,
  Default = 4,  // the direction follows from the pointers
};

void copy(void* to, const void* from, size_t bytes, CopyKind kind);
// Every byte becomes `value`.
void fill(void* memory, int value, size_t bytes);

// An owned array of T on the device that was current when it was made.
template <typename T>
class Buffer
{
public:
  Buffer() = default;
  explicit Buffer(size_t count, MemoryKind kind = MemoryKind::Device)
      : memory(static_cast<T*>(allocate(kind, count * sizeof(T)))), elements(count), kind(kind)
  {
  }
  Buffer(Buffer&& other) noexcept
      : memory(std::exchange(other.memory, nullptr)), elements(std::exchange(other.elements, 0)), kind(other.kind)
  {
  }
  Buffer& operator=(Buffer&& other) noexcept
  {
    std::swap(memory, other.memory);
    std::swap(elements, other.elements);
    std::swap(kind, other.kind);
    return *this;
  }
  ~Buffer() { reset(); }

  void reset() noexcept
  {
    if (memory)
      release(kind, std::exchange(memory, nullptr));
    elements = 0;
  }
  T* data() const { return memory; }
  size_t size() const { return elements; }
  explicit operator bool() const { return memory != nullptr; }

private:
  T* memory = nullptr;
  size_t elements = 0;
  MemoryKind kind = MemoryKind::Device;
};

}  // namespace morvellan::MORVELLAN_TARGET
