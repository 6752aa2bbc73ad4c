// Which device is current when a frame over several devices takes memory, copies, launches and gives back, step by
// step, with and without peer access; and what is left when memory runs out on any of them.
#include <algorithm>
#include <array>
#include <map>
#include <mutex>
#include <new>
#include <thread>

#include "device/memory_observer.h"
#include "pipeline/frame_run.h"
#include "pipeline/host/capture.h"
#include "pipeline/host/m_table.h"
#include "pipeline/host/trace.h"
#include "tests/pipeline/host/parameter_map.h"
#include "tests/support/engine_test.h"

// The machine of these tests has as many devices as they ask for.
#ifndef MORVELLAN_TARGET_IS_CUDA

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

constexpr int width = 50;
constexpr int height = 23;  // odd: the halves of a cut plane differ
constexpr size_t rowBytes = width * sizeof(float);
constexpr size_t planeBytes = rowBytes * height;

// Writes down, line by line, what happens to frames and planes and what grain launches, each with the device that is
// current; holds every block to the device that it was taken on.
class Recorder : public MemoryObserver, public Trace
{
public:
  explicit Recorder(int home) : home(home) { observeMemory(this); }
  ~Recorder() override { observeMemory(nullptr); }
  Recorder(const Recorder&) = delete;
  Recorder& operator=(const Recorder&) = delete;

  void asked(MemoryKind, size_t) override
  {
    const std::lock_guard lock(mutex);
    if (askedFor++ == refused)
      throw std::bad_alloc();
  }

  void taken(const void* memory, MemoryKind, size_t bytes) override
  {
    const std::lock_guard lock(mutex);
    Block block{.name = {}, .begin = static_cast<const char*>(memory), .bytes = bytes, .device = currentDevice()};
    if (bytes == 4 * planeBytes)
      block.name = "frame";
    else if (bytes == planeBytes)
      block.name = nextPlane();
    held[memory] = block;
    if (!block.name.empty())
      note(" takes " + block.name);
  }

  void givenBack(const void* memory) override
  {
    const std::lock_guard lock(mutex);
    const Block block = held.at(memory);
    held.erase(memory);
    // Scratch memory of other threads is nobody's business.
    if (std::this_thread::get_id() != thread)
      return;
    EXPECT_TRUE(currentDevice() == home || currentDevice() == block.device) << block.name << ' ' << block.device;
    if (!block.name.empty())
      note(" gives " + block.name);
  }

  void copied(const void* to, const void* from, size_t bytes) override
  {
    const std::lock_guard lock(mutex);
    Block* target = blockOf(to);
    const Block* source = blockOf(from);
    const std::string of = source ? source->name : "host";
    // An array and a copy are called by their plane, which may have come by way of the copy.
    if (target && target->name.ends_with(" of"))
      target->name += " " + of.substr(of.find_last_of(' ') + 1);
    const std::string into = target ? target->name : "host";
    if (of.empty() || into.empty())
      return;
    std::string rows;
    if (source && bytes < planeBytes)
    {
      const auto first = static_cast<size_t>(static_cast<const char*>(from) - source->begin) / rowBytes;
      rows = " rows " + std::to_string(first) + " to " + std::to_string(first + bytes / rowBytes);
      EXPECT_EQ(static_cast<const char*>(to) - target->begin, static_cast<const char*>(from) - source->begin);
    }
    note(" copies " + of + rows + " to " + into);
  }

  void madeCurrent(int device) override
  {
    takenSince = 0;
    text += "current " + std::to_string(device) + "\n";
  }

  void enabledPeerAccess(int device, int other) override
  {
    EXPECT_EQ(device, currentDevice());
    note(" reaches " + std::to_string(other));
  }

  void launched(std::string_view kernel, int w, int h, double) override
  {
    if (kernel == "render_pixelR" || kernel == "render_variance")
      note(" launches " + std::string(kernel) + " " + std::to_string(w) + "x" + std::to_string(h));
    else
      EXPECT_EQ(currentDevice(), home) << kernel;
  }

  std::string text;
  int refused = -1;  // the number of the request that is not met
  int askedFor = 0;

  size_t blocksHeld() const { return held.size(); }

private:
  struct Block
  {
    std::string name;  // none: scratch
    const char* begin = nullptr;
    size_t bytes = 0;
    int device = 0;
  };

  // The planes first; then, each time that a device is made current, the array of a plane, and after it a copy.
  std::string nextPlane()
  {
    constexpr std::array names{"red", "green", "blue"};
    if (planes < names.size())
      return names[planes++];
    return takenSince++ == 0 ? "array of" : "copy of";
  }

  Block* blockOf(const void* at)
  {
    const auto* byte = static_cast<const char*>(at);
    const auto found = std::find_if(held.begin(), held.end(),
                                    [&](const auto& entry)
                                    {
                                      const Block& block = entry.second;
                                      return byte >= block.begin && byte < block.begin + block.bytes;
                                    });
    return found == held.end() ? nullptr : &found->second;
  }

