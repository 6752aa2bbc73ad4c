// Memory of the C library in the place of TBB's, beside the loops of this folder: TBB passes what one thread gave back
// to another unseen by the sanitizer, which would take the two for users of the same memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>

inline void* scalable_malloc(std::size_t bytes)
{
  return std::malloc(bytes);
}

inline void scalable_free(void* memory)
{
  std::free(memory);
}

// A pool without a stock: each piece comes from the policy and goes back to it.
namespace rml
{

struct MemPoolPolicy
{
  void* (*allocate)(std::intptr_t, std::size_t&);
  int (*release)(std::intptr_t, void*, std::size_t);

  MemPoolPolicy(void* (*allocate)(std::intptr_t, std::size_t&), int (*release)(std::intptr_t, void*, std::size_t))
      : allocate(allocate), release(release)
  {
  }
};

struct MemoryPool
{
  MemPoolPolicy policy;
};

enum MemPoolError
{
  POOL_OK,
};

inline MemPoolError pool_create_v1(std::intptr_t, const MemPoolPolicy* policy, MemoryPool** pool)
{
  *pool = new MemoryPool{*policy};
  return POOL_OK;
}

inline bool pool_destroy(MemoryPool* pool)
{
  delete pool;
  return true;
}

inline void* pool_malloc(MemoryPool* pool, std::size_t bytes)
{
  return pool->policy.allocate(0, bytes);
}

inline bool pool_free(MemoryPool* pool, void* memory)
{
  return pool->policy.release(0, memory, 0) == 0;
}

}  // namespace rml
