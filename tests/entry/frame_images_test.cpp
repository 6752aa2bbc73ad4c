#include "entry/frame_images.h"

#include <vector>

#include <gtest/gtest.h>

#include "entry/suites.h"
#include "tests/entry/fake_host.h"

namespace
{

using namespace morvellan;

// An image of four channels whose values name their pixel: x + 100 y + 0.25 c, in rows of any stride.
struct Picture
{
  Picture(const OfxRectI& bounds, int channels, std::size_t padding, bool topDown)
      : bounds(bounds), channels(channels),
        stride(static_cast<std::size_t>((bounds.x2 - bounds.x1) * channels) + padding),
        values(stride * static_cast<std::size_t>(bounds.y2 - bounds.y1), -1.0f), topDown(topDown)
  {
  }

  float* row(int y)
  {
    const int line = topDown ? bounds.y2 - 1 - y : y - bounds.y1;
    return values.data() + static_cast<std::size_t>(line) * stride;
  }
  float& at(int x, int y, int c) { return row(y)[(x - bounds.x1) * channels + c]; }
  void number()
  {
    for (int y = bounds.y1; y < bounds.y2; ++y)
      for (int x = bounds.x1; x < bounds.x2; ++x)
        for (int c = 0; c < channels; ++c)
          at(x, y, c) = value(x, y, c);
  }
  static float value(int x, int y, int c)
  {
    return static_cast<float>(x) + 100.0f * static_cast<float>(y) + 0.25f * static_cast<float>(c);
  }
  template <class Byte>
  FloatRows<Byte> rows()
  {
    const auto bytes = static_cast<std::ptrdiff_t>(stride * sizeof(float));
    return {.bounds = bounds,
            .first = reinterpret_cast<Byte*>(row(bounds.y1)),
            .rowBytes = topDown ? -bytes : bytes,
            .channels = channels};
  }

  OfxRectI bounds;
  int channels;
  std::size_t stride;
  std::vector<float> values;
  bool topDown;
};

void expectPlaced(Picture& target, const OfxRectI& source)
{
  for (int y = target.bounds.y1; y < target.bounds.y2; ++y)
    for (int x = target.bounds.x1; x < target.bounds.x2; ++x)
      for (int c = 0; c < target.channels; ++c)
      {
        const bool inside = x >= source.x1 && x < source.x2 && y >= source.y1 && y < source.y2;
        ASSERT_EQ(target.at(x, y, c), inside ? Picture::value(x, y, c) : 0.0f) << x << ' ' << y << ' ' << c;
      }
}

TEST(CopyByCoordinates, EveryWayInWhichTwoRectanglesMeet)
{
  const OfxRectI target{10, 20, 18, 26};
  for (const OfxRectI source : {OfxRectI{10, 20, 18, 26}, OfxRectI{8, 18, 20, 30}, OfxRectI{12, 22, 15, 24},
                                OfxRectI{5, 15, 13, 23}, OfxRectI{15, 23, 30, 40}, OfxRectI{40, 40, 44, 44},
                                OfxRectI{10, 40, 18, 44}, OfxRectI{-30, 20, 10, 26}, OfxRectI{-3, 24, 11, 25}})
    for (const std::size_t padding : {0u, 5u})
      for (const bool topDown : {false, true})
        for (const int channels : {3, 4})
        {
          Picture from(source, channels, padding, topDown);
          from.number();
          Picture to(target, channels, padding, !topDown);
          copyByCoordinates(from.rows<const std::byte>(), to.rows<std::byte>());
          expectPlaced(to, source);
        }
}

TEST(CopyByCoordinates, PaddingIsLeftAlone)
{
  Picture from({0, 0, 4, 4}, 4, 0, false);
  from.number();
  Picture to({0, 0, 4, 4}, 4, 3, false);
  copyByCoordinates(from.rows<const std::byte>(), to.rows<std::byte>());
  for (int y = 0; y < 4; ++y)
    for (int i = 16; i < 19; ++i)
      EXPECT_EQ(to.row(y)[i], -1.0f);
}

TEST(SourceFrame, IsTheHostsMemoryWhereThatFits)
{
  Picture from({0, 0, 6, 4}, 4, 0, false);
  Picture to({0, 0, 6, 4}, 4, 0, false);
  EXPECT_EQ(SourceFrame(from.rows<const std::byte>(), to.rows<std::byte>()).pixels(), from.values.data());
  // One memory for both images: the pipelines read what they must not have overwritten.
  EXPECT_NE(SourceFrame(to.rows<const std::byte>(), to.rows<std::byte>()).pixels(), to.values.data());
}

TEST(SourceFrame, IsPackedAndPlacedOtherwise)
{
  for (const bool topDown : {false, true})
  {
    Picture from({2, 1, 9, 5}, 3, 2, topDown);
    from.number();
    Picture to({0, 0, 6, 4}, 3, 0, false);
    const SourceFrame frame(from.rows<const std::byte>(), to.rows<std::byte>());
    std::copy(frame.pixels(), frame.pixels() + to.values.size(), to.values.begin());
    expectPlaced(to, from.bounds);
  }
}

TEST(TargetFrame, WritesRowsOfAnyStride)
{
  Picture packed({0, 0, 6, 4}, 4, 0, false);
  TargetFrame direct(packed.rows<std::byte>());
  EXPECT_EQ(direct.pixels(), packed.values.data());

  Picture expected({0, 0, 6, 4}, 4, 0, false);
  expected.number();
  for (const bool topDown : {false, true})
  {
    Picture to({0, 0, 6, 4}, 4, 7, topDown);
    TargetFrame frame(to.rows<std::byte>());
    std::copy(expected.values.begin(), expected.values.end(), frame.pixels());
    EXPECT_EQ(to.at(0, 0, 0), -1.0f);
    frame.finish();
    expectPlaced(to, to.bounds);
  }
}

class ImageFaultTest : public testing::Test
{
protected:
  ImageFaultTest()
  {
    OFX::suites().property = &fake::propertySuite;
    OFX::suites().effect = &fake::effectSuite;
  }
  ~ImageFaultTest() override { OFX::suites() = {}; }

