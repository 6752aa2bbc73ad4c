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

// A plane: its columns, then its rows.
inline std::vector<double> blurInDouble(std::vector<double> plane, int width, int height, double sigma)
{
  const auto filterLines = [&](int count, int length, int next, int step)
  {
    std::vector<double> line(static_cast<size_t>(length));
    for (int t = 0; t < count; ++t)
    {
      const auto at = [&](int i) -> double& { return plane[static_cast<size_t>(t * next + i * step)]; };
      for (int i = 0; i < length; ++i)
        line[static_cast<size_t>(i)] = at(i);
      const std::vector<double> filtered = gaussianInDouble(line, sigma);
      for (int i = 0; i < length; ++i)
        at(i) = filtered[static_cast<size_t>(i)];
    }
  };
  filterLines(width, height, 1, width);
  filterLines(height, width, width, 1);
  return plane;
}

}  // namespace morvellan::MORVELLAN_TARGET
