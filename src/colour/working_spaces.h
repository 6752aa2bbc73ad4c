// The working forms of the texture and resize stages: a CIE Lab scaled for float buffers, the luminance range
// compression that holds linear values near 0..1, and the planes of luma and colour difference of grain.
#pragma once

#include "colour/curve_math.h"
#include "colour/matrix.h"

namespace morvellan::MORVELLAN_TARGET
{

// L' = 1.16 f(Y) - 0.16 (about 0..1), a' = 2.5 (f(X) - f(Y)) + 0.5, b' = f(Y) - f(Z) + 0.5, for a D65 white, after
// CIE 15:2004. Two forms of its constants exist, the standard's decimals and its exact quotients; they are not mixed on
// a path. The whites of entering and leaving differ in their last digits.
enum class LabForm
{
  Rounded,  // of the kernels with a fixed gamut
  Exact,    // of the kernels with a colourspace index
};

namespace detail
{

MORVELLAN_INLINE Real labF(LabForm form, Real t)
{
  const Real root = plain_cbrt(t);
  if (form == LabForm::Rounded)
    return select(t < Real(0.00885600038f), t * Real(7.78700018f) + Real(0.137931034f), root);
  return select(t > Real(0.00885645207f), root, t * Real(7.7870369f) + Real(0.137931034f));
}

MORVELLAN_INLINE Real labG(LabForm form, Real f)
{
  const Real cube = f * f * f;
  if (form == LabForm::Rounded)
    return select(f >= Real(0.206892997f), cube, (f - Real(0.137931004f)) * Real(0.128419161f));
  return select(f > Real(0.206896558f), cube, (f - Real(0.137931034f)) * Real(0.12841855f));
}

}  // namespace detail

MORVELLAN_INLINE Rgb labFromXyz(LabForm form, Rgb xyz)
{
  const Real x = detail::labF(form, xyz.r * Real(1.05209005f));
  const Real y = detail::labF(form, xyz.g);
  const Real z = detail::labF(form, xyz.b * Real(0.918408573f));
  return {y * Real(1.16f) - Real(0.16f), (x - y) * Real(2.5f) + Real(0.5f), (y - z) + Real(0.5f)};
}

MORVELLAN_INLINE Rgb xyzFromLab(LabForm form, Rgb lab)
{
  const Real y = (lab.r + Real(0.159999996f)) * Real(0.862068951f);
  const Real x = (lab.g - Real(0.5f)) * Real(0.400000006f) + y;
  const Real z = y - (lab.b - Real(0.5f));
  return {detail::labG(form, x) * Real(0.950488985f), detail::labG(form, y), detail::labG(form, z) * Real(1.08884001f)};
}

// A luminance above 0.18, where the log meets the identity with its slope, to the compressed one and back.
MORVELLAN_INLINE Real compressLuminance(Real y)
{
  return curves::ln(y * Real(284.357788f) + Real(1.0f)) * Real(0.183516696f) - Real(0.545768857f);
}

MORVELLAN_INLINE Real expandLuminance(Real y)
{
  const Real e = curves::expE((y + Real(0.545768857f)) * Real(5.44909525f));
  const Real v = (e - Real(1.0f)) * Real(0.00351669639f);
  return select(v < Real(0.180000007f), (Real(-1.0f) - e) * Real(0.00351669639f), v);
}

namespace detail
{

// The pixel scaled to its new luminance. Black, negative luminances and NaN become black; up to 0.18 nothing changes.
MORVELLAN_INLINE Rgb scaleTo(Rgb p, Real y, Real changed)
{
  const Real scale = select(y <= Real(0.180000007f), Real(1.0f), changed / y);
  const Mask black = !(y > Real(0.0f));
  const Real zero = Real(0.0f);
  return {select(black, zero, p.r * scale), select(black, zero, p.g * scale), select(black, zero, p.b * scale)};
}

}  // namespace detail

MORVELLAN_INLINE Rgb compressRange(const Row3& luminance, Rgb p)
{
  const Real y = dot(luminance, p);
  return detail::scaleTo(p, y, compressLuminance(y));
}

MORVELLAN_INLINE Rgb expandRange(const Row3& luminance, Rgb p)
{
  const Real y = dot(luminance, p);
  return detail::scaleTo(p, y, expandLuminance(y));
}

// Luma and colour difference of the luminance grain patterns (a YCoCg whose Co is half the usual), and back.
MORVELLAN_INLINE Rgb lumaFromRgb(Rgb p)
{
  const Real quarter = Real(0.25f);
  const Real half = Real(0.5f);
  return {p.r * quarter + p.g * half + p.b * quarter, p.r * half - p.b * half,
          (p.g * half - p.r * quarter) - p.b * quarter};
}

MORVELLAN_INLINE Rgb rgbFromLuma(Rgb p)
{
  return {(p.r + p.g) - p.b, p.r + p.b, (p.r - p.g) - p.b};
}

}  // namespace morvellan::MORVELLAN_TARGET
