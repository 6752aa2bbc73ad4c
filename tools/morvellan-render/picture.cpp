// Reading of pictures.
#include "picture.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <memory>
#include <system_error>
#include <vector>

#include <OpenImageIO/filesystem.h>
#include <fmt/format.h>

#include "errors.h"
#include "picture_header.h"

namespace morvellan::tool
{
namespace
{

using host::Components;
using host::Frame;
using OIIO::ImageSpec;
using OIIO::TypeDesc;

// The library that reads PNG writes to standard error by itself where the file ends early.
bool lacksPngEnd(const std::filesystem::path& file)
{
  std::ifstream stream(file, std::ios::binary);
  std::array<char, 8> signature{};
  stream.read(signature.data(), signature.size());
  if (!stream || std::string_view(signature.data() + 1, 3) != "PNG")
  {
    return false;
  }
  constexpr std::streamoff searched = 4096;
  stream.seekg(0, std::ios::end);
  stream.seekg(std::max<std::streamoff>(0, static_cast<std::streamoff>(stream.tellg()) - searched));
  const std::string tail{std::istreambuf_iterator<char>(stream), {}};
  return tail.find("IEND\xAE\x42\x60\x82") == std::string::npos;  // the last chunk with its check sum
}

bool isDpx(const std::filesystem::path& file)
{
  std::array<char, 4> magic{};
  std::ifstream(file, std::ios::binary).read(magic.data(), magic.size());
  const std::string_view read(magic.data(), magic.size());
  return read == "SDPX" || read == "XPDS";
}

// A file that notices when more is asked of it than it has. The library's reader of DPX fills up the rows of a
// truncated ten-bit picture without a word.
class MeasuredFile : public OIIO::Filesystem::IOFile
{
public:
  explicit MeasuredFile(const std::filesystem::path& file) : IOFile(file.string(), Read) {}

  bool wasTooShort() const { return wasTooShort_; }

  std::size_t read(void* target, std::size_t count) override { return noting(IOFile::read(target, count), count); }
  std::size_t pread(void* target, std::size_t count, std::int64_t offset) override
  {
    return noting(IOFile::pread(target, count, offset), count);
  }

private:
  std::size_t noting(std::size_t got, std::size_t wanted)
  {
    wasTooShort_ = wasTooShort_ || got < wanted;
    return got;
  }

