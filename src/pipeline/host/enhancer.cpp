// Tables and horizontal pass of the spatial enhancer.
#include "pipeline/host/enhancer.h"

#include "pipeline/host/lines.h"

#include <algorithm>

#include <tbb/parallel_for.h>

namespace morvellan
{

EnhancerAmounts enhancerAmounts(const FrameParams& params)
{
  const double ratioX = static_cast<double>(params.targetWidth) / params.sourceWidth;
  const double ratioY = static_cast<double>(params.targetHeight) / params.sourceHeight;
  const bool grain = !params.grainBypassed && params.grainChannelCount != 0;
  const double scale = std::max(ratioX, ratioY) * (grain ? 1.8 : 1.6);
  return {static_cast<float>(params.enhancerHorizontal * scale), static_cast<float>(params.enhancerVertical * scale)};
}

EnhancerAxis enhancerAxis(int samples, float amount, const unsigned char* productTable)
{
  EnhancerAxis axis;
  if (amount == 0.0f)
  {
    axis.step = {1};
    return axis;
  }
  const auto count = static_cast<std::size_t>(samples);
  axis.step.reserve(count);
  axis.frac.reserve(count);
  axis.curve.reserve(count);
  const float weight = amount * 0.00392156886f;
  int remainder = 0;
  for (int i = 0; i < samples; ++i)
  {
    const int sum = remainder + samples + 1;
    remainder = sum % samples;
    const float frac = static_cast<float>(remainder) / static_cast<float>(samples);
    const int level = static_cast<int>(frac * 255.0f);
    const int larger = std::max(level, 255 - level);
    axis.step.push_back(sum / samples);
    axis.frac.push_back(frac);
    axis.curve.push_back(static_cast<float>(productTable[larger * 256 + (255 - larger)]) * weight);
  }
  return axis;
}

std::vector<EnhancerRow> enhancerRows(const EnhancerAxis& axis)
{
  const int outputs = static_cast<int>(axis.frac.size());
  const int lastRow = outputs;
  const auto held = [&](int row) { return std::clamp(row, 0, lastRow); };
  std::vector<EnhancerRow> rows;
  rows.reserve(axis.frac.size());
  rows.push_back({.im = 0, .i0 = 0, .i1 = held(1), .ip = held(2), .curve = 0.0f, .frac = 0.0f});
  int row = 0;
  for (std::size_t i = 0; i + 1 < axis.frac.size(); ++i)
  {
    row += axis.step[i];
    rows.push_back({.im = held(row - 1),
                    .i0 = held(row),
                    .i1 = held(row + 1),
                    .ip = held(row + 2),
                    .curve = axis.curve[i],
                    .frac = axis.frac[i]});
  }
  return rows;
}

// Every step but the last, which no output follows, is 1: output x stands between samples x and x + 1.
void enhanceHorizontally(const ConstImageView& source, const EnhancerAxis& axis, const ImageView& target)
{
  const LineFunctions& lines = lineFunctions();
  tbb::parallel_for(0, target.height,
                    [&](int y) {
                      lines.enhanceRow(source.row(y), axis.frac.data(), axis.curve.data(), target.width, target.row(y));
                    });
}

}  // namespace morvellan
