// Writing of pictures and texts: what each format holds, and whole files or none.
#include "picture.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <fstream>
#include <memory>
#include <numeric>
#include <span>
#include <system_error>
#include <vector>

#include <unistd.h>

#include <OpenImageIO/filesystem.h>
#include <fmt/format.h>

#include "errors.h"

namespace morvellan::tool
{
namespace
{

using host::Frame;
using OIIO::ImageSpec;
using OIIO::TypeDesc;

struct DepthFacts
{
  OutputDepth depth;
  const char* name;
  TypeDesc::BASETYPE type;
  int bits;  // of an unsigned integer; 0 for floating point
};

constexpr std::array<DepthFacts, 5> depthTable{{
    {OutputDepth::Half, "half", TypeDesc::HALF, 0},
    {OutputDepth::Float, "float", TypeDesc::FLOAT, 0},
    {OutputDepth::Uint8, "uint8", TypeDesc::UINT8, 8},
    {OutputDepth::Uint10, "uint10", TypeDesc::UINT16, 10},
    {OutputDepth::Uint16, "uint16", TypeDesc::UINT16, 16},
}};

const DepthFacts& factsOf(OutputDepth depth)
{
  return depthTable[static_cast<std::size_t>(depth)];
}

struct FormatFacts
{
  const char* name;
  std::vector<const char*> extensions;
  bool alpha;
  std::vector<OutputDepth> depths;  // the finest last
};

const std::vector<FormatFacts>& formatTable()
{
  using enum OutputDepth;
  static const std::vector<FormatFacts> table{
      {"openexr", {".exr"}, true, {Half, Float}},
      {"dpx", {".dpx"}, true, {Uint8, Uint10, Uint16}},
      {"tiff", {".tif", ".tiff"}, true, {Uint8, Uint10, Uint16, Half, Float}},
      {"png", {".png"}, true, {Uint8, Uint16}},
      {"jpeg", {".jpg", ".jpeg"}, false, {Uint8}},
  };
  return table;
}

const FormatFacts& formatNamed(const std::string& name)
{
  return *std::find_if(formatTable().begin(), formatTable().end(),
                       [&](const auto& format) { return format.name == name; });
}

// A value of 0 to 1 as an integer of so many bits, to the nearest; not a number counts as 0.
unsigned int quantised(float value, int bits)
{
  const auto greatest = static_cast<float>((1U << static_cast<unsigned int>(bits)) - 1U);
  return value > 0.0F ? static_cast<unsigned int>(std::lround(std::min(value, 1.0F) * greatest)) : 0U;
}

// One row's values in the memory layout of the output, appended.
void append(std::vector<unsigned char>& bytes, float value, const DepthFacts& depth)
{
  const auto put = [&bytes](auto number)
  {
    const auto* const raw = reinterpret_cast<const unsigned char*>(&number);
    bytes.insert(bytes.end(), raw, raw + sizeof(number));
  };
  switch (depth.bits)
  {
  case 0:
    put(value);
    break;
  case 8:
    put(static_cast<std::uint8_t>(quantised(value, 8)));
    break;
  case 10:
  {
    // Ten bits in the upper end of sixteen, the lower end repeating them: what a ten-bit file is written from.
    const unsigned int code = quantised(value, 10);
    put(static_cast<std::uint16_t>((code << 6U) | (code >> 4U)));
    break;
  }
  default:
    put(static_cast<std::uint16_t>(quantised(value, 16)));
  }
}

std::vector<unsigned char> packed(const Frame& frame, int channels, const DepthFacts& depth)
{
  const int own = host::countOf(frame.layout().components);
  std::vector<unsigned char> bytes;
  bytes.reserve(static_cast<std::size_t>(frame.width()) * static_cast<std::size_t>(frame.height()) *
                static_cast<std::size_t>(channels) * sizeof(float));
  for (int y = frame.height() - 1; y >= 0; --y)
  {
    const std::span<float> row = frame.row(frame.layout().bounds.y1 + y);
    for (std::size_t pixel = 0; pixel < row.size(); pixel += static_cast<std::size_t>(own))
    {
      for (std::size_t channel = 0; channel < static_cast<std::size_t>(channels); ++channel)
      {
        append(bytes, row[pixel + channel], depth);
      }
    }
  }
  return bytes;
}

// A frame rate stands under another name in DPX than elsewhere.
void carryFrameRate(ImageSpec& header, std::string_view format)
{
  std::array<int, 2> ratio{};
  if (format == "dpx" && header.getattribute("FramesPerSecond", OIIO::TypeRational, ratio.data()) && ratio[1] != 0)
  {
    header.attribute("dpx:FrameRate", static_cast<float>(ratio[0]) / static_cast<float>(ratio[1]));
  }
  const float rate = header.get_float_attribute("dpx:FrameRate", header.get_float_attribute("dpx:TemporalFrameRate"));
  if (format == "openexr" && header.find_attribute("FramesPerSecond") == nullptr && std::isfinite(rate) && rate > 0.0F)
  {
    // Rates just below a whole number are that number by 1000/1001.
    const auto whole = static_cast<int>(std::lround(rate));
    const bool pulled = std::abs(rate - static_cast<float>(whole) * 1000.0F / 1001.0F) < 0.002F;
    const int thousandths = static_cast<int>(std::lround(rate * 1000.0F));
    const int shared = std::gcd(thousandths, 1000);
    ratio = pulled ? std::array{whole * 1000, 1001} : std::array{thousandths / shared, 1000 / shared};
    header.attribute("FramesPerSecond", OIIO::TypeRational, ratio.data());
  }
}

void dropForeignTags(ImageSpec& header, const Picture& origin, std::string_view format)
{
  // What describes the input's storage and not its content.
  for (const char* const storage :
       {"oiio:BitsPerSample", "oiio:subimages", "oiio:subimagename", "textureformat", "planarconfig",
        "tiff:PhotometricInterpretation", "tiff:PlanarConfiguration", "tiff:RowsPerStrip", "openexr:levelmode",
        "openexr:lineOrder", "openexr:dwaCompressionLevel", "jpeg:subsampling"})
  {
    header.erase_attribute(storage);
  }
  if (origin.format != format)
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
}

ImageSpec outputSpec(const Frame& frame, const Picture& origin, const FormatFacts& format, int channels,
                     const DepthFacts& depth)
{
  ImageSpec header(frame.width(), frame.height(), channels, depth.type);
  header.x = origin.header.x;
  header.y = origin.header.y;
  header.full_x = origin.header.full_x;
  header.full_y = origin.header.full_y;
  header.full_width = origin.header.full_width;
  header.full_height = origin.header.full_height;
  header.extra_attribs = origin.header.extra_attribs;
  dropForeignTags(header, origin, format.name);
  carryFrameRate(header, format.name);
  if (std::string_view(format.name) == "openexr")
  {
    // A lossy compression of the input would change values again.
    const std::string_view kept = header.get_string_attribute("compression");
    const bool lossless = kept == "none" || kept == "rle" || kept == "zip" || kept == "zips" || kept == "piz";
    header.attribute("compression", lossless ? std::string(kept) : std::string("zip"));
  }
  if (depth.bits == 10)
  {
    header.attribute("oiio:BitsPerSample", 10);
  }
  if (channels == 4 && std::string_view(format.name) == "png")
  {
    header.attribute("oiio:UnassociatedAlpha", 1);
  }
  return header;
}

// Puts these bytes in the file's place, or leaves what is there. They go beside it first, under a name of their own.
void replaceFile(const std::filesystem::path& file, std::span<const unsigned char> bytes)
{
  const std::filesystem::path beside =
      file.parent_path() / fmt::format(".{}.partial-{}{}", file.stem().string(), getpid(), file.extension().string());
  std::ofstream stream(beside, std::ios::binary);
  stream.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  stream.close();
  std::error_code failure;
  if (stream)
  {
    std::filesystem::rename(beside, file, failure);
    if (!failure)
    {
      return;
    }
  }
  std::error_code ignored;
  std::filesystem::remove(beside, ignored);
  throw RenderError(fmt::format("{} cannot be written{}; choose a folder that can be and has room", file.string(),
                                failure ? ": " + failure.message() : ""));
}

}  // namespace

std::optional<OutputDepth> outputDepthOf(const std::string& name)
{
  for (const DepthFacts& facts : depthTable)
  {
    if (name == facts.name)
    {
      return facts.depth;
    }
  }
  return std::nullopt;
}

OutputFormat outputFormatOf(const std::filesystem::path& file)
{
  std::string extension = file.extension().string();
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](char letter) { return static_cast<char>(std::tolower(static_cast<unsigned char>(letter))); });
  for (const FormatFacts& format : formatTable())
  {
    if (std::find(format.extensions.begin(), format.extensions.end(), extension) != format.extensions.end())
    {
      return {format.name, format.alpha};
    }
  }
  throw UsageError(
      fmt::format("{} is of no format that is written; end the name in .exr, .dpx, .tif, .png or .jpg", file.string()));
}