  bool wasTooShort_ = false;
};

int channelNamed(const ImageSpec& spec, std::string_view name)
{
  for (int channel = 0; channel < spec.nchannels; ++channel)
  {
    const std::string own = spec.channel_name(channel);
    if (own.size() == name.size() &&
        std::equal(own.begin(), own.end(), name.begin(),
                   [](char a, char b) { return std::toupper(static_cast<unsigned char>(a)) == b; }))
    {
      return channel;
    }
  }
  return -1;
}

// The file's channels that become red, green, blue and alpha; -1 for an alpha that there is not.
std::array<int, 4> channelsOf(const ImageSpec& spec)
{
  std::array<int, 4> channels{channelNamed(spec, "R"), channelNamed(spec, "G"), channelNamed(spec, "B"),
                              channelNamed(spec, "A")};
  if (channels[0] < 0 || channels[1] < 0 || channels[2] < 0)
  {
    const bool grey = spec.nchannels < 3;
    channels = {0, grey ? 0 : 1, grey ? 0 : 2, spec.alpha_channel};
    if (channels[3] < 0 && (spec.nchannels == 2 || spec.nchannels == 4))
    {
      channels[3] = spec.nchannels - 1;
    }
  }
  return channels;
}

[[noreturn]] void refuseDamaged(const std::filesystem::path& file, const std::string& reasons)
{
  throw RenderError(fmt::format("{} is damaged or truncated{}; copy or make it anew", file.string(), because(reasons)));
}

// Reads through `measured` where there is one.
std::unique_ptr<OIIO::ImageInput> openPicture(const std::filesystem::path& file, MeasuredFile* measured)
{
  std::error_code failure;
  if (!std::filesystem::exists(file, failure))
  {
    throw RenderError(fmt::format("{} does not exist; check the name", file.string()));
  }
  if (std::filesystem::is_directory(file, failure))
  {
    throw RenderError(fmt::format("{} is a folder; give a picture's name", file.string()));
  }
  if (lacksPngEnd(file))
  {
    refuseDamaged(file, "its end is missing");
  }
  ImageSpec hints;
  hints.attribute("oiio:UnassociatedAlpha", 1);  // colours stay as they are stored, not multiplied by the alpha
  if (measured != nullptr)
  {
    OIIO::Filesystem::IOProxy* const proxy = measured;
    hints.attribute("oiio:ioproxy", OIIO::TypeDesc::PTR, &proxy);
  }
  auto input = OIIO::ImageInput::open(file.string(), &hints);
  if (input == nullptr)
  {
    throw RenderError(fmt::format("{} cannot be read as a picture{}; check its format and its permissions",
                                  file.string(), because(OIIO::geterror())));
  }
  const ImageSpec& spec = input->spec();
  if (spec.deep || spec.depth > 1 || spec.nchannels < 1)
  {
    throw RenderError(fmt::format("{} holds deep or volume data; flatten it first", file.string()));
  }
  return input;
}

// Copies the wanted channels of interleaved rows, top first, into a frame.
void arrange(const std::vector<float>& pixels, const ImageSpec& spec, const std::array<int, 4>& channels,
             const Frame& frame)
{
  const auto stored = static_cast<std::size_t>(spec.nchannels);
  const auto wanted = static_cast<std::size_t>(host::countOf(frame.layout().components));
  const auto width = static_cast<std::size_t>(spec.width);
  for (int line = 0; line < spec.height; ++line)
  {
    const float* source = pixels.data() + static_cast<std::size_t>(line) * width * stored;
    const std::span<float> row = frame.row(spec.height - 1 - line);
    for (std::size_t x = 0; x < width; ++x, source += stored)
    {
      for (std::size_t channel = 0; channel < wanted; ++channel)
      {
        row[x * wanted + channel] = channels[channel] < 0 ? 1.0F : source[channels[channel]];
      }
    }
  }
}

// After the first picture was read.
std::string leftOutOf(OIIO::ImageInput& input, const std::array<int, 4>& channels)
{
  const ImageSpec spec = input.spec();
  std::vector<std::string> left;
  for (int channel = 0; channel < spec.nchannels; ++channel)
  {
    if (std::find(channels.begin(), channels.end(), channel) == channels.end())
    {
      left.push_back("channel " + std::string(spec.channel_name(channel)));
    }
  }
  constexpr std::size_t named = 4;
  if (left.size() > named)
  {
    const std::size_t more = left.size() - named;
    left.resize(named);
    left.push_back(fmt::format("{} more channels", more));
  }
  if (input.seek_subimage(1, 0))
  {
    left.emplace_back("all parts but the first");
  }
  return fmt::format("{}", fmt::join(left, ", "));
}

Picture readAsStored(const std::filesystem::path& file, std::optional<Components> components)
{
  const auto measured = isDpx(file) ? std::make_unique<MeasuredFile>(file) : nullptr;
  const auto input = openPicture(file, measured.get());
  const ImageSpec spec = input->spec();
  std::array<int, 4> channels = channelsOf(spec);
  const Components chosen = components.value_or(channels[3] >= 0 ? Components::Rgba : Components::Rgb);
  std::vector<float> pixels(spec.image_pixels() * static_cast<std::size_t>(spec.nchannels));
  const bool read = input->read_image(0, 0, 0, spec.nchannels, TypeDesc::FLOAT, pixels.data());
  // Some readers say that they succeeded and leave the rows that are missing black; they do say why.
  const bool tooShort = measured != nullptr && measured->wasTooShort();
  if (const std::string reasons = input->geterror(); !read || tooShort || !reasons.empty())
  {
    refuseDamaged(file, reasons);
  }
  Frame frame({.bounds = {0, 0, spec.width, spec.height}, .components = chosen});
  arrange(pixels, spec, channels, frame);
  return {frame, spec, input->format_name(), leftOutOf(*input, channels)};
}

}  // namespace

Picture readPicture(const std::filesystem::path& file, std::optional<Components> components)
{
  Picture picture = readAsStored(file, components);
  nameTimes(picture.header);
  return picture;
}

}  // namespace morvellan::tool
