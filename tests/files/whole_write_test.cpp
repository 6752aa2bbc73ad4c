// A file is replaced whole, or left as it was.
#include "files/whole_write.h"

#include <unistd.h>

#include <gtest/gtest.h>

namespace
{
using namespace morvellan::files;
namespace fs = std::filesystem;

TEST(WholeWrite, ReplacesOrLeavesAlone)
{
  const fs::path path = fs::temp_directory_path() / ("morvellan-whole-" + std::to_string(getpid()));
  EXPECT_FALSE(writeWhole(path, "one"));
  EXPECT_FALSE(writeWhole(path, ""));
  EXPECT_EQ(fs::file_size(path), 0U);
  EXPECT_TRUE(writeWhole(path / "below", "two"));
  fs::remove(path);
}

}  // namespace
