// The filter's coefficients, and the blur of a plane as its four kernels.
#include "film/gaussian.h"

#include <algorithm>
#include <cmath>

#include "film/gaussian_fused.h"
#include "film/transpose.h"

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

constexpr double slope = 1.69500005;

double heldSigma(float sigma)
{
  return static_cast<double>(std::max(sigma, 0.100000001f));
}

}  // namespace

GaussianFilter gaussianFilter(float sigma)
{
  const double a = slope / heldSigma(sigma);
  const double e1 = std::exp(-a);
  const double e2 = std::exp(-2.0 * a);
  const float minusB1 = static_cast<float>(2.0 * e1);
  const float minusB2 = static_cast<float>(-e2);
  // (1 - e1)^2 of the feedback as it is after rounding; it divides the gain, and at wide sigmas it is small.
  const double feedback = 1.0 - static_cast<double>(minusB1) - static_cast<double>(minusB2);
  const double k = feedback / (1.0 + 2.0 * a * e1 - e2);
  const double a1 = k * (a - 1.0) * e1;
  const double a2 = k * (a + 1.0) * e1;
  const double a3 = k * e2;
  return {.a0 = static_cast<float>(k),
          .a1 = static_cast<float>(a1),
          .a2 = static_cast<float>(a2),
          .minusA3 = static_cast<float>(-a3),
          .minusB1 = minusB1,
          .minusB2 = minusB2,
          .edgeForward = static_cast<float>((k + a1) / feedback),
          .edgeBackward = static_cast<float>((a2 - a3) / feedback)};
}

int gaussianRunUp(float sigma)
{
  // The feedback falls by e in sigma / slope samples, and e^-19.5 is 3.4e-9.
  return static_cast<int>(std::ceil(19.5 * heldSigma(sigma) / slope)) + 2;
}

void blurChannel(const Queue& queue, const float* source, float* plane, float* target, int width, int height,
                 float sigma, int stride)
{
  const GaussianFilter filter = gaussianFilter(sigma);
  launch(queue, lines(width),
         iir_guassian{
             .source = source, .target = plane, .count = width, .length = height, .filter = filter, .stride = stride});
  launch(queue, grid2d(width, height),
         u_d_l_r{.source = plane, .target = target, .width = width, .height = height, .stride = stride});
  launch(queue, lines(height),
         iir_guassian{
             .source = target, .target = plane, .count = height, .length = width, .filter = filter, .stride = stride});
  launch(queue, grid2d(height, width),
         u_d_l_r{.source = plane, .target = target, .width = height, .height = width, .stride = stride});
}

void blurPlane(const Queue& queue, const float* source, float* scratch, float* target, int width, int height,
               float sigma)
{
#ifdef MORVELLAN_TARGET_IS_CUDA
  blurChannel(queue, source, scratch, target, width, height, sigma, 1);
#else
  blurFused(queue, source, scratch, target, width, height, sigma, [](const Pixels&, Real blurred) { return blurred; });
#endif
}

}  // namespace morvellan::MORVELLAN_TARGET
