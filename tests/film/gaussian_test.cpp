// The line filter against its recursion in double precision, and the fused blur of a plane against the four kernels.
#include "film/gaussian.h"

#include <cmath>
#include <limits>
#include <random>

#include <tbb/global_control.h>

#include "film/gaussian_pair.h"
#include "film/transpose.h"
#include "tests/support/device_arrays.h"
#include "tests/support/engine_test.h"
#include "tests/support/gaussian_in_double.h"

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

using Values = std::vector<float>;

Values noise(size_t count, unsigned seed = 1)
{
  std::mt19937 generator(seed);
  std::uniform_real_distribution<float> uniform(-0.2f, 1.2f);
  Values values(count);
  for (float& v : values)
    v = uniform(generator);
  return values;
}

Values blurred(const Values& plane, int width, int height, float sigma)
{
  const Buffer<float> source = upload(plane);
  const Buffer<float> scratch(plane.size());
  const Buffer<float> target(plane.size());
  blurPlane(Queue{}, source.data(), scratch.data(), target.data(), width, height, sigma);
  return download(target);
}

Values blurredByKernels(const Values& frame, int width, int height, float sigma, int stride)
{
  const Buffer<float> source = upload(frame);
  const Buffer<float> plane(static_cast<size_t>(width) * static_cast<size_t>(height));
  const Buffer<float> target = upload(frame);
  for (int channel = 0; channel < std::min(stride, 3); ++channel)
    blurChannel(Queue{}, source.data() + channel, plane.data(), target.data() + channel, width, height, sigma, stride);
  return download(target);
}

float largestDifference(const Values& a, const Values& b)
{
  float largest = 0.0f;
  for (size_t i = 0; i < a.size(); ++i)
    largest = std::max(largest, std::fabs(a[i] - b[i]));
  return largest;
}

constexpr float sigmas[] = {0.05f, 0.2f, 0.4f, 0.8f, 1.6f, 3.2f, 6.4f, 12.8f, 16.3f};

}  // namespace

ENGINE_TEST(Gaussian, LineFollowsTheRecursion)
{
  const int count = 37, length = 211;
  for (const int stride : {1, 3, 4})
    for (const float sigma : sigmas)
    {
      const Values frame = noise(static_cast<size_t>(count) * length * static_cast<size_t>(stride));
      const Buffer<float> source = upload(frame);
      const Buffer<float> target(static_cast<size_t>(count) * length);
      launch(Queue{}, lines(count),
             iir_guassian{.source = source.data(),
                          .target = target.data(),
                          .count = count,
                          .length = length,
                          .filter = gaussianFilter(sigma),
                          .stride = stride});
      const Values result = download(target);
      double worst = 0.0;
      for (int line = 0; line < count; ++line)
      {
        std::vector<double> x(length);
        for (int i = 0; i < length; ++i)
          x[static_cast<size_t>(i)] = static_cast<double>(frame[static_cast<size_t>((i * count + line) * stride)]);
        const std::vector<double> expected = gaussianInDouble(x, static_cast<double>(sigma));
        for (int i = 0; i < length; ++i)
          worst = std::max(worst, std::fabs(expected[static_cast<size_t>(i)] -
                                            static_cast<double>(result[static_cast<size_t>(i * count + line)])));
      }
      EXPECT_LT(worst, 6e-6) << "stride " << stride << ", sigma " << sigma;
    }
}

ENGINE_TEST(Gaussian, ConstantPlaneKeepsItsValue)
{
  for (const float sigma : sigmas)
    for (const float value : {0.0f, 0.18f, 1.0f, 3.1f, 1e5f})
    {
      const Values result = blurred(Values(90 * 70, value), 90, 70, sigma);
      for (const float r : result)
        ASSERT_NEAR(r, value, 6e-6f * value) << "sigma " << sigma;
    }
}

ENGINE_TEST(Gaussian, PlaneAgreesWithTheFourKernels)
{
  const int sizes[][2] = {{1, 1},   {1, 50},  {50, 1},  {5, 3},     {16, 16},
                          {31, 33}, {64, 32}, {67, 41}, {200, 130}, {33, 300}};
  for (const auto& size : sizes)
    for (const float sigma : sigmas)
    {
      const Values plane = noise(static_cast<size_t>(size[0]) * static_cast<size_t>(size[1]), 7);
      EXPECT_LT(largestDifference(blurred(plane, size[0], size[1], sigma),
                                  blurredByKernels(plane, size[0], size[1], sigma, 1)),
                4e-6f)
          << size[0] << " by " << size[1] << ", sigma " << sigma;
    }
}

