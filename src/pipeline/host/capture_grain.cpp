// Capture of film grain: seeds, and the values of each colour channel or of the one luminance plane.
// The tables that the kernels look intensities up in are built beside this, from the same fields.
#include "pipeline/host/capture_math.h"
#include "pipeline/host/capture_parts.h"
#include "pipeline/host/grain_mode.h"
#include "pipeline/host/grain_radius.h"
#include "pipeline/host/grain_seed.h"

#include <bit>
#include <numeric>

namespace morvellan
{
namespace
{

// The grain controls of a channel, or their means over the channels that are on.
struct GrainControls
{
  double size;
  double strength;
  double soft;
  double variance;
  double granularity;

  bool on() const { return size != 0.0 && strength != 0.0; }
};

// The fields that follow from one set of controls.
struct GrainSet
{
  double soft;
  int count;
  double strengthPerCount;
  double blendKeep;
  double radius;
  double cell;
  double sigma;
  RadiusLaw law;  // for sigma > 0 only
};

double softness(double soft)
{
  return soft < 0.4 ? 0.16 : soft * 0.4;
}

GrainSet grainSetOf(const GrainControls& controls, int longerSide)
{
  GrainSet set{};
  set.soft = softness(controls.soft);
  set.count = integerPart(std::exp2(controls.granularity) + 7.0);
  set.strengthPerCount = controls.strength * 0.1 / set.count;
  set.blendKeep = 1.0 - controls.strength * 0.1;
  set.radius = grainRadiusOf(controls.size, longerSide);
  set.cell = grainCellOf(set.radius);
  set.sigma = controls.variance == 0.0 ? 0.0 : controls.variance * set.radius * 0.15;
  if (set.sigma != 0.0)
    set.law = radiusLawOf(set.radius, set.sigma);
  return set;
}

std::array<GrainControls, 3> readControls(const ParameterValues& values)
{
  static constexpr ChannelNames size = channelNames("Size");
  static constexpr ChannelNames strength = channelNames("Strength");
  static constexpr ChannelNames soft = channelNames("Soft");
  static constexpr ChannelNames variance = channelNames("Variance");
  static constexpr ChannelNames granularity = channelNames("Granularity");
  std::array<GrainControls, 3> controls{};
  for (std::size_t c = 0; c < controls.size(); ++c)
    controls[c] = {.size = values.number(size[c]),
                   .strength = values.number(strength[c]),
                   .soft = values.number(soft[c]),
                   .variance = values.number(variance[c]),
                   .granularity = values.number(granularity[c])};
  return controls;
}

GrainControls meanOfLiveChannels(const std::array<GrainControls, 3>& controls, int liveCount)
{
  const auto mean = [&](double GrainControls::*member)
  {
    return std::accumulate(controls.begin(), controls.end(), 0.0,
                           [&](double sum, const GrainControls& channel)
                           { return channel.on() ? sum + channel.*member : sum; }) /
           liveCount;
  };
  return {.size = mean(&GrainControls::size),
          .strength = mean(&GrainControls::strength),
          .soft = mean(&GrainControls::soft),
          .variance = mean(&GrainControls::variance),
          .granularity = mean(&GrainControls::granularity)};
}

void storeChannel(const GrainSet& set, std::size_t c, FrameParams& params)
{
  params.grainSoft[c] = narrow(set.soft);
  params.grainCount[c] = set.count;
  params.grainStrengthPerCount[c] = narrow(set.strengthPerCount);
  params.grainInvCell[c] = narrow(1.0 / set.cell);
  params.grainSigma[c] = narrow(set.sigma);
  params.grainBlendKeep[c] = narrow(set.blendKeep);
  params.grainRadiusSquared[c] = narrow(set.radius * set.radius);
  params.grainRadius[c] = narrow(set.radius);
  params.grainCell[c] = narrow(set.cell);
  if (set.sigma == 0.0)
    return;
  params.grainLogSigma[c] = narrow(set.law.logSigma);
  params.grainLogMu[c] = narrow(set.law.logMu);
  params.grainRadiusMax[c] = narrow(set.law.radiusMax);
}

void storeLuminance(const GrainSet& set, FrameParams& params)
{
  params.lumaSoft = narrow(set.soft);
  params.lumaCount = set.count;
  params.lumaStrengthPerCount = narrow(set.strengthPerCount);
  params.lumaInvCell = narrow(1.0 / set.cell);
  params.lumaSigma = narrow(set.sigma);
  params.lumaBlendKeep = narrow(set.blendKeep);
  params.lumaRadiusSquared = narrow(set.radius * set.radius);
  params.lumaRadius = narrow(set.radius);
  params.lumaCell = narrow(set.cell);
  if (set.sigma == 0.0)
    return;
  params.lumaLogSigma = narrow(set.law.logSigma);
  params.lumaLogMu = narrow(set.law.logMu);
  params.lumaRadiusMax = narrow(set.law.radiusMax);
}

// With the blue plane cut between two devices, blue's softness is held so that the halves meet.
void limitBlueSoftness(double softBlue, FrameParams& params)
{
  constexpr std::size_t blue = 2;
  if (softBlue < 0.4)
    params.grainSoft[blue] = 0.16f;
  else if (softBlue > 0.45)
    params.grainSoft[blue] = 0.18f;
}

// Random colour: green and blue take fixed fractions of red's seed. A channel that is off keeps its seed.
void seedChannelsApart(std::uint32_t seed, FrameParams& params)
{
  if (params.grainChannelOn[0])
    params.grainSeedRed = std::bit_cast<int>(seed);
  if (params.grainChannelOn[1])
    params.grainSeedGreen = integerPart(seed * 0.5);
  if (params.grainChannelOn[2])
    params.grainSeedBlue = integerPart(seed * 0.3333);
}

void captureSeeds(const ParameterValues& values, double time, FrameParams& params)
{
  const std::uint32_t frame = wangHash(std::bit_cast<std::uint32_t>(integerPart(time)));
  const auto uniform = [&] { return integerPart(values.number("UniformPattern") * 403.2); };
  switch (params.grainMode)
  {
  case grainRandomColor:
    return seedChannelsApart(frame, params);
  case grainRandomMono:
    params.grainSeedRed = params.grainSeedGreen = params.grainSeedBlue = std::bit_cast<int>(frame);
    return;
  case grainRandomLuminance:
    params.grainSeedRed = std::bit_cast<int>(frame);
    return;
  case grainUniformMono:
    params.grainSeedRed = params.grainSeedGreen = params.grainSeedBlue = uniform();
    return;
  default:
    params.grainSeedRed = uniform();
    return;
  }
}

}  // namespace

void captureGrain(const ParameterValues& values, double time, FrameParams& params)
{
  params.grainLinear = values.on("GrainLinear");
  params.grainMode = integer(values, "DispersionPattern");
  const std::array<GrainControls, 3> controls = readControls(values);
  params.grainChannelCount = 0;
  for (std::size_t c = 0; c < controls.size(); ++c)
    params.grainChannelCount += params.grainChannelOn[c] = controls[c].on() ? 1 : 0;
  captureSeeds(values, time, params);

  const int longerSide = std::max(params.targetWidth, params.targetHeight);
  if (isLuminanceGrain(params.grainMode))
  {
    if (params.grainChannelCount > 0)
      storeLuminance(grainSetOf(meanOfLiveChannels(controls, params.grainChannelCount), longerSide), params);
  }
  else
  {
    for (std::size_t c = 0; c < controls.size(); ++c)
      if (controls[c].on())
        storeChannel(grainSetOf(controls[c], longerSide), c, params);
    if (params.gpuCount >= 2 && params.grainChannelCount == 3)
      limitBlueSoftness(controls[2].soft, params);
  }

  // A target of one pixel divides by zero: the scale is then infinite, which the kernels bear.
  params.targetScaleX = narrow(params.targetWidth / (params.targetWidth - 1.0));
  params.targetScaleY = narrow(params.targetHeight / (params.targetHeight - 1.0));
}

}  // namespace morvellan
