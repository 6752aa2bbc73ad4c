#include "entry/instance_tables.h"

#include <cstdlib>
#include <vector>

#include <gtest/gtest.h>

namespace
{

using morvellan::InstanceTables;
using morvellan::TableMemory;

// Memory that counts what is out and refuses the allocation of a chosen number.
struct Counted
{
  static inline int made = 0;
  static inline int out = 0;
  static inline int refused = -1;

  static void reset(int refuse)
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

TEST(InstanceTables, EachFailureNamesItsTableAndEndsTheAllocation)
{
  const std::vector<std::string> names{"Red-P", "Red-N", "Green-P", "Green-N", "Blue-P", "Blue-N"};
  for (int i = 0; i < 6; ++i)
  {
    Counted::reset(i);
    {
      InstanceTables tables;
      EXPECT_EQ(tables.allocateGrainTables(Counted::memory(), 2048),
                "Morvellan : Insufficient RAM to allocate " + names[static_cast<std::size_t>(i)] +
                    ". PLACING MORVELLAN ON A NODE TREE / TIMELINE MAY CRASH NATRON. Instead, try reducing Film Grain "
                    "Resolution through Morvellan 'Manage' tab");
      EXPECT_EQ(Counted::made, i + 1);
      EXPECT_EQ(Counted::out, i);
    }
    EXPECT_EQ(Counted::out, 0);
  }
}

TEST(InstanceTables, AFailedProductTableSaysSo)
{
  Counted::reset(0);
  InstanceTables tables;
  EXPECT_EQ(tables.buildProductTable(Counted::memory()),
            "Morvellan : Unable to allocate m_table. PLACING MORVELLAN ON A NODE TREE / TIMELINE MAY CRASH NATRON");
  EXPECT_EQ(tables.productTable(), nullptr);
}

TEST(InstanceTables, EverythingIsReleasedWithTheInstance)
{
  Counted::reset(-1);
  {
    InstanceTables tables;
    EXPECT_EQ(tables.buildProductTable(Counted::memory()), std::nullopt);
    EXPECT_EQ(tables.allocateGrainTables(Counted::memory(), 2048), std::nullopt);
    EXPECT_EQ(Counted::out, 7);
    EXPECT_EQ(tables.productTable()[255 * 256 + 255], 255);
    EXPECT_EQ(tables.productTable()[0], 0);
  }
  EXPECT_EQ(Counted::out, 0);
}

}  // namespace
