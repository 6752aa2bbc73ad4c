// The GPU configuration file: two lines of text that keep the GPU choice and the grain depth from one run to the next.
// Reads, repairs and rewrites it; every problem is one message for the user and none stops the instance.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace morvellan::files
{

struct GpuConfig
{
  int gpuSelection = 0;  // 0..3: the 1st to 4th device of the discovered list renders first
  int grainDepth = 3;    // 0..7: see grainTableEntries

  friend bool operator==(const GpuConfig&, const GpuConfig&) = default;
};

inline constexpr std::string_view gpuConfigName = "morvellan_natron_gpu_config.txt";
inline constexpr std::string_view gpuSelectionKey = "Natron GPU selection(0,1,2,3)----------|";
inline constexpr std::string_view grainDepthKey = "Film Grain Depth(0,1,2,3,4,5,6,7)------|";

// Entries of one grain table: 0x800 at depth 0 (10 bits a channel), four times as many with each step,
// 0x2000000 at depth 7 (24 bits). `grainDepth` is 0..7; `grainLevels` is this less 1.
[[nodiscard]] constexpr int grainTableEntries(int grainDepth)
{
  return 0x800 << (2 * grainDepth);
}

// The two lines as the file holds them.
[[nodiscard]] std::string formatGpuConfig(const GpuConfig& config);

enum class GpuConfigFault
{
  none,
  selectionMissing,
  selectionInvalid,
  depthMissing,
  depthInvalid
};

struct ParsedGpuConfig
{
  GpuConfig values;  // what was read before the fault; the default from there on
  GpuConfigFault fault = GpuConfigFault::none;
};

// Any bytes are accepted. A line is read up to its end or 255 bytes, its key is searched for within it, and the value
// behind the key converted as by atoi, a number too large for an int counting as out of range.
[[nodiscard]] ParsedGpuConfig parseGpuConfig(std::string_view bytes);

class GpuConfigFile
{
public:
  explicit GpuConfigFile(std::string folder);

  struct Reading
  {
    GpuConfig values;
    std::vector<std::string> messages;  // in the order in which they are to be shown; usually none
  };

  // Opens and reads the file once. A file that is missing or bad is reported and written anew.
  [[nodiscard]] Reading read() const;

  // What a whole and valid file holds at this moment; nothing is reported or repaired.
  [[nodiscard]] std::optional<GpuConfig> stored() const;

  // Each writes both lines; the answer is the message of a failure.
  [[nodiscard]] std::optional<std::string> saveReverted(int grainDepth) const;  // selection 0
  [[nodiscard]] std::optional<std::string> saveSelection(const GpuConfig& config) const;
  [[nodiscard]] std::optional<std::string> saveGrainDepth(const GpuConfig& config) const;

  [[nodiscard]] const std::string& path() const { return path_; }

private:
  [[nodiscard]] std::optional<std::string> readBytes() const;
  [[nodiscard]] bool write(const GpuConfig& config) const;
  [[nodiscard]] std::string faultMessage(GpuConfigFault fault) const;

  std::string folder_;  // ends in a separator, as the messages show it
  std::string path_;
};

}  // namespace morvellan::files
