// The two curve tables.
#include "colour/curve_table.h"

#include <limits>

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

constexpr float unbounded = std::numeric_limits<float>::infinity();

// What an index has of its own beside its curve: the guards and the clamp of light before the encode; low < high where
// there is a clamp.
struct CurveRow
{
  Curve curve = Curve::Identity;
  Guard decodeGuard = Guard::None;
  Guard encodeGuard = Guard::None;
  float low = 0.0f, high = 0.0f;
};

// 13 and 14 hold the S-Log and S-Log2 of an older list of cameras, and 34 a gamma of 2.6; 46 to 48 have no case.
// PLogLin's second bound, 1e-8, lies below its first and never acts.
constexpr CurveRow shortTable[colourspaceCount] = {
    {Curve::Identity},                                                          // 0
    {Curve::Rec709},                                                            // 1
    {Curve::Cineon, Guard::None, Guard::None, -0.00565081928f, 13.5216942f},    // 2
    {Curve::PLogLin, Guard::None, Guard::None, 0.00591478776f, 15.2033453f},    // 3
    {Curve::Identity},                                                          // 4
    {Curve::Identity},                                                          // 5
    {Curve::AcesCc, Guard::None, Guard::None, -0.358447492f, 222.860947f},      // 6
    {Curve::AcesCct, Guard::None, Guard::None, -0.00691687781f, 222.860947f},   // 7
    {Curve::AcesProxy, Guard::None, Guard::None, 0.00048828125f, 711.638123f},  // 8
    {Curve::Adx},                                                               // 9
    {Curve::NLog},                                                              // 10
    {Curve::LogC3, Guard::None, Guard::None, -0.017290419f, 55.0795784f},       // 11
    {Curve::Log3G10, Guard::None, Guard::None, -0.0106582111f, 184.322342f},    // 12
    {Curve::SLog, Guard::None, Guard::None, -0.00554581452f, 6.5199914f},       // 13
    {Curve::SLog2, Guard::None, Guard::None, -0.014279292f, 9.73759079f},       // 14
    {Curve::SLog3, Guard::None, Guard::None, -0.0140236961f, 38.4209328f},      // 15
    {Curve::SLog3, Guard::None, Guard::None, -0.0140236961f, 38.4209328f},      // 16
    {Curve::SLog3, Guard::None, Guard::None, -0.0140236961f, 38.4209328f},      // 17
    {Curve::SLog3, Guard::None, Guard::None, -0.0140236961f, 38.4209328f},      // 18
    {Curve::VLog, Guard::None, Guard::None, -0.0223214291f, 46.0855293f},       // 19
    {Curve::CLog, Guard::None, Guard::None, -0.0874668658f, 8.29590893f},       // 20
    {Curve::CLog, Guard::None, Guard::None, -0.0874668658f, 8.29590893f},       // 21
    {Curve::CLog2, Guard::None, Guard::None, -0.0163632259f, 65.8161163f},      // 22
    {Curve::CLog2, Guard::None, Guard::None, -0.0163632259f, 65.8161163f},      // 23
    {Curve::CLog3, Guard::None, Guard::None, -0.0820148215f, 16.2981129f},      // 24
    {Curve::CLog3, Guard::None, Guard::None, -0.0820148215f, 16.2981129f},      // 25
    {Curve::DLog, Guard::None, Guard::None, -0.0154190874f, 41.9993935f},       // 26
    {Curve::Srgb, Guard::None, Guard::Negative},                                // 27
    {Curve::FLog, Guard::None, Guard::None, -0.0106304856f, 13.1200085f},       // 28
    {Curve::Rec2020},                                                           // 29
    {Curve::Identity},                                                          // 30
    {Curve::Gamma26Positive, Guard::None, Guard::None, 0.000001f, unbounded},   // 31
    {Curve::Srgb},                                                              // 32
    {Curve::Gamma26Positive, Guard::None, Guard::None, 0.000001f, unbounded},   // 33
    {Curve::Gamma26Positive, Guard::None, Guard::None, 0.000001f, unbounded},   // 34
    {Curve::Cineon, Guard::None, Guard::None, -0.00565081928f, 13.5216942f},    // 35
    {Curve::Cineon, Guard::None, Guard::None, -0.00565081928f, 13.5216942f},    // 36
    {Curve::Cineon, Guard::None, Guard::None, -0.00565081928f, 13.5216942f},    // 37
    {Curve::Cineon, Guard::None, Guard::None, -0.00565081928f, 13.5216942f},    // 38
    {Curve::Cineon, Guard::None, Guard::None, -0.00565081928f, 13.5216942f},    // 39
    {Curve::Log113, Guard::None, Guard::None, 0.0f, 1.0f},                      // 40
    {Curve::Log113, Guard::None, Guard::None, 0.0f, 1.0f},                      // 41
    {Curve::Pq1000},                                                            // 42
    {Curve::Pq1000},                                                            // 43
    {Curve::Hlg, Guard::None, Guard::None, 0.0f, 12.0f},                        // 44
    {Curve::Intermediate, Guard::None, Guard::None, -0.00999999978f, 100.0f},   // 45
    {Curve::Identity},                                                          // 46
    {Curve::Identity},                                                          // 47
    {Curve::Identity},                                                          // 48
};

