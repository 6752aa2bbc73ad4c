// The Soup's look for a launch, and the launches of its kernels.
#include "film/soup.h"

#include <algorithm>
#include <iterator>

namespace morvellan::MORVELLAN_TARGET
{

SoupLook makeSoupLook(const SoupSettings& settings)
{
  return {.cast = makeCast(settings.cast),
          .attributes = makeAttributeEngine(settings.attributes, settings.refine, settings.refinements),
          .tone = makeToneCurve(settings.tone),
          .silver = settings.silver,
          .density = settings.density};
}

SoupExit makeSoupExit(bool leaves, int inputGamut)
{
  constexpr int logC4 = 47;
  return {.leaves = leaves, .workingLog = inputGamut == logC4, .exit = makeFilmExit(inputGamut)};
}

namespace
{

template <template <LookMember> typename Kernel>
void launchMember(const Queue& queue, const SoupRow& row, const SoupArguments& a)
{
  const Flat shape = pixels(a.width, a.height);
  switch (row.member)
  {
  case LookMember::Plain:
    return launchNamed(queue, row.kernel, shape, Kernel<LookMember::Plain>{a});
  case LookMember::Vectors:
    return launchNamed(queue, row.kernel, shape, Kernel<LookMember::Vectors>{a});
  case LookMember::Bleach:
    return launchNamed(queue, row.kernel, shape, Kernel<LookMember::Bleach>{a});
  }
}

}  // namespace

bool launchSoup(const Queue& queue, std::string_view kernel, const SoupArguments& arguments)
{
  const auto* row =
      std::find_if(std::begin(soupRows), std::end(soupRows), [&](const SoupRow& r) { return r.kernel == kernel; });
  if (row == std::end(soupRows))
    return false;
  SoupArguments a = arguments;
  if (row->target == SoupTarget::Linear)
  {
    a.image2 = nullptr;
    a.exit = {};
  }
  if (row->target == SoupTarget::Planes)
    launchMember<soup_to_planes>(queue, *row, a);
  else
    launchMember<soup_to_frames>(queue, *row, a);
  return true;
}

}  // namespace morvellan::MORVELLAN_TARGET
