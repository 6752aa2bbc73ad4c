// Launches of the kernels that end the look after grain.
#include "film/grain_expand.h"

namespace morvellan::MORVELLAN_TARGET
{

namespace
{

const ExpandRow* rowNamed(std::string_view kernel, ExpandEnd either, ExpandEnd other)
{
  for (const ExpandRow& row : expandRows)
    if (row.kernel == kernel && (row.end == either || row.end == other))
      return &row;
  return nullptr;
}

ExpandFrames withoutAlpha(ExpandFrames frames, bool alpha)
{
  if (!alpha)
    frames.planes.alpha = nullptr;
  return frames;
}

}  // namespace

bool launchSoupExpand(const Queue& queue, std::string_view kernel, const ExpandFrames& frames, const SoupLook& look,
                      const SoupExit& exit)
{
  const ExpandRow* row = rowNamed(kernel, ExpandEnd::Soup, ExpandEnd::SoupBleach);
  if (!row)
    return false;
  const Flat shape = pixels(frames.width, frames.height);
  const ExpandFrames f = withoutAlpha(frames, row->alpha);
  if (row->end == ExpandEnd::Soup)
    launchNamed(queue, kernel, shape, expand_through_soup<LookMember::Plain>{f, row->luma, look, exit});
  else
    launchNamed(queue, kernel, shape, expand_through_soup<LookMember::Bleach>{f, row->luma, look, exit});
  return true;
}

bool launchDisplayExpand(const Queue& queue, std::string_view kernel, const ExpandFrames& frames, const PrintLook& look,
                         bool bleached)
{
  const ExpandRow* row = rowNamed(kernel, ExpandEnd::Display, ExpandEnd::PrintStock);
  if (!row)
    return false;
  const bool stock = row->end == ExpandEnd::PrintStock;
  launchNamed(queue, kernel, pixels(frames.width, frames.height),
              expand_through_display{.frames = withoutAlpha(frames, row->alpha),
                                     .luma = row->luma,
                                     .stock = stock,
                                     .bends = stock && look.bends && !bleached,
                                     .look = look});
  return true;
}

}  // namespace morvellan::MORVELLAN_TARGET
