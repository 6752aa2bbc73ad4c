// The filter's coefficients, and the blur of a plane as its four kernels.
#include "film/gaussian.h"

#include <algorithm>
#include <cmath>
#include <vector>

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

#ifndef MORVELLAN_TARGET_IS_CUDA

GaussianCascade gaussianCascade(float sigma)
{
  const double a = slope / heldSigma(sigma);
  const double e1 = std::exp(-a);
  const double e2 = std::exp(-2.0 * a);
  // The response's numerator is n0 + n1 (z + 1 / z), in a scale of its own, over D(z) D(1 / z); it is
  // (1 + beta z) (1 + beta / z) in another.
  const double n0 = 1.0 - 4.0 * a * e2 - e2 * e2;
  const double n1 = e1 * ((a - 1.0) + (a + 1.0) * e2);
  const double half = n0 / 2.0;
  GaussianCascade f{};
  f.beta = static_cast<float>(n1 / (half + std::sqrt(half * half - n1 * n1)));
  f.pole = static_cast<float>(e1);
  // The rounded pole counts: what it leaves of 1 divides the gain, and at wide sigmas it is small.
  const auto beta = static_cast<double>(f.beta);
  const auto pole = static_cast<double>(f.pole);
  const double steadyMiddle = (1.0 + beta) / (1.0 - pole);
  const double steady = steadyMiddle / (1.0 - pole);
  f.steadyMiddle = static_cast<float>(steadyMiddle);
  f.steady = static_cast<float>(steady);
  f.gain = static_cast<float>(1.0 / (steady * steady * steady * steady));
  // Where a line ends, what u and y are off by falls as the poles have it, and the backward run over it starts far
  // behind, at 0.
  for (const size_t unit : {0, 1})
  {
    double u = unit == 0 ? 1.0 : 0.0;
    double y = unit == 1 ? 1.0 : 0.0;
    std::vector<double> tail;
    for (int i = 0; i < static_cast<int>(45.0 / a) + 8; ++i)
    {
      u *= pole;
      y = u + pole * y;
      tail.push_back(y);
    }
    double in = 0.0, middle = 0.0, out = 0.0;
    for (size_t i = tail.size(); i-- > 0;)
    {
      middle = tail[i] + beta * in + pole * middle;
      out = middle + pole * out;
      in = tail[i];
    }
    f.endMiddle[unit] = static_cast<float>(middle);
    f.end[unit] = static_cast<float>(out);
  }
  return f;
}

#endif

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