  void note(const std::string& what) { text += std::to_string(currentDevice()) + what + "\n"; }

  int home;
  std::thread::id thread = std::this_thread::get_id();
  std::mutex mutex;
  std::map<const void*, Block> held;
  size_t planes = 0;
  int takenSince = 0;
};

// The devices of a frame as the selection has them, and whether they reach each other's memory.
struct Machine
{
  int devices, red, blue, green, count;
  bool peers = true;
};

constexpr std::array<Machine, 8> machines{Machine{2, 0, 1, 0, 2}, {2, 1, 0, 1, 2}, {3, 0, 1, 2, 3}, {3, 1, 0, 2, 3},
                                          {3, 2, 0, 1, 3},        {4, 0, 1, 2, 3}, {4, 2, 0, 1, 3}, {4, 3, 0, 1, 3}};

std::string nameOf(const Machine& machine)
{
  return std::to_string(machine.devices) + " devices, red on " + std::to_string(machine.red) +
         (machine.peers ? ", peers" : ", no peers");
}

// The same frame on one device that plays all. Blue's softness goes by how many devices serve.
Machine onOneDevice(const Machine& machine)
{
  return {1, 0, 0, 0, machine.count};
}

// Sets devices up as long as a frame runs.
struct SoftwareDevices
{
  SoftwareDevices(int count, bool peers) { setSoftwareDevices(count, peers); }
  SoftwareDevices(const SoftwareDevices&) = delete;
  SoftwareDevices& operator=(const SoftwareDevices&) = delete;
  ~SoftwareDevices()
  {
    setSoftwareDevices(1, true);
    makeCurrent(0);
  }
};

// A frame of grain alone, whose channels differ in size, so that each has a launch of its own.
class GrainFrame
{
public:
  explicit GrainFrame(unsigned channels = 7)
  {
    values.setSizes(width, height);
    values.set("GrainBypass", 0);
    values.setChannels("Granularity", 0.0);
    size_t i = 0;
    for (const char* size : {"SizeRed", "SizeGreen", "SizeBlue"})
    {
      values.set(size, (channels >> i & 1u) != 0 ? 1.0 + static_cast<double>(i) : 0.0);
      ++i;
    }
    for (size_t at = 0; at < source.size(); ++at)
      source[at] = 0.1f + 0.001f * static_cast<float>(at % 700);
    for (std::vector<float>& table : memory)
      table.resize(levels + 1);
    buildProductTable(*productTable);
  }

  std::vector<float> render(const Machine& machine, Trace* trace)
  {
    FrameParams params{};
    params.gpuReady = 1;
    params.gpuCount = machine.count;
    params.gpuRed = machine.red;
    params.gpuBlue = machine.blue;
    params.gpuGreen = machine.green;
    params.grainLevels = levels;
    params.m_table = productTable->data();
    GrainTables tables({{{memory[0], memory[1]}, {memory[2], memory[3]}, {memory[4], memory[5]}}});
    const CaptureOutcome outcome =
        captureFrame(values, {.width = width, .height = height, .channels = 3, .time = 1.0}, params, tables);
    EXPECT_EQ(outcome.route, FrameRoute::SameSizeGrainPipeline);
    std::vector<float> destination(source.size());
    FrameRun({.route = outcome.route,
              .source = source.data(),
              .destination = destination.data(),
              .params = params,
              .trace = trace})
        .run();
    return destination;
  }

private:
  static constexpr int levels = 2047;
  test::ParameterMap values;
  std::vector<float> source = std::vector<float>(size_t{3} * width * height);
  std::array<std::vector<float>, 6> memory;
  std::unique_ptr<ProductTable> productTable = std::make_unique<ProductTable>();
};

// Where a plane, or rows of it, are rendered.
struct Share
{
  std::string plane;
  int device;
  int firstRow = 0;
  int rows = height;
};

// Three channels: each on its device, the rendering one last; on two devices green on the second, red on the first and
// a half of blue on each. Fewer: in the order red, green, blue to the devices of red, green, blue, or of red and blue.
std::vector<Share> sharesOf(const Machine& m, unsigned channels)
{
  if (channels == 7 && m.count == 3)
    return {{"blue", m.blue}, {"green", m.green}, {"red", m.red}};
  if (channels == 7)
    return {{"green", m.blue},
            {"red", m.red},
            {"blue", m.blue, height / 2, height - height / 2},
            {"blue", m.red, 0, height / 2}};
  const std::vector<int> order = m.count == 3 ? std::vector{m.red, m.green, m.blue} : std::vector{m.red, m.blue};
  std::vector<Share> shares;
  for (const auto& [bit, plane] : {std::pair{1u, "red"}, std::pair{2u, "green"}, std::pair{4u, "blue"}})
    if ((channels & bit) != 0)
      shares.push_back({plane, order[shares.size()]});
  if (m.count == 3)
    std::reverse(shares.begin(), shares.end());
  return shares;
}

