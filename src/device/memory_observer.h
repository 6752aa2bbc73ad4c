// Who wants to hear of memory that is taken and given back, of copies, and of the device that is current meanwhile.
#pragma once

#include "device/memory.h"

namespace morvellan::MORVELLAN_TARGET
{

// Called on the thread that acts, whose current device `currentDevice` tells.
class MemoryObserver
{
public:
  virtual ~MemoryObserver() = default;
  // Before memory is taken; a std::bad_alloc from here refuses it.
  virtual void asked(MemoryKind, size_t /*bytes*/) {}
  virtual void taken(const void* memory, MemoryKind kind, size_t bytes) = 0;
  virtual void givenBack(const void* memory) = 0;
  virtual void copied(const void* /*to*/, const void* /*from*/, size_t /*bytes*/) {}
  virtual void madeCurrent(int /*device*/) {}
  virtual void enabledPeerAccess(int /*device*/, int /*other*/) {}
};

// The observer of this target's memory from now on, which must live until it is replaced; null for nobody.
void observeMemory(MemoryObserver* observer);

}  // namespace morvellan::MORVELLAN_TARGET
