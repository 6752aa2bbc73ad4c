// Grain of a frame over one to four devices, with and without peer access, and what each channel's switches do to it.
#include "pipeline/grain_stage.h"

#include <algorithm>
#include <set>
#include <string>

#include "device/queue.h"
#include "pipeline/host/grain_mode.h"
#include "tests/grain/grain_plane.h"
#include "tests/support/engine_test.h"

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

constexpr int width = 50;
constexpr int height = 23;  // odd: the halves of a cut plane differ

struct Launches : LaunchObserver
{
  void launched(std::string_view kernel, int w, int h, double) override
  {
    text += std::string(kernel) + " " + std::to_string(w) + "x" + std::to_string(h) + "\n";
  }
  std::string text;
};

struct Frame
{
  Frame()
  {
    params.gpuCount = 1;
    params.grainChannelCount = 3;
    params.grainLevels = 2047;
    for (size_t c = 0; c < 3; ++c)
    {
      params.grainChannelOn[c] = 1;
      setChannel(c, {.size = 10.0 * static_cast<double>(c) + 1.0, .strength = 8.0, .levels = params.grainLevels});
    }
    params.grainSeedRed = 1;
    params.grainSeedGreen = 2;
    params.grainSeedBlue = 3;
    setLuminance({.size = 5.0, .levels = params.grainLevels});
    for (size_t c = 0; c < 3; ++c)
    {
      source[c] = grainplane::mixed(width, height).values;
      for (float& value : source[c])
        value *= 0.6f + 0.1f * static_cast<float>(c);
    }
  }

  void setChannel(size_t c, const grainplane::Controls& controls)
  {
    const GrainSettings s = grainplane::settingsOf(controls, width, height);
    params.grainSoft[c] = s.soft;
    params.grainCount[c] = s.count;
    params.grainStrengthPerCount[c] = s.strengthPerCount;
    params.grainInvCell[c] = s.invCell;
    params.grainSigma[c] = s.sigma;
    params.grainBlendKeep[c] = s.blendKeep;
    params.grainRadiusSquared[c] = s.radiusSquared;
    params.grainRadius[c] = s.radius;
    params.grainCell[c] = s.cell;
    params.grainLogSigma[c] = s.logSigma;
    params.grainLogMu[c] = s.logMu;
    params.grainRadiusMax[c] = s.radiusMax;
    params.targetScaleX = s.targetScaleX;
    params.targetScaleY = s.targetScaleY;
  }

  void setLuminance(const grainplane::Controls& controls)
  {
    const GrainSettings s = grainplane::settingsOf(controls, width, height);
    params.lumaSoft = s.soft;
    params.lumaCount = s.count;
    params.lumaStrengthPerCount = s.strengthPerCount;
    params.lumaInvCell = s.invCell;
    params.lumaSigma = s.sigma;
    params.lumaBlendKeep = s.blendKeep;
    params.lumaRadiusSquared = s.radiusSquared;
    params.lumaRadius = s.radius;
    params.lumaCell = s.cell;
    params.lumaLogSigma = s.logSigma;
    params.lumaLogMu = s.logMu;
    params.lumaRadiusMax = s.radiusMax;
  }

  std::array<std::vector<float>, 3> render(LaunchObserver* observer = nullptr)
  {
    std::array<std::vector<float>, 6> memory;
    std::array<GrainTables::Storage, 3> storage;
    const size_t entries = static_cast<size_t>(params.grainLevels) + 1;
    for (std::vector<float>& table : memory)
      table.resize(entries);
    for (size_t c = 0; c < 3; ++c)
      storage[c] = {memory[2 * c], memory[2 * c + 1]};
    GrainTables(storage).update(params);

    makeCurrent(params.gpuRed);
    const std::array<Buffer<float>, 3> planes = {upload(source[0]), upload(source[1]), upload(source[2])};
    const std::vector<GrainInput> inputs =
        grainStage(observer, params, {planes[0].data(), planes[1].data(), planes[2].data()}, width, height);
    EXPECT_EQ(currentDevice(), params.gpuRed);
    return {download(planes[0]), download(planes[1]), download(planes[2])};
  }

  FrameParams params{};
  std::array<std::vector<float>, 3> source;
};

// Sets devices up as long as a test runs.
struct SoftwareDevices
{
  SoftwareDevices(int count, bool peers) { setSoftwareDevices(count, peers); }
  ~SoftwareDevices()
  {
    setSoftwareDevices(1, true);
    makeCurrent(0);
  }
};

ENGINE_TEST(GrainStage, everyChannelIsRendered)
{
  Frame frame;
  const auto planes = frame.render();
  std::set<std::vector<float>> different(planes.begin(), planes.end());
  for (size_t c = 0; c < 3; ++c)
    EXPECT_NE(planes[c], frame.source[c]);
  EXPECT_EQ(different.size(), 3u);
}

ENGINE_TEST(GrainStage, channelsThatAreOffPass)
{
  for (size_t off = 0; off < 3; ++off)
  {
    Frame frame;
    frame.params.grainChannelOn[off] = 0;
    const auto planes = frame.render();
    EXPECT_EQ(planes[off], frame.source[off]);
    EXPECT_NE(planes[(off + 1) % 3], frame.source[(off + 1) % 3]);
  }
}

