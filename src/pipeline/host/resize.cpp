// The resampler's walk over the image. Each tile is done in strips as wide as the first-level cache allows: a strip
// goes down the picture with the last few filtered source rows in a ring, so that every source row is filtered once a
// strip.
#include "pipeline/host/resize.h"

#include "pipeline/host/lines.h"

#include <algorithm>
#include <array>
#include <stdexcept>

#include <tbb/blocked_range2d.h>
#include <tbb/global_control.h>
#include <tbb/parallel_for.h>
#include <tbb/partitioner.h>
#include <tbb/scalable_allocator.h>

namespace morvellan
{
namespace
{

// The columns of a strip, sorted by whether their taps leave the row.
struct StripColumns
{
  int begin;
  int leftEnd;     // up to here the first tap is before the row
  int rightBegin;  // from here the last tap is past the row
  int end;
};

StripColumns sortColumns(const std::vector<int>& first, int sourceWidth, int begin, int end)
{
  const auto at = [&](int x) { return first.begin() + x; };
  const auto left = std::lower_bound(at(begin), at(end), 0);
  const auto right = std::upper_bound(left, at(end), sourceWidth - filterTaps);
  return {begin, static_cast<int>(left - first.begin()), static_cast<int>(right - first.begin()), end};
}

// Filters one source row for the columns of a strip.
class RowFilter
{
public:
  RowFilter(const LineFunctions& lines, const FilterAxis& columns, const ConstImageView& image, int begin, int end)
      : lines(lines), columns(columns), image(image), strip(sortColumns(columns.first, image.width, begin, end))
  {
  }

  void operator()(int row, float* target) const
  {
    const float* const source = image.row(row);
    filterAtEdge(source, strip.begin, strip.leftEnd, target);
    filter(source, strip.leftEnd, strip.rightBegin, target);
    filterAtEdge(source, strip.rightBegin, strip.end, target);
  }

private:
  void filter(const float* source, int begin, int end, float* target) const
  {
    const std::ptrdiff_t nextRow = image.rowStep / static_cast<std::ptrdiff_t>(sizeof(float));
    lines.filterAlongRow(source, nextRow, columns.first.data() + begin, columns.phase.data() + begin,
                         columns.weights.data(), end - begin,
                         target + static_cast<std::ptrdiff_t>(begin - strip.begin) * rgba);
  }

  // The columns whose taps leave a row on one side reach over few source pixels; these are copied with the edge held.
  void filterAtEdge(const float* source, int begin, int end, float* target) const
  {
    for (int x = begin; x < end; ++x)
    {
      std::array<float, std::size_t{filterTaps} * rgba> held;
      const int first = columns.first[static_cast<std::size_t>(x)];
      for (int tap = 0; tap < filterTaps; ++tap)
      {
        const std::ptrdiff_t at = std::clamp(first + tap, 0, image.width - 1);
        std::copy_n(source + at * rgba, rgba, held.begin() + static_cast<std::ptrdiff_t>(tap) * rgba);
      }
      constexpr int fromTheStart = 0;
      lines.filterAlongRow(held.data(), 0, &fromTheStart, &columns.phase[static_cast<std::size_t>(x)],
                           columns.weights.data(), 1, target + static_cast<std::ptrdiff_t>(x - strip.begin) * rgba);
    }
  }

