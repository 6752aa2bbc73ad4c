// What the camera and the print stocks write alike: families of three channels with their master, and the print's black
// and white points.
#pragma once

#include "params/param_access.h"

#include <string_view>

namespace morvellan::params
{
Rgb readFamily(const ParamAccess& access, std::string_view stem);

// The channels; the master takes their mean, or the one value of all.
void writeFamily(ParamAccess& access, std::string_view stem, std::string_view master, const Rgb& channels);
void writeFamily(ParamAccess& access, std::string_view stem, std::string_view master, double value);

// Each channel times the mean of the three times k.
void scaleByMean(ParamAccess& access, std::string_view stem, std::string_view master, double k);

struct PrintPoints
{
  double black;
  double white;
};

inline constexpr PrintPoints plainPoints{0.141, 0.909};   // of a page without a stock
inline constexpr PrintPoints stockPoints{-0.7045, 0.75};  // of a camera stock without a print stock

void writePoints(ParamAccess& access, const PrintPoints& points);
}  // namespace morvellan::params
