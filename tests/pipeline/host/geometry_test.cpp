// Offsets and sizes of crop, resample and pad.
#include "pipeline/host/geometry.h"

#include <gtest/gtest.h>

#include <limits>

namespace morvellan::test
{
namespace
{

FrameParams frame()
{
  FrameParams params{};
  params.frameWidth = 1920;
  params.frameHeight = 1080;
  params.sourceWidth = 1280;
  params.sourceHeight = 721;
  params.targetWidth = 1601;
  params.targetHeight = 900;
  params.sourceOffsetX = params.sourceOffsetY = params.targetOffsetX = params.targetOffsetY = 0.5f;
  params.resizeMode = 1;
  return params;
}

TEST(Geometry, CentredByDefault)
{
  EXPECT_EQ(cropOffset(frame()), (PixelOffset{320, 179}));
  EXPECT_EQ(padOffset(frame()), (PixelOffset{159, 90}));
  EXPECT_TRUE(isPadded(frame()));
}

TEST(Geometry, EndsOfTheRange)
{
  FrameParams params = frame();
  params.sourceOffsetX = 0.0f;
  params.sourceOffsetY = 1.0f;
  params.targetOffsetX = 1.0f;
  params.targetOffsetY = 0.0f;
  EXPECT_EQ(cropOffset(params), (PixelOffset{0, 359}));
  EXPECT_EQ(padOffset(params), (PixelOffset{319, 0}));
}

// 0.7 in float is below 0.7: the product 7 * 10 of the reals stays below 7.
TEST(Geometry, TheProductIsFormedInFloat)
{
  FrameParams params = frame();
  params.frameWidth = 110;
  params.sourceWidth = 100;
  params.sourceOffsetX = 0.7f;
  EXPECT_EQ(cropOffset(params).x, static_cast<int>(10.0f * 0.7f));
  params.frameWidth = 200;
  params.sourceOffsetX = 0.29f;
  EXPECT_EQ(cropOffset(params).x, static_cast<int>(100.0f * 0.29f));
}

TEST(Geometry, WholeFrameCropStartsAtTheCorner)
{
  FrameParams params = frame();
  params.sourceWidth = 1920;
  params.sourceHeight = 1080;
  EXPECT_EQ(cropOffset(params), (PixelOffset{0, 0}));
}

TEST(Geometry, OffsetsOutOfRangeStayInsideTheFrame)
{
  FrameParams params = frame();
  params.sourceOffsetX = 7.0f;
  params.sourceOffsetY = -3.0f;
  params.targetOffsetX = std::numeric_limits<float>::quiet_NaN();
  params.targetOffsetY = std::numeric_limits<float>::infinity();
  EXPECT_EQ(cropOffset(params), (PixelOffset{640, 0}));
  EXPECT_EQ(padOffset(params), (PixelOffset{0, 180}));
}

TEST(Geometry, ATargetAsLargeAsTheFrameIsNotPadded)
{
  FrameParams params = frame();
  params.targetWidth = 1920;
  EXPECT_TRUE(isPadded(params));
  params.targetHeight = 1080;
  EXPECT_FALSE(isPadded(params));
}

TEST(Geometry, TheEnhancerWantsOnePixelMoreOnItsAxes)
{
  FrameParams params = frame();
  EXPECT_FALSE(isEnhanced(params));
  EXPECT_EQ(resampledSize(params), (ImageSize{1601, 900}));
  params.enhancerHorizontal = 1.0f;
  EXPECT_TRUE(isEnhanced(params));
  EXPECT_EQ(resampledSize(params), (ImageSize{1602, 900}));
  params.enhancerVertical = 2.0f;
  EXPECT_EQ(resampledSize(params), (ImageSize{1602, 901}));
  params.resizeMode = 2;
  EXPECT_FALSE(isEnhanced(params));
  EXPECT_EQ(resampledSize(params), (ImageSize{1601, 900}));
}

}  // namespace
}  // namespace morvellan::test
