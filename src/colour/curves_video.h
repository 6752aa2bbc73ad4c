// Transfer curves of video, cinema and displays, one structure each: decode takes a code value to linear light, encode
// takes it back. Clamps and guards belong to the colourspace index, not to the curve (curve_table.h).
#pragma once

#include "colour/curve_math.h"
#include "colour/matrix.h"

namespace morvellan::MORVELLAN_TARGET::curves
{

struct Identity
{
  static MORVELLAN_INLINE Real decode(Real x) { return x; }
  static MORVELLAN_INLINE Real encode(Real x) { return x; }
};

// ITU-R BT.709-6 (2015) camera curve, with the 12-bit constants 1.0993, 0.0993 and 0.0181 of BT.2020 in the place of
// BT.709's own 1.099, 0.099 and 0.018.
struct Rec709
{
  static MORVELLAN_INLINE Real decode(Real x)
  {
    const Real line = x * Real(0.222222224f);
    return select(x < Real(0.0814500004f), line, power((x + Real(0.0992999971f)) * Real(0.909669816f), 2.22222233f));
  }
  static MORVELLAN_INLINE Real encode(Real x)
  {
    const Real curve = power(x, 0.449999988f) * Real(1.09930003f) - Real(0.0992999971f);
    return select(x < Real(0.0181000009f), x * Real(4.5f), curve);
  }
};

// ITU-R BT.2020-2 (2015), 12-bit. Decodes as Rec709; the encode has BT.2020's unrounded alpha and beta but keeps the
// rounded offset 0.0993.
struct Rec2020
{
  static MORVELLAN_INLINE Real decode(Real x) { return Rec709::decode(x); }
  static MORVELLAN_INLINE Real encode(Real x)
  {
    const Real curve = power(x, 0.449999988f) * Real(1.09929681f) - Real(0.0992999971f);
    return select(x < Real(0.0180539694f), x * Real(4.5f), curve);
  }
};

// IEC 61966-2-1 (1999), with the encoding cut at 0.00313080498 instead of 0.0031308.
struct Srgb
{
  static MORVELLAN_INLINE Real decode(Real x)
  {
    const Real line = x * Real(0.0773993805f);
    return select(x < Real(0.0404499993f), line, power((x + Real(0.0549999997f)) * Real(0.947867274f), 2.4000001f));
  }
  static MORVELLAN_INLINE Real encode(Real x)
  {
    const Real curve = power(x, 0.416666657f) * Real(1.05499995f) - Real(0.0549999997f);
    return select(x > Real(0.00313080498f), curve, x * Real(12.9200001f));
  }
};

// SMPTE RP 431-2 (2007) projector gamma 2.6, relative to its own white.
struct Gamma26
{
  static MORVELLAN_INLINE Real decode(Real x) { return power(x, 2.5999999f); }
  static MORVELLAN_INLINE Real encode(Real x) { return power(x, 0.384615391f); }
};

// The same; negative code values are black.
struct Gamma26Positive
{
  static MORVELLAN_INLINE Real decode(Real x) { return power(max(x, Real(0.0f)), 2.5999999f); }
  static MORVELLAN_INLINE Real encode(Real x) { return Gamma26::encode(x); }
};

// ITU-R BT.1886 (2011) with a black of zero: gamma 2.4.
struct Gamma24
{
  static MORVELLAN_INLINE Real decode(Real x) { return power(x, 2.4000001f); }
  static MORVELLAN_INLINE Real encode(Real x) { return power(x, 0.416666657f); }
};

// SMPTE ST 428-1 (2006) X'Y'Z' code values: gamma 2.6 with 52.37/48 of headroom, as 1.09104168.
struct Dcdm
{
  static MORVELLAN_INLINE Real decode(Real x) { return power(x, 2.5999999f) * Real(1.09104168f); }
  static MORVELLAN_INLINE Real encode(Real x) { return power(x, 0.384615391f) * Real(0.916555285f); }
};

// SMPTE ST 2084 (2014) for one channel of display light, 1 standing for 10000 cd/m2. The curve is worked out in
// m = N^(1/m2) - 1, by which both its sums keep their precision in single floats: c1 - 1 and c2 - c3 are -+0.1640625.
struct Pq
{
  // A code value N to m = 2^(0.0126833133 log2 N) - 1, by a minimax of degree 4 for logarithms from -21 to 1, relative
  // error 9e-8.
  static MORVELLAN_INLINE Real rootMinusOne(Real x)
  {
    // Below 7.3e-7 there is no light.
    const Real l = log2Above0(max(x, Real(5e-7f)));
    const Real high = l * Real(2.32019526e-10f) + Real(1.13045256e-7f);
    return l * ((l * l) * high + (l * Real(3.86437149e-5f) + Real(0.00879140296f)));
  }
  // m to log2 of the light; -127 where there is none. Light stops rising at code 1.99, where the quotient has its pole.
  static MORVELLAN_INLINE Real lightLog2(Real m)
  {
    const Real n = max(m + Real(0.1640625f), Real(2.66e-6f));
    const Real d = max(m * Real(-18.6875f) + Real(0.1640625f), Real(4e-6f));
    return log2Ratio(n, d) * Real(6.27739477f);
  }
  static MORVELLAN_INLINE Real decode(Real x) { return exp2Within(lightLog2(rootMinusOne(x))); }

