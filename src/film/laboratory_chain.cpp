// The laboratory step by step, every step of a cycle a launch over whole planes.
#include "device/launch.h"
#include "device/memory.h"
#include "device/sum.h"
#include "film/gaussian.h"
#include "film/laboratory.h"
#include "film/laboratory_kernels.h"

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

// The planes and scalars of one run.
class Chain
{
public:
  Chain(const Queue& queue, const LabFrame& frame, const LabSettings& settings)
      : queue(queue), frame(frame), settings(settings), process(labProcess(settings, frame.width, frame.height)),
        count(static_cast<size_t>(frame.width) * static_cast<size_t>(frame.height)), silver(count * 3),
        developer(count), reservoir(static_cast<double>(settings.concentration))
  {
  }

  void run()
  {
    init();
    if (diffuses())
      blurScratch = Buffer<float>(count);
    for (int cycle = 0; cycle < labCycles; ++cycle)
    {
      develop();
      if (diffuses())
        diffuse();
      exchange(cycle);
    }
  }

private:
  bool diffuses() const { return settings.lowDiffusion || settings.highDiffusion; }
  Grid2d grid() const { return grid2d(frame.width, frame.height); }

  void init()
  {
    launchNamed(queue, frame.channels == 4 ? "film_lab_init" : "film_lab_init_RGB", grid(),
                film_lab_init{.source = frame.source,
                              .exposure = frame.exposure,
                              .alpha = frame.alpha,
                              .density = frame.density,
                              .silver = silver.data(),
                              .developer = developer.data(),
                              .concentration = settings.concentration,
                              .silverR = settings.silver[0],
                              .silverG = settings.silver[1],
                              .silverB = settings.silver[2],
                              .width = frame.width,
                              .height = frame.height,
                              .channels = frame.channels,
                              .entry = makeFilmEntry(settings.inputGamut)});
  }

  void develop()
  {
    launch(queue, grid(),
           develop_cuda{.density = frame.density,
                        .exposure = frame.exposure,
                        .silver = silver.data(),
                        .developer = developer.data(),
                        .rate = process.rate,
                        .developerUse = labDeveloperUse,
                        .silverUse = labSilverUse,
                        .width = frame.width,
                        .height = frame.height});
  }

  void diffuse()
  {
    const int w = frame.width;
    const int h = frame.height;
    float* detail = frame.source;
    float* base = frame.second;
    launch(queue, grid(),
           film_lab_diffuse_reset_pfe{
               .developer = developer.data(), .detail = detail, .base = base, .width = w, .height = h});
    blurChannel(queue, detail, blurScratch.data(), base, w, h, process.firstSigma, 1);
    launch(queue, grid(),
           pitch_sharp_film_lab{.detail = detail, .base = base, .width = w, .height = h, .gain = settings.detailGain});
    if (settings.lowDiffusion)
      blurChannel(queue, base, blurScratch.data(), base, w, h, process.secondSigma, 1);
    launch(queue, grid(),
           pitch_accumulate_film_lab_pfe{
               .detail = detail, .base = base, .developer = developer.data(), .width = w, .height = h});
  }

  void exchange(int cycle)
  {
    const double before = sum();
    launch(queue, pixels(frame.width, frame.height),
           developer_to_layer{.developer = developer.data(),
                              .scale = process.retained,
                              .add = static_cast<float>(static_cast<double>(process.replenished) * reservoir),
                              .count = static_cast<int>(count)});
    const double after = sum();
    reservoir = reservoirAfter(process, cycle, reservoir, before, after);
    if (process.agitates(cycle))
      launch(queue, grid(),
             reservoir_developer_concentration_init_two{.developer = developer.data(),
                                                        .width = frame.width,
                                                        .height = frame.height,
                                                        .value = static_cast<float>(reservoir)});
  }

  double sum() const { return sumPlane(queue, developer.data(), static_cast<ptrdiff_t>(count)); }

  const Queue& queue;
  const LabFrame& frame;
  const LabSettings& settings;
  const LabProcess process;
  const size_t count;
  const Buffer<float> silver, developer;
  Buffer<float> blurScratch;
  double reservoir;
};

}  // namespace

void laboratoryByKernels(const Queue& queue, const LabFrame& frame, const LabSettings& settings)
{
  Chain(queue, frame, settings).run();
}

}  // namespace morvellan::MORVELLAN_TARGET
