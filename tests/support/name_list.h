// An observer that remembers which kernels ran; a fused launch counts as each of the kernels that it fuses.
#pragma once

#include <string>

#include "device/host/launch_observer.h"

namespace morvellan
{

class NameList : public LaunchObserver
{
public:
  void launched(std::string_view kernel, int, int, double) override { all += std::string(kernel) + "+"; }

  size_t count(const std::string& name) const
  {
    const std::string sought = "+" + name + "+";
    size_t found = 0;
    for (size_t at = all.find(sought); at != std::string::npos; at = all.find(sought, at + 1))
      ++found;
    return found;
  }

  // "+a+b+c+" in their order.
  const std::string& text() const { return all; }

private:
  std::string all = "+";
};

}  // namespace morvellan
