// What a frame takes of memory: every block of the size of a plane or more by its name, in each pipeline; how much of
// it at once; that all of it is given back, in which order.
#include "pipeline/frame_run.h"

#include <algorithm>
#include <map>
#include <numeric>

#include "device/memory_observer.h"
#include "film/laboratory_sweep.h"
#include "pipeline/host/capture.h"
#include "pipeline/host/m_table.h"
#include "tests/pipeline/host/parameter_map.h"
#include "tests/support/engine_test.h"

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

constexpr bool onGpu = !deviceIsHost;

// Sizes whose blocks all differ in size.
constexpr int frameWidth = 1201, frameHeight = 401, sourceWidth = 900, sourceHeight = 301, targetWidth = 1100,
              targetHeight = 350;

constexpr size_t area(int width, int height)
{
  return static_cast<size_t>(width) * static_cast<size_t>(height);
}

constexpr size_t frameArea = area(frameWidth, frameHeight);
constexpr size_t cropArea = area(sourceWidth, sourceHeight);
constexpr size_t targetArea = area(targetWidth, targetHeight);

// Blocks from here on are named below; the rest is scratch memory of threads, tables and sums.
constexpr size_t namedBytes = targetArea * 4;

// The laboratory's sums of one sweep over an image, item by item, on CUDA more than a plane of it.
bool isSumsOfASweep(size_t bytes)
{
  for (const size_t pixels : {frameArea, targetArea})
    if (bytes == static_cast<size_t>(sweepItems(static_cast<ptrdiff_t>(pixels))) * labExchanges * sizeof(double))
      return true;
  return false;
}

class Ledger : public MemoryObserver
{
public:
  Ledger() { observeMemory(this); }
  ~Ledger() override { observeMemory(nullptr); }
  Ledger(const Ledger&) = delete;
  Ledger& operator=(const Ledger&) = delete;

  void taken(const void* memory, MemoryKind kind, size_t bytes) override
  {
    if (bytes >= namedBytes && !isSumsOfASweep(bytes))
      blocks.push_back({bytes, kind});
    held[memory] = bytes;
    now += bytes;
    most = std::max(most, now);
  }
  void givenBack(const void* memory) override
  {
    now -= held.at(memory);
    returned.push_back(held.at(memory));
    held.erase(memory);
  }

  struct Block
  {
    size_t bytes;
    MemoryKind kind;
    auto operator<=>(const Block&) const = default;  // NOLINT(modernize-use-nullptr): none is written here
  };
  std::vector<Block> blocks;     // in the order in which they were taken
  std::vector<size_t> returned;  // in the order in which they were given back
  std::map<const void*, size_t> held;
  size_t now = 0, most = 0;
};

struct Named
{
  const char* name;
  size_t bytes;
  MemoryKind kind = MemoryKind::Device;
  size_t padding = 0;  // bytes that it may have beyond, for the lanes of its rows
};

using Table = std::vector<Named>;

