// What a host waits for when it makes an instance of the real plug-in, and when it opens and describes the library.
// Software device, grain depth as the configuration file's default has it. The host's own share of the work is its
// property sets and handles; the instance's shell is made outside the timed part.
#include <cstdlib>
#include <filesystem>
#include <memory>

#include <benchmark/benchmark.h>
#include <unistd.h>

#include "host/host.h"

namespace
{
using namespace morvellan;

class Construction : public benchmark::Fixture
{
public:
  void SetUp(const benchmark::State&) override
  {
    std::string name = (std::filesystem::temp_directory_path() / "morvellan-bench-XXXXXX").string();
    folder_ = mkdtemp(name.data());
    setenv("MORVELLAN_CONFIG_DIR", folder_.c_str(), 1);
    setenv("MORVELLAN_DEVICE", "cpu", 1);
    host_ = std::make_unique<host::Host>(host::HostTraits{}, observer_);
  }

  void TearDown(const benchmark::State&) override
  {
    host_.reset();
    std::filesystem::remove_all(folder_);
  }

protected:
  std::unique_ptr<host::LoadedPlugin> described()
  {
    auto plugin = std::make_unique<host::LoadedPlugin>(*host_, MORVELLAN_BUNDLE);
    plugin->load();
    plugin->describe();
    plugin->describeIn(kOfxImageEffectContextFilter);
    return plugin;
  }

  std::filesystem::path folder_;
  host::Observer observer_;
  std::unique_ptr<host::Host> host_;
};

BENCHMARK_DEFINE_F(Construction, instance)(benchmark::State& state)
{
  const auto plugin = described();
  // Writes the configuration file, which only the very first instance of a machine has to.
  plugin->newInstance({})->create();
  for (auto _ : state)
  {
    state.PauseTiming();
    auto instance = plugin->newInstance({});
    state.ResumeTiming();
    if (instance->create() != kOfxStatOK)
      state.SkipWithError("the instance can't be made");
    benchmark::DoNotOptimize(instance->isCreated());
    state.PauseTiming();
    instance.reset();
    state.ResumeTiming();
  }
}
BENCHMARK_REGISTER_F(Construction, instance)->Unit(benchmark::kMicrosecond);

BENCHMARK_DEFINE_F(Construction, loadAndDescribe)(benchmark::State& state)
{
  for (auto _ : state)
    benchmark::DoNotOptimize(described());
}
BENCHMARK_REGISTER_F(Construction, loadAndDescribe)->Unit(benchmark::kMicrosecond);

}  // namespace
