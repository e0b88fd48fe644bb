#include "foundation/raster/XDrawLevel.h"

#include "foundation/raster/XDMBand.h"

#include <algorithm>

double XfnGetLevelStep(const XDMBand& band, int level)
{
    int width = 0, height = 0;
    band.GetLevelSize(level, width, height);
    if (width < 1 || height < 1) return 1.0;
    return std::max(static_cast<double>(band.GetXSize()) / width,
                    static_cast<double>(band.GetYSize()) / height);
}

int XfnChooseLevel(const XDMBand& band, double step)
{
    for (int level = band.GetNumOfLevels() - 1; level > 0; --level)
        if (XfnGetLevelStep(band, level) <= step * 1.01) return level;
    return 0;
}
