// What the tests of the capture share: a map of parameters, a block, and small grain tables.
#pragma once

#include "pipeline/host/capture.h"
#include "tests/pipeline/host/parameter_map.h"

#include <gtest/gtest.h>

#include <vector>

namespace morvellan::test
{

class CaptureTest : public testing::Test
{
protected:
  CaptureTest()
  {
    params.gpuReady = 1;
    params.gpuCount = 1;
    params.grainLevels = levels;
  }

  CaptureOutcome capture(double time = 0.0, int width = 1920, int height = 1080)
  {
    return captureFrame(values, {.width = width, .height = height, .channels = 4, .time = time}, params, tables);
  }

  // Something to render, so that the capture does not end early.
  void wake() { values.set("SoupBypass", 0.0); }

  static constexpr int levels = 2047;
  ParameterMap values;
  FrameParams params{};
  std::array<std::vector<float>, 6> memory = {std::vector<float>(levels + 1), std::vector<float>(levels + 1),
                                              std::vector<float>(levels + 1), std::vector<float>(levels + 1),
                                              std::vector<float>(levels + 1), std::vector<float>(levels + 1)};
  GrainTables tables{{{{memory[0], memory[1]}, {memory[2], memory[3]}, {memory[4], memory[5]}}}};
};

}  // namespace morvellan::test
