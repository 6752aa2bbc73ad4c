// A Gaussian on the CPU as a cascade: a forward and a backward filter, step by step, for as many lines as a vector has
// lanes.
#pragma once

#include "film/gaussian.h"

#ifndef MORVELLAN_TARGET_IS_CUDA

namespace morvellan::MORVELLAN_TARGET
{

// The response of a GaussianFilter as one filter run forward and then, over its answers, backward, so that each run
// reads and writes one plane. Its double pole is two poles one after the other,
// u[i] = x[i] + beta x[i-1] + pole u[i-1] and y[i] = u[i] + pole y[i-1],
// which keeps the rounding of wide blurs an order of magnitude below that of y's own second-order recursion.
struct GaussianCascade
{
  float beta, pole;
  float steadyMiddle, steady;  // u and y of a constant 1
  float gain;                  // of the input, for a gain of 1 over both runs of both axes
  float endMiddle[2], end[2];  // of the backward run where the line ends: see CascadeState::startAfter
};

GaussianCascade gaussianCascade(float sigma);

// What a step needs, in registers.
struct CascadeFeedback
{
  Real beta, pole;

  MORVELLAN_INLINE explicit CascadeFeedback(const GaussianCascade& f) : beta(Real(f.beta)), pole(Real(f.pole)) {}
};

// One of the runs.
struct CascadeState
{
  Real in, middle, out;  // the sample before, and what it left in u and y

  // In the steady state of a line that was `edge` up to here.
  MORVELLAN_INLINE void start(const GaussianCascade& f, Real edge)
  {
    in = edge;
    middle = Real(f.steadyMiddle) * edge;
    out = Real(f.steady) * edge;
  }

  // Backward over the answers of `forward`, whose last sample goes on for ever: its further answers fall from where
  // they are to the steady state, and the filter's `end` says what they leave behind.
  MORVELLAN_INLINE void startAfter(const GaussianCascade& f, const CascadeState& forward)
  {
    CascadeState settled;
    settled.start(f, forward.in);
    const Real middleOff = forward.middle - settled.middle;
    const Real outOff = forward.out - settled.out;
    start(f, settled.out);
    in = fma(Real(f.pole), middleOff + outOff, in);
    middle = middle + fma(Real(f.endMiddle[0]), middleOff, Real(f.endMiddle[1]) * outOff);
    out = out + fma(Real(f.end[0]), middleOff, Real(f.end[1]) * outOff);
  }

  MORVELLAN_INLINE Real step(const CascadeFeedback& f, Real x)
  {
    middle = fma(f.pole, middle, fma(f.beta, in, x));
    out = fma(f.pole, out, middle);
    in = x;
    return out;
  }
};

}  // namespace morvellan::MORVELLAN_TARGET

#endif
