// The weights of a Lanczos filter of three lobes along one axis, worked out once for each target sample.
#pragma once

#include <vector>

namespace morvellan
{

// A target of t samples from a source of s has at most t / gcd(s, t) different sets of weights, one for each phase
// between two source samples; at a ratio of whole numbers these are few, and stay in the first-level cache.
struct FilterAxis
{
  std::vector<int>
      first;  // by target sample: the first of six source samples; those below 0 and past the end repeat the edge
  std::vector<int> phase;      // by target sample: where its set begins in weights
  std::vector<float> weights;  // six for each phase, sum 1, each repeated `copies` times
};

// L(x) = sinc(x) * sinc(x / 3) for |x| < 3, else 0.
double lanczos3(double x);

// Sizes are at least 1.
FilterAxis filterAxis(int sourceSize, int targetSize, int copies);

}  // namespace morvellan
