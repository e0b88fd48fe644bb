#pragma once

#include "foundation/base/XString.h"
#include "foundation/raster/XSaveControl.h"

class XRSFile;

/// Writes a raster file as a file of another format, which the extension of `path` chooses.
///
/// A file that GDAL reads is copied from its own dataset, with all that GDAL knows of it, as long as
/// nothing was changed in the model since it was opened. Any other is shown to GDAL as a dataset whose blocks are the tiles of the bands: pixels, reference,
/// geometry (control points when it is no affine map), null values, class tables, names and scale
/// pass. The copy is strict: a format that cannot hold the data type or something else of the file
/// is refused and no pixel is changed to fit; only formats that are lossy by nature (JPEG) change
/// any, JPEG 2000 is written reversibly. Signed bytes travel as 16-bit integers unless an unchanged
/// GeoTIFF is copied to GeoTIFF, and complex integers in a type of the copy that holds them.
///
/// Memory: a few tiles and GDAL's block cache, whatever the size.
/// The copy is made in a folder of its own beside the target, with every file the format needs;
/// they are renamed when it is complete, so a failure or a stop leaves what was there, and nothing
/// else. Threads: any; the bands must not be changed meanwhile.
/// @return 0 with a sentence that names a file in `error`, an empty one after a stop
XAPI int XfnExportRaster(XRSFile& file, const XString& path, const tagXSaveControl& control,
                         XString& error);
