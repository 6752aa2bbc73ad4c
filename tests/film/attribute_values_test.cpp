// The attribute engine by value for drawn settings: each attribute alone and all with two refinements, by vectors, by a
// custom band and by both, without zones, with either and with both.
#include "tests/film/attribute_values.h"

#include <iterator>

namespace morvellan::MORVELLAN_TARGET
{

using namespace attribute_runs;

namespace
{

// Numbers in [0, 1), the same wherever they are drawn.
class Drawn
{
public:
  explicit Drawn(uint32_t seed) : state(seed) {}
  double next()
  {
    state = state * 1664525u + 1013904223u;
    return static_cast<double>(state >> 8) / 16777216.0;
  }

private:
  uint32_t state;
};

enum Attribute
{
  Saturation,
  Hue,
  Chroma,
  Vibrance,
  All,
};

ZoneSettings drawnZone(Drawn& drawn, ZoneSettings zone)
{
  zone.low = static_cast<float>(2.0 * drawn.next());
  zone.lowRange = static_cast<float>(std::exp2(4.0 - 8.0 * drawn.next()));
  zone.high = static_cast<float>(2.0 * drawn.next());
  zone.highRange = static_cast<float>(std::exp2(4.0 - 8.0 * drawn.next()));
  return zone;
}

BandSettings drawnBand(Drawn& drawn, Attribute of, bool live, bool ofRefinement)
{
  BandSettings band{.live = live};
  band.hue = static_cast<float>(6.0 * drawn.next());
  band.width = static_cast<float>(0.05 + 0.95 * drawn.next());
  if (of == Vibrance && !ofRefinement)
    band.width = 1.0f;
  const double slider = drawn.next();
  const double centred = 2.0 * slider - 1.0;
  const double width = static_cast<double>(band.width);
  band.strength = static_cast<float>(of == Saturation ? 2.0 * slider
                                     : of == Hue      ? centred * (ofRefinement ? 2.0 : width)
                                     : of == Chroma   ? std::exp2(8.0 * centred)
                                                      : centred);
  return band;
}

AttributeSettings drawnAttribute(Drawn& drawn, Attribute of, bool vectors, bool custom, ZoneSettings zone)
{
  AttributeSettings a{.vectorLive = vectors};
  for (float& axis : a.axis)
    axis = static_cast<float>(2.0 * drawn.next() - (of == Saturation ? 0.0 : 1.0));
  const double strength = drawn.next();
  a.vectorStrength = static_cast<float>(of == Saturation ? 2.0 * strength
                                        : of == Vibrance ? 2.0 * strength - 1.0
                                                         : strength);
  a.custom = drawnBand(drawn, of, custom, false);
  a.zone = drawnZone(drawn, zone);
  return a;
}

}  // namespace

ENGINE_TEST(Attributes, DrawnSettingsByValue)
{
  constexpr ZoneSettings zones[] = {
      {.mode = 0, .both = false}, {.mode = 1, .both = false}, {.mode = 2, .both = false}, {.mode = 1, .both = true}};
  ASSERT_EQ(std::size(drawnCases), 5 * 3 * std::size(zones));
  for (size_t i = 0; i < std::size(drawnCases); ++i)
  {
    SCOPED_TRACE(testing::Message() << "case " << i);
    const auto subject = static_cast<Attribute>(i % 5);
    const bool vectors = i / 5 % 3 != 1, custom = i / 5 % 3 != 0;
    const ZoneSettings zone = zones[i / 15];
    Drawn drawn(drawnCases[i].seed);
    const auto attribute = [&](Attribute of)
    {
      const bool live = subject == of || subject == All;
      return drawnAttribute(drawn, of, vectors && live, custom && live, zone);
    };
    AttributeBlock block;
    block.saturation = attribute(Saturation);
    block.hue = attribute(Hue);
    block.chroma = attribute(Chroma);
    block.vibrance = attribute(Vibrance);
    RefinementSettings refinements[2];
    for (RefinementSettings& r : refinements)
    {
      r.live = subject == All;
      r.saturation = drawnBand(drawn, Saturation, true, true);
      r.hue = drawnBand(drawn, Hue, true, true);
      r.chroma = drawnBand(drawn, Chroma, true, true);
      r.vibrance = drawnBand(drawn, Vibrance, true, true);
      r.zone = drawnZone(drawn, zone);
    }
    const AttributeEngine engine = makeAttributeEngine(block, true, refinements);
    for (const Pixel& expected : drawnCases[i].expected)
    {
      const double level = std::exp2(10.0 * drawn.next() - 7.0);
      Pixel pixel;
      for (float& channel : pixel)
        channel = static_cast<float>(level * drawn.next());
      expectNear(pixelBy(engine, pixel, vectors), expected, 2e-5f);
    }
  }
}

}  // namespace morvellan::MORVELLAN_TARGET
