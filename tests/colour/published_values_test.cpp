// Curves and matrices against OpenColorIO's built-in transforms, which hold the makers' published numbers.
#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include <OpenColorIO/OpenColorIO.h>

#include "colour/curves.h"
#include "colour/gamuts.h"
#include "colour/program.h"
#include "tests/colour/device_frame.h"
#include "tests/support/engine_test.h"

namespace morvellan::MORVELLAN_TARGET
{

using namespace colour_test;

namespace
{

namespace OCIO = OCIO_NAMESPACE;

constexpr bool isCuda = std::string_view(MORVELLAN_TARGET_NAME) == "cuda";

std::vector<float> published(const char* style, std::vector<float> frame)
{
  const OCIO::BuiltinTransformRcPtr transform = OCIO::BuiltinTransform::Create();
  transform->setStyle(style);
  // Without the approximations that the default optimisation makes.
  const OCIO::ConstCPUProcessorRcPtr processor =
      OCIO::Config::CreateRaw()->getProcessor(transform)->getOptimizedCPUProcessor(
          OCIO::BIT_DEPTH_F32, OCIO::BIT_DEPTH_F32, OCIO::OPTIMIZATION_LOSSLESS);
  OCIO::PackedImageDesc image(frame.data(), static_cast<long>(frame.size() / 4), 1, 4);
  processor->apply(image);
  return frame;
}

// Code values to linear AP0 by this system's decode, rows and adaptation.
std::vector<float> ours(int colourspace, const std::vector<float>& frame)
{
  const Buffer<float> buffer = toDevice(frame);
  Program program{.width = static_cast<int>(frame.size() / 4), .height = 1, .destination = buffer.data()};
  program.add({.kind = StepKind::Decode, .decoding = decodingOf(CurveTable::Full, colourspace)});
  program.add({.kind = StepKind::Matrix, .matrix = rounded(product(xyzD65ToRgb(4), *rgbToXyzD65(colourspace)))});
  runProgram(Queue{}, "decode", program);
  return toHost(buffer);
}

struct Published
{
  int colourspace;
  const char* style;
  float matrixTolerance;  // of saturated colours, relative to the pixel's largest channel
  const char* reason;     // where it is not the 1e-5 of the curves
};

// Neutrals carry the curve alone, whatever the matrix adapts; saturated colours show the matrix.
const Published transforms[] = {
    {6, "ACEScc_to_ACES2065-1", 1e-5f, ""},
    {7, "ACEScct_to_ACES2065-1", 1e-5f, ""},
    {11, "ARRI_ALEXA-LOGC-EI800-AWG_to_ACES2065-1", 5e-3f, "published with the CAT02 adaptation, here Bradford"},
    {12, "RED_LOG3G10-RWG_to_ACES2065-1", 1e-5f, ""},
    {16, "SONY_SLOG3-SGAMUT3.CINE_to_ACES2065-1", 5e-3f, "published with the CAT02 adaptation, here Bradford"},
    {19, "PANASONIC_VLOG-VGAMUT_to_ACES2065-1", 1e-5f, ""},
};

std::vector<float> codeRamp()
{
  std::vector<float> codes;
  for (int i = 0; i <= 1000; ++i)
    codes.push_back(static_cast<float>(i) / 1000.0f);
  return codes;
}

}  // namespace

ENGINE_TEST(PublishedValues, CurvesOfNeutrals)
{
  const std::vector<float> frame = neutrals(codeRamp());
  for (const Published& transform : transforms)
  {
    const std::vector<float> expected = published(transform.style, frame);
    const std::vector<float> actual = ours(transform.colourspace, frame);
    float worst = 0.0f;
    size_t at = 0;
    for (size_t i = 1; i < frame.size(); i += 4)
    {
      const float error = std::fabs(actual[i] - expected[i]) / (std::fabs(expected[i]) + 0.1f);
      if (!(error <= worst))
      {
        worst = error;
        at = i;
      }
    }
    EXPECT_LE(worst, isCuda ? 3e-5f : 1e-5f)
        << transform.style << " code " << frame[at] << ": " << actual[at] << ", published " << expected[at];
  }
}

ENGINE_TEST(PublishedValues, MatricesOfColours)
{
  std::vector<float> frame;
  for (const float r : {0.3f, 0.5f, 0.6f})
    for (const float g : {0.3f, 0.5f, 0.6f})
      for (const float b : {0.3f, 0.5f, 0.6f})
        frame.insert(frame.end(), {r, g, b, 1.0f});
  for (const Published& transform : transforms)
  {
    const std::vector<float> expected = published(transform.style, frame);
    const std::vector<float> actual = ours(transform.colourspace, frame);
    float worst = 0.0f;
    for (size_t i = 0; i < frame.size(); i += 4)
    {
      const float scale = std::max({expected[i], expected[i + 1], expected[i + 2]});
      for (size_t k = 0; k < 3; ++k)
        worst = std::max(worst, std::fabs(actual[i + k] - expected[i + k]) / scale);
    }
    EXPECT_LE(worst, transform.matrixTolerance) << transform.style << ": " << transform.reason;
  }
}

ENGINE_TEST(PublishedValues, PqOfOneChannel)
{
  const std::vector<float> frame = neutrals(codeRamp());
  // In hundreds of cd/m2.
  const std::vector<float> expected = published("CURVE - ST-2084_to_LINEAR", frame);
  // A neutral's light L, in thousands, leaves as L^(5/6).
  const Buffer<float> buffer = toDevice(frame);
  Program program{.width = static_cast<int>(frame.size() / 4), .height = 1, .destination = buffer.data()};
  program.add({.kind = StepKind::Decode, .decoding = decodingOf(CurveTable::Full, 42)});
  runProgram(Queue{}, "decode", program);
  const std::vector<float> actual = toHost(buffer);
  for (size_t i = 0; i < frame.size(); i += 4)
  {
    const double light = static_cast<double>(expected[i]) * 0.1;
    EXPECT_NEAR(static_cast<double>(actual[i]), std::pow(light, 5.0 / 6.0), std::pow(light, 5.0 / 6.0) * 1e-5 + 1e-7)
        << frame[i];
  }
}

}  // namespace morvellan::MORVELLAN_TARGET
