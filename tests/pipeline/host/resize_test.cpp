// The resampler against a plain evaluation in double, its weights, its edges, and tiles against the whole.
#include "pipeline/host/resize.h"

#include "pipeline/host/lines.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <random>
#include <tuple>

namespace morvellan::test
{
namespace
{

struct Image
{
  explicit Image(ImageSize size, float fill = 0.0f)
      : size(size), pixels(static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height) * 4, fill)
  {
  }

  static Image random(ImageSize size)
  {
    Image image(size);
    std::mt19937 generator(7);
    std::uniform_real_distribution<float> values(-0.5f, 2.0f);
    std::generate(image.pixels.begin(), image.pixels.end(), [&] { return values(generator); });
    return image;
  }

  float& at(int x, int y, int c) { return pixels[static_cast<std::size_t>((y * size.width + x) * 4 + c)]; }
  float at(int x, int y, int c) const { return const_cast<Image&>(*this).at(x, y, c); }
  ConstImageView view() const { return packedImage(pixels.data(), size); }
  ImageView view() { return packedImage(pixels.data(), size); }

  ImageSize size;
  std::vector<float> pixels;
};

template <typename Resizer>
Image resampled(const Image& source, ImageSize size)
{
  Image target(size, -77.0f);
  Resizer resizer;
  resizer.prepare(source.view(), target.view());
  resizer.run();
  EXPECT_EQ(resizer.status(), ResizeStatus::done);
  return target;
}

double sinc(double x)
{
  constexpr double pi = 3.14159265358979323846;
  return x == 0.0 ? 1.0 : std::sin(pi * x) / (pi * x);
}

// One sample along an axis: position and the six weighted samples, by the definition.
struct Sample
{
  int first;
  double weights[6];
};

Sample sampleAt(int i, int source, int target)
{
  const double u = (i + 0.5) * source / target - 0.5;
  Sample sample{};
  sample.first = static_cast<int>(std::floor(u)) - 2;
  double sum = 0.0;
  for (int k = 0; k < 6; ++k)
  {
    const double x = u - (sample.first + k);
    sample.weights[k] = std::abs(x) < 3.0 ? sinc(x) * sinc(x / 3.0) : 0.0;
    sum += sample.weights[k];
  }
  for (double& weight : sample.weights)
    weight /= sum;
  return sample;
}

double expectedPixel(const Image& source, ImageSize target, int x, int y, int c)
{
  const Sample across = sampleAt(x, source.size.width, target.width);
  const Sample down = sampleAt(y, source.size.height, target.height);
  double sum = 0.0;
  for (int j = 0; j < 6; ++j)
    for (int i = 0; i < 6; ++i)
      sum += across.weights[i] * down.weights[j] *
             source.at(std::clamp(across.first + i, 0, source.size.width - 1),
                       std::clamp(down.first + j, 0, source.size.height - 1), c);
  return sum;
}

class ResizeSizes : public testing::TestWithParam<std::tuple<ImageSize, ImageSize>>
{
};

TEST_P(ResizeSizes, MatchesTheDefinition)
{
  const auto [from, to] = GetParam();
  const Image source = Image::random(from);
  const Image target = resampled<Resize>(source, to);
  for (int y = 0; y < to.height; ++y)
    for (int x = 0; x < to.width; ++x)
      for (int c = 0; c < 4; ++c)
        ASSERT_NEAR(target.at(x, y, c), expectedPixel(source, to, x, y, c), 3e-6) << x << " " << y << " " << c;
}

TEST_P(ResizeSizes, TilesJoinWithoutSeams)
{
  const auto [from, to] = GetParam();
  const Image source = Image::random(from);
  EXPECT_EQ(resampled<Resize>(source, to).pixels, resampled<ResizeTBB>(source, to).pixels);
}

INSTANTIATE_TEST_SUITE_P(
    Framing, ResizeSizes,
    testing::Values(std::tuple(ImageSize{1, 1}, ImageSize{1, 1}), std::tuple(ImageSize{1, 1}, ImageSize{5, 3}),
                    std::tuple(ImageSize{2, 5}, ImageSize{9, 4}), std::tuple(ImageSize{3, 4}, ImageSize{37, 41}),
                    std::tuple(ImageSize{7, 3}, ImageSize{1, 1}), std::tuple(ImageSize{64, 48}, ImageSize{65, 49}),
                    std::tuple(ImageSize{64, 48}, ImageSize{128, 96}),
                    std::tuple(ImageSize{128, 96}, ImageSize{64, 48}),
                    std::tuple(ImageSize{200, 150}, ImageSize{10, 7}), std::tuple(ImageSize{50, 90}, ImageSize{90, 50}),
                    std::tuple(ImageSize{97, 61}, ImageSize{131, 83})));

// Sizes beyond one strip and one task, and large enough to be written past the caches.
TEST(Resize, LargeTilesJoinWithoutSeams)
{
  const Image source = Image::random({601, 299});
  const Image whole = resampled<Resize>(source, {5003, 613});
  EXPECT_EQ(whole.pixels, resampled<ResizeTBB>(source, {5003, 613}).pixels);
  for (const int x : {0, 1, 4095, 4096, 5002})
    for (const int y : {0, 300, 612})
      EXPECT_NEAR(whole.at(x, y, 1), expectedPixel(source, {5003, 613}, x, y, 1), 3e-6) << x << " " << y;
}

TEST(Resize, OwnSizeIsACopy)
{
  const Image source = Image::random({33, 17});
  EXPECT_EQ(resampled<ResizeTBB>(source, source.size).pixels, source.pixels);
}

TEST(Resize, FlatPicturesStayFlat)
{
  for (const float value : resampled<ResizeTBB>(Image({20, 30}, 0.75f), {77, 55}).pixels)
    ASSERT_NEAR(value, 0.75f, 1e-6);
}

TEST(Resize, NothingIsClamped)
{
  Image source({32, 1}, 0.0f);
  for (int x = 16; x < 32; ++x)
    for (int c = 0; c < 4; ++c)
      source.at(x, 0, c) = 1.0f;
  const Image target = resampled<ResizeTBB>(source, {128, 1});
  EXPECT_LT(*std::min_element(target.pixels.begin(), target.pixels.end()), -0.05f);
  EXPECT_GT(*std::max_element(target.pixels.begin(), target.pixels.end()), 1.05f);
}

TEST(Resize, ANanReachesItsTapsOnly)
{
  Image source = Image::random({40, 40});
  source.at(20, 20, 0) = std::numeric_limits<float>::quiet_NaN();
  const Image target = resampled<ResizeTBB>(source, {80, 80});
  for (int y = 0; y < 80; ++y)
    for (int x = 0; x < 80; ++x)
    {
      const Sample across = sampleAt(x, 40, 80);
      const Sample down = sampleAt(y, 40, 80);
      const bool reached = across.first <= 20 && 20 < across.first + 6 && down.first <= 20 && 20 < down.first + 6;
      ASSERT_EQ(std::isnan(target.at(x, y, 0)), reached) << x << " " << y;
      ASSERT_FALSE(std::isnan(target.at(x, y, 1)));
    }
}

// Padding behind the rows is neither read nor written.
TEST(Resize, PaddedRows)
{
  const Image source = Image::random({21, 11});
  constexpr int sourceStep = 30;
  constexpr int targetStep = 50;
  const float nan = std::numeric_limits<float>::quiet_NaN();
  std::vector<float> padded(sourceStep * 11 * 4, nan);
  for (int y = 0; y < 11; ++y)
    std::copy_n(&source.pixels[static_cast<std::size_t>(y) * 21 * 4], 21 * 4, padded.begin() + y * sourceStep * 4);
  std::vector<float> out(targetStep * 25 * 4, -5.0f);
  ResizeTBB resizer;
  resizer.prepare({padded.data(), 21, 11, sourceStep * 16}, {out.data(), 43, 25, targetStep * 16});
  resizer.run();
  const Image expected = resampled<Resize>(source, {43, 25});
  for (int y = 0; y < 25; ++y)
    for (int i = 0; i < targetStep * 4; ++i)
      ASSERT_EQ(out[static_cast<std::size_t>(y * targetStep * 4 + i)],
                i < 43 * 4 ? expected.pixels[static_cast<std::size_t>(y * 43 * 4 + i)] : -5.0f);
}

TEST(Resize, BadSizesAreRefused)
{
  Image image({4, 4}, 0.5f);
  const ConstImageView good = std::as_const(image).view();
  for (const auto& [from, to] :
       {std::pair(ConstImageView{nullptr, 4, 4, 64}, image.view()), std::pair(good, ImageView{nullptr, 4, 4, 64}),
        std::pair(ConstImageView{good.pixels, 0, 4, 64}, image.view()),
        std::pair(good, ImageView{image.pixels.data(), 4, -1, 64})})
  {
    ResizeTBB resizer;
    resizer.prepare(from, to);
    resizer.run();
    EXPECT_EQ(resizer.status(), ResizeStatus::badSize);
  }
  EXPECT_TRUE(std::all_of(image.pixels.begin(), image.pixels.end(), [](float value) { return value == 0.5f; }));
  ResizeTBB unprepared;
  unprepared.run();
  EXPECT_EQ(unprepared.status(), ResizeStatus::notPrepared);
}

TEST(ResizeWeights, SumToOneAndAreFewAtWholeRatios)
{
  for (const auto& [source, target] : {std::pair(1920, 3840), std::pair(3840, 1920), std::pair(1920, 3841),
                                       std::pair(4096, 1), std::pair(1, 4096), std::pair(12288, 12287)})
  {
    const FilterAxis axis = filterAxis(source, target, 1);
    ASSERT_EQ(axis.first.size(), static_cast<std::size_t>(target));
    ASSERT_EQ(axis.phase.size(), static_cast<std::size_t>(target));
    EXPECT_EQ(axis.weights.size(), static_cast<std::size_t>(target / std::gcd(source, target)) * 6);
    for (std::size_t i = 0; i < axis.weights.size(); i += 6)
      ASSERT_NEAR(std::accumulate(axis.weights.begin() + static_cast<std::ptrdiff_t>(i),
                                  axis.weights.begin() + static_cast<std::ptrdiff_t>(i) + 6, 0.0),
                  1.0, 4e-7);
  }
}

TEST(ResizeWeights, FollowTheDefinition)
{
  for (const auto& [source, target] : {std::pair(37, 100), std::pair(100, 37), std::pair(7, 7), std::pair(1, 3)})
  {
    const FilterAxis axis = filterAxis(source, target, 1);
    for (int i = 0; i < target; ++i)
    {
      const Sample sample = sampleAt(i, source, target);
      ASSERT_EQ(axis.first[static_cast<std::size_t>(i)], sample.first) << i;
      for (int tap = 0; tap < 6; ++tap)
        ASSERT_NEAR(axis.weights[static_cast<std::size_t>(axis.phase[static_cast<std::size_t>(i)] + tap)],
                    sample.weights[tap], 1e-7);
    }
  }
}

TEST(ResizeWeights, LanczosKernel)
{
  EXPECT_EQ(lanczos3(0.0), 1.0);
  for (const double zero : {1.0, -1.0, 2.0, -2.0, 3.0, -3.0, 3.5, -100.25})
    EXPECT_EQ(lanczos3(zero), 0.0) << zero;
  EXPECT_NEAR(lanczos3(0.5), 6.0 / (3.14159265358979 * 3.14159265358979), 1e-12);
  EXPECT_NEAR(lanczos3(1.5), -4.0 / (3.0 * 3.14159265358979 * 3.14159265358979), 1e-12);
  EXPECT_EQ(lanczos3(0.3), lanczos3(-0.3));
}

}  // namespace
}  // namespace morvellan::test
