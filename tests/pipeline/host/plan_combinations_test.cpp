// The plan over every combination of switches: nothing is read that was not written, what is compressed is expanded
// once, every split has the join that inverts it.
#include <set>

#include <gtest/gtest.h>

#include "pipeline/host/input_class.h"
#include "tests/pipeline/host/plan_fixture.h"

namespace morvellan::test
{
namespace
{

bool contains(const std::string& name, const char* part)
{
  return name.find(part) != std::string::npos;
}

std::string gamutIn(const std::string& kernel)
{
  for (const char* gamut : {"rec709", "rec2020", "ACES_AP0", "ACES_AP1"})
    if (contains(kernel, gamut))
      return gamut;
  return "";
}

bool entersLab(const std::string& kernel)
{
  return kernel.ends_with("_LAB") || kernel.ends_with("_LAB_softclips");
}

bool leavesLab(const std::string& kernel)
{
  return kernel.starts_with("LAB_") || kernel.starts_with("expand_LAB_") || kernel.starts_with("Lab_Linear_to_RGB");
}

// Whether the rows between RGB and XYZ are those of the gamut's own white; they are adapted to D65 otherwise.
bool hasOwnWhite(const std::string& kernel)
{
  if (entersLab(kernel))
    return kernel.starts_with("ColorSpace_") || (kernel.starts_with("Lin_") && !contains(kernel, "compress"));
  return contains(kernel, "Colorspace") || kernel.starts_with("LAB_XYZ_") || kernel.starts_with("LAB_soft_clip_") ||
         kernel.starts_with("Lab_");
}

// A way in and the way out that ends it: the same gamut where both name one, and in LAB the same white.
bool inverts(const std::string& wayIn, const std::string& wayOut)
{
  const std::string in = gamutIn(wayIn), out = gamutIn(wayOut);
  const bool sameGamut = in.empty() || out.empty() || in == out;
  const bool lab = entersLab(wayIn) && leavesLab(wayOut);
  return sameGamut && (!lab || hasOwnWhite(wayIn) == hasOwnWhite(wayOut));
}

}  // namespace

// Every combination of the switches.
TEST(Plan, HoldsTogetherForEveryCombination)
{
  size_t plans = 0;
  for (int inputGamut : {0, 4, 5, 30, 1, 10, 11, 13, 27, 46, 47})
    for (int channels : {3, 4})
      for (int geometry = 0; geometry < 4; ++geometry)
        for (unsigned bits = 0; bits < 1u << 12; ++bits)
        {
          const auto on = [bits](unsigned bit) { return (bits >> bit & 1u) != 0; };
          FrameParams p = neutral(inputGamut, channels);
          p.exposureValue = on(0) ? 0.5f : 0.0f;
          p.exposureKind = isLinearInput(inputGamut) || isGammaInput(inputGamut) ? 1 : 2;
          p.halationBypassed = !on(1);
          p.cameraSoftClipActive = on(2);
          p.soupSoftClipActive = on(3);
          p.soupBypassed = !on(4);
          p.printBypassed = !on(5) || isGammaInput(inputGamut);
          p.printProfile = 1;
          if (on(6))
            withPitch(p);
          if (on(7))
            withGrain(p);
          p.grainLinear = on(8);
          p.hdrCompress = on(9);
          p.processLinear = on(10);
          p.grainMode = on(11) ? 2 : 0;
          if (geometry == 1)
          {
            p.resizeMode = 1;
            p.sourceWidth = 32;
          }
          else if (geometry == 2)
          {
            p.resizeMode = 2;
            p.targetWidth = 32;
          }
          else if (geometry == 3)
          {
            p.enhancerMode = 1;
            p.enhancerHorizontal = 1.0f;
          }
          const FrameRoute route = routeOf(p);
          if (route == FrameRoute::copy || route == FrameRoute::untouched)
            continue;
          const std::vector<Step> steps = planFrame(route, p);
          ++plans;
          std::set<Slot> written{Slot::Host};
          int compressed = 0, decoded = 0, cameraClips = 0, soupClips = 0;
          std::string all, intoLab, compressor;
          for (const Step& step : steps)
          {
            all += step.kernel + " ";
            if (leavesLab(step.kernel))
            {
              ASSERT_FALSE(intoLab.empty()) << all;
              ASSERT_TRUE(inverts(intoLab, step.kernel)) << intoLab << " in " << all;
              intoLab.clear();
            }
            if (entersLab(step.kernel))
            {
              ASSERT_TRUE(intoLab.empty()) << all;
              intoLab = step.kernel;
            }
            ASSERT_TRUE(step.from == Slot::None || written.count(step.from)) << all;
            written.insert(step.to);
            const auto has = [&step](const char* part) { return step.kernel.find(part) != std::string::npos; };
            cameraClips += step.clip == ClipFields::Camera;
            soupClips += step.clip == ClipFields::Soup;
            if (has("compress") && !has("range"))
            {
              ++compressed;
              compressor = step.kernel;
            }
            if (has("expand") && !has("lin_grain"))
            {
              --compressed;
              ASSERT_TRUE(inverts(compressor, step.kernel)) << all;
            }
            if (has("_To_Linear_Kernel") || step.kernel == "To_Linear_Kernel_RGBA")
              ++decoded;
            if (step.kernel == "To_Log_Kernel")
              --decoded;
            ASSERT_GE(compressed, 0) << all;
            ASSERT_LE(compressed, 1) << all;
          }
          ASSERT_EQ(steps.back().work, Work::Download);
          ASSERT_TRUE(intoLab.empty()) << all;
          ASSERT_EQ(decoded, 0) << all;
          ASSERT_EQ(cameraClips, p.cameraSoftClipActive) << all;
          ASSERT_EQ(soupClips, p.soupSoftClipActive && (!p.soupBypassed || !p.printBypassed) ? 1 : 0) << all;
          // A printed frame leaves as display codes, which are never expanded.
          if (p.printBypassed)
          {
            ASSERT_EQ(compressed, 0) << inputGamut << ": " << all;
          }
          ASSERT_EQ(all.find("render") != std::string::npos, on(7)) << all;
        }
  EXPECT_GT(plans, 300000u);
}

}  // namespace morvellan::test
