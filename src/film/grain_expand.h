// The rest of the look after grain: planes in compressed linear light back to their range, through the negative's
// curves to the clip's encoding, or through display and print stock to code values.
#pragma once

#include "film/print.h"

namespace morvellan::MORVELLAN_TARGET
{

enum class ExpandEnd
{
  Soup,
  SoupBleach,
  Display,
  PrintStock,
};

// Planes hold colour, or luma with its two differences in the places of red, green and blue. The frame has `channels`
// floats a pixel, 3 or 4; its alpha is the alpha plane's, or 1 where that is null.
struct ExpandFrames
{
  float* frame = nullptr;
  LookPlanes planes = {};
  int width = 0, height = 0, channels = 4;
};

struct ExpandRow
{
  std::string_view kernel;
  ExpandEnd end;
  bool luma;
  bool alpha;  // reads the alpha plane
};

inline constexpr ExpandRow expandRows[] = {
    {"lin_grain_soup_expand", ExpandEnd::Soup, false, true},
    {"lin_grain_soup_expand_RGB", ExpandEnd::Soup, false, false},
    {"lin_grain_soup_expand_Y", ExpandEnd::Soup, true, true},
    {"lin_grain_soup_expand_Y_RGB", ExpandEnd::Soup, true, false},
    {"lin_grain_soup_bleach_expand", ExpandEnd::SoupBleach, false, true},
    {"lin_grain_soup_bleach_expand_RGB", ExpandEnd::SoupBleach, false, false},
    {"lin_grain_soup_bleach_expand_Y", ExpandEnd::SoupBleach, true, true},
    {"lin_grain_soup_bleach_expand_Y_RGB", ExpandEnd::SoupBleach, true, false},
    {"lin_grain_display_only_expand", ExpandEnd::Display, false, true},
    {"lin_grain_display_only_expand_RGB", ExpandEnd::Display, false, false},
    {"lin_grain_display_only_expand_Y", ExpandEnd::Display, true, true},
    {"lin_grain_display_only_expand_Y_RGB", ExpandEnd::Display, true, false},
    {"lin_grain_display_only_expand_print_stock", ExpandEnd::PrintStock, false, true},
    {"lin_grain_display_only_expand_print_stock_RGB", ExpandEnd::PrintStock, false, false},
    {"lin_grain_display_only_expand_print_stock_Y", ExpandEnd::PrintStock, true, true},
    {"lin_grain_display_only_expand_print_stock_Y_RGB", ExpandEnd::PrintStock, true, false},
};

MORVELLAN_INLINE Rgb expandedLight(const LookPlanes& planes, bool luma, Pixels at)
{
  const Rgb p = loadPlanes(planes, at);
  return expandFilm(luma ? rgbFromLuma(p) : p);
}

MORVELLAN_INLINE void storeExpanded(const ExpandFrames& f, Pixels at, Rgb c)
{
  const Real alpha = f.planes.alpha ? loadPlane(f.planes.alpha, at) : Real(1.0f);
  storePixel(f.frame, f.channels, at, c, alpha);
}

// The Soup's curves and its exit; the colour is encoded once.
template <LookMember Member>
struct expand_through_soup
{
  ExpandFrames frames;
  bool luma;
  SoupLook look;
  SoupExit exit;

  MORVELLAN_KERNEL void operator()(Pixels at) const
  {
    const Rgb linear = positive(expandedLight(frames.planes, luma, at));
    storeExpanded(frames, at, leaveSoup(exit, developSoup<Member>(look, linear)));
  }
};

// Display and density; with a stock its gamma and curves come first, unless its bleach had the curves already.
struct expand_through_display
{
  ExpandFrames frames;
  bool luma;
  bool stock;
  bool bends;
  PrintLook look;

  MORVELLAN_KERNEL void operator()(Pixels at) const
  {
    Rgb linear = positive(expandedLight(frames.planes, luma, at));
    if (bends)
      linear = bendPrint(look, linear);
    const Rgb encoded = encodeDisplay(look.encoding, multiply(look.fromFilm, linear));
    storeExpanded(frames, at, printDensity(look.density, stock, encoded));
  }
};

// Launch the named kernel over width * height pixels; false if the family has none of that name.
bool launchSoupExpand(const Queue& queue, std::string_view kernel, const ExpandFrames& frames, const SoupLook& look,
                      const SoupExit& exit);
// `bleached`: the print's bleach ran before the grain.
bool launchDisplayExpand(const Queue& queue, std::string_view kernel, const ExpandFrames& frames, const PrintLook& look,
                         bool bleached);

}  // namespace morvellan::MORVELLAN_TARGET