// Both forms of the filter, one as the sum of its runs and one as their cascade.
ENGINE_TEST(Gaussian, BothFormsFollowTheRecursionInDouble)
{
  const int width = 200, height = 130;
  const Values plane = noise(static_cast<size_t>(width) * height, 11);
  for (const float sigma : sigmas)
  {
    const std::vector<double> expected =
        blurInDouble({plane.begin(), plane.end()}, width, height, static_cast<double>(sigma));
    for (const bool fused : {true, false})
    {
      const Values result =
          fused ? blurred(plane, width, height, sigma) : blurredByKernels(plane, width, height, sigma, 1);
      double worst = 0.0;
      for (size_t i = 0; i < plane.size(); ++i)
        worst = std::max(worst, std::fabs(expected[i] - static_cast<double>(result[i])));
      EXPECT_LT(worst, fused ? 1e-6 : 3e-6) << "sigma " << sigma << ", fused " << fused;
    }
  }
}

#ifndef MORVELLAN_TARGET_IS_CUDA

namespace
{

// Weights that tell the two results apart.
struct Weighted
{
  MORVELLAN_INLINE Real operator()(const Pixels&, Real first, Real second) const
  {
    return fma(first, Real(2.0f), second);
  }
  void fetch(ptrdiff_t, ptrdiff_t) const {}
};

}  // namespace

ENGINE_TEST(Gaussian, TwoBlursTogetherAreTheTwoApart)
{
  const int sizes[][2] = {{1, 1}, {1, 50}, {50, 1}, {5, 3}, {31, 33}, {64, 32}, {67, 41}, {200, 130}, {1024, 1040}};
  for (const auto& size : sizes)
  {
    const int width = size[0], height = size[1];
    const Values plane = noise(static_cast<size_t>(width) * static_cast<size_t>(height), 13);
    const Buffer<float> source = upload(plane);
    const Buffer<float> columns(plane.size());
    const Buffer<float> bothColumns(plane.size());
    const Buffer<float> target(plane.size());
    blurTwiceFused<Samples::Finite>(Queue{}, source.data(), columns.data(), bothColumns.data(), target.data(), width,
                                    height, 6.4f, 12.8f, Weighted{}, "");
    const Values first = blurred(plane, width, height, 6.4f);
    const Values second = blurred(first, width, height, 12.8f);
    const Values result = download(target);
    for (size_t i = 0; i < plane.size(); ++i)
      ASSERT_NEAR(result[i], 2.0f * first[i] + second[i], 3e-6f) << width << " by " << height << ", pixel " << i;
  }
}

#endif

// A large plane is written past the caches where its place allows it; a place between two vectors does not.
ENGINE_TEST(Gaussian, APlaneIsTheSamePastTheCaches)
{
  const int width = 1024, height = 1056;
  const Values plane = noise(static_cast<size_t>(width) * height, 5);
  const Buffer<float> source = upload(plane);
  const Buffer<float> scratch(plane.size());
  for (const float sigma : {0.4f, 6.4f})
  {
    const Buffer<float> target(plane.size());
    const Buffer<float> between(plane.size() + 1);
    blurPlane(Queue{}, source.data(), scratch.data(), target.data(), width, height, sigma);
    blurPlane(Queue{}, source.data(), scratch.data(), between.data() + 1, width, height, sigma);
    Values result = download(between);
    result.erase(result.begin());
    EXPECT_EQ(download(target), result) << "sigma " << sigma;
  }
}

ENGINE_TEST(Gaussian, ChannelsAreFilteredApart)
{
  const int width = 53, height = 29;
  for (const int stride : {3, 4})
  {
    const Values frame = noise(static_cast<size_t>(width * height * stride), 3);
    const Values result = blurredByKernels(frame, width, height, 1.6f, stride);
    for (int channel = 0; channel < stride; ++channel)
    {
      Values plane(static_cast<size_t>(width * height));
      Values filtered(plane.size());
      for (size_t i = 0; i < plane.size(); ++i)
      {
        const size_t at = i * static_cast<size_t>(stride) + static_cast<size_t>(channel);
        plane[i] = frame[at];
        filtered[i] = result[at];
      }
      const Values expected = channel < 3 ? blurredByKernels(plane, width, height, 1.6f, 1) : plane;
      EXPECT_EQ(filtered, expected) << "stride " << stride << ", channel " << channel;
    }
  }
}

