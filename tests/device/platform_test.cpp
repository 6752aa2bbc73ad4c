// What the platform layer promises everybody above it: memory, copies, launches that reach every pixel once, textures
// with clamped edges, and a sum that does not depend on threads.
#include <cmath>
#include <cstdint>
#include <new>
#include <numeric>
#include <random>

#ifndef MORVELLAN_TARGET_IS_CUDA
#include <tbb/global_control.h>
#endif

#include "device/launch.h"
#include "device/memory.h"
#include "device/sum.h"
#include "device/tails.h"
#include "device/texture.h"
#include "tests/support/device_arrays.h"
#include "tests/support/engine_test.h"

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

// Adds 1 to every pixel that it is called for.
struct count_visits
{
  float* plane;

  MORVELLAN_KERNEL void operator()(Pixels at) const { storePlane(plane, at, loadPlaneInside(plane, at) + Real(1.0f)); }
};

struct count_visits_of_runs
{
  float* plane;

  MORVELLAN_KERNEL void operator()(ptrdiff_t first, int count) const
  {
    for (int i = 0; i < count; ++i)
      plane[first + i] += 1.0f;
  }
};

struct count_visits_of_items
{
  float* plane;

  MORVELLAN_KERNEL void operator()(int item) const { plane[item] += 1.0f; }
};

// The place that a grid tells its kernel, as one number.
struct write_place
{
  float* plane;

  MORVELLAN_KERNEL void operator()(Pixels at) const
  {
    for (int i = 0; i < at.count; ++i)
      plane[at.index + i] = static_cast<float>(1000 * at.y + at.x + i);
  }
};

struct fetch_row
{
  const float* indices;
  float* result;
  Texture1d texture;

  MORVELLAN_KERNEL void operator()(Pixels at) const
  {
    storePlane(result, at, fetch(texture, toInt(loadPlane(indices, at))));
  }
};

struct fetch_plane
{
  const float* columns;
  const float* rows;
  float* result;
  Texture2d texture;

  MORVELLAN_KERNEL void operator()(Pixels at) const
  {
    storePlane(result, at, fetch(texture, toInt(loadPlane(columns, at)), toInt(loadPlane(rows, at))));
  }
};

double sumOf(const std::vector<float>& values)
{
  return sumPlane(Queue{}, upload(values).data(), static_cast<ptrdiff_t>(values.size()));
}

// The error of the sum as a share of the sum of the absolute values.
double errorOfSum(const std::vector<float>& values)
{
  long double exact = 0.0L;
  long double absolute = 0.0L;
  for (const float value : values)
  {
    exact += value;
    absolute += std::abs(value);
  }
  return static_cast<double>(std::abs(static_cast<long double>(sumOf(values)) - exact) / absolute);
}

}  // namespace

ENGINE_TEST(Memory, CopiesOfEveryKindAndFills)
{
  std::vector<float> values(1001);
  std::iota(values.begin(), values.end(), 0.0f);
  const size_t bytes = values.size() * sizeof(float);
  const Buffer<float> first(values.size());
  const Buffer<float> second(values.size());
  const Buffer<float> pinned(values.size(), MemoryKind::Pinned);
  copy(pinned.data(), values.data(), bytes, CopyKind::Default);
  copy(first.data(), pinned.data(), bytes, CopyKind::HostToDevice);
  copy(second.data(), first.data(), bytes, CopyKind::DeviceToDevice);
  EXPECT_EQ(download(second), values);
  copy(first.data(), values.data(), bytes, CopyKind::Default);
  std::vector<float> back(values.size());
  copy(back.data(), first.data(), bytes, CopyKind::Default);
  EXPECT_EQ(back, values);
  fill(second.data(), 0, bytes - sizeof(float));
  back = download(second);
  EXPECT_EQ(back[0], 0.0f);
  EXPECT_EQ(back[999], 0.0f);
  EXPECT_EQ(back[1000], 1000.0f);
}

ENGINE_TEST(Memory, IsAlignedAndOwnedOnce)
{
  for (const size_t count : {size_t{1}, size_t{1001}, size_t{3} << 20})
  {
    Buffer<float> first(count);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(first.data()) % 64, 0u);
    EXPECT_EQ(first.size(), count);
    const float* const memory = first.data();
    Buffer<float> second(std::move(first));
    EXPECT_FALSE(first);  // NOLINT(bugprone-use-after-move): a moved buffer is empty
    EXPECT_EQ(second.data(), memory);
    second.reset();
    EXPECT_FALSE(second);
    EXPECT_EQ(second.size(), 0u);
  }
}

ENGINE_TEST(Memory, WhatCannotBeHadIsRaised)
{
  for (const MemoryKind kind : {MemoryKind::Device, MemoryKind::Pinned})
    EXPECT_THROW(allocate(kind, SIZE_MAX - 4096), std::bad_alloc);
}