ENGINE_TEST(GrainStage, channelsChooseTheirKernels)
{
  Frame frame;
  frame.setChannel(1, {.size = 2.0, .variance = 1.0, .levels = frame.params.grainLevels});
  frame.params.grainChannelOn[2] = 0;
  Launches launches;
  frame.render(&launches);
  EXPECT_EQ(launches.text, "render_pixelR 50x23\nrender_variance 50x23\n");
}

ENGINE_TEST(GrainStage, channelsThatAgreeHaveOneGrain)
{
  Frame frame;
  for (size_t c = 0; c < 3; ++c)
  {
    frame.setChannel(c, {.size = 5.0, .levels = frame.params.grainLevels});
    frame.source[c] = frame.source[0];
  }
  frame.params.grainSeedGreen = frame.params.grainSeedBlue = frame.params.grainSeedRed;
  Launches launches;
  const auto planes = frame.render(&launches);
#ifndef MORVELLAN_TARGET_IS_CUDA
  EXPECT_EQ(launches.text, "render_pixelR 50x23\n") << "one walk for all";
#endif
  EXPECT_EQ(frame.params.greenLambda, frame.params.redLambda);
  EXPECT_EQ(planes[1], planes[0]);
  EXPECT_EQ(planes[2], planes[0]);
}

// Rendered together or each alone, with green's strength or size its own.
ENGINE_TEST(GrainStage, sharedGrainIsThatOfEachChannel)
{
  for (const double greenSize : {5.0, 20.0})
  {
    Frame frame;
    frame.params.grainSeedGreen = frame.params.grainSeedBlue = frame.params.grainSeedRed;
    for (size_t c = 0; c < 3; ++c)
      frame.setChannel(
          c, {.size = c == 1 ? greenSize : 5.0, .strength = c == 1 ? 3.0 : 8.0, .levels = frame.params.grainLevels});
    const auto together = frame.render();
    for (size_t c = 0; c < 3; ++c)
    {
      for (size_t other = 0; other < 3; ++other)
        frame.params.grainChannelOn[other] = other == c ? 1 : 0;
      EXPECT_EQ(frame.render()[c], together[c]) << c << ", size of green " << greenSize;
    }
  }
}

ENGINE_TEST(GrainStage, luminanceRendersTheFirstPlane)
{
  for (const int mode : {grainRandomLuminance, grainUniformLuminance})
  {
    Frame frame;
    frame.params.grainMode = mode;
    Launches launches;
    const auto planes = frame.render(&launches);
    EXPECT_EQ(launches.text, "render_pixelR 50x23\n");
    EXPECT_EQ(planes[1], frame.source[1]);
    EXPECT_EQ(planes[2], frame.source[2]);

    Frame single;
    single.setChannel(0, {.size = 5.0, .levels = single.params.grainLevels});
    EXPECT_EQ(planes[0], single.render()[0]);
  }
}

ENGINE_TEST(GrainStage, luminanceWithEveryChannelOffPasses)
{
  Frame frame;
  frame.params.grainMode = grainRandomLuminance;
  frame.params.grainChannelCount = 0;
  EXPECT_EQ(frame.render(), frame.source);
}

#ifndef MORVELLAN_TARGET_IS_CUDA

// Red, green and blue devices in the orders that a selection gives.
constexpr std::array<int, 3> orders[] = {{0, 2, 1}, {1, 2, 0}, {2, 1, 0}, {3, 1, 0}};

ENGINE_TEST(GrainStage, manyDevicesGiveThePixelsOfOne)
{
  for (const unsigned channels : {7u, 1u, 6u, 5u})
  {
    Frame one;
    for (size_t c = 0; c < 3; ++c)
      one.params.grainChannelOn[c] = static_cast<int>(channels >> c & 1u);
    const auto expected = one.render();
    for (const bool peers : {true, false})
      for (int devices = 2; devices <= 4; ++devices)
        for (const auto& [red, green, blue] : orders)
        {
          if (std::max({red, green, blue}) >= std::max(devices, 3))
            continue;
          const SoftwareDevices machine(devices, peers);
          Frame many = one;
          many.params.gpuCount = std::min(devices, 3);
          many.params.gpuRed = devices == 2 ? red % 2 : red;
          many.params.gpuGreen = green;
          many.params.gpuBlue = devices == 2 ? 1 - many.params.gpuRed : blue;
          EXPECT_EQ(many.render(), expected) << devices << " devices, peers " << peers << ", channels " << channels;
        }
  }
}

// Two devices: each a whole plane and half of blue.
ENGINE_TEST(GrainStage, bluePlaneIsCut)
{
  const SoftwareDevices machine(2, false);
  Frame frame;
  frame.params.gpuCount = 2;
  frame.params.gpuBlue = 1;
  Launches launches;
  frame.render(&launches);
  EXPECT_EQ(launches.text, "render_pixelR 50x23\nrender_pixelR 50x23\nrender_pixelR 50x12\nrender_pixelR 50x11\n");
}

#endif

}  // namespace

}  // namespace morvellan::MORVELLAN_TARGET
