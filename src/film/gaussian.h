// The recursive Gaussian (Deriche, second order) under every separable blur: the line filter as a kernel, and the blur
// of a whole plane in the form that is fastest on the target. Its response is about 1.18 sigma wide, so that no other
// filter can stand in for it.
#pragma once

#include "device/launch.h"
#include "device/tails.h"

namespace morvellan::MORVELLAN_TARGET
{

// Forward:  y[i] = a0 x[i] + a1 x[i-1] - b1 y[i-1] - b2 y[i-2]
// Backward: z[i] = a2 x[i+1] - a3 x[i+2] - b1 z[i+1] - b2 z[i+2];  the result is y + z.
// Subtracted coefficients are stored negated. The edges are the steady states of a constant 1 before and after the
// line.
struct GaussianFilter
{
  float a0, a1, a2, minusA3, minusB1, minusB2;
  float edgeForward, edgeBackward;
};

// `sigma` in pixels, held at 0.1 or above. The coefficients are scaled for the rounded feedback, so that a constant
// line keeps its value at any sigma (1e-6 relative at sigma 16).
GaussianFilter gaussianFilter(float sigma);

// How many samples ahead of the first wanted one a filter may start, in the steady state of the sample there, with an
// error below 1e-8 of the samples before it.
int gaussianRunUp(float sigma);

// What the filter reads for a sample that is not finite is 0, so that one bad pixel stays one pixel.
MORVELLAN_INLINE Real finiteOrZero(Real x)
{
  return select(abs(x) <= Real(3.40282347e38f), x, Real(0.0f));
}

// The recursions, in the order that leaves one multiply-add between a sample and the next.
struct ForwardState
{
  Real x1, y1, y2;

  MORVELLAN_INLINE void start(const GaussianFilter& f, Real edge)
  {
    x1 = edge;
    y1 = y2 = Real(f.edgeForward) * edge;
  }

  MORVELLAN_INLINE Real step(const GaussianFilter& f, Real x)
  {
    const Real known = fma(Real(f.a0), x, fma(Real(f.a1), x1, Real(f.minusB2) * y2));
    const Real y = fma(Real(f.minusB1), y1, known);
    y2 = y1;
    y1 = y;
    x1 = x;
    return y;
  }
};

struct BackwardState
{
  Real x1, x2, z1, z2;

  MORVELLAN_INLINE void start(const GaussianFilter& f, Real edge)
  {
    x1 = x2 = edge;
    z1 = z2 = Real(f.edgeBackward) * edge;
  }

  // The backward answer at the sample whose value is x.
  MORVELLAN_INLINE Real step(const GaussianFilter& f, Real x)
  {
    const Real known = fma(Real(f.a2), x1, fma(Real(f.minusA3), x2, Real(f.minusB2) * z2));
    const Real z = fma(Real(f.minusB1), z1, known);
    z2 = z1;
    z1 = z;
    x2 = x1;
    x1 = x;
    return z;
  }
};

// Filters `count` lines of `length` samples, in a launch over lines(count): line t starts at source[t * stride] and
// steps by count * stride. `target` is tight, and must not overlap `source`.
struct iir_guassian
{
  const float* source;
  float* target;
  int count, length;
  GaussianFilter filter;
  int stride;

  MORVELLAN_KERNEL void operator()(int first, int inside) const
  {
    const ptrdiff_t step = count;
    ForwardState forward;
    forward.start(filter, sample(0, first, inside));
    for (int i = 0; i < length; ++i)
      storePlane(target, Pixels{0, 0, i * step + first, inside}, forward.step(filter, sample(i, first, inside)));
    BackwardState backward;
    backward.start(filter, sample(length - 1, first, inside));
    for (int i = length - 1; i >= 0; --i)
    {
      const Pixels at{0, 0, i * step + first, inside};
      storePlane(target, at, loadPlaneInside(target, at) + backward.step(filter, sample(i, first, inside)));
    }
  }

  MORVELLAN_INLINE Real sample(int i, int first, int inside) const
  {
    const float* at = source + (static_cast<ptrdiff_t>(i) * count + first) * stride;
    if (stride == 1)
      return finiteOrZero(loadFirst(at, inside));
    return finiteOrZero(gather(at, min(laneIndex(), Int(inside - 1)) * Int(stride)));
  }
};

// One Gaussian of a plane, columns first: source -> target, with `scratch` of the same size between. Planes are tight,
// width * height floats with the padding of a Buffer, and distinct, but that `target` may be `scratch`'s later reader
// only. On the GPU it is iir_guassian, u_d_l_r, iir_guassian, u_d_l_r; on the CPU the transposes happen in registers
// inside the filters, and a fused launch bears the names of what it fuses.
void blurPlane(const Queue& queue, const float* source, float* scratch, float* target, int width, int height,
               float sigma);

// The same of one channel of an interleaved frame into the same channel of another, `stride` floats a pixel, as the
// four kernels. `plane` is width * height floats.
void blurChannel(const Queue& queue, const float* source, float* plane, float* target, int width, int height,
                 float sigma, int stride);

}  // namespace morvellan::MORVELLAN_TARGET
