#include "entry/instance_tables.h"

#include <vector>

#include <gtest/gtest.h>

#include "tests/entry/refusing_memory.h"

namespace
{

using morvellan::InstanceTables;
using morvellan::test::RefusingMemory;

TEST(InstanceTables, EachFailureNamesItsTableAndEndsTheAllocation)
{
  const std::vector<std::string> names{"Red-P", "Red-N", "Green-P", "Green-N", "Blue-P", "Blue-N"};
  for (int i = 0; i < 6; ++i)
  {
    RefusingMemory::reset(i);
    {
      InstanceTables tables;
      EXPECT_EQ(tables.allocateGrainTables(RefusingMemory::memory(), 2048),
                "Morvellan : Insufficient RAM to allocate " + names[static_cast<std::size_t>(i)] +
                    ". PLACING MORVELLAN ON A NODE TREE / TIMELINE MAY CRASH NATRON. Instead, try reducing Film Grain "
                    "Resolution through Morvellan 'Manage' tab");
      EXPECT_EQ(RefusingMemory::made, i + 1);
      EXPECT_EQ(RefusingMemory::out, i);
    }
    EXPECT_EQ(RefusingMemory::out, 0);
  }
}

TEST(InstanceTables, AFailedProductTableSaysSo)
{
  RefusingMemory::reset(0);
  InstanceTables tables;
  EXPECT_EQ(tables.buildProductTable(RefusingMemory::memory()),
            "Morvellan : Unable to allocate m_table. PLACING MORVELLAN ON A NODE TREE / TIMELINE MAY CRASH NATRON");
  EXPECT_EQ(tables.productTable(), nullptr);
}

TEST(InstanceTables, EverythingIsReleasedWithTheInstance)
{
  RefusingMemory::reset(-1);
  {
    InstanceTables tables;
    EXPECT_EQ(tables.buildProductTable(RefusingMemory::memory()), std::nullopt);
    EXPECT_EQ(tables.allocateGrainTables(RefusingMemory::memory(), 2048), std::nullopt);
    EXPECT_EQ(RefusingMemory::out, 7);
    EXPECT_EQ(tables.productTable()[255 * 256 + 255], 255);
    EXPECT_EQ(tables.productTable()[0], 0);
  }
  EXPECT_EQ(RefusingMemory::out, 0);
}

}  // namespace
