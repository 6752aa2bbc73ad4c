// The dealing of grain's channels to one, two or three devices.
#include "pipeline/host/grain_dealing.h"

#include <algorithm>

namespace morvellan
{
namespace
{

constexpr std::array<GrainChannel, 3> allChannels{GrainChannel::red, GrainChannel::green, GrainChannel::blue};

bool isOn(const std::array<bool, 3>& on, GrainChannel channel)
{
  return on[static_cast<std::size_t>(channel)];
}

// Blue's halves ride along with red and green, so that two devices have the same to do.
std::vector<GrainShare> cutBlue(const GrainDevices& devices, int height)
{
  const int half = height / 2;
  return {{GrainChannel::green, devices.blue, 0, height},
          {GrainChannel::red, devices.red, 0, height},
          {GrainChannel::blue, devices.blue, half, height - half},
          {GrainChannel::blue, devices.red, 0, half}};
}

std::vector<GrainShare> inTurn(const std::array<bool, 3>& on, const std::array<int, 3>& order, int count, int height)
{
  std::vector<GrainShare> shares;
  for (const GrainChannel channel : allChannels)
    if (isOn(on, channel))
    {
      const auto turn = static_cast<int>(shares.size()) % count;
      shares.push_back({channel, order[static_cast<std::size_t>(turn)], 0, height});
    }
  return shares;
}

}  // namespace

std::vector<GrainShare> dealGrain(const std::array<bool, 3>& on, const GrainDevices& devices, int height)
{
  const int count = std::clamp(devices.count, 1, 3);
  const bool all = on[0] && on[1] && on[2];
  std::vector<GrainShare> shares;
  if (count == 2 && all)
  {
    shares = cutBlue(devices, height);
  }
  else
  {
    const std::array<int, 3> order = count == 3 ? std::array{devices.red, devices.green, devices.blue}
                                                : std::array{devices.red, devices.blue, devices.blue};
    shares = inTurn(on, order, count, height);
    // The device that also does everything else is set to work last.
    if (count == 3)
      std::ranges::reverse(shares);
  }
  std::erase_if(shares, [](const GrainShare& share) { return share.rows <= 0; });
  return shares;
}

}  // namespace morvellan
