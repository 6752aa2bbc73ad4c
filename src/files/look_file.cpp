// Writing of Look files, and the opening of those that are to be read.
#include "files/look_file.h"

#include <fstream>
#include <iterator>
#include <optional>

#include <fmt/format.h>

#include "files/look_table.h"
#include "files/whole_write.h"

namespace morvellan::files
{
namespace
{

namespace fs = std::filesystem;

// Four fields hold the settings of whichever enhancer is on.
std::string enhancerSource(const params::ParamAccess& access, const std::string& parameter)
{
  const bool choice = parameter == "SpatialEnhancement";
  if (!choice && !parameter.ends_with("Enhancer"))
    return parameter;
  if (access.number("SpatialEnhancement") != 0.0)
    return parameter;
  if (access.number("SpatialEnhancer") == 0.0)
    return "";
  return choice ? "SpatialEnhancer" : parameter.substr(0, parameter.size() - std::size("Enhancer") + 1) + "Details";
}

double valueToWrite(const params::ParamAccess& access, const std::string& parameter)
{
  // Part of the format: the zones of three attributes are written as one.
  if (parameter == "ChrZone" || parameter == "VibZone")
    return access.number("HueZone");
  const std::string source = enhancerSource(access, parameter);
  return source.empty() ? 0.0 : access.number(source);
}

std::string formatValue(LookFormat format, double value)
{
  // Files hold the value of single precision.
  const auto narrowed = static_cast<double>(static_cast<float>(value));
  switch (format)
  {
  case LookFormat::whole:
    return fmt::format("{}", static_cast<int>(value));
  case LookFormat::oneDecimal:
    return fmt::format("{:.1f}", narrowed);
  case LookFormat::fourDecimals:
    break;
  }
  return fmt::format("{:.4f}", narrowed);
}

}  // namespace

std::string formatLook(const params::ParamAccess& access)
{
  std::string text;
  for (const LookField& field : lookFields())
    text += field.label + formatValue(field.format, valueToWrite(access, field.parameter)) + "\n";
  return text;
}

std::optional<std::string> readLook(const fs::path& path)
{
  std::error_code error;
  if (!fs::is_regular_file(path, error))
    return std::nullopt;
  std::ifstream file(path, std::ios::binary);
  std::string bytes(lookReadLimit, '\0');
  file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (file.bad() || !file.is_open())
    return std::nullopt;
  bytes.resize(static_cast<std::size_t>(file.gcount()));
  return bytes;
}

void saveLook(const fs::path& path, const params::ParamAccess& access, const Tell& tell)
{
  if (writeWholeOrInPlace(path, formatLook(access)))
    tell("Morvellan : Unable to create Look file. Check file and folder permissions");
}

void loadLook(const fs::path& path, params::ParamAccess& access, const Tell& tell)
{
  if (const std::optional<std::string> bytes = readLook(path))
    applyLook(*bytes, access, tell);
  else
    tell("Morvellan : Unable to open Look file. Check file and folder permissions");
}

}  // namespace morvellan::files
