// What a host pays before the first instance exists: discovery on this machine, and with software devices, the
// configuration file, the CPU level.
#include <cstdlib>
#include <filesystem>

#include <benchmark/benchmark.h>
#include <unistd.h>

#include "device/host/cpu_level.h"
#include "files/gpu_config.h"
#include "gpu/discovery.h"
#include "gpu/real_platform.h"

namespace
{
using namespace morvellan;

// A new platform each time, so that the search for the driver's libraries is paid for as in a new process.
void discoverGpusOfThisMachine(benchmark::State& state)
{
  for (auto _ : state)
  {
    gpu::RealPlatform platform(device::cudaQueries(), {});
    benchmark::DoNotOptimize(gpu::discoverGpus(platform));
  }
}
BENCHMARK(discoverGpusOfThisMachine);

// The part of it that a build without the cuda engine leaves out: looking for NVML and NVAPI.
void lookForTheDriver(benchmark::State& state)
{
  for (auto _ : state)
  {
    gpu::RealPlatform platform(nullptr, {});
    benchmark::DoNotOptimize(platform.nvmlInit());
    benchmark::DoNotOptimize(platform.nvapiLoad());
    if (platform.nvmlShutdown() != 0)
      continue;
  }
}
BENCHMARK(lookForTheDriver);

void discoverSoftwareDevices(benchmark::State& state)
{
  for (auto _ : state)
    benchmark::DoNotOptimize(
        gpu::discoverSoftware(static_cast<int>(state.range(0)), device::processThreads(), device::chosenCpuLevel()));
}
BENCHMARK(discoverSoftwareDevices)->Arg(1)->Arg(4);

void readCpuLevel(benchmark::State& state)
{
  for (auto _ : state)
    benchmark::DoNotOptimize(device::chooseCpuLevel(device::highestLevel(device::readCpuFeatures()), ""));
}
BENCHMARK(readCpuLevel);

class ConfigFile : public benchmark::Fixture
{
public:
  void SetUp(const benchmark::State&) override
  {
    std::string name = (std::filesystem::temp_directory_path() / "morvellan-bench-XXXXXX").string();
    folder = mkdtemp(name.data());
  }
  void TearDown(const benchmark::State&) override { std::filesystem::remove_all(folder); }

  std::string folder;
};

BENCHMARK_F(ConfigFile, readGood)(benchmark::State& state)
{
  const files::GpuConfigFile file(folder);
  if (file.saveSelection({}))
    state.SkipWithError("the file can't be written");
  for (auto _ : state)
    benchmark::DoNotOptimize(file.read());
}

BENCHMARK_F(ConfigFile, write)(benchmark::State& state)
{
  const files::GpuConfigFile file(folder);
  for (auto _ : state)
    benchmark::DoNotOptimize(file.saveSelection({}));
}

}  // namespace
