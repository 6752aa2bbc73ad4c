// Clip and image calls of the image effect suite.
#include "entry/clip_image.h"

#include "entry/exceptions.h"
#include "entry/log.h"
#include "entry/suites.h"

namespace OFX
{

PixelComponents componentsFromName(const std::string& name)
{
  if (name == kOfxImageComponentRGBA)
    return PixelComponents::RGBA;
  if (name == kOfxImageComponentRGB)
    return PixelComponents::RGB;
  if (name == kOfxImageComponentAlpha)
    return PixelComponents::Alpha;
  return name == kOfxImageComponentNone || name.empty() ? PixelComponents::None : PixelComponents::Custom;
}

BitDepth bitDepthFromName(const std::string& name)
{
  if (name == kOfxBitDepthFloat)
    return BitDepth::Float;
  if (name == kOfxBitDepthHalf)
    return BitDepth::Half;
  if (name == kOfxBitDepthShort)
    return BitDepth::UShort;
  if (name == kOfxBitDepthByte)
    return BitDepth::UByte;
  return name == kOfxBitDepthNone || name.empty() ? BitDepth::None : BitDepth::Custom;
}

int channelCount(PixelComponents components)
{
  switch (components)
  {
  case PixelComponents::RGBA:
    return 4;
  case PixelComponents::RGB:
    return 3;
  case PixelComponents::Alpha:
    return 1;
  default:
    return 0;
  }
}

std::size_t bytesPerChannel(BitDepth depth)
{
  switch (depth)
  {
  case BitDepth::UByte:
    return 1;
  case BitDepth::UShort:
  case BitDepth::Half:
    return 2;
  case BitDepth::Float:
    return 4;
  default:
    return 0;
  }
}

Image::Image(OfxPropertySetHandle handle) : properties_(handle)
{
  try
  {
    data_ = properties_.getPointer(kOfxImagePropData);
    bounds_.x1 = properties_.getInt(kOfxImagePropBounds, 0);
    bounds_.y1 = properties_.getInt(kOfxImagePropBounds, 1);
    bounds_.x2 = properties_.getInt(kOfxImagePropBounds, 2);
    bounds_.y2 = properties_.getInt(kOfxImagePropBounds, 3);
    components_ = componentsFromName(properties_.getString(kOfxImageEffectPropComponents));
    depth_ = bitDepthFromName(properties_.getString(kOfxImageEffectPropPixelDepth));
    rowBytes_ = properties_.getInt(kOfxImagePropRowBytes);
    renderScale_.x = properties_.findDouble(kOfxImageEffectPropRenderScale, 0).value_or(1.0);
    renderScale_.y = properties_.findDouble(kOfxImageEffectPropRenderScale, 1).value_or(1.0);
  }
  catch (...)
  {
    suites().effect->clipReleaseImage(handle);
    throw;
  }
}

Image::~Image()
{
  suites().effect->clipReleaseImage(properties_.handle());
}

bool Clip::isConnected() const
{
  return properties_.getInt(kOfxImageClipPropConnected) != 0;
}

double Clip::pixelAspectRatio() const
{
  return properties_.getDouble(kOfxImagePropPixelAspectRatio);
}

OfxRectD Clip::regionOfDefinition(double time) const
{
  OfxRectD region{0.0, 0.0, 0.0, 0.0};
  const OfxStatus status = suites().effect->clipGetRegionOfDefinition(handle_, time, &region);
  if (status == kOfxStatOK)
    return region;
  Log::error("Failed on getting the region of definition of a clip, host returned status {};", statusName(status));
  if (status != kOfxStatFailed)
    throw Exception::Suite(status);
  return {0.0, 0.0, 0.0, 0.0};
}

std::unique_ptr<Image> Clip::fetchImage(double time) const
{
  OfxPropertySetHandle handle = nullptr;
  const OfxStatus status = suites().effect->clipGetImage(handle_, time, nullptr, &handle);
  if (status == kOfxStatFailed || (status == kOfxStatOK && handle == nullptr))
    return nullptr;  // the host's way to say that there is no image at this time
  throwIfFailed(status);
  return std::make_unique<Image>(handle);
}

}  // namespace OFX