void OutputFormat::require(OutputDepth depth) const
{
  const auto& depths = formatNamed(name).depths;
  if (std::find(depths.begin(), depths.end(), depth) == depths.end())
  {
    std::vector<const char*> names;
    names.reserve(depths.size());
    for (const OutputDepth held : depths)
    {
      names.push_back(factsOf(held).name);
    }
    throw UsageError(
        fmt::format("{} does not hold {}; use --depth {}", name, factsOf(depth).name, fmt::join(names, " or ")));
  }
}

OutputDepth OutputFormat::depthFor(std::optional<OutputDepth> asked, const ImageSpec& input) const
{
  if (asked)
  {
    return *asked;
  }
  OutputDepth stored = OutputDepth::Float;
  switch (input.format.basetype)
  {
  case TypeDesc::HALF:
    stored = OutputDepth::Half;
    break;
  case TypeDesc::UINT8:
    stored = OutputDepth::Uint8;
    break;
  case TypeDesc::UINT16:
    stored = input.get_int_attribute("oiio:BitsPerSample") == 10 ? OutputDepth::Uint10 : OutputDepth::Uint16;
    break;
  default:
    break;
  }
  const auto& depths = formatNamed(name).depths;
  return std::find(depths.begin(), depths.end(), stored) != depths.end() ? stored : depths.back();
}

