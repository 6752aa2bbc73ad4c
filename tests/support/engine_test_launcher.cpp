// Starts the engine tests of one target where the machine can run them, and says so where it cannot (exit 77): code of
// a higher level must not even be loaded there.
#include <cstdio>
#include <string>

#include <unistd.h>

#include "device/host/cpu_level.h"

namespace
{

bool machineRuns(const std::string& target)
{
  using namespace morvellan::device;
  const CpuLevel highest = highestLevel(readCpuFeatures());
  for (const CpuLevel level : {CpuLevel::v2, CpuLevel::v3, CpuLevel::v4})
    if (engineName(level) == target)
      return level <= highest;
  return false;
}

}  // namespace

int main(int argc, char** argv)
{
  if (argc < 3)
  {
    std::fprintf(stderr, "usage: engine_test_launcher TARGET BINARY [ARGUMENT...]\n");
    return 2;
  }
  const std::string target = argv[1];
  if (target == "cuda")
  {
    if (access("/dev/nvidiactl", F_OK) != 0)
    {
      std::printf("skipped: %s needs an NVIDIA GPU and this machine has none\n", target.c_str());
      return 77;
    }
  }
  else if (!machineRuns(target))
  {
    std::printf("skipped: this machine's processor cannot run %s\n", target.c_str());
    return 77;
  }
  execv(argv[2], argv + 2);
  std::perror(argv[2]);
  return 1;
}
