// Pictures on disk: read into frames and written from them through OpenImageIO, values as they are.
// A picture is written beside its name and renamed when it is whole.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include <OpenImageIO/imageio.h>

#include "host/frame.h"

namespace morvellan::tool
{

enum class OutputDepth
{
  Half,
  Float,
  Uint8,
  Uint10,
  Uint16,
};

std::optional<OutputDepth> outputDepthOf(const std::string& name);

struct Picture
{
  host::Frame frame;       // float, RGB or RGBA, bottom row first, from (0, 0)
  OIIO::ImageSpec header;  // as the file has it: windows, metadata, stored type; times as EXR names them
  std::string format;      // OpenImageIO's name of the file's format
  std::string leftOut;     // what of the file is in neither, for a person to read; empty if nothing
};

// The whole first picture of a file. `components` nothing: RGBA where the file has an alpha, else RGB. One channel
// becomes three equal ones. Throws RenderError.
Picture readPicture(const std::filesystem::path& file, std::optional<host::Components> components);

// What a file of this name can hold. Throws UsageError with the formats there are, or why the request cannot be met.
struct OutputFormat
{
  std::string name;  // OpenImageIO's
  bool alpha;

  // The depth asked for, or the one nearest to what the input stores.
  OutputDepth depthFor(std::optional<OutputDepth> asked, const OIIO::ImageSpec& input) const;
  // Throws UsageError if the format does not hold this depth.
  void require(OutputDepth depth) const;
};

OutputFormat outputFormatOf(const std::filesystem::path& file);

// Writes the frame with the windows and metadata of the picture that it was made from. Throws RenderError and leaves
// nothing behind.
void writePicture(const std::filesystem::path& file, const host::Frame& frame, const Picture& origin,
                  std::optional<OutputDepth> depth);

}  // namespace morvellan::tool
