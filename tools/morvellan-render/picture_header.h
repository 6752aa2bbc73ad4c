// What a picture says of itself besides its pixels: windows, metadata, time code, frame rate.
#pragma once

#include <string>

#include <OpenImageIO/imageio.h>

#include "host/frame.h"

namespace morvellan::tool
{

// Gives the time code and the frame rate of a header that was read the names and types that they have in EXR:
// smpte:TimeCode and FramesPerSecond. DPX calls the rate otherwise, PNG holds both as texts.
void nameTimes(OIIO::ImageSpec& header);

// The windows and metadata of the picture that a frame was made from, as a file of `format` holds them. `header` and
// `from` are that picture's; `bits` is what a sample of the type uses, 0 for floating point.
OIIO::ImageSpec carriedHeader(const OIIO::ImageSpec& header, const std::string& from, const host::Frame& frame,
                              const std::string& format, int channels, const OIIO::TypeDesc& type, int bits);

}  // namespace morvellan::tool