std::string expectedText(const Machine& m, unsigned channels)
{
  std::string text;
  const auto add = [&text](const std::string& line) { text += line + "\n"; };
  const std::string red = std::to_string(m.red);
  const std::vector<Share> shares = sharesOf(m, channels);
  const auto isAway = [&](const Share& share) { return share.device != m.red; };

  add("current " + red);
  add(red + " takes frame");
  add(red + " takes frame");
  add(red + " copies host to frame");
  for (const char* plane : {"red", "green", "blue"})
    add(red + " takes " + plane);
  for (const Share& share : shares)
  {
    const std::string on = std::to_string(share.device);
    add("current " + on);
    add(on + " takes array of");
    std::string from = share.plane;
    if (isAway(share) && m.peers)
    {
      add(on + " reaches " + red);
    }
    else if (isAway(share))
    {
      from = "copy of " + share.plane;
      add(on + " takes copy of");
      add(on + " copies " + share.plane + " to " + from);
    }
    add(on + " copies " + from + " to array of " + share.plane);
  }
  for (const Share& share : shares)
  {
    const std::string on = std::to_string(share.device);
    add("current " + on);
    add(on + " launches render_pixelR " + std::to_string(width) + "x" + std::to_string(share.rows));
  }
  for (const Share& share : shares)
    if (isAway(share))
    {
      const std::string on = std::to_string(share.device);
      add("current " + on);
      if (m.peers)
        continue;
      std::string rows;
      if (share.rows < height)
        rows = " rows " + std::to_string(share.firstRow) + " to " + std::to_string(share.firstRow + share.rows);
      add(on + " copies copy of " + share.plane + rows + " to " + share.plane);
      add(on + " gives copy of " + share.plane);
    }
  add("current " + red);
  add(red + " copies frame to host");
  add(red + " gives frame");
  add(red + " gives frame");
  for (const char* plane : {"red", "green", "blue"})
    for (const Share& share : shares)
      if (share.plane == plane)
        add(red + " gives array of " + share.plane);
  for (const char* plane : {"red", "green", "blue"})
    add(red + " gives " + plane);
  return text;
}

ENGINE_TEST(FrameDevices, EveryStepRunsOnItsDevice)
{
  for (const unsigned channels : {7u, 1u, 2u, 4u, 3u, 5u, 6u})
  {
    GrainFrame frame(channels);
    for (Machine machine : machines)
      for (const bool peers : {true, false})
      {
        machine.peers = peers;
        const std::vector<float> expected = frame.render(onOneDevice(machine), nullptr);
        const SoftwareDevices devices(machine.devices, peers);
        Recorder recorder(machine.red);
        EXPECT_EQ(frame.render(machine, &recorder), expected) << nameOf(machine);
        EXPECT_EQ(recorder.text, expectedText(machine, channels)) << nameOf(machine) << ", channels " << channels;
        EXPECT_EQ(recorder.blocksHeld(), 0u) << nameOf(machine);
        EXPECT_EQ(currentDevice(), machine.red) << nameOf(machine);
      }
  }
}

// Each piece of memory of a frame refused in turn: nothing is kept, whichever device had it, and the rendering device
// is current again. The next frame is whole.
ENGINE_TEST(FrameDevices, MemoryThatRunsOutOnAnyDevice)
{
  GrainFrame frame;
  for (Machine machine : machines)
    for (const bool peers : {true, false})
    {
      machine.peers = peers;
      const std::vector<float> expected = frame.render(onOneDevice(machine), nullptr);
      const SoftwareDevices devices(machine.devices, peers);
      int requests = 0;
      {
        Recorder recorder(machine.red);
        frame.render(machine, &recorder);
        requests = recorder.askedFor;
      }
      // Two frames, three planes, an array and the offsets for each share, a copy where a share has no peer.
      EXPECT_GE(requests, 5 + 2 * 3 + (peers ? 0 : 2));
      for (int refused = 0; refused < requests; ++refused)
      {
        Recorder recorder(machine.red);
        recorder.refused = refused;
        EXPECT_THROW(frame.render(machine, &recorder), std::bad_alloc) << nameOf(machine) << ", request " << refused;
        EXPECT_EQ(recorder.blocksHeld(), 0u) << nameOf(machine) << ", request " << refused;
        EXPECT_EQ(currentDevice(), machine.red) << nameOf(machine) << ", request " << refused;
      }
      EXPECT_EQ(frame.render(machine, nullptr), expected) << nameOf(machine);
    }
}

}  // namespace

}  // namespace morvellan::MORVELLAN_TARGET

#endif
