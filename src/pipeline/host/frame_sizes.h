// How the crop and target sizes of a frame come from the parameters: held to the frame, and judged as enlargement or
// reduction. It also holds the render time's share of the geometry, the offsets of crop and placing.
#pragma once

#include "pipeline/host/frame_params.h"
#include "pipeline/host/parameter_values.h"

#include <array>
#include <cstddef>
#include <span>
#include <string_view>

namespace morvellan
{

// A size parameter that exceeded the frame, and the value that goes back into it.
struct SizeCorrection
{
  std::string_view name;
  int value;
};

// At most one correction for each of the four size parameters.
class SizeCorrections
{
public:
  void add(SizeCorrection correction) { entries[count++] = correction; }
  std::span<const SizeCorrection> list() const { return {entries.data(), count}; }

private:
  std::array<SizeCorrection, 4> entries{};
  std::size_t count = 0;
};

// Sets the four sizes and resizeMode from the parameters and from frameWidth and frameHeight. A size below 1, which no
// control offers, counts as 1. At resizeMode 0 all four sizes are the frame's. Returns what the host's parameters must
// be set to.
SizeCorrections captureSizes(const ParameterValues& values, FrameParams& params);

// The four offsets, 0.5 unless the resolution choice of their side is Custom Size (1). Not read at resizeMode 0.
void captureOffsets(const ParameterValues& values, FrameParams& params);

}  // namespace morvellan
