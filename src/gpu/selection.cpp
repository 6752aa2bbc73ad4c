// The stored choice against the devices that exist: the numbers of a frame, reverts, and the list on the panel.
#include <algorithm>

#include <fmt/format.h>

#include "gpu/discovery.h"

namespace morvellan::gpu
{
namespace
{

constexpr std::array<std::string_view, 4> ordinals{"1st", "2cd", "3rd", "4th"};

std::string revertMessage(int usable, int asked)
{
  const std::string_view name = ordinals[static_cast<std::size_t>(asked)];
  if (usable == 3)
    return fmt::format("Morvellan : {} GPU set in Morvellan's list. Only 1st, 2cd, and 3rd GPUs available. Reverted to "
                       "1st GPU. Select 1st, 2cd, or 3rd.",
                       name);
  if (usable == 2)
    return fmt::format("Morvellan : {} GPU set in Morvellan's list. Only 1st and 2cd GPUs available. Reverted to 1st. "
                       "Select 1st or 2cd.",
                       name);
  return fmt::format("Morvellan : {} GPU set in Morvellan's list. Only 1st GPU available. Reverted to 1st GPU.", name);
}

}  // namespace

Selection selectDevices(std::span<const GpuDevice> devices, int asked)
{
  asked = std::clamp(asked, 0, 3);
  Selection selection{.gpuSelection = asked};
  const int usable = static_cast<int>(std::min<std::size_t>(devices.size(), 4));
  if (usable == 0)
    return selection;
  if (asked >= usable)
  {
    selection.gpuSelection = 0;
    selection.revertMessage = revertMessage(usable, asked);
  }
  // The chosen device first, then the others in the list's order; three serve at most.
  const auto first = static_cast<std::size_t>(selection.gpuSelection);
  std::array<int, 3> order{};
  order.fill(devices[first].index);
  std::size_t count = 1;
  for (std::size_t i = 0; i < devices.size() && count < order.size(); ++i)
    if (i != first)
      order[count++] = devices[i].index;
  selection.gpuRed = order[0];
  selection.gpuBlue = order[1];
  selection.gpuGreen = order[2];
  selection.gpuCount = static_cast<int>(count);
  return selection;
}

std::array<DeviceOption, 4> deviceOptions(std::span<const GpuDevice> devices)
{
  std::array<DeviceOption, 4> options;
  for (std::size_t slot = 0; slot < options.size(); ++slot)
  {
    if (slot >= devices.size())
    {
      const std::string text = fmt::format("{} GPU unavailable", ordinals[slot]);
      options[slot] = {.label = text, .hint = text};
      continue;
    }
    const GpuDevice& device = devices[slot];
    options[slot] = {.label = device.name,
                     .hint = fmt::format("{}, {}, PCIe Dom:{:x}-Bus:{:x}-Id:{:x} (Hex)", device.name,
                                         device.displayState, device.pci.domain, device.pci.bus, device.pci.device)};
  }
  return options;
}

std::string unavailableSlotMessage(int slot)
{
  std::array<std::string_view, 3> others{};
  std::size_t count = 0;
  for (std::size_t i = 0; i < ordinals.size(); ++i)
    if (static_cast<int>(i) != slot && count < others.size())
      others[count++] = ordinals[i];
  return fmt::format("Morvellan : {} GPU unavailable. Select {}, {}, or {} available GPU from Morvellan's list.",
                     ordinals[static_cast<std::size_t>(slot)], others[0], others[1], others[2]);
}

}  // namespace morvellan::gpu
