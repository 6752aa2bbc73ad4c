// Cycles with diffusion, in planes that borrow the two frames and, until the end, the density's memory.
#include "film/laboratory_diffusion.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "device/memory.h"
#include "device/sum.h"
#include "film/gaussian.h"
#include "film/laboratory_diffusion_kernels.h"

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

class Diffusion
{
public:
  Diffusion(const Queue& queue, const LabFrame& frame, const LabSettings& settings)
      : queue(queue), frame(frame), settings(settings), process(labProcess(settings, frame.width, frame.height)),
        count(static_cast<ptrdiff_t>(frame.width) * frame.height),
        reservoir(static_cast<double>(settings.concentration))
  {
    float* source = frame.source;
    float* second = frame.second;
    const size_t borrowed = frame.channels == 4 ? 2 : 0;
    own = Buffer<float>(static_cast<size_t>(count) * (slots.size() - borrowed));
    statePlanes = {source, source + count, source + 2 * count, second, second + count, second + 2 * count};
    if (borrowed != 0)
    {
      slots[0] = source + 3 * count;
      slots[1] = second + 3 * count;
    }
    for (size_t i = borrowed; i < slots.size(); ++i)
      slots[i] = own.data() + static_cast<ptrdiff_t>(i - borrowed) * count;
    log = frame.density;
    base = frame.density + count;
    scratch = frame.density + 2 * count;
  }

  void run()
  {
    DeveloperOfCycle developer{nullptr, settings.concentration};
    for (int cycle = 0; cycle < labCycles; ++cycle)
    {
      pending.push_back(developer);
      const bool last = cycle + 1 == labCycles;
      const bool saves = !last && !freeSlot();
      develop(cycle, saves);
      if (last)
        return;
      if (saves)
        pending.clear();
      stored = stored || saves;
      float* slot = freeSlot();
      diffuse(slot);
      developer = exchange(cycle, slot);
    }
  }

private:
  // A plane that no cycle since the last stored state needs again.
  float* freeSlot() const
  {
    for (float* slot : slots)
      if (std::none_of(pending.begin(), pending.end(), [&](const DeveloperOfCycle& d) { return d.plane == slot; }))
        return slot;
    return nullptr;
  }

  // A diffused developer stays near the tank's, far from the consumption's upper bound, unless pixels gain.
  void develop(int cycle, bool saves)
  {
    if (isLean(process, settings.concentration))
      developAs<LeanPixel>(cycle, saves);
    else
      developAs<BoundedPixel>(cycle, saves);
  }

  LabSchedule schedule() const
  {
    LabSchedule s{};
    s.concentration = settings.concentration;
    s.rate = process.rate;
    std::copy_n(settings.silver, 3, s.silver);
    s.units = developerUnits(settings.concentration, process.rate, settings.silver);
    return s;
  }

  template <typename Pixel>
  void developAs(int cycle, bool saves)
  {
    const bool last = cycle + 1 == labCycles;
    develop_cycles<Pixel> cycles{.exposure = frame.exposure,
                                 .planes = statePlanes,
                                 .loads = stored,
                                 .saves = saves,
                                 .log = PlaneRows(log, frame.width, frame.height),
                                 .density = last ? frame.density : nullptr,
                                 .cycles = static_cast<int>(pending.size()),
                                 .developers = {},
                                 .retained = process.retained,
                                 .schedule = schedule()};
    std::copy(pending.begin(), pending.end(), cycles.developers.begin());
    const Runs shape = runs(frame.width, frame.height);
    if (cycle > 0)
    {
      launchNamed(queue, developName(cycle), shape, cycles);
      return;
    }
    launchNamed(queue,
                frame.channels == 4 ? "film_lab_init+develop_cuda+film_lab_diffuse_reset_pfe"
                                    : "film_lab_init_RGB+develop_cuda+film_lab_diffuse_reset_pfe",
                shape,
                develop_first_cycle<Pixel>{.source = frame.source,
                                           .exposure = frame.exposure,
                                           .alpha = frame.alpha,
                                           .channels = frame.channels,
                                           .entry = makeFilmEntry(settings.inputGamut),
                                           .cycle = cycles});
  }

  std::string_view developName(int cycle) const
  {
    const bool stirred = process.agitates(cycle - 1);
    if (cycle + 1 == labCycles)
      return stirred ? "developer_to_layer+reservoir_developer_concentration_init_two+develop_cuda"
                     : "developer_to_layer+develop_cuda";
    return stirred ? "developer_to_layer+reservoir_developer_concentration_init_two+develop_cuda+"
                     "film_lab_diffuse_reset_pfe"
                   : "developer_to_layer+develop_cuda+film_lab_diffuse_reset_pfe";
  }

  // From the log to the developer before its exchange.
  void diffuse(float* developer)
  {
    const int w = frame.width;
    const int h = frame.height;
    const recombine combine{.log = log,
                            .base = base,
                            .blurred = settings.lowDiffusion ? developer : base,
                            .developer = developer,
                            .gain = settings.detailGain};
#ifdef MORVELLAN_TARGET_IS_CUDA
    blurPlane(queue, log, scratch, base, w, h, process.firstSigma);
    if (settings.lowDiffusion)
      blurPlane(queue, base, scratch, developer, w, h, process.secondSigma);
    launch(queue, grid2d(w, h), combine);
#else
    const std::string fused = "+" + std::string(recombine::name);
    if (settings.lowDiffusion && blurIsWide(process.firstSigma) && blurIsWide(process.secondSigma))
    {
      blurTwiceFused<Samples::Finite>(queue, log, scratch, base, developer, w, h, process.firstSigma,
                                      process.secondSigma, CombineBoth{combine}, fused);
      return;
    }
    if (settings.lowDiffusion)
    {
      blurFused<Samples::Finite>(queue, log, scratch, base, w, h, process.firstSigma,
                                 [](const Pixels&, Real blurred) { return blurred; });
      blurFused<Samples::Finite>(queue, base, scratch, developer, w, h, process.secondSigma, CombineSecond{combine},
                                 fused);
      return;
    }
    blurFused<Samples::Finite>(queue, log, scratch, developer, w, h, process.firstSigma, CombineFirst{combine}, fused);
#endif
  }

  // Stirs the tank, and gives the developer of the next cycle.
  DeveloperOfCycle exchange(int cycle, const float* plane)
  {
    const double replenished = static_cast<double>(process.replenished) * reservoir;
    const bool stirs = process.agitates(cycle);
    if (stirs || cycle + 2 < labCycles)
    {
      const double before = sumPlane(queue, plane, count);
      const double after = static_cast<double>(process.retained) * before + static_cast<double>(count) * replenished;
      reservoir = reservoirAfter(process, cycle, reservoir, before, after);
    }
    if (stirs)
      return {nullptr, static_cast<float>(reservoir)};
    return {plane, static_cast<float>(replenished)};
  }

  const Queue& queue;
  const LabFrame& frame;
  const LabSettings& settings;
  const LabProcess process;
  const ptrdiff_t count;
  Buffer<float> own;
  std::array<float*, 6> statePlanes{};
  std::array<float*, 4> slots{};  // as many cycles are quicker to repeat than a state is to store and load
  float* log;
  float* base;
  float* scratch;
  bool stored = false;                    // whether the state planes hold a cycle's state
  std::vector<DeveloperOfCycle> pending;  // developers of the cycles since then
  double reservoir;
};

}  // namespace

void laboratoryWithDiffusion(const Queue& queue, const LabFrame& frame, const LabSettings& settings)
{
  Diffusion(queue, frame, settings).run();
}

}  // namespace morvellan::MORVELLAN_TARGET
