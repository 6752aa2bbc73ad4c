// The table of masters, the carry, and the tone swatches.
// Limits are the table's own and not always those of the parameters.
#include "params/masters.h"

#include "params/edit.h"
#include "params/families.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace morvellan::params
{
namespace
{
struct Row
{
  std::string_view name;
  std::string_view stem;  // of Red, Green and Blue
  double lo;
  double hi;
  double swatchSpan = 0.0;
};

constexpr std::array rgbRows{
    Row{"SoupDminRGB", "SoupDmin", -1.0, 1.0},
    Row{"SoupDmaxRGB", "SoupDmax", -1.0, 1.0},
    Row{"LabSilverRGB", "LabSilver", 0.0, 1.0},
    Row{"LabBleachRGB", "LabBleach", 0.0, 1.0, 0.5},
    Row{"SoupToeRGB", "SoupToe", -0.5, 0.5, 0.5},
    Row{"SoupKneeRGB", "SoupKnee", -0.5, 0.5, 0.5},
    Row{"SoupShoulderRGB", "SoupShoulder", -1.0, 1.0, 1.0},
    Row{"PrintBleach", "PrintBleach", 0.0, 1.0},
    Row{"PrintBlackRGB", "PrintBlack", -1.0, 1.0},
    Row{"PrinterLightsRGB", "PrinterLight", 0.0, 1.0},
    Row{"SizeRGB", "Size", 0.0, 50.0},
    Row{"GranularityRGB", "Granularity", 0.0, 10.0},
    Row{"SoftRGB", "Soft", 0.0, 10.0},
    Row{"VarianceRGB", "Variance", 0.0, 10.0},
    Row{"StrengthRGB", "Strength", 0.0, 10.0},
};

Master fromRow(const Row& row)
{
  const auto channels = channelNames(row.stem);
  Master master{.name = std::string{row.name},
                .channels = {channels.begin(), channels.end()},
                .lo = row.lo,
                .hi = row.hi,
                .swatch = {},
                .swatchSpan = row.swatchSpan};
  if (row.swatchSpan != 0.0)
    master.swatch = joined(row.stem, "Swatch");
  return master;
}

std::vector<Master> makeMasters()
{
  std::vector<Master> made;
  for (const std::string_view stem : {"Enhancer", "Details"})
    made.push_back({.name = joined("Combined", stem),
                    .channels = {joined("Horizontal", stem), joined("Vertical", stem)},
                    .lo = 0.0,
                    .hi = 10.0,
                    .clamped = false,
                    .swatch = {}});

  Master ensemble{.name = "EnsemblePitch", .channels = {}, .lo = 0.0, .hi = 10.0, .swatch = {}};
  for (const Pitch& pitch : pitches)
    ensemble.channels.emplace_back(pitch.name);
  made.push_back(std::move(ensemble));

  // The carry works with -1 here, although the sliders stop at 0.
  made.push_back({.name = "HalationBlendRGB",
                  .channels = {"HalationBlendR", "HalationBlendG", "HalationBlendB"},
                  .lo = -1.0,
                  .hi = 1.0,
                  .swatch = {}});

  for (const Axis& axis : axes)
    made.push_back({.name = joined(axis.word, "Combo"), .channels = colourNames(axis), .swatch = {}});
  std::ranges::transform(rgbRows, std::back_inserter(made), fromRow);
  return made;
}

std::vector<double> channelValues(const ParamAccess& access, const Master& master)
{
  std::vector<double> values;
  for (const std::string& channel : master.channels)
    values.push_back(access.number(channel));
  return values;
}

void writeMean(ParamAccess& access, const Master& master)
{
  writeDerived(access, master.name, mean(channelValues(access, master)));
}

void refreshSwatch(ParamAccess& access, const Master& master)
{
  if (master.swatch.empty())
    return;
  const auto values = channelValues(access, master);
  writeDerivedRgb(access, master.swatch, toneSwatch({values[0], values[1], values[2]}));
}
}  // namespace

std::span<const Master> masters()
{
  static const std::vector<Master> all = makeMasters();
  return all;
}

double mean(std::span<const double> values)
{
  return std::accumulate(values.begin(), values.end(), 0.0) / static_cast<double>(values.size());
}

std::vector<double> carried(const Master& master, std::span<const double> channels, double value)
{
  const double move = value - mean(channels);
  std::vector<double> overflow;
  for (const double channel : channels)
  {
    const double moved = channel + move;
    overflow.push_back(moved > master.hi ? moved - master.hi : moved < master.lo ? moved - master.lo : 0.0);
  }
  const double all = std::accumulate(overflow.begin(), overflow.end(), 0.0);
  std::vector<double> result;
  for (std::size_t i = 0; i < channels.size(); ++i)
  {
    const double moved = channels[i] + move - overflow[i] + (all - overflow[i]) / 2.0;
    result.push_back(master.clamped ? std::clamp(moved, master.lo, master.hi) : moved);
  }
  return result;
}

Rgb toneSwatch(const Rgb& channels)
{
  Rgb swatch{};
  for (std::size_t i = 0; i < swatch.size(); ++i)
  {
    const double other = std::max(channels[(i + 1) % 3], channels[(i + 2) % 3]);
    swatch[i] = channels[i] >= other ? 1.0 : 1.0 - (other - channels[i]);
  }
  return swatch;
}

Rgb toneChannels(const Master& master, const Rgb& swatch)
{
  const double level = mean(swatch);
  const double spread = master.swatchSpan - std::abs(level);
  Rgb channels{};
  for (std::size_t i = 0; i < channels.size(); ++i)
    channels[i] = level + (swatch[i] - (swatch[(i + 1) % 3] + swatch[(i + 2) % 3]) / 2.0) * spread;
  return channels;
}

void masterChanged(ParamAccess& access, const Master& master)
{
  const auto values = carried(master, channelValues(access, master), access.number(master.name));
  for (std::size_t i = 0; i < values.size(); ++i)
    writeDerived(access, master.channels[i], values[i]);
  if (master.swatch.empty())
    return;
  refreshSwatch(access, master);
  writeMean(access, master);
}

void channelChanged(ParamAccess& access, const Master& master)
{
  writeMean(access, master);
  refreshSwatch(access, master);
}

void toneSwatchChanged(ParamAccess& access, const Master& master)
{
  const Rgb swatch = access.rgb(master.swatch);
  writeDerived(access, master.name, mean(swatch));
  const Rgb channels = toneChannels(master, swatch);
  for (std::size_t i = 0; i < channels.size(); ++i)
    writeDerived(access, master.channels[i], channels[i]);
}
}  // namespace morvellan::params
