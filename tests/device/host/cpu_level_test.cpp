// The choice of the CPU engine on every kind of processor, and on this one.
#include "device/host/cpu_level.h"

#include <fstream>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{
using namespace morvellan::device;
using testing::HasSubstr;

TEST(CpuLevel, EachLevelNeedsTheOnesBelow)
{
  EXPECT_EQ(highestLevel({}), CpuLevel::none);
  EXPECT_EQ(highestLevel({.level3 = true, .level4 = true, .aesAndPclmul = true}), CpuLevel::none);
  EXPECT_EQ(highestLevel({.level2 = true}), CpuLevel::v2);
  EXPECT_EQ(highestLevel({.level2 = true, .level4 = true, .aesAndPclmul = true}), CpuLevel::v2);
  EXPECT_EQ(highestLevel({.level2 = true, .level3 = true}), CpuLevel::v2) << "AES and PCLMUL are missing";
  EXPECT_EQ(highestLevel({.level2 = true, .level3 = true, .aesAndPclmul = true}), CpuLevel::v3);
  EXPECT_EQ(highestLevel({.level2 = true, .level3 = true, .level4 = true, .aesAndPclmul = true}), CpuLevel::v4);
}

TEST(CpuLevel, ARequestIsKeptWhereTheMachineCan)
{
  EXPECT_EQ(chooseCpuLevel(CpuLevel::v4, "").level, CpuLevel::v4);
  for (const auto& [asked, level] :
       {std::pair{"v2", CpuLevel::v2}, std::pair{"v3", CpuLevel::v3}, std::pair{"v4", CpuLevel::v4}})
  {
    const CpuLevelChoice choice = chooseCpuLevel(CpuLevel::v4, asked);
    EXPECT_EQ(choice.level, level);
    EXPECT_EQ(choice.warning, "");
  }
}

TEST(CpuLevel, ARequestAboveTheMachineGivesItsHighest)
{
  const CpuLevelChoice choice = chooseCpuLevel(CpuLevel::v3, "v4");
  EXPECT_EQ(choice.level, CpuLevel::v3);
  EXPECT_THAT(choice.warning, HasSubstr("asks for v4, which this processor can't run. Using v3"));
}

TEST(CpuLevel, AnUnknownRequestIsNamed)
{
  for (const char* asked : {"v5", "V3", "3", "cpu_v3", " v3", "avx2"})
  {
    const CpuLevelChoice choice = chooseCpuLevel(CpuLevel::v4, asked);
    EXPECT_EQ(choice.level, CpuLevel::v4) << asked;
    EXPECT_THAT(choice.warning, HasSubstr(asked));
    EXPECT_THAT(choice.warning, HasSubstr("v2, v3 or v4"));
  }
}

TEST(CpuLevel, AnotherProcessorIsToldSo)
{
  const CpuLevelChoice choice = chooseCpuLevel(CpuLevel::none, "v2");
  EXPECT_EQ(choice.level, CpuLevel::none);
  EXPECT_THAT(choice.warning, HasSubstr("x86-64"));
  EXPECT_EQ(engineName(choice.level), "");
}

TEST(CpuLevel, NamesOfEnginesAndInstructionSets)
{
  EXPECT_EQ(engineName(CpuLevel::v2), "cpu_v2");
  EXPECT_EQ(engineName(CpuLevel::v3), "cpu_v3");
  EXPECT_EQ(engineName(CpuLevel::v4), "cpu_v4");
  EXPECT_EQ(instructionSetName(CpuLevel::v2), "SSE4.2");
  EXPECT_EQ(instructionSetName(CpuLevel::v3), "AVX2");
  EXPECT_EQ(instructionSetName(CpuLevel::v4), "AVX-512");
}

#if defined(__x86_64__) && defined(__linux__)
// The kernel's own list of features is the independent witness.
TEST(CpuLevel, ThisMachineAgreesWithTheKernelsList)
{
  std::ifstream info("/proc/cpuinfo");
  std::string line;
  while (std::getline(info, line) && !line.starts_with("flags"))
  {
  }
  if (!line.starts_with("flags"))
    GTEST_SKIP() << "/proc/cpuinfo holds no flags";
  const auto hasAll = [flags = " " + line.substr(line.find(':') + 1) + " "](std::string_view names)
  {
    std::istringstream words{std::string{names}};
    for (std::string word; words >> word;)
      if (flags.find(" " + word + " ") == std::string::npos)
        return false;
    return true;
  };
  const CpuFeatures features = readCpuFeatures();
  EXPECT_EQ(features.level2, hasAll("pni ssse3 sse4_1 sse4_2 popcnt cx16 lahf_lm"));
  EXPECT_EQ(features.level3, hasAll("avx avx2 bmi1 bmi2 f16c fma abm movbe"));
  EXPECT_EQ(features.level4, hasAll("avx512f avx512bw avx512cd avx512dq avx512vl"));
  EXPECT_EQ(features.aesAndPclmul, hasAll("aes pclmulqdq"));
}
#endif

}  // namespace
