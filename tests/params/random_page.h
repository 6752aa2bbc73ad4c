// Random settings of a page, every parameter anywhere in its range.
#pragma once

#include "params/catalogue.h"
#include "tests/params/test_page.h"

#include <random>
#include <set>
#include <string>

namespace morvellan::params
{
// What a person edits on the page; the others are groups, or act on the world outside it.
inline bool isOfThePage(const Param& param)
{
  static const std::set<std::string> actions{"SaveLooks", "LoadLooks", "CudaInfo", "ClipInfo", "About", "GrainDepth"};
  return param.kind != Kind::Group && param.name != gpuChoice && !actions.contains(param.name);
}

inline bool isValue(const Param& param)
{
  return param.kind != Kind::Group && param.kind != Kind::PushButton;
}

template <class Page>
void randomizeOne(Page& page, const Param& param, std::mt19937& random)
{
  const auto pick = [&](double least, double most) { return std::uniform_real_distribution(least, most)(random); };
  const auto pickWhole = [&](double least, double most)
  { return std::uniform_int_distribution(static_cast<int>(least), static_cast<int>(most))(random); };
  if (param.kind == Kind::Double)
    page.put(param.name, pick(param.range->min, param.range->max));
  else if (param.kind == Kind::Integer)
    page.put(param.name, pickWhole(param.range->min, param.range->max));
  else if (param.kind == Kind::Boolean)
    page.put(param.name, pickWhole(0, 1));
  else if (param.kind == Kind::Choice)
    page.put(param.name, pickWhole(0, static_cast<double>(param.options.size()) - 1));
  else if (param.kind == Kind::Rgb)
    page.putRgb(param.name, {pick(0, 1), pick(0, 1), pick(0, 1)});
}

template <class Page>
void randomize(Page& page, std::mt19937& random)
{
  for (const Param& param : catalogue())
    if (isOfThePage(param))
      randomizeOne(page, param, random);
}
}  // namespace morvellan::params
