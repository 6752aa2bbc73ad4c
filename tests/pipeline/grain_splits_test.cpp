// Grain that adds nothing leaves a frame as it is: whatever the input, the look, Pitch, the clips and the grain's
// domain, the way into the planes has the way out that inverts it. Pairs that are no inverse are named, with the
// reason.
#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "pipeline/frame_run.h"
#include "pipeline/host/capture.h"
#include "pipeline/host/input_class.h"
#include "tests/pipeline/host/parameter_map.h"
#include "tests/support/engine_test.h"

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

using test::ParameterMap;

struct Look
{
  const char* name;
  std::vector<std::pair<const char*, double>> settings;
};

const std::vector<Look> looks{
    {"none", {}},
    {"Soup", {{"SoupBypass", 0}}},
    {"Soup with tone and vectors",
     {{"SoupBypass", 0}, {"ToneCurves", 1}, {"SoupToeRed", 0.05}, {"ColorCorrection", 1}, {"SaturationRed", 0.7}}},
    {"Soup with bleach", {{"SoupBypass", 0}, {"LableachBypass", 1}}},
    {"display", {{"PrintDisplayBypass", 0}}},
    {"print", {{"PrintDisplayBypass", 0}, {"PrintProfile", 2}}},
    {"Soup and print", {{"SoupBypass", 0}, {"PrintDisplayBypass", 0}, {"PrintProfile", 2}}},
    {"Soup and print bleach",
     {{"SoupBypass", 0},
      {"LableachBypass", 1},
      {"PrintDisplayBypass", 0},
      {"PrintProfile", 7},
      {"Bleach", 1},
      {"OutputDisplayGamut", 6}}},
};

// One path through the cases of the stages.
struct Path
{
  int gamut, channels;
  const Look* look;
  bool compresses = false, pitch = false, clips = false, reduces = false;
  bool linearGrain = false, luminance = false;

  bool looked() const { return look != &looks.front(); }
  std::string text() const
  {
    return "InputGamut " + std::to_string(gamut) + (channels == 3 ? ", RGB" : ", RGBA") + ", look " + look->name +
           (compresses ? ", HDRcomp" : "") + (pitch ? ", Pitch" : "") + (clips ? ", soft clip" : "") +
           (linearGrain ? ", GrainLinear" : "") + (luminance ? ", luminance" : "") + (reduces ? ", reduced" : "");
  }
};

constexpr int width = 16, height = 8;

// Greys with mild colours, well inside every encoding; linear light goes beyond 1.
std::vector<float> sourceOf(const Path& path)
{
  std::vector<float> pixels;
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x)
    {
      const float step = static_cast<float>(x) / (width - 1);
      const float grey = isLinearInput(path.gamut) ? 0.02f + 2.0f * step * step : 0.25f + 0.4f * step;
      pixels.push_back(grey * (1.0f + 0.01f * static_cast<float>(y % 4)));
      pixels.push_back(grey);
      pixels.push_back(grey * (1.0f - 0.01f * static_cast<float>(y % 3)));
      if (path.channels == 4)
        pixels.push_back(0.1f * static_cast<float>(y));
    }
  return pixels;
}

ParameterMap settingsOf(const Path& path, bool grain)
{
  ParameterMap values;
  values.set("InputGamut", path.gamut);
  values.set("HDRcomp", path.compresses);
  values.set("PitchBypass", !path.pitch);
  values.set("EnsemblePitch", path.pitch ? 4.0 : 3.0);
  values.set("SoftClips", path.clips);
  values.set("CameraHighlightsCeiling", path.clips ? 0.9 : 1.0);
  for (const char* choice : {"InResolution", "OutResolution"})
    values.set(choice, 1.0);
  values.setSizes(width, height);
  if (path.reduces)
  {
    values.set("TargetWidth", 12);
    values.set("TargetHeight", 6);
  }
  values.set("GrainBypass", !grain);
  values.set("GrainLinear", path.linearGrain);
  values.set("DispersionPattern", path.luminance ? 2.0 : 0.0);
  // On, as it isn't 0, but 0 as a float.
  values.setChannels("Strength", 1e-60);
  values.setChannels("Granularity", 0.0);
  for (const auto& [name, value] : path.look->settings)
    values.set(name, value);
  return values;
}

std::vector<float> rendered(const Path& path, const std::vector<float>& source, bool grain)
{
  constexpr int levels = 2047;
  static std::vector<std::vector<float>> memory(6, std::vector<float>(levels + 1));
  static GrainTables tables({{{memory[0], memory[1]}, {memory[2], memory[3]}, {memory[4], memory[5]}}});
  const ParameterMap values = settingsOf(path, grain);
  FrameParams params{};
  params.gpuReady = 1;
  params.gpuCount = 1;
  params.grainLevels = levels;
  params.inResolutionChoice = params.outResolutionChoice = 1;
  const CaptureOutcome outcome =
      captureFrame(values, {.width = width, .height = height, .channels = path.channels, .time = 1.0}, params, tables);
  if (outcome.route == FrameRoute::copy || outcome.route == FrameRoute::untouched)
    return source;
  std::vector<float> result(source.size());
  const RenderJob job{.route = outcome.route, .source = source.data(), .destination = result.data(), .params = params};
  FrameRun(job).run();
  return result;
}

