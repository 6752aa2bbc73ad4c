// The GPU configuration file: every kind of content and of folder, by value, by message and by what is on the disk
// after.
#include "files/gpu_config.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
using namespace morvellan::files;
using testing::ElementsAre;
using testing::IsEmpty;
namespace fs = std::filesystem;

constexpr const char* defaultText = "Natron GPU selection(0,1,2,3)----------|0\n"
                                    "Film Grain Depth(0,1,2,3,4,5,6,7)------|3\n";

class GpuConfigFileTest : public testing::Test
{
protected:
  GpuConfigFileTest()
  {
    std::string name = (fs::temp_directory_path() / "morvellan-config-XXXXXX").string();
    folder = mkdtemp(name.data());
    file = folder + "/morvellan_natron_gpu_config.txt";
  }

  ~GpuConfigFileTest() override { fs::remove_all(folder); }

  void put(std::string_view text) const
  {
    std::ofstream(file, std::ios::binary).write(text.data(), static_cast<std::streamsize>(text.size()));
  }

  [[nodiscard]] std::string content() const
  {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }

  [[nodiscard]] GpuConfigFile::Reading read() const { return GpuConfigFile(folder).read(); }

  [[nodiscard]] std::ptrdiff_t entriesOfFolder() const
  {
    return std::distance(fs::directory_iterator(folder), fs::directory_iterator());
  }

  [[nodiscard]] std::string firstTime() const
  {
    return "Morvellan : For very first-time use of Morvellan, disregard this message : Unable to open Morvellan's GPU "
           "config file - '" +
           file + "'. Morvellan will use Natron's Primary GPU.";
  }
  [[nodiscard]] std::string selectionMissing() const
  {
    return "Morvellan : Unable to read 'Natron GPU selection(0,1,2,3)----------|' in '" + file +
           "'. Morvellan will use Natron's Primary GPU.";
  }
  [[nodiscard]] std::string selectionInvalid() const
  {
    return "Morvellan : Invalid GPU set in '" + file +
           "'. Set 'Natron GPU selection(0,1,2,3)----------|' to 0, 1, 2, or 3. Morvellan will use Natron's Primary "
           "GPU.";
  }
  [[nodiscard]] std::string depthMissing() const
  {
    return "Morvellan : Unable to read 'Film Grain Depth(0,1,2,3,4,5,6,7)------|' in '" + file + "'.";
  }
  [[nodiscard]] std::string depthInvalid() const { return "Morvellan : Invalid Grain Depth set in '" + file + "'."; }
  [[nodiscard]] std::string unableToCreate() const
  {
    return "Morvellan : Unable to create morvellan_natron_gpu_config.txt in '" + folder +
           "/'. Check file and folder permissions.";
  }

  // Bad content: the message, the values, and a file that says these values.
  void expectRepair(std::string_view text, const std::string& message, GpuConfig values) const
  {
    put(text);
    const GpuConfigFile::Reading reading = read();
    EXPECT_EQ(reading.values, values);
    EXPECT_THAT(reading.messages, ElementsAre(message));
    EXPECT_EQ(content(), formatGpuConfig(values));
    EXPECT_THAT(read().messages, IsEmpty());
    EXPECT_EQ(entriesOfFolder(), 1);
  }

  std::string folder;
  std::string file;
};

TEST_F(GpuConfigFileTest, NoFileIsReportedAndWritten)
{
  const GpuConfigFile::Reading reading = read();
  EXPECT_EQ(reading.values, (GpuConfig{.gpuSelection = 0, .grainDepth = 3}));
  EXPECT_THAT(reading.messages, ElementsAre(firstTime()));
  EXPECT_EQ(content(), defaultText);
  EXPECT_EQ(entriesOfFolder(), 1);
}

TEST_F(GpuConfigFileTest, EveryGoodPairIsReadInSilenceAndLeftAlone)
{
  for (int selection = 0; selection <= 3; ++selection)
    for (int depth = 0; depth <= 7; ++depth)
    {
      const GpuConfig config{.gpuSelection = selection, .grainDepth = depth};
      put(formatGpuConfig(config));
      const auto before = fs::last_write_time(file);
      const GpuConfigFile::Reading reading = read();
      EXPECT_EQ(reading.values, config);
      EXPECT_THAT(reading.messages, IsEmpty());
      EXPECT_EQ(fs::last_write_time(file), before);
    }
}