Table operator+(Table a, const Table& b)
{
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

// Of every frame.
Table frames()
{
  return {{"frameA", frameArea * 16}, {"frameB", frameArea * 16}};
}
Table pitch(size_t pixels)
{
  return {{"scratchPlane", pixels * 4}};
}
// Kernel by kernel the original as a frame and one plane; on the CPU the two frames hold all of it, but for the plane
// between the two runs of a wide blur.
Table halation(bool wide = false)
{
  if (onGpu)
    return {{"original", frameArea * 16}, {"halation plane", frameArea * 4}};
  if (wide)
    return {{"halation scratch", frameArea * 4}};
  return {};
}
// Six planes, of which three each lie together; the alpha plane is there before grain needs it. Diffusion borrows what
// the two frames have left and takes two planes more.
Table film(size_t pixels)
{
  return {{"exposure", pixels * 12}, {"density", pixels * 12}, {"planeAlpha", pixels * 4}};
}
Table grainPlanes(size_t pixels, int channels)
{
  Table table{{"planeRed", pixels * 4}, {"planeGreen", pixels * 4}, {"planeBlue", pixels * 4}};
  return channels == 4 ? table + Table{{"planeAlpha", pixels * 4}} : table;
}
// A copy of each rendered plane, which lives until the frame's end. The CPU's fast form keeps two records of every cell
// beside the one channel that it renders.
Table grainArrays(int width, int height, size_t count)
{
  Table table(count, Named{"array", area(width, height) * 4});
  if (!onGpu)
    table.insert(table.end(), 2 * count,
                 Named{"grain records", area(width + 1, height) * 4, MemoryKind::Device, area(64, height) * 4});
  return table;
}
Table crop()
{
  Table table{{"cropped", cropArea * 16}};
  if (onGpu)
    table.push_back({"hostStaging", cropArea * 16, MemoryKind::Pinned});
  return table;
}
// The resampled image on the host: where the device has memory of its own, and where the enhancer reads it.
Table resampled(size_t pixels)
{
  return {{"resampled", pixels * 16, MemoryKind::Pinned}};
}
Table output()
{
  return {{"output", frameArea * 16}};
}

class FrameMemory
{
public:
  explicit FrameMemory(int channels = 4) : channels(channels)
  {
    values.setSizes(frameWidth, frameHeight);
    buildProductTable(*productTable);
  }

  void framed(int width, int height, int toWidth, int toHeight)
  {
    values.set("SourceWidth", width);
    values.set("SourceHeight", height);
    values.set("TargetWidth", toWidth);
    values.set("TargetHeight", toHeight);
  }

  void expect(FrameRoute route, const Table& table)
  {
    run(route);
    Table expected = table;
    std::vector<Ledger::Block> actual = blocks;
    std::sort(expected.begin(), expected.end(),
              [](const Named& a, const Named& b) { return std::pair(a.bytes, a.kind) < std::pair(b.bytes, b.kind); });
    std::sort(actual.begin(), actual.end());
    const bool same = std::equal(expected.begin(), expected.end(), actual.begin(), actual.end(),
                                 [](const Named& named, const Ledger::Block& block) {
                                   return block.kind == named.kind && block.bytes >= named.bytes &&
                                          block.bytes <= named.bytes + named.padding;
                                 });
    std::string names;
    for (const Named& named : table)
      names += std::string(named.name) + " " + std::to_string(named.bytes) + ", ";
    std::string taken;
    for (const Ledger::Block& block : blocks)
      taken += std::to_string(block.bytes) + ", ";
    EXPECT_TRUE(same) << "expected " << names << "\ntaken    " << taken;
    const size_t all =
        std::accumulate(table.begin(), table.end(), size_t{0},
                        [](size_t sum, const Named& named) { return sum + named.bytes + named.padding; });
    EXPECT_LE(most, all + scratchBytes);
  }

  void run(FrameRoute route)
  {
    FrameParams params{};
    params.gpuReady = 1;
    params.gpuCount = 1;
    params.grainLevels = levels;
    params.m_table = productTable->data();
    std::array<std::vector<float>, 6> memory;
    for (std::vector<float>& table : memory)
      table.resize(levels + 1);
    GrainTables tables({{{memory[0], memory[1]}, {memory[2], memory[3]}, {memory[4], memory[5]}}});
    const CaptureOutcome outcome = captureFrame(
        values, {.width = frameWidth, .height = frameHeight, .channels = channels, .time = 1.0}, params, tables);
    ASSERT_EQ(outcome.route, route);
    const std::vector<float> source(frameArea * static_cast<size_t>(channels), 0.4f);
    std::vector<float> destination(source.size());
    Ledger ledger;
    FrameRun({.route = route, .source = source.data(), .destination = destination.data(), .params = params}).run();
    EXPECT_EQ(ledger.now, 0u) << "bytes were kept";
    blocks = ledger.blocks;
    returned = ledger.returned;
    most = ledger.most;
  }

  test::ParameterMap values;
  std::vector<Ledger::Block> blocks;
  std::vector<size_t> returned;
  size_t most = 0;

  // Strips of the blurs and tiles of grain, of as many threads as there are.
  static constexpr size_t scratchBytes = size_t{4} << 20;

private:
  static constexpr int levels = 2047;
  int channels;
  std::unique_ptr<ProductTable> productTable = std::make_unique<ProductTable>();
};

void withPitch(test::ParameterMap& values)
{
  values.set("PitchBypass", 0);
  values.set("EnsemblePitch", 4.0);
}

// Coarse, so that it is quick.
void withGrain(test::ParameterMap& values)
{
  values.set("GrainBypass", 0);
  values.setChannels("Granularity", 0.0);
  values.setChannels("Size", 1.0);
}

}  // namespace

