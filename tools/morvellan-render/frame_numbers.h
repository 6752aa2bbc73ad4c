// Frame ranges and the names of the files of a sequence.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace morvellan::tool
{

// A-B, A-BxSTEP or one number; numbers may be negative. Throws UsageError.
std::vector<int> parseFrames(std::string_view text);

// A file's name, or that of a sequence: one run of # (a digit each) or one %d or %0Nd in its last component.
class FilePattern
{
public:
  explicit FilePattern(const std::string& text);
  // An input: a file of just this name is itself, whatever signs its name holds.
  static FilePattern ofInput(const std::string& text);

  bool isSequence() const { return sequence_; }
  const std::string& text() const { return text_; }
  // The file of a frame; the same one for every frame where it is no sequence.
  std::filesystem::path at(int frame) const;
  // The frames of which there are files, in order.
  std::vector<int> existingFrames() const;

private:
  FilePattern() = default;

  std::string text_;
  std::filesystem::path folder_;
  std::string prefix_;
  std::string suffix_;
  int digits_ = 0;
  bool sequence_ = false;
};

// The number that a file's name ends with before its extension; false if there is none.
bool frameNumberOf(const std::filesystem::path& file, int& number);

}  // namespace morvellan::tool
