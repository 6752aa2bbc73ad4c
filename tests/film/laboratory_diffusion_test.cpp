// The laboratory with diffusion: the fused cycles against the chain of kernels, and what is left over from frame to
// frame.
#include "tests/film/laboratory_runs.h"

#include <limits>

#include <tbb/global_control.h>

namespace morvellan::MORVELLAN_TARGET
{

using namespace laboratory_runs;

ENGINE_TEST(Laboratory, DiffusionAgreesWithTheChain)
{
  const int sizes[][2] = {{1, 1}, {37, 11}, {150, 90}};
  for (const auto& size : sizes)
    for (const int channels : {3, 4})
      for (int agitation = 1; agitation <= 5; ++agitation)
        for (const auto& [low, high] : {std::pair{true, true}, {true, false}, {false, true}})
          for (const float band : {0.05f, 0.5f, 1.0f})
          {
            LabSettings s = diffusing(defaults(size[0], size[1]), low, high);
            s.agitation = agitation;
            s.spectrumBand = band;
            const Values frame = picture(size[0], size[1], channels);
            const Developed fused = developed(frame, size[0], size[1], channels, s);
            const Developed chain = developed(frame, size[0], size[1], channels, s, laboratoryByKernels);
            EXPECT_EQ(fused.exposure, chain.exposure);
            EXPECT_EQ(fused.alpha, chain.alpha);
            EXPECT_LT(largestDifference(fused.linear, chain.linear, 1e-3f), 1e-3f)
                << size[0] << " by " << size[1] << ", agitation " << agitation << ", low " << low << ", high " << high
                << ", band " << band;
          }
}

// Both ways against double precision: what each switch and its width do. Measured: the fused cycles within 3e-6, the
// chain, which blurs the log with its code of black, within 9e-5.
ENGINE_TEST(Laboratory, DiffusionByValue)
{
  const int w = 150, h = 90;
  const Values frame = picture(w, h);
  for (const auto& [low, high] : {std::pair{true, true}, {true, false}, {false, true}})
    for (const float band : {0.05f, 0.5f, 1.0f})
      for (const float gain : {-0.6f, 0.0f, 0.9f})
      {
        LabSettings s = diffusing(defaults(w, h), low, high);
        s.spectrumBand = band;
        s.detailGain = gain;
        s.lowWidth = low ? 0.8f : 0.0f;
        s.replenish = 0.6f;
        for (const Way way : {laboratory, laboratoryByKernels})
        {
          const Developed result = developed(frame, w, h, 4, s, way);
          const std::vector<double> expected = lightInDouble(result.exposure, w, h, s);
          EXPECT_LE(largestRelativeError(result.linear, expected), way == laboratory ? 5e-6 : 2e-4)
              << "low " << low << ", high " << high << ", band " << band << ", gain " << gain << ", fused "
              << (way == laboratory);
        }
      }
}

ENGINE_TEST(Laboratory, DiffusionOfAUniformFrameChangesNothing)
{
  const float plain = developedGrey(0.18, 60, 40, defaults(60, 40));
  EXPECT_NEAR(developedGrey(0.18, 60, 40, diffusing(defaults(60, 40), true, true)), plain, 1e-5f);
  EXPECT_NEAR(developedGrey(0.18, 60, 40, diffusing(defaults(60, 40), false, true)), plain, 1e-5f);
}

// With no detail gain the developer is its own blur; a gain that was left over brings detail back with the low switch
// on alone.
ENGINE_TEST(Laboratory, LeftOverDetailGainCounts)
{
  const int w = 120, h = 80;
  const Values frame = picture(w, h);
  LabSettings s = diffusing(defaults(w, h), true, false);
  s.detailGain = 0.0f;
  const Developed without = developed(frame, w, h, 4, s);
  s.detailGain = 0.9f;
  const Developed with = developed(frame, w, h, 4, s);
  EXPECT_GT(largestDifference(with.linear, without.linear, 1e-2f), 1e-3f);
}

ENGINE_TEST(Laboratory, DiffusionTakesBadPixelsForTheEndsOfTheRange)
{
  const int w = 100, h = 70;
  Values frame = picture(w, h);
  Values repaired = frame;
  const auto replace = [&](size_t at, float bad, float held)
  {
    frame[at] = bad;
    repaired[at] = held;
  };
  replace(4 * 3500, std::numeric_limits<float>::quiet_NaN(), 0.0f);
  replace(4 * 3501 + 1, std::numeric_limits<float>::infinity(), 1.0f);
  replace(4 * 10 + 2, -std::numeric_limits<float>::infinity(), 0.0f);
  replace(4 * 99, 1e5f, 1.0f);
  replace(4 * 5000 + 1, -1e5f, 0.0f);
  const LabSettings s = diffusing(defaults(w, h), true, true);
  for (const Way way : {laboratory, laboratoryByKernels})
  {
    const Developed result = developed(frame, w, h, 4, s, way);
    EXPECT_EQ(result.density, developed(repaired, w, h, 4, s, way).density);
    for (const float value : result.linear)
      ASSERT_TRUE(std::isfinite(value));
  }
}

ENGINE_TEST(Laboratory, DiffusionIsTheSameOnOneThread)
{
  const Values frame = picture(200, 130);
  const LabSettings s = diffusing(defaults(200, 130), true, true);
  const Developed many = developed(frame, 200, 130, 4, s);
  const tbb::global_control one(tbb::global_control::max_allowed_parallelism, 1);
  EXPECT_EQ(developed(frame, 200, 130, 4, s).density, many.density);
}

PARITY(laboratoryDiffusion, .absolute = 1e-9f)
{
  return developed(picture(150, 90), 150, 90, 4, diffusing(defaults(150, 90), true, true)).density;
}

}  // namespace morvellan::MORVELLAN_TARGET
