// The vertical pass of the spatial enhancer: every member against its formula in double, its edges, and its copies.
#include "film/splash.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <random>

#include "device/launch.h"
#include "device/queue.h"
#include "tests/support/device_arrays.h"
#include "tests/support/engine_test.h"

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

// Widths around a group of lanes, and one that no group divides.
constexpr int widths[] = {1, 3, 15, 16, 17, 37, 70};

std::vector<float> noise(size_t count, uint32_t seed = 3)
{
  std::mt19937 generator(seed);
  std::uniform_real_distribution<float> values(-0.2f, 1.5f);
  std::vector<float> all(count);
  std::generate(all.begin(), all.end(), [&] { return values(generator); });
  return all;
}

template <typename T>
Buffer<T> toDevice(const std::vector<T>& values)
{
  Buffer<T> buffer(values.size());
  copy(buffer.data(), values.data(), values.size() * sizeof(T), CopyKind::HostToDevice);
  return buffer;
}

// Half the second difference around the gap between a and b.
double curvature(double m, double a, double b, double p)
{
  return (b + (a - m) - p) * 0.5;
}

// Rows of single samples, as the members without a stride read them.
struct Rows
{
  Rows(int n, int count) : n(n), count(count), values(noise(static_cast<size_t>(n) * static_cast<size_t>(count)))
  {
    // Equal neighbours, an infinite pair among them: the linear step leaves them as they are.
    at(1, 0) = at(2, 0) = 0.1f;
    if (n > 2)
      at(1, 2) = at(2, 2) = INFINITY;
    memory = upload(values);
    std::vector<const float*> starts;
    for (int y = 0; y < count; ++y)
      starts.push_back(memory.data() + static_cast<ptrdiff_t>(y) * n);
    rows = toDevice(starts);
  }
  float& at(int y, int x) { return values[static_cast<size_t>(y * n + x)]; }
  Texture2d texture() const { return {.values = memory.data(), .width = n, .height = count}; }

  int n, count;
  std::vector<float> values;
  Buffer<float> memory;
  Buffer<const float*> rows;
};

template <typename Kernel>
std::vector<float> rowOf(int n, Kernel kernel)
{
  const Buffer<float> dst = upload(std::vector<float>(static_cast<size_t>(n) + 1, -7.0f));
  kernel.dst = dst.data();
  launch(Queue{}, grid2d(n, 1), kernel);
  std::vector<float> values = download(dst);
  EXPECT_EQ(values.back(), -7.0f) << "a sample past the row";
  values.pop_back();
  return values;
}

// An RGBA image and the tables of a walk down it.
struct Walk
{
  Walk(int width, int height, std::vector<int> row, std::vector<float> curve, std::vector<float> frac)
      : width(width), height(height), row(std::move(row)), curve(std::move(curve)), frac(std::move(frac)),
        image(noise(static_cast<size_t>(width) * static_cast<size_t>(height) * 4))
  {
  }

  int rowsOut() const { return static_cast<int>(row.size()); }
  double sample(int y, int x, int c) const
  {
    return static_cast<double>(image[static_cast<size_t>((std::clamp(y, 0, height - 1) * width + x) * 4 + c)]);
  }

  // One launch; the last pixel of the destination must stay.
  template <typename Kernel>
  std::vector<float> run() const
  {
    const Buffer<float> source = upload(image);
    const Buffer<int> rows = toDevice(row);
    const Buffer<float> curves = upload(curve);
    const Buffer<float> fracs = upload(frac);
    const size_t floats = static_cast<size_t>(width) * static_cast<size_t>(rowsOut()) * 4;
    const Buffer<float> dst = upload(std::vector<float>(floats + 4, -7.0f));
    Kernel kernel{};
    kernel.image = source.data();
    kernel.dst = dst.data();
    kernel.row = rows.data();
    if constexpr (requires { kernel.curve; })
      kernel.curve = curves.data();
    kernel.frac = fracs.data();
    kernel.width = width;
    kernel.height = height;
    launch(Queue{}, grid2d(width, rowsOut()), kernel);
    std::vector<float> values = download(dst);
    EXPECT_EQ(values.back(), -7.0f) << "a pixel past the image";
    values.resize(floats);
    return values;
  }