ENGINE_TEST(FrameMemory, TheLookPipelineTakesTwoFrames)
{
  for (const int channels : {3, 4})
  {
    FrameMemory frame(channels);
    frame.values.set("Exposure", 0.1);
    frame.expect(FrameRoute::SameSizeLookPipeline, frames());
    frame.values.set("HalationBypass", 0);
    frame.expect(FrameRoute::SameSizeLookPipeline, frames() + halation());
    frame.values.set("HalationBreadth", 1.0);
    frame.expect(FrameRoute::SameSizeLookPipeline, frames() + halation(true));
    frame.values.set("HalationBreadth", 0.25);
    withPitch(frame.values);
    frame.expect(FrameRoute::SameSizeLookPipeline, frames() + halation() + pitch(frameArea));
    frame.values.set("SoupBypass", 0);
    frame.expect(FrameRoute::SameSizeLookPipeline, frames() + halation() + pitch(frameArea) + film(frameArea));
    frame.values.set("LabDiffuseLoMid", 0.5);
    frame.values.set("LabDiffuseMidHi", 0.5);
    frame.expect(FrameRoute::SameSizeLookPipeline,
                 frames() + halation() + pitch(frameArea) + film(frameArea) + Table{{"diffusion", frameArea * 8}});
  }
}

ENGINE_TEST(FrameMemory, APrintOfTheClipTakesNoPlanes)
{
  FrameMemory frame;
  frame.values.set("PrintDisplayBypass", 0);
  frame.expect(FrameRoute::SameSizeLookPipeline, frames());
}

ENGINE_TEST(FrameMemory, GrainTakesPlanesAndAnArrayOfEachLiveChannel)
{
  for (const int channels : {3, 4})
  {
    FrameMemory frame(channels);
    withGrain(frame.values);
    frame.expect(FrameRoute::SameSizeGrainPipeline,
                 frames() + grainPlanes(frameArea, channels) + grainArrays(frameWidth, frameHeight, 3));
    frame.values.set("SizeGreen", 0.0);
    frame.values.set("StrengthBlue", 0.0);
    frame.expect(FrameRoute::SameSizeGrainPipeline,
                 frames() + grainPlanes(frameArea, channels) + grainArrays(frameWidth, frameHeight, 1));
    frame.values.set("DispersionPattern", 2);
    frame.expect(FrameRoute::SameSizeGrainPipeline,
                 frames() + grainPlanes(frameArea, channels) + grainArrays(frameWidth, frameHeight, 1));
  }
}

// The film's planes are given back before grain takes its arrays.
ENGINE_TEST(FrameMemory, FilmAndGrainAreNotHeldTogether)
{
  for (const int linear : {0, 1})
  {
    FrameMemory frame;
    withGrain(frame.values);
    frame.values.set("GrainLinear", linear);
    frame.values.set("SoupBypass", 0);
    frame.values.set("PrintDisplayBypass", 0);
    frame.expect(FrameRoute::SameSizeGrainPipeline,
                 frames() + film(frameArea) + grainPlanes(frameArea, 3) + grainArrays(frameWidth, frameHeight, 3));
    // Bytes a pixel: frames, planes, arrays and the records of one channel; film alone takes less.
    EXPECT_LE(frame.most, frameArea * (32 + 16 + 12 + (onGpu ? 0 : 8)) + FrameMemory::scratchBytes);
  }
}

