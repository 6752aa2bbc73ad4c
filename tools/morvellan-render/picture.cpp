// Reading of pictures.
#include "picture.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <fstream>
#include <iterator>
#include <memory>
#include <system_error>
#include <vector>

#include <fmt/format.h>

#include "errors.h"

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
  return tail.find("IEND") == std::string::npos;
}

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

std::unique_ptr<OIIO::ImageInput> openPicture(const std::filesystem::path& file)
{
  std::error_code failure;
  if (!std::filesystem::exists(file, failure))
  {
    throw RenderError(fmt::format("{} does not exist", file.string()));
  }
  if (std::filesystem::is_directory(file, failure))
  {
    throw RenderError(fmt::format("{} is a folder, not a picture", file.string()));
  }
  if (lacksPngEnd(file))
  {
    throw RenderError(fmt::format("{} is damaged or truncated: its end is missing", file.string()));
  }
  ImageSpec hints;
  hints.attribute("oiio:UnassociatedAlpha", 1);  // colours stay as they are stored, not multiplied by the alpha
  auto input = OIIO::ImageInput::open(file.string(), &hints);
  if (input == nullptr)
  {
    throw RenderError(fmt::format("{} cannot be read as a picture{}", file.string(), because(OIIO::geterror())));
  }
  const ImageSpec& spec = input->spec();
  if (spec.deep || spec.depth > 1 || spec.nchannels < 1)
  {
    throw RenderError(fmt::format("{} holds deep or volume data, not a flat picture", file.string()));
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

}  // namespace

Picture readPicture(const std::filesystem::path& file, std::optional<Components> components)
{
  const auto input = openPicture(file);
  const ImageSpec spec = input->spec();
  std::array<int, 4> channels = channelsOf(spec);
  const Components chosen = components.value_or(channels[3] >= 0 ? Components::Rgba : Components::Rgb);
  std::vector<float> pixels(spec.image_pixels() * static_cast<std::size_t>(spec.nchannels));
  const bool read = input->read_image(0, 0, 0, spec.nchannels, TypeDesc::FLOAT, pixels.data());
  // Some readers say that they succeeded and leave the rows that are missing black; they do say why.
  if (const std::string reasons = input->geterror(); !read || !reasons.empty())
  {
    throw RenderError(fmt::format("{} is damaged or truncated{}", file.string(), because(reasons)));
  }
  Frame frame({.bounds = {0, 0, spec.width, spec.height}, .components = chosen});
  arrange(pixels, spec, channels, frame);
  return {frame, spec, input->format_name()};
}

}  // namespace morvellan::tool
