#include "entry/pixel_processor.h"

#include <vector>

#include <gtest/gtest.h>

#include "entry/exceptions.h"
#include "entry/local_multi_thread.h"
#include "tests/entry/fake_host.h"

namespace
{

class NoEffect : public OFX::ImageEffect
{
public:
  using ImageEffect::ImageEffect;
  void render(const OFX::RenderArguments&) override {}
};

class PixelProcessorTest : public testing::Test
{
protected:
  PixelProcessorTest()
  {
    OFX::suites().property = &fake::propertySuite;
    OFX::suites().effect = &fake::effectSuite;
    OFX::suites().multiThread = &OFX::MultiThread::localSuite();
  }
  ~PixelProcessorTest() override { OFX::suites() = {}; }

  void describe(const OfxRectI& bounds, const char* components, const char* depth, int rowBytes)
  {
    image_.values[kOfxImagePropData] = {static_cast<void*>(pixels_.data())};
    image_.values[kOfxImagePropBounds] = {bounds.x1, bounds.y1, bounds.x2, bounds.y2};
    image_.values[kOfxImageEffectPropComponents] = {std::string(components)};
    image_.values[kOfxImageEffectPropPixelDepth] = {std::string(depth)};
    image_.values[kOfxImagePropRowBytes] = {rowBytes};
  }

  fake::Effect handle_;
  fake::Properties image_;
  std::vector<float> pixels_ = std::vector<float>(4 * 10 * 8, 7.0f);
};

TEST_F(PixelProcessorTest, BlackFillsTheWindowAndNothingElse)
{
  const NoEffect effect(reinterpret_cast<OfxImageEffectHandle>(&handle_));
  describe({-2, 5, 6, 13}, kOfxImageComponentRGBA, kOfxBitDepthFloat, 10 * 16);
  const OFX::Image image(image_.handle());
  OFX::BlackFiller filler(effect, 4);
  filler.setDestination(image);
  filler.setRenderWindow({-1, 6, 5, 100});
  filler.process();
  for (int y = 0; y < 8; ++y)
    for (int x = 0; x < 10; ++x)
      for (int c = 0; c < 4; ++c)
      {
        const bool inside = x >= 1 && x < 7 && y >= 1;
        EXPECT_EQ(pixels_[static_cast<std::size_t>((y * 10 + x) * 4 + c)], inside ? 0.0f : 7.0f) << x << ' ' << y;
      }
}

TEST_F(PixelProcessorTest, ThreeChannelsAndRowsDownwards)
{
  const NoEffect effect(reinterpret_cast<OfxImageEffectHandle>(&handle_));
  describe({0, 0, 5, 2}, kOfxImageComponentRGB, kOfxBitDepthFloat, -16 * 4);
  image_.values[kOfxImagePropData] = {static_cast<void*>(pixels_.data() + 16)};
  const OFX::Image image(image_.handle());
  OFX::BlackFiller filler(effect, 3);
  filler.setDestination(image);
  filler.setRenderWindow({0, 0, 5, 2});
  filler.process();
  for (std::size_t i = 0; i < 48; ++i)
    EXPECT_EQ(pixels_[i], i % 16 < 15 && i < 31 ? 0.0f : 7.0f) << i;
}

TEST_F(PixelProcessorTest, NothingToDoIsNoError)
{
  const NoEffect effect(reinterpret_cast<OfxImageEffectHandle>(&handle_));
  describe({0, 0, 5, 2}, kOfxImageComponentRGBA, kOfxBitDepthFloat, 80);
  image_.values[kOfxImagePropData] = {static_cast<void*>(nullptr)};
  const OFX::Image image(image_.handle());
  OFX::BlackFiller filler(effect, 4);
  filler.setDestination(image);
  filler.setRenderWindow({0, 0, 5, 2});
  EXPECT_NO_THROW(filler.process());
  filler.setRenderWindow({3, 3, 1, 1});
  EXPECT_NO_THROW(filler.process());
}

class Failing : public OFX::MultiThread::Processor
{
public:
  void multiThreadFunction(unsigned int threadId, unsigned int) override
  {
    if (threadId == 1)
      throw OFX::Exception::Suite(kOfxStatErrFormat);
  }
};

TEST_F(PixelProcessorTest, AFailureOfAShareComesBack)
{
  Failing job;
  EXPECT_THROW(job.multiThread(3), OFX::Exception::Suite);
  EXPECT_NO_THROW(job.multiThread(1));
}

}  // namespace
