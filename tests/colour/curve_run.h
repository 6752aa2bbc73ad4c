// One curve of one table run over a frame, and the codes that sweeps of curves run over.
#pragma once

#include <cmath>
#include <string>
#include <vector>

#include "colour/program.h"
#include "tests/colour/device_frame.h"

namespace morvellan::MORVELLAN_TARGET::colour_test
{

inline constexpr CurveTable tables[] = {CurveTable::Short, CurveTable::Full};

inline std::vector<float> runStep(const Step& step, const std::vector<float>& frame)
{
  const Buffer<float> buffer = toDevice(frame);
  Program program{.width = static_cast<int>(frame.size() / 4), .height = 1, .destination = buffer.data()};
  program.add(step);
  runProgram(Queue{}, "curve", program);
  return toHost(buffer);
}

inline std::vector<float> decoded(CurveTable table, int colourspace, const std::vector<float>& frame)
{
  return runStep({.kind = StepKind::Decode, .decoding = decodingOf(table, colourspace)}, frame);
}

inline std::vector<float> encoded(CurveTable table, int colourspace, const std::vector<float>& frame)
{
  return runStep({.kind = StepKind::Encode, .encoding = encodingOf(table, colourspace)}, frame);
}

inline std::string label(CurveTable table, int colourspace)
{
  return (table == CurveTable::Full ? "full " : "short ") + std::to_string(colourspace);
}

// All half floats but the infinities and NaNs, negative ones first.
inline std::vector<float> finiteHalfFloats()
{
  std::vector<float> halves;
  for (const float sign : {-1.0f, 1.0f})
    for (int exponent = 0; exponent < 31; ++exponent)
      for (int mantissa = 0; mantissa < 1024; ++mantissa)
        halves.push_back(sign * std::ldexp(static_cast<float>(exponent == 0 ? mantissa : mantissa + 1024),
                                           (exponent == 0 ? 1 : exponent) - 25));
  return halves;
}

}  // namespace morvellan::MORVELLAN_TARGET::colour_test
