// Which metadata goes from one format to another, and under which names.
#include "picture_header.h"

#include <array>
#include <cmath>
#include <functional>
#include <numeric>
#include <regex>
#include <string_view>

#include <fmt/format.h>

namespace morvellan::tool
{
namespace
{

using OIIO::ImageSpec;
using OIIO::TypeDesc;

constexpr const char* timeCode = "smpte:TimeCode";
constexpr const char* frameRate = "FramesPerSecond";

// A time code's first word (SMPTE ST 12-1 as EXR packs it): hours, minutes, seconds and frames as pairs of decimal
// digits, a byte each from the top, and among the frames' bits the flag of a count that drops frame numbers.
constexpr unsigned int dropFrames = 0x40;

// A rate in frames a second as a fraction. Rates just below a whole number are that number by 1000/1001.
std::array<int, 2> ratioOf(float rate)
{
  const auto whole = static_cast<int>(std::lround(rate));
  if (std::abs(rate - static_cast<float>(whole) * 1000.0F / 1001.0F) < 0.002F)
  {
    return {whole * 1000, 1001};
  }
  const int thousandths = static_cast<int>(std::lround(rate * 1000.0F));
  const int shared = std::gcd(thousandths, 1000);
  return {thousandths / shared, 1000 / shared};
}

// DPX calls a frame rate otherwise, and PNG holds texts alone.
void writeTimes(ImageSpec& header, std::string_view format)
{
  std::array<int, 2> ratio{};
  if (format == "dpx" && header.find_attribute("dpx:FrameRate") == nullptr &&
      header.getattribute(frameRate, OIIO::TypeRational, ratio.data()) && ratio[1] != 0)
  {
    header.attribute("dpx:FrameRate", static_cast<float>(ratio[0]) / static_cast<float>(ratio[1]));
  }
  if (format == "png")
  {
    std::array<unsigned int, 2> code{};
    if (header.getattribute(timeCode, OIIO::TypeTimeCode, code.data()))
    {
      header.attribute(timeCode,
                       fmt::format("{:02x}:{:02x}:{:02x}{}{:02x}", code[0] >> 24 & 0x3f, code[0] >> 16 & 0x7f,
                                   code[0] >> 8 & 0x7f, (code[0] & dropFrames) != 0 ? ';' : ':', code[0] & 0x3f));
    }
    if (header.getattribute(frameRate, OIIO::TypeRational, ratio.data()))
    {
      header.attribute(frameRate, fmt::format("{}/{}", ratio[0], ratio[1]));
    }
  }
}

// Takes a text out of the header and reads it, if it is one and has this form.
void readTextOf(ImageSpec& header, const char* name, const std::regex& form,
                const std::function<void(const std::smatch&)>& read)
{
  const OIIO::ParamValue* const found = header.find_attribute(name, TypeDesc::STRING);
  if (found == nullptr)
  {
    return;
  }
  const std::string text = found->get_string();
  header.erase_attribute(name);
  std::smatch match;
  if (std::regex_match(text, match, form))
  {
    read(match);
  }
}

void dropForeignTags(ImageSpec& header, std::string_view from, std::string_view format)
{
  // What describes the input's storage and not its content.
  for (const char* const storage :
       {"oiio:BitsPerSample", "oiio:subimages", "oiio:subimagename", "textureformat", "planarconfig",
        "tiff:PhotometricInterpretation", "tiff:PlanarConfiguration", "tiff:RowsPerStrip", "openexr:levelmode",
        "openexr:lineOrder", "openexr:dwaCompressionLevel", "jpeg:subsampling"})
  {
    header.erase_attribute(storage);
  }
  if (from != format)
  {
    // The same names mean other things in other formats, and a tag of the encoding would alter how values are shown.
    for (const char* const tag : {"compression", "CompressionQuality", "oiio:ColorSpace", "oiio:Gamma"})
    {
      header.erase_attribute(tag);
    }
  }
  if (format == "openexr" || format == "dpx")
  {
    header.erase_attribute("ICCProfile");  // neither format holds one
  }
  if (header.get_string_attribute("IPTC:Creator") == header.get_string_attribute("Artist"))
  {
    header.erase_attribute("IPTC:Creator");  // the library makes one of the artist, beside those that there are
  }
}

}  // namespace

void nameTimes(ImageSpec& header)
{
  readTextOf(header, timeCode, std::regex(R"((\d\d):(\d\d):(\d\d)([:;])(\d\d))"),
             [&](const std::smatch& match)
             {
               const auto field = [&](std::size_t index)
               { return static_cast<unsigned int>(std::stoul(match[index], nullptr, 16)); };
               const unsigned int dropped = match[4] == ";" ? dropFrames : 0;
               const std::array<unsigned int, 2> code{(field(1) & 0x3f) << 24 | (field(2) & 0x7f) << 16 |
                                                          (field(3) & 0x7f) << 8 | (field(5) & 0x3f) | dropped,
                                                      0};
               header.attribute(timeCode, OIIO::TypeTimeCode, code.data());
             });
  readTextOf(header, frameRate, std::regex(R"((\d{1,9})/(\d{1,9}))"),
             [&](const std::smatch& match)
             {
               const std::array<int, 2> ratio{std::stoi(match[1]), std::stoi(match[2])};
               header.attribute(frameRate, OIIO::TypeRational, ratio.data());
             });
  // Rates beyond these limits are no rates: an unset field may hold any bits.
  const float rate = header.get_float_attribute("dpx:FrameRate", header.get_float_attribute("dpx:TemporalFrameRate"));
  if (header.find_attribute(frameRate) == nullptr && rate >= 0.01F && rate <= 100'000.0F)
  {
    header.attribute(frameRate, OIIO::TypeRational, ratioOf(rate).data());
  }
}

ImageSpec carriedHeader(const ImageSpec& header, const std::string& from, const host::Frame& frame,
                        const std::string& format, int channels, const TypeDesc& type, int bits)
{
  ImageSpec carried(frame.width(), frame.height(), channels, type);
  carried.x = header.x;
  carried.y = header.y;
  carried.full_x = header.full_x;
  carried.full_y = header.full_y;
  carried.full_width = header.full_width;
  carried.full_height = header.full_height;
  carried.extra_attribs = header.extra_attribs;
  dropForeignTags(carried, from, format);
  writeTimes(carried, format);
  if (format == "openexr")
  {
    // A lossy compression of the input would change values again.
    const std::string_view kept = carried.get_string_attribute("compression");
    const bool lossless = kept == "none" || kept == "rle" || kept == "zip" || kept == "zips" || kept == "piz";
    carried.attribute("compression", lossless ? std::string(kept) : std::string("zip"));
  }
  if (format == "tiff" && type == TypeDesc::HALF)
  {
    carried.attribute("tiff:half", 1);  // the library would write float
  }
  if (format == "jpeg")
  {
    carried.attribute("jpeg:subsampling", "4:4:4");  // the library would halve colour's resolution
  }
  if (bits == 10)
  {
    carried.attribute("oiio:BitsPerSample", 10);
  }
  if (channels == 4 && format == "png")
  {
    carried.attribute("oiio:UnassociatedAlpha", 1);
  }
  return carried;
}

}  // namespace morvellan::tool
