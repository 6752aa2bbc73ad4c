// The rules of the print stock, of the print's bleach bypass and of the display.
// A print stock fills the visible print controls and the hidden store that a render reads.
#pragma once

#include "params/param_access.h"

namespace morvellan::params
{
// PrintProfile: fills the print side with the chosen stock and shows its controls.
void printStockChosen(ParamAccess& access);

// What choosing the stock writes into its parameters, without bleach and panels: the table's values for 2 to 9, neutral
// ones for the custom stock, nothing for any other index.
void writePrintStock(ParamAccess& access, int stock);

// The part of it that goes into the hidden store, for a Look, which holds the visible controls itself.
void writePrintStore(ParamAccess& access, int stock);

// Bleach: the print stock's bleach layer, or its plain values again.
void printBleachChanged(ParamAccess& access);

// OutputDisplayGamut: the brightness that the display starts from.
void displayChosen(ParamAccess& access);
}  // namespace morvellan::params
