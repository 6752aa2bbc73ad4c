// Builds the catalogue: a page that parameters are added to, group by group, with the conventions that hold for all.
// The sections of the page are functions of their own; catalogue() calls them in page order.
#pragma once

#include "params/catalogue.h"
#include "params/families.h"

#include <string>
#include <string_view>
#include <vector>

namespace morvellan::params
{
enum class Opens
{
  Closed,
  Open
};

// Red, Green and Blue sliders that differ in their word alone. The hint's {} takes the word.
struct ChannelTexts
{
  std::string_view stem;
  double value = 0.0;
  Range range;
  std::string_view label;
  std::string_view hint;
};

class Page
{
public:
  // Adds a group; what follows goes into it until the next group or inside().
  void group(std::string_view name, std::string_view label, Opens opens, std::string_view parent,
             std::string_view hint);
  // What follows goes into this group; empty for the top level.
  void inside(std::string_view group) { parent = group; }

  // How what follows starts: secret and disabled; secret only, as the store does; or shown.
  void startHidden() { hidden = Hidden::SecretAndDisabled; }
  void startSecret() { hidden = Hidden::SecretOnly; }
  void startShown() { hidden = Hidden::No; }

  void real(std::string_view name, double value, Range range, std::string_view label, std::string_view hint);
  void degrees(std::string_view name, double value, std::string_view label, std::string_view hint);
  void integer(std::string_view name, int value, Range range, std::string_view label, std::string_view hint);
  void boolean(std::string_view name, bool value, std::string_view label, std::string_view hint);
  void choice(std::string_view name, int value, std::span<const Option> options, std::string_view label,
              std::string_view hint);
  void swatch(std::string_view name, const std::array<double, 3>& value, Range display, std::string_view label,
              std::string_view hint);
  void button(std::string_view name, std::string_view label, std::string_view hint);

  // The three channels, and the master of the channels added last, whose word is RGB.
  void channels(const ChannelTexts& texts);
  void master(std::string_view name);

  // Secret twins of sliders that the page already holds, their names behind "Print".
  void copyToStore(const std::vector<std::string>& names);

  // Replaces the hint of a parameter whose text departs from its family's.
  void rehint(std::string_view name, std::string_view hint);

  Param& last() { return params.back(); }
  std::vector<Param> take() { return std::move(params); }

private:
  Param& add(std::string_view name, Kind kind, std::string_view label, std::string_view hint);
  Param& named(std::string_view name);

  std::vector<Param> params;
  std::string parent;
  Hidden hidden = Hidden::No;
  ChannelTexts lastChannels;
};

// The sections, in page order.
void addInput(Page& page);
void addResizeTextures(Page& page);
void addSoup(Page& page);
void addGrain(Page& page);
void addPrintDisplay(Page& page);
void addManage(Page& page);

// Families that sections share.
void addAttributes(Page& page, const Axis& axis);
void addRefinement(Page& page, std::string_view word);
void addSpatialEnhancer(Page& page, std::string_view choice, std::string_view stem, std::string_view choiceHint);
void addToeCurve(Page& page, std::string_view pivot, std::string_view stem, std::string_view master);
void addKneeCurve(Page& page, std::string_view stem, std::string_view master);
void addShoulderCurve(Page& page, std::string_view pivot, std::string_view stem, std::string_view master);

// The hint of a colour swatch; head is what comes before its common text.
std::string swatchHint(std::string_view head);
}  // namespace morvellan::params
