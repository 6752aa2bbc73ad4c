// The lists of the choice parameters, and the sizes that the resolution presets stand for.
// An entry's index is its place in the list; projects, Looks and renders carry the index.
#pragma once

#include "params/catalogue.h"
#include "params/param_access.h"

#include <cstddef>
#include <span>

namespace morvellan::params
{
std::span<const Option> inputGamuts();
std::span<const Option> resolutions();  // of InResolution and OutResolution
std::span<const Option> softClips();
std::span<const Option> spatialEnhancements();  // of SpatialEnhancement and SpatialEnhancer
std::span<const Option> cameraStocks();
std::span<const Option> colorCorrections();
std::span<const Option> attributeZones(std::size_t axis);  // axis: index into axes
std::span<const Option> colorRefines();
std::span<const Option> refineZones(std::size_t vector);  // vector: index into refineWords
std::span<const Option> toneCurves();
std::span<const Option> dispersionPatterns();
std::span<const Option> printStocks();
std::span<const Option> outputDisplays();
std::span<const Option> grainDepths();

struct ResolutionPreset
{
  std::string label;
  Size size;           // pixels
  double pixelAspect;  // width over height of a pixel
};

// Indices of a resolution choice that are no preset, and the first that is: presets()[i - firstPreset].
inline constexpr int timelineResolution = 0;
inline constexpr int customResolution = 1;
inline constexpr int firstPreset = 2;

std::span<const ResolutionPreset> resolutionPresets();
}  // namespace morvellan::params
