// A colour program: the steps of a launch with all their numbers, run over pixels in one pass over memory.
// Kernels by name are in colour_kernels.h; a program can also be put together directly.
#pragma once

#include <cstddef>
#include <string_view>

#include "colour/composition.h"
#include "colour/curve_table.h"
#include "colour/matrix.h"
#include "colour/soft_clip.h"
#include "colour/working_spaces.h"
#include "device/queue.h"

namespace morvellan::MORVELLAN_TARGET
{

enum class StepKind : uint8_t
{
  Decode,
  Encode,
  Matrix,
  Add,       // low to all channels
  Multiply,  // by low
  Clamp,     // to [low, high]; NaN to low
  SoftClip,
  ToLab,
  FromLab,
  Compress,
  Expand,
  RgbToLuma,
  LumaToRgb,
};

// One step; which of the numbers count depends on the kind.
struct Step
{
  StepKind kind = StepKind::Matrix;
  LabForm labForm = LabForm::Exact;
  Decoding decoding{};
  Encoding encoding{};
  float low = 0.0f, high = 0.0f;
  SoftClip softClip{};
  Row3 luminance{};
  Matrix3 matrix{};
};

inline constexpr int longestProgram = 8;

// Pointers are to device memory of at least width * height pixels of their layout (the source of a crop: of rows of
// `sourceWidth` pixels), with the padding that every buffer carries.
struct Program
{
  From from = From::Self;
  To to = To::Self;
  Alpha alpha = Alpha::None;
  int floatsIn = 4, floatsOut = 4;  // of interleaved pixels, 3 or 4
  int width = 0, height = 0;        // of what is written
  int sourceWidth = 0, offsetX = 0, offsetY = 0;
  float* source = nullptr;  // written only to FrameAndSource
  float* destination = nullptr;
  float* companion = nullptr;
  float* planes[4] = {};
  bool writesNothing = false;
  int stepCount = 0;
  Step steps[longestProgram] = {};

  void add(const Step& step) { steps[stepCount++] = step; }
};

// Launches the program under a kernel's name.
void runProgram(const Queue& queue, std::string_view name, const Program& program);

}  // namespace morvellan::MORVELLAN_TARGET
