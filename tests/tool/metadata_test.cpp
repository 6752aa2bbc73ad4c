// What a picture says of itself goes from input to output wherever the output's format can say it.
#include <gmock/gmock.h>

#include "tests/tool/tool_run.h"

namespace morvellan::test
{
namespace
{

using OIIO::TypeDesc;
using testing::HasSubstr;

std::string textOf(const OIIO::ImageSpec& header, const char* attribute)
{
  const auto* const found = header.find_attribute(attribute);
  return found == nullptr ? "" : found->get_string();
}

class MetadataTest : public ToolTest
{
protected:
  // A picture with a time code, a frame rate and who, what and how.
  static TestPicture described(TypeDesc type, unsigned int timeCode = 0x01020304)
  {
    TestPicture picture = ramp(12, 8, 3, type);
    auto& [header, values] = picture;
    const std::array<unsigned int, 2> code{timeCode, 0};
    const std::array<int, 2> rate{24000, 1001};
    header.attribute("smpte:TimeCode", OIIO::TypeTimeCode, code.data());
    header.attribute("FramesPerSecond", OIIO::TypeRational, rate.data());
    header.attribute("Copyright", "somebody");
    header.attribute("ImageDescription", "a wall");
    header.attribute("ExposureTime", 0.02F);
    header.attribute("Artist", "Ann");
    return picture;
  }

  // Runs the tool and gives the output's header.
  [[nodiscard]] OIIO::ImageSpec rendered(const std::string& input, const std::string& output,
                                         std::vector<std::string> more = {})
  {
    more.insert(more.end(), {path(input), "-o", path(output), "--device", "cpu", "--quiet"});
    const ToolRun run = runTool(more);
    EXPECT_EQ(run.exitCode, 0) << output << ": " << run.err;
    const auto [header, values] = load(path(output));
    return header;
  }
};

TEST_F(MetadataTest, WindowsAndTimesStayInExr)
{
  TestPicture picture = described(TypeDesc::HALF);
  auto& [header, values] = picture;
  header.x = 3;
  header.y = -2;
  header.full_x = 1;
  header.full_width = 20;
  header.full_height = 10;
  header.attribute("compression", "dwaa");
  save(path("in.exr"), picture);
  const OIIO::ImageSpec out = rendered("in.exr", "out.exr", {"--set", "Gain=2"});
  EXPECT_EQ(out.format, TypeDesc::HALF);
  EXPECT_EQ(out.x, 3);
  EXPECT_EQ(out.y, -2);
  EXPECT_EQ(out.full_x, 1);
  EXPECT_EQ(out.full_width, 20);
  EXPECT_EQ(out.full_height, 10);
  EXPECT_EQ(textOf(out, "Copyright"), "somebody");
  EXPECT_EQ(textOf(out, "smpte:TimeCode"), "01:02:03:04");
  EXPECT_EQ(textOf(out, "FramesPerSecond"), "24000/1001");
  // The input's lossy compression would alter values once more.
  EXPECT_EQ(textOf(out, "compression"), "zip");
}

TEST_F(MetadataTest, EveryFormatPassesOnWhatItHolds)
{
  const std::vector<std::string> formats{"exr", "dpx", "tif", "png", "jpg"};
  const auto times = [](const std::string& format) { return format != "tif" && format != "jpg"; };
  save(path("in.exr"), described(TypeDesc::FLOAT));
  for (const std::string& first : formats)
  {
    const OIIO::ImageSpec once = rendered("in.exr", "once." + first, {"--set", "Gain=0.5"});
    EXPECT_EQ(textOf(once, "Copyright"), "somebody") << first;
    EXPECT_EQ(textOf(once, "ImageDescription"), "a wall") << first;
    for (const std::string& second : formats)
    {
      const std::string way = first + " to " + second;
      const OIIO::ImageSpec twice = rendered("once." + first, "twice-" + first + "." + second, {"--set", "Gain=0.5"});
      EXPECT_EQ(textOf(twice, "Copyright"), "somebody") << way;
      EXPECT_EQ(textOf(twice, "ImageDescription"), "a wall") << way;
      EXPECT_EQ(textOf(twice, "smpte:TimeCode"), times(first) && times(second) ? "01:02:03:04" : "") << way;
      if (second == "exr")
      {
        EXPECT_EQ(textOf(twice, "FramesPerSecond"), times(first) ? "24000/1001" : "") << way;
      }
      if (second != "dpx")
      {
        EXPECT_EQ(textOf(twice, "Artist"), first == "dpx" ? "" : "Ann") << way;
      }
      EXPECT_THAT(textOf(twice, "IPTC:Creator"), testing::Not(HasSubstr(";"))) << way;
    }
  }
}

TEST_F(MetadataTest, AnExposureInTiffLeavesThePictureWhole)
{
  save(path("in.exr"), described(TypeDesc::FLOAT));
  const OIIO::ImageSpec out = rendered("in.exr", "out.tif", {"--set", "Gain=0.5"});
  EXPECT_EQ(out.get_float_attribute("ExposureTime"), 0.02F);
  std::vector<float> halves;
  for (const float value : load(path("in.exr")).values)
  {
    halves.push_back(value * 0.5F);
  }
  EXPECT_EQ(load(path("out.tif")).values, halves);
}

TEST_F(MetadataTest, JpegKeepsColoursResolution)
{
  save(path("in.exr"), described(TypeDesc::FLOAT));
  EXPECT_EQ(textOf(rendered("in.exr", "once.jpg"), "jpeg:subsampling"), "4:4:4");
  EXPECT_EQ(textOf(rendered("once.jpg", "twice.jpg"), "jpeg:subsampling"), "4:4:4");
}

TEST_F(MetadataTest, APngTellsATimeCodeThatDropsFrames)
{
  save(path("in.exr"), described(TypeDesc::FLOAT, 0x23595829 | 0x40));
  EXPECT_EQ(textOf(rendered("in.exr", "out.png"), "smpte:TimeCode"), "23:59:58;29");
  const OIIO::ImageSpec back = rendered("out.png", "back.exr");
  std::array<unsigned int, 2> code{};
  ASSERT_TRUE(back.getattribute("smpte:TimeCode", OIIO::TypeTimeCode, code.data()));
  EXPECT_EQ(code[0], 0x23595829 | 0x40);
}

TEST_F(MetadataTest, TextsThatAreNoTimesAreLeftOut)
{
  TestPicture picture = ramp(4, 4, 3, TypeDesc::UINT8);
  auto& [header, values] = picture;
  header.attribute("smpte:TimeCode", "noon");
  header.attribute("FramesPerSecond", "24/x");
  save(path("in.png"), picture);
  const OIIO::ImageSpec out = rendered("in.png", "out.exr");
  EXPECT_EQ(textOf(out, "smpte:TimeCode"), "");
  EXPECT_EQ(textOf(out, "FramesPerSecond"), "");
}

TEST_F(MetadataTest, TheClipHasTheRateOfItsPictures)
{
  save(path("in.exr"), described(TypeDesc::FLOAT));
  for (const char* const file : {"rate.exr", "rate.dpx", "rate.png"})
  {
    EXPECT_FALSE(rendered("in.exr", file).undefined());
    const ToolRun run =
        runTool({path(file), "--info", "clip", "--device", "cpu"},
                {.bundle = MORVELLAN_BUNDLE, .environment = {{"MORVELLAN_CONFIG_DIR", path("config")}}});
    EXPECT_THAT(run.out, HasSubstr("Frame rate : 23.976")) << file;
  }
}

}  // namespace
}  // namespace morvellan::test
