// The recursive Gaussian in double precision, as the filter is published, for tests to hold the lanes against.
#pragma once

#include <algorithm>
#include <cmath>
#include <vector>

#include "device/target.h"

namespace morvellan::MORVELLAN_TARGET
{

// One line.
inline std::vector<double> gaussianInDouble(const std::vector<double>& x, double sigma)
{
  const double a = 1.695 / std::max(sigma, 0.1);
  const double e1 = std::exp(-a), e2 = std::exp(-2.0 * a);
  const double k = (1.0 - e1) * (1.0 - e1) / (1.0 + 2.0 * a * e1 - e2);
  const double a0 = k, a1 = k * (a - 1.0) * e1, a2 = k * (a + 1.0) * e1, a3 = k * e2;
  const double b1 = -2.0 * e1, b2 = e2;
  const size_t n = x.size();
  std::vector<double> y(n);
  double xp = x[0], yp = (a0 + a1) / (1.0 + b1 + b2) * x[0], yb = yp;
  for (size_t i = 0; i < n; ++i)
  {
    y[i] = a0 * x[i] + a1 * xp - b1 * yp - b2 * yb;
    xp = x[i];
    yb = yp;
    yp = y[i];
  }
  double xn = x[n - 1], xa = xn, yn = (a2 - a3) / (1.0 + b1 + b2) * xn, ya = yn;
  for (size_t i = n; i-- > 0;)
  {
    const double z = a2 * xn - a3 * xa - b1 * yn - b2 * ya;
    xa = xn;
    xn = x[i];
    ya = yn;
    yn = z;
    y[i] += z;
  }
  return y;
}

}  // namespace morvellan::MORVELLAN_TARGET
