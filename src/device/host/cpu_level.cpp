// Reads the processor's features and chooses the CPU engine.
// Feature bits: "Intel 64 and IA-32 Architectures Software Developer's Manual", volume 2A, CPUID; levels: x86-64 psABI.
#include "device/host/cpu_level.h"

#include <cstdlib>

#include <fmt/format.h>

#if defined(__x86_64__)
#include <cpuid.h>
#endif

namespace morvellan::device
{
namespace
{

#if defined(__x86_64__)
constexpr unsigned bit(int index)
{
  return 1U << index;
}

bool hasAll(unsigned value, unsigned bits)
{
  return (value & bits) == bits;
}
#endif

std::string_view shortName(CpuLevel level)
{
  const std::string_view name = engineName(level);
  return name.empty() ? name : name.substr(4);
}

}  // namespace

CpuFeatures readCpuFeatures()
{
  CpuFeatures features;
#if defined(__x86_64__)
  unsigned eax = 0;
  unsigned ebx = 0;
  unsigned ecx1 = 0;
  unsigned edx = 0;
  unsigned ecxExtended = 0;
  if (__get_cpuid(1, &eax, &ebx, &ecx1, &edx) == 0 || __get_cpuid(0x80000001U, &eax, &ebx, &ecxExtended, &edx) == 0)
    return features;
  constexpr unsigned cmpxchg16b = bit(13);
  constexpr unsigned movbe = bit(22);
  constexpr unsigned f16c = bit(29);
  constexpr unsigned lahf = bit(0);
  constexpr unsigned lzcnt = bit(5);

  // The builtin also asks the operating system (XGETBV) whether the wide registers are saved.
  __builtin_cpu_init();
  features.level2 = hasAll(ecx1, cmpxchg16b) && hasAll(ecxExtended, lahf) && __builtin_cpu_supports("sse3") &&
                    __builtin_cpu_supports("ssse3") && __builtin_cpu_supports("sse4.1") &&
                    __builtin_cpu_supports("sse4.2") && __builtin_cpu_supports("popcnt");
  features.level3 = hasAll(ecx1, movbe | f16c) && hasAll(ecxExtended, lzcnt) && __builtin_cpu_supports("avx") &&
                    __builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi") && __builtin_cpu_supports("bmi2") &&
                    __builtin_cpu_supports("fma");
  features.level4 = __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
                    __builtin_cpu_supports("avx512cd") && __builtin_cpu_supports("avx512dq") &&
                    __builtin_cpu_supports("avx512vl");
  features.aesAndPclmul = __builtin_cpu_supports("aes") && __builtin_cpu_supports("pclmul");
#endif
  return features;
}

CpuLevel highestLevel(const CpuFeatures& features)
{
  if (!features.level2)
    return CpuLevel::none;
  if (!features.level3 || !features.aesAndPclmul)
    return CpuLevel::v2;
  return features.level4 ? CpuLevel::v4 : CpuLevel::v3;
}

CpuLevelChoice chooseCpuLevel(CpuLevel highest, std::string_view asked)
{
  if (highest == CpuLevel::none)
    return {
        CpuLevel::none,
        "Morvellan : This processor is not an x86-64 one of level 2 (SSE4.2) or higher. Unable to render on the CPU"};
  if (asked.empty())
    return {highest, {}};
  for (const CpuLevel level : {CpuLevel::v2, CpuLevel::v3, CpuLevel::v4})
  {
    if (asked != shortName(level))
      continue;
    if (level <= highest)
      return {level, {}};
    return {highest,
            fmt::format("Morvellan : MORVELLAN_CPU_LEVEL asks for {}, which this processor can't run. Using {}", asked,
                        shortName(highest))};
  }
  return {highest, fmt::format("Morvellan : MORVELLAN_CPU_LEVEL is '{}'. Set it to v2, v3 or v4. Using {}", asked,
                               shortName(highest))};
}

const CpuLevelChoice& chosenCpuLevel()
{
  static const CpuLevelChoice choice = []
  {
    const char* asked = std::getenv("MORVELLAN_CPU_LEVEL");
    return chooseCpuLevel(highestLevel(readCpuFeatures()), asked != nullptr ? asked : "");
  }();
  return choice;
}

std::string_view engineName(CpuLevel level)
{
  switch (level)
  {
  case CpuLevel::v2:
    return "cpu_v2";
  case CpuLevel::v3:
    return "cpu_v3";
  case CpuLevel::v4:
    return "cpu_v4";
  case CpuLevel::none:
    break;
  }
  return {};
}

std::string_view instructionSetName(CpuLevel level)
{
  switch (level)
  {
  case CpuLevel::v2:
    return "SSE4.2";
  case CpuLevel::v3:
    return "AVX2";
  case CpuLevel::v4:
    return "AVX-512";
  case CpuLevel::none:
    break;
  }
  return "no vector unit";
}

}  // namespace morvellan::device
