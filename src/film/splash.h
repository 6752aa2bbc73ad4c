// The spatial enhancer's vertical pass: a linear step between two rows plus a curvature term over four. The members
// read rows of samples or a texture; those named LV treat a pixel's channels at once and sharpen luminance only.
#pragma once

#include "device/pixels.h"
#include "device/texture.h"

namespace morvellan::MORVELLAN_TARGET
{

namespace splash
{

// From a to b by t; equal samples stay as they are.
MORVELLAN_INLINE Real linearStep(Real a, Real b, Real t)
{
  return select(b == a, a, a + (b - a) * t);
}

// Half the second difference of m, a, b, p around the gap between a and b.
MORVELLAN_INLINE Real curvature(Real m, Real a, Real b, Real p)
{
  return (b + (a - m) - p) * Real(0.5f);
}

MORVELLAN_INLINE Real step(Real m, Real a, Real b, Real p, Real c, Real t)
{
  return (b - a) * t + curvature(m, a, b, p) * c + a;
}

// Row y of an RGBA image, held at its first and last row.
MORVELLAN_INLINE Rgba heldRow(const float* image, int width, int height, int y, Pixels at)
{
  const int held = y < 0 ? 0 : (y < height ? y : height - 1);
  at.index = static_cast<ptrdiff_t>(held) * width + at.x;
  return loadRgba(image, at);
}

}  // namespace splash

// One row of `n` samples out of the rows `i0` and `i1` of an image given by its rows.
struct CsplashLin
{
  const float* const* rows;
  float* dst;
  float t;
  int n, i0, i1;

  MORVELLAN_KERNEL void operator()(Pixels at) const
  {
    storePlane(dst, at, splash::linearStep(loadPlane(rows[i0], at), loadPlane(rows[i1], at), Real(t)));
  }
};

struct Csplash
{
  const float* const* rows;
  float* dst;
  float c, t;
  int n, im, i0, i1, ip;

  MORVELLAN_KERNEL void operator()(Pixels at) const
  {
    storePlane(dst, at,
               splash::step(loadPlane(rows[im], at), loadPlane(rows[i0], at), loadPlane(rows[i1], at),
                            loadPlane(rows[ip], at), Real(c), Real(t)));
  }
};

// The same two from a one-channel texture: texel centres lie half a unit past their indices, so row i is texel row i.
struct CsplashLinTex
{
  Texture2d image;
  float* dst;
  float t;
  int n, i0, i1;

  MORVELLAN_KERNEL void operator()(Pixels at) const
  {
    const Int x = Int(static_cast<int>(at.index)) + laneIndex();
    storePlane(dst, at, splash::linearStep(fetch(image, x, Int(i0)), fetch(image, x, Int(i1)), Real(t)));
  }
};

struct CsplashTex
{
  Texture2d image;
  float* dst;
  float c, t;
  int n, im, i0, i1, ip;

  MORVELLAN_KERNEL void operator()(Pixels at) const
  {
    const Int x = Int(static_cast<int>(at.index)) + laneIndex();
    storePlane(dst, at,
               splash::step(fetch(image, x, Int(im)), fetch(image, x, Int(i0)), fetch(image, x, Int(i1)),
                            fetch(image, x, Int(ip)), Real(c), Real(t)));
  }
};

// All output rows of an RGBA image in one launch over (width, rows out). Output row y stands at source row[y] +
// frac[y], and curve[y] weighs its curvature. A row whose frac is 0 is a copy of its source row.
struct CsplashTexLV
{
  const float* image;
  float* dst;
  const int* row;
  const float* curve;
  const float* frac;
  int width, height;  // of the source

  MORVELLAN_KERNEL void operator()(Pixels at) const
  {
    const int i0 = row[at.y];
    const Rgba a = splash::heldRow(image, width, height, i0, at);
    const float t = frac[at.y];
    if (t == 0.0f)
    {
      storeRgba(dst, at, a);
      return;
    }
    const Rgba m = splash::heldRow(image, width, height, i0 - 1, at);
    const Rgba b = splash::heldRow(image, width, height, i0 + 1, at);
    const Rgba p = splash::heldRow(image, width, height, i0 + 2, at);
    const Real red = splash::linearStep(a.r, b.r, Real(t));
    const Real green = splash::linearStep(a.g, b.g, Real(t));
    const Real blue = splash::linearStep(a.b, b.b, Real(t));
    const Real y = red * Real(0.25f) + green * Real(0.5f) + blue * Real(0.25f);
    const Real co = red * Real(0.5f) - blue * Real(0.5f);
    const Real cg = (green * Real(0.5f) - red * Real(0.25f)) - blue * Real(0.25f);
    // Each channel's curvature counts in proportion to the channel's own value, and luminance alone receives it.
    const Real detail = Real(0.25f) * red * splash::curvature(m.r, a.r, b.r, p.r) +
                        Real(0.5f) * green * splash::curvature(m.g, a.g, b.g, p.g) +
                        Real(0.25f) * blue * splash::curvature(m.b, a.b, b.b, p.b);
    const Real sharp = y + detail * Real(curve[at.y]);
    storeRgba(dst, at, {(sharp + co) - cg, sharp + cg, (sharp - co) - cg, a.a});
  }
};

// The linear step alone, for all channels of a pixel at once.
struct CsplashTexLVlin
{
  const float* image;
  float* dst;
  const int* row;
  const float* frac;
  int width, height;

  MORVELLAN_KERNEL void operator()(Pixels at) const
  {
    const Rgba a = splash::heldRow(image, width, height, row[at.y], at);
    const Rgba b = splash::heldRow(image, width, height, row[at.y] + 1, at);
    const Real t = Real(frac[at.y]);
    storeRgba(dst, at,
              {splash::linearStep(a.r, b.r, t), splash::linearStep(a.g, b.g, t), splash::linearStep(a.b, b.b, t),
               splash::linearStep(a.a, b.a, t)});
  }
};

}  // namespace morvellan::MORVELLAN_TARGET
