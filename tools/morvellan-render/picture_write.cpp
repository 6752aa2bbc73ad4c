// Writing of pictures: what each format holds, and its bytes.
#include "picture.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <fstream>
#include <iterator>
#include <memory>
#include <span>
#include <stdexcept>
#include <vector>

#include <sys/mman.h>
#include <unistd.h>

#include <OpenImageIO/filesystem.h>
#include <fmt/format.h>

#include "errors.h"
#include "picture_header.h"
#include "whole_file.h"

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

class EncodingError : public std::runtime_error
{
public:
  using std::runtime_error::runtime_error;
};

// A file without a name, in memory.
class AnonymousFile
{
public:
  AnonymousFile() : descriptor_(memfd_create("picture", MFD_CLOEXEC)) {}
  ~AnonymousFile() { close(descriptor_); }
  AnonymousFile(const AnonymousFile&) = delete;
  AnonymousFile& operator=(const AnonymousFile&) = delete;

  std::string path() const { return fmt::format("/proc/self/fd/{}", descriptor_); }

  std::vector<unsigned char> bytes() const
  {
    std::ifstream stream(path(), std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }

private:
  int descriptor_;
};

// The bytes of a file of this format. Throws EncodingError.
std::vector<unsigned char> encoded(const std::string& format, const std::string& name, const ImageSpec& header,
                                   const TypeDesc& type, const std::vector<unsigned char>& pixels)
{
  const auto output = OIIO::ImageOutput::create(format);
  if (output == nullptr)
  {
    throw EncodingError(OIIO::geterror());
  }
  // TIFF reads what it wrote, to add the directory of an exposure; the library's own memory cannot be read.
  const bool isRead = format == "tiff";
  const AnonymousFile file;
  std::vector<unsigned char> bytes;
  OIIO::Filesystem::IOVecOutput memory(bytes);
  if (!isRead)
  {
    output->set_ioproxy(&memory);
  }
  if (!output->open(isRead ? file.path() : name, header) || !output->write_image(type, pixels.data()) ||
      !output->close())
  {
    throw EncodingError(output->geterror());
  }
  return isRead ? file.bytes() : bytes;
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
  const ImageSpec header =
      carriedHeader(origin.header, origin.format, frame, format.name, channels, facts.type, facts.bits);
  const std::vector<unsigned char> pixels = packed(frame, channels, facts);
  try
  {
    replaceFile(file, encoded(format.name, file, header, facts.bits == 0 ? TypeDesc::FLOAT : facts.type, pixels));
  }
  catch (const EncodingError& error)
  {
    throw RenderError(fmt::format("{} cannot be written{}", file.string(), because(error.what())));
  }
}

}  // namespace morvellan::tool
