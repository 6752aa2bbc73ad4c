// Which device renders the grain of which channel. Where two devices serve three channels the blue plane is cut.
#pragma once

#include <array>
#include <vector>

namespace morvellan
{

enum class GrainChannel
{
  red,
  green,
  blue
};

// The devices of a frame, as FrameParams holds them. With `count` 2 the second device is `blue`.
struct GrainDevices
{
  int red = 0;
  int green = 0;
  int blue = 0;
  int count = 1;  // 1 to 3; anything less counts as 1
};

// Rows [firstRow, firstRow + rows) of a channel's plane on a device. Rows keep their place in the whole plane.
struct GrainShare
{
  GrainChannel channel = GrainChannel::red;
  int device = 0;
  int firstRow = 0;
  int rows = 0;

  friend bool operator==(const GrainShare&, const GrainShare&) = default;
};

// The shares in the order in which they are to be launched. `on` says by GrainChannel which channels have grain;
// `height` is that of the planes. Shares without rows are left out.
[[nodiscard]] std::vector<GrainShare> dealGrain(const std::array<bool, 3>& on, const GrainDevices& devices, int height);

}  // namespace morvellan
