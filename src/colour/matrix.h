// 3 by 3 matrices of colour: host arithmetic in double for what is worked out once a launch, and their use on pixels.
#pragma once

#include "device/pixels.h"

namespace morvellan::MORVELLAN_TARGET
{

// Rows act on a colour: out.r = m[0] r + m[1] g + m[2] b.
struct Matrix3
{
  float m[9];
};

inline constexpr Matrix3 identityMatrix{{1, 0, 0, 0, 1, 0, 0, 0, 1}};

MORVELLAN_INLINE Rgb multiply(const Matrix3& k, Rgb p)
{
  return {Real(k.m[0]) * p.r + Real(k.m[1]) * p.g + Real(k.m[2]) * p.b,
          Real(k.m[3]) * p.r + Real(k.m[4]) * p.g + Real(k.m[5]) * p.b,
          Real(k.m[6]) * p.r + Real(k.m[7]) * p.g + Real(k.m[8]) * p.b};
}

// One weighted sum of the channels, such as a luminance.
struct Row3
{
  float r, g, b;
};

MORVELLAN_INLINE Real dot(const Row3& w, Rgb p)
{
  return Real(w.r) * p.r + Real(w.g) * p.g + Real(w.b) * p.b;
}

// The same in double, on the host. Products of several matrices are formed here and rounded once.
struct DoubleMatrix3
{
  double m[9];
};

constexpr DoubleMatrix3 widen(const Matrix3& k)
{
  DoubleMatrix3 d{};
  for (int i = 0; i < 9; ++i)
    d.m[i] = static_cast<double>(k.m[i]);
  return d;
}

constexpr Matrix3 rounded(const DoubleMatrix3& d)
{
  Matrix3 k{};
  for (int i = 0; i < 9; ++i)
    k.m[i] = static_cast<float>(d.m[i]);
  return k;
}

// The matrix that applies `first`, then `second`.
constexpr DoubleMatrix3 product(const DoubleMatrix3& second, const DoubleMatrix3& first)
{
  DoubleMatrix3 d{};
  for (int row = 0; row < 3; ++row)
    for (int column = 0; column < 3; ++column)
      for (int k = 0; k < 3; ++k)
        d.m[row * 3 + column] += second.m[row * 3 + k] * first.m[k * 3 + column];
  return d;
}

// Rows become columns: a table that is printed for row vectors, made to act on columns.
constexpr DoubleMatrix3 transposed(const DoubleMatrix3& d)
{
  return {{d.m[0], d.m[3], d.m[6], d.m[1], d.m[4], d.m[7], d.m[2], d.m[5], d.m[8]}};
}

// By cofactors; a determinant of exactly 0 gives the identity.
constexpr DoubleMatrix3 inverse(const DoubleMatrix3& d)
{
  const double c0 = d.m[4] * d.m[8] - d.m[5] * d.m[7];
  const double c1 = d.m[5] * d.m[6] - d.m[3] * d.m[8];
  const double c2 = d.m[3] * d.m[7] - d.m[4] * d.m[6];
  const double determinant = d.m[0] * c0 + d.m[1] * c1 + d.m[2] * c2;
  if (determinant == 0.0)
    return {{1, 0, 0, 0, 1, 0, 0, 0, 1}};
  const double s = 1.0 / determinant;
  return {{c0 * s, (d.m[2] * d.m[7] - d.m[1] * d.m[8]) * s, (d.m[1] * d.m[5] - d.m[2] * d.m[4]) * s, c1 * s,
           (d.m[0] * d.m[8] - d.m[2] * d.m[6]) * s, (d.m[2] * d.m[3] - d.m[0] * d.m[5]) * s, c2 * s,
           (d.m[1] * d.m[6] - d.m[0] * d.m[7]) * s, (d.m[0] * d.m[4] - d.m[1] * d.m[3]) * s}};
}

}  // namespace morvellan::MORVELLAN_TARGET
