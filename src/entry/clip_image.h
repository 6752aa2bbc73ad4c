// Clips of an instance, and the images that they give: a handle to pixels of the host, released when it goes out of
// scope.
#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "entry/property_set.h"
#include "ofx/ofxImageEffect.h"

namespace OFX
{

/// The numbers of RGBA and RGB are relied upon by the render entry.
enum class PixelComponents
{
  None = 0,
  RGBA = 1,
  RGB = 2,
  Alpha = 3,
  Custom = 4,  // a kind of the host that the standard does not name
};

enum class BitDepth
{
  None,
  UByte,
  UShort,
  Half,
  Float,
  Custom,
};

PixelComponents componentsFromName(const std::string& name);
BitDepth bitDepthFromName(const std::string& name);

/// Channels of a pixel; 0 for None and Custom.
int channelCount(PixelComponents components);

/// Bytes of one channel; 0 for None and Custom.
std::size_t bytesPerChannel(BitDepth depth);

/// An image of a clip. Its properties are read once, when it is made; the pixels stay the host's.
class Image
{
public:
  /// Takes over an image that the host has handed out, and gives it back in the destructor.
  explicit Image(OfxPropertySetHandle handle);
  ~Image();
  Image(const Image&) = delete;
  Image& operator=(const Image&) = delete;

  /// Null where the host has no pixels.
  void* pixelData() const { return data_; }
  const OfxRectI& bounds() const { return bounds_; }
  PixelComponents components() const { return components_; }
  BitDepth depth() const { return depth_; }
  /// Distance of two rows in bytes; negative where rows go downwards in memory.
  std::ptrdiff_t rowBytes() const { return rowBytes_; }
  OfxPointD renderScale() const { return renderScale_; }

private:
  PropertySet properties_;
  void* data_ = nullptr;
  OfxRectI bounds_{};
  PixelComponents components_ = PixelComponents::None;
  BitDepth depth_ = BitDepth::None;
  std::ptrdiff_t rowBytes_ = 0;
  OfxPointD renderScale_{1.0, 1.0};
};

class Clip
{
public:
  Clip() = default;
  Clip(OfxImageClipHandle handle, PropertySet properties) : handle_(handle), properties_(properties) {}

  explicit operator bool() const { return handle_ != nullptr; }
  bool isConnected() const;
  /// As the host says it; 0 where it does not know.
  double pixelAspectRatio() const;
  /// The region in canonical coordinates. kOfxStatFailed is an empty region; other failures raise Exception::Suite.
  OfxRectD regionOfDefinition(double time) const;
  /// Null where the host has none at that time.
  std::unique_ptr<Image> fetchImage(double time) const;
  const PropertySet& properties() const { return properties_; }

private:
  OfxImageClipHandle handle_ = nullptr;
  PropertySet properties_;
};

}  // namespace OFX
