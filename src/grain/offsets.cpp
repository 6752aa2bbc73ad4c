// Draws the offsets from the launch's seed, in float, product by product from left to right.
#include "grain/offsets.h"

#include <cmath>

#include "grain/cell.h"

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

uint32_t next(uint32_t& state)
{
  return state = grain::step(OneWord(state)).v;
}

// The library's functions in double and one rounding: correct for all but some one in 10^8 arguments.
float draw(uint32_t& state, float soft, float scale)
{
  const float u = static_cast<float>(next(state)) * grain::unit;
  const float angle = static_cast<float>(next(state)) * grain::turn;
  const float ln = static_cast<float>(std::log(static_cast<double>(u)));
  const float cosine = static_cast<float>(std::cos(static_cast<double>(angle)));
  return std::sqrt(-2.0f * ln) * soft * cosine * scale;
}

}  // namespace

std::vector<FilterOffset> filterOffsets(uint32_t seed, int count, float soft, float scaleX, float scaleY)
{
  std::vector<FilterOffset> offsets(static_cast<size_t>(count));
  uint32_t state = grain::hash(OneWord(seed)).v;
  for (FilterOffset& offset : offsets)
  {
    offset.x = draw(state, soft, scaleX);
    offset.y = draw(state, soft, scaleY);
  }
  return offsets;
}

}  // namespace morvellan::MORVELLAN_TARGET