// The largest difference of colour, relative above 1; alpha must be the same.
float differenceOf(const std::vector<float>& a, const std::vector<float>& b, int channels)
{
  float most = 0.0f;
  for (size_t i = 0; i < a.size(); ++i)
  {
    if (channels == 4 && i % 4 == 3)
      EXPECT_EQ(a[i], b[i]);
    else
      most = std::max(most, std::isfinite(a[i]) ? std::abs(a[i] - b[i]) / std::max(1.0f, std::abs(b[i])) : 1e9f);
  }
  return most;
}

// How near the frame without grain a path comes. A pair that is no inverse on purpose has to show it.
struct Expected
{
  float within;
  bool inverse = true;
};

bool isOneOf(int gamut, std::initializer_list<int> gamuts)
{
  return std::ranges::find(gamuts, gamut) != gamuts.end();
}

Expected expectedOf(const Path& path)
{
  const bool coded = !isLinearInput(path.gamut);
  if (path.looked() || !path.linearGrain || !coded)
  {
    // LAB_XYZ_compress_RGBA has the full table's rows, the way into LAB the short one's, which have other digits.
    if (!path.looked() && path.compresses && path.pitch && path.channels == 4)
      return {1e-3f};
    // ACESproxy codes are 12-bit integers: a value at the edge of a step may come out as the next one.
    if (path.gamut == 8)
      return {1.01f / 4095.0f};
    // With GrainLinear the look's colour is range compressed on the way, and PQ codes tell small differences apart.
    return {path.looked() && path.linearGrain ? 3e-4f : 1e-4f};
  }
  // F-Log2 encodes up to linear 1, which the source exceeds; DCDM's curves are no inverse. The short table has S-Log
  // and nothing in their places.
  const bool shortTable = path.pitch && path.channels == 3 && (path.luminance || path.gamut == 13);
  if ((path.gamut == 13 || path.gamut == 46) && !shortTable)
    return {.within = 0.0f, .inverse = false};
  // Y_RGB_expand_RGB has the short table, the ways into its planes but that from LAB the full one. Curves or rows
  // differ at these, the digits of the luminance rows at others.
  if (path.channels == 3 && path.luminance && !path.pitch)
    return isOneOf(path.gamut, {14, 15, 16, 34, 47, 48}) ? Expected{.within = 0.0f, .inverse = false} : Expected{1e-3f};
  return {path.gamut == 8 ? 1.01f / 4095.0f : 1e-4f};
}

void expectInverse(Path path)
{
  const std::vector<float> source = sourceOf(path);
  const std::vector<float> withoutGrain = rendered(path, source, false);
  for (const bool linearGrain : {false, true})
    for (const bool luminance : {false, true})
    {
      path.linearGrain = linearGrain;
      path.luminance = luminance;
      SCOPED_TRACE(path.text());
      Path plain = path;
      // Linear grain on a linear clip is not compressed, so that the resampler sees plain light.
      plain.compresses = path.compresses && !(linearGrain && !path.looked());
      const float difference = differenceOf(
          rendered(path, source, true),
          plain.compresses == path.compresses ? withoutGrain : rendered(plain, source, false), path.channels);
      const Expected expected = expectedOf(path);
      if (expected.inverse)
        EXPECT_LE(difference, expected.within);
      else
        EXPECT_GT(difference, 0.01f);
    }
}

ENGINE_TEST(GrainSplits, joinsInvertThemWithoutALook)
{
  for (int gamut = 0; gamut < inputGamutCount; ++gamut)
    for (const int channels : {3, 4})
      for (unsigned bits = 0; bits < (isLinearInput(gamut) ? 16u : 8u); ++bits)
        expectInverse({.gamut = gamut,
                       .channels = channels,
                       .look = &looks.front(),
                       .compresses = (bits & 8u) != 0,
                       .pitch = (bits & 1u) != 0,
                       .clips = (bits & 2u) != 0,
                       .reduces = (bits & 4u) != 0});
}

ENGINE_TEST(GrainSplits, joinsInvertThemAroundALook)
{
  for (size_t look = 1; look < looks.size(); ++look)
    for (const int gamut : {0, 4, 5, 30, 2, 6, 8, 11, 13, 15, 27, 42, 47, 48})
      for (const int channels : {3, 4})
        for (const auto& [pitch, reduces] : {std::pair{false, false}, {true, false}, {false, true}})
          for (const bool compresses : {false, true})
            if (!compresses || isLinearInput(gamut))
              expectInverse({.gamut = gamut,
                             .channels = channels,
                             .look = &looks[look],
                             .compresses = compresses,
                             .pitch = pitch,
                             .reduces = reduces});
}

}  // namespace

}  // namespace morvellan::MORVELLAN_TARGET