  int width, height;
  std::vector<int> row;
  std::vector<float> curve, frac;
  std::vector<float> image;
};

// Starts above the image and ends below it; a copy at both ends and in the middle.
Walk walkOver(int width)
{
  return {width,
          5,
          {0, 0, 1, 2, 3, 4, 4, -3, 9},
          {0.0f, 0.7f, 2.5f, 5.0f, 1.25f, 3.0f, 3.0f, 2.0f, 2.0f},
          {0.0f, 0.2f, 0.5f, 0.0f, 0.9f, 0.4f, 0.0f, 0.3f, 0.6f}};
}

}  // namespace

ENGINE_TEST(Splash, LinearStepOfRowsAndOfATexture)
{
  for (const int n : widths)
  {
    Rows rows(n, 4);
    const std::vector<float> byRows = rowOf(n, CsplashLin{rows.rows.data(), nullptr, 0.375f, n, 1, 2});
    const std::vector<float> byTexture = rowOf(n, CsplashLinTex{rows.texture(), nullptr, 0.375f, n, 1, 2});
    EXPECT_EQ(byRows, byTexture);
    for (int x = 0; x < n; ++x)
    {
      const float a = rows.at(1, x), b = rows.at(2, x);
      if (a == b)
        ASSERT_EQ(byRows[static_cast<size_t>(x)], a) << n << " " << x;
      else
        ASSERT_NEAR(byRows[static_cast<size_t>(x)], a + (static_cast<double>(b) - a) * 0.375, 3e-7) << n << " " << x;
    }
  }
}

ENGINE_TEST(Splash, CurvatureOfRowsAndOfATexture)
{
  constexpr float c = 3.5f, t = 0.25f;
  for (const int n : widths)
  {
    Rows rows(n, 6);
    const std::vector<float> byRows = rowOf(n, Csplash{rows.rows.data(), nullptr, c, t, n, 0, 1, 2, 3});
    const std::vector<float> byTexture = rowOf(n, CsplashTex{rows.texture(), nullptr, c, t, n, 0, 1, 2, 3});
    for (int x = 0; x < n; ++x)
    {
      const double m = rows.at(0, x), a = rows.at(1, x), b = rows.at(2, x), p = rows.at(3, x);
      if (std::isinf(a))
        continue;
      ASSERT_NEAR(byRows[static_cast<size_t>(x)], (b - a) * t + curvature(m, a, b, p) * c + a, 2e-6) << n << " " << x;
      ASSERT_EQ(byRows[static_cast<size_t>(x)], byTexture[static_cast<size_t>(x)]) << n << " " << x;
    }
  }
}

// A texture holds what is asked for past its edges at the edge; rows are the caller's.
ENGINE_TEST(Splash, ATextureIsHeldAtItsEdges)
{
  Rows rows(17, 4);
  const std::vector<float> below = rowOf(17, CsplashLinTex{rows.texture(), nullptr, 0.5f, 17, 3, 4});
  const std::vector<float> above = rowOf(17, CsplashLinTex{rows.texture(), nullptr, 0.5f, 17, -1, 0});
  for (int x = 0; x < 17; ++x)
  {
    EXPECT_EQ(below[static_cast<size_t>(x)], rows.at(3, x));
    EXPECT_EQ(above[static_cast<size_t>(x)], rows.at(0, x));
  }
}

