// Every combination of channels and devices: nothing is rendered twice, nothing is left out, and each goes where it is
// said to go.
#include "pipeline/host/grain_dealing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{
using namespace morvellan;
using enum GrainChannel;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::array<bool, 3> all{true, true, true};

GrainDevices devices(int count)
{
  return {.red = 7, .green = 5, .blue = 9, .count = count};
}

TEST(GrainDealing, ThreeDevicesTakeAChannelEach)
{
  EXPECT_THAT(dealGrain(all, devices(3), 1080),
              ElementsAre(GrainShare{blue, 9, 0, 1080}, GrainShare{green, 5, 0, 1080}, GrainShare{red, 7, 0, 1080}));
}

TEST(GrainDealing, TwoDevicesCutTheBluePlane)
{
  EXPECT_THAT(dealGrain(all, devices(2), 1081),
              ElementsAre(GrainShare{green, 9, 0, 1081}, GrainShare{red, 7, 0, 1081}, GrainShare{blue, 9, 540, 541},
                          GrainShare{blue, 7, 0, 540}));
}

TEST(GrainDealing, APlaneOfOneRowIsNotCut)
{
  EXPECT_THAT(dealGrain(all, devices(2), 1),
              ElementsAre(GrainShare{green, 9, 0, 1}, GrainShare{red, 7, 0, 1}, GrainShare{blue, 9, 0, 1}));
}

TEST(GrainDealing, OneDeviceTakesAllInARow)
{
  for (int count : {1, 0})
    EXPECT_THAT(dealGrain(all, devices(count), 4),
                ElementsAre(GrainShare{red, 7, 0, 4}, GrainShare{green, 7, 0, 4}, GrainShare{blue, 7, 0, 4}));
}

TEST(GrainDealing, FewerChannelsAreDealtInOrder)
{
  EXPECT_THAT(dealGrain({true, false, true}, devices(3), 4),
              ElementsAre(GrainShare{blue, 5, 0, 4}, GrainShare{red, 7, 0, 4}));
  EXPECT_THAT(dealGrain({false, true, true}, devices(3), 4),
              ElementsAre(GrainShare{blue, 5, 0, 4}, GrainShare{green, 7, 0, 4}));
  EXPECT_THAT(dealGrain({false, true, true}, devices(2), 4),
              ElementsAre(GrainShare{green, 7, 0, 4}, GrainShare{blue, 9, 0, 4}));
  EXPECT_THAT(dealGrain({true, true, false}, devices(2), 4),
              ElementsAre(GrainShare{red, 7, 0, 4}, GrainShare{green, 9, 0, 4}));
  for (int count : {1, 2, 3})
    EXPECT_THAT(dealGrain({false, false, true}, devices(count), 4), ElementsAre(GrainShare{blue, 7, 0, 4}));
}

TEST(GrainDealing, WithoutChannelsOrRowsNothing)
{
  for (int count : {1, 2, 3})
  {
    EXPECT_THAT(dealGrain({}, devices(count), 1080), IsEmpty());
    EXPECT_THAT(dealGrain(all, devices(count), 0), IsEmpty());
  }
}

TEST(GrainDealing, EveryRowOfEveryChannelOnce)
{
  for (int mask = 0; mask < 8; ++mask)
    for (int count = 1; count <= 3; ++count)
      for (int height : {1, 2, 3, 7, 16})
      {
        const std::array<bool, 3> on{(mask & 1) != 0, (mask & 2) != 0, (mask & 4) != 0};
        std::array<std::vector<int>, 3> rendered;
        rendered.fill(std::vector<int>(static_cast<std::size_t>(height)));
        for (const GrainShare& share : dealGrain(on, devices(count), height))
          for (int row = share.firstRow; row < share.firstRow + share.rows; ++row)
            ++rendered[static_cast<std::size_t>(share.channel)].at(static_cast<std::size_t>(row));
        for (std::size_t channel = 0; channel < 3; ++channel)
          EXPECT_THAT(rendered[channel], testing::Each(on[channel] ? 1 : 0)) << mask << ' ' << count << ' ' << height;
      }
}

}  // namespace
