// Which of the CPU engines (cpu_v2, cpu_v3, cpu_v4) this machine can run, and which of them is to run.
// Compiled for the base instruction set, so that it may run before the choice is made.
#pragma once

#include <string>
#include <string_view>

namespace morvellan::device
{

// The x86-64 micro-architecture levels of the psABI. `none`: not an x86-64 machine, or one below level 2;
// no CPU engine runs there.
enum class CpuLevel
{
  none = 0,
  v2 = 2,
  v3 = 3,
  v4 = 4
};

// What the processor has and the operating system keeps across task switches. The engines v3 and v4 are compiled
// with AES and PCLMUL on top of the psABI's lists, so these two are asked for as well.
struct CpuFeatures
{
  bool level2 = false;  // SSE3, SSSE3, SSE4.1, SSE4.2, POPCNT, CMPXCHG16B, LAHF
  bool level3 = false;  // AVX, AVX2, BMI1, BMI2, F16C, FMA, LZCNT, MOVBE
  bool level4 = false;  // AVX-512 F, BW, CD, DQ, VL
  bool aesAndPclmul = false;
};

struct CpuLevelChoice
{
  CpuLevel level = CpuLevel::none;
  std::string warning;  // empty, or one sentence for the user
};

// Features of the machine that runs this code.
[[nodiscard]] CpuFeatures readCpuFeatures();

[[nodiscard]] CpuLevel highestLevel(const CpuFeatures& features);

// `asked` is "v2", "v3", "v4" or empty (the machine's highest). An answer is never above `highest`; a request that is
// above it or unknown gives the highest and a warning.
[[nodiscard]] CpuLevelChoice chooseCpuLevel(CpuLevel highest, std::string_view asked);

// The choice for this machine and the environment variable MORVELLAN_CPU_LEVEL; made once per process.
[[nodiscard]] const CpuLevelChoice& chosenCpuLevel();

// "cpu_v2", "cpu_v3", "cpu_v4": the name of the engine, empty for `none`.
[[nodiscard]] std::string_view engineName(CpuLevel level);

// "SSE4.2", "AVX2", "AVX-512": what a user knows the level by.
[[nodiscard]] std::string_view instructionSetName(CpuLevel level);

}  // namespace morvellan::device
