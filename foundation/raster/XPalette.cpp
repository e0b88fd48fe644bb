#include "foundation/raster/XPalette.h"

#include "foundation/base/XString.h"
#include "foundation/raster/XPaletteTables.h"

#include <algorithm>

int XfnGetNumberOfPalette()
{
    return kXPaletteCount;
}

void XfnGetPalette(int index, unsigned char* red, unsigned char* green, unsigned char* blue)
{
    if (index < 1 || index > kXPaletteCount) return;
    const tagXPaletteRow& row = XfnGetPaletteRow(index);
    for (int i = 0; i < row.written; ++i) {
        const XRgbBytes rgb = row.at(index, i);
        red[i] = rgb[0];
        green[i] = rgb[1];
        blue[i] = rgb[2];
    }
}

void XfnGetPaletteName(int index, XString* name)
{
    if (!name) return;
    *name = index < 1 || index > kXPaletteCount ? "Default" : XfnGetPaletteRow(index).name;
}