ENGINE_TEST(Launch, ReachesEveryPixelOnce)
{
  for (const auto& [width, height] :
       {std::pair{1, 1}, {3, 5}, {16, 2}, {17, 3}, {63, 2}, {64, 1}, {65, 7}, {4097, 2}, {5000, 3}, {1, 9000}})
  {
    const size_t count = static_cast<size_t>(width) * static_cast<size_t>(height);
    const std::vector<float> once(count, 1.0f);
    const std::vector<float> never(count, 0.0f);
    const Buffer<float> flat = upload(never);
    launch(Queue{}, pixels(width, height), count_visits{flat.data()});
    EXPECT_EQ(download(flat), once) << "flat " << width << "x" << height;
    const Buffer<float> grid = upload(never);
    launch(Queue{}, grid2d(width, height), count_visits{grid.data()});
    EXPECT_EQ(download(grid), once) << "grid " << width << "x" << height;
    const Buffer<float> stretches = upload(never);
    launch(Queue{}, runs(width, height), count_visits_of_runs{stretches.data()});
    EXPECT_EQ(download(stretches), once) << "runs " << width << "x" << height;
  }
  const Buffer<float> single = upload(std::vector<float>(777, 0.0f));
  launch(Queue{}, items(777), count_visits_of_items{single.data()});
  EXPECT_EQ(download(single), std::vector<float>(777, 1.0f));
  launch(Queue{}, pixels(0, 5), count_visits{nullptr});
  launch(Queue{}, grid2d(5, 0), count_visits{nullptr});
  launch(Queue{}, runs(0, 0), count_visits_of_runs{nullptr});
  launch(Queue{}, items(0), count_visits_of_items{nullptr});
}

ENGINE_TEST(Launch, AGridTellsItsKernelWhereItIs)
{
  constexpr int width = 37, height = 5;
  const Buffer<float> plane(width * height);
  launch(Queue{}, grid2d(width, height), write_place{plane.data()});
  const std::vector<float> places = download(plane);
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x)
      EXPECT_EQ(places[static_cast<size_t>(y * width + x)], static_cast<float>(1000 * y + x));
}

ENGINE_TEST(Texture, IndicesOutsideReadTheEdge)
{
  const Buffer<float> row = upload({10.0f, 11.0f, 12.0f});
  const std::vector<float> indices{-1000000.0f, -1.0f, 0.0f, 1.0f, 2.0f, 3.0f, 1000000.0f};
  const Buffer<float> at = upload(indices);
  const Buffer<float> result(indices.size());
  launch(Queue{}, pixels(static_cast<int>(indices.size()), 1),
         fetch_row{at.data(), result.data(), {.values = row.data(), .count = 3}});
  EXPECT_EQ(download(result), (std::vector<float>{10, 10, 10, 11, 12, 12, 12}));

  const Buffer<float> plane = upload({0, 1, 2, 10, 11, 12});
  const std::vector<float> columns{-5.0f, 0.0f, 2.0f, 9.0f, 1.0f, -1.0f, 3.0f};
  const std::vector<float> rows{-5.0f, 1.0f, 0.0f, 9.0f, 2.0f, 1.0f, 0.0f};
  const Buffer<float> x = upload(columns);
  const Buffer<float> y = upload(rows);
  launch(Queue{}, pixels(static_cast<int>(columns.size()), 1),
         fetch_plane{x.data(), y.data(), result.data(), {.values = plane.data(), .width = 3, .height = 2}});
  EXPECT_EQ(download(result), (std::vector<float>{0, 10, 2, 12, 11, 10, 2}));
}

ENGINE_TEST(Sum, OfWholeNumbersIsExact)
{
  for (const int count : {0, 1, 15, 16, 17, 1023, 1024, 1025, 8191, 8192, 8193, 100000})
  {
    std::vector<float> values(static_cast<size_t>(count));
    std::iota(values.begin(), values.end(), 1.0f);
    EXPECT_EQ(sumOf(values), 0.5 * count * (count + 1.0)) << count;
  }
}

ENGINE_TEST(Sum, KeepsItsErrorBound)
{
  std::mt19937 random(3);
  std::vector<float> mixed(300000);
  for (float& value : mixed)
    value = std::ldexp(static_cast<float>(random() >> 8) - 8388608.0f, static_cast<int>(random() % 30) - 40);
  EXPECT_LT(errorOfSum(mixed), 1e-9);
  for (const float level : {0.1f, 1.0f / 3.0f, 469.799988f, 1e-30f})
    EXPECT_LT(errorOfSum(std::vector<float>(2000000, level)), 1e-9) << level;
}

#ifndef MORVELLAN_TARGET_IS_CUDA

ENGINE_TEST(Sum, DoesNotDependOnThreads)
{
  std::mt19937 random(5);
  std::vector<float> values(1000003);
  for (float& value : values)
    value = static_cast<float>(random()) * 1e-6f;
  const double many = sumOf(values);
  const tbb::global_control one(tbb::global_control::max_allowed_parallelism, 1);
  EXPECT_EQ(sumOf(values), many);
}

// Whole groups of lanes are written beyond the last pixel of a flat frame.
ENGINE_TEST(Memory, PaddingMayBeWritten)
{
  for (const size_t count : {size_t{1}, size_t{33}, size_t{2} << 20})
  {
    const Buffer<float> buffer(count);
    for (size_t i = 0; i < paddingBytes / sizeof(float); ++i)
      buffer.data()[count + i] = 1.0f;
    EXPECT_EQ(buffer.data()[count], 1.0f);
  }
}

#endif

}  // namespace morvellan::MORVELLAN_TARGET