TEST_F(GpuConfigFileTest, AFirstLineOfSevenIsInvalid)
{
  expectRepair("Natron GPU selection(0,1,2,3)----------|7\nFilm Grain Depth(0,1,2,3,4,5,6,7)------|5\n",
               selectionInvalid(), {.gpuSelection = 0, .grainDepth = 3});
}

TEST_F(GpuConfigFileTest, NegativeAndHugeNumbersAreInvalid)
{
  for (const char* number : {"4", "-1", "-2147483648", "4294967296", "18446744073709551616", "99999999999999999999999"})
  {
    expectRepair(std::string("Natron GPU selection(0,1,2,3)----------|") + number +
                     "\nFilm Grain Depth(0,1,2,3,4,5,6,7)------|5\n",
                 selectionInvalid(), {.gpuSelection = 0, .grainDepth = 3});
    const std::string depth = std::string(number) == "4" ? "8" : number;
    expectRepair("Natron GPU selection(0,1,2,3)----------|2\nFilm Grain Depth(0,1,2,3,4,5,6,7)------|" + depth + "\n",
                 depthInvalid(), {.gpuSelection = 2, .grainDepth = 3});
  }
}

TEST_F(GpuConfigFileTest, ABadFirstLineEndsTheReading)
{
  expectRepair("GPU|1\nFilm Grain Depth(0,1,2,3,4,5,6,7)------|6\n", selectionMissing(), {});
}

TEST_F(GpuConfigFileTest, OnlyTheFirstLine)
{
  for (const char* ending : {"", "\n", "\r\n", "\n\n"})
    expectRepair(std::string("Natron GPU selection(0,1,2,3)----------|1") + ending, depthMissing(),
                 {.gpuSelection = 1, .grainDepth = 3});
}

TEST_F(GpuConfigFileTest, EmptyAndForeignContent)
{
  expectRepair("", selectionMissing(), {});
  expectRepair("\n", selectionMissing(), {});
  expectRepair("\xff\xfeNot text", selectionMissing(), {});
  expectRepair(std::string(10'000'000, '\0'), selectionMissing(), {});
  expectRepair(std::string(10'000'000, 'x'), selectionMissing(), {});
}

TEST_F(GpuConfigFileTest, LinesEndWithCrLfOrWithTheFile)
{
  put("Natron GPU selection(0,1,2,3)----------|2\r\nFilm Grain Depth(0,1,2,3,4,5,6,7)------|7\r\n");
  EXPECT_EQ(read().values, (GpuConfig{2, 7}));
  put("Natron GPU selection(0,1,2,3)----------|2\nFilm Grain Depth(0,1,2,3,4,5,6,7)------|7");
  EXPECT_EQ(read().values, (GpuConfig{2, 7}));
  EXPECT_THAT(read().messages, IsEmpty());
}

TEST_F(GpuConfigFileTest, KeysAreSearchedForWithinTheirLine)
{
  put("   \t Natron GPU selection(0,1,2,3)----------| 3 \n; Film Grain Depth(0,1,2,3,4,5,6,7)------|\t1 bit\n");
  const GpuConfigFile::Reading reading = read();
  EXPECT_EQ(reading.values, (GpuConfig{3, 1}));
  EXPECT_THAT(reading.messages, IsEmpty());
}

TEST_F(GpuConfigFileTest, AValueWithoutDigitsIsZero)
{
  put("Natron GPU selection(0,1,2,3)----------|\nFilm Grain Depth(0,1,2,3,4,5,6,7)------|deep\n");
  const GpuConfigFile::Reading reading = read();
  EXPECT_EQ(reading.values, (GpuConfig{0, 0}));
  EXPECT_THAT(reading.messages, IsEmpty());
}

TEST_F(GpuConfigFileTest, AKeyBeyondTheLinesLimitIsNotRead)
{
  expectRepair(std::string(300, ' ') + defaultText, selectionMissing(), {});
}

