// The print's look for a launch, and the launches of its kernels.
#include "film/print.h"

#include <algorithm>
#include <iterator>

namespace morvellan::MORVELLAN_TARGET
{

PrintLook makePrintLook(const PrintSettings& s)
{
  PrintLook look;
  look.cast = makeCast(s.cast);
  look.attributes = makeAttributeEngine(s.attributes, s.refine, s.refinements);
  look.saturates = s.saturation != 1.0f;
  look.saturation = saturationMatrix(s.saturation);
  look.scale = makeToneScale(s.peak);
  look.gamma = s.gamma;
  look.tone = makeToneCurve(s.tone);
  look.bends = s.tone.live || s.gamma.live[0] || s.gamma.live[1] || s.gamma.live[2];
  look.silver = s.silver;
  // Weighted neutral channels to CIE XYZ, as printed; it is the way by linear film colour to seven digits.
  constexpr Matrix3 neutralToXyz{{1.80794656f, -1.29971659f, 0.347858787f, 0.617839575f, 0.39595452f, -0.0410468765f,
                                  -0.12546961f, 0.204780385f, 1.74274182f}};
  const DoubleMatrix3 display = xyzToDisplay(s.display, s.profile >= 6 ? PrintWhite::D55 : PrintWhite::D65);
  look.fromNeutral = rounded(product(display, widen(neutralToXyz)));
  look.fromFilm = rounded(product(display, widen(awg4ToXyz)));
  look.encoding = makeDisplayEncoding(s.display, s.peak);
  look.density = s.density;
  return look;
}

namespace
{

template <template <PrintMember> typename Kernel>
void launchMember(const Queue& queue, const PrintRow& row, const PrintArguments& a)
{
  const Flat shape = pixels(a.width, a.height);
  switch (row.member)
  {
  case PrintMember::Plain:
    return launchNamed(queue, row.kernel, shape, Kernel<PrintMember::Plain>{a});
  case PrintMember::Vectors:
    return launchNamed(queue, row.kernel, shape, Kernel<PrintMember::Vectors>{a});
  case PrintMember::Bleach:
    return launchNamed(queue, row.kernel, shape, Kernel<PrintMember::Bleach>{a});
  case PrintMember::Display:
    return launchNamed(queue, row.kernel, shape, Kernel<PrintMember::Display>{a});
  }
}

}  // namespace

bool launchPrint(const Queue& queue, std::string_view kernel, const PrintArguments& a)
{
  const auto* row =
      std::find_if(std::begin(printRows), std::end(printRows), [&](const PrintRow& r) { return r.kernel == kernel; });
  if (row == std::end(printRows))
    return false;
  if (row->target == PrintTarget::Planes)
    launchMember<print_to_planes>(queue, *row, a);
  else
    launchMember<print_to_frames>(queue, *row, a);
  return true;
}

}  // namespace morvellan::MORVELLAN_TARGET
