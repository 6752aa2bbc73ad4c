// The reset buttons: what each writes, chosen by a panel's choice where the button looks at one.
// Resets change values; only the print reset also hides what its stock had shown.
#pragma once

#include "params/param_access.h"

namespace morvellan::params
{
void clearTexturePitches(ParamAccess& access);
void clearHalation(ParamAccess& access);
void clearAttributes(ParamAccess& access);
void resetRefine(ParamAccess& access);
void resetCurves(ParamAccess& access);
void clearLab(ParamAccess& access);
void resetSoup(ParamAccess& access);
void resetGrains(ParamAccess& access);
void resetPrintDisplay(ParamAccess& access);
}  // namespace morvellan::params
