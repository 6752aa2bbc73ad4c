// The resampler: Lanczos with three lobes on RGBA floats, rows first, then columns.
// One filter serves enlargement and reduction: six taps at any scale, so a reduction is not antialiased.
//
// Filter: C. Lanczos' sigma factors as a window, K. Turkowski, "Filters for common resampling tasks", Graphics Gems
// (1990). A target sample x stands at (x + 0.5) * source / target - 0.5; its weights are normalised to sum 1; samples
// past an edge repeat the edge; nothing is clamped. Alpha is filtered as colour is.
#pragma once

#include "pipeline/host/image_view.h"
#include "pipeline/host/resize_weights.h"

#include <cstddef>

namespace morvellan
{

enum class ResizeStatus
{
  notPrepared,
  ready,
  badSize,  // a width or height below 1, or an image without pixels
  done
};

// One image, resampled by the calling thread.
class Resize
{
public:
  Resize() = default;
  Resize(const Resize&) = delete;
  Resize& operator=(const Resize&) = delete;
  virtual ~Resize() = default;

  // Takes the two images, which must live until run has returned and may not overlap, and computes the weights of both
  // axes.
  virtual void prepare(const ConstImageView& source, const ImageView& target);

  // Resamples. Without a successful prepare it does nothing.
  virtual void run();

  ResizeStatus status() const { return state; }

protected:
  friend class ResizeTBBTask;

  // Resamples the target pixels of columns x0 to x1 and rows y0 to y1, in strips; scratch holds scratchFloats floats.
  void resampleTile(int x0, int x1, int y0, int y1, float* scratch) const;

  static constexpr int stripWidth = 4096;  // pixels: the rows kept of a strip stay in the second-level cache
  static constexpr int rowsKept = 8;       // a power of two that holds the taps of an output row
  static std::size_t scratchFloats();

  ResizeStatus state = ResizeStatus::notPrepared;
  ConstImageView source{};
  ImageView target{};
  FilterAxis columns;  // how target columns come from source columns
  FilterAxis rows;
};

// The same image cut into tiles for all cores; equal to Resize to the bit.
class ResizeTBB : public Resize
{
public:
  // Throws std::runtime_error when the scratch memory pool cannot be made.
  void run() override;
};

}  // namespace morvellan
