// Saving of Looks, by the text that comes out, and opening and writing of files.
#include "files/look_file.h"

#include <climits>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/files/look_text.h"

namespace morvellan::test
{
namespace
{

using params::MemoryParams;
using testing::ElementsAre;
using testing::IsEmpty;
namespace fs = std::filesystem;

constexpr const char* cannotCreate = "Morvellan : Unable to create Look file. Check file and folder permissions";
constexpr const char* cannotOpen = "Morvellan : Unable to open Look file. Check file and folder permissions";

// Writer

TEST(LookWriter, TheDefaultsAreThisText)
{
  const LookText look;
  ASSERT_EQ(look.size(), 372u);
  EXPECT_EQ(look.line(1), "In | Out Color Space(0 - 50)-------|0\n");
  EXPECT_EQ(look.line(2), "Exposure(-1.0 - 1.0)---------------|0.0000\n");
  EXPECT_EQ(look.line(3), "Halation Bypass Off/On(0, 1)-------|1\n");
  EXPECT_EQ(look.line(46), "Soup Camera Cast(3000 - 14000)-----|6504\n");
  EXPECT_EQ(look.line(57), "Soup Sat-CusH(0 - 360.0)-----------|180.0\n");
  EXPECT_EQ(look.line(372), "Print White-B(0.0 - 1.0)-----------|0.9090\n");
}

TEST(LookWriter, NumbersGoThroughSinglePrecision)
{
  MemoryParams params;
  // The nearest single is 0.00004999999873689376, below the half that the double is above.
  params.put("Exposure", 0.000050000000000000002);
  params.put("SoupToeRed", -0.25);
  params.put("SaturationCustomHue", 359.96);
  const LookText look(params);
  EXPECT_EQ(look.value(2), "0.0000");
  EXPECT_EQ(look.value(304), "-0.2500");
  EXPECT_EQ(look.value(57), "360.0");
}

TEST(LookWriter, FourFieldsHoldTheEnhancerThatIsOn)
{
  MemoryParams params;
  params.put("HorizontalEnhancer", 3.0);
  params.put("VerticalEnhancer", 4.0);
  params.put("CombinedEnhancer", 3.5);
  params.put("HorizontalDetails", 1.0);
  params.put("VerticalDetails", 2.0);
  params.put("CombinedDetails", 1.5);
  const auto fields = [&]
  {
    const LookText look(params);
    return std::vector{look.value(29), look.value(30), look.value(31), look.value(32)};
  };
  EXPECT_THAT(fields(), ElementsAre("0", "0.0000", "0.0000", "0.0000"));
  params.put("SpatialEnhancer", 2.0);
  EXPECT_THAT(fields(), ElementsAre("2", "1.0000", "2.0000", "1.5000"));
  params.put("SpatialEnhancement", 1.0);
  EXPECT_THAT(fields(), ElementsAre("1", "3.0000", "4.0000", "3.5000"));
}

TEST(LookWriter, ThreeZoneFieldsHoldTheHueZone)
{
  MemoryParams params;
  params.put("HueZone", 1.0);
  params.put("ChrZone", 2.0);
  const LookText look(params);
  EXPECT_EQ(look.value(75), "1");
  EXPECT_EQ(look.line(90), "Soup Chroma-Zones(0,1,2)-----------|1\n");
  EXPECT_EQ(look.line(105), "Soup Vibr-Zones(0,1,2)-------------|1\n");
}

TEST(LookWriter, ABypassedSoupIsWrittenWithAllItsValues)
{
  MemoryParams params;
  params.put("SoupBypass", 1.0);
  params.put("CameraStock", 7.0);
  params.put("SoupToeRed", 0.125);
  const LookText look(params);
  EXPECT_EQ(look.value(40), "1");
  EXPECT_EQ(look.value(45), "7");
  EXPECT_EQ(look.value(304), "0.1250");
  MemoryParams loaded;
  EXPECT_THAT(load(loaded, look.text()), IsEmpty());
  EXPECT_EQ(loaded["CameraStock"], 0.0);
  EXPECT_EQ(loaded["SoupToeRed"], 0.125);
}

// Files

class LookFiles : public testing::Test
{
protected:
  LookFiles() : folder_(fs::temp_directory_path() / ("morvellan-looks-" + std::to_string(::getpid())))
  {
    fs::remove_all(folder_);
    fs::create_directories(folder_);
  }
  ~LookFiles() override
  {
    std::error_code ignored;
    fs::permissions(folder_, fs::perms::owner_all, ignored);
    fs::remove_all(folder_, ignored);
  }

