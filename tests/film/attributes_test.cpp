// The attribute engine by values worked out in double precision, and its promises: neutral settings change nothing,
// greys stay grey, bad pixels stay where they are.
#include "tests/film/attribute_runs.h"

#include <limits>

#include "tests/support/film_settings.h"

namespace morvellan::MORVELLAN_TARGET
{

using namespace attribute_runs;

namespace
{

AttributeEngine engineOf(const AttributeBlock& block)
{
  return makeAttributeEngine(block, false, {});
}

AttributeEngine everything(ZoneSettings zone = {})
{
  return makeAttributeEngine(settings::everyAttribute(zone), true, settings::refinements(soupRefinements, zone));
}

// One attribute of the four in settings::everyAttribute, by its vectors or by its custom band alone.
AttributeBlock only(AttributeSettings AttributeBlock::*attribute, bool custom, ZoneSettings zone)
{
  AttributeSettings a = settings::everyAttribute(zone).*attribute;
  a.vectorLive = !custom;
  a.custom.live = custom;
  AttributeBlock block;
  block.*attribute = a;
  return block;
}

constexpr Pixel probes[] = {{1.0f, 0.0f, 0.0f}, {0.5f, 0.4f, 0.1f}, {0.1f, 0.6f, 0.2f},    {0.02f, 0.3f, 0.35f},
                            {0.2f, 0.2f, 0.7f}, {6.0f, 1.0f, 4.0f}, {0.18f, 0.18f, 0.18f}, {0.9f, 0.05f, 0.3f}};

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float nan = std::numeric_limits<float>::quiet_NaN();

}  // namespace

ENGINE_TEST(Attributes, NeutralSettingsLeaveEveryPixelAlone)
{
  const AttributeEngine engine = makeAttributeEngine({}, true, std::vector<RefinementSettings>(soupRefinements));
  EXPECT_FALSE(engine.on);
  const std::vector<float> frame{0.2f, 0.5f, -0.3f, 900.0f, 0.0f, 1.0f, infinity, -infinity, 1e-30f};
  EXPECT_EQ(run(engine, frame), frame);
  EXPECT_TRUE(std::isnan(run(engine, {nan, 1.0f, 1.0f})[0]));
}

ENGINE_TEST(Attributes, EverythingAtOnceByValue)
{
  struct Row
  {
    ZoneSettings zone;
    Pixel expected[8];
  };
  const Row rows[] = {
      {settings::zone(0, false),
       {{1.746532f, 0.0810409f, 0.0f},
        {1.114015f, 0.7112592f, 0.06757642f},
        {0.002125162f, 0.6600391f, 0.06336725f},
        {0.09363636f, 0.3549152f, 0.3231203f},
        {0.2961985f, 0.1990558f, 0.9107465f},
        {5.301639f, 0.7168596f, 2.658835f},
        {0.1800009f, 0.1799996f, 0.1799992f},
        {1.509778f, 0.0240763f, 0.1492304f}}},
      {settings::zone(1, false),
       {{0.441767f, 0.3656282f, 0.3604304f},
        {0.6726653f, 0.6427416f, 0.5903858f},
        {0.2600921f, 0.2787205f, 0.2620746f},
        {0.2599091f, 0.2675235f, 0.2666327f},
        {0.4364256f, 0.4309096f, 0.469691f},
        {4.135574f, 1.729759f, 2.760373f},
        {0.18f, 0.18f, 0.18f},
        {0.5098478f, 0.4321978f, 0.4389621f}}},
      {settings::zone(2, false),
       {{8.760871f, 0.0f, 0.0f},
        {3.51933f, 0.2096847f, 0.0f},
        {0.0f, 1.597139f, 0.05747981f},
        {0.0f, 0.5344857f, 0.4621988f},
        {0.1140273f, 0.0f, 2.927756f},
        {48.50186f, 0.0f, 0.0f},
        {0.1800027f, 0.179999f, 0.1799978f},
        {6.859093f, 0.0f, 0.0f}}},
      {settings::zone(1, true),
       {{0.7599778f, 0.3110448f, 0.3047376f},
        {0.8605673f, 0.6713698f, 0.3472147f},
        {0.2300562f, 0.2880705f, 0.2365703f},
        {0.245051f, 0.2722307f, 0.269064f},
        {0.4054289f, 0.3768353f, 0.5847284f},
        {35.1272f, 0.1044263f, 0.1044263f},
        {0.18f, 0.18f, 0.18f},
        {0.7427855f, 0.3302555f, 0.3637383f}}},
  };
  for (const Row& row : rows)
    for (size_t i = 0; i < 8; ++i)
    {
      SCOPED_TRACE(testing::Message() << "mode " << row.zone.mode << " both " << row.zone.both << " probe " << i);
      expectNear(pixelBy(everything(row.zone), probes[i]), row.expected[i], 2e-5f);
    }
}

ENGINE_TEST(Attributes, EachAttributeAloneByValue)
{
  struct Row
  {
    AttributeSettings AttributeBlock::*attribute;
    ZoneSettings zone;
    bool custom;
    Pixel expected[3];  // of the probes 0, 1 and 3
  };
  const ZoneSettings none = settings::zone(0, false), high = settings::zone(2, false), both = settings::zone(1, true);
  const auto saturation = &AttributeBlock::saturation;
  const auto hue = &AttributeBlock::hue;
  const auto chroma = &AttributeBlock::chroma;
  const auto vibrance = &AttributeBlock::vibrance;
  const Row rows[] = {
      {saturation,
       none,
       false,
       {{1.366762f, 0, 0}, {0.5102952f, 0.404855f, 0.08853517f}, {0.07242598f, 0.295118f, 0.3348843f}}},
      {saturation, none, true, {{1, 0, 0}, {0.5f, 0.4f, 0.1f}, {0.02f, 0.3f, 0.35f}}},
      {saturation,
       high,
       false,
       {{1.197293f, 0, 0}, {0.5358783f, 0.4169195f, 0.06004552f}, {0, 0.3023848f, 0.3573838f}}},
      {saturation, high, true, {{1.049474f, 0, 0}, {0.5179505f, 0.4084651f, 0.08001015f}, {0, 0.3021031f, 0.3565114f}}},
      {saturation,
       both,
       false,
       {{1.118035f, 0, 0}, {0.4843484f, 0.392619f, 0.1174298f}, {0.1017344f, 0.2923887f, 0.326434f}}},
      {saturation,
       both,
       true,
       {{0.8260655f, 0.02999074f, 0.02999079f},
        {0.4753918f, 0.3883953f, 0.1274039f},
        {0.05685086f, 0.2965684f, 0.339375f}}},
      {hue, none, false, {{1, 0.068f, 0}, {0.542f, 0.3673333f, 0.09066667f}, {0.02194558f, 0.3252926f, 0.3227619f}}},
      {hue, none, true, {{1, 0, 0}, {0.5f, 0.4f, 0.1f}, {0.02f, 0.3f, 0.35f}}},
      {hue,
       high,
       false,
       {{1.066276f, 0.03836084f, 0}, {0.5626503f, 0.3706981f, 0.06665163f}, {0.006447381f, 0.333139f, 0.3304136f}}},
      {hue,
       both,
       true,
       {{0.9190493f, 0.0668476f, 0.0668476f},
        {0.4797623f, 0.3919049f, 0.1283327f},
        {0.05389316f, 0.2872206f, 0.3288862f}}},
      {chroma,
       none,
       false,
       {{1.266257f, 0, 0}, {0.6918462f, 0.553477f, 0.1383692f}, {0.02269252f, 0.3403878f, 0.3971191f}}},
      {chroma, none, true, {{1.017904f, 0, 0}, {0.6392097f, 0.5113678f, 0.127842f}, {0.02f, 0.3f, 0.35f}}},
      {chroma,
       both,
       false,
       {{1.189844f, 0.07734384f, 0.07734384f},
        {0.6738148f, 0.5462644f, 0.1636132f},
        {0.05809024f, 0.3270411f, 0.375068f}}},
      {vibrance, none, false, {{1, 0, 0}, {0.5059444f, 0.3915485f, 0.07613111f}, {0.01540849f, 0.2971633f, 0.357369f}}},
      {vibrance, none, true, {{1, 0, 0}, {0.5f, 0.3946547f, 0.09097733f}, {0.02f, 0.3f, 0.35f}}},
      {vibrance, high, false, {{1.065975f, 0, 0}, {0.5236101f, 0.3980739f, 0.05194009f}, {0, 0.3028462f, 0.3676849f}}},
      {vibrance,
       both,
       true,
       {{0.9190493f, 0.0668476f, 0.0668476f},
        {0.4788726f, 0.3865083f, 0.1202511f},
        {0.05389316f, 0.2872206f, 0.3288862f}}},
  };
  constexpr size_t picked[] = {0, 1, 3};
  for (size_t r = 0; r < std::size(rows); ++r)
    for (size_t i = 0; i < 3; ++i)
    {
      SCOPED_TRACE(testing::Message() << "row " << r << " probe " << picked[i]);
      const AttributeEngine engine = engineOf(only(rows[r].attribute, rows[r].custom, rows[r].zone));
      expectNear(pixelBy(engine, probes[picked[i]], !rows[r].custom), rows[r].expected[i], 1e-5f);
    }
}

// Gains above 2 give a band a steeper flank, and an overall strength other than 0.8 another power.
ENGINE_TEST(Attributes, ChromaOfLargeGainsAndOtherStrengthsByValue)
{
  struct Row
  {
    bool vectors, custom;
    float strength;
    Pixel expected[4];  // of the probes 0, 1, 3 and 7
  };
  const Row rows[] = {
      {true,
       false,
       0.5f,
       {{3, 0, 0},
        {0.7508276f, 0.6006621f, 0.1501655f},
        {0.04934469f, 0.7401704f, 0.8635321f},
        {1.59249f, 0.08847168f, 0.5308301f}}},
      {true,
       true,
       0.5f,
       {{3.139314f, 0, 0},
        {1.230772f, 0.9846173f, 0.2461543f},
        {0.04934469f, 0.7401704f, 0.8635321f},
        {1.59249f, 0.08847168f, 0.5308301f}}},
      {false,
       true,
       0.5f,
       {{1.058048f, 0, 0}, {1.039797f, 0.8318379f, 0.2079595f}, {0.02f, 0.3f, 0.35f}, {0.9f, 0.05f, 0.3f}}},
      {true,
       false,
       1.0f,
       {{4, 0, 0},
        {1.001597f, 0.8012774f, 0.2003193f},
        {0.07048098f, 1.057215f, 1.233417f},
        {1.988233f, 0.1104574f, 0.6627443f}}},
  };
  constexpr size_t picked[] = {0, 1, 3, 7};
  for (const Row& row : rows)
  {
    SCOPED_TRACE(testing::Message() << "vectors " << row.vectors << " custom " << row.custom << " " << row.strength);
    AttributeBlock block;
    block.chroma = {.vectorLive = row.vectors,
                    .axis = {0.5f, -0.2f, 0.4f, 0.6f, -0.1f, 0.3f},
                    .vectorStrength = row.strength,
                    .custom = {.live = row.custom, .hue = 1.3f, .width = 0.8f, .strength = 5.0f}};
    const AttributeEngine engine = engineOf(block);
    for (size_t i = 0; i < 4; ++i)
      expectNear(pixelBy(engine, probes[picked[i]], row.vectors), row.expected[i], 1e-5f);
    expectNear(pixelBy(engine, {0.3f, 0.3f, 0.3f}, row.vectors), {0.3f, 0.3f, 0.3f}, 1e-6f, "grey");
  }
}

ENGINE_TEST(Attributes, RedAtZeroTakesTheColourOutOfRedAlone)
{
  AttributeBlock block;
  block.saturation = {.vectorLive = true, .axis = {0.0f, 1.0f, 1.0f, 1.0f, 1.0f, 1.0f}, .vectorStrength = 1.0f};
  const AttributeEngine engine = engineOf(block);
  // The average of pure red in the neutral space: (0.37375032 + 0.02318279 + 0.04426887) / 3.
  expectNear(pixelBy(engine, {1.0f, 0.0f, 0.0f}), {0.1470674f, 0.1470674f, 0.1470674f}, 1e-4f);
  expectNear(pixelBy(engine, {0.0f, 0.5f, 0.5f}), {0.0f, 0.5f, 0.5f}, 1e-5f, "cyan");
  expectNear(pixelBy(engine, {0.1f, 0.5f, 0.1f}), {0.1f, 0.5f, 0.1f}, 1e-5f, "green");
  expectNear(pixelBy(engine, {0.3f, 0.3f, 0.3f}), {0.3f, 0.3f, 0.3f}, 2e-5f, "grey");
}

ENGINE_TEST(Attributes, GreysStayGrey)
{
  std::vector<float> greys;
  for (int i = 0; i < 400; ++i)
    greys.insert(greys.end(), 3, std::exp2(static_cast<float>(i) * 0.05f - 12.0f));
  const auto departure = [&](const AttributeEngine& engine)
  {
    const std::vector<float> r = run(engine, greys);
    float largest = 0.0f;
    for (size_t i = 0; i < r.size(); ++i)
      largest = std::max(largest, std::fabs(r[i] - greys[i]) / greys[i]);
    return largest;
  };
  for (const ZoneSettings& zone :
       {settings::zone(0, false), settings::zone(1, false), settings::zone(2, false), settings::zone(1, true)})
    EXPECT_LE(departure(engineOf(settings::everyAttribute(zone))), 2e-4f) << "mode " << zone.mode << zone.both;
  for (const ZoneSettings& zone : {settings::zone(0, false), settings::zone(1, false)})
    EXPECT_LE(departure(everything(zone)), 2e-4f) << "mode " << zone.mode;
  // The rows of the neutral space sum to 1 only to its digits, so that a grey is off grey by 4.8e-6; the high zone of
  // these settings pulls away from the average by 1.3, fifteen times in a row. The same steps in double precision
  // give 3.85e-4 at the brightest grey here, and 5e-14 with rows that sum to 1. Rounding, magnified by the same 1.3^15,
  // adds 1e-5 to it.
  for (const ZoneSettings& zone : {settings::zone(2, false), settings::zone(1, true)})
    EXPECT_NEAR(departure(everything(zone)), 3.85e-4f, 0.2e-4f) << "mode " << zone.mode << zone.both;
}

ENGINE_TEST(Attributes, LowZoneMixesShadowsAndVectorsActEverywhere)
{
  AttributeBlock block;
  block.saturation = {.vectorLive = true,
                      .axis = {0.0f, 1.0f, 1.0f, 1.0f, 1.0f, 1.0f},
                      .vectorStrength = 1.0f,
                      .zone = {.mode = 1, .low = 0.0f, .lowRange = 1.0f}};
  const AttributeEngine engine = engineOf(block);
  for (float level : {0.01f, 100.0f})
  {
    const Pixel red = pixelBy(engine, {level, 0.0f, 0.0f});
    EXPECT_NEAR(red[0], red[1], 1e-4f * level) << "red loses all its colour at " << level;
  }
  // Green has no vector here: the zone takes its colour in the shadows and leaves it in the highlights.
  const Pixel dark = pixelBy(engine, {0.0f, 0.01f, 0.0f});
  const Pixel bright = pixelBy(engine, {0.0f, 100.0f, 0.0f});
  EXPECT_LT(dark[1] - dark[0], 0.02f * dark[1]);
  EXPECT_GT(bright[1] - bright[0], 0.9f * bright[1]);
}

// With the narrowest range a zone's weight falls below the least normal number within the film's light. As long as a
// float holds it above 0 the low zone's vectors act with full force, the high zone's step clamps, and the step that
// ends an attribute clamps.
ENGINE_TEST(Attributes, AZoneActsDownToTheLeastNumber)
{
  const ZoneSettings low{.mode = 1, .low = 0.7f, .lowRange = 16.0f};
  AttributeBlock vectors;
  vectors.saturation = {
      .vectorLive = true, .axis = {0.0f, 1.0f, 1.0f, 1.0f, 1.0f, 1.0f}, .vectorStrength = 1.0f, .zone = low};
  expectNear(pixelBy(engineOf(vectors), {400.0f, 300.0f, 200.0f}), {340.02569f, 290.0278f, 240.02805f}, 2e-6f);

  AttributeBlock shadows;
  shadows.saturation = {.vectorLive = true,
                        .axis = {2.0f, 2.0f, 2.0f, 2.0f, 2.0f, 2.0f},
                        .vectorStrength = 1.5f,
                        .custom = {.live = true, .hue = 1.0f, .width = 1.0f, .strength = 1.4f},
                        .zone = {.mode = 2, .high = 1.3f, .highRange = 16.0f}};
  expectNear(pixelBy(engineOf(shadows), {0.003f, 0.0f, 0.004f}), {0.00139468515f, 0.0f, 0.00925736965f}, 1e-5f);

  AttributeBlock bright;
  bright.chroma = {
      .vectorLive = true, .axis = {0.6f, 0.6f, 0.6f, 0.6f, 0.6f, 0.6f}, .vectorStrength = 0.5f, .zone = low};
  expectNear(pixelBy(engineOf(bright), {20.0f, 300.0f, 150.0f}), {47.265063f, 469.799988f, 354.487974f}, 2e-6f);
}

ENGINE_TEST(Attributes, HueBandWithoutWidthDoesNothing)
{
  AttributeBlock block;
  block.hue.custom = {.live = true, .hue = 2.0f, .width = 0.0f, .strength = 0.0f};
  // Red stands at the very middle of the window, where its ramp is 0 / 0.
  expectNear(pixelBy(engineOf(block), {1.0f, 0.0f, 0.0f}), {1.0f, 0.0f, 0.0f}, 1e-6f);
  expectNear(pixelBy(engineOf(block), {0.2f, 0.6f, 0.4f}), {0.2f, 0.6f, 0.4f}, 1e-6f);
}

// A band of saturation without a width, as the last refinement may have: (x - 2) / 0 is held to [0, 1], so that all
// hues past the middle have weight 1, and the middle itself, 0 / 0, has none.
ENGINE_TEST(Attributes, SaturationBandWithoutWidthActsOnAllHuesPastItsMiddle)
{
  const RefinementSettings twelfth{.live = true,
                                   .saturation = {.live = true, .hue = 2.0f, .width = 0.0f, .strength = 0.0f}};
  const AttributeEngine engine = makeAttributeEngine({}, true, std::span(&twelfth, 1));
  const Pixel past[] = {{0.6f, 0.2f, 0.1f}, {0.6f, 0.6f, 0.1f}, {0.1f, 0.6f, 0.1f}, {0.1f, 0.2f, 0.6f}};
  for (const Pixel& p : past)
  {
    const Pixel r = pixelBy(engine, p);
    EXPECT_NEAR(r[0], r[1], 2e-5f);
    EXPECT_NEAR(r[1], r[2], 2e-5f);
    EXPECT_GT(std::fabs(r[0] - p[0]), 0.02f);
  }
  // Red at the middle, blue two thirds of the circle away, and what is between them.
  for (const Pixel& p :
       {Pixel{0.6f, 0.1f, 0.1f}, Pixel{0.1f, 0.1f, 0.6f}, Pixel{0.2f, 0.1f, 0.6f}, Pixel{0.6f, 0.1f, 0.5f}})
    expectNear(pixelBy(engine, p), p, 2e-5f);
}

ENGINE_TEST(Attributes, OnlyLiveRefinementsCount)
{
  std::vector<RefinementSettings> refinements = settings::refinements(soupRefinements);
  for (size_t i = 0; i < refinements.size(); ++i)
    refinements[i].live = i == 4;
  EXPECT_EQ(makeAttributeEngine({}, true, refinements).refinementCount, 1);
  EXPECT_FALSE(makeAttributeEngine({}, false, refinements).on);
  const std::vector<RefinementSettings> fifth{refinements[4]};
  EXPECT_EQ(pixelBy(makeAttributeEngine({}, true, refinements), probes[2]),
            pixelBy(makeAttributeEngine({}, true, fifth), probes[2]));
}

ENGINE_TEST(Attributes, RefinementsHueStrengthIsPerWidth)
{
  RefinementSettings refinement{.live = true, .hue = {.live = true, .hue = 0.2f, .width = 0.5f, .strength = 0.6f}};
  AttributeBlock block;
  block.hue.custom = {.live = true, .hue = 0.2f, .width = 0.5f, .strength = 0.3f};
  const Pixel yellow{0.6f, 0.55f, 0.1f};
  expectNear(pixelBy(makeAttributeEngine({}, true, std::span(&refinement, 1)), yellow),
             pixelBy(engineOf(block), yellow), 1e-6f);
}

ENGINE_TEST(Attributes, BadPixelsComeOutInRange)
{
  const std::vector<float> frame{nan,   nan,   nan,  nan,  0.5f, 0.2f,   infinity, 0.3f,  0.1f,      -1.0f,
                                 -2.0f, -0.5f, 0.0f, 0.0f, 0.0f, 1e-42f, 1e-43f,   0.0f,  1e5f,      1e5f,
                                 3e4f,  -0.2f, 0.4f, 0.1f, 0.3f, 0.3f,   0.3f,     1e38f, -infinity, 0.0f};
  const std::vector<float> r = run(everything(settings::zone(1, true)), frame);
  for (size_t i = 0; i < r.size(); ++i)
    EXPECT_TRUE(r[i] >= 0.0f && r[i] <= logC4Largest) << r[i] << " at " << i;
  EXPECT_EQ(r[12], 0.0f) << "black stays black";
  EXPECT_NEAR(r[24], 0.3f, 1e-4f) << "a neighbour of bad pixels is not touched by them";
}

// To the last bit: channels that cancel, flanks of windows and colours beside grey would magnify any difference.
PARITY(attributes, morvellan::parity::sameBits)
{
  const std::vector<float> frame = settings::everyHue(20000);
  std::vector<float> all;
  for (const ZoneSettings& zone : {settings::zone(0, false), settings::zone(1, true)})
    for (const bool vectors : {true, false})
    {
      const std::vector<float> r = run(everything(zone), frame, vectors);
      all.insert(all.end(), r.begin(), r.end());
    }
  return all;
}

}  // namespace morvellan::MORVELLAN_TARGET
