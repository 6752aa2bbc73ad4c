// The table of 8-bit products.
#include "pipeline/host/m_table.h"

#include <cstddef>

namespace morvellan
{

void buildProductTable(ProductTable& table)
{
  for (std::size_t a = 0; a < 256; ++a)
  {
    const float fraction = static_cast<float>(a) * (1.0f / 255.0f);
    for (std::size_t b = 0; b < 256; ++b)
    {
      const float rounded = static_cast<float>(b) * fraction + 0.5f;
      table[a * 256 + b] = static_cast<std::uint8_t>(rounded);
    }
  }
}

}  // namespace morvellan
