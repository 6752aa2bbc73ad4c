// Every film kernel that a plan may name is a member of its family, with the output that the plan sends it to.
#include <algorithm>
#include <string>

#include "film/grain_expand.h"
#include "film/print.h"
#include "film/soup.h"
#include "pipeline/host/film_choice.h"
#include "tests/support/engine_test.h"

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

// The settings that the choice reads, as bits.
FrameParams settings(unsigned bits)
{
  FrameParams p{};
  p.labBleach = bits & 1u;
  p.soupAttributes.chroma.vectorLive = bits & 2u;
  p.printBypassed = bits & 4u;
  p.printProfile = bits & 8u ? 2 : 0;
  p.printBleachOn = bits & 16u;
  p.printAttributes.saturation.vectorLive = bits & 32u;
  return p;
}

template <typename Row, size_t N>
const Row* find(const Row (&rows)[N], std::string_view kernel)
{
  const Row* row = std::find_if(rows, rows + N, [&](const Row& r) { return r.kernel == kernel; });
  return row == rows + N ? nullptr : row;
}

}  // namespace

ENGINE_TEST(FilmNames, AreMembersOfTheirFamilies)
{
  for (unsigned bits = 0; bits < 64; ++bits)
  {
    const FrameParams p = settings(bits);
    const SoupRow* soup = find(soupRows, soupKernel(p));
    const SoupRow* negative = find(soupRows, grainNegativeKernel(p));
    const SoupRow* range = find(soupRows, grainRangeKernel(p));
    const PrintRow* print = find(printRows, printKernel(p));
    const PrintRow* grainPrint = find(printRows, grainPrintKernel(p));
    ASSERT_TRUE(soup && negative && range && print && grainPrint) << bits;
    EXPECT_EQ(soup->target, SoupTarget::Frames);
    EXPECT_EQ(negative->target, SoupTarget::Linear);
    EXPECT_EQ(range->target, SoupTarget::Planes);
    EXPECT_EQ(print->target, PrintTarget::Frames);
    EXPECT_EQ(grainPrint->target, PrintTarget::Planes);
    EXPECT_EQ(soup->member == LookMember::Bleach, p.labBleach);
    EXPECT_EQ(print->member, grainPrint->member);
    for (const char* suffix : {"", "_RGB", "_Y", "_Y_RGB"})
    {
      const ExpandRow* expand = find(expandRows, expandKernel(p) + suffix);
      ASSERT_TRUE(expand) << bits << suffix;
      EXPECT_EQ(expand->luma, std::string(suffix).find("_Y") == 0);
      EXPECT_EQ(expand->alpha, std::string(suffix).find("RGB") == std::string::npos);
    }
  }
}

}  // namespace morvellan::MORVELLAN_TARGET
