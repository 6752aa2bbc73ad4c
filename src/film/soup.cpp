// Launches of the Soup's kernels.
#include "film/soup.h"

namespace morvellan::MORVELLAN_TARGET
{

SoupExit makeSoupExit(bool leaves, int inputGamut)
{
  constexpr int logC4 = 47;
  return {.leaves = leaves, .workingLog = inputGamut == logC4, .exit = makeFilmExit(inputGamut)};
}

void launchSoup(const Queue& queue, SoupMember member, const SoupArguments& arguments)
{
  const Flat shape = pixels(arguments.width, arguments.height);
  switch (member)
  {
  case SoupMember::Plain:
    return launch(queue, shape, film_soup_cuda_out{arguments});
  case SoupMember::Vectors:
    return launch(queue, shape, film_soup_cuda_out_hue_chr_vib{arguments});
  case SoupMember::Bleach:
    return launch(queue, shape, film_soup_cuda_out_bleach{arguments});
  }
}

}  // namespace morvellan::MORVELLAN_TARGET