TEST_F(GpuConfigFileTest, AFolderInItsPlace)
{
  fs::create_directories(file + "/inside");
  const GpuConfigFile::Reading reading = read();
  EXPECT_EQ(reading.values, GpuConfig{});
  EXPECT_THAT(reading.messages, ElementsAre(firstTime(), unableToCreate()));
  EXPECT_TRUE(fs::is_directory(file + "/inside"));
  EXPECT_EQ(entriesOfFolder(), 1) << "nothing half-written is left beside it";
}

TEST_F(GpuConfigFileTest, APipeInItsPlaceDoesNotBlock)
{
  ASSERT_EQ(mkfifo(file.c_str(), 0600), 0);
  EXPECT_THAT(read().messages, ElementsAre(firstTime()));
  EXPECT_EQ(content(), defaultText);
}

// Root reads and writes everything; the file is therefore looked at as another user.
class AsOwnerOf
{
public:
  explicit AsOwnerOf(const std::string& folder)
  {
    if (geteuid() != 0)
      return;
    EXPECT_EQ(chown(folder.c_str(), nobody, nobody), 0);
    EXPECT_EQ(seteuid(nobody), 0);
    isNobody_ = true;
  }
  ~AsOwnerOf()
  {
    if (isNobody_)
    {
      EXPECT_EQ(seteuid(0), 0);
    }
  }
  AsOwnerOf(const AsOwnerOf&) = delete;
  AsOwnerOf& operator=(const AsOwnerOf&) = delete;

private:
  static constexpr uid_t nobody = 65534;
  bool isNobody_ = false;
};

TEST_F(GpuConfigFileTest, AnUnreadableFileIsReplaced)
{
  put(formatGpuConfig({2, 6}));
  fs::permissions(file, fs::perms::none);
  const AsOwnerOf owner(folder);
  const GpuConfigFile::Reading reading = read();
  EXPECT_EQ(reading.values, GpuConfig{});
  EXPECT_THAT(reading.messages, ElementsAre(firstTime()));
  EXPECT_EQ(content(), defaultText);
}

TEST_F(GpuConfigFileTest, AFolderThatMayNotBeWrittenLeavesTheFile)
{
  put("rubbish");
  const AsOwnerOf owner(folder);
  fs::permissions(folder, fs::perms{0500});
  const GpuConfigFile::Reading reading = read();
  EXPECT_EQ(reading.values, GpuConfig{});
  EXPECT_THAT(reading.messages, ElementsAre(selectionMissing(), unableToCreate()));
  EXPECT_EQ(content(), "rubbish");
  EXPECT_EQ(entriesOfFolder(), 1);
  EXPECT_NE(GpuConfigFile(folder).saveSelection({}), std::nullopt);
  EXPECT_EQ(content(), "rubbish");
  fs::permissions(folder, fs::perms::owner_all);
}

TEST_F(GpuConfigFileTest, AFolderThatCannotBeMade)
{
  put("a file where a folder is wanted");
  const std::string nowhere = file + "/below";
  const GpuConfigFile config(nowhere);
  const std::string shown = nowhere + "/";
  const GpuConfigFile::Reading reading = config.read();
  EXPECT_EQ(reading.values, GpuConfig{});
  ASSERT_EQ(reading.messages.size(), 2U);
  EXPECT_EQ(reading.messages[1], "Morvellan : Unable to create morvellan_natron_gpu_config.txt in '" + shown +
                                     "'. Check file and folder permissions.");
  EXPECT_EQ(config.saveReverted(3),
            "Morvellan : Unable to create 'morvellan_natron_gpu_config.txt' file in '" + shown +
                "'. Check file and folder permissions. Reverted to 1st GPU in Morvellan's list");
  EXPECT_EQ(config.saveSelection({}),
            "Morvellan : Unable to edit | create 'morvellan_natron_gpu_config.txt' file in '" + shown +
                "'. The GPU selection change can't be saved. Check file and folder permissions");
  EXPECT_EQ(config.saveGrainDepth({}),
            "Morvellan :  Unable to edit 'morvellan_natron_gpu_config.txt' file in '" + shown +
                "'. Check file and folder permissions. Grain Depth Resolution remains unchanged");
}

TEST_F(GpuConfigFileTest, AMissingFolderIsMade)
{
  const GpuConfigFile config(folder + "/deep/er");
  EXPECT_EQ(config.read().messages.size(), 1U);
  EXPECT_THAT(config.read().messages, IsEmpty());
}