  const LineFunctions& lines;
  const FilterAxis& columns;
  const ConstImageView& image;
  StripColumns strip;
};

// An output of this size and more does not fit the caches, and is written past them.
constexpr std::ptrdiff_t streamedBytes = std::ptrdiff_t{8} << 20;

}  // namespace

void Resize::prepare(const ConstImageView& from, const ImageView& to)
{
  source = from;
  target = to;
  if (!from.pixels || !to.pixels || from.width < 1 || from.height < 1 || to.width < 1 || to.height < 1)
  {
    state = ResizeStatus::badSize;
    return;
  }
  columns = filterAxis(source.width, target.width, rgba);
  rows = filterAxis(source.height, target.height, 1);
  state = ResizeStatus::ready;
}

std::size_t Resize::scratchFloats()
{
  return std::size_t{rowsKept} * (std::size_t{stripWidth} * rgba + rowPadding);
}

void Resize::run()
{
  if (state != ResizeStatus::ready)
    return;
  std::vector<float> scratch(scratchFloats());
  resampleTile(0, target.width, 0, target.height, scratch.data());
  state = ResizeStatus::done;
}

void Resize::resampleTile(int x0, int x1, int y0, int y1, float* scratch) const
{
  const LineFunctions& lines = lineFunctions();
  constexpr std::ptrdiff_t ringStep = stripWidth * rgba + rowPadding;
  const auto ringRow = [&](int row) { return scratch + (row & (rowsKept - 1)) * ringStep; };
  const bool stream = target.rowStep * target.height >= streamedBytes;
  for (int begin = x0; begin < x1; begin += stripWidth)
  {
    const int end = std::min(begin + stripWidth, x1);
    const RowFilter filterRow(lines, columns, source, begin, end);
    int nextRow = 0;  // the first source row that is not in the ring yet
    for (int y = y0; y < y1; ++y)
    {
      const int first = rows.first[static_cast<std::size_t>(y)];
      const auto held = [&](int row) { return std::clamp(row, 0, source.height - 1); };
      const int last = held(first + filterTaps - 1);
      for (nextRow = std::max(nextRow, held(first)); nextRow <= last; ++nextRow)
        filterRow(nextRow, ringRow(nextRow));
      std::array<const float*, filterTaps> taps;
      for (int tap = 0; tap < filterTaps; ++tap)
        taps[static_cast<std::size_t>(tap)] = ringRow(held(first + tap));
      lines.filterAcrossRows(taps.data(), rows.weights.data() + rows.phase[static_cast<std::size_t>(y)],
                             (end - begin) * rgba, stream, target.row(y) + static_cast<std::ptrdiff_t>(begin) * rgba);
    }
  }
  if (stream)
    lines.streamFence();
}

namespace
{

// The pool that the tasks' scratch memory comes from.
class ScratchPool
{
public:
  ScratchPool()
  {
    const rml::MemPoolPolicy policy(&ScratchPool::allocate, &ScratchPool::release);
    if (rml::pool_create_v1(0, &policy, &pool) != rml::POOL_OK)
      throw std::runtime_error("Morvellan : the resampler could not make its memory pool");
  }
  ScratchPool(const ScratchPool&) = delete;
  ScratchPool& operator=(const ScratchPool&) = delete;
  ~ScratchPool() { rml::pool_destroy(pool); }

  rml::MemoryPool* get() const { return pool; }

private:
  static void* allocate(std::intptr_t, std::size_t& bytes) { return scalable_malloc(bytes); }
  static int release(std::intptr_t, void* memory, std::size_t)
  {
    scalable_free(memory);
    return 0;
  }

  rml::MemoryPool* pool = nullptr;
};

// One task's scratch memory.
class Scratch
{
public:
  Scratch(const ScratchPool& pool, std::size_t floats)
      : pool(pool), memory(static_cast<float*>(rml::pool_malloc(pool.get(), floats * sizeof(float))))
  {
    if (!memory)
      throw std::bad_alloc();
  }
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;
  ~Scratch() { rml::pool_free(pool.get(), memory); }

  float* data() const { return memory; }

private:
  const ScratchPool& pool;
  float* memory;
};

}  // namespace

// The body of the parallel loop: one tile of the target.
class ResizeTBBTask
{
public:
  ResizeTBBTask(const Resize& resize, const ScratchPool& pool) : resize(resize), pool(pool) {}

  void operator()(const tbb::blocked_range2d<unsigned>& tile) const
  {
    const Scratch scratch(pool, Resize::scratchFloats());
    resize.resampleTile(static_cast<int>(tile.cols().begin()), static_cast<int>(tile.cols().end()),
                        static_cast<int>(tile.rows().begin()), static_cast<int>(tile.rows().end()), scratch.data());
  }

private:
  const Resize& resize;
  const ScratchPool& pool;
};

void ResizeTBB::run()
{
  if (state != ResizeStatus::ready)
    return;
  using Control = tbb::global_control;
  const Control control(Control::max_allowed_parallelism, Control::active_value(Control::max_allowed_parallelism));
  const ScratchPool pool;
  // Tiles are cut at any pixel; these are the sizes below which cutting further costs more than it gains.
  constexpr unsigned rowGrain = 64;
  constexpr unsigned columnGrain = stripWidth / 4;
  tbb::parallel_for(tbb::blocked_range2d<unsigned>(0, static_cast<unsigned>(target.height), rowGrain, 0,
                                                   static_cast<unsigned>(target.width), columnGrain),
                    ResizeTBBTask(*this, pool), tbb::auto_partitioner());
  state = ResizeStatus::done;
}

}  // namespace morvellan
