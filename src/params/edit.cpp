// Writes of the rules: compared, clamped and bracketed in one place.
// A value that is no number goes to the lower end of the range.
#include "params/edit.h"

#include "params/catalogue.h"

namespace morvellan::params
{
namespace
{
class EditBlock
{
public:
  EditBlock(ParamAccess& access, std::string_view name) : access(access), name(name) { access.beginEdit(name); }
  ~EditBlock() { access.endEdit(name); }
  EditBlock(const EditBlock&) = delete;
  EditBlock& operator=(const EditBlock&) = delete;

private:
  ParamAccess& access;
  std::string_view name;
};

double heldInRange(std::string_view name, double value)
{
  const std::optional<Range>& range = at(name).range;
  if (!range)
    return value;
  if (!(value >= range->min))
    return range->min;
  return value > range->max ? range->max : value;
}
}  // namespace

void write(ParamAccess& access, std::string_view name, double value)
{
  const double held = heldInRange(name, value);
  if (access.number(name) != held)
    access.setNumber(name, held);
}

void writeRgb(ParamAccess& access, std::string_view name, const Rgb& value)
{
  if (access.rgb(name) != value)
    access.setRgb(name, value);
}

void writeDerived(ParamAccess& access, std::string_view name, double value)
{
  const double held = heldInRange(name, value);
  if (access.number(name) == held)
    return;
  const EditBlock block(access, name);
  access.setNumber(name, held);
}

void writeDerivedRgb(ParamAccess& access, std::string_view name, const Rgb& value)
{
  if (access.rgb(name) == value)
    return;
  const EditBlock block(access, name);
  access.setRgb(name, value);
}

void writeDefault(ParamAccess& access, std::string_view name)
{
  const Param& param = at(name);
  if (param.kind == Kind::Rgb)
    writeRgb(access, name, param.defaults);
  else
    write(access, name, param.defaults[0]);
}
}  // namespace morvellan::params
