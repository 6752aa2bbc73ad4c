// Running a colour program: reading and writing of pixels in every layout around its steps. On the CPU the steps run
// over a block of pixels (block.h); on CUDA each thread takes its pixel through.
#include "colour/program.h"

#include "colour/block.h"
#include "colour/curves.h"
#include "colour/step.h"
#include "device/launch.h"

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

// How the pixels of a lane group lie: in the frame's order, or in any, which is cheaper where both sides have four
// interleaved channels; and then past the caches.
enum class Order : uint8_t
{
  Kept,
  Any,
  AnyStreamed,
};

template <Order O>
MORVELLAN_INLINE void loadFour(const float* from, Rgba& p)
{
#ifndef MORVELLAN_TARGET_IS_CUDA
  if constexpr (O != Order::Kept)
    return loadPixelsInAnyOrder(from, p.r, p.g, p.b, p.a);
#endif
  loadInterleaved(from, p.r, p.g, p.b, p.a);
}

template <Order O>
MORVELLAN_INLINE void storeFour(float* to, Rgba p)
{
#ifndef MORVELLAN_TARGET_IS_CUDA
  if constexpr (O == Order::Any)
    return storePixelsInAnyOrder(to, p.r, p.g, p.b, p.a);
  if constexpr (O == Order::AnyStreamed)
    return streamPixelsInAnyOrder(to, p.r, p.g, p.b, p.a);
#endif
  storeInterleaved(to, p.r, p.g, p.b, p.a);
}

// The pixels at `from` of the frame that is read; `to` is where they will be written.
template <Order O>
MORVELLAN_INLINE Rgba read(const Program& program, ptrdiff_t from, ptrdiff_t to)
{
  Rgba p;
  p.a = Real(1.0f);
  if (program.from == From::Planes)
  {
    p.r = load(program.planes[0] + from);
    p.g = load(program.planes[1] + from);
    p.b = load(program.planes[2] + from);
    if (program.alpha == Alpha::Copy && program.floatsOut == 4)
      p.a = load(program.planes[3] + from);
  }
  else
  {
    const float* frame = (program.from == From::Self ? program.destination : program.source) + from * program.floatsIn;
    if (program.floatsIn == 4)
      loadFour<O>(frame, p);
    else
      loadInterleaved(frame, p.r, p.g, p.b);
  }
  if (program.to == To::Frame && program.floatsOut == 4 && program.alpha == Alpha::None)
  {
    Rgba before;
    loadFour<O>(program.destination + to * 4, before);
    p.a = before.a;
  }
  else if (program.alpha == Alpha::One)
    p.a = Real(1.0f);
  return p;
}

template <Order O>
MORVELLAN_INLINE void writeInterleaved(float* to, int floats, Rgba p)
{
  if (floats == 4)
    storeFour<O>(to, p);
  else
    storeInterleaved(to, p.r, p.g, p.b);
}

template <Order O>
MORVELLAN_INLINE void write(const Program& program, ptrdiff_t to, Rgba p)
{
  if (program.to == To::Planes)
  {
    store(program.planes[0] + to, p.r);
    store(program.planes[1] + to, p.g);
    store(program.planes[2] + to, p.b);
    if (program.alpha == Alpha::Copy && program.floatsIn == 4)
      store(program.planes[3] + to, p.a);
    return;
  }
  writeInterleaved<O>(program.destination + to * program.floatsOut, program.floatsOut, p);
  if (program.to == To::FrameAndSource)
    writeInterleaved<O>(program.source + to * program.floatsIn, program.floatsIn, p);
}

// A pixel in place with no steps is left alone at once.
MORVELLAN_INLINE bool isIdle(const Program& program)
{
  const bool inPlace = program.from == From::Self && program.to == To::Self;
  return program.writesNothing || (program.stepCount == 0 && inPlace);
}

#ifndef MORVELLAN_TARGET_IS_CUDA

// Frames beyond this are not found in the caches by the next kernel, so they need not pass through them.
constexpr size_t streamedBytes = 16u << 20;

Order orderOf(const Program& program)
{
  const bool frameIn = program.from == From::Self || program.from == From::Frame;
  if (!frameIn || program.to == To::Planes || program.floatsIn != 4 || program.floatsOut != 4)
    return Order::Kept;
  const size_t bytes = static_cast<size_t>(program.width) * static_cast<size_t>(program.height) * 4 * sizeof(float);
  const bool aligned = reinterpret_cast<uintptr_t>(program.destination) % 64 == 0;
  const bool streams = program.from == From::Frame && program.to == To::Frame && program.alpha != Alpha::None;
  return streams && aligned && bytes >= streamedBytes ? Order::AnyStreamed : Order::Any;
}