  // log2 of light to the m1-th power of light, then to log2 of the code value.
  static MORVELLAN_INLINE Real codeLog2(Real p)
  {
    const Real f = (p - Real(1.0f)) * Real(0.1640625f) / (p * Real(18.6875f) + Real(1.0f));
    return log2NearOne(f) * Real(78.84375f);
  }
  static MORVELLAN_INLINE Real encode(Real light) { return plain_exp2(codeLog2(curves::power(light, 0.159301758f))); }
};

// PQ read as the display light of a 1000 cd/m2 HLG-style display and turned into scene light by the inverse of its
// system gamma 1.2 (ITU-R BT.2100-2, 2018). The luminance weights are BT.2020's at every index, P3's too. The chain of
// operations is too long for a core to look past, so it is cut in stages that can each run over many pixels.
struct Pq1000
{
  static constexpr bool threeChannels = true;
  static constexpr int decodeStages = 4, encodeStages = 3;

  static MORVELLAN_INLINE Real luminance(Rgb p) { return dot({0.262699991f, 0.677999973f, 0.0593000017f}, p); }

  template <int Stage>
  static MORVELLAN_INLINE Rgb decodeStage(Rgb p)
  {
    if constexpr (Stage == 0)
      return {Pq::rootMinusOne(p.r), Pq::rootMinusOne(p.g), Pq::rootMinusOne(p.b)};
    else if constexpr (Stage == 1)
      return {Pq::lightLog2(p.r), Pq::lightLog2(p.g), Pq::lightLog2(p.b)};
    else if constexpr (Stage == 2)
      return {exp2Within(p.r), exp2Within(p.g), exp2Within(p.b)};
    else
    {
      // In thousands of cd/m2: light L times 10 and, for the system gamma, luminance times 10 to the power -1/6. Below
      // its smallest a luminance counts as none.
      const Real s = inverseSixthRoot(max(luminance(p), Real(1e-30f))) * Real(6.81292069f);
      return {p.r * s, p.g * s, p.b * s};
    }
  }
  template <int Stage>
  static MORVELLAN_INLINE Rgb encodeStage(Rgb p)
  {
    if constexpr (Stage == 0)
    {
      const Real s = power(luminance(p), 0.200000003f) * Real(0.1f);
      return {p.r * s, p.g * s, p.b * s};
    }
    else if constexpr (Stage == 1)
      return {power(p.r, 0.159301758f), power(p.g, 0.159301758f), power(p.b, 0.159301758f)};
    else
      return {plain_exp2(Pq::codeLog2(p.r)), plain_exp2(Pq::codeLog2(p.g)), plain_exp2(Pq::codeLog2(p.b))};
  }
  static MORVELLAN_INLINE Rgb decode(Rgb p)
  {
    return decodeStage<3>(decodeStage<2>(decodeStage<1>(decodeStage<0>(p))));
  }
  static MORVELLAN_INLINE Rgb encode(Rgb p) { return encodeStage<2>(encodeStage<1>(encodeStage<0>(p))); }
};

// ITU-R BT.2100 hybrid log-gamma (2016), scene light scaled to 0..12 when encoding and to 0..1 when decoding.
struct Hlg
{
  static MORVELLAN_INLINE Real decode(Real x)
  {
    const Real log = (expE((x - Real(0.559910715f)) * Real(5.59181643f)) + Real(0.284668922f)) * Real(0.0833333358f);
    return select((x >= Real(0.0f)) & (x <= Real(0.5f)), x * x * Real(0.333333343f), log);
  }
  static MORVELLAN_INLINE Real encode(Real x)
  {
    const Real log = ln(x * Real(12.0f) - Real(0.284668922f)) * Real(0.178832769f) + Real(0.559910715f);
    return select(x > Real(0.0833333358f), log, sqrt(x * Real(3.0f)));
  }
};

}  // namespace morvellan::MORVELLAN_TARGET::curves
