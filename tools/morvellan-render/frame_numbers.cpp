// Frame ranges and sequence names.
#include "frame_numbers.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <regex>

#include <fmt/format.h>

#include "errors.h"

namespace morvellan::tool
{
namespace
{

std::optional<int> toInt(const std::string& text)
{
  int value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  return error == std::errc() && end == text.data() + text.size() ? std::optional(value) : std::nullopt;
}

std::string numbered(int frame, int digits)
{
  return frame < 0 ? fmt::format("-{:0{}}", -static_cast<long long>(frame), digits)
                   : fmt::format("{:0{}}", frame, digits);
}

}  // namespace

std::vector<int> parseFrames(std::string_view text)
{
  static const std::regex form(R"((-?\d+)(?:-(-?\d+)(?:x(\d+))?)?)");
  constexpr long long mostFrames = 10'000'000;
  std::match_results<std::string_view::const_iterator> match;
  if (!std::regex_match(text.begin(), text.end(), match, form))
  {
    throw UsageError(fmt::format("--frames {} is not of the form A-B or A-BxSTEP", text));
  }
  const std::optional<int> first = toInt(match[1].str());
  const std::optional<int> last = match[2].matched ? toInt(match[2].str()) : first;
  const std::optional<int> step = match[3].matched ? toInt(match[3].str()) : 1;
  if (!first || !last || !step)
  {
    throw UsageError(fmt::format("--frames {} holds a number that is too large", text));
  }
  if (*last < *first || *step == 0)
  {
    throw UsageError(
        fmt::format("--frames {} holds no frame; give the lower number first and a step of 1 or more", text));
  }
  if ((static_cast<long long>(*last) - *first) / *step >= mostFrames)
  {
    throw UsageError(fmt::format("--frames {} asks for more than {} frames", text, mostFrames));
  }
  std::vector<int> frames;
  for (long long frame = *first; frame <= *last; frame += *step)
  {
    frames.push_back(static_cast<int>(frame));
  }
  return frames;
}

FilePattern::FilePattern(const std::string& text) : text_(text)
{
  static const std::regex form(R"(([^#%]*)(#+|%(?:0(\d+))?d)([^#%]*))");
  const std::filesystem::path path(text);
  folder_ = path.parent_path();
  const std::string name = path.filename().string();
  std::smatch match;
  if (!std::regex_match(name, match, form))
  {
    return;
  }
  sequence_ = true;
  prefix_ = match[1].str();
  suffix_ = match[4].str();
  const std::string number = match[2].str();
  digits_ = number[0] == '#' ? static_cast<int>(number.size()) : toInt(match[3].str()).value_or(1);
  if (digits_ > 18)
  {
    throw UsageError(fmt::format("{} asks for frame numbers of {} digits; 18 are enough", text, digits_));
  }
}

FilePattern FilePattern::ofInput(const std::string& text)
{
  std::error_code failure;
  if (!std::filesystem::is_regular_file(text, failure))
  {
    return FilePattern(text);
  }
  FilePattern file;
  file.text_ = text;
  return file;
}

std::filesystem::path FilePattern::at(int frame) const
{
  return sequence_ ? folder_ / (prefix_ + numbered(frame, digits_) + suffix_) : std::filesystem::path(text_);
}

std::vector<int> FilePattern::existingFrames() const
{
  std::vector<int> frames;
  std::error_code failure;
  const std::filesystem::path folder = folder_.empty() ? "." : folder_;
  for (const auto& entry : std::filesystem::directory_iterator(folder, failure))
  {
    const std::string name = entry.path().filename().string();
    if (name.size() <= prefix_.size() + suffix_.size() || !name.starts_with(prefix_) || !name.ends_with(suffix_))
    {
      continue;
    }
    const std::string number = name.substr(prefix_.size(), name.size() - prefix_.size() - suffix_.size());
    // The number must be written as the pattern writes it: shot.7.exr is no frame of shot.%04d.exr.
    if (const std::optional<int> frame = toInt(number); frame && numbered(*frame, digits_) == number)
    {
      frames.push_back(*frame);
    }
  }
  std::sort(frames.begin(), frames.end());
  return frames;
}

bool frameNumberOf(const std::filesystem::path& file, int& number)
{
  static const std::regex form(R"(.*?(\d+)$)");
  const std::string stem = file.stem().string();
  std::smatch match;
  if (!std::regex_match(stem, match, form))
  {
    return false;
  }
  const std::optional<int> value = toInt(match[1].str());
  number = value.value_or(0);
  return value.has_value();
}

}  // namespace morvellan::tool