template <Order O>
struct colour_program
{
  const Program& program;

  void operator()(ptrdiff_t first, int count) const
  {
    if (isIdle(program))
      return;
    Block block;
    if (program.from == From::Crop)
      readCrop(block, first, count);
    else
      readStretch(block, 0, count, first, first);
    // A matrix at the end is applied on the way out, which spares a pass over the block.
    const bool matrixLast = program.stepCount > 0 && program.steps[program.stepCount - 1].kind == StepKind::Matrix;
    const int passes = program.stepCount - (matrixLast ? 1 : 0);
    for (int s = 0; s < passes; ++s)
      applyStep(program.steps[s], block, count);
    if (matrixLast)
      writeBlock(block, first, count, [k = program.steps[passes].matrix](Rgb p) { return multiply(k, p); });
    else
      writeBlock(block, first, count, [](Rgb p) { return p; });
    if (program.to == To::SelfAndCompanion)
      for (ptrdiff_t i = first; i < first + count; ++i)
        program.companion[i * program.floatsOut] = 0.0f;
  }

  void finish() const
  {
    if constexpr (O == Order::AnyStreamed)
      finishStreaming();
  }

private:
  template <typename Last>
  void writeBlock(const Block& block, ptrdiff_t first, int count, const Last& last) const
  {
    for (int i = 0; i < count; i += lanes)
    {
      const Rgb p = last(loadBlock(block, i));
      write<O>(program, first + i, {p.r, p.g, p.b, load(block.a + i)});
    }
  }

  // Pixels [begin, end) of the run, which stand together in the frame that is read.
  void readStretch(Block& block, int begin, int end, ptrdiff_t from, ptrdiff_t to) const
  {
    for (int i = begin; i < end; i += lanes)
    {
      const Rgba p = read<O>(program, from + (i - begin), to + (i - begin));
      storeBlock(block, i, {p.r, p.g, p.b});
      store(block.a + i, p.a);
    }
  }

  void readCrop(Block& block, ptrdiff_t first, int count) const
  {
    for (int i = 0; i < count;)
    {
      const ptrdiff_t y = (first + i) / program.width;
      const ptrdiff_t x = (first + i) % program.width;
      const ptrdiff_t left = program.width - x;
      const int end = left < count - i ? i + static_cast<int>(left) : count;
      readStretch(block, i, end, (y + program.offsetY) * program.sourceWidth + x + program.offsetX, first + i);
      i = end;
    }
  }
};

#else

struct StepPixel
{
  const Step& step;
  Rgb& p;
  template <StepKind Kind>
  MORVELLAN_INLINE void operator()(KindOf<Kind>) const
  {
    p = stepped<Kind>(step, p);
  }
};

MORVELLAN_INLINE Rgb apply(const Step& step, Rgb p)
{
  if (step.kind == StepKind::Decode)
    return decode(step.decoding, p);
  if (step.kind == StepKind::Encode)
    return encode(step.encoding, p);
  withKind(step.kind, StepPixel{step, p});
  return p;
}

struct colour_program
{
  Program program;

  MORVELLAN_KERNEL void operator()(ptrdiff_t first, int) const
  {
    if (isIdle(program))
      return;
    ptrdiff_t from = first;
    if (program.from == From::Crop)
      from = (first / program.width + program.offsetY) * program.sourceWidth + first % program.width + program.offsetX;
    const Rgba pixel = read<Order::Kept>(program, from, first);
    Rgb p{pixel.r, pixel.g, pixel.b};
    for (int s = 0; s < program.stepCount; ++s)
      p = apply(program.steps[s], p);
    write<Order::Kept>(program, first, {p.r, p.g, p.b, pixel.a});
    if (program.to == To::SelfAndCompanion)
      program.companion[first * program.floatsOut] = 0.0f;
  }
};

#endif

}  // namespace

void runProgram(const Queue& queue, std::string_view name, const Program& program)
{
  const Runs shape = runs(program.width, program.height);
#ifdef MORVELLAN_TARGET_IS_CUDA
  launchNamed(queue, name, shape, colour_program{program});
#else
  switch (orderOf(program))
  {
  case Order::Kept:
    return launchNamed(queue, name, shape, colour_program<Order::Kept>{program});
  case Order::Any:
    return launchNamed(queue, name, shape, colour_program<Order::Any>{program});
  case Order::AnyStreamed:
    return launchNamed(queue, name, shape, colour_program<Order::AnyStreamed>{program});
  }
#endif
}

}  // namespace morvellan::MORVELLAN_TARGET
