// Transfer curves of cameras and grading systems, named by their makers' publications. Where no departure is told, the
// constants are the published ones rounded to float, with quotients turned into factors.
#pragma once

#include "colour/curve_math.h"
#include "colour/log_c4.h"

namespace morvellan::MORVELLAN_TARGET::curves
{

// Nikon N-Log (2018). Its cube is a product, so that negative codes have a value.
struct NLog
{
  static MORVELLAN_INLINE Real decode(Real x)
  {
    const Real root = x * Real(1023.0f) * Real(0.00153846154f);
    const Real log = expE((x * Real(1023.0f) - Real(619.0f)) * Real(0.00666666683f));
    return select(x < Real(0.441837728f), root * root * root - Real(0.00749999983f), log);
  }
  static MORVELLAN_INLINE Real encode(Real x)
  {
    const Real root = plain_cbrt(x + Real(0.00749999983f)) * Real(650.0f);
    const Real log = ln(x) * Real(150.0f) + Real(619.0f);
    return select(x < Real(0.328000009f), root, log) * Real(per1023);
  }
};

// ARRI LogC3 (2012) at exposure index 800. The encode is the maker's exposure-value form, whose linear segment meets
// the curve a rounding away from the published parameters.
struct LogC3
{
  static MORVELLAN_INLINE Real decode(Real x)
  {
    const Real log = (exp10((x - Real(0.385536999f)) * Real(4.04547119f)) - Real(0.0522719994f)) * Real(0.179999992f);
    return select(x > Real(0.149657831f), log, (x - Real(0.0928089991f)) * Real(0.186301097f));
  }
  static MORVELLAN_INLINE Real encode(Real x)
  {
    const Real t = x * Real(5.55555534f) + Real(0.0522722751f);
    const Real line = t * Real(3.9086504f) - Real(1.38853705f);
    return select(t > Real(0.111111112f), log10(t), line) * Real(0.247189641f) + Real(0.385536999f);
  }
};

// The same by the published parameters.
struct LogC3Full
{
  static MORVELLAN_INLINE Real decode(Real x) { return LogC3::decode(x); }
  static MORVELLAN_INLINE Real encode(Real x)
  {
    const Real log = log10(x * Real(5.55555582f) + Real(0.0522719994f)) * Real(0.247189999f) + Real(0.385536999f);
    return select(x > Real(0.0105910003f), log, x * Real(5.3676548f) + Real(0.0928089991f));
  }
};

// RED Log3G10, version 3 (2017). Log3G12 shares its index and its curve.
struct Log3G10
{
  static MORVELLAN_INLINE Real decode(Real x)
  {
    const Real log = (exp10(x * Real(4.45867252f)) - Real(1.0f)) * Real(0.00641127024f);
    return select(x < Real(0.0f), x * Real(0.0658210889f), log) - Real(0.00999999978f);
  }
  static MORVELLAN_INLINE Real encode(Real x)
  {
    const Real t = x + Real(0.00999999978f);
    const Real log = log10(t * Real(155.975327f) + Real(1.0f)) * Real(0.224281996f);
    return select(t < Real(0.0f), t * Real(15.1927004f), log);
  }
};

// Sony S-Log (2008). Departs below black: light at and below 0 encodes to itself.
struct SLog
{
  static MORVELLAN_INLINE Real decode(Real x)
  {
    return exp10((x - Real(0.646596014f)) * Real(2.31107545f)) - Real(0.0375839993f);
  }
  static MORVELLAN_INLINE Real encode(Real x)
  {
    const Real log = log10(x + Real(0.0375839993f)) * Real(0.432698995f) + Real(0.616595984f) + Real(0.0299999993f);
    return select(x <= Real(0.0f), x, log);
  }
};

// Sony S-Log2 (2012) in 10-bit codes of legal range. Departs in leaving out the factor 155/219 on light and in having
// no linear segment: light at and below 0 encodes to itself.
struct SLog2
{
  static MORVELLAN_INLINE Real decode(Real x)
  {
    const Real code = (x * Real(255.75f) - Real(16.0f)) * Real(0.00456620986f);
    return (exp10((code - Real(0.646596014f)) * Real(2.31107545f)) - Real(0.0375839993f)) * Real(0.899999976f);
  }
  static MORVELLAN_INLINE Real encode(Real x)
  {
    const Real log = log10(x * Real(1.11111116f) + Real(0.0375839993f)) * Real(0.432698995f) + Real(0.646596014f);
    const Real code = (log * Real(219.0f) + Real(16.0f)) * Real(4.0f) * Real(per1023);
    return select(x <= Real(0.0f), x, code);
  }
};

// Fujifilm F-Log2 (2022).
struct FLog2
{
  static MORVELLAN_INLINE Real decode(Real x)
  {
    const Real log = exp10((x - Real(0.384315997f)) * Real(4.07695675f)) * Real(0.179999992f) - Real(0.0116692195f);
    return select(x < Real(0.100686684f), (x - Real(0.0928639993f)) * Real(0.113643326f), log);
  }
  static MORVELLAN_INLINE Real encode(Real x)
  {
    const Real log = log10(x * Real(5.55555582f) + Real(0.0648289993f)) * Real(0.245280996f) + Real(0.384315997f);
    return select(x < Real(0.000889000017f), x * Real(8.79946136f) + Real(0.0928639993f), log);
  }
};

// FilmLight T-Log (2014).
struct TLog
{
  static MORVELLAN_INLINE Real decode(Real x)
  {
    const Real log = expE((x - Real(0.552012682f)) * Real(10.8308296f)) - Real(0.00570482016f);
    return select(x < Real(0.075000003f), (x - Real(0.075000003f)) * Real(0.0617879853f), log);
  }
  static MORVELLAN_INLINE Real encode(Real x)
  {
    const Real log = ln(x + Real(0.00570482016f)) * Real(0.0923290327f) + Real(0.552012682f);
    return select(x < Real(0.0f), x * Real(16.1843758f) + Real(0.075000003f), log);
  }
};

// Sony S-Log3 (2014).
struct SLog3
{
  static MORVELLAN_INLINE Real decode(Real x)
  {
    const Real code = x * Real(1023.0f);
    const Real log = exp10((code - Real(420.0f)) * Real(0.00382409175f)) * Real(0.189999998f) - Real(0.00999999978f);
    return select(x < Real(0.167360991f), (code - Real(95.0f)) * Real(0.000147617859f), log);
  }
  static MORVELLAN_INLINE Real encode(Real x)
  {
    const Real log = log10((x + Real(0.00999999978f)) * Real(5.26315784f)) * Real(261.5f) + Real(420.0f);
    return select(x < Real(0.0112500004f), x * Real(6774.24854f) + Real(95.0f), log) * Real(per1023);
  }
};

// Panasonic V-Log (2014).
struct VLog
{
  static MORVELLAN_INLINE Real decode(Real x)
  {
    const Real log = exp10((x - Real(0.598205984f)) * Real(4.1405468f)) - Real(0.00872999988f);
    return select(x < Real(0.180999994f), (x - Real(0.125f)) * Real(0.178571433f), log);
  }
  static MORVELLAN_INLINE Real encode(Real x)
  {
    const Real log = log10(x + Real(0.00872999988f)) * Real(0.241513997f) + Real(0.598205984f);
    return select(x < Real(0.00999999978f), x * Real(5.5999999f) + Real(0.125f), log);
  }
};

// Canon Log and Canon Log 2: a logarithm that is odd about the code of black.
struct CanonShape
{
  static MORVELLAN_INLINE Real decode(Real x, float black, float slope, float scale)
  {
    const Real d = x - Real(black);
    const Real light = (exp10(abs(d) * Real(slope)) - Real(1.0f)) * Real(scale);
    return select(d < Real(0.0f), -light, light);
  }
  static MORVELLAN_INLINE Real encode(Real x, float black, float slope, float scale)
  {
    const Real log = log10(abs(x) * Real(scale) + Real(1.0f)) * Real(slope);
    return select(x < Real(0.0f), -log, log) + Real(black);
  }
};

// Canon Log (2012).
struct CLog
{
  static MORVELLAN_INLINE Real decode(Real x)
  {
    return CanonShape::decode(x, 0.125122473f, 2.20700955f, 0.0984290689f);
  }
  static MORVELLAN_INLINE Real encode(Real x) { return CanonShape::encode(x, 0.125122473f, 0.453101784f, 10.1596003f); }
};

// Canon Log 2 (2016).
struct CLog2
{
  static MORVELLAN_INLINE Real decode(Real x) { return CanonShape::decode(x, 0.092864126f, 4.1431756f, 0.0114811389f); }
  static MORVELLAN_INLINE Real encode(Real x) { return CanonShape::encode(x, 0.092864126f, 0.241360769f, 87.0993729f); }
};

// Canon Log 3 (2017): a line between two logarithms.
struct CLog3
{
  static MORVELLAN_INLINE Real decode(Real x)
  {
    const Mask below = x < Real(0.0974654704f);
    const Real d = select(below, Real(0.127839014f) - x, x - Real(0.122405373f));
    const Real light = (exp10(d * Real(2.72280407f)) - Real(1.0f)) * Real(0.0667411909f);
    const Real line = (x - Real(0.12512219f)) * Real(0.506206155f);
    return select(below, -light, select(x > Real(0.152778909f), light, line));
  }
  static MORVELLAN_INLINE Real encode(Real x)
  {
    const Mask below = x < Real(-0.0140000004f);
    const Real log = log10(abs(x) * Real(14.9832497f) + Real(1.0f)) * Real(0.367268443f);
    const Real line = x * Real(1.97547984f) + Real(0.12512219f);
    const Real upper = select(x > Real(0.0140000004f), log + Real(0.122405373f), line);
    return select(below, Real(0.127839014f) - log, upper);
  }
};

// DJI D-Log (2017).
struct DLog
{
  static MORVELLAN_INLINE Real decode(Real x)
  {
    const Real log = (exp10(x * Real(3.89615989f) - Real(2.27751994f)) - Real(0.0108000003f)) * Real(1.01091564f);
    return select(x > Real(0.140000001f), log, (x - Real(0.0929000005f)) * Real(0.165975109f));
  }
  static MORVELLAN_INLINE Real encode(Real x)
  {
    const Real log = log10(x * Real(0.989199996f) + Real(0.0108000003f)) * Real(0.256662995f) + Real(0.58455497f);
    return select(x > Real(0.00779999979f), log, x * Real(6.0250001f) + Real(0.0929000005f));
  }
};

// Fujifilm F-Log (2016).
struct FLog
{
  static MORVELLAN_INLINE Real decode(Real x)
  {
    const Real log = exp10((x - Real(0.790453017f)) * Real(2.9012754f)) * Real(1.79999852f) - Real(0.0170423873f);
    return select(x < Real(0.100537777f), (x - Real(0.0928639993f)) * Real(0.114473701f), log);
  }
  static MORVELLAN_INLINE Real encode(Real x)
  {
    const Real log = log10(x * Real(0.555555999f) + Real(0.00946800038f)) * Real(0.344675988f) + Real(0.790453017f);
    return select(x < Real(0.000890000025f), x * Real(8.73563099f) + Real(0.0928639993f), log);
  }
};

// GoPro Protune (2012): a logarithm of base 113.
struct Log113
{
  static MORVELLAN_INLINE Real decode(Real x)
  {
    // 6.82017899 is log2(113).
    return (plain_exp2(x * Real(6.82017899f)) - Real(1.0f)) * Real(0.00892857183f);
  }
  static MORVELLAN_INLINE Real encode(Real x) { return ln(x * Real(112.0f) + Real(1.0f)) * Real(0.211533308f); }
};

// Blackmagic DaVinci Intermediate (2020).
struct Intermediate
{
  static MORVELLAN_INLINE Real decode(Real x)
  {
    const Real log = plain_exp2(x * Real(13.6439648f) - Real(7.0f)) - Real(0.00749999983f);
    return select(x > Real(0.0274066795f), log, x * Real(0.0957462937f));
  }
  static MORVELLAN_INLINE Real encode(Real x)
  {
    const Real log = (plain_log2(x + Real(0.00749999983f)) + Real(7.0f)) * Real(0.0732924789f);
    return select(x > Real(0.00262409006f), log, x * Real(10.4442682f));
  }
};

// ARRI LogC4 (2022).
struct LogC4
{
  static MORVELLAN_INLINE Real decode(Real x) { return logC4Decode(x); }
  static MORVELLAN_INLINE Real encode(Real x) { return logC4Encode(x); }
};

// Blackmagic Film Generation 5 (2021).
struct Gen5
{
  static MORVELLAN_INLINE Real decode(Real x)
  {
    const Real log = expE((x - Real(0.530013323f)) * Real(11.5036726f)) - Real(0.00549407257f);
    return select(x < Real(0.133883789f), (x - Real(0.0924657509f)) * Real(0.120720372f), log);
  }
  static MORVELLAN_INLINE Real encode(Real x)
  {
    const Real log = ln(x + Real(0.00549407257f)) * Real(0.0869287625f) + Real(0.530013323f);
    return select(x < Real(0.00499999989f), x * Real(8.28360558f) + Real(0.0924657509f), log);
  }
};

}  // namespace morvellan::MORVELLAN_TARGET::curves
