// The code value of 18 % grey for each input encoding, as data.
#include "pipeline/host/mid_grey.h"

#include "pipeline/host/input_class.h"

#include <array>

namespace morvellan
{
namespace
{

constexpr std::array<double, inputGamutCount> midGreyCode = {
    0.18,                // 0 Linear Rec.709
    0.405,               // 1 Scene Rec.709
    0.458984375,         // 2 Cineon
    0.4345703125,        // 3 PLogLin
    0.18,                // 4 ACES AP0 linear
    0.18,                // 5 ACEScg
    0.414,               // 6 ACEScc
    0.414,               // 7 ACEScct
    0.414,               // 8 ACESproxy
    0.458984375,         // 9 ADX
    0.352,               // 10 N-Log
    0.391,               // 11 LogC3
    0.33333,             // 12 Log3G10, Log3G12
    0.377,               // 13 F-Log2
    0.323,               // 14 T-Log
    0.406,               // 15 S-Log3
    0.41015625,          // 16 S-Log3.Cine
    0.41015625,          // 17 S-Log3 Venice
    0.41015625,          // 18 S-Log3 Venice.Cine
    0.4228515625,        // 19 V-Log
    0.343,               // 20 C-Log, daylight
    0.343,               // 21 C-Log, tungsten
    0.398,               // 22 C-Log2, daylight
    0.398,               // 23 C-Log2, tungsten
    0.343,               // 24 C-Log3, daylight
    0.343,               // 25 C-Log3, tungsten
    0.3984375,           // 26 D-Log
    0.466,               // 27 sRGB display
    0.458984375,         // 28 F-Log
    0.405,               // 29 Scene Rec.2020
    0.18,                // 30 Rec.2020 linear
    0.531,               // 31 P3-D60
    0.531,               // 32 P3-D65
    0.531,               // 33 P3-DCI
    0.499,               // 34 BT.1886
    0.458984375,         // 35 REDlogFilm, REDcolor2
    0.458984375,         // 36 REDlogFilm, REDcolor3
    0.458984375,         // 37 REDlogFilm, REDcolor4
    0.458984375,         // 38 REDlogFilm, DRAGONcolor
    0.458984375,         // 39 REDlogFilm, DRAGONcolor2
    0.68,                // 40 GoPro colour
    0.68,                // 41 GoPro Protune flat
    0.378,               // 42 PQ, Rec.2100
    0.378,               // 43 PQ, P3-D65
    0.212,               // 44 HLG
    0.336043,            // 45 DaVinci Intermediate
    0.531,               // 46 DCDM
    0.2784,              // 47 LogC4
    0.3835616438356165,  // 48 Blackmagic Film Gen 5
};

}  // namespace

float midGreyCentre(int inputGamut)
{
  const bool known = inputGamut >= 0 && inputGamut < inputGamutCount;
  const double code = midGreyCode[known ? static_cast<std::size_t>(inputGamut) : 0];
  return static_cast<float>(code < 0.5 ? 0.5 - (0.5 - code) * 0.5 : (code - 0.5) * 0.5 + 0.5);
}

}  // namespace morvellan
