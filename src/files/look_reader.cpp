// The reader of Look files: lines by position, values by the table, and the rules of the page that a load repeats,
// because what the plug-in sets itself reaches no rule.
#include "files/look_file.h"

#include <algorithm>
#include <clocale>
#include <cstdlib>
#include <optional>

#include <fmt/format.h>

#include "files/look_rules.h"
#include "files/look_table.h"
#include "params/edit.h"
#include "params/panels.h"

namespace morvellan::files
{
namespace
{

constexpr std::size_t lineLimit = 44;

// What a C program reads of a line into a buffer of 45 bytes: to the line's end or the buffer's, and no further than a
// zero byte.
std::string_view takeLine(std::string_view& bytes)
{
  const std::size_t end = bytes.substr(0, lineLimit).find('\n');
  const std::size_t taken = end != std::string_view::npos ? end + 1 : std::min(bytes.size(), lineLimit);
  const std::string_view line = bytes.substr(0, taken);
  bytes.remove_prefix(taken);
  return line.substr(0, line.find('\0'));
}

// The value of a line: what stands around the label, less the last character, which is the end of the line. A last line
// without its end loses its last digit; the format knows no better.
std::optional<std::string> valueOf(std::string_view line, std::string_view label)
{
  const std::size_t at = line.find(label);
  if (at == std::string_view::npos)
    return std::nullopt;
  std::string value{line.substr(0, at)};
  value += line.substr(at + label.size());
  if (!value.empty())
    value.pop_back();
  return value;
}

// The fraction's sign is a full stop whatever the host's language is.
double toReal(const std::string& text)
{
#if defined(_WIN32)
  static const _locale_t plain = _create_locale(LC_ALL, "C");
  return _strtod_l(text.c_str(), nullptr, plain);
#else
  static const locale_t plain = newlocale(LC_ALL_MASK, "C", nullptr);
  return strtod_l(text.c_str(), nullptr, plain);
#endif
}

// As atoi and atof do, text that is no number counts as 0.
double toNumber(LookFormat format, const std::string& text)
{
  return format == LookFormat::whole ? static_cast<double>(std::strtol(text.c_str(), nullptr, 10)) : toReal(text);
}

// False where the line is not the field's.
bool readField(LookLoad& load, const LookField& field, std::string_view line, const Tell& tell)
{
  const std::optional<std::string> text = valueOf(line, field.label);
  if (!text)
  {
    tell(fmt::format("Morvellan : Unable to read '{}'. Aborting reads beyond this point in the Looks file...",
                     field.label));
    return false;
  }
  const LookRule& rule = lookRuleOf(field.parameter);
  double value = toNumber(field.format, *text);
  if (!(value >= field.least && value <= field.most))
  {
    tell(fmt::format("Morvellan : Set '{}' {}", field.label, field.range));
    value = rule.fallback ? rule.fallback(load) : field.otherwise;
  }
  load.values[field.parameter] = value;
  if (rule.set)
    rule.set(load, value);
  else
    load.set(field.parameter, value);
  if (rule.then)
    rule.then(load);
  return true;
}

// A text that is no Look, from some line on: no stock is to stand beside values that are not its own.
void switchStocksOff(params::ParamAccess& access)
{
  params::write(access, "CameraStock", 0.0);
  params::write(access, "PrintDisplayBypass", 1.0);
  params::write(access, "PrintProfile", 0.0);
  access.setVisible("PrintProfile", false);
  params::hidePrintStockControls(access);
  params::hide(access, params::printPointControls);
  access.setVisible("OutputDisplayGamut", false);
}

}  // namespace

std::vector<double> applyLook(std::string_view bytes, params::ParamAccess& access, const Tell& tell)
{
  LookLoad load{.access = access, .values = {}};
  std::vector<double> values;
  for (const LookField& field : lookFields())
  {
    if (bytes.empty())
      break;
    if (!readField(load, field, takeLine(bytes), tell))
    {
      switchStocksOff(access);
      break;
    }
    values.push_back(load.value(field.parameter));
  }
  return values;
}

}  // namespace morvellan::files
