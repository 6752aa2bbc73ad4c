// The radius of grain: a stepped floor under the Size control that keeps grain printable at the picture's size,
// and the laws of the radius that follow from it.
#pragma once

namespace morvellan
{

// Mean radius in pixels. size: the Size control, 0 to 50; longerSide: the larger of target width and height.
double grainRadiusOf(double size, int longerSide);

// Side of a grid cell in pixels: a whole fraction of a pixel, or one pixel for radii of 1 and more.
double grainCellOf(double radius);

// A log-normal law of radii with a mean and a deviation in pixels, and the radius beyond which it is cut.
struct RadiusLaw
{
  double logSigma;
  double logMu;
  double radiusMax;
};

RadiusLaw radiusLawOf(double radius, double sigma);

}  // namespace morvellan
