// A packed image placed inside a larger frame: every pixel arrives, nothing beside it is written.
#include "pipeline/place.h"

#include <numeric>
#include <tuple>

#include "device/launch.h"
#include "device/queue.h"
#include "tests/support/device_arrays.h"
#include "tests/support/engine_test.h"

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

constexpr float outside = -3.0f;

std::vector<float> placed(int width, int height, int frameWidth, int frameHeight, int channels, int x, int y)
{
  std::vector<float> values(static_cast<size_t>(width * height * channels));
  std::iota(values.begin(), values.end(), 1.0f);
  const Buffer<float> source = upload(values);
  const Buffer<float> frame =
      upload(std::vector<float>(static_cast<size_t>(frameWidth * frameHeight * channels), outside));
  if (channels == 4)
    launch(Queue{}, grid2d(width, height),
           Pad2DArrayRGBA{source.data(), frame.data(), height, width, frameWidth, 4, x, y});
  else
    launch(Queue{}, grid2d(width, height),
           Pad2DArrayRGB{source.data(), frame.data(), height, width, frameWidth, 3, x, y});
  return download(frame);
}

}  // namespace

ENGINE_TEST(Place, PixelsArriveAndTheSurroundStays)
{
  // Image, frame and place: a corner, the other corner, the middle, a whole frame, single rows and columns.
  for (const auto& [width, height, frameWidth, frameHeight, x, y] : {std::tuple{5, 3, 9, 7, 0, 0},
                                                                     {5, 3, 9, 7, 4, 4},
                                                                     {19, 6, 41, 11, 11, 2},
                                                                     {33, 4, 33, 4, 0, 0},
                                                                     {1, 6, 40, 6, 39, 0},
                                                                     {40, 1, 40, 6, 0, 5},
                                                                     {1, 1, 1, 1, 0, 0},
                                                                     {16, 2, 17, 3, 1, 1}})
    for (const int channels : {3, 4})
    {
      const std::vector<float> frame = placed(width, height, frameWidth, frameHeight, channels, x, y);
      for (int row = 0; row < frameHeight; ++row)
        for (int column = 0; column < frameWidth; ++column)
          for (int c = 0; c < channels; ++c)
          {
            const bool inside = column >= x && column < x + width && row >= y && row < y + height;
            const int from = ((row - y) * width + column - x) * channels + c;
            ASSERT_EQ(frame[static_cast<size_t>((row * frameWidth + column) * channels + c)],
                      inside ? static_cast<float>(from + 1) : outside)
                << channels << ": " << column << ", " << row;
          }
    }
}

PARITY(place, .relative = 0.0f, .absolute = 0.0f)
{
  std::vector<float> values = placed(21, 5, 37, 9, 4, 7, 3);
  const std::vector<float> rgb = placed(21, 5, 37, 9, 3, 7, 3);
  values.insert(values.end(), rgb.begin(), rgb.end());
  return values;
}

}  // namespace morvellan::MORVELLAN_TARGET
