// Allocation of the instance's tables, with the messages of its failures.
#include "entry/instance_tables.h"

#include <cstdlib>
#include <string_view>

#include <fmt/format.h>

namespace morvellan
{

namespace
{

// The names by which the messages call the tables.
constexpr std::array<std::string_view, 6> tableNames{"Red-P", "Red-N", "Green-P", "Green-N", "Blue-P", "Blue-N"};

}  // namespace

TableMemory heapMemory()
{
  return {.allocate = [](std::size_t bytes) { return std::malloc(bytes); },
          .release = [](void* memory) { std::free(memory); }};
}

std::optional<std::string> InstanceTables::buildProductTable(const TableMemory& memory)
{
  product_ = TableArray<ProductTable>(memory, 1);
  if (!product_)
    return "Morvellan : Unable to allocate m_table. PLACING MORVELLAN ON A NODE TREE / TIMELINE MAY CRASH NATRON";
  morvellan::buildProductTable(*product_.data());
  return std::nullopt;
}

std::optional<std::string> InstanceTables::allocateGrainTables(const TableMemory& memory, std::size_t entries)
{
  for (std::size_t i = 0; i < arrays_.size(); ++i)
  {
    arrays_[i] = TableArray<float>(memory, entries);
    if (!arrays_[i])
      return fmt::format("Morvellan : Insufficient RAM to allocate {}. PLACING MORVELLAN ON A NODE TREE / TIMELINE MAY "
                         "CRASH NATRON. Instead, try reducing Film Grain Resolution through Morvellan 'Manage' tab",
                         tableNames[i]);
  }
  grain_ = GrainTables({{{arrays_[0].span(), arrays_[1].span()},
                         {arrays_[2].span(), arrays_[3].span()},
                         {arrays_[4].span(), arrays_[5].span()}}});
  return std::nullopt;
}

}  // namespace morvellan