  std::vector<std::string> save(const fs::path& path)
  {
    std::vector<std::string> messages;
    files::saveLook(path, params_, [&](const std::string& message) { messages.push_back(message); });
    return messages;
  }
  std::vector<std::string> open(const fs::path& path)
  {
    std::vector<std::string> messages;
    params_.forget();
    files::loadLook(path, params_, [&](const std::string& message) { messages.push_back(message); });
    return messages;
  }
  static std::string content(const fs::path& path)
  {
    std::ostringstream all;
    all << std::ifstream(path).rdbuf();
    return all.str();
  }
  static void fill(const fs::path& path, const std::string& text) { std::ofstream(path, std::ios::binary) << text; }
  std::size_t filesInFolder() const
  {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder_), fs::directory_iterator{}));
  }

  const fs::path folder_;
  MemoryParams params_;
};

TEST_F(LookFiles, ASaveReplacesTheFileAndLeavesNothingElse)
{
  const fs::path path = folder_ / "a.prm";
  fill(path, "old");
  EXPECT_THAT(save(path), IsEmpty());
  EXPECT_EQ(content(path), files::formatLook(params_));
  EXPECT_EQ(filesInFolder(), 1u);
}

TEST_F(LookFiles, ASaveKeepsLinksAndPermissions)
{
  const fs::path real = folder_ / "real.prm";
  const fs::path link = folder_ / "link.prm";
  fill(real, "old");
  fs::permissions(real, fs::perms::owner_read | fs::perms::owner_write);
  fs::create_symlink(real, link);
  EXPECT_THAT(save(link), IsEmpty());
  EXPECT_TRUE(fs::is_symlink(link));
  EXPECT_EQ(content(real), files::formatLook(params_));
  EXPECT_EQ(fs::status(real).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

// As any program's open would have it, whether or not the links end at a file yet.
TEST_F(LookFiles, ASaveFollowsLinksToTheirEnd)
{
  fs::create_directory(folder_ / "shared");
  fs::create_symlink("shared/real.prm", folder_ / "second.prm");
  fs::create_symlink(folder_ / "second.prm", folder_ / "first.prm");
  for (const char* const file : {"new", "old"})
  {
    EXPECT_THAT(save(folder_ / "first.prm"), IsEmpty()) << file;
    EXPECT_TRUE(fs::is_symlink(folder_ / "first.prm")) << file;
    EXPECT_TRUE(fs::is_symlink(folder_ / "second.prm")) << file;
    EXPECT_EQ(content(folder_ / "shared" / "real.prm"), files::formatLook(params_)) << file;
    params_.put("Exposure", 0.5);
  }
  fs::create_symlink("nowhere/real.prm", folder_ / "dangling.prm");
  fs::create_symlink("circle.prm", folder_ / "circle.prm");
  for (const char* const name : {"dangling.prm", "circle.prm"})
  {
    EXPECT_THAT(save(folder_ / name), ElementsAre(cannotCreate)) << name;
    EXPECT_TRUE(fs::is_symlink(folder_ / name)) << name;
  }
}

TEST_F(LookFiles, TheLongestNameIsANameLikeAnyOther)
{
  const fs::path path = folder_ / (std::string(NAME_MAX - 4, 'x') + ".prm");
  for (const char* const file : {"new", "old"})
  {
    EXPECT_THAT(save(path), IsEmpty()) << file;
    EXPECT_EQ(content(path), files::formatLook(params_)) << file;
    EXPECT_EQ(filesInFolder(), 1u) << file;
    params_.put("Exposure", 0.5);
  }
}

TEST_F(LookFiles, ASaveThatFailsSaysSo)
{
  EXPECT_THAT(save(folder_ / "no" / "folder.prm"), ElementsAre(cannotCreate));
  EXPECT_THAT(save(folder_), ElementsAre(cannotCreate));
  fs::create_directory(folder_ / "folder.prm");
  EXPECT_THAT(save(folder_ / "folder.prm"), ElementsAre(cannotCreate));
  EXPECT_THAT(save(""), ElementsAre(cannotCreate));
  EXPECT_THAT(save("/dev/full"), ElementsAre(cannotCreate));
  EXPECT_THAT(save(folder_ / (std::string(300, 'x') + ".prm")), ElementsAre(cannotCreate));
  EXPECT_EQ(filesInFolder(), 1u);
}

// Rights bind no administrator, who runs tests in containers: a user without rights takes part in a process of its own.
int asNobody(const std::function<bool()>& holds)
{
  const pid_t child = fork();
  if (child == 0)
  {
    const bool dropped = geteuid() != 0 || setuid(65534) == 0;
    _exit(dropped && holds() ? 0 : 1);
  }
  int status = -1;
  waitpid(child, &status, 0);
  return status;
}

TEST_F(LookFiles, WhereTheFolderRefusesTheFileIsWrittenInPlace)
{
  const fs::path path = folder_ / "shared.prm";
  fill(path, "old");
  fs::permissions(path, fs::perms::all);
  fs::permissions(folder_, fs::perms::owner_read | fs::perms::owner_exec | fs::perms::others_read |
                               fs::perms::others_exec | fs::perms::group_exec);
  EXPECT_EQ(asNobody([&] { return save(path).empty(); }), 0);
  EXPECT_EQ(content(path), files::formatLook(params_));
  EXPECT_EQ(asNobody([&] { return save(folder_ / "new.prm") == std::vector<std::string>{cannotCreate}; }), 0);
  EXPECT_FALSE(fs::exists(folder_ / "new.prm"));
}

// A disk that is full is played by a limit on the size of files.
TEST_F(LookFiles, ADiskThatFillsUpLeavesTheOldFileWhole)
{
  const auto onAFullDisk = [](const std::function<bool()>& holds)
  {
    return asNobody(
        [&]
        {
          const rlimit limit{1000, 1000};
          return std::signal(SIGXFSZ, SIG_IGN) != SIG_ERR && setrlimit(RLIMIT_FSIZE, &limit) == 0 && holds();
        });
  };
  const fs::path path = folder_ / "shared.prm";
  for (const std::string& old : {std::string("old"), std::string(500, 'o'), std::string(40000, 'o')})
  {
    fill(path, old);
    fs::permissions(path, fs::perms::all);
    fs::permissions(folder_, fs::perms::all);
    EXPECT_EQ(onAFullDisk([&] { return save(path) == std::vector<std::string>{cannotCreate}; }), 0);
    EXPECT_EQ(content(path), old) << "beside it";
    EXPECT_EQ(filesInFolder(), 1u);
    fs::permissions(folder_, fs::perms::all & ~fs::perms::group_write & ~fs::perms::others_write);
    EXPECT_EQ(onAFullDisk([&] { return save(path) == std::vector<std::string>{cannotCreate}; }), 0);
    EXPECT_EQ(content(path), old) << "in place";
    EXPECT_EQ(asNobody([&] { return save(path).empty(); }), 0);
    EXPECT_TRUE(content(path) == files::formatLook(params_)) << "nothing of a longer one is left";
  }
}

TEST_F(LookFiles, AFileProtectedFromWritingStaysWhole)
{
  const fs::path path = folder_ / "protected.prm";
  fill(path, "old");
  fs::permissions(path, fs::perms::owner_read | fs::perms::others_read);
  fs::permissions(folder_, fs::perms::all);
  EXPECT_EQ(asNobody([&] { return save(path) == std::vector<std::string>{cannotCreate}; }), 0);
  EXPECT_EQ(content(path), "old");
  EXPECT_EQ(filesInFolder(), 1u);
}

TEST_F(LookFiles, WhatCannotBeOpenedLeavesTheParametersAlone)
{
  fs::create_directory(folder_ / "folder.prm");
  ASSERT_EQ(mkfifo((folder_ / "pipe.prm").c_str(), 0600), 0);
  for (const fs::path& path : {folder_ / "none.prm", folder_ / "folder.prm", folder_ / "pipe.prm",
                               fs::path("/dev/zero"), fs::path("/dev/null"), fs::path()})
    EXPECT_THAT(open(path), ElementsAre(cannotOpen)) << path;
  EXPECT_THAT(params_.writes, IsEmpty());
  fill(folder_ / "secret.prm", files::formatLook(params_));
  fs::permissions(folder_ / "secret.prm", fs::perms::none);
  fs::permissions(folder_, fs::perms::all);
  EXPECT_EQ(asNobody([&] { return open(folder_ / "secret.prm") == std::vector<std::string>{cannotOpen}; }), 0);
}

TEST_F(LookFiles, OfALargeFileTheStartAloneIsRead)
{
  const fs::path path = folder_ / "large.prm";
  fill(path, files::formatLook(params_));
  fs::resize_file(path, 1'000'000'000);
  params_.put("Exposure", 0.5);
  EXPECT_THAT(open(path), IsEmpty());
  EXPECT_EQ(params_["Exposure"], 0.0);
  fill(path, "");
  fs::resize_file(path, 1'000'000'000);
  EXPECT_THAT(open(path), ElementsAre("Morvellan : Unable to read 'In | Out Color Space(0 - 50)-------|'. Aborting "
                                      "reads beyond this point in the Looks file..."));
}

TEST_F(LookFiles, AnEmptyFileIsAShortOne)
{
  fill(folder_ / "empty.prm", "");
  EXPECT_THAT(open(folder_ / "empty.prm"), IsEmpty());
  EXPECT_THAT(params_.writes, IsEmpty());
}

}  // namespace
}  // namespace morvellan::test
