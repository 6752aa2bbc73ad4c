// A file is replaced whole, or left as it was.
#include "files/whole_write.h"

#include <sys/stat.h>
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

// Settings of a machine stay readable for its other users, whatever mask their writer has, and a link stays a link.
TEST(WholeWrite, KeepsPermissionsAndLinks)
{
  const fs::path path = fs::temp_directory_path() / ("morvellan-kept-" + std::to_string(getpid()));
  const fs::path link = path.string() + "-link";
  ASSERT_FALSE(writeWhole(path, "one"));
  constexpr fs::perms shared{0664};
  fs::permissions(path, shared);
  fs::create_symlink(path.filename(), link);
  const mode_t mask = umask(077);
  EXPECT_FALSE(writeWhole(link, "three"));
  umask(mask);
  EXPECT_TRUE(fs::is_symlink(link));
  EXPECT_EQ(fs::file_size(path), 5U);
  EXPECT_EQ(fs::status(path).permissions(), shared);
  fs::remove(link);
  fs::remove(path);
}

}  // namespace
