// The catalogue itself: the sections of the page one after the other, and the look-up by name.
// Built on first use and kept for the life of the process.
#include "params/catalogue.h"

#include "params/page.h"

#include <fmt/format.h>
#include <stdexcept>
#include <unordered_map>

namespace morvellan::params
{
namespace
{
struct Catalogue
{
  std::vector<Param> params;
  std::unordered_map<std::string_view, const Param*> byName;

  Catalogue()
  {
    Page page;
    addInput(page);
    addResizeTextures(page);
    addSoup(page);
    addGrain(page);
    addPrintDisplay(page);
    addManage(page);
    params = page.take();
    for (const Param& param : params)
      byName.emplace(param.name, &param);
  }
};

const Catalogue& theCatalogue()
{
  static const Catalogue instance;
  return instance;
}
}  // namespace

std::span<const Param> catalogue()
{
  return theCatalogue().params;
}

const Param* find(std::string_view name)
{
  const auto found = theCatalogue().byName.find(name);
  return found == theCatalogue().byName.end() ? nullptr : found->second;
}

const Param& at(std::string_view name)
{
  const Param* param = find(name);
  if (!param)
    throw std::out_of_range(fmt::format("the catalogue holds no parameter named {}", name));
  return *param;
}
}  // namespace morvellan::params
