#pragma once

#include "foundation/base/XString.h"
#include "foundation/raster/XSaveControl.h"

class XRSFile;

/// How the tiles of a native file are packed.
enum class XDMCompression { None = 0, Zstd = 1, PredictedZstd = 2 };

/// Writes a raster file, in memory or of any format, as a file of the native format (.xdm).
///
/// Every band is written in its own data type with all of its levels: level 0 as it is, each
/// further one half of the last, until both sides are at most 256 pixels. Tiles are 256 x 256.
///
/// Levels of continuous data hold the mean over the area that each of their pixels covers, so that
/// level pixels lie where XDMBand says also when a side is odd. Null values, NaN and infinities do
/// not take part; where nothing else is, they stay. A mean that would come out as the null value
/// gives way to the nearest valid pixel. Of complex data the mean is that of the complex numbers.
/// Integers are rounded half to even, which keeps the brightness from level to level. Class maps,
/// masks, palettes and bands that are no images keep values that are there: each level pixel shows
/// the pixel of full resolution nearest to its centre that the finer level shows.
///
/// Beside pixels the file gets all that the model knows of bands and file but vector bands and the
/// notes. Statistics are those at hand, with their mark; a band without any gets those that
/// XBand::GetStatistics computes.
///
/// Memory: a few tiles a thread, two numbers a column and row and a small record a tile, whatever
/// the size. Pixels are read once from the source; finer levels are read back from the new file.
/// Threads: any; the tiles are made in up to four threads of its own, which are joined before it
/// returns. The bands must not be changed meanwhile.
class XAPI XDMFileSaver
{
public:
    /// The new file takes the place of `path` only when it is complete, so the old one survives
    /// every failure and nothing is left behind.
    /// @return 0 with a sentence that names a file in `error`, an empty one after a stop
    static int Save(XRSFile& file, const XString& path, XDMCompression compression,
                    const tagXSaveControl& control, XString& error);
};
