// Launching a kernel: a structure of arguments with one call operator. The operator runs once for each group of `lanes`
// pixels, on threads of the CPU or of the GPU, in no order.
#pragma once

#include <chrono>
#include <cstddef>
#include <string_view>

#include "device/pixels.h"
#include "device/queue.h"

#ifndef MORVELLAN_TARGET_IS_CUDA
#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>
#endif

namespace morvellan::MORVELLAN_TARGET
{

// Shapes of launches. A grid keeps rows apart and tells a kernel its x and y; a flat launch runs over the pixels of a
// packed frame as one row; runs are stretches of such a row, for kernels that keep a stretch in fast memory; lines are
// independent work items (one line of a filter each) in groups of `lanes`; items are single work items without lanes.
struct Grid2d
{
  int width, height;
};

struct Flat
{
  int width, height;
};

struct Runs
{
  int width, height;
};

struct Lines
{
  int count;
};

struct Items
{
  int count;
};

inline Grid2d grid2d(int width, int height)
{
  return {width, height};
}

inline Flat pixels(int width, int height)
{
  return {width, height};
}

inline Runs runs(int width, int height)
{
  return {width, height};
}

inline Lines lines(int count)
{
  return {count};
}

inline Items items(int count)
{
  return {count};
}

// The unqualified name of a kernel type, as in the trace.
template <typename Kernel>
constexpr std::string_view kernelName()
{
  if constexpr (requires { Kernel::name; })
    return Kernel::name;
  else
  {
    constexpr std::string_view unnamed = "<unnamed>";  // nvcc's word for {anonymous}
    std::string_view type = __PRETTY_FUNCTION__;
    type.remove_prefix(type.find("Kernel = ") + 9);
    type = type.substr(0, type.find_first_of(";]"));
    for (size_t at = type.find('<'); at != std::string_view::npos; at = type.find('<', at + 1))
      if (type.substr(at, unnamed.size()) != unnamed)
        type = type.substr(0, at);
    const size_t colon = type.rfind("::");
    return colon == std::string_view::npos ? type : type.substr(colon + 2);
  }
}

// Times a launch for the queue's observer, if it has one.
class LaunchWatch
{
public:
  LaunchWatch(const Queue& queue, std::string_view kernel, int width, int height)
      : observer(queue.observer), kernel(kernel), width(width), height(height)
  {
    if (observer)
      start = std::chrono::steady_clock::now();
  }
  LaunchWatch(const LaunchWatch&) = delete;
  LaunchWatch& operator=(const LaunchWatch&) = delete;
  ~LaunchWatch()
  {
    if (!observer)
      return;
    synchronize();
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
    observer->launched(kernel, width, height, time.count());
  }

private:
  LaunchObserver* observer;
  std::string_view kernel;
  int width, height;
  std::chrono::steady_clock::time_point start;
};

namespace detail
{

// How many neighbouring groups of lanes a kernel takes in one call of a flat launch. Long chains of arithmetic wait for
// their own results; a second group fills the wait. At most 2, which is what the padding of buffers holds.
template <typename Kernel>
constexpr int groupsOf()
{
  if constexpr (requires { Kernel::groups; })
    return Kernel::groups;
  else
    return 1;
}

inline constexpr int flatBlock = 4096;  // pixels: a few of them keep a thread busy for microseconds

}  // namespace detail

// Pixels of a run on the CPU: enough to make the choice of a step cheap, few enough that reading and writing of frames
// overlaps with the work between them.
inline constexpr int runLength = 128;

#ifndef MORVELLAN_TARGET_IS_CUDA

// A kernel's finish(), if it has one, is called on a thread after some of its pixels of a grid or of its runs, after
// all of them at last.
template <typename Kernel>
void launchNamed(const Queue& queue, std::string_view name, Flat shape, const Kernel& kernel)
{
  const LaunchWatch watch(queue, name, shape.width, shape.height);
  const ptrdiff_t count = static_cast<ptrdiff_t>(shape.width) * shape.height;
  const ptrdiff_t blocks = (count + detail::flatBlock - 1) / detail::flatBlock;
  const Kernel local = kernel;
  tbb::parallel_for(tbb::blocked_range<ptrdiff_t>(0, blocks),
                    [&](const tbb::blocked_range<ptrdiff_t>& range)
                    {
                      const ptrdiff_t last = range.end() * detail::flatBlock;
                      const ptrdiff_t end = last < count ? last : count;
                      constexpr int step = lanes * detail::groupsOf<Kernel>();
                      for (ptrdiff_t i = range.begin() * detail::flatBlock; i < end; i += step)
                        local(Pixels{0, 0, i, lanes});
                    });
}

template <typename Kernel>
void launchNamed(const Queue& queue, std::string_view name, Grid2d shape, const Kernel& kernel)
{
  const LaunchWatch watch(queue, name, shape.width, shape.height);
  const Kernel local = kernel;
  const int grain = shape.width > 0 ? 1 + detail::flatBlock / shape.width : 1;
  tbb::parallel_for(tbb::blocked_range<int>(0, shape.height, static_cast<size_t>(grain)),
                    [&](const tbb::blocked_range<int>& rows)
                    {
                      for (int y = rows.begin(); y < rows.end(); ++y)
                        for (int x = 0; x < shape.width; x += lanes)
                        {
                          const int left = shape.width - x;
                          local(Pixels{x, y, static_cast<ptrdiff_t>(y) * shape.width + x, left < lanes ? left : lanes});
                        }
                      if constexpr (requires { local.finish(); })
                        local.finish();
                    });
}

// kernel(first, count): `count` neighbouring pixels, at most runLength, from pixel `first` of the frame.
template <typename Kernel>
void launchNamed(const Queue& queue, std::string_view name, Runs shape, const Kernel& kernel)
{
  const LaunchWatch watch(queue, name, shape.width, shape.height);
  const ptrdiff_t count = static_cast<ptrdiff_t>(shape.width) * shape.height;
  const ptrdiff_t stretches = (count + runLength - 1) / runLength;
  const Kernel local = kernel;
  tbb::parallel_for(tbb::blocked_range<ptrdiff_t>(0, stretches, detail::flatBlock / runLength),
                    [&](const tbb::blocked_range<ptrdiff_t>& range)
                    {
                      for (ptrdiff_t i = range.begin(); i < range.end(); ++i)
                      {
                        const ptrdiff_t left = count - i * runLength;
                        local(i * runLength, static_cast<int>(left < runLength ? left : runLength));
                      }
                      if constexpr (requires { local.finish(); })
                        local.finish();
                    });
}

// kernel(first, count): `count` neighbouring lines, at most `lanes`, from `first`.
template <typename Kernel>
void launchNamed(const Queue& queue, std::string_view name, Lines shape, const Kernel& kernel)
{
  const LaunchWatch watch(queue, name, shape.count, 1);
  const Kernel local = kernel;
  const int groups = (shape.count + lanes - 1) / lanes;
  tbb::parallel_for(0, groups,
                    [&](int group)
                    {
                      const int left = shape.count - group * lanes;
                      local(group * lanes, left < lanes ? left : lanes);
                    });
}

// kernel(i) for each item.
template <typename Kernel>
void launchNamed(const Queue& queue, std::string_view name, Items shape, const Kernel& kernel)
{
  const LaunchWatch watch(queue, name, shape.count, 1);
  const Kernel local = kernel;
  tbb::parallel_for(0, shape.count, [&](int item) { local(item); });
}

#else

namespace detail
{

template <typename Kernel>
__global__ void runFlat(Kernel kernel, ptrdiff_t count)
{
  const ptrdiff_t i = static_cast<ptrdiff_t>(blockIdx.x) * blockDim.x + threadIdx.x;
  if (i < count)
    kernel(Pixels{0, 0, i, 1});
}

template <typename Kernel>
__global__ void runStretch(Kernel kernel, ptrdiff_t count)
{
  const ptrdiff_t i = static_cast<ptrdiff_t>(blockIdx.x) * blockDim.x + threadIdx.x;
  if (i < count)
    kernel(i, 1);
}

template <typename Kernel>
__global__ void runGrid(Kernel kernel, int width, int height)
{
  const int x = static_cast<int>(blockIdx.x * blockDim.x + threadIdx.x);
  const int y = static_cast<int>(blockIdx.y * blockDim.y + threadIdx.y);
  if (x < width && y < height)
    kernel(Pixels{x, y, static_cast<ptrdiff_t>(y) * width + x, 1});
}

template <typename Kernel>
__global__ void runLines(Kernel kernel, int count)
{
  const int line = static_cast<int>(blockIdx.x * blockDim.x + threadIdx.x);
  if (line < count)
    kernel(line, 1);
}

template <typename Kernel>
__global__ void runItems(Kernel kernel, int count)
{
  const int item = static_cast<int>(blockIdx.x * blockDim.x + threadIdx.x);
  if (item < count)
    kernel(item);
}

}  // namespace detail

// A shape without pixels is no launch, as the launch configuration of the runtime has it.
template <typename Kernel>
void launchNamed(const Queue& queue, std::string_view name, Flat shape, const Kernel& kernel)
{
  const LaunchWatch watch(queue, name, shape.width, shape.height);
  const ptrdiff_t count = static_cast<ptrdiff_t>(shape.width) * shape.height;
  if (count > 0)
    detail::runFlat<<<static_cast<unsigned>((count + 255) / 256), 256>>>(kernel, count);
}

template <typename Kernel>
void launchNamed(const Queue& queue, std::string_view name, Runs shape, const Kernel& kernel)
{
  const LaunchWatch watch(queue, name, shape.width, shape.height);
  const ptrdiff_t count = static_cast<ptrdiff_t>(shape.width) * shape.height;
  if (count > 0)
    detail::runStretch<<<static_cast<unsigned>((count + 255) / 256), 256>>>(kernel, count);
}

template <typename Kernel>
void launchNamed(const Queue& queue, std::string_view name, Grid2d shape, const Kernel& kernel)
{
  const LaunchWatch watch(queue, name, shape.width, shape.height);
  const dim3 block(32, 8);
  const dim3 grid((shape.width + 31) / 32, (shape.height + 7) / 8);
  if (shape.width > 0 && shape.height > 0)
    detail::runGrid<<<grid, block>>>(kernel, shape.width, shape.height);
}

template <typename Kernel>
void launchNamed(const Queue& queue, std::string_view name, Lines shape, const Kernel& kernel)
{
  const LaunchWatch watch(queue, name, shape.count, 1);
  if (shape.count > 0)
    detail::runLines<<<(shape.count + 63) / 64, 64>>>(kernel, shape.count);
}

template <typename Kernel>
void launchNamed(const Queue& queue, std::string_view name, Items shape, const Kernel& kernel)
{
  const LaunchWatch watch(queue, name, shape.count, 1);
  if (shape.count > 0)
    detail::runItems<<<(shape.count + 63) / 64, 64>>>(kernel, shape.count);
}

#endif

template <typename Shape, typename Kernel>
void launch(const Queue& queue, Shape shape, const Kernel& kernel)
{
  launchNamed(queue, kernelName<Kernel>(), shape, kernel);
}

}  // namespace morvellan::MORVELLAN_TARGET
