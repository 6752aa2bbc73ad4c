// LAB, range compression and their pairs of kernels.
#include "colour/working_spaces.h"

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "colour/gamuts.h"
#include "tests/colour/device_frame.h"
#include "tests/support/engine_test.h"

namespace morvellan::MORVELLAN_TARGET
{

using namespace colour_test;

namespace
{

constexpr float nan = std::numeric_limits<float>::quiet_NaN();
constexpr LinearGamut gamuts[] = {LinearGamut::Rec709, LinearGamut::Rec2020, LinearGamut::AcesAp0,
                                  LinearGamut::AcesAp1};

bool isAces(LinearGamut gamut)
{
  return gamut == LinearGamut::AcesAp0 || gamut == LinearGamut::AcesAp1;
}

std::vector<float> colours()
{
  std::vector<float> frame;
  for (const float level : {0.001f, 0.02f, 0.18f, 0.7f, 2.0f, 9.0f})
    for (const float tilt : {0.7f, 1.0f, 1.3f})
      frame.insert(frame.end(), {level * tilt, level, level / tilt, 0.25f});
  return frame;
}

void expectSame(const std::vector<float>& actual, const std::vector<float>& expected, float relative, float absolute,
                const std::string& what)
{
  ASSERT_EQ(actual.size(), expected.size());
  for (size_t i = 0; i < actual.size(); ++i)
    EXPECT_NEAR(actual[i], expected[i], std::fabs(expected[i]) * relative + absolute) << what << " value " << i;
}

}  // namespace

ENGINE_TEST(Lab, WhiteOfD65IsOneAndCentred)
{
  for (const ColourKernel kernel :
       {ColourKernel("rec709_LAB"), ColourKernel("rec2020_LAB"), ColourKernel("Lin_rec709_LAB")})
  {
    const std::vector<float> lab = inPlace(kernel, neutrals({1.0f}), {});
    EXPECT_NEAR(lab[0], 1.0f, 2e-5f) << kernel.name();
    EXPECT_NEAR(lab[1], 0.5f, 2e-4f) << kernel.name();
    EXPECT_NEAR(lab[2], 0.5f, 2e-4f) << kernel.name();
  }
}

// With the gamut's own white an ACES neutral is off centre; adapted, it is not.
ENGINE_TEST(Lab, AcesNeutralIsOffCentreUnlessAdapted)
{
  const std::vector<float> own = inPlace("Lin_ACES_AP0_LAB", neutrals({1.0f}), {});
  EXPECT_GT(std::fabs(own[2] - 0.5f), 0.01f);
  const std::vector<float> adapted = inPlace("ACES_AP0_LAB", neutrals({1.0f}), {});
  EXPECT_NEAR(adapted[1], 0.5f, 2e-4f);
  EXPECT_NEAR(adapted[2], 0.5f, 2e-4f);
}

ENGINE_TEST(Lab, WritesZeroIntoTheCompanion)
{
  const std::vector<float> frame = neutrals({0.1f, 0.2f, 0.3f});
  const Buffer<float> buffer = toDevice(frame);
  const Buffer<float> companion = toDevice(std::vector<float>(frame.size(), 7.0f));
  runColour(Queue{}, "ColorSpace_LAB",
            {.destination = buffer.data(), .companion = companion.data(), .width = 3, .height = 1, .colourspace = 11});
  const std::vector<float> r = toHost(companion);
  for (size_t i = 0; i < r.size(); ++i)
    EXPECT_EQ(r[i], i % 4 == 0 ? 0.0f : 7.0f);
}

// Every way in that a path pairs with a way out, without and with range compression.
ENGINE_TEST(Lab, FixedGamutPairsAreInverse)
{
  const std::vector<float> frame = colours();
  for (const LinearGamut gamut : gamuts)
  {
    const bool aces = isAces(gamut);
    const std::string what = "gamut " + std::to_string(static_cast<int>(gamut));
    const std::vector<float> lab = inPlace(ColourKernel::forGamut("<g>_LAB", gamut), frame, {});
    const ColourKernel out = ColourKernel::forGamut(aces ? "LAB_ACES_<x>" : "LAB_Lin_<v>", gamut);
    expectSame(inPlace(out, lab, {}), frame, 4e-5f, 2e-6f, what + " plain");
    for (const char* in : {"Lin_<g>_compress_LAB", "compress_Lin_<g>_LAB"})
    {
      const std::vector<float> compressed = inPlace(ColourKernel::forGamut(in, gamut), frame, {});
      expectSame(inPlace(ColourKernel::forGamut("LAB_Lin_<g>_expand", gamut), compressed, {}), frame, 2e-4f, 4e-6f,
                 what + " compressed");
      if (aces)
        expectSame(inPlace(ColourKernel::forGamut("expand_LAB_ACES_<x>", gamut), compressed, {}), frame, 2e-4f, 4e-6f,
                   what + " compressed, ACES name");
    }
    // By index: the short rows there and back.
    const int index = colourspaceOf(gamut);
    const std::vector<float> byIndex = inPlace("ColorSpace_Linear_LAB", frame, {.colourspace = index});
    expectSame(toFrame("LAB_Linear_Colorspace_in_out", byIndex, {.colourspace = index}), frame, 4e-5f, 2e-6f,
               what + " by index");
    const std::vector<float> shortRows = inPlace(ColourKernel::forGamut("Lin_<g>_LAB", gamut), frame, {});
    expectSame(toFrame("LAB_Linear_Colorspace_in_out", shortRows, {.colourspace = index}), frame, 1e-4f, 4e-6f,
               what + " short rows");
  }
}

// The pair of every log and gamma index: code values to LAB and back.
ENGINE_TEST(Lab, IndexPairsAreInverse)
{
  std::vector<float> frame;
  for (const float level : {0.2f, 0.35f, 0.5f, 0.65f})
    frame.insert(frame.end(), {level * 1.04f, level, level * 0.97f, 0.25f});
  for (int index = 0; index < colourspaceCount; ++index)
  {
    if (index == 8)
      continue;  // whole codes
    const std::vector<float> lab = inPlace("ColorSpace_LAB", frame, {.colourspace = index});
    const float tolerance = index == 9 ? 1e-4f : 5e-5f;
    expectSame(inPlace("LAB_Colorspace", lab, {.colourspace = index}), frame, tolerance, tolerance,
               "index " + std::to_string(index));
  }
}

ENGINE_TEST(Range, CompressLeavesTheDarkAlone)
{
  const std::vector<float> dark = neutrals({0.0f, 0.01f, 0.1f, 0.17999f});
  const std::vector<float> bright = neutrals({0.180000007f});
  for (const LinearGamut gamut : gamuts)
    for (const char* pattern : {"RGBA_<g>_compress", "RGBA_<g>_expand_sRGB"})
    {
      const std::vector<float> r = toFrame(ColourKernel::forGamut(pattern, gamut), dark, {});
      EXPECT_EQ(r, dark) << pattern;
      EXPECT_NEAR(toFrame(ColourKernel::forGamut(pattern, gamut), bright, {})[0], 0.18f, 1e-6f) << pattern;
    }
}

ENGINE_TEST(Range, OneCompressesToItsPlaceAndComesBack)
{
  const std::vector<float> r = toFrame("RGBA_rec709_compress", neutrals({1.0f}), {});
  EXPECT_NEAR(r[0], 0.4918f, 1e-4f);
  EXPECT_NEAR(toFrame("RGBA_rec709_expand_sRGB", r, {})[0], 1.0f, 4e-6f);
}

ENGINE_TEST(Range, CompressAndExpandAreInverse)
{
  const std::vector<float> frame = colours();
  for (const LinearGamut gamut : gamuts)
  {
    const std::vector<float> r = toFrame(ColourKernel::forGamut("RGBA_<g>_compress", gamut), frame, {});
    expectSame(toFrame(ColourKernel::forGamut("RGBA_<g>_expand_sRGB", gamut), r, {}), frame, 4e-5f, 1e-7f, "frames");
    const PlaneSet planes = toPlanes(ColourKernel::forGamut("Lin_<g>_compress_RGBA", gamut), frame, {});
    expectSame(fromPlanes("RGBA_expand_src", planes, {.colourspace = colourspaceOf(gamut)}), frame, 4e-5f, 1e-7f,
               "planes");
  }
}

// Grain's pairs by index: decode and compress into planes, expand and encode out of them.
ENGINE_TEST(Range, IndexPairsAreInverse)
{
  std::vector<float> frame;
  for (const float level : {0.2f, 0.35f, 0.5f})
    frame.insert(frame.end(), {level * 1.04f, level, level * 0.97f, 0.25f});
  for (int index = 0; index < colourspaceCount; ++index)
  {
    if (index == 8 || index == 46)
      continue;  // whole codes; an encode that is not the decode's inverse
    const PlaneSet planes = toPlanes("XYZ_compress_RGBA", frame, {.colourspace = index});
    expectSame(fromPlanes("RGB_expand_RGBA", planes, {.colourspace = index}), frame, 5e-5f, 5e-5f,
               "index " + std::to_string(index));
  }
}

ENGINE_TEST(Range, NegativeLuminanceIsBlack)
{
  const std::vector<float> frame = {0.9f, -2.0f, 0.5f, 1.0f, nan, 0.1f, 0.1f, 1.0f};
  for (const char* pattern : {"RGBA_<g>_compress", "RGBA_<g>_expand_sRGB"})
  {
    const std::vector<float> r = toFrame(ColourKernel::forGamut(pattern, LinearGamut::Rec709), frame, {});
    EXPECT_EQ(r, (std::vector<float>{0.0f, 0.0f, 0.0f, 1.0f, 0.0f, 0.0f, 0.0f, 1.0f})) << pattern;
  }
}

ENGINE_TEST(Range, CompressWritesItsSourceToo)
{
  const std::vector<float> frame = neutrals({1.0f, 4.0f});
  const Buffer<float> source = toDevice(frame);
  const Buffer<float> destination = toDevice(std::vector<float>(8, -1.0f));
  runColour(Queue{}, "RGBA_rec709_compress",
            {.source = source.data(), .destination = destination.data(), .width = 2, .height = 1});
  EXPECT_EQ(toHost(source), toHost(destination));
  EXPECT_NEAR(toHost(source)[0], 0.4918f, 1e-4f);
}

ENGINE_TEST(Range, ExpandOfALogIndexWritesNothing)
{
  const PlaneSet planes = {std::vector<float>{1.0f}, std::vector<float>{1.0f}, std::vector<float>{1.0f},
                           std::vector<float>{1.0f}};
  EXPECT_EQ(fromPlanes("RGBA_expand_src", planes, {.colourspace = 11}), std::vector<float>(4, -1.0f));
}

ENGINE_TEST(Range, IndicesWithoutACaseAreCopied)
{
  const std::vector<float> frame = neutrals({2.0f});
  for (const int index : {0, 1, 4, 5, 27, 29, 30, 31, 32, 33, 34, 46, 47, 48})
  {
    EXPECT_EQ(inPlace("ColorSpace_XYZ_expand", frame, {.colourspace = index}), frame) << index;
    EXPECT_EQ(toPlanes("RGB_compress_RGBA", frame, {.colourspace = index})[0][0], 2.0f) << index;
  }
  for (const int index : {42, 43, 44})
  {
    EXPECT_EQ(inPlace("ColorSpace_XYZ_expand", frame, {.colourspace = index}), frame) << index;
    EXPECT_NE(toPlanes("RGB_compress_RGBA", frame, {.colourspace = index})[0][0], 2.0f) << index;
  }
}

}  // namespace morvellan::MORVELLAN_TARGET