ENGINE_TEST(FrameMemory, FreedFramesFirstThenGrainThenPlanes)
{
  FrameMemory frame;
  withGrain(frame.values);
  frame.run(FrameRoute::SameSizeGrainPipeline);
  std::vector<size_t> order;
  for (const size_t bytes : frame.returned)
    if (bytes == frameArea * 16 || bytes == frameArea * 4)
      order.push_back(bytes / frameArea);
  EXPECT_EQ(order, (std::vector<size_t>{16, 16, 4, 4, 4, 4, 4, 4, 4}));
  // The arrays and what else grain read, then the four planes, and nothing after them.
  for (size_t i = frame.returned.size() - 4; i < frame.returned.size(); ++i)
    EXPECT_EQ(frame.returned[i], frameArea * 4);
}

ENGINE_TEST(FrameMemory, EnlargeTakesTheCropAndTheResampledImage)
{
  FrameMemory frame;
  frame.framed(sourceWidth, sourceHeight, frameWidth, frameHeight);
  frame.expect(FrameRoute::EnlargeEnhancedPipeline, frames() + crop() + (onGpu ? resampled(frameArea) : Table{}));
  frame.framed(sourceWidth, sourceHeight, targetWidth, targetHeight);
  frame.expect(FrameRoute::EnlargeEnhancedPipeline,
               frames() + crop() + output() + (onGpu ? resampled(targetArea) : Table{}));
  withPitch(frame.values);
  withGrain(frame.values);
  frame.values.set("SoupBypass", 0);
  frame.expect(FrameRoute::EnlargeEnhancedPipeline,
               frames() + crop() + output() + (onGpu ? resampled(targetArea) : Table{}) + pitch(targetArea) +
                   film(targetArea) + grainPlanes(targetArea, 3) + grainArrays(targetWidth, targetHeight, 3));
}

ENGINE_TEST(FrameMemory, TheEnhancerTakesAPixelMoreOnItsAxes)
{
  const size_t both = area(targetWidth + 1, targetHeight + 1);
  const size_t walked = area(targetWidth, targetHeight + 1);
  for (const int mode : {1, 2})
  {
    FrameMemory frame;
    frame.framed(sourceWidth, sourceHeight, targetWidth, targetHeight);
    frame.values.set("SpatialEnhancement", mode);
    const FrameRoute route = mode == 2 ? FrameRoute::EnlargeDetailsPipeline : FrameRoute::EnlargeEnhancedPipeline;
    const Table image = onGpu ? Table{{"image", walked * 16}} : Table{};
    frame.expect(route, frames() + crop() + output() + resampled(both) + resampled(walked) + image);
    frame.values.set("VerticalEnhancer", 0.0);
    frame.expect(route,
                 frames() + crop() + output() + resampled(area(targetWidth + 1, targetHeight)) + resampled(targetArea));
  }
}

ENGINE_TEST(FrameMemory, TheEnhancerAtUnitScale)
{
  const size_t both = area(frameWidth + 1, frameHeight + 1);
  const size_t walked = area(frameWidth, frameHeight + 1);
  for (const int mode : {1, 2})
  {
    FrameMemory frame;
    frame.values.set("SpatialEnhancement", mode);
    Table staging;
    if (onGpu)
      staging = {{"hostStaging", frameArea * 16, MemoryKind::Pinned}, {"image", walked * 16}};
    frame.expect(mode == 2 ? FrameRoute::SameSizeDetailsPipeline : FrameRoute::SameSizeTexturesPipeline,
                 frames() + resampled(both) + resampled(walked) + staging);
  }
}

ENGINE_TEST(FrameMemory, ReduceTakesTheCropAndTheOutput)
{
  FrameMemory frame;
  frame.framed(frameWidth, frameHeight, targetWidth, targetHeight);
  frame.values.set("SpatialEnhancement", 1);
  Table table = frames() + Table{{"cropped", frameArea * 16}} + output();
  if (onGpu)
    table = table + Table{{"hostStaging", frameArea * 16, MemoryKind::Pinned}} + resampled(targetArea);
  frame.expect(FrameRoute::ReducePipeline, table);
}

}  // namespace morvellan::MORVELLAN_TARGET
