// Any bytes as a Look file: what is read stays finite and few, every parameter stays in its range, and what is then
// saved is read again without a word.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "files/look_file.h"
#include "files/look_table.h"
#include "files/look_values.h"
#include "params/catalogue.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
  using namespace morvellan;
  std::size_t messages = 0;
  files::LookValues page;
  const auto count = [&](const std::string&) { ++messages; };
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const std::vector<double> values = files::applyLook(bytes, page, count);
  if (values.size() > files::lookFieldCount || messages > values.size() + 1)
    std::abort();
  for (const double value : values)
    if (!std::isfinite(value))
      std::abort();
  // The rest costs many times what the reader does: one input in sixteen pays it.
  if (size % 16 != 0)
    return 0;
  for (const params::Param& param : params::catalogue())
    if (param.range && !(page.number(param.name) >= param.range->min && page.number(param.name) <= param.range->max))
      std::abort();
  messages = 0;
  files::LookValues again;
  if (files::applyLook(files::formatLook(page), again, count).size() != files::lookFieldCount || messages != 0)
    std::abort();
  return 0;
}