ENGINE_TEST(Splash, PixelsSharpenLuminanceAlone)
{
  for (const int width : widths)
  {
    const Walk walk = walkOver(width);
    const std::vector<float> actual = walk.run<CsplashTexLV>();
    for (int y = 0; y < walk.rowsOut(); ++y)
    {
      const auto at = static_cast<size_t>(y);
      const double t = walk.frac[at];
      const int i0 = walk.row[at];
      for (int x = 0; x < width; ++x)
      {
        const float* pixel = &actual[static_cast<size_t>((y * width + x) * 4)];
        if (walk.frac[at] == 0.0f)
        {
          for (int c = 0; c < 4; ++c)
            ASSERT_EQ(pixel[c], static_cast<float>(walk.sample(i0, x, c)));
          continue;
        }
        double linear[3], bend[3];
        for (int c = 0; c < 3; ++c)
        {
          const double a = walk.sample(i0, x, c), b = walk.sample(i0 + 1, x, c);
          linear[c] = a + (b - a) * t;
          bend[c] = curvature(walk.sample(i0 - 1, x, c), a, b, walk.sample(i0 + 2, x, c));
        }
        const double luma = 0.25 * linear[0] + 0.5 * linear[1] + 0.25 * linear[2];
        const double co = 0.5 * linear[0] - 0.5 * linear[2];
        const double cg = 0.5 * linear[1] - 0.25 * linear[0] - 0.25 * linear[2];
        const double detail = 0.25 * linear[0] * bend[0] + 0.5 * linear[1] * bend[1] + 0.25 * linear[2] * bend[2];
        const double sharp = luma + detail * walk.curve[at];
        ASSERT_NEAR(pixel[0], sharp + co - cg, 5e-6) << width << " " << x << " " << y;
        ASSERT_NEAR(pixel[1], sharp + cg, 5e-6) << width << " " << x << " " << y;
        ASSERT_NEAR(pixel[2], sharp - co - cg, 5e-6) << width << " " << x << " " << y;
        ASSERT_EQ(pixel[3], static_cast<float>(walk.sample(i0, x, 3))) << width << " " << x << " " << y;
      }
    }
  }
}

ENGINE_TEST(Splash, PixelsOfTheLinearMember)
{
  for (const int width : widths)
  {
    const Walk walk = walkOver(width);
    const std::vector<float> actual = walk.run<CsplashTexLVlin>();
    for (int y = 0; y < walk.rowsOut(); ++y)
      for (int x = 0; x < width; ++x)
        for (int c = 0; c < 4; ++c)
        {
          const double a = walk.sample(walk.row[static_cast<size_t>(y)], x, c);
          const double b = walk.sample(walk.row[static_cast<size_t>(y)] + 1, x, c);
          ASSERT_NEAR(actual[static_cast<size_t>((y * width + x) * 4 + c)],
                      a + (b - a) * walk.frac[static_cast<size_t>(y)], 3e-7)
              << width << " " << x << " " << y << " " << c;
        }
  }
}

// A grey column that climbs by equal steps has no curvature: the walk gives its values and nothing is sharpened.
ENGINE_TEST(Splash, AnEvenSlopeIsNotSharpened)
{
  Walk walk(5, 8, {1, 2, 3, 4}, {9.0f, 9.0f, 9.0f, 9.0f}, {0.25f, 0.5f, 0.75f, 0.125f});
  for (int y = 0; y < 8; ++y)
    for (int i = 0; i < 5 * 4; ++i)
      walk.image[static_cast<size_t>(y * 5 * 4 + i)] = 0.125f * static_cast<float>(y);
  const std::vector<float> actual = walk.run<CsplashTexLV>();
  for (int y = 0; y < 4; ++y)
    EXPECT_NEAR(actual[static_cast<size_t>(y * 5 * 4)],
                0.125f * (static_cast<float>(walk.row[static_cast<size_t>(y)]) + walk.frac[static_cast<size_t>(y)]),
                1e-6);
}

PARITY(splash)
{
  const Walk walk = walkOver(83);
  std::vector<float> values = walk.run<CsplashTexLV>();
  const std::vector<float> linear = walk.run<CsplashTexLVlin>();
  values.insert(values.end(), linear.begin(), linear.end());
  Rows rows(83, 4);
  for (const std::vector<float>& row : {rowOf(83, Csplash{rows.rows.data(), nullptr, 3.5f, 0.25f, 83, 0, 1, 2, 3}),
                                        rowOf(83, CsplashTex{rows.texture(), nullptr, 3.5f, 0.25f, 83, 0, 1, 2, 3}),
                                        rowOf(83, CsplashLin{rows.rows.data(), nullptr, 0.375f, 83, 1, 2}),
                                        rowOf(83, CsplashLinTex{rows.texture(), nullptr, 0.375f, 83, 1, 2})})
    values.insert(values.end(), row.begin(), row.end());
  return values;
}

}  // namespace morvellan::MORVELLAN_TARGET
