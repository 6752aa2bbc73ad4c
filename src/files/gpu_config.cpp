// Parsing, messages and rewriting of the GPU configuration file.
#include "files/gpu_config.h"

#include <array>
#include <charconv>
#include <cstdio>
#include <filesystem>
#include <memory>

#include <fmt/format.h>

#include "files/whole_write.h"

namespace morvellan::files
{
namespace
{

namespace fs = std::filesystem;

constexpr std::size_t lineLimit = 255;

std::string_view takeLine(std::string_view& bytes)
{
  const std::size_t end = bytes.substr(0, lineLimit).find('\n');
  const std::size_t taken = end != std::string_view::npos ? end + 1 : std::min(bytes.size(), lineLimit);
  const std::string_view line = bytes.substr(0, end != std::string_view::npos ? end : taken);
  bytes.remove_prefix(taken);
  return line;
}

// As atoi reads it: blanks, a sign, digits, and 0 where no digits are. Out of range gives -1, which no key allows.
int toInt(std::string_view text)
{
  const std::size_t start = text.find_first_not_of(" \t\v\f\r");
  text.remove_prefix(std::min(start, text.size()));
  if (text.size() > 1 && text.front() == '+' && text[1] != '-')
    text.remove_prefix(1);
  int value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  return error == std::errc::result_out_of_range ? -1 : value;
}

std::optional<int> valueBehind(std::string_view line, std::string_view key)
{
  const std::size_t at = line.find(key);
  if (at == std::string_view::npos)
    return std::nullopt;
  return toInt(line.substr(at + key.size()));
}

bool isWithin(int value, int last)
{
  return value >= 0 && value <= last;
}

struct CloseFile
{
  void operator()(std::FILE* file) const { std::fclose(file); }
};

}  // namespace

std::string formatGpuConfig(const GpuConfig& config)
{
  return fmt::format("{}{}\n{}{}\n", gpuSelectionKey, config.gpuSelection, grainDepthKey, config.grainDepth);
}

ParsedGpuConfig parseGpuConfig(std::string_view bytes)
{
  ParsedGpuConfig parsed;
  const std::optional<int> selection = valueBehind(takeLine(bytes), gpuSelectionKey);
  if (!selection || !isWithin(*selection, 3))
  {
    parsed.fault = selection ? GpuConfigFault::selectionInvalid : GpuConfigFault::selectionMissing;
    return parsed;
  }
  parsed.values.gpuSelection = *selection;

  const std::optional<int> depth = valueBehind(takeLine(bytes), grainDepthKey);
  if (!depth || !isWithin(*depth, 7))
  {
    parsed.fault = depth ? GpuConfigFault::depthInvalid : GpuConfigFault::depthMissing;
    return parsed;
  }
  parsed.values.grainDepth = *depth;
  return parsed;
}

GpuConfigFile::GpuConfigFile(std::string folder) : folder_(std::move(folder))
{
  const char separator = folder_.find('\\') != std::string::npos && folder_.find('/') == std::string::npos ? '\\' : '/';
  if (folder_.empty() || (folder_.back() != '/' && folder_.back() != '\\'))
    folder_ += separator;
  path_ = folder_ + std::string{gpuConfigName};
}

// Two lines of the longest kind are all that is ever looked at, so no more is read, however large the file. Only a
// regular file is opened: a pipe in its place would block.
std::optional<std::string> GpuConfigFile::readBytes() const
{
  std::error_code error;
  if (!fs::is_regular_file(path_, error))
    return std::nullopt;
  const std::unique_ptr<std::FILE, CloseFile> file{std::fopen(path_.c_str(), "rb")};
  if (!file)
    return std::nullopt;
  std::array<char, 2 * lineLimit> buffer{};
  const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), file.get());
  if (std::ferror(file.get()) != 0)
    return std::nullopt;
  return std::string{buffer.data(), count};
}

bool GpuConfigFile::write(const GpuConfig& config) const
{
  std::error_code ignored;  // a folder that can't be made shows in the write
  fs::create_directories(folder_, ignored);
  return !writeWhole(path_, formatGpuConfig(config));
}

std::string GpuConfigFile::faultMessage(GpuConfigFault fault) const
{
  switch (fault)
  {
  case GpuConfigFault::selectionMissing:
    return fmt::format("Morvellan : Unable to read '{}' in '{}'. Morvellan will use Natron's Primary GPU.",
                       gpuSelectionKey, path_);
  case GpuConfigFault::selectionInvalid:
    return fmt::format("Morvellan : Invalid GPU set in '{}'. Set '{}' to 0, 1, 2, or 3. Morvellan will use Natron's "
                       "Primary GPU.",
                       path_, gpuSelectionKey);
  case GpuConfigFault::depthMissing:
    return fmt::format("Morvellan : Unable to read '{}' in '{}'.", grainDepthKey, path_);
  case GpuConfigFault::depthInvalid:
    return fmt::format("Morvellan : Invalid Grain Depth set in '{}'.", path_);
  case GpuConfigFault::none:
    break;
  }
  return {};
}

GpuConfigFile::Reading GpuConfigFile::read() const
{
  Reading reading;
  if (const std::optional<std::string> bytes = readBytes())
  {
    const ParsedGpuConfig parsed = parseGpuConfig(*bytes);
    reading.values = parsed.values;
    if (parsed.fault == GpuConfigFault::none)
      return reading;
    reading.messages.push_back(faultMessage(parsed.fault));
  }
  else
  {
    reading.messages.push_back(
        fmt::format("Morvellan : For very first-time use of Morvellan, disregard this message : Unable to open "
                    "Morvellan's GPU config file - '{}'. Morvellan will use Natron's Primary GPU.",
                    path_));
  }
  if (!write(reading.values))
    reading.messages.push_back(fmt::format(
        "Morvellan : Unable to create {} in '{}'. Check file and folder permissions.", gpuConfigName, folder_));
  return reading;
}

std::optional<GpuConfig> GpuConfigFile::stored() const
{
  const std::optional<std::string> bytes = readBytes();
  if (!bytes)
    return std::nullopt;
  const ParsedGpuConfig parsed = parseGpuConfig(*bytes);
  return parsed.fault == GpuConfigFault::none ? std::optional{parsed.values} : std::nullopt;
}

std::optional<std::string> GpuConfigFile::saveReverted(int grainDepth) const
{
  if (write({.gpuSelection = 0, .grainDepth = grainDepth}))
    return std::nullopt;
  return fmt::format("Morvellan : Unable to create '{}' file in '{}'. Check file and folder permissions. Reverted to "
                     "1st GPU in Morvellan's list",
                     gpuConfigName, folder_);
}

std::optional<std::string> GpuConfigFile::saveSelection(const GpuConfig& config) const
{
  if (write(config))
    return std::nullopt;
  return fmt::format("Morvellan : Unable to edit | create '{}' file in '{}'. The GPU selection change can't be saved. "
                     "Check file and folder permissions",
                     gpuConfigName, folder_);
}

std::optional<std::string> GpuConfigFile::saveGrainDepth(const GpuConfig& config) const
{
  if (write(config))
    return std::nullopt;
  return fmt::format("Morvellan :  Unable to edit '{}' file in '{}'. Check file and folder permissions. Grain Depth "
                     "Resolution remains unchanged",
                     gpuConfigName, folder_);
}

}  // namespace morvellan::files
