// Look files as tests write them: the text of some settings, with single fields or lines changed; and how a page loads
// and saves them, in memory or through its buttons.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "files/look_file.h"
#include "files/look_table.h"
#include "tests/params/memory_params.h"
#include "tests/params/test_page.h"

namespace morvellan::test
{

// Fields are counted from 1, as they stand in the file.
class LookText
{
public:
  explicit LookText(const params::ParamAccess& access = params::MemoryParams())
  {
    std::string_view text = all_ = files::formatLook(access);
    for (; !text.empty(); text.remove_prefix(text.find('\n') + 1))
      lines_.emplace_back(text.substr(0, text.find('\n') + 1));
  }

  static const files::LookField& field(int number) { return files::lookFields()[static_cast<std::size_t>(number - 1)]; }
  LookText& put(int number, const std::string& value) { return putLine(number, field(number).label + value + "\n"); }
  LookText& putLine(int number, const std::string& line)
  {
    lines_.at(static_cast<std::size_t>(number - 1)) = line;
    return *this;
  }
  const std::string& line(int number) const { return lines_.at(static_cast<std::size_t>(number - 1)); }
  std::string value(int number) const
  {
    const std::string& whole = line(number);
    return whole.substr(files::lookLabelColumns, whole.size() - files::lookLabelColumns - 1);
  }
  std::size_t size() const { return lines_.size(); }

  std::string text() const { return first(static_cast<int>(lines_.size())); }
  std::string first(int count) const
  {
    std::string text;
    for (int number = 1; number <= count; ++number)
      text += line(number);
    return text;
  }

private:
  std::string all_;
  std::vector<std::string> lines_;
};

// Loads the text and gives the messages.
inline std::vector<std::string> load(params::MemoryParams& page, const std::string& text)
{
  std::vector<std::string> messages;
  files::applyLook(text, page, [&](const std::string& message) { messages.push_back(message); });
  return messages;
}

inline std::string saved(const params::MemoryParams& page)
{
  return files::formatLook(page);
}

#if defined(MORVELLAN_PAGE_ON_HOST)

// A file of the test's own, which stands in for a person's answer to the dialog.
class AnsweredDialog
{
public:
  AnsweredDialog() : path_(std::filesystem::temp_directory_path() / fmt::format("morvellan-{}.prm", ::getpid()))
  {
    setenv("MORVELLAN_FILE_DIALOG", ("accept:" + path_.string()).c_str(), 1);
  }
  ~AnsweredDialog()
  {
    unsetenv("MORVELLAN_FILE_DIALOG");
    std::filesystem::remove(path_);
  }
  AnsweredDialog(const AnsweredDialog&) = delete;
  AnsweredDialog& operator=(const AnsweredDialog&) = delete;
  const std::filesystem::path& path() const { return path_; }

private:
  const std::filesystem::path path_;
};

inline std::vector<std::string> load(params::HostPage& page, const std::string& text)
{
  const AnsweredDialog dialog;
  std::ofstream(dialog.path(), std::ios::binary) << text;
  return page.pressFor("LoadLooks");
}

inline std::string saved(params::HostPage& page)
{
  const AnsweredDialog dialog;
  EXPECT_TRUE(page.pressFor("SaveLooks").empty());
  EXPECT_TRUE(page.writes.empty());
  std::ostringstream text;
  text << std::ifstream(dialog.path(), std::ios::binary).rdbuf();
  return text.str();
}

#endif

}  // namespace morvellan::test
