// The rules of the camera stock and of bleach bypass in the film laboratory.
// A stock is applied in layers: what all stocks share, its own values, its bleach layer, and the print points.
#pragma once

#include "params/param_access.h"

namespace morvellan::params
{
// CameraStock: fills the look with the chosen stock, while the Soup is active. Look loads set the index without this.
void cameraStockChosen(ParamAccess& access);

// LableachBypass: the stock's bleach layer, or its plain values again. It and the print's Bleach exclude one another.
void labBleachChanged(ParamAccess& access);

// SoupBypass: ends bleach bypass when the Soup is bypassed.
void soupBypassChanged(ParamAccess& access);

// The tone of a page with neither stock: curves, densities and print points.
void writeNoStockTone(ParamAccess& access);
}  // namespace morvellan::params
