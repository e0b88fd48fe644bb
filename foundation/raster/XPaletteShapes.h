#pragma once

#include "foundation/raster/XLabColor.h"

// Palettes that no list of knots tells: cycles, stripes, steps and cubes. Entry 0 to 255.

XRgbBytes XfnPaletteBandedLevels(int palette, int entry);  ///< sixteen levels of hosts' legends
XRgbBytes XfnPaletteSteps(int palette, int entry);         ///< eight hues, each from dim to bright
XRgbBytes XfnPaletteEvenSteps(int palette, int entry);     ///< sixteen steps even in lightness
XRgbBytes XfnPaletteFramedRainbow(int palette, int entry); ///< black or white at one end
XRgbBytes XfnPalettePrism(int palette, int entry);
XRgbBytes XfnPalettePastels(int palette, int entry);
XRgbBytes XfnPaletteHueSweep(int palette, int entry);
XRgbBytes XfnPaletteStripes(int palette, int entry);
XRgbBytes XfnPaletteHardCandy(int palette, int entry);
XRgbBytes XfnPalettePeppermint(int palette, int entry);
XRgbBytes XfnPaletteWaves(int palette, int entry);
XRgbBytes XfnPaletteCycle(int palette, int entry); ///< ends where it begins, for angles
XRgbBytes XfnPaletteContour(int palette, int entry);
XRgbBytes XfnPaletteBlocks(int palette, int entry);
XRgbBytes XfnPaletteCube(int palette, int entry);
XRgbBytes XfnPaletteShade(int palette, int entry); ///< gray, even in lightness
XRgbBytes XfnPaletteSaw(int palette, int entry);
XRgbBytes XfnPaletteUnique(int palette, int entry);