// The response (1 + a |x|) e^(-a |x|) with a = 1.695 / sigma has a standard deviation of 2 / a.
ENGINE_TEST(Gaussian, ResponseIsWiderThanItsSigma)
{
  for (const float sigma : {6.4f, 12.8f})
  {
    const int width = 501, centre = 250;
    Values line(width, 0.0f);
    line[centre] = 1.0f;
    const Values response = blurred(line, width, 1, sigma);
    double sum = 0.0, moment = 0.0;
    for (int i = 0; i < width; ++i)
    {
      const double value = static_cast<double>(response[static_cast<size_t>(i)]);
      sum += value;
      moment += value * (i - centre) * (i - centre);
    }
    EXPECT_NEAR(sum, 1.0, 1e-5);
    EXPECT_NEAR(std::sqrt(moment / sum) / static_cast<double>(sigma), 1.18, 0.005) << sigma;
  }
}

ENGINE_TEST(Gaussian, SigmaIsHeldAtATenth)
{
  const Values plane = noise(60 * 40);
  EXPECT_EQ(blurred(plane, 60, 40, 0.0f), blurred(plane, 60, 40, 0.1f));
  EXPECT_EQ(blurred(plane, 60, 40, -3.0f), blurred(plane, 60, 40, 0.1f));
  EXPECT_NE(blurred(plane, 60, 40, 0.2f), blurred(plane, 60, 40, 0.1f));
}

ENGINE_TEST(Gaussian, BadPixelsCountAsZero)
{
  const int width = 90, height = 80;
  for (const float sigma : {0.4f, 6.4f})
    for (const float bad : {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(),
                            -std::numeric_limits<float>::infinity()})
    {
      Values plane = noise(static_cast<size_t>(width * height));
      Values repaired = plane;
      for (const size_t at : {size_t{0}, size_t{40 * 90 + 45}, plane.size() - 1})
      {
        plane[at] = bad;
        repaired[at] = 0.0f;
      }
      EXPECT_EQ(blurred(plane, width, height, sigma), blurred(repaired, width, height, sigma));
      EXPECT_EQ(blurredByKernels(plane, width, height, sigma, 1), blurredByKernels(repaired, width, height, sigma, 1));
    }
}

ENGINE_TEST(Gaussian, ThreadCountChangesNothing)
{
  const Values plane = noise(300 * 200);
  for (const float sigma : {0.8f, 6.4f})
  {
    const Values many = blurred(plane, 300, 200, sigma);
    const tbb::global_control one(tbb::global_control::max_allowed_parallelism, 1);
    EXPECT_EQ(blurred(plane, 300, 200, sigma), many);
  }
}

ENGINE_TEST(Gaussian, TransposeSwapsAxes)
{
  const int width = 45, height = 19;
  const Values plane = noise(static_cast<size_t>(width * height));
  for (const int stride : {1, 4})
  {
    const Buffer<float> source = upload(plane);
    const Buffer<float> target = upload(Values(plane.size() * static_cast<size_t>(stride), -9.0f));
    launch(
        Queue{}, grid2d(width, height),
        u_d_l_r{.source = source.data(), .target = target.data(), .width = width, .height = height, .stride = stride});
    Values expected(target.size(), -9.0f);
    for (int y = 0; y < height; ++y)
      for (int x = 0; x < width; ++x)
        expected[static_cast<size_t>((x * height + y) * stride)] = plane[static_cast<size_t>(y * width + x)];
    EXPECT_EQ(download(target), expected);
  }
}

Values blurredBy(std::initializer_list<float> someSigmas)
{
  Values all;
  for (const float sigma : someSigmas)
  {
    const Values result = blurred(noise(211 * 97, 5), 211, 97, sigma);
    all.insert(all.end(), result.begin(), result.end());
  }
  return all;
}

PARITY(narrowBlurOfAPlane)
{
  return blurredBy({0.05f, 0.2f, 0.4f, 0.8f, 1.6f});
}

// Fused products round once where others round twice. The feedback adds these bits up like noise, by the root of its
// squared response 1 / (4 a^3), a = 1.695 / sigma: at sigma 16.3 it is 15, and four passes of half a last bit make
// 4 * 15 * 3e-8 of the largest sample, which is 1.2.
PARITY(wideBlurOfAPlane, .relative = 0.0f, .absolute = 1.8e-6f * 1.2f)
{
  return blurredBy({3.2f, 6.4f, 12.8f, 16.3f});
}

}  // namespace morvellan::MORVELLAN_TARGET
