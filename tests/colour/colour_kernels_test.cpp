// Every colour kernel against its composition written out in colour_members.h: what it does to a colour, and where it
// reads and writes.
#include "colour/colour_kernels.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <limits>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "tests/colour/colour_members.h"
#include "tests/colour/device_frame.h"
#include "tests/support/engine_test.h"

namespace morvellan::MORVELLAN_TARGET
{

using namespace colour_test;

namespace
{

constexpr int width = 37, height = 19;
constexpr int sourceWidth = 53, sourceHeight = 31, offsetX = 11, offsetY = 6;
constexpr size_t pixelCount = static_cast<size_t>(width) * height;
constexpr float untouched = -77.0f;

// Colours with shadows, lights, negatives and values above 1; alpha is the pixel's own.
std::vector<float> makeFrame(int frameWidth, int frameHeight, unsigned seed)
{
  std::mt19937 random(seed);
  std::uniform_real_distribution<float> level(0.02f, 1.1f), tilt(0.7f, 1.3f);
  std::vector<float> frame;
  for (int i = 0; i < frameWidth * frameHeight; ++i)
  {
    const float x = i % 50 == 49 ? -0.2f : level(random);
    frame.insert(frame.end(), {x * tilt(random), x, x * tilt(random), 0.01f * static_cast<float>(i % 97)});
  }
  return frame;
}

struct Expectation
{
  std::array<std::vector<float>, 3> colour;
};

float laneZero(Real x)
{
  float values[lanes];
  store(values, x);
  return values[0];
}

std::array<float, 3> composed(const Member& member, const Setting& setting, const float* pixel)
{
  const Rgb p = member.compose(setting, {Real(pixel[0]), Real(pixel[1]), Real(pixel[2])});
  return {laneZero(p.r), laneZero(p.g), laneZero(p.b)};
}

// The same bits on the CPU; on CUDA within what targets may differ.
bool identical(float a, float b)
{
  constexpr bool isCuda = std::string_view(MORVELLAN_TARGET_NAME) == "cuda";
  const bool near = isCuda && std::fabs(a - b) <= std::fabs(b) * 2e-6f + 1e-7f;
  return a == b || near || (std::isnan(a) && std::isnan(b));
}

bool readsPlanes(Layout layout)
{
  return layout == Layout::PlanesToFrameRgb || layout == Layout::PlanesToFrameRgba ||
         layout == Layout::PlanesToPackedRgb || layout == Layout::PlanesToPlanes;
}

bool writesPlanes(Layout layout)
{
  return layout == Layout::FrameToPlanesRgb || layout == Layout::FrameToPlanesRgba ||
         layout == Layout::PackedToPlanesRgb || layout == Layout::PlanesToPlanes;
}

bool isCrop(Layout layout)
{
  return layout == Layout::CropRgb || layout == Layout::CropRgba;
}

bool isInPlace(Layout layout)
{
  return layout == Layout::InPlace || layout == Layout::InPlaceZeroingCompanion || layout == Layout::PackedInPlaceRgb;
}

// Floats of a pixel that is read and of one that is written.
int floatsRead(Layout layout)
{
  return layout == Layout::PackedToPackedRgb || layout == Layout::PackedInPlaceRgb || layout == Layout::BothRgb ||
                 layout == Layout::PackedToPlanesRgb || layout == Layout::PackedToFrame
             ? 3
             : 4;
}

int floatsWritten(Layout layout)
{
  return layout == Layout::FrameToPacked || layout == Layout::PlanesToPackedRgb ? 3
         : layout == Layout::PackedToFrame                                      ? 4
                                                                                : floatsRead(layout);
}

// What the fourth float of a written pixel, or the fourth plane, must hold.
float expectedAlpha(Layout layout, float alpha)
{
  switch (layout)
  {
  case Layout::FrameToFrameRgb:
  case Layout::CropRgb:
  case Layout::FrameToPlanesRgb:
  case Layout::PlanesToFrameRgb:
  case Layout::PackedToPlanesRgb:
    return untouched;
  case Layout::PackedToFrame:
    return 1.0f;
  default:
    return alpha;
  }
}

std::vector<float> withoutAlpha(const std::vector<float>& frame)
{
  std::vector<float> packed;
  for (size_t i = 0; i < frame.size(); ++i)
    if (i % 4 != 3)
      packed.push_back(frame[i]);
  return packed;
}

void checkMember(const Member& member, const std::string& name, const Setting& setting)
{
  const Layout layout = member.layout;
  const int readFloats = floatsRead(layout), writtenFloats = floatsWritten(layout);
  const std::vector<float> whole =
      isCrop(layout) ? makeFrame(sourceWidth, sourceHeight, 5) : makeFrame(width, height, 5);
  const std::vector<float> input = readFloats == 3 ? withoutAlpha(whole) : whole;

  const Buffer<float> source = toDevice(input);
  const Buffer<float> destination = toDevice(
      isInPlace(layout) ? input : std::vector<float>(pixelCount * static_cast<size_t>(writtenFloats), untouched));
  const Buffer<float> companion = toDevice(std::vector<float>(pixelCount * 4, untouched));
  std::array<Buffer<float>, 4> planes;
  ColourArguments arguments{.source = source.data(),
                            .destination = destination.data(),
                            .companion = companion.data(),
                            .width = width,
                            .height = height,
                            .channels = writtenFloats == 3 ? 3 : readFloats,
                            .colourspace = setting.index,
                            .sourceWidth = sourceWidth,
                            .offsetX = offsetX,
                            .offsetY = offsetY,
                            .value = setting.value,
                            .gain = setting.gain,
                            .softClip = setting.soft};
  for (size_t k = 0; k < 4; ++k)
  {
    std::vector<float> values(pixelCount, untouched);
    if (readsPlanes(layout))
      for (size_t i = 0; i < pixelCount; ++i)
        values[i] = whole[i * 4 + k];
    planes[k] = toDevice(values);
    arguments.planes[k] = planes[k].data();
  }
  runColour(Queue{}, ColourKernel::named(name), arguments);

  const std::vector<float> written = toHost(destination);
  const std::vector<float> zeroed = toHost(companion);
  const std::vector<float> sourceAfter = toHost(source);
  PlaneSet planesAfter;
  for (size_t k = 0; k < 4; ++k)
    planesAfter[k] = toHost(planes[k]);
  const bool both = layout == Layout::BothRgb || layout == Layout::BothRgba;
  for (size_t i = 0; i < pixelCount; ++i)
  {
    const size_t x = i % width, y = i / width;
    const size_t from = isCrop(layout) ? (y + offsetY) * sourceWidth + x + offsetX : i;
    const std::array<float, 3> colour = composed(member, setting, &whole[from * 4]);
    const size_t to = i * static_cast<size_t>(writtenFloats);
    for (size_t k = 0; k < 3; ++k)
    {
      const float actual = writesPlanes(layout) ? planesAfter[k][i] : written[to + k];
      ASSERT_TRUE(identical(actual, colour[k])) << name << " index " << setting.index << " pixel " << i << " channel "
                                                << k << ": " << actual << ", composed " << colour[k];
      if (both)
      {
        ASSERT_EQ(sourceAfter[to + k], written[to + k]) << name;
      }
    }
    const float alpha = expectedAlpha(layout, whole[from * 4 + 3]);
    if (writesPlanes(layout) && layout != Layout::PlanesToPlanes)
    {
      ASSERT_EQ(planesAfter[3][i], alpha) << name << " index " << setting.index;
    }
    else if (!writesPlanes(layout) && writtenFloats == 4)
    {
      ASSERT_EQ(written[to + 3], alpha) << name << " index " << setting.index;
    }
    for (size_t k = 0; k < 4; ++k)
      ASSERT_EQ(zeroed[i * 4 + k], k == 0 && layout == Layout::InPlaceZeroingCompanion ? 0.0f : untouched) << name;
  }
}

struct GamutOfName
{
  LinearGamut gamut;
  const char *any, *video, *aces;
};

constexpr GamutOfName gamutNames[] = {{LinearGamut::Rec709, "rec709", "rec709", nullptr},
                                      {LinearGamut::Rec2020, "rec2020", "rec2020", nullptr},
                                      {LinearGamut::AcesAp0, "ACES_AP0", nullptr, "AP0"},
                                      {LinearGamut::AcesAp1, "ACES_AP1", nullptr, "AP1"}};

std::map<std::string, LinearGamut> namesOf(const Member& member)
{
  const std::string pattern = member.pattern;
  const size_t at = pattern.find('<');
  if (at == std::string::npos)
    return {{pattern, LinearGamut::Rec709}};
  std::map<std::string, LinearGamut> names;
  for (const GamutOfName& gamut : gamutNames)
  {
    const char* value = pattern[at + 1] == 'g' ? gamut.any : pattern[at + 1] == 'v' ? gamut.video : gamut.aces;
    if (value)
      names[pattern.substr(0, at) + value + pattern.substr(at + 3)] = gamut.gamut;
  }
  return names;
}

bool linearOnly(const Member& member)
{
  return member.compose == expandLinear || member.compose == static_cast<Compose>(chain<luma, expandLinear>);
}

}  // namespace

ENGINE_TEST(ColourKernels, TableAndListNameTheSameKernels)
{
  std::map<std::string, int> listed;
  for (const Member& member : members)
    for (const auto& [name, gamut] : namesOf(member))
      ++listed[name];
  std::map<std::string, int> inTable;
  for (const ColourRow& row : colourRows)
    ++inTable[std::string(row.name())];
  EXPECT_EQ(listed, inTable);
  for (const auto& [name, count] : inTable)
    EXPECT_EQ(count, 1) << name;
}

ENGINE_TEST(ColourKernels, EveryMemberIsItsComposition)
{
  const SoftClip softSettings{.ceiling = 0.7f, .comp = 1.6f, .floor = 0.6f, .expand = -0.4f};
  for (const Member& member : members)
    for (const auto& [name, gamut] : namesOf(member))
      for (int index = 0; index < colourspaceCount; ++index)
      {
        if (linearOnly(member) && !isLinear(index))
          continue;
        checkMember(member, name, {.gamut = gamut, .index = index, .value = 0.13f, .gain = 1.7f, .soft = softSettings});
        if (::testing::Test::HasFatalFailure())
          break;
        // The gamut's members do not read the index.
        if (std::string(member.pattern).find('<') != std::string::npos)
          break;
      }
}

// The plan of a frame is held to its pairs by the names of the kernels; each name says what its steps do.
ENGINE_TEST(ColourKernels, NamesTellOfCompressionAndLab)
{
  for (const ColourRow& row : colourRows)
  {
    const Composition& composition = compositionOf(row);
    const std::string_view name = row.name();
    const auto steps = [&](Op first, Op last)
    {
      return std::count_if(composition.ops.begin(), composition.ops.end(),
                           [=](Op op) { return op >= first && op <= last; });
    };
    const auto says = [&](std::string_view word) { return name.find(word) != std::string_view::npos ? 1 : 0; };
    EXPECT_EQ(steps(Op::CompressA, Op::CompressFull), says("compress") + says("Compress")) << name;
    EXPECT_EQ(steps(Op::ExpandA, Op::ExpandLinear), says("expand")) << name;
    const auto labSteps = steps(Op::ToLabRounded, Op::FromLabExact);
    EXPECT_EQ(labSteps, name != "Lab_Linear_to_Log_RGBA" && says("LAB") + says("Lab_") > 0 ? 1 : 0) << name;
  }
}

ENGINE_TEST(ColourKernels, UnknownNamesAreRefused)
{
  EXPECT_THROW((void)ColourKernel::named("To_Log"), std::invalid_argument);
  EXPECT_THROW((void)ColourKernel::forGamut("LAB_ACES_<x>", LinearGamut::Rec709), std::invalid_argument);
  EXPECT_EQ(ColourKernel::forGamut("RGBA_<g>_compress", LinearGamut::AcesAp1).name(), "RGBA_ACES_AP1_compress");
}

// RGB frames run the same members with three channels: no fourth float is read or written.
ENGINE_TEST(ColourKernels, ThreeChannelFrames)
{
  const std::vector<float> whole = makeFrame(width, height, 9);
  const std::vector<float> packed = withoutAlpha(whole);
  const ColourArguments four{.colourspace = 11}, three{.channels = 3, .colourspace = 11};
  for (const ColourKernel kernel : {ColourKernel("To_Log_Kernel"), ColourKernel("To_Linear_Kernel_RGBA"),
                                    ColourKernel("highlights_shadows_Kernel")})
    EXPECT_EQ(inPlace(kernel, packed, three), withoutAlpha(inPlace(kernel, whole, four))) << kernel.name();
  EXPECT_EQ(toFrame("To_Linear_Kernel_RGB_in_out", packed, three),
            withoutAlpha(toFrame("To_Linear_Kernel_RGBA_in_out", whole, four)));
  const PlaneSet fromThree = toPlanes("XYZ_compress_RGB", packed, three);
  const PlaneSet fromFour = toPlanes("XYZ_compress_RGB", whole, four);
  EXPECT_EQ(fromThree, fromFour);
  EXPECT_EQ(fromPlanes("RGB_expand_RGB", fromThree, three),
            withoutAlpha(fromPlanes("RGB_expand_RGBA", fromFour, four)));
}

// Every kernel at every index, for the targets to agree on: colours of all kinds, no index left out.
PARITY(every_colour_kernel, morvellan::parity::sameBits)
{
  constexpr float nan = std::numeric_limits<float>::quiet_NaN(), infinity = std::numeric_limits<float>::infinity();
  const SoftClip softSettings{.ceiling = 0.7f, .comp = 1.6f, .floor = 0.6f, .expand = -0.4f};
  std::vector<float> whole = makeFrame(129, 1, 21);
  const float special[] = {0.0f, -0.0f, 1.0f, 4.0f, -3.0f, 70.0f, 2000.0f, 1e-7f, 3e38f, nan, infinity, -infinity};
  for (size_t i = 0; i < std::size(special); ++i)
    for (size_t k = 0; k < 3; ++k)
      whole[(20 + i * 3 + k) * 4 + k] = special[i];
  std::vector<float> all;
  for (const ColourRow& row : colourRows)
    for (int index = 0; index < colourspaceCount; index += row.gamut == LinearGamut::Rec709 ? 1 : colourspaceCount)
    {
      const Buffer<float> source = toDevice(whole), destination = toDevice(whole), companion = toDevice(whole);
      ColourArguments arguments{.source = source.data(),
                                .destination = destination.data(),
                                .companion = companion.data(),
                                .width = 128,
                                .height = 1,
                                .colourspace = index,
                                .sourceWidth = 129,
                                .offsetX = 1,
                                .value = 0.1f,
                                .gain = 1.3f,
                                .softClip = softSettings};
      std::array<Buffer<float>, 4> planes;
      for (size_t k = 0; k < 4; ++k)
      {
        std::vector<float> values(129);
        for (size_t i = 0; i < values.size(); ++i)
          values[i] = whole[i * 4 + k];
        planes[k] = toDevice(values);
        arguments.planes[k] = planes[k].data();
      }
      runColour(Queue{}, ColourKernel::named(row.name()), arguments);
      // Whole groups of lanes for every target: nothing is written past the last pixel.
      const std::vector<float> frame = toHost(destination);
      all.insert(all.end(), frame.begin(), frame.begin() + 128 * 4);
      for (const Buffer<float>& plane : planes)
      {
        const std::vector<float> values = toHost(plane);
        all.insert(all.end(), values.begin(), values.begin() + 128);
      }
    }
  return all;
}

}  // namespace morvellan::MORVELLAN_TARGET
