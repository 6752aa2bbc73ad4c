// The kernels that are layout alone: widening and packing, crops, planes.
#include <numeric>
#include <vector>

#include "tests/colour/device_frame.h"
#include "tests/support/engine_test.h"

namespace morvellan::MORVELLAN_TARGET
{

using namespace colour_test;

namespace
{

std::vector<float> counted(size_t count)
{
  std::vector<float> values(count);
  std::iota(values.begin(), values.end(), 1.0f);
  return values;
}

}  // namespace

ENGINE_TEST(Layout, WidenAndPackAreInverse)
{
  for (const int width : {1, 5, 16, 513, 1100})
  {
    const size_t pixels = static_cast<size_t>(width) * 3;
    const Buffer<float> packed = toDevice(counted(pixels * 3));
    const Buffer<float> wide(pixels * 4);
    const Buffer<float> again(pixels * 3);
    runColour(Queue{}, "RGB_RGBA_Kernel",
              {.source = packed.data(), .destination = wide.data(), .width = width, .height = 3, .channels = 3});
    runColour(Queue{}, "RGBA_RGB_Kernel",
              {.source = wide.data(), .destination = again.data(), .width = width, .height = 3});
    EXPECT_EQ(toHost(again), counted(pixels * 3));
    const std::vector<float> rgba = toHost(wide);
    for (size_t i = 0; i < pixels; ++i)
      ASSERT_EQ(rgba[i * 4 + 3], 1.0f);
  }
}

ENGINE_TEST(Layout, CropTakesTheRectangle)
{
  constexpr int sourceWidth = 37, sourceHeight = 29, width = 21, height = 18, x0 = 9, y0 = 7;
  const std::vector<float> values = counted(sourceWidth * sourceHeight * 4);
  const Buffer<float> source = toDevice(values);
  const Buffer<float> destination = toDevice(std::vector<float>(width * height * 4, -1.0f));
  const ColourArguments arguments{.source = source.data(),
                                  .destination = destination.data(),
                                  .width = width,
                                  .height = height,
                                  .sourceWidth = sourceWidth,
                                  .offsetX = x0,
                                  .offsetY = y0};
  runColour(Queue{}, "CropKernelRGB", arguments);
  const std::vector<float> rgb = toHost(destination);
  runColour(Queue{}, "CropKernelRGBA", arguments);
  const std::vector<float> rgba = toHost(destination);
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x)
      for (int k = 0; k < 4; ++k)
      {
        const size_t to = static_cast<size_t>((y * width + x) * 4 + k);
        const float expected = values[static_cast<size_t>(((y + y0) * sourceWidth + x + x0) * 4 + k)];
        ASSERT_EQ(rgba[to], expected);
        ASSERT_EQ(rgb[to], k == 3 ? -1.0f : expected);
      }
}

ENGINE_TEST(Layout, PlanesAndBack)
{
  const std::vector<float> frame = counted(700 * 4);
  const PlaneSet planes = toPlanes("src_RGBA_Kernel", frame, {});
  for (size_t i = 0; i < 700; ++i)
    for (size_t k = 0; k < 4; ++k)
      ASSERT_EQ(planes[k][i], frame[i * 4 + k]);
  EXPECT_EQ(fromPlanes("RGBA_src_Kernel", planes, {}), frame);
  const PlaneSet three = toPlanes("src_RGBA_Kernel_RGB", frame, {});
  EXPECT_EQ(three[0], planes[0]);
  EXPECT_EQ(three[2], planes[2]);
  EXPECT_EQ(three[3], std::vector<float>(700, -1.0f));
  const std::vector<float> packed = counted(700 * 3);
  EXPECT_EQ(fromPlanes("RGB_src_Kernel", toPlanes("src_RGB_Kernel", packed, {.channels = 3}), {.channels = 3}), packed);
}

ENGINE_TEST(Layout, LumaOfANeutralHasNoColour)
{
  std::array<Buffer<float>, 3> planes;
  ColourArguments arguments{.width = 3, .height = 1};
  const std::vector<float> levels = {0.25f, 0.5f, 0.75f};
  for (size_t k = 0; k < 3; ++k)
  {
    planes[k] = toDevice(levels);
    arguments.planes[k] = planes[k].data();
  }
  runColour(Queue{}, "RGB_RGB_Kernel_Y", arguments);
  EXPECT_EQ(toHost(planes[0]), levels);
  EXPECT_EQ(toHost(planes[1]), std::vector<float>(3, 0.0f));
  EXPECT_EQ(toHost(planes[2]), std::vector<float>(3, 0.0f));
  const PlaneSet luma = {levels, std::vector<float>(3, 0.0f), std::vector<float>(3, 0.0f), levels};
  EXPECT_EQ(reds(fromPlanes("Y_RGBA_src_Kernel", luma, {})), levels);
}

ENGINE_TEST(Layout, LumaAndBackReturnsColours)
{
  const PlaneSet rgb = {std::vector<float>{0.5f, 0.25f}, std::vector<float>{0.125f, 1.0f},
                        std::vector<float>{0.75f, 0.0f}, std::vector<float>{1.0f, 1.0f}};
  std::array<Buffer<float>, 4> planes;
  ColourArguments arguments{.width = 2, .height = 1};
  for (size_t k = 0; k < 4; ++k)
  {
    planes[k] = toDevice(rgb[k]);
    arguments.planes[k] = planes[k].data();
  }
  runColour(Queue{}, "RGB_RGB_Kernel_Y", arguments);
  const Buffer<float> frame(8);
  arguments.destination = frame.data();
  runColour(Queue{}, "Y_RGBA_src_Kernel", arguments);
  EXPECT_EQ(toHost(frame), (std::vector<float>{0.5f, 0.125f, 0.75f, 1.0f, 0.25f, 1.0f, 0.0f, 1.0f}));
}

}  // namespace morvellan::MORVELLAN_TARGET
