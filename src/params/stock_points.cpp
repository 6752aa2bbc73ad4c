// Channel families and print points as the stocks write them: as bulk writes, without edit blocks.
// A master written here is the mean of what its channels were set to.
#include "params/stock_points.h"

#include "params/edit.h"
#include "params/families.h"
#include "params/masters.h"

namespace morvellan::params
{
namespace
{
void writeChannels(ParamAccess& access, std::string_view stem, std::string_view master, const Rgb& channels,
                   double masterValue)
{
  const auto names = channelNames(stem);
  for (std::size_t i = 0; i < names.size(); ++i)
    write(access, names[i], channels[i]);
  write(access, master, masterValue);
}
}  // namespace

Rgb readFamily(const ParamAccess& access, std::string_view stem)
{
  const auto names = channelNames(stem);
  return {access.number(names[0]), access.number(names[1]), access.number(names[2])};
}

void writeFamily(ParamAccess& access, std::string_view stem, std::string_view master, const Rgb& channels)
{
  writeChannels(access, stem, master, channels, mean(channels));
}

void writeFamily(ParamAccess& access, std::string_view stem, std::string_view master, double value)
{
  writeChannels(access, stem, master, {value, value, value}, value);
}

void scaleByMean(ParamAccess& access, std::string_view stem, std::string_view master, double k)
{
  Rgb channels = readFamily(access, stem);
  const double scale = mean(channels) * k;
  for (double& channel : channels)
    channel *= scale;
  writeFamily(access, stem, master, channels);
}

void writePoints(ParamAccess& access, const PrintPoints& points)
{
  writeFamily(access, "PrintBlack", "PrintBlackRGB", points.black);
  writeFamily(access, "PrinterLight", "PrinterLightsRGB", points.white);
}
}  // namespace morvellan::params