constexpr CurveRow fullTable[colourspaceCount] = {
    {Curve::Identity},                                                          // 0
    {Curve::Rec709, Guard::NotPositive, Guard::NotPositive},                    // 1
    {Curve::Cineon, Guard::None, Guard::None, -0.00565081928f, 13.5216942f},    // 2
    {Curve::PLogLin, Guard::None, Guard::None, 0.00591478776f, 15.2033453f},    // 3
    {Curve::Identity},                                                          // 4
    {Curve::Identity},                                                          // 5
    {Curve::AcesCc, Guard::None, Guard::None, 0.00118499994f, 222.860947f},     // 6
    {Curve::AcesCct, Guard::None, Guard::None, -0.00691687781f, 222.860947f},   // 7
    {Curve::AcesProxy, Guard::None, Guard::None, 0.00118499994f, 222.860947f},  // 8
    {Curve::Adx},                                                               // 9
    {Curve::NLog},                                                              // 10
    {Curve::LogC3Full, Guard::None, Guard::None, -0.017290419f, 55.0795784f},   // 11
    {Curve::Log3G10, Guard::None, Guard::None, -0.0106582111f, 184.322342f},    // 12
    {Curve::FLog2, Guard::None, Guard::None, 0.0f, 1.0f},                       // 13
    {Curve::TLog},                                                              // 14
    {Curve::SLog3, Guard::None, Guard::None, -0.0140236961f, 38.4209328f},      // 15
    {Curve::SLog3, Guard::None, Guard::None, -0.0140236961f, 38.4209328f},      // 16
    {Curve::SLog3, Guard::None, Guard::None, -0.0140236961f, 38.4209328f},      // 17
    {Curve::SLog3, Guard::None, Guard::None, -0.0140236961f, 38.4209328f},      // 18
    {Curve::VLog, Guard::None, Guard::None, -0.0223214291f, 46.0855293f},       // 19
    {Curve::CLog, Guard::None, Guard::None, -0.0874668658f, 8.29590893f},       // 20
    {Curve::CLog, Guard::None, Guard::None, -0.0874668658f, 8.29590893f},       // 21
    {Curve::CLog2, Guard::None, Guard::None, -0.0163632259f, 65.8161163f},      // 22
    {Curve::CLog2, Guard::None, Guard::None, -0.0163632259f, 65.8161163f},      // 23
    {Curve::CLog3, Guard::None, Guard::None, -0.0820148215f, 16.2981129f},      // 24
    {Curve::CLog3, Guard::None, Guard::None, -0.0820148215f, 16.2981129f},      // 25
    {Curve::DLog, Guard::None, Guard::None, -0.0154190874f, 41.9993935f},       // 26
    {Curve::Srgb, Guard::NotPositive, Guard::NotPositive},                      // 27
    {Curve::FLog, Guard::None, Guard::None, -0.0106304856f, 13.1200085f},       // 28
    {Curve::Rec2020, Guard::NotPositive, Guard::NotPositive},                   // 29
    {Curve::Identity},                                                          // 30
    {Curve::Gamma26, Guard::NotPositive, Guard::NotPositive},                   // 31
    {Curve::Srgb},                                                              // 32
    {Curve::Gamma26, Guard::NotPositive, Guard::NotPositive},                   // 33
    {Curve::Gamma24, Guard::NotPositive, Guard::NotPositive},                   // 34
    {Curve::Cineon, Guard::None, Guard::None, -0.00565081928f, 13.5216942f},    // 35
    {Curve::Cineon, Guard::None, Guard::None, -0.00565081928f, 13.5216942f},    // 36
    {Curve::Cineon, Guard::None, Guard::None, -0.00565081928f, 13.5216942f},    // 37
    {Curve::Cineon, Guard::None, Guard::None, -0.00565081928f, 13.5216942f},    // 38
    {Curve::Cineon, Guard::None, Guard::None, -0.00565081928f, 13.5216942f},    // 39
    {Curve::Log113, Guard::NotPositive, Guard::None, 0.0f, 1.0f},               // 40
    {Curve::Log113, Guard::NotPositive, Guard::None, 0.0f, 1.0f},               // 41
    {Curve::Pq1000},                                                            // 42
    {Curve::Pq1000},                                                            // 43
    {Curve::Hlg, Guard::None, Guard::None, 0.0f, 12.0f},                        // 44
    {Curve::Intermediate, Guard::None, Guard::None, -0.00999999978f, 100.0f},   // 45
    {Curve::Dcdm, Guard::NotPositive, Guard::NotPositive},                      // 46
    {Curve::LogC4, Guard::None, Guard::None, -0.0181000009f, 469.799988f},      // 47
    {Curve::Gen5, Guard::None, Guard::None, 0.0f, 222.860001f},                 // 48
};

CurveRow rowOf(CurveTable table, int colourspace)
{
  if (colourspace < 0 || colourspace >= colourspaceCount)
    return {};
  return table == CurveTable::Short ? shortTable[colourspace] : fullTable[colourspace];
}

}  // namespace

Decoding decodingOf(CurveTable table, int colourspace)
{
  const CurveRow row = rowOf(table, colourspace);
  return {.curve = row.curve, .guard = row.decodeGuard};
}

Encoding encodingOf(CurveTable table, int colourspace)
{
  const CurveRow row = rowOf(table, colourspace);
  return {.curve = row.curve,
          .guard = row.encodeGuard,
          .clamped = row.low < row.high,
          .low = row.low,
          .high = row.high,
          .saturate = row.curve == Curve::Pq1000};
}

}  // namespace morvellan::MORVELLAN_TARGET
