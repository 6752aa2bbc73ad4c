// Who wants to hear of launches. A trace is an observer; without one a launch costs nothing extra.
#pragma once

#include <string_view>

namespace morvellan
{

class LaunchObserver
{
public:
  virtual ~LaunchObserver() = default;
  // After each launch: the kernel's name, the width and height that it covered, and its time in seconds.
  virtual void launched(std::string_view kernel, int width, int height, double seconds) = 0;
};

}  // namespace morvellan
