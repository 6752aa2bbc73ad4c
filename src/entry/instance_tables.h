// The memory that an instance holds for its whole life: m_table and the six grain tables. It is taken in a fixed order,
// each failure has its message, and all of it is given back with the instance.
#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "pipeline/host/grain_tables.h"
#include "pipeline/host/m_table.h"

namespace morvellan
{

/// Where the tables' memory comes from. `allocate` answers null where there is none.
struct TableMemory
{
  void* (*allocate)(std::size_t bytes) = nullptr;
  void (*release)(void* memory) = nullptr;
};

/// Ordinary memory, for m_table.
TableMemory heapMemory();

/// An array of such memory, owned.
template <class T>
class TableArray
{
public:
  TableArray() = default;
  TableArray(const TableMemory& memory, std::size_t count)
      : data_(static_cast<T*>(memory.allocate(count * sizeof(T))), memory.release), count_(data_ ? count : 0)
  {
  }
  explicit operator bool() const { return data_ != nullptr; }
  T* data() const { return data_.get(); }
  std::span<T> span() const { return {data_.get(), count_}; }

private:
  std::unique_ptr<T, void (*)(void*)> data_{nullptr, [](void*) {}};
  std::size_t count_ = 0;
};

class InstanceTables
{
public:
  /// Builds m_table. The answer is the message of a failure.
  std::optional<std::string> buildProductTable(const TableMemory& memory);

  /// Takes the six tables of `entries` floats each, in the order Red-P, Red-N, Green-P, Green-N, Blue-P, Blue-N. The
  /// answer is the message of the one that failed; none after it is tried.
  std::optional<std::string> allocateGrainTables(const TableMemory& memory, std::size_t entries);

  /// Null where it could not be built.
  const unsigned char* productTable() const { return reinterpret_cast<const unsigned char*>(product_.data()); }
  GrainTables& grain() { return grain_; }

private:
  TableArray<ProductTable> product_;
  std::array<TableArray<float>, 6> arrays_;  // P and N of red, green, blue
  GrainTables grain_;
};

}  // namespace morvellan
