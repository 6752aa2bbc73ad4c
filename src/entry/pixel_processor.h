// A job over the rows of an image, spread over the host's threads, and the one that fills with black.
#pragma once

#include "entry/clip_image.h"
#include "entry/image_effect.h"
#include "entry/multi_thread.h"

namespace OFX
{

/// Deals the rows of a window of the destination to the threads. A window that reaches beyond the destination's bounds
/// is cut to them.
class PixelProcessor : public MultiThread::Processor
{
public:
  explicit PixelProcessor(const ImageEffect& effect) : effect_(effect) {}

  void setDestination(const Image& image);
  void setRenderWindow(const OfxRectI& window) { window_ = window; }

  /// Does the whole window. Nothing is done where it is empty or the destination has no pixels.
  void process();

  void multiThreadFunction(unsigned int threadId, unsigned int threadCount) final;

  /// The share of one thread: whole rows of the window.
  virtual void processRows(const OfxRectI& rows) = 0;

protected:
  const ImageEffect& effect() const { return effect_; }
  /// The first byte of a row at `x`, both in pixel coordinates within the destination's bounds.
  std::byte* destination(int x, int y) const;
  std::size_t bytesPerPixel() const { return bytesPerPixel_; }

private:
  const ImageEffect& effect_;
  OfxRectI window_{};
  OfxRectI bounds_{};
  std::byte* data_ = nullptr;
  std::ptrdiff_t rowBytes_ = 0;
  std::size_t bytesPerPixel_ = 0;
};

/// Zero in every channel, of whatever depth: transparent black.
class BlackFiller : public PixelProcessor
{
public:
  /// `components`: channels of a pixel, 4 for RGBA and 3 for RGB.
  BlackFiller(const ImageEffect& effect, int components) : PixelProcessor(effect), components_(components) {}
  void processRows(const OfxRectI& rows) override;
  int components() const { return components_; }

private:
  int components_;
};

}  // namespace OFX
