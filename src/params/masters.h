// Masters and their channels: a master is the mean of its channels, and moving it moves them, with carry at the limits.
// The tone masters also have a swatch, a two-way view of their channels.
#pragma once

#include "params/param_access.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace morvellan::params
{
struct Master
{
  std::string name;
  std::vector<std::string> channels;
  double lo = 0.0;
  double hi = 1.0;
  bool clamped = true;      // the enhancers' channels are not held to lo and hi
  std::string swatch;       // empty: none
  double swatchSpan = 0.0;  // how far a swatch spreads its channels around a master of 0
};

// Every master of the page.
std::span<const Master> masters();

// What a master is of its channels.
double mean(std::span<const double> values);

// Where channels go when their master is set to value: each moves by the master's distance from their mean, and what a
// channel would overshoot is carried to the others, half of it to each.
std::vector<double> carried(const Master& master, std::span<const double> channels, double value);

// The swatch of three channels: 1 for the largest, less for the others by their distance from it.
Rgb toneSwatch(const Rgb& channels);

// The three channels of a swatch whose mean is in the master.
Rgb toneChannels(const Master& master, const Rgb& swatch);

// The rules of a user's edit.
void masterChanged(ParamAccess& access, const Master& master);
void channelChanged(ParamAccess& access, const Master& master);
void toneSwatchChanged(ParamAccess& access, const Master& master);
}  // namespace morvellan::params
