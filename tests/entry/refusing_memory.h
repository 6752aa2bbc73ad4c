// Memory for tables that refuses the allocation of a chosen number, and counts what is out.
#pragma once

#include <cstddef>
#include <cstdlib>

#include "entry/instance_tables.h"

namespace morvellan::test
{

// Table memory is plain functions, so the account is the process's.
struct RefusingMemory
{
  static inline int made = 0;  // allocations asked for since reset
  static inline int out = 0;
  static inline int refused = -1;

  static void reset(int refuse = -1)
  {
    made = 0;
    refused = refuse;
  }
  static TableMemory memory()
  {
    return {.allocate = [](std::size_t bytes) -> void*
            {
              if (made++ == refused)
                return nullptr;
              ++out;
              return std::malloc(bytes);
            },
            .release =
                [](void* memory)
            {
              --out;
              std::free(memory);
            }};
  }
};

}  // namespace morvellan::test
