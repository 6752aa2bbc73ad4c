// Values in a vector that runs beside the catalogue.
#include "files/look_values.h"

#include "params/catalogue.h"

namespace morvellan::files
{

LookValues::LookValues()
{
  values_.reserve(params::catalogue().size());
  for (const params::Param& param : params::catalogue())
    values_.push_back(param.defaults);
}

params::Rgb& LookValues::at(std::string_view name)
{
  return values_[static_cast<std::size_t>(&params::at(name) - params::catalogue().data())];
}

const params::Rgb& LookValues::at(std::string_view name) const
{
  return values_[static_cast<std::size_t>(&params::at(name) - params::catalogue().data())];
}

}  // namespace morvellan::files
