// The colour kernels by name: curves, working spaces, range compression, exposure, soft clips, and the plain layouts.
// Each is a row of composition_rows.h; `runColour(queue, "To_Log_Kernel", {...})` resolves the row and launches it.
#pragma once

#include <string_view>

#include "colour/colour_rows.h"
#include "colour/soft_clip.h"
#include "device/queue.h"

namespace morvellan::MORVELLAN_TARGET
{

// One kernel. A name that is written in the source is checked when it is compiled.
class ColourKernel
{
public:
  consteval ColourKernel(const char* name) : row(indexOf(name))
  {
    if (row < 0)
      throw "no colour kernel has this name";
  }

  // The member of a family for a linear gamut: `pattern` with "<g>" in the gamut's place, or "<v>" and "<x>" where a
  // family is split into video gamuts and the AP0 and AP1 of ACES. Throws std::invalid_argument for no such kernel.
  static ColourKernel forGamut(std::string_view pattern, LinearGamut gamut);
  // By its whole name, for tests and tools. Throws std::invalid_argument for no such kernel.
  static ColourKernel named(std::string_view name);

  constexpr const ColourRow& entry() const { return colourRows[static_cast<size_t>(row)]; }
  constexpr std::string_view name() const { return entry().name(); }

private:
  explicit constexpr ColourKernel(int row) : row(row) {}

  static constexpr int indexOf(std::string_view name)
  {
    for (size_t i = 0; i < colourRows.size(); ++i)
      if (colourRows[i].name() == name)
        return static_cast<int>(i);
    return -1;
  }

  int row;
};

// What the kernels take; a kernel reads what its row needs. All memory is the current device's.
struct ColourArguments
{
  float* source = nullptr;       // interleaved; written only by the kernels that write their source back
  float* destination = nullptr;  // interleaved; the one buffer of an in-place kernel
  float* companion = nullptr;    // interleaved as the destination: the LAB kernels put 0 into its pixels' first float
  float* planes[4] = {};         // red, green, blue, alpha; or luma and colour differences, alpha
  int width = 0, height = 0;     // of what is written
  int channels = 4;              // floats of an interleaved pixel, 3 or 4
  int colourspace = 0;
  int sourceWidth = 0, offsetX = 0, offsetY = 0;  // a crop's source row in pixels, and its corner
  float value = 0.0f;                             // exposure: what is added, or multiplied by
  float gain = 1.0f;                              // of the `_lin_gam` crops
  SoftClip softClip{};
};

void runColour(const Queue& queue, ColourKernel kernel, const ColourArguments& arguments);

}  // namespace morvellan::MORVELLAN_TARGET