  std::optional<std::string> fault(const OfxRectI& bounds, void* data, int rowBytes,
                                   const char* depth = kOfxBitDepthFloat)
  {
    fake::Properties properties;
    properties.values[kOfxImagePropData] = {data};
    properties.values[kOfxImagePropBounds] = {bounds.x1, bounds.y1, bounds.x2, bounds.y2};
    properties.values[kOfxImageEffectPropComponents] = {std::string(kOfxImageComponentRGBA)};
    properties.values[kOfxImageEffectPropPixelDepth] = {std::string(depth)};
    properties.values[kOfxImagePropRowBytes] = {rowBytes};
    const OFX::Image image(properties.handle());
    return imageFault(image, 4, "Input");
  }
};

TEST_F(ImageFaultTest, GoodImagesHaveNone)
{
  float pixel = 0.0f;
  EXPECT_EQ(fault({0, 0, 4, 4}, &pixel, 64), std::nullopt);
  EXPECT_EQ(fault({0, 0, 4, 4}, &pixel, 100), std::nullopt);
  EXPECT_EQ(fault({-4, -4, 0, 0}, &pixel, -64), std::nullopt);
  EXPECT_EQ(fault({0, 0, 4, 1}, &pixel, 0), std::nullopt);
  // Black is filled at any depth.
  EXPECT_EQ(fault({0, 0, 4, 4}, &pixel, 16, kOfxBitDepthByte), std::nullopt);
  EXPECT_EQ(fault({0, 0, 4, 4}, &pixel, 32, kOfxBitDepthHalf), std::nullopt);
}

TEST_F(ImageFaultTest, BadOnesSayWhatIsWrong)
{
  float pixel = 0.0f;
  EXPECT_EQ(fault({0, 0, 0, 4}, &pixel, 64),
            "Morvellan : Natron gave an Input image of 0 x 4 pixels. Check the size of the input clip");
  EXPECT_EQ(fault({5, 0, 2, 4}, &pixel, 64),
            "Morvellan : Natron gave an Input image of -3 x 4 pixels. Check the size of the input clip");
  EXPECT_EQ(fault({INT_MIN, 0, INT_MAX, 4}, &pixel, 64),
            "Morvellan : Natron gave an Input image of 4294967295 x 4 pixels, which is more than Morvellan can render");
  EXPECT_EQ(fault({0, 0, 4, 4}, nullptr, 64),
            "Morvellan : Natron gave an Input image without pixel data. Check that its clip can be read");
  EXPECT_EQ(fault({0, 0, 4, 4}, &pixel, 63),
            "Morvellan : Natron gave an Input image whose rows of 63 bytes are too short for 4 pixels");
  EXPECT_EQ(fault({0, 0, 4, 4}, &pixel, 31, kOfxBitDepthHalf),
            "Morvellan : Natron gave an Input image whose rows of 31 bytes are too short for 4 pixels");
}

}  // namespace
