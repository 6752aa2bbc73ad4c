// Transfer curves of film scanning and of the ACES family.
#pragma once

#include "colour/curve_math.h"
#include "colour/matrix.h"

namespace morvellan::MORVELLAN_TARGET::curves
{

// Kodak Cineon printing density (1993): white at code 685, black at 95, 0.002 density a code, gamma 0.6; REDlogFilm is
// the same curve.
struct Cineon
{
  static MORVELLAN_INLINE Real decode(Real x)
  {
    const Real light = exp10((x * Real(1023.0f) - Real(685.0f)) * Real(0.00333333341f));
    return (light - Real(0.0107977521f)) * Real(1.01091564f);
  }
  // The light 0.9892 x + 0.0107977 is meant to be rounded once, from double: taken as x less a hundredth of it.
  static MORVELLAN_INLINE Real encode(Real x)
  {
    const Real light = x + (Real(0.010797752067446709f) - x * Real(0.0108f));
    return (log10(light) * Real(300.0f) + Real(685.0f)) * Real(per1023);
  }
};

// The Josh Pines log (PLogLin): mid-grey 0.18 at code 445, 300 codes a decade. Undated; in use since the 2000s.
struct PLogLin
{
  static MORVELLAN_INLINE Real decode(Real x)
  {
    return exp10((x * Real(1023.0f) - Real(445.0f)) * Real(0.00333333341f)) * Real(0.180000007f);
  }
  static MORVELLAN_INLINE Real encode(Real x)
  {
    return (log10(x * Real(5.55555534f)) * Real(300.0f) + Real(445.0f)) * Real(per1023);
  }
};

// ACEScc, S-2014-003 (2014). Departs at and below 0, which encodes to itself and not to the curve's floor -0.3584.
struct AcesCc
{
  static MORVELLAN_INLINE Real decode(Real x)
  {
    const Real v = plain_exp2(x * Real(17.5200005f) - Real(9.72000027f));
    return select(x > Real(-0.301369876f), v, (v - Real(0.0000152587891f)) * Real(2.0f));
  }
  static MORVELLAN_INLINE Real encode(Real x)
  {
    const Real low = x * Real(0.5f) + Real(0.0000152587891f);
    const Real light = select(x < Real(0.0000305175781f), low, x);
    const Real code = (plain_log2(light) + Real(9.72000027f)) * Real(0.0570776239f);
    return select(x <= Real(0.0f), x, code);
  }
};

// ACEScct, S-2016-001 (2016).
struct AcesCct
{
  static MORVELLAN_INLINE Real decode(Real x)
  {
    const Real line = (x - Real(0.072905533f)) * Real(0.0948745236f);
    return select(x > Real(0.155251145f), plain_exp2(x * Real(17.5200005f) - Real(9.72000027f)), line);
  }
  static MORVELLAN_INLINE Real encode(Real x)
  {
    const Real log = (plain_log2(x) + Real(9.72000027f)) * Real(0.0570776239f);
    return select(x > Real(0.0078125f), log, x * Real(10.5402374f) + Real(0.072905533f));
  }
};

// ACESproxy12, S-2013-001 (2013): whole 12-bit codes from 256 to 3760.
struct AcesProxy
{
  static MORVELLAN_INLINE Real decode(Real x)
  {
    return plain_exp2((x * Real(4095.0f) - Real(1700.0f)) * Real(0.00499999989f) - Real(2.5f));
  }
  static MORVELLAN_INLINE Real encode(Real x)
  {
    // Halves away from zero; a code is positive here.
    const Real code = floor((plain_log2(x) + Real(2.5f)) * Real(200.0f) + Real(1700.0f) + Real(0.5f));
    const Real bounded = clamp(code, Real(256.0f), Real(3760.0f)) * Real(0.000244200259f);
    return select(x <= Real(0.0011857372f), Real(0.0625152662f), bounded);
  }
};

// The two tables of ADX, printed for row vectors: channel-dependent density to channel-independent density, and
// exposure to ACES.
inline constexpr DoubleMatrix3 cddToCid =
    transposed(widen({{0.755729973f, 0.059009999f, 0.161339998f, 0.221970007f, 0.969280005f, 0.0740600005f,
                       0.0222999994f, -0.0282899998f, 0.764599979f}}));
inline constexpr DoubleMatrix3 exposureToAces =
    transposed(widen({{0.722859979f, 0.119230002f, 0.0142700002f, 0.126300007f, 0.764180005f, 0.08213f, 0.150839999f,
                       0.116590001f, 0.903590024f}}));

// ADX10, SMPTE ST 2065-3 (2012), to AP0. Departs in the code scale, 1024/500 where the standard has 1023/500, and in
// the density curve, which is given in pieces.
struct Adx
{
  static constexpr bool threeChannels = true;

  static MORVELLAN_INLINE Real exposure(Real c)
  {
    const Real line = c * Real(0.0491133109f) + Real(0.00130126998f);
    const Real toe = c * Real(37.7426109f) - Real(6.6444149f);
    // Below its own piece the root has a negative argument; it is not used there.
    const Real bend =
        sqrt(max(c * Real(6.56947613f) - Real(0.0325807184f), Real(0.0f))) * Real(2.30258489f) - Real(6.68599606f);
    const Real straight = min(c * Real(4.18651819f) - Real(4.64536095f), Real(86.4000015f));
    const Real exponent = select(c < Real(0.00999999978f), toe, select(c < Real(0.600000024f), bend, straight));
    return select(c < Real(0.0f), line, expE(exponent));
  }
  static MORVELLAN_INLINE Real density(Real e)
  {
    const Real l = ln(e);
    const Real line = (e - Real(0.00130126998f)) * Real(20.3610802f);
    const Real toe = (l + Real(6.6444149f)) * Real(0.0264952537f);
    const Real bend = l * (l * Real(0.0287103094f) + Real(0.383913994f)) + Real(1.28838301f);
    const Real straight = (l + Real(4.64536095f)) * Real(0.238861963f);
    const Real log = select(e < Real(0.00189793401f), toe, select(e < Real(0.118427999f), bend, straight));
    return select(e < Real(0.00130126998f), line, log);
  }
  static MORVELLAN_INLINE Rgb decode(Rgb p)
  {
    constexpr Matrix3 toCid = rounded(cddToCid);
    constexpr Matrix3 toAces = rounded(exposureToAces);
    const Rgb v{p.r * Real(2.0480001f) - Real(0.189999998f), p.g * Real(2.0480001f) - Real(0.189999998f),
                p.b * Real(2.0480001f) - Real(0.189999998f)};
    const Rgb c = multiply(toCid, v);
    return multiply(toAces, {exposure(c.r), exposure(c.g), exposure(c.b)});
  }
  static MORVELLAN_INLINE Real code(Real v)
  {
    return select(v > Real(0.0f), (v + Real(0.189999998f)) * Real(0.48828125f), v);
  }
  static MORVELLAN_INLINE Rgb encode(Rgb p)
  {
    constexpr Matrix3 toExposure = rounded(inverse(exposureToAces));
    constexpr Matrix3 toCdd = rounded(inverse(cddToCid));
    const Rgb e = multiply(toExposure, p);
    const Rgb v = multiply(toCdd, {density(e.r), density(e.g), density(e.b)});
    return {code(v.r), code(v.g), code(v.b)};
  }
};

}  // namespace morvellan::MORVELLAN_TARGET::curves
