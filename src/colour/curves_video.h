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
  static MORVELLAN_INLINE Real decodeAny(Real x) { return exp2Within(lightLog2(rootMinusOne(x))); }

  // Codes from 0.0112 (0.003 cd/m2) to 1.0001 lie in eight spans, each half an octave of code + 7/128 wide. Over a span
  // the square root of light is a minimax of degree 7 in the code's distance from the span's start: relative error of
  // light 1.7e-6 in the first span, where the root is steep, and 5e-7 from code 0.0425 on.
  struct Spans
  {
    static constexpr float shift = 7.0f / 128.0f;
    static constexpr int first = 0x3d870400;  // the bits of the first span's start plus the shift

    // The span from bit 22 on; any higher bit tells of a code outside.
    static MORVELLAN_INLINE Int place(Real x) { return bitsOf(x + Real(shift)) - Int(first); }

    static MORVELLAN_INLINE Mask inside(Int place) { return (place & Int(-(8 << 22))) == Int(0); }

    static MORVELLAN_INLINE Real distance(Real x, Int place)
    {
      return x - (realOfBits((place & Int(7 << 22)) + Int(first)) - Real(shift));
    }

    static MORVELLAN_INLINE Real light(Real x, Int place)
    {
      // From the seventh power down.
      static constexpr float terms[8][8] = {
          {863312.375f, 16455.875f, 131.36261f, -407.481049f, 22.1681252f, 19.3989582f, 4.25096941f, 30.2601624f},
          {-114836.586f, -2108.60425f, -31.844841f, 97.0321884f, -8.97387886f, -8.19853497f, -0.147776023f,
           -2.81443572f},
          {6638.6123f, 117.156845f, 3.60992408f, -8.74010944f, 1.91553819f, 2.36068034f, 2.01294804f, 10.2064476f},
          {-227.621552f, -4.00401878f, 0.038910646f, 0.74664408f, 0.313443959f, 0.621072233f, 1.46623194f, 5.80432177f},
          {5.72452021f, 0.333522499f, 0.235265449f, 0.289022177f, 0.410579771f, 0.705395758f, 1.31336915f, 4.59406853f},
          {0.0450514145f, 0.168921828f, 0.194996566f, 0.244261816f, 0.316770464f, 0.518575966f, 0.921803236f,
           2.8488152f},
          {0.0444359519f, 0.0529817119f, 0.065644525f, 0.0929616019f, 0.131614879f, 0.233789235f, 0.427795947f,
           1.272313f},
          {0.000535605475f, 0.00204186654f, 0.00409346679f, 0.0090180207f, 0.0167471226f, 0.0390617512f, 0.0836595371f,
           0.27665922f}};
      const Int span = shiftRight<22>(place);
      const Real d = distance(x, place);
      Real root = pick(terms[0], span);
      MORVELLAN_UNROLL
      for (int i = 1; i < 8; ++i)
        root = root * d + pick(terms[i], span);
      return root * root;
    }
  };

  static MORVELLAN_INLINE Rgb decode(Rgb p)
  {
    const Int r = Spans::place(p.r), g = Spans::place(p.g), b = Spans::place(p.b);
    const Rgb light{Spans::light(p.r, r), Spans::light(p.g, g), Spans::light(p.b, b)};
    if (all(Spans::inside(r | g | b))) [[likely]]
      return light;
    const auto channel = [](Real x, Int place, Real known)
    {
      const Mask inside = Spans::inside(place);
      const Real zero(0.0f);
      // Borders are black.
      return select(inside, known, any((x > zero) & !inside) ? decodeAny(x) : zero);
    };
    return {channel(p.r, r, light.r), channel(p.g, g, light.g), channel(p.b, b, light.b)};
  }

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
  static constexpr int decodeStages = 2, encodeStages = 3;

  static MORVELLAN_INLINE Real luminance(Rgb p) { return dot({0.262699991f, 0.677999973f, 0.0593000017f}, p); }

  template <int Stage>
  static MORVELLAN_INLINE Rgb decodeStage(Rgb p)
  {
    if constexpr (Stage == 0)
      return Pq::decode(p);
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
  static MORVELLAN_INLINE Rgb decode(Rgb p) { return decodeStage<1>(decodeStage<0>(p)); }
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
