// m_table: rounded products of two 8-bit fractions, from which the spatial enhancer takes its curvature weights.
#pragma once

#include <array>
#include <cstdint>

namespace morvellan
{

using ProductTable = std::array<std::uint8_t, 256 * 256>;

// Fills entry a * 256 + b with the integer part of a / 255 * b + 0.5.
void buildProductTable(ProductTable& table);

}  // namespace morvellan