TEST_F(GpuConfigFileTest, SavingWritesBothLines)
{
  const GpuConfigFile config(folder);
  EXPECT_EQ(config.saveSelection({.gpuSelection = 3, .grainDepth = 6}), std::nullopt);
  EXPECT_EQ(read().values, (GpuConfig{3, 6}));
  EXPECT_EQ(config.saveGrainDepth({.gpuSelection = 3, .grainDepth = 1}), std::nullopt);
  EXPECT_EQ(read().values, (GpuConfig{3, 1}));
  EXPECT_EQ(config.saveReverted(1), std::nullopt);
  EXPECT_EQ(content(), "Natron GPU selection(0,1,2,3)----------|0\nFilm Grain Depth(0,1,2,3,4,5,6,7)------|1\n");
}

TEST_F(GpuConfigFileTest, WhatIsStoredIsReadWithoutRepair)
{
  const GpuConfigFile config(folder);
  EXPECT_EQ(config.stored(), std::nullopt);
  EXPECT_EQ(entriesOfFolder(), 0);
  put(formatGpuConfig({2, 6}));
  EXPECT_EQ(config.stored(), (GpuConfig{2, 6}));
  put(formatGpuConfig({2, 8}));
  EXPECT_EQ(config.stored(), std::nullopt);
  EXPECT_EQ(content(), formatGpuConfig({2, 8}));
}

TEST_F(GpuConfigFileTest, WritersAtTheSameTimeLeaveOneWholeFile)
{
  const GpuConfigFile config(folder);
  ASSERT_EQ(config.saveSelection({}), std::nullopt);
  {
    std::vector<std::jthread> threads;
    for (int writer = 0; writer < 4; ++writer)
      threads.emplace_back(
          [&config, writer]
          {
            for (int i = 0; i < 50; ++i)
              EXPECT_EQ(config.saveSelection({.gpuSelection = writer, .grainDepth = writer + 4}), std::nullopt);
          });
    threads.emplace_back(
        [this]
        {
          for (int i = 0; i < 200; ++i)
          {
            const GpuConfigFile::Reading reading = read();
            EXPECT_THAT(reading.messages, IsEmpty());
            EXPECT_TRUE(reading.values == GpuConfig{} || reading.values.grainDepth == reading.values.gpuSelection + 4);
          }
        });
  }
  EXPECT_EQ(entriesOfFolder(), 1);
}

TEST_F(GpuConfigFileTest, TwoProcessesAtTheSameTimeLeaveOneWholeFile)
{
  const GpuConfigFile config(folder);
  ASSERT_EQ(config.saveSelection({.gpuSelection = 0, .grainDepth = 4}), std::nullopt);
  const auto writeManyTimes = [&config](int writer)
  {
    for (int i = 0; i < 200; ++i)
      if (config.saveSelection({.gpuSelection = writer, .grainDepth = writer + 4}))
        return false;
    return true;
  };
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0)
    _exit(writeManyTimes(1) ? 0 : 1);
  int status = -1;
  while (waitpid(child, &status, WNOHANG) == 0)
  {
    EXPECT_EQ(config.saveSelection({.gpuSelection = 2, .grainDepth = 6}), std::nullopt);
    const GpuConfigFile::Reading reading = read();
    EXPECT_THAT(reading.messages, IsEmpty());
    EXPECT_EQ(reading.values.grainDepth, reading.values.gpuSelection + 4);
  }
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
  EXPECT_EQ(entriesOfFolder(), 1);
}

TEST(GrainDepth, TableEntries)
{
  EXPECT_EQ(grainTableEntries(0), 0x800);
  EXPECT_EQ(grainTableEntries(1), 0x2000);
  EXPECT_EQ(grainTableEntries(2), 0x8000);
  EXPECT_EQ(grainTableEntries(3), 0x20000);
  EXPECT_EQ(grainTableEntries(4), 0x80000);
  EXPECT_EQ(grainTableEntries(5), 0x200000);
  EXPECT_EQ(grainTableEntries(6), 0x800000);
  EXPECT_EQ(grainTableEntries(7), 0x2000000);
}

}  // namespace
