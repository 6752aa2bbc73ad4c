// Who wants to hear of memory that is taken and given back.
#pragma once

#include "device/memory.h"

namespace morvellan::MORVELLAN_TARGET
{

// Called on the thread that takes or gives back.
class MemoryObserver
{
public:
  virtual ~MemoryObserver() = default;
  virtual void taken(const void* memory, MemoryKind kind, size_t bytes) = 0;
  virtual void givenBack(const void* memory) = 0;
};

// The observer of this target's memory from now on, which must live until it is replaced; null for nobody.
void observeMemory(MemoryObserver* observer);

}  // namespace morvellan::MORVELLAN_TARGET
