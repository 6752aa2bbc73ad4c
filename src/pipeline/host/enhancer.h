// The spatial enhancer's host side: its amounts and tables, its horizontal pass, and the row taps of its vertical pass.
// The enhancer walks a picture that is one sample too large back to size, and sharpens in proportion to how far between
// two samples it stands.
#pragma once

#include "pipeline/host/frame_params.h"
#include "pipeline/host/image_view.h"

#include <vector>

namespace morvellan
{

struct EnhancerAmounts
{
  float horizontal;
  float vertical;
};

// The frame's two amounts, times the larger of the two enlargement ratios (1 at unit scale), and times 1.8 if grain is
// to run, 1.6 if not.
EnhancerAmounts enhancerAmounts(const FrameParams& params);

// One axis of the walk from M = N + 1 samples to N. Output 0 is sample 0; output i + 1 stands at sample step[0] + ... +
// step[i], with weight frac[i] of the sample after it and weight curve[i] of the curvature. An axis without an amount
// has the single entry step[0] = 1 and its samples pass through.
struct EnhancerAxis
{
  std::vector<int> step;
  std::vector<float> frac;
  std::vector<float> curve;

  bool passesThrough() const { return frac.empty(); }
};

// samples: N. productTable: m_table.
EnhancerAxis enhancerAxis(int samples, float amount, const unsigned char* productTable);

// Source rows of one output row of the vertical pass; rows past an edge are held at the edge.
struct EnhancerRow
{
  int im;
  int i0;
  int i1;
  int ip;
  float curve;
  float frac;  // 0: the output row is a plain copy of row i0
};

// The output rows of an axis that does not pass through.
std::vector<EnhancerRow> enhancerRows(const EnhancerAxis& axis);

// The horizontal pass: source is one pixel wider than target and as high. The two may not overlap. Channels are R, G, B
// and alpha; the curvature of the colours goes into luminance alone (Y, Co, Cg), alpha is treated on its own.
void enhanceHorizontally(const ConstImageView& source, const EnhancerAxis& axis, const ImageView& target);

}  // namespace morvellan