// The picture is encoded in memory first. A file that cannot take it whole is then noticed here, for every format: the
// libraries of some say nothing of a full disk, or end the process.
void writePicture(const std::filesystem::path& file, const Frame& frame, const Picture& origin,
                  std::optional<OutputDepth> depth)
{
  const OutputFormat format = outputFormatOf(file);
  const DepthFacts& facts = factsOf(format.depthFor(depth, origin.header));
  const int channels = format.alpha ? host::countOf(frame.layout().components) : 3;
  const ImageSpec header = outputSpec(frame, origin, formatNamed(format.name), channels, facts);
  std::vector<unsigned char> encoded;
  OIIO::Filesystem::IOVecOutput memory(encoded);
  auto output = OIIO::ImageOutput::create(format.name);
  const auto fail = [&](const std::string& why)
  { throw RenderError(fmt::format("{} cannot be written{}", file.string(), because(why))); };
  if (output == nullptr)
  {
    fail(OIIO::geterror());
  }
  output->set_ioproxy(&memory);
  if (!output->open(file.string(), header))
  {
    fail(output->geterror());
  }
  const std::vector<unsigned char> bytes = packed(frame, channels, facts);
  const TypeDesc type(facts.bits == 0 ? TypeDesc::FLOAT : facts.type);
  if (!output->write_image(type, bytes.data()) || !output->close())
  {
    fail(output->geterror());
  }
  replaceFile(file, encoded);
}

void writeText(const std::filesystem::path& file, const std::string& text)
{
  replaceFile(file, {reinterpret_cast<const unsigned char*>(text.data()), text.size()});
}

void prepareFolderOf(const std::filesystem::path& file)
{
  const std::filesystem::path folder = file.has_parent_path() ? file.parent_path() : ".";
  std::error_code failure;
  std::filesystem::create_directories(folder, failure);
  if (!std::filesystem::is_directory(folder, failure) || access(folder.c_str(), W_OK | X_OK) != 0)
  {
    throw RenderError(fmt::format("the output folder {} cannot be written; choose another or change its permissions",
                                  folder.string()));
  }
  if (std::filesystem::is_directory(file, failure))
  {
    throw RenderError(fmt::format("the output {} is a folder; give a file's name", file.string()));
  }
}

}  // namespace morvellan::tool
