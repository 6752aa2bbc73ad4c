// Memory, copies and device bookkeeping of the platform layer, for the CPU and for CUDA.
#include "device/memory.h"

#include <atomic>
#include <cstring>
#include <new>

#include "device/memory_observer.h"
#include "device/queue.h"

#ifndef MORVELLAN_TARGET_IS_CUDA

#include <cstdlib>

#include <sys/mman.h>

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

std::atomic<int> softwareDevices = 1;
std::atomic<bool> softwarePeers = true;
thread_local int current = 0;

constexpr size_t hugePage = size_t{2} << 20;

}  // namespace

int deviceCount()
{
  return softwareDevices;
}

void setSoftwareDevices(int count, bool peerAccess)
{
  softwareDevices = count;
  softwarePeers = peerAccess;
}

int currentDevice()
{
  return current;
}

bool canAccessPeer(int device, int other)
{
  return device != other && softwarePeers;
}

void synchronize() {}

namespace
{

void setDevice(int device)
{
  current = device;
}

void openPeer(int, int) {}

void* take(MemoryKind, size_t bytes)
{
  // Large frames on huge pages: the first touch of a fresh 4 KiB page costs more than many kernels do per pixel.
  const size_t alignment = bytes >= 2 * hugePage ? hugePage : 64;
  if (bytes > SIZE_MAX - paddingBytes - alignment)
    throw std::bad_alloc();
  const size_t padded = (bytes + paddingBytes + alignment - 1) / alignment * alignment;
  void* memory = std::aligned_alloc(alignment, padded);
  if (!memory)
    throw std::bad_alloc();
  if (alignment == hugePage)
    madvise(memory, padded, MADV_HUGEPAGE);
  return memory;
}

void giveBack(MemoryKind, void* memory) noexcept
{
  std::free(memory);
}

void transfer(void* to, const void* from, size_t bytes, CopyKind)
{
  if (bytes != 0)  // an empty buffer may have no address, which memcpy forbids
    std::memcpy(to, from, bytes);
}

}  // namespace

void fill(void* memory, int value, size_t bytes)
{
  if (bytes != 0)
    std::memset(memory, value, bytes);
}

}  // namespace morvellan::MORVELLAN_TARGET

#else

#include <cuda_runtime.h>

namespace morvellan::MORVELLAN_TARGET
{

int deviceCount()
{
  int count = 0;
  return cudaGetDeviceCount(&count) == cudaSuccess ? count : 0;
}

void setSoftwareDevices(int, bool) {}

int currentDevice()
{
  int device = 0;
  cudaGetDevice(&device);
  return device;
}

bool canAccessPeer(int device, int other)
{
  int can = 0;
  return cudaDeviceCanAccessPeer(&can, device, other) == cudaSuccess && can != 0;
}

void synchronize()
{
  cudaDeviceSynchronize();
}

namespace
{

void setDevice(int device)
{
  cudaSetDevice(device);
}

void openPeer(int device, int other)
{
  const int before = currentDevice();
  cudaSetDevice(device);
  cudaDeviceEnablePeerAccess(other, 0);  // already enabled is fine
  cudaGetLastError();
  cudaSetDevice(before);
}

void* take(MemoryKind kind, size_t bytes)
{
  void* memory = nullptr;
  const size_t padded = bytes + paddingBytes;
  const cudaError_t error = kind == MemoryKind::Pinned ? cudaMallocHost(&memory, padded) : cudaMalloc(&memory, padded);
  if (error != cudaSuccess)
  {
    cudaGetLastError();
    throw std::bad_alloc();
  }
  return memory;
}

void giveBack(MemoryKind kind, void* memory) noexcept
{
  if (kind == MemoryKind::Pinned)
    cudaFreeHost(memory);
  else
    cudaFree(memory);
}

void transfer(void* to, const void* from, size_t bytes, CopyKind kind)
{
  cudaMemcpy(to, from, bytes, static_cast<cudaMemcpyKind>(kind));
}

}  // namespace

void fill(void* memory, int value, size_t bytes)
{
  cudaMemset(memory, value, bytes);
}

}  // namespace morvellan::MORVELLAN_TARGET

#endif

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

std::atomic<MemoryObserver*> memoryObserver = nullptr;

}  // namespace

void observeMemory(MemoryObserver* observer)
{
  memoryObserver = observer;
}

void* allocate(MemoryKind kind, size_t bytes)
{
  MemoryObserver* const observer = memoryObserver;
  if (observer)
    observer->asked(kind, bytes);
  void* memory = take(kind, bytes);
  if (observer)
    observer->taken(memory, kind, bytes);
  return memory;
}

void release(MemoryKind kind, void* memory) noexcept
{
  if (MemoryObserver* observer = memoryObserver)
    observer->givenBack(memory);
  giveBack(kind, memory);
}

void copy(void* to, const void* from, size_t bytes, CopyKind kind)
{
  transfer(to, from, bytes, kind);
  if (MemoryObserver* observer = memoryObserver)
    observer->copied(to, from, bytes);
}

void makeCurrent(int device)
{
  setDevice(device);
  if (MemoryObserver* observer = memoryObserver)
    observer->madeCurrent(device);
}

void enablePeerAccess(int device, int other)
{
  openPeer(device, other);
  if (MemoryObserver* observer = memoryObserver)
    observer->enabledPeerAccess(device, other);
}

}  // namespace morvellan::MORVELLAN_TARGET
